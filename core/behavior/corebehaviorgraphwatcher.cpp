#include "ksx/core/behavior/graphwatcher.h"

#include "core/manipulatorcontext.h"
#include "data/datamessage.h"
#include "data/shadowobject.h"
#include "ksx/core/behavior/compinstancewriter.h"
#include "ksx/core/behavior/pathtarget.h"
#include "ksx/core/behavior/synccompinstance.h"
#include "ksx/core/edit.h"
#include "ksx/core/graphoutputtype.h"
#include "ksx/core/packageof.h"
#include <algorithm>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Data::BaseObject;
using Orv::Data::ChangeRun;
using Orv::Data::ChangeType;
using Orv::Data::DataMessage;
using Orv::Data::RunKind;

InterfaceItems inputsOf(const Graph& graph)
{
    InterfaceItems items;
    items.reserve(graph.paraminputs().size());
    for (const ParamInput& input : graph.paraminputs())
        items.push_back({input.uid().get(), input.type().value().get(), input.identifier().get()});
    return items;
}

} // namespace

InterfaceItems outputsOf(const Graph& graph)
{
    const std::vector<unsigned> types = typesOfGraphOutputs(graph);
    InterfaceItems items;
    items.reserve(types.size());
    for (const GraphOutput& output : graph.graphOutputs())
        items.push_back({output.uid().get(), types[items.size()], output.identifier().get()});
    return items;
}

// On the nodes that count.
class GraphWatcher::NodeListener final
    : public Orv::Core::ListenerSimple<Priority, ChangeType::Descendant,
                                       Orv::Data::MessageMask::Content>
{
public:
    explicit NodeListener(GraphWatcher& owner) : m_owner(owner) {}
    void deliver(const DataMessage& message) override { m_owner.followOutputs(message); }

private:
    GraphWatcher& m_owner;
};

// On the list of nodes.
class GraphWatcher::NodeListListener final
    : public Orv::Core::ListenerSimple<Priority, ChangeType::Inserted | ChangeType::Erased>
{
public:
    explicit NodeListListener(GraphWatcher& owner) : m_owner(owner) {}
    void deliver(const DataMessage& message) override
    {
        if (m_owner.concernsOutputs(message))
            m_owner.followOutputs(message);
    }

private:
    GraphWatcher& m_owner;
};

void GraphWatcher::watch(const Graph& graph)
{
    const Orv::Data::ShadowObject* const shadow = graph.graphOutputs().shadow();
    if (shadow != nullptr && shadow->findListener<GraphWatcher>() != nullptr)
        return;
    auto* watcher = new GraphWatcher(graph); // the first shadow that dies deletes it
    listenTo(graph.graphOutputs(), *watcher);
    listenTo(graph.paraminputs(), *watcher);
}

GraphWatcher::GraphWatcher(const Graph& graph)
    : m_graph(&graph), m_inputs(recordsOf(inputsOf(graph))), m_outputs(recordsOf(outputsOf(graph))),
      m_nodeListener(std::make_unique<NodeListener>(*this)),
      m_nodeListListener(std::make_unique<NodeListListener>(*this))
{
    listenTo(graph.compNodes(), *m_nodeListListener);
    listenToNodes();
}

GraphWatcher::~GraphWatcher() = default;

void GraphWatcher::listenToNodes()
{
    GraphOutputNodes found = nodesOfGraphOutputs(*m_graph);
    m_missingNodes = std::move(found.missing);
    std::sort(found.nodes.begin(), found.nodes.end()); // one can count for several outputs
    found.nodes.erase(std::unique(found.nodes.begin(), found.nodes.end()), found.nodes.end());
    if (std::equal(found.nodes.begin(), found.nodes.end(), m_nodes.begin(), m_nodes.end(),
                   [](const CompNode* node, const auto& box) { return box == node; }))
        return;
    for (const auto& node : m_nodes)
        if (Orv::Data::ShadowObject* shadow = node ? node->shadow() : nullptr)
            shadow->removeListener(*m_nodeListener);
    m_nodes.clear();
    m_nodes.reserve(found.nodes.size());
    for (const CompNode* node : found.nodes) {
        m_nodes.emplace_back(node);
        listenTo(*node, *m_nodeListener);
    }
}

bool GraphWatcher::concernsOutputs(const DataMessage& nodesMessage) const
{
    const auto& nodes = m_graph->compNodes();
    for (const auto& node : m_nodes)
        if (!node || node->getParent() != &nodes)
            return true;
    std::size_t index = 0;
    for (const ChangeRun& run : nodesMessage.runs.runs()) {
        for (std::size_t i = index; run.kind == RunKind::Inserted && i < index + run.count; ++i) {
            const Uid uid = nodes.at(i).uid().get();
            if (isOutputNode(nodes.at(i)) || std::find(m_missingNodes.begin(), m_missingNodes.end(),
                                                       uid) != m_missingNodes.end())
                return true;
        }
        index += run.inNewList() ? run.count : 0;
    }
    return false;
}

void GraphWatcher::deliver(const DataMessage& message)
{
    if (m_graph && message.object.get() == &m_graph->paraminputs())
        followInputs(message);
    else
        followOutputs(message);
}

void GraphWatcher::followInputs(const DataMessage& message)
{
    if (!m_graph || !isAttached(*m_graph))
        return;
    const InterfaceItems inputs = inputsOf(*m_graph);
    const InterfaceDiff diff(m_inputs, inputs);
    if (diff.isEmpty())
        return;
    m_inputs = recordsOf(inputs);
    writeTo(message, &diff, nullptr);
}

void GraphWatcher::followOutputs(const DataMessage& message)
{
    if (!m_graph || !isAttached(*m_graph))
        return;
    listenToNodes();
    const InterfaceItems outputs = outputsOf(*m_graph);
    const InterfaceDiff diff(m_outputs, outputs);
    if (diff.isEmpty())
        return;
    m_outputs = recordsOf(outputs);
    // Types can chase each other where a graph has an instance of itself.
    if (m_rounds.next(message, outputs.size()))
        writeTo(message, nullptr, &diff);
}

void GraphWatcher::writeTo(const DataMessage& message, const InterfaceDiff* inputs,
                           const InterfaceDiff* outputs)
{
    ManipulatorContext* const context = editableContext(message);
    if (context == nullptr)
        return;
    PathTarget target(*m_graph);
    DroppedOutputs dropped;
    for (const InstanceBehavior* behavior :
         InstanceIndexOf<SyncCompInstance>::of(*m_graph).find(m_graph->identifier().get())) {
        const CompInstance* const instance =
            static_cast<const SyncCompInstance*>(behavior)->instance();
        if (instance == nullptr || !CompInstanceWriter::stands(*instance) ||
            !target.isNamedBy(behavior->path(), *packageOf(*instance)))
            continue;
        CompInstanceWriter writer(*instance, *context, dropped);
        if (inputs != nullptr)
            writer.followInputs(*inputs);
        if (outputs != nullptr)
            writer.followOutputs(*outputs);
    }
    dropped.dropConnections(*context);
}

} // namespace Ksx::Core::Behavior
