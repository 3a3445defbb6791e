#include "ksx/core/compgraphcontroller.h"

#include "content/nodekind.h"
#include "content/packageof.h"
#include "core/manipulatorcontext.h"
#include "data/content/graph.h"
#include "data/content/graphmanipulators.h"
#include "data/content/nodemanipulators.h"
#include "data/content/package.h"
#include "data/content/parametermanipulators.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/filtertable.h"
#include "data/desc/valuetype.h"
#include "editing/controllerlist.h"
#include "editing/dictionary.h"
#include "editing/keyindex.h"
#include "graph/graphoutputtype.h"
#include "graph/inputnodewatch.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/connectorcontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/objecturl.h"
#include "ksx/core/optionscontroller.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/rootoutputcontroller.h"
#include <QCoreApplication>
#include <unordered_set>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
namespace ValueType = Data::Desc::ValueType;
using Data::Desc::FilterKind;
using Orv::Core::ManipulatorList;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;
using GraphManipulator = ManipulatorStruct<Graph>;

const char* const ClassName = "Ksx::Core::CompGraphController";

struct RootOutputKey
{
    using Type = Uid;
    static const Orv::Data::Attribute<Type>& of(const RootOutput& output)
    {
        return output.output();
    }
};

struct AddFilterParameters
{
    unsigned filter;
    Uid uid = NoUid; // filled by the edit
};

struct AddInstanceParameters
{
    DataPointerBox<Graph> graph;
    std::string path;
    Uid uid = NoUid; // filled by the edit
};

struct AddBridgeParameters
{
    CompGraphController::BridgeEntry entry;
    Uid uid = NoUid; // filled by the edit
};

// What a node gives up when it is removed.
struct RemoveNodeParameters
{
    DataPointerBox<CompNode> node;
    DataPointerBox<ParamInput> input;
    DataPointerBox<GraphOutput> output;
};

Uid newNodeUid(const ManipulatorList<CompNode>& nodes)
{
    const auto& dictionary = DictionaryOf<CompNode>::of(nodes);
    return UidSource::shared().next([&](Uid uid) { return dictionary.contains(uid); });
}

// A new output is a color one, unless it can only be grayscale.
unsigned storedType(unsigned type)
{
    return type == ValueType::Image ? ValueType::ColorImage : type;
}

// The outputs of a node that stands in no document yet have no dictionary: `taken` are those that
// it has been given.
Uid addOutput(CompNode& node, unsigned type, std::unordered_set<Uid>& taken)
{
    auto output = std::make_unique<CompOutput>();
    const Uid uid = UidSource::shared().next([&](Uid used) { return taken.count(used) != 0; });
    taken.insert(uid);
    output->uid().assign(uid);
    output->comptype().value().assign(storedType(type));
    node.compOutputs().pushBack(std::move(output));
    return uid;
}

// The first output of a node.
void addOutput(CompNode& node, unsigned type)
{
    std::unordered_set<Uid> none;
    addOutput(node, type, none);
}

std::unique_ptr<CompNode> makeNode(Uid uid, std::unique_ptr<Orv::Data::BaseObject> implementation)
{
    auto node = std::make_unique<CompNode>();
    node->uid().assign(uid);
    node->compImplementation().set(std::move(implementation));
    return node;
}

void insertNode(const GraphManipulator& graph, std::unique_ptr<CompNode> node, int index)
{
    const std::size_t size = graph.get()->compNodes().size();
    const std::size_t place = index < 0 ? size : std::min(size, static_cast<std::size_t>(index));
    graph.compNodes().insert(place, std::move(node));
}

