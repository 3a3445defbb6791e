#include "data/changeruns.h"
#include "support/editing.h"
#include "support/shelfcases.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <functional>
#include <random>
#include <set>

using Orv::Data::ChangeRun;
using Orv::Data::ChangeRuns;
using Orv::Data::RunKind;
using TestSupport::caseName;
using TestSupport::textOf;

namespace {

// Makes one edit after the other.
template <class... Edit>
ChangeRuns scriptOf(Edit... edits)
{
    ChangeRuns runs;
    (edits(runs), ...);
    return runs;
}

auto inserting(std::size_t index, std::size_t count)
{
    return [=](ChangeRuns& runs) { runs.insertRun(index, count); };
}

auto erasing(std::size_t index, std::size_t count)
{
    return [=](ChangeRuns& runs) { runs.eraseRun(index, count); };
}

auto moving(std::size_t index, std::ptrdiff_t offset)
{
    return [=](ChangeRuns& runs) { runs.moveRun(index, offset); };
}

auto changing(std::size_t index, std::size_t count)
{
    return [=](ChangeRuns& runs) { runs.changeRun(index, count); };
}

auto merging(const ChangeRuns& second)
{
    return [=](ChangeRuns& runs) { runs.mergeRuns(second); };
}

} // namespace

// Which list a run stands in.

struct KindCase
{
    const char* name;
    RunKind kind;
    bool inOldList;
    bool inNewList;
};

class ChangeRunKind : public testing::TestWithParam<KindCase>
{};

TEST_P(ChangeRunKind, TellsWhichListItStandsIn)
{
    const ChangeRun run{GetParam().kind, 1};
    EXPECT_EQ(run.inOldList(), GetParam().inOldList);
    EXPECT_EQ(run.inNewList(), GetParam().inNewList);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ChangeRunKind,
                         testing::Values(KindCase{"Kept", RunKind::Kept, true, true},
                                         KindCase{"Erased", RunKind::Erased, true, false},
                                         KindCase{"Inserted", RunKind::Inserted, false, true},
                                         KindCase{"Changed", RunKind::Changed, true, true},
                                         KindCase{"MovedAway", RunKind::MovedAway, true, false},
                                         KindCase{"MovedHere", RunKind::MovedHere, false, true}),
                         caseName<KindCase>);

// What single edits and short series of them leave.

struct ScriptCase
{
    const char* name;
    ChangeRuns script;
    const char* text;
};

std::ostream& operator<<(std::ostream& stream, const ScriptCase& c)
{
    return stream << c.name;
}

class ChangeRunsScript : public testing::TestWithParam<ScriptCase>
{};

