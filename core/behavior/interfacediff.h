// What has become of the inputs or outputs of a graph or a function.
#pragma once

#include "ksx/core/uidsource.h"
#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
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

InterfaceRecord recordOf(const InterfaceItem& item);
InterfaceRecords recordsOf(const InterfaceItems& items);
bool operator==(const InterfaceRecord& a, const InterfaceRecord& b);

// Tells for what refers to items by their former identifiers what to do. An item is known by its
// uid; one that has gone is taken for the new one with its identifier, if there is one.
class InterfaceDiff
{
public:
    // What became of one item, where the others and their order stayed.
    struct Change
    {
        std::optional<InterfaceRecord> former; // none for a new item
        std::optional<InterfaceItem> item;     // none for one that has gone
        std::size_t place = 0;                 // of a new item, in its list
    };
    // A new item.
    struct Addition
    {
        InterfaceItem item;
        std::size_t place; // in the list
    };

    // What happened to an item that has changed.
    struct Fate
    {
        std::optional<InterfaceItem> item; // none if it has gone
        bool isTypeChanged;
    };

    InterfaceDiff(const InterfaceRecords& former, const InterfaceItems& items);
    // The items have uids of their own, and no two of them had the same identifier. The new ones
    // come in the order of the list.
    explicit InterfaceDiff(const std::vector<Change>& changes);
    // For what may refer to anything: identifiers that no item has are those of items that have
    // gone, and all other items may have changed in all ways.
    static InterfaceDiff whole(const InterfaceItems& items);

    bool isEmpty() const;
    // Only items of these hashes of former identifiers have one; any item where there is none.
    std::optional<std::vector<std::size_t>> changedIdentifiers() const;
    // Of the item that had the identifier; null if nothing happened to it, or there was none.
    const Fate* fateOf(const std::string& identifier) const;
    // The items that may be missing, in the order of the list.
    const std::vector<Addition>& added() const { return m_added; }
    // Only then can the two below be asked.
    bool isReordered() const { return m_isReordered; }
    std::size_t itemCount() const { return m_itemCount; }
    // The place among the items of the one that now has the identifier; their number if none has.
    std::size_t placeOf(const std::string& identifier) const;

private:
    InterfaceDiff() = default;
    void note(const InterfaceItems& items);

    std::unordered_map<std::size_t, Fate> m_fates; // by the hash of the former identifier
    std::unordered_map<std::string, std::size_t> m_places;
    std::size_t m_itemCount = 0;
    std::vector<Addition> m_added;
    bool m_isReordered = false;
    bool m_isWhole = false;
};

} // namespace Ksx::Core::Behavior
