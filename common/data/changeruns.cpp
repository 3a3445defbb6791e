#include "data/changeruns.h"

#include <algorithm>
#include <limits>

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

// A script within a vector.
struct Script
{
    const ChangeRun* first;
    std::size_t count;

    const ChangeRun& operator[](std::size_t record) const { return first[record]; }
    std::size_t partnerOf(std::size_t record) const
    {
        return static_cast<std::size_t>(signedOf(record) + first[record].link);
    }
    // What lies behind the last run is kept.
    RunKind kindOf(std::size_t record) const
    {
        return record < count ? first[record].kind : RunKind::Kept;
    }
};

// Walks over the records of a script that are in one of its two lists.
class Cursor
{
public:
    Cursor(const Script& script, bool (ChangeRun::*isListed)() const)
        : m_script(script), m_isListed(isListed)
    {
        settle();
    }
    bool isAtEnd() const { return m_record == m_script.count; }
    std::size_t record() const { return m_record; }
    // The items of the record that are still ahead.
    std::size_t left() const { return m_left; }
    void advance(std::size_t count)
    {
        if (isAtEnd())
            return;
        m_left -= count;
        if (m_left != 0)
            return;
        ++m_record;
        settle();
    }

private:
    void settle()
    {
        while (!isAtEnd() && !(m_script[m_record].*m_isListed)())
            ++m_record;
        m_left = isAtEnd() ? std::numeric_limits<std::size_t>::max() : m_script[m_record].count;
    }

    const Script& m_script;
    bool (ChangeRun::*m_isListed)() const;
    std::size_t m_record = 0;
    std::size_t m_left = 0;
};

// Makes one script of two. The second one begins with the list to which the first one leads. That
// list is cut into pieces, so that each script does one thing to a piece.
class Composition
{
public:
    Composition(const Script& first, const Script& second)
        : m_first(first), m_second(second), m_piecesOfFirst(first.count),
          m_piecesOfSecond(second.count)
    {
        cut();
    }

    std::vector<ChangeRun> result()
    {
        std::size_t record = 0;
        std::size_t other = 0;
        for (std::size_t i = 0; i <= m_pieces.size(); ++i) {
            const bool isEnd = i == m_pieces.size();
            const std::size_t next = isEnd ? m_first.count : m_pieces[i].first;
            const std::size_t nextOther = isEnd ? m_second.count : m_pieces[i].second;
            for (; record < next; ++record)
                if (!m_first[record].inNewList())
                    addFormer(record);
            for (; other < nextOther; ++other)
                if (!m_second[other].inOldList())
                    addLatter(other);
            if (!isEnd)
                addPiece(i);
        }
        if (!m_result.empty() && m_result.back().kind == RunKind::Kept)
            m_result.pop_back();
        return std::move(m_result);
    }

private:
    static constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

    struct Piece
    {
        std::size_t first; // the record of each script, its size behind the last one
        std::size_t second;
        std::size_t count;
        std::size_t end = None; // in the result: the end of the piece's move that came first
    };

    void cut()
    {
        Cursor first(m_first, &ChangeRun::inNewList);
        Cursor second(m_second, &ChangeRun::inOldList);
        for (std::size_t record = None, other = None; !first.isAtEnd() || !second.isAtEnd();) {
            if (first.record() != record && !first.isAtEnd())
                m_piecesOfFirst[first.record()] = m_pieces.size();
            if (second.record() != other && !second.isAtEnd())
                m_piecesOfSecond[second.record()] = m_pieces.size();
            record = first.record();
            other = second.record();
            m_pieces.push_back({record, other, std::min(first.left(), second.left())});
            first.advance(m_pieces.back().count);
            second.advance(m_pieces.back().count);
        }
    }

    // Adds the items that the first script has erased here. Adds the items that it has moved away by
    // the pieces into which the other end of the move is cut.
    void addFormer(std::size_t record)
    {
        if (!isMoved(m_first[record])) {
            add(m_first[record].kind, m_first[record].count);
            return;
        }
        const std::size_t partner = m_first.partnerOf(record);
        for (std::size_t i = m_piecesOfFirst[partner];
             i < m_pieces.size() && m_pieces[i].first == partner; ++i) {
            if (m_second.kindOf(m_pieces[i].second) == RunKind::Erased)
                add(RunKind::Erased, m_pieces[i].count);
            else
                addMoved(RunKind::MovedAway, i);
        }
    }

    // Adds the items that the second script has inserted here or moved here.
    void addLatter(std::size_t record)
    {
        if (!isMoved(m_second[record])) {
            add(m_second[record].kind, m_second[record].count);
            return;
        }
        const std::size_t partner = m_second.partnerOf(record);
        for (std::size_t i = m_piecesOfSecond[partner];
             i < m_pieces.size() && m_pieces[i].second == partner; ++i) {
            if (m_first.kindOf(m_pieces[i].first) == RunKind::Inserted)
                add(RunKind::Inserted, m_pieces[i].count);
            else
                addMoved(RunKind::MovedHere, i);
        }
    }

