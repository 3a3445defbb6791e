#include "data/xmldatareader.h"

#include "data/exceptionbadvalue.h"
#include "data/metabinder.h"
#include "support/shelfbuilder.h"
#include "support/shelfcases.h"
#include <QBuffer>
#include <boost/lexical_cast.hpp>
#include <algorithm>

namespace {

using namespace TestDocument;
using Orv::Data::makeMeta;
using Orv::Data::MetaBinder;
using Orv::Data::ObjectMeta;
using Orv::Data::XmlDataReader;
using Orv::Data::XmlReadStatus;
using TestSupport::caseName;

constexpr int Success = static_cast<int>(XmlReadStatus::Success);
constexpr int EndElementExpected = static_cast<int>(XmlReadStatus::EndElementExpected);
constexpr int BadRoot = static_cast<int>(XmlReadStatus::BadRoot);
constexpr int MemberMissing = static_cast<int>(XmlReadStatus::MemberMissing);
constexpr int AttributeNotFound = static_cast<int>(XmlReadStatus::AttributeNotFound);

const std::string Required_ = RequiredMembers;

template <class T>
const T& lampOf(const Shelf& shelf)
{
    return dynamic_cast<const T&>(*shelf.lamp().get());
}

TEST(XmlReadStatus, HasFixedNumbers)
{
    EXPECT_EQ(
        (std::vector<int>{Success, EndElementExpected, BadRoot, MemberMissing, AttributeNotFound,
                          static_cast<int>(XmlReadStatus::NestingTooDeep)}),
        (std::vector<int>{0, 3, 5, 6, 7, 8}));
}

// --- the mapping

TEST(XmlDataReader, ReadsAnAttributeFromV)
{
    EXPECT_EQ(readShelf(shelfXml(R"(<name v="hall"/><shelves/>)")).shelf->name().get(), "hall");
}

TEST(XmlDataReader, ReadsAnAttributeBesideOthers)
{
    EXPECT_EQ(readShelf(shelfXml(R"(<name a="x" v="hall" z="y"/><shelves/>)")).shelf->name().get(),
              "hall");
}

TEST(XmlDataReader, ReadsAnAttributeWithStartAndEndTag)
{
    EXPECT_EQ(readShelf(shelfXml(R"(<name v="hall"> </name><shelves/>)")).shelf->name().get(),
              "hall");
}

TEST(XmlDataReader, ReadsAListInItsOrder)
{
    const auto read = readShelf(shelfXml(
        Required_ + R"(<books><book><title v="a"/></book><book><title v="b"/></book></books>)"));
    EXPECT_EQ(read.shelf->books().back().title().get(), "b");
}

TEST(XmlDataReader, ReadsAnEmptyList)
{
    EXPECT_EQ(readShelf(shelfXml(Required_ + "<books> </books>")).status, Success);
}

TEST(XmlDataReader, ReadsTheChildOfAUnionByItsElementName)
{
    const auto read =
        readShelf(shelfXml(Required_ + R"(<lamp><bulb><watts v="60"/></bulb></lamp>)"));
    EXPECT_EQ(lampOf<Bulb>(*read.shelf).watts().get(), 60.0f);
}

TEST(XmlDataReader, ReadsAnEmptyUnion)
{
    EXPECT_EQ(readShelf(shelfXml(Required_ + "<lamp/>")).status, Success);
}

TEST(XmlDataReader, ReadsANestedStructure)
{
    const auto read = readShelf(shelfXml(Required_ + R"(<cover><ratio v="1,2"/></cover>)"));
    EXPECT_EQ(read.shelf->cover().ratio().get(), (Float2{{1.0f, 2.0f}}));
}

TEST(XmlDataReader, SetsTheParentOfWhatItReads)
{
    const auto read =
        readShelf(shelfXml(Required_ + R"(<lamp><candle><wicks v="2"/></candle></lamp>)"));
    EXPECT_EQ(read.shelf->lamp().get()->getParent(), &read.shelf->lamp());
}

TEST(XmlDataReader, ReadsMembersInAnyOrder)
{
    const auto read =
        readShelf(shelfXml(R"(<shelves/><level v="9"/><uid v="4"/><name v="hall"/>)"));
    EXPECT_EQ(written(*read.shelf), written(*aShelf().named("hall").withUid(4).atLevel(9).build()));
}

TEST(XmlDataReader, KeepsTheDefaultOfAnAbsentMember)
{
    EXPECT_EQ(readShelf(shelfXml(Required_)).shelf->level().get(), 7u);
}

TEST(XmlDataReader, ReadsAMemberThatStandsTwiceOnce)
{
    EXPECT_EQ(readShelf(shelfXml(Required_ + R"(<uid v="1"/><uid v="2"/>)")).shelf->uid().get(),
              1u);
}

TEST(XmlDataReader, DropsASecondListWithoutAWord)
{
    const auto read = readShelf(shelfXml(Required_ + R"(<books><book><title v="a"/></book></books>)"
                                                     R"(<books><book><bad/></book></books>)"));
    EXPECT_EQ(read.shelf->books().size(), 1u);
}

TEST(XmlDataReader, LoadsAStructureWithAnUnknownMember)
{
    EXPECT_EQ(
        readShelf(shelfXml(R"(<name v="n"/><owner v="me"><x/>text<!-- c --></owner><shelves/>)"))
            .status,
        Success);
}

TEST(XmlDataReader, LosesAnUnknownMember)
{
    const auto read = readShelf(shelfXml(R"(<name v="n"/><owner v="me"/><shelves/>)"));
    EXPECT_EQ(written(*read.shelf), written(*aShelf().named("n").build()));
}

TEST(XmlDataReader, TakesElementNamesInTheirCase)
{
    EXPECT_EQ(readShelf(shelfXml(Required_ + R"(<Uid v="1"/>)")).shelf->uid().get(), 0u);
}

TEST(XmlDataReader, PassesWhiteSpaceBetweenAllElements)
{
    const auto read =
        readShelf("\n <shelf>\n\t<name v=\"n\"/>\r\n <books>\n<book>\n<title v=\"a\"/> "
                  "</book>\n</books>\n<lamp> <candle>\n<wicks v=\"3\"/></candle>\n"
                  "</lamp><shelves>\n</shelves>\n</shelf>\n\n");
    EXPECT_EQ(written(*read.shelf),
              written(*aShelf().named("n").withBook("a").withCandle(3).build()));
}

TEST(XmlDataReader, PassesWhatStandsBeforeTheRoot)
{
    EXPECT_EQ(readShelf("<?xml version=\"1.0\"?><!DOCTYPE shelf><!-- c --><?go on?>" +
                        shelfXml(Required_))
                  .status,
              Success);
}

TEST(XmlDataReader, PassesACommentBehindTheRoot)
{
    EXPECT_EQ(readShelf(shelfXml(Required_) + "<!-- c -->").status, Success);
}

TEST(XmlDataReader, ReadsAByteOrderMark)
{
    EXPECT_EQ(readShelf("\xEF\xBB\xBF" + shelfXml(Required_)).status, Success);
}

struct AtticMeta_
{
    static constexpr ObjectMeta record = makeMeta("attic", Optional);
};
using Attic = MetaBinder<Shelf, AtticMeta_>;

int readInto(BaseObject& root, QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return XmlDataReader(&buffer).read(root, nullptr);
}

TEST(XmlDataReader, ReadsAClassUnderTheNameOfItsPlace)
{
    Attic attic;
    readInto(attic,
             R"(<attic><name v="n"/><books><book><title v="a"/></book></books><shelves/></attic>)");
    EXPECT_EQ(attic.books().front().title().get(), "a");
}

TEST(XmlDataReader, ReadsADocumentThatIsOneAttribute)
{
    Shelf shelf;
    readInto(shelf.name(), R"(<name v="hall"/>)");
    EXPECT_EQ(shelf.name().get(), "hall");
}

TEST(XmlDataReader, ReadsADocumentThatIsOneList)
{
    Shelf shelf;
    readInto(shelf.books(), R"(<books><book><title v="a"/></book></books>)");
    EXPECT_EQ(shelf.books().front().title().get(), "a");
}

TEST(XmlDataReader, ReadsADocumentThatIsOneUnion)
{
    Shelf shelf;
    readInto(shelf.lamp(), R"(<lamp><candle><wicks v="3"/></candle></lamp>)");
    EXPECT_EQ(lampOf<Candle>(shelf).wicks().get(), 3u);
}

TEST(XmlDataReader, BeginsWithTheElementAtHand)
{
    XmlDataReader reader(nullptr);
    reader.addData(QByteArray::fromStdString("<!-- c -->" + shelfXml(Required_)));
    reader.readNextStartElement();
    Shelf shelf;
    EXPECT_EQ(reader.read(shelf, nullptr), Success);
}

// --- failures

struct FailureCase
{
    const char* name;
    std::string bytes;
    int status;
    std::string message;
};
class XmlDataReaderFailure : public testing::TestWithParam<FailureCase>
{};
TEST_P(XmlDataReaderFailure, AnswersTheStatus)
{
    EXPECT_EQ(readShelf(GetParam().bytes).status, GetParam().status);
}
TEST_P(XmlDataReaderFailure, HasTheMessage)
{
    EXPECT_EQ(readShelf(GetParam().bytes).message, GetParam().message);
}
INSTANTIATE_TEST_SUITE_P(
    Documents, XmlDataReaderFailure,
    testing::Values(
        FailureCase{"OtherRoot", "<cupboard/>", BadRoot,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_BAD_ROOT"},
        FailureCase{"RootInOtherCase", "<Shelf/>", BadRoot,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_BAD_ROOT"},
        FailureCase{"AttributeWithoutV", shelfXml("<name/><shelves/>"), AttributeNotFound,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_ATTRIBUTE_NOT_FOUND_v_1_14"},
        FailureCase{"AttributeWithAnotherCase", shelfXml("<name V=\"n\"/><shelves/>"),
                    AttributeNotFound,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_ATTRIBUTE_NOT_FOUND_v_1_20"},
        FailureCase{"AttributeOnTheThirdLine", "<shelf>\n\n  <name/>\n</shelf>", AttributeNotFound,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_ATTRIBUTE_NOT_FOUND_v_3_9"},
        FailureCase{"RequiredMemberMissing", shelfXml("<shelves/>"), MemberMissing,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_MEMBER_shelf_1_25"},
        FailureCase{"RequiredListMissing", shelfXml(R"(<name v="n"/>)"), MemberMissing,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_MEMBER_shelf_1_28"},
        FailureCase{"MemberOfAnItemMissing", shelfXml(Required_ + "<books><book/></books>"),
                    MemberMissing, "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_MEMBER_book_1_44"},
        FailureCase{"CommentWhileAMemberIsMissing",
                    shelfXml(R"(<name v="n"/><!-- c --><shelves/>)"), MemberMissing,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_MEMBER__1_30"},
        FailureCase{"CommentWhenNoMemberIsMissing",
                    shelfXml(Required_ + R"(<!-- c --><uid v="1"/>)"), EndElementExpected,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_1_40"},
        FailureCase{"InstructionWhenNoMemberIsMissing", shelfXml(Required_ + "<?go on?>"),
                    EndElementExpected,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_1_39"},
        FailureCase{"TextInAStructure", shelfXml(Required_ + "text"), EndElementExpected,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_1_35"},
        FailureCase{"CommentInAList", shelfXml(Required_ + "<books><!-- c --></books>"),
                    EndElementExpected,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_1_47"},
        FailureCase{"CommentInAUnion", shelfXml(Required_ + "<lamp><!-- c --></lamp>"),
                    EndElementExpected,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_1_46"},
        FailureCase{"TextInAnAttribute", shelfXml(R"(<name v="n">text</name><shelves/>)"),
                    EndElementExpected,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_1_24"},
        FailureCase{"ChildOfAnAttribute", shelfXml(R"(<name v="n"><x/></name><shelves/>)"),
                    EndElementExpected,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_1_23"},
        FailureCase{"TwoChildrenOfAUnion",
                    shelfXml(Required_ + R"(<lamp><candle><wicks v="1"/></candle><bulb/></lamp>)"),
                    EndElementExpected,
                    "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_1_74"}),
    caseName<FailureCase>);

struct BadValueCase
{
    const char* name;
    std::string members;
};
class XmlDataReaderBadValue : public testing::TestWithParam<BadValueCase>
{};
TEST_P(XmlDataReaderBadValue, ThrowsThroughTheReader)
{
    EXPECT_THROW(readShelf(shelfXml(Required_ + GetParam().members)), boost::bad_lexical_cast);
}

std::string badValueText(const std::string& document)
{
    try {
        readShelf(document);
    } catch (const Orv::Data::ExceptionBadValue& exception) {
        return exception.what();
    }
    return {};
}

TEST(XmlDataReaderBadValueText, NamesElementLineAndValue)
{
    EXPECT_EQ(badValueText(shelfXml(Required_ + "\n\n<uid v=\"12x\"/>")),
              "bad value \"12x\" of element \"uid\" in line 3");
}

TEST(XmlDataReaderBadValueText, KeepsTheBeginOfALongValue)
{
    EXPECT_LT(
        badValueText(shelfXml(Required_ + "<uid v=\"" + std::string(100000, 'x') + "\"/>")).size(),
        300u);
}

INSTANTIATE_TEST_SUITE_P(Types, XmlDataReaderBadValue,
                         testing::Values(BadValueCase{"BoolAsWord", R"(<open v="true"/>)"},
                                         BadValueCase{"UIntWithLetters", R"(<uid v="oak"/>)"},
                                         BadValueCase{"UIntEmpty", R"(<uid v=""/>)"},
                                         BadValueCase{"UIntOfOtherDigits", "<uid v=\"\xD9\xA1\"/>"},
                                         BadValueCase{"FloatWithComma", R"(<weight v="1,5"/>)"},
                                         BadValueCase{"VecTooShort", R"(<spot v="1 2"/>)"},
                                         BadValueCase{
                                             "DeepInTheDocument",
                                             R"(<lamp><bulb><watts v="x"/></bulb></lamp>)"}),
                         caseName<BadValueCase>);

TEST(XmlDataReaderFailedChild, OfAListIsNotKept)
{
    const auto read =
        readShelf(shelfXml(Required_ + R"(<books><book><title v="a"/></book><book/></books>)"));
    EXPECT_EQ(read.shelf->books().size(), 1u);
}

TEST(XmlDataReaderFailedChild, OfAUnionIsNotKept)
{
    const auto read = readShelf(shelfXml(Required_ + "<lamp><candle/></lamp>"));
    EXPECT_TRUE(read.shelf->lamp().isEmpty());
}

// --- an unknown child of a list or union shifts the levels

const std::string ListWithUnknownItem =
    R"(<books><magazine><x/></magazine><book><title v="b"/></book></books>)";

TEST(XmlDataReaderUnknownChild, EndsAListSilentlyWhenNothingIsMissing)
{
    EXPECT_EQ(readShelf(shelfXml(Required_ + ListWithUnknownItem + R"(<level v="9"/>)")).status,
              Success);
}

TEST(XmlDataReaderUnknownChild, ShortensTheDocumentFromTheListOn)
{
    const auto read = readShelf(shelfXml(Required_ + ListWithUnknownItem + R"(<level v="9"/>)"));
    EXPECT_EQ(written(*read.shelf), written(*aShelf().named("n").build()));
}

TEST(XmlDataReaderUnknownChild, KeepsTheItemsBeforeIt)
{
    const auto read = readShelf(shelfXml(
        Required_ +
        R"(<books><book><title v="a"/></book><magazine/><book><title v="b"/></book></books>)"));
    EXPECT_EQ(written(*read.shelf), written(*aShelf().named("n").withBook("a").build()));
}

TEST(XmlDataReaderUnknownChild, MissesTheRequiredMembersBehindTheList)
{
    EXPECT_EQ(readShelf(shelfXml(R"(<name v="n"/>)" + ListWithUnknownItem + "<shelves/>")).message,
              "ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_MEMBER_books_1_87");
}

TEST(XmlDataReaderUnknownChild, ReadsTheTailOneLevelTooHigh)
{
    // The books' end tag ends the inner shelf, and its level becomes an unknown item of the list
    // of shelves, which it ends; so the outer shelf ends with the inner one's tag.
    const auto read =
        readShelf(shelfXml(R"(<name v="n"/><shelves>)" +
                           shelfXml(Required_ + R"(<books><magazine/></books><level v="9"/>)") +
                           R"(</shelves><uid v="5"/>)"));
    EXPECT_EQ(written(*read.shelf),
              written(*aShelf().named("n").withShelf(aShelf().named("n").build()).build()));
}

TEST(XmlDataReaderUnknownChild, GivesARootMemberToNobodyAfterTheShift)
{
    const auto read = readShelf(shelfXml(R"(<name v="n"/><shelves>)" +
                                         shelfXml(Required_ + R"(<books><magazine/></books>)") +
                                         R"(</shelves><uid v="5"/>)"));
    EXPECT_EQ(read.shelf->uid().get(), 0u);
}

TEST(XmlDataReaderUnknownChild, EndsAUnionSilentlyWhenNothingIsMissing)
{
    EXPECT_EQ(readShelf(shelfXml(Required_ + R"(<lamp><torch/></lamp><level v="9"/>)")).status,
              Success);
}

TEST(XmlDataReaderUnknownChild, ShortensTheDocumentFromTheUnionOn)
{
    const auto read = readShelf(shelfXml(Required_ + R"(<lamp><torch/></lamp><level v="9"/>)"));
    EXPECT_EQ(written(*read.shelf), written(*aShelf().named("n").build()));
}

TEST(XmlDataReaderUnknownChild, MissesTheRequiredMembersBehindTheUnion)
{
    EXPECT_EQ(readShelf(shelfXml(R"(<name v="n"/><lamp><torch/></lamp><shelves/>)")).status,
              MemberMissing);
}

TEST(XmlDataReaderUnknownChild, EndsInStatusThreeWhereTextStandsOneLevelTooHigh)
{
    EXPECT_EQ(readShelf(shelfXml(Required_ + "<books><magazine/>text</books>")).status,
              EndElementExpected);
}

// --- text

struct EncodingCase
{
    const char* name;
    std::string utf8;
    std::string latin1;
};
class XmlDataReaderText : public testing::TestWithParam<EncodingCase>
{
protected:
    ReadOutcome m_read = readShelf(shelfXml("<name v=\"" + GetParam().utf8 +
                                            "\"/><shelves/><path v=\"" + GetParam().utf8 + "\"/>"));
};
TEST_P(XmlDataReaderText, BecomesLatin1)
{
    EXPECT_EQ(m_read.shelf->name().get(), GetParam().latin1);
}
TEST_P(XmlDataReaderText, OfAFilePathStaysUtf8)
{
    EXPECT_EQ(m_read.shelf->path().get(), GetParam().utf8);
}
INSTANTIATE_TEST_SUITE_P(
    Characters, XmlDataReaderText,
    testing::Values(EncodingCase{"Ascii", "oak ~", "oak ~"}, EncodingCase{"Empty", "", ""},
                    EncodingCase{"BlanksAround", "  oak  ", "  oak  "},
                    EncodingCase{"Latin1", "\xC3\xA9\xC3\xBF", "\xE9\xFF"},
                    EncodingCase{"UpperControls", "\xC2\x80\xC2\x9F", "\x80\x9F"},
                    EncodingCase{"FirstBeyondLatin1", "\xC4\x80", "?"},
                    EncodingCase{"EuroSign", "5 \xE2\x82\xAC", "5 ?"},
                    EncodingCase{"AstralIsOne", "a\xF0\x9F\x98\x80z", "a?z"},
                    EncodingCase{"TwoAstral", "\xF0\x9F\x98\x80\xF0\x9F\x98\x80", "??"},
                    EncodingCase{"Combining", "e\xCC\x81", "e?"}),
    caseName<EncodingCase>);

TEST(XmlDataReaderText, ReadsTheFiveEntities)
{
    const auto read = readShelf(shelfXml(R"(<name v="&lt;&gt;&amp;&quot;&apos;"/><shelves/>)"));
    EXPECT_EQ(read.shelf->name().get(), "<>&\"'");
}

TEST(XmlDataReaderText, ReadsCharacterReferences)
{
    const auto read = readShelf(shelfXml(R"(<name v="&#9;&#10;&#13;&#xE9;&#x1F600;"/><shelves/>)"));
    EXPECT_EQ(read.shelf->name().get(), "\t\n\r\xE9?");
}

TEST(XmlDataReaderText, ReadsRawLineEndsAsBlanks)
{
    const auto read = readShelf(shelfXml("<name v=\"a\tb\nc\r\nd\"/><shelves/>"));
    EXPECT_EQ(read.shelf->name().get(), "a b c d");
}

TEST(XmlDataReaderText, ReadsADocumentInLatin1)
{
    const auto read = readShelf(R"(<?xml version="1.0" encoding="ISO-8859-1"?>)" +
                                shelfXml("<name v=\"\xE9\"/><shelves/>"));
    EXPECT_EQ(read.shelf->name().get(), "\xE9");
}

// --- progress

std::vector<float> progressOf(const std::string& bytes)
{
    std::vector<float> told;
    EXPECT_EQ(readShelf(bytes, [&](float fraction) { told.push_back(fraction); }).status, Success);
    return told;
}

// A document of exactly `size` bytes, in which end elements stand close to each other.
std::string documentOfSize(std::size_t size)
{
    const std::string before = "<shelf>" + Required_ + "<books>";
    const std::string after = "</books></shelf>";
    const std::string book = R"(<book><title v=""/></book>)";
    std::string bytes = before;
    while (bytes.size() + 2 * book.size() + after.size() <= size)
        bytes += book;
    bytes += R"(<book><title v=")";
    bytes.append(size - bytes.size() - after.size() - std::string(R"("/></book>)").size(), 'x');
    return bytes + R"("/></book>)" + after;
}

TEST(XmlDataReaderProgress, OfASmallDocumentIsToldAtTheFirstEndElementAndAtTheSize)
{
    const std::string bytes = shelfXml(Required_);
    const auto atFirstEnd =
        static_cast<float>(bytes.find("<shelves")) / static_cast<float>(bytes.size());
    EXPECT_EQ(progressOf(bytes), (std::vector<float>{atFirstEnd, 1.0f}));
}

TEST(XmlDataReaderProgress, IsToldOnceWhenTheLastElementEndsBeforeTheSize)
{
    EXPECT_EQ(progressOf(shelfXml(Required_) + "\n").size(), 1u);
}

TEST(XmlDataReaderProgress, IsToldTwiceUpToOneMebibyte)
{
    EXPECT_EQ(progressOf(documentOfSize(1048576)).size(), 2u);
}

TEST(XmlDataReaderProgress, IsToldTwentyTimesAndAtTheStartAboveOneMebibyte)
{
    EXPECT_EQ(progressOf(documentOfSize(1048577)).size(), 21u);
}

TEST(XmlDataReaderProgress, IsToldAsOftenForALargerDocument)
{
    EXPECT_EQ(progressOf(documentOfSize(3000000)).size(), 21u);
}

TEST(XmlDataReaderProgress, NeverGoesBack)
{
    const std::vector<float> told = progressOf(documentOfSize(2000000));
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
}

TEST(XmlDataReaderProgress, EndsAtOne)
{
    EXPECT_EQ(progressOf(documentOfSize(2000000)).back(), 1.0f);
}

// Understates its size when it is first asked for it.
class GrowingBuffer final : public QBuffer
{
public:
    explicit GrowingBuffer(QByteArray* bytes) : QBuffer(bytes) { open(QIODevice::ReadOnly); }
    qint64 size() const override
    {
        const qint64 told = m_told;
        m_told = QBuffer::size();
        return told;
    }

private:
    mutable qint64 m_told = 10;
};

TEST(XmlDataReaderProgress, NeverExceedsOne)
{
    QByteArray bytes = QByteArray::fromStdString(shelfXml(Required_));
    GrowingBuffer buffer(&bytes);
    Shelf shelf;
    float last = 0.0f;
    XmlDataReader(&buffer).read(shelf, [&](float fraction) { last = fraction; });
    EXPECT_EQ(last, 1.0f);
}

TEST(XmlDataReaderProgress, IsNotToldWithoutADevice)
{
    XmlDataReader reader(nullptr);
    reader.addData(QByteArray::fromStdString(shelfXml(Required_)));
    Shelf shelf;
    int told = 0;
    reader.read(shelf, [&](float) { ++told; });
    EXPECT_EQ(told, 0);
}

TEST(XmlDataReaderProgress, IsNotNeeded)
{
    EXPECT_EQ(readShelf(documentOfSize(1200000), nullptr).status, Success);
}

// Whether the function of a read is still held by the reader afterwards.
class XmlDataReaderDropping : public testing::Test
{
protected:
    void readWithFunction(QByteArray bytes)
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        XmlDataReader reader(&buffer);
        Shelf shelf;
        auto held = std::make_shared<int>();
        m_held = held;
        reader.read(shelf, [held](float) {});
        held.reset();
        m_isHeldAfterwards = !m_held.expired();
    }
    std::weak_ptr<int> m_held;
    bool m_isHeldAfterwards = true;
};

TEST_F(XmlDataReaderDropping, LetsGoOfTheProgressFunctionAfterSuccess)
{
    readWithFunction(QByteArray::fromStdString(shelfXml(Required_)));
    EXPECT_FALSE(m_isHeldAfterwards);
}

TEST_F(XmlDataReaderDropping, LetsGoOfTheProgressFunctionAfterAFailure)
{
    readWithFunction("<cupboard/>");
    EXPECT_FALSE(m_isHeldAfterwards);
}

} // namespace
