// The controller of a node that shows another graph.
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

// Shows a node with a CompInstance. The node names a graph by a data path, in its own package or in
// another open package. The graph gives the node its inputs, outputs and parameters. For life and
// thread see NodeController.
//
// The controller follows the path and the graph. It describes itself anew when the graph changes or
// the path leads elsewhere.
//
// If the path leads to no graph, the node is a ghost. A ghost has the outputs that the node
// remembers and the inputs that its connections name. Nothing is lost in the document. A ghost
// comes back to life when the graph appears: by an edit, an undo, or with a package that is opened.
class CompInstanceNodeController final : public CompNodeController
{
public:
    // For the controller of the graph.
    CompInstanceNodeController(const Data::Content::CompNode& node,
                               const Data::Content::CompInstance& instance,
                               CompGraphController& graph);
    ~CompInstanceNodeController() override;

    // Returns the graph that the node shows. The box is empty for a ghost.
    const Orv::Data::DataPointerBox<Data::Content::Graph>& referencedGraph() const
    {
        return m_referenced;
    }
    // Returns the instance in the document. Returns null once it has died.
    const Data::Content::CompInstance* instance() const;

    // Returns the output of the shown graph that belongs to a connector of this node. Returns null
    // for a ghost, and if the graph has no output of that identifier.
    const Data::Content::GraphOutput* graphOutput(const OutputConnectorController& output) const;

    // Returns the controller of that output, which belongs to the shown graph. Makes the controller
    // of that graph if there is none. Returns null where graphOutput() does.
    OutputController* outputController(const OutputConnectorController& output) const;

    // An input of the shown graph, and the description that the node made of it. Both pointers hold
    // until the shown graph changes.
    struct InputDescription
    {
        const Data::Content::ParamInput* input;
        const Data::Desc::Parameter* description;
    };

    // Returns the inputs of the shown graph that take values and no images, in their order. Returns
    // nothing for a ghost.
    std::vector<InputDescription> valueInputs() const;

    // Returns the type of an input by the shown graph, and of an output by the document of this
    // node.
    unsigned connectorType(const std::string& identifier) const override;

    // Returns true for an input of the shown graph that takes either kind of image. Outputs are
    // never variant.
    bool isVariantConnector(const std::string& identifier) const override;

    // Appends the image inputs of the shown graph, the first one of each identifier. For a ghost
    // appends the inputs that its connections name.
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;

    // Appends one entry for each output of the node, under the identifier of the output in the
    // shown graph.
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Returns the type of the first output. Returns 0 if there is none.
    unsigned outputType() const override;
    // Describes the node anew: parameters, inputs, outputs and their connections.
    void onSubGraphChanged(Orv::Core::ManipulatorContext* context) override;
    // Looks for the graph anew, and describes the node by it.
    void onSubGraphLinkChanged(Orv::Core::ManipulatorContext* context) override;

    // Returns the common parameters of nodes first, then the inputs of the shown graph by their
    // groups. A common parameter is left out if a value input has its identifier.
    const std::vector<Data::Desc::ParameterGroupPointer>& parameterDescriptions() const override;

    // Returns the description of an input of the shown graph or of a common parameter. It holds
    // until the node is described anew.
    const Data::Desc::Parameter* description(const std::string& identifier) const override;

    // Returns the parameters of the node: the common ones, and the value inputs of the shown graph.
    // The same controller stays when the node is described anew. Returns null if the instance died
    // before the first call.
    ParametersController* parametersController() override;
    // Returns true for the common parameters that are marked so.
    bool isInheritable(const Data::Desc::Parameter& description) const override;
    bool hasRelativeType(const Data::Desc::Parameter& description) const override;

    // Returns a description that the controller made of the shown graph. For a ghost, its name is
    // the key "GHOST_GRAPH". Never null.
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
