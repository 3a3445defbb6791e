// A graph of functions, which computes one value.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/graphcontroller.h"
#include <memory>
#include <vector>

namespace Ksx::Data::Content {
class DynamicValue;
class ParamNode;
} // namespace Ksx::Data::Content

namespace Ksx::Data::Desc {
enum class FunctionsEnum : unsigned;
} // namespace Ksx::Data::Desc

namespace Ksx::Core {

class FuncNodeController;

// Got from graphController(), below. Controllers of nodes follow the list of the graph, as in other kinds
// of graphs.
class FuncGraphController final : public GraphController
{
public:
    explicit FuncGraphController(const Data::Content::DynamicValue& graph);
    ~FuncGraphController() override;

    // Null once it has died.
    const Data::Content::DynamicValue* graph() const;

    // Appends a node, which holds zero, false or an empty text if it holds something. Null for an
    // unknown function.
    FuncNodeController* addAtomicFunction(Data::Desc::FunctionsEnum function);
    FuncNodeController* addAtomicFunction(unsigned function);
    // Leaves the graph without an output if the node was it.
    void removeNode(NodeController& node, bool disconnect) override;
    bool connect(ConnectorController& a, ConnectorController& b, bool replace) override;
    bool disconnect(ConnectorController& a, ConnectorController& b) override;
    // Lets one node feed what the other one feeds. An input with one value is disconnected from
    // all that fed it and connected anew, behind the other connections of its node; in a list, only
    // the entries of the source change, in their places.
    void replaceSource(FuncNodeController& replaced, FuncNodeController& replacement);

    // The node that gives the value; null if there is none.
    FuncNodeController* outputNode() const;
    // False without a command for a node without a value, and for what is the output already.
    bool setOutputNode(FuncNodeController& node);

    std::vector<NodeController*> nodes() const override;
    // The node at a place of the list, below its size.
    FuncNodeController* nodeAt(std::size_t index) const;

    // For nodes: an edit of several steps is under way, in which inputs must not go; at its end it
    // has the node drop those that have become unused.
    bool isHolding() const { return m_holdCount != 0; }
    void tidyLater(FuncNodeController& node);

private:
    class Hold;
    class Nodes;

    Orv::Data::DataPointerBox<Data::Content::DynamicValue> m_graph;
    unsigned m_holdCount = 0;
    std::vector<Orv::Data::DataPointerBox<FuncNodeController>> m_untidy;
    std::unique_ptr<Nodes> m_nodes; // the controllers
};

// Returns the controller of a function graph: see graphcontrollerlistener.h.
FuncGraphController*
graphController(const Orv::Data::DataPointerBox<Data::Content::DynamicValue>& graph);

} // namespace Ksx::Core
