// What the kinds of nodes of a graph say of their connectors, parameters and output types.
#include "ksx/core/compnodecontroller.h"

#include "data/content/compfilter.h"
#include "data/content/compoutput.h"
#include "data/desc/filter.h"
#include "data/desc/parameter.h"
#include "data/diagnosticlog.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "support/shelfcases.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Desc::FilterKind;
using Ksx::Data::Desc::Parameter;

// A graph with a node of each kind: filters 1, with a variant output, and 2, which is always grey,
// the input node 3, the output node 4, and 5, an instance of a graph that is not there.
class CompNodes : public testing::Test
{
protected:
    CompNodes()
        : package(workspace.open(aPackage().containing(
              GraphText{"g",
                        4,
                        anInput("image", 7, 1),
                        anOutput("o", 21),
                        aNode(1, aFilter("blur"), {}, 10, 1) +
                            aNode(2, aFilter("grayscaleconversion"), {}, 20, 2) +
                            aNode(3, anInputBridge(7), {}, 30, 1) + aNode(4, anOutputBridge(21)) +
                            aNode(5, "<compInstance><path><value v=\"pkg://gone\"/></path>"
                                     "<parameters/><outputBridgings/></compInstance>"),
                        {},
                        aRootOutput(21)}
                  .text()))),
          graph(controllerIn(package)), before(xmlOf(package))
    {}

    CompNodeController& node(Uid uid) const
    {
        return static_cast<CompNodeController&>(*graph.nodeByUid(uid));
    }
    static Parameter parameterOf(unsigned type, unsigned flags = 0)
    {
        Parameter parameter;
        parameter.type = type;
        parameter.flags = flags;
        return parameter;
    }

    Workspace workspace;
    const Ksx::Data::Content::Package& package;
    CompGraphController& graph;
    const std::string before;
};

// --- questions

TEST_F(CompNodes, OnlyTheInputOfAnOutputNodeIsUsedForOutput)
{
    EXPECT_EQ(node(4).connectorUsage("inputNodeOutput"), 3u);
    EXPECT_EQ(node(4).connectorUsage("input1"), 0u);
    EXPECT_EQ(node(1).connectorUsage("inputNodeOutput"), 0u);
    EXPECT_EQ(node(1).connectorUsage("input1"), 0u);
    EXPECT_EQ(node(3).connectorUsage("unique_filter_output"), 0u);
    EXPECT_EQ(node(5).connectorUsage("inputNodeOutput"), 0u);
}

struct SourceCase
{
    const char* name;
    unsigned type; // of the source's output
    bool accepted;
};

std::ostream& operator<<(std::ostream& stream, const SourceCase& c)
{
    return stream << c.name;
}

class OutputNodeSource : public testing::TestWithParam<SourceCase>
{};

TEST_P(OutputNodeSource, HasToBeOfOneKindOfImage)
{
    Workspace workspace;
    CompGraphController& graph = controllerIn(workspace.open(aPackage().containing(
        GraphText{"g", 4, anInput("in", 7, GetParam().type), anOutput("o", 21),
                  aNode(1, anInputBridge(7), {}, 10, GetParam().type) +
                      aNode(2, anOutputBridge(21)) + aNode(3, aFilter("blur"), {}, 30, 1)}
            .text())));
    const auto& output = static_cast<CompNodeController&>(*graph.nodeByUid(2));
    const auto& filter = static_cast<CompNodeController&>(*graph.nodeByUid(3));
    const OutputConnectorController& source = *graph.nodeByUid(1)->outputConnector(0);

    EXPECT_EQ(output.acceptsConnection(source, *output.inputConnector(0)), GetParam().accepted);
    EXPECT_TRUE(filter.acceptsConnection(source, *filter.inputConnector(0)));
}

INSTANTIATE_TEST_SUITE_P(Types, OutputNodeSource,
                         testing::Values(SourceCase{"Color", 1, true},
                                         SourceCase{"Grayscale", 2, true},
                                         SourceCase{"Either", 3, false},
                                         SourceCase{"Float", 256, false},
                                         SourceCase{"Open", 0, false}),
                         caseName<SourceCase>);

TEST_F(CompNodes, ParametersOfFiltersAndInstancesAreInheritableByTheirFourthBit)
{
    EXPECT_TRUE(node(1).isInheritable(parameterOf(32, 8)));
    EXPECT_TRUE(node(5).isInheritable(parameterOf(32, 8)));
    EXPECT_FALSE(node(1).isInheritable(parameterOf(32, ~8u)));
    EXPECT_FALSE(node(5).isInheritable(parameterOf(32, ~8u)));
}

