#include "data/xmldatawriter.h"

#include "support/shelfbuilder.h"
#include "support/shelfcases.h"
#include "support/shelfchain.h"
#include "support/temporarydirectory.h"
#include <QBuffer>
#include <QFile>
#include <gtest/gtest.h>
#include <optional>
#include <vector>

namespace {

using namespace TestDocument;
using Orv::Data::ValueFlag;
using Orv::Data::XmlDataWriter;
using TestSupport::caseName;
using TestSupport::seededRandom;

const std::string Declaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";

std::string documentOf(const std::string& root)
{
    return Declaration + root + "\n";
}

// --- the mapping

TEST(XmlDataWriter, WritesAnAttributeAsAnEmptyElementWithV)
{
    EXPECT_EQ(written(aShelf().named("hall").build()->name()), documentOf(R"(<name v="hall"/>)"));
}

TEST(XmlDataWriter, WritesARequiredAttributeAtItsDefault)
{
    EXPECT_EQ(written(Candle()), documentOf(R"(<candle><wicks v="0"/></candle>)"));
}

TEST(XmlDataWriter, LeavesOutOptionalMembersAtTheirDefaults)
{
    EXPECT_EQ(written(Shelf()), documentOf(R"(<shelf><name v=""/><shelves/></shelf>)"));
}

TEST(XmlDataWriter, LeavesOutAnOptionalMemberAtItsDeclaredDefault)
{
    EXPECT_EQ(written(*aShelf().atLevel(7).build()), written(Shelf()));
}

TEST(XmlDataWriter, WritesAnOptionalMemberThatLeftItsDeclaredDefault)
{
    EXPECT_EQ(written(*aShelf().atLevel(0).build()),
              documentOf(R"(<shelf><name v=""/><level v="0"/><shelves/></shelf>)"));
}

TEST(XmlDataWriter, LeavesOutAnOptionalFloatThatIsNan)
{
    EXPECT_EQ(written(*aShelf().weighing(std::numeric_limits<float>::quiet_NaN()).build()),
              written(Shelf()));
}

TEST(XmlDataWriter, WritesARequiredEmptyContainerAsAnEmptyElement)
{
    EXPECT_EQ(written(Shelf().shelves()), documentOf("<shelves/>"));
}

TEST(XmlDataWriter, WritesAStructureWithoutModifiedMembersAsAnEmptyElement)
{
    EXPECT_EQ(written(Cover()), documentOf("<coverClass/>"));
}

TEST(XmlDataWriter, LeavesOutAnOptionalStructureOnlyWhenNothingInItIsModified)
{
    EXPECT_EQ(
        written(*aShelf().coloured("red").build()),
        documentOf(R"(<shelf><name v=""/><cover><color v="red"/></cover><shelves/></shelf>)"));
}

TEST(XmlDataWriter, WritesItemsOfAListAlways)
{
    EXPECT_EQ(written(aShelf().withBook("").build()->books()),
              documentOf(R"(<books><book><title v=""/></book></books>)"));
}

TEST(XmlDataWriter, WritesItemsInTheOrderOfTheList)
{
    EXPECT_EQ(
        written(aShelf().withBook("b").withBook("a").build()->books()),
        documentOf(R"(<books><book><title v="b"/></book><book><title v="a"/></book></books>)"));
}

TEST(XmlDataWriter, WritesTheChildOfAUnionUnderItsOwnName)
{
    EXPECT_EQ(written(aShelf().withBulb(60.0f).build()->lamp()),
              documentOf(R"(<lamp><bulb><watts v="60"/></bulb></lamp>)"));
}

TEST(XmlDataWriter, WritesMembersInTheOrderOfDeclaration)
{
    const auto shelf = aShelf()
                           .named("n")
                           .withUid(1)
                           .atLevel(2)
                           .atPath("p")
                           .atSpot({{1.0f, 2.0f, 3.0f}})
                           .weighing(0.1f)
                           .ofSize({{4, 5}})
                           .opened()
                           .withBook("b")
                           .withCandle(6)
                           .coloured("c")
                           .build();
    EXPECT_EQ(written(*shelf),
              documentOf(R"(<shelf><name v="n"/><uid v="1"/><level v="2"/><path v="p"/>)"
                         R"(<spot v="1 2 3"/><weight v="0.100000001"/><size v="4 5"/>)"
                         R"(<open v="1"/><books><book><title v="b"/></book></books>)"
                         R"(<lamp><candle><wicks v="6"/></candle></lamp>)"
                         R"(<cover><color v="c"/></cover><shelves/></shelf>)"));
}

TEST(XmlDataWriter, WritesAQuestionMarkForAControlCharacterThatXmlCannotHold)
{
    EXPECT_EQ(written(aShelf().named("a\x01z\x1f").build()->name()),
              documentOf(R"(<name v="a?z?"/>)"));
}

TEST(XmlDataWriter, HasNoLineEndBetweenElements)
{
    const std::string bytes =
        written(*aShelf().withBook("a\nb").withShelf(nestedShelves(3)).build());
    EXPECT_EQ(bytes.find('\n'), bytes.size() - 1);
}

TEST(XmlDataWriter, UsesNoStackForDepth)
{
    const std::size_t length = 100000;
    const std::size_t tags = (length - 1) * std::string("<link></link>").size();
    EXPECT_EQ(written(Chain(length).first()).size(), documentOf("<link/>").size() + tags);
}

// --- text

struct TextCase
{
    const char* name;
    std::string text;
    std::string latin1; // as it is written when the text is Latin-1
    std::string path;   // as it is written when the text is a file name
};
class XmlDataWriterText : public testing::TestWithParam<TextCase>
{};
TEST_P(XmlDataWriterText, IsTakenForLatin1)
{
    EXPECT_EQ(written(aShelf().named(GetParam().text).build()->name()),
              documentOf("<name v=\"" + GetParam().latin1 + "\"/>"));
}
TEST_P(XmlDataWriterText, OfAFilePathIsTakenForUtf8)
{
    EXPECT_EQ(written(aShelf().atPath(GetParam().text).build()->path()),
              documentOf("<path v=\"" + GetParam().path + "\"/>"));
}
INSTANTIATE_TEST_SUITE_P(
    Characters, XmlDataWriterText,
    testing::Values(TextCase{"Empty", "", "", ""},
                    TextCase{"Blanks", "  oak  ", "  oak  ", "  oak  "},
                    TextCase{"Markup", "<a b=\"c\">&'", "&lt;a b=&quot;c&quot;&gt;&amp;'",
                             "&lt;a b=&quot;c&quot;&gt;&amp;'"},
                    TextCase{"LineEnds", "\t\n\r", "&#9;&#10;&#13;", "&#9;&#10;&#13;"},
                    TextCase{"HighBytes", "\xC3\xA9", "\xC3\x83\xC2\xA9", "\xC3\xA9"},
                    TextCase{"Astral", "\xF0\x9F\x98\x80", "\xC3\xB0\xC2\x9F\xC2\x98\xC2\x80",
                             "\xF0\x9F\x98\x80"}),
    caseName<TextCase>);

class XmlDataWriterOfAFilePath : public testing::TestWithParam<TextCase>
{};
TEST_P(XmlDataWriterOfAFilePath, FailsForWhatXmlCannotHold)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_FALSE(XmlDataWriter(&buffer).write(*aShelf().atPath(GetParam().text).build()));
}
INSTANTIATE_TEST_SUITE_P(Characters, XmlDataWriterOfAFilePath,
                         testing::Values(TextCase{"NoUtf8", "a\xE9", "", ""},
                                         TextCase{"ControlCharacter", "a\x01", "", ""},
                                         TextCase{"Bell", "\x07z", "", ""},
                                         TextCase{"FirstNoncharacter", "a\xEF\xBF\xBE", "", ""},
                                         TextCase{"SecondNoncharacter", "a\xEF\xBF\xBF", "", ""},
                                         TextCase{"LoneSurrogate", "\xED\xA0\x80", "", ""}),
                         caseName<TextCase>);

