// The controller of an output of a node.
#pragma once

#include "ksx/core/connectorcontroller.h"
#include "ksx/core/uidsource.h"
#include <string>

namespace Ksx::Core {

// Shows an output. Its targets are the inputs that it feeds. For life and thread see
// ConnectorController.
class OutputConnectorController final : public ConnectorController
{
public:
    // For the controller of the node. `identifier` is in the 8-bit form of the document. `uid` is 0
    // for nodes whose outputs have no uids.
    OutputConnectorController(NodeController& node, Uid uid, std::string identifier,
                              const QString& label);

    // Returns the uid of the output in the document. Returns 0 for nodes whose outputs have no
    // uids.
    Uid outputUid() const { return m_uid; }
    // Returns the identifier. It is UniqueOutput except for instances of graphs.
    const std::string& identifier() const { return m_identifier; }
    // Returns the type of the value that the output gives. Returns 0 if it is not known.
    unsigned type() const;
    // Returns the kind of image that the output gives, by type().
    ColorKind colorKind() const override;

protected:
    std::vector<ConnectionController*> connectionsInOrder() const override;

private:
    Uid m_uid;
    std::string m_identifier;
};

} // namespace Ksx::Core
