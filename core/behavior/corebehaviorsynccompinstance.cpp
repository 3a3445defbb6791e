#include "behavior/synccompinstance.h"

#include "behavior/compinstancewriter.h"
#include "behavior/graphwatcher.h"
#include "content/packageof.h"
#include "core/manipulatorcontext.h"
#include "data/datamessage.h"
#include "ksx/core/edit.h"
#include "ksx/core/objecturl.h"
#include <functional>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Index = InstanceIndexOf<SyncCompInstance>;

// Gives the instance the outputs of the graph to which its path leads, if there is one, and takes
// the connections to inputs that the graph lacks.
void takeInterface(const CompInstance& instance, ManipulatorContext& context)
{
    if (!CompInstanceWriter::stands(instance))
        return;
    const auto* graph = dynamic_cast<const Graph*>(
        resolveObjectUrl(instance.path().value().get(), *packageOf(instance)));
    if (graph == nullptr)
        return;
    const InterfaceItems outputs = outputsOf(*graph);
    DroppedOutputs dropped;
    CompInstanceWriter writer(instance, context, dropped);
    writer.followOutputs(InterfaceDiff::whole(outputs), graph->graphOutputs());
    writer.keepConnectionsTo(Connectors(*graph));
    dropped.dropConnections(context);
}

} // namespace

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
    takeInterface(instance, context);
}

void SyncCompInstance::deliver(const Orv::Data::DataMessage& message)
{
    const std::size_t hash = std::hash<std::string_view>()(path());
    if (!m_instance || hash == m_pathHash || !isAttached(*m_instance))
        return;
    m_pathHash = hash;
    Index::of(*m_instance).add(*this);
    if (ManipulatorContext* context = editableContext(message))
        takeInterface(*m_instance, *context);
}

void SyncCompInstance::watch(const Graph& graph)
{
    GraphWatcher::watch(graph);
}

} // namespace Ksx::Core::Behavior
