// What the nodes of a graph are, and where their parameters stand.
#pragma once

#include "data/content/compfilter.h"
#include "data/content/compimplementation.h"
#include "data/content/compinputbridge.h"
#include "data/content/compinstance.h"
#include "data/content/compnode.h"
#include "data/content/dynamicvalue.h"
#include "data/content/paramsarray.h"
#include "data/content/paramsgraph.h"
#include <cstdint>

namespace Ksx::Core {

// The classes that a node's implementation may have, in their order in CompImplementation. Whoever
// treats them apart uses a switch without a default, so that the compiler names a forgotten one.
enum class NodeKind
{
    None, // a node without an implementation
    Filter,
    Instance,
    InputBridge,
    OutputBridge,
    External,
    ExternalLink,
};

// Returns the kind of nodes whose implementation has that class. Returns None for other classes.
NodeKind kindOf(const Orv::Data::ObjectMeta& implementation);
// Returns the kind of a node by the class of its implementation.
NodeKind kindOf(const Data::Content::CompNode& node);

using ParameterList = Orv::Data::ContainerList<Data::Content::Parameter>;

// One list of parameters of a node.
struct ParameterPlace
{
    enum class Owner
    {
        Node,      // the parameters of the node itself
        Cell,      // those of one cell of an array
        GraphData, // those of one set of an FX-map's graph
    };

    const ParameterList& parameters;
    Owner owner;
    unsigned uid; // of the cell or set; 0 for the node itself
};

// Calls `visit` with each ParameterPlace of a node, in the order of the document but for FX-map
// graphs, which come last.
template <class Visit>
void visitParameterPlaces(const Data::Content::CompNode& node, const Visit& visit)
{
    using Owner = ParameterPlace::Owner;
    const Orv::Data::BaseObject* const implementation = node.compImplementation().get();
    switch (kindOf(node)) {
    case NodeKind::Filter: {
        const auto& filter = static_cast<const Data::Content::CompFilter&>(*implementation);
        visit(ParameterPlace{filter.parameters(), Owner::Node, 0});
        for (const Data::Content::ParamsArray& array : filter.paramsArrays())
            for (const Data::Content::ParamsArrayCell& cell : array.paramsArrayCells())
                visit(ParameterPlace{cell.parameters(), Owner::Cell, cell.uid().get()});
        for (const Data::Content::ParamsGraph& graph : filter.paramsGraphs())
            for (const Data::Content::ParamsGraphData& data : graph.paramsGraphDatas())
                visit(ParameterPlace{data.parameters(), Owner::GraphData, data.uid().get()});
        break;
    }
    case NodeKind::Instance: {
        const auto& instance = static_cast<const Data::Content::CompInstance&>(*implementation);
        visit(ParameterPlace{instance.parameters(), Owner::Node, 0});
        break;
    }
    case NodeKind::InputBridge: {
        const auto& bridge = static_cast<const Data::Content::CompInputBridge&>(*implementation);
        visit(ParameterPlace{bridge.parameters(), Owner::Node, 0});
        break;
    }
    case NodeKind::None:
    case NodeKind::OutputBridge:
    case NodeKind::External:
    case NodeKind::ExternalLink:
        break;
    }
}

// Returns the function graph that computes a value. Returns null for a constant.
const Data::Content::DynamicValue* computedValueOf(const Data::Content::ParamValue& value);

// Returns the parameter by which a filter of that name refers to a resource. Returns an empty text
// for a filter without one.
const char* resourceParameterOf(const std::string& filter);

} // namespace Ksx::Core
