#include "ksx/core/packagewriter.h"

#include "data/content/package.h"
#include "data/content/resource.h"
#include "ksx/core/filereferences.h"
#include "support/packagetext.h"
#include "support/plainuser.h"
#include "support/shelfcases.h"
#include "support/smalldisk.h"
#include "support/temporarydirectory.h"
#include <QBuffer>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <sys/stat.h>

using Ksx::Core::relativeToFile;
using Ksx::Core::relativeToPresets;
using Ksx::Core::savePackage;
using Ksx::Data::Content::Package;
using TestSupport::aGroupSaying;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::caseName;
using TestSupport::packageFrom;
using TestSupport::PlainUser;
using TestSupport::SmallDisk;
using TestSupport::TemporaryDirectory;

namespace {

const std::string Former = "what stood there before";

class SavedPackage : public testing::Test
{
protected:
    bool save(const std::string& name) { return save(*package, name); }
    bool save(const Package& saved, const std::string& name)
    {
        return savePackage(saved, at(name), presets);
    }
    QString at(const std::string& name) const
    {
        return QString::fromStdString(directory.path(name));
    }
    // The file reference that is written for one that a package holds.
    std::string written(const std::string& reference, const std::string& name)
    {
        const auto saved = packageFrom(aPackage().containing(aResource("r", reference)));
        EXPECT_TRUE(save(*saved, name));
        const std::string text = directory.read(name);
        const std::size_t begin = text.find("<filepath v=\"") + 13;
        return text.substr(begin, text.find('"', begin) - begin);
    }

    TemporaryDirectory directory;
    QDir presets{QStringLiteral("/nowhere")};
    std::unique_ptr<Package> package = packageFrom(aPackage());
};

TEST_F(SavedPackage, IsRenderedAsItIsSaved)
{
    const auto saved =
        packageFrom(aPackage().containing(aResource("r", directory.path("sub/x.png"))));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);

    EXPECT_TRUE(Ksx::Core::renderPackage(*saved, at("a.obl"), presets, buffer));

    EXPECT_EQ(directory.files(), "");
    save(*saved, "a.obl");
    EXPECT_EQ(buffer.data().toStdString(), directory.read("a.obl"));
}

TEST_F(SavedPackage, IsNotRenderedToADeviceThatTakesNothing)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadOnly);

    EXPECT_FALSE(Ksx::Core::renderPackage(*package, at("a.obl"), presets, buffer));
}

// Versions.

TEST_F(SavedPackage, SaysTheNewestVersionsWhateverItSaidBefore)
{
    package = packageFrom(aPackage().with("formatVersion", "1.0.0.1").without("updaterVersion"));

    EXPECT_TRUE(save("a.obl"));

    EXPECT_EQ(directory.read("a.obl"), aPackage().text());
    EXPECT_EQ(package->formatVersion().get(), "1.1.0.7049");
    EXPECT_EQ(package->updaterVersion().get(), "1.1.0.7049");
}

TEST_F(SavedPackage, SaysNoVersionUnderAnUnknownEnding)
{
    EXPECT_TRUE(save("a.xml"));

    EXPECT_EQ(directory.read("a.xml"),
              aPackage().with("formatVersion", "0.0.0.0").with("updaterVersion", "0.0.0.0").text());
}

TEST_F(SavedPackage, KeepsItsVersionsInMemoryWhenItCannotBeWritten)
{
    package = packageFrom(aPackage().with("formatVersion", "1.0.0.1").without("updaterVersion"));

    EXPECT_FALSE(save("missing/a.obl"));

    EXPECT_EQ(package->formatVersion().get(), "1.1.0.7049");
    EXPECT_EQ(package->updaterVersion().get(), "1.1.0.7049");
}

TEST_F(SavedPackage, SaysTheNewestVersionsUnderTheAutosaveEnding)
{
    EXPECT_TRUE(save("a.obl.orvautosave"));

    EXPECT_EQ(directory.read("a.obl.orvautosave"), aPackage().text());
}

