// Edits of instances of graphs.
#pragma once

#include "behavior/droppedoutputs.h"
#include "behavior/interfacediff.h"
#include "core/manipulatorlist.h"
#include "core/manipulatorstruct.h"
#include "data/content/nodemanipulators.h"
#include <string>
#include <string_view>
#include <unordered_set>

namespace Ksx::Data::Content {
class Function;
class Graph;
class GraphOutput;
class ParamInput;
} // namespace Ksx::Data::Content

namespace Ksx::Core::Behavior {

// The inputs of a graph or a function that are connectors of its instances. Read when they are first
// asked for, since most instances have few connections or none. Made for one edit.
class Connectors
{
public:
    using Inputs = Orv::Data::ContainerList<Data::Content::ParamInput>;

    // Those of a graph are its images, those of a function all of its inputs.
    explicit Connectors(const Data::Content::Graph& graph);
    explicit Connectors(const Data::Content::Function& function);
    bool has(const std::string& identifier) const;

private:
    const Inputs& m_inputs;
    bool m_areImages;
    mutable bool m_isRead = false;
    mutable std::unordered_set<std::string_view> m_identifiers;
};

// Writes what has changed in a graph to one of its instances. Writes nothing that is right already.
class CompInstanceWriter
{
public:
    using GraphOutputs = Orv::Data::ContainerList<Data::Content::GraphOutput>;

    // The instance stands in a node of a graph; see stands().
    CompInstanceWriter(const Data::Content::CompInstance& instance,
                       Orv::Core::ManipulatorContext& context, DroppedOutputs& dropped);
    // Is the instance what a node of a graph in an open package is?
    static bool stands(const Data::Content::CompInstance& instance);

    // The list is that of the graph's outputs.
    void followOutputs(const InterfaceDiff& outputs, const GraphOutputs& list);
    void followInputs(const InterfaceDiff& inputs);
    void keepConnectionsTo(const Connectors& inputs);

private:
    using Node = Orv::Core::ManipulatorStruct<Data::Content::CompNode>;
    using Instance = Orv::Core::ManipulatorStruct<Data::Content::CompInstance>;

    void removeOutput(std::size_t bridging);
    void setType(Uid output, unsigned type);
    void addOutput(const InterfaceDiff::Addition& added, const GraphOutputs& list);
    void makeOutput(const InterfaceDiff::Addition& added, const GraphOutputs& list);
    void orderOutputs(const InterfaceDiff& outputs);
    std::size_t indexOfOutput(Uid uid) const;
    std::size_t indexOfBridging(const std::string& identifier) const;

    Node m_node;
    Instance m_instance;
    DroppedOutputs& m_dropped;
};

// Writes changes of inputs to the connections of an instance.
void followInputs(const Orv::Core::ManipulatorList<Data::Content::Connexion>& connexions,
                  const InterfaceDiff& inputs);
// Erases the connections to all other inputs.
void keepConnectionsTo(const Orv::Core::ManipulatorList<Data::Content::Connexion>& connexions,
                       const Connectors& inputs);

} // namespace Ksx::Core::Behavior
