#include "ksx/core/connectorcontroller.h"

#include "data/desc/valuetype.h"
#include "data/diagnosticlog.h"
#include "ksx/core/graphcontroller.h"
#include "ksx/core/nodecontroller.h"
#include <algorithm>
#include <utility>

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
    if (!m_targets.empty())
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

const std::vector<ConnectorController*>& ConnectorController::targets() const
{
    const std::uint64_t nodeOrder = m_node.graph().nodeOrder();
    if (m_targets.size() < 2 || (m_isOrdered && m_nodeOrder == nodeOrder))
        return m_targets;
    std::vector<ConnectorController*> ordered = targetsInOrder();
    // While connections go, some are still attached that their node does not list any more.
    if (ordered.size() == m_targets.size()) {
        m_targets = std::move(ordered);
        m_isOrdered = true;
        m_nodeOrder = nodeOrder;
    }
    return m_targets;
}

bool ConnectorController::isConnectedTo(const ConnectorController& other) const
{
    // Both know each other: one of them may have thousands of others.
    const bool isShorter = m_targets.size() <= other.m_targets.size();
    const auto& targets = isShorter ? m_targets : other.m_targets;
    const ConnectorController* const wanted = isShorter ? &other : this;
    return std::find(targets.begin(), targets.end(), wanted) != targets.end();
}

void ConnectorController::attach(ConnectorController& other, bool isLast)
{
    m_isOrdered = m_targets.empty() || (m_isOrdered && isLast);
    m_targets.push_back(&other);
}

void ConnectorController::detach(ConnectorController& other)
{
    const auto found = std::find(m_targets.begin(), m_targets.end(), &other);
    if (found != m_targets.end())
        m_targets.erase(found);
}

} // namespace Ksx::Core
