#include "data/containerlist.h"

#include <QtGlobal>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace Orv::Data {

PointerArray::~PointerArray()
{
    std::free(m_block);
}

void PointerArray::reserve(std::size_t capacity)
{
    if (m_block != nullptr && capacity <= m_block->capacity)
        return;
    if (capacity > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("list<T> too long");
    // One item exactly at first, since that is what most lists come to hold; then by halves.
    const std::size_t old = m_block == nullptr ? 0 : m_block->capacity;
    const std::size_t limit = std::numeric_limits<std::uint32_t>::max();
    const std::size_t grown =
        std::min(limit, std::max(capacity, old + old / 2 + (old > 0 ? 2 : 0)));
    void* block = std::realloc(m_block, sizeof(Block) + grown * sizeof(BaseObject*));
    if (block == nullptr)
        throw std::bad_alloc();
    const bool isNew = m_block == nullptr;
    m_block = static_cast<Block*>(block);
    m_block->capacity = static_cast<std::uint32_t>(grown);
    if (isNew)
        m_block->size = 0;
}

void PointerArray::insert(std::size_t index, BaseObject* const* pointers, std::size_t count)
{
    if (count == 0)
        return;
    const std::size_t oldSize = size();
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
    BaseObject** place = items() + index;
    std::memmove(place, place + count, (size() - index - count) * sizeof(BaseObject*));
    m_block->size -= static_cast<std::uint32_t>(count);
    if (m_block->size == 0) {
        std::free(m_block);
        m_block = nullptr;
    }
}

void PointerArray::move(std::size_t from, std::size_t to)
{
    BaseObject** all = items();
    if (from < to)
        std::rotate(all + from, all + from + 1, all + to + 1);
    else
        std::rotate(all + to, all + from, all + from + 1);
}

void ContainerListBase::clear()
{
    destroy(m_items.begin(), m_items.size());
    m_items.erase(0, m_items.size());
}

void ContainerListBase::pushBack(std::unique_ptr<BaseObject> child)
{
    BaseObject* item = child.get();
    m_items.insert(m_items.size(), &item, 1);
    setParent(*child.release(), this);
}

std::size_t ContainerListBase::indexOf(const BaseObject& child) const
{
    return static_cast<std::size_t>(
        std::distance(m_items.begin(), std::find(m_items.begin(), m_items.end(), &child)));
}

void ContainerListBase::insertOwned(std::size_t index, const std::vector<BaseObject*>& items)
{
    m_items.insert(index, items.data(), items.size());
    for (BaseObject* item : items)
        setParent(*item, this);
}

std::vector<BaseObject*> ContainerListBase::takeOwned(std::size_t index, std::size_t count)
{
    std::vector<BaseObject*> taken(m_items.begin() + index, m_items.begin() + index + count);
    for (BaseObject* item : taken)
        setParent(*item, nullptr);
    m_items.erase(index, count);
    return taken;
}

} // namespace Orv::Data
