#include "ksx/core/compinstancenodecontroller.h"

#include "core/manipulatorcontext.h"
#include "data/content/compnode.h"
#include "data/content/graph.h"
#include "data/content/graphoutput.h"
#include "data/content/package.h"
#include "data/content/packageslist.h"
#include "data/content/paraminput.h"
#include "data/datamessage.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/valuetype.h"
#include "editing/keyindex.h"
#include "graph/connexionslistener.h"
#include "graph/contentlink.h"
#include "graph/graphoutputtype.h"
#include "graph/inputparameter.h"
#include "graph/subgraphlistener.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/follow.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/stage.h"
#include <QCoreApplication>
#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace Ksx::Core {

using namespace Data::Content;
namespace ValueType = Data::Desc::ValueType;
namespace ParameterFlag = Data::Desc::ParameterFlag;
using Data::Desc::GroupRole;
using Data::Desc::ParameterGroup;
using Orv::Core::ManipulatorContext;
using DescParameter = Data::Desc::Parameter;

namespace {

std::shared_ptr<ParameterGroup> mainGroup()
{
    return std::make_shared<ParameterGroup>(GroupRole::Main, "Instance_parameters",
                                            "INSTANCE_PARAMETERS", "INSTANCE_PARAMETERS");
}

QString translated(const char* key)
{
    return QCoreApplication::translate("Ksx::Data::Desc::Filters", key);
}

Data::Desc::FilterOutput outputOf(const GraphOutput& output, unsigned type)
{
    const std::string& identifier = output.identifier().get();
    const std::string& label = output.attributes().label().get();
    Data::Desc::FilterOutput described{identifier, label.empty() ? identifier : label,
                                       output.attributes().description().get(), type};
    for (const Usage& usage : output.usages())
        described.usages.push_back({usage.name().get(), usage.components().get()});
    return described;
}

// Returns the common parameters without those that a value input hides by its identifier. The
// instance stores its parameters by identifier, so that one of the two has to give way.
Data::Desc::ParameterGroupPointer
commonGroupBeside(const std::vector<std::shared_ptr<ParameterGroup>>& groups)
{
    auto common = Data::Desc::DescriptionTables::instance().commonParameters();
    const auto isHidden = [&](const DescParameter* parameter) {
        return std::any_of(groups.begin(), groups.end(), [&](const auto& group) {
            const DescParameter* own = group->find(parameter->identifier);
            return own != nullptr && !ValueType::isImage(own->type);
        });
    };
    const auto& parameters = common->parameters();
    if (std::none_of(parameters.begin(), parameters.end(), isHidden))
        return common;
    auto rest = std::make_shared<ParameterGroup>(GroupRole::Common, common->identifier(),
                                                 common->nameKey(), common->descKey());
    for (const DescParameter* parameter : parameters)
        if (!isHidden(parameter))
            rest->add(*parameter);
    return rest;
}

} // namespace

CompInstanceNodeController::CompInstanceNodeController(const CompNode& node,
                                                       const CompInstance& instance,
                                                       CompGraphController& graph)
    : CompNodeController(node, graph), m_instance(&instance),
      m_link(std::make_unique<ContentLink>(*this))
{
    describe();
    begin(node);
    listenTo(instance.path().value(), m_pathListener);
    listenTo(instance.outputBridgings(), m_pathListener);
}

CompInstanceNodeController::~CompInstanceNodeController() = default;

const Data::Content::CompInstance* CompInstanceNodeController::instance() const
{
    return m_instance.get();
}

void CompInstanceNodeController::describe()
{
    const Graph* graph =
        m_instance ? m_link->follow<Graph>(m_instance->path().value().get(), *m_instance) : nullptr;
    m_referenced.reset(graph);
    m_outputNames.clear();
    if (m_instance)
        for (const OutputBridging& bridging : m_instance->outputBridgings())
            m_outputNames.insert_or_assign(bridging.uid().get(), bridging.identifier().get());
    m_inputsByName.clear();
    m_description = {};
    m_description.identifier = "compinstance";
    if (graph != nullptr) {
        describeGraph(*graph);
        listenerOf<SubGraphListener>(*graph).subscribe(*this);
    } else {
        describeGhost();
    }
}