// The graph of an FX-map begins with one set of parameters, which is its result.
std::unique_ptr<ParamsGraph> makeFxMapGraph()
{
    const auto next = [] { return UidSource::shared().next({}); };
    auto data = std::make_unique<ParamsGraphData>();
    data->identifier().assign(
        QCoreApplication::translate("Ksx::Data::Desc::Filters", "DEFAULT_PARAMETERNODE_IDENTIFIER")
            .toLatin1()
            .toStdString());
    data->uid().assign(next());
    data->type().assign("paramset");
    auto node = std::make_unique<ParamsGraphNode>();
    node->uid().assign(next());
    node->type().assign("paramset");
    node->data().assign(data->uid().get());
    auto graph = std::make_unique<ParamsGraph>();
    graph->uid().assign(next());
    graph->rootnode().value().assign(node->uid().get());
    graph->paramsGraphDatas().pushBack(std::move(data));
    graph->paramsGraphNodes().pushBack(std::move(node));
    return graph;
}

bool applyAddFilter(GraphManipulator graph, const DataPointerBoxMasterKey&,
                    AddFilterParameters& added)
{
    const auto* description =
        Data::Desc::DescriptionTables::instance().filters().find(added.filter);
    auto filter = std::make_unique<CompFilter>();
    if (description != nullptr)
        filter->filter().assign(description->identifier);
    if (added.filter == static_cast<unsigned>(FilterKind::FxMaps))
        filter->paramsGraphs().pushBack(makeFxMapGraph());
    added.uid = newNodeUid(graph.compNodes());
    auto node = makeNode(added.uid, std::move(filter));
    addOutput(*node, description == nullptr ? ValueType::Image : description->outputTypes);
    insertNode(graph, std::move(node), -1);
    return true;
}

bool applyAddInstance(GraphManipulator graph, const DataPointerBoxMasterKey&,
                      AddInstanceParameters& added)
{
    auto instance = std::make_unique<CompInstance>();
    const std::string path = added.graph ? objectUrl(*added.graph) : added.path;
    const Package* package = packageOf(*graph.get());
    const Graph* instantiated = path.empty() ? nullptr : added.graph.get();
    if (!path.empty() && package != nullptr) {
        const auto* found = dynamic_cast<const Graph*>(resolveObjectUrl(path, *package));
        // A name that cannot stand in a path, or that another graph has as well, leads elsewhere.
        if (added.graph && found != instantiated)
            return false;
        instantiated = found;
    }
    instance->path().value().assign(path);
    added.uid = newNodeUid(graph.compNodes());
    CompInstance& made = *instance;
    auto node = makeNode(added.uid, std::move(instance));
    if (instantiated != nullptr) {
        const std::vector<unsigned> types = typesOfGraphOutputs(*instantiated);
        std::size_t index = 0;
        std::unordered_set<Uid> taken;
        for (const GraphOutput& output : instantiated->graphOutputs()) {
            auto bridging = std::make_unique<OutputBridging>();
            bridging->uid().assign(addOutput(*node, types[index++], taken));
            bridging->identifier().assign(output.identifier().get());
            made.outputBridgings().pushBack(std::move(bridging));
        }
    }
    insertNode(graph, std::move(node), -1);
    return true;
}

InterfaceEntry interfaceEntryOf(const CompGraphController::BridgeEntry& entry)
{
    return {entry.identifier, entry.type,
            entry.entryIndex < 0 ? AtEnd : static_cast<std::size_t>(entry.entryIndex),
            entry.usages};
}

bool applyAddInputNode(GraphManipulator graph, const DataPointerBoxMasterKey&,
                       AddBridgeParameters& added)
{
    auto bridge = std::make_unique<CompInputBridge>();
    bridge->entry().assign(applyAddInput(graph.paraminputs(), interfaceEntryOf(added.entry)));
    added.uid = newNodeUid(graph.compNodes());
    auto node = makeNode(added.uid, std::move(bridge));
    addOutput(*node, added.entry.type);
    insertNode(graph, std::move(node), added.entry.nodeIndex);
    return true;
}

