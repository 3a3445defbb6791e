#include "ksx/core/packageslistmanager.h"

#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/packageslist.h"
#include "data/diagnosticlog.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include "support/workspace.h"
#include <QUuid>
#include <gtest/gtest.h>

using Ksx::Core::NoUid;
using Ksx::Core::PackagesListManager;
using Ksx::Core::Uid;
using Ksx::Core::UidSource;
using Ksx::Data::Content::Group;
using Ksx::Data::Content::Package;
using TestSupport::aGroupSaying;
using TestSupport::aPackage;
using TestSupport::packageFrom;
using TestSupport::PackageText;
using TestSupport::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;
using Entry = PackagesListManager::DependencyEntry;
using Entries = std::list<Entry>;
using PackageBox = PackagesListManager::PackageBox;

// A manager, and a clock and counter that make uids 1000, 1001 and so on.
class PackagesManager : public testing::Test
{
protected:
    PackagesManager()
    {
        UidSource::setClock([] { return std::time_t{1000}; });
        UidSource::shared().setCounter(0);
    }
    ~PackagesManager() override { UidSource::setClock({}); }

    QString at(const std::string& name) const
    {
        return QString::fromStdString(directory.path(name));
    }
    // The entry of a package that a user asked for.
    Entry asked(const std::string& name, const PackageText& package)
    {
        Entry entry;
        entry.filename = at(name);
        entry.package = manager.keep(packageFrom(package));
        return entry;
    }
    // What a package depends on, as "name: uid" with "-" for what is not open.
    Lines described(const Entries& entries) const
    {
        Lines lines;
        for (const Entry& entry : entries)
            lines.push_back(entry.filename.toStdString() + ": " +
                            std::to_string(static_cast<Uid>(entry.uid)) +
                            (entry.package ? "" : " -"));
        return lines;
    }
    static Lines dependenciesOf(const PackageBox& package)
    {
        Lines lines;
        for (const auto& dependency : package->dependencies())
            lines.push_back(dependency.filename().get() + ": " +
                            std::to_string(dependency.uid().get()));
        return lines;
    }
    // The description of the package's first group.
    static std::string pathOf(const PackageBox& package)
    {
        return static_cast<const Group&>(package->content().at(0)).desc().get();
    }
    Lines open() const
    {
        Lines names;
        for (const PackageBox& package : manager.openPackages())
            names.push_back(package->identifier().get());
        return names;
    }
    void add(const Lines& names)
    {
        std::vector<std::unique_ptr<Package>> packages;
        for (const std::string& name : names)
            packages.push_back(packageFrom(aPackage().named(name)));
        EXPECT_TRUE(manager.addPackages(std::move(packages)));
    }
    PackageBox openAt(std::size_t index) const { return manager.openPackages().at(index); }

    TemporaryDirectory directory;
    PackagesListManager manager;
};

// The list.

TEST_F(PackagesManager, HasNoPackagesAtFirst)
{
    EXPECT_EQ(open(), Lines());
    EXPECT_TRUE(manager.document().isTreeRoot());
}

TEST_F(PackagesManager, AppendsPackagesInTheirOrder)
{
    add({"a", "b"});
    add({"c"});

    EXPECT_EQ(open(), Lines({"a", "b", "c"}));
}

TEST_F(PackagesManager, AddsNothing)
{
    add({});

    EXPECT_EQ(open(), Lines());
}

TEST_F(PackagesManager, RemovesPackages)
{
    add({"a", "b", "c"});

    EXPECT_TRUE(manager.removePackages({openAt(2), openAt(0)}));

    EXPECT_EQ(open(), Lines({"b"}));
}

TEST_F(PackagesManager, RemovesNothingWhenOneOfThemIsNotInTheList)
{
    add({"a", "b"});
    const auto other = packageFrom(aPackage());

    EXPECT_FALSE(manager.removePackages({openAt(0), PackageBox(other.get())}));

    EXPECT_EQ(open(), Lines({"a", "b"}));
}

