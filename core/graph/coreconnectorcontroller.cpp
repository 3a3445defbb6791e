#include "ksx/core/connectorcontroller.h"

#include "data/content/connexion.h"
#include "data/desc/valuetype.h"
#include "data/diagnosticlog.h"
#include "ksx/core/connectioncontroller.h"
#include "ksx/core/graphcontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include <algorithm>

namespace Ksx::Core {

namespace {
constexpr int TargetsLine = 23; // by which the report is known
} // namespace

ColorKind colorKindOf(unsigned type)
{
    switch (type) {
    case Data::Desc::ValueType::ColorImage:
        return ColorKind::Color;
    case Data::Desc::ValueType::GrayscaleImage:
        return ColorKind::Grayscale;
    default:
        return ColorKind::Other;
    }
}

ConnectorController::ConnectorController(NodeController& node, const QString& name,
                                         const QString& label)
    : m_node(node), m_name(name), m_label(label)
{}

ConnectorController::~ConnectorController()
{
    if (!m_connections.empty())
        Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency, "core\\coreconnectorcontroller",
                                  TargetsLine, "Targets of connector not empty");
}

void ConnectorController::setName(const QString& name)
{
    if (name == m_name)
        return;
    m_name = name;
    nameChanged();
}

void ConnectorController::setLabel(const QString& label)
{
    if (label == m_label)
        return;
    m_label = label;
    labelChanged();
}

ConnectorController::Targets ConnectorController::targets() const
{
    orderConnections();
    return Targets(*this);
}

void ConnectorController::orderConnections() const
{
    const std::uint64_t nodeOrder = m_node.graph().nodeOrder();
    if (m_connections.size() < 2 || (m_isOrdered && m_nodeOrder == nodeOrder))
        return;
    const std::vector<ConnectionController*> ordered = connectionsInOrder();
    // While connections go, some are still attached that their node does not list any more.
    if (ordered.size() != m_connections.size())
        return;
    m_connections.clear();
    for (ConnectionController* connection : ordered)
        m_connections.pushBack(connection);
    m_isOrdered = true;
    m_nodeOrder = nodeOrder;
}

bool ConnectorController::isConnectedTo(const ConnectorController& other) const
{
    // Both know each other: one of them may have thousands of others.
    const bool isShorter = m_connections.size() <= other.m_connections.size();
    const ConnectorController& shorter = isShorter ? *this : other;
    const ConnectorController* const wanted = isShorter ? &other : this;
    const Targets targets(shorter); // in any order
    return std::find(targets.begin(), targets.end(), wanted) != targets.end();
}

void ConnectorController::attach(ConnectionController& connection, bool isLast)
{
    Q_ASSERT(connection.input() == this || connection.output() == this);
    m_isOrdered = m_connections.empty() || (m_isOrdered && isLast);
    m_connections.pushBack(&connection);
}

void ConnectorController::detach(const ConnectionController& connection)
{
    const std::size_t place = m_connections.indexOf(&connection);
    if (place < m_connections.size())
        m_connections.take(place);
}

ConnectorController* ConnectorController::targetOf(const ConnectionController& connection) const
{
    ConnectorController* const output = connection.output();
    return output == this ? connection.input() : output;
}

} // namespace Ksx::Core
