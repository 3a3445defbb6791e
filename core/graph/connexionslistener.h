// The connections of one node.
#pragma once

#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "data/changeruns.h"
#include "data/containerlist.h"
#include "data/row.h"
#include "ksx/core/connectioncontroller.h"
#include "ksx/core/stage.h"
#include <memory>

namespace Ksx::Core {

class ConnectorController;

// Owned by the node's controller. Keeps one ConnectionController for each connection in the node's
// list.
class ConnexionsListener final
    : public Orv::Core::ListenerSimple<
          Stage::Connection, Orv::Data::ChangeType::Descendant | Orv::Data::ChangeType::Inserted |
                                 Orv::Data::ChangeType::Erased | Orv::Data::ChangeType::Moved>
{
public:
    using List = Orv::Data::ContainerList<Data::Content::Connexion>;
    using Connections = Orv::Data::Row<std::unique_ptr<ConnectionController>>;

    explicit ConnexionsListener(NodeController& node) : m_node(node) {}

    // Makes the controllers of what stands in the list, unresolved, and listens from now on.
    void follow(const List& list);
    // Lets go of all connections.
    void clear() { const auto gone = m_connections.takeAll(); }
    // Reads all connections anew.
    void refreshAll(Orv::Core::ManipulatorContext* context);

    // In the order of the list.
    const Connections& connections() const { return m_connections; }
    bool isLast(const ConnectionController& connection) const
    {
        return !m_connections.empty() && m_connections.back().get() == &connection;
    }
    // The first one between two connectors, null if there is none.
    ConnectionController* find(const ConnectorController& input,
                               const ConnectorController& output) const;

    void deliver(const Orv::Data::DataMessage& message) override;

private:
    bool isPlain(const Orv::Data::ChangeRuns& runs, std::size_t size) const;
    void followRuns(const Orv::Data::DataMessage& message, const List& list);
    void rearrange(const Orv::Data::DataMessage& message, const List& list);

    NodeController& m_node;
    Connections m_connections;
    bool m_isAhead = false; // of the notices, which an edit within a delivery still has to send
};

} // namespace Ksx::Core
