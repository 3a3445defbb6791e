#include "ksx/core/inputconnectorcontroller.h"

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

} // namespace Ksx::Core
