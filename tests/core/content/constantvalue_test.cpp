#include "content/constantvalue.h"

#include "data/content/constantvalues.h"
#include "data/content/parameter.h"
#include "support/parameterdocument.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>

using namespace Ksx::Data::Content;
using namespace Ksx::Core;
using TestSupport::aConstant;
using TestSupport::caseName;
using TestSupport::xmlOf;

namespace {

template <class C>
std::unique_ptr<BaseObject> constant(const typename C::ValueType& value)
{
    auto made = std::make_unique<C>();
    made->value().assign(value);
    return made;
}

// The element of a constant, empty for null.
std::string textOf(const std::unique_ptr<BaseObject>& object)
{
    return object != nullptr ? xmlOf(*object) : "";
}

const Int1 five{{5}};
const Float1 half{{0.5f}};
const Float4 color{{0.1f, 0.2f, 0.3f, 1}};

struct StorageCase
{
    const char* name;
    unsigned type;
    boost::any value;
    std::string kind; // of the constant's element, empty for none
    std::string text;
};

} // namespace

class ConstantOfType : public testing::TestWithParam<StorageCase>
{};

TEST_P(ConstantOfType, IsStoredInTheClassOfItsType)
{
    const auto made = makeConstant(GetParam().type, GetParam().value);

    EXPECT_EQ(textOf(made), aConstant(GetParam().kind, GetParam().text));
}

TEST_P(ConstantOfType, IsReadInTheShapeOfItsType)
{
    const auto made = makeConstant(GetParam().type, GetParam().value);

    EXPECT_EQ(valueAs(GetParam().type, made.get()).type(), GetParam().value.type());
}

TEST_P(ConstantOfType, HasTheTypeOfItsOwnClass)
{
    const auto made = makeConstant(GetParam().type, GetParam().value);

    EXPECT_EQ(valueOfConstant(made.get()).type(), GetParam().value.type());
}

TEST_P(ConstantOfType, ComesBackTheSame)
{
    const auto made = makeConstant(GetParam().type, GetParam().value);
    const auto again = makeConstant(GetParam().type, valueAs(GetParam().type, made.get()));

    EXPECT_EQ(textOf(again), textOf(made));
}

TEST_P(ConstantOfType, HasAZeroOfItsShape)
{
    EXPECT_EQ(zeroOf(GetParam().type).type(), GetParam().value.type());
}

TEST_P(ConstantOfType, RefusesAnotherShape)
{
    EXPECT_THROW(makeConstant(GetParam().type, boost::any('x')), boost::bad_any_cast);
    EXPECT_THROW(makeConstant(GetParam().type, boost::any()), boost::bad_any_cast);
}

INSTANTIATE_TEST_SUITE_P(
    Types, ConstantOfType,
    testing::Values(StorageCase{"Bool", 4, true, "Bool", "1"},
                    StorageCase{"Int1", 16, Int1{{-5}}, "Int1", "-5"},
                    StorageCase{"Int2", 32, Int2{{1, 2}}, "Int2", "1 2"},
                    StorageCase{"Int3", 64, Int3{{1, 2, 3}}, "Int3", "1 2 3"},
                    StorageCase{"Int4", 128, Int4{{1, 2, 3, 4}}, "Int4", "1 2 3 4"},
                    StorageCase{"AnyInt", 240, 5u, "Int32", "5"},
                    StorageCase{"Float1", 256, half, "Float1", "0.5"},
                    StorageCase{"Float1OrGrayscaleImage", 258, half, "Float1", "0.5"},
                    StorageCase{"Float2", 512, Float2{{1, 2}}, "Float2", "1 2"},
                    StorageCase{"Float3", 1024, Float3{{1, 2, 3}}, "Float3", "1 2 3"},
                    StorageCase{"Float4", 2048, Float4{{1, 2, 3, 4}}, "Float4", "1 2 3 4"},
                    StorageCase{"Float4OrColorImage", 2049, color, "Float4", "0.1 0.2 0.3 1"},
                    StorageCase{"Color", 2304, color, "Float4", "0.1 0.2 0.3 1"},
                    StorageCase{"ColorOrImage", 2307, color, "Float4", "0.1 0.2 0.3 1"},
                    StorageCase{"AnyFloat", 3840, 0.5f, "Float", "0.5"},
                    StorageCase{"Text", 16384, Text("a b"), "String", "a b"},
                    StorageCase{"String", 32768, Text(), "String", ""}),
    caseName<StorageCase>);

