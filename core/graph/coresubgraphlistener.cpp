#include "graph/subgraphlistener.h"

#include "data/content/graph.h"
#include "data/datamessage.h"
#include "ksx/core/edit.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/stage.h"
#include "ksx/core/valuelistener.h"
#include <iterator>

namespace Ksx::Core {

class SubGraphListener::InterfaceListener final
    : public Orv::Core::ListenerSimple<Stage::Link, Orv::Data::ChangeType::Value | ListChanges>
{
public:
    explicit InterfaceListener(SubGraphListener& owner) : m_owner(owner) {}
    void deliver(const Orv::Data::DataMessage& message) override
    {
        m_owner.tellAll(&NodeController::onSubGraphChanged, message);
    }

private:
    SubGraphListener& m_owner;
};

SubGraphListener::SubGraphListener(const Data::Content::Graph& graph)
{
    const Orv::Data::BaseObject* const watched[] = {&graph.paraminputs(), &graph.graphOutputs(),
                                                    &graph.primaryInput()};
    for (const Orv::Data::BaseObject* object : watched) {
        m_listeners.push_back(std::make_unique<InterfaceListener>(*this));
        listenTo(*object, *m_listeners.back());
    }
}

SubGraphListener::~SubGraphListener() = default;

void SubGraphListener::subscribe(NodeController& node)
{
    const auto known = m_places.find(&node);
    if (known != m_places.end())
        m_nodes.erase(known->second);
    m_nodes.push_back({&node, Orv::Data::DataPointerBox<NodeController>(&node)});
    m_places.insert_or_assign(&node, std::prev(m_nodes.end()));
}

void SubGraphListener::dropDead()
{
    for (auto node = m_nodes.begin(); node != m_nodes.end();) {
        if (!node->box)
            m_places.erase(node->address);
        node = node->box ? std::next(node) : m_nodes.erase(node);
    }
}

void SubGraphListener::deliver(const Orv::Data::DataMessage& message)
{
    tellAll(&NodeController::onSubGraphLinkChanged, message);
}

void SubGraphListener::tellAll(Operation operation, const Orv::Data::DataMessage& message)
{
    Orv::Core::ManipulatorContext* context = editableContext(message);
    dropDead();
    const auto nodes = m_nodes; // a node that becomes a ghost may ask for another graph
    for (const Subscriber& subscriber : nodes)
        if (NodeController* node = subscriber.box.access())
            (node->*operation)(context);
}

} // namespace Ksx::Core
