// What the objects of a package's content lists have in common.
#pragma once

#include "data/content/types.h"
#include <memory>
#include <string_view>

namespace Ksx::Data::Content {

// Base of Group, Resource, Graph and Function: the item type of a content list.
class ContentObjectBase : public ContainerStructBase
{};

// Lets code walk a content list without asking for each item's class.
class ContentInterface
{
public:
    virtual const Orv::Data::Attribute<UInt>& uidAttribute() const = 0;
    virtual const Orv::Data::Attribute<Text>& identifierAttribute() const = 0;
    virtual ~ContentInterface() = default;
};

// The item classes of a content list: group, resource, graph, function, tried in this order.
// Completed behind all of them, since groups and graphs hold content themselves.
struct DelayedContentsStub_
{
    static std::unique_ptr<BaseObject> create(std::string_view elementName);
};

} // namespace Ksx::Data::Content
