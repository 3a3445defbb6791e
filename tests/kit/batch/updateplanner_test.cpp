#include "ksx/kit/updateplanner.h"

#include "kit/batch/plans.h"
#include <gtest/gtest.h>

using Ksx::Kit::BatchOptions;
using Ksx::Kit::BatchPlan;
using TestSupport::aPackage;
using TestSupport::componentsOf;
using TestSupport::Library;
using TestSupport::shardsOf;

TEST(UpdatePlan, JoinsPackagesThatDependOnEachOther)
{
    Library library;
    library.with("a.obl", {"sub/c.obl"}).with("b.obl").with("sub/c.obl").with("d.obl", {"b.obl"});

    EXPECT_EQ(componentsOf(library.plan()), "a.obl 1, b.obl 2, d.obl 2, sub/c.obl 1");
}

TEST(UpdatePlan, JoinsACycleAcrossFolders)
{
    Library library;
    library.with("x/a.obl", {"../y/b.obl"}).with("y/b.obl", {"../z/c.obl"});
    library.with("z/c.obl", {"../x/a.obl"});

    EXPECT_EQ(componentsOf(library.plan()), "x/a.obl 1, y/b.obl 1, z/c.obl 1");
}

TEST(UpdatePlan, JoinsPackagesThatNeedOneOfAnotherFolder)
{
    Library library;
    library.directory.write("other.obl", aPackage().text());
    library.with("a.obl", {"../other.obl"}).with("b.obl", {"../other.obl"});

    const BatchPlan plan = library.plan();

    EXPECT_EQ(componentsOf(plan), "a.obl 1, b.obl 1");
    ASSERT_EQ(plan.sources.size(), 1U);
    EXPECT_EQ(plan.sources[0].file, library.path("other.obl"));
}

TEST(UpdatePlan, DoesNotJoinPackagesByPresets)
{
    Library library;
    library.with("a.obl", {"obl://q.obl"}).with("b.obl", {"obl://q.obl"}).with("presets/q.obl");

    EXPECT_EQ(componentsOf(library.plan()), "a.obl 1, b.obl 2, presets/q.obl 3");
}

TEST(UpdatePlan, SharesWhatPresetsNeed)
{
    Library library;
    library.with("a.obl", {"obl://q.obl"})
        .with("b.obl", {"obl://q.obl"})
        .with("presets/q.obl", {"../r.obl"})
        .with("r.obl", {"s.obl"})
        .with("s.obl");

    const BatchPlan plan = library.plan();

    EXPECT_EQ(componentsOf(plan), "a.obl 1, b.obl 2, presets/q.obl 3, r.obl 4, s.obl 5");
    EXPECT_TRUE(plan.options.isShared(library.path("lib/s.obl")));
    EXPECT_FALSE(plan.options.isShared(library.path("lib/s.obl.obl")));
}

TEST(UpdatePlan, JoinsPresetsThatAreNotSaidToBeShared)
{
    Library library;
    library.with("a.obl", {"obl://q.obl"}).with("b.obl", {"obl://q.obl"}).with("presets/q.obl");
    BatchOptions options = library.options();
    options.shared.clear();

    EXPECT_EQ(componentsOf(Library::plan(options)), "a.obl 1, b.obl 1, presets/q.obl 1");
}

TEST(UpdatePlan, FollowsNamesOfOldPackages)
{
    Library library;
    library.directory.write("lib/a.obl", aPackage()
                                             .with("updaterVersion", "1.0.1.3000")
                                             .dependingOn("b.kestrix", 5)
                                             .dependingOn("ksx://q.kestrix", 6)
                                             .text());
    library.with("b.obl").with("presets/q.obl");

    const BatchPlan plan = library.plan();

    EXPECT_EQ(componentsOf(plan), "a.obl 1, b.obl 1, presets/q.obl 2");
    EXPECT_TRUE(plan.missing.empty());
}

TEST(UpdatePlan, NamesMissingDependencies)
{
    Library library;
    library.with("a.obl", {"none.obl"});

    const BatchPlan plan = library.plan();

    ASSERT_EQ(plan.missing.size(), 1U);
    EXPECT_EQ(plan.missing[0].file, library.path("lib/a.obl"));
    EXPECT_EQ(plan.missing[0].dependency, "none.obl");
    EXPECT_EQ(plan.missing[0].path, library.path("lib/none.obl"));
}

