// Which type of image the outputs of a graph have.
#pragma once

#include "data/datapointerbox.h"
#include "data/densemap.h"
#include "ksx/core/uidsource.h"
#include <functional>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

namespace Orv::Data {
struct DataMessage;
struct TouchedChild;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class CompNode;
class Graph;
class GraphOutput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The type of an output of a graph, as an instance of the graph stores it: the connection type that
// the output's node names, else the type of what feeds that node, else a color image. One that is
// either color or grayscale is a color image. Takes a walk over the nodes of the graph.
unsigned typeOfGraphOutput(const Data::Content::Graph& graph,
                           const Data::Content::GraphOutput& output);

// The types of all outputs, in the order of `graphOutputs`. Walks over the nodes once for them all.
std::vector<unsigned> typesOfGraphOutputs(const Data::Content::Graph& graph);

// The same types, kept in step with the nodes of a graph that say so: the output nodes, and what
// feeds those that name no type. They stay until one of these nodes changes or goes, or another
// node comes that belongs to an output or has the uid of one that is missing.
class GraphOutputTypes
{
public:
    // Called with a node when it begins to count, and when it no longer does.
    using Watch = std::function<void(const Data::Content::CompNode&, bool counts)>;

    // Takes a walk over the nodes. The graph outlives this, or nothing is called any more.
    GraphOutputTypes(const Data::Content::Graph& graph, Watch watch);
    GraphOutputTypes(const GraphOutputTypes&) = delete;
    GraphOutputTypes& operator=(const GraphOutputTypes&) = delete;
    ~GraphOutputTypes();

    unsigned typeOf(Uid uid) const;

    // Both return the uids of the outputs whose types may be others now. The first one follows the
    // message of the list of nodes, the second one a node that counts and has changed.
    std::vector<Uid> nodesChanged(const Orv::Data::DataMessage& message);
    std::vector<Uid> nodeChanged(const Data::Content::CompNode& node);

private:
    using Node = Data::Content::CompNode;
    struct Output
    {
        std::vector<const Node*>
            nodes;                 // that belong to it, in any order; the first in the list counts
        std::optional<Uid> source; // of the node that feeds it, where that says the type
    };
    struct Source
    {
        const Node* address = nullptr;        // null while it is missing
        Orv::Data::DataPointerBox<Node> node; // empty once it has died, too
        std::set<Uid> outputs;
    };
    using Affected = std::set<Uid>;

    const Node* nodeOf(const Output& output) const;
    void enter(const Node& node, Uid output);
    void leave(const Node* address, const Node* node);
    void updateSource(Uid uid);
    void linkSource(Uid output, Uid uid);
    void unlinkSource(Uid uid);
    void findSource(Uid uid, Source& source);
    void setSourceNode(Uid uid, Source& source, const Node* node);
    void follow(const Orv::Data::TouchedChild& touched, Affected& affected);
    bool counts(const Node* node) const;
    void changeCounting(const Node* node, bool didCount);

    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
    Watch m_watch;
    Orv::Data::DenseMap<const Node*, Uid> m_bridges;     // the outputs to which nodes belong
    Orv::Data::DenseMap<Uid, Output> m_outputs;          // also those that no list has
    std::unordered_map<Uid, Source> m_sources;           // by the uid of the node
    Orv::Data::DenseMap<const Node*, Uid> m_sourceNodes; // those that are there
};

} // namespace Ksx::Core
