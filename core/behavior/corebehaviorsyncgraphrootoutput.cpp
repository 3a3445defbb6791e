#include "behavior/syncgraphrootoutput.h"

#include "behavior/missingrootoutputs.h"
#include "behavior/ownerof.h"
#include "data/datamessage.h"
#include "data/diagnosticlog.h"
#include "ksx/core/uidsource.h"
#include <unordered_set>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Data::ChangeType;

// By this line the report is known.
constexpr int MissingLine = 125;

void reportMissing(const Graph& graph)
{
    std::unordered_set<Uid> rendered;
    for (const RootOutput& output : graph.root().rootOutputs())
        rendered.insert(output.output().get());
    for (const GraphOutput& output : graph.graphOutputs()) {
        const Uid uid = output.uid().get();
        if (rendered.count(uid) == 0)
            Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency,
                                      "core\\behavior\\corebehaviorsyncgraphrootoutput",
                                      MissingLine,
                                      "Root Output Missing for " + std::to_string(uid) +
                                          " graph ouput in graph " + graph.identifier().get());
    }
}

// Can an output be without its root output since this change? What is added to one list and taken
// off the other cannot be the cause: so an output that is added with its root output, and both
// lists with it, is looked at once.
bool canMiss(const Orv::Data::DataMessage& message, const Graph& graph)
{
    const bool isOfOutputs = message.object.get() == &graph.graphOutputs();
    const std::uint32_t cause = isOfOutputs ? ChangeType::Inserted : ChangeType::Erased;
    return (message.type & (cause | ChangeType::Descendant)) != 0;
}

} // namespace

void SyncGraphRootOutput::entered(const Graph& graph, Orv::Core::ManipulatorContext&)
{
    reportMissing(graph);
}

void SyncGraphRootOutput::deliver(const Orv::Data::DataMessage& message)
{
    const auto* graph = message.object ? ownerOf<Graph>(*message.object) : nullptr;
    if (graph == nullptr || !canMiss(message, *graph))
        return;
    const auto* const missing = MissingRootOutputs::of(*graph);
    if (missing == nullptr || !missing->isEmpty())
        reportMissing(*graph);
}

} // namespace Ksx::Core::Behavior
