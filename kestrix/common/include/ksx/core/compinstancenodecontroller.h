// A node that is an instance of another graph.
#pragma once

#include "data/desc/filter.h"
#include "ksx/core/compnodecontroller.h"
#include "ksx/core/follow.h"
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Ksx::Data::Content {
class CompInstance;
class Graph;
class GraphOutput;
class ParamInput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class ContentLink;
class OutputController;

// Describes itself at run time: by the graph that it refers to, or, where that cannot be found, as
// a ghost by what the node itself remembers, so that nothing is lost. Follows the graph: it becomes
// a ghost when that goes and comes back to life with it.
class CompInstanceNodeController final : public CompNodeController
{
public:
    CompInstanceNodeController(const Data::Content::CompNode& node,
                               const Data::Content::CompInstance& instance,
                               CompGraphController& graph);
    ~CompInstanceNodeController() override;

    // Empty for a ghost.
    const Orv::Data::DataPointerBox<Data::Content::Graph>& referencedGraph() const
    {
        return m_referenced;
    }
    // Null once it has died.
    const Data::Content::CompInstance* instance() const;
    // The output of the referenced graph behind a connector; null for a ghost's.
    const Data::Content::GraphOutput* graphOutput(const OutputConnectorController& output) const;
    OutputController* outputController(const OutputConnectorController& output) const;
    // The inputs of the referenced graph that are values and no images, in their order, with what
    // the node says of them. Empty for a ghost.
    struct InputDescription
    {
        const Data::Content::ParamInput* input;
        const Data::Desc::Parameter* description;
    };
    std::vector<InputDescription> valueInputs() const;

    unsigned connectorType(const std::string& identifier) const override;
    bool isVariantConnector(const std::string& identifier) const override;
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    unsigned outputType() const override;
    void onSubGraphChanged(Orv::Core::ManipulatorContext* context) override;
    void onSubGraphLinkChanged(Orv::Core::ManipulatorContext* context) override;

    const std::vector<Data::Desc::ParameterGroupPointer>& parameterDescriptions() const override;
    const Data::Desc::Parameter* description(const std::string& identifier) const override;
    ParametersController* parametersController() override;
    bool isInheritable(const Data::Desc::Parameter& description) const override;
    bool hasRelativeType(const Data::Desc::Parameter& description) const override;
    const Data::Desc::Filter* nodeDescription() const override { return &m_description; }

private:
    void describe();
    void describeGraph(const Data::Content::Graph& graph);
    void describeGhost();
    bool hasPrimaryInput() const;
    const Data::Desc::Parameter* describedInput(const std::string& identifier) const;

    Orv::Data::DataPointerBox<Data::Content::CompInstance> m_instance;
    Orv::Data::DataPointerBox<Data::Content::Graph> m_referenced;
    Data::Desc::Filter m_description;
    // The image inputs of the description, the first one of each identifier.
    std::unordered_map<std::string_view, const Data::Desc::Parameter*> m_inputsByName;
    std::unordered_map<Uid, std::string> m_outputNames; // as the bridgings have them
    std::unique_ptr<ParametersController> m_parameters; // made at the first request
    std::unique_ptr<ContentLink> m_link;
    Follow<&CompInstanceNodeController::onSubGraphLinkChanged,
           Orv::Data::ChangeType::Value | ListChanges, Stage::Link>
        m_pathListener{*this}; // on the path of the instance and on its bridgings
};

} // namespace Ksx::Core
