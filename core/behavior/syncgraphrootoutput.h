// Tells of outputs of graphs that nobody would render.
#pragma once

#include "core/listenersimple.h"
#include "data/content/graph.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/datanotifier.h"
#include "ksx/core/follow.h"
#include "ksx/core/stage.h"

namespace Ksx::Core::Behavior {

// Reports each output of a graph for which its root has no RootOutput. One object for all graphs.
// It reports and repairs nothing: whoever adds an output adds its root output.
class SyncGraphRootOutput final : public Orv::Core::ListenerSimple<Stage::Repair, ListChanges>,
                                  public BehaviorOf<Data::Content::Graph>
{
public:
    static std::array<const Orv::Data::BaseObject*, 2> placesIn(const Data::Content::Graph& graph)
    {
        return {&graph.graphOutputs(), &graph.root().rootOutputs()};
    }
    void entered(const Data::Content::Graph& graph, Orv::Core::ManipulatorContext&);
    void deliver(const Orv::Data::DataMessage& message) override;
};

} // namespace Ksx::Core::Behavior
