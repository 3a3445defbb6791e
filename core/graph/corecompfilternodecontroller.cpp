#include "ksx/core/compfilternodecontroller.h"

#include "content/nodekind.h"
#include "content/packageof.h"
#include "core/manipulatorcontext.h"
#include "data/content/compfilter.h"
#include "data/content/graph.h"
#include "data/content/nodemanipulators.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "data/datamessage.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/filtertable.h"
#include "data/desc/valuetype.h"
#include "data/diagnosticlog.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/follow.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/objecturl.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/resourcelistener.h"
#include "ksx/core/stage.h"
#include <QCoreApplication>
#include <QFile>
#include <algorithm>

namespace Ksx::Core {

using namespace Data::Content;
namespace ValueType = Data::Desc::ValueType;
namespace ParameterFlag = Data::Desc::ParameterFlag;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
using DescParameter = Data::Desc::Parameter;

namespace {

const char* const LogSource = "core\\corecompfilternodecontroller";
constexpr int NotLiveLine = 449; // by which the report is known

const std::string ColorSwitch = "colorswitch";

const Data::Desc::Filter* findDescription(const CompFilter& filter)
{
    return Data::Desc::DescriptionTables::instance().filters().find(filter.filter().get());
}

// The groups by which a node shows its parameters: the common ones first, then its own.
std::vector<Data::Desc::ParameterGroupPointer> groupsOf(const Data::Desc::Filter* description)
{
    std::vector<Data::Desc::ParameterGroupPointer> groups;
    if (description == nullptr)
        return groups;
    for (const auto& group : description->groups)
        if (group->role() == Data::Desc::GroupRole::Common)
            groups.push_back(group);
    for (const auto& group : description->groups)
        if (group->role() != Data::Desc::GroupRole::Common)
            groups.push_back(group);
    return groups;
}

} // namespace

CompFilterNodeController::CompFilterNodeController(const CompNode& node, const CompFilter& filter,
                                                   CompGraphController& graph)
    : CompNodeController(node, graph), m_description(findDescription(filter)), m_filter(&filter),
      m_groups(groupsOf(m_description))
{
    begin(node);
    const bool hasResource = !resourceParameterOf(filter.filter().get()).empty();
    if (description(ColorSwitch) == nullptr && !hasResource)
        return;
    listenTo(filter.parameters(), m_watch);
    m_colorSwitch = colorSwitch();
    readResource();
}

CompFilterNodeController::~CompFilterNodeController() = default;

const Data::Content::CompFilter* CompFilterNodeController::filter() const
{
    return m_filter.get();
}

ParamGraphController* CompFilterNodeController::paramGraph() const
{
    if (!m_filter || m_filter->paramsGraphs().isEmpty())
        return nullptr;
    return graphController(Orv::Data::DataPointerBox<ParamsGraph>(&m_filter->paramsGraphs().at(0)));
}

std::string CompFilterNodeController::resourceParameterOf(const std::string& filter)
{
    return Core::resourceParameterOf(filter);
}

const Resource* CompFilterNodeController::resource() const
{
    if (!m_filter)
        return nullptr;
    const std::string parameter = resourceParameterOf(m_filter->filter().get());
    auto* const controller =
        const_cast<CompFilterNodeController*>(this)->CompNodeController::parameterController(
            parameter);
    const Package* package = packageOf(*m_filter);
    if (controller == nullptr || package == nullptr)
        return nullptr;
    const boost::any value = controller->value();
    const auto* path = boost::any_cast<std::string>(&value);
    return path == nullptr || path->empty()
               ? nullptr
               : dynamic_cast<const Resource*>(resolveObjectUrl(*path, *package));
}

const DescParameter* CompFilterNodeController::input(const std::string& identifier) const
{
    if (m_description != nullptr)
        for (const DescParameter* input : m_description->inputs)
            if (input->identifier == identifier)
                return input;
    return nullptr;
}

unsigned CompFilterNodeController::connectorType(const std::string& identifier) const
{
    if (m_description == nullptr)
        return identifier == UniqueOutput ? outputType() : 0;
    if (identifier == UniqueOutput)
        return m_description->outputTypes == ValueType::Image ? outputType()
                                                              : m_description->outputTypes;
    const DescParameter* connector = input(identifier);
    if (connector == nullptr)
        return 0;
    if (!ValueType::isVariant(connector->type))
        return connector->type;
    for (std::size_t i = 0; i < inputConnectorCount(); ++i) {
        const InputConnectorController& other = *inputConnector(i);
        if (!isVariantConnector(other.identifier()))
            continue;
        for (const ConnectorController* source : other.targets()) {
            const unsigned type = static_cast<const OutputConnectorController*>(source)->type();
            if (ValueType::isKnownImage(type))
                return type;
        }
    }
    return outputType();
}

bool CompFilterNodeController::isVariantConnector(const std::string& identifier) const
{
    if (m_description == nullptr)
        return false;
    if (identifier == UniqueOutput)
        return m_description->outputTypes == ValueType::Image;
    const DescParameter* connector = input(identifier);
    return connector != nullptr && ValueType::isVariant(connector->type);
}

bool CompFilterNodeController::isOptionalVariantConnector(const std::string& identifier) const
{
    const DescParameter* connector = input(identifier);
    return connector != nullptr && isVariantConnector(identifier) &&
           (connector->flags & ParameterFlag::OptionalVariant) == ParameterFlag::OptionalVariant;
}

void CompFilterNodeController::appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const
{
    if (m_description == nullptr)
        return;
    for (const DescParameter* input : m_description->inputs)
        entries.push_back(
            {input->identifier,
             QCoreApplication::translate("Ksx::Data::Desc::Filters", input->nameKey.c_str()), 0,
             QCoreApplication::translate("Ksx::Data::Desc::Filters", input->descKey.c_str())});
}

unsigned CompFilterNodeController::connectorUsage(const std::string&) const
{
    return 0;
}

unsigned CompFilterNodeController::outputType() const
{
    const OutputConnectorController* output = outputConnector(0);
    const unsigned type = output == nullptr ? 0 : typeOfOutput(output->outputUid());
    return type != 0 || m_description == nullptr ? type : m_description->outputTypes;
}

bool CompFilterNodeController::setOutputTypeFromInput(unsigned type, ManipulatorContext* context)
{
    const unsigned current = outputType();
    if (type == 0 || type == current)
        return false;
    if (!isVariantConnector(std::string(UniqueOutput))) {
        Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency, LogSource, __LINE__,
                                  "Using setCurrentVariantType on a non variant filter\n");
        return false;
    }
    if (context == nullptr || node() == nullptr) {
        Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency, LogSource, NotLiveLine,
                                  "Node " + std::to_string(uid()) +
                                      " have output type: " + std::to_string(current) +
                                      " and must be: " + std::to_string(type));
        return false;
    }
    for (const CompOutput& output : node()->compOutputs())
        ManipulatorStruct<CompOutput>(output, *context).comptype().value().set(type);
    return true;
}