TEST_F(PackagesManager, RemovesNoEmptyHandle)
{
    add({"a"});

    EXPECT_FALSE(manager.removePackages({PackageBox()}));

    EXPECT_EQ(open(), Lines({"a"}));
}

TEST_F(PackagesManager, MovesAPackage)
{
    add({"a", "b", "c"});

    EXPECT_TRUE(manager.movePackage(openAt(0), 2));
    EXPECT_TRUE(manager.movePackage(openAt(1), -1));

    EXPECT_EQ(open(), Lines({"c", "b", "a"}));
}

TEST_F(PackagesManager, MovesNothingBeyondTheEnds)
{
    add({"a", "b"});

    EXPECT_FALSE(manager.movePackage(openAt(0), 2));
    EXPECT_FALSE(manager.movePackage(openAt(1), -2));
    EXPECT_FALSE(manager.movePackage(openAt(0), -1));
    EXPECT_FALSE(manager.movePackage(PackageBox(), 0));

    EXPECT_EQ(open(), Lines({"a", "b"}));
}

TEST_F(PackagesManager, RemovesADependencyOfAnOpenPackage)
{
    std::vector<std::unique_ptr<Package>> packages;
    packages.push_back(packageFrom(aPackage().dependingOn("b", 1).dependingOn("c", 2)));
    manager.addPackages(std::move(packages));
    auto& package = const_cast<Package&>(*openAt(0));

    EXPECT_TRUE(manager.removeDependency(package, package.dependencies().at(0)));

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"c: 2"}));
}

TEST_F(PackagesManager, RemovesADependencyOfADetachedPackage)
{
    const auto package = packageFrom(aPackage().dependingOn("b", 1).dependingOn("c", 2));

    EXPECT_TRUE(manager.removeDependency(*package, package->dependencies().at(1)));

    EXPECT_EQ(dependenciesOf(PackageBox(package.get())), Lines({"b: 1"}));
}

TEST_F(PackagesManager, RemovesNoDependencyOfAnotherPackage)
{
    const auto package = packageFrom(aPackage().dependingOn("b", 1));
    const auto other = packageFrom(aPackage().dependingOn("b", 1));

    EXPECT_FALSE(manager.removeDependency(*package, other->dependencies().at(0)));

    EXPECT_EQ(dependenciesOf(PackageBox(package.get())), Lines({"b: 1"}));
}

// With a command manager, edits of the list can be undone.

class EditedPackages : public testing::Test
{
protected:
    EditedPackages()
    {
        workspace.open(aPackage().named("a"), "/a.obl");
        workspace.open(aPackage().named("b").dependingOn("c", 1).dependingOn("d", 2), "/b.obl");
        workspace.open(aPackage().named("c"), "/c.obl");
    }
    Lines open() const
    {
        Lines names;
        for (const PackageBox& package : manager.openPackages())
            names.push_back(package->identifier().get());
        return names;
    }
    PackageBox openAt(std::size_t index) const { return manager.openPackages().at(index); }

    TestSupport::Workspace workspace;
    PackagesListManager& manager = workspace.packages();
};

TEST_F(EditedPackages, ThatWereRemovedComeBackToTheirPlaces)
{
    const PackageBox c = openAt(2);
    ASSERT_TRUE(manager.removePackages({c, openAt(0)}));
    ASSERT_EQ(open(), Lines({"b"}));

    EXPECT_TRUE(workspace.undoAll());

    EXPECT_EQ(open(), Lines({"a", "b", "c"}));
    EXPECT_TRUE(openAt(2) == c);
    EXPECT_EQ(manager.filePath(*c), "/c.obl");
}

TEST_F(EditedPackages, AreRemovedAgain)
{
    manager.removePackages({openAt(0)});
    workspace.undoAll();

    EXPECT_TRUE(workspace.redoAll());

    EXPECT_EQ(open(), Lines({"b", "c"}));
    EXPECT_FALSE(manager.packageForPath("/a.obl"));
}

