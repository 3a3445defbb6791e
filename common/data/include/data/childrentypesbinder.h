// Gives a list or union the classes that its children may have.
#pragma once

#include "data/baseobject.h"
#include <array>
#include <memory>
#include <string_view>

namespace Orv::Data {

// Returns a new object of the first of `Types` with that element name; null if none has it.
template <class... Types>
std::unique_ptr<BaseObject> createFirstMatch(std::string_view elementName)
{
    std::unique_ptr<BaseObject> child;
    static_cast<void>(
        ((elementName == Types::MetaTag::record.name ? (child = std::make_unique<Types>(), true)
                                                     : false) ||
         ...));
    return child;
}

// `Bound` is a MetaBinder over a list or union. Adds no field.
template <class Bound, class... Types>
class ChildrenTypesBinder : public Bound
{
public:
    // The element names of the classes, in the order in which they are tried.
    static constexpr std::array<std::string_view, sizeof...(Types)> childNames()
    {
        return {Types::MetaTag::record.name...};
    }
    std::unique_ptr<BaseObject> createChild(std::string_view elementName) const override
    {
        return createFirstMatch<Types...>(elementName);
    }
};

// A list of one class: its own item type.
template <class Bound>
class ChildValueTypeBinder : public ChildrenTypesBinder<Bound, typename Bound::ItemType>
{};

// A list whose item classes are not complete where it is declared, because the schema is cyclic.
// `Tag` has a static `create(elementName)`, defined where all classes are visible.
template <class Bound, class Tag>
class DelayedTypesBinder : public Bound
{
public:
    std::unique_ptr<BaseObject> createChild(std::string_view elementName) const override
    {
        return Tag::create(elementName);
    }
};

} // namespace Orv::Data
