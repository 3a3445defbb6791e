// A node of a graph of images.
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

class CompNodeController : public BaseNodeController
{
public:
    CompNodeController(const Data::Content::CompNode& node, CompGraphController& graph);
    ~CompNodeController() override;

    // Null once the node has died.
    const Data::Content::CompNode* node() const;
    CompGraphController& compGraph() const;

    Uid uid() const override;
    const Orv::Data::ContainerList<Data::Content::Connexion>* connexions() const override;
    // One for each output in the document, under its own name where the node has one for it.
    void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    bool hasOutputUids() const override { return true; }
    bool canConnect(const OutputConnectorController& source,
                    const InputConnectorController& connector) const override;
    ConnectionDataInfo connectionInfo(const OutputConnectorController& output,
                                      const std::string& identifier) const override;
    // A variant node with a variant output takes on the type of what is connected to it.
    bool onInputTypeChanged(InputConnectorController& connector,
                            const OutputConnectorController& source,
                            Orv::Core::ManipulatorContext* context) override;

    // The descriptions of the node's parameters, by group; the same empty list for nodes without.
    virtual const std::vector<Data::Desc::ParameterGroupPointer>& parameterDescriptions() const;
    // Those of its parameters that exist so far as controllers; see ParametersController.
    virtual std::vector<ParameterController*> parameterControllers() const;
    // Of a parameter or connector; a name with a "/" stands for what is in front of it. Null if
    // there is none.
    virtual const Data::Desc::Parameter* description(const std::string& identifier) const;
    virtual ParameterController* parameterController(const Data::Desc::Parameter& description);
    ParameterController* parameterController(const std::string& identifier);
    // Null for nodes without parameters.
    virtual ParametersController* parametersController() { return nullptr; }
    virtual bool isInheritable(const Data::Desc::Parameter& description) const;
    // Does its type follow the color mode of the node?
    virtual bool hasRelativeType(const Data::Desc::Parameter& description) const;
    // The atomic filter, or what an instance shows in its place. Null if there is none.
    virtual const Data::Desc::Filter* nodeDescription() const { return nullptr; }
    // Asked of the target of a new connection.
    virtual bool acceptsConnection(const OutputConnectorController& source,
                                   const InputConnectorController& connector) const;

protected:
    const Data::Content::GUILayout* layout() const override;
    // For leaf classes with parameters.
    std::unique_ptr<ParametersController>
    makeParameters(const Orv::Data::ContainerList<Data::Content::Parameter>& list,
                   const std::vector<Data::Desc::ParameterGroupPointer>& groups,
                   bool hasPrimaryInput) const;
    // The type that the document has for an output; 0 if there is none.
    unsigned typeOfOutput(Uid uid) const;

private:
    void onOutputsChanged(const Orv::Data::DataMessage& message);

    Orv::Data::DataPointerBox<Data::Content::CompNode> m_node;
    Follow<&CompNodeController::onOutputsChanged, ListChanges> m_outputsListener{*this};
};

} // namespace Ksx::Core