TEST_F(EditedPackages, GetBackADependencyAtItsPlace)
{
    auto& package = const_cast<Package&>(*openAt(1));
    const std::string before = TestSupport::xmlOf(package);
    ASSERT_TRUE(manager.removeDependency(package, package.dependencies().at(0)));
    ASSERT_EQ(package.dependencies().size(), 1u);

    EXPECT_TRUE(workspace.undoAll());

    EXPECT_EQ(TestSupport::xmlOf(package), before);
}

TEST_F(EditedPackages, LoseADependencyAgain)
{
    auto& package = const_cast<Package&>(*openAt(1));
    manager.removeDependency(package, package.dependencies().at(1));
    const std::string after = TestSupport::xmlOf(package);
    workspace.undoAll();

    EXPECT_TRUE(workspace.redoAll());

    EXPECT_EQ(TestSupport::xmlOf(package), after);
}

// New packages.

TEST_F(PackagesManager, ANewPackageHasItsIdentifierAndAFreshFileUid)
{
    const auto one = PackagesListManager::newPackage("wood");
    const auto two = PackagesListManager::newPackage("wood");

    EXPECT_EQ(one->identifier().get(), "wood");
    EXPECT_FALSE(QUuid(QString::fromStdString(one->fileUID().get())).isNull());
    EXPECT_NE(one->fileUID().get(), two->fileUID().get());
    EXPECT_EQ(one->getParent(), nullptr);
}

TEST_F(PackagesManager, ANewPackageHasAFileUidOfTheRandomSource)
{
    UidSource::setRandom([] { return 0u; });

    const auto package = PackagesListManager::newPackage("wood");

    UidSource::setRandom({});
    EXPECT_EQ(package->fileUID().get(), "{00000000-0000-4000-8000-000000000000}");
}

TEST_F(PackagesManager, ANewPackageHasADefaultIdentifier)
{
    EXPECT_EQ(PackagesListManager::newPackage("")->identifier().get(),
              "DEFAULT_NEW_PACKAGE_IDENTIFIER");
}

// What a package depends on.

TEST_F(PackagesManager, AnEntryWithoutAPackageDependsOnNothing)
{
    EXPECT_TRUE(manager.dependenciesOf(Entry()).empty());
}

TEST_F(PackagesManager, DependenciesAreGivenInDocumentOrder)
{
    const Entry a = asked(
        "a.obl", aPackage().dependingOn("/x/b.obl", 7).dependingOnItself(8).dependingOn("/c", 9));

    const Entries entries = manager.dependenciesOf(a);

    EXPECT_EQ(described(entries),
              Lines({"/x/b.obl: 7 -", directory.path("a.obl") + ": 8", "/c: 9 -"}));
}

TEST_F(PackagesManager, EveryEntryNamesItsOwner)
{
    const Entry a = asked("a.obl", aPackage().dependingOn("/b", 7).dependingOnItself(8));

    const Entries entries = manager.dependenciesOf(a);

    EXPECT_TRUE(entries.front().owner == a.package);
    EXPECT_TRUE(entries.back().owner == a.package);
    EXPECT_TRUE(entries.back().package == a.package);
}

TEST_F(PackagesManager, AnOpenPackageIsGivenAlong)
{
    manager.finishLoading({asked("b.obl", aPackage())});
    const Entry a = asked("a.obl", aPackage().dependingOn(directory.path("x/../b.obl"), 7));

    const Entries entries = manager.dependenciesOf(a);

    EXPECT_TRUE(entries.front().package == openAt(0));
    EXPECT_EQ(described(entries), Lines({directory.path("x/../b.obl") + ": 7"}));
}

TEST_F(PackagesManager, AnEmptyNameIsResolvedByTheUid)
{
    manager.finishLoading({asked("b.obl", aPackage())});
    const Entry a = asked("a.obl", aPackage().dependingOn("", 1000).dependingOn("", 5));

    const Entries entries = manager.dependenciesOf(a);

    EXPECT_EQ(described(entries), Lines({directory.path("b.obl") + ": 1000", ": 5 -"}));
}

