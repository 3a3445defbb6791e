// The controller of a graph of images: its nodes, inputs, outputs, parameters and options.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/follow.h"
#include "ksx/core/graphcontroller.h"
#include "ksx/core/graphinterface.h"
#include <memory>
#include <string>
#include <vector>

namespace Ksx::Data::Content {
class CompNode;
class Graph;
class GraphOutput;
class RootOutput;
} // namespace Ksx::Data::Content

namespace Ksx::Data::Desc {
enum class FilterKind : unsigned;
} // namespace Ksx::Data::Desc

namespace Ksx::Core {

class CompFilterNodeController;
class CompInputNodeController;
class CompInstanceNodeController;
class CompNodeController;
class CompOutputNodeController;
class FuncNodeController;
class InputController;
class InputNodeWatch;
class InputsController;
class OptionsController;
class OutputController;
class ParametersController;
class RootOutputController;

// Shows and edits a Graph of a package. Use it to list and change the nodes, inputs and outputs.
// Get it from graphController(), which makes it at the first call in time that grows with the
// graph. See GraphController for its life, its thread and the life of all that it gives out.
//
// Controllers follow the lists of the graph. After an edit, an undo or a redo, each object has its
// controller again. The controllers of removed objects are gone. If the Graph dies while the
// controller is still there, queries return null or nothing and edits are refused.
//
// A node that blurs the image of an input and gives it to an output:
//
//     CompGraphController& graph = *graphController(box);
//     CompInputNodeController* input = graph.addInputNode({"source", ValueType::GrayscaleImage});
//     CompFilterNodeController* blur = graph.addAtomicFilter(FilterKind::Blur);
//     CompOutputNodeController* output = graph.addOutputNode({"result", ValueType::ColorImage});
//     if (input == nullptr || blur == nullptr || output == nullptr)
//         return false; // an edit was refused, or a subscriber removed the node
//     return graph.connect(*input->outputConnector(0), *blur->inputConnector(0), true) &&
//            graph.connect(*blur->outputConnector(0), *output->inputConnector(0), true);
class CompGraphController final : public GraphController
{
public:
    // The payload of the edit that adds an input node or an output node. The edit makes two
    // objects. One is the input or output of the graph, called the entry. The other is the node
    // that shows it.
    struct BridgeEntry
    {
        // The identifier that is wanted. It is brought into legal form and gets a number if it is
        // taken. An empty text gives the default.
        std::string identifier;
        // The type of the image: ValueType::ColorImage, GrayscaleImage or Image, which is either.
        unsigned type = 0;
        // The purposes that other programs read, "diffuse" for one.
        std::vector<InterfaceUsage> usages = {};

        // The place of the entry in `paraminputs` or `graphOutputs`. -1 or a place beyond the end
        // appends.
        int entryIndex = -1;
        // The place of the node in `compNodes`. -1 or a place beyond the end appends.
        int nodeIndex = -1;
    };

    // For graphController() alone. `graph` is part of a document.
    explicit CompGraphController(const Data::Content::Graph& graph);
    ~CompGraphController() override;

    // Returns the graph. Returns null once it has died.
    const Data::Content::Graph* graph() const;
    // Returns the identifier of the graph. Returns an empty text once the graph has died.
    QString identifier() const;

    // Appends a node that runs an atomic filter, with one output and a new uid. An FX-map also gets
    // the graph that it needs, with one set of parameters. This is one undoable command.
    //
    // Returns the controller of the node. Returns null if the edit was refused. A filter that can
    // give either kind of image starts with color.
    CompFilterNodeController* addAtomicFilter(Data::Desc::FilterKind filter);

    // Does the same for a number. A number that is no FilterKind gives a node without connectors
    // for inputs and without parameters.
    CompFilterNodeController* addAtomicFilter(unsigned filter);

    // Appends a node that shows another graph, with one output for each of its outputs. The graph
    // must be part of an open package. If `instantiated` is empty, `path` is the data path of the
    // graph. The node gets outputs then only if the path leads to a graph. This is one undoable
    // command.
    //
    // Returns the controller of the node. Returns null and changes nothing for a graph to which no
    // path can lead. Its identifier holds a "/" or "?" then, or an earlier object has the same
    // identifier.
    //
    // The package gets a dependency element for a graph of another package, by a behaviour.
    CompInstanceNodeController*
    addInstanceNode(const Orv::Data::DataPointerBox<Data::Content::Graph>& instantiated,
                    const std::string& path = {});

