// The controller of a node that shows an image input of its graph.
#pragma once

#include "ksx/core/compnodecontroller.h"
#include "ksx/core/follow.h"

namespace Ksx::Data::Content {
class CompInputBridge;
class ParamInput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class InputController;

// Shows a node with a CompInputBridge, which names an input of the graph by its uid, the entry. The
// node gives the image of that input to other nodes. It has one output and no inputs. For life and
// thread see NodeController.
//
// CompGraphController::addInputNode() makes node and input together, and removeNode() removes both.
class CompInputNodeController final : public CompNodeController
{
public:
    // For the controller of the graph.
    CompInputNodeController(const Data::Content::CompNode& node,
                            const Data::Content::CompInputBridge& bridge,
                            CompGraphController& graph);
    ~CompInputNodeController() override;

    // Returns the controller of the input that the node shows. Returns null if the graph has no
    // input of that uid. InputsController owns it.
    InputController* input() const;

    // Returns the type of the input for any identifier. Returns 0 without an input.
    unsigned connectorType(const std::string& identifier) const override;
    // Returns the type of the input. Returns 0 without an input.
    unsigned primaryType() const override;
    // Returns the same as primaryType().
    unsigned outputType() const override { return primaryType(); }
    // Appends nothing: the image comes from outside of the graph.
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Appends the outputs of the node, with a translated label and tooltip.
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Returns the description of a parameter of the node. Returns null if there is none.
    const Data::Desc::Parameter* description(const std::string& identifier) const override;
    // Returns the common parameters of nodes, and the parameters of image inputs.
    const std::vector<Data::Desc::ParameterGroupPointer>& parameterDescriptions() const override;
    // Returns the parameters of the node. Returns null if the node died before the first call.
    ParametersController* parametersController() override;

    // For the graph: the input has come or gone, or may have another type. Makes the nodes behind
    // this one follow a new type.
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
