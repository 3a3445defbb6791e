// The base of the controllers of nodes: connectors, types of values, place on the canvas.
#pragma once

#include "data/containerlist.h"
#include "data/datapointerbox.h"
#include "data/securedobject.h"
#include "ksx/core/lazysignal.h"
#include "ksx/core/uidsource.h"
#include <QPointF>
#include <QString>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Ksx::Data::Content {
class Connexion;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class ConnectorController;
class ConnexionsListener;
class GraphController;
class InputConnectorController;
class OutputConnectorController;
struct ConnectionDataInfo;

// The identifier of the only output of a node that has no more than one.
inline constexpr std::string_view UniqueOutput = "unique_filter_output";

// One connector that a node lists for itself. The controllers of connectors are made from entries.
struct ConnectorEntry
{
    // The name by which connections find an input. Outputs have one as well.
    std::string identifier;
    // The text for users. May be empty.
    QString label;
    // The uid of an output in the document. 0 for inputs and for outputs that have none.
    Uid uid = 0;
    QString tooltip = {};
};

// Shows one node of a graph and owns the controllers of its connectors. BaseNodeController adds the
// place; the kinds of nodes are CompNodeController, FuncNodeController and ParamNodeController.
//
// The controller of the graph owns it. It is made when the node enters the list of the document and
// dies when the node leaves it. An undo that brings the node back makes another controller. Main
// thread.
//
// The nodes that feed a node are found through its inputs:
//
//     for (std::size_t i = 0; i < node.inputConnectorCount(); ++i)
//         for (const ConnectorController* source : node.inputConnector(i)->targets())
//             drawLine(source->node().position(), node.position());
//
// Many operations take a ManipulatorContext. The context is that of the change that caused the
// call. They may edit the document further in it. They must not edit where it is null. The change
// is an undo or a redo then, or there is no change.
class NodeController : public Orv::SecuredObject
{
public:
    // For the kinds of nodes. The graph must outlive the controller.
    explicit NodeController(GraphController& graph);
    NodeController(const NodeController&) = delete;
    NodeController& operator=(const NodeController&) = delete;
    ~NodeController() override;

    // Compares the outputs with the document. Makes the missing ones and destroys the others.
    // Connections of a destroyed output wait for it to come back. Sends connectorAdded and
    // connectorAboutToBeRemoved.
    virtual void rebuildOutputConnectors();
    // Does the same for the inputs. An input whose identifier stays keeps its connections.
    void rebuildInputConnectors(Orv::Core::ManipulatorContext* context);

    // Returns the types of value that a connector takes or gives, as bits of ValueType. Returns 0
    // for an unknown identifier and while the type is not known.
    virtual unsigned connectorType(const std::string& identifier) const;

    // Returns true if the connector takes color and grayscale, by its connections. For function
    // nodes see there. Returns false for an unknown identifier.
    virtual bool isVariantConnector(const std::string& identifier) const;

    // Returns true for a variant connector that follows the type of other inputs if they are
    // connected.
    virtual bool isOptionalVariantConnector(const std::string& identifier) const;

    // Returns the identifier that outputs have by default. Returns an empty text for a node without
    // outputs.
    virtual std::string outputIdentifier() const { return std::string(UniqueOutput); }
    // Appends one entry for each input that the node has, in order. Leaves present entries alone.
    virtual void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const;
    // Appends one entry for each output that the node has, in order. Leaves present entries alone.
    virtual void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const;

    // Returns whether `source` may be connected to an input of this node. Returns false for an
    // output of this node or of another graph. Returns false also if the two are connected already.
    virtual bool canConnect(const OutputConnectorController& source,
                            const InputConnectorController& connector) const;

    // Returns the place of the node in units of the canvas. x points right and y points down.
    virtual QPointF position() const = 0;
    // Moves the node. This is one undoable command.
    virtual void setPosition(const QPointF& position) = 0;
    // Returns the third coordinate, by which a canvas draws nodes over each other.
    virtual float depth() const = 0;
    // Changes the depth. This is one undoable command.
    virtual void setDepth(float depth) = 0;
    // Returns the uid of the node. Returns NoUid once the node has died.
    virtual Uid uid() const = 0;

    // Returns the use of a connector: 3 for the input of an output node, 0 for all others.
    virtual unsigned connectorUsage(const std::string& identifier) const;
    // Returns the type of the value that the node gives. 0 if it is not known.
    virtual unsigned primaryType() const { return outputType(); }
    // Returns the input of an identifier. Returns null if there is none.
    virtual InputConnectorController* connectorByName(const std::string& identifier) const;

    // Returns the type that the document has for the output of the node. Returns 0 without an
    // output.
    virtual unsigned outputType() const { return 0; }
    // Sends connectorsChanged. Called when connectors have come, gone or changed their type.
    virtual void onConnectorsChanged();