    // Adds an input of images to the graph and a node that shows it. This is one undoable command.
    // Returns the controller of the node. Returns null if the edit was refused.
    CompInputNodeController* addInputNode(const BridgeEntry& entry);

    // Adds an output to the graph, its root output behind all others, and a node that shows it.
    // This is one undoable command. Returns the controller of the node. Returns null if the edit
    // was refused.
    //
    // Connecting a source gives the node the type of the source.
    CompOutputNodeController* addOutputNode(const BridgeEntry& entry);

    // Does as GraphController::removeNode() says. With an input node, the input is removed from the
    // graph. With an output node, the output and its root output are removed. Functions that read a
    // removed input are left as they are.
    void removeNode(NodeController& node, bool disconnect) override;

    // Does as GraphController::connect() says. The nodes behind the input follow the type of the
    // new source, in the same edit.
    bool connect(ConnectorController& a, ConnectorController& b, bool replace) override;
    bool disconnect(ConnectorController& a, ConnectorController& b) override;
    std::vector<NodeController*> nodes() const override;

    // Returns the controller of a node. Returns null for a node of another graph, and for a node of
    // a kind that has no controllers. Found by the uid of the node, mostly in constant time.
    CompNodeController* nodeController(const Data::Content::CompNode& node) const;
    // Returns the controller of an output of the graph. Returns null for any other output.
    OutputController* outputController(const Data::Content::GraphOutput& output) const;

    // Returns the controller of the root output that belongs to the output of a uid. Returns null
    // if there is none.
    RootOutputController* rootOutput(Uid output) const;
    // Returns the controllers of all outputs, in the order of the document.
    std::vector<OutputController*> outputs() const;

    // Returns the controllers of all root outputs, in the order of the document. That may be
    // another order than the order of the outputs.
    std::vector<RootOutputController*> rootOutputs() const;

    // Returns the inputs of the graph. Never null. May be kept: it is empty once the graph has
    // died.
    const std::shared_ptr<InputsController>& inputsController() const { return m_inputs; }

    // Returns the parameters of the graph itself. Nodes can inherit from them, for one their output
    // size.
    ParametersController& parametersController() { return *m_parameters; }
    // Returns the options of the graph.
    OptionsController& optionsController() { return *m_options; }
    // For the controllers of input nodes. Makes the watch at the first call.
    InputNodeWatch& inputNodes();

    // Returns the function nodes in the graph that read an input, in the order of the document.
    // Returns nothing for an input of another graph. See Ksx::Core::collectInputUsers().
    std::vector<FuncNodeController*> collectInputUsers(const InputController& input) const;

    // Sent when an output has come into the graph, with its place in `graphOutputs`.
    LazySignal<OutputController*, std::size_t> outputAdded;

    // Sent when an output has left the document, before its controller dies. The index is the
    // former place.
    LazySignal<OutputController*, std::size_t> outputAboutToBeRemoved;
    // Sent when a root output has come into the graph, with its place in `rootOutputs`.
    LazySignal<RootOutputController*, std::size_t> rootOutputAdded;

    // Sent when a root output has left the document, before its controller dies. The index is the
    // former place.
    LazySignal<RootOutputController*, std::size_t> rootOutputAboutToBeRemoved;

private:
    struct Lists;

    void onPrimaryInput();
    std::unique_ptr<CompNodeController> makeNode(const Data::Content::CompNode& node);
    template <class Controller>
    Controller* nodeOf(Uid uid) const;

    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
    std::unique_ptr<ParametersController> m_parameters;
    std::shared_ptr<InputsController> m_inputs;
    std::unique_ptr<OptionsController> m_options;
    std::unique_ptr<InputNodeWatch> m_inputNodes; // null without input nodes
    std::unique_ptr<Lists> m_lists; // of the controllers of nodes, outputs and root outputs
    Follow<&CompGraphController::onPrimaryInput> m_primaryListener{*this};
};

} // namespace Ksx::Core
