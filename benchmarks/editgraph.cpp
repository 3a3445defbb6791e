// Times edits of one large graph inside the library: "editgraph build|connect|freeze|lookup COUNT".
// Prints the cpu seconds of the part in question and the resident memory that it took.
#include "core/commandmanager.h"
#include "data/content/compfilter.h"
#include "data/content/compnode.h"
#include "data/content/dynamicvalue.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/content/parameter.h"
#include "data/content/paramnode.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/ilibraryservices.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/packageslistmanager.h"
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace {

using namespace Ksx::Core;
using namespace Ksx::Data::Content;
using GraphBox = Orv::Data::DataPointerBox<Graph>;

class Services final : public Orv::Core::ILibraryServices, public Ksx::Core::ILibraryServices
{
public:
    Services() { Orv::setLibraryServices(static_cast<Orv::Core::ILibraryServices*>(this)); }
    ~Services() override { Orv::setLibraryServices(nullptr); }

    void* reserved0() override { return nullptr; }
    const std::shared_ptr<Orv::Core::CommandManager>* commandManagerHandle() override
    {
        return &m_manager;
    }
    const std::shared_ptr<Orv::Core::CommandManager>& commandManager() override
    {
        return m_manager;
    }
    const std::shared_ptr<void>& spareHandle() override { return m_spare; }
    void* reserved4() override { return nullptr; }
    DataNotifier* behaviors() override { return nullptr; }
    PackagesListManager* packagesListManager() override { return &m_packages; }
    void* reserved2() override { return nullptr; }
    Extensions& extensions() override { return m_extensions; }

private:
    std::shared_ptr<Orv::Core::CommandManager> m_manager =
        std::make_shared<Orv::Core::CommandManager>(2);
    std::shared_ptr<void> m_spare;
    PackagesListManager m_packages;
    Extensions m_extensions;
};

// A node of the graph, fed by the one behind it: all connections point forwards.
std::unique_ptr<CompNode> makeNode(unsigned number, bool isFed)
{
    auto node = std::make_unique<CompNode>();
    node->uid().assign(number);
    auto output = std::make_unique<CompOutput>();
    output->uid().assign(number);
    output->comptype().value().assign(1u);
    node->compOutputs().pushBack(std::move(output));
    auto filter = std::make_unique<CompFilter>();
    filter->filter().assign("blur");
    node->compImplementation().set(std::move(filter));
    if (!isFed)
        return node;
    auto connexion = std::make_unique<Connexion>();
    connexion->identifier().assign("input1");
    connexion->connRef().value().assign(number + 1);
    connexion->connRefOutput().value().assign(number + 1);
    node->connexions().pushBack(std::move(connexion));
    return node;
}

// Gives the node's filter a parameter that is read from the input "x".
void readInput(CompNode& node)
{
    auto getter = std::make_unique<ParamNode>();
    getter->uid().assign(1u);
    getter->function().assign("get_float1");
    getter->type().value().assign(256u);
    auto data = std::make_unique<FuncData>();
    data->name().assign("datacontent");
    auto name = std::make_unique<ConstantValueString>();
    name->value().assign("x");
    data->constantValue().set(std::move(name));
    getter->funcDatas().pushBack(std::move(data));
    auto value = std::make_unique<DynamicValue>();
    value->rootnode().value().assign(1u);
    value->paramNodes().pushBack(std::move(getter));
    auto parameter = std::make_unique<Parameter>();
    parameter->name().assign("intensity");
    parameter->paramValue().set(std::move(value));
    static_cast<CompFilter&>(*node.compImplementation().get())
        .parameters()
        .pushBack(std::move(parameter));
}

GraphBox openGraph(PackagesListManager& packages, unsigned count, bool readsInput)
{
    auto graph = std::make_unique<Graph>();
    auto input = std::make_unique<ParamInput>();
    input->identifier().assign("x");
    input->uid().assign(1u);
    input->type().value().assign(256u);
    graph->paraminputs().pushBack(std::move(input));
    for (unsigned i = 1; i <= count; ++i) {
        auto node = makeNode(i, i < count);
        if (readsInput)
            readInput(*node);
        graph->compNodes().pushBack(std::move(node));
    }
    auto package = PackagesListManager::newPackage(QStringLiteral("p"));
    const GraphBox box(graph.get());
    package->content().pushBack(std::move(graph));
    PackagesListManager::DependencyEntry entry;
    entry.package = packages.keep(std::move(package));
    packages.finishLoading({entry});
    return box;
}

using Edit = std::function<bool(const GraphBox&, unsigned count)>;

bool build(const GraphBox& graph, unsigned count)
{
    const NodeController* first = graphController(graph)->nodeByUid(1);
    return first != nullptr && (count == 1 || first->inputConnector(0)->targets().size() == 1);
}

bool lookUp(const GraphBox& graph, unsigned count)
{
    const CompGraphController& controller = *graphController(graph);
    bool isFound = true;
    for (unsigned i = 1; i <= count; ++i)
        isFound = isFound && controller.nodeByUid(i) != nullptr &&
                  controller.inputsController()->inputByIdentifier("x") != nullptr;
    return isFound;
}

// Connects the last node's output to every other node: an edit for each.
bool connect(const GraphBox& graph, unsigned count)
{
    CompGraphController& controller = *graphController(graph);
    OutputConnectorController& source = *controller.nodeByUid(count)->outputConnector(0);
    bool isDone = true;
    for (unsigned i = 1; i < count; ++i)
        isDone =
            controller.connect(source, *controller.nodeByUid(i)->inputConnector(0), true) && isDone;
    return isDone;
}

bool freeze(const GraphBox& graph, unsigned)
{
    InputsController& inputs = *graphController(graph)->inputsController();
    return switchToConstant(inputs, *inputs.inputByIdentifier("x"), Orv::Data::Float1{{0.5F}});
}

} // namespace

int main(int argc, char** argv)
{
    const std::map<std::string, Edit> edits{
        {"build", &build}, {"lookup", &lookUp}, {"connect", &connect}, {"freeze", &freeze}};
    const auto edit = argc == 3 ? edits.find(argv[1]) : edits.end();
    const auto count = argc == 3 ? static_cast<unsigned>(std::atoi(argv[2])) : 0u;
    if (edit == edits.end() || count == 0) {
        std::fprintf(stderr, "Usage: editgraph build|lookup|connect|freeze COUNT\n");
        return 1;
    }
    static Services services; // taking the document apart is no part of it
    const GraphBox graph =
        openGraph(*services.packagesListManager(), count, edit->first == "freeze");
    const std::clock_t begin = std::clock();
    const bool isDone = edit->second(graph, count);
    std::printf("%.4f\n", static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    std::fflush(stdout);
    std::_Exit(isDone ? 0 : 1);
}
