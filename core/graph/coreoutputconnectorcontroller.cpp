#include "ksx/core/outputconnectorcontroller.h"

#include "ksx/core/nodecontroller.h"

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

} // namespace Ksx::Core
