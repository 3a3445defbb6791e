#include "ksx/core/packageentrytable.h"

#include "core/manipulatorlist.h"
#include "data/content/package.h"
#include "data/content/packagemanipulators.h"
#include "data/content/packageslist.h"
#include "ksx/core/plainroute.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include <QDir>
#include <gtest/gtest.h>

using Ksx::Core::editPlainly;
using Ksx::Core::PackageEntry;
using Ksx::Core::PackageEntryTable;
using Ksx::Data::Content::Package;
using Ksx::Data::Content::PackagesList;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
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

    entry.package.reset(&package);

    EXPECT_EQ(table.findByPackage(package), &entry);
}

// Listening to a list of packages.
class ListeningTable : public EntryTable
{
protected:
    ListeningTable()
    {
        editPlainly([this](ManipulatorContext& context) {
            context.addListener(document.content(), table);
            const ManipulatorStruct<PackagesList> list(document, context);
            list.content().pushBack(std::make_unique<Package>());
            list.content().pushBack(std::make_unique<Package>());
            return true;
        });
        table.add(1, at("a.obl"), &document.content().at(0));
        table.add(2, at("b.obl"), &document.content().at(1));
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

TEST_F(ListeningTable, DropsTheEntriesOfPackagesThatHaveDied)
{
    erase(0);
    erase(0);

    // The first is dead when the second leaves the list.
    EXPECT_EQ(table.findByUid(1), nullptr);
    EXPECT_EQ(table.findByPath(at("a.obl")), nullptr);
}

TEST_F(ListeningTable, ADroppedUidAndPathCanBeTakenAgain)
{
    erase(0);
    erase(0);

    PackageEntry& entry = table.add(1, at("a.obl"), nullptr);

    EXPECT_EQ(table.findByUid(1), &entry);
    EXPECT_EQ(table.findByPath(at("a.obl")), &entry);
}

} // namespace
