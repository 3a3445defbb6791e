#include "core/historyscratch.h"

#include "core/manipulatorattribute.h"
#include "core/manipulatorbase.h"
#include "core/manipulatorlist.h"
#include "core/manipulatorunion.h"
#include "data/diagnosticlog.h"
#include <QtGlobal>
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
    // Cuts off the listeners of an object that has left the tree for good.
    static void settleObject(ManipulatorContext& context, Data::BaseObject& object)
    {
        context.takeOut(object);
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
            settleObject(context, *item);
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

// Moves in a row within one list are one item, which knows where each of them began.
class ItemListMove final : public ItemList
{
public:
    ItemListMove(const ManipulatorListBase& manipulator, std::size_t index, std::ptrdiff_t offset)
        : ItemList(manipulator), m_moves{{index, offset}}
    {}
    bool merge(const Item& next) override
    {
        const auto* item = dynamic_cast<const ItemListMove*>(&next);
        if (item == nullptr || !hasSameTarget(next))
            return false;
        for (const Move& move : item->m_moves)
            add(move);
        return true;
    }

private:
    struct Move
    {
        std::size_t index; // before the move
        std::ptrdiff_t offset;

        std::size_t target() const
        {
            return static_cast<std::size_t>(static_cast<std::ptrdiff_t>(index) + offset);
        }
    };

    // A move that goes on with the item that the last one moved lengthens the last one.
    void add(const Move& move)
    {
        if (move.index == m_moves.back().target())
            m_moves.back().offset += move.offset;
        else
            m_moves.push_back(move);
    }

    void undoOn(ManipulatorListBase& list) override
    {
        // All are checked before the first is done.
        const std::size_t size = list.list()->size();
        for (const Move& move : m_moves)
            if (move.index >= size || move.target() >= size)
                throw ExceptionOutOfBounds();
        for (auto move = m_moves.rbegin(); move != m_moves.rend(); ++move)
            list.move(move->target(), -move->offset);
    }

    std::vector<Move> m_moves;
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
            settleObject(context, *m_oldChild);
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
    Q_ASSERT(&context.scratch() != this);
    for (; !m_items.empty(); m_items.pop_back())
        m_items.back()->undo(context);
}

void HistoryScratch::settleAll(ManipulatorContext& context)
{
    for (const auto& item : m_items)
        item->settle(context);
}

void HistoryScratch::rollback(ManipulatorContext& context)
{
    Q_ASSERT(&context.scratch() == this);
    // The undoing records its own items in this very list.
    const auto done = std::exchange(m_items, {});
    for (auto item = done.rbegin(); item != done.rend(); ++item) {
        try {
            (*item)->undo(context);
        } catch (const ExceptionCantUndo&) {
            // The tree was changed past the history. The other items can still be reversed.
            DiagnosticLog::write(LogLevel::Inconsistency, "core/historyscratch", 0,
                                 "Refused edit cannot be reversed whole");
        }
    }
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
