#include "graph/graphoutputtype.h"

#include "data/content/graph.h"
#include "data/datamessage.h"
#include <algorithm>

namespace Ksx::Core {

namespace {

using namespace Data::Content;

constexpr unsigned ColorImage = 1;
constexpr unsigned EitherImage = 3;
constexpr const char* OutputNodeInput = "inputNodeOutput";

unsigned storedType(unsigned type)
{
    return type == 0 || type == EitherImage ? ColorImage : type;
}

const CompOutputBridge* bridgeOf(const CompNode& node)
{
    const Orv::Data::BaseObject* const implementation = node.compImplementation().get();
    const bool isBridge = implementation != nullptr &&
                          &implementation->getMeta() == &CompOutputBridge::MetaTag::record;
    return isBridge ? static_cast<const CompOutputBridge*>(implementation) : nullptr;
}

// What feeds an output node; null if nothing is named.
const Connexion* feedOf(const CompNode& node)
{
    for (const Connexion& connexion : node.connexions())
        if (connexion.identifier().get() == OutputNodeInput)
            return &connexion;
    return nullptr;
}

// Returns the uid of the node that says of which type an output node's output is. Returns none if
// the output node says so itself, or nothing feeds it.
std::optional<Uid> sourceOf(const CompNode& node)
{
    const CompOutputBridge* const bridge = bridgeOf(node);
    const bool isSaid = bridge == nullptr || bridge->connectionColorType().get() != 0;
    const Connexion* const feed = isSaid ? nullptr : feedOf(node);
    return feed == nullptr ? std::nullopt : std::optional<Uid>(feed->connRef().value().get());
}

// The type of an output of a node, 0 if it has no such output.
unsigned typeOfCompOutput(const CompNode& node, Uid uid)
{
    for (const CompOutput& output : node.compOutputs())
        if (output.uid().get() == uid)
            return output.comptype().value().get();
    return 0;
}

// The nodes that say of which type the outputs of a graph are. Looks at each node once, and a second
// time only if the type of an output has to be asked of what feeds it.
class OutputNodes
{
public:
    explicit OutputNodes(const Graph& graph)
    {
        for (const CompNode& node : graph.compNodes())
            if (const CompOutputBridge* bridge = bridgeOf(node))
                m_outputs.try_emplace(bridge->output().get(), Output{&node, bridge, feedOf(node)});
        for (const auto& [uid, output] : m_outputs)
            if (output.bridge->connectionColorType().get() == 0 && output.feed != nullptr)
                m_sources.try_emplace(sourceOf(output), nullptr);
        findSources(graph);
    }
    unsigned typeOf(const GraphOutput& graphOutput) const
    {
        const auto found = m_outputs.find(graphOutput.uid().get());
        if (found == m_outputs.end())
            return ColorImage;
        const Output& output = found->second;
        const unsigned type = output.bridge->connectionColorType().get();
        if (type != 0 || output.feed == nullptr)
            return storedType(type);
        const CompNode* const source = m_sources.at(sourceOf(output));
        return source == nullptr ? ColorImage
                                 : storedType(typeOfCompOutput(
                                       *source, output.feed->connRefOutput().value().get()));
    }

private:
    struct Output
    {
        const CompNode* node;
        const CompOutputBridge* bridge;
        const Connexion* feed; // may be null
    };
    static Uid sourceOf(const Output& output) { return output.feed->connRef().value().get(); }
    void findSources(const Graph& graph)
    {
        std::size_t left = m_sources.size();
        for (auto node = graph.compNodes().begin(); left > 0 && node != graph.compNodes().end();
             ++node) {
            const auto source = m_sources.find(node->uid().get());
            if (source == m_sources.end() || source->second != nullptr)
                continue;
            source->second = &*node;
            --left;
        }
    }