TEST(UpdatePlan, LeavesUnreadablePackagesOut)
{
    Library library;
    library.with("a.obl").directory.write("lib/b.obl", "no package");

    const BatchPlan plan = library.plan();

    EXPECT_EQ(componentsOf(plan), "a.obl 1");
    ASSERT_EQ(plan.failures.size(), 1U);
    EXPECT_EQ(plan.failures[0].file, library.path("lib/b.obl"));
}

TEST(UpdatePlan, LeavesOutThePackageWhoseResultWouldTakeThePlaceOfAnother)
{
    Library library;
    library.with("a.obl").directory.write("lib/a.oblasm", "OLAM");

    const BatchPlan plan = library.plan();

    EXPECT_EQ(componentsOf(plan), "a.obl 1");
    ASSERT_EQ(plan.failures.size(), 1U);
    EXPECT_EQ(plan.failures[0].file, library.path("lib/a.oblasm"));
}

TEST(UpdatePlan, LeavesOutTheSecondNameOfAFile)
{
    Library library;
    library.with("a.obl").directory.makeLink("lib/b.obl", "a.obl");

    const BatchPlan plan = library.plan();

    EXPECT_EQ(componentsOf(plan), "a.obl 1");
    EXPECT_EQ(plan.failures.size(), 1U);
}

TEST(UpdatePlan, PutsComponentsOfEqualSizeIntoShardsOfEqualSize)
{
    Library library;
    library.with("a.obl").with("b.obl").with("c.obl").with("d.obl");

    const BatchPlan plan = library.plan(2);

    EXPECT_EQ(plan.shardCount, 2U);
    EXPECT_EQ(shardsOf(plan), "a.obl 1, b.obl 2, c.obl 1, d.obl 2");
}

TEST(UpdatePlan, NeverSplitsAComponent)
{
    Library library;
    library.with("a.obl", {"b.obl"}).with("b.obl", {"c.obl"}).with("c.obl").with("d.obl");

    const BatchPlan plan = library.plan(4);

    EXPECT_EQ(plan.shardCount, 2U);
    EXPECT_EQ(shardsOf(plan), "a.obl 1, b.obl 1, c.obl 1, d.obl 2");
}

TEST(UpdatePlan, NotesTheStateOfInputs)
{
    Library library;
    library.with("a.obl");

    const BatchPlan plan = library.plan();

    ASSERT_EQ(plan.packages.size(), 1U);
    const Ksx::Kit::FileStamp& stamp = plan.packages[0].stamp;
    EXPECT_EQ(stamp.size, qint64(library.directory.read("lib/a.obl").size()));
    EXPECT_EQ(stamp.sha256.size(), 64);
    EXPECT_TRUE(hasStamp(library.path("lib/a.obl"), stamp));
}

TEST(FileStamp, DiffersForOtherBytesOfTheSameSize)
{
    TestSupport::TemporaryDirectory directory;
    const QString file = Orv::fromBytes(directory.write("a", "one"));
    QString reason;
    auto stamp = Ksx::Kit::stampOf(file, reason);
    ASSERT_TRUE(stamp);
    stamp->modified -= 1; // as if the file were written again at once

    directory.write("a", "two");

    EXPECT_FALSE(hasStamp(file, *stamp));
}

TEST(FileStamp, IsTheSameForTheSameBytesAtAnotherTime)
{
    TestSupport::TemporaryDirectory directory;
    const QString file = Orv::fromBytes(directory.write("a", "one"));
    QString reason;
    auto stamp = Ksx::Kit::stampOf(file, reason);
    ASSERT_TRUE(stamp);

    stamp->modified -= 1;

    EXPECT_TRUE(hasStamp(file, *stamp));
}

TEST(FileStamp, IsMissingForAFolder)
{
    TestSupport::TemporaryDirectory directory;
    QString reason;

    EXPECT_FALSE(Ksx::Kit::stampOf(Orv::fromBytes(directory.path()), reason));

    EXPECT_FALSE(reason.isEmpty());
}
