#include "ksx/core/outputconnectorcontroller.h"

#include "graph/connexionslistener.h"
#include "ksx/core/graphcontroller.h"
#include "ksx/core/nodecontroller.h"
#include <map>

namespace Ksx::Core {

OutputConnectorController::OutputConnectorController(NodeController& node, Uid uid,
                                                     std::string identifier, const QString& label)
    : ConnectorController(node, QString::fromLatin1(identifier.data(), int(identifier.size())),
                          label),
      m_uid(uid), m_identifier(std::move(identifier))
{}

unsigned OutputConnectorController::type() const
{
    return node().connectorType(m_identifier);
}

ColorKind OutputConnectorController::colorKind() const
{
    return colorKindOf(type());
}

std::vector<ConnectionController*> OutputConnectorController::connectionsInOrder() const
{
    std::map<std::int64_t, const NodeController*> nodes;
    for (const ConnectionController* connection : connections())
        nodes.emplace(node().graph().placeOf(connection->target()), &connection->target());
    std::vector<ConnectionController*> ordered;
    for (const auto& [place, target] : nodes)
        for (const auto& connection : target->connections().connections())
            if (connection->output() == this)
                ordered.push_back(connection.get());
    return ordered;
}

} // namespace Ksx::Core
