// A node of a graph: its connectors and what they say of values and types.
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

// The name of the only output of nodes that have but one.
inline constexpr std::string_view UniqueOutput = "unique_filter_output";

// What a node lists of a connector that it has.
struct ConnectorEntry
{
    std::string identifier;
    QString label;
    Uid uid = 0; // of outputs that have one
    QString tooltip = {};
};

// Owned by its graph's controller; lives as long as the node stands in the graph. Operations that
// take a context are told of changes; they may edit further in it, and not at all where it is null.
class NodeController : public Orv::SecuredObject
{
public:
    explicit NodeController(GraphController& graph);
    NodeController(const NodeController&) = delete;
    NodeController& operator=(const NodeController&) = delete;
    ~NodeController() override;

    // Compares the outputs with the document, builds the missing ones and drops those that have
    // gone, whose connections become unresolved.
    virtual void rebuildOutputConnectors();
    // The same for the inputs. Those of an identifier that stays keep their connections.
    void rebuildInputConnectors(Orv::Core::ManipulatorContext* context);

    // The value type of a connector by its identifier, 0 for an unknown one.
    virtual unsigned connectorType(const std::string& identifier) const;
    // Does the connector take color and grayscale, by what is connected?
    virtual bool isVariantConnector(const std::string& identifier) const;
    virtual bool isOptionalVariantConnector(const std::string& identifier) const;
    virtual std::string outputIdentifier() const { return std::string(UniqueOutput); }
    // Appends what connectors the node has, in order.
    virtual void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const;
    virtual void appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const;
    // May `source` be connected to this node's `connector`? Not while it is connected to it.
    virtual bool canConnect(const OutputConnectorController& source,
                            const InputConnectorController& connector) const;

    // In the units of the canvas; y points down.
    virtual QPointF position() const = 0;
    virtual void setPosition(const QPointF& position) = 0;
    virtual float depth() const = 0;
    virtual void setDepth(float depth) = 0;
    virtual Uid uid() const = 0;

    // How a connector is used: 3 for the input of an output node, 0 for all others.
    virtual unsigned connectorUsage(const std::string& identifier) const;
    // The type of the value that the node gives.
    virtual unsigned primaryType() const { return outputType(); }
    virtual InputConnectorController* connectorByName(const std::string& identifier) const;
    // The type that the document says the output has, 0 if there is none.
    virtual unsigned outputType() const { return 0; }
    // Fires that connectors have come or gone.
    virtual void onConnectorsChanged();
    // What a connection of this node's output to an input called `identifier` says.
    virtual ConnectionDataInfo connectionInfo(const OutputConnectorController& output,
                                              const std::string& identifier) const;
    // The graph that the node refers to has changed, or the link to it.
    virtual void onSubGraphChanged(Orv::Core::ManipulatorContext* context);
    virtual void onSubGraphLinkChanged(Orv::Core::ManipulatorContext* context);
    virtual void onInputConnected(InputConnectorController& connector,
                                  OutputConnectorController& source,
                                  Orv::Core::ManipulatorContext* context);
    virtual void onInputDisconnected(InputConnectorController& connector,
                                     OutputConnectorController& source,
                                     Orv::Core::ManipulatorContext* context);
    // The source of a connector is there, or gives another type than before. True if the type of
    // the output was written because of it: the caller calls propagateOutputType() then.
    virtual bool onInputTypeChanged(InputConnectorController& connector,
                                    const OutputConnectorController& source,
                                    Orv::Core::ManipulatorContext* context);
    // Writes the output's type, if it is another one; as onInputTypeChanged().
    virtual bool setOutputTypeFromInput(unsigned type, Orv::Core::ManipulatorContext* context);
    // Tells all nodes behind this one of its output's type, as far as it changes theirs.
    virtual void propagateOutputType(Orv::Core::ManipulatorContext* context);

    // The list in the document that holds the connections to this node; null if it has none.
    virtual const Orv::Data::ContainerList<Data::Content::Connexion>* connexions() const = 0;
    // Are outputs told apart by the uids that the document gives them?
    virtual bool hasOutputUids() const { return false; }
    // Does an input keep several connections, as the entries of a list?
    virtual bool takesList(const std::string& identifier) const;

    GraphController& graph() const { return m_graph; }

    std::size_t inputConnectorCount() const { return m_inputs.size(); }
    std::size_t outputConnectorCount() const { return m_outputs.size(); }
    // Null beyond the last one.
    InputConnectorController* inputConnector(std::size_t index) const;
    OutputConnectorController* outputConnector(std::size_t index) const;
    // Null if there is none.
    InputConnectorController* inputConnectorByName(const std::string& identifier) const;
    OutputConnectorController* outputConnectorByName(const std::string& identifier) const;
    // Where outputs have no uids the first one answers for any.
    OutputConnectorController* outputConnectorByUid(Uid uid) const;

    const ConnexionsListener& connections() const { return *m_connections; }

    LazySignal<ConnectorController*> connectorAdded;
    LazySignal<ConnectorController*> connectorAboutToBeRemoved;
    LazySignal<> connectorsChanged;
    LazySignal<unsigned> outputTypeChanged;
    LazySignal<QPointF> positionChanged;
    LazySignal<float> depthChanged;

protected:
    // For the constructors of leaf classes, once the node can list its connectors.
    void buildConnectors();
    // Fires outputTypeChanged() if the node gives another type than it told last.
    void tellOutputType();
    // Looks anew for the ends of all connections to and from this node, whose connectors changed.
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
