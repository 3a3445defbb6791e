#include "ksx/core/paramgraphcontroller.h"

#include "data/content/paramsgraph.h"
#include "editing/controllerlist.h"
#include "ksx/core/paramnodecontroller.h"

namespace Ksx::Core {

using Data::Content::ParamsGraph;
using Data::Content::ParamsGraphData;
using Data::Content::ParamsGraphNode;

// The controllers of the nodes, in the order of the document.
class ParamGraphController::Nodes
{
    using List = ControllerList<ParamsGraphNode, ParamNodeController>;

public:
    explicit Nodes(ParamGraphController& graph) : list(callbacks(graph)) {}

    List list;

private:
    static List::Callbacks callbacks(ParamGraphController& graph)
    {
        List::Callbacks callbacks;
        callbacks.make = [&graph](const ParamsGraphNode& node) {
            auto controller = std::make_unique<ParamNodeController>(node, graph);
            graph.enterNode(*controller);
            return controller;
        };
        callbacks.added = [&graph](ParamNodeController& node, std::size_t index,
                                   const Orv::Data::DataMessage& message) {
            graph.settleNode(node, index, graph.m_nodes->list.size(), editableContext(message));
            graph.nodeAdded(&node, index);
        };
        callbacks.aboutToRemove = [&graph](ParamNodeController& node, std::size_t index) {
            graph.nodeAboutToBeRemoved(&node, index);
            graph.leaveNode(node);
        };
        callbacks.moved = [&graph] { graph.reorderNodes(); };
        return callbacks;
    }
};

ParamGraphController::ParamGraphController(const ParamsGraph& graph)
    : m_graph(&graph), m_nodes(std::make_unique<Nodes>(*this))
{
    m_nodes->list.follow(graph.paramsGraphNodes());
    settleAll();
}

ParamGraphController::~ParamGraphController()
{
    close();
    m_nodes->list.clear();
}

const Data::Content::ParamsGraph* ParamGraphController::graph() const
{
    return m_graph.get();
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
    const auto controllers = m_nodes->list.controllers();
    return {controllers.begin(), controllers.end()};
}

} // namespace Ksx::Core
