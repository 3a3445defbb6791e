// An input of a node.
#pragma once

#include "ksx/core/connectorcontroller.h"
#include <string>

namespace Ksx::Core {

// Normally has one source; more if connections were added beside each other, and in lists.
class InputConnectorController final : public ConnectorController
{
public:
    InputConnectorController(NodeController& node, std::string identifier, const QString& label);

    // By which connections name it.
    const std::string& identifier() const { return m_identifier; }
    ColorKind colorKind() const override;

protected:
    std::vector<ConnectionController*> connectionsInOrder() const override;

private:
    std::string m_identifier;
};

} // namespace Ksx::Core