    void addPiece(std::size_t index)
    {
        const RunKind first = m_first.kindOf(m_pieces[index].first);
        const RunKind second = m_second.kindOf(m_pieces[index].second);
        const bool stays = second == RunKind::Kept || second == RunKind::Changed;
        const bool stayed = first == RunKind::Kept || first == RunKind::Changed;
        if (stayed && second == RunKind::MovedAway)
            addMoved(RunKind::MovedAway, index);
        else if (stayed)
            add(second == RunKind::Kept ? first : second, m_pieces[index].count);
        else if (stays && first == RunKind::MovedHere)
            addMoved(RunKind::MovedHere, index);
        else if (stays)
            add(first, m_pieces[index].count);
    }

    void add(RunKind kind, std::size_t count)
    {
        if (!m_result.empty() && m_result.back().kind == kind)
            m_result.back().count += count;
        else
            m_result.push_back({kind, count});
    }

    // Moved runs stay apart, since their partners need not be neighbours too.
    void addMoved(RunKind kind, std::size_t index)
    {
        Piece& piece = m_pieces[index];
        m_result.push_back({kind, piece.count});
        if (piece.end == None) {
            piece.end = m_result.size() - 1;
            return;
        }
        m_result[piece.end].link = signedOf(m_result.size() - 1 - piece.end);
        m_result.back().link = -m_result[piece.end].link;
    }

    const Script m_first;
    const Script m_second;
    std::vector<Piece> m_pieces;
    std::vector<std::size_t> m_piecesOfFirst; // by record, the first one of each
    std::vector<std::size_t> m_piecesOfSecond;
    std::vector<ChangeRun> m_result;
};

} // namespace

const std::vector<ChangeRun>& ChangeRuns::runs() const
{
    while (!m_begins.empty())
        joinLastTwo();
    return m_runs;
}

void ChangeRuns::clear()
{
    m_runs.clear();
    m_begins.clear();
}

void ChangeRuns::joinLastTwo() const
{
    const std::size_t second = m_begins.back();
    m_begins.pop_back();
    const std::size_t first = m_begins.empty() ? 0 : m_begins.back();
    const std::vector<ChangeRun> joined =
        Composition({m_runs.data() + first, second - first},
                    {m_runs.data() + second, m_runs.size() - second})
            .result();
    m_runs.erase(m_runs.begin() + signedOf(first), m_runs.end());
    m_runs.insert(m_runs.end(), joined.begin(), joined.end());
}

void ChangeRuns::append(const ChangeRun* first, std::size_t count)
{
    const ChangeRun* const last = first + count;
    while (first != last && first->count == 0)
        ++first;
    if (!m_runs.empty())
        m_begins.push_back(m_runs.size());
    m_runs.insert(m_runs.end(), first, last);
    while (!m_begins.empty()) {
        const std::size_t begin = m_begins.size() == 1 ? 0 : m_begins[m_begins.size() - 2];
        if (2 * (m_runs.size() - m_begins.back()) < m_begins.back() - begin)
            return;
        joinLastTwo();
    }
}

void ChangeRuns::insertRun(std::size_t index, std::size_t count)
{
    const ChangeRun edit[] = {{RunKind::Kept, index}, {RunKind::Inserted, count}};
    if (count != 0)
        append(edit, std::size(edit));
}

void ChangeRuns::eraseRun(std::size_t index, std::size_t count)
{
    const ChangeRun edit[] = {{RunKind::Kept, index}, {RunKind::Erased, count}};
    if (count != 0)
        append(edit, std::size(edit));
}

void ChangeRuns::moveRun(std::size_t index, std::ptrdiff_t offset)
{
    if (offset == 0)
        return;
    const bool isForward = offset > 0;
    const auto target = static_cast<std::size_t>(signedOf(index) + offset);
    const ChangeRun edit[] = {{RunKind::Kept, std::min(index, target)},
                              {isForward ? RunKind::MovedAway : RunKind::MovedHere, 1, 2},
                              {RunKind::Kept, std::max(index, target) - std::min(index, target)},
                              {isForward ? RunKind::MovedHere : RunKind::MovedAway, 1, -2}};
    append(edit, std::size(edit));
}

void ChangeRuns::changeRun(std::size_t index, std::size_t count)
{
    const ChangeRun edit[] = {{RunKind::Kept, index}, {RunKind::Changed, count}};
    if (count != 0)
        append(edit, std::size(edit));
}

void ChangeRuns::mergeRuns(const ChangeRuns& second)
{
    if (&second == this) {
        mergeRuns(ChangeRuns(second));
        return;
    }
    const std::vector<ChangeRun>& runs = second.runs();
    if (!runs.empty())
        append(runs.data(), runs.size());
}

} // namespace Orv::Data
