#include "ksx/core/packageentrytable.h"

#include "core/commanddatamodification.h"
#include "core/manipulatorlist.h"
#include "data/content/package.h"
#include "data/content/packagemanipulators.h"
#include "data/content/packageslist.h"
#include "ksx/core/plainroute.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include <QDir>
#include <gtest/gtest.h>
#include <filesystem>

using Ksx::Core::editPlainly;
using Ksx::Core::PackageEntry;
using Ksx::Core::PackageEntryTable;
using Ksx::Data::Content::Package;
using Ksx::Data::Content::PackagesList;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
using TestSupport::aPackage;
using TestSupport::packageFrom;
using TestSupport::TemporaryDirectory;

namespace {

class EntryTable : public testing::Test
{
protected:
    QString at(const char* name) const { return QString::fromStdString(directory.path(name)); }

    TemporaryDirectory directory;
    PackageEntryTable table;
};

TEST_F(EntryTable, IsEmptyAtFirst)
{
    EXPECT_TRUE(table.entries().empty());
    EXPECT_EQ(table.findByUid(1), nullptr);
    EXPECT_EQ(table.findByPath(at("a.obl")), nullptr);
    EXPECT_EQ(table.findByPackage(Package()), nullptr);
}

TEST_F(EntryTable, FindsAnEntryByUidPathAndPackage)
{
    const Package package;
    table.add(1, at("other.obl"), nullptr);

    PackageEntry& entry = table.add(7, at("a.obl"), &package);

    EXPECT_EQ(table.findByUid(7), &entry);
    EXPECT_EQ(table.findByPath(at("a.obl")), &entry);
    EXPECT_EQ(table.findByPackage(package), &entry);
    EXPECT_EQ(entry.uid, 7u);
    EXPECT_EQ(entry.path, at("a.obl"));
}

TEST_F(EntryTable, TwoSpellingsOfAMissingFileAreEqual)
{
    PackageEntry& entry = table.add(7, at("x/../a.obl"), nullptr);

    EXPECT_EQ(table.findByPath(at("./y/..//a.obl")), &entry);
    EXPECT_EQ(table.findByPath(QDir().relativeFilePath(at("a.obl"))), &entry);
    EXPECT_EQ(table.findByPath(at("b.obl")), nullptr);
}

TEST_F(EntryTable, ALinkIsTheFileToWhichItLeads)
{
    directory.write("x/a.obl", "");
    directory.makeLink("b.obl", "x/a.obl");
    directory.makeLink("y", "x");
    PackageEntry& entry = table.add(7, at("x/a.obl"), nullptr);

    EXPECT_EQ(table.findByPath(at("b.obl")), &entry);
    EXPECT_EQ(table.findByPath(at("y/a.obl")), &entry);
}

TEST_F(EntryTable, AFileThatComesLaterIsFoundBehindALink)
{
    directory.makeDirectory("x");
    directory.makeLink("y", "x");
    PackageEntry& entry = table.add(7, at("y/a.obl"), nullptr);

    directory.write("x/a.obl", "");

    EXPECT_EQ(table.findByPath(at("x/a.obl")), &entry);
    EXPECT_EQ(table.findByPath(at("y/a.obl")), &entry);
}

TEST_F(EntryTable, AFileThatHasGoneIsFoundUnderItsName)
{
    directory.write("x/a.obl", "");
    directory.makeLink("y", "x");
    PackageEntry& entry = table.add(7, at("y/a.obl"), nullptr);

    std::filesystem::remove(directory.path("x/a.obl"));

    EXPECT_EQ(table.findByPath(at("y/a.obl")), &entry);
}

TEST_F(EntryTable, CaseCounts)
{
    table.add(7, at("a.obl"), nullptr);

    EXPECT_EQ(table.findByPath(at("A.obl")), nullptr);
}

TEST_F(EntryTable, PassesOverEntriesWithoutAPath)
{
    PackageEntry& entry = table.add(7, "", nullptr);

    EXPECT_EQ(table.findByPath(""), nullptr);
    EXPECT_EQ(table.findByPath(QDir::currentPath()), nullptr);
    EXPECT_EQ(table.findByUid(7), &entry);
}

TEST_F(EntryTable, KeepsEntriesWhereTheyAre)
{
    PackageEntry& entry = table.add(1, at("a.obl"), nullptr);
    for (Ksx::Core::Uid uid = 2; uid < 100; ++uid)
        table.add(uid, "", nullptr);

    EXPECT_EQ(table.findByUid(1), &entry);
}

TEST_F(EntryTable, AnEntryMayGetItsPackageLater)
{
    const Package package;
    PackageEntry& entry = table.add(7, at("a.obl"), nullptr);

    table.setPackage(entry, package);

    EXPECT_EQ(table.findByPackage(package), &entry);
}

// Listening to a list of packages.
class ListeningTable : public EntryTable
{
protected:
    ListeningTable()
    {
        editPlainly([this](ManipulatorContext& context) {
            const ManipulatorStruct<PackagesList> list(document, context);
            list.content().pushBack(std::make_unique<Package>());
            list.content().pushBack(std::make_unique<Package>());
            return true;
        });
        editPlainly([this](ManipulatorContext& context) {
            context.addListener(document.content(), table);
            return true;
        });
        table.add(1, at("a.obl"), &document.content().at(0));
        table.add(2, at("b.obl"), &document.content().at(1));
    }
    void append(std::unique_ptr<Package> package)
    {
        editPlainly([&](ManipulatorContext& context) {
            ManipulatorStruct<PackagesList>(document, context)
                .content()
                .pushBack(std::move(package));
            return true;
        });
    }
    void erase(std::size_t index)
    {
        editPlainly([&](ManipulatorContext& context) {
            ManipulatorStruct<PackagesList>(document, context).content().erase(index, 1);
            return true;
        });
    }

