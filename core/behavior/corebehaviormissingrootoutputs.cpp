#include "behavior/missingrootoutputs.h"

namespace Ksx::Core::Behavior {

using namespace Data::Content;

template <>
Uid MissingRootOutputs::Side<GraphOutput>::read(const GraphOutput& output)
{
    return output.uid().get();
}

template <>
Uid MissingRootOutputs::Side<RootOutput>::read(const RootOutput& output)
{
    return output.output().get();
}

MissingRootOutputs::MissingRootOutputs(const Graph& graph)
{
    m_outputs.fill(graph.graphOutputs());
    m_roots.fill(graph.root().rootOutputs());
    listenTo(graph.graphOutputs(), m_outputs);
    listenTo(graph.root().rootOutputs(), m_roots);
}

const MissingRootOutputs* MissingRootOutputs::of(const Graph& graph)
{
    const bool isSettled = Side<GraphOutput>::isSettled(graph.graphOutputs()) &&
                           Side<RootOutput>::isSettled(graph.root().rootOutputs());
    return isSettled ? &listenerOf<MissingRootOutputs>(graph) : nullptr;
}

void MissingRootOutputs::change(Uid uid, std::size_t Counts::*count, std::size_t step)
{
    Counts& counts = m_counts[uid];
    m_missing -= counts.isMissing() ? 1 : 0;
    counts.*count += step;
    m_missing += counts.isMissing() ? 1 : 0;
    if (counts.outputs == 0 && counts.roots == 0)
        m_counts.erase(uid);
}

} // namespace Ksx::Core::Behavior
