// The controller of a node of the graph that an FX-map holds.
#pragma once

#include "ksx/core/basenodecontroller.h"

namespace Ksx::Data::Content {
class ParamsGraphData;
class ParamsGraphNode;
} // namespace Ksx::Data::Content

namespace Ksx::Data::Desc {
struct SubNode;
} // namespace Ksx::Data::Desc

namespace Ksx::Core {

class ParamGraphController;
class ParametersController;

// Shows a ParamsGraphNode. The node names a parameter set of its graph by a uid. Several nodes may
// name one set. For life and thread see NodeController. The node has one output, UniqueOutput.
//
// A node of an unknown kind has no description, no inputs and no parameters. The document keeps it
// unchanged.
class ParamNodeController final : public BaseNodeController
{
public:
    // For the controller of the graph. `node` is part of the graph.
    ParamNodeController(const Data::Content::ParamsGraphNode& node, ParamGraphController& graph);
    ~ParamNodeController() override;

    // Returns the node in the document. Returns null once it has died.
    const Data::Content::ParamsGraphNode* node() const;
    // Returns the graph that owns this controller.
    ParamGraphController& paramGraph() const;
    // Returns the description of the kind of node. Returns null for an unknown kind.
    const Data::Desc::SubNode* description() const { return m_description; }
    // Returns the parameter set that the node names. Returns null if there is none.
    const Data::Content::ParamsGraphData* data() const;

    // Returns the parameters of that set, and makes their controller at the first call. The
    // controller is replaced when the node names another set. Returns null without a set and for an
    // unknown kind.
    ParametersController* parametersController();

    // Returns ValueType::FxMap for the output. Returns the type of the description for an input.
    unsigned connectorType(const std::string& identifier) const override;
    // Appends the inputs of the description, with translated labels.
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Appends the one output.
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Returns the uid of the node. Returns NoUid once the node has died.
    Uid uid() const override;
    // Returns the connections to this node in the document. Returns null once the node has died.
    const Orv::Data::ContainerList<Data::Content::Connexion>* connexions() const override;

protected:
    const Data::Content::GUILayout* layout() const override;

private:
    Orv::Data::DataPointerBox<Data::Content::ParamsGraphNode> m_node;
    const Data::Desc::SubNode* m_description;
    std::unique_ptr<ParametersController> m_parameters; // made at the first request
    Orv::Data::DataPointerBox<Data::Content::ParamsGraphData> m_parametersOf;
};

} // namespace Ksx::Core