TEST_F(CompNodes, NoParameterOfABridgeIsInheritable)
{
    EXPECT_FALSE(node(3).isInheritable(parameterOf(32, 8)));
    EXPECT_FALSE(node(4).isInheritable(parameterOf(32, 8)));
}

struct TypeCase
{
    const char* name;
    unsigned type;
    bool isRelative;
};

std::ostream& operator<<(std::ostream& stream, const TypeCase& c)
{
    return stream << c.name;
}

class TypeOfAParameter : public CompNodes, public testing::WithParamInterface<TypeCase>
{};

TEST_P(TypeOfAParameter, FollowsTheColorModeOfTheNodeOrNot)
{
    const Parameter parameter = parameterOf(GetParam().type);

    EXPECT_EQ(node(1).hasRelativeType(parameter), GetParam().isRelative);
    EXPECT_EQ(node(5).hasRelativeType(parameter), GetParam().isRelative);
    EXPECT_FALSE(node(3).hasRelativeType(parameter));
    EXPECT_FALSE(node(4).hasRelativeType(parameter));
}

INSTANTIATE_TEST_SUITE_P(
    Types, TypeOfAParameter,
    testing::Values(TypeCase{"Float4OrColor", 2049, true}, TypeCase{"FloatOrGrayscale", 258, true},
                    TypeCase{"FloatOrFloat4OrImage", 2307, true},
                    TypeCase{"FloatOrFloat4", 2304, false}, TypeCase{"Float", 256, false},
                    TypeCase{"Float4", 2048, false}, TypeCase{"Color", 1, false},
                    TypeCase{"Grayscale", 2, false}, TypeCase{"Image", 3, false},
                    TypeCase{"Boolean", 4, false}),
    caseName<TypeCase>);

TEST_F(CompNodes, ParametersAreThoseOfTheirNodeInItsGraph)
{
    const auto& context = node(1).parametersController()->context().objects();

    ASSERT_EQ(context.size(), 2u);
    EXPECT_EQ(context[0].get(), graphIn(package).get());
    EXPECT_EQ(context[1].get(), node(1).node());
    EXPECT_TRUE(graph.parametersController().context().objects().empty());
}

// --- types of outputs

struct FilterCase
{
    const char* name;
    FilterKind kind;
    unsigned type;
};

std::ostream& operator<<(std::ostream& stream, const FilterCase& c)
{
    return stream << c.name;
}

class NewFilter : public CompNodes, public testing::WithParamInterface<FilterCase>
{};

TEST_P(NewFilter, GivesColorUnlessItsOutputIsAlwaysGrey)
{
    const auto* added = graph.addAtomicFilter(GetParam().kind);

    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->filter()->filter().get(), GetParam().name);
    EXPECT_EQ(added->node()->compOutputs().at(0).comptype().value().get(), GetParam().type);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, NewFilter,
    testing::Values(FilterCase{"gradient", FilterKind(0), 1}, FilterCase{"blend", FilterKind(1), 1},
                    FilterCase{"transformation", FilterKind(2), 1},
                    FilterCase{"grayscaleconversion", FilterKind(3), 2},
                    FilterCase{"shuffle", FilterKind(4), 1}, FilterCase{"fxmaps", FilterKind(5), 1},
                    FilterCase{"svg", FilterKind(6), 1}, FilterCase{"uniform", FilterKind(7), 1},
                    FilterCase{"warp", FilterKind(8), 1}, FilterCase{"emboss", FilterKind(9), 1},
                    FilterCase{"motionblur", FilterKind(10), 1},
                    FilterCase{"blur", FilterKind(11), 1},
                    FilterCase{"dirmotionblur", FilterKind(12), 1},
                    FilterCase{"directionalwarp", FilterKind(13), 1},
                    FilterCase{"sharpen", FilterKind(14), 1}, FilterCase{"hsl", FilterKind(15), 1},
                    FilterCase{"levels", FilterKind(16), 1},
                    FilterCase{"bitmap", FilterKind(17), 1}, FilterCase{"text", FilterKind(18), 1},
                    FilterCase{"normal", FilterKind(19), 1}),
    caseName<FilterCase>);

TEST_F(CompNodes, AFilterWithoutAnOutputGivesAllThatItsDescriptionAllows)
{
    const GraphText graphText{
        "h", 5, {}, {}, aNode(1, aFilter("blur")) + aNode(2, aFilter("grayscaleconversion"))};
    CompGraphController& other =
        controllerIn(workspace.open(aPackage().containing(graphText.text())));

    EXPECT_EQ(other.nodeByUid(1)->outputType(), 3u);
    EXPECT_EQ(other.nodeByUid(2)->outputType(), 2u);
}

