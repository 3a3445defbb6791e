#include "ksx/core/graphcontroller.h"

#include "data/content/nodemanipulators.h"
#include "graph/connexionslistener.h"
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
    connexions.erase(removed);
    return true;
}

using ConnectorBox = DataPointerBox<ConnectorController>;

std::vector<ConnectorBox> boxesOf(const ConnectorController::Targets& connectors)
{
    std::vector<ConnectorBox> boxes;
    for (const ConnectorController* connector : connectors)
        boxes.emplace_back(connector);
    return boxes;
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
    if (!m_unordered.empty() && m_unordered.erase(uid) != 0)
        pickFirst(uid);
    const auto found = m_byUid.find(uid);
    return found == m_byUid.end() ? nullptr : found->value;
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

void GraphController::pickFirst(Uid uid) const
{
    const auto [first, last] = m_namesakes.equal_range(uid);
    const auto found = m_byUid.find(uid);
    if (found == m_byUid.end() || first == last)
        return;
    for (NodeController* node : nodes()) {
        if (node == found->value)
            return;
        const auto other =
            std::find_if(first, last, [&](const auto& i) { return i.second == node; });
        if (other == last)
            continue;
        std::swap(other->second, found->value);
        return;
    }
}

void GraphController::settleNamesakes(Uid uid, ManipulatorContext* context)
{
    m_unordered.insert(uid);
    const NodeController* first = nodeByUid(uid);
    const auto [begin, end] = m_namesakes.equal_range(uid);
    for (auto i = begin; i != end; ++i)
        for (const auto& output : i->second->m_outputs)
            NodeController::releaseConnectionsOf(*output, context);
    if (first != nullptr)
        retryConnectionsTo(*first, context);
}

std::int64_t GraphController::placeOf(const NodeController& node) const
{
    if (!m_hasPlaces) {
        m_hasPlaces = true;
        m_firstPlace = 0;
        m_lastPlace = -1;
        for (NodeController* other : nodes())
            other->m_place = ++m_lastPlace;
    }
    return node.m_place;
}

// A node at one of the two ends takes a place beside the others, which keep theirs.
void GraphController::place(NodeController& node, std::size_t index, std::size_t count)
{
    if (index + 1 == count)
        node.m_place = ++m_lastPlace;
    else if (index == 0)
        node.m_place = --m_firstPlace;
    else
        m_hasPlaces = false;
}

void GraphController::reorderNodes()
{
    ++m_nodeOrder;
    m_hasPlaces = false;
    std::set<Uid> uids;
    for (const auto& [uid, node] : m_namesakes)
        uids.insert(uid);
    for (const Uid uid : uids)
        settleNamesakes(uid, nullptr);
}

void GraphController::followUid(NodeController& node, ManipulatorContext* context)
{
    if (node.uid() == node.m_enteredUid)
        return;
    leaveIndex(node);
    enterNode(node);
    connectNode(node, context);
}

void GraphController::enterNode(NodeController& node)
{
    node.m_enteredUid = node.uid();
    if (m_byUid.emplace(node.m_enteredUid, &node).second)
        return;
    m_namesakes.emplace(node.m_enteredUid, &node);
    m_unordered.insert(node.m_enteredUid);
}

void GraphController::settleNode(NodeController& node, std::size_t index, std::size_t count,
                                 ManipulatorContext* context)
{
    Q_ASSERT(index < count);
    place(node, index, count);
    connectNode(node, context);
}

void GraphController::connectNode(NodeController& node, ManipulatorContext* context)
{
    node.m_connections->refreshAll(context);
    if (m_namesakes.count(node.m_enteredUid) != 0)
        settleNamesakes(node.m_enteredUid, context);
    else
        retryConnectionsTo(node, context);
}

void GraphController::settleAll()
{
    for (NodeController* node : nodes())
        node->m_connections->refreshAll(nullptr);
}

void GraphController::leaveNode(NodeController& node)
{
    node.m_connections->clear();
    leaveIndex(node);
}

void GraphController::leaveIndex(NodeController& node)
{
    const auto found = m_byUid.find(node.m_enteredUid);
    const auto [first, last] = m_namesakes.equal_range(node.m_enteredUid);
    if (found != m_byUid.end() && found->value != &node) {
        for (auto i = first; i != last; ++i) {
            if (i->second == &node) {
                m_namesakes.erase(i);
                break;
            }
        }
    } else if (found != m_byUid.end() && first != last) {
        found->value = first->second;
        m_namesakes.erase(first);
        m_unordered.insert(node.m_enteredUid);
    } else if (found != m_byUid.end()) {
        m_byUid.erase(found);
    }
    for (const auto& output : node.m_outputs)
        NodeController::releaseConnectionsOf(*output, nullptr);
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
    Q_ASSERT(holds(output.node()) && holds(input.node()));
    const DataPointerBox<ConnexionList> connexions(input.node().connexions());
    // Who hears of one command may take away what the next one needs.
    const DataPointerBox<GraphController> self(this);
    const ConnectorBox source(&output);
    const ConnectorBox target(&input);
    const Transaction transaction(historyText(className, "CONNECT_TWO_NODES_HISTORY_DESC"));
    if (replace)
        for (const ConnectorBox& former : boxesOf(input.targets()))
            if (self && target && former)
                disconnect(input, *former.access());
    if (!self || !source || !target)
        return false;
    if (!input.isConnectedTo(output))
        runEdit(connexions, output.node().connectionInfo(output, input.identifier()), &applyConnect,
                QString());
    return source && target && output.isConnectedTo(input);
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
    std::vector<ConnectorBox> connectors;
    for (const auto& input : node.m_inputs)
        connectors.emplace_back(input.get());
    for (const auto& output : node.m_outputs)
        connectors.emplace_back(output.get());
    const DataPointerBox<GraphController> self(this);
    for (const ConnectorBox& connector : connectors)
        if (self && connector)
            for (const ConnectorBox& target : boxesOf(connector->targets()))
                if (self && connector && target)
                    disconnect(*connector.access(), *target.access());
}

} // namespace Ksx::Core
