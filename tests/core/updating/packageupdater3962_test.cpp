#include "updating/packageupdater3962.h"

#include "data/content/dependency.h"
#include "data/content/package.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/updaterhelper.h"
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;

const Ksx::Core::PackageUpdater3962 Updater;

struct ReferenceCase
{
    const char* name;
    const char* before;
    const char* after;
};

class PackageUpdater3962Reference : public testing::TestWithParam<ReferenceCase>
{};

} // namespace

TEST(PackageUpdater3962, ReportsEachChangeOfAReferenceUnderANumberOfItsOwn)
{
    const auto package = packageFrom(aPackage()
                                         .dependingOn("ksx://a.kestrix", 1)
                                         .dependingOn("b.obl", 2)
                                         .dependingOn("c.kestrix", 3));
    EXPECT_EQ(updatePackage(Updater, *package), "1] ksx://a.kestrix -> ksx://a.obl\n"
                                                "2] ksx://a.obl -> obl://a.obl\n"
                                                "3] c.kestrix -> c.obl\n");
}

TEST(PackageUpdater3962, RewritesTheFilesOfResources)
{
    const PackageText before = aPackage().containing(
        aGroup("Wood", aResource("bark", "ksx://bark.png") + aResource("oak", "oak.kestrix")));
    const PackageText after = aPackage().containing(
        aGroup("Wood", aResource("bark", "obl://bark.png") + aResource("oak", "oak.obl")));
    const auto package = packageFrom(before);
    updatePackage(Updater, *package);
    EXPECT_EQ(textOf(*package), textOf(*packageFrom(after)));
}

TEST(PackageUpdater3962, LeavesOtherTextsAlone)
{
    const auto package =
        packageFrom(aPackage().named("a.kestrix").containing(aGroupSaying("g", "ksx://g.kestrix")));
    const std::string before = textOf(*package);
    EXPECT_EQ(updatePackage(Updater, *package), "");
    EXPECT_EQ(textOf(*package), before);
}

TEST(PackageUpdater3962, ChangesNothingTheSecondTime)
{
    const auto package = packageFrom(aPackage().dependingOn("ksx://a.kestrix", 1));
    updatePackage(Updater, *package);
    EXPECT_EQ(updatePackage(Updater, *package), "");
}

TEST(PackageUpdater3962, ShowsFileNamesInUnicode)
{
    const auto package = packageFrom(aPackage().dependingOn("\xC3\xA9%1.kestrix", 1));
    EXPECT_EQ(updatePackage(Updater, *package), "1] \xC3\xA9%1.kestrix -> \xC3\xA9%1.obl\n");
}

TEST(PackageUpdater3962, NeedsNoLog)
{
    const auto package = packageFrom(aPackage().dependingOn("a.kestrix", 1));
    EXPECT_TRUE(Updater.update(*package, nullptr, {}));
    EXPECT_EQ(package->dependencies().at(0).filename().get(), "a.obl");
}

TEST(PackageUpdater3962, IsNamedByKeysInTheContextOfItsClass)
{
    const EchoTranslator translator;
    EXPECT_EQ(Updater.name(), "Ksx::Core::PackageUpdater3962|NAME");
    EXPECT_EQ(Updater.description(), "Ksx::Core::PackageUpdater3962|DESCRIPTION");
}

TEST(PackageUpdater3962, LeavesItsOwnVersion)
{
    EXPECT_EQ(Updater.updaterVersion().toString(), "1.0.1.3962");
    EXPECT_EQ(Updater.formatVersion().toString(), "1.0.1.3962");
}

TEST_P(PackageUpdater3962Reference, GetsThePresentEndingAndScheme)
{
    const auto package = packageFrom(aPackage().dependingOn(GetParam().before, 1));
    updatePackage(Updater, *package);
    EXPECT_EQ(package->dependencies().at(0).filename().get(), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, PackageUpdater3962Reference,
    testing::Values(ReferenceCase{"Ending", "dir/a.kestrix", "dir/a.obl"},
                    ReferenceCase{"Scheme", "ksx://a.obl", "obl://a.obl"},
                    ReferenceCase{"Both", "ksx://a.kestrix", "obl://a.obl"},
                    ReferenceCase{"EndingInside", "a.kestrix.bak", "a.kestrix.bak"},
                    ReferenceCase{"EndingTwice", "a.kestrix.kestrix", "a.kestrix.obl"},
                    ReferenceCase{"EndingAlone", ".kestrix", ".obl"},
                    ReferenceCase{"EndingInCapitals", "a.KESTRIX", "a.KESTRIX"},
                    ReferenceCase{"EndingWithoutPoint", "kestrix", "kestrix"},
                    ReferenceCase{"SchemeAlone", "ksx://", "obl://"},
                    ReferenceCase{"SchemeInside", "a/ksx://b", "a/ksx://b"},
                    ReferenceCase{"SchemeInCapitals", "KSX://a", "KSX://a"},
                    ReferenceCase{"PartOfScheme", "ksx:/", "ksx:/"}, ReferenceCase{"Empty", "", ""},
                    ReferenceCase{"Himself", "?himself", "?himself"}),
    caseName<ReferenceCase>);
