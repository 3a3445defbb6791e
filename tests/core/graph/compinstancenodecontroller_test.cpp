#include "ksx/core/compinstancenodecontroller.h"

#include "data/content/compinstance.h"
#include "data/content/compnode.h"
#include "data/content/graphmanipulators.h"
#include "data/content/group.h"
#include "data/content/parameter.h"
#include "data/desc/filter.h"
#include "data/desc/valuetype.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/parametercontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/tweakinputcontroller.h"
#include "support/contentedits.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::Group;

std::string aDropDown(const std::string& identifier, unsigned uid, const std::string& parameters)
{
    return "<paraminput><identifier v=\"" + identifier + "\"/><uid v=\"" + std::to_string(uid) +
           "\"/><type><value v=\"16\"/></type><defaultWidget><name v=\"dropdownlist\"/><options>"
           "<option><name v=\"parameters\"/><value v=\"" +
           parameters + "\"/></option></options></defaultWidget></paraminput>";
}

GraphText aFilterGraph()
{
    return {"filter",
            1,
            anInput("picture", 11, 3) + anInput("amount", 12, 256, aConstant("Float1", "0.5")) +
                anInput("mode", 13, 16, aConstant("Int1", "1"), "More") + anInput("mask", 14, 2) +
                anInput("unknown", 15, 0) + anInput("name", 16, 32768),
            anOutput("color", 21) + anOutput("gray", 22),
            aNode(31, anOutputBridge(21, 1)) + aNode(32, anOutputBridge(22, 2)),
            {},
            aRootOutput(21) + aRootOutput(22)};
}

// An instance of the graph at that place in the package of that dependency.
std::string anInstance(unsigned dependency, const std::string& place = "filter")
{
    return "<compInstance><path><value v=\"pkg://" + place +
           "?dependency=" + std::to_string(dependency) +
           "\"/></path><parameters/><outputBridgings><outputBridging><uid v=\"71\"/>"
           "<identifier v=\"gray\"/></outputBridging></outputBridgings></compInstance>";
}

class Instance : public testing::Test
{
protected:
    void open(const GraphText& filter)
    {
        package =
            &workspace.open(aPackage().containing(filter.text() + GraphText{"use", 2}.text()));
        graph = &controllerIn(*package, 1);
    }
    CompInstanceNodeController& instantiate(const GraphText& filter = aFilterGraph())
    {
        open(filter);
        node = graph->addInstanceNode(graphIn(*package, 0));
        return *node;
    }
    // Opens a package of a graph with an instance whose package is not open, at uid 500.
    CompInstanceNodeController& openGhost()
    {
        package =
            &workspace.open(aPackage()
                                .dependingOn("filters.obl", 500)
                                .containing(GraphText{
                                    "use",
                                    2,
                                    {},
                                    {},
                                    aNode(61, anInstance(500), aConnexion("mask", 62, 72), 71, 2) +
                                        aNode(62, aFilter("uniform"), {}, 72, 1)}
                                                .text()),
                            "/somewhere/use.obl", 400);
        graph = &controllerIn(*package);
        node = dynamic_cast<CompInstanceNodeController*>(graph->nodeByUid(61));
        return *node;
    }
    // Opens a package in which the graph of an instance stands in a group, beside other content.
    CompInstanceNodeController& openInGroup(const std::string& beside = {})
    {
        package = &workspace.open(
            aPackage()
                .dependingOnItself(400)
                .containing(aGroup("tools", aGroup("empty") + aFilterGraph().text()))
                .containing(
                    GraphText{"use", 2, {}, {}, aNode(61, anInstance(400, "tools/filter"))}.text() +
                    beside),
            "/somewhere/use.obl", 400);
        graph = &controllerIn(*package, 1);
        node = dynamic_cast<CompInstanceNodeController*>(graph->nodeByUid(61));
        return *node;
    }
    const Group& tools() const { return dynamic_cast<const Group&>(package->content().at(0)); }
    std::vector<std::string> inputsOf(const NodeController& controller)
    {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < controller.inputConnectorCount(); ++i)
            names.push_back(controller.inputConnector(i)->identifier());
        return names;
    }
    using Names = std::vector<std::string>;

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    CompGraphController* graph = nullptr;
    CompInstanceNodeController* node = nullptr;
};

