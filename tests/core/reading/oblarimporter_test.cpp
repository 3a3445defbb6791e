#include "reading/oblarimporter.h"

#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/diagnosticlog.h"
#include "reading/archivereader.h"
#include "reading/oblasmgraphplaces.h"
#include "support/assemblytext.h"
#include "support/damage.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/updaterhelper.h"
#include <QBuffer>
#include <QFile>
#include <QUrl>
#include <gtest/gtest.h>

using Ksx::Core::OBLARImporter;
using Ksx::Data::Content::ContentInterface;
using Ksx::Data::Content::Package;
using Orv::Core::MessageLevel;
using Orv::Core::MessageNode;
using TestSupport::aDescribedGraph;
using TestSupport::aDescription;
using TestSupport::anAssemblyBody;
using TestSupport::anAssemblyInArchive;
using TestSupport::ArchiveFiles;
using TestSupport::Blocks;
using TestSupport::caseName;
using TestSupport::compressedArchive;
using TestSupport::DamageCase;
using TestSupport::hasArchiver;
using TestSupport::manyAssemblies;
using TestSupport::replaced;
using TestSupport::storedArchive;
using TestSupport::TemporaryDirectory;

namespace {

class OblarImport : public testing::Test
{
protected:
    std::unique_ptr<Package> import(const std::string& archive)
    {
        QByteArray bytes = QByteArray::fromStdString(archive);
        QBuffer buffer(&bytes);
        EXPECT_TRUE(buffer.open(QIODevice::ReadOnly));
        auto root = OBLARImporter().import(buffer, &log, {});
        EXPECT_TRUE(root == nullptr || dynamic_cast<Package*>(root.get()) != nullptr);
        return std::unique_ptr<Package>(static_cast<Package*>(root.release()));
    }
    // The identifiers of what the package holds, "failed" if there is none.
    std::string import(const ArchiveFiles& files)
    {
        const auto package = import(storedArchive(files));
        if (package == nullptr)
            return "failed";
        std::string outline;
        for (const auto& item : package->content())
            outline += (outline.empty() ? "" : " ") +
                       dynamic_cast<const ContentInterface&>(item).identifierAttribute().get();
        return outline;
    }
    std::string message() const
    {
        const std::string text = log.toText().toStdString();
        return text.substr(0, text.find('\n'));
    }

    MessageNode log;
};

const ArchiveFiles Wood = anAssemblyInArchive("7", "wood", "pkg://wood");

ArchiveFiles aFile(const std::string& name, const std::string& bytes = "x")
{
    return {{name, bytes}};
}

// The package.

TEST_F(OblarImport, SaysOnceWhatIsWrong)
{
    ArchiveFiles files =
        anAssemblyInArchive("0", "a", "pkg://g") + anAssemblyInArchive("1", "a", "pkg://h");
    files[1].bytes = files[3].bytes = "<"; // the descriptions

    EXPECT_EQ(import(files), "failed");
    EXPECT_EQ(log.toText().count("ERROR_XML_DOCUMENT_ERROR"), 1);
}

TEST_F(OblarImport, GivesThePackageOfAnArchive)
{
    const auto package = import(storedArchive(Wood));

    ASSERT_NE(package, nullptr) << log.toText().toStdString();
    EXPECT_EQ(package->content().size(), 1u);
    EXPECT_EQ(package->desc().get(), "");
    EXPECT_EQ(package->author().get(), "");
    EXPECT_EQ(package->fileUID().get(), "{00000000-0000-0000-0000-0000000000ab}");
    EXPECT_EQ(log.toText(), "");
}

TEST_F(OblarImport, NamesThePackageByAllButTheEnding)
{
    const TemporaryDirectory directory;
    QFile file(QString::fromStdString(directory.write("a.b.oblar", storedArchive(Wood))));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));

    const auto root = OBLARImporter().import(file, &log, {});

    ASSERT_NE(root, nullptr);
    EXPECT_EQ(static_cast<const Package&>(*root).identifier().get(), "a.b");
}

