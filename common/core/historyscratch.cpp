#include "core/historyscratch.h"

#include "core/manipulatorattribute.h"
#include "core/manipulatorbase.h"
#include "core/manipulatorlist.h"
#include "core/manipulatorunion.h"
#include <utility>

namespace Orv::Core {

// The inverse of one primitive change of one object.
class HistoryScratch::Item
{
public:
    explicit Item(const ManipulatorBase& manipulator)
        : m_factory(manipulator.createFactory()), m_target(manipulator.getData())
    {}
    virtual ~Item() = default;
    virtual void undo(ManipulatorContext& context) = 0;
    virtual void settle(ManipulatorContext&) {}
    // True if `next`, which came right behind this one, adds nothing that is needed.
    virtual bool merge(const Item&) { return false; }

    bool hasSameTarget(const Item& other) const { return m_target == other.m_target; }

protected:
    // Throws ExceptionCantUndo if the target has died.
    std::unique_ptr<ManipulatorBase> makeManipulator(ManipulatorContext& context) const
    {
        if (!m_target)
            throw ExceptionCantUndo();
        return m_factory->create(*m_target, context);
    }

private:
    std::unique_ptr<ManipulatorFactoryBase> m_factory;
    Data::DataPointerBox<Data::BaseObject> m_target;
};

namespace {

using Item = HistoryScratch::Item;

class ItemAttribute final : public Item
{
public:
    explicit ItemAttribute(const ManipulatorAttributeBase& manipulator)
        : Item(manipulator), m_oldValue(manipulator.getValue())
    {}
    void undo(ManipulatorContext& context) override
    {
        const auto manipulator = makeManipulator(context);
        try {
            static_cast<ManipulatorAttributeBase&>(*manipulator).setValue(m_oldValue);
        } catch (const boost::bad_any_cast&) {
            throw ExceptionCantUndo();
        }
    }
    bool merge(const Item& next) override
    {
        return hasSameTarget(next) && dynamic_cast<const ItemAttribute*>(&next) != nullptr;
    }

private:
    boost::any m_oldValue;
};

class ItemList : public Item
{
public:
    using Item::Item;
    void undo(ManipulatorContext& context) final
    {
        const auto manipulator = makeManipulator(context);
        try {
            undoOn(static_cast<ManipulatorListBase&>(*manipulator));
        } catch (const ExceptionOutOfBounds&) {
            throw ExceptionCantUndo();
        }
    }

protected:
    virtual void undoOn(ManipulatorListBase& list) = 0;
};

class ItemListInsert final : public ItemList
{
public:
    ItemListInsert(const ManipulatorListBase& manipulator, std::size_t index, std::size_t count)
        : ItemList(manipulator), m_index(index), m_count(count)
    {}

private:
    void undoOn(ManipulatorListBase& list) override { list.erase(m_index, m_count); }

    std::size_t m_index;
    std::size_t m_count;
};

class ItemListErase final : public ItemList
{
public:
    ItemListErase(const ManipulatorListBase& manipulator, std::size_t index,
                  std::vector<Data::BaseObject*> items)
        : ItemList(manipulator), m_index(index)
    {
        m_items.reserve(items.size());
        for (Data::BaseObject* item : items)
            m_items.emplace_back(item);
    }
    void settle(ManipulatorContext& context) override
    {
        for (const auto& item : m_items)
            context.settleObject(*item);
    }

private:
    void undoOn(ManipulatorListBase& list) override
    {
        if (m_index > list.list()->size())
            throw ExceptionOutOfBounds(); // checked here, so that the items are kept
        list.insert(m_index, std::exchange(m_items, {}));
    }

    std::size_t m_index;
    std::vector<std::unique_ptr<Data::BaseObject>> m_items;
};

class ItemListMove final : public ItemList
{
public:
    ItemListMove(const ManipulatorListBase& manipulator, std::size_t index, std::ptrdiff_t offset)
        : ItemList(manipulator), m_index(index), m_offset(offset)
    {}
    // The place of the next move is not looked at: two moves in a row are taken for the steps of
    // one item. Histories depend on it.
    bool merge(const Item& next) override
    {
        const auto* move = dynamic_cast<const ItemListMove*>(&next);
        if (move == nullptr || !hasSameTarget(next))
            return false;
        m_offset += move->m_offset;
        return true;
    }

private:
    void undoOn(ManipulatorListBase& list) override
    {
        list.move(static_cast<std::size_t>(static_cast<std::ptrdiff_t>(m_index) + m_offset),
                  -m_offset);
    }

    std::size_t m_index;
    std::ptrdiff_t m_offset;
};

class ItemUnion final : public Item
{
public:
    ItemUnion(const ManipulatorUnionBase& manipulator, std::unique_ptr<Data::BaseObject> oldChild)
        : Item(manipulator), m_oldChild(std::move(oldChild))
    {}
    void undo(ManipulatorContext& context) override
    {
        const auto manipulator = makeManipulator(context);
        static_cast<ManipulatorUnionBase&>(*manipulator).set(std::move(m_oldChild));
    }
    void settle(ManipulatorContext& context) override
    {
        if (m_oldChild != nullptr)
            context.settleObject(*m_oldChild);
    }

private:
    std::unique_ptr<Data::BaseObject> m_oldChild;
};

} // namespace

HistoryScratch::HistoryScratch() = default;
HistoryScratch::~HistoryScratch() = default;

void HistoryScratch::add(std::unique_ptr<Item> item)
{
    if (!m_items.empty() && m_items.back()->merge(*item))
        return;
    m_items.push_back(std::move(item));
}

void HistoryScratch::addAttribute(const ManipulatorAttributeBase& manipulator)
{
    add(std::make_unique<ItemAttribute>(manipulator));
}

void HistoryScratch::addListInsert(const ManipulatorListBase& manipulator, std::size_t index,
                                   std::size_t count)
{
    add(std::make_unique<ItemListInsert>(manipulator, index, count));
}

void HistoryScratch::addListErase(const ManipulatorListBase& manipulator, std::size_t index,
                                  std::vector<Data::BaseObject*> items)
{
    add(std::make_unique<ItemListErase>(manipulator, index, std::move(items)));
}

void HistoryScratch::addListMove(const ManipulatorListBase& manipulator, std::size_t index,
                                 std::ptrdiff_t offset)
{
    add(std::make_unique<ItemListMove>(manipulator, index, offset));
}

void HistoryScratch::addUnion(const ManipulatorUnionBase& manipulator,
                              std::unique_ptr<Data::BaseObject> oldChild)
{
    add(std::make_unique<ItemUnion>(manipulator, std::move(oldChild)));
}

void HistoryScratch::undoAll(ManipulatorContext& context)
{
    // By count: in a rollback the undoing appends its own items to this very list.
    auto place = m_items.end();
    for (std::size_t left = m_items.size(); left > 0; --left)
        (*--place)->undo(context);
}

void HistoryScratch::settleAll(ManipulatorContext& context)
{
    for (const auto& item : m_items)
        item->settle(context);
}

void HistoryScratch::rollback(ManipulatorContext& context)
{
    if (m_items.empty())
        return;
    const auto last = std::prev(m_items.end());
    undoAll(context);
    m_items.erase(m_items.begin(), std::next(last));
    settleAll(context);
}

void HistoryScratch::append(HistoryScratch& other)
{
    bool mayMerge = true;
    for (auto& item : other.m_items) {
        if (mayMerge && !m_items.empty() && m_items.back()->merge(*item))
            continue;
        mayMerge = false;
        m_items.push_back(std::move(item));
    }
    other.m_items.clear();
}

} // namespace Orv::Core
