// Times edits of a large document inside the library: "editgraph EDIT COUNT".
// Prints the cpu seconds of the edits alone, without the opening of the document.
#include "core/manipulatorlist.h"
#include "data/content/compnode.h"
#include "data/content/dynamicvalue.h"
#include "data/content/graph.h"
#include "data/content/graphmanipulators.h"
#include "data/content/nodemanipulators.h"
#include "data/content/package.h"
#include "data/content/parameter.h"
#include "data/content/resource.h"
#include "data/desc/parameter.h"
#include "editdocument.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compnodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/parametercontroller.h"
#include "ksx/core/resourcelistener.h"
#include "ksx/core/tweakinputcontroller.h"
#include "programcommand/graphspecializer.h"
#include <QFile>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <vector>

namespace {

using namespace Benchmarks;
using namespace Ksx::Core;
using Orv::Core::ManipulatorStruct;
using Orv::Data::Float1;

// What a document holds before its edits.

void openEmpty(EditDocument& document, unsigned)
{
    document.addGraph("g");
}

void openChain(EditDocument& document, unsigned count)
{
    addNodes(document.addGraph("g"), count);
}

void openInputs(EditDocument& document, unsigned count)
{
    addInputs(document.addGraph("g"), count);
}

void openReaders(EditDocument& document, unsigned count)
{
    auto& graph = document.addGraph("g");
    addInputs(graph, 1);
    addReaders(graph, count, 1);
}

void openReadersOfMany(EditDocument& document, unsigned count)
{
    auto& graph = document.addGraph("g");
    addInputs(graph, count);
    addReaders(graph, count, count);
}

void openSharedInputs(EditDocument& document, unsigned count)
{
    auto& graph = document.addGraph("g");
    addInputs(graph, count);
    addReaders(graph, 2 * count, count);
}

void openInstances(EditDocument& document, unsigned count)
{
    addOutputs(document.addGraph("g"), 1);
    addInstances(document.addGraph("user"), count, "g");
}

void openOneInstance(EditDocument& document, unsigned)
{
    openInstances(document, 1);
}

void openFunction(EditDocument& document, unsigned count)
{
    addFunction(document.addGraph("g"), count, false);
}

void openFilter(EditDocument& document, unsigned count)
{
    auto& graph = document.addGraph("g");
    addInputs(graph, count);
    addOutputs(graph, count);
}

// The four below have twice as many of what is removed.

void openTwiceTheInputs(EditDocument& document, unsigned count)
{
    addInputs(document.addGraph("g"), 2 * count);
}

void openTwiceTheOutputs(EditDocument& document, unsigned count)
{
    addOutputs(document.addGraph("g"), 2 * count);
}

void openTwiceTheNodes(EditDocument& document, unsigned count)
{
    addFedNodes(document.addGraph("g"), 2 * count);
}

void openTwiceTheEntries(EditDocument& document, unsigned count)
{
    addFunction(document.addGraph("g"), 2 * count, true);
}

void openFilterOfOneInstance(EditDocument& document, unsigned count)
{
    openFilter(document, count);
    addFeedingInstance(document.addGraph("user"), "g", count);
}

// The edits.

bool build(EditDocument& document, unsigned count)
{
    const NodeController* first = document.graph().nodeByUid(1);
    return first != nullptr && (count == 1 || first->inputConnector(0)->targets().size() == 1);
}

bool buildInstances(EditDocument& document, unsigned count)
{
    return document.graph(1).nodes().size() == count;
}

bool lookUp(EditDocument& document, unsigned count)
{
    const CompGraphController& graph = document.graph();
    bool isFound = true;
    for (unsigned i = 1; i <= count; ++i)
        isFound = isFound && graph.nodeByUid(i) != nullptr &&
                  graph.inputsController()->inputByIdentifier("x1") != nullptr;
    return isFound;
}

// Connects the last node's output to every other node.
bool connect(EditDocument& document, unsigned count)
{
    CompGraphController& graph = document.graph();
    OutputConnectorController& source = *graph.nodeByUid(count)->outputConnector(0);
    bool isDone = true;
    for (unsigned i = 1; i < count; ++i)
        isDone = graph.connect(source, *graph.nodeByUid(i)->inputConnector(0), true) && isDone;
    return isDone;
}

bool freeze(EditDocument& document, unsigned)
{
    InputsController& inputs = *document.graph().inputsController();
    return switchToConstant(inputs, *inputs.inputByIdentifier("x1"), Float1{{0.5F}});
}

template <class Edit>
bool forAllInputs(EditDocument& document, const Edit& edit)
{
    InputsController& inputs = *document.graph().inputsController();
    bool isDone = true;
    for (InputController* input : inputs.inputs())
        isDone = edit(inputs, *input) && isDone;
    return isDone;
}

bool freezeAll(EditDocument& document, unsigned)
{
    return forAllInputs(document, [](InputsController& inputs, InputController& input) {
        return switchToConstant(inputs, input, Float1{{0.5F}});
    });
}

bool removeInputs(EditDocument& document, unsigned)
{
    return forAllInputs(document, [](InputsController& inputs, InputController& input) {
        return inputs.removeInput(input);
    });
}

// Returns every second one, in their order.
template <class Item>
std::vector<Item*> everySecond(const std::vector<Item*>& items)
{
    std::vector<Item*> chosen;
    for (std::size_t i = 1; i < items.size(); i += 2)
        chosen.push_back(items[i]);
    return chosen;
}

// Returns half of them, from here and there.
template <class Item>
std::vector<Item*> scattered(const std::vector<Item*>& items)
{
    constexpr std::size_t prime = 7368787;
    std::vector<Item*> chosen;
    for (std::size_t i = 0; i < items.size() / 2; ++i)
        chosen.push_back(items[(i + 1) * prime % items.size()]);
    return chosen;
}

template <class Item>
using Choice = std::vector<Item*> (*)(const std::vector<Item*>&);

template <Choice<InputController> Chosen>
bool removeSomeInputs(EditDocument& document, unsigned count)
{
    InputsController& inputs = *document.graph().inputsController();
    for (InputController* input : Chosen(inputs.inputs()))
        inputs.removeInput(*input);
    return inputs.inputs().size() == count;
}

template <Choice<NodeController> Chosen>
bool removeSomeNodes(EditDocument& document, unsigned count)
{
    CompGraphController& graph = document.graph();
    for (NodeController* node : Chosen(graph.nodes()))
        graph.removeNode(*node, true);
    return graph.nodes().size() == count;
}

std::vector<ConnectorController*> targetsOf(const ConnectorController& connector)
{
    const auto targets = connector.targets();
    return {targets.begin(), targets.end()};
}

template <Choice<ConnectorController> Chosen>
bool disconnectSomeNodes(EditDocument& document, unsigned count)
{
    CompGraphController& graph = document.graph();
    OutputConnectorController& output = *graph.nodeByUid(1)->outputConnector(0);
    for (ConnectorController* target : Chosen(targetsOf(output)))
        graph.disconnect(output, *target);
    return output.targets().size() == count;
}

bool setDefaultValues(EditDocument& document, unsigned)
{
    return forAllInputs(document, [](InputsController&, InputController& input) {
        return input.setDefaultValue(Float1{{0.25F}});
    });
}

bool describeInputs(EditDocument& document, unsigned)
{
    Ksx::Data::Desc::Parameter description;
    description.identifier = "size";
    description.type = 256;
    description.defaultValue = Float1{{0.5F}};
    return forAllInputs(document, [&](InputsController&, InputController& input) {
        return static_cast<TweakInputController&>(input).initFromDescription(description);
    });
}

bool addTweakInputs(EditDocument& document, unsigned count)
{
    InputsController& inputs = *document.graph().inputsController();
    bool isDone = true;
    for (unsigned i = 0; i < count; ++i)
        isDone = inputs.addTweakInput(256, std::string()) != nullptr && isDone;
    return isDone;
}

bool addInputNodes(EditDocument& document, unsigned count)
{
    bool isDone = true;
    for (unsigned i = 0; i < count; ++i)
        isDone = document.graph().addInputNode({"in", 1}) != nullptr && isDone;
    return isDone;
}

bool addOutputNodes(EditDocument& document, unsigned count)
{
    bool isDone = true;
    for (unsigned i = 0; i < count; ++i)
        isDone = document.graph().addOutputNode({"out", 1}) != nullptr && isDone;
    return isDone;
}

bool removeOutputNodes(EditDocument& document, unsigned)
{
    CompGraphController& graph = document.graph();
    for (NodeController* node : graph.nodes())
        graph.removeNode(*node, true);
    return graph.nodes().empty();
}

// One edit that takes every other node out, in no order.
bool removeScattered(EditDocument& document, unsigned count)
{
    using Ksx::Data::Content::CompNode;
    using Orv::Core::ManipulatorList;
    const auto erase = +[](ManipulatorList<CompNode> nodes,
                           const Orv::Data::DataPointerBoxMasterKey&, const unsigned& removed) {
        std::mt19937 random(1);
        for (unsigned i = 0; i < removed; ++i) {
            const std::size_t size = nodes.get()->size();
            if (size == 0)
                return false;
            nodes.erase(random() % size, 1);
        }
        return true;
    };
    CompGraphController& graph = document.graph();
    const Orv::Data::DataPointerBox<Orv::Data::ContainerList<CompNode>> nodes(
        &graph.graph()->compNodes());
    return runEdit(nodes, count / 2, erase, QString()).has_value() &&
           graph.nodes().size() == count - count / 2;
}

bool addGraphs(EditDocument& document, unsigned count)
{
    bool isDone = true;
    for (unsigned i = 0; i < count; ++i)
        isDone = document.package().addGraph(QString()) != nullptr && isDone;
    return isDone;
}

bool addResources(EditDocument& document, unsigned count)
{
    bool isDone = true;
    for (unsigned i = 0; i < count; ++i)
        isDone =
            document.package().addLinkedResource(3, QStringLiteral("PNG"), QString(),
                                                 QStringLiteral("/there/none.png")) != nullptr &&
            isDone;
    return isDone;
}

bool addInstanceNodes(EditDocument& document, unsigned count)
{
    CompGraphController& graph = document.graph(1);
    bool isDone = true;
    for (unsigned i = 0; i < count; ++i)
        isDone = graph.addInstanceNode(document.graphBox(0)) != nullptr && isDone;
    return isDone;
}

// One edit of a graph with many instances.
bool addOneOutput(EditDocument& document, unsigned)
{
    return document.graph().addOutputNode({"out", 1}) != nullptr;
}

bool addOneInput(EditDocument& document, unsigned)
{
    return document.graph().addInputNode({"in", 1}) != nullptr;
}

template <class Item>
bool applyRename(ManipulatorStruct<Item> item, const Orv::Data::DataPointerBoxMasterKey&,
                 const std::string& identifier)
{
    item.identifier().set(identifier);
    return true;
}

template <class Item>
bool rename(const Item& item)
{
    return runEdit(Orv::Data::DataPointerBox<Item>(&item), "renamed_" + item.identifier().get(),
                   &applyRename<Item>, QString())
        .has_value();
}

bool renameInputs(EditDocument& document, unsigned)
{
    bool isDone = true;
    for (const auto& input : document.graph().graph()->paraminputs())
        isDone = rename(input) && isDone;
    return isDone;
}

bool renameOutputs(EditDocument& document, unsigned)
{
    bool isDone = true;
    for (const auto& output : document.graph().graph()->graphOutputs())
        isDone = rename(output) && isDone;
    return isDone;
}

FuncGraphController& functionOf(EditDocument& document)
{
    auto* const node = static_cast<CompNodeController*>(document.graph().nodeByUid(1));
    const auto* stored = node->parameterController("intensity")->stored();
    return *graphController(Orv::Data::DataPointerBox<Ksx::Data::Content::DynamicValue>(
        static_cast<const Ksx::Data::Content::DynamicValue*>(stored->paramValue().get())));
}

template <Choice<ConnectorController> Chosen>
bool disconnectSomeEntries(EditDocument& document, unsigned count)
{
    FuncGraphController& function = functionOf(document);
    InputConnectorController& list = *function.nodeByUid(1)->inputConnector(0);
    for (ConnectorController* source : Chosen(targetsOf(list)))
        function.disconnect(*source, list);
    return list.targets().size() == count;
}

// Connects all constants of a function to the list that a node takes.
bool connectList(EditDocument& document, unsigned count)
{
    FuncGraphController& function = functionOf(document);
    InputConnectorController& list = *function.nodeByUid(1)->inputConnector(0);
    bool isDone = true;
    for (unsigned i = 2; i <= count + 1; ++i)
        isDone =
            function.connect(*function.nodeByUid(i)->outputConnector(0), list, false) && isDone;
    return isDone;
}

bool specialize(EditDocument& document, unsigned)
{
    ProgramCommand::GraphSpecializer specializer(document.package(), document.graphBox());
    if (!specializer.instantiate(QStringLiteral("special")) || !specializer.addOutputs())
        return false;
    specializer.exposeParameters();
    return true;
}

struct Row
{
    const char* name;
    void (*open)(EditDocument&, unsigned count);
    bool (*edit)(EditDocument&, unsigned count);
};

constexpr Row Rows[] = {
    {"build", &openChain, &build},
    {"build-instances", &openInstances, &buildInstances},
    {"lookup", &openReaders, &lookUp},
    {"connect", &openChain, &connect},
    {"connect-list", &openFunction, &connectList},
    {"freeze", &openReaders, &freeze},
    {"freeze-all", &openReadersOfMany, &freezeAll},
    {"freeze-shared", &openSharedInputs, &freezeAll},
    {"freeze-unread", &openInputs, &freezeAll},
    {"add-tweak-input", &openEmpty, &addTweakInputs},
    {"add-input-node", &openEmpty, &addInputNodes},
    {"add-output-node", &openEmpty, &addOutputNodes},
    {"remove-input", &openInputs, &removeInputs},
    {"remove-output-node", &openFilter, &removeOutputNodes},
    {"remove-scattered-nodes", &openChain, &removeScattered},
    {"thin-inputs", &openTwiceTheInputs, &removeSomeInputs<&everySecond>},
    {"scatter-inputs", &openTwiceTheInputs, &removeSomeInputs<&scattered>},
    {"thin-outputs", &openTwiceTheOutputs, &removeSomeNodes<&everySecond>},
    {"scatter-outputs", &openTwiceTheOutputs, &removeSomeNodes<&scattered>},
    {"thin-nodes", &openTwiceTheNodes, &removeSomeNodes<&everySecond>},
    {"scatter-nodes", &openTwiceTheNodes, &removeSomeNodes<&scattered>},
    {"thin-targets", &openTwiceTheNodes, &disconnectSomeNodes<&everySecond>},
    {"scatter-targets", &openTwiceTheNodes, &disconnectSomeNodes<&scattered>},
    {"thin-entries", &openTwiceTheEntries, &disconnectSomeEntries<&everySecond>},
    {"scatter-entries", &openTwiceTheEntries, &disconnectSomeEntries<&scattered>},
    {"rename-input", &openInputs, &renameInputs},
    {"rename-output", &openFilter, &renameOutputs},
    {"set-default-value", &openInputs, &setDefaultValues},
    {"describe-input", &openInputs, &describeInputs},
    {"add-graph", &openEmpty, &addGraphs},
    {"add-resource", &openEmpty, &addResources},
    {"add-instance", &openOneInstance, &addInstanceNodes},
    {"add-output-of-one-instance", &openOneInstance, &addOutputNodes},
    {"add-input-of-one-instance", &openOneInstance, &addInputNodes},
    {"rename-input-of-one-instance", &openFilterOfOneInstance, &renameInputs},
    {"rename-output-of-one-instance", &openFilterOfOneInstance, &renameOutputs},
    {"remove-output-of-one-instance", &openFilterOfOneInstance, &removeOutputNodes},
    {"rename-output-of-instances", &openInstances, &renameOutputs},
    {"one-output-of-instances", &openInstances, &addOneOutput},
    {"one-input-of-instances", &openInstances, &addOneInput},
    {"specialize", &openFilter, &specialize},
};

const Row* findRow(const std::string& name)
{
    for (const Row& row : Rows)
        if (name == row.name)
            return &row;
    return nullptr;
}

int printUsage()
{
    std::fprintf(stderr, "Usage: editgraph EDIT COUNT\nEDIT is one of");
    for (const Row& row : Rows)
        std::fprintf(stderr, " %s", row.name);
    std::fprintf(stderr, "\n");
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    const Row* row = argc == 3 ? findRow(argv[1]) : nullptr;
    const auto count = argc == 3 ? static_cast<unsigned>(std::atoi(argv[2])) : 0u;
    if (row == nullptr || count == 0)
        return printUsage();
    static EditDocument document; // taking it apart is no part of the edits
    row->open(document, count);
    document.open();
    const std::clock_t begin = std::clock();
    const bool isDone = row->edit(document, count);
    std::printf("%.4f\n", static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    std::fflush(stdout);
    std::_Exit(isDone ? 0 : 1);
}