TEST_F(OblarImport, TheFileUidOfTheLastAssemblyStands)
{
    ArchiveFiles stone = anAssemblyInArchive("8", "stone", "pkg://stone");
    stone[1].bytes = replaced(stone[1].bytes, "0000ab}", "0000cd}");

    const auto package = import(storedArchive(Wood + stone));

    ASSERT_NE(package, nullptr);
    EXPECT_EQ(package->fileUID().get(), "{00000000-0000-0000-0000-0000000000cd}");
}

TEST_F(OblarImport, WithoutFilesIsAnEmptyPackage)
{
    const auto package = import(storedArchive({}));

    ASSERT_NE(package, nullptr) << log.toText().toStdString();
    EXPECT_EQ(package->content().size(), 0u);
    EXPECT_EQ(log.toText(), "");
}

// Entries and assemblies.

struct FilesCase
{
    const char* name;
    ArchiveFiles files;
    std::string content;
};

std::ostream& operator<<(std::ostream& stream, const FilesCase& c)
{
    return stream << c.name;
}

class OblarFiles : public OblarImport, public testing::WithParamInterface<FilesCase>
{};

TEST_P(OblarFiles, GiveTheContent)
{
    EXPECT_EQ(import(GetParam().files), GetParam().content) << log.toText().toStdString();

    EXPECT_EQ(log.toText(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Archives, OblarFiles,
    testing::Values(
        FilesCase{"NoFile", {}, ""}, FilesCase{"OneAssembly", Wood, "wood"},
        FilesCase{"DescriptionFirst", {Wood[1], Wood[0]}, "wood"},
        FilesCase{"AuthoringAlone", aFile("authoring/content/7/x"), ""},
        FilesCase{"AuthoringBeside", aFile("authoring/content/7/x") + Wood, "wood"},
        FilesCase{"AssembliesInAuthoring", aFile("authoring/content/7/x.oblasm"), ""},
        FilesCase{"TwoAssembliesOfOneEntry", Wood + anAssemblyInArchive("7", "stone", "stone"),
                  "wood stone"},
        FilesCase{"TwoEntries", Wood + anAssemblyInArchive("8", "stone", "stone"), "wood stone"},
        FilesCase{"EntriesInTheirOrder", anAssemblyInArchive("9", "stone", "stone") + Wood,
                  "stone wood"},
        FilesCase{"AuthoringDecidesTheOrder",
                  aFile("authoring/content/8/x") + Wood +
                      anAssemblyInArchive("8", "stone", "stone"),
                  "stone wood"},
        FilesCase{"EntriesInterleaved",
                  anAssemblyInArchive("1", "a", "a") + anAssemblyInArchive("2", "b", "b") +
                      anAssemblyInArchive("1", "c", "c"),
                  "a c b"},
        FilesCase{"AllDescriptionsFirst",
                  {anAssemblyInArchive("1", "a", "a")[1], anAssemblyInArchive("2", "b", "b")[1],
                   anAssemblyInArchive("2", "b", "b")[0], anAssemblyInArchive("1", "a", "a")[0]},
                  "a b"},
        FilesCase{"IdsAreTexts",
                  anAssemblyInArchive("7", "a", "a") + anAssemblyInArchive("007", "b", "b") +
                      anAssemblyInArchive("7", "c", "c"),
                  "a c b"},
        FilesCase{"IdOfManyDigits", anAssemblyInArchive("99999999999999999999999999", "a", "a"),
                  "a"},
        FilesCase{"FoldersInAnEntry", anAssemblyInArchive("7/deeper/still", "a", "a"), "a"},
        FilesCase{"EmptyName", anAssemblyInArchive("7", "", "a"), "a"},
        FilesCase{"IdIsNoNumber", aFile("assemblies/content/abc/x.oblasm"), ""},
        FilesCase{"IdIsEmpty", aFile("assemblies/content//x.oblasm"), ""},
        FilesCase{"IdIsNegative", aFile("assemblies/content/-7/x.oblasm"), ""},
        FilesCase{"IdWithABlank", aFile("assemblies/content/7 /x.oblasm"), ""},
        FilesCase{"IdIsHexadecimal", aFile("assemblies/content/0x7/x.oblasm"), ""},
        FilesCase{"NoFurtherSlash", aFile("assemblies/content/7.oblasm"), ""},
        FilesCase{"NoFurtherSlashAndANumber", aFile("assemblies/content/7"), ""},
        FilesCase{"OtherPlaces",
                  aFile("x/assemblies/content/7/x.oblasm") + aFile("assemblies/x.oblasm") +
                      aFile("content/7/x.oblasm") + aFile("x.oblasm"),
                  ""},
        FilesCase{"OtherCase", aFile("Assemblies/content/7/x.oblasm"), ""},
        FilesCase{"OtherEndings",
                  aFile("assemblies/content/7/x.OBLASM") +
                      aFile("assemblies/content/7/x.oblasm.bak") + aFile("assemblies/content/7/x"),
                  ""},
        FilesCase{"DescriptionWithoutAssembly", aFile("assemblies/content/7/x.xml", "folly"), ""},
        FilesCase{"DirectoryLikeAnAssembly", {{"assemblies/content/7/x.oblasm", "", true}}, ""},
        FilesCase{"SameGraphTwice", Wood + anAssemblyInArchive("8", "wood", "pkg://wood"),
                  "wood wood_1"},
        FilesCase{"SameGroupTwice",
                  anAssemblyInArchive("7", "a", "pkg://g/a") +
                      anAssemblyInArchive("8", "b", "pkg://g/b"),
                  "g"}),
    caseName<FilesCase>);

// Failures.

struct FailureCase
{
    const char* name;
    ArchiveFiles files;
    std::string message;
};

std::ostream& operator<<(std::ostream& stream, const FailureCase& c)
{
    return stream << c.name;
}

class OblarFailure : public OblarImport, public testing::WithParamInterface<FailureCase>
{};

TEST_P(OblarFailure, EndsTheImport)
{
    EXPECT_EQ(import(GetParam().files), "failed");

    EXPECT_EQ(message(), "Error: " + GetParam().message);
    EXPECT_EQ(log.children().front()->level(), MessageLevel::Error);
}

ArchiveFiles withDescription(const std::string& description)
{
    return {Wood[0], {Wood[1].name, description}};
}

ArchiveFiles withBody(const std::string& body)
{
    return {{Wood[0].name, body}, Wood[1]};
}

ArchiveFiles withSize(std::size_t index, std::uint64_t size)
{
    ArchiveFiles files = Wood;
    files[index].announcedSize = size;
    return files;
}

ArchiveFiles withChecksum(std::size_t index)
{
    ArchiveFiles files = Wood;
    files[index].announcedChecksum = 7;
    return files;
}

const std::string BodyName = "assemblies/content/7/wood.oblasm";
const std::string XmlName = "assemblies/content/7/wood.xml";

INSTANTIATE_TEST_SUITE_P(
    Archives, OblarFailure,
    testing::Values(
        FailureCase{"NoDescription", {Wood[0]}, "ERROR_DESCRIPTION_NOT_FOUND_" + XmlName},
        FailureCase{"DescriptionElsewhere",
                    {Wood[0], {"assemblies/content/8/wood.xml", Wood[1].bytes}},
                    "ERROR_DESCRIPTION_NOT_FOUND_" + XmlName},
        FailureCase{"DescriptionInCapitals",
                    {Wood[0], {"assemblies/content/7/wood.XML", Wood[1].bytes}},
                    "ERROR_DESCRIPTION_NOT_FOUND_" + XmlName},
        FailureCase{"NoDescriptionOfTheSecond",
                    Wood + ArchiveFiles{{"assemblies/content/8/a.oblasm", anAssemblyBody()}},
                    "ERROR_DESCRIPTION_NOT_FOUND_assemblies/content/8/a.xml"},
        FailureCase{"DescriptionIsADirectory",
                    {Wood[0], {XmlName, "", true}},
                    "ERROR_DESCRIPTION_NOT_FOUND_" + XmlName},
        FailureCase{"OtherUid", withBody(anAssemblyBody(43)), "ERROR_INVALID_OBLASM_" + BodyName},
        FailureCase{"EmptyBody", withBody(""), "ERROR_INVALID_OBLASM_" + BodyName},
        FailureCase{"ShortBody", withBody(anAssemblyBody().substr(0, 15)),
                    "ERROR_INVALID_OBLASM_" + BodyName},
        FailureCase{"OtherMagic", withBody("x" + anAssemblyBody()),
                    "ERROR_INVALID_OBLASM_" + BodyName},
        FailureCase{"OtherRoot", withDescription("<x asmuid=\"42\"/>"),
                    "ERROR_INVALID_OBLASM_" + BodyName},
        FailureCase{"NoGraphs", withDescription("<obldescription asmuid=\"42\"/>"),
                    "ERROR_NO_GRAPH_ARRAY_ELEMENT_FOUND"},
        FailureCase{"BadGraph", withDescription(aDescription(aDescribedGraph("a", "<input/>"))),
                    "ERROR_FAIL_TO_CREATE_GRAPH"},
        FailureCase{
            "GroupsNestTooDeep",
            withDescription(aDescription(aDescribedGraph(
                "pkg://" +
                TestSupport::repeated("g/", Ksx::Core::OBLASMGraphPlaces::MaximumDepth + 1) +
                "a"))),
            "ERROR_FAIL_TO_CREATE_GRAPH"},
        FailureCase{"TwiceTheSameName", Wood + Wood, "ERROR_INVALID_FILE_NAME_" + BodyName},
        FailureCase{"TwiceTheSameNameOfOther", aFile("x") + aFile("y") + aFile("x"),
                    "ERROR_INVALID_FILE_NAME_x"},
        FailureCase{"NameLeadsOut", Wood + aFile("../x"), "ERROR_INVALID_FILE_NAME_../x"},
        FailureCase{"NameLeadsOutInside", aFile("assemblies/content/7/../../x.oblasm"),
                    "ERROR_INVALID_FILE_NAME_assemblies/content/7/../../x.oblasm"},
        FailureCase{"NameEndsInTwoPoints", aFile("a/.."), "ERROR_INVALID_FILE_NAME_a/.."},
        FailureCase{"NameIsAbsolute", aFile("/etc/x"), "ERROR_INVALID_FILE_NAME_/etc/x"},
        FailureCase{"FirstBadNameIsTold", aFile("/a") + aFile("/b"), "ERROR_INVALID_FILE_NAME_/a"},
        FailureCase{"TooLarge", withSize(0, Ksx::Core::MaximumUnpackedSize + 1),
                    "ERROR_ARCHIVE_TOO_LARGE_" + BodyName},
        FailureCase{"DescriptionTooLarge", withSize(1, Ksx::Core::MaximumUnpackedSize),
                    "ERROR_ARCHIVE_TOO_LARGE_" + XmlName}),
    caseName<FailureCase>);

class OblarBadFile : public OblarImport, public testing::WithParamInterface<FailureCase>
{};

TEST_P(OblarBadFile, EndsTheImport)
{
    EXPECT_EQ(import(GetParam().files), "failed");

    EXPECT_TRUE(
        log.children().front()->text().startsWith(QString::fromStdString(GetParam().message)))
        << message();
}

INSTANTIATE_TEST_SUITE_P(
    Archives, OblarBadFile,
    testing::Values(
        FailureCase{"ChecksumOfABody", withChecksum(0), "ERROR_FAIL_TO_EXTRACT_FILE_"},
        FailureCase{"ChecksumOfADescription", withChecksum(1), "ERROR_FAIL_TO_EXTRACT_FILE_"},
        FailureCase{"BodyCutOff", withSize(0, 1000), "ERROR_FAIL_TO_EXTRACT_FILE_"},
        FailureCase{"EmptyDescription", withDescription(""), "ERROR_XML_DOCUMENT_ERROR_"}),
    caseName<FailureCase>);

class OblarBrokenDescription : public OblarImport, public testing::WithParamInterface<DamageCase>
{};

TEST_P(OblarBrokenDescription, EndsTheImport)
{
    EXPECT_EQ(import(withDescription(GetParam().bytes())), "failed");

    EXPECT_EQ(message().substr(0, 32), "Error: ERROR_XML_DOCUMENT_ERROR_") << message();
}

INSTANTIATE_TEST_SUITE_P(Forms, OblarBrokenDescription,
                         testing::ValuesIn(TestSupport::brokenDescriptions()),
                         caseName<DamageCase>);

class OblarOverlongList : public OblarImport, public testing::WithParamInterface<DamageCase>
{};

TEST_P(OblarOverlongList, EndsTheImport)
{
    EXPECT_EQ(import(GetParam().bytes()), nullptr);

    EXPECT_EQ(message().substr(0, 41), "Error: ERROR_ARCHIVE_FILE_LIST_TOO_LARGE_") << message();
}

INSTANTIATE_TEST_SUITE_P(Lists, OblarOverlongList, testing::ValuesIn(TestSupport::overlongLists()),
                         caseName<DamageCase>);

TEST_F(OblarImport, ThePlainNamesThatLookBadAreGood)
{
    EXPECT_EQ(import(aFile("..a/b..") + aFile("a/...") + aFile("./x")), "");
}

TEST_F(OblarImport, FilesThatDoNotMatterAreNotTested)
{
    EXPECT_EQ(import(Wood + ArchiveFiles{{"x", "1", false, {}, 7}}), "wood");
}

TEST_F(OblarImport, RefusesWhatIsNoArchive)
{
    EXPECT_EQ(import(std::string("folly")), nullptr);

    EXPECT_EQ(log.toText(), "Error: ERROR_UNABLE_TO_OPEN_FILE\n");
}

TEST_F(OblarImport, RefusesAnEmptyFile)
{
    EXPECT_EQ(import(std::string()), nullptr);

    EXPECT_EQ(log.toText(), "Error: ERROR_UNABLE_TO_OPEN_FILE\n");
}

TEST_F(OblarImport, TellsThatNothingReadsArchives)
{
    QByteArray bytes = QByteArray::fromStdString(storedArchive(Wood));
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));

    EXPECT_EQ(OBLARImporter("/nowhere/reader").import(buffer, &log, {}), nullptr);

    EXPECT_EQ(message().substr(0, 44), "Error: ERROR_UNABLE_TO_LOAD_ARCHIVE_READER_C") << message();
    EXPECT_NE(message().find("/nowhere/reader"), std::string::npos) << message();
}