    // Returns the data of a connection from `output` to an input called `identifier` of another
    // node. `output` is one of this node.
    virtual ConnectionDataInfo connectionInfo(const OutputConnectorController& output,
                                              const std::string& identifier) const;
    // Called when the graph or function that the node shows has changed.
    virtual void onSubGraphChanged(Orv::Core::ManipulatorContext* context);
    // Called when the path of the node may lead to another graph or function.
    virtual void onSubGraphLinkChanged(Orv::Core::ManipulatorContext* context);
    // Called when a connection to an input of this node has found its ends.
    virtual void onInputConnected(InputConnectorController& connector,
                                  OutputConnectorController& source,
                                  Orv::Core::ManipulatorContext* context);
    // Called when a connection to an input of this node has lost its ends.
    virtual void onInputDisconnected(InputConnectorController& connector,
                                     OutputConnectorController& source,
                                     Orv::Core::ManipulatorContext* context);

    // Called when a source of an input has come or gives another type. Returns true if the type of
    // the output was written because of it. The caller calls propagateOutputType() then. Returns
    // false where `context` is null.
    virtual bool onInputTypeChanged(InputConnectorController& connector,
                                    const OutputConnectorController& source,
                                    Orv::Core::ManipulatorContext* context);

    // Writes the type of the output, if it is another one. Returns true if it was written. With a
    // null `context` nothing is written, and a difference is reported to the DiagnosticLog.
    virtual bool setOutputTypeFromInput(unsigned type, Orv::Core::ManipulatorContext* context);

    // Makes the nodes that this node feeds follow its type, and all nodes behind them. Each node is
    // written at most once. Does nothing with a null `context`.
    virtual void propagateOutputType(Orv::Core::ManipulatorContext* context);

    // Returns the list in the document that holds the connections to this node. Returns null once
    // the node has died.
    virtual const Orv::Data::ContainerList<Data::Content::Connexion>* connexions() const = 0;
    // Returns whether outputs have uids in the document. True for nodes of images alone.
    virtual bool hasOutputUids() const { return false; }
    // Returns whether an input keeps several connections, as the entries of a list.
    virtual bool takesList(const std::string& identifier) const;

    // Returns the graph that owns this controller.
    GraphController& graph() const { return m_graph; }

    // Returns the number of inputs.
    std::size_t inputConnectorCount() const { return m_inputs.size(); }
    // Returns the number of outputs.
    std::size_t outputConnectorCount() const { return m_outputs.size(); }
    // Returns the input at an index. Returns null from inputConnectorCount() on.
    InputConnectorController* inputConnector(std::size_t index) const;
    // Returns the output at an index. Returns null from outputConnectorCount() on.
    OutputConnectorController* outputConnector(std::size_t index) const;
    // Returns the first input of an identifier. Returns null if there is none.
    InputConnectorController* inputConnectorByName(const std::string& identifier) const;
    // Returns the first output of an identifier. Returns null if there is none.
    OutputConnectorController* outputConnectorByName(const std::string& identifier) const;

    // Returns the output of a uid. Returns null if there is none. If outputs have no uids, returns
    // the first output for any uid.
    OutputConnectorController* outputConnectorByUid(Uid uid) const;

    // For connectors and connections: returns the connections to this node. Its class is internal.
    const ConnexionsListener& connections() const { return *m_connections; }

    // Sent for each new connector, when all connectors of its side have been rebuilt.
    LazySignal<ConnectorController*> connectorAdded;
    // Sent for each connector that goes, while it still exists and has its connections.
    LazySignal<ConnectorController*> connectorAboutToBeRemoved;
    // Sent when connectors may have come, gone or changed. May be sent without a difference.
    LazySignal<> connectorsChanged;
    // Sent with the new primaryType(), at the end of a change that gave the node another one.
    LazySignal<unsigned> outputTypeChanged;
    // Sent with the new position, at the end of a change that moved the node.
    LazySignal<QPointF> positionChanged;
    // Sent with the new depth, at the end of a change that changed it.
    LazySignal<float> depthChanged;

protected:
    // For the constructors of the kinds of nodes: makes the connectors. The node must be able to
    // list them.
    void buildConnectors();
    // Sends outputTypeChanged if the type differs from the one that was sent last.
    void tellOutputType();
    // Makes all connections from and to this node look for their ends anew.
    void refreshConnections(Orv::Core::ManipulatorContext* context);

private:
    friend class GraphController;
    struct ConnectorIndex;

    template <class Connector>
    void rebuild(std::vector<std::unique_ptr<Connector>>& connectors,
                 const std::vector<ConnectorEntry>& entries,
                 Orv::Core::ManipulatorContext* context);
    void indexConnectors();
    static void releaseConnectionsOf(const ConnectorController& connector,
                                     Orv::Core::ManipulatorContext* context);

    GraphController& m_graph;
    std::vector<std::unique_ptr<InputConnectorController>> m_inputs;
    std::vector<std::unique_ptr<OutputConnectorController>> m_outputs;
    std::unique_ptr<ConnectorIndex> m_connectorIndex; // null for few connectors
    std::unique_ptr<ConnexionsListener> m_connections;
    Uid m_enteredUid = 0;     // under which the graph knows the node
    std::int64_t m_place = 0; // among the nodes, while the graph has places
    std::uint64_t m_wave = 0; // of the last type that travelled through
    unsigned m_toldType = 0;
};

} // namespace Ksx::Core