class TypeWithoutValue : public testing::TestWithParam<unsigned>
{};

TEST_P(TypeWithoutValue, IsNotStoredReadOrZeroed)
{
    EXPECT_EQ(makeConstant(GetParam(), 1u), nullptr);
    EXPECT_EQ(makeParameterConstant(GetParam(), 1u), nullptr);
    EXPECT_TRUE(valueAs(GetParam(), constant<ConstantValueInt32>(1).get()).empty());
    EXPECT_TRUE(zeroOf(GetParam()).empty());
}

INSTANTIATE_TEST_SUITE_P(Types, TypeWithoutValue,
                         testing::Values(0u, 1u, 2u, 3u, 5u, 4096u, 65536u, 272u));

TEST(ValueOfConstant, IsTheOneOfItsClass)
{
    EXPECT_EQ(boost::any_cast<UInt>(valueOfConstant(constant<ConstantValueInt32>(5).get())), 5u);
    EXPECT_EQ(boost::any_cast<Int1>(valueOfConstant(constant<ConstantValueInt1>(five).get())),
              five);
    EXPECT_EQ(boost::any_cast<float>(valueOfConstant(constant<ConstantValueFloat>(0.5f).get())),
              0.5f);
    EXPECT_EQ(boost::any_cast<Float1>(valueOfConstant(constant<ConstantValueFloat1>(half).get())),
              half);
}

TEST(ValueOfConstant, IsEmptyForOtherObjects)
{
    EXPECT_TRUE(valueOfConstant(nullptr).empty());
    EXPECT_TRUE(valueOfConstant(std::make_unique<Parameter>().get()).empty());
    EXPECT_TRUE(valueAs(4, nullptr).empty());
}

TEST(ValueByShape, OfOneIntegerIsReadFromBothClasses)
{
    const auto asSigned = valueAs(16, constant<ConstantValueInt32>(5).get());
    const auto asUnsigned = valueAs(240, constant<ConstantValueInt1>(five).get());

    EXPECT_EQ(boost::any_cast<Int1>(asSigned), five);
    EXPECT_EQ(boost::any_cast<UInt>(asUnsigned), 5u);
}

TEST(ValueByShape, OfOneFloatIsReadFromBothClasses)
{
    const auto asVector = valueAs(256, constant<ConstantValueFloat>(0.5f).get());
    const auto asNumber = valueAs(3840, constant<ConstantValueFloat1>(half).get());

    EXPECT_EQ(boost::any_cast<Float1>(asVector), half);
    EXPECT_EQ(boost::any_cast<float>(asNumber), 0.5f);
}

TEST(ValueByShape, IsEmptyWhereTheShapeDiffers)
{
    EXPECT_TRUE(valueAs(16, constant<ConstantValueFloat1>(half).get()).empty());
    EXPECT_TRUE(valueAs(256, constant<ConstantValueInt32>(5).get()).empty());
    EXPECT_TRUE(valueAs(2304, constant<ConstantValueFloat1>(half).get()).empty());
    EXPECT_TRUE(valueAs(4, constant<ConstantValueInt32>(1).get()).empty());
    EXPECT_TRUE(valueAs(32768, constant<ConstantValueInt32>(1).get()).empty());
}

TEST(ParameterConstant, OfAnIntegerIsUnsigned)
{
    EXPECT_EQ(textOf(makeParameterConstant(16, 5u)), aConstant("Int32", "5"));
    EXPECT_THROW(makeParameterConstant(16, five), boost::bad_any_cast);
}

TEST(ParameterConstant, OfAnIntegerIsReadFromBothClasses)
{
    const auto own = parameterValueAs(16, constant<ConstantValueInt32>(5).get());
    const auto other = parameterValueAs(16, constant<ConstantValueInt1>(five).get());

    EXPECT_EQ(boost::any_cast<UInt>(own), 5u);
    EXPECT_EQ(boost::any_cast<UInt>(other), 5u);
}

TEST(ParameterConstant, OfOtherTypesIsAsAnyConstant)
{
    EXPECT_EQ(textOf(makeParameterConstant(2304, color)), aConstant("Float4", "0.1 0.2 0.3 1"));
    EXPECT_EQ(
        boost::any_cast<Float1>(parameterValueAs(256, constant<ConstantValueFloat>(0.5f).get())),
        half);
}
