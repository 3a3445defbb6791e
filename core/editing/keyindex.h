// Finds items of a list by a key, with an index beside lists that are not short.
#pragma once

#include "data/attribute.h"
#include "data/densemap.h"
#include "editing/dictionary.h"
#include "editing/itemindex.h"
#include <QtGlobal>
#include <algorithm>
#include <cstddef>
#include <vector>

namespace Ksx::Core {

// `Key` is UidKey, NameKey, IdentifierKey or another of their form. Unlike a Dictionary it knows
// all items of a key, and takes a walk while a change has not been told.
template <class Item, class Key>
class KeyIndex final : public ItemIndex<KeyIndex<Item, Key>, Item, typename Key::Type>
{
public:
    using List = Orv::Data::ContainerList<Item>;
    using Value = typename Key::Type;

    explicit KeyIndex(const List& list) { this->refill(list); }

    // Returns the first item of that key, null if there is none.
    static const Item* find(const List& list, const Value& key)
    {
        const KeyIndex* const index = list.size() < WorthIndexing ? nullptr : KeyIndex::of(list);
        if (index == nullptr)
            return firstOf(list, key);
        const auto found = index->m_items.find(key);
        if (found == index->m_items.end())
            return nullptr;
        return found->value.size() == 1 ? found->value.front() : firstOf(list, key);
    }

    // Returns all items of that key, in any order.
    static std::vector<const Item*> findAll(const List& list, const Value& key)
    {
        if (const KeyIndex* index = list.size() < WorthIndexing ? nullptr : KeyIndex::of(list)) {
            const auto found = index->m_items.find(key);
            return found == index->m_items.end() ? std::vector<const Item*>() : found->value;
        }
        std::vector<const Item*> items;
        for (const Item& item : list)
            if (Key::of(item).get() == key)
                items.push_back(&item);
        return items;
    }

    static Value read(const Item& item) { return Key::of(item).get(); }
    void enter(const Item& item, const Value& key) { m_items[key].push_back(&item); }
    void leave(const Item* item, const Value& key)
    {
        const auto found = m_items.find(key);
        Q_ASSERT(found != m_items.end());
        auto& items = found->value;
        items.erase(std::find(items.begin(), items.end(), item));
        if (items.empty())
            m_items.erase(found);
    }

private:
    static constexpr std::size_t WorthIndexing = 24; // below it a walk costs less

    static const Item* firstOf(const List& list, const Value& key)
    {
        for (const Item& item : list)
            if (Key::of(item).get() == key)
                return &item;
        return nullptr;
    }

    Orv::Data::DenseMap<Value, std::vector<const Item*>> m_items; // of a key, in any order
};

} // namespace Ksx::Core
