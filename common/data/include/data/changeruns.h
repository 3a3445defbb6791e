// What happened to a list, as a run-length edit script.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Orv::Data {

enum class RunKind : std::uint8_t
{
    Kept = 0,      // in the old and in the new list
    Erased = 1,    // in the old list only
    Inserted = 2,  // in the new list only
    Changed = 3,   // in both, and changed
    MovedAway = 4, // in the old list here; its items are at the partner in the new list
    MovedHere = 5, // in the new list here; its items stood at the partner in the old list
};

struct ChangeRun
{
    RunKind kind;
    std::size_t count;
    // For the two moved kinds: the signed distance, in records, to the partner at the other end
    // of the move, which has the same count. 0 for all others.
    std::ptrdiff_t link = 0;

    bool inOldList() const { return kind != RunKind::Inserted && kind != RunKind::MovedHere; }
    bool inNewList() const { return kind != RunKind::Erased && kind != RunKind::MovedAway; }
};

// A script leads from an old list to the current one. Reading the runs of inOldList() in order
// gives the old list, those of inNewList() the current one; what lies behind the last run is kept.
// The four operations take positions in the current list and fold one more edit into the script,
// so that one reader can follow many edits at once. A series of n edits and one reading take a time
// of the order of n log n.
class ChangeRuns
{
public:
    bool isEmpty() const { return runs().empty(); }
    const std::vector<ChangeRun>& runs() const;
    void clear();

    // Records `count` new items before the one that was at `index`.
    void insertRun(std::size_t index, std::size_t count);
    // The `count` items from `index` on are gone. An item inserted by this script leaves no trace.
    void eraseRun(std::size_t index, std::size_t count);
    // Records that the item at `index` is now at `index + offset`.
    void moveRun(std::size_t index, std::ptrdiff_t offset);
    // The `count` items from `index` on have changed. Inserted and moved runs stay as they are.
    void changeRun(std::size_t index, std::size_t count);

    // Makes this script lead from its old list to the current list of `second`, whose old list is
    // this one's current list.
    void mergeRuns(const ChangeRuns& second);

private:
    void append(const ChangeRun* first, std::size_t count);
    // Makes one script of the last two.
    void joinLastTwo() const;

    // Several scripts one behind the other, each of which leads on from the list of the one before
    // it. None is longer than half of the one before it, so that joining them costs little.
    mutable std::vector<ChangeRun> m_runs;
    mutable std::vector<std::size_t> m_begins; // of all scripts but the first one
};

} // namespace Orv::Data
