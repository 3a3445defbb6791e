#include "ksx/core/paramnodecontroller.h"

#include "data/content/compnode.h"
#include "data/content/graph.h"
#include "data/content/paramsgraph.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/filtertable.h"
#include "data/desc/valuetype.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/paramgraphcontroller.h"
#include <QCoreApplication>

namespace Ksx::Core {

using namespace Data::Content;
using Data::Desc::FilterKind;
using DescParameter = Data::Desc::Parameter;

namespace {

const Data::Desc::SubNode* findDescription(const ParamsGraphNode& node)
{
    const auto* filter =
        Data::Desc::DescriptionTables::instance().filters().find(FilterKind::FxMaps);
    return filter->subNode(node.type().get());
}

// The graph, the image node and the node itself.
DataContext contextOf(const ParamsGraphNode& node)
{
    const CompNode* compNode = nullptr;
    const Graph* graph = nullptr;
    for (const Orv::Data::BaseObject* at = node.getParent(); at != nullptr && graph == nullptr;
         at = at->getParent()) {
        if (compNode == nullptr)
            compNode = dynamic_cast<const CompNode*>(at);
        graph = dynamic_cast<const Graph*>(at);
    }
    return DataContext(
        {DataContext::Box(graph), DataContext::Box(compNode), DataContext::Box(&node)});
}

} // namespace

ParamNodeController::ParamNodeController(const ParamsGraphNode& node, ParamGraphController& graph)
    : BaseNodeController(graph), m_node(&node), m_description(findDescription(node))
{
    begin(node);
}

ParamNodeController::~ParamNodeController() = default;

const Data::Content::ParamsGraphNode* ParamNodeController::node() const
{
    return m_node.get();
}

ParamGraphController& ParamNodeController::paramGraph() const
{
    return static_cast<ParamGraphController&>(graph());
}

const ParamsGraphData* ParamNodeController::data() const
{
    return m_node ? paramGraph().data(m_node->data().get()) : nullptr;
}

ParametersController* ParamNodeController::parametersController()
{
    const ParamsGraphData* set = data();
    if (set == nullptr || m_description == nullptr)
        return nullptr;
    if (m_parameters == nullptr || m_parametersOf != Orv::Data::DataPointerBox(set)) {
        m_parametersOf.reset(set);
        m_parameters = std::make_unique<ParametersController>(
            set->parameters(), contextOf(*m_node),
            ParametersController::Groups{m_description->group}, false);
    }
    return m_parameters.get();
}

unsigned ParamNodeController::connectorType(const std::string& identifier) const
{
    if (identifier == UniqueOutput)
        return Data::Desc::ValueType::FxMap;
    if (m_description != nullptr)
        for (const DescParameter* input : m_description->inputs)
            if (input->identifier == identifier)
                return input->type;
    return 0;
}

void ParamNodeController::appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const
{
    if (m_description == nullptr)
        return;
    for (const DescParameter* input : m_description->inputs)
        entries.push_back(
            {input->identifier,
             QCoreApplication::translate("Ksx::Data::Desc::Filters", input->nameKey.c_str()), 0});
}

void ParamNodeController::appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const
{
    entries.push_back({outputIdentifier(),
                       QCoreApplication::translate("Ksx::Data::Desc::Filters", "ENTRY_OUTPUT_NAME"),
                       0});
}

Uid ParamNodeController::uid() const
{
    return m_node ? m_node->uid().get() : NoUid;
}

const Orv::Data::ContainerList<Connexion>* ParamNodeController::connexions() const
{
    return m_node ? &m_node->connexions() : nullptr;
}

const GUILayout* ParamNodeController::layout() const
{
    return m_node ? &m_node->GUILayout() : nullptr;
}

} // namespace Ksx::Core
