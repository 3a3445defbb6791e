#include "ksx/core/subgraphlistener.h"

#include "data/content/graph.h"
#include "data/datamessage.h"
#include "ksx/core/edit.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/valuelistener.h"
#include <algorithm>

namespace Ksx::Core {

class SubGraphListener::InterfaceListener final
    : public Orv::Core::ListenerSimple<Orv::Data::FirstPriority - 2,
                                       Orv::Data::ChangeType::Value | ListChanges>
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
    m_nodes.erase(std::remove_if(m_nodes.begin(), m_nodes.end(),
                                 [&](const auto& other) { return !other || other == &node; }),
                  m_nodes.end());
    m_nodes.emplace_back(&node);
}

void SubGraphListener::deliver(const Orv::Data::DataMessage& message)
{
    tellAll(&NodeController::onSubGraphLinkChanged, message);
}

void SubGraphListener::tellAll(Operation operation, const Orv::Data::DataMessage& message)
{
    Orv::Core::ManipulatorContext* context = editableContext(message);
    const auto nodes = m_nodes; // a node that becomes a ghost may ask for another graph
    for (const auto& box : nodes)
        if (NodeController* node = box.access())
            (node->*operation)(context);
}

} // namespace Ksx::Core