bool applyAddOutputNode(GraphManipulator graph, const DataPointerBoxMasterKey&,
                        AddBridgeParameters& added)
{
    auto bridge = std::make_unique<CompOutputBridge>();
    bridge->output().assign(applyAddOutput(graph, interfaceEntryOf(added.entry)));
    bridge->connectionColorType().assign(added.entry.type);
    added.uid = newNodeUid(graph.compNodes());
    insertNode(graph, makeNode(added.uid, std::move(bridge)), added.entry.nodeIndex);
    return true;
}

bool applyRemoveNode(GraphManipulator graph, const DataPointerBoxMasterKey&,
                     const RemoveNodeParameters& removed)
{
    graph.compNodes().erase(removed.node);
    graph.paraminputs().erase(removed.input);
    if (!removed.output)
        return true;
    const Uid uid = removed.output->uid().get();
    auto rootOutputs = graph.root().rootOutputs();
    rootOutputs.erase(KeyIndex<RootOutput, RootOutputKey>::find(*rootOutputs.get(), uid));
    graph.graphOutputs().erase(removed.output);
    return true;
}

QString history(const char* key)
{
    return historyText(ClassName, key);
}

// Answers the uid that an edit has given to the node it added, NoUid if it failed.
template <class Parameters>
Uid addNode(const DataPointerBox<Graph>& graph, Parameters parameters,
            bool (*apply)(GraphManipulator, const DataPointerBoxMasterKey&, Parameters&),
            const char* key)
{
    const auto result = runEdit(graph, std::move(parameters), apply, history(key));
    return result ? result->uid : NoUid;
}

ParametersController::Groups commonGroups()
{
    return {Data::Desc::DescriptionTables::instance().commonParameters()};
}

bool hasPrimaryInput(const Graph& graph)
{
    return graph.primaryInput().value().get() != 0;
}

} // namespace

// The controllers that the graph owns, in the order of the document.
struct CompGraphController::Lists
{
    using NodeList = ControllerList<CompNode, CompNodeController>;
    using OutputList = ControllerList<GraphOutput, OutputController>;
    using RootOutputList = ControllerList<RootOutput, RootOutputController>;

    explicit Lists(CompGraphController& graph)
        : nodes(nodeCallbacks(graph)), outputs(outputCallbacks(graph)),
          rootOutputs(rootOutputCallbacks(graph))
    {}

    static NodeList::Callbacks nodeCallbacks(CompGraphController& graph);
    static OutputList::Callbacks outputCallbacks(CompGraphController& graph);
    static RootOutputList::Callbacks rootOutputCallbacks(CompGraphController& graph);

    NodeList nodes;
    OutputList outputs;
    RootOutputList rootOutputs;
};

CompGraphController::CompGraphController(const Graph& graph)
    : m_graph(&graph),
      m_parameters(std::make_unique<ParametersController>(graph.baseParameters(), DataContext(),
                                                          commonGroups(), hasPrimaryInput(graph))),
      m_inputs(std::make_shared<InputsController>(graph)),
      m_options(std::make_unique<OptionsController>(graph.options())),
      m_lists(std::make_unique<Lists>(*this))
{
    m_lists->outputs.follow(graph.graphOutputs());
    m_lists->rootOutputs.follow(graph.root().rootOutputs());
    m_lists->nodes.follow(graph.compNodes());
    settleAll();
    listenTo(graph.primaryInput().value(), m_primaryListener);
}

// What the parameters are relative to depends on whether there is a primary input.
void CompGraphController::onPrimaryInput()
{
    if (m_graph)
        m_parameters->setDescriptions(commonGroups(), hasPrimaryInput(*m_graph));
}

CompGraphController::~CompGraphController()
{
    close();
    m_lists->nodes.clear();
}

