// A node of the graph that an FX-map holds.
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

// A node of a kind that is not known has no description, and so no inputs.
class ParamNodeController final : public BaseNodeController
{
public:
    ParamNodeController(const Data::Content::ParamsGraphNode& node, ParamGraphController& graph);
    ~ParamNodeController() override;

    // Null once it has died.
    const Data::Content::ParamsGraphNode* node() const;
    ParamGraphController& paramGraph() const;
    const Data::Desc::SubNode* description() const { return m_description; }
    // The parameter set that the node names; null if there is none.
    const Data::Content::ParamsGraphData* data() const;
    // Of that parameter set; null if there is none, and for a node without description.
    ParametersController* parametersController();

    unsigned connectorType(const std::string& identifier) const override;
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    Uid uid() const override;
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
