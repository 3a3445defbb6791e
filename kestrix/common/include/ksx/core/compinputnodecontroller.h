// A node that stands for an image input of its graph.
#pragma once

#include "ksx/core/compnodecontroller.h"
#include "ksx/core/follow.h"

namespace Ksx::Data::Content {
class CompInputBridge;
class ParamInput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class InputController;

class CompInputNodeController final : public CompNodeController
{
public:
    CompInputNodeController(const Data::Content::CompNode& node,
                            const Data::Content::CompInputBridge& bridge,
                            CompGraphController& graph);
    ~CompInputNodeController() override;

    // The input that the node's entry names; null if there is none.
    InputController* input() const;

    // The type of the input, 0 without one.
    unsigned connectorType(const std::string& identifier) const override;
    unsigned primaryType() const override;
    unsigned outputType() const override { return primaryType(); }
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    const Data::Desc::Parameter* description(const std::string& identifier) const override;
    const std::vector<Data::Desc::ParameterGroupPointer>& parameterDescriptions() const override;
    ParametersController* parametersController() override;

    // For the graph: the input has come or gone, or may have another type.
    void followInput(Orv::Core::ManipulatorContext* context);

private:
    void onEntry(Orv::Core::ManipulatorContext* context);

    Orv::Data::DataPointerBox<Data::Content::CompInputBridge> m_bridge;
    Follow<&CompInputNodeController::onEntry, Orv::Data::ChangeType::Value, Stage::Description>
        m_watch{*this};
    std::unique_ptr<ParametersController> m_parameters; // made at the first request
    Uid m_entry;                                        // under which the graph knows the node
    unsigned m_type;                                    // as it was last seen
};

} // namespace Ksx::Core
