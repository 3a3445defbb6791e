#include "ksx/core/connexionslistener.h"

#include "data/content/connexion.h"
#include "data/datamessage.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include <unordered_map>

namespace Ksx::Core {

using Data::Content::Connexion;

void ConnexionsListener::follow(const List& list)
{
    m_connections.reserve(list.size());
    for (const Connexion& connexion : list)
        m_connections.push_back(std::make_unique<ConnectionController>(connexion, m_node));
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
    for (const auto& connection : m_connections)
        if (connection->input() == &input && connection->output() == &output)
            return connection.get();
    return nullptr;
}

void ConnexionsListener::deliver(const Orv::Data::DataMessage& message)
{
    const auto* list = static_cast<const List*>(message.object.get());
    if (list == nullptr)
        return;
    std::unordered_map<const Connexion*, std::unique_ptr<ConnectionController>> held;
    for (auto& connection : m_connections)
        if (const Connexion* connexion = connection->connexion())
            held.emplace(connexion, std::move(connection));
    std::vector<std::unique_ptr<ConnectionController>> connections;
    connections.reserve(list->size());
    for (const Connexion& connexion : *list) {
        const auto found = held.find(&connexion);
        connections.push_back(found != held.end() && found->second != nullptr
                                  ? std::move(found->second)
                                  : std::make_unique<ConnectionController>(connexion, m_node));
    }
    m_connections = std::move(connections);
    held.clear(); // those that have left the list let go of their ends before others take them
    refreshAll(editableContext(message));
}

} // namespace Ksx::Core