// File references.

TEST_F(SavedPackage, NamesAFileBesideItByItsBareName)
{
    directory.write("x.png", "");

    EXPECT_EQ(written(directory.path("x.png"), "a.obl"), "x.png");
}

TEST_F(SavedPackage, NamesFilesRelativeToItself)
{
    directory.write("in/x.png", "");
    directory.makeDirectory("out");

    EXPECT_EQ(written(directory.path("in/x.png"), "out/a.obl"), "../in/x.png");
}

TEST_F(SavedPackage, NamesMissingFilesRelativeToItself)
{
    directory.makeDirectory("out");

    EXPECT_EQ(written(directory.path("in/../x.png"), "out/a.obl"), "../x.png");
}

TEST_F(SavedPackage, LeavesAnEmptyReferenceEmpty)
{
    EXPECT_EQ(written("", "a.obl"), "");
}

TEST_F(SavedPackage, LeavesAReferenceToItself)
{
    package = packageFrom(aPackage().dependingOnItself(7));
    presets = QDir(at("presets"));

    EXPECT_TRUE(save("a.obl"));

    EXPECT_EQ(directory.read("a.obl"), aPackage().dependingOnItself(7).text());
}

TEST_F(SavedPackage, NamesPresetsByTheirBareNameWithTheScheme)
{
    presets = QDir(at("presets"));

    EXPECT_EQ(written(directory.path("presets/sub/x.obl"), "a.obl"), "obl://x.obl");
}

TEST_F(SavedPackage, NamesPresetsRelativelyWithinThePresets)
{
    presets = QDir(at("presets"));
    directory.makeDirectory("presets/one");

    EXPECT_EQ(written(directory.path("presets/two/x.obl"), "presets/one/a.obl"), "../two/x.obl");
}

TEST_F(SavedPackage, AnEmptyPresetsDirectoryIsTheCurrentOne)
{
    const QString former = QDir::currentPath();
    directory.makeDirectory("current");
    ASSERT_TRUE(QDir::setCurrent(at("current")));
    presets = QDir(QString());

    const std::string reference = written(directory.path("current/sub/x.obl"), "a.obl");

    QDir::setCurrent(former);
    EXPECT_EQ(reference, "obl://x.obl");
}

TEST_F(SavedPackage, OtherTextsAreNotConverted)
{
    package = packageFrom(aPackage().containing(aGroupSaying("g", directory.path("x.png"))));

    EXPECT_TRUE(save("a.obl"));

    EXPECT_EQ(directory.read("a.obl"),
              aPackage().containing(aGroupSaying("g", directory.path("x.png"))).text());
}

TEST_F(SavedPackage, ReferencesInMemoryStayAsTheyAre)
{
    package = packageFrom(aPackage().dependingOn(directory.path("b.obl"), 7));

    EXPECT_TRUE(save("a.obl"));

    EXPECT_EQ(package->dependencies().at(0).filename().get(), directory.path("b.obl"));
}

// The file is opened by its own name as well, and must lead to the same files then.
TEST_F(SavedPackage, ReferencesAreRelativeToTheTargetAndNotToTheLink)
{
    directory.write("x/b.obl", Former);
    directory.makeLink("a.obl", "x/b.obl");

    EXPECT_EQ(written(directory.path("x.png"), "a.obl"), "../x.png");
}

TEST_F(SavedPackage, ReferencesAreRelativeToTheRealDirectory)
{
    directory.makeDirectory("real/deep");
    directory.makeLink("short", "real/deep");

    EXPECT_EQ(written(directory.path("x.png"), "short/a.obl"), "../../x.png");
}

TEST_F(SavedPackage, ReferencesLeadWhereTheSystemGoesUpwardsFromALinkedDirectory)
{
    directory.makeDirectory("real/deep");
    directory.write("real/x.png", "");
    directory.makeLink("short", "real/deep");

    EXPECT_EQ(written(directory.path("short/../x.png"), "a.obl"), "real/x.png");
}

