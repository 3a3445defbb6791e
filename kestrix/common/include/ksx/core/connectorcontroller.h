// A connector of a node: what both kinds share.
#pragma once

#include "data/securedobject.h"
#include "ksx/core/lazysignal.h"
#include <QString>
#include <cstdint>
#include <vector>

namespace Ksx::Core {

class NodeController;

// Kinds of images, as connectors answer them.
enum class ColorKind : unsigned
{
    Color = 0,
    Grayscale = 1,
    Other = 2,
};
ColorKind colorKindOf(unsigned type);

// Owned by its node controller, with which it dies. Knows the connectors at the other ends of its
// connections; only ConnectionController changes them.
class ConnectorController : public Orv::SecuredObject
{
public:
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
    const std::vector<ConnectorController*>& targets() const;
    bool isConnectedTo(const ConnectorController& other) const;

    // One side of a connection each. `isLast` says that no connection to this connector stands
    // behind the new one.
    void attach(ConnectorController& other, bool isLast);
    void detach(ConnectorController& other);
    // The document has put connections into another order.
    void reorderTargets() { m_isOrdered = false; }
    void forgetTargets() { m_targets.clear(); } // when the whole graph goes

    LazySignal<> nameChanged;
    LazySignal<> labelChanged;

protected:
    // Returns what targets() returns, by a look at the connections of the nodes.
    virtual std::vector<ConnectorController*> targetsInOrder() const = 0;
    const std::vector<ConnectorController*>& unorderedTargets() const { return m_targets; }

private:
    NodeController& m_node;
    // In any order until somebody asks.
    mutable std::vector<ConnectorController*> m_targets;
    mutable bool m_isOrdered = true;
    mutable std::uint64_t m_nodeOrder = 0; // of the graph, when they were brought into their order
    QString m_name;
    QString m_label;
    QString m_tooltip;
};

} // namespace Ksx::Core
