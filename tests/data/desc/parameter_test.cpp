#include "data/desc/parameter.h"

#include "data/desc/valuetype.h"
#include "data/vec.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>

using namespace Ksx::Data::Desc;
using Orv::Data::Vec;
using TestSupport::caseName;

namespace {

struct ShapeCase
{
    const char* name;
    unsigned type;
    const std::type_info& shape;
};

Parameter withDefault(const boost::any& value)
{
    Parameter parameter;
    parameter.defaultValue = value;
    return parameter;
}

} // namespace

class ValueShape : public testing::TestWithParam<ShapeCase>
{};

TEST_P(ValueShape, IsThatOfTheType)
{
    EXPECT_EQ(emptyValueOf(GetParam().type).type(), GetParam().shape);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(All, ValueShape, testing::Values(
    ShapeCase{"Bool",                  4,     typeid(bool)},
    ShapeCase{"Int1",                  16,    typeid(unsigned)},
    ShapeCase{"Int2",                  32,    typeid(Vec<int, 2>)},
    ShapeCase{"Int3",                  64,    typeid(Vec<int, 3>)},
    ShapeCase{"Int4",                  128,   typeid(Vec<int, 4>)},
    ShapeCase{"Float1",                256,   typeid(Vec<float, 1>)},
    ShapeCase{"Float1OrGrayscale",     258,   typeid(Vec<float, 1>)},
    ShapeCase{"Float2",                512,   typeid(Vec<float, 2>)},
    ShapeCase{"Float3",                1024,  typeid(Vec<float, 3>)},
    ShapeCase{"Float4",                2048,  typeid(Vec<float, 4>)},
    ShapeCase{"Float4OrColorImage",    2049,  typeid(Vec<float, 4>)},
    ShapeCase{"Float1OrFloat4",        2304,  typeid(Vec<float, 4>)},
    ShapeCase{"Float1OrFloat4OrImage", 2307,  typeid(Vec<float, 4>)},
    ShapeCase{"Text",                  16384, typeid(std::string)},
    ShapeCase{"String",                32768, typeid(std::string)},
    ShapeCase{"NoneForColorImage",     1,     typeid(void)},
    ShapeCase{"NoneForGrayscaleImage", 2,     typeid(void)},
    ShapeCase{"NoneForImage",          3,     typeid(void)},
    ShapeCase{"NoneForFxMap",          4096,  typeid(void)},
    ShapeCase{"NoneForPattern",        65536, typeid(void)}),
    caseName<ShapeCase>);
// clang-format on

TEST(Parameter, HasZeroAsTheEmptyValue)
{
    EXPECT_FALSE(boost::any_cast<bool>(emptyValueOf(ValueType::Bool)));
    EXPECT_EQ(boost::any_cast<unsigned>(emptyValueOf(ValueType::Int1)), 0u);
    EXPECT_EQ((boost::any_cast<Vec<float, 4>>(emptyValueOf(ValueType::Color))), (Vec<float, 4>()));
}

TEST(Parameter, GivesItsDefaultInTheShapeThatItHas)
{
    EXPECT_EQ(withDefault(7u).defaultAs<unsigned>(), 7u);
}

TEST(Parameter, GivesZeroForADefaultOfAnotherShape)
{
    EXPECT_EQ((withDefault(7u).defaultAs<Vec<int, 2>>()), (Vec<int, 2>()));
    EXPECT_EQ(withDefault({}).defaultAs<std::string>(), "");
}

TEST(Parameter, HasAnEmptyTextForAnExtraThatIsMissing)
{
    EXPECT_EQ(Parameter().extra("min"), "");
}
