// Keeps the main input of graphs right.
#pragma once

#include "behavior/reportonce.h"
#include "core/listenersimple.h"
#include "data/content/graph.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/datanotifier.h"
#include "ksx/core/follow.h"
#include "ksx/core/stage.h"

namespace Ksx::Core::Behavior {

// The primary input of a graph is an image input of it: the first one, unless another is named; 0
// without image inputs. Looked after when the inputs or the primary input are edited. One object
// for all graphs.
class SyncGraphPrimaryInput final
    : public Orv::Core::ListenerSimple<Stage::Repair, ListChanges | Orv::Data::ChangeType::Value>,
      public BehaviorOf<Data::Content::Graph>
{
public:
    static std::array<const Orv::Data::BaseObject*, 2> placesIn(const Data::Content::Graph& graph)
    {
        return {&graph.paraminputs(), &graph.primaryInput().value()};
    }
    void entered(const Data::Content::Graph& graph, Orv::Core::ManipulatorContext& context);
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    ReportOnce m_report;
};

} // namespace Ksx::Core::Behavior
