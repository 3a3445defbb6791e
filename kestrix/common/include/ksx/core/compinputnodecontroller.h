// A node that stands for an image input of its graph.
#pragma once

#include "ksx/core/compnodecontroller.h"

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

private:
    class TypeWatch;

    void onInputs(const Orv::Data::DataMessage& message);

    Orv::Data::DataPointerBox<Data::Content::CompInputBridge> m_bridge;
    std::unique_ptr<TypeWatch> m_watch;
    unsigned m_type; // as it was last seen
};

} // namespace Ksx::Core
