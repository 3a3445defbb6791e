#include "data/changeruns.h"

namespace Orv::Data {

namespace {

bool isMoved(const ChangeRun& run)
{
    return run.kind == RunKind::MovedAway || run.kind == RunKind::MovedHere;
}

std::ptrdiff_t signedOf(std::size_t value)
{
    return static_cast<std::ptrdiff_t>(value);
}

} // namespace

std::size_t ChangeRuns::partnerOf(std::size_t record) const
{
    return static_cast<std::size_t>(signedOf(record) + m_runs[record].link);
}

void ChangeRuns::insertRecord(std::size_t record, ChangeRun run)
{
    // A link grows when the new record comes to stand between its two ends.
    for (std::size_t i = 0; i < m_runs.size(); ++i) {
        if (!isMoved(m_runs[i]))
            continue;
        const std::size_t partner = partnerOf(i);
        if (i < record && partner >= record)
            ++m_runs[i].link;
        else if (i >= record && partner < record)
            --m_runs[i].link;
    }
    m_runs.insert(m_runs.begin() + signedOf(record), run);
}

void ChangeRuns::removeRecord(std::size_t record)
{
    for (std::size_t i = 0; i < m_runs.size(); ++i) {
        if (i == record || !isMoved(m_runs[i]))
            continue;
        const std::size_t partner = partnerOf(i);
        if (i < record && partner > record)
            --m_runs[i].link;
        else if (i > record && partner < record)
            ++m_runs[i].link;
    }
    m_runs.erase(m_runs.begin() + signedOf(record));
}

void ChangeRuns::splitOne(std::size_t record, std::size_t count)
{
    ChangeRun tail = m_runs[record];
    tail.count -= count;
    m_runs[record].count = count;
    tail.link = 0;
    insertRecord(record + 1, tail);
}

void ChangeRuns::splitRun(std::size_t record, std::size_t count)
{
    if (!isMoved(m_runs[record])) {
        splitOne(record, count);
        return;
    }
    // Both ends split alike, and the heads and the tails become partners.
    std::size_t first = record;
    std::size_t second = partnerOf(record);
    if (first > second)
        std::swap(first, second);
    splitOne(second, count);
    splitOne(first, count);
    ++second; // moved on by the tail of `first`
    const std::ptrdiff_t distance = signedOf(second) - signedOf(first);
    m_runs[first].link = distance;
    m_runs[second].link = -distance;
    m_runs[first + 1].link = distance;
    m_runs[second + 1].link = -distance;
}

std::size_t ChangeRuns::boundaryAt(std::size_t index)
{
    std::size_t position = 0;
    for (std::size_t record = 0; record < m_runs.size(); ++record) {
        if (!m_runs[record].inNewList())
            continue;
        if (position == index)
            return record;
        if (position + m_runs[record].count > index) {
            const bool partnerIsBefore = isMoved(m_runs[record]) && m_runs[record].link < 0;
            splitRun(record, index - position);
            return record + (partnerIsBefore ? 2 : 1);
        }
        position += m_runs[record].count;
    }
    if (position < index)
        m_runs.push_back({RunKind::Kept, index - position});
    return m_runs.size();
}

void ChangeRuns::insertRun(std::size_t index, std::size_t count)
{
    if (count == 0)
        return;
    // An inserted run that holds the position, or ends there, grows.
    std::size_t position = 0;
    for (ChangeRun& run : m_runs) {
        if (!run.inNewList())
            continue;
        if (run.kind == RunKind::Inserted && position <= index && index <= position + run.count) {
            run.count += count;
            return;
        }
        position += run.count;
        if (position > index)
            break;
    }
    insertRecord(boundaryAt(index), {RunKind::Inserted, count});
}

void ChangeRuns::eraseRun(std::size_t index, std::size_t count)
{
    boundaryAt(index + count);
    std::size_t record = boundaryAt(index);
    while (count > 0) {
        if (!m_runs[record].inNewList()) {
            ++record;
            continue;
        }
        count -= m_runs[record].count;
        switch (m_runs[record].kind) {
        case RunKind::Inserted:
            removeRecord(record);
            break;
        case RunKind::MovedHere: {
            // Gone from where it once stood.
            const std::size_t partner = partnerOf(record);
            m_runs[partner].kind = RunKind::Erased;
            m_runs[partner].link = 0;
            removeRecord(record);
            break;
        }
        default:
            m_runs[record].kind = RunKind::Erased;
            ++record;
        }
    }
    joinNeighbours();
}

void ChangeRuns::moveRun(std::size_t index, std::ptrdiff_t offset)
{
    if (offset == 0)
        return;
    boundaryAt(index + 1);
    std::size_t away = boundaryAt(index);
    const auto target = static_cast<std::size_t>(signedOf(index) + offset);
    const RunKind kind = m_runs[away].kind;
    if (kind == RunKind::Inserted) {
        removeRecord(away);
        insertRun(target, 1); // a position without the item, as is `target` from here on
        joinNeighbours();
        return;
    }
    if (kind == RunKind::MovedHere) {
        const std::size_t former = away;
        away = partnerOf(former);
        m_runs[away].link = 0;
        removeRecord(former);
        away -= away > former ? 1 : 0;
    }
    // While its partner is missing the old end is linked to itself, by which it is found again.
    m_runs[away] = {RunKind::MovedAway, 1, 0};
    const std::size_t here = boundaryAt(target);
    insertRecord(here, {RunKind::Inserted, 1});
    for (away = 0; m_runs[away].kind != RunKind::MovedAway || m_runs[away].link != 0;)
        ++away;
    m_runs[away].link = signedOf(here) - signedOf(away);
    m_runs[here] = {RunKind::MovedHere, 1, -m_runs[away].link};
    joinNeighbours();
}

void ChangeRuns::changeRun(std::size_t index, std::size_t count)
{
    boundaryAt(index + count);
    for (std::size_t record = boundaryAt(index); count > 0; ++record) {
        if (!m_runs[record].inNewList())
            continue;
        count -= m_runs[record].count;
        if (m_runs[record].kind == RunKind::Kept)
            m_runs[record].kind = RunKind::Changed;
    }
    joinNeighbours();
}

void ChangeRuns::joinNeighbours()
{
    // Moved runs stay apart, since their partners need not be neighbours too.
    for (std::size_t i = m_runs.size(); i-- > 1;) {
        if (m_runs[i].kind != m_runs[i - 1].kind || isMoved(m_runs[i]))
            continue;
        m_runs[i - 1].count += m_runs[i].count;
        removeRecord(i);
    }
    if (!m_runs.empty() && m_runs.back().kind == RunKind::Kept)
        m_runs.pop_back();
}

void ChangeRuns::mergeRuns(const ChangeRuns& second)
{
    std::size_t position = 0; // in the current list, which `second` turns into its own bit by bit
    for (std::size_t record = 0; record < second.m_runs.size(); ++record) {
        const ChangeRun& run = second.m_runs[record];
        switch (run.kind) {
        case RunKind::Erased:
            eraseRun(position, run.count);
            continue; // the position is now that of what followed
        case RunKind::Inserted:
            insertRun(position, run.count);
            break;
        case RunKind::Changed:
            changeRun(position, run.count);
            break;
        case RunKind::MovedAway:
        case RunKind::MovedHere:
            if (run.link > 0)
                replayMove(second, record, position);
            if (run.kind == RunKind::MovedAway)
                continue;
            break;
        case RunKind::Kept:
            break;
        }
        position += run.count;
    }
}

void ChangeRuns::replayMove(const ChangeRuns& second, std::size_t record, std::size_t position)
{
    // Called at the first end of a move; the other lies ahead, where nothing has been replayed
    // except the moves that began before `record`. Between the ends, then, stand the old items
    // that have not been moved off yet and the items that have been moved in already.
    const ChangeRun& run = second.m_runs[record];
    const std::size_t partner = second.partnerOf(record);
    std::size_t distance = 0;
    for (std::size_t i = record + 1; i < partner; ++i) {
        const ChangeRun& between = second.m_runs[i];
        const bool isDone = isMoved(between) && second.partnerOf(i) < record;
        if (between.kind == RunKind::MovedHere ? isDone : between.inOldList() && !isDone)
            distance += between.count;
    }
    if (run.kind == RunKind::MovedAway) {
        for (std::size_t i = 0; i < run.count; ++i)
            moveRun(position, signedOf(distance + run.count - 1));
    } else {
        for (std::size_t i = 0; i < run.count; ++i)
            moveRun(position + distance + i, -signedOf(distance));
    }
}

} // namespace Orv::Data
