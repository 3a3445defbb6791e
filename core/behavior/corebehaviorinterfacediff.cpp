#include "behavior/interfacediff.h"

#include <functional>
#include <set>
#include <unordered_set>

namespace Ksx::Core::Behavior {

namespace {

const InterfaceDiff::Fate Gone{std::nullopt, false};

std::size_t hashOf(const std::string& identifier)
{
    return std::hash<std::string>()(identifier);
}

// The new items, by their places, of which those that had gone are taken off.
class NewItems
{
public:
    explicit NewItems(const InterfaceItems& items) : m_items(items) {}

    void add(std::size_t place)
    {
        m_places.insert(place);
        m_byIdentifier[hashOf(m_items[place].identifier)].insert(place);
    }
    // Takes the first one of an identifier; null if there is none.
    const InterfaceItem* take(std::size_t identifier)
    {
        const auto found = m_byIdentifier.find(identifier);
        if (found == m_byIdentifier.end() || found->second.empty())
            return nullptr;
        const std::size_t place = *found->second.begin();
        found->second.erase(found->second.begin());
        m_places.erase(place);
        return &m_items[place];
    }
    const std::set<std::size_t>& places() const { return m_places; }

private:
    const InterfaceItems& m_items;
    std::set<std::size_t> m_places;
    std::unordered_map<std::size_t, std::set<std::size_t>> m_byIdentifier;
};

} // namespace

InterfaceRecord recordOf(const InterfaceItem& item)
{
    return {item.uid, item.type, hashOf(item.identifier)};
}

InterfaceRecords recordsOf(const InterfaceItems& items)
{
    InterfaceRecords records;
    records.reserve(items.size());
    for (const InterfaceItem& item : items)
        records.push_back(recordOf(item));
    return records;
}

bool operator==(const InterfaceRecord& a, const InterfaceRecord& b)
{
    return a.uid == b.uid && a.type == b.type && a.identifier == b.identifier;
}

void InterfaceDiff::note(const InterfaceItems& items)
{
    m_itemCount = items.size();
    for (std::size_t i = 0; i < items.size(); ++i)
        m_places.try_emplace(items[i].identifier, i);
}

InterfaceDiff::InterfaceDiff(const InterfaceRecords& former, const InterfaceItems& items)
{
    std::unordered_set<Uid> formerUids;
    for (const InterfaceRecord& record : former)
        formerUids.insert(record.uid);
    std::unordered_map<Uid, const InterfaceItem*> byUid;
    NewItems added(items);
    for (std::size_t i = 0; i < items.size(); ++i) {
        const bool isFirst = byUid.try_emplace(items[i].uid, &items[i]).second;
        if (isFirst && formerUids.count(items[i].uid) == 0)
            added.add(i);
    }
    const InterfaceItem* last = nullptr;
    for (const InterfaceRecord& record : former) {
        const auto found = byUid.find(record.uid);
        const InterfaceItem* const item =
            found != byUid.end() ? found->second : added.take(record.identifier);
        const bool isTypeChanged = item != nullptr && item->type != record.type;
        if (item == nullptr)
            m_fates.try_emplace(record.identifier, Gone);
        else if (isTypeChanged || hashOf(item->identifier) != record.identifier)
            m_fates.try_emplace(record.identifier, Fate{*item, isTypeChanged});
        if (item == nullptr)
            continue;
        m_isReordered = m_isReordered || (last != nullptr && item < last);
        last = item;
    }
    for (const std::size_t place : added.places())
        m_added.push_back({items[place], place});
    if (m_isReordered)
        note(items);
}

InterfaceDiff::InterfaceDiff(const std::vector<Change>& changes)
{
    for (const Change& change : changes) {
        if (!change.former)
            m_added.push_back({*change.item, change.place});
        else
            m_fates.emplace(
                change.former->identifier,
                Fate{change.item, change.item && change.item->type != change.former->type});
    }
}

InterfaceDiff InterfaceDiff::whole(const InterfaceItems& items)
{
    InterfaceDiff diff;
    diff.note(items);
    for (std::size_t i = 0; i < items.size(); ++i) {
        diff.m_fates.try_emplace(hashOf(items[i].identifier), Fate{items[i], true});
        diff.m_added.push_back({items[i], i});
    }
    diff.m_isReordered = true;
    diff.m_isWhole = true;
    return diff;
}

bool InterfaceDiff::isEmpty() const
{
    return m_fates.empty() && m_added.empty() && !m_isReordered && !m_isWhole;
}

std::optional<std::vector<std::size_t>> InterfaceDiff::changedIdentifiers() const
{
    if (m_isWhole)
        return std::nullopt;
    std::vector<std::size_t> identifiers;
    for (const auto& [identifier, fate] : m_fates)
        identifiers.push_back(identifier);
    return identifiers;
}

const InterfaceDiff::Fate* InterfaceDiff::fateOf(const std::string& identifier) const
{
    const auto found = m_fates.find(hashOf(identifier));
    if (found != m_fates.end())
        return &found->second;
    return m_isWhole ? &Gone : nullptr;
}

std::size_t InterfaceDiff::placeOf(const std::string& identifier) const
{
    const auto found = m_places.find(identifier);
    return found == m_places.end() ? m_itemCount : found->second;
}

} // namespace Ksx::Core::Behavior
