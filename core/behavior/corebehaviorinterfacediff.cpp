#include "ksx/core/behavior/interfacediff.h"

#include <algorithm>
#include <functional>

namespace Ksx::Core::Behavior {

namespace {

constexpr InterfaceDiff::Fate Gone{nullptr, false};

std::size_t hashOf(const std::string& identifier)
{
    return std::hash<std::string>()(identifier);
}

} // namespace

InterfaceRecords recordsOf(const InterfaceItems& items)
{
    InterfaceRecords records;
    records.reserve(items.size());
    for (const InterfaceItem& item : items)
        records.push_back({item.uid, item.type, hashOf(item.identifier)});
    return records;
}

InterfaceDiff::InterfaceDiff(const InterfaceItems& items) : m_items(&items)
{
    for (std::size_t i = 0; i < items.size(); ++i)
        m_places.try_emplace(items[i].identifier, i);
}

InterfaceDiff::InterfaceDiff(const InterfaceRecords& former, const InterfaceItems& items)
    : InterfaceDiff(items)
{
    std::unordered_set<Uid> formerUids;
    for (const InterfaceRecord& record : former)
        formerUids.insert(record.uid);
    std::unordered_map<Uid, const InterfaceItem*> byUid;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const bool isFirst = byUid.try_emplace(items[i].uid, &items[i]).second;
        if (isFirst && formerUids.count(items[i].uid) == 0)
            m_added.push_back(i);
    }
    const InterfaceItem* last = nullptr;
    for (const InterfaceRecord& record : former) {
        const auto found = byUid.find(record.uid);
        const InterfaceItem* const item =
            found != byUid.end() ? found->second : takeAdded(record.identifier);
        const bool isTypeChanged = item != nullptr && item->type != record.type;
        if (item == nullptr || isTypeChanged || hashOf(item->identifier) != record.identifier)
            m_fates.try_emplace(record.identifier, Fate{item, isTypeChanged});
        if (item == nullptr)
            continue;
        m_isReordered = m_isReordered || (last != nullptr && item < last);
        last = item;
    }
}

InterfaceDiff InterfaceDiff::whole(const InterfaceItems& items)
{
    InterfaceDiff diff(items);
    for (std::size_t i = 0; i < items.size(); ++i) {
        diff.m_fates.try_emplace(hashOf(items[i].identifier), Fate{&items[i], true});
        diff.m_added.push_back(i);
    }
    diff.m_isReordered = true;
    diff.m_isWhole = true;
    return diff;
}

const InterfaceItem* InterfaceDiff::takeAdded(std::size_t identifier)
{
    const auto place = std::find_if(m_added.begin(), m_added.end(), [&](std::size_t i) {
        return hashOf((*m_items)[i].identifier) == identifier;
    });
    if (place == m_added.end())
        return nullptr;
    const InterfaceItem* const item = &(*m_items)[*place];
    m_added.erase(place);
    return item;
}

bool InterfaceDiff::isEmpty() const
{
    return m_fates.empty() && m_added.empty() && !m_isReordered && !m_isWhole;
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
    return found == m_places.end() ? m_items->size() : found->second;
}

} // namespace Ksx::Core::Behavior
