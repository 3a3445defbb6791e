#include "data/vec.h"

#include <boost/any.hpp>
#include <gtest/gtest.h>
#include <sstream>

namespace {

using Orv::Data::Vec;
using Float2 = Vec<float, 2>;
using Int2 = Vec<int, 2>;
using Int3 = Vec<int, 3>;

template <class Value>
std::string inserted(const Value& value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

std::istringstream keepingBlanks(const char* text)
{
    std::istringstream stream(text);
    stream.unsetf(std::ios::skipws);
    return stream;
}

TEST(Vec, IsAllZeroAtFirst)
{
    EXPECT_EQ(Int3(), (Int3{{0, 0, 0}}));
}

TEST(Vec, IsAsLargeAsItsElements)
{
    EXPECT_EQ(sizeof(Vec<float, 4>), 4 * sizeof(float));
}

TEST(Vec, KnowsTheNumberOfItsElements)
{
    EXPECT_EQ(Int3::size(), 3u);
}

TEST(Vec, IsEqualWhenAllElementsAre)
{
    EXPECT_TRUE((Int2{{1, 2}}) == (Int2{{1, 2}}));
}

TEST(Vec, DiffersWhenOneElementDoes)
{
    EXPECT_TRUE((Int2{{1, 2}}) != (Int2{{1, 3}}));
}

TEST(Vec, IsHeldByAnAny)
{
    EXPECT_EQ(boost::any_cast<Int2>(boost::any(Int2{{1, 2}})), (Int2{{1, 2}}));
}

TEST(VecInsertion, SeparatesElementsByOneBlank)
{
    EXPECT_EQ(inserted(Int3{{1, -2, 3}}), "1 -2 3");
}

TEST(VecInsertion, OfOneElementHasNoBlank)
{
    EXPECT_EQ(inserted(Vec<int, 1>{{7}}), "7");
}

TEST(VecInsertion, HasTheSixDigitsOfTheStream)
{
    EXPECT_EQ(inserted(Float2{{0.1f, 1234567.0f}}), "0.1 1.23457e+06");
}

TEST(VecExtraction, DropsOneCharacterBetweenElements)
{
    Int3 value;
    keepingBlanks("1,2 3") >> value;
    EXPECT_EQ(value, (Int3{{1, 2, 3}}));
}

TEST(VecExtraction, DropsOneCharacterBehindTheLastElement)
{
    Int2 value;
    auto stream = keepingBlanks("1 2,3");
    stream >> value;
    EXPECT_EQ(stream.get(), '3');
}

TEST(VecExtraction, OfTooFewElementsFails)
{
    Int3 value;
    EXPECT_FALSE(keepingBlanks("1 2") >> value);
}

TEST(VecExtraction, OfTwoBlanksInARowFails)
{
    Int2 value;
    EXPECT_FALSE(keepingBlanks("1  2") >> value);
}

TEST(VecExtraction, LeavesTheTargetWhenItFails)
{
    Int2 value{{5, 6}};
    keepingBlanks("1 x") >> value;
    EXPECT_EQ(value, (Int2{{5, 6}}));
}

} // namespace
