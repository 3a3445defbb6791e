#include "ksx/kit/batchplan.h"

#include "kit/batch/plans.h"
#include "support/shelfcases.h"
#include <QBuffer>
#include <QJsonDocument>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Ksx::Kit::BatchPlan;
using Ksx::Kit::BatchUnit;
using Ksx::Kit::readPlan;
using TestSupport::caseName;
using TestSupport::Library;
using TestSupport::replaced;
using TestSupport::shardsOf;

namespace {

std::string written(const BatchPlan& plan)
{
    QBuffer buffer;
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly));
    EXPECT_TRUE(writePlan(buffer, plan));
    return buffer.data().toStdString();
}

class PlanFile : public testing::Test
{
protected:
    PlanFile() { library.with("a.obl", {"none.obl"}).with("b.obl").with("c.obl", {"../d.obl"}); }

    std::optional<BatchPlan> read(const std::string& bytes)
    {
        return readPlan(Orv::fromBytes(library.directory.write("plan.json", bytes)), reason);
    }

    Library library;
    QString reason;
};

struct DamageCase
{
    const char* name;
    const char* before;
    const char* after;
    const char* reason;
};

class DamagedPlan : public PlanFile, public testing::WithParamInterface<DamageCase>
{};

} // namespace

TEST_F(PlanFile, IsTheSameWhenItIsReadAndWrittenAgain)
{
    library.directory.write("d.obl", TestSupport::aPackage().text());
    library.directory.write("lib/e.obl", "no package");
    const std::string bytes = written(library.plan(2));

    const auto plan = read(bytes);

    ASSERT_TRUE(plan) << reason.toStdString();
    EXPECT_EQ(written(*plan), bytes);
}

TEST_F(PlanFile, HoldsNamesOfAllBytes)
{
    library.with("\xFFname \"1\".obl");
    const std::string bytes = written(library.plan());

    const auto plan = read(bytes);

    ASSERT_TRUE(plan) << reason.toStdString();
    EXPECT_EQ(shardsOf(*plan), "a.obl 1, b.obl 1, c.obl 1, \xFFname \"1\".obl 1");
}

TEST_F(PlanFile, HasALineForEachPackage)
{
    EXPECT_THAT(written(library.plan()),
                testing::ContainsRegex("\n[{].*\"input\":\"b.obl\".*[}],\n"));
}

TEST_F(PlanFile, MayBeLaidOutInAnotherWay)
{
    const QByteArray bytes = QByteArray::fromStdString(written(library.plan()));

    const auto plan = read(QJsonDocument::fromJson(bytes).toJson().toStdString());

    ASSERT_TRUE(plan) << reason.toStdString();
    EXPECT_EQ(shardsOf(*plan), "a.obl 1, b.obl 1, c.obl 1");
}

TEST_F(PlanFile, KeepsAClockThatIsSet)
{
    BatchPlan plan = library.plan();
    plan.options.clock = 7;

    const auto copy = read(written(plan));

    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->options.clock, 7);
}

TEST_F(PlanFile, KeepsTheUnitWhoseResultsAppearTogether)
{
    BatchPlan plan = library.plan();
    plan.options.unit = BatchUnit::Component;
    const auto component = read(written(plan));
    plan.options.unit = BatchUnit::Plan;
    const auto whole = read(written(plan));

    ASSERT_TRUE(component && whole);
    EXPECT_EQ(component->options.unit, BatchUnit::Component);
    EXPECT_EQ(whole->options.unit, BatchUnit::Plan);
}

TEST_F(PlanFile, OfAnOlderProgramLetsEachPackageAppearByItself)
{
    const auto plan = read(replaced(written(library.plan()), "\"allOrNone\":null,\n", ""));

    ASSERT_TRUE(plan) << reason.toStdString();
    EXPECT_EQ(plan->options.unit, BatchUnit::Package);
}