TEST_F(SavedPackage, LiesInThePresetsByItsRealDirectory)
{
    directory.makeDirectory("presets/one");
    directory.makeLink("short", "presets/one");
    presets = QDir(at("presets"));

    EXPECT_EQ(written(directory.path("presets/x.obl"), "short/a.obl"), "../x.obl");
}

TEST_F(SavedPackage, LiesInThePresetsThatALinkNames)
{
    directory.makeDirectory("presets/one");
    directory.makeLink("short", "presets");
    presets = QDir(at("short"));

    EXPECT_EQ(written(directory.path("short/x.obl"), "presets/one/a.obl"), "../x.obl");
}

TEST_F(SavedPackage, NamesPresetsThatALinkNamesWithTheScheme)
{
    directory.makeDirectory("presets");
    directory.makeLink("short", "presets");
    presets = QDir(at("short"));

    EXPECT_EQ(written(directory.path("presets/x.obl"), "a.obl"), "obl://x.obl");
}

TEST_F(SavedPackage, NamesASiblingOfThePresetsRelatively)
{
    presets = QDir(at("presets"));

    EXPECT_EQ(written(directory.path("presets_old/x.obl"), "a.obl"), "presets_old/x.obl");
}

// References that are no paths, or that would not be read as one.

TEST_F(SavedPackage, LeavesAReferenceWithoutAPath)
{
    EXPECT_EQ(written("some://host", "a.obl"), "some://host");
}

// It looks absolute to the library that paths are made with.
TEST_F(SavedPackage, LeavesANameThatBeginsWithAColon)
{
    EXPECT_EQ(written(":/x.png", "a.obl"), ":/x.png");
}

TEST_F(SavedPackage, NamesAnOddFileSoThatItIsReadAsAPath)
{
    EXPECT_EQ(written(directory.path("?x.png"), "a.obl"), "./?x.png");
}

TEST_F(SavedPackage, CannotNameAFileWhoseBytesAreNoText)
{
    package = packageFrom(aPackage().containing(aResource("r", "x")));
    Ksx::Core::fileReferencesOf(*package).front()->assign(directory.path("\xff.png"));
    directory.write("a.obl", Former);

    EXPECT_FALSE(save("a.obl"));

    EXPECT_EQ(directory.read("a.obl"), Former);
    EXPECT_EQ(directory.files(), "a.obl");
}

// The file.

TEST_F(SavedPackage, ReplacesALongerFile)
{
    directory.write("a.obl", std::string(1000000, 'x'));

    EXPECT_TRUE(save("a.obl"));

    EXPECT_EQ(directory.read("a.obl"), aPackage().text());
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(SavedPackage, KeepsThePermissionsOfAFile)
{
    directory.write("a.obl", Former);
    directory.setMode("a.obl", 0640);

    EXPECT_TRUE(save("a.obl"));

    EXPECT_EQ(directory.mode("a.obl"), 0640u);
}

TEST_F(SavedPackage, GivesANewFileTheUsualPermissions)
{
    directory.write("usual", "");

    EXPECT_TRUE(save("a.obl"));

    EXPECT_EQ(directory.mode("a.obl"), directory.mode("usual"));
}

TEST_F(SavedPackage, FollowsALink)
{
    directory.write("x/b.obl", Former);
    directory.setMode("x/b.obl", 0604);
    directory.makeLink("a.obl", "x/b.obl");

    EXPECT_TRUE(save("a.obl"));

    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("a.obl")));
    EXPECT_EQ(directory.read("x/b.obl"), aPackage().text());
    EXPECT_EQ(directory.mode("x/b.obl"), 0604u);
    EXPECT_EQ(directory.files(), "a.obl x/b.obl");
}

TEST_F(SavedPackage, FollowsAChainOfLinks)
{
    directory.write("z/d.obl", Former);
    directory.makeLink("y/c.obl", directory.path("z/d.obl"));
    directory.makeLink("x/b.obl", "../y/c.obl");
    directory.makeLink("a.obl", "x/b.obl");

    EXPECT_TRUE(save("a.obl"));

    EXPECT_EQ(directory.read("z/d.obl"), aPackage().text());
    EXPECT_EQ(directory.files(), "a.obl x/b.obl y/c.obl z/d.obl");
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("x/b.obl")));
}

