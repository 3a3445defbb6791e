// What becomes of the inputs and outputs of a graph.
#pragma once

#include "behavior/interfacediff.h"
#include "behavior/interfacememory.h"
#include "behavior/rounds.h"
#include "core/listenersimple.h"
#include "data/content/graph.h"
#include "data/datapointerbox.h"
#include "graph/graphoutputtype.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/follow.h"
#include "ksx/core/stage.h"
#include <memory>
#include <vector>

namespace Ksx::Core::Behavior {

// Stands on a graph, and remembers its inputs and outputs: what they were before an edit is not to
// be found out afterwards. Writes to all instances of the graph what an edit has changed.
class GraphWatcher final
    : public Orv::Core::ListenerSimple<Stage::Repair, ListChanges, Orv::Data::MessageMask::Content>
{
public:
    using SyncGraphOutput = InterfaceRecord;
    using SyncParamInput = InterfaceRecord;

    // Puts one on a graph that has none.
    static void watch(const Data::Content::Graph& graph);

    explicit GraphWatcher(const Data::Content::Graph& graph); // for watch() alone
    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    static constexpr std::uint32_t ItemChanges =
        Orv::Data::ChangeType::Inserted | Orv::Data::ChangeType::Erased;

    void watchNode(const Data::Content::CompNode& node, bool counts);
    void updateNode(const Orv::Data::DataMessage& message);
    void updateNodes(const Orv::Data::DataMessage& message);
    void noteAffected(const std::vector<Uid>& outputs);
    void followTypes(const Orv::Data::DataMessage& message);
    void writeOutputs(const Orv::Data::DataMessage& message, const InterfaceDiff& diff);
    void writeTo(const Orv::Data::DataMessage& message, const InterfaceDiff* inputs,
                 const InterfaceDiff* outputs);

    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
    // On the nodes that count, and on the list of nodes. The types are right before anybody asks for
    // them. What has become of them is written later.
    Follow<&GraphWatcher::updateNode, Orv::Data::ChangeType::Descendant, Stage::Mirror,
           Orv::Data::MessageMask::Content>
        m_nodeUpdate{*this};
    Follow<&GraphWatcher::followTypes, Orv::Data::ChangeType::Descendant, Stage::Repair,
           Orv::Data::MessageMask::Content>
        m_node{*this};
    Follow<&GraphWatcher::updateNodes, ItemChanges> m_nodesUpdate{*this};
    Follow<&GraphWatcher::followTypes, ItemChanges, Stage::Repair> m_nodes{*this};
    GraphOutputTypes m_types;
    InterfaceMemory m_inputs;
    InterfaceMemory m_outputs;
    std::vector<Uid> m_affected; // outputs whose types have to be looked at
    Rounds m_rounds;
};

// The outputs of a graph as its instances have them.
InterfaceItems outputsOf(const Data::Content::Graph& graph);

} // namespace Ksx::Core::Behavior
