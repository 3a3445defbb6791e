// What has become of the inputs or outputs of a graph or a function.
#pragma once

#include "ksx/core/uidsource.h"
#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Ksx::Core::Behavior {

// An input or output as it is.
struct InterfaceItem
{
    Uid uid;
    unsigned type;
    std::string identifier;
};
using InterfaceItems = std::vector<InterfaceItem>;

// What is remembered of one, to tell later what has become of it. Identifiers are remembered by
// their hash: there is one record for every input of every open package.
struct InterfaceRecord
{
    Uid uid;
    unsigned type;
    std::size_t identifier;
};
using InterfaceRecords = std::vector<InterfaceRecord>;

InterfaceRecords recordsOf(const InterfaceItems& items);

// Tells for what refers to items by their former identifiers what to do. An item is known by its
// uid; one that has gone is taken for the new one with its identifier, if there is one. Points into
// the items, which must outlive it.
class InterfaceDiff
{
public:
    // What happened to an item that has changed.
    struct Fate
    {
        const InterfaceItem* item; // null if it has gone
        bool isTypeChanged;
    };

    InterfaceDiff(const InterfaceRecords& former, const InterfaceItems& items);
    // For what may refer to anything: identifiers that no item has are those of items that have
    // gone, and all other items may have changed in all ways.
    static InterfaceDiff whole(const InterfaceItems& items);

    bool isEmpty() const;
    // Of the item that had the identifier; null if nothing happened to it, or there was none.
    const Fate* fateOf(const std::string& identifier) const;
    // The items that may be missing, by their places among the items.
    const std::vector<std::size_t>& added() const { return m_added; }
    bool isReordered() const { return m_isReordered; }

    const InterfaceItems& items() const { return *m_items; }
    // The place among the items of the one that now has the identifier; their number if none has.
    std::size_t placeOf(const std::string& identifier) const;

private:
    explicit InterfaceDiff(const InterfaceItems& items);
    const InterfaceItem* takeAdded(std::size_t identifier);

    const InterfaceItems* m_items;
    std::unordered_map<std::size_t, Fate> m_fates; // by the hash of the former identifier
    std::unordered_map<std::string, std::size_t> m_places;
    std::vector<std::size_t> m_added;
    bool m_isReordered = false;
    bool m_isWhole = false;
};

} // namespace Ksx::Core::Behavior
