// The node of every document tree: parent, shadow and reflection.
#pragma once

#include "data/genericiterator.h"
#include "data/objectmemory.h"
#include "data/objectmeta.h"
#include "data/securedobject.h"
#include <memory>

namespace Orv::Data {

class Container;
class Leaf;
class ShadowObject;

// What an object is made like; readers and writers go by nothing else.
enum class ObjectKind
{
    Attribute,
    Struct,
    List,
    Union,
};

// The link by which a shadow hangs on its object. It is always the first of the object's boxes.
struct ShadowLink : BoxLink
{
    ShadowObject* shadow = nullptr;
};

// A document is one tree of these. An object is detached while it is built, attached while the
// root of its tree answers isTreeRoot(), and removed while a history item owns it. Whoever holds a
// const object may read all of it; an attached tree changes through manipulators only.
class BaseObject : public SecuredObject
{
public:
    BaseObject() = default;
    BaseObject(const BaseObject&) = delete;
    BaseObject& operator=(const BaseObject&) = delete;
    // Deletes the shadow, and with it the listeners that it owns; then every box reads null.
    ~BaseObject() override
    {
        if (hasShadow())
            deleteShadow();
    }

    // Only the form of delete that says the size is of use, and the other one would be preferred.
    // NOLINTNEXTLINE(misc-new-delete-overloads)
    static void* operator new(std::size_t size) { return ObjectMemory::take(size); }
    static void* operator new(std::size_t, void* place) { return place; }
    static void operator delete(void* memory, std::size_t size) noexcept
    {
        ObjectMemory::giveBack(memory, size);
    }
    static void operator delete(void*, void*) noexcept {}

    // The container that holds this object; null at a root and for an object taken out.
    const BaseObject* getParent() const { return m_parent; }
    BaseObject* getParent() { return m_parent; }

    virtual Container* asContainer() { return nullptr; }
    virtual const Container* asContainer() const { return nullptr; }
    virtual Leaf* asLeaf() { return nullptr; }
    virtual const Leaf* asLeaf() const { return nullptr; }

    virtual ObjectKind kind() const = 0;

    // New iterators over the children, owned by the caller.
    virtual std::unique_ptr<GenericIterator<BaseObject>> createIterator() = 0;
    virtual std::unique_ptr<GenericIteratorConst<BaseObject>> createConstIterator() const = 0;

    // Returns the declaration of this very object in its structure or list.
    virtual const ObjectMeta& getMeta() const = 0;
    // Does the value differ from the declared default?
    virtual bool isModified() const = 0;
    // True for the root of the live document set alone.
    virtual bool isTreeRoot() const { return false; }

    // The object's shadow; null until the first listener is added.
    ShadowObject* shadow() const { return hasShadow() ? firstLink<ShadowLink>()->shadow : nullptr; }

private:
    friend class Container;
    friend class ShadowObject;

    bool hasShadow() const { return (reinterpret_cast<std::uintptr_t>(m_firstBox) & 1u) != 0; }
    template <class Link>
    Link* firstLink() const
    {
        return static_cast<Link*>(reinterpret_cast<BoxLink*>(
            reinterpret_cast<std::uintptr_t>(m_firstBox) & ~std::uintptr_t{1}));
    }
    // Puts a shadow's link in front of all boxes. The object must not have a shadow.
    void linkShadow(ShadowLink& link);
    void deleteShadow();

    BaseObject* m_parent = nullptr;
};

// The last object on the parent chain, `object` itself when it has no parent.
const BaseObject& rootOf(const BaseObject& object);
// Returns true if the object is in the live document set.
bool isAttached(const BaseObject& object);

} // namespace Orv::Data