TEST_F(PackagesManager, AnEmptyNameLeadsToAnOpenPackageWithoutAFileByItsUid)
{
    Entry unsaved = asked("b.obl", aPackage().dependingOn("?himself", 12));
    unsaved.filename.clear();
    manager.finishLoading({unsaved});
    const Entry a = asked("a.obl", aPackage().dependingOn("", 12));
    Entries entries{a};
    entries.splice(entries.end(), manager.dependenciesOf(a));

    manager.finishLoading(entries);

    EXPECT_TRUE(entries.back().package == openAt(0));
    EXPECT_EQ(manager.table().findByUid(12), manager.table().findByPackage(*openAt(0)));
    EXPECT_EQ(a.package->dependencies().at(0).uid().get(), 12u);
}

TEST_F(PackagesManager, APackageAddedWithoutLoadingHasAPathToItsObjects)
{
    std::vector<std::unique_ptr<Package>> packages;
    packages.push_back(PackagesListManager::newPackage("new"));

    manager.addPackages(std::move(packages));

    const auto* const entry = manager.table().findByPackage(*openAt(0));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(manager.table().findByUid(entry->uid), entry);
}

TEST_F(PackagesManager, BadDependenciesAreRemovedAndTraced)
{
    Lines traced;
    const int sink = Orv::DiagnosticLog::addSink(
        [&](const Orv::LogRecord& record) { traced.push_back(record.text); });
    const std::string own = directory.path("a.obl");
    const Entry a = asked("a.obl", aPackage()
                                       .dependingOn(own, 1)
                                       .dependingOn("/b", 2)
                                       .dependingOn("/b", 3)
                                       .dependingOn("/c", 4)
                                       .dependingOn("/b", 5));

    const Entries entries = manager.dependenciesOf(a);

    Orv::DiagnosticLog::removeSink(sink);
    EXPECT_EQ(described(entries), Lines({"/b: 2 -", "/c: 4 -"}));
    EXPECT_EQ(dependenciesOf(a.package), Lines({"/b: 2", "/c: 4"}));
    EXPECT_EQ(traced,
              Lines({"Removed bad himself dependency '" + own + "'\n",
                     "Removed multi dependency '/b'\n", "Removed multi dependency '/b'\n"}));
}

TEST_F(PackagesManager, ANameThatAUidHasLedToCountsAmongTheNames)
{
    manager.finishLoading({asked("b.obl", aPackage())});
    const std::string name = directory.path("b.obl");
    const Entry a = asked("a.obl", aPackage().dependingOn("", 1000).dependingOn(name, 7));

    const Entries entries = manager.dependenciesOf(a);

    EXPECT_EQ(described(entries), Lines({name + ": 1000"}));
    EXPECT_EQ(dependenciesOf(a.package), Lines({": 1000"}));
}

TEST_F(PackagesManager, OneNameMayBeAnEndOfAnother)
{
    const Entry a = asked("a.obl", aPackage().dependingOn("/x/b", 1).dependingOn("/x/x/b", 2));

    EXPECT_EQ(manager.dependenciesOf(a).size(), 2u);
}

TEST_F(PackagesManager, EntriesAreEqualInFourThings)
{
    const auto package = packageFrom(aPackage().dependingOn("b", 1));
    Entry entry;
    entry.uid = 1;
    entry.filename = "x";
    entry.package.reset(package.get());
    entry.owner.reset(package.get());

    const auto isEqualAfter = [&](const std::function<void(Entry&)>& change) {
        Entry other = entry;
        change(other);
        return other == entry;
    };

    EXPECT_TRUE(isEqualAfter([](Entry&) {}));
    EXPECT_TRUE(
        isEqualAfter([&](Entry& other) { other.element.reset(&package->dependencies().at(0)); }));
    EXPECT_FALSE(isEqualAfter([](Entry& other) { other.uid = 2; }));
    EXPECT_FALSE(isEqualAfter([](Entry& other) { other.filename = "y"; }));
    EXPECT_FALSE(isEqualAfter([](Entry& other) { other.package.reset(); }));
    EXPECT_FALSE(isEqualAfter([](Entry& other) { other.owner.reset(); }));
}

