#include "reading/archivereader.h"

#include "support/archive.h"
#include "support/damage.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include <QBuffer>
#include <QCoreApplication>
#include <QLibrary>
#include <gtest/gtest.h>
#include <algorithm>
#include <sys/resource.h>
#include <tuple>

using Ksx::Core::ArchiveResult;
using Ksx::Core::ArchiveVisitor;
using TestSupport::ArchiveFile;
using TestSupport::ArchiveFiles;
using TestSupport::ArchiveStartSize;
using TestSupport::Blocks;
using TestSupport::caseName;
using TestSupport::compressedArchive;
using TestSupport::DamageCase;
using TestSupport::hasArchiver;
using TestSupport::listOfEmptyFiles;
using TestSupport::Packing;
using TestSupport::repeated;
using TestSupport::storedArchive;
using TestSupport::TemporaryDirectory;
using TestSupport::withArchiveHeader;
using TestSupport::withChecksumsRepaired;
using TestSupport::withFlippedBit;
using TestSupport::withPackedList;

namespace Ksx::Core {

std::ostream& operator<<(std::ostream& stream, ArchiveResult result)
{
    static const char* const names[] = {"Success",      "NoReader", "NotOpened",
                                        "ListTooLarge", "BadFile",  "TooLarge"};
    return stream << names[static_cast<int>(result)];
}

} // namespace Ksx::Core

namespace {

using Limited = ArchiveResult (*)(QIODevice&, const ArchiveVisitor&, qint64, QString&);

// The reader of the library itself, which takes the limit.
Limited limitedReader()
{
    static const auto read = reinterpret_cast<Limited>(QLibrary::resolve(
        QCoreApplication::applicationDirPath() + "/libksx_archives", "ksxReadArchive"));
    return read;
}

// Counts what is read of it.
class CountingBuffer final : public QIODevice
{
public:
    explicit CountingBuffer(const std::string& bytes) : m_bytes(bytes)
    {
        open(ReadOnly | Unbuffered);
    }
    qint64 size() const override { return static_cast<qint64>(m_bytes.size()); }
    qint64 count() const { return m_count; }

protected:
    qint64 readData(char* data, qint64 maximumSize) override
    {
        const qint64 count = std::min(maximumSize, size() - pos());
        if (count <= 0)
            return 0;
        std::copy_n(m_bytes.begin() + pos(), count, data);
        m_count += count;
        return count;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    const std::string& m_bytes;
    qint64 m_count = 0;
};

struct Visit
{
    ArchiveResult result = ArchiveResult::Success;
    ArchiveFiles files; // those that were given
    std::vector<std::string> names;
    QString detail;
    qint64 bytesRead = 0;
};

bool isSame(const ArchiveFiles& left, const ArchiveFiles& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const ArchiveFile& a, const ArchiveFile& b) {
                          return a.name == b.name && a.bytes == b.bytes;
                      });
}

using Wanted = std::function<qint64(const std::string& name)>;

qint64 everything(const std::string& /*name*/)
{
    return ArchiveVisitor::All;
}

qint64 nothing(const std::string& /*name*/)
{
    return 0;
}

Visit visit(const std::string& archive, const Wanted& wanted = &everything,
            qint64 limit = Ksx::Core::MaximumUnpackedSize)
{
    CountingBuffer device(archive);
    Visit visit;
    const ArchiveVisitor visitor{
        [&](const QString& name) {
            visit.names.push_back(name.toStdString());
            return wanted(visit.names.back());
        },
        [&](const QString& name, const QByteArray& bytes) {
            visit.files.push_back({name.toStdString(), bytes.toStdString()});
        }};
    visit.result = limitedReader()(device, visitor, limit, visit.detail);
    visit.bytesRead = device.count();
    return visit;
}

const ArchiveFiles TwoFiles{{"a/b.txt", "first"}, {"c.txt", "the second"}};

std::string lines(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "line " + std::to_string(i * 7919 % 1000) + "\n";
    return text;
}

const ArchiveFiles SomeFiles{{"assemblies/content/7/a.oblasm", std::string("OLAM\0\0\0\0body", 12)},
                             {"assemblies/content/7/a.xml", lines(30)},
                             {"authoring/content/7/x", ""}};

