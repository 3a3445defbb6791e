#include "updating/packageupdater6141.h"

#include "data/content/dependency.h"
#include "data/content/package.h"
#include "ksx/core/uidsource.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/updaterhelper.h"
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;
using Ksx::Core::UidSource;

const Ksx::Core::PackageUpdater6141 Updater;

// The clock stands at 1000, and the counter begins with 0.
class PackageUpdater6141Run : public testing::Test
{
protected:
    PackageUpdater6141Run()
    {
        UidSource::setClock([] { return std::time_t{1000}; });
        UidSource::ofUpdater().setCounter(0);
    }
    ~PackageUpdater6141Run() override { UidSource::setClock({}); }

    static std::string updated(const PackageText& before)
    {
        const auto package = packageFrom(before);
        updatePackage(Updater, *package);
        return textOf(*package);
    }
    static std::string as(const PackageText& package) { return textOf(*packageFrom(package)); }
};

struct PathCase
{
    const char* name;
    const char* before;
    const char* after;
};

class PackageUpdater6141Path : public PackageUpdater6141Run,
                               public testing::WithParamInterface<PathCase>
{};

} // namespace

TEST_F(PackageUpdater6141Run, GivesEachDependencyAUid)
{
    EXPECT_EQ(updated(aPackage().dependingOn("a.obl", 0).dependingOn("b.obl", 0)),
              as(aPackage().dependingOn("a.obl", 1000).dependingOn("b.obl", 1001)));
}

TEST_F(PackageUpdater6141Run, OverwritesFormerUids)
{
    EXPECT_EQ(updated(aPackage().dependingOn("a.obl", 77)),
              as(aPackage().dependingOn("a.obl", 1000)));
}

TEST_F(PackageUpdater6141Run, ReportsEachUidByItsFile)
{
    const auto package =
        packageFrom(aPackage().dependingOn("a.obl", 0).dependingOn("\xC3\xA9%1.obl", 0));
    EXPECT_EQ(updatePackage(Updater, *package), "COUNT_0_GENERATE_UID_FOR_a.obl\n"
                                                "COUNT_1_GENERATE_UID_FOR_\xC3\xA9%1.obl\n");
}

TEST_F(PackageUpdater6141Run, DiffersFromUidsOfTheSameRun)
{
    // The second draw meets the first uid again, and the third shows how far to go from it.
    int draws = 0;
    UidSource::setClock([&draws] { return std::time_t{1000 - draws++}; });
    EXPECT_EQ(updated(aPackage().dependingOn("a.obl", 0).dependingOn("b.obl", 0)),
              as(aPackage().dependingOn("a.obl", 1000).dependingOn("b.obl", 1000 + (1000 & 255))));
}

TEST_F(PackageUpdater6141Run, TakesAUidForThePackageAlsoWhenItNeedsNone)
{
    updated(aPackage().dependingOn("a.obl", 0));
    EXPECT_EQ(updated(aPackage().dependingOn("a.obl", 0)),
              as(aPackage().dependingOn("a.obl", 1002)));
}

TEST_F(PackageUpdater6141Run, AddsADependencyOnThePackageForPathsIntoIt)
{
    EXPECT_EQ(updated(aPackage()
                          .dependingOn("a.obl", 0)
                          .containing(aGroup("Wood") + aGraphWithInstance("oak", "pkg://Wood"))),
              as(aPackage()
                     .dependingOn("a.obl", 1000)
                     .dependingOnItself(1001)
                     .containing(aGroup("Wood") +
                                 aGraphWithInstance("oak", "pkg://Wood?dependency=1001"))));
}

TEST_F(PackageUpdater6141Run, AddsOneDependencyForAllPaths)
{
    EXPECT_EQ(updated(aPackage().containing(aGraphWithInstance("oak", "pkg://elm") +
                                            aGraphWithInstance("elm", "pkg://oak"))),
              as(aPackage().dependingOnItself(1000).containing(
                  aGraphWithInstance("oak", "pkg://elm?dependency=1000") +
                  aGraphWithInstance("elm", "pkg://oak?dependency=1000"))));
}

TEST_F(PackageUpdater6141Run, AddsNoDependencyWithoutPaths)
{
    EXPECT_EQ(updated(aPackage().containing(aGroup("Wood"))),
              as(aPackage().containing(aGroup("Wood"))));
}

