#include "data/desc/valuetype.h"

#include <gtest/gtest.h>

namespace ValueType = Ksx::Data::Desc::ValueType;

namespace {

TEST(PlainType, OfAliasesIsThatOfTheirShape)
{
    EXPECT_EQ(ValueType::plain(258), 256u);
    EXPECT_EQ(ValueType::plain(2049), 2048u);
    EXPECT_EQ(ValueType::plain(2304), 2048u);
    EXPECT_EQ(ValueType::plain(2307), 2048u);
    EXPECT_EQ(ValueType::plain(16), 16u);
    EXPECT_EQ(ValueType::plain(1), 1u);
}

TEST(ValueTypes, HaveTheNumbersOfTheFormat)
{
    EXPECT_EQ(ValueType::Bool, 4u);
    EXPECT_EQ(ValueType::Int1, 16u);
    EXPECT_EQ(ValueType::Int2, 32u);
    EXPECT_EQ(ValueType::Int3, 64u);
    EXPECT_EQ(ValueType::Int4, 128u);
    EXPECT_EQ(ValueType::Float1, 256u);
    EXPECT_EQ(ValueType::Float2, 512u);
    EXPECT_EQ(ValueType::Float3, 1024u);
    EXPECT_EQ(ValueType::Float4, 2048u);
    EXPECT_EQ(ValueType::Text, 16384u);
    EXPECT_EQ(ValueType::String, 32768u);
}

} // namespace
