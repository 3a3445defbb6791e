// Tells instances of a graph that it has changed for those who use it.
#pragma once

#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "data/datapointerbox.h"
#include "ksx/core/stage.h"
#include <list>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

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
    ~SubGraphListener() override;

    // Calls the node's onSubGraphChanged() when inputs or outputs of the graph change, and its
    // onSubGraphLinkChanged() when the graph leaves the document; for as long as the node lives.
    void subscribe(NodeController& node);

    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    class InterfaceListener;
    using Operation = void (NodeController::*)(Orv::Core::ManipulatorContext*);

    void tellAll(Operation operation, const Orv::Data::DataMessage& message);

    struct Subscriber
    {
        const NodeController* address; // for comparison alone
        Orv::Data::DataPointerBox<NodeController> box;
    };
    void dropDead();

    std::list<Subscriber> m_nodes; // in the order in which they came
    std::unordered_map<const NodeController*, std::list<Subscriber>::iterator> m_places;
    std::vector<std::unique_ptr<InterfaceListener>> m_listeners; // on the lists of the graph
};

} // namespace Ksx::Core
