#include "graph/connexionslistener.h"

#include "data/content/connexion.h"
#include "data/datamessage.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace Ksx::Core {

using Data::Content::Connexion;

void ConnexionsListener::follow(const List& list)
{
    for (const Connexion& connexion : list)
        m_connections.pushBack(std::make_unique<ConnectionController>(connexion, m_node));
    listenTo(list, *this);
}

void ConnexionsListener::refreshAll(Orv::Core::ManipulatorContext* context)
{
    for (const auto& connection : m_connections)
        connection->refresh(context);
}

ConnectionController* ConnexionsListener::find(const ConnectorController& input,
                                               const ConnectorController& output) const
{
    const bool isInputShorter = input.connections().size() <= output.connections().size();
    const ConnectorController& shorter = isInputShorter ? input : output;
    const ConnectorController::Connections& connections = shorter.connections();
    const auto isBetween = [&](const ConnectionController* connection) {
        return connection->input() == &input && connection->output() == &output;
    };
    const auto any = std::find_if(connections.begin(), connections.end(), isBetween);
    if (any == connections.end())
        return nullptr;
    if (std::none_of(std::next(any), connections.end(), isBetween))
        return *any;
    shorter.targets(); // puts the connections into the order of the document
    return *std::find_if(connections.begin(), connections.end(), isBetween);
}

// Connections that leave let go of their ends before others take them. Who hears of it may edit the
// list, which has been read by then.
void ConnexionsListener::followSteps(const MirrorSteps& steps,
                                     const Orv::Data::DataMessage& message, const List& list)
{
    std::vector<std::unique_ptr<ConnectionController>> made;
    made.reserve(steps.fresh.size());
    for (const std::size_t place : steps.fresh)
        made.push_back(std::make_unique<ConnectionController>(list.at(place), m_node));
    auto leaving = takeFrom(m_connections, steps.gone);
    putInto(m_connections, steps.fresh, std::move(made));
    std::vector<ConnectionController*> fresh;
    fresh.reserve(steps.fresh.size());
    for (const std::size_t index : steps.fresh)
        fresh.push_back(m_connections[index].get());
    const bool isShapeAlone = (message.type & Orv::Data::ChangeType::Descendant) == 0;
    for (const Orv::Data::TouchedChild& child : message.touched)
        if (!isShapeAlone && child.object && child.object->getParent() == &list)
            fresh.push_back(m_connections[list.indexOf(*child.object)].get());
    leaving.clear();
    for (ConnectionController* connection : fresh)
        connection->refresh(editableContext(message));
}

void ConnexionsListener::rearrange(const Orv::Data::DataMessage& message, const List& list)
{
    std::vector<const Connexion*> items;
    for (const Connexion& connexion : list)
        items.push_back(&connexion);
    const auto itemOf = [](const auto& connection) { return connection->connexion(); };
    arrange(m_connections, items, itemOf, [this](const Connexion& connexion) {
        return std::make_unique<ConnectionController>(connexion, m_node);
    }); // what is left over dies
    for (const auto& connection : m_connections) {
        if (connection->input() == nullptr)
            continue;
        connection->input()->reorderTargets();
        connection->output()->reorderTargets();
    }
    refreshAll(editableContext(message));
}

} // namespace Ksx::Core
