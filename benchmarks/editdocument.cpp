#include "editdocument.h"

#include "data/content/compfilter.h"
#include "data/content/compinstance.h"
#include "data/content/compnode.h"
#include "data/content/compoutputbridge.h"
#include "data/content/dependency.h"
#include "data/content/dynamicvalue.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/content/parameter.h"
#include "data/content/paramnode.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/datanotifier.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/packageslistmanager.h"

namespace Benchmarks {

namespace {

using namespace Ksx::Data::Content;
using Ksx::Core::PackagesListManager;
using Orv::Data::BaseObject;

constexpr unsigned Himself = 100; // the dependency of the package on itself

void addOutput(CompNode& node, unsigned uid)
{
    auto output = std::make_unique<CompOutput>();
    output->uid().assign(uid);
    output->comptype().value().assign(1u);
    node.compOutputs().pushBack(std::move(output));
}

// A node with one output of its own uid.
std::unique_ptr<CompNode> makeNode(unsigned uid, std::unique_ptr<BaseObject> implementation)
{
    auto node = std::make_unique<CompNode>();
    node->uid().assign(uid);
    addOutput(*node, uid);
    node->compImplementation().set(std::move(implementation));
    return node;
}

std::unique_ptr<Connexion> makeConnexion(const char* input, unsigned source)
{
    auto connexion = std::make_unique<Connexion>();
    connexion->identifier().assign(input);
    connexion->connRef().value().assign(source);
    return connexion;
}

void feed(CompNode& node, const char* input, unsigned source, unsigned output)
{
    auto connexion = makeConnexion(input, source);
    connexion->connRefOutput().value().assign(output);
    node.connexions().pushBack(std::move(connexion));
}

std::unique_ptr<ParamNode> makeFunctionNode(unsigned uid, const char* function, unsigned type,
                                            std::unique_ptr<BaseObject> constant)
{
    auto node = std::make_unique<ParamNode>();
    node->uid().assign(uid);
    node->function().assign(function);
    node->type().value().assign(type);
    if (constant != nullptr) {
        auto data = std::make_unique<FuncData>();
        data->name().assign("datacontent");
        data->constantValue().set(std::move(constant));
        node->funcDatas().pushBack(std::move(data));
    }
    return node;
}

std::unique_ptr<CompFilter> makeBlur(std::unique_ptr<BaseObject> intensity = nullptr)
{
    auto filter = std::make_unique<CompFilter>();
    filter->filter().assign("blur");
    if (intensity != nullptr) {
        auto parameter = std::make_unique<Parameter>();
        parameter->name().assign("intensity");
        parameter->paramValue().set(std::move(intensity));
        filter->parameters().pushBack(std::move(parameter));
    }
    return filter;
}

std::unique_ptr<CompInstance> makeInstance(const std::string& identifier)
{
    auto instance = std::make_unique<CompInstance>();
    instance->path().value().assign("pkg://" + identifier +
                                    "?dependency=" + std::to_string(Himself));
    return instance;
}

void addBridging(CompInstance& instance, unsigned uid, const std::string& identifier)
{
    auto bridging = std::make_unique<OutputBridging>();
    bridging->uid().assign(uid);
    bridging->identifier().assign(identifier);
    instance.outputBridgings().pushBack(std::move(bridging));
}

std::unique_ptr<DynamicValue> makeReader(const std::string& input)
{
    auto name = std::make_unique<ConstantValueString>();
    name->value().assign(input);
    auto value = std::make_unique<DynamicValue>();
    value->rootnode().value().assign(1u);
    value->paramNodes().pushBack(makeFunctionNode(1, "get_float1", 256, std::move(name)));
    return value;
}

} // namespace

EditDocument::EditDocument() : m_draft(PackagesListManager::newPackage(QStringLiteral("p")))
{
    auto dependency = std::make_unique<Dependency>();
    dependency->filename().assign("?himself");
    dependency->uid().assign(Himself);
    dependency->type().assign("package");
    m_draft->dependencies().pushBack(std::move(dependency));
}

EditDocument::~EditDocument() = default;

Graph& EditDocument::addGraph(const std::string& identifier)
{
    auto graph = std::make_unique<Graph>();
    Graph& added = *graph;
    added.identifier().assign(identifier);
    m_draft->content().pushBack(std::move(graph));
    added.uid().assign(static_cast<unsigned>(m_draft->content().size()));
    return added;
}

void EditDocument::open()
{
    auto& packages = *m_services.packagesListManager();
    PackagesListManager::DependencyEntry entry;
    entry.uid = static_cast<int>(Himself);
    entry.filename = QStringLiteral("/there/p.obl");
    entry.package = packages.keep(std::move(m_draft));
    m_package = entry.package;
    packages.finishLoading({entry});
    m_services.behaviors()->visitOpened();
    m_controller = std::make_unique<Ksx::Core::PackageController>(*m_package);
}

GraphBox EditDocument::graphBox(std::size_t index) const
{
    return GraphBox(&dynamic_cast<const Graph&>(m_package->content().at(index)));
}

Ksx::Core::CompGraphController& EditDocument::graph(std::size_t index) const
{
    return *Ksx::Core::graphController(graphBox(index));
}

void addInputs(Graph& graph, unsigned count)
{
    for (unsigned i = 1; i <= count; ++i) {
        auto input = std::make_unique<ParamInput>();
        input->identifier().assign("x" + std::to_string(i));
        input->uid().assign(i);
        input->type().value().assign(256u);
        graph.paraminputs().pushBack(std::move(input));
    }
}

void addOutputs(Graph& graph, unsigned count)
{
    for (unsigned i = 1; i <= count; ++i) {
        auto output = std::make_unique<GraphOutput>();
        output->identifier().assign("o" + std::to_string(i));
        output->uid().assign(i);
        graph.graphOutputs().pushBack(std::move(output));
        auto root = std::make_unique<RootOutput>();
        root->output().assign(i);
        graph.root().rootOutputs().pushBack(std::move(root));
        auto bridge = std::make_unique<CompOutputBridge>();
        bridge->output().assign(i);
        bridge->connectionColorType().assign(1u);
        auto node = std::make_unique<CompNode>();
        node->uid().assign(count + i);
        node->compImplementation().set(std::move(bridge));
        graph.compNodes().pushBack(std::move(node));
    }
}

void addNodes(Graph& graph, unsigned count)
{
    for (unsigned i = 1; i <= count; ++i) {
        auto node = makeNode(i, makeBlur());
        if (i < count)
            feed(*node, "input1", i + 1, i + 1);
        graph.compNodes().pushBack(std::move(node));
    }
}

void addReaders(Graph& graph, unsigned count, unsigned inputs)
{
    for (unsigned i = 0; i < count; ++i)
        graph.compNodes().pushBack(
            makeNode(i + 1, makeBlur(makeReader("x" + std::to_string(i % inputs + 1)))));
}

void addFedNodes(Graph& graph, unsigned count)
{
    for (unsigned i = 1; i <= count; ++i) {
        auto node = makeNode(i, makeBlur());
        if (i > 1)
            feed(*node, "input1", 1, 1);
        graph.compNodes().pushBack(std::move(node));
    }
}

void addInstances(Graph& graph, unsigned count, const std::string& identifier)
{
    for (unsigned i = 1; i <= count; ++i) {
        auto instance = makeInstance(identifier);
        addBridging(*instance, i, "o1");
        graph.compNodes().pushBack(makeNode(i, std::move(instance)));
    }
}

void addFeedingInstance(Graph& graph, const std::string& identifier, unsigned outputs)
{
    auto instance = makeInstance(identifier);
    for (unsigned i = 1; i <= outputs; ++i)
        addBridging(*instance, i, "o" + std::to_string(i));
    auto node = makeNode(1, std::move(instance));
    for (unsigned i = 2; i <= outputs; ++i)
        addOutput(*node, i);
    graph.compNodes().pushBack(std::move(node));
    for (unsigned i = 1; i <= outputs; ++i) {
        auto fed = makeNode(outputs + i, makeBlur());
        feed(*fed, "input1", 1, i);
        graph.compNodes().pushBack(std::move(fed));
    }
}

void addFunction(Graph& graph, unsigned count, bool isFed)
{
    auto value = std::make_unique<DynamicValue>();
    auto sequence = makeFunctionNode(1, "sequence", 256, nullptr);
    for (unsigned i = 2; isFed && i <= count + 1; ++i)
        sequence->connexions().pushBack(makeConnexion("seqin", i));
    value->paramNodes().pushBack(std::move(sequence));
    for (unsigned i = 2; i <= count + 1; ++i)
        value->paramNodes().pushBack(
            makeFunctionNode(i, "const_float1", 256, std::make_unique<ConstantValueFloat1>()));
    graph.compNodes().pushBack(makeNode(1, makeBlur(std::move(value))));
}

} // namespace Benchmarks