std::unique_ptr<CompNodeController> CompGraphController::makeNode(const CompNode& node)
{
    const Orv::Data::BaseObject* const implementation = node.compImplementation().get();
    std::unique_ptr<CompNodeController> made;
    switch (kindOf(node)) {
    case NodeKind::Filter:
        made = std::make_unique<CompFilterNodeController>(
            node, static_cast<const CompFilter&>(*implementation), *this);
        break;
    case NodeKind::Instance:
        made = std::make_unique<CompInstanceNodeController>(
            node, static_cast<const CompInstance&>(*implementation), *this);
        break;
    case NodeKind::OutputBridge:
        made = std::make_unique<CompOutputNodeController>(
            node, static_cast<const CompOutputBridge&>(*implementation), *this);
        break;
    case NodeKind::InputBridge:
        made = std::make_unique<CompInputNodeController>(
            node, static_cast<const CompInputBridge&>(*implementation), *this);
        break;
    case NodeKind::None:
    case NodeKind::External:
    case NodeKind::ExternalLink:
        break; // nobody edits these
    }
    if (made != nullptr)
        enterNode(*made);
    return made;
}

CompGraphController::Lists::NodeList::Callbacks
CompGraphController::Lists::nodeCallbacks(CompGraphController& graph)
{
    NodeList::Callbacks callbacks;
    callbacks.make = [&graph](const CompNode& node) { return graph.makeNode(node); };
    callbacks.added = [&graph](CompNodeController& node, std::size_t index,
                               const Orv::Data::DataMessage& message) {
        graph.settleNode(node, index, graph.m_lists->nodes.size(), editableContext(message));
        graph.nodeAdded(&node, index);
    };
    callbacks.aboutToRemove = [&graph](CompNodeController& node, std::size_t index) {
        graph.nodeAboutToBeRemoved(&node, index);
        graph.leaveNode(node);
    };
    callbacks.moved = [&graph] { graph.reorderNodes(); };
    return callbacks;
}

CompGraphController::Lists::OutputList::Callbacks
CompGraphController::Lists::outputCallbacks(CompGraphController& graph)
{
    OutputList::Callbacks callbacks;
    callbacks.make = [](const GraphOutput& output) {
        return std::make_unique<OutputController>(output);
    };
    callbacks.added = [&graph](OutputController& output, std::size_t index,
                               const Orv::Data::DataMessage&) {
        graph.outputAdded(&output, index);
    };
    callbacks.aboutToRemove = [&graph](OutputController& output, std::size_t index) {
        graph.outputAboutToBeRemoved(&output, index);
    };
    return callbacks;
}

CompGraphController::Lists::RootOutputList::Callbacks
CompGraphController::Lists::rootOutputCallbacks(CompGraphController& graph)
{
    RootOutputList::Callbacks callbacks;
    callbacks.make = [&graph](const RootOutput& output) {
        return std::make_unique<RootOutputController>(output, *graph.m_graph);
    };
    callbacks.added = [&graph](RootOutputController& output, std::size_t index,
                               const Orv::Data::DataMessage&) {
        graph.rootOutputAdded(&output, index);
    };
    callbacks.aboutToRemove = [&graph](RootOutputController& output, std::size_t index) {
        graph.rootOutputAboutToBeRemoved(&output, index);
    };
    return callbacks;
}

const Graph* CompGraphController::graph() const
{
    return m_graph.get();
}

QString CompGraphController::identifier() const
{
    return m_graph ? QString::fromLatin1(m_graph->identifier().get().c_str()) : QString();
}

template <class Controller>
Controller* CompGraphController::nodeOf(Uid uid) const
{
    return uid == NoUid ? nullptr : dynamic_cast<Controller*>(nodeByUid(uid));
}

CompFilterNodeController* CompGraphController::addAtomicFilter(FilterKind filter)
{
    return addAtomicFilter(static_cast<unsigned>(filter));
}

CompFilterNodeController* CompGraphController::addAtomicFilter(unsigned filter)
{
    const DataPointerBox<CompGraphController> self(this);
    const Uid uid = addNode(m_graph, AddFilterParameters{filter}, &applyAddFilter,
                            "ADD_ATOMIC_FILTER_HISTORY_DESC");
    return self ? nodeOf<CompFilterNodeController>(uid) : nullptr;
}

