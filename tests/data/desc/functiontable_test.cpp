#include "data/desc/functiontable.h"

#include "data/desc/parameter.h"
#include "data/desc/valuetype.h"
#include "support/golden.h"
#include "support/shelfcases.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iomanip>
#include <sstream>

using namespace Ksx::Data::Desc;
using testing::IsEmpty;
using TestSupport::caseName;
using TestSupport::goldenPath;
using TestSupport::readFile;

namespace {

using Lines = std::vector<std::string>;

// A table of the tests' own, so that they do without the one of the process.
const FunctionTable& functions()
{
    static const FunctionTable table;
    return table;
}

const Function& function(const std::string& identifier)
{
    return *functions().find(identifier);
}

// --- the table in the words of the golden file

const std::map<unsigned, std::string> setWords{
    {4, "bool"},
    {16, "int1"},
    {32, "int2"},
    {64, "int3"},
    {128, "int4"},
    {256, "float1"},
    {512, "float2"},
    {1024, "float3"},
    {2048, "float4"},
    {16384, "string"},
    {240, "any int"},
    {3840, "any float"},
    {3584, "float2 float3 float4"},
    {4080, "any int or float"},
    {3856, "int1 or any float"},
    {272, "int1 float1"},
    {53236, "any value"},
    {118772, "any value or none"},
    {524288, "none"},
    {256 + 512, "float1 float2"},
    {256 + 512 + 1024, "float1 float2 float3"},
    {16 + 32, "int1 int2"},
    {16 + 32 + 64, "int1 int2 int3"},
};

constexpr unsigned ListMark = 65536;
constexpr unsigned GenericMark = 131072;
constexpr unsigned FlowTypes = 118772;

std::string wordsOf(unsigned type, const Function& owner)
{
    if (type == (GenericMark | owner.genericTypes))
        return "T";
    const auto found = setWords.find(type);
    return found == setWords.end() ? std::to_string(type) : found->second;
}

std::string lineOf(const FunctionInput& input, const Function& owner)
{
    const bool hasMark = input.takesList && input.type != FlowTypes;
    return input.identifier + ": " + wordsOf(input.type & (hasMark ? ~ListMark : ~0u), owner) +
           (input.takesList ? ", list" : "");
}

const char* wordsOf(FunctionData::Role role)
{
    switch (role) {
    case FunctionData::Role::VariableName:
        return "variable name";
    case FunctionData::Role::Value:
        return "value";
    case FunctionData::Role::ComponentIndexes:
        return "component indexes";
    case FunctionData::Role::ImageIndex:
        return "image index";
    }
    return "";
}

std::string lineOf(const Function& one)
{
    std::ostringstream line;
    line << std::setw(2) << one.kind << ' ' << std::left << std::setw(14) << one.identifier
         << std::setw(14) << one.nameKey;
    const char* gap = "";
    for (const FunctionInput& input : one.inputs) {
        line << gap << lineOf(input, one);
        gap = "; ";
    }
    line << (one.inputs.empty() ? "" : " ") << "-> " << wordsOf(one.outputType, one);
    if (one.genericTypes != 0)
        line << "  T: " << wordsOf(one.genericTypes, one);
    if (one.data)
        line << "  holds: " << wordsOf(one.data->role) << ", " << wordsOf(one.data->type, one);
    return line.str();
}

Lines describedLines()
{
    Lines lines;
    for (const Function* const one : functions().all())
        lines.push_back(lineOf(*one));
    return lines;
}

Lines goldenLines()
{
    Lines lines;
    std::istringstream text(readFile(goldenPath("functions.txt")));
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

// --- what holds for all functions

Lines functionsNotFound()
{
    Lines lost;
    for (const Function* const one : functions().all())
        if (functions().find(one->kind) != one || functions().find(one->identifier) != one)
            lost.push_back(one->identifier);
    return lost;
}

Lines functionsWithOddDescKey()
{
    Lines odd;
    for (const Function* const one : functions().all())
        if (one->descKey != one->nameKey + "_DESC")
            odd.push_back(one->identifier);
    return odd;
}

std::string upper(std::string text)
{
    for (char& letter : text)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    return text;
}

Lines inputsWithOddKey()
{
    Lines odd;
    for (const Function* const one : functions().all())
        for (const FunctionInput& input : one->inputs)
            if (input.key != one->nameKey + '_' + upper(input.identifier))
                odd.push_back(input.key);
    return odd;
}

Lines datasOfOddShape()
{
    Lines odd;
    for (const Function* const one : functions().all())
        if (one->data && (one->data->identifier != "datacontent" ||
                          one->data->defaultValue.type() != emptyValueOf(one->data->type).type()))
            odd.push_back(one->identifier);
    return odd;
}

Lines enumeratedDatas()
{
    Lines enumerated;
    for (const Function* const one : functions().all())
        if (one->data && one->data->extras.count("valueInterpretation") != 0)
            enumerated.push_back(one->identifier);
    return enumerated;
}

struct TypeCase
{
    const char* name;
    unsigned type;
    const char* getter; // empty if there is none
    const char* constant;
};

std::string identifierOf(const Function* found)
{
    return found ? found->identifier : "";
}

struct PartnerCase
{
    const char* name;
    const char* getter;
    const char* constant;
};

} // namespace

// --- rows

class FunctionRow : public testing::TestWithParam<unsigned>
{};

TEST_P(FunctionRow, HasTheInputsAndOutputOfTheTable)
{
    EXPECT_EQ(describedLines().at(GetParam()), goldenLines().at(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(All, FunctionRow, testing::Range(0u, 84u));

TEST(FunctionTable, HasTheRowsOfTheTableAndNoOthers)
{
    EXPECT_EQ(functions().all().size(), 84u);
    EXPECT_EQ(goldenLines().size(), 84u);
}

// --- look-ups

TEST(FunctionTable, FindsEachFunctionByKindAndByIdentifier)
{
    EXPECT_THAT(functionsNotFound(), IsEmpty());
}

TEST(FunctionTable, FindsNoFunctionBehindTheLastKind)
{
    EXPECT_EQ(functions().find(84u), nullptr);
    EXPECT_EQ(functions().find(4294967295u), nullptr);
}

TEST(FunctionTable, FindsNoFunctionOfAnotherIdentifier)
{
    EXPECT_EQ(functions().find("ADD"), nullptr);
    EXPECT_EQ(functions().find("tofloat1"), nullptr);
    EXPECT_EQ(functions().find(""), nullptr);
}

TEST(FunctionTable, NamesTheKindsByTheirNumbers)
{
    EXPECT_EQ(functions().find(FunctionsEnum::GetBool), functions().find(5u));
    EXPECT_EQ(functions().find(FunctionsEnum::ConstBool), functions().find(16u));
    EXPECT_EQ(functions().find(FunctionsEnum::Instance), functions().find(25u));
    EXPECT_EQ(functions().find(FunctionsEnum::SampleCol), functions().find(83u));
}

class FunctionOfType : public testing::TestWithParam<TypeCase>
{};

TEST_P(FunctionOfType, IsAGetterOrAConstant)
{
    EXPECT_EQ(identifierOf(functions().getterOf(GetParam().type)), GetParam().getter);
    EXPECT_EQ(identifierOf(functions().constantOf(GetParam().type)), GetParam().constant);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(All, FunctionOfType, testing::Values(
    TypeCase{"Bool",                  4,     "get_bool",     "const_bool"},
    TypeCase{"Int1",                  16,    "get_integer1", "const_int1"},
    TypeCase{"Int2",                  32,    "get_integer2", "const_int2"},
    TypeCase{"Int3",                  64,    "get_integer3", "const_int3"},
    TypeCase{"Int4",                  128,   "get_integer4", "const_int4"},
    TypeCase{"Float1",                256,   "get_float1",   "const_float1"},
    TypeCase{"Float1OrGrayscale",     258,   "get_float1",   "const_float1"},
    TypeCase{"Float2",                512,   "get_float2",   "const_float2"},
    TypeCase{"Float3",                1024,  "get_float3",   "const_float3"},
    TypeCase{"Float4",                2048,  "get_float4",   "const_float4"},
    TypeCase{"Float4OrColorImage",    2049,  "get_float4",   "const_float4"},
    TypeCase{"Float1OrFloat4",        2304,  "get_float4",   "const_float4"},
    TypeCase{"Float1OrFloat4OrImage", 2307,  "get_float4",   "const_float4"},
    TypeCase{"Text",                  16384, "",             "const_string"},
    TypeCase{"String",                32768, "",             "const_string"},
    TypeCase{"ColorImage",            1,     "",             ""},
    TypeCase{"GrayscaleImage",        2,     "",             ""},
    TypeCase{"AnyNumber",             4080,  "",             ""}),
    caseName<TypeCase>);
// clang-format on

// --- keys

TEST(FunctionTable, DescribesAFunctionUnderItsKey)
{
    EXPECT_THAT(functionsWithOddDescKey(), IsEmpty());
    EXPECT_EQ(function("ifelse").descKey, "IF_ELSE_DESC");
}

TEST(FunctionTable, BuildsTheKeyOfAnInputFromThatOfTheFunction)
{
    EXPECT_THAT(inputsWithOddKey(), IsEmpty());
    EXPECT_EQ(function("ifelse").inputs[1].key, "IF_ELSE_IFPATH");
}

TEST(FunctionTable, BuildsTheKeyOfTheDataInTheSameWay)
{
    EXPECT_EQ(function("const_float2").data->key, "CONST_FLOAT2_DATACONTENT");
}

// --- data

TEST(FunctionTable, HoldsDataOfTheShapeOfItsType)
{
    EXPECT_THAT(datasOfOddShape(), IsEmpty());
}

TEST(FunctionTable, ReadsComponentsAsOneOfAList)
{
    EXPECT_THAT(enumeratedDatas(),
                testing::ElementsAre("swizzle1", "swizzle2", "swizzle3", "swizzle4", "iswizzle1",
                                     "iswizzle2", "iswizzle3", "iswizzle4"));
    EXPECT_EQ(function("swizzle1").data->extras.at("valueInterpretation"), "enum");
}

// --- masks

TEST(FunctionTable, WritesTheGenericSetIntoTheTypeOfInputsAndOutput)
{
    EXPECT_EQ(function("add").inputs[0].type, 131072u | 4080u);
    EXPECT_EQ(function("add").outputType, 131072u | 4080u);
    EXPECT_EQ(function("mulscalar").inputs[1].type, 256u);
}

TEST(FunctionTable, MarksListsInTheTypeOfAnInput)
{
    EXPECT_EQ(function("vector3").inputs[0].type, 65536u | 256u | 512u);
    EXPECT_EQ(function("vector3").inputs[1].type, 256u | 512u);
}

TEST(FunctionTable, TellsListsFromFlowInputsThatAreNone)
{
    EXPECT_EQ(function("if").inputs[1].type, 118772u);
    EXPECT_FALSE(function("if").inputs[1].takesList);
    EXPECT_EQ(function("sequence").inputs[0].type, 118772u);
    EXPECT_TRUE(function("sequence").inputs[0].takesList);
}

TEST(FunctionTable, MarksTheFunctionWithoutOutput)
{
    EXPECT_EQ(function("if").outputType, 524288u);
    EXPECT_FALSE(function("if").hasOutput());
    EXPECT_TRUE(function("ifelse").hasOutput());
}

// --- getters and constants

class GetterPartner : public testing::TestWithParam<PartnerCase>
{};

TEST_P(GetterPartner, IsTheConstantElevenKindsAhead)
{
    const unsigned getter = function(GetParam().getter).kind;
    const unsigned constant = function(GetParam().constant).kind;
    EXPECT_TRUE(isTypedGetter(getter));
    EXPECT_EQ(constant, getter + 11);
    EXPECT_EQ(constantOfGetter(getter), constant);
    EXPECT_EQ(getterOfConstant(constant), getter);
}

INSTANTIATE_TEST_SUITE_P(All, GetterPartner,
                         testing::Values(PartnerCase{"Bool", "get_bool", "const_bool"},
                                         PartnerCase{"Int1", "get_integer1", "const_int1"},
                                         PartnerCase{"Int2", "get_integer2", "const_int2"},
                                         PartnerCase{"Int3", "get_integer3", "const_int3"},
                                         PartnerCase{"Int4", "get_integer4", "const_int4"},
                                         PartnerCase{"Float1", "get_float1", "const_float1"},
                                         PartnerCase{"Float2", "get_float2", "const_float2"},
                                         PartnerCase{"Float3", "get_float3", "const_float3"},
                                         PartnerCase{"Float4", "get_float4", "const_float4"}),
                         caseName<PartnerCase>);

TEST(FunctionTable, TakesThePathForNoTypedGetter)
{
    EXPECT_FALSE(isTypedGetter(function("get_path").kind));
    EXPECT_FALSE(isTypedGetter(function("set").kind));
}
