#include "ksx/core/nodecontroller.h"

#include "data/content/connexion.h"
#include "graph/connexionslistener.h"
#include "ksx/core/graphcontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include <algorithm>
#include <iterator>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace Ksx::Core {

using Orv::Core::ManipulatorContext;
using ConnectorBox = Orv::Data::DataPointerBox<ConnectorController>;

// The first connector of each name or uid, for nodes that have many.
struct NodeController::ConnectorIndex
{
    std::unordered_map<std::string_view, InputConnectorController*> inputs;
    std::unordered_map<std::string_view, OutputConnectorController*> outputsByName;
    std::unordered_map<Uid, OutputConnectorController*> outputs;
};

namespace {

constexpr std::size_t WorthIndexing = 24; // connectors; below it a walk costs less

template <class Map>
typename Map::mapped_type foundIn(const Map& map, const typename Map::key_type& key)
{
    const auto found = map.find(key);
    return found == map.end() ? nullptr : found->second;
}

bool isSame(const InputConnectorController& input, const ConnectorEntry& entry)
{
    return input.identifier() == entry.identifier;
}

bool isSame(const OutputConnectorController& output, const ConnectorEntry& entry)
{
    return output.outputUid() == entry.uid && output.identifier() == entry.identifier;
}

template <class Connector>
std::unique_ptr<Connector> makeConnector(NodeController& node, const ConnectorEntry& entry)
{
    if constexpr (std::is_same_v<Connector, InputConnectorController>)
        return std::make_unique<Connector>(node, entry.identifier, entry.label);
    else
        return std::make_unique<Connector>(node, entry.uid, entry.identifier, entry.label);
}

// As std::find_if(), but from a place on and from the beginning afterwards: what is looked for one
// after the other mostly stands in that order.
template <class Iterator, class Container, class Predicate>
Iterator findFrom(Iterator place, Container& container, const Predicate& isWanted)
{
    const auto found = std::find_if(place, container.end(), isWanted);
    if (found != container.end())
        return found;
    const auto before = std::find_if(container.begin(), place, isWanted);
    return before == place ? container.end() : before;
}

} // namespace

NodeController::NodeController(GraphController& graph)
    : m_graph(graph), m_connections(std::make_unique<ConnexionsListener>(*this))
{}

NodeController::~NodeController() = default;

void NodeController::buildConnectors()
{
    rebuildInputConnectors(nullptr);
    rebuildOutputConnectors();
    if (const auto* list = connexions())
        m_connections->follow(*list);
    m_toldType = primaryType();
}

void NodeController::tellOutputType()
{
    const unsigned type = primaryType();
    if (std::exchange(m_toldType, type) != type)
        outputTypeChanged(type);
}

void NodeController::indexConnectors()
{
    m_connectorIndex.reset();
    if (m_inputs.size() + m_outputs.size() < WorthIndexing)
        return;
    m_connectorIndex = std::make_unique<ConnectorIndex>();
    for (const auto& input : m_inputs)
        m_connectorIndex->inputs.emplace(input->identifier(), input.get());
    for (const auto& output : m_outputs) {
        m_connectorIndex->outputsByName.emplace(output->identifier(), output.get());
        m_connectorIndex->outputs.emplace(output->outputUid(), output.get());
    }
}

void NodeController::refreshConnections(ManipulatorContext* context)
{
    m_connections->refreshAll(context);
    m_graph.retryConnectionsTo(*this, context);
}

void NodeController::rebuildOutputConnectors()
{
    std::vector<ConnectorEntry> entries;
    appendOutputConnectorNames(entries);
    rebuild(m_outputs, entries, nullptr);
}

void NodeController::rebuildInputConnectors(ManipulatorContext* context)
{
    std::vector<ConnectorEntry> entries;
    appendInputConnectorNames(entries);
    rebuild(m_inputs, entries, context);
}

template <class Connector>
void NodeController::rebuild(std::vector<std::unique_ptr<Connector>>& connectors,
                             const std::vector<ConnectorEntry>& entries,
                             ManipulatorContext* context)
{
    std::vector<std::unique_ptr<Connector>> old = std::exchange(connectors, {});
    m_connectorIndex.reset();
    auto next = old.begin();
    std::vector<ConnectorBox> all;
    std::vector<ConnectorBox> added;
    for (const ConnectorEntry& entry : entries) {
        const auto found = findFrom(next, old, [&](const auto& connector) {
            return connector != nullptr && isSame(*connector, entry);
        });
        if (found != old.end()) {
            connectors.push_back(std::move(*found));
            next = std::next(found);
        } else {
            connectors.push_back(makeConnector<Connector>(*this, entry));
            added.emplace_back(connectors.back().get());
        }
        connectors.back()->setTooltip(entry.tooltip);
        all.emplace_back(connectors.back().get());
    }
    indexConnectors();
    // Outside of the delivery of an edit, who hears of one change may take the node or its
    // connectors away at once.
    const Orv::Data::DataPointerBox<NodeController> self(this);
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (all[i])
            all[i].access()->setLabel(entries[i].label);
    for (const ConnectorBox& connector : added)
        if (self && connector)
            connectorAdded(connector.access());
    for (const auto& connector : old) {
        if (connector == nullptr || !self)
            continue;
        connectorAboutToBeRemoved(connector.get());
        if (self)
            releaseConnectionsOf(*connector, context);
    }
}