// The final pass.

TEST_F(PackagesManager, AttachesThePackagesInTheOrderOfTheirEntries)
{
    const Entries entries{asked("b.obl", aPackage().named("b")),
                          asked("a.obl", aPackage().named("a"))};

    EXPECT_TRUE(manager.finishLoading(entries));

    EXPECT_EQ(open(), Lines({"b", "a"}));
    EXPECT_EQ(manager.filePath(*openAt(0)), at("b.obl"));
    EXPECT_TRUE(manager.packageForPath(at("x/../a.obl")) == openAt(1));
}

TEST_F(PackagesManager, AttachesAPackageOnce)
{
    const Entry a = asked("a.obl", aPackage().named("a"));

    EXPECT_TRUE(manager.finishLoading({a, a}));
    EXPECT_TRUE(manager.finishLoading({a}));

    EXPECT_EQ(open(), Lines({"a"}));
    EXPECT_EQ(manager.table().entries().size(), 1u);
}

TEST_F(PackagesManager, AttachesNothingForNoEntry)
{
    EXPECT_TRUE(manager.finishLoading({}));

    EXPECT_EQ(open(), Lines());
}

TEST_F(PackagesManager, AnUnknownPackageHasNoPath)
{
    EXPECT_EQ(manager.filePath(*packageFrom(aPackage())), "");
    EXPECT_FALSE(manager.packageForPath(at("a.obl")));
    EXPECT_FALSE(manager.packageForPath(""));
}

TEST_F(PackagesManager, APackageThatWasRemovedHasNoPlaceByPath)
{
    manager.finishLoading({asked("a.obl", aPackage())});

    manager.removePackages({openAt(0)});

    EXPECT_FALSE(manager.packageForPath(at("a.obl")));
}

TEST_F(PackagesManager, APackageThatWasAskedForGetsAFreshUid)
{
    manager.finishLoading({asked("a.obl", aPackage())});

    EXPECT_NE(manager.table().findByUid(1000), nullptr);
}

// Two packages, of which the first is the owner of dependencies.
class SettledUids : public PackagesManager
{
protected:
    // Loads "a.obl", whose dependencies stand for packages that are opened, each under its name.
    Entries load(const PackageText& package)
    {
        const Entry a = asked("a.obl", package);
        Entries entries{a};
        for (Entry& dependency : manager.dependenciesOf(a)) {
            if (!dependency.package)
                dependency.package = manager.keep(packageFrom(aPackage()));
            entries.push_back(dependency);
        }
        EXPECT_TRUE(manager.finishLoading(entries));
        return entries;
    }
};

TEST_F(SettledUids, AFreeUidIsKept)
{
    load(aPackage().dependingOn("/b", 7));

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"/b: 7"}));
    EXPECT_TRUE(manager.table().findByUid(7)->package == openAt(1));
}

TEST_F(SettledUids, APackageThatWasAskedForKeepsItsOwnUid)
{
    load(aPackage().dependingOnItself(7).containing(aGroupSaying("g", "pkg://x?dependency=7")));

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"?himself: 7"}));
    EXPECT_EQ(pathOf(openAt(0)), "pkg://x?dependency=7");
    EXPECT_TRUE(manager.table().findByUid(7)->package == openAt(0));
}

TEST_F(SettledUids, TheFirstOfManyOwnUidsHoldsForAll)
{
    load(aPackage().dependingOnItself(7).dependingOnItself(8).dependingOnItself(9));

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"?himself: 7", "?himself: 7", "?himself: 7"}));
}

TEST_F(SettledUids, AnOwnUidThatIsTakenIsThatOfTheClock)
{
    manager.finishLoading({asked("x.obl", aPackage().dependingOnItself(7))});

    load(aPackage().dependingOnItself(7).containing(aGroupSaying("g", "pkg://x?dependency=7")));

    EXPECT_EQ(dependenciesOf(openAt(1)), Lines({"?himself: 1000"}));
    EXPECT_EQ(pathOf(openAt(1)), "pkg://x?dependency=1000");
}

