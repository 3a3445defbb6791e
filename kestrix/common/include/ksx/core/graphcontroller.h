// The base of the controllers of graphs: nodes, and the connections between them.
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

// Shows one graph of the document and edits it. There are three kinds of graphs:
// CompGraphController for images, FuncGraphController for functions, ParamGraphController for
// FX-maps.
//
// A client gets the controller from graphController() and never deletes it. A listener on the
// shadow of the graph owns it. It dies when the graph dies or is taken out of the document. If an
// undo brings the graph back, graphController() makes another controller. Keep a
// DataPointerBox<GraphController> to notice the end.
//
// The controllers of nodes, connectors and connections follow the document. They appear and die at
// the end of each edit, undo or redo. Do not keep a pointer to one of them over an edit: keep its
// uid or a DataPointerBox. All controllers belong to the main thread.
class GraphController : public Orv::SecuredObject
{
public:
    GraphController();
    GraphController(const GraphController&) = delete;
    GraphController& operator=(const GraphController&) = delete;
    ~GraphController() override;

    // Removes a node from the graph and destroys its controller. With `disconnect` the connections
    // from and to the node are removed first. Without it, other nodes keep connections that lead
    // nowhere.
    //
    // All steps are one transaction. Does nothing for a node of another graph, and in a graph of an
    // FX-map.
    virtual void removeNode(NodeController& node, bool disconnect);
    // Returns whether edits are refused. Returns false: no kind of graph can be locked.
    virtual bool isLocked() const { return false; }

    // Connects an output and an input, given in any order. With `replace`, all former sources of
    // the input are disconnected first. Without it, the input gets one more source. All steps are
    // one transaction.
    //
    // Returns true if the connection exists afterwards, also if it existed before. Returns false
    // and changes nothing for connectors of one node, two inputs, two outputs, and a connector of
    // another graph. Returns false also for a source that NodeController::canConnect() refuses.
    // Always returns false in a graph of an FX-map.
    virtual bool connect(ConnectorController& a, ConnectorController& b, bool replace);

    // Removes the first connection between two connectors, given in any order. This is one undoable
    // command, which changes nothing if there is no connection. Returns false and runs no command
    // for two inputs, two outputs or a connector of another graph. Always returns false in a graph
    // of an FX-map.
    virtual bool disconnect(ConnectorController& a, ConnectorController& b);

    // Returns the controllers of all nodes, in the order of the document. A node of a kind that
    // nobody edits has no controller and is left out. Takes time that grows with the number of
    // nodes.
    virtual std::vector<NodeController*> nodes() const = 0;

    // Returns the node of a uid. Returns null if there is none. If a file gives several nodes one
    // uid, the first of them in the document is returned. Takes constant time otherwise.
    NodeController* nodeByUid(Uid uid) const;

    // Sent when a node has come into the graph, by an edit, an undo or a redo. Its connections are
    // known by then. The index is the place in the list of the document. Not sent for the nodes
    // that are there when the controller is made.
    LazySignal<NodeController*, std::size_t> nodeAdded;

    // Sent when a node has left the document. Its controller and its connections are still there,
    // and are destroyed after the signal. The index is the former place.
    LazySignal<NodeController*, std::size_t> nodeAboutToBeRemoved;
    // Sent when both ends of a connection have been found and know each other.
    LazySignal<InputConnectorController*, OutputConnectorController*> connectionAdded;
    // Sent when a connection has lost its ends: it was removed, or one of its nodes was.
    LazySignal<InputConnectorController*, OutputConnectorController*> connectionRemoved;

    // For connections: keeps a connection that misses its source until a node of that uid comes.
    void waitForNode(ConnectionController& connection);
    // For connections: forgets a connection that waits. Does nothing if it does not wait.
    void stopWaiting(ConnectionController& connection);

    // For nodes: makes the connections that wait for this node look for their ends again. `context`
    // is null where nothing may be edited.
    void retryConnectionsTo(const NodeController& node, Orv::Core::ManipulatorContext* context);

    // For nodes: enters a node under its present uid, if that is another one than before.
    void followUid(NodeController& node, Orv::Core::ManipulatorContext* context);

    // For connectors: returns a number that changes whenever nodes have changed their order.
    std::uint64_t nodeOrder() const { return m_nodeOrder; }

    // For connectors: returns a number by which two nodes compare like their places in the
    // document. The number is no index and may be negative.
    std::int64_t placeOf(const NodeController& node) const;

    // For types that travel through the graph: returns a new number for each journey.
    std::uint64_t nextWave() { return ++m_wave; }

    // Returns true while the graph is being destroyed. Connections then touch no connector any
    // more.
    bool isClosing() const { return m_isClosing; }

protected:
    // For the kinds of graphs: makes the graph know a node by its uid. Called for each new node.
    void enterNode(NodeController& node);

    // For the kinds of graphs: connects a node that has joined a complete graph. It is the one at
    // `index` of `count`, which is below `count`. Called after enterNode().
    void settleNode(NodeController& node, std::size_t index, std::size_t count,
                    Orv::Core::ManipulatorContext* context);
    // For the kinds of graphs: forgets a node, and makes its connections let go of their ends.
    void leaveNode(NodeController& node);
    // For the kinds of graphs: notes that nodes have changed their order.
    void reorderNodes();

    // For the kinds of graphs: connects all nodes that have been entered. Called once, when the
    // graph has been built.
    void settleAll();
    // For the destructors of the kinds of graphs: lets nodes die in any order afterwards.
    void close();

    // Checks and makes a connection as connect() says. `className` is the context of the history
    // text.
    bool connectWith(const char* className, ConnectorController& a, ConnectorController& b,
                     bool replace);

    // Makes a connection without asking canConnect(). The connectors belong to this graph. Returns
    // true if the connection exists afterwards.
    bool makeConnection(const char* className, OutputConnectorController& output,
                        InputConnectorController& input, bool replace);
    // Checks and removes a connection as disconnect() says.
    bool disconnectWith(const char* className, ConnectorController& a, ConnectorController& b);
    // Removes all connections from and to a node, each by a command of its own.
    void disconnectAll(NodeController& node);

private:
    bool holds(const NodeController& node) const;
    void place(NodeController& node, std::size_t index, std::size_t count);
    void connectNode(NodeController& node, Orv::Core::ManipulatorContext* context);
    void leaveIndex(NodeController& node);
    // Finds the first one in the document of the nodes with a uid.
    void pickFirst(Uid uid) const;
    // Connects to the first node of a uid, if several nodes have it.
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