    std::unordered_map<Uid, Output> m_outputs; // by the uid of the output; the first node wins
    std::unordered_map<Uid, const CompNode*> m_sources; // by their uid; null if there is none
};

} // namespace

unsigned typeOfGraphOutput(const Graph& graph, const GraphOutput& output)
{
    return OutputNodes(graph).typeOf(output);
}

std::vector<unsigned> typesOfGraphOutputs(const Graph& graph)
{
    std::vector<unsigned> types;
    if (graph.graphOutputs().isEmpty())
        return types;
    types.reserve(graph.graphOutputs().size());
    const OutputNodes nodes(graph);
    for (const GraphOutput& output : graph.graphOutputs())
        types.push_back(nodes.typeOf(output));
    return types;
}

GraphOutputTypes::GraphOutputTypes(const Graph& graph, Watch watch)
    : m_graph(&graph), m_watch(std::move(watch))
{
    for (const CompNode& node : graph.compNodes())
        if (const CompOutputBridge* bridge = bridgeOf(node))
            enter(node, bridge->output().get());
    // The sources of all outputs are looked for in one walk.
    for (auto& entry : m_outputs) {
        Output& output = entry.value;
        output.source = sourceOf(*nodeOf(output));
        if (output.source)
            m_sources[*output.source].outputs.insert(entry.key());
    }
    if (m_sources.empty())
        return;
    for (const CompNode& node : graph.compNodes()) {
        const auto source = m_sources.find(node.uid().get());
        if (source != m_sources.end() && !source->second.node)
            setSourceNode(source->first, source->second, &node);
    }
}

GraphOutputTypes::~GraphOutputTypes() = default;

unsigned GraphOutputTypes::typeOf(Uid uid) const
{
    const auto found = m_outputs.find(uid);
    if (found == m_outputs.end())
        return ColorImage;
    const CompNode& node = *nodeOf(found->value);
    const CompOutputBridge* const bridge = bridgeOf(node);
    const auto source =
        found->value.source ? m_sources.find(*found->value.source) : m_sources.end();
    if (source == m_sources.end())
        return storedType(bridge == nullptr ? 0 : bridge->connectionColorType().get());
    const CompNode* const feeding = source->second.node.get();
    const Connexion* const feed = feedOf(node);
    return feeding == nullptr || feed == nullptr
               ? ColorImage
               : storedType(typeOfCompOutput(*feeding, feed->connRefOutput().value().get()));
}

const CompNode* GraphOutputTypes::nodeOf(const Output& output) const
{
    if (output.nodes.size() == 1 || !m_graph)
        return output.nodes.front();
    for (const CompNode& node : m_graph->compNodes())
        if (std::find(output.nodes.begin(), output.nodes.end(), &node) != output.nodes.end())
            return &node;
    return output.nodes.front();
}

std::vector<Uid> GraphOutputTypes::nodesChanged(const Orv::Data::DataMessage& message)
{
    Affected affected;
    for (const Orv::Data::TouchedChild& touched : message.touched)
        follow(touched, affected);
    for (const Uid output : affected)
        updateSource(output);
    return {affected.begin(), affected.end()};
}

void GraphOutputTypes::follow(const Orv::Data::TouchedChild& touched, Affected& affected)
{
    const auto* const node = static_cast<const CompNode*>(touched.object.get());
    const auto* const address = static_cast<const CompNode*>(touched.address);
    const bool isThere = m_graph && node != nullptr && node->getParent() == &m_graph->compNodes();
    const auto bridge = m_bridges.find(address);
    if (isThere && bridge == m_bridges.end() && bridgeOf(*node) != nullptr) {
        affected.insert(bridgeOf(*node)->output().get());
        enter(*node, bridgeOf(*node)->output().get());
    } else if (!isThere && bridge != m_bridges.end()) {
        affected.insert(bridge->value);
        leave(address, node);
    }
    const auto known = m_sourceNodes.find(address);
    const auto source = known != m_sourceNodes.end() ? m_sources.find(known->value)
                        : isThere                    ? m_sources.find(node->uid().get())
                                                     : m_sources.end();
    if (source == m_sources.end() || (isThere && known != m_sourceNodes.end()))
        return;
    affected.insert(source->second.outputs.begin(), source->second.outputs.end());
    findSource(source->first, source->second);
}

std::vector<Uid> GraphOutputTypes::nodeChanged(const CompNode& node)
{
    Affected affected;
    const auto bridge = m_bridges.find(&node);
    const CompOutputBridge* const present = bridgeOf(node);
    if (bridge != m_bridges.end()) {
        affected.insert(bridge->value);
        if (present == nullptr || present->output().get() != bridge->value)
            leave(&node, &node);
    }
    if (present != nullptr && !m_bridges.contains(&node)) {
        affected.insert(present->output().get());
        enter(node, present->output().get());
    }
    const auto known = m_sourceNodes.find(&node);
    if (known != m_sourceNodes.end()) {
        Source& source = m_sources.at(known->value);
        affected.insert(source.outputs.begin(), source.outputs.end());
        if (node.uid().get() != known->value)
            findSource(Uid(known->value), source);
    }
    for (const Uid output : affected)
        updateSource(output);
    return {affected.begin(), affected.end()};
}

void GraphOutputTypes::enter(const CompNode& node, Uid output)
{
    const bool didCount = counts(&node);
    m_bridges.emplace(&node, output);
    m_outputs[output].nodes.push_back(&node);
    changeCounting(&node, didCount);
}

// `node` is null if it has died.
void GraphOutputTypes::leave(const CompNode* address, const CompNode* node)
{
    const bool didCount = counts(address);
    const auto bridge = m_bridges.find(address);
    const Uid uid = bridge->value;
    m_bridges.erase(bridge);
    auto& nodes = m_outputs.at(uid).nodes;
    nodes.erase(std::find(nodes.begin(), nodes.end(), address));
    if (nodes.empty()) {
        unlinkSource(uid);
        m_outputs.erase(uid);
    }
    if (node != nullptr)
        changeCounting(node, didCount);
}

void GraphOutputTypes::updateSource(Uid uid)
{
    const auto output = m_outputs.find(uid);
    if (output == m_outputs.end())
        return;
    const std::optional<Uid> source = sourceOf(*nodeOf(output->value));
    if (source == output->value.source)
        return;
    unlinkSource(uid);
    if (source)
        linkSource(uid, *source);
}

void GraphOutputTypes::linkSource(Uid output, Uid uid)
{
    m_outputs.at(output).source = uid;
    Source& source = m_sources[uid];
    if (source.outputs.empty())
        findSource(uid, source);
    source.outputs.insert(output);
}

void GraphOutputTypes::unlinkSource(Uid uid)
{
    Output& output = m_outputs.at(uid);
    if (!output.source)
        return;
    const auto source = m_sources.find(*output.source);
    output.source.reset();
    source->second.outputs.erase(uid);
    if (!source->second.outputs.empty())
        return;
    setSourceNode(source->first, source->second, nullptr);
    m_sources.erase(source);
}

void GraphOutputTypes::findSource(Uid uid, Source& source)
{
    const CompNode* found = nullptr;
    if (m_graph)
        for (auto node = m_graph->compNodes().begin();
             found == nullptr && node != m_graph->compNodes().end(); ++node)
            found = node->uid().get() == uid ? &*node : nullptr;
    setSourceNode(uid, source, found);
}

void GraphOutputTypes::setSourceNode(Uid uid, Source& source, const CompNode* node)
{
    if (source.address == node)
        return;
    if (source.address != nullptr) {
        m_sourceNodes.erase(source.address);
        if (const CompNode* former = source.node.get())
            changeCounting(former, true);
    }
    const bool didCount = counts(node);
    source.address = node;
    source.node.reset(node);
    if (node != nullptr) {
        m_sourceNodes.emplace(node, uid);
        changeCounting(node, didCount);
    }
}

bool GraphOutputTypes::counts(const CompNode* node) const
{
    return m_bridges.contains(node) || m_sourceNodes.contains(node);
}

void GraphOutputTypes::changeCounting(const CompNode* node, bool didCount)
{
    if (counts(node) != didCount)
        m_watch(*node, !didCount);
}

} // namespace Ksx::Core
