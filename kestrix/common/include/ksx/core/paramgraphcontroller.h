// The graph of parameter sets that an FX-map holds.
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

// Got from graphController(). Shows the graph and edits nothing of it but positions: the three
// edits of all graphs are refused.
class ParamGraphController final : public GraphController
{
public:
    explicit ParamGraphController(const Data::Content::ParamsGraph& graph);
    ~ParamGraphController() override;

    // Null once it has died.
    const Data::Content::ParamsGraph* graph() const;
    // The first parameter set of that uid; null if there is none.
    const Data::Content::ParamsGraphData* data(Uid uid) const;
    // The node that the graph begins with; null if there is none.
    ParamNodeController* rootNode() const;

    std::vector<NodeController*> nodes() const override;

private:
    class Nodes;

    Orv::Data::DataPointerBox<Data::Content::ParamsGraph> m_graph;
    std::unique_ptr<Nodes> m_nodes; // the controllers
};

} // namespace Ksx::Core