void CompInstanceNodeController::describeGraph(const Graph& graph)
{
    m_description.nameKey = graph.attributes().label().get();
    m_description.descKey = graph.attributes().description().get();
    std::vector<std::shared_ptr<ParameterGroup>> groups{mainGroup()};
    const Uid primary = graph.primaryInput().value().get();
    for (const ParamInput& input : graph.paraminputs()) {
        const std::string& name = input.group().get();
        std::shared_ptr<ParameterGroup> group;
        for (const auto& known : groups)
            if (name.empty() ? known->role() == GroupRole::Main : known->identifier() == name)
                group = known;
        if (group == nullptr)
            group = groups.emplace_back(
                std::make_shared<ParameterGroup>(GroupRole::Named, name, name, name));
        DescParameter parameter = parameterOfInput(input);
        const bool isImage = ValueType::isImage(parameter.type);
        if (isImage && input.uid().get() == primary)
            parameter.flags |= ParameterFlag::Primary;
        const DescParameter& kept = group->add(std::move(parameter));
        if (!isImage)
            continue;
        m_description.inputs.push_back(&kept);
        m_inputsByName.emplace(kept.identifier, &kept);
    }
    const std::vector<unsigned> types = typesOfGraphOutputs(graph);
    for (const GraphOutput& output : graph.graphOutputs())
        m_description.outputs.push_back(outputOf(output, types[m_description.outputs.size()]));
    m_description.groups.push_back(commonGroupBeside(groups));
    m_description.groups.insert(m_description.groups.end(), groups.begin(), groups.end());
}

void CompInstanceNodeController::describeGhost()
{
    m_description.nameKey = "GHOST_GRAPH";
    m_description.descKey = "GHOST_GRAPH_DESC";
    m_description.groups.push_back(Data::Desc::DescriptionTables::instance().commonParameters());
    m_description.groups.push_back(mainGroup());
    if (!m_instance)
        return;
    for (const OutputBridging& bridging : m_instance->outputBridgings()) {
        const std::string& identifier = bridging.identifier().get();
        m_description.outputs.push_back(
            {identifier,
             translated("GHOST_OUTPUT_ENTRY_%1")
                 .replace(QStringLiteral("%1"), QString::fromLatin1(identifier.c_str()))
                 .toLatin1()
                 .toStdString(),
             translated("GHOST_OUTPUT_ENTRY_DESC").toLatin1().toStdString(),
             typeOfOutput(bridging.uid().get())});
    }
}

const GraphOutput*
CompInstanceNodeController::graphOutput(const OutputConnectorController& output) const
{
    return m_referenced ? KeyIndex<GraphOutput, IdentifierKey>::find(m_referenced->graphOutputs(),
                                                                     output.identifier())
                        : nullptr;
}

OutputController*
CompInstanceNodeController::outputController(const OutputConnectorController& output) const
{
    const GraphOutput* found = graphOutput(output);
    CompGraphController* graph = found == nullptr ? nullptr : graphController(m_referenced);
    return graph == nullptr ? nullptr : graph->outputController(*found);
}

std::vector<CompInstanceNodeController::InputDescription>
CompInstanceNodeController::valueInputs() const
{
    std::vector<InputDescription> result;
    if (!m_referenced)
        return result;
    for (const ParamInput& input : m_referenced->paraminputs()) {
        const unsigned type = input.type().value().get();
        if (type == ValueType::Unknown || ValueType::isImage(type))
            continue;
        if (const DescParameter* found = m_description.parameter(input.identifier().get()))
            result.push_back({&input, found});
    }
    return result;
}

unsigned CompInstanceNodeController::connectorType(const std::string& identifier) const
{
    if (const DescParameter* input = describedInput(identifier))
        return input->type;
    const OutputConnectorController* const output = outputConnectorByName(identifier);
    return output == nullptr ? 0 : typeOfOutput(output->outputUid());
}

