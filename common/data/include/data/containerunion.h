// Unions: at most one owned child, of one of several classes.
#pragma once

#include "data/container.h"
#include <QtGlobal>
#include <memory>
#include <string_view>

namespace Orv::Core {
class ManipulatorUnionBase;
} // namespace Orv::Core

namespace Orv::Data {

// The union without its child type.
class ContainerUnionBase : public Container
{
public:
    ContainerUnionBase() = default;
    ~ContainerUnionBase() override { ContainerUnionBase::clear(); }

    ObjectKind kind() const override { return ObjectKind::Union; }

    using Container::childAt;
    std::size_t childCount() const override { return m_child == nullptr ? 0 : 1; }
    const BaseObject* childAt(std::size_t index) const override
    {
        Q_ASSERT(index < childCount());
        return m_child;
    }
    bool isModified() const override { return !isEmpty(); }
    bool isEmpty() const { return m_child == nullptr; }

    // The child, null while the union is empty.
    const BaseObject* get() const { return m_child; }
    BaseObject* get() { return m_child; }

    // The two below neither record nor notify: only for a tree that is being built and has no
    // listeners. `child` must be of the union's child type. set() deletes the former child, unless
    // it is the very object that is given.
    void clear();
    void set(std::unique_ptr<BaseObject> child);

    // As for lists: a new child without parent, null for an unknown element name.
    virtual std::unique_ptr<BaseObject> createChild(std::string_view elementName) const = 0;

private:
    friend class Orv::Core::ManipulatorUnionBase;
    // Hands the child over to the caller, its parent cleared.
    std::unique_ptr<BaseObject> takeOwned();

    BaseObject* m_child = nullptr;
};

// A child of the common base type T.
template <class T>
class ContainerUnion : public ContainerUnionBase
{
public:
    using ItemType = T;

    const T* get() const { return static_cast<const T*>(ContainerUnionBase::get()); }
    T* get() { return static_cast<T*>(ContainerUnionBase::get()); }
};

} // namespace Orv::Data
