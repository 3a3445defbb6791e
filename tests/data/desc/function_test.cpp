#include "data/desc/function.h"

#include "data/desc/functiontable.h"
#include "data/desc/valuetype.h"
#include <gtest/gtest.h>

using namespace Ksx::Data::Desc;
using FunctionType::NoOutput;
using ValueType::Bool;
using ValueType::ColorImage;
using ValueType::Float1;
using ValueType::Float2;
using ValueType::Float3;
using ValueType::Int1;
using ValueType::Unknown;

namespace {

const Function& function(FunctionsEnum kind)
{
    static const FunctionTable table;
    return *table.find(kind);
}

constexpr std::size_t A = 0;
constexpr std::size_t B = 1;

} // namespace

// --- masks

TEST(FunctionType, IncludesNumbersAndTextsInAnyValueButNoImage)
{
    EXPECT_TRUE(FunctionType::includes(FunctionType::AnyValue, Bool));
    EXPECT_TRUE(FunctionType::includes(FunctionType::AnyValue, ValueType::Int4));
    EXPECT_TRUE(FunctionType::includes(FunctionType::AnyValue, ValueType::Float4));
    EXPECT_TRUE(FunctionType::includes(FunctionType::AnyValue, ValueType::Text));
    EXPECT_TRUE(FunctionType::includes(FunctionType::AnyValue, ValueType::String));
    EXPECT_FALSE(FunctionType::includes(FunctionType::AnyValue, ColorImage));
}

TEST(FunctionType, IncludesNodesWithoutValueInFlowInputsOnly)
{
    EXPECT_TRUE(FunctionType::includes(FunctionType::AnyOrNone, NoOutput));
    EXPECT_FALSE(FunctionType::includes(FunctionType::AnyValue, NoOutput));
}

TEST(FunctionType, NeverIncludesAnUnknownType)
{
    EXPECT_FALSE(FunctionType::includes(FunctionType::AnyOrNone, Unknown));
}

TEST(FunctionType, IsMadeOfTheTypesThatItNames)
{
    EXPECT_EQ(FunctionType::AnyInt, 16u + 32u + 64u + 128u);
    EXPECT_EQ(FunctionType::AnyFloat, 256u + 512u + 1024u + 2048u);
    EXPECT_EQ(FunctionType::AnyFloatVector, 512u + 1024u + 2048u);
    EXPECT_EQ(FunctionType::AnyNumber, 4080u);
    EXPECT_EQ(FunctionType::Int1OrAnyFloat, 16u + 3840u);
    EXPECT_EQ(FunctionType::Int1OrFloat1, 16u + 256u);
    EXPECT_EQ(FunctionType::AnyValue, 4u + 4080u + 16384u + 32768u);
}

// --- inputs

TEST(Function, FindsItsInputsByIdentifier)
{
    const Function& lerp = function(FunctionsEnum::Lerp);
    EXPECT_EQ(lerp.input("x"), &lerp.inputs[2]);
    EXPECT_EQ(lerp.input("y"), nullptr);
}

TEST(Function, TakesAnyOfItsGenericTypesWhenNothingIsFed)
{
    EXPECT_TRUE(function(FunctionsEnum::Add).accepts(A, Float2, {}));
    EXPECT_TRUE(function(FunctionsEnum::Add).accepts(A, Int1, {}));
    EXPECT_FALSE(function(FunctionsEnum::Add).accepts(A, Bool, {}));
}

TEST(Function, TakesTheTypeOfTheOtherGenericInputOnly)
{
    EXPECT_TRUE(function(FunctionsEnum::Add).accepts(B, Float2, {Float2}));
    EXPECT_FALSE(function(FunctionsEnum::Add).accepts(B, Float3, {Float2}));
}

TEST(Function, TakesAnotherTypeInPlaceOfTheInputsOwn)
{
    EXPECT_TRUE(function(FunctionsEnum::Add).accepts(A, Float3, {Float2, Unknown}));
}

TEST(Function, RefusesANumberWhereVectorsAreWanted)
{
    EXPECT_FALSE(function(FunctionsEnum::MulScalar).accepts(A, Float1, {}));
    EXPECT_TRUE(function(FunctionsEnum::MulScalar).accepts(A, Float2, {Unknown, Float1}));
}

TEST(Function, TakesTheSameValueOnBothPathsOfACondition)
{
    const Function& ifElse = function(FunctionsEnum::IfElse);
    EXPECT_TRUE(ifElse.accepts(1, Bool, {Bool}));
    EXPECT_TRUE(ifElse.accepts(2, Float3, {Bool, Float3}));
    EXPECT_FALSE(ifElse.accepts(2, Float1, {Bool, Float3}));
}

TEST(Function, TakesNodesWithoutValueOnBothPathsOfACondition)
{
    const Function& ifElse = function(FunctionsEnum::IfElse);
    EXPECT_TRUE(ifElse.accepts(2, NoOutput, {Bool, NoOutput}));
    EXPECT_FALSE(ifElse.accepts(2, Float1, {Bool, NoOutput}));
}

TEST(Function, PaysNoHeedToAFedTypeOutsideTheGenericSet)
{
    EXPECT_TRUE(function(FunctionsEnum::Add).accepts(B, Float2, {Bool}));
}

TEST(Function, TakesFixedTypesWhateverElseIsFed)
{
    EXPECT_TRUE(function(FunctionsEnum::Lerp).accepts(2, Float1, {Float3, Float3}));
    EXPECT_FALSE(function(FunctionsEnum::Lerp).accepts(2, Float3, {Float3, Float3}));
}

// --- output

TEST(Function, GivesTheTypeOfItsGenericInputs)
{
    EXPECT_EQ(function(FunctionsEnum::Add).outputTypeFor({Float2}), Float2);
    EXPECT_EQ(function(FunctionsEnum::Add).outputTypeFor({Unknown, Float3}), Float3);
    EXPECT_EQ(function(FunctionsEnum::MulScalar).outputTypeFor({Float2, Float1}), Float2);
}

TEST(Function, GivesNoTypeWhileGenericInputsAreOpen)
{
    EXPECT_EQ(function(FunctionsEnum::Add).outputTypeFor({}), Unknown);
}

TEST(Function, GivesNoTypeWhenGenericInputsDisagree)
{
    EXPECT_EQ(function(FunctionsEnum::Add).outputTypeFor({Float2, Float3}), Unknown);
}

TEST(Function, GivesNoTypeForOneOutsideTheGenericSet)
{
    EXPECT_EQ(function(FunctionsEnum::Add).outputTypeFor({Bool}), Unknown);
}

TEST(Function, GivesItsFixedTypeWhateverIsFed)
{
    EXPECT_EQ(function(FunctionsEnum::Dot).outputTypeFor({Float3, Float3}), Float1);
    EXPECT_EQ(function(FunctionsEnum::Eq).outputTypeFor({}), Bool);
}

TEST(Function, GivesNoTypeForAnInstanceThatMayHaveAny)
{
    EXPECT_EQ(function(FunctionsEnum::Instance).outputTypeFor({}), Unknown);
}

TEST(Function, GivesNoOutputForAConditionWithOnePath)
{
    EXPECT_EQ(function(FunctionsEnum::If).outputTypeFor({Bool, Float1}), NoOutput);
}