    PackagesList document;
};

TEST_F(ListeningTable, FindsWhatIsOpen)
{
    EXPECT_EQ(table.findByPackage(document.content().at(0)), table.findByUid(1));
    EXPECT_EQ(table.findByPackage(document.content().at(1)), table.findByUid(2));
}

TEST_F(ListeningTable, GivesAPackageThatComesAnEntryWithItsOwnUid)
{
    append(packageFrom(aPackage().dependingOn("?himself", 12)));

    const PackageEntry* const entry = table.findByPackage(document.content().at(2));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry, table.findByUid(12));
    EXPECT_EQ(entry->path, "");
}

TEST_F(ListeningTable, GivesAPackageThatComesAFreshUidInPlaceOfATakenOne)
{
    append(packageFrom(aPackage().dependingOn("?himself", 1)));

    const PackageEntry* const entry = table.findByPackage(document.content().at(2));
    ASSERT_NE(entry, nullptr);
    EXPECT_NE(entry->uid, 1u);
    EXPECT_EQ(table.findByUid(1), table.findByPackage(document.content().at(0)));
}

TEST_F(ListeningTable, GivesAPackageThatComesBackItsEntryAgain)
{
    Orv::Core::CommandDataModification command(
        [this](ManipulatorContext& context) {
            ManipulatorStruct<PackagesList>(document, context).content().erase(0, 1);
            return true;
        },
        {});
    command.execute();
    EXPECT_EQ(table.findByUid(1), nullptr);
    EXPECT_EQ(table.findByPath(at("a.obl")), nullptr);

    command.undo();

    EXPECT_EQ(table.findByUid(1), table.findByPackage(document.content().at(0)));
    EXPECT_EQ(table.findByPath(at("a.obl")), table.findByUid(1));
}

TEST_F(ListeningTable, DropsTheEntryOfAPackageThatLeavesAtOnce)
{
    erase(0);

    EXPECT_EQ(table.findByUid(1), nullptr);
    EXPECT_EQ(table.findByPath(at("a.obl")), nullptr);
}

TEST_F(ListeningTable, ADroppedUidAndPathCanBeTakenAgain)
{
    erase(0);

    PackageEntry& entry = table.add(1, at("a.obl"), nullptr);

    EXPECT_EQ(table.findByUid(1), &entry);
    EXPECT_EQ(table.findByPath(at("a.obl")), &entry);
}

} // namespace
