// The connections of one node.
#pragma once

#include "data/containerlist.h"
#include "data/row.h"
#include "editing/listmirror.h"
#include "ksx/core/connectioncontroller.h"
#include <memory>

namespace Ksx::Core {

class ConnectorController;

// Owned by the node's controller. Keeps one ConnectionController for each connection in the node's
// list.
class ConnexionsListener final
    : public ListMirror<Orv::Data::ContainerList<Data::Content::Connexion>, ListChanges,
                        Stage::Connection>
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

    std::size_t size() const override { return m_connections.size(); }
    // In the order of the list.
    const Connections& connections() const { return m_connections; }
    bool isLast(const ConnectionController& connection) const
    {
        return !m_connections.empty() && m_connections.back().get() == &connection;
    }
    // The first one between two connectors, null if there is none.
    ConnectionController* find(const ConnectorController& input,
                               const ConnectorController& output) const;

private:
    void followSteps(const MirrorSteps& steps, const Orv::Data::DataMessage& message,
                     const List& list) override;
    void rearrange(const Orv::Data::DataMessage& message, const List& list) override;

    NodeController& m_node;
    Connections m_connections;
};

} // namespace Ksx::Core