TEST_F(OblarImport, TranslatesItsMessages)
{
    const TestSupport::EchoTranslator translator;

    import(std::string());

    EXPECT_EQ(message(), "Error: Ksx::Core::OBLARImporter|ERROR_UNABLE_TO_OPEN_FILE");
}

TEST_F(OblarImport, TracesAFailure)
{
    std::vector<std::string> traced;
    const int sink = Orv::DiagnosticLog::addSink([&](const Orv::LogRecord& record) {
        traced.push_back(std::string(record.source) + ": " + record.text);
    });

    import(std::string());

    Orv::DiagnosticLog::removeSink(sink);
    EXPECT_EQ(traced,
              std::vector<std::string>({"core\\coreoblarimporter: ERROR_UNABLE_TO_OPEN_FILE"}));
}

TEST_F(OblarImport, NeedsNoLog)
{
    QBuffer buffer;
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));

    EXPECT_EQ(OBLARImporter().import(buffer, nullptr, {}), nullptr);
}

// Large archives.

TEST_F(OblarImport, RefusesDescriptionsThatUnpackToFarMoreThanTheyAre)
{
    if (!hasArchiver())
        GTEST_SKIP() << "no archiver";

    ArchiveFiles files = manyAssemblies(1);
    files.push_back({"assemblies/content/1/blanks.xml", std::string(std::size_t{65} << 20, ' ')});

    EXPECT_EQ(import(compressedArchive(files, {"-mx=1"})), nullptr);
}

