#include "ksx/core/funcgraphcontroller.h"

#include "content/functionnode.h"
#include "core/manipulatorcontext.h"
#include "data/content/functionmanipulators.h"
#include "data/content/nodemanipulators.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/functiontable.h"
#include "editing/controllerlist.h"
#include "graph/connexionslistener.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include <utility>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorList;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;
using GraphManipulator = ManipulatorStruct<DynamicValue>;
using ConnexionList = Orv::Data::ContainerList<Connexion>;

const char* const ClassName = "Ksx::Core::FuncGraphController";

struct AddFunctionParameters
{
    const Data::Desc::Function* function; // of the tables
    Uid uid;
};

bool applyAddFunction(GraphManipulator graph, const DataPointerBoxMasterKey&,
                      const AddFunctionParameters& added)
{
    graph.paramNodes().pushBack(makeFunctionNode(*added.function, added.uid));
    return true;
}

void writeRoot(const GraphManipulator& graph, Uid uid)
{
    const auto root = graph.rootnode();
    root.valueOverloads().clear();
    root.value().set(uid);
}

struct RemoveNodeParameters
{
    DataPointerBox<ParamNode> node;
    bool isOutput = false;
};

bool applyRemoveNode(GraphManipulator graph, const DataPointerBoxMasterKey&,
                     const RemoveNodeParameters& removed)
{
    if (removed.isOutput)
        writeRoot(graph, 0); // like this, no root is written
    return graph.paramNodes().erase(removed.node);
}

struct SetOutputParameters
{
    DataPointerBox<ParamNode> node;
    Uid uid;                     // another one than the node has, if that cannot be a root
    bool hasConnections = false; // those that name the former uid lead to the node
};

bool applySetOutput(GraphManipulator graph, const DataPointerBoxMasterKey&,
                    const SetOutputParameters& output)
{
    auto nodes = graph.paramNodes();
    const std::size_t index = output.node ? nodes.get()->indexOf(*output.node) : 0;
    if (!output.node || index == nodes.get()->size())
        return false;
    const Uid former = output.node->uid().get();
    nodes.at(index).uid().setIfChanged(output.uid);
    for (std::size_t i = 0; output.hasConnections && i < nodes.get()->size(); ++i) {
        auto connexions = nodes.at(i).connexions();
        for (std::size_t j = 0; j < connexions.get()->size(); ++j)
            if (connexions.get()->at(j).connRef().value().get() == former)
                connexions.at(j).connRef().value().set(output.uid);
    }
    writeRoot(graph, output.uid);
    return true;
}

struct ReplaceEntriesParameters
{
    std::vector<DataPointerBox<Connexion>> entries;
    ConnectionDataInfo info; // of what takes the place of each
};

bool applyReplaceEntries(ManipulatorList<Connexion> connexions, const DataPointerBoxMasterKey&,
                         const ReplaceEntriesParameters& replaced)
{
    for (const DataPointerBox<Connexion>& entry : replaced.entries) {
        const std::size_t index =
            entry ? connexions.get()->indexOf(*entry) : connexions.get()->size();
        if (index == connexions.get()->size())
            return false;
        auto connexion = std::make_unique<Connexion>();
        connexion->identifier().assign(replaced.info.identifier);
        connexion->connRef().value().assign(replaced.info.nodeUid);
        connexions.erase(index, 1);
        connexions.insert(index, std::move(connexion));
    }
    return true;
}

void replaceEntries(InputConnectorController& list, const OutputConnectorController& source,
                    const OutputConnectorController& replacement)
{
    ReplaceEntriesParameters parameters;
    for (const ConnectionController* connection : source.connections())
        if (connection->input() == &list)
            parameters.entries.emplace_back(connection->connexion());
    parameters.info = replacement.node().connectionInfo(replacement, list.identifier());
    runEdit(DataPointerBox<ConnexionList>(list.node().connexions()), std::move(parameters),
            &applyReplaceEntries, historyText(ClassName, "CONNECT_TWO_NODES_HISTORY_DESC"));
}

} // namespace

// Keeps the inputs of all nodes for as long as it lives.
class FuncGraphController::Hold
{
public:
    explicit Hold(FuncGraphController& graph) : m_graph(&graph) { ++graph.m_holdCount; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold()
    {
        FuncGraphController* const graph = m_graph.access();
        if (graph == nullptr || --graph->m_holdCount != 0)
            return;
        for (const auto& node : std::exchange(graph->m_untidy, {}))
            if (node)
                node.access()->dropUnusedInputs();
    }

private:
    DataPointerBox<FuncGraphController> m_graph; // which may die of an edit
};

// The controllers of the nodes, in the order of the document.
class FuncGraphController::Nodes
{
    using List = ControllerList<ParamNode, FuncNodeController>;

public:
    explicit Nodes(FuncGraphController& graph) : list(callbacks(graph)) {}

