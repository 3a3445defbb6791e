#include "ksx/core/compoutputnodecontroller.h"

#include "core/manipulatorcontext.h"
#include "data/content/compnode.h"
#include "data/content/graph.h"
#include "data/content/graphoutput.h"
#include "data/content/nodemanipulators.h"
#include "data/desc/valuetype.h"
#include "data/diagnosticlog.h"
#include "editing/keyindex.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/outputcontroller.h"
#include <QCoreApplication>

namespace Ksx::Core {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;

namespace {

constexpr int TypeLine = 204;              // by which the report is known
constexpr unsigned OutputConnectorUse = 3; // what leaves the graph

} // namespace

CompOutputNodeController::CompOutputNodeController(const CompNode& node,
                                                   const CompOutputBridge& bridge,
                                                   CompGraphController& graph)
    : CompNodeController(node, graph), m_bridge(&bridge)
{
    begin(node);
}

CompOutputNodeController::~CompOutputNodeController() = default;

Uid CompOutputNodeController::entry() const
{
    return m_bridge ? m_bridge->output().get() : NoUid;
}

Orv::Data::DataPointerBox<GraphOutput> CompOutputNodeController::output() const
{
    const Graph* const graph = compGraph().graph();
    return Orv::Data::DataPointerBox<GraphOutput>(
        graph == nullptr ? nullptr
                         : KeyIndex<GraphOutput, UidKey>::find(graph->graphOutputs(), entry()));
}

unsigned CompOutputNodeController::connectorType(const std::string& identifier) const
{
    return identifier == OutputNodeInput ? outputType() : 0;
}

bool CompOutputNodeController::isVariantConnector(const std::string& identifier) const
{
    return identifier == OutputNodeInput;
}

void CompOutputNodeController::appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const
{
    entries.push_back(
        {std::string(OutputNodeInput),
         QCoreApplication::translate("Ksx::Data::Desc::Filters", "INPUT_ENTRY_NAME"), 0,
         QCoreApplication::translate("Ksx::Data::Desc::Filters", "INPUT_ENTRY_DESC")});
}

void CompOutputNodeController::appendOutputConnectorNames(std::vector<ConnectorEntry>&) const {}

unsigned CompOutputNodeController::connectorUsage(const std::string& identifier) const
{
    return identifier == OutputNodeInput ? OutputConnectorUse : 0;
}

unsigned CompOutputNodeController::outputType() const
{
    const unsigned type = m_bridge ? m_bridge->connectionColorType().get() : 0;
    if (type != 0 || inputConnectorCount() == 0 || inputConnector(0)->targets().empty())
        return type;
    return static_cast<const OutputConnectorController*>(inputConnector(0)->targets().front())
        ->type();
}

// The node has no output, and so no variant one: its own type follows its input all the same.
bool CompOutputNodeController::onInputTypeChanged(InputConnectorController&,
                                                  const OutputConnectorController& source,
                                                  ManipulatorContext* context)
{
    return context != nullptr && Data::Desc::ValueType::isImage(source.type()) &&
           setOutputTypeFromInput(source.type(), context);
}

bool CompOutputNodeController::setOutputTypeFromInput(unsigned type, ManipulatorContext* context)
{
    const unsigned current = m_bridge ? m_bridge->connectionColorType().get() : 0;
    if (type == 0 || type == current)
        return false;
    if (context == nullptr || !m_bridge) {
        Orv::DiagnosticLog::write(
            Orv::LogLevel::Inconsistency, "core\\corecompoutputnodecontroller", TypeLine,
            "Node " + std::to_string(uid()) + " have output type: " + std::to_string(current) +
                " and must be: " + std::to_string(type) + "\n");
        return false;
    }
    using BridgeManipulator = Orv::Core::ManipulatorStruct<CompOutputBridge>;
    BridgeManipulator(*m_bridge, *context).connectionColorType().set(type);
    return true;
}

bool CompOutputNodeController::isInheritable(const Data::Desc::Parameter&) const
{
    return false;
}

bool CompOutputNodeController::acceptsConnection(const OutputConnectorController& source,
                                                 const InputConnectorController&) const
{
    return Data::Desc::ValueType::isKnownImage(source.type());
}

} // namespace Ksx::Core
