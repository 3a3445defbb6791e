// A connector of a node: what both kinds share.
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

// Kinds of images, as connectors answer them.
enum class ColorKind : unsigned
{
    Color = 0,
    Grayscale = 1,
    Other = 2,
};
ColorKind colorKindOf(unsigned type);

// Owned by its node controller, with which it dies. Knows its connections; only ConnectionController
// changes them.
class ConnectorController : public Orv::SecuredObject
{
public:
    using Connections = Orv::Data::Row<ConnectionController*>;

    // The connectors at the other ends of a connector's connections, as they are at each look.
    class Targets
    {
    public:
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

        explicit Targets(const ConnectorController& end) : m_end(end) {}

        std::size_t size() const { return m_end.m_connections.size(); }
        bool empty() const { return m_end.m_connections.empty(); }
        // `index` is below size().
        ConnectorController* operator[](std::size_t index) const
        {
            return m_end.targetOf(*m_end.m_connections[index]);
        }
        ConnectorController* front() const { return (*this)[0]; }
        ConnectorController* back() const { return (*this)[size() - 1]; }
        ConstIterator begin() const { return {m_end, m_end.m_connections.begin()}; }
        ConstIterator end() const { return {m_end, m_end.m_connections.end()}; }

    private:
        const ConnectorController& m_end;
    };

    ConnectorController(NodeController& node, const QString& name, const QString& label);
    ConnectorController(const ConnectorController&) = delete;
    ConnectorController& operator=(const ConnectorController&) = delete;
    // Reports to the DiagnosticLog when connections are left.
    ~ConnectorController() override;

    virtual const QString& name() const { return m_name; }
    virtual void setName(const QString& name);
    virtual const QString& label() const { return m_label; }
    virtual void setLabel(const QString& label);
    virtual ColorKind colorKind() const = 0;
    const QString& tooltip() const { return m_tooltip; }
    void setTooltip(const QString& tooltip) { m_tooltip = tooltip; }

    NodeController& node() const { return m_node; }
    // Returns the sources of an input, or the inputs that an output feeds, in the order in which the
    // document lists the connections.
    Targets targets() const;
    // By which the connector knows its targets. In any order until somebody asks for the targets.
    const Connections& connections() const { return m_connections; }
    bool isConnectedTo(const ConnectorController& other) const;

    // One side of a connection each. `isLast` says that no connection to this connector stands
    // behind the new one.
    void attach(ConnectionController& connection, bool isLast);
    void detach(const ConnectionController& connection);
    // The document has put connections into another order.
    void reorderTargets() { m_isOrdered = false; }
    void forgetTargets() { m_connections.clear(); } // when the whole graph goes

    LazySignal<> nameChanged;
    LazySignal<> labelChanged;

protected:
    // Returns the connections in the order of the document, by a look at those of the nodes.
    virtual std::vector<ConnectionController*> connectionsInOrder() const = 0;

private:
    // Returns the other end of a connection that ends here.
    ConnectorController* targetOf(const ConnectionController& connection) const;
    void orderConnections() const;

    NodeController& m_node;
    mutable Connections m_connections;
    mutable bool m_isOrdered = true;
    mutable std::uint64_t m_nodeOrder = 0; // of the graph, when they were brought into their order
    QString m_name;
    QString m_label;
    QString m_tooltip;
};

} // namespace Ksx::Core
