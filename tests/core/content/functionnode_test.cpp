#include "content/functionnode.h"

#include "data/content/paramnode.h"
#include "data/desc/functiontable.h"
#include "support/parameterdocument.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>

using Ksx::Core::makeFunctionNode;
using TestSupport::aConstant;
using TestSupport::aGetter;
using TestSupport::caseName;
using TestSupport::xmlOf;

namespace {

std::string nodeOf(const std::string& function)
{
    static const Ksx::Data::Desc::FunctionTable functions;
    return xmlOf(*makeFunctionNode(*functions.find(function), 7));
}

std::string head(const std::string& function, unsigned type)
{
    return "<paramNode><uid v=\"7\"/><function v=\"" + function + "\"/><type><value v=\"" +
           std::to_string(type) + "\"/></type>";
}

struct DataCase
{
    const char* name;
    const char* function;
    unsigned type;
    const char* kind; // of the data's constant
    const char* value;
};

} // namespace

class FunctionNodeWithData : public testing::TestWithParam<DataCase>
{};

TEST_P(FunctionNodeWithData, HoldsZero)
{
    EXPECT_EQ(nodeOf(GetParam().function),
              head(GetParam().function, GetParam().type) +
                  "<funcDatas><funcData><name v=\"datacontent\"/><constantValue>" +
                  aConstant(GetParam().kind, GetParam().value) +
                  "</constantValue></funcData></funcDatas></paramNode>");
}

INSTANTIATE_TEST_SUITE_P(
    Functions, FunctionNodeWithData,
    testing::Values(DataCase{"ConstBool", "const_bool", 4, "Bool", "0"},
                    DataCase{"ConstInt1", "const_int1", 16, "Int1", "0"},
                    DataCase{"ConstInt4", "const_int4", 128, "Int4", "0 0 0 0"},
                    DataCase{"ConstFloat1", "const_float1", 256, "Float1", "0"},
                    DataCase{"ConstFloat3", "const_float3", 1024, "Float3", "0 0 0"},
                    DataCase{"ConstString", "const_string", 16384, "String", ""},
                    DataCase{"GetFloat1", "get_float1", 256, "String", ""},
                    DataCase{"GetBool", "get_bool", 4, "String", ""},
                    DataCase{"Swizzle2", "swizzle2", 512, "Int2", "0 0"},
                    DataCase{"SampleLum", "samplelum", 256, "Int1", "0"}),
    caseName<DataCase>);

TEST(FunctionNode, WithoutDataHasNone)
{
    EXPECT_EQ(nodeOf("sin"), head("sin", 256) + "</paramNode>");
}

TEST(FunctionNode, OfSetHoldsTheNameOfItsVariable)
{
    EXPECT_NE(nodeOf("set").find(aConstant("String", "")), std::string::npos);
}

TEST(FunctionNode, IsAGetterOfTheEmptyName)
{
    EXPECT_EQ(nodeOf("get_integer1"), aGetter(7, "get_integer1", 16, ""));
}
