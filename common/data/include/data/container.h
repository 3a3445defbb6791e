// A node with children.
#pragma once

#include "data/baseobject.h"
#include <cstddef>

namespace Orv::Data {

class ContainerStructBase;

// Base of structures, lists and unions. Cannot be copied.
class Container : public BaseObject
{
public:
    Container* asContainer() override { return this; }
    const Container* asContainer() const override { return this; }
    std::unique_ptr<GenericIterator<BaseObject>> createIterator() override;
    std::unique_ptr<GenericIteratorConst<BaseObject>> createConstIterator() const override;

    // The children by position, in the order of writing. All iterators use it.
    virtual std::size_t childCount() const = 0;
    // `index` is below childCount().
    virtual const BaseObject* childAt(std::size_t index) const = 0;
    BaseObject* childAt(std::size_t index)
    {
        return const_cast<BaseObject*>(static_cast<const Container*>(this)->childAt(index));
    }

protected:
    static void setParent(BaseObject& child, BaseObject* parent) { child.m_parent = parent; }
    // Deletes `count` children, the first one first, each before what lies below it. Works without
    // recursion, so that no tree is too deep for it.
    static void destroy(BaseObject* const* children, std::size_t count);
};

} // namespace Orv::Data
