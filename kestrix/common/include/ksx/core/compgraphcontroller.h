// A graph of images: its nodes, inputs, outputs and parameters.
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

// Got from graphController(). Controllers follow the lists of the graph: after an edit, or its
// undoing, those of new objects are there and those of removed ones are gone.
class CompGraphController final : public GraphController
{
public:
    // A new input or output node: what it is called in the graph, and where its entry and the node
    // stand in their lists.
    struct BridgeEntry
    {
        std::string identifier; // as wanted; empty for the default
        unsigned type = 0;      // an image type
        std::vector<InterfaceUsage> usages = {};
        int entryIndex = -1; // in `paraminputs` or `graphOutputs`; -1 for the end
        int nodeIndex = -1;  // in `compNodes`; -1 for the end
    };

    explicit CompGraphController(const Data::Content::Graph& graph);
    ~CompGraphController() override;

    // Null once it has died.
    const Data::Content::Graph* graph() const;
    QString identifier() const;

    // Each adds one node and answers its controller, null if that failed. A filter that is not
    // known gives a node without description and connectors.
    CompFilterNodeController* addAtomicFilter(Data::Desc::FilterKind filter);
    CompFilterNodeController* addAtomicFilter(unsigned filter);
    // A node that shows another graph, which must stand in an open package. Without a graph the
    // node gets the path, and has outputs if that leads to a graph. Refused for a graph to which no
    // path can lead, since its identifier holds a "/" or "?", or another one has it as well.
    CompInstanceNodeController*
    addInstanceNode(const Orv::Data::DataPointerBox<Data::Content::Graph>& instantiated,
                    const std::string& path = {});
    CompInputNodeController* addInputNode(const BridgeEntry& entry);
    // The type is that of the node's connection until something is connected.
    CompOutputNodeController* addOutputNode(const BridgeEntry& entry);

    // Also removes the input that an input node stands for, or the output and its root output.
    void removeNode(NodeController& node, bool disconnect) override;
    bool connect(ConnectorController& a, ConnectorController& b, bool replace) override;
    bool disconnect(ConnectorController& a, ConnectorController& b) override;
    std::vector<NodeController*> nodes() const override;

    // Null for a node of another graph or without controller. Through the node's uid.
    CompNodeController* nodeController(const Data::Content::CompNode& node) const;
    // Null if there is none.
    OutputController* outputController(const Data::Content::GraphOutput& output) const;
    RootOutputController* rootOutput(Uid output) const;
    std::vector<OutputController*> outputs() const;
    std::vector<RootOutputController*> rootOutputs() const;

    const std::shared_ptr<InputsController>& inputsController() const { return m_inputs; }
    ParametersController& parametersController() { return *m_parameters; }
    OptionsController& optionsController() { return *m_options; }
    // For the controllers of input nodes. Made at the first call.
    InputNodeWatch& inputNodes();
    // The function nodes in the graph that read an input, in the order in which a walk over the
    // graph's parameters meets them.
    std::vector<FuncNodeController*> collectInputUsers(const InputController& input) const;

    LazySignal<OutputController*, std::size_t> outputAdded;
    LazySignal<OutputController*, std::size_t> outputAboutToBeRemoved;
    LazySignal<RootOutputController*, std::size_t> rootOutputAdded;
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
