#include "ksx/core/compnodecontroller.h"

#include "data/content/compnode.h"
#include "data/content/graph.h"
#include "data/datamessage.h"
#include "data/desc/valuetype.h"
#include "editing/keyindex.h"
#include "graph/connexionslistener.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/stage.h"
#include <algorithm>

namespace Ksx::Core {

using namespace Data::Content;
namespace ValueType = Data::Desc::ValueType;
using Data::Desc::Parameter;
using Orv::Core::ManipulatorContext;

CompNodeController::CompNodeController(const CompNode& node, CompGraphController& graph)
    : BaseNodeController(graph), m_node(&node)
{
    listenTo(node.compOutputs(), m_outputsListener);
}

CompNodeController::~CompNodeController() = default;

const Data::Content::CompNode* CompNodeController::node() const
{
    return m_node.get();
}

CompGraphController& CompNodeController::compGraph() const
{
    return static_cast<CompGraphController&>(graph());
}

Uid CompNodeController::uid() const
{
    return m_node ? m_node->uid().get() : NoUid;
}

const Orv::Data::ContainerList<Connexion>* CompNodeController::connexions() const
{
    return m_node ? &m_node->connexions() : nullptr;
}

void CompNodeController::appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const
{
    if (m_node)
        for (const CompOutput& output : m_node->compOutputs())
            entries.push_back({outputIdentifier(), {}, output.uid().get()});
}

bool CompNodeController::canConnect(const OutputConnectorController& source,
                                    const InputConnectorController& connector) const
{
    return NodeController::canConnect(source, connector) && acceptsConnection(source, connector);
}

ConnectionDataInfo CompNodeController::connectionInfo(const OutputConnectorController& output,
                                                      const std::string& identifier) const
{
    return {identifier, uid(), output.outputUid()};
}

bool CompNodeController::onInputTypeChanged(InputConnectorController& connector,
                                            const OutputConnectorController& source,
                                            ManipulatorContext* context)
{
    const unsigned type = source.type();
    if (context == nullptr || !ValueType::isKnownImage(type) ||
        !isVariantConnector(connector.identifier()) || !isVariantConnector(outputIdentifier()))
        return false;
    return setOutputTypeFromInput(type, context);
}

const std::vector<Data::Desc::ParameterGroupPointer>&
CompNodeController::parameterDescriptions() const
{
    static const std::vector<Data::Desc::ParameterGroupPointer> none;
    return none;
}

std::vector<ParameterController*> CompNodeController::parameterControllers() const
{
    std::vector<ParameterController*> result;
    auto* const parameters = const_cast<CompNodeController*>(this)->parametersController();
    for (std::size_t i = 0; parameters != nullptr && i < parameters->count(); ++i)
        result.push_back(&parameters->at(i));
    return result;
}

const Parameter* CompNodeController::description(const std::string&) const
{
    return nullptr;
}

ParameterController* CompNodeController::parameterController(const Parameter& description)
{
    ParametersController* parameters = parametersController();
    return parameters == nullptr ? nullptr : parameters->parameter(description);
}

ParameterController* CompNodeController::parameterController(const std::string& identifier)
{
    const Parameter* found = description(identifier);
    return found == nullptr ? nullptr : parameterController(*found);
}

bool CompNodeController::isInheritable(const Parameter&) const
{
    return false;
}

bool CompNodeController::hasRelativeType(const Parameter&) const
{
    return false;
}

bool CompNodeController::acceptsConnection(const OutputConnectorController&,
                                           const InputConnectorController&) const
{
    return true;
}

std::unique_ptr<ParametersController>
CompNodeController::makeParameters(const ParametersController::List& list,
                                   const ParametersController::Groups& groups,
                                   bool hasPrimaryInput) const
{
    DataContext context({DataContext::Box(compGraph().graph()), DataContext::Box(node())});
    return std::make_unique<ParametersController>(list, std::move(context), groups,
                                                  hasPrimaryInput);
}

const GUILayout* CompNodeController::layout() const
{
    return m_node ? &m_node->GUILayout() : nullptr;
}

unsigned CompNodeController::typeOfOutput(Uid uid) const
{
    const CompOutput* const output =
        m_node ? KeyIndex<CompOutput, UidKey>::find(m_node->compOutputs(), uid) : nullptr;
    return output == nullptr ? 0 : output->comptype().value().get();
}

void CompNodeController::onOutputsChanged(const Orv::Data::DataMessage& message)
{
    rebuildOutputConnectors();
    onConnectorsChanged();
    ManipulatorContext* context = editableContext(message);
    graph().retryConnectionsTo(*this, context);
    propagateOutputType(context);
}

} // namespace Ksx::Core
