#include "editing/dictionary.h"

#include "data/diagnosticlog.h"
#include "data/manipulatorcontextbase.h"
#include "ksx/core/stage.h"
#include <algorithm>

namespace Ksx::Core {

using Orv::Data::BaseObject;
using Orv::Data::ChangeRun;
using Orv::Data::ContainerListBase;
using Orv::Data::DataMessage;
using Orv::Data::ManipulatorContextBase;
using Orv::Data::RunKind;

namespace {

std::string textOf(Orv::Data::UInt key)
{
    return std::to_string(key);
}

const std::string& textOf(const std::string& key)
{
    return key;
}

// Two of the reports have a line by which they are known.
constexpr int DuplicateLine = 426;
constexpr int DeletedLine = 352;
constexpr int NoLine = 0;

void report(int line, const std::string& text)
{
    Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency,
                              "kestrix/common/include/ksx/core/dictionary", line, text);
}

template <class Key>
void report(int line, const char* problem, const Key& key)
{
    report(line, std::string(problem) + " '" + textOf(key) + "'");
}

bool isKept(const ChangeRun& run)
{
    return run.kind == RunKind::Kept || run.kind == RunKind::Changed;
}

} // namespace

// Hears of changes of one item's key. A listener of its own and no bridge with a signal: there is
// one for each item, of 32 bytes, where a bridge with one connection takes 880.
template <class Key>
class DictionaryBase<Key>::KeyListener final
    : public Orv::Core::ListenerSimple<Stage::Mirror, Orv::Data::ChangeType::Value>
{
public:
    KeyListener(DictionaryBase& dictionary, int number) : m_dictionary(dictionary), m_number(number)
    {}
    void deliver(const DataMessage& message) override
    {
        m_dictionary.keyChanged(message, m_number);
    }

private:
    DictionaryBase& m_dictionary;
    int m_number; // of the item's record
};

template <class Key>
struct DictionaryBase<Key>::Record
{
    Record(DictionaryBase& dictionary, int number, const BaseObject& theItem, const Key& theKey)
        : listener(dictionary, number), item(&theItem), key(theKey)
    {}
    KeyListener listener;
    Orv::Data::DataPointerBox<BaseObject> item;
    Key key; // under which the item was last entered
};

template <class Key>
DictionaryBase<Key>::DictionaryBase(const ContainerListBase& list, ManipulatorContextBase& context,
                                    KeyFunction keyOf)
    : m_keyOf(keyOf)
{
    refill(list, context);
}

template <class Key>
DictionaryBase<Key>::~DictionaryBase() = default;

template <class Key>
const Key& DictionaryBase<Key>::keyAt(std::size_t index) const
{
    return m_records[static_cast<std::size_t>(m_entries[index])]->key;
}

template <class Key>
const BaseObject* DictionaryBase<Key>::findItem(const Key& key) const
{
    const auto found = m_map.find(key);
    return found == m_map.end() ? nullptr : found->second->item.get();
}

template <class Key>
int DictionaryBase<Key>::add(const BaseObject& item, ManipulatorContextBase& context)
{
    if (m_freeNumbers.empty()) {
        m_freeNumbers.push_back(static_cast<int>(m_records.size()));
        m_records.emplace_back();
    }
    const int number = m_freeNumbers.back();
    m_freeNumbers.pop_back();
    const auto& attribute = m_keyOf(item);
    auto& record = m_records[static_cast<std::size_t>(number)];
    record = std::make_unique<Record>(*this, number, item, attribute.get());
    context.addListener(attribute, record->listener);
    if (!m_map.try_emplace(record->key, record.get()).second)
        report(DuplicateLine, "Duplicate identifier", record->key);
    return number;
}

template <class Key>
void DictionaryBase<Key>::drop(int number)
{
    auto& record = m_records[static_cast<std::size_t>(number)];
    if (m_map.erase(record->key) != 1)
        report(NoLine, "Unknown identifier", record->key);
    record.reset();
    m_freeNumbers.push_back(number);
}

template <class Key>
void DictionaryBase<Key>::refill(const ContainerListBase& list, ManipulatorContextBase& context)
{
    m_map.clear();
    m_entries.clear();
    m_freeNumbers.clear();
    m_records.clear();
    m_records.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        m_entries.pushBack(add(*list.childAt(i), context));
}

