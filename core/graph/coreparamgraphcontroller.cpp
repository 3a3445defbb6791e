#include "ksx/core/paramgraphcontroller.h"

#include "data/content/paramsgraph.h"
#include "ksx/core/paramnodecontroller.h"

namespace Ksx::Core {

using Data::Content::ParamsGraph;
using Data::Content::ParamsGraphData;
using Data::Content::ParamsGraphNode;

ParamGraphController::ParamGraphController(const ParamsGraph& graph)
    : m_graph(&graph), m_nodes(nodeCallbacks())
{
    m_nodes.follow(graph.paramsGraphNodes());
    settleAll();
}

ParamGraphController::~ParamGraphController()
{
    close();
    m_nodes.clear();
}

const Data::Content::ParamsGraph* ParamGraphController::graph() const
{
    return m_graph.get();
}

ParamGraphController::NodeList::Callbacks ParamGraphController::nodeCallbacks()
{
    NodeList::Callbacks callbacks;
    callbacks.make = [this](const ParamsGraphNode& node) {
        auto controller = std::make_unique<ParamNodeController>(node, *this);
        enterNode(*controller);
        return controller;
    };
    callbacks.added = [this](ParamNodeController& node, std::size_t index,
                             const Orv::Data::DataMessage& message) {
        settleNode(node, index, m_nodes.size(), editableContext(message));
        nodeAdded(&node, index);
    };
    callbacks.aboutToRemove = [this](ParamNodeController& node, std::size_t index) {
        nodeAboutToBeRemoved(&node, index);
        leaveNode(node);
    };
    callbacks.moved = [this] { reorderNodes(); };
    return callbacks;
}

const ParamsGraphData* ParamGraphController::data(Uid uid) const
{
    if (m_graph)
        for (const ParamsGraphData& data : m_graph->paramsGraphDatas())
            if (data.uid().get() == uid)
                return &data;
    return nullptr;
}

ParamNodeController* ParamGraphController::rootNode() const
{
    if (!m_graph || !m_graph->rootnode().isModified())
        return nullptr;
    return static_cast<ParamNodeController*>(nodeByUid(m_graph->rootnode().value().get()));
}

std::vector<NodeController*> ParamGraphController::nodes() const
{
    const auto controllers = m_nodes.controllers();
    return {controllers.begin(), controllers.end()};
}

} // namespace Ksx::Core
