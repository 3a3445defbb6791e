// The controller of a graph of functions, which computes one value.
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

// Shows and edits a DynamicValue: the computed value of a parameter, or the body of a function. One
// of its nodes is the output, whose value is the value of the graph. Get the controller from
// graphController(), below. See GraphController for its life, its thread and the life of all that
// it gives out.
//
// A graph that computes a half:
//
//     FuncNodeController* half = graph.addAtomicFunction(FunctionsEnum::ConstFloat1);
//     if (half != nullptr && half->setData(Orv::Data::Float1{{0.5F}}))
//         graph.setOutputNode(*half);
class FuncGraphController final : public GraphController
{
public:
    // For graphController() alone. `graph` is part of a document.
    explicit FuncGraphController(const Data::Content::DynamicValue& graph);
    ~FuncGraphController() override;

    // Returns the graph. Returns null once it has died.
    const Data::Content::DynamicValue* graph() const;

    // Appends a node that computes a function, with a new uid. A node that holds a value gets zero,
    // false or an empty text. This is one undoable command.
    //
    // Returns the controller of the node. Returns null and changes nothing for a function that the
    // table does not know, and if the edit was refused.
    FuncNodeController* addAtomicFunction(Data::Desc::FunctionsEnum function);
    // Does the same for the number of a function.
    FuncNodeController* addAtomicFunction(unsigned function);

    // Does as GraphController::removeNode() says. If the node is the output, the graph has no
    // output afterwards.
    void removeNode(NodeController& node, bool disconnect) override;

    // Does as GraphController::connect() says. Refuses a source if none of its types fits the
    // input. See FuncNodeController::canConnect().
    bool connect(ConnectorController& a, ConnectorController& b, bool replace) override;
    bool disconnect(ConnectorController& a, ConnectorController& b) override;

    // Makes `replacement` feed all inputs that `replaced` feeds, except its own. An input with one
    // value is disconnected from all its sources. It is connected anew, behind the other
    // connections of its node. In a list, only the entries of `replaced` change, in their places.
    //
    // Each input takes commands of its own: use a Transaction around the call. Types are not
    // checked. Does nothing for nodes of another graph.
    void replaceSource(FuncNodeController& replaced, FuncNodeController& replacement);

    // Returns the node whose value is the value of the graph. Returns null if there is none.
    FuncNodeController* outputNode() const;

    // Makes a node the output of the graph. This is one undoable command. A node whose uid is 0
    // gets another uid, since no output can be named by 0. Its connections follow.
    //
    // Returns false and runs no command for a function without a value and for the present output.
    // Returns false also for a node of another graph.
    bool setOutputNode(FuncNodeController& node);

    std::vector<NodeController*> nodes() const override;
    // Returns the node at a place in the list of the document. `index` must be below its size.
    FuncNodeController* nodeAt(std::size_t index) const;

    // For nodes: returns true during an edit of several steps. Nodes keep their unused inputs so
    // long.
    bool isHolding() const { return m_holdCount != 0; }

    // For nodes: notes a node that has kept an unused input. Its dropUnusedInputs() is called at
    // the end of the edit.
    void tidyLater(FuncNodeController& node);

private:
    class Hold;
    class Nodes;

    Orv::Data::DataPointerBox<Data::Content::DynamicValue> m_graph;
    unsigned m_holdCount = 0;
    std::vector<Orv::Data::DataPointerBox<FuncNodeController>> m_untidy;
    std::unique_ptr<Nodes> m_nodes; // the controllers
};

// Returns the controller of a function graph. Makes it at the first call, in time that grows with
// the graph. Returns null for an empty box. The graph owns the controller: see
// GraphControllerListener.
FuncGraphController*
graphController(const Orv::Data::DataPointerBox<Data::Content::DynamicValue>& graph);

} // namespace Ksx::Core