TEST_P(ChangeRunsScript, FoldsItsEdits)
{
    EXPECT_EQ(textOf(GetParam().script), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Insert, ChangeRunsScript,
    testing::Values(
        ScriptCase{"Nothing", scriptOf(inserting(3, 0)), ""},
        ScriptCase{"AtTheHead", scriptOf(inserting(0, 2)), "I2"},
        ScriptCase{"BehindKeptItems", scriptOf(inserting(3, 1)), "K3 I1"},
        ScriptCase{"BeforeAnInsertedRun", scriptOf(inserting(1, 2), inserting(1, 3)), "K1 I5"},
        ScriptCase{"InsideAnInsertedRun", scriptOf(inserting(1, 2), inserting(2, 3)), "K1 I5"},
        ScriptCase{"BehindAnInsertedRun", scriptOf(inserting(1, 2), inserting(3, 3)), "K1 I5"},
        ScriptCase{"InsideAKeptRun", scriptOf(inserting(4, 1), inserting(1, 1)), "K1 I1 K3 I1"},
        ScriptCase{"BehindAnErasedRun", scriptOf(erasing(1, 2), inserting(1, 1)), "K1 E2 I1"},
        ScriptCase{"InsideAChangedRun", scriptOf(changing(0, 3), inserting(1, 1)), "C1 I1 C2"},
        ScriptCase{"BetweenTheEndsOfAMove", scriptOf(moving(0, 2), inserting(1, 1)),
                   "A1+4 K1 I1 K1 H1-4"}),
    caseName<ScriptCase>);

INSTANTIATE_TEST_SUITE_P(
    Erase, ChangeRunsScript,
    testing::Values(
        ScriptCase{"Nothing", scriptOf(erasing(2, 0)), ""},
        ScriptCase{"KeptItems", scriptOf(erasing(2, 3)), "K2 E3"},
        ScriptCase{"ChangedItems", scriptOf(changing(0, 3), erasing(1, 1)), "C1 E1 C1"},
        ScriptCase{"Twice", scriptOf(erasing(2, 1), erasing(2, 2)), "K2 E3"},
        ScriptCase{"AroundErasedItems", scriptOf(erasing(2, 1), erasing(1, 2)), "K1 E3"},
        ScriptCase{"AllThatWasInserted", scriptOf(inserting(0, 1), erasing(0, 1)), ""},
        ScriptCase{"SomeOfWhatWasInserted", scriptOf(inserting(1, 3), erasing(2, 1)), "K1 I2"},
        ScriptCase{"InsertedAndKeptItems", scriptOf(inserting(1, 1), erasing(0, 3)), "E2"},
        ScriptCase{"WhatWasMovedHere", scriptOf(moving(0, 2), erasing(2, 1)), "E1"},
        ScriptCase{"BetweenTheEndsOfAMove", scriptOf(moving(0, 2), erasing(0, 2)), "A1+2 E2 H1-2"}),
    caseName<ScriptCase>);

INSTANTIATE_TEST_SUITE_P(
    Move, ChangeRunsScript,
    testing::Values(
        ScriptCase{"ByNothing", scriptOf(moving(3, 0)), ""},
        ScriptCase{"Forward", scriptOf(moving(1, 2)), "K1 A1+2 K2 H1-2"},
        ScriptCase{"Backward", scriptOf(moving(3, -2)), "K1 H1+2 K2 A1-2"},
        ScriptCase{"OnFromWhereItWas", scriptOf(moving(1, 1), moving(2, 2)), "K1 A1+2 K3 H1-2"},
        ScriptCase{"WhatWasInserted", scriptOf(inserting(0, 1), moving(0, 2)), "K2 I1"},
        ScriptCase{"WhatHadChanged", scriptOf(changing(0, 1), moving(0, 1)), "A1+2 K1 H1-2"}),
    caseName<ScriptCase>);

INSTANTIATE_TEST_SUITE_P(
    Change, ChangeRunsScript,
    testing::Values(
        ScriptCase{"Nothing", scriptOf(changing(2, 0)), ""},
        ScriptCase{"KeptItems", scriptOf(changing(2, 3)), "K2 C3"},
        ScriptCase{"Neighbours", scriptOf(changing(2, 1), changing(1, 1)), "K1 C2"},
        ScriptCase{"WhatWasInserted", scriptOf(inserting(1, 2), changing(1, 1)), "K1 I2"},
        ScriptCase{"AcrossInsertedItems", scriptOf(inserting(1, 1), changing(0, 3)), "C1 I1 C1"},
        ScriptCase{"AcrossErasedItems", scriptOf(erasing(1, 1), changing(0, 2)), "C1 E1 C1"},
        ScriptCase{"WhatWasMovedHere", scriptOf(moving(0, 1), changing(1, 1)), "A1+2 K1 H1-2"}),
    caseName<ScriptCase>);

INSTANTIATE_TEST_SUITE_P(
    Merge, ChangeRunsScript,
    testing::Values(
        ScriptCase{"Nothing", scriptOf(erasing(1, 2), merging({})), "K1 E2"},
        ScriptCase{"IntoNothing", scriptOf(merging(scriptOf(erasing(1, 2)))), "K1 E2"},
        ScriptCase{"Insertions", scriptOf(inserting(0, 1), merging(scriptOf(inserting(3, 2)))),
                   "I1 K2 I2"},
        ScriptCase{"AnErasureOfTheInserted",
                   scriptOf(inserting(0, 1), merging(scriptOf(erasing(0, 1)))), ""},
        ScriptCase{"AChange", scriptOf(erasing(0, 1), merging(scriptOf(changing(1, 1)))),
                   "E1 K1 C1"},
        ScriptCase{"AMoveForward", scriptOf(inserting(1, 1), merging(scriptOf(moving(0, 3)))),
                   "A1+3 I1 K2 H1-3"},
        ScriptCase{"AMoveBackward", scriptOf(erasing(0, 1), merging(scriptOf(moving(2, -2)))),
                   "E1 H1+2 K2 A1-2"},
        ScriptCase{"AnErasureAndAnInsertion",
                   scriptOf(merging(scriptOf(erasing(0, 1), inserting(0, 1)))), "E1 I1"}),
    caseName<ScriptCase>);

TEST(ChangeRunsClear, LeavesAnEmptyScript)
{
    ChangeRuns runs = scriptOf(erasing(1, 2));
    runs.clear();
    EXPECT_TRUE(runs.isEmpty());
}

TEST(ChangeRunsMerge, AScriptIsReplayedOnItself)
{
    ChangeRuns runs = scriptOf(inserting(1, 1));
    runs.mergeRuns(runs);
    EXPECT_EQ(textOf(runs), "K1 I2");
}

TEST(ChangeRunsSplit, PartnersOfAMovedRunSplitTogether)
{
    // Two items moved one after the other, as one script tells of them, then parted by an insert.
    ChangeRuns runs = scriptOf(moving(0, 3), moving(0, 3));
    runs.insertRun(3, 1);
    EXPECT_EQ(textOf(runs), "A1+3 A1+4 K2 H1-3 I1 H1-4");
}

// Properties over random series of edits of a list of distinct items.

namespace {

struct Model
{
    std::vector<int> items;
    std::set<int> changed;
    std::set<int> moved; // a move hides the changes of its item, even when it comes to nothing
    int nextItem = 0;

    explicit Model(int size)
    {
        for (; nextItem < size; ++nextItem)
            items.push_back(nextItem);
    }
};

std::size_t pick(std::mt19937& random, std::size_t below)
{
    return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
}

void insertSome(std::mt19937& random, Model& model, ChangeRuns& runs)
{
    const std::size_t index = pick(random, model.items.size() + 1);
    const std::size_t count = 1 + pick(random, 3);
    for (std::size_t i = 0; i < count; ++i)
        model.items.insert(model.items.begin() + static_cast<std::ptrdiff_t>(index + i),
                           model.nextItem++);
    runs.insertRun(index, count);
}

void eraseSome(std::mt19937& random, Model& model, ChangeRuns& runs)
{
    const std::size_t index = pick(random, model.items.size());
    const std::size_t count =
        1 + pick(random, std::min<std::size_t>(model.items.size() - index, 3));
    const auto first = model.items.begin() + static_cast<std::ptrdiff_t>(index);
    model.items.erase(first, first + static_cast<std::ptrdiff_t>(count));
    runs.eraseRun(index, count);
}

void moveOne(std::mt19937& random, Model& model, ChangeRuns& runs)
{
    const auto from = static_cast<std::ptrdiff_t>(pick(random, model.items.size()));
    const auto to = static_cast<std::ptrdiff_t>(pick(random, model.items.size()));
    const int item = model.items[static_cast<std::size_t>(from)];
    model.items.erase(model.items.begin() + from);
    model.items.insert(model.items.begin() + to, item);
    model.moved.insert(item);
    runs.moveRun(static_cast<std::size_t>(from), to - from);
}

void changeSome(std::mt19937& random, Model& model, ChangeRuns& runs)
{
    const std::size_t index = pick(random, model.items.size());
    const std::size_t count = 1 + pick(random, model.items.size() - index);
    for (std::size_t i = index; i < index + count; ++i)
        model.changed.insert(model.items[i]);
    runs.changeRun(index, count);
}

void editOnce(std::mt19937& random, Model& model, ChangeRuns& runs)
{
    using Edit = void (*)(std::mt19937&, Model&, ChangeRuns&);
    constexpr Edit Edits[] = {insertSome, eraseSome, moveOne, moveOne, changeSome};
    const Edit chosen = model.items.empty() ? insertSome : Edits[pick(random, 5)];
    chosen(random, model, runs);
}

// Reads a script over the list before its edits; answers what is wrong, "" if nothing is.
class Replay
{
public:
    Replay(const ChangeRuns& script, std::vector<int> before, const Model& after)
        : m_runs(script.runs()), m_before(std::move(before)), m_after(after)
    {}

    std::string fault()
    {
        readOldList();
        if (m_fault.empty())
            readNewList();
        return m_fault;
    }

private:
    void readOldList()
    {
        m_old.resize(m_runs.size());
        std::size_t position = 0;
        for (std::size_t record = 0; record < m_runs.size(); ++record) {
            const ChangeRun& run = m_runs[record];
            checkLink(record);
            expect(run.count > 0, "a run is empty");
            if (!run.inOldList())
                continue;
            expect(position + run.count <= m_before.size(), "the old list is too short");
            if (!m_fault.empty())
                return;
            const auto first = m_before.begin() + static_cast<std::ptrdiff_t>(position);
            m_old[record].assign(first, first + static_cast<std::ptrdiff_t>(run.count));
            position += run.count;
        }
        m_tail.assign(m_before.begin() + static_cast<std::ptrdiff_t>(position), m_before.end());
    }

    void checkLink(std::size_t record)
    {
        const ChangeRun& run = m_runs[record];
        const bool isAway = run.kind == RunKind::MovedAway;
        if (!isAway && run.kind != RunKind::MovedHere) {
            expect(run.link == 0, "a run that was not moved has a link");
            return;
        }
        const auto partner = static_cast<std::ptrdiff_t>(record) + run.link;
        const bool exists = partner >= 0 && partner < static_cast<std::ptrdiff_t>(m_runs.size());
        expect(exists, "a link leads out of the script");
        if (!exists)
            return;
        const ChangeRun& other = m_runs[static_cast<std::size_t>(partner)];
        expect(other.kind == (isAway ? RunKind::MovedHere : RunKind::MovedAway),
               "a partner has the wrong kind");
        expect(other.link == -run.link, "a partner is linked elsewhere");
        expect(other.count == run.count, "a partner has another count");
    }

    void readNewList()
    {
        std::size_t position = 0;
        for (std::size_t record = 0; record < m_runs.size(); ++record) {
            const ChangeRun& run = m_runs[record];
            if (!run.inNewList())
                continue;
            for (std::size_t i = 0; i < run.count; ++i, ++position) {
                if (position == m_after.items.size()) {
                    m_fault = "the new list is too short";
                    return;
                }
                checkItem(record, i, m_after.items[position]);
            }
        }
        const std::vector<int> tail(m_after.items.begin() + static_cast<std::ptrdiff_t>(position),
                                    m_after.items.end());
        expect(tail == m_tail, "the items behind the script differ");
        for (const int item : m_tail)
            checkChange(item, false);
    }

    void checkItem(std::size_t record, std::size_t i, int item)
    {
        const ChangeRun& run = m_runs[record];
        const bool isOld = std::find(m_before.begin(), m_before.end(), item) != m_before.end();
        if (run.kind == RunKind::Inserted) {
            expect(!isOld, "an old item is told to be inserted");
            return;
        }
        const auto source =
            static_cast<std::size_t>(static_cast<std::ptrdiff_t>(record) + run.link);
        expect(m_old[source][i] == item, "another item stands there");
        if (run.kind != RunKind::MovedHere)
            checkChange(item, run.kind == RunKind::Changed);
    }

    void checkChange(int item, bool isTold)
    {
        const bool hasChanged = m_after.changed.count(item) != 0;
        expect(hasChanged || !isTold, "a change is told that was not made");
        expect(isTold || !hasChanged || m_after.moved.count(item) != 0, "a change is not told");
    }

    void expect(bool holds, const char* fault)
    {
        if (!holds && m_fault.empty())
            m_fault = fault;
    }

    const std::vector<ChangeRun>& m_runs;
    std::vector<int> m_before;
    const Model& m_after;
    std::vector<std::vector<int>> m_old; // the old items of each record
    std::vector<int> m_tail;
    std::string m_fault;
};

std::string replayFault(const ChangeRuns& script, const std::vector<int>& before,
                        const Model& after)
{
    const std::string fault = Replay(script, before, after).fault();
    return fault.empty() ? "" : fault + " in " + textOf(script);
}

constexpr int Rounds = 400;

// Calls `round` with fresh generators; answers the first fault and its seed.
std::string firstFault(unsigned firstSeed, const std::function<std::string(std::mt19937&)>& round)
{
    for (unsigned seed = firstSeed; seed < firstSeed + Rounds; ++seed) {
        std::mt19937 random(seed);
        const std::string fault = round(random);
        if (!fault.empty())
            return "seed " + std::to_string(seed) + ": " + fault;
    }
    return "";
}

std::string foldAndReplay(std::mt19937& random)
{
    Model model(static_cast<int>(pick(random, 9)));
    const std::vector<int> before = model.items;
    ChangeRuns script;
    std::string fault;
    for (std::size_t left = pick(random, 30); left > 0 && fault.empty(); --left) {
        editOnce(random, model, script);
        fault = replayFault(script, before, model);
    }
    return fault;
}

// Scripts that nobody reads in between, of many scattered edits.
std::string foldManyAndReplay(std::mt19937& random)
{
    Model model(60);
    const std::vector<int> before = model.items;
    ChangeRuns script;
    for (int i = 0; i < 100; ++i)
        editOnce(random, model, script);
    return replayFault(script, before, model);
}

// Cuts a series of edits into scripts of their own.
std::vector<ChangeRuns> editInPieces(std::mt19937& random, Model& model)
{
    std::vector<ChangeRuns> pieces(1 + pick(random, 5));
    for (ChangeRuns& piece : pieces)
        for (std::size_t left = pick(random, 8); left > 0; --left)
            editOnce(random, model, piece);
    return pieces;
}

std::string mergeFromTheFrontAndReplay(std::mt19937& random)
{
    Model model(static_cast<int>(pick(random, 9)));
    const std::vector<int> before = model.items;
    ChangeRuns script;
    for (const ChangeRuns& piece : editInPieces(random, model))
        script.mergeRuns(piece);
    return replayFault(script, before, model);
}

std::string mergeFromTheBackAndReplay(std::mt19937& random)
{
    Model model(static_cast<int>(pick(random, 9)));
    const std::vector<int> before = model.items;
    std::vector<ChangeRuns> pieces = editInPieces(random, model);
    for (; pieces.size() > 1; pieces.pop_back())
        pieces[pieces.size() - 2].mergeRuns(pieces.back());
    return replayFault(pieces.front(), before, model);
}

} // namespace

class ChangeRunsProperty : public testing::TestWithParam<unsigned>
{};

TEST_P(ChangeRunsProperty, AFoldedScriptLeadsFromTheOldListToTheNewOne)
{
    EXPECT_EQ(firstFault(GetParam(), foldAndReplay), "");
}

TEST_P(ChangeRunsProperty, ALongScriptThatIsReadOnceLeadsFromTheOldListToTheNewOne)
{
    EXPECT_EQ(firstFault(GetParam(), foldManyAndReplay), "");
}

TEST_P(ChangeRunsProperty, ScriptsMergedOneByOneLeadFromTheOldListToTheNewOne)
{
    EXPECT_EQ(firstFault(GetParam(), mergeFromTheFrontAndReplay), "");
}

TEST_P(ChangeRunsProperty, ScriptsMergedFromTheLastOnLeadFromTheOldListToTheNewOne)
{
    EXPECT_EQ(firstFault(GetParam(), mergeFromTheBackAndReplay), "");
}

INSTANTIATE_TEST_SUITE_P(Seeds, ChangeRunsProperty, testing::Values(1u, 1001u, 2001u, 3001u));