struct HalfCase
{
    const char* name;
    QString text; // with one of the two halves of a character beyond 16 bits
};
class XmlDataWriterOfHalfACharacter : public testing::TestWithParam<HalfCase>
{};
TEST_P(XmlDataWriterOfHalfACharacter, FailsInAFilePath)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    XmlDataWriter writer(&buffer);
    writer.addValueConverter(ValueFlag::FilePath, [](const QString&) { return GetParam().text; });
    EXPECT_FALSE(writer.write(*aShelf().atPath("p").build()));
}
INSTANTIATE_TEST_SUITE_P(Halves, XmlDataWriterOfHalfACharacter,
                         testing::Values(HalfCase{"FirstAtTheEnd", QString(QChar(0xD83D))},
                                         HalfCase{"FirstBeforeAnother",
                                                  QString(QChar(0xD83D)) + 'z'},
                                         HalfCase{"Second", QString(QChar(0xDE00))}),
                         caseName<HalfCase>);

// The first random document whose bytes differ from those of QXmlStreamWriter.
std::optional<std::string> firstOtherDocument(std::mt19937 random)
{
    for (int i = 0; i < 500; ++i) {
        const auto shelf = randomShelf(random, 4);
        const std::string bytes = written(*shelf);
        if (bytes != writtenByStreamWriter(*shelf))
            return bytes;
    }
    return {};
}

