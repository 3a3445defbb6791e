#include "ksx/core/behavior/synccompinstance.h"

#include "core/manipulatorcontext.h"
#include "data/datamessage.h"
#include "ksx/core/behavior/compinstancewriter.h"
#include "ksx/core/behavior/pathtarget.h"
#include "ksx/core/behavior/rounds.h"
#include "ksx/core/edit.h"
#include "ksx/core/graphoutputtype.h"
#include "ksx/core/objecturl.h"
#include "ksx/core/packageof.h"
#include "ksx/core/valuelistener.h"
#include <functional>
#include <memory>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Data::BaseObject;
using Index = InstanceIndexOf<SyncCompInstance>;

InterfaceItems inputsOf(const Graph& graph)
{
    InterfaceItems items;
    items.reserve(graph.paraminputs().size());
    for (const ParamInput& input : graph.paraminputs())
        items.push_back({input.uid().get(), input.type().value().get(), input.identifier().get()});
    return items;
}

// With the type that instances have, or an unknown one.
InterfaceItems outputsOf(const Graph& graph, bool withTypes)
{
    const std::vector<unsigned> types =
        withTypes ? typesOfGraphOutputs(graph) : std::vector<unsigned>();
    InterfaceItems items;
    items.reserve(graph.graphOutputs().size());
    for (const GraphOutput& output : graph.graphOutputs())
        items.push_back({output.uid().get(),
                         withTypes ? types[items.size()] : InterfaceRecord::UnknownType,
                         output.identifier().get()});
    return items;
}

// Gives the instance the outputs of the graph to which its path leads, if there is one.
void takeOutputs(const CompInstance& instance, ManipulatorContext& context)
{
    if (!CompInstanceWriter::stands(instance))
        return;
    const auto* graph = dynamic_cast<const Graph*>(
        resolveObjectUrl(instance.path().value().get(), *packageOf(instance)));
    if (graph == nullptr)
        return;
    const InterfaceItems outputs = outputsOf(*graph, true);
    DroppedOutputs dropped;
    CompInstanceWriter(instance, context, dropped).followOutputs(InterfaceDiff::whole(outputs));
    dropped.dropConnections(context);
}

} // namespace

// Stands on a graph, and remembers its inputs and outputs: what they were before an edit is not to
// be found out afterwards. The types of outputs follow from nodes and are looked for only if there
// are instances.
class SyncCompInstance::GraphWatcher final
    : public Orv::Core::ListenerSimple<Priority, ListChanges, Orv::Data::MessageMask::Content>
{
public:
    using SyncGraphOutput = InterfaceRecord;
    using SyncParamInput = InterfaceRecord;

    explicit GraphWatcher(const Graph& graph)
        : m_graph(&graph), m_inputs(recordsOf(inputsOf(graph))),
          m_outputs(recordsOf(outputsOf(graph, true)))
    {}
    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    void writeTo(const std::vector<InstanceBehavior*>& instances, const InterfaceDiff& inputs,
                 const InterfaceDiff& outputs, ManipulatorContext& context) const;

    Orv::Data::DataPointerBox<Graph> m_graph;
    std::vector<SyncParamInput> m_inputs;
    std::vector<SyncGraphOutput> m_outputs;
    Rounds m_rounds;
};

void SyncCompInstance::GraphWatcher::deliver(const Orv::Data::DataMessage& message)
{
    const Graph* const graph = m_graph.get();
    if (graph == nullptr || !isAttached(*graph))
        return;
    const std::vector<InstanceBehavior*> instances =
        Index::of(*graph).find(graph->identifier().get());
    const bool isOfNodes = message.object.get() == &graph->compNodes();
    if (isOfNodes && instances.empty()) {
        for (SyncGraphOutput& output : m_outputs)
            output.type = InterfaceRecord::UnknownType;
        return;
    }
    const InterfaceItems inputs = inputsOf(*graph);
    const InterfaceItems outputs = outputsOf(*graph, !instances.empty());
    const InterfaceDiff inputDiff(m_inputs, inputs);
    const InterfaceDiff outputDiff(m_outputs, outputs);
    if (inputDiff.isEmpty() && outputDiff.isEmpty())
        return;
    m_inputs = recordsOf(inputs);
    m_outputs = recordsOf(outputs);
    ManipulatorContext* const context = editableContext(message);
    // Types can chase each other where a graph has an instance of itself.
    if (context != nullptr && m_rounds.next(message, outputs.size()))
        writeTo(instances, inputDiff, outputDiff, *context);
}

void SyncCompInstance::GraphWatcher::writeTo(const std::vector<InstanceBehavior*>& instances,
                                             const InterfaceDiff& inputs,
                                             const InterfaceDiff& outputs,
                                             ManipulatorContext& context) const
{
    PathTarget target(*m_graph);
    DroppedOutputs dropped;
    for (const InstanceBehavior* behavior : instances) {
        const CompInstance* const instance =
            static_cast<const SyncCompInstance*>(behavior)->instance();
        if (instance == nullptr || !CompInstanceWriter::stands(*instance) ||
            !target.isNamedBy(behavior->path(), *packageOf(*instance)))
            continue;
        CompInstanceWriter writer(*instance, context, dropped);
        writer.followInputs(inputs);
        writer.followOutputs(outputs);
    }
    dropped.dropConnections(context);
}

SyncCompInstance::SyncCompInstance(const CompInstance& instance)
    : m_instance(&instance), m_pathHash(std::hash<std::string_view>()(path()))
{
    Index::of(instance).add(*this);
}

std::string_view SyncCompInstance::path() const
{
    return m_instance ? std::string_view(m_instance->path().value().get()) : std::string_view();
}

void SyncCompInstance::entered(const CompInstance& instance, ManipulatorContext& context)
{
    takeOutputs(instance, context);
}

void SyncCompInstance::deliver(const Orv::Data::DataMessage& message)
{
    const std::size_t hash = std::hash<std::string_view>()(path());
    if (!m_instance || hash == m_pathHash || !isAttached(*m_instance))
        return;
    m_pathHash = hash;
    Index::of(*m_instance).add(*this);
    if (ManipulatorContext* context = editableContext(message))
        takeOutputs(*m_instance, *context);
}

void SyncCompInstance::watch(const Graph& graph, Orv::Data::ManipulatorContextBase& context)
{
    const Orv::Data::ShadowObject* const shadow = graph.graphOutputs().shadow();
    if (shadow != nullptr && shadow->findListener<GraphWatcher>() != nullptr)
        return;
    auto* watcher = new GraphWatcher(graph); // the first shadow that dies deletes it
    const BaseObject* const places[] = {&graph.graphOutputs(), &graph.paraminputs(),
                                        &graph.compNodes()};
    for (const BaseObject* place : places)
        context.addListener(*place, *watcher);
}

} // namespace Ksx::Core::Behavior
