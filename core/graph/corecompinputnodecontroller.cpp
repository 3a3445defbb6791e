#include "ksx/core/compinputnodecontroller.h"

#include "data/content/compinputbridge.h"
#include "data/content/compnode.h"
#include "data/content/graph.h"
#include "data/datamessage.h"
#include "data/desc/descriptiontables.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/stage.h"
#include "ksx/core/valuelistener.h"
#include <QCoreApplication>

namespace Ksx::Core {

using namespace Data::Content;

// What may change the type of the input: the entry, and the type itself.
class CompInputNodeController::TypeWatch final
    : public Orv::Core::ListenerSimple<Stage::Description,
                                       Orv::Data::ChangeType::Value | ListChanges>
{
public:
    explicit TypeWatch(CompInputNodeController& node) : m_node(node) {}
    void deliver(const Orv::Data::DataMessage& message) override { m_node.onInputs(message); }

private:
    CompInputNodeController& m_node;
};

CompInputNodeController::CompInputNodeController(const CompNode& node,
                                                 const CompInputBridge& bridge,
                                                 CompGraphController& graph)
    : CompNodeController(node, graph), m_bridge(&bridge),
      m_watch(std::make_unique<TypeWatch>(*this)), m_type(0)
{
    begin(node);
    m_type = primaryType();
    listenTo(bridge.entry(), *m_watch);
    if (const InputController* found = input())
        listenTo(found->input()->type(), *m_watch);
}

CompInputNodeController::~CompInputNodeController() = default;

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

void CompInputNodeController::onInputs(const Orv::Data::DataMessage& message)
{
    const unsigned type = primaryType();
    if (type == m_type)
        return;
    m_type = type;
    tellOutputType();
    propagateOutputType(editableContext(message));
}

} // namespace Ksx::Core
