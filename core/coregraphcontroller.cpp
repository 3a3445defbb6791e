#include "ksx/core/graphcontroller.h"

#include "data/content/nodemanipulators.h"
#include "ksx/core/connexionslistener.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include <algorithm>

namespace Ksx::Core {

namespace {

using Data::Content::Connexion;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorList;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;
using ConnexionList = Orv::Data::ContainerList<Connexion>;

bool applyConnect(ManipulatorList<Connexion> connexions, const DataPointerBoxMasterKey&,
                  const ConnectionDataInfo& info)
{
    auto connexion = std::make_unique<Connexion>();
    connexion->identifier().assign(info.identifier);
    connexion->connRef().value().assign(info.nodeUid);
    if (info.outputUid)
        connexion->connRefOutput().value().assign(*info.outputUid);
    connexions.pushBack(std::move(connexion));
    return true;
}

bool applyDisconnect(ManipulatorList<Connexion> connexions, const DataPointerBoxMasterKey&,
                     const DataPointerBox<Connexion>& removed)
{
    const std::size_t index =
        removed ? connexions.get()->indexOf(*removed) : connexions.get()->size();
    if (index < connexions.get()->size())
        connexions.erase(index, 1);
    return true;
}

// The input and the output of two connectors given in any order; both null if they are not that.
struct Ends
{
    Ends(ConnectorController& a, ConnectorController& b)
        : output(dynamic_cast<OutputConnectorController*>(&a)),
          input(dynamic_cast<InputConnectorController*>(output == nullptr ? &a : &b))
    {
        if (output == nullptr)
            output = dynamic_cast<OutputConnectorController*>(&b);
    }
    bool areComplete() const { return output != nullptr && input != nullptr; }

    OutputConnectorController* output;
    InputConnectorController* input;
};

} // namespace

GraphController::GraphController() = default;

GraphController::~GraphController() = default;

void GraphController::removeNode(NodeController&, bool) {}

bool GraphController::connect(ConnectorController&, ConnectorController&, bool)
{
    return false;
}

bool GraphController::disconnect(ConnectorController&, ConnectorController&)
{
    return false;
}

NodeController* GraphController::nodeByUid(Uid uid) const
{
    const auto found = m_byUid.find(uid);
    return found == m_byUid.end() ? nullptr : found->second;
}

void GraphController::waitForNode(ConnectionController& connection)
{
    connection.m_waitingNumber = ++m_lastWaiting;
    m_waiting.emplace(std::make_pair(connection.m_info.nodeUid, connection.m_waitingNumber),
                      &connection);
}

void GraphController::stopWaiting(ConnectionController& connection)
{
    if (connection.m_waitingNumber == 0)
        return;
    m_waiting.erase({connection.m_info.nodeUid, connection.m_waitingNumber});
    connection.m_waitingNumber = 0;
}

void GraphController::retryConnectionsTo(const NodeController& node, ManipulatorContext* context)
{
    const Uid uid = node.m_enteredUid;
    std::vector<ConnectionController*> waiting;
    for (auto i = m_waiting.lower_bound({uid, 0}); i != m_waiting.end() && i->first.first == uid;
         ++i)
        waiting.push_back(i->second);
    for (ConnectionController* connection : waiting)
        connection->refresh(context);
}

void GraphController::enterNode(NodeController& node)
{
    node.m_enteredUid = node.uid();
    if (!m_byUid.emplace(node.m_enteredUid, &node).second)
        m_namesakes.emplace(node.m_enteredUid, &node);
}

void GraphController::settleNode(NodeController& node, ManipulatorContext* context)
{
    node.m_connections->refreshAll(context);
    retryConnectionsTo(node, context);
}

void GraphController::settleAll()
{
    for (NodeController* node : nodes())
        node->m_connections->refreshAll(nullptr);
}

void GraphController::leaveNode(NodeController& node)
{
    const auto found = m_byUid.find(node.m_enteredUid);
    const auto [first, last] = m_namesakes.equal_range(node.m_enteredUid);
    if (found != m_byUid.end() && found->second != &node) {
        for (auto i = first; i != last; ++i) {
            if (i->second == &node) {
                m_namesakes.erase(i);
                break;
            }
        }
    } else if (found != m_byUid.end() && first != last) {
        found->second = first->second;
        m_namesakes.erase(first);
    } else if (found != m_byUid.end()) {
        m_byUid.erase(found);
    }
    node.m_connections->clear();
    for (const auto& output : node.m_outputs)
        node.releaseConnectionsOf(*output, false, nullptr);
    if (const NodeController* heir = nodeByUid(node.m_enteredUid))
        retryConnectionsTo(*heir, nullptr);
}

void GraphController::close()
{
    m_isClosing = true;
    m_waiting.clear();
    for (NodeController* node : nodes()) {
        for (const auto& input : node->m_inputs)
            input->forgetTargets();
        for (const auto& output : node->m_outputs)
            output->forgetTargets();
    }
}

bool GraphController::holds(const NodeController& node) const
{
    return &node.graph() == this;
}

bool GraphController::connectWith(const char* className, ConnectorController& a,
                                  ConnectorController& b, bool replace)
{
    const Ends ends(a, b);
    if (&a.node() == &b.node() || !ends.areComplete() || !holds(a.node()) || !holds(b.node()))
        return false;
    if (!ends.input->isConnectedTo(*ends.output) &&
        !ends.input->node().canConnect(*ends.output, *ends.input))
        return false;
    return makeConnection(className, *ends.output, *ends.input, replace);
}

bool GraphController::makeConnection(const char* className, OutputConnectorController& output,
                                     InputConnectorController& input, bool replace)
{
    const DataPointerBox<ConnexionList> connexions(input.node().connexions());
    const Transaction transaction(historyText(className, "CONNECT_TWO_NODES_HISTORY_DESC"));
    if (replace) {
        const std::vector<ConnectorController*> sources = input.targets();
        for (ConnectorController* source : sources)
            disconnect(input, *source);
    }
    if (!input.isConnectedTo(output))
        runEdit(connexions, output.node().connectionInfo(output, input.identifier()), &applyConnect,
                QString());
    return output.isConnectedTo(input);
}

bool GraphController::disconnectWith(const char* className, ConnectorController& a,
                                     ConnectorController& b)
{
    const Ends ends(a, b);
    if (!ends.areComplete() || !holds(a.node()) || !holds(b.node()))
        return false;
    NodeController& target = ends.input->node();
    const ConnectionController* connection = target.connections().find(*ends.input, *ends.output);
    const DataPointerBox<Connexion> connexion(connection == nullptr ? nullptr
                                                                    : connection->connexion());
    runEdit(DataPointerBox<ConnexionList>(target.connexions()), connexion, &applyDisconnect,
            historyText(className, "DISCONNECT_TWO_NODES_HISTORY_DESC"));
    return true;
}

void GraphController::disconnectAll(NodeController& node)
{
    const auto disconnectTargets = [this](ConnectorController& connector) {
        const std::vector<ConnectorController*> targets = connector.targets();
        for (ConnectorController* target : targets)
            disconnect(connector, *target);
    };
    for (std::size_t i = 0; i < node.inputConnectorCount(); ++i)
        disconnectTargets(*node.inputConnector(i));
    for (std::size_t i = 0; i < node.outputConnectorCount(); ++i)
        disconnectTargets(*node.outputConnector(i));
}

} // namespace Ksx::Core