TEST_F(PlanFile, IsNoFolder)
{
    EXPECT_FALSE(readPlan(library.path("lib"), reason));
    EXPECT_FALSE(reason.isEmpty());
}

TEST_F(PlanFile, IsRefusedWhereItIsCutOff)
{
    const std::string bytes = written(library.plan());

    EXPECT_FALSE(read(bytes.substr(0, bytes.size() / 2)));
    EXPECT_THAT(reason.toStdString(), testing::StartsWith("it is no sound plan: "));
}

TEST_F(PlanFile, IsRefusedIfNestedWithoutEnd)
{
    EXPECT_FALSE(read(std::string(1000000, '[')));
}

TEST_P(DamagedPlan, IsRefusedWithItsPlace)
{
    const std::string bytes = written(library.plan());
    const std::string damaged = replaced(bytes, GetParam().before, GetParam().after);
    ASSERT_NE(damaged, bytes);

    EXPECT_FALSE(read(damaged));

    EXPECT_EQ(reason.toStdString(), std::string("it is no sound plan: ") + GetParam().reason);
}
INSTANTIATE_TEST_SUITE_P(
    Values, DamagedPlan,
    testing::Values(
        DamageCase{"Version", "\"ksx\":1", "\"ksx\":2", "ksx is no number of its range"},
        DamageCase{"Kind", "\"plan\":\"update\"", "\"plan\":\"merge\"", "plan is no known kind"},
        DamageCase{"Target", "\"target\":\"/", "\"target\":\"../", "target is no absolute path"},
        DamageCase{"Unit", "\"allOrNone\":null", "\"allOrNone\":\"shard\"",
                   "allOrNone is no known unit"},
        DamageCase{"Shards", "\"shards\":1", "\"shards\":0", "shards is no number of its range"},
        DamageCase{"NoPackages", "\"packages\":[", "\"packages\":1,\"others\":[",
                   "packages is no list"},
        DamageCase{"OutsideOutput", "\"output\":\"b.obl\"", "\"output\":\"../b.obl\"",
                   "packages[1].output leads out of its folder"},
        DamageCase{"RootOutput", "\"output\":\"b.obl\"", "\"output\":\"/b.obl\"",
                   "packages[1].output leads out of its folder"},
        DamageCase{"RoundaboutOutput", "\"output\":\"b.obl\"", "\"output\":\"x/../../b.obl\"",
                   "packages[1].output leads out of its folder"},
        DamageCase{"OutsideInput", "\"input\":\"b.obl\"", "\"input\":\"../b.obl\"",
                   "packages[1].input leads out of its folder"},
        DamageCase{"OtherOutput", "\"output\":\"b.obl\"", "\"output\":\"b.json\"",
                   "packages[1].output is no name of a package"},
        DamageCase{"NullOutput", "\"output\":\"b.obl\"", "\"output\":\"b\\u0000.obl\"",
                   "packages[1].output is no text"},
        DamageCase{"DoubleOutput", "\"output\":\"b.obl\"", "\"output\":\"a.obl\"",
                   "packages[1].output is the output of another package as well"},
        DamageCase{"DoubleInput", "\"input\":\"b.obl\"", "\"input\":\"a.obl\"",
                   "packages[1].input is there twice"},
        DamageCase{"Folder", "\"folder\":0", "\"folder\":1",
                   "packages[0].folder is no number of its range"},
        DamageCase{"Fraction", "\"component\":2", "\"component\":2.5",
                   "packages[1].component is no number of its range"},
        DamageCase{"Shard", "\"shard\":1", "\"shard\":2",
                   "packages[0].shard is no number of its range"},
        DamageCase{"Sum", "\"sha256\":\"", "\"sha256\":\"x", "packages[0].sha256 is no sum"},
        DamageCase{"Time", "\"modified\":\"", "\"modified\":\"x",
                   "packages[0].modified is no time"}),
    caseName<DamageCase>);
