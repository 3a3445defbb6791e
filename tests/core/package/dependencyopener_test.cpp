#include "ksx/core/dependencyopener.h"

#include "core/extensions.h"
#include "core/messagenode.h"
#include "data/content/package.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include <gtest/gtest.h>

using Ksx::Core::DependencyOpener;
using Ksx::Core::LoadedEntries;
using Ksx::Core::PackagesListManager;
using TestSupport::aPackage;
using TestSupport::TemporaryDirectory;

namespace {

class DependencyOpenerTest : public testing::Test
{
protected:
    QString at(const char* name) const { return QString::fromStdString(directory.path(name)); }
    QStringList openPackages() const
    {
        QStringList names;
        for (const auto& package : manager.openPackages())
            names.append(QString::fromLatin1(package->identifier().get().c_str()));
        return names;
    }
    // The files that failed, those of dependencies behind a "+".
    static QStringList failed(const DependencyOpener& opener)
    {
        QStringList names;
        for (const DependencyOpener::Failure& failure : opener.failures())
            names.append((failure.isDependency ? "+" : "") + failure.filename);
        return names;
    }

    TemporaryDirectory directory;
    PackagesListManager manager;
};

TEST_F(DependencyOpenerTest, OpensAllThatIsDependedUponBreadthFirst)
{
    directory.write("a.obl",
                    aPackage().named("a").dependingOn("b.obl", 7).dependingOn("c.obl", 8).text());
    directory.write("b.obl", aPackage().named("b").dependingOn("d.obl", 7).text());
    directory.write("c.obl", aPackage().named("c").text());
    directory.write("d.obl", aPackage().named("d").dependingOn("a.obl", 7).text());

    EXPECT_TRUE(DependencyOpener(manager, {}).open({at("a.obl")}));

    EXPECT_EQ(openPackages(), QStringList({"a", "b", "c", "d"}));
}

TEST_F(DependencyOpenerTest, ShowsTheStagesOfOldFiles)
{
    directory.write("a.obl", aPackage()
                                 .named("a")
                                 .with("formatVersion", "1.1.0.6141")
                                 .without("updaterVersion")
                                 .dependingOn("b.obl", 7)
                                 .text());
    directory.write("b.obl", aPackage().named("b").text());
    QStringList stages;
    const Ksx::Data::Content::Package* shown = nullptr;
    DependencyOpener opener(manager, {});
    opener.setStageFunction([&](const Ksx::Core::UpdateStage& stage) {
        stages << stage.url.fileName() + (stage.document != nullptr ? " document " : " package ") +
                      (stage.step == nullptr ? "-" : stage.step->updaterVersion().toString());
        shown = stage.package;
    });

    EXPECT_TRUE(opener.open({at("a.obl")}));

    EXPECT_EQ(stages,
              QStringList({"a.obl document -", "a.obl document 1.1.0.7049", "a.obl package -"}));
    EXPECT_EQ(shown, manager.openPackages().front().get());
}

TEST_F(DependencyOpenerTest, OpensNoDependencyUnlessItFollowsThem)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("missing.obl", 7).text());
    DependencyOpener opener(manager, {});
    opener.setFollowsDependencies(false);

    EXPECT_TRUE(opener.open({at("a.obl")}));

    EXPECT_EQ(openPackages(), QStringList({"a"}));
}

TEST_F(DependencyOpenerTest, AttachesNothingWhereItStopsAtAFailure)
{
    directory.write("a.obl",
                    aPackage().named("a").dependingOn("m.obl", 7).dependingOn("n.obl", 8).text());
    DependencyOpener opener(manager, {});

    EXPECT_FALSE(opener.open({at("a.obl")}));

    EXPECT_EQ(failed(opener), QStringList({"+" + at("m.obl")}));
    EXPECT_EQ(openPackages(), QStringList());
}

TEST_F(DependencyOpenerTest, AttachesAllOthersWhereItGoesOn)
{
    directory.write("a.obl",
                    aPackage().named("a").dependingOn("m.obl", 7).dependingOn("c.obl", 8).text());
    directory.write("b.obl", "no package");
    directory.write("c.obl", aPackage().named("c").text());
    DependencyOpener opener(manager, {}, DependencyOpener::OnFailure::GoOn);

    EXPECT_FALSE(opener.open({at("b.obl"), at("a.obl")}));

    EXPECT_EQ(failed(opener), QStringList({at("b.obl"), "+" + at("m.obl")}));
    EXPECT_EQ(openPackages(), QStringList({"a", "c"}));
}

TEST_F(DependencyOpenerTest, ForgetsTheFailuresOfTheOpeningBefore)
{
    directory.write("a.obl", aPackage().named("a").text());
    DependencyOpener opener(manager, {});
    EXPECT_FALSE(opener.open({at("missing.obl")}));

    EXPECT_TRUE(opener.open({at("a.obl")}));

    EXPECT_EQ(failed(opener), QStringList());
}

TEST_F(DependencyOpenerTest, ReportsWhyAFileFailed)
{
    directory.write("b.obl", "no package");
    Orv::Core::MessageNode report;

    EXPECT_FALSE(DependencyOpener(manager, {}).open({at("b.obl")}, &report));

    EXPECT_TRUE(report.hasError());
}

TEST_F(DependencyOpenerTest, AnEntryThatHasItsPackageIsNotOpened)
{
    const auto package = TestSupport::packageFrom(aPackage());
    DependencyOpener::Entry entry;
    entry.filename = "missing.obl";
    entry.package.reset(package.get());

    EXPECT_TRUE(DependencyOpener(manager, {}).openEntry(entry, {}));

    EXPECT_EQ(entry.filename, "missing.obl");
}

TEST_F(DependencyOpenerTest, AnEntryTakesOverThePackageOfItsFile)
{
    directory.write("a.obl", "no package");
    const auto package = TestSupport::packageFrom(aPackage());
    DependencyOpener::Entry former;
    former.filename = at("a.obl");
    former.package.reset(package.get());
    DependencyOpener::Entry entry;
    entry.filename = at("./a.obl");

    EXPECT_TRUE(DependencyOpener(manager, {}).openEntry(entry, {former}));

    EXPECT_EQ(entry.filename, at("a.obl"));
    EXPECT_TRUE(entry.package == package.get());
}

TEST(LoadedEntriesTest, EqualEntriesAreKeptOnce)
{
    const auto package = TestSupport::packageFrom(aPackage());
    LoadedEntries::Entry entry;
    entry.uid = 1;
    entry.filename = "a.obl";
    entry.package.reset(package.get());
    LoadedEntries::Entry other = entry;
    other.uid = 2;
    LoadedEntries loaded;

    EXPECT_TRUE(loaded.add(entry));
    EXPECT_TRUE(loaded.add(other));
    EXPECT_FALSE(loaded.add(entry));

    EXPECT_EQ(loaded.all().size(), 2u);
    EXPECT_EQ(loaded.findByFile("a.obl"), &loaded.all().front());
    EXPECT_EQ(loaded.findByFile("b.obl"), nullptr);
}

} // namespace
