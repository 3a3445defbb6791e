// An output of a node.
#pragma once

#include "ksx/core/connectorcontroller.h"
#include "ksx/core/uidsource.h"
#include <string>

namespace Ksx::Core {

class OutputConnectorController final : public ConnectorController
{
public:
    // `uid` is that of the output in the document; 0 for nodes whose only output has none.
    OutputConnectorController(NodeController& node, Uid uid, std::string identifier,
                              const QString& label);

    Uid outputUid() const { return m_uid; }
    const std::string& identifier() const { return m_identifier; }
    // The value type that it gives, 0 if it is not known.
    unsigned type() const;
    ColorKind colorKind() const override;

protected:
    std::vector<ConnectionController*> connectionsInOrder() const override;

private:
    Uid m_uid;
    std::string m_identifier;
};

} // namespace Ksx::Core
