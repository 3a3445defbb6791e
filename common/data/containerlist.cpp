#include "data/containerlist.h"

#include "data/objectmemory.h"
#include "data/row.h"
#include <QtGlobal>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

namespace Orv::Data {

namespace {
// Items between a place and the nearer end of its array, from which on a row of blocks costs less.
constexpr std::size_t Far = 1024;

// Most lists have an item or two, and their blocks come from where the objects come from.
constexpr std::size_t SmallBlock = 128; // bytes

void* allocateBlock(std::size_t size)
{
    if (size <= SmallBlock)
        return ObjectMemory::take(size);
    if (void* block = std::malloc(size))
        return block;
    throw std::bad_alloc();
}

void freeBlock(void* block, std::size_t size) noexcept
{
    if (size <= SmallBlock)
        ObjectMemory::giveBack(block, size);
    else
        std::free(block);
}

// Returns a longer block that begins as the former one, which is gone. Null is one of no size.
void* growBlock(void* former, std::size_t formerSize, std::size_t size)
{
    if (formerSize > SmallBlock) {
        if (void* block = std::realloc(former, size))
            return block;
        throw std::bad_alloc();
    }
    void* const block = allocateBlock(size);
    if (former != nullptr) {
        std::memcpy(block, former, formerSize);
        ObjectMemory::giveBack(former, formerSize);
    }
    return block;
}

} // namespace

PointerArray::~PointerArray()
{
    if (m_block != nullptr && m_block->isRow != 0)
        delete &row();
    if (m_block != nullptr)
        freeBlock(m_block, sizeOf(m_block->capacity));
}

BaseObject* PointerArray::inRow(std::size_t index) const
{
    return row()[index];
}

bool PointerArray::isRowAt(std::size_t index)
{
    if (m_block == nullptr || (m_block->isRow == 0 && std::min(index, size() - index) <= Far))
        return false;
    if (m_block->isRow == 0)
        becomeRow();
    return true;
}

void PointerArray::becomeRow()
{
    auto made = std::make_unique<Row<BaseObject*>>();
    for (std::size_t i = 0; i < size(); ++i)
        made->pushBack(items()[i]);
    auto* const block = static_cast<Block*>(allocateBlock(sizeOf(1)));
    *block = {m_block->size, 1, 0, 1};
    *reinterpret_cast<Row<BaseObject*>**>(block + 1) = made.release();
    freeBlock(m_block, sizeOf(m_block->capacity));
    m_block = block;
}

BaseObject* const* PointerArray::flatten()
{
    if (m_block == nullptr)
        return nullptr;
    if (m_block->isRow != 0) {
        const std::unique_ptr<Row<BaseObject*>> former(&row());
        const std::vector<BaseObject*> pointers = former->takeAll();
        freeBlock(std::exchange(m_block, nullptr), sizeOf(1));
        insert(0, pointers.data(), pointers.size());
    }
    return items();
}

// Makes room for so many items behind the first one.
void PointerArray::reserve(std::size_t capacity)
{
    if (m_block != nullptr && m_block->begin + capacity <= m_block->capacity)
        return;
    // Where half of the block is free in front, the items move there, and so at most once for each
    // that was erased there.
    if (m_block != nullptr && m_block->begin >= m_block->capacity / 2 &&
        capacity <= m_block->capacity) {
        std::memmove(m_block + 1, items(), size() * sizeof(BaseObject*));
        m_block->begin = 0;
        return;
    }
    capacity += m_block == nullptr ? 0 : m_block->begin;
    if (capacity > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("list<T> too long");
    // One item exactly at first, since that is what most lists come to hold; then by halves.
    const std::size_t old = m_block == nullptr ? 0 : m_block->capacity;
    const std::size_t limit = std::numeric_limits<std::uint32_t>::max();
    const std::size_t grown =
        std::min(limit, std::max(capacity, old + old / 2 + (old > 0 ? 2 : 0)));
    const bool isNew = m_block == nullptr;
    m_block = static_cast<Block*>(growBlock(m_block, isNew ? 0 : sizeOf(old), sizeOf(grown)));
    if (isNew)
        *m_block = {};
    m_block->capacity = static_cast<std::uint32_t>(grown);
}

void PointerArray::insert(std::size_t index, BaseObject* const* pointers, std::size_t count)
{
    if (count == 0)
        return;
    const std::size_t oldSize = size();
    Q_ASSERT(index <= oldSize);
    if (isRowAt(index)) {
        if (count > std::numeric_limits<std::uint32_t>::max() - oldSize)
            throw std::length_error("list<T> too long");
        for (std::size_t i = 0; i < count; ++i, ++m_block->size)
            row().insert(index + i, pointers[i]);
        return;
    }
    if (m_block != nullptr && count <= m_block->begin && index < oldSize / 2) {
        BaseObject** const first = items();
        std::memmove(first - count, first, index * sizeof(BaseObject*));
        std::memcpy(first - count + index, pointers, count * sizeof(BaseObject*));
        m_block->begin -= static_cast<std::uint32_t>(count);
        m_block->size += static_cast<std::uint32_t>(count);
        return;
    }
    reserve(oldSize + count);
    BaseObject** place = items() + index;
    std::memmove(place + count, place, (oldSize - index) * sizeof(BaseObject*));
    std::memcpy(place, pointers, count * sizeof(BaseObject*));
    m_block->size = static_cast<std::uint32_t>(oldSize + count);
}

void PointerArray::erase(std::size_t index, std::size_t count)
{
    if (count == 0)
        return;
    Q_ASSERT(index <= size() && count <= size() - index);
    const std::size_t behind = size() - index - count;
    if (isRowAt(std::min(index, behind))) {
        for (std::size_t i = 0; i < count; ++i)
            row().take(index);
    } else if (index < behind) {
        std::memmove(items() + count, items(), index * sizeof(BaseObject*));
        m_block->begin += static_cast<std::uint32_t>(count);
    } else {
        BaseObject** place = items() + index;
        std::memmove(place, place + count, behind * sizeof(BaseObject*));
    }
    m_block->size -= static_cast<std::uint32_t>(count);
    if (m_block->size == 0) {
        const std::size_t size = sizeOf(m_block->capacity);
        if (m_block->isRow != 0)
            delete &row();
        freeBlock(std::exchange(m_block, nullptr), size);
    }
}

void PointerArray::move(std::size_t from, std::size_t to)
{
    Q_ASSERT(from < size() && to < size());
    const std::size_t distance = from < to ? to - from : from - to;
    if (m_block->isRow == 0 && distance > Far)
        becomeRow();
    if (m_block->isRow != 0) {
        row().insert(to, row().take(from));
        return;
    }
    BaseObject** all = items();
    if (from < to)
        std::rotate(all + from, all + from + 1, all + to + 1);
    else
        std::rotate(all + to, all + from, all + from + 1);
}

std::size_t PointerArray::indexOf(const BaseObject* pointer)
{
    // From both ends: items mostly go in one of the two orders.
    const std::size_t count = size();
    for (std::size_t i = 0; !isRowAt(i) && i < (count + 1) / 2; ++i) {
        if (items()[i] == pointer)
            return i;
        if (items()[count - 1 - i] == pointer)
            return count - 1 - i;
    }
    const bool isRow = m_block != nullptr && m_block->isRow != 0;
    return isRow ? row().indexOf(pointer) : count;
}

void ContainerListBase::clear()
{
    destroy(m_items.flatten(), m_items.size());
    m_items.erase(0, m_items.size());
}

void ContainerListBase::pushBack(std::unique_ptr<BaseObject> child)
{
    Q_ASSERT(child != nullptr);
    BaseObject* item = child.get();
    m_items.insert(m_items.size(), &item, 1);
    setParent(*child.release(), this);
}

std::size_t ContainerListBase::indexOf(const BaseObject& child) const
{
    return m_items.indexOf(&child);
}

void ContainerListBase::insertOwned(std::size_t index, const std::vector<BaseObject*>& items)
{
    Q_ASSERT(index <= size());
    m_items.insert(index, items.data(), items.size());
    for (BaseObject* item : items)
        setParent(*item, this);
}

std::vector<BaseObject*> ContainerListBase::takeOwned(std::size_t index, std::size_t count)
{
    Q_ASSERT(index <= size() && count <= size() - index);
    std::vector<BaseObject*> taken;
    taken.reserve(count);
    for (std::size_t i = index; i < index + count; ++i)
        taken.push_back(m_items[i]);
    for (BaseObject* item : taken)
        setParent(*item, nullptr);
    m_items.erase(index, count);
    return taken;
}

} // namespace Orv::Data