TEST_F(SavedPackage, MakesTheTargetOfADanglingLink)
{
    directory.makeDirectory("x");
    directory.makeLink("y/c.obl", "../x/b.obl");
    directory.makeLink("a.obl", "y/c.obl");

    EXPECT_TRUE(save("a.obl"));

    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("a.obl")));
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("y/c.obl")));
    EXPECT_EQ(directory.read("x/b.obl"), aPackage().text());
}

TEST_F(SavedPackage, FollowsALinkInsideALinkedDirectory)
{
    directory.write("real/x/target.obl", Former);
    directory.makeLink("real/y/b.obl", "../x/target.obl");
    directory.makeLink("short", "real/y");

    EXPECT_TRUE(save("short/b.obl"));

    EXPECT_EQ(directory.read("real/x/target.obl"), aPackage().text());
    EXPECT_EQ(directory.files(), "real/x/target.obl real/y/b.obl short");
}

TEST_F(SavedPackage, TheSystemSaysWhereALinkedDirectoryLeadsUpwards)
{
    directory.makeDirectory("real/y");
    directory.makeLink("short", "real/y");

    EXPECT_TRUE(save("short/../b.obl"));

    EXPECT_EQ(directory.files(), "real/b.obl short");
}

TEST_F(SavedPackage, CannotGoRoundWithLinks)
{
    directory.makeLink("a.obl", "b.obl");
    directory.makeLink("b.obl", "a.obl");

    EXPECT_FALSE(save("a.obl"));

    EXPECT_EQ(directory.files(), "a.obl b.obl");
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("a.obl")));
}

