// The controller of a node that shows an output of its graph.
#pragma once

#include "ksx/core/compnodecontroller.h"

namespace Ksx::Data::Content {
class CompOutputBridge;
class GraphOutput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Shows a node with a CompOutputBridge, which names an output of the graph by its uid, the entry.
// The node has one input, OutputNodeInput, and no outputs. For life and thread see NodeController.
//
// CompGraphController::addOutputNode() makes node and output together, and removeNode() removes
// both.
class CompOutputNodeController final : public CompNodeController
{
public:
    // For the controller of the graph.
    CompOutputNodeController(const Data::Content::CompNode& node,
                             const Data::Content::CompOutputBridge& bridge,
                             CompGraphController& graph);
    ~CompOutputNodeController() override;

    // Returns the output that the node shows. The box is empty if the graph has no output of that
    // uid.
    Orv::Data::DataPointerBox<Data::Content::GraphOutput> output() const;
    // Returns the uid of the output that the node names. Returns NoUid once the bridge has died.
    Uid entry() const;

    // Returns outputType() for OutputNodeInput. Returns 0 for any other identifier.
    unsigned connectorType(const std::string& identifier) const override;
    // Returns true for OutputNodeInput.
    bool isVariantConnector(const std::string& identifier) const override;
    std::string outputIdentifier() const override { return {}; }
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Appends nothing: the image leaves the graph.
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Returns 3 for OutputNodeInput. Returns 0 for any other identifier.
    unsigned connectorUsage(const std::string& identifier) const override;

    // Returns the type that the document has for the connection of the node. Where it has none,
    // returns the type of the source. Returns 0 without a source.
    unsigned outputType() const override;
    // Gives the node the type of its source, if that is an image.
    bool onInputTypeChanged(InputConnectorController& connector,
                            const OutputConnectorController& source,
                            Orv::Core::ManipulatorContext* context) override;
    bool setOutputTypeFromInput(unsigned type, Orv::Core::ManipulatorContext* context) override;
    // Returns false: the node has no parameters.
    bool isInheritable(const Data::Desc::Parameter& description) const override;
    // Returns true for a source whose type is ColorImage or GrayscaleImage.
    bool acceptsConnection(const OutputConnectorController& source,
                           const InputConnectorController& connector) const override;

private:
    Orv::Data::DataPointerBox<Data::Content::CompOutputBridge> m_bridge;
};

// The identifier of the only input.
inline constexpr std::string_view OutputNodeInput = "inputNodeOutput";

} // namespace Ksx::Core
