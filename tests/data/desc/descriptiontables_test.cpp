#include "data/desc/descriptiontables.h"

#include "data/desc/filtertable.h"
#include "data/desc/functiontable.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cstdlib>
#include <thread>

using namespace Ksx::Data::Desc;

namespace {

// Each test begins and ends without tables.
class DescriptionTablesTest : public testing::Test
{
protected:
    DescriptionTablesTest() { DescriptionTables::destroy(); }
    ~DescriptionTablesTest() override { DescriptionTables::destroy(); }
};

// What each of several threads got that asked at once.
std::vector<DescriptionTables*> tablesOfThreads(std::size_t count)
{
    std::vector<DescriptionTables*> seen(count, nullptr);
    std::vector<std::thread> threads;
    threads.reserve(seen.size());
    for (DescriptionTables*& mine : seen)
        threads.emplace_back([&mine] { mine = &DescriptionTables::instance(); });
    for (std::thread& thread : threads)
        thread.join();
    return seen;
}

constexpr int TablesAreGone = 7;
constexpr int TablesAreLeft = 8;

void reportAtExit()
{
    std::_Exit(DescriptionTables::exists() ? TablesAreLeft : TablesAreGone);
}

// Handlers run in reverse order, so this one is the last to run.
void leaveWithTables()
{
    std::atexit(&reportAtExit);
    DescriptionTables::instance();
    std::exit(0);
}

} // namespace

TEST_F(DescriptionTablesTest, AreBuiltOnFirstUse)
{
    EXPECT_FALSE(DescriptionTables::exists());
    DescriptionTables::instance();
    EXPECT_TRUE(DescriptionTables::exists());
}

TEST_F(DescriptionTablesTest, AreBuiltOnce)
{
    EXPECT_EQ(&DescriptionTables::instance(), &DescriptionTables::instance());
}

TEST_F(DescriptionTablesTest, AreTheSameForAllThreads)
{
    const std::vector<DescriptionTables*> seen = tablesOfThreads(8);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), &DescriptionTables::instance()), 8);
}

TEST_F(DescriptionTablesTest, LeaveTheirRowsWhereTheyAre)
{
    const Filter* const blend = DescriptionTables::instance().filters().find("blend");
    const Function* const add = DescriptionTables::instance().functions().find("add");
    EXPECT_EQ(DescriptionTables::instance().filters().find(FilterKind::Blend), blend);
    EXPECT_EQ(DescriptionTables::instance().functions().find(FunctionsEnum::Add), add);
}

TEST_F(DescriptionTablesTest, HoldTheGroupsThatFiltersShare)
{
    const DescriptionTables& tables = DescriptionTables::instance();
    const Filter& bitmap = *tables.filters().find(FilterKind::Bitmap);
    EXPECT_EQ(bitmap.group("__common__"), tables.commonParameters().get());
    EXPECT_EQ(bitmap.group("Input_parameters"), tables.inputParameters().get());
}

TEST_F(DescriptionTablesTest, AreGoneWhenDestroyed)
{
    DescriptionTables::instance();
    DescriptionTables::destroy();
    EXPECT_FALSE(DescriptionTables::exists());
}

TEST_F(DescriptionTablesTest, MayBeDestroyedTwiceAndUnbuilt)
{
    DescriptionTables::destroy();
    DescriptionTables::instance();
    DescriptionTables::destroy();
    DescriptionTables::destroy();
    EXPECT_FALSE(DescriptionTables::exists());
}

TEST_F(DescriptionTablesTest, AreBuiltAgainWhenUsedAgain)
{
    DescriptionTables::instance();
    DescriptionTables::destroy();
    EXPECT_NE(DescriptionTables::instance().filters().find("blend"), nullptr);
}

TEST_F(DescriptionTablesTest, LeaveASharedGroupToThoseWhoKeepIt)
{
    const ParameterGroupPointer common = DescriptionTables::instance().commonParameters();
    DescriptionTables::destroy();
    EXPECT_NE(common->find("outputsize"), nullptr);
}

// In a process of its own, in which nothing has asked for the tables before.
TEST_F(DescriptionTablesTest, AreDestroyedAtExitIfTheyAreLeft)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(leaveWithTables(), testing::ExitedWithCode(TablesAreGone), "");
}
