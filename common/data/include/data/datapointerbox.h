// Tracked weak pointer to a document object, a listener, a shadow or a context.
#pragma once

#include "data/datapointerboxmasterkey.h"
#include "data/securedobject.h"
#include <QtGlobal>
#include <type_traits>

namespace Orv::Data {

class BaseObject;

// Reads null as soon as its target has died. The one way in which long-lived objects may remember
// an object of a document. Copies point at the same target; a box has no part in its lifetime.
// T may be incomplete where the box is declared, and must be complete where it is used.
template <class T>
class DataPointerBox
{
public:
    DataPointerBox() = default;
    // The target may be null. A const document object is accepted, since a box gives nothing but
    // const access to it without the key.
    explicit DataPointerBox(const T* target) { reset(target); }

    void reset(const T* target = nullptr) { m_link.linkTo(const_cast<T*>(target)); }

    // Null when the target has died or was never set.
    const T* get() const { return static_cast<const T*>(m_link.target()); }
    // The box must not be empty.
    const T* operator->() const { return &**this; }
    const T& operator*() const
    {
        Q_ASSERT(get() != nullptr);
        return *get();
    }
    explicit operator bool() const { return m_link.target() != nullptr; }

    // Mutable access to a document object, for the command layer and the edits that it runs.
    T* get(const DataPointerBoxMasterKey&) const { return static_cast<T*>(m_link.target()); }

    // Mutable access to a target that is no part of a document, and cannot be one. Documents change
    // through manipulators.
    template <class U = T>
    std::enable_if_t<!std::is_base_of_v<BaseObject, U> && !std::is_same_v<U, SecuredObject>, U*>
    access() const
    {
        return static_cast<U*>(m_link.target());
    }

    friend bool operator==(const DataPointerBox& a, const DataPointerBox& b)
    {
        return a.m_link.target() == b.m_link.target();
    }
    friend bool operator!=(const DataPointerBox& a, const DataPointerBox& b) { return !(a == b); }
    friend bool operator==(const DataPointerBox& a, const T* b) { return a.get() == b; }

private:
    BoxLink m_link;
};

} // namespace Orv::Data
