#include "ksx/kit/packagefiles.h"

#include "data/filename.h"
#include "support/plainuser.h"
#include "support/temporarydirectory.h"
#include <gtest/gtest.h>

using Ksx::Kit::findPackageFiles;
using Ksx::Kit::PackageFiles;
using TestSupport::PlainUser;
using TestSupport::TemporaryDirectory;

namespace {

class PackageFilesOf : public testing::Test
{
protected:
    QString path(const std::string& name) const { return Orv::fromBytes(directory.path(name)); }
    PackageFiles search() const { return findPackageFiles({Orv::fromBytes(directory.path())}); }
    void write(const std::string& name) const { directory.write(name, "x"); }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(PackageFilesOf, AFolderAreItsPackagesOfAllKindsSorted)
{
    write("b.oblasm");
    write("a.oblar");
    write("below/c.obl");

    EXPECT_EQ(search().files,
              QStringList({path("a.oblar"), path("b.oblasm"), path("below/c.obl")}));
}

TEST_F(PackageFilesOf, AFolderAreNoOtherFiles)
{
    write("a.xml");
    write("a.OBL");
    write("a.obl.orvautosave");
    write(".obl");

    EXPECT_EQ(search().files, QStringList());
}

TEST_F(PackageFilesOf, AFolderAreNotThoseOfHiddenFolders)
{
    write(".autosave/a.obl");

    EXPECT_EQ(search().files, QStringList());
}

TEST_F(PackageFilesOf, AFolderAreNotThoseBehindALinkToAFolder)
{
    write("below/a.obl");
    directory.makeLink("below/round", directory.path());

    EXPECT_EQ(search().files, QStringList(path("below/a.obl")));
}

TEST_F(PackageFilesOf, AFolderAreLinksToPackages)
{
    write("a.obl");
    directory.makeLink("b.obl", "a.obl");

    EXPECT_EQ(search().files, QStringList({path("a.obl"), path("b.obl")}));
}

TEST_F(PackageFilesOf, ALinkToAFolderAreThoseOfTheFolder)
{
    write("below/a.obl");
    directory.makeLink("link", "below");

    EXPECT_EQ(findPackageFiles({path("link")}).files, QStringList(path("link/a.obl")));
}

TEST_F(PackageFilesOf, AnyOtherNameIsTheNameItself)
{
    EXPECT_EQ(findPackageFiles({"none.txt"}).files, QStringList("none.txt"));
}

TEST_F(PackageFilesOf, SeveralNamesAreEachOnceInTheirOrder)
{
    write("a.obl");
    write("b.obl");

    const PackageFiles found = findPackageFiles({path("b.obl"), path(""), path("b.obl")});

    EXPECT_EQ(found.files.size(), 2);
    EXPECT_EQ(found.files.front(), path("b.obl"));
}

TEST_F(PackageFilesOf, ANameThatIsNoUnicodeIsKept)
{
    write("\xFF.obl");

    EXPECT_EQ(search().files, QStringList(path("\xFF.obl")));
}

TEST_F(PackageFilesOf, AFolderThatCannotBeSearchedIsAFailureAndTheOthersAreSearched)
{
    write("closed/a.obl");
    write("open/a.obl");
    directory.setMode("", 0755);
    directory.setMode("closed", 0);
    const PlainUser user;

    const PackageFiles found = search();

    EXPECT_EQ(found.files, QStringList(path("open/a.obl")));
    ASSERT_EQ(found.failures.size(), 1U);
    EXPECT_EQ(found.failures.front().file, path("closed"));
    EXPECT_EQ(found.failures.front().reason, "it cannot be searched: Permission denied");
}