TEST_F(Instance, HasAnOutputAndABridgingForEachOutputOfItsGraph)
{
    instantiate();
    const auto& outputs = node->node()->compOutputs();
    const auto& bridgings = node->instance()->outputBridgings();
    ASSERT_EQ(outputs.size(), 2u);
    ASSERT_EQ(bridgings.size(), 2u);
    EXPECT_EQ(bridgings.at(0).identifier().get(), "color");
    EXPECT_EQ(bridgings.at(1).identifier().get(), "gray");
    EXPECT_EQ(bridgings.at(1).uid().get(), outputs.at(1).uid().get());
    EXPECT_EQ(outputs.at(0).comptype().value().get(), 1u);
    EXPECT_EQ(outputs.at(1).comptype().value().get(), 2u);
}

TEST_F(Instance, OfAGraphWithoutOutputsHasNoOutputConnectors)
{
    EXPECT_EQ(instantiate({"filter", 1}).outputConnectorCount(), 0u);
}

TEST_F(Instance, ShowsTheImageInputsAsConnectorsInTheirOrder)
{
    EXPECT_EQ(inputsOf(instantiate()), (Names{"picture", "mask"}));
    EXPECT_EQ(node->connectorType("mask"), 2u);
    EXPECT_TRUE(node->isVariantConnector("picture"));
    EXPECT_FALSE(node->isVariantConnector("mask"));
    EXPECT_EQ(node->connectorType("nothing"), 0u);
}

TEST_F(Instance, GroupsItsParametersAsTheGraphGroupsItsInputs)
{
    const auto& groups = instantiate().parameterDescriptions();
    ASSERT_EQ(groups.size(), 3u);
    EXPECT_EQ(groups[0]->name(), "__common__");
    EXPECT_EQ(groups[1]->name(), "__main__");
    EXPECT_EQ(groups[2]->identifier(), "More");
    EXPECT_NE(groups[2]->find("mode"), nullptr);
}

TEST_F(Instance, ListsItsValueInputsInTheOrderOfTheGraphAndWithoutThoseOfUnknownType)
{
    Names names;
    for (const auto& input : instantiate().valueInputs())
        names.push_back(input.description->identifier);
    EXPECT_EQ(names, (Names{"amount", "mode", "name"}));
}

TEST_F(Instance, AParameterThatIsNotStoredHasTheDefaultOfTheInput)
{
    const boost::any value =
        instantiate().CompNodeController::parameterController("amount")->value();
    EXPECT_EQ(boost::any_cast<Orv::Data::Float1>(value)[0], 0.5F);
    const boost::any mode = node->CompNodeController::parameterController("mode")->value();
    EXPECT_EQ(boost::any_cast<unsigned>(mode), 1u);
}

TEST_F(Instance, AnInputThatIsNamedLikeACommonParameterHidesIt)
{
    instantiate({"filter", 1, anInput("outputsize", 11, 256, aConstant("Float1", "0.5"))});
    EXPECT_EQ(node->description("outputsize")->type, 256u);
    EXPECT_NE(node->description("quality"), nullptr);
    auto* parameter = node->CompNodeController::parameterController("outputsize");
    ASSERT_NE(parameter, nullptr);
    EXPECT_EQ(boost::any_cast<Orv::Data::Float1>(parameter->value())[0], 0.5F);
    EXPECT_EQ(parameter->relativeTo(), InheritanceMethod::Absolute);
    EXPECT_EQ(node->parametersController()->parameter("outputsize"), parameter);
}

TEST_F(Instance, TheValueOfAnInputThatIsNamedLikeACommonParameterCanBeSet)
{
    instantiate({"filter", 1, anInput("quality", 11, 512)});
    auto* parameter = node->CompNodeController::parameterController("quality");
    ASSERT_NE(parameter, nullptr);
    EXPECT_TRUE(parameter->setValue(Orv::Data::Float2{{0.25F, 0.75F}}));
    EXPECT_EQ(boost::any_cast<Orv::Data::Float2>(parameter->value())[1], 0.75F);
}

