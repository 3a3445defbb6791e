// The controller of the graph of parameter sets that an FX-map holds.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/graphcontroller.h"
#include <memory>
#include <vector>

namespace Ksx::Data::Content {
class ParamsGraph;
class ParamsGraphData;
class ParamsGraphNode;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class ParamNodeController;

// Shows a ParamsGraph: its nodes and the sets of parameters that they name. Get it from
// graphController() or CompFilterNodeController::paramGraph(). See GraphController for its life and
// its thread.
//
// The three edits of GraphController are refused. Positions of nodes and values of parameters can
// be edited through their own controllers.
class ParamGraphController final : public GraphController
{
public:
    // For graphController() alone. `graph` is part of a document.
    explicit ParamGraphController(const Data::Content::ParamsGraph& graph);
    ~ParamGraphController() override;

    // Returns the graph. Returns null once it has died.
    const Data::Content::ParamsGraph* graph() const;
    // Returns the first parameter set of a uid. Returns null if there is none. Walks over all sets.
    const Data::Content::ParamsGraphData* data(Uid uid) const;
    // Returns the node that the graph begins with. Returns null if there is none.
    ParamNodeController* rootNode() const;

    // Returns the controllers of all nodes, which are ParamNodeControllers, in the order of the
    // document.
    std::vector<NodeController*> nodes() const override;

private:
    class Nodes;

    Orv::Data::DataPointerBox<Data::Content::ParamsGraph> m_graph;
    std::unique_ptr<Nodes> m_nodes; // the controllers
};

} // namespace Ksx::Core