template <class Key>
void DictionaryBase<Key>::deliver(const DataMessage& message)
{
    const auto* list = static_cast<const ContainerListBase*>(message.object.get());
    if (list == nullptr)
        return;
    std::size_t expected = m_entries.size();
    for (const ChangeRun& run : message.runs.runs()) {
        expected += run.inNewList() ? run.count : 0;
        expected -= run.inOldList() ? run.count : 0;
    }
    // A dictionary that was made within an edit which was rolled back afterwards, and so without
    // notice, has entered what is no longer there.
    if (expected == list->size())
        follow(message, *list);
    else
        refill(*list, *message.context.access());
}

// Follows a script without moves, in place.
template <class Key>
void DictionaryBase<Key>::followPlain(const DataMessage& message, const ContainerListBase& list)
{
    std::size_t place = 0;
    for (const ChangeRun& run : message.runs.runs()) {
        for (std::size_t i = 0; run.kind == RunKind::Erased && i < run.count; ++i)
            drop(m_entries.take(place));
        for (std::size_t i = place; run.kind == RunKind::Inserted && i < place + run.count; ++i)
            m_entries.insert(i, add(*list.childAt(i), *message.context.access()));
        place += run.inNewList() ? run.count : 0;
    }
}

template <class Key>
void DictionaryBase<Key>::follow(const DataMessage& message, const ContainerListBase& list)
{
    const std::vector<ChangeRun>& runs = message.runs.runs();
    const bool isPlain =
        std::all_of(runs.begin(), runs.end(), [](const ChangeRun& run) { return run.link == 0; });
    if (isPlain) {
        followPlain(message, list);
        return;
    }
    std::size_t first = 0; // run that is not kept
    std::size_t kept = 0;
    for (; first < runs.size() && isKept(runs[first]); ++first)
        kept += runs[first].count;
    std::vector<int> old = m_entries.takeAll();
    for (std::size_t i = 0; i < kept; ++i)
        m_entries.pushBack(old[i]);
    old.erase(old.begin(), old.begin() + static_cast<std::ptrdiff_t>(kept));

    // Where the records of each run begin in `old`: a move's are found at its partner.
    std::vector<std::size_t> begins(runs.size());
    std::size_t cursor = 0;
    for (std::size_t i = first; i < runs.size(); ++i) {
        begins[i] = cursor;
        cursor += runs[i].inOldList() ? runs[i].count : 0;
    }
    const auto append = [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k)
            m_entries.pushBack(old[k]);
    };
    for (std::size_t i = first; i < runs.size(); ++i) {
        const ChangeRun& run = runs[i];
        std::size_t begin = begins[i];
        switch (run.kind) {
        case RunKind::Erased:
            for (std::size_t k = 0; k < run.count; ++k)
                drop(old[begin + k]);
            break;
        case RunKind::Inserted:
            for (std::size_t k = 0; k < run.count; ++k)
                m_entries.pushBack(add(*list.childAt(m_entries.size()), *message.context.access()));
            break;
        case RunKind::MovedAway:
            break;
        case RunKind::MovedHere:
            begin = begins[static_cast<std::size_t>(static_cast<std::ptrdiff_t>(i) + run.link)];
            [[fallthrough]];
        default:
            append(begin, begin + run.count);
        }
    }
    append(cursor, old.size());
}

template <class Key>
void DictionaryBase<Key>::keyChanged(const DataMessage& message, int number)
{
    Record& record = *m_records[static_cast<std::size_t>(number)]; // it holds the listener
    const BaseObject* item = record.item.get();
    if (item == nullptr || message.object.get() != &m_keyOf(*item)) {
        report(DeletedLine, "Rename identifier on deleted object");
        return;
    }
    if (m_map.erase(record.key) != 1)
        report(NoLine, "Unknown renamed identifier", record.key);
    record.key = m_keyOf(*item).get();
    if (!m_map.try_emplace(record.key, &record).second)
        report(NoLine, "Duplicate renamed identifier", record.key);
}

template class DictionaryBase<Orv::Data::UInt>;
template class DictionaryBase<Orv::Data::Text>;

} // namespace Ksx::Core
