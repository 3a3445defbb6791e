#include "behavior/droppedoutputs.h"

#include "behavior/ownerof.h"
#include "core/manipulatorstruct.h"
#include "data/content/compnode.h"
#include "data/content/connexion.h"
#include "data/content/graph.h"
#include "data/content/nodemanipulators.h"
#include "editing/itemindex.h"
#include <algorithm>
#include <unordered_set>
#include <vector>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
using Output = std::pair<Uid, Uid>; // node, output
using Outputs = std::set<Output>;
using Nodes = std::unordered_set<const CompNode*>;

Output sourceOf(const Connexion& connexion)
{
    return {connexion.connRef().value().get(), connexion.connRefOutput().value().get()};
}

// The nodes that each output feeds, kept in step with the nodes.
class FedNodes final : public ItemIndex<FedNodes, CompNode, Outputs>
{
public:
    explicit FedNodes(const List& list) { refill(list); }

    void addFedBy(const Output& output, Nodes& nodes) const
    {
        const auto found = m_nodes.find(output);
        if (found != m_nodes.end())
            nodes.insert(found->second.begin(), found->second.end());
    }

    static Outputs read(const CompNode& node)
    {
        Outputs sources;
        for (const Connexion& connexion : node.connexions())
            sources.insert(sourceOf(connexion));
        return sources;
    }
    void enter(const CompNode& node, const Outputs& sources)
    {
        for (const Output& source : sources)
            m_nodes[source].insert(&node);
    }
    void leave(const CompNode* node, const Outputs& sources)
    {
        for (const Output& source : sources) {
            const auto found = m_nodes.find(source);
            found->second.erase(node);
            if (found->second.empty())
                m_nodes.erase(found);
        }
    }

private:
    std::map<Output, Nodes> m_nodes;
};

// Returns the nodes that may be fed by the outputs, in the order of the list. They are all nodes when
// the index does not know the list as it was before the edit.
std::vector<const CompNode*> nodesFedBy(const Outputs& outputs, const FedNodes::List& list,
                                        bool isIndexed)
{
    std::vector<const CompNode*> ordered;
    const Orv::Data::ShadowObject* const shadow = list.shadow();
    const auto* const index = shadow == nullptr ? nullptr : shadow->findListener<FedNodes>();
    if (index == nullptr || !isIndexed) {
        for (const CompNode& node : list)
            ordered.push_back(&node);
        return ordered;
    }
    // The index has not been told yet of what is pending.
    Nodes nodes;
    for (const Output& output : outputs)
        index->addFedBy(output, nodes);
    if (const Orv::Data::DataMessage* pending = shadow->pending())
        for (const Orv::Data::TouchedChild& touched : pending->touched)
            nodes.insert(static_cast<const CompNode*>(touched.object.get()));
    std::vector<std::pair<std::size_t, const CompNode*>> places;
    for (const CompNode* node : nodes)
        if (node != nullptr && node->getParent() == &list)
            places.emplace_back(list.indexOf(*node), node);
    std::sort(places.begin(), places.end());
    for (const auto& [place, node] : places)
        ordered.push_back(node);
    return ordered;
}

} // namespace

void DroppedOutputs::add(const CompNode& node, Uid output)
{
    const auto* graph = ownerOf<Graph>(node);
    if (graph == nullptr)
        return;
    const auto [place, isFirst] = m_dropped.try_emplace(graph);
    if (isFirst) // later ones come in the midst of changes
        place->second.isIndexed = FedNodes::of(graph->compNodes()) != nullptr;
    place->second.outputs.emplace(node.uid().get(), output);
}

void DroppedOutputs::dropConnections(ManipulatorContext& context) const
{
    for (const auto& [graph, dropped] : m_dropped) {
        const Outputs& outputs = dropped.outputs;
        for (const CompNode* node : nodesFedBy(outputs, graph->compNodes(), dropped.isIndexed)) {
            const auto& connexions = node->connexions();
            for (std::size_t i = connexions.size(); i-- > 0;)
                if (outputs.count(sourceOf(connexions.at(i))) != 0)
                    ManipulatorStruct<CompNode>(*node, context).connexions().erase(i, 1);
        }
    }
}

} // namespace Ksx::Core::Behavior
