// Tells instances of a graph that it has changed for those who use it.
#pragma once

#include "core/listenersimple.h"
#include "data/datapointerbox.h"
#include "ksx/core/follow.h"
#include <list>
#include <unordered_map>

namespace Ksx::Data::Content {
class Graph;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class NodeController;

// One for each graph, shared by its instances: found by listenerOf<SubGraphListener>(graph) and
// owned by the graph's shadow.
class SubGraphListener final
    : public Orv::Core::ListenerSimple<Stage::Link, Orv::Data::ChangeType::Removed>
{
public:
    explicit SubGraphListener(const Data::Content::Graph& graph);

    // Calls the node's onSubGraphChanged() when inputs or outputs of the graph change, and its
    // onSubGraphLinkChanged() when the graph leaves the document; for as long as the node lives.
    void subscribe(NodeController& node);

    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    using Operation = void (NodeController::*)(Orv::Core::ManipulatorContext*);

    void onInterface(Orv::Core::ManipulatorContext* context);
    void tellAll(Operation operation, Orv::Core::ManipulatorContext* context);

    struct Subscriber
    {
        const NodeController* address; // for comparison alone
        Orv::Data::DataPointerBox<NodeController> box;
    };
    void dropDead();

    std::list<Subscriber> m_nodes; // in the order in which they came
    std::unordered_map<const NodeController*, std::list<Subscriber>::iterator> m_places;
    Follow<&SubGraphListener::onInterface, Orv::Data::ChangeType::Value | ListChanges, Stage::Link>
        m_interfaceListener{*this};
};

} // namespace Ksx::Core