ArchiveFiles sorted(ArchiveFiles files)
{
    std::sort(files.begin(), files.end(),
              [](const ArchiveFile& a, const ArchiveFile& b) { return a.name < b.name; });
    return files;
}

// What compresses the files.

struct MethodCase
{
    const char* name;
    std::vector<std::string> switches;
};

std::ostream& operator<<(std::ostream& stream, const MethodCase& c)
{
    return stream << c.name;
}

std::vector<MethodCase> methods()
{
    return {{"Lzma", {"-m0=LZMA"}},
            {"Lzma2", {"-m0=LZMA2"}},
            {"Copy", {"-m0=Copy"}},
            {"BcjAndLzma", {"-m0=BCJ", "-m1=LZMA"}},
            {"Bcj2AndLzma",
             {"-m0=BCJ2", "-m1=LZMA", "-m2=LZMA:d=64k", "-m3=LZMA:d=64k", "-mb0:1", "-mb0s1:2",
              "-mb0s2:3"}},
            {"DeltaAndLzma", {"-m0=Delta:4", "-m1=LZMA"}},
            {"PpmD", {"-m0=PPMd:mem=64k"}},
            {"Deflate", {"-m0=Deflate"}},
            {"BZip2", {"-m0=BZip2"}},
            {"Fastest", {"-mx=1"}},
            {"Best", {"-mx=9"}}};
}

using Compression = std::tuple<MethodCase, const char*, const char*>; // list of files, solid

std::string compressionName(const testing::TestParamInfo<Compression>& compression)
{
    const auto& [method, header, solid] = compression.param;
    return std::string(method.name) + "Header" + header + "Solid" + solid;
}

class CompressedArchive : public testing::TestWithParam<Compression>
{
protected:
    void SetUp() override
    {
        if (!hasArchiver())
            GTEST_SKIP() << "no archiver";
    }
    std::string archive() const
    {
        const auto& [method, header, solid] = GetParam();
        std::vector<std::string> switches = method.switches;
        switches.push_back(std::string("-mhc=") + header);
        switches.push_back(std::string("-ms=") + solid);
        return compressedArchive(SomeFiles, switches);
    }
};

TEST_P(CompressedArchive, GivesItsFiles)
{
    const Visit visited = visit(archive());

    EXPECT_EQ(visited.result, ArchiveResult::Success) << visited.detail.toStdString();
    EXPECT_TRUE(isSame(sorted(visited.files), sorted(SomeFiles)));
}

TEST_P(CompressedArchive, GivesTheBeginsOfFiles)
{
    const Visit visited = visit(archive(), [](const std::string&) { return 4; });

    EXPECT_EQ(visited.result, ArchiveResult::Success) << visited.detail.toStdString();
    EXPECT_TRUE(isSame(
        sorted(visited.files),
        {{SomeFiles[0].name, "OLAM"}, {SomeFiles[1].name, "line"}, {SomeFiles[2].name, ""}}));
}

INSTANTIATE_TEST_SUITE_P(Methods, CompressedArchive,
                         testing::Combine(testing::ValuesIn(methods()),
                                          testing::Values("on", "off"),
                                          testing::Values("on", "off")),
                         &compressionName);

TEST(ArchiveReader, ReadsWhatHasNoFiles)
{
    if (!hasArchiver())
        GTEST_SKIP() << "no archiver";

    const Visit visited = visit(compressedArchive({}, {}));

    EXPECT_EQ(visited.result, ArchiveResult::Success) << visited.detail.toStdString();
    EXPECT_TRUE(visited.names.empty());
}

TEST(ArchiveReader, ReadsAnEmptyListOfFiles)
{
    const Visit visited = visit(storedArchive({}));

    EXPECT_EQ(visited.result, ArchiveResult::Success) << visited.detail.toStdString();
    EXPECT_TRUE(visited.names.empty());
}

TEST(ArchiveReader, RefusesAnUnknownMethod)
{
    if (!hasArchiver())
        GTEST_SKIP() << "no archiver";

    const Visit visited = visit(compressedArchive(SomeFiles, {"-m0=ARM64", "-m1=LZMA"}));

    EXPECT_EQ(visited.result, ArchiveResult::BadFile);
    EXPECT_FALSE(visited.detail.isEmpty());
}

