#include "ksx/core/funcnodecontroller.h"

#include "core/manipulatorcontext.h"
#include "data/content/function.h"
#include "data/content/functionmanipulators.h"
#include "data/datamessage.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/functiontable.h"
#include "data/desc/valuetype.h"
#include "data/diagnosticlog.h"
#include "function/funcdatamodifier.h"
#include "function/functionpath.h"
#include "graph/contentlink.h"
#include "ksx/core/edit.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/stage.h"
#include <QCoreApplication>
#include <unordered_set>

namespace Ksx::Core {

using namespace Data::Content;
namespace FunctionType = Data::Desc::FunctionType;
namespace ValueType = Data::Desc::ValueType;
using Data::Desc::FunctionsEnum;
using Orv::Core::ManipulatorContext;
using DescFunction = Data::Desc::Function;

namespace {

constexpr int TypeLine = 204; // by which the report is known

const Data::Desc::FunctionTable& functionTable()
{
    return Data::Desc::DescriptionTables::instance().functions();
}

bool isInstance(const DescFunction* description)
{
    return description != nullptr &&
           description->kind == static_cast<unsigned>(FunctionsEnum::Instance);
}

// One type of a value, without alternatives and marks.
bool isDefinite(unsigned type)
{
    return type != 0 && (type & (type - 1)) == 0 && (type & FunctionType::AnyValue) == type;
}

// Inputs of graphs and functions hold their text as another type than functions give.
unsigned withBothTexts(unsigned types)
{
    constexpr unsigned Texts = ValueType::Text | ValueType::String;
    return (types & Texts) == 0 ? types : types | Texts;
}

} // namespace

struct FuncNodeController::Instance
{
    explicit Instance(FuncNodeController& node) : link(node), listener(node) {}

