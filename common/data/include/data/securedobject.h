// Anything that a tracked weak pointer can point at, and the links by which it knows its boxes.
#pragma once

#include <cstdint>

namespace Orv {

class SecuredObject;

namespace Data {
class BaseObject;
class ShadowObject;
} // namespace Data

// One link of the intrusive list in which a target keeps the boxes that point at it. Linking and
// unlinking take constant time. A link never keeps its target alive: the destruction of the target
// clears the link whole. Not to be used by itself; see DataPointerBox.
class BoxLink
{
public:
    BoxLink() = default;
    BoxLink(const BoxLink& other) { linkBeside(other); }
    BoxLink& operator=(const BoxLink& other)
    {
        if (this != &other) {
            unlink();
            linkBeside(other);
        }
        return *this;
    }
    ~BoxLink() { unlink(); }

    // Links to `target`, which may be null, and leaves the former target.
    void linkTo(SecuredObject* target);
    void unlink();

    // The target, null once it has died or when there never was one.
    SecuredObject* target() const { return m_target; }

private:
    friend class SecuredObject;
    friend class Data::BaseObject;
    void linkBeside(const BoxLink& other);

    BoxLink* m_next = nullptr;
    BoxLink** m_prevLink = nullptr; // what points at this link; null when not linked
    SecuredObject* m_target = nullptr;
};

// Base of documents, listeners, shadows and contexts: whatever long-lived objects may remember
// through a box. Costs one word.
class SecuredObject
{
public:
    SecuredObject() = default;
    SecuredObject(const SecuredObject&) {} // the boxes stay with the original
    SecuredObject& operator=(const SecuredObject&) { return *this; }
    virtual ~SecuredObject()
    {
        if (m_firstBox != nullptr)
            clearBoxes();
    }

private:
    friend class BoxLink;
    friend class Data::BaseObject;
    void clearBoxes();

    // Head of the list of boxes. The lowest bit is set if the first link is a ShadowLink: so an
    // object finds its shadow without a word of its own for it. Such a link is always the first,
    // and whatever is linked later goes behind it.
    BoxLink* m_firstBox = nullptr;
};

} // namespace Orv