TEST(XmlDataWriter, GivesTheBytesOfTheStreamWriterForRandomDocuments)
{
    EXPECT_EQ(firstOtherDocument(seededRandom(20070451)), std::nullopt);
}

std::string allLatin1()
{
    std::string text = "\t\n\r";
    for (int c = 0x20; c <= 0xFF; ++c)
        text.push_back(static_cast<char>(c));
    return text;
}

TEST(XmlDataWriter, GivesTheBytesOfTheStreamWriterForAllLatin1Characters)
{
    const auto shelf = aShelf().named(allLatin1()).build();
    EXPECT_EQ(written(*shelf), writtenByStreamWriter(*shelf));
}

TEST(XmlDataWriter, GivesTheBytesOfTheStreamWriterForAMegabyte)
{
    const auto shelf = aShelf().named(std::string(1000000, '\xE9')).withBooks(20000).build();
    EXPECT_EQ(written(*shelf), writtenByStreamWriter(*shelf));
}

// --- value converters

class XmlDataWriterConverter : public testing::Test
{
protected:
    // What is written for a shelf with a name and a path.
    std::string writtenShelf()
    {
        m_buffer.open(QIODevice::WriteOnly);
        m_writer.write(*aShelf().named("n\xE9").atPath("p\xC3\xA9").build());
        return m_buffer.data().toStdString();
    }
    static std::string expected(const std::string& name, const std::string& path)
    {
        return documentOf("<shelf><name v=\"" + name + "\"/><path v=\"" + path +
                          "\"/><shelves/></shelf>");
    }
    static XmlDataWriter::ValueFunction appending(const char* text)
    {
        return [text](const QString& value) { return value + QString::fromUtf8(text); };
    }
    QBuffer m_buffer;
    XmlDataWriter m_writer{&m_buffer};
};

TEST_F(XmlDataWriterConverter, OfFilePathsChangesFilePathsOnly)
{
    m_writer.addValueConverter(ValueFlag::FilePath, appending("+"));
    EXPECT_EQ(writtenShelf(), expected("n\xC3\xA9", "p\xC3\xA9+"));
}

TEST_F(XmlDataWriterConverter, WithoutAMaskChangesAllValues)
{
    m_writer.addValueConverter(0, appending("+"));
    EXPECT_EQ(writtenShelf(), expected("n\xC3\xA9+", "p\xC3\xA9+"));
}

TEST_F(XmlDataWriterConverter, WithABitThatNoValueHasChangesNone)
{
    m_writer.addValueConverter(2, appending("+"));
    EXPECT_EQ(writtenShelf(), expected("n\xC3\xA9", "p\xC3\xA9"));
}

TEST_F(XmlDataWriterConverter, NeedsAllBitsOfItsMask)
{
    m_writer.addValueConverter(ValueFlag::FilePath | 2, appending("+"));
    EXPECT_EQ(writtenShelf(), expected("n\xC3\xA9", "p\xC3\xA9"));
}