    DescFunction description;
    Orv::Data::DataPointerBox<Function> function; // empty for a ghost
    ContentLink link;
    // On its data items, and on the inputs and the type of the function.
    Follow<&FuncNodeController::onSubGraphLinkChanged, ListChanges | Orv::Data::ChangeType::Removed,
           Stage::Link>
        listener;
};

FuncNodeController::FuncNodeController(const ParamNode& node, FuncGraphController& graph)
    : BaseNodeController(graph), m_node(&node),
      m_description(functionTable().find(node.function().get()))
{
    if (isInstance(m_description))
        describeInstance();
    if (m_description != nullptr && m_description->data)
        m_data = makeFuncDataModifier(node.funcDatas(), *m_description->data);
    updateUnknownInputs();
    begin(node);
    listenTo(node.connexions(), m_connexionsWatch);
}

FuncNodeController::~FuncNodeController() = default;

const Data::Content::ParamNode* FuncNodeController::node() const
{
    return m_node.get();
}

FuncGraphController& FuncNodeController::funcGraph() const
{
    return static_cast<FuncGraphController&>(graph());
}

unsigned FuncNodeController::functionType() const
{
    return m_description == nullptr ? UnknownFunction : m_description->kind;
}

bool FuncNodeController::isOutputNode() const
{
    return funcGraph().outputNode() == this;
}

const Function* FuncNodeController::referencedFunction() const
{
    return m_instance == nullptr ? nullptr : m_instance->function.get();
}

void FuncNodeController::describeInstance()
{
    m_instance = std::make_unique<Instance>(*this);
    m_instance->description = *functionTable().find(FunctionsEnum::Instance);
    m_description = &m_instance->description;
    if (!m_node)
        return;
    listenTo(m_node->funcDatas(), m_instance->listener);
    if (const auto* function = m_instance->link.follow<Function>(functionPathOf(*m_node), *m_node))
        describeFunction(*function);
    else
        describeGhost();
}

void FuncNodeController::describeFunction(const Function& function)
{
    DescFunction& description = m_instance->description;
    description.nameKey = function.attributes().label().get();
    description.descKey = function.attributes().description().get();
    description.outputType = function.type().value().get();
    description.inputs.clear();
    std::unordered_set<std::string> known;
    for (const ParamInput& input : function.paraminputs())
        if (known.insert(input.identifier().get()).second)
            description.inputs.push_back({input.identifier().get(),
                                          input.attributes().label().get(),
                                          input.type().value().get(), false});
    m_instance->function.reset(&function);
    listenTo(function.paraminputs(), m_instance->listener);
    listenTo(function.type(), m_instance->listener);
}

void FuncNodeController::describeGhost()
{
    m_instance->description.nameKey = "GHOST_FUNCTION";
    m_instance->description.descKey = "GHOST_FUNCTION_DESC";
}

bool FuncNodeController::updateUnknownInputs()
{
    std::vector<std::string> identifiers;
    std::unordered_set<std::string_view> seen;
    const auto note = [&](const std::string& identifier) {
        const bool isKnown =
            m_description != nullptr && m_description->input(identifier) != nullptr;
        if (isKnown || !seen.insert(identifier).second)
            return false;
        identifiers.push_back(identifier);
        return true;
    };
    if (m_node)
        for (const Connexion& connexion : m_node->connexions())
            note(connexion.identifier().get());
    if (funcGraph().isHolding())
        for (const std::string& unused : m_unknownInputs)
            if (note(unused))
                funcGraph().tidyLater(*this);
    if (identifiers == m_unknownInputs)
        return false;
    m_unknownInputs = std::move(identifiers);
    return true;
}

// Served before the connections are read, which then find the inputs that they name. While no input
// is unknown, only what was touched can name one.
void FuncNodeController::onConnexions(const Orv::Data::DataMessage& message)
{
    bool canStay = m_unknownInputs.empty() && m_description != nullptr;
    for (const Orv::Data::TouchedChild& touched : message.touched) {
        const auto* const connexion = static_cast<const Connexion*>(touched.object.get());
        canStay = canStay && (connexion == nullptr ||
                              m_description->input(connexion->identifier().get()) != nullptr);
    }
    if (!canStay)
        followConnexions();
}

void FuncNodeController::followConnexions()
{
    if (!updateUnknownInputs())
        return;
    // Behind an edit of several steps, who hears of this may take the node away at once.
    const Orv::Data::DataPointerBox<FuncNodeController> self(this);
    rebuildInputConnectors(nullptr);
    if (self)
        onConnectorsChanged();
}

void FuncNodeController::dropUnusedInputs()
{
    followConnexions();
}

boost::any FuncNodeController::dataValue() const
{
    return m_data == nullptr ? boost::any() : m_data->value();
}

bool FuncNodeController::setData(const boost::any& value)
{
    return m_data != nullptr && m_data->setValue(value);
}

std::vector<unsigned> FuncNodeController::fedTypes() const
{
    std::vector<unsigned> types(m_description->inputs.size(), 0);
    for (std::size_t i = 0; i < types.size(); ++i) {
        const InputConnectorController* connector = inputConnector(i);
        // While inputs are being rebuilt some are missing.
        if (m_description->inputs[i].takesList || connector == nullptr ||
            connector->targets().empty())
            continue;
        const unsigned type =
            static_cast<const OutputConnectorController*>(connector->targets().front())->type();
        types[i] = isDefinite(type) ? type : 0;
    }
    return types;
}

unsigned FuncNodeController::connectorType(const std::string& identifier) const
{
    if (identifier == UniqueOutput)
        return outputType();
    if (m_description == nullptr)
        return 0;
    const auto* input = m_description->input(identifier);
    if (input == nullptr)
        return 0;
    const auto index = static_cast<std::size_t>(input - m_description->inputs.data());
    return m_description->acceptedTypes(index, fedTypes());
}

bool FuncNodeController::isVariantConnector(const std::string& identifier) const
{
    if (m_description == nullptr)
        return false;
    if (identifier == UniqueOutput)
        return (m_description->outputType & FunctionType::Generic) != 0;
    const auto* input = m_description->input(identifier);
    return input != nullptr && input->isGeneric();
}

void FuncNodeController::appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const
{
    if (m_description != nullptr)
        for (const auto& input : m_description->inputs)
            entries.push_back(
                {input.identifier,
                 referencedFunction() != nullptr
                     ? QString::fromLatin1(input.key.c_str())
                     : QCoreApplication::translate("Ksx::Data::Desc::Functions", input.key.c_str()),
                 0});
    for (const std::string& identifier : m_unknownInputs)
        entries.push_back({identifier, {}, 0});
}

void FuncNodeController::appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const
{
    entries.push_back(
        {outputIdentifier(),
         QCoreApplication::translate("Ksx::Data::Desc::Filters", "ENTRY_OUTPUT_NAME"), 0,
         QCoreApplication::translate("Ksx::Data::Desc::Filters", "ENTRY_OUTPUT_DESC")});
}

bool FuncNodeController::canConnect(const OutputConnectorController& source,
                                    const InputConnectorController& connector) const
{
    return NodeController::canConnect(source, connector) &&
           acceptsType(connector.identifier(), source.type());
}

// A source can name several types where its own follows from what feeds it. One that fits will do.
bool FuncNodeController::acceptsType(const std::string& identifier, unsigned type) const
{
    const auto* input = m_description == nullptr ? nullptr : m_description->input(identifier);
    if (input == nullptr || input->type == ValueType::Unknown || type == ValueType::Unknown)
        return true;
    const auto index = static_cast<std::size_t>(input - m_description->inputs.data());
    const unsigned accepted = withBothTexts(m_description->acceptedTypes(index, fedTypes()));
    if (type == FunctionType::NoOutput)
        return FunctionType::includes(accepted, type);
    return (accepted & type & FunctionType::AnyValue) != 0;
}

Uid FuncNodeController::uid() const
{
    return m_node ? m_node->uid().get() : NoUid;
}

unsigned FuncNodeController::outputType() const
{
    return m_node ? m_node->type().value().get() : 0;
}

void FuncNodeController::onSubGraphChanged(ManipulatorContext* context)
{
    onSubGraphLinkChanged(context);
}

void FuncNodeController::onSubGraphLinkChanged(ManipulatorContext* context)
{
    if (m_instance == nullptr)
        return;
    describeInstance();
    updateUnknownInputs();
    rebuildInputConnectors(context);
    refreshConnections(context);
    onConnectorsChanged();
}

bool FuncNodeController::onInputTypeChanged(InputConnectorController& connector,
                                            const OutputConnectorController&,
                                            ManipulatorContext* context)
{
    if (context == nullptr || m_description == nullptr ||
        m_description->input(connector.identifier()) == nullptr)
        return false;
    const unsigned type = m_description->outputTypeFor(fedTypes());
    return isDefinite(type) && setOutputTypeFromInput(type, context);
}

bool FuncNodeController::setOutputTypeFromInput(unsigned type, ManipulatorContext* context)
{
    const unsigned current = outputType();
    if (type == 0 || type == current)
        return false;
    if (context == nullptr || !m_node) {
        Orv::DiagnosticLog::write(
            Orv::LogLevel::Inconsistency, "core\\corefuncnodecontroller", TypeLine,
            "Node " + std::to_string(uid()) + " have output type: " + std::to_string(current) +
                " and must be: " + std::to_string(type) + "\n");
        return false;
    }
    using NodeManipulator = Orv::Core::ManipulatorStruct<ParamNode>;
    NodeManipulator(*m_node, *context).type().value().set(type);
    return true;
}

const Orv::Data::ContainerList<Connexion>* FuncNodeController::connexions() const
{
    return m_node ? &m_node->connexions() : nullptr;
}

bool FuncNodeController::takesList(const std::string& identifier) const
{
    const auto* input = m_description == nullptr ? nullptr : m_description->input(identifier);
    return input == nullptr || input->takesList;
}

const GUILayout* FuncNodeController::layout() const
{
    return m_node ? &m_node->GUILayout() : nullptr;
}

} // namespace Ksx::Core
