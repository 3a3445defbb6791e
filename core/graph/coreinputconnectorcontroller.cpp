#include "ksx/core/inputconnectorcontroller.h"

#include "graph/connexionslistener.h"
#include "ksx/core/nodecontroller.h"

namespace Ksx::Core {

InputConnectorController::InputConnectorController(NodeController& node, std::string identifier,
                                                   const QString& label)
    : ConnectorController(node, QString::fromLatin1(identifier.data(), int(identifier.size())),
                          label),
      m_identifier(std::move(identifier))
{}

ColorKind InputConnectorController::colorKind() const
{
    return colorKindOf(node().connectorType(m_identifier));
}

std::vector<ConnectionController*> InputConnectorController::connectionsInOrder() const
{
    std::vector<ConnectionController*> ordered;
    for (const auto& connection : node().connections().connections())
        if (connection->input() == this)
            ordered.push_back(connection.get());
    return ordered;
}

} // namespace Ksx::Core