TEST_F(Instance, AValueInputThatIsNamedLikeACommonParameterIsDescribedByTheGraph)
{
    const auto inputs = instantiate({"filter", 1, anInput("randomseed", 11, 256)}).valueInputs();
    ASSERT_EQ(inputs.size(), 1u);
    EXPECT_EQ(inputs[0].description->type, 256u);
    node->CompNodeController::parameterController(*inputs[0].description)
        ->linkToInput({"seed", 256});
    EXPECT_EQ(node->instance()->parameters().at(0).relativeTo().get(), 0u);
}

TEST_F(Instance, AnImageInputThatIsNamedLikeACommonParameterLeavesItAlone)
{
    instantiate({"filter", 1, anInput("quality", 11, 1)});
    EXPECT_EQ(inputsOf(*node), Names{"quality"});
    EXPECT_NE(node->CompNodeController::parameterController("quality"), nullptr);
}

TEST_F(Instance, ADropDownListGivesAnEntryForEachPartOfItsParameters)
{
    instantiate({"filter", 1,
                 aDropDown("a", 11, "0;Single | 2;Double") + aDropDown("b", 12, "Left | Right")});
    const auto& numbered = node->description("a")->entries;
    ASSERT_EQ(numbered.size(), 2u);
    EXPECT_EQ(numbered[1].identifier, "Double");
    EXPECT_EQ(boost::any_cast<unsigned>(numbered[1].value), 2u);
    const auto& plain = node->description("b")->entries;
    ASSERT_EQ(plain.size(), 2u);
    EXPECT_EQ(plain[1].identifier, "Right");
    EXPECT_EQ(boost::any_cast<unsigned>(plain[1].value), 1u);
}

TEST_F(Instance, FindsTheOutputOfItsGraphBehindAConnector)
{
    instantiate();
    const auto* output = node->outputController(*node->outputConnector(1));
    ASSERT_NE(output, nullptr);
    EXPECT_EQ(output->identifier(), "gray");
}

TEST_F(Instance, DescribesTheOutputsOfItsGraph)
{
    GraphText filter = aFilterGraph();
    filter.outputs = "<graphoutput><identifier v=\"color\"/><uid v=\"21\"/><attributes>"
                     "<label v=\"Colour\"/><description v=\"All of it\"/></attributes><usages>"
                     "<usage><components v=\"RGBA\"/><name v=\"diffuse\"/></usage></usages>"
                     "</graphoutput>" +
                     anOutput("gray", 22);
    const auto& outputs = instantiate(filter).nodeDescription()->outputs;
    ASSERT_EQ(outputs.size(), 2u);
    EXPECT_EQ(outputs[0].identifier, "color");
    EXPECT_EQ(outputs[0].name, "Colour");
    EXPECT_EQ(outputs[0].tooltip, "All of it");
    EXPECT_EQ(outputs[0].type, 1u);
    ASSERT_EQ(outputs[0].usages.size(), 1u);
    EXPECT_EQ(outputs[0].usages[0].name, "diffuse");
    EXPECT_EQ(outputs[0].usages[0].components, "RGBA");
    EXPECT_EQ(outputs[1].name, "gray");
    EXPECT_EQ(outputs[1].type, 2u);
    EXPECT_EQ(node->outputConnector(0)->label(), "Colour");
    EXPECT_EQ(node->outputConnector(0)->tooltip(), "All of it");
}

TEST_F(Instance, OfAGhostDescribesTheOutputsThatItRemembers)
{
    const auto& outputs = openGhost().nodeDescription()->outputs;
    ASSERT_EQ(outputs.size(), 1u);
    EXPECT_EQ(outputs[0].identifier, "gray");
    EXPECT_EQ(outputs[0].name, "GHOST_OUTPUT_ENTRY_gray");
    EXPECT_EQ(outputs[0].tooltip, "GHOST_OUTPUT_ENTRY_DESC");
    EXPECT_EQ(outputs[0].type, 2u);
    EXPECT_EQ(node->outputConnector(0)->tooltip(), "GHOST_OUTPUT_ENTRY_DESC");
}

