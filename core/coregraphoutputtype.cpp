#include "ksx/core/graphoutputtype.h"

#include "data/content/graph.h"
#include "ksx/core/uidsource.h"
#include <unordered_map>

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

    GraphOutputNodes all() const
    {
        GraphOutputNodes all;
        for (const auto& [uid, output] : m_outputs)
            all.nodes.push_back(output.node);
        for (const auto& [uid, source] : m_sources) {
            if (source != nullptr)
                all.nodes.push_back(source);
            else
                all.missing.push_back(uid);
        }
        return all;
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

GraphOutputNodes nodesOfGraphOutputs(const Graph& graph)
{
    return OutputNodes(graph).all();
}

bool isOutputNode(const CompNode& node)
{
    return bridgeOf(node) != nullptr;
}

} // namespace Ksx::Core