bool CompInstanceNodeController::isVariantConnector(const std::string& identifier) const
{
    const DescParameter* const input = describedInput(identifier);
    return input != nullptr && ValueType::isVariant(input->type);
}

const DescParameter* CompInstanceNodeController::describedInput(const std::string& identifier) const
{
    const auto found = m_inputsByName.find(identifier);
    return found == m_inputsByName.end() ? nullptr : found->second;
}

void CompInstanceNodeController::appendInputConnectorNames(
    std::vector<ConnectorEntry>& entries) const
{
    std::unordered_set<std::string> known;
    for (const DescParameter* input : m_description.inputs)
        if (known.insert(input->identifier).second)
            entries.push_back({input->identifier, QString::fromLatin1(input->nameKey.c_str()), 0,
                               QString::fromLatin1(input->descKey.c_str())});
    if (m_referenced || connexions() == nullptr)
        return;
    for (const Connexion& connexion : *connexions())
        if (known.insert(connexion.identifier().get()).second)
            entries.push_back({connexion.identifier().get(), {}, 0});
}

void CompInstanceNodeController::appendOutputConnectorNames(
    std::vector<ConnectorEntry>& entries) const
{
    if (node() == nullptr)
        return;
    std::unordered_map<std::string_view, const Data::Desc::FilterOutput*> described;
    for (const Data::Desc::FilterOutput& output : m_description.outputs)
        described.emplace(output.identifier, &output);
    for (const CompOutput& compOutput : node()->compOutputs()) {
        ConnectorEntry entry{std::string(), {}, compOutput.uid().get()};
        const auto name = m_outputNames.find(entry.uid);
        if (name != m_outputNames.end())
            entry.identifier = name->second;
        entry.label = QString::fromLatin1(entry.identifier.c_str());
        const auto output = described.find(entry.identifier);
        if (output != described.end()) {
            entry.label = QString::fromLatin1(output->second->name.c_str());
            entry.tooltip = QString::fromLatin1(output->second->tooltip.c_str());
        }
        entries.push_back(std::move(entry));
    }
}

unsigned CompInstanceNodeController::outputType() const
{
    return outputConnectorCount() == 0 ? 0 : typeOfOutput(outputConnector(0)->outputUid());
}

void CompInstanceNodeController::onSubGraphChanged(ManipulatorContext* context)
{
    const auto old = m_description.groups; // the rows of parameters still point into them
    describe();
    if (m_parameters != nullptr)
        m_parameters->setDescriptions(m_description.groups, hasPrimaryInput());
    rebuildInputConnectors(context);
    rebuildOutputConnectors();
    refreshConnections(context);
    onConnectorsChanged();
}

void CompInstanceNodeController::onSubGraphLinkChanged(ManipulatorContext* context)
{
    onSubGraphChanged(context);
}

const std::vector<Data::Desc::ParameterGroupPointer>&
CompInstanceNodeController::parameterDescriptions() const
{
    return m_description.groups;
}

const DescParameter* CompInstanceNodeController::description(const std::string& identifier) const
{
    return m_description.parameter(std::string_view(identifier).substr(0, identifier.find('/')));
}

ParametersController* CompInstanceNodeController::parametersController()
{
    if (m_parameters == nullptr && m_instance)
        m_parameters =
            makeParameters(m_instance->parameters(), m_description.groups, hasPrimaryInput());
    return m_parameters.get();
}

bool CompInstanceNodeController::hasPrimaryInput() const
{
    for (const DescParameter* input : m_description.inputs)
        if ((input->flags & ParameterFlag::Primary) != 0)
            return true;
    return false;
}

bool CompInstanceNodeController::isInheritable(const DescParameter& description) const
{
    return (description.flags & ParameterFlag::Inheritable) != 0;
}

bool CompInstanceNodeController::hasRelativeType(const DescParameter& description) const
{
    return description.type == ValueType::Float4OrColorImage ||
           description.type == ValueType::Float1OrGrayscaleImage ||
           description.type == ValueType::ColorOrImage;
}

} // namespace Ksx::Core