TEST_F(PackageUpdater6141Run, TakesPathsInAnyText)
{
    EXPECT_EQ(updated(aPackage().with("desc", "pkg://g").containing(aGroupSaying("g", "pkg://g"))),
              as(aPackage()
                     .with("desc", "pkg://g?dependency=1000")
                     .dependingOnItself(1000)
                     .containing(aGroupSaying("g", "pkg://g?dependency=1000"))));
}

TEST_F(PackageUpdater6141Run, ResolvesPathsByTheNamesBeforeTheRun)
{
    // The name of the group is a path itself and changes with the others.
    EXPECT_EQ(
        updated(aPackage().containing(aGroup("pkg://") + aGroupSaying("g", "pkg://g"))),
        as(aPackage().dependingOnItself(1000).containing(
            aGroup("pkg://?dependency=1000") + aGroupSaying("g", "pkg://g?dependency=1000"))));
}

TEST_F(PackageUpdater6141Run, ChangesNoPathTheSecondTime)
{
    const std::string once = updated(aPackage().containing(aGroupSaying("g", "pkg://g")));
    const auto package = packageFrom(once);
    updatePackage(Updater, *package);
    EXPECT_NE(textOf(*package).find("pkg://g?dependency=1000\""), std::string::npos);
    EXPECT_EQ(package->dependencies().size(), 1U);
}

TEST_F(PackageUpdater6141Run, NeedsNoLog)
{
    const auto package = packageFrom(aPackage().dependingOn("a.obl", 0));
    EXPECT_TRUE(Updater.update(*package, nullptr, {}));
    EXPECT_EQ(package->dependencies().at(0).uid().get(), 1000U);
}

TEST(PackageUpdater6141, LeavesItsOwnVersion)
{
    EXPECT_EQ(Updater.updaterVersion().toString(), "1.1.0.6141");
    EXPECT_EQ(Updater.formatVersion().toString(), "1.1.0.6141");
}

TEST(PackageUpdater6141, IsNamedByKeysInTheContextOfItsClass)
{
    const EchoTranslator translator;
    EXPECT_EQ(Updater.name(), "Ksx::Core::PackageUpdater6141|NAME");
}

// In a package of the group "Wood", which holds the graph "oak" and the group "Scans", and of a
// second group "Wood", which holds the graph "hidden".
TEST_P(PackageUpdater6141Path, GetsTheDependencyIfItLeadsSomewhere)
{
    const auto package =
        packageFrom(aPackage()
                        .with("desc", GetParam().before)
                        .containing(aGroup("Wood", aGraphWithInstance("oak", "") + aGroup("Scans")))
                        .containing(aGroup("Wood", aGraphWithInstance("hidden", ""))));
    updatePackage(Updater, *package);
    EXPECT_EQ(package->desc().get(), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, PackageUpdater6141Path,
    testing::Values(
        PathCase{"Group", "pkg://Wood", "pkg://Wood?dependency=1000"},
        PathCase{"Graph", "pkg://Wood/oak", "pkg://Wood/oak?dependency=1000"},
        PathCase{"EmptySegments", "pkg:///Wood//oak/", "pkg:///Wood//oak/?dependency=1000"},
        PathCase{"Package", "pkg://", "pkg://?dependency=1000"},
        PathCase{"OtherParameters", "pkg://Wood/oak?typeParam=CompNodeType&compNodeUidParam=5",
                 "pkg://Wood/oak?typeParam=CompNodeType&compNodeUidParam=5&dependency=1000"},
        PathCase{"UnknownNode", "pkg://Wood/oak?typeParam=CompNodeType&compNodeUidParam=6",
                 "pkg://Wood/oak?typeParam=CompNodeType&compNodeUidParam=6"},
        PathCase{"HasDependency", "pkg://Wood?dependency=3", "pkg://Wood?dependency=3"},
        PathCase{"HasEmptyDependency", "pkg://Wood?dependency=", "pkg://Wood?dependency="},
        PathCase{"UnknownObject", "pkg://Wood/elm", "pkg://Wood/elm"},
        PathCase{"BelowAGraph", "pkg://Wood/oak/x", "pkg://Wood/oak/x"},
        PathCase{"SecondOfTheName", "pkg://Wood/hidden", "pkg://Wood/hidden"},
        PathCase{"OtherCase", "pkg://wood", "pkg://wood"},
        PathCase{"OtherScheme", "obl://Wood", "obl://Wood"},
        PathCase{"BlankBefore", " pkg://Wood", " pkg://Wood"}),
    caseName<PathCase>);
