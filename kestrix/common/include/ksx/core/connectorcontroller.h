// A connector of a node: what both kinds share.
#pragma once

#include "data/securedobject.h"
#include "ksx/core/lazysignal.h"
#include <QString>
#include <utility>
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
    // The sources of an input, in the order of the document's connections; the inputs that an output
    // feeds, in the order in which they came.
    const std::vector<ConnectorController*>& targets() const { return m_targets; }
    bool isConnectedTo(const ConnectorController& other) const;

    // One side of a connection each.
    void attach(ConnectorController& other) { m_targets.push_back(&other); }
    void detach(ConnectorController& other);
    void setTargets(std::vector<ConnectorController*> targets) { m_targets = std::move(targets); }
    void forgetTargets() { m_targets.clear(); } // when the whole graph goes

    LazySignal<> nameChanged;
    LazySignal<> labelChanged;

private:
    NodeController& m_node;
    std::vector<ConnectorController*> m_targets;
    QString m_name;
    QString m_label;
    QString m_tooltip;
};

} // namespace Ksx::Core
