// How the items of the lists of a document are told apart.
#pragma once

#include "data/container.h"
#include "data/containerlist.h"
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Orv::Data {
class AttributeBase;
} // namespace Orv::Data

namespace Ksx::Kit {

// The items of one element.
struct ItemKind
{
    std::string_view element;
    // The word for users, such as "node".
    const char* word;
    // The element of the number that names the item in its list. Empty without one.
    std::string_view uid;
    // The element of the text that names the item in its list. Empty without one.
    std::string_view name;
    // Whether users see the order of the items.
    bool isOrdered;
};

// Returns the kind of an item. Items of an unlisted element have neither uid nor name.
const ItemKind& kindOf(const Orv::Data::BaseObject& item);

// Returns the member of a structure by its element. Returns null if there is none.
const Orv::Data::BaseObject* memberOf(const Orv::Data::BaseObject& structure,
                                      std::string_view element);

// Returns the number that names the item in its list.
std::optional<unsigned> uidOf(const Orv::Data::BaseObject& item);
// Returns the text that names the item in its list. Returns null without one.
const std::string* nameOf(const Orv::Data::BaseObject& item);

// Returns whether an element is a fact about its object. Uids and versions name the state of a file.
// Contents and dependencies are lists that are looked at apart from their owners.
bool isFact(const Orv::Data::ObjectMeta& meta);

// Returns whether an element only says how things are shown to a user.
bool isLayout(const Orv::Data::ObjectMeta& meta);

// Returns whether an element of the layout holds what users have written: comments, or the name of a
// node.
bool isNote(const Orv::Data::ObjectMeta& meta);

// The items of a list, in their order.
using Items = std::vector<const Orv::Data::BaseObject*>;
Items itemsOf(const Orv::Data::ContainerListBase& list);

} // namespace Ksx::Kit