TEST_F(SavedPackage, CannotBeALinkToItself)
{
    directory.makeLink("a.obl", "a.obl");

    EXPECT_FALSE(save("a.obl"));

    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(SavedPackage, CannotFollowALinkIntoNowhere)
{
    directory.makeLink("a.obl", "missing/b.obl");

    EXPECT_FALSE(save("a.obl"));

    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(SavedPackage, CannotReplaceADirectory)
{
    directory.write("a.obl/b", Former);

    EXPECT_FALSE(save("a.obl"));

    EXPECT_EQ(directory.files(), "a.obl/b");
}

TEST_F(SavedPackage, CannotReplaceALinkedDirectory)
{
    directory.makeDirectory("x");
    directory.makeLink("a.obl", "x");

    EXPECT_FALSE(save("a.obl"));

    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(SavedPackage, CannotMakeADirectory)
{
    EXPECT_FALSE(save("missing/a.obl"));

    EXPECT_EQ(directory.files(), "");
    EXPECT_FALSE(directory.exists("missing"));
}

TEST_F(SavedPackage, CannotLieBelowAFile)
{
    directory.write("x", Former);

    EXPECT_FALSE(save("x/a.obl"));

    EXPECT_EQ(directory.read("x"), Former);
}

TEST_F(SavedPackage, NeedsAName)
{
    EXPECT_FALSE(savePackage(*package, QString(), presets));
}

TEST_F(SavedPackage, CannotHaveANameThatTheFileSystemRefuses)
{
    EXPECT_FALSE(save(std::string(5000, 'x') + ".obl"));
}

TEST_F(SavedPackage, CanBeWrittenToADevice)
{
    EXPECT_TRUE(savePackage(*package, "/dev/null", presets));
}

TEST_F(SavedPackage, NoticesThatADeviceIsFull)
{
    EXPECT_FALSE(savePackage(*package, "/dev/full", presets));
}

TEST_F(SavedPackage, NoticesThatADeviceIsFullForALargePackage)
{
    package = packageFrom(aPackage().named(std::string(1 << 20, 'x')));

    EXPECT_FALSE(savePackage(*package, "/dev/full", presets));
}

// A file system of 64 KiB, where the test may make one.
class FullDisk : public SavedPackage
{
protected:
    void SetUp() override
    {
        if (!m_disk.isMounted())
            GTEST_SKIP() << "no file system can be mounted";
    }

    std::unique_ptr<Package> large = packageFrom(aPackage().named(std::string(1 << 20, 'x')));

private:
    SmallDisk m_disk{directory.makeDirectory("disk")};
};

TEST_F(FullDisk, LeavesTheFormerFileAndNothingElse)
{
    directory.write("disk/a.obl", Former);

    EXPECT_FALSE(save(*large, "disk/a.obl"));

    EXPECT_EQ(directory.files(), "disk/a.obl");
    EXPECT_EQ(directory.read("disk/a.obl"), Former);
}

TEST_F(FullDisk, LeavesNoNewFile)
{
    EXPECT_FALSE(save(*large, "disk/a.obl"));

    EXPECT_EQ(directory.files(), "");
}

TEST_F(FullDisk, LeavesTheFileBehindALink)
{
    directory.write("disk/a.obl", Former);
    directory.makeLink("b.obl", "disk/a.obl");

    EXPECT_FALSE(save(*large, "b.obl"));

    EXPECT_EQ(directory.read("disk/a.obl"), Former);
    EXPECT_EQ(directory.files(), "b.obl disk/a.obl");
}

TEST_F(FullDisk, TakesWhatFits)
{
    EXPECT_TRUE(save("disk/a.obl"));

    EXPECT_EQ(directory.read("disk/a.obl"), aPackage().text());
}

// Where the directory allows no further file, with the rights of a plain user only.
class ClosedDirectory : public SavedPackage
{
protected:
    void SetUp() override
    {
        directory.write("x/a.obl", Former + std::string(100000, 'x'));
        directory.setMode("x/a.obl", 0666);
        directory.setMode("x", 0555);
    }
    bool saveAsPlainUser(const std::string& name)
    {
        const PlainUser user;
        return save(name);
    }
};

TEST_F(ClosedDirectory, TakesAFileThatIsThere)
{
    EXPECT_TRUE(saveAsPlainUser("x/a.obl"));

    EXPECT_EQ(directory.read("x/a.obl"), aPackage().text());
}

TEST_F(ClosedDirectory, TakesNoNewFile)
{
    EXPECT_FALSE(saveAsPlainUser("x/b.obl"));

    EXPECT_EQ(directory.files(), "x/a.obl");
}

// The conversions by themselves. The paths need not exist.

struct FileCase
{
    const char* name;
    const char* value; // "@" is the directory
    const char* result;
};

std::ostream& operator<<(std::ostream& stream, const FileCase& c)
{
    return stream << c.name;
}

class RelativeToFile : public SavedPackage, public testing::WithParamInterface<FileCase>
{
protected:
    QString filled(const char* text) const
    {
        return QString(text).replace("@", QString::fromStdString(directory.path()));
    }
};

TEST_P(RelativeToFile, ConvertsWhatExists)
{
    directory.write("in/x.png", "");
    directory.write("y.png", "");
    directory.write("in/?odd", "");

    EXPECT_EQ(relativeToFile(at("in/a.obl"), filled(GetParam().value)), filled(GetParam().result));
}

INSTANTIATE_TEST_SUITE_P(
    Values, RelativeToFile,
    testing::Values(
        FileCase{"Empty", "", ""}, FileCase{"Beside", "@/in/x.png", "x.png"},
        FileCase{"Above", "@/y.png", "../y.png"}, FileCase{"Relative", "x.png", "x.png"},
        FileCase{"Uncleaned", "@/in/../in/./x.png", "x.png"},
        FileCase{"RelativeIsOnlyCleaned", ".././in/x.png", "../in/x.png"},
        FileCase{"Directory", "@/in", "."}, FileCase{"Missing", "@/in/z.png", "@/in/z.png"},
        FileCase{"MissingUncleaned", "@/in/../z.png", "@/in/../z.png"},
        FileCase{"Himself", "?himself", "?himself"}, FileCase{"OddName", "?odd", "?odd"},
        FileCase{"Scheme", "obl://x.png", "obl://x.png"}),
    caseName<FileCase>);

struct PresetsCase
{
    const char* name;
    const char* fileDir;
    const char* value;
    const char* result;
};

std::ostream& operator<<(std::ostream& stream, const PresetsCase& c)
{
    return stream << c.name;
}

class RelativeToPresets : public testing::TestWithParam<PresetsCase>
{};

TEST_P(RelativeToPresets, GoesByTheTwoDirectories)
{
    EXPECT_EQ(relativeToPresets(QDir(GetParam().fileDir), QDir("/x/presets"), GetParam().value),
              GetParam().result);
}

TEST(RelativeToPresetsOf, ASlashAtTheEndOfThePresetsDoesNotCount)
{
    EXPECT_EQ(relativeToPresets(QDir("/y"), QDir("/x/presets/"), "/x/presets/a.obl"),
              "obl://a.obl");
}

TEST(RelativeToPresetsOf, TheRootHoldsEverything)
{
    EXPECT_EQ(relativeToPresets(QDir("/y"), QDir("/"), "/x/a.obl"), "../x/a.obl");
}

INSTANTIATE_TEST_SUITE_P(
    Values, RelativeToPresets,
    testing::Values(
        PresetsCase{"Inside", "/x/presets", "/x/presets/a.obl", "a.obl"},
        PresetsCase{"DeepInside", "/x/presets/one", "/x/presets/two/a.obl", "../two/a.obl"},
        PresetsCase{"OutOfThePresets", "/x/presets", "/y/a.obl", "../../y/a.obl"},
        PresetsCase{"IntoThePresets", "/y", "/x/presets/a.obl", "obl://a.obl"},
        PresetsCase{"DeepIntoThePresets", "/y", "/x/presets/one/two/a.obl", "obl://a.obl"},
        PresetsCase{"RelativeIntoThePresets", "/y", "../x/presets/a.obl", "obl://a.obl"},
        PresetsCase{"UncleanedIntoThePresets", "/y", "/x/y/../presets/./a.obl", "obl://a.obl"},
        PresetsCase{"UncleanedOutOfThePresets", "/y", "/x/presets/../a.obl", "../x/a.obl"},
        PresetsCase{"BesideThePresets", "/x", "/x/a.obl", "a.obl"},
        PresetsCase{"Elsewhere", "/y/z", "/y/a.obl", "../a.obl"},
        PresetsCase{"RelativeIsOnlyCleaned", "/y", "sub/../a.obl", "a.obl"},
        PresetsCase{"CaseCounts", "/y", "/x/Presets/a.obl", "../x/Presets/a.obl"},
        PresetsCase{"FromALongerName", "/x/presets2", "/x/presets/a.obl", "obl://a.obl"},
        PresetsCase{"IntoALongerName", "/y", "/x/presets2/a.obl", "../x/presets2/a.obl"},
        PresetsCase{"ThePresetsThemselves", "/y", "/x/presets", "../x/presets"},
        PresetsCase{"Himself", "/y", "?himself", "?himself"},
        PresetsCase{"HimselfInside", "/x/presets", "?himself", "?himself"},
        PresetsCase{"Empty", "/y", "", ""}, PresetsCase{"EmptyInside", "/x/presets", "", ""}),
    caseName<PresetsCase>);

} // namespace

TEST_F(SavedPackage, IsWrittenAsOneThatWillLieAtAnotherPlace)
{
    directory.write("in/x.png", "");
    const auto saved =
        packageFrom(aPackage().containing(aResource("r", directory.path("in/x.png"))));

    EXPECT_TRUE(savePackage(*saved, at("copy.tmp"), presets, nullptr, at("in/a.obl")));

    EXPECT_EQ(directory.read("copy.tmp"), aPackage().containing(aResource("r", "x.png")).text());
}
