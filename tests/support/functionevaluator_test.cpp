#include "support/functionevaluator.h"

#include "data/content/dynamicvalue.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "support/functiontext.h"
#include "support/shelfcases.h"
#include "support/workspace.h"

namespace {

using namespace TestSupport;
using Ksx::Data::Content::DynamicValue;

std::string number(unsigned uid, const std::string& value)
{
    return aConstantNode(uid, "const_float1", 256, "Float1", value);
}
std::string integer(unsigned uid, const std::string& value)
{
    return aConstantNode(uid, "const_int1", 16, "Int1", value);
}
std::string boolean(unsigned uid, const std::string& value)
{
    return aConstantNode(uid, "const_bool", 4, "Bool", value);
}

// The value of node 1, with 7.5 for the input "x".
std::string valueOf(const std::string& dynamicValue)
{
    const ParameterDocument document(aParameter("p", "0", dynamicValue));
    return textOf(
        evaluate(static_cast<const DynamicValue&>(*document.parameters().at(0).paramValue().get()),
                 {{"x", std::vector<float>{7.5F}}}));
}

struct ValueCase
{
    const char* name;
    std::string nodes;
    const char* value;
};
class FunctionEvaluation : public testing::TestWithParam<ValueCase>
{};

TEST_P(FunctionEvaluation, Gives)
{
    EXPECT_EQ(valueOf(aDynamicValue(1, GetParam().nodes)), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Graphs, FunctionEvaluation,
    testing::Values(
        ValueCase{"AConstant", number(1, "0.5"), "f0.5 "},
        ValueCase{"AnInput", aGetter(1, "get_float1", 256, "x"), "f7.5 "},
        ValueCase{"AnInputThatIsMissing", aGetter(1, "get_float1", 256, "y"), ""},
        ValueCase{"ADifference",
                  aFunctionNode(1, "sub", 256, aLink("b", 3) + aLink("a", 2)) + number(2, "5") +
                      number(3, "3"),
                  "f2 "},
        ValueCase{"ADivisionByZero",
                  aFunctionNode(1, "div", 16, aLink("a", 2) + aLink("b", 3)) + integer(2, "5") +
                      integer(3, "0"),
                  ""},
        ValueCase{"ASumThatWraps",
                  aFunctionNode(1, "add", 16, aLink("a", 2) + aLink("b", 2)) +
                      integer(2, "2147483647"),
                  "i-2 "},
        ValueCase{"ASumOfTwoKindsOfNumbers",
                  aFunctionNode(1, "add", 16, aLink("a", 2) + aLink("b", 3)) + integer(2, "5") +
                      number(3, "5"),
                  ""},
        ValueCase{"AComparison",
                  aFunctionNode(1, "lr", 4, aLink("a", 2) + aLink("b", 3)) + integer(2, "1") +
                      integer(3, "2"),
                  "true"},
        ValueCase{"ADecision",
                  aFunctionNode(1, "ifelse", 256,
                                aLink("condition", 2) + aLink("ifpath", 3) + aLink("elsepath", 4)) +
                      boolean(2, "0") + number(3, "1") + number(4, "2"),
                  "f2 "},
        ValueCase{"AVectorInTheOrderOfItsEntries",
                  aFunctionNode(1, "vector3", 1024,
                                aLink("componentsin", 3) + aLink("componentslast", 2) +
                                    aLink("componentsin", 2)) +
                      number(2, "1") + number(3, "2"),
                  "f2 f1 f1 "},
        ValueCase{"AVectorOfTooFewEntries",
                  aFunctionNode(1, "vector3", 1024, aLink("componentslast", 2)) + number(2, "1"),
                  ""},
        ValueCase{"ASwizzle",
                  aFunctionNode(1, "swizzle2", 512, aLink("vector", 2),
                                aDataItem(aConstant("Int2", "1 0"))) +
                      aConstantNode(2, "const_float2", 512, "Float2", "3 4"),
                  "f4 f3 "},
        ValueCase{"AConversion",
                  aFunctionNode(1, "toint1", 16, aLink("value", 2)) + number(2, "-1.75"), "i-1 "},
        ValueCase{"AConversionOutOfRange",
                  aFunctionNode(1, "toint1", 16, aLink("value", 2)) + number(2, "1e20"), ""},
        ValueCase{"ASequence",
                  aFunctionNode(1, "sequence", 256, aLink("seqin", 99) + aLink("seqlast", 2)) +
                      number(2, "1"),
                  "f1 "},
        ValueCase{"ACircle", aFunctionNode(1, "neg", 256, aLink("a", 1)), ""},
        ValueCase{"AConnectionThatLeadsNowhere", aFunctionNode(1, "neg", 256, aLink("a", 9)), ""},
        ValueCase{"AnUnknownFunction", aFunctionNode(1, "mystery", 256), ""},
        ValueCase{"TheFirstOfTwoNodesWithOneUid", number(1, "1") + number(1, "2"), "f1 "}),
    caseName<ValueCase>);

TEST(FunctionEvaluationWithoutRoot, GivesNoValue)
{
    EXPECT_EQ(valueOf(aRootlessValue(number(1, "1"))), "");
}

} // namespace