const std::vector<Data::Desc::ParameterGroupPointer>&
CompFilterNodeController::parameterDescriptions() const
{
    return m_groups;
}

const DescParameter* CompFilterNodeController::description(const std::string& identifier) const
{
    if (m_description == nullptr)
        return nullptr;
    const std::string_view name = std::string_view(identifier).substr(0, identifier.find('/'));
    return m_description->parameter(name);
}

ParametersController* CompFilterNodeController::parametersController()
{
    if (m_parameters == nullptr && m_filter && m_description != nullptr) {
        bool hasPrimary = false;
        for (const DescParameter* input : m_description->inputs)
            hasPrimary = hasPrimary || (input->flags & ParameterFlag::Primary) != 0;
        m_parameters = makeParameters(m_filter->parameters(), m_groups, hasPrimary);
    }
    return m_parameters.get();
}

bool CompFilterNodeController::isInheritable(const DescParameter& description) const
{
    return (description.flags & ParameterFlag::Inheritable) != 0;
}

bool CompFilterNodeController::hasRelativeType(const DescParameter& description) const
{
    return description.type == ValueType::Float4OrColorImage ||
           description.type == ValueType::Float1OrGrayscaleImage ||
           description.type == ValueType::ColorOrImage;
}

std::optional<bool> CompFilterNodeController::colorSwitch() const
{
    auto* const controller =
        const_cast<CompFilterNodeController*>(this)->CompNodeController::parameterController(
            ColorSwitch);
    if (controller == nullptr || controller->isDynamic())
        return std::nullopt;
    const boost::any value = controller->value();
    const auto* isColor = boost::any_cast<bool>(&value);
    return isColor == nullptr ? std::nullopt : std::optional<bool>(*isColor);
}

void CompFilterNodeController::readResource()
{
    const std::string name =
        m_filter ? resourceParameterOf(m_filter->filter().get()) : std::string();
    const auto isPath = [&](const Parameter& parameter) { return parameter.name().get() == name; };
    const bool isStored = m_filter && std::any_of(m_filter->parameters().begin(),
                                                  m_filter->parameters().end(), isPath);
    const Resource* const found = isStored ? resource() : nullptr;
    if (m_resource == found)
        return;
    m_resource.reset(found);
    if (found != nullptr && isAttached(*found))
        ResourceListener::of(*found).isReachable(); // reports a file that cannot be read
}

// Only a change of the switch itself sets the type: another edit leaves alone what a file says.
void CompFilterNodeController::onParameters(const Orv::Data::DataMessage& message)
{
    readResource();
    const std::optional<bool> isColor = colorSwitch();
    if (isColor == m_colorSwitch)
        return;
    m_colorSwitch = isColor;
    ManipulatorContext* context = editableContext(message);
    if (context == nullptr || !isColor)
        return;
    const unsigned type = *isColor ? ValueType::ColorImage : ValueType::GrayscaleImage;
    if (isVariantConnector(std::string(UniqueOutput)) && setOutputTypeFromInput(type, context))
        propagateOutputType(context);
}

} // namespace Ksx::Core