TEST_F(XmlDataWriterConverter, FollowsTheOnesRegisteredBefore)
{
    m_writer.addValueConverter(ValueFlag::FilePath, appending("1"));
    m_writer.addValueConverter(ValueFlag::None, appending("2"));
    m_writer.addValueConverter(ValueFlag::FilePath, appending("3"));
    EXPECT_EQ(writtenShelf(), expected("n\xC3\xA9"
                                       "2",
                                       "p\xC3\xA9"
                                       "123"));
}

TEST_F(XmlDataWriterConverter, MayGiveAnyText)
{
    m_writer.addValueConverter(ValueFlag::FilePath, appending("\xE2\x82\xAC<\n"));
    EXPECT_EQ(writtenShelf(), expected("n\xC3\xA9", "p\xC3\xA9\xE2\x82\xAC&lt;&#10;"));
}

// --- devices that fail

// Takes so many bytes, then answers as it was told to.
class FullDevice final : public QIODevice
{
public:
    FullDevice(qint64 capacity, qint64 answer) : m_capacity(capacity), m_answer(answer)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }
    int refusals() const { return m_refusals; }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override
    {
        m_capacity -= size;
        if (m_capacity >= 0)
            return size;
        ++m_refusals;
        return m_answer;
    }

private:
    qint64 m_capacity;
    qint64 m_answer;
    int m_refusals = 0;
};

struct DeviceCase
{
    const char* name;
    qint64 capacity;
    qint64 answer;
};
class XmlDataWriterOnAFullDevice : public testing::TestWithParam<DeviceCase>
{
protected:
    std::unique_ptr<Shelf> m_shelf = aShelf().withBooks(20000).build(); // several blocks
    FullDevice m_device{GetParam().capacity, GetParam().answer};
};
TEST_P(XmlDataWriterOnAFullDevice, AnswersFalse)
{
    EXPECT_FALSE(XmlDataWriter(&m_device).write(*m_shelf));
}
TEST_P(XmlDataWriterOnAFullDevice, WritesNoMoreAfterTheFirstRefusal)
{
    XmlDataWriter(&m_device).write(*m_shelf);
    EXPECT_EQ(m_device.refusals(), 1);
}
INSTANTIATE_TEST_SUITE_P(Devices, XmlDataWriterOnAFullDevice,
                         testing::Values(DeviceCase{"FullAtOnce", 0, -1},
                                         DeviceCase{"FullAfterABlock", 100000, -1},
                                         DeviceCase{"TakesAPart", 100000, 10},
                                         DeviceCase{"TakesNothing", 100000, 0}),
                         caseName<DeviceCase>);

TEST(XmlDataWriterFailure, OnASmallDocumentAnswersFalse)
{
    FullDevice device(0, -1);
    EXPECT_FALSE(XmlDataWriter(&device).write(Shelf()));
}

TEST(XmlDataWriterFailure, OnADeviceThatIsNotOpenAnswersFalse)
{
    QBuffer buffer;
    EXPECT_FALSE(XmlDataWriter(&buffer).write(Shelf()));
}

// A file keeps a small document in its own buffer, so the disk is asked only when that is flushed.
TEST(XmlDataWriterFailure, OnAFullDiskAnswersFalseForASmallDocument)
{
    QFile file("/dev/full");
    file.open(QIODevice::WriteOnly);
    EXPECT_FALSE(XmlDataWriter(&file).write(Shelf()));
}

TEST(XmlDataWriterFailure, OnAFullDiskAnswersFalseForALargeDocument)
{
    QFile file("/dev/full");
    file.open(QIODevice::WriteOnly);
    EXPECT_FALSE(XmlDataWriter(&file).write(*aShelf().withBooks(20000).build()));
}

TEST(XmlDataWriter, AnswersTrueWhenTheFileIsWritten)
{
    const TestSupport::TemporaryDirectory directory;
    QFile file(QString::fromStdString(directory.path("a")));
    file.open(QIODevice::WriteOnly);

    EXPECT_TRUE(XmlDataWriter(&file).write(Shelf()));

    EXPECT_EQ(directory.read("a"), written(Shelf()));
}

TEST(XmlDataWriter, AnswersTrueWhenTheDeviceTakesEverything)
{
    FullDevice device(1000000000, -1);
    EXPECT_TRUE(XmlDataWriter(&device).write(*aShelf().withBooks(20000).build()));
}

} // namespace