CompInstanceNodeController*
CompGraphController::addInstanceNode(const DataPointerBox<Graph>& instantiated,
                                     const std::string& path)
{
    const DataPointerBox<CompGraphController> self(this);
    const Uid uid = addNode(m_graph, AddInstanceParameters{instantiated, path}, &applyAddInstance,
                            "ADD_INSTANCE_NODE_HISTORY_DESC");
    return self ? nodeOf<CompInstanceNodeController>(uid) : nullptr;
}

CompInputNodeController* CompGraphController::addInputNode(const BridgeEntry& entry)
{
    const DataPointerBox<CompGraphController> self(this);
    const Uid uid = addNode(m_graph, AddBridgeParameters{entry}, &applyAddInputNode,
                            "ADD_INPUT_NODE_HISTORY_DESC");
    return self ? nodeOf<CompInputNodeController>(uid) : nullptr;
}

CompOutputNodeController* CompGraphController::addOutputNode(const BridgeEntry& entry)
{
    const DataPointerBox<CompGraphController> self(this);
    const Uid uid = addNode(m_graph, AddBridgeParameters{entry}, &applyAddOutputNode,
                            "ADD_OUTPUT_NODE_HISTORY_DESC");
    return self ? nodeOf<CompOutputNodeController>(uid) : nullptr;
}

void CompGraphController::removeNode(NodeController& node, bool disconnect)
{
    auto* const removed = dynamic_cast<CompNodeController*>(&node);
    if (removed == nullptr || &removed->graph() != this)
        return;
    RemoveNodeParameters parameters{DataPointerBox<CompNode>(removed->node()), {}, {}};
    if (const auto* bridge = dynamic_cast<CompInputNodeController*>(removed)) {
        if (const InputController* input = bridge->input())
            parameters.input.reset(input->input());
    } else if (const auto* output = dynamic_cast<CompOutputNodeController*>(removed)) {
        parameters.output = output->output();
    }
    const DataPointerBox<Graph> graph = m_graph; // this may die of the disconnecting
    const Transaction transaction(history("REMOVE_NODE_HISTORY_DESC"));
    if (disconnect)
        disconnectAll(node);
    runEdit(graph, parameters, &applyRemoveNode, QString());
}

bool CompGraphController::connect(ConnectorController& a, ConnectorController& b, bool replace)
{
    return connectWith(ClassName, a, b, replace);
}

bool CompGraphController::disconnect(ConnectorController& a, ConnectorController& b)
{
    return disconnectWith(ClassName, a, b);
}

std::vector<NodeController*> CompGraphController::nodes() const
{
    const auto controllers = m_lists->nodes.controllers();
    return {controllers.begin(), controllers.end()};
}

CompNodeController* CompGraphController::nodeController(const CompNode& node) const
{
    auto* const found = nodeOf<CompNodeController>(node.uid().get());
    return found != nullptr && found->node() == &node ? found : m_lists->nodes.find(node);
}

OutputController* CompGraphController::outputController(const GraphOutput& output) const
{
    return m_lists->outputs.find(output);
}

RootOutputController* CompGraphController::rootOutput(Uid output) const
{
    const RootOutput* const found =
        m_graph ? KeyIndex<RootOutput, RootOutputKey>::find(m_graph->root().rootOutputs(), output)
                : nullptr;
    return found == nullptr ? nullptr : m_lists->rootOutputs.find(*found);
}

std::vector<OutputController*> CompGraphController::outputs() const
{
    return m_lists->outputs.controllers();
}

std::vector<RootOutputController*> CompGraphController::rootOutputs() const
{
    return m_lists->rootOutputs.controllers();
}

InputNodeWatch& CompGraphController::inputNodes()
{
    if (m_inputNodes == nullptr)
        m_inputNodes = std::make_unique<InputNodeWatch>(m_graph->paraminputs());
    return *m_inputNodes;
}

} // namespace Ksx::Core