TEST_F(OblarImport, ReadsAThousandAssemblies)
{
    if (!hasArchiver())
        GTEST_SKIP() << "no archiver";

    const auto package = import(compressedArchive(manyAssemblies(1000), {"-mx=1"}));

    ASSERT_NE(package, nullptr) << log.toText().toStdString();
    EXPECT_EQ(package->content().size(), 1000u);
}

std::string blocksName(const testing::TestParamInfo<Blocks>& blocks)
{
    return blocks.param == Blocks::OneForAll ? "OneForAll" : "OnePerFile";
}

// Counts what is read of it.
class CountingBuffer final : public QBuffer
{
public:
    explicit CountingBuffer(QByteArray bytes) : m_bytes(std::move(bytes)) { setBuffer(&m_bytes); }
    qint64 count() const { return m_count; }

protected:
    qint64 readData(char* data, qint64 maximumSize) override
    {
        const qint64 count = QBuffer::readData(data, maximumSize);
        m_count += std::max<qint64>(count, 0);
        return count;
    }

private:
    QByteArray m_bytes;
    qint64 m_count = 0;
};

class OblarCost : public OblarImport, public testing::WithParamInterface<Blocks>
{};

TEST_P(OblarCost, IsOneReadingOfTheFile)
{
    const std::string archive = storedArchive(manyAssemblies(3000), GetParam());
    CountingBuffer buffer(QByteArray::fromStdString(archive));
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly | QIODevice::Unbuffered));

    EXPECT_NE(OBLARImporter().import(buffer, &log, {}), nullptr) << log.toText().toStdString();

    EXPECT_GT(archive.size(), 1000000u);
    EXPECT_LT(buffer.count(), static_cast<qint64>(archive.size()) + qint64{3} * 65536);
}