// Collects what is reported while it lives, as "source level: text".
class Reports
{
public:
    Reports()
        : m_sink(Orv::DiagnosticLog::addSink([this](const Orv::LogRecord& record) {
              lines.push_back(std::string(record.source) + ' ' +
                              std::to_string(static_cast<int>(record.level)) + ": " + record.text);
              places.push_back(record.line);
          }))
    {}
    ~Reports() { Orv::DiagnosticLog::removeSink(m_sink); }
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    std::vector<std::string> lines;
    std::vector<int> places;

private:
    int m_sink;
};

TEST_F(CompNodes, AFilterOfOneTypeReportsAnotherAndKeepsItsOwn)
{
    const Reports reports;

    EXPECT_FALSE(node(2).setOutputTypeFromInput(1, nullptr));

    EXPECT_EQ(reports.lines,
              std::vector<std::string>{"core\\corecompfilternodecontroller 2: "
                                       "Using setCurrentVariantType on a non variant filter\n"});
    EXPECT_EQ(xmlOf(package), before);
}

TEST_F(CompNodes, AFilterReportsATypeThatCannotBeWritten)
{
    const Reports reports;

    EXPECT_FALSE(node(1).setOutputTypeFromInput(2, nullptr));

    EXPECT_EQ(reports.lines, std::vector<std::string>{"core\\corecompfilternodecontroller 2: "
                                                      "Node 1 have output type: 1 and must be: 2"});
    EXPECT_EQ(reports.places, std::vector<int>{449});
    EXPECT_EQ(xmlOf(package), before);
}

TEST_F(CompNodes, AnOutputNodeReportsATypeThatCannotBeWritten)
{
    const Reports reports;

    EXPECT_FALSE(node(4).setOutputTypeFromInput(2, nullptr));

    EXPECT_EQ(reports.lines,
              std::vector<std::string>{"core\\corecompoutputnodecontroller 2: "
                                       "Node 4 have output type: 0 and must be: 2\n"});
    EXPECT_EQ(reports.places, std::vector<int>{204});
    EXPECT_EQ(xmlOf(package), before);
}

// The gradient of a warp is grey whatever the picture is, and a shuffle gives color.
TEST_F(CompNodes, ASourceSetsATypeOnlyFromAVariantInputToAVariantOutput)
{
    auto* const warp = graph.addAtomicFilter(FilterKind::Warp);
    auto* const shuffle = graph.addAtomicFilter(FilterKind::Shuffle);
    const Reports reports;

    EXPECT_TRUE(graph.connect(*node(2).outputConnector(0),
                              *warp->inputConnectorByName("inputgradient"), true));
    EXPECT_TRUE(
        graph.connect(*node(2).outputConnector(0), *shuffle->inputConnectorByName("input1"), true));

    EXPECT_EQ(warp->outputType(), 1u);
    EXPECT_EQ(shuffle->outputType(), 1u);
    EXPECT_EQ(reports.lines, std::vector<std::string>());
}

TEST_F(CompNodes, AFilterThatIsNotKnownHasNoVariantConnector)
{
    const CompNodeController& odd = *graph.addAtomicFilter(999u);

    EXPECT_FALSE(odd.isVariantConnector("unique_filter_output"));
    EXPECT_FALSE(odd.isVariantConnector("input1"));
    EXPECT_FALSE(odd.isOptionalVariantConnector("input1"));
}

TEST_F(CompNodes, AFilterThatReadsNoResourceHasNone)
{
    EXPECT_EQ(static_cast<const CompFilterNodeController&>(node(1)).resource(), nullptr);
}

TEST_F(CompNodes, NoTypeAndTheTypeThatIsThereAreNoReports)
{
    const Reports reports;

    EXPECT_FALSE(node(1).setOutputTypeFromInput(0, nullptr));
    EXPECT_FALSE(node(1).setOutputTypeFromInput(1, nullptr));
    EXPECT_FALSE(node(2).setOutputTypeFromInput(2, nullptr));
    EXPECT_FALSE(node(4).setOutputTypeFromInput(0, nullptr));
    EXPECT_FALSE(node(3).setOutputTypeFromInput(2, nullptr));

    EXPECT_EQ(reports.lines, std::vector<std::string>());
}

} // namespace