class EncryptedArchive : public testing::TestWithParam<MethodCase>
{};

TEST_P(EncryptedArchive, IsRefused)
{
    if (!hasArchiver())
        GTEST_SKIP() << "no archiver";

    const Visit visited = visit(compressedArchive(TwoFiles, GetParam().switches));

    EXPECT_NE(visited.result, ArchiveResult::Success);
    EXPECT_TRUE(visited.files.empty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, EncryptedArchive,
                         testing::Values(MethodCase{"Files", {"-pfolly"}},
                                         MethodCase{"FilesAndNames", {"-pfolly", "-mhe=on"}}),
                         caseName<MethodCase>);

// Which files, and in what order.

TEST(ArchiveReader, GoesInTheOrderOfTheArchive)
{
    const ArchiveFiles files{{"z", "1"}, {"a", "2"}, {"m/n", "3"}};

    EXPECT_TRUE(isSame(visit(storedArchive(files)).files, files));
    EXPECT_TRUE(isSame(visit(storedArchive(files, Blocks::OneForAll)).files, files));
}

TEST(ArchiveReader, PassesOverFilesThatNobodyWants)
{
    const std::string archive = storedArchive({{"a", "1"}, {"b", "2"}, {"c", "3"}});

    const Visit visited = visit(
        archive, [](const std::string& name) { return name == "b" ? ArchiveVisitor::All : 0; });

    EXPECT_EQ(visited.names, std::vector<std::string>({"a", "b", "c"}));
    EXPECT_TRUE(isSame(visited.files, {{"b", "2"}}));
}

TEST(ArchiveReader, PassesOverFilesOfABlockToo)
{
    const std::string archive =
        storedArchive({{"a", "1"}, {"b", "2"}, {"c", "3"}}, Blocks::OneForAll);

    const Visit visited = visit(
        archive, [](const std::string& name) { return name == "c" ? ArchiveVisitor::All : 0; });

    EXPECT_TRUE(isSame(visited.files, {{"c", "3"}}));
}

TEST(ArchiveReader, GivesNoMoreThanAFileHas)
{
    const Visit visited =
        visit(storedArchive({{"a", "12345"}}), [](const std::string&) { return 100; });

    EXPECT_TRUE(isSame(visited.files, {{"a", "12345"}}));
}

TEST(ArchiveReader, GivesEmptyFiles)
{
    const ArchiveFiles files{{"a", ""}, {"b", "2"}, {"c", ""}};

    EXPECT_TRUE(isSame(visit(storedArchive(files)).files, files));
}

TEST(ArchiveReader, DoesNotVisitDirectories)
{
    const Visit visited = visit(storedArchive({{"a", "", true}, {"a/b", "2"}, {"c", "", true}}));

    EXPECT_EQ(visited.result, ArchiveResult::Success);
    EXPECT_EQ(visited.names, std::vector<std::string>({"a/b"}));
}

TEST(ArchiveReader, VisitsEachOfTwoFilesOfOneName)
{
    const ArchiveFiles files{{"a", "1"}, {"a", "2"}};

    EXPECT_TRUE(isSame(visit(storedArchive(files)).files, files));
}

TEST(ArchiveReader, GivesNamesAsTheyStand)
{
    const Visit visited = visit(storedArchive({{"../a", "1"}, {"/b", "2"}, {"c//d ", "3"}}));

    EXPECT_EQ(visited.names, std::vector<std::string>({"../a", "/b", "c//d "}));
}

TEST(ArchiveReader, GivesNamesBeyondAscii)
{
    EXPECT_EQ(visit(storedArchive({{"gr\xf6\xdf", "1"}})).names, std::vector<std::string>({"grö"
                                                                                           "ß"}));
}

TEST(ArchiveReader, ReadsTheFileOnceAndItsListTwiceAtMost)
{
    const std::string archive = storedArchive(
        {{"a", std::string(300000, 'a')}, {"b", std::string(400000, 'b')}}, Blocks::OneForAll);

    const Visit visited = visit(archive);

    EXPECT_EQ(visited.result, ArchiveResult::Success);
    EXPECT_LT(visited.bytesRead, static_cast<qint64>(archive.size()) + qint64{3} * 65536);
}

const ArchiveVisitor NothingIsWanted{[](const QString&) { return 0; },
                                     [](const QString&, const QByteArray&) {}};

TEST(ArchiveReader, IsFoundByTheLibrary)
{
    const std::string archive = storedArchive(TwoFiles);
    CountingBuffer device(archive);
    QString detail;
    int count = 0;
    const ArchiveVisitor visitor{[](const QString&) { return ArchiveVisitor::All; },
                                 [&](const QString&, const QByteArray&) { ++count; }};

    EXPECT_EQ(Ksx::Core::readArchive(device, visitor, detail), ArchiveResult::Success);

    EXPECT_EQ(count, 2);
}

TEST(ArchiveReader, TellsThatItIsMissing)
{
    const std::string archive = storedArchive(TwoFiles);
    CountingBuffer device(archive);
    QString detail;

    EXPECT_EQ(Ksx::Core::readArchive(device, NothingIsWanted, detail, "/nowhere/reader"),
              ArchiveResult::NoReader);

    EXPECT_TRUE(detail.contains("/nowhere/reader")) << detail.toStdString();
}

TEST(ArchiveReader, TellsThatItIsNoLibrary)
{
    const TemporaryDirectory directory;
    directory.write("reader.so", "folly");
    const std::string archive = storedArchive(TwoFiles);
    CountingBuffer device(archive);
    QString detail;

    EXPECT_EQ(Ksx::Core::readArchive(device, NothingIsWanted, detail,
                                     QString::fromStdString(directory.path("reader"))),
              ArchiveResult::NoReader);

    EXPECT_FALSE(detail.isEmpty());
}

// How much an archive may unpack to.

std::string blocksName(const testing::TestParamInfo<Blocks>& blocks)
{
    return blocks.param == Blocks::OneForAll ? "OneForAll" : "OnePerFile";
}

TEST(ArchiveSize, CountsWhatAllFilesAnnounce)
{
    constexpr std::uint64_t Half = Ksx::Core::MaximumUnpackedSize / 2;
    const std::string archive =
        storedArchive({{"a", "x", false, Half}, {"b", "x", false, Half}, {"c", "x"}});

    EXPECT_EQ(visit(archive, &nothing).result, ArchiveResult::TooLarge);
}

TEST(ArchiveSize, IsOneGibibyte)
{
    EXPECT_EQ(Ksx::Core::MaximumUnpackedSize, 1073741824);
}

class ArchiveLimit : public testing::TestWithParam<Blocks>
{};

TEST_P(ArchiveLimit, MayBeReached)
{
    const Visit visited = visit(storedArchive(TwoFiles, GetParam()), &everything, 15);

    EXPECT_EQ(visited.result, ArchiveResult::Success);
    EXPECT_TRUE(isSame(visited.files, TwoFiles));
}

TEST_P(ArchiveLimit, MayNotBePassed)
{
    const Visit visited = visit(storedArchive(TwoFiles, GetParam()), &everything, 14);

    EXPECT_EQ(visited.result, ArchiveResult::TooLarge);
    EXPECT_EQ(visited.detail, "c.txt");
    EXPECT_TRUE(isSame(visited.files, {TwoFiles[0]}));
}

TEST_P(ArchiveLimit, CountsFilesThatNobodyWants)
{
    const Visit visited = visit(storedArchive(TwoFiles, GetParam()), &nothing, 14);

    EXPECT_EQ(visited.result, ArchiveResult::TooLarge);
}

TEST_P(ArchiveLimit, CountsWhatFilesAnnounce)
{
    const std::string archive =
        storedArchive({{"a", "x", false, Ksx::Core::MaximumUnpackedSize + 1}}, GetParam());

    const Visit visited = visit(archive, &nothing);

    EXPECT_EQ(visited.result, ArchiveResult::TooLarge);
    EXPECT_EQ(visited.detail, "a");
}

INSTANTIATE_TEST_SUITE_P(OfBlocks, ArchiveLimit,
                         testing::Values(Blocks::OnePerFile, Blocks::OneForAll), &blocksName);

struct SizeCase
{
    const char* name;
    std::uint64_t size;
};

std::ostream& operator<<(std::ostream& stream, const SizeCase& c)
{
    return stream << c.name;
}

class AnnouncedSize : public testing::TestWithParam<SizeCase>
{};

TEST_P(AnnouncedSize, IsTooLarge)
{
    const std::string archive = storedArchive({{"a", "x", false, GetParam().size}, {"b", "y"}});

    EXPECT_EQ(visit(archive, &nothing).result, ArchiveResult::TooLarge);
    EXPECT_EQ(visit(archive, &everything).result, ArchiveResult::TooLarge);
}

INSTANTIATE_TEST_SUITE_P(Sizes, AnnouncedSize,
                         testing::Values(SizeCase{"Bits62", 1ull << 62},
                                         SizeCase{"Bits63", 1ull << 63}, SizeCase{"Largest", ~0ull},
                                         SizeCase{"AboveTheSigned", (1ull << 63) + 5},
                                         SizeCase{"OnlyJustNegative", ~0ull - 15}),
                         caseName<SizeCase>);

TEST(ArchiveSize, HoldsForASmallArchive)
{
    if (!hasArchiver())
        GTEST_SKIP() << "no archiver";
    const std::string archive =
        compressedArchive({{"a", repeated(std::string(1, '\0'), 20000000)}}, {"-m0=LZMA", "-mx=1"});

    const Visit visited = visit(archive, &everything, 10000000);

    EXPECT_LT(archive.size(), 10000u);
    EXPECT_EQ(visited.result, ArchiveResult::TooLarge);
}

// How long a list of files may be.

struct ListCase
{
    const char* name;
    std::string (*withList)(const std::string& list);
    bool needsArchiver;
};

std::ostream& operator<<(std::ostream& stream, const ListCase& c)
{
    return stream << c.name;
}

std::string withList(const std::string& list)
{
    return withArchiveHeader(storedArchive({}), list);
}

class ListOfFiles : public testing::TestWithParam<ListCase>
{
protected:
    void SetUp() override
    {
        if (GetParam().needsArchiver && !hasArchiver())
            GTEST_SKIP() << "no archiver";
    }
};

TEST_P(ListOfFiles, MayTellOfAHundredThousand)
{
    const Visit visited = visit(GetParam().withList(listOfEmptyFiles(100000)), &nothing);

    EXPECT_EQ(visited.result, ArchiveResult::Success) << visited.detail.toStdString();
    EXPECT_EQ(visited.names.size(), 100000u);
}

TEST_P(ListOfFiles, MayNotTellOfMore)
{
    const Visit visited = visit(GetParam().withList(listOfEmptyFiles(100001)), &nothing);

    EXPECT_EQ(visited.result, ArchiveResult::ListTooLarge);
    EXPECT_EQ(visited.detail, "100001 entries");
    EXPECT_TRUE(visited.names.empty());
}

TEST_P(ListOfFiles, MayNotUnpackToMoreThan16Mebibytes)
{
    const std::string end(static_cast<std::size_t>(Ksx::Core::MaximumListSize), '\0');

    const Visit visited = visit(GetParam().withList('\1' + end), &nothing);

    EXPECT_EQ(visited.result, ArchiveResult::ListTooLarge);
    EXPECT_EQ(visited.detail, "16777217 bytes");
}

TEST_P(ListOfFiles, MayUnpackTo16Mebibytes)
{
    const std::string list = listOfEmptyFiles(1);
    const std::string end(static_cast<std::size_t>(Ksx::Core::MaximumListSize) - list.size(), '\0');

    EXPECT_NE(visit(GetParam().withList(list + end), &nothing).result, ArchiveResult::ListTooLarge);
}

INSTANTIATE_TEST_SUITE_P(Forms, ListOfFiles,
                         testing::Values(ListCase{"Plain", &withList, false},
                                         ListCase{"PackedAsItIs",
                                                  [](const std::string& list) {
                                                      return withPackedList(withList(list),
                                                                            Packing::Stored);
                                                  },
                                                  false},
                                         ListCase{"Compressed",
                                                  [](const std::string& list) {
                                                      return withPackedList(withList(list),
                                                                            Packing::Lzma);
                                                  },
                                                  true}),
                         caseName<ListCase>);

class OverlongList : public testing::TestWithParam<DamageCase>
{};

TEST_P(OverlongList, IsRefused)
{
    const Visit visited = visit(GetParam().bytes());

    EXPECT_EQ(visited.result, ArchiveResult::ListTooLarge);
    EXPECT_FALSE(visited.detail.isEmpty());
    EXPECT_TRUE(visited.names.empty());
}

INSTANTIATE_TEST_SUITE_P(Lists, OverlongList, testing::ValuesIn(TestSupport::overlongLists()),
                         caseName<DamageCase>);

TEST(ArchiveReader, ReadsAPackedListOfFilesWithBytes)
{
    const std::string archive = storedArchive(TwoFiles, Blocks::OneForAll);

    const Visit visited = visit(withPackedList(archive, Packing::Stored));

    EXPECT_EQ(visited.result, ArchiveResult::Success) << visited.detail.toStdString();
    EXPECT_TRUE(isSame(visited.files, TwoFiles));
}

TEST(ArchiveReader, TestsTheChecksumOfAPackedList)
{
    const std::string archive = storedArchive(TwoFiles);
    std::string packed = withPackedList(archive, Packing::Stored);
    const std::size_t nameInPackedList = archive.size() - 5; // changes no form
    packed[nameInPackedList] = 'x';

    EXPECT_EQ(visit(packed).result, ArchiveResult::NotOpened);
}

// Damage.

// The library behind the reader looks for ever for the bytes that it has to pass over.
TEST(ArchiveReader, RefusesStoredFilesThatAnnounceMoreThanTheirBlockHas)
{
    const std::string archive =
        storedArchive({{"a", "1", false, 70000}, {"b", "2"}}, Blocks::OneForAll);

    const Visit visited = visit(archive, [](const std::string& name) { return name == "b"; });

    EXPECT_EQ(visited.result, ArchiveResult::NotOpened);
}

TEST(ArchiveReader, RefusesAFileWithAnotherChecksum)
{
    const Visit visited = visit(storedArchive({{"a", "1"}, {"b", "2", false, {}, 7}}));

    EXPECT_EQ(visited.result, ArchiveResult::BadFile);
    EXPECT_TRUE(isSame(visited.files, {{"a", "1"}}));
}

TEST(ArchiveReader, TestsTheChecksumBehindTheWantedBytes)
{
    std::string archive = storedArchive({{"a", std::string(200000, 'a')}});
    archive[ArchiveStartSize + 199999] = 'b';

    const Visit visited = visit(archive, [](const std::string&) { return 1; });

    EXPECT_EQ(visited.result, ArchiveResult::BadFile);
}

TEST(ArchiveReader, RefusesAFileThatEndsEarly)
{
    const Visit visited = visit(storedArchive({{"a", "1", false, 5}}));

    EXPECT_EQ(visited.result, ArchiveResult::BadFile);
}

TEST(ArchiveReader, RefusesADeviceThatIsClosed)
{
    QBuffer closed;
    QString detail;
    const ArchiveVisitor visitor{[](const QString&) { return ArchiveVisitor::All; },
                                 [](const QString&, const QByteArray&) {}};

    EXPECT_EQ(limitedReader()(closed, visitor, 100, detail), ArchiveResult::NotOpened);
}

// A device of which so many seeks succeed, and which gives so many bytes.
class WearyDevice final : public QBuffer
{
public:
    WearyDevice(const std::string& bytes, int seeks, qint64 capacity)
        : m_bytes(QByteArray::fromStdString(bytes)), m_seeks(seeks), m_capacity(capacity)
    {
        setBuffer(&m_bytes);
        open(ReadOnly | Unbuffered);
    }
    bool seek(qint64 place) override { return --m_seeks >= 0 && QBuffer::seek(place); }

protected:
    qint64 readData(char* data, qint64 maximumSize) override
    {
        const qint64 count = QBuffer::readData(data, std::min(maximumSize, m_capacity));
        m_capacity -= std::max<qint64>(count, 0);
        return count;
    }

private:
    QByteArray m_bytes;
    int m_seeks;
    qint64 m_capacity;
};

ArchiveResult resultOf(WearyDevice&& device)
{
    QString detail;
    const ArchiveVisitor visitor{[](const QString&) { return ArchiveVisitor::All; },
                                 [](const QString&, const QByteArray&) {}};
    return limitedReader()(device, visitor, Ksx::Core::MaximumUnpackedSize, detail);
}

TEST(ArchiveReader, NeedsADeviceThatGoesToTheListAndBack)
{
    const std::string archive = storedArchive({{"a", std::string(200000, 'a')}});
    constexpr qint64 Enough = 1000000;

    EXPECT_EQ(resultOf(WearyDevice(archive, 0, Enough)), ArchiveResult::NotOpened);
    EXPECT_NE(resultOf(WearyDevice(archive, 1, Enough)), ArchiveResult::Success);
    EXPECT_EQ(resultOf(WearyDevice(archive, 10, Enough)), ArchiveResult::Success);
}

TEST(ArchiveReader, NeedsADeviceThatGivesTheWholeList)
{
    const std::string archive = storedArchive(TwoFiles);

    EXPECT_EQ(resultOf(WearyDevice(archive, 10, ArchiveStartSize + 3)), ArchiveResult::NotOpened);
}

// The archive with its list of files cut after each of its bytes: those that are read.
std::size_t readableCutsOfList(const std::string& archive)
{
    const std::string list = TestSupport::archiveHeader(archive);
    std::size_t readable = 0;
    for (std::size_t size = 1; size < list.size(); ++size)
        if (visit(withArchiveHeader(archive, list.substr(0, size))).result ==
            ArchiveResult::Success)
            ++readable;
    return readable;
}

TEST(ArchiveReader, RefusesAListThatIsCutOff)
{
    const ArchiveFiles files{{"a", "1"}, {"b", "22"}, {"c", "333"}};

    EXPECT_EQ(readableCutsOfList(storedArchive(files)), 0u);
    EXPECT_EQ(readableCutsOfList(storedArchive(files, Blocks::OneForAll)), 0u);
    EXPECT_EQ(readableCutsOfList(withPackedList(storedArchive(files), Packing::Stored)), 0u);
}

TEST(ArchiveReader, RefusesAPackedListWithMoreBehindIt)
{
    const std::string archive = withPackedList(storedArchive(TwoFiles), Packing::Stored);
    const std::string list = TestSupport::archiveHeader(archive);

    EXPECT_EQ(visit(withArchiveHeader(archive, list + '\0')).result, ArchiveResult::NotOpened);
}

// Of a block of one file the checksum may be with the block.
TEST(ArchiveReader, ReadsABlockWithAChecksumOfItsOwn)
{
    // One packed stream of a byte at 0; one block that is stored as it is, with its size and its
    // checksum; no word of the files in it; one file, of which the name is known.
    constexpr char List[] = "\1\4\6\0\1\x09\1\0"
                            "\7\x0B\1\0\1\1\0\x0C\1\x0A\1\xB7\xEF\xDC\x83\0"
                            "\x08\0\0"
                            "\5\1\x11\5\0a\0\0\0\0\0";
    const std::string archive =
        withArchiveHeader(storedArchive({{"a", "1"}}), std::string(List, sizeof(List) - 1));

    const Visit visited = visit(archive);

    EXPECT_EQ(visited.result, ArchiveResult::Success) << visited.detail.toStdString();
    EXPECT_TRUE(isSame(visited.files, {{"a", "1"}}));
}

TEST(ArchiveReader, RefusesAnArchiveThatIsDamagedBehindItsFirstFile)
{
    if (!hasArchiver())
        GTEST_SKIP() << "no archiver";
    std::string archive =
        compressedArchive({{"a", lines(20000)}, {"b", lines(10)}}, {"-m0=LZMA", "-ms=on"});
    archive[ArchiveStartSize + 50] = static_cast<char>(~archive[ArchiveStartSize + 50]);

    const Visit visited = visit(archive, [](const std::string& name) { return name == "b"; });

    EXPECT_EQ(visited.result, ArchiveResult::BadFile);
}

class NoArchive : public testing::TestWithParam<DamageCase>
{};

TEST_P(NoArchive, IsNotOpened)
{
    const Visit visited = visit(GetParam().bytes());

    EXPECT_EQ(visited.result, ArchiveResult::NotOpened);
    EXPECT_TRUE(visited.names.empty());
}

INSTANTIATE_TEST_SUITE_P(Forms, NoArchive, testing::ValuesIn(TestSupport::noArchives()),
                         caseName<DamageCase>);

// The numbers of bytes at which a cut archive is anything but refused at once.
std::vector<std::size_t> harmlessCuts(const std::string& archive)
{
    std::vector<std::size_t> harmless;
    for (std::size_t size = 0; size < archive.size(); ++size)
        if (visit(archive.substr(0, size)).result != ArchiveResult::NotOpened)
            harmless.push_back(size);
    return harmless;
}

// The bytes of which a flipped bit leaves an archive that gives other files than it should, and
// those that are not tested at all.
struct Flips
{
    std::vector<std::size_t> falsified;
    std::vector<std::size_t> accepted;
};

Flips flipsOf(const std::string& archive)
{
    const ArchiveFiles files = visit(archive).files;
    Flips flips;
    for (std::size_t bit = 0; bit < 8 * archive.size(); ++bit) {
        const Visit visited = visit(withFlippedBit(archive, bit));
        if (visited.result != ArchiveResult::Success)
            continue;
        if (!isSame(visited.files, files))
            flips.falsified.push_back(bit / 8);
        if (flips.accepted.empty() || flips.accepted.back() != bit / 8)
            flips.accepted.push_back(bit / 8);
    }
    return flips;
}

// Visits the archive with each bit of it flipped and its checksums made right again. Answers the
// largest memory that the process has had by then, in kilobytes.
long memoryForRepairedFlips(const std::string& archive)
{
    for (std::size_t bit = std::size_t{8} * 12; bit < 8 * archive.size(); ++bit)
        visit(withChecksumsRepaired(withFlippedBit(archive, bit)));
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

constexpr long MaximumKilobytes = 1024L * 1024;
const std::vector<std::size_t> VersionBytes{6, 7};

class DamagedStoredArchive : public testing::TestWithParam<Blocks>
{
protected:
    const std::string archive = storedArchive(SomeFiles, GetParam());
};

TEST_P(DamagedStoredArchive, IsNotOpenedWhenCut)
{
    EXPECT_EQ(harmlessCuts(archive), std::vector<std::size_t>());
}

TEST_P(DamagedStoredArchive, IsRefusedForAnyBitButTheFormatsVersion)
{
    EXPECT_EQ(flipsOf(archive).accepted, VersionBytes);
}

TEST_P(DamagedStoredArchive, CostsNoMemoryWithRightChecksums)
{
    EXPECT_LT(memoryForRepairedFlips(archive), MaximumKilobytes);
}

INSTANTIATE_TEST_SUITE_P(OfBlocks, DamagedStoredArchive,
                         testing::Values(Blocks::OnePerFile, Blocks::OneForAll), &blocksName);

std::vector<std::string> with(std::vector<std::string> switches, const std::string& more)
{
    switches.push_back(more);
    return switches;
}

// Compressed data have bits at their ends that mean nothing.
class DamagedCompressedArchive : public testing::TestWithParam<MethodCase>
{
protected:
    void SetUp() override
    {
        if (!hasArchiver())
            GTEST_SKIP() << "no archiver";
        archive = compressedArchive(SomeFiles, GetParam().switches);
        plainArchive = compressedArchive(SomeFiles, with(GetParam().switches, "-mhc=off"));
    }

    std::string archive;
    std::string plainArchive; // its list of files is not compressed
};

TEST_P(DamagedCompressedArchive, IsNotOpenedWhenCut)
{
    EXPECT_EQ(harmlessCuts(archive), std::vector<std::size_t>());
    EXPECT_EQ(harmlessCuts(plainArchive), std::vector<std::size_t>());
}

TEST_P(DamagedCompressedArchive, IsRefusedOrGivesTheSame)
{
    EXPECT_EQ(flipsOf(archive).falsified, std::vector<std::size_t>());
    EXPECT_EQ(flipsOf(plainArchive).falsified, std::vector<std::size_t>());
}

TEST_P(DamagedCompressedArchive, CostsNoMemoryWithRightChecksums)
{
    EXPECT_LT(memoryForRepairedFlips(archive), MaximumKilobytes);
    EXPECT_LT(memoryForRepairedFlips(plainArchive), MaximumKilobytes);
}

INSTANTIATE_TEST_SUITE_P(Methods, DamagedCompressedArchive, testing::ValuesIn(methods()),
                         caseName<MethodCase>);

} // namespace
