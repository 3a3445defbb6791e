#include "ksx/core/compinputnodecontroller.h"

#include "data/content/compinputbridge.h"
#include "data/content/compnode.h"
#include "data/content/graph.h"
#include "data/datamessage.h"
#include "data/desc/descriptiontables.h"
#include "graph/inputnodewatch.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/follow.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/stage.h"
#include <QCoreApplication>

namespace Ksx::Core {

using namespace Data::Content;

CompInputNodeController::CompInputNodeController(const CompNode& node,
                                                 const CompInputBridge& bridge,
                                                 CompGraphController& graph)
    : CompNodeController(node, graph), m_bridge(&bridge), m_entry(bridge.entry().get()), m_type(0)
{
    begin(node);
    m_type = primaryType();
    listenTo(bridge.entry(), m_watch);
    graph.inputNodes().add(*this, m_entry);
}

CompInputNodeController::~CompInputNodeController()
{
    compGraph().inputNodes().remove(*this, m_entry);
}

InputController* CompInputNodeController::input() const
{
    return m_bridge ? compGraph().inputsController()->inputByUid(m_bridge->entry().get()) : nullptr;
}

unsigned CompInputNodeController::connectorType(const std::string&) const
{
    return primaryType();
}

unsigned CompInputNodeController::primaryType() const
{
    const InputController* found = input();
    return found == nullptr ? 0 : found->type();
}

void CompInputNodeController::appendInputConnectorNames(std::vector<ConnectorEntry>&) const
{
    // The node has none: the image comes from outside of the graph.
}

void CompInputNodeController::appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const
{
    const std::size_t first = entries.size();
    CompNodeController::appendOutputConnectorNames(entries);
    for (std::size_t i = first; i < entries.size(); ++i) {
        entries[i].label =
            QCoreApplication::translate("Ksx::Data::Desc::Filters", "ENTRY_OUTPUT_NAME");
        entries[i].tooltip =
            QCoreApplication::translate("Ksx::Data::Desc::Filters", "ENTRY_OUTPUT_DESC");
    }
}

const Data::Desc::Parameter*
CompInputNodeController::description(const std::string& identifier) const
{
    const std::string_view name = std::string_view(identifier).substr(0, identifier.find('/'));
    for (const auto& group : parameterDescriptions())
        if (const Data::Desc::Parameter* found = group->find(name))
            return found;
    return nullptr;
}

const std::vector<Data::Desc::ParameterGroupPointer>&
CompInputNodeController::parameterDescriptions() const
{
    static const std::vector<Data::Desc::ParameterGroupPointer> groups{
        Data::Desc::DescriptionTables::instance().commonParameters(),
        Data::Desc::DescriptionTables::instance().inputParameters()};
    return groups;
}

ParametersController* CompInputNodeController::parametersController()
{
    if (m_parameters == nullptr && m_bridge)
        m_parameters = makeParameters(m_bridge->parameters(), parameterDescriptions(), false);
    return m_parameters.get();
}

void CompInputNodeController::onEntry(Orv::Core::ManipulatorContext* context)
{
    if (!m_bridge)
        return;
    InputNodeWatch& watch = compGraph().inputNodes();
    watch.remove(*this, m_entry);
    m_entry = m_bridge->entry().get();
    watch.add(*this, m_entry);
    followInput(context);
}

void CompInputNodeController::followInput(Orv::Core::ManipulatorContext* context)
{
    const unsigned type = primaryType();
    if (type == m_type)
        return;
    m_type = type;
    tellOutputType();
    propagateOutputType(context);
}

} // namespace Ksx::Core
