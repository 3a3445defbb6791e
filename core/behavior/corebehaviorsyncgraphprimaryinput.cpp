#include "behavior/syncgraphprimaryinput.h"

#include "behavior/imageinputs.h"
#include "behavior/ownerof.h"
#include "data/content/graphmanipulators.h"
#include "data/datamessage.h"
#include "data/desc/valuetype.h"
#include "data/diagnosticlog.h"
#include "ksx/core/edit.h"
#include "ksx/core/uidsource.h"

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;

// By these lines the two reports are known.
constexpr int WrongLine = 124;
constexpr int MissingLine = 184;
constexpr Uid None = 0;

void report(int line, const std::string& text)
{
    Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency,
                              "core\\behavior\\corebehaviorsyncgraphprimaryinput", line, text);
}

Uid wantedPrimaryInput(const Graph& graph)
{
    const Uid current = graph.primaryInput().value().get();
    if (ImageInputs* images = ImageInputs::of(graph.paraminputs()))
        return images->contains(current) ? current : images->first(graph.paraminputs());
    Uid first = None;
    for (const ParamInput& input : graph.paraminputs()) {
        if (!Data::Desc::ValueType::isImage(input.type().value().get()))
            continue;
        if (input.uid().get() == current)
            return current;
        if (first == None)
            first = input.uid().get();
    }
    return first;
}

void sync(const Graph& graph, ManipulatorContext& context)
{
    ManipulatorStruct<Graph>(graph, context)
        .primaryInput()
        .value()
        .setIfChanged(wantedPrimaryInput(graph));
}

void reportWrong(const Graph& graph)
{
    const Uid current = graph.primaryInput().value().get();
    const Uid wanted = wantedPrimaryInput(graph);
    if (current == wanted)
        return;
    if (current != None)
        report(WrongLine, "Primary Input wrong uid: current is " + std::to_string(current) +
                              " and must be " + std::to_string(wanted));
    else
        report(MissingLine, "Primary Input wrong uid must be " + std::to_string(wanted) +
                                "in graph :" + graph.identifier().get());
}

} // namespace

void SyncGraphPrimaryInput::entered(const Graph& graph, ManipulatorContext& context)
{
    sync(graph, context);
}

void SyncGraphPrimaryInput::deliver(const Orv::Data::DataMessage& message)
{
    const auto* graph = message.object ? ownerOf<Graph>(*message.object) : nullptr;
    if (graph == nullptr)
        return;
    if (ManipulatorContext* context = editableContext(message))
        sync(*graph, *context);
    else if (m_report.isDue(message, *graph))
        reportWrong(*graph);
}

} // namespace Ksx::Core::Behavior
