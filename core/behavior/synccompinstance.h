// Keeps instances of graphs in step with their graphs.
#pragma once

#include "behavior/instanceindex.h"
#include "data/content/compinstance.h"
#include "data/content/graph.h"
#include "data/datapointerbox.h"
#include "ksx/core/datanotifier.h"

namespace Ksx::Core::Behavior {

// When the outputs of a graph are edited, the outputs of its instances follow, and what their
// outputs had fed loses what has gone; when its inputs are edited, the parameters and connections of
// its instances follow. An instance that comes to refer to another graph takes over its outputs. In
// all these cases connections to inputs that the graph lacks are removed. All of that is part of the
// edit. Nothing is done for a graph that goes or comes: an instance that
// refers to no open graph keeps all that it has.
class SyncCompInstance final : public InstanceBehavior,
                               public BehaviorOf<Data::Content::CompInstance, Data::Content::Graph>
{
public:
    explicit SyncCompInstance(const Data::Content::CompInstance& instance);

    const Data::Content::CompInstance* instance() const { return m_instance.get(); }

    std::string_view path() const override;
    void entered(const Data::Content::CompInstance& instance,
                 Orv::Core::ManipulatorContext& context);
    void deliver(const Orv::Data::DataMessage& message) override;

    // See GraphWatcher.
    static void watch(const Data::Content::Graph& graph);

private:
    Orv::Data::DataPointerBox<Data::Content::CompInstance> m_instance;
    std::size_t m_pathHash;
};

} // namespace Ksx::Core::Behavior
