// The base of the controllers of inputs and outputs of nodes.
#pragma once

#include "data/row.h"
#include "data/securedobject.h"
#include "ksx/core/lazysignal.h"
#include <QString>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

namespace Ksx::Core {

class ConnectionController;
class NodeController;

// The kind of image that a connector takes or gives. The numbers do not change.
enum class ColorKind : unsigned
{
    Color = 0,
    Grayscale = 1,
    // A value, an image whose color mode is open, or nothing known.
    Other = 2,
};
// Returns the kind of a ValueType.
ColorKind colorKindOf(unsigned type);

// Shows one input or output of a node. InputConnectorController and OutputConnectorController are
// the two kinds; use dynamic_cast to find out which.
//
// The controller of the node owns it. It dies with the node, or when the node loses the connector.
// A connector whose identifier stays is kept when its node is rebuilt. Main thread.
//
// Only ConnectionController adds and removes connections here. To edit them, call connect() and
// disconnect() of the graph.
class ConnectorController : public Orv::SecuredObject
{
public:
    // The connections that end at a connector. The row owns none of them.
    using Connections = Orv::Data::Row<ConnectionController*>;

    // The connectors at the other ends of the connections of a connector. A view: it shows the
    // present state at each look and costs nothing to make. It must not outlive the connector. A
    // change of the connections makes iterators invalid. Copy the targets before you edit:
    //
    //     std::vector<Orv::Data::DataPointerBox<ConnectorController>> sources;
    //     for (const ConnectorController* source : input.targets())
    //         sources.emplace_back(source);
    //     for (const auto& source : sources)
    //         if (source) // an edit may have removed it
    //             graph.disconnect(*source.access(), input);
    class Targets
    {
    public:
        // Goes over the targets from the first to the last. Gives pointers, which are never null.
        class ConstIterator
        {
        public:
            using value_type = ConnectorController*;
            using reference = ConnectorController*;
            using pointer = void;
            using difference_type = std::ptrdiff_t;
            using iterator_category = std::input_iterator_tag;

            ConstIterator(const ConnectorController& end, Connections::ConstIterator place)
                : m_end(&end), m_place(place)
            {}
            ConnectorController* operator*() const { return m_end->targetOf(**m_place); }
            ConstIterator& operator++()
            {
                ++m_place;
                return *this;
            }
            ConstIterator operator++(int)
            {
                const ConstIterator former = *this;
                ++*this;
                return former;
            }
            friend bool operator==(const ConstIterator& a, const ConstIterator& b)
            {
                return a.m_place == b.m_place;
            }
            friend bool operator!=(const ConstIterator& a, const ConstIterator& b)
            {
                return !(a == b);
            }

        private:
            const ConnectorController* m_end;
            Connections::ConstIterator m_place;
        };

        // Shows the targets of `end`, in the order that `end` has at the moment. See targets().
        explicit Targets(const ConnectorController& end) : m_end(end) {}

        // Returns the number of connections. A target counts once for each connection.
        std::size_t size() const { return m_end.m_connections.size(); }
        bool empty() const { return m_end.m_connections.empty(); }
        // Returns the target at an index, which must be below size().
        ConnectorController* operator[](std::size_t index) const
        {
            Q_ASSERT(index < size());
            return m_end.targetOf(*m_end.m_connections[index]);
        }
        // Returns the first target. There must be one.
        ConnectorController* front() const { return (*this)[0]; }
        // Returns the last target. There must be one.
        ConnectorController* back() const { return (*this)[size() - 1]; }
        // Returns the place of the first target.
        ConstIterator begin() const { return {m_end, m_end.m_connections.begin()}; }
        // Returns the place behind the last target.
        ConstIterator end() const { return {m_end, m_end.m_connections.end()}; }

    private:
        const ConnectorController& m_end;
    };

    // For the two kinds of connectors. The node must outlive the connector.
    ConnectorController(NodeController& node, const QString& name, const QString& label);
    ConnectorController(const ConnectorController&) = delete;
    ConnectorController& operator=(const ConnectorController&) = delete;
    // Reports to the DiagnosticLog if there are connections left.
    ~ConnectorController() override;

    // Returns the name, which is the identifier as text.
    virtual const QString& name() const { return m_name; }
    // Changes the name and sends nameChanged if it is another one. The document is not changed.
    virtual void setName(const QString& name);
    // Returns the translated text for users. May be empty.
    virtual const QString& label() const { return m_label; }
    // Changes the label and sends labelChanged if it is another one. The document is not changed.
    virtual void setLabel(const QString& label);
    // Returns the kind of image that the connector takes or gives at present.
    virtual ColorKind colorKind() const = 0;
    // Returns a longer text for users. May be empty.
    const QString& tooltip() const { return m_tooltip; }
    // Changes the tooltip. The document is not changed, and no signal is sent.
    void setTooltip(const QString& tooltip) { m_tooltip = tooltip; }

    // Returns the node that owns the connector.
    NodeController& node() const { return m_node; }

    // Returns the sources of an input, or the inputs that an output feeds. They are in the order in
    // which the document lists the connections. Sorts them if connections have changed.
    Targets targets() const;
    // Returns the connections, in any order until somebody calls targets().
    const Connections& connections() const { return m_connections; }
    // Returns whether a connection joins the two connectors.
    bool isConnectedTo(const ConnectorController& other) const;

    // For connections: adds one that ends here. `isLast` says that the document lists no connection
    // to this connector behind it.
    void attach(ConnectionController& connection, bool isLast);
    // For connections: removes one that ended here. Does nothing for any other.
    void detach(const ConnectionController& connection);
    // For connections: notes that the document has put connections into another order.
    void reorderTargets() { m_isOrdered = false; }

    // For graphs: removes all connections without a look at them, when the whole graph is
    // destroyed.
    void forgetTargets() { m_connections.clear(); }

    // Sent when setName() has changed the name.
    LazySignal<> nameChanged;
    // Sent when setLabel() has changed the label. This happens when an instance follows its graph.
    LazySignal<> labelChanged;

protected:
    // Returns the connections in the order of the document, by a look at the connections of the
    // nodes.
    virtual std::vector<ConnectionController*> connectionsInOrder() const = 0;

private:
    // Returns the other end of a connection that ends here.
    ConnectorController* targetOf(const ConnectionController& connection) const;
    void orderConnections() const;

    // The node that owns the connector.
    NodeController& m_node;
    mutable Connections m_connections;

    // Whether `m_connections` are in the order of the document, unless nodes have changed their
    // order since.
    mutable bool m_isOrdered = true;
    mutable std::uint64_t m_nodeOrder = 0; // of the graph, when they were brought into their order
    QString m_name;
    QString m_label;
    QString m_tooltip;
};

} // namespace Ksx::Core
