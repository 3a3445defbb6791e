// What becomes of the inputs and outputs of a graph.
#pragma once

#include "core/listenersimple.h"
#include "data/content/graph.h"
#include "data/datapointerbox.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/behavior/interfacediff.h"
#include "ksx/core/behavior/rounds.h"
#include "ksx/core/valuelistener.h"
#include <memory>
#include <vector>

namespace Ksx::Core::Behavior {

// Stands on a graph, and remembers its inputs and outputs: what they were before an edit is not to
// be found out afterwards. Writes to all instances of the graph what an edit has changed.
class GraphWatcher final
    : public Orv::Core::ListenerSimple<Priority, ListChanges, Orv::Data::MessageMask::Content>
{
public:
    using SyncGraphOutput = InterfaceRecord;
    using SyncParamInput = InterfaceRecord;

    // Puts one on a graph that has none.
    static void watch(const Data::Content::Graph& graph);

    explicit GraphWatcher(const Data::Content::Graph& graph); // for watch() alone
    ~GraphWatcher() override;
    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    class NodeListener;
    class NodeListListener;

    void followInputs(const Orv::Data::DataMessage& message);
    void followOutputs(const Orv::Data::DataMessage& message);
    bool concernsOutputs(const Orv::Data::DataMessage& nodesMessage) const;
    void listenToNodes();
    void writeTo(const Orv::Data::DataMessage& message, const InterfaceDiff* inputs,
                 const InterfaceDiff* outputs);

    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
    std::vector<SyncParamInput> m_inputs;
    std::vector<SyncGraphOutput> m_outputs;
    // The nodes on which the types of outputs depend. Other nodes can be edited for nothing, in
    // graphs of any size.
    std::vector<Orv::Data::DataPointerBox<Data::Content::CompNode>> m_nodes;
    std::vector<Uid> m_missingNodes;
    std::unique_ptr<NodeListener> m_nodeListener;
    std::unique_ptr<NodeListListener> m_nodeListListener;
    Rounds m_rounds;
};

// The outputs of a graph as its instances have them.
InterfaceItems outputsOf(const Data::Content::Graph& graph);

} // namespace Ksx::Core::Behavior