void NodeController::releaseConnectionsOf(const ConnectorController& connector,
                                          ManipulatorContext* context)
{
    while (!connector.connections().empty())
        connector.connections().back()->release(context);
}

unsigned NodeController::connectorType(const std::string&) const
{
    return 0;
}

bool NodeController::isVariantConnector(const std::string&) const
{
    return false;
}

bool NodeController::isOptionalVariantConnector(const std::string&) const
{
    return false;
}

void NodeController::appendInputConnectorNames(std::vector<ConnectorEntry>&) const {}

void NodeController::appendOutputConnectorNames(std::vector<ConnectorEntry>& entries) const
{
    entries.push_back({outputIdentifier(), {}, 0});
}

bool NodeController::canConnect(const OutputConnectorController& source,
                                const InputConnectorController& connector) const
{
    return &source.node() != this && &connector.node() == this &&
           &source.node().graph() == &m_graph && !connector.isConnectedTo(source);
}

unsigned NodeController::connectorUsage(const std::string&) const
{
    return 0;
}

InputConnectorController* NodeController::connectorByName(const std::string& identifier) const
{
    return inputConnectorByName(identifier);
}

void NodeController::onConnectorsChanged()
{
    connectorsChanged();
}

ConnectionDataInfo NodeController::connectionInfo(const OutputConnectorController&,
                                                  const std::string& identifier) const
{
    return {identifier, uid(), std::nullopt};
}

void NodeController::onSubGraphChanged(ManipulatorContext*) {}

void NodeController::onSubGraphLinkChanged(ManipulatorContext*) {}

void NodeController::onInputConnected(InputConnectorController&, OutputConnectorController&,
                                      ManipulatorContext*)
{}

void NodeController::onInputDisconnected(InputConnectorController&, OutputConnectorController&,
                                         ManipulatorContext*)
{}

bool NodeController::onInputTypeChanged(InputConnectorController&, const OutputConnectorController&,
                                        ManipulatorContext*)
{
    return false;
}

bool NodeController::setOutputTypeFromInput(unsigned, ManipulatorContext*)
{
    return false;
}

// Without recursion, since chains of nodes can be as long as graphs. Each node is written once at
// most, so that the journey ends in graphs with cycles, too.
void NodeController::propagateOutputType(ManipulatorContext* context)
{
    if (context == nullptr)
        return;
    const std::uint64_t wave = m_graph.nextWave();
    m_wave = wave;
    std::vector<NodeController*> changed{this};
    while (!changed.empty()) {
        const NodeController& node = *changed.back();
        changed.pop_back();
        for (const auto& output : node.m_outputs) {
            for (ConnectorController* target : output->targets()) {
                NodeController& next = target->node();
                if (next.m_wave == wave ||
                    !next.onInputTypeChanged(static_cast<InputConnectorController&>(*target),
                                             *output, context))
                    continue;
                next.m_wave = wave;
                changed.push_back(&next);
            }
        }
    }
}

bool NodeController::takesList(const std::string&) const
{
    return false;
}

InputConnectorController* NodeController::inputConnector(std::size_t index) const
{
    return index < m_inputs.size() ? m_inputs[index].get() : nullptr;
}

OutputConnectorController* NodeController::outputConnector(std::size_t index) const
{
    return index < m_outputs.size() ? m_outputs[index].get() : nullptr;
}

InputConnectorController* NodeController::inputConnectorByName(const std::string& identifier) const
{
    if (m_connectorIndex != nullptr)
        return foundIn(m_connectorIndex->inputs, std::string_view(identifier));
    for (const auto& input : m_inputs)
        if (input->identifier() == identifier)
            return input.get();
    return nullptr;
}

OutputConnectorController*
NodeController::outputConnectorByName(const std::string& identifier) const
{
    if (m_connectorIndex != nullptr)
        return foundIn(m_connectorIndex->outputsByName, std::string_view(identifier));
    for (const auto& output : m_outputs)
        if (output->identifier() == identifier)
            return output.get();
    return nullptr;
}

OutputConnectorController* NodeController::outputConnectorByUid(Uid uid) const
{
    if (!hasOutputUids())
        return outputConnector(0);
    if (m_connectorIndex != nullptr)
        return foundIn(m_connectorIndex->outputs, uid);
    for (const auto& output : m_outputs)
        if (output->outputUid() == uid)
            return output.get();
    return nullptr;
}

} // namespace Ksx::Core
