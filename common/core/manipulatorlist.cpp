#include "core/manipulatorlist.h"

#include "core/historyscratch.h"
#include "data/changeevent.h"
#include <algorithm>
#include <numeric>

namespace Orv::Core {

using Data::ChangeRuns;
using Data::ChangeType;
using Data::ContainerListBase;

void ManipulatorListBase::clear()
{
    if (!list()->isEmpty())
        erase(0, list()->size());
}

void ManipulatorListBase::pushBack(std::unique_ptr<Data::BaseObject> item)
{
    insert(list()->size(), std::move(item));
}

void ManipulatorListBase::insert(std::size_t index, std::unique_ptr<Data::BaseObject> item)
{
    std::vector<std::unique_ptr<Data::BaseObject>> items;
    items.push_back(std::move(item));
    insert(index, std::move(items));
}

void ManipulatorListBase::insert(std::size_t index,
                                 std::vector<std::unique_ptr<Data::BaseObject>> items)
{
    if (index > list()->size())
        throw ExceptionOutOfBounds();
    std::vector<Data::BaseObject*> pointers;
    pointers.reserve(items.size());
    for (const auto& item : items)
        pointers.push_back(item.get());
    static_cast<ContainerListBase&>(object()).insertOwned(index, pointers);
    for (auto& item : items)
        static_cast<void>(item.release()); // the list owns them now
    scratch().addListInsert(*this, index, pointers.size());
    for (const Data::BaseObject* pointer : pointers)
        noteInserted(*pointer);
    ChangeRuns runs;
    runs.insertRun(index, pointers.size());
    notify(ChangeType::Inserted, runs, {pointers.data(), pointers.size()});
}

void ManipulatorListBase::erase(std::size_t index, std::size_t count)
{
    if (index > list()->size() || count > list()->size() - index)
        throw ExceptionOutOfBounds();
    for (std::size_t i = index; i < index + count; ++i)
        notifyRemoved(*list()->childAt(i));
    auto items = static_cast<ContainerListBase&>(object()).takeOwned(index, count);
    scratch().addListErase(*this, index, items);
    ChangeRuns runs;
    runs.eraseRun(index, count);
    notify(ChangeType::Erased, runs, {items.data(), items.size()});
}

bool ManipulatorListBase::erase(const Data::BaseObject* item)
{
    const std::size_t index = item == nullptr ? list()->size() : list()->indexOf(*item);
    if (index == list()->size())
        return false;
    erase(index, 1);
    return true;
}

void ManipulatorListBase::reorder(const std::vector<std::size_t>& order)
{
    std::vector<std::size_t> places(list()->size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::vector<std::size_t> named = order;
    std::sort(named.begin(), named.end());
    if (named != places)
        throw ExceptionOutOfBounds();
    std::vector<const Data::BaseObject*> items;
    items.reserve(order.size());
    for (const std::size_t place : order)
        items.push_back(list()->childAt(place));
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::size_t from = list()->childAt(i) == items[i] ? i : list()->indexOf(*items[i]);
        move(from, static_cast<std::ptrdiff_t>(i) - static_cast<std::ptrdiff_t>(from));
    }
}

void ManipulatorListBase::move(std::size_t index, std::ptrdiff_t offset)
{
    const auto size = static_cast<std::ptrdiff_t>(list()->size());
    const auto from = static_cast<std::ptrdiff_t>(index);
    // In this form neither the sum nor the negation can overflow.
    if (index >= list()->size() || offset < -from || offset >= size - from)
        throw ExceptionOutOfBounds();
    if (offset == 0)
        return;
    static_cast<ContainerListBase&>(object()).moveOwned(index,
                                                        static_cast<std::size_t>(from + offset));
    scratch().addListMove(*this, index, offset);
    ChangeRuns runs;
    runs.moveRun(index, offset);
    Data::BaseObject* moved =
        static_cast<ContainerListBase&>(object()).childAt(static_cast<std::size_t>(from + offset));
    notify(ChangeType::Moved, runs, {&moved, 1});
}

} // namespace Orv::Core
