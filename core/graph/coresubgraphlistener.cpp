#include "graph/subgraphlistener.h"

#include "data/content/graph.h"
#include "ksx/core/nodecontroller.h"
#include <iterator>

namespace Ksx::Core {

SubGraphListener::SubGraphListener(const Data::Content::Graph& graph)
{
    const Orv::Data::BaseObject* const watched[] = {&graph.paraminputs(), &graph.graphOutputs(),
                                                    &graph.primaryInput()};
    for (const Orv::Data::BaseObject* object : watched)
        listenTo(*object, m_interfaceListener);
}

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
    tellAll(&NodeController::onSubGraphLinkChanged, editableContext(message));
}

void SubGraphListener::onInterface(Orv::Core::ManipulatorContext* context)
{
    tellAll(&NodeController::onSubGraphChanged, context);
}

void SubGraphListener::tellAll(Operation operation, Orv::Core::ManipulatorContext* context)
{
    dropDead();
    const auto nodes = m_nodes; // a node that becomes a ghost may ask for another graph
    for (const Subscriber& subscriber : nodes)
        if (NodeController* node = subscriber.box.access())
            (node->*operation)(context);
}

} // namespace Ksx::Core
