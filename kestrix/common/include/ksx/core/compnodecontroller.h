// The base of the controllers of nodes of a graph of images.
#pragma once

#include "data/desc/filter.h"
#include "ksx/core/basenodecontroller.h"
#include "ksx/core/follow.h"

namespace Ksx::Data::Content {
class CompNode;
class Parameter;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class CompGraphController;
class ParameterController;
class ParametersController;

// Shows a CompNode. The kinds are CompFilterNodeController, CompInstanceNodeController,
// CompInputNodeController and CompOutputNodeController; use dynamic_cast to find out which. For
// life and thread see NodeController.
//
// Controllers of parameters belong to the node and die with it.
class CompNodeController : public BaseNodeController
{
public:
    // For the kinds of nodes. `node` is part of the graph.
    CompNodeController(const Data::Content::CompNode& node, CompGraphController& graph);
    ~CompNodeController() override;

    // Returns the node in the document. Returns null once it has died.
    const Data::Content::CompNode* node() const;
    // Returns the graph that owns this controller.
    CompGraphController& compGraph() const;

    // Returns the uid in the document. Returns NoUid once the node has died.
    Uid uid() const override;
    // Returns the connections to this node in the document. Returns null once the node has died.
    const Orv::Data::ContainerList<Data::Content::Connexion>* connexions() const override;

    // Appends one entry for each output in the document. All have the identifier
    // outputIdentifier(). Instances give each output its own identifier.
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    // Returns true: a node of images may have several outputs.
    bool hasOutputUids() const override { return true; }
    // Also returns false if acceptsConnection() does.
    bool canConnect(const OutputConnectorController& source,
                    const InputConnectorController& connector) const override;
    // Also names the output by its uid.
    ConnectionDataInfo connectionInfo(const OutputConnectorController& output,
                                      const std::string& identifier) const override;

    // Gives a variant node the type of an image that is connected to a variant input. Only nodes
    // with a variant output take on a type.
    bool onInputTypeChanged(InputConnectorController& connector,
                            const OutputConnectorController& source,
                            Orv::Core::ManipulatorContext* context) override;

    // Returns the descriptions of the parameters of the node, by group. Returns an empty list for a
    // node without parameters. The list changes when an instance is described anew.
    virtual const std::vector<Data::Desc::ParameterGroupPointer>& parameterDescriptions() const;

    // Returns the controllers of all parameters of the node, in the order of their descriptions.
    // Makes the missing ones.
    virtual std::vector<ParameterController*> parameterControllers() const;

    // Returns the description of a parameter or an input. In `identifier` only the part before the
    // first "/" counts. Returns null if there is none.
    virtual const Data::Desc::Parameter* description(const std::string& identifier) const;

    // Returns the controller of the parameter with this very description. Returns null if the node
    // does not have it, and for a connector of images.
    virtual ParameterController* parameterController(const Data::Desc::Parameter& description);

    // Returns the controller of a parameter by its identifier, found as description() does. Returns
    // null if there is none.
    ParameterController* parameterController(const std::string& identifier);

    // Returns the parameters of the node, and makes their controller at the first call. Returns
    // null for a node without parameters.
    virtual ParametersController* parametersController() { return nullptr; }
    // Returns whether the parameter can be relative to an input or to the graph.
    virtual bool isInheritable(const Data::Desc::Parameter& description) const;
    // Returns whether the type of the parameter allows an image in place of a value.
    virtual bool hasRelativeType(const Data::Desc::Parameter& description) const;

    // Returns the description of the filter. An instance returns a description that it makes of the
    // graph it shows. Returns null if there is none.
    virtual const Data::Desc::Filter* nodeDescription() const { return nullptr; }
    // Returns whether the node takes a new connection from `source`. Called for the target.
    virtual bool acceptsConnection(const OutputConnectorController& source,
                                   const InputConnectorController& connector) const;

protected:
    const Data::Content::GUILayout* layout() const override;

    // For leaf classes with parameters: makes their controller, in the scope of the graph and the
    // node.
    std::unique_ptr<ParametersController>
    makeParameters(const Orv::Data::ContainerList<Data::Content::Parameter>& list,
                   const std::vector<Data::Desc::ParameterGroupPointer>& groups,
                   bool hasPrimaryInput) const;
    // Returns the type that the document has for the output of a uid. Returns 0 if there is none.
    unsigned typeOfOutput(Uid uid) const;

private:
    void onOutputsChanged(const Orv::Data::DataMessage& message);

    Orv::Data::DataPointerBox<Data::Content::CompNode> m_node;
    Follow<&CompNodeController::onOutputsChanged, ListChanges> m_outputsListener{*this};
};

} // namespace Ksx::Core