TEST_F(SettledUids, AnOwnUidThatStandsForNoneIsThatOfTheClock)
{
    load(aPackage().dependingOnItself(NoUid));

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"?himself: 1000"}));
}

TEST_F(SettledUids, APackageWithoutAnOwnUidGetsTheFirstThatAnotherHasForIt)
{
    const Entry b = asked("b.obl", aPackage());
    const Entry a = asked("a.obl", aPackage().dependingOn(directory.path("b.obl"), 77));
    Entries entries{b, a};
    entries.splice(entries.end(), manager.dependenciesOf(a));

    manager.finishLoading(entries);

    EXPECT_TRUE(manager.table().findByUid(77)->package == openAt(0));
    EXPECT_EQ(dependenciesOf(openAt(1)), Lines({directory.path("b.obl") + ": 77"}));
}

TEST_F(SettledUids, AFreshUidIsNoneOfTheCallsDependencies)
{
    load(aPackage().dependingOn("/b", 1000).dependingOn("/c", 1233));

    // 1000 and 1233 are taken, and the steps are 233 and 234.
    EXPECT_EQ(manager.table().entries().front().uid, 1000u + 233u + 234u);
    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"/b: 1000", "/c: 1233"}));
}

TEST_F(SettledUids, AFreshUidIsNoneOfTheTable)
{
    manager.finishLoading({asked("x.obl", aPackage())});
    UidSource::shared().setCounter(0);

    manager.finishLoading({asked("y.obl", aPackage())});

    EXPECT_EQ(manager.table().entries().back().uid, 1000u + 233u);
}

TEST_F(SettledUids, ATakenUidIsReplacedWithItsPaths)
{
    manager.finishLoading({asked("x.obl", aPackage())}); // has 1000

    load(
        aPackage().dependingOn("/b", 1000).containing(aGroupSaying("g", "pkg://?dependency=1000")));

    // The owner itself has got 1001.
    EXPECT_EQ(dependenciesOf(openAt(1)), Lines({"/b: 1002"}));
    EXPECT_EQ(pathOf(openAt(1)), "pkg://?dependency=1002");
}

TEST_F(SettledUids, ThePathsOfAUidThatStaysDoNotFollowASecondElement)
{
    load(aPackage().dependingOn("/b", 7).dependingOn("/c", 7).containing(
        aGroupSaying("g", "pkg://x?dependency=7")));

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"/b: 7", "/c: 1001"}));
    EXPECT_EQ(pathOf(openAt(0)), "pkg://x?dependency=7");
}

TEST_F(SettledUids, TheUidThatStandsForNoneIsReplaced)
{
    load(aPackage()
             .dependingOn("/b", NoUid)
             .containing(aGroupSaying("g", "pkg://x?dependency=4294967295")));

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"/b: 1001"}));
    EXPECT_EQ(pathOf(openAt(0)), "pkg://x?dependency=1001");
}

TEST_F(SettledUids, ADependencyWithoutAUidKeepsZero)
{
    load(aPackage().dependingOn("/b", 0));

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"/b: 0"}));
    EXPECT_NE(manager.table().findByUid(0), nullptr);
}

TEST_F(SettledUids, OfTwoDependenciesWithoutAUidOneGetsAFreshOne)
{
    load(aPackage().dependingOn("/b", 0).dependingOn("/c", 0));

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"/b: 0", "/c: 1001"}));
}

TEST_F(SettledUids, PackagesThatNoOwnerNamesAreLeftAlone)
{
    const Entry other =
        asked("z.obl",
              aPackage().dependingOn("/y", 7).containing(aGroupSaying("g", "pkg://?dependency=7")));

    manager.finishLoading({other});

    EXPECT_EQ(dependenciesOf(openAt(0)), Lines({"/y: 7"}));
    EXPECT_EQ(pathOf(openAt(0)), "pkg://?dependency=7");
}

} // namespace