TEST_F(Instance, OfAPathIsAGhostUntilTheGraphIsThere)
{
    open(aFilterGraph());
    auto* ghost = graph->addInstanceNode({}, "pkg://later");
    ASSERT_NE(ghost, nullptr);
    EXPECT_EQ(ghost->instance()->path().value().get(), "pkg://later");
    EXPECT_FALSE(ghost->referencedGraph());
    EXPECT_EQ(ghost->outputConnectorCount(), 0u);
    rename(package->content().at(0), "later");
    EXPECT_TRUE(ghost->referencedGraph());
}

TEST_F(Instance, OfAPathThatLeadsToAGraphHasItsOutputs)
{
    open(aFilterGraph());
    EXPECT_EQ(graph->addInstanceNode({}, "pkg://filter")->outputConnectorCount(), 2u);
}

TEST_F(Instance, CanBeUndone)
{
    open(aFilterGraph());
    const std::string before = xmlOf(*package);
    graph->addInstanceNode(graphIn(*package, 0));
    const std::string after = xmlOf(*package);
    EXPECT_TRUE(workspace.undoAll());
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_TRUE(workspace.redoAll());
    EXPECT_EQ(xmlOf(*package), after);
}

TEST_F(Instance, OfAGraphThatIsNotThereHasAnEmptyPathAndNoOutputs)
{
    open(aFilterGraph());
    const auto* added = graph->addInstanceNode({});
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->instance()->path().value().get(), "");
    EXPECT_EQ(added->outputConnectorCount(), 0u);
}

