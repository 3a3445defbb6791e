// A node that stands for an output of its graph.
#pragma once

#include "ksx/core/compnodecontroller.h"

namespace Ksx::Data::Content {
class CompOutputBridge;
class GraphOutput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class CompOutputNodeController final : public CompNodeController
{
public:
    CompOutputNodeController(const Data::Content::CompNode& node,
                             const Data::Content::CompOutputBridge& bridge,
                             CompGraphController& graph);
    ~CompOutputNodeController() override;

    // The output that the node names, and its uid; empty if there is none.
    Orv::Data::DataPointerBox<Data::Content::GraphOutput> output() const;
    Uid entry() const;

    unsigned connectorType(const std::string& identifier) const override;
    bool isVariantConnector(const std::string& identifier) const override;
    std::string outputIdentifier() const override { return {}; }
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    unsigned connectorUsage(const std::string& identifier) const override;
    // The type of its connection, else of what feeds it, else 0.
    unsigned outputType() const override;
    bool onInputTypeChanged(InputConnectorController& connector,
                            const OutputConnectorController& source,
                            Orv::Core::ManipulatorContext* context) override;
    bool setOutputTypeFromInput(unsigned type, Orv::Core::ManipulatorContext* context) override;
    bool isInheritable(const Data::Desc::Parameter& description) const override;
    // Of images with a definite type alone.
    bool acceptsConnection(const OutputConnectorController& source,
                           const InputConnectorController& connector) const override;

private:
    Orv::Data::DataPointerBox<Data::Content::CompOutputBridge> m_bridge;
};

// The identifier of its only input.
inline constexpr std::string_view OutputNodeInput = "inputNodeOutput";

} // namespace Ksx::Core
