// What the tool opens besides its inputs, and by which uids packages then name each other.
#include "support/packagetext.h"
#include "support/peakbound.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>

using TestSupport::aGraphWithInstance;
using TestSupport::aGroupSaying;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::Arguments;
using TestSupport::dependencyUidIn;
using TestSupport::PackageText;
using TestSupport::replaced;
using TestSupport::runTool;
using TestSupport::TemporaryDirectory;
using TestSupport::ToolRun;
using TestSupport::withDependencyUidsHidden;
using TestSupport::withOwnUidHidden;

namespace {

class LoadedPackages : public testing::Test
{
protected:
    ToolRun update(Arguments arguments) const
    {
        arguments.insert(arguments.begin(), "update");
        return runTool(directory.path(), arguments);
    }
    std::string at(const std::string& name) const { return directory.path(name); }
    // What a run prints that has loaded those files, up to the line of the saved ones.
    std::string listOf(const std::vector<std::string>& names) const
    {
        std::string text = "Packages Loaded:\n";
        for (const std::string& name : names)
            text += "    " + at(name) + "\n";
        return text;
    }
    static std::string loadedPart(const ToolRun& run)
    {
        return run.out.substr(0, run.out.find("Packages Saved:"));
    }

    TemporaryDirectory directory;
};

TEST_F(LoadedPackages, AreTheInputsAsGivenThenTheirDependenciesByDistance)
{
    directory.write("b.obl", aPackage().dependingOn("c.obl", 3).dependingOn("d.obl", 4).text());
    directory.write("a.obl", aPackage().dependingOn("e.obl", 5).text());
    directory.write("c.obl", aPackage().dependingOn("f.obl", 6).text());
    directory.write("d.obl", aPackage().text());
    directory.write("e.obl", aPackage().text());
    directory.write("f.obl", aPackage().text());

    const ToolRun run = update({"b.obl", "a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), listOf({"b.obl", "a.obl", "c.obl", "d.obl", "e.obl", "f.obl"}));
}

TEST_F(LoadedPackages, AnInputGivenTwiceIsOpenedOnce)
{
    directory.write("a.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), listOf({"a.obl"}));
}

TEST_F(LoadedPackages, TwoSpellingsOfOneFileAreOpenedOnce)
{
    directory.write("x/a.obl", aPackage().text());
    directory.makeLink("link.obl", "x/a.obl");

    const ToolRun run =
        update({"x/a.obl", "x/../x/./a.obl", at("x/a.obl"), "x//a.obl", "link.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), listOf({"x/a.obl"}));
}

TEST_F(LoadedPackages, AreNamedByTheirCanonicalPath)
{
    directory.write("x/a.obl", aPackage().text());
    directory.makeLink("link.obl", "x/a.obl");

    const ToolRun run = update({"link.obl"});

    EXPECT_EQ(loadedPart(run), listOf({"x/a.obl"}));
    EXPECT_EQ(directory.files(), "a_updated.obl link.obl x/a.obl");
}

TEST_F(LoadedPackages, AnInputThatAnotherDependsOnIsOpenedOnce)
{
    directory.write("a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "b.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), listOf({"a.obl", "b.obl"}));
}

TEST_F(LoadedPackages, ACycleEnds)
{
    directory.write("a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().dependingOn("c.obl", 8).text());
    directory.write("c.obl", aPackage().dependingOn("a.obl", 9).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), listOf({"a.obl", "b.obl", "c.obl"}));
}

TEST_F(LoadedPackages, TwoThatDependOnEachOtherKeepTheirReferences)
{
    const std::string a = aPackage().dependingOn("b.obl", 7).text();
    const std::string b = aPackage().dependingOn("a.obl", 9).text();
    directory.write("in/a.obl", a);
    directory.write("in/b.obl", b);

    const ToolRun run = update({"in/a.obl", "--output-path", "{inputPath}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("in/a_updated.obl"), a);
    EXPECT_EQ(withDependencyUidsHidden(directory.read("in/b_updated.obl")),
              withDependencyUidsHidden(b));
}

TEST_F(LoadedPackages, ADependencyOnItselfOpensNothing)
{
    directory.write("a.obl", aPackage().dependingOnItself(7).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), listOf({"a.obl"}));
}

TEST_F(LoadedPackages, APackageLosesADependencyOnItsOwnPath)
{
    directory.write("a.obl", aPackage().dependingOn("a.obl", 7).dependingOnItself(8).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(withOwnUidHidden(directory.read("a_updated.obl")),
              withOwnUidHidden(aPackage().dependingOnItself(8).text()));
}

TEST_F(LoadedPackages, TheSecondDependencyOnOneFileIsRemoved)
{
    directory.write("a.obl", aPackage()
                                 .dependingOn("b.obl", 7)
                                 .dependingOn("b.obl", 8)
                                 .containing(aGroupSaying("g", "pkg://x?dependency=8"))
                                 .text());
    directory.write("b.obl", aPackage().text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"),
              aPackage()
                  .dependingOn("b.obl", 7)
                  .containing(aGroupSaying("g", "pkg://x?dependency=8"))
                  .text());
}

TEST_F(LoadedPackages, TwoSpellingsOfADependencyBecomeTheFirstOne)
{
    directory.write("a.obl", aPackage()
                                 .dependingOn("b.obl", 7)
                                 .dependingOn("./b.obl", 8)
                                 .containing(aGroupSaying("g", "pkg://x?dependency=8"))
                                 .text());
    directory.write("b.obl", aPackage().text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), listOf({"a.obl", "b.obl"}));
    EXPECT_EQ(directory.read("a_updated.obl"),
              aPackage()
                  .dependingOn("b.obl", 7)
                  .containing(aGroupSaying("g", "pkg://x?dependency=7"))
                  .text());
}

TEST_F(LoadedPackages, ResourcesAreNoDependencies)
{
    directory.write("a.obl", aPackage().containing(aResource("r", "missing.obl")).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), listOf({"a.obl"}));
}

TEST_F(LoadedPackages, ManyInALineAreAllOpened)
{
    std::string expected = "Packages Loaded:\n";
    const int count = 60;
    for (int i = 0; i < count; ++i) {
        const std::string name = "p" + std::to_string(i) + ".obl";
        directory.write(
            "in/" + name,
            aPackage().dependingOn("p" + std::to_string((i + 1) % count) + ".obl", 100u).text());
        expected += "    " + at("in/" + name) + "\n";
    }

    const ToolRun run = update({"in/p0.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), expected);
}

// Costs that grow with the square of a number show in memory.

constexpr long MaximumKilobytes = 200L * 1024;

TEST_F(LoadedPackages, OneThatNamesItselfOftenIsFollowedOnce)
{
    PackageText package = aPackage();
    PackageText expected = aPackage();
    for (unsigned uid = 1; uid <= 4000; ++uid) {
        package.dependingOnItself(uid);
        expected.dependingOnItself(1);
    }
    directory.write("a.obl", package.text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(loadedPart(run), listOf({"a.obl"}));
    EXPECT_EQ(directory.read("a_updated.obl"), expected.text());
    EXPECT_LT(run.peakKilobytes, MaximumKilobytes);
}

TEST_F(LoadedPackages, ManyThatNameEachOtherAreFollowedOnce)
{
    const int count = 150;
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        PackageText package = aPackage();
        for (int j = 0; j < count; ++j)
            if (j != i)
                package.dependingOn("p" + std::to_string(j) + ".obl",
                                    static_cast<unsigned>(1000 * i + j));
        names.push_back("p" + std::to_string(i) + ".obl");
        directory.write(names.back(), package.text());
    }

    const ToolRun run = update({"p0.obl"});

    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(loadedPart(run), listOf(names));
    EXPECT_LT(run.peakKilobytes, TestSupport::peakBound(MaximumKilobytes));
}

// The two lines of a failed load.

TEST_F(LoadedPackages, AMissingInputIsShownAsGiven)
{
    const ToolRun run = update({"x/../missing.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "Cannot load: x/../missing.obl\nPackages cannot be correctly loaded\n");
}

TEST_F(LoadedPackages, AnEmptyInputIsShownAsGiven)
{
    const ToolRun run = update({"--inputs", ""});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: \nPackages cannot be correctly loaded\n");
}

TEST_F(LoadedPackages, ABrokenInputIsShownByItsCanonicalPath)
{
    directory.write("x/a.obl", "folly");

    const ToolRun run = update({"x/../x/a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: " + at("x/a.obl") + "\nPackages cannot be correctly loaded\n");
}

TEST_F(LoadedPackages, AMissingDependencyIsShownByItsUncleanedPath)
{
    directory.write("in/a.obl", aPackage().dependingOn("../x/./missing.obl", 7).text());

    const ToolRun run = update({"in/a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "Cannot load dependency: " + at("in/../x/./missing.obl") +
                           "\nPackages cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "in/a.obl");
}

TEST_F(LoadedPackages, AMissingAbsoluteDependencyIsShownAsItStands)
{
    directory.write("a.obl", aPackage().dependingOn(at("x/missing.obl"), 7).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: " + at("x/missing.obl") +
                           "\nPackages cannot be correctly loaded\n");
}

TEST_F(LoadedPackages, ABrokenDependencyIsShownByItsCanonicalPath)
{
    directory.write("in/a.obl", aPackage().dependingOn("../x/b.obl", 7).text());
    directory.write("x/b.obl", replaced(aPackage().text(), "</package>", ""));

    const ToolRun run = update({"in/a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: " + at("x/b.obl") +
                           "\nPackages cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "in/a.obl x/b.obl");
}

TEST_F(LoadedPackages, AnEmptyDependencyNamesNoFile)
{
    directory.write("a.obl", aPackage().dependingOn("", 7).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: \nPackages cannot be correctly loaded\n");
}

TEST_F(LoadedPackages, OneMissingDependencyOfManyPackagesFailsTheLoad)
{
    directory.write("a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().dependingOn("c.obl", 7).text());
    directory.write("d.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "d.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err,
              "Cannot load dependency: " + at("c.obl") + "\nPackages cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "a.obl b.obl d.obl");
}

TEST_F(LoadedPackages, TheFirstBadInputEndsTheRun)
{
    directory.write("a.obl", aPackage().dependingOn("missing.obl", 7).text());

    const ToolRun run = update({"a.obl", "b.obl", "c.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: b.obl\nPackages cannot be correctly loaded\n");
}

TEST_F(LoadedPackages, AnEndingInCapitalsIsNotKnown)
{
    directory.write("a.OBL", aPackage().text());

    const ToolRun run = update({"a.OBL"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: " + at("a.OBL") + "\nPackages cannot be correctly loaded\n");
}

TEST_F(LoadedPackages, AnUnknownEndingIsNotOpened)
{
    directory.write("a.xml", aPackage().text());

    const ToolRun run = update({"a.xml"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: " + at("a.xml") + "\nPackages cannot be correctly loaded\n");
}

TEST_F(LoadedPackages, ADependencyWithASchemeAndAPathIsTakenForAFileName)
{
    directory.write("in/a.obl", aPackage().dependingOn("obl://sub/b.obl", 7).text());
    directory.write("in/obl:/sub/b.obl", aPackage().text());

    const ToolRun run = update({"in/a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(loadedPart(run), listOf({"in/a.obl", "in/obl:/sub/b.obl"}));
}

// Uids.

TEST_F(LoadedPackages, TheFirstUidOfADependencyHoldsForAll)
{
    directory.write("a.obl", aPackage().dependingOn("c.obl", 10).text());
    directory.write("b.obl", aPackage()
                                 .dependingOn("c.obl", 20)
                                 .containing(aGraphWithInstance("g", "pkg://x?dependency=20"))
                                 .containing(aGroupSaying("s", "pkg://y?dependency=200"))
                                 .text());
    directory.write("c.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "b.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().dependingOn("c.obl", 10).text());
    EXPECT_EQ(directory.read("b_updated.obl"),
              aPackage()
                  .dependingOn("c.obl", 10)
                  .containing(aGraphWithInstance("g", "pkg://x?dependency=10"))
                  .containing(aGroupSaying("s", "pkg://y?dependency=200"))
                  .text());
}

TEST_F(LoadedPackages, UidsThatChangePlacesAreExchangedInOnePass)
{
    const auto text = [](unsigned c, unsigned d, const std::string& uidOfC,
                         const std::string& uidOfD) {
        return aPackage()
            .dependingOn("c.obl", c)
            .dependingOn("d.obl", d)
            .containing(aGroupSaying("c", "pkg://x?dependency=" + uidOfC))
            .containing(aGroupSaying("d", "pkg://x?dependency=" + uidOfD))
            .text();
    };
    directory.write("a.obl", text(1, 2, "1", "2"));
    directory.write("b.obl", text(2, 1, "2", "1"));
    directory.write("c.obl", aPackage().text());
    directory.write("d.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "b.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), text(1, 2, "1", "2"));
    EXPECT_EQ(directory.read("b_updated.obl"), text(1, 2, "1", "2"));
}

TEST_F(LoadedPackages, TheOwnUidOfADependencyFollowsTheOneThatOthersHaveForIt)
{
    directory.write("a.obl", aPackage().dependingOn("b.obl", 77).text());
    directory.write("b.obl", aPackage()
                                 .dependingOnItself(5)
                                 .containing(aGroupSaying("g", "pkg://x?dependency=5"))
                                 .text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("b_updated.obl"),
              aPackage()
                  .dependingOnItself(77)
                  .containing(aGroupSaying("g", "pkg://x?dependency=77"))
                  .text());
}

TEST_F(LoadedPackages, AnInputKeepsItsOwnUid)
{
    const std::string text = aPackage()
                                 .dependingOnItself(5)
                                 .containing(aGroupSaying("g", "pkg://x?dependency=5"))
                                 .text();
    directory.write("a.obl", text);

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), text);
}

TEST_F(LoadedPackages, AnOwnUidThatAnotherInputHasIsNewAndItsPathsFollow)
{
    const std::string text = aPackage()
                                 .dependingOnItself(5)
                                 .containing(aGroupSaying("g", "pkg://x?dependency=5"))
                                 .text();
    directory.write("a.obl", aPackage().dependingOnItself(5).text());
    directory.write("b.obl", text);

    const ToolRun run = update({"a.obl", "b.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    const std::string written = directory.read("b_updated.obl");
    EXPECT_NE(dependencyUidIn(written, "?himself"), 5u);
    EXPECT_EQ(withOwnUidHidden(written), withOwnUidHidden(text));
}

TEST_F(LoadedPackages, CurrentPackagesHaveTheSameBytesAfterwards)
{
    const std::string a = aPackage()
                              .dependingOn("b.obl", 7)
                              .dependingOn("c.obl", 8)
                              .dependingOnItself(5)
                              .containing(aGroupSaying("g", "pkg://x?dependency=5"))
                              .text();
    const std::string b = aPackage().dependingOn("a.obl", 5).text();
    directory.write("in/a.obl", a);
    directory.write("in/b.obl", b);
    directory.write("in/c.obl", aPackage().text());

    const ToolRun run =
        update({"in/c.obl", "in/b.obl", "in/a.obl", "--output-path", "{inputPath}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("in/a_updated.obl"), a);
    EXPECT_EQ(directory.read("in/b_updated.obl"), b);
}

TEST_F(LoadedPackages, TheUidOfAnInputIsTheSameForAllThatDependOnIt)
{
    directory.write("a.obl", aPackage().dependingOnItself(5).text());
    directory.write("b.obl", aPackage()
                                 .dependingOn("a.obl", 6)
                                 .containing(aGroupSaying("g", "pkg://x?dependency=6"))
                                 .text());

    const ToolRun run = update({"a.obl", "b.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    const unsigned uid = dependencyUidIn(directory.read("a_updated.obl"), "?himself");
    EXPECT_NE(uid, 0u);
    EXPECT_EQ(directory.read("b_updated.obl"),
              aPackage()
                  .dependingOn("a.obl", uid)
                  .containing(aGroupSaying("g", "pkg://x?dependency=" + std::to_string(uid)))
                  .text());
}

TEST_F(LoadedPackages, OfTwoElementsWithOneUidTheSecondIsMoved)
{
    directory.write("a.obl", aPackage()
                                 .dependingOn("b.obl", 7)
                                 .dependingOn("c.obl", 7)
                                 .containing(aGroupSaying("g", "pkg://x?dependency=7"))
                                 .text());
    directory.write("b.obl", aPackage().dependingOnItself(1).text());
    directory.write("c.obl", aPackage().dependingOnItself(1).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    const unsigned uid = dependencyUidIn(directory.read("c_updated.obl"), "?himself");
    EXPECT_NE(uid, 7u);
    EXPECT_EQ(directory.read("b_updated.obl"), aPackage().dependingOnItself(7).text());
    EXPECT_EQ(directory.read("a_updated.obl"),
              aPackage()
                  .dependingOn("b.obl", 7)
                  .dependingOn("c.obl", uid)
                  .containing(aGroupSaying("g", "pkg://x?dependency=7"))
                  .text());
}

TEST_F(LoadedPackages, AllElementsByWhichAPackageNamesItselfGetOneUid)
{
    directory.write("a.obl", aPackage()
                                 .dependingOnItself(5)
                                 .dependingOnItself(6)
                                 .dependingOnItself(6)
                                 .containing(aGroupSaying("g", "pkg://g?dependency=6"))
                                 .text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"),
              aPackage()
                  .dependingOnItself(5)
                  .dependingOnItself(5)
                  .dependingOnItself(5)
                  .containing(aGroupSaying("g", "pkg://g?dependency=5"))
                  .text());
}

TEST_F(LoadedPackages, APackageLosesADependencyOnAnotherSpellingOfItsOwnPath)
{
    directory.write("a.obl", aPackage().dependingOn(".//a.obl", 7).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().text());
}

TEST_F(LoadedPackages, TheGreatestUidIsNone)
{
    directory.write("a.obl", aPackage().dependingOn("b.obl", 4294967295u).text());
    directory.write("b.obl", aPackage().dependingOnItself(3).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    const unsigned uid = dependencyUidIn(directory.read("a_updated.obl"), "b.obl");
    EXPECT_NE(uid, 4294967295u);
    EXPECT_EQ(directory.read("b_updated.obl"), aPackage().dependingOnItself(uid).text());
}

TEST_F(LoadedPackages, AUidAboveTwoBillionIsKept)
{
    const std::string text = aPackage().dependingOn("b.obl", 4294967294u).text();
    directory.write("a.obl", text);
    directory.write("b.obl", aPackage().text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), text);
}

TEST_F(LoadedPackages, OtherTextsThatLookLikePathsAreLeftAlone)
{
    directory.write("a.obl", aPackage().dependingOn("c.obl", 10).text());
    const auto text = [](unsigned uid) {
        return aPackage()
            .dependingOn("c.obl", uid)
            .containing(aGroupSaying("one", "see pkg://x?dependency=20"))
            .containing(aGroupSaying("two", "PKG://x?dependency=20"))
            .containing(aGroupSaying("three", "pkg://x?Dependency=20"))
            .containing(aGroupSaying("four", "pkg://x?dependency=20 "))
            .containing(aGroupSaying("five", "pkg://dependency=20"))
            .text();
    };
    directory.write("b.obl", text(20));
    directory.write("c.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "b.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("b_updated.obl"), text(10));
}

TEST_F(LoadedPackages, OnlyTheUidOfARewrittenPathChanges)
{
    directory.write("a.obl", aPackage().dependingOn("c.obl", 10).text());
    const auto text = [](unsigned uid) {
        const std::string number = std::to_string(uid);
        return aPackage()
            .dependingOn("c.obl", uid)
            .containing(aGroupSaying("one", "pkg:////A%20 b//C?x=20&dependency=" + number + "&y"))
            .containing(aGroupSaying("two", "pkg://?dependency=" + number + "&dependency=20"))
            .text();
    };
    directory.write("b.obl", text(20));
    directory.write("c.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "b.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("b_updated.obl"), text(10));
}

} // namespace
