#include "ksx/core/inputconnectorcontroller.h"

#include "graph/connexionslistener.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"

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

std::vector<ConnectorController*> InputConnectorController::targetsInOrder() const
{
    std::vector<ConnectorController*> sources;
    for (const auto& connection : node().connections().connections())
        if (connection->input() == this)
            sources.push_back(connection->output());
    return sources;
}

} // namespace Ksx::Core
