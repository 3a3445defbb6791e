// What is written by XmlDataWriter and read by XmlDataReader again.
#include "data/xmldatareader.h"
#include "data/xmldatawriter.h"
#include "support/shelfbuilder.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <optional>
#include <vector>

namespace {

using namespace TestDocument;
using TestSupport::seededRandom;

const Shelf& innerShelf(const Shelf& shelf)
{
    return static_cast<const Shelf&>(shelf.shelves().front());
}

// Reads what the writer gave for random shelves and writes it again. Answers the first document
// that came out otherwise.
std::optional<std::string> firstChangedDocument(std::mt19937 random)
{
    for (int i = 0; i < 300; ++i) {
        const std::string bytes = written(*randomShelf(random, 4));
        const ReadOutcome read = readShelf(bytes);
        if (read.status != 0 || written(*read.shelf) != bytes)
            return bytes;
    }
    return {};
}

TEST(XmlRoundTrip, OfRandomDocumentsGivesTheSameBytes)
{
    EXPECT_EQ(firstChangedDocument(seededRandom(20070431)), std::nullopt);
}

class XmlRoundTripOfAFullShelf : public testing::Test
{
protected:
    std::unique_ptr<Shelf> m_shelf = aShelf()
                                         .named("caf\xE9 <&>")
                                         .withUid(4294967295u)
                                         .atLevel(0)
                                         .atPath("\xE2\x82\xAC/oak.png")
                                         .atSpot({{0.1f, 1234567.0f, -2.0f}})
                                         .weighing(0.1f)
                                         .ofSize({{-1, 2147483647}})
                                         .opened()
                                         .withBook("atlas", 12)
                                         .withBulb(60.5f)
                                         .coloured("red")
                                         .withShelf(nestedShelves(2))
                                         .build();
    std::unique_ptr<Shelf> m_again = readShelf(written(*m_shelf)).shelf;
};

TEST_F(XmlRoundTripOfAFullShelf, KeepsTexts)
{
    EXPECT_EQ(m_again->name().get(), m_shelf->name().get());
}

TEST_F(XmlRoundTripOfAFullShelf, KeepsFilePaths)
{
    EXPECT_EQ(m_again->path().get(), m_shelf->path().get());
}

TEST_F(XmlRoundTripOfAFullShelf, KeepsNumbers)
{
    EXPECT_EQ(m_again->uid().get(), m_shelf->uid().get());
}

TEST_F(XmlRoundTripOfAFullShelf, KeepsAValueThatIsZeroBesideADefault)
{
    EXPECT_EQ(m_again->level().get(), 0u);
}

TEST_F(XmlRoundTripOfAFullShelf, KeepsScalarFloats)
{
    EXPECT_EQ(m_again->weight().get(), 0.1f);
}

TEST_F(XmlRoundTripOfAFullShelf, RoundsElementsOfAVecToSixDigits)
{
    EXPECT_EQ(m_again->spot().get(), (Float3{{0.1f, 1234570.0f, -2.0f}}));
}

TEST_F(XmlRoundTripOfAFullShelf, KeepsIntegerVecs)
{
    EXPECT_EQ(m_again->size().get(), m_shelf->size().get());
}

TEST_F(XmlRoundTripOfAFullShelf, KeepsTheChildOfAUnion)
{
    EXPECT_EQ(dynamic_cast<const Bulb&>(*m_again->lamp().get()).watts().get(), 60.5f);
}

TEST_F(XmlRoundTripOfAFullShelf, KeepsNestedItems)
{
    EXPECT_EQ(innerShelf(innerShelf(*m_again)).name().get(), "1");
}

std::vector<bool> modifiedMembers(const Shelf& shelf)
{
    std::vector<bool> answers;
    for (const auto place = shelf.createConstIterator(); !place->atEnd(); place->next())
        answers.push_back(place->get()->isModified());
    return answers;
}

TEST_F(XmlRoundTripOfAFullShelf, KeepsWhatIsModified)
{
    EXPECT_EQ(modifiedMembers(*m_again), modifiedMembers(*m_shelf));
}

TEST(XmlRoundTrip, KeepsThatNothingIsModified)
{
    EXPECT_EQ(modifiedMembers(*readShelf(written(Shelf())).shelf), modifiedMembers(Shelf()));
}

} // namespace
