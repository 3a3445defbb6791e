#include "behavior/graphwatcher.h"

#include "behavior/compinstancewriter.h"
#include "behavior/pathtarget.h"
#include "behavior/synccompinstance.h"
#include "content/packageof.h"
#include "core/manipulatorcontext.h"
#include "data/datamessage.h"
#include "data/shadowobject.h"
#include "graph/graphoutputtype.h"
#include "ksx/core/edit.h"
#include "ksx/core/stage.h"
#include <utility>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Data::BaseObject;
using Orv::Data::DataMessage;

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

void GraphWatcher::watch(const Graph& graph)
{
    const Orv::Data::ShadowObject* const shadow = graph.graphOutputs().shadow();
    if (shadow != nullptr && shadow->findListener<GraphWatcher>() != nullptr)
        return;
    giveToShadows(std::make_unique<GraphWatcher>(graph),
                  {&graph.graphOutputs(), &graph.paraminputs()});
}

GraphWatcher::GraphWatcher(const Graph& graph)
    : m_graph(&graph),
      m_types(graph, [this](const CompNode& node, bool counts) { watchNode(node, counts); }),
      m_inputs(graph.paraminputs(), &describeInput),
      m_outputs(graph.graphOutputs(), [this](const BaseObject& object) {
          const auto& output = static_cast<const GraphOutput&>(object);
          const Uid uid = output.uid().get();
          return InterfaceItem{uid, m_types.typeOf(uid), output.identifier().get()};
      })
{
    listenTo(graph.compNodes(), m_nodesUpdate);
    listenTo(graph.compNodes(), m_nodes);
}

void GraphWatcher::watchNode(const CompNode& node, bool counts)
{
    if (counts) {
        listenTo(node, m_nodeUpdate);
        listenTo(node, m_node);
    } else if (Orv::Data::ShadowObject* shadow = node.shadow()) {
        shadow->removeListener(m_nodeUpdate);
        shadow->removeListener(m_node);
    }
}

void GraphWatcher::updateNode(const DataMessage& message)
{
    if (const auto* node = static_cast<const CompNode*>(message.object.get()))
        noteAffected(m_types.nodeChanged(*node));
}

void GraphWatcher::updateNodes(const DataMessage& message)
{
    noteAffected(m_types.nodesChanged(message));
}

void GraphWatcher::noteAffected(const std::vector<Uid>& outputs)
{
    m_affected.insert(m_affected.end(), outputs.begin(), outputs.end());
}

void GraphWatcher::deliver(const DataMessage& message)
{
    if (!m_graph || !isAttached(*m_graph))
        return;
    if (message.object.get() == &m_graph->paraminputs()) {
        const InterfaceDiff diff = m_inputs.follow(m_graph->paraminputs(), &message);
        if (!diff.isEmpty())
            writeTo(message, &diff, nullptr);
    } else {
        writeOutputs(message, m_outputs.follow(m_graph->graphOutputs(), &message));
        followTypes(message);
    }
}

void GraphWatcher::followTypes(const DataMessage& message)
{
    if (!m_graph || !isAttached(*m_graph) || m_affected.empty())
        return;
    const std::vector<Uid> affected = std::exchange(m_affected, {});
    writeOutputs(message, m_outputs.follow(m_graph->graphOutputs(), affected));
}

void GraphWatcher::writeOutputs(const DataMessage& message, const InterfaceDiff& diff)
{
    // Types can chase each other where a graph has an instance of itself.
    if (!diff.isEmpty() && m_rounds.next(message, m_graph->graphOutputs().size()))
        writeTo(message, nullptr, &diff);
}

void GraphWatcher::writeTo(const DataMessage& message, const InterfaceDiff* inputs,
                           const InterfaceDiff* outputs)
{
    ManipulatorContext* const context = editableContext(message);
    if (context == nullptr)
        return;
    PathTarget target(*m_graph);
    const Connectors connectors(*m_graph);
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
            writer.followOutputs(*outputs, m_graph->graphOutputs());
        writer.keepConnectionsTo(connectors);
    }
    dropped.dropConnections(*context);
}

} // namespace Ksx::Core::Behavior
