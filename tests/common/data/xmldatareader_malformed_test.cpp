// What XmlDataReader makes of documents that are damaged, hostile or very large.
#include "data/xmldatareader.h"

#include "support/shelfbuilder.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <optional>
#include <sys/resource.h>

namespace {

using namespace TestDocument;
using Orv::Data::XmlDataReader;
using Orv::Data::XmlReadStatus;
using TestSupport::caseName;
using TestSupport::pick;
using TestSupport::seededRandom;

constexpr int Success = static_cast<int>(XmlReadStatus::Success);
constexpr int NestingTooDeep = static_cast<int>(XmlReadStatus::NestingTooDeep);
constexpr auto MaximumDepth = static_cast<std::size_t>(XmlDataReader::MaximumDepth);
constexpr std::size_t Megabyte = 1000000;

// True if the document is read, false if it is refused by a status or an exception.
bool isRead(const std::string& bytes)
{
    try {
        return readShelf(bytes).status == Success;
    } catch (const std::exception&) {
        return false;
    }
}

std::string repeated(const std::string& text, std::size_t count)
{
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

// --- damage

// The first length at which the beginning of a document is taken for a document.
std::optional<std::size_t> firstReadBeginning(const std::string& bytes)
{
    for (std::size_t length = 0; length < bytes.size(); ++length)
        if (isRead(bytes.substr(0, length)))
            return length;
    return {};
}

TEST(XmlDataReaderTruncation, AtAnyByteIsRefused)
{
    const auto shelf = aShelf()
                           .named("caf\xE9 <&>\t")
                           .withUid(5)
                           .atPath("\xE2\x82\xAC.png")
                           .atSpot({{1.5f, 2.0f, 3.0f}})
                           .weighing(2.5f)
                           .withBook("atlas", 12)
                           .withBook("herbal")
                           .withCandle(3)
                           .coloured("red")
                           .withShelf(nestedShelves(2))
                           .build();
    std::string bytes = written(*shelf);
    bytes.pop_back(); // the line end, behind the end of the document
    EXPECT_EQ(firstReadBeginning(bytes), std::nullopt);
}

TEST(XmlDataReaderTruncation, OfTheLineEndIsNone)
{
    std::string bytes = written(*aShelf().named("n").build());
    bytes.pop_back();
    EXPECT_TRUE(isRead(bytes));
}

struct DamageCase
{
    const char* name;
    std::string bytes;
};
class XmlDataReaderDamage : public testing::TestWithParam<DamageCase>
{};
TEST_P(XmlDataReaderDamage, IsRefused)
{
    EXPECT_FALSE(isRead(GetParam().bytes));
}
INSTANTIATE_TEST_SUITE_P(
    Documents, XmlDataReaderDamage,
    testing::Values(
        DamageCase{"Empty", ""}, DamageCase{"BlanksOnly", " \n "},
        DamageCase{"DeclarationOnly", R"(<?xml version="1.0"?>)"}, DamageCase{"PlainText", "shelf"},
        DamageCase{"BinaryBytes", std::string("\x89PNG\r\n\x1A\n\0\0\0", 11)},
        DamageCase{"ZeroBytesOnly", std::string(100, '\0')},
        DamageCase{"ZeroByteInAValue",
                   std::string("<shelf><name v=\"a\0b\"/><shelves/></shelf>", 40)},
        DamageCase{"ZeroByteInAName",
                   std::string("<shelf><name v=\"a\"/><she\0lves/></shelf>", 39)},
        DamageCase{"ZeroByteBetweenElements",
                   std::string("<shelf>\0<name v=\"a\"/><shelves/></shelf>", 39)},
        DamageCase{"ZeroReference", R"(<shelf><name v="&#0;"/><shelves/></shelf>)"},
        DamageCase{"ControlReference", R"(<shelf><name v="&#1;"/><shelves/></shelf>)"},
        DamageCase{"ControlCharacter", "<shelf><name v=\"\x01\"/><shelves/></shelf>"},
        DamageCase{"InvalidUtf8", "<shelf><name v=\"\xE9\"/><shelves/></shelf>"},
        DamageCase{"UnknownEntity", R"(<shelf><name v="&oak;"/><shelves/></shelf>)"},
        DamageCase{"RawLessThan", R"(<shelf><name v="<"/><shelves/></shelf>)"},
        DamageCase{"VTwice", R"(<shelf><name v="a" v="b"/><shelves/></shelf>)"},
        DamageCase{"EndTagOfAnother", R"(<shelf><name v="n"/><shelves/></self>)"},
        DamageCase{"CrossedTags",
                   R"(<shelf><name v="n"/><cover><ratio v="1 2"></cover></ratio></shelf>)"},
        DamageCase{"TwoRoots", shelfXml(RequiredMembers) + shelfXml(RequiredMembers)},
        DamageCase{"TextBehindTheRoot", shelfXml(RequiredMembers) + "text"},
        DamageCase{"UndeclaredPrefix", shelfXml(std::string(RequiredMembers) + "<x:books/>")},
        DamageCase{"DamageInAnUnknownMember",
                   shelfXml(std::string(RequiredMembers) + "<x><y></x>")},
        DamageCase{"UnknownEncoding",
                   R"(<?xml version="1.0" encoding="no-such"?>)" + shelfXml(RequiredMembers)}),
    caseName<DamageCase>);

// Overwrites, inserts or removes a few bytes.
std::string damaged(std::string bytes, std::mt19937& random)
{
    static const std::string Bytes("<>/\"=&;! \0\x01\xE9\xC3va1", 16);
    for (int rest = pick(random, 1, 4); rest > 0; --rest) {
        const auto place = pick<std::size_t>(random, 0, bytes.size() - 1);
        const char byte = Bytes[pick<std::size_t>(random, 0, Bytes.size() - 1)];
        switch (pick(random, 0, 2)) {
        case 0:
            bytes[place] = byte;
            break;
        case 1:
            bytes.insert(place, 1, byte);
            break;
        default:
            bytes.erase(place, 1);
        }
    }
    return bytes;
}

// Reads random documents with random damage. Answers the first that is read but then is not
// written as something that is read again.
std::optional<std::string> firstReadButNotWritable(std::mt19937 random)
{
    for (int i = 0; i < 5000; ++i) {
        const std::string bytes = damaged(written(*randomShelf(random, 2)), random);
        try {
            const ReadOutcome read = readShelf(bytes);
            if (read.status == Success && !isRead(written(*read.shelf)))
                return bytes;
        } catch (const std::exception&) {
            continue; // a value was refused
        }
    }
    return {};
}

TEST(XmlDataReaderDamage, AtRandomGivesARefusalOrADocument)
{
    EXPECT_EQ(firstReadButNotWritable(seededRandom(20070441)), std::nullopt);
}

// --- memory

// The most memory that the process has held so far, in bytes.
std::size_t peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

// Entities that each name the one before ten times; the last would be 300 MB.
std::string entityBomb(const std::string& use)
{
    std::string bytes = R"(<!DOCTYPE shelf [<!ENTITY e0 "lol">)";
    for (int i = 1; i <= 8; ++i)
        bytes += "<!ENTITY e" + std::to_string(i) + " \"" +
                 repeated("&e" + std::to_string(i - 1) + ";", 10) + "\">";
    return bytes + "]>" + use;
}

class XmlDataReaderEntityBomb : public testing::TestWithParam<DamageCase>
{};
TEST_P(XmlDataReaderEntityBomb, IsRefused)
{
    EXPECT_FALSE(isRead(entityBomb(GetParam().bytes)));
}
TEST_P(XmlDataReaderEntityBomb, TakesLittleMemory)
{
    const std::size_t before = peakMemory();
    isRead(entityBomb(GetParam().bytes));
    EXPECT_LT(peakMemory() - before, 50 * Megabyte);
}
INSTANTIATE_TEST_SUITE_P(
    Places, XmlDataReaderEntityBomb,
    testing::Values(DamageCase{"InAValue", R"(<shelf><name v="&e8;"/><shelves/></shelf>)"},
                    DamageCase{"InAText", R"(<shelf>&e8;<name v="n"/><shelves/></shelf>)"},
                    DamageCase{"InAnUnknownMember",
                               R"(<shelf><name v="n"/><x>&e8;</x><shelves/></shelf>)"}),
    caseName<DamageCase>);

TEST(XmlDataReaderEntity, ThatNamesItselfIsRefused)
{
    EXPECT_FALSE(isRead(R"(<!DOCTYPE shelf [<!ENTITY a "&b;"><!ENTITY b "&a;">]>)"
                        R"(<shelf><name v="&a;"/><shelves/></shelf>)"));
}

TEST(XmlDataReaderEntity, OfAnotherFileIsNotRead)
{
    EXPECT_FALSE(isRead(R"(<!DOCTYPE shelf [<!ENTITY a SYSTEM "file:///etc/hostname">]>)"
                        R"(<shelf><name v="&a;"/><shelves/></shelf>)"));
}

// --- size

TEST(XmlDataReaderSize, ReadsAValueOfAMegabyte)
{
    const std::string value(Megabyte, 'x');
    EXPECT_EQ(readShelf(shelfXml("<name v=\"" + value + "\"/><shelves/>")).shelf->name().get(),
              value);
}

TEST(XmlDataReaderSize, KeepsAMegabyteOfReferencesInARoundTrip)
{
    const std::string bytes = written(*aShelf().named(std::string(Megabyte, '\n')).build());
    EXPECT_EQ(written(*readShelf(bytes).shelf), bytes);
}

TEST(XmlDataReaderSize, RefusesANumberOfAMegabyte)
{
    EXPECT_FALSE(
        isRead(shelfXml(RequiredMembers + ("<uid v=\"" + std::string(Megabyte, '9')) + "\"/>")));
}

TEST(XmlDataReaderSize, ReadsAFloatOfAMegabyte)
{
    const auto read = readShelf(
        shelfXml(RequiredMembers + ("<weight v=\"1." + std::string(Megabyte, '0')) + "\"/>"));
    EXPECT_EQ(read.shelf->weight().get(), 1.0f);
}

TEST(XmlDataReaderSize, RefusesAnElementNameOfAMegabyte)
{
    EXPECT_FALSE(isRead(shelfXml(RequiredMembers + ("<" + std::string(Megabyte, 'x')) + "/>")));
}

TEST(XmlDataReaderSize, RefusesAnAttributeNameOfAMegabyte)
{
    EXPECT_FALSE(
        isRead(shelfXml("<name " + std::string(Megabyte, 'x') + "=\"\" v=\"n\"/><shelves/>")));
}

TEST(XmlDataReaderSize, SkipsAnUnknownMemberOfManyElements)
{
    EXPECT_TRUE(isRead(shelfXml(RequiredMembers + ("<x>" + repeated("<y/>", 100000)) + "</x>")));
}

// --- depth

std::string nestedXml(std::size_t count)
{
    return repeated(R"(<shelf><name v="n"/><shelves>)", count) +
           repeated("</shelves></shelf>", count);
}

// Unknown elements in each other, in a shelf that is complete without them.
std::string unknownXml(std::size_t count)
{
    return shelfXml(RequiredMembers + repeated("<x>", count) + repeated("</x>", count));
}

TEST(XmlDataReaderDepth, OfTwoThousandShelvesIsReadAndWritten)
{
    const std::string bytes = written(*nestedShelves(2000));
    EXPECT_EQ(written(*readShelf(bytes).shelf), bytes);
}

TEST(XmlDataReaderDepth, OfTheMaximumIsReadWhenElementsAreKnown)
{
    EXPECT_EQ(readShelf(nestedXml(MaximumDepth / 2)).status, Success);
}

TEST(XmlDataReaderDepth, BeyondTheMaximumIsRefusedWhenElementsAreKnown)
{
    EXPECT_EQ(readShelf(nestedXml(MaximumDepth / 2 + 1)).status, NestingTooDeep);
}

TEST(XmlDataReaderDepth, OfTheMaximumIsReadWhenElementsAreUnknown)
{
    EXPECT_EQ(readShelf(unknownXml(MaximumDepth - 1)).status, Success);
}

TEST(XmlDataReaderDepth, BeyondTheMaximumIsRefusedWhenElementsAreUnknown)
{
    EXPECT_EQ(readShelf(unknownXml(MaximumDepth)).status, NestingTooDeep);
}

// The innermost list, which stands at the maximum, has something in it.
std::string deepestListWith(const std::string& item)
{
    std::string bytes = nestedXml(MaximumDepth / 2);
    return bytes.insert(bytes.find("</shelves>"), item);
}

TEST(XmlDataReaderDepth, BeyondTheMaximumIsRefusedForAnUnknownElementInAKnownOne)
{
    EXPECT_EQ(readShelf(deepestListWith("<x/>")).status, NestingTooDeep);
}

TEST(XmlDataReaderDepth, BeyondTheMaximumIsRefusedForAKnownAttribute)
{
    const std::string bytes = repeated(R"(<shelf><name v="n"/><shelves>)", MaximumDepth / 2 - 1) +
                              R"(<shelf><books><book><title v="a"/>)";
    EXPECT_EQ(readShelf(bytes).status, NestingTooDeep);
}

TEST(XmlDataReaderDepth, CountsElementsOfTheFileAlsoWhereLevelsAreShifted)
{
    // Each unknown item ends its list early, so that the tree grows by two where the file does by
    // three.
    const std::string level = R"(<shelf><name v="n"/><books><x/><shelves>)";
    EXPECT_EQ(readShelf(repeated(level, MaximumDepth / 3 + 1)).status, NestingTooDeep);
}

TEST(XmlDataReaderDepth, OfAMillionUnknownElementsIsRefused)
{
    EXPECT_EQ(readShelf(shelfXml(repeated("<x>", Megabyte))).status, NestingTooDeep);
}

TEST(XmlDataReaderDepth, OfAMillionKnownElementsIsRefused)
{
    EXPECT_EQ(readShelf(nestedXml(Megabyte / 2)).status, NestingTooDeep);
}

TEST(XmlDataReaderDepth, RefusalHasAMessage)
{
    EXPECT_EQ(readShelf(repeated("<shelf><shelves>", MaximumDepth / 2) + "<shelf>").message,
              "ORV_DATA_XML_DATA_READER_ERROR_XML_NESTING_TOO_DEEP_1_40007");
}

} // namespace
