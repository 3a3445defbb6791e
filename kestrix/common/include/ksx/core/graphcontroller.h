// What every kind of graph offers to commands: its nodes and the connections between them.
#pragma once

#include "data/densemap.h"
#include "data/securedobject.h"
#include "ksx/core/lazysignal.h"
#include "ksx/core/uidsource.h"
#include <QString>
#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Ksx::Core {

class ConnectionController;
class ConnectorController;
class InputConnectorController;
class NodeController;
class OutputConnectorController;

// Owned by the GraphControllerListener on its document object.
class GraphController : public Orv::SecuredObject
{
public:
    GraphController();
    GraphController(const GraphController&) = delete;
    GraphController& operator=(const GraphController&) = delete;
    ~GraphController() override;

    // Takes a node out of the graph. With `disconnect` its connections go too; without, its
    // targets are left with connections that lead nowhere.
    virtual void removeNode(NodeController& node, bool disconnect);
    virtual bool isLocked() const { return false; } // no kind of graph can be locked
    // Connects an output and an input, given in any order. With `replace`, what fed the input
    // before is disconnected. True if the connection exists afterwards. Connectors of nodes of
    // another graph are refused, here and by all other operations.
    virtual bool connect(ConnectorController& a, ConnectorController& b, bool replace);
    // Removes the connection of two connectors, in any order; the list stays as it is if there is
    // none. False if the two cannot be ends of a connection.
    virtual bool disconnect(ConnectorController& a, ConnectorController& b);

    // All nodes that have a controller, in the order of the document.
    virtual std::vector<NodeController*> nodes() const = 0;
    // In constant time; null if there is none. The first one in the document, of nodes with one uid.
    NodeController* nodeByUid(Uid uid) const;

    // The index is the place in the document's list.
    LazySignal<NodeController*, std::size_t> nodeAdded;
    LazySignal<NodeController*, std::size_t> nodeAboutToBeRemoved;
    LazySignal<InputConnectorController*, OutputConnectorController*> connectionAdded;
    LazySignal<InputConnectorController*, OutputConnectorController*> connectionRemoved;

    // For connections: keeps one that misses its source until a node of that uid comes.
    void waitForNode(ConnectionController& connection);
    void stopWaiting(ConnectionController& connection);
    // Lets the connections that wait for this node look again.
    void retryConnectionsTo(const NodeController& node, Orv::Core::ManipulatorContext* context);

    // For a node whose uid may have changed.
    void followUid(NodeController& node, Orv::Core::ManipulatorContext* context);

    // For connectors: another number each time that nodes have changed their order.
    std::uint64_t nodeOrder() const { return m_nodeOrder; }
    // The place of a node among the others, for comparison.
    std::int64_t placeOf(const NodeController& node) const;

    // For types that travel through the graph: a number for each journey.
    std::uint64_t nextWave() { return ++m_wave; }
    bool isClosing() const { return m_isClosing; }

protected:
    // For the lists of nodes of the kinds of graphs.
    void enterNode(NodeController& node);
    // What comes after enterNode() when the node has joined a graph that is complete, as the one at
    // `index` of `count`: connects it.
    void settleNode(NodeController& node, std::size_t index, std::size_t count,
                    Orv::Core::ManipulatorContext* context);
    // Takes the node out of the index, and lets go of its connections.
    void leaveNode(NodeController& node);
    // For nodes that have changed their order.
    void reorderNodes();
    // Connects all nodes that have been entered, when the graph is built.
    void settleAll();
    // To be called by the destructors of the kinds: nodes may die in any order after it.
    void close();

    // The parts of connect() and disconnect(), under the history texts of a kind of graph.
    bool connectWith(const char* className, ConnectorController& a, ConnectorController& b,
                     bool replace);
    // The part behind the checks. What may not be connected is connected all the same.
    bool makeConnection(const char* className, OutputConnectorController& output,
                        InputConnectorController& input, bool replace);
    bool disconnectWith(const char* className, ConnectorController& a, ConnectorController& b);
    // All connections of a node's inputs and outputs.
    void disconnectAll(NodeController& node);

private:
    bool holds(const NodeController& node) const;
    void place(NodeController& node, std::size_t index, std::size_t count);
    void connectNode(NodeController& node, Orv::Core::ManipulatorContext* context);
    void leaveIndex(NodeController& node);
    // Finds the first one in the document of the nodes with a uid.
    void pickFirst(Uid uid) const;
    // Connects what names a uid that several nodes have to the first of them.
    void settleNamesakes(Uid uid, Orv::Core::ManipulatorContext* context);

    mutable Orv::Data::DenseMap<Uid, NodeController*> m_byUid;
    mutable std::multimap<Uid, NodeController*> m_namesakes; // with a uid that an earlier node has
    mutable std::set<Uid> m_unordered; // of several nodes, of which the first is to be found
    std::map<std::pair<Uid, std::uint64_t>, ConnectionController*> m_waiting;
    std::uint64_t m_lastWaiting = 0;
    std::uint64_t m_wave = 0;
    std::uint64_t m_nodeOrder = 0;
    // Of the nodes, as far as these have places.
    mutable std::int64_t m_firstPlace = 0;
    mutable std::int64_t m_lastPlace = 0;
    mutable bool m_hasPlaces = false;
    bool m_isClosing = false;
};

} // namespace Ksx::Core
