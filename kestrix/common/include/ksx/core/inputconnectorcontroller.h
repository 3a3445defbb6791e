// The controller of an input of a node.
#pragma once

#include "ksx/core/connectorcontroller.h"
#include <string>

namespace Ksx::Core {

// Shows an input. Its targets are its sources: the outputs that feed it. An input normally has one
// source. It has several if connections were added beside each other, and if it takes a list (see
// NodeController::takesList()). For life and thread see ConnectorController.
class InputConnectorController final : public ConnectorController
{
public:
    // For the controller of the node. `identifier` is in the 8-bit form of the document.
    InputConnectorController(NodeController& node, std::string identifier, const QString& label);

    // Returns the identifier by which connections name the input.
    const std::string& identifier() const { return m_identifier; }
    // Returns the kind of image that the input takes, by NodeController::connectorType().
    ColorKind colorKind() const override;

protected:
    std::vector<ConnectionController*> connectionsInOrder() const override;

private:
    std::string m_identifier;
};

} // namespace Ksx::Core