    List list;

private:
    static List::Callbacks callbacks(FuncGraphController& graph)
    {
        List::Callbacks callbacks;
        callbacks.make = [&graph](const ParamNode& node) {
            auto controller = std::make_unique<FuncNodeController>(node, graph);
            graph.enterNode(*controller);
            return controller;
        };
        callbacks.added = [&graph](FuncNodeController& node, std::size_t index,
                                   const Orv::Data::DataMessage& message) {
            graph.settleNode(node, index, graph.m_nodes->list.size(), editableContext(message));
            graph.nodeAdded(&node, index);
        };
        callbacks.aboutToRemove = [&graph](FuncNodeController& node, std::size_t index) {
            graph.nodeAboutToBeRemoved(&node, index);
            graph.leaveNode(node);
        };
        callbacks.moved = [&graph] { graph.reorderNodes(); };
        return callbacks;
    }
};

FuncGraphController::FuncGraphController(const DynamicValue& graph)
    : m_graph(&graph), m_nodes(std::make_unique<Nodes>(*this))
{
    m_nodes->list.follow(graph.paramNodes());
    settleAll();
}

FuncGraphController::~FuncGraphController()
{
    close();
    m_nodes->list.clear();
}

const Data::Content::DynamicValue* FuncGraphController::graph() const
{
    return m_graph.get();
}

FuncNodeController* FuncGraphController::addAtomicFunction(Data::Desc::FunctionsEnum function)
{
    return addAtomicFunction(static_cast<unsigned>(function));
}

FuncNodeController* FuncGraphController::addAtomicFunction(unsigned function)
{
    const auto* description = Data::Desc::DescriptionTables::instance().functions().find(function);
    if (description == nullptr)
        return nullptr;
    const Uid uid =
        UidSource::shared().next([this](Uid used) { return nodeByUid(used) != nullptr; });
    const DataPointerBox<FuncGraphController> self(this);
    if (!runEdit(m_graph, AddFunctionParameters{description, uid}, &applyAddFunction,
                 historyText(ClassName, "ADD_ATOMIC_FUNCTION_HISTORY_DESC")) ||
        !self)
        return nullptr;
    return static_cast<FuncNodeController*>(nodeByUid(uid));
}

void FuncGraphController::removeNode(NodeController& node, bool disconnect)
{
    auto* const removed = dynamic_cast<FuncNodeController*>(&node);
    if (removed == nullptr || &removed->graph() != this)
        return;
    const RemoveNodeParameters parameters{DataPointerBox<ParamNode>(removed->node()),
                                          removed->isOutputNode()};
    const DataPointerBox<DynamicValue> graph = m_graph; // this may die of the disconnecting
    const Hold hold(*this);
    const Transaction transaction(historyText(ClassName, "REMOVE_NODE_HISTORY_DESC"));
    if (disconnect)
        disconnectAll(node);
    runEdit(graph, parameters, &applyRemoveNode, QString());
}

bool FuncGraphController::connect(ConnectorController& a, ConnectorController& b, bool replace)
{
    const Hold hold(*this);
    return connectWith(ClassName, a, b, replace);
}

bool FuncGraphController::disconnect(ConnectorController& a, ConnectorController& b)
{
    const Hold hold(*this);
    return disconnectWith(ClassName, a, b);
}

void FuncGraphController::replaceSource(FuncNodeController& replaced,
                                        FuncNodeController& replacement)
{
    if (&replaced.graph() != this || &replacement.graph() != this)
        return;
    const Hold hold(*this);
    OutputConnectorController& former = *replaced.outputConnector(0);
    OutputConnectorController& output = *replacement.outputConnector(0);
    const DataPointerBox<FuncGraphController> self(this);
    const DataPointerBox<OutputConnectorController> source(&former), other(&output);
    std::vector<DataPointerBox<ConnectorController>> targets;
    for (const ConnectorController* target : former.targets())
        targets.emplace_back(target);
    for (const auto& target : targets) {
        if (!self || !source || !other || !target)
            continue; // who heard of the last edit has taken it away
        auto& input = static_cast<InputConnectorController&>(*target.access());
        // An input stands among the targets once for each of its connections.
        if (!input.isConnectedTo(former) || &input.node() == &replacement)
            continue;
        if (input.node().takesList(input.identifier()))
            replaceEntries(input, former, output);
        else
            makeConnection(ClassName, output, input, true);
    }
}

void FuncGraphController::tidyLater(FuncNodeController& node)
{
    m_untidy.emplace_back(&node);
}

FuncNodeController* FuncGraphController::outputNode() const
{
    if (!m_graph || !m_graph->rootnode().isModified())
        return nullptr;
    return static_cast<FuncNodeController*>(nodeByUid(m_graph->rootnode().value().get()));
}

bool FuncGraphController::setOutputNode(FuncNodeController& node)
{
    const bool hasValue = node.description() == nullptr || node.description()->hasOutput();
    if (!hasValue || &node.graph() != this || node.isOutputNode())
        return false;
    SetOutputParameters output{DataPointerBox<ParamNode>(node.node()), node.uid()};
    if (output.uid == 0) { // a root of 0 is none
        output.uid = UidSource::shared().next(
            [this](Uid used) { return used == 0 || nodeByUid(used) != nullptr; });
        output.hasConnections = nodeByUid(0) == &node;
    }
    return runEdit(m_graph, output, &applySetOutput,
                   QStringLiteral("Debug: Setting a node as output"))
        .has_value();
}

std::vector<NodeController*> FuncGraphController::nodes() const
{
    const auto controllers = m_nodes->list.controllers();
    return {controllers.begin(), controllers.end()};
}

FuncNodeController* FuncGraphController::nodeAt(std::size_t index) const
{
    Q_ASSERT(index < m_nodes->list.size());
    return m_nodes->list.at(index);
}

FuncGraphController*
graphController(const Orv::Data::DataPointerBox<Data::Content::DynamicValue>& graph)
{
    return GraphControllerListener::of<FuncGraphController>(graph);
}

} // namespace Ksx::Core