TEST_F(Instance, OfAGraphToWhichNoPathLeadsIsRefused)
{
    GraphText filter = aFilterGraph();
    filter.identifier = "a/b";
    open(filter);
    const std::string before = xmlOf(*package);
    EXPECT_EQ(graph->addInstanceNode(graphIn(*package, 0)), nullptr);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(Instance, GetsConnectorsAndParametersForNewInputsOfItsGraph)
{
    instantiate();
    CompGraphController& filter = controllerIn(*package, 0);
    filter.addInputNode({"second", 1});
    filter.inputsController()->addTweakInput(256, "shine");
    EXPECT_EQ(inputsOf(*node), (Names{"picture", "mask", "second"}));
    EXPECT_NE(node->description("shine"), nullptr);
    EXPECT_NE(node->CompNodeController::parameterController("shine"), nullptr);
}

TEST_F(Instance, KeepsTheConnectionsOfInputsThatStay)
{
    instantiate();
    auto* source = graph->addAtomicFilter(Ksx::Data::Desc::FilterKind::Uniform);
    graph->connect(*source->outputConnector(0), *node->inputConnector(1), true);
    CompGraphController& filter = controllerIn(*package, 0);
    filter.inputsController()->removeInput(*filter.inputsController()->inputByIdentifier("amount"));
    ASSERT_EQ(node->inputConnectorCount(), 2u);
    EXPECT_EQ(node->inputConnector(1)->targets().size(), 1u);
}

TEST_F(Instance, IsAGhostWithWhatItRemembersWhileItsPackageIsNotOpen)
{
    const std::string before = (openGhost(), xmlOf(*package));
    EXPECT_FALSE(node->referencedGraph());
    EXPECT_EQ(node->nodeDescription()->nameKey, "GHOST_GRAPH");
    EXPECT_EQ(node->outputConnectorCount(), 1u);
    EXPECT_EQ(node->outputConnector(0)->label(), "GHOST_OUTPUT_ENTRY_gray");
    EXPECT_EQ(node->outputController(*node->outputConnector(0)), nullptr);
    EXPECT_EQ(inputsOf(*node), Names{"mask"});
    EXPECT_EQ(node->inputConnector(0)->targets().size(), 1u);
    EXPECT_TRUE(node->valueInputs().empty());
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(Instance, OfAPackageThatOpensLaterComesBackUnchanged)
{
    const std::string before = (openGhost(), xmlOf(*package));
    workspace.open(aPackage().containing(aFilterGraph().text()), "/somewhere/filters.obl", 500);
    EXPECT_TRUE(node->referencedGraph());
    EXPECT_EQ(inputsOf(*node), (Names{"picture", "mask"}));
    EXPECT_EQ(node->inputConnector(1)->targets().size(), 1u);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(Instance, BecomesAGhostWhenItsPackageIsClosed)
{
    openGhost();
    const auto& filters =
        workspace.open(aPackage().containing(aFilterGraph().text()), "/somewhere/filters.obl", 500);
    const std::string before = xmlOf(*package);
    const PackagesListManager::PackageBox closed(&filters);
    ASSERT_TRUE(workspace.packages().removePackages({closed}));
    EXPECT_FALSE(node->referencedGraph());
    EXPECT_EQ(inputsOf(*node), Names{"mask"});
    EXPECT_EQ(node->inputConnector(0)->targets().size(), 1u);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(Instance, ComesBackWithItsGraphByAnUndo)
{
    openInGroup();
    ASSERT_TRUE(node->referencedGraph());
    eraseFrom(tools().content(), 1);
    EXPECT_FALSE(node->referencedGraph());
    workspace.undoAll();
    EXPECT_TRUE(node->referencedGraph());
    EXPECT_EQ(inputsOf(*node), (Names{"picture", "mask"}));
    workspace.redoAll();
    EXPECT_FALSE(node->referencedGraph());
}

TEST_F(Instance, ComesBackWithTheGroupOfItsGraph)
{
    openInGroup();
    eraseFrom(package->content(), 0);
    EXPECT_FALSE(node->referencedGraph());
    workspace.undoAll();
    EXPECT_TRUE(node->referencedGraph());
    eraseFrom(tools().content(), 1);
    EXPECT_FALSE(node->referencedGraph());
}

TEST_F(Instance, IsAGhostWhileAGroupOnItsPathHasAnotherIdentifier)
{
    openInGroup();
    rename(package->content().at(0), "other");
    EXPECT_FALSE(node->referencedGraph());
    rename(package->content().at(0), "tools");
    EXPECT_TRUE(node->referencedGraph());
}

TEST_F(Instance, IsAGhostWhileItsGraphHasAnotherIdentifier)
{
    openInGroup();
    rename(tools().content().at(1), "other");
    EXPECT_FALSE(node->referencedGraph());
    workspace.undoAll();
    EXPECT_TRUE(node->referencedGraph());
}

TEST_F(Instance, FindsAGraphThatTakesTheIdentifierOnItsPath)
{
    openInGroup();
    rename(tools().content().at(1), "other");
    rename(tools().content().at(0), "filter");
    EXPECT_FALSE(node->referencedGraph()); // that is a group
    rename(tools().content().at(0), "empty");
    rename(tools().content().at(1), "filter");
    EXPECT_TRUE(node->referencedGraph());
}

TEST_F(Instance, BelongsToTheFirstGraphOfTheIdentifierOnItsPath)
{
    openInGroup(aGroup("spare", aFilterGraph().text()));
    rename(package->content().at(2), "tools");
    EXPECT_EQ(node->referencedGraph().get(), &tools().content().at(1));
    rename(package->content().at(0), "former");
    const auto& spare = dynamic_cast<const Group&>(package->content().at(2));
    EXPECT_EQ(node->referencedGraph().get(), &spare.content().at(0));
}

TEST_F(Instance, ComesBackWithItsPackageByAnUndo)
{
    openGhost();
    const auto& filters =
        workspace.open(aPackage().containing(aFilterGraph().text()), "/somewhere/filters.obl", 500);
    workspace.packages().removePackages({PackagesListManager::PackageBox(&filters)});
    EXPECT_FALSE(node->referencedGraph());
    workspace.undoAll();
    EXPECT_TRUE(node->referencedGraph());
}

TEST_F(Instance, ANodeOfAGrayscaleOutputMakesAVariantNodeBehindItGrayscale)
{
    instantiate();
    auto* blur = graph->addAtomicFilter(Ksx::Data::Desc::FilterKind::Blur);
    graph->connect(*node->outputConnector(1), *blur->inputConnector(0), true);
    EXPECT_EQ(blur->outputType(), 2u);
}

TEST_F(Instance, OfItsOwnGraphIsDescribedByIt)
{
    open(aFilterGraph());
    CompGraphController& filter = controllerIn(*package, 0);
    const auto* inner = filter.addInstanceNode(graphIn(*package, 0));
    ASSERT_NE(inner, nullptr);
    filter.addInputNode({"second", 1});
    EXPECT_EQ(inputsOf(*inner), (Names{"picture", "mask", "second"}));
}

} // namespace