INSTANTIATE_TEST_SUITE_P(OfBlocks, OblarCost,
                         testing::Values(Blocks::OnePerFile, Blocks::OneForAll), &blocksName);

// In less than the time of a test only because no assembly looks at those before it.
TEST_F(OblarImport, ManyAssembliesOfOneName)
{
    ArchiveFiles files = manyAssemblies(5000);
    for (auto& file : files)
        file.bytes = replaced(file.bytes, "pkg://g", "pkg://g/a?");

    const auto package = import(storedArchive(files, Blocks::OneForAll));

    ASSERT_NE(package, nullptr) << log.toText().toStdString();
    EXPECT_EQ(package->content().size(), 1u);
    EXPECT_EQ(
        dynamic_cast<const Ksx::Data::Content::Group&>(package->content().at(0)).content().size(),
        5000u);
}

// URLs.

struct UrlCase
{
    const char* name;
    const char* url;
    bool isAccepted;
};

std::ostream& operator<<(std::ostream& stream, const UrlCase& c)
{
    return stream << c.name;
}

class OblarUrl : public testing::TestWithParam<UrlCase>
{};

TEST_P(OblarUrl, IsAcceptedByItsEnding)
{
    EXPECT_EQ(OBLARImporter().accepts(QUrl(GetParam().url)), GetParam().isAccepted);
}

INSTANTIATE_TEST_SUITE_P(Urls, OblarUrl,
                         testing::Values(UrlCase{"File", "file:///x/a.oblar", true},
                                         UrlCase{"OtherScheme", "http://x/a.oblar", true},
                                         UrlCase{"Capitals", "file:///x/a.OBLAR", false},
                                         UrlCase{"Obl", "file:///x/a.obl", false},
                                         UrlCase{"Oblasm", "file:///x/a.oblasm", false},
                                         UrlCase{"MoreBehind", "file:///x/a.oblar.bak", false},
                                         UrlCase{"NoPoint", "file:///x/aoblar", false}),
                         caseName<UrlCase>);

TEST(OblarImporter, GivesAFileForLocalUrlsOnly)
{
    const auto file = OBLARImporter().createDevice(QUrl("file:///x/a.oblar"));

    ASSERT_NE(dynamic_cast<QFile*>(file.get()), nullptr);
    EXPECT_EQ(OBLARImporter().createDevice(QUrl("http://x/a.oblar")), nullptr);
}

} // namespace
