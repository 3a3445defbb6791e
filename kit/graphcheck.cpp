#include "graphcheck.h"

#include "cycle.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/filtertable.h"
#include "data/desc/functiontable.h"
#include "findinglist.h"
#include "inputcheck.h"
#include "packageparts.h"
#include "uniquenames.h"
#include <set>
#include <unordered_map>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Data::Desc::DescriptionTables;

template <class Items>
std::set<unsigned> uidsOf(const Items& items)
{
    std::set<unsigned> uids;
    for (const auto& item : items)
        uids.insert(item.uid().get());
    return uids;
}

// The place of a list of nodes, and the word for its owner in a sentence.
struct NodeWords
{
    QString place;
    QString owner;
};

// Adds connections to nodes that are not there, and the cycles of the others. `Node` has a uid and
// connections.
template <class Nodes>
void checkConnections(const Nodes& nodes, const NodeWords& words, FindingList& findings)
{
    std::unordered_map<unsigned, std::size_t> numbers;
    for (const auto& node : nodes)
        numbers.emplace(node.uid().get(), numbers.size());
    Edges edges(numbers.size());
    std::vector<unsigned> uids(numbers.size());
    for (const auto& node : nodes) {
        const std::size_t number = numbers.at(node.uid().get());
        uids[number] = node.uid().get();
        for (const Doc::Connexion& connexion : node.connexions()) {
            if (!connexion.connRef().isModified())
                continue;
            const unsigned feeding = connexion.connRef().value().get();
            const auto found = numbers.find(feeding);
            if (found != numbers.end())
                edges[number].push_back(found->second);
            else
                findings.add(
                    FindingCode::DanglingUid, words.place,
                    QStringLiteral("Node %1 is fed at '%2' by node %3, which is not in the %4")
                        .arg(node.uid().get())
                        .arg(latinText(connexion.identifier().get()))
                        .arg(feeding)
                        .arg(words.owner));
        }
    }
    for (const std::size_t vertex : cyclesIn(edges))
        findings.add(
            FindingCode::NodeCycle, words.place,
            QStringLiteral("Node %1 feeds itself, by other nodes or at once").arg(uids[vertex]));
}

void checkBody(const Doc::DynamicValue& body, const NodeWords& words, FindingList& findings)
{
    checkUids(body.paramNodes(), words.place, "function nodes", findings);
    checkConnections(body.paramNodes(), words, findings);
    const unsigned root = body.rootnode().value().get();
    if (body.rootnode().isModified() && uidsOf(body.paramNodes()).count(root) == 0)
        findings.add(FindingCode::DanglingUid, words.place,
                     QStringLiteral("The result is that of node %1, which is not in the %2")
                         .arg(root)
                         .arg(words.owner));
    for (const Doc::ParamNode& node : body.paramNodes())
        if (DescriptionTables::instance().functions().find(node.function().get()) == nullptr)
            findings.add(FindingCode::UnknownFunction, words.place,
                         QStringLiteral("Node %1 is of a function '%2'")
                             .arg(node.uid().get())
                             .arg(latinText(node.function().get())));
}

template <class Parameters>
void checkParameters(const Parameters& parameters, const QString& place, FindingList& findings)
{
    for (const Doc::Parameter& parameter : parameters)
        if (const auto* body = dynamic_cast<const Doc::DynamicValue*>(parameter.paramValue().get()))
            checkBody(*body,
                      {place, QStringLiteral("function of the parameter '%1'")
                                  .arg(latinText(parameter.name().get()))},
                      findings);
}

void checkParamsGraph(const Doc::ParamsGraph& graph, const QString& place, FindingList& findings)
{
    const NodeWords words{place, QStringLiteral("parameter graph")};
    checkUids(graph.paramsGraphDatas(), place, "parameter sets", findings);
    checkUids(graph.paramsGraphNodes(), place, "nodes of the parameter graph", findings);
    checkConnections(graph.paramsGraphNodes(), words, findings);
    const std::set<unsigned> datas = uidsOf(graph.paramsGraphDatas());
    for (const Doc::ParamsGraphNode& node : graph.paramsGraphNodes())
        if (datas.count(node.data().get()) == 0)
            findings.add(FindingCode::DanglingUid, place,
                         QStringLiteral("Node %1 has the parameter set %2, which is not in the %3")
                             .arg(node.uid().get())
                             .arg(node.data().get())
                             .arg(words.owner));
    for (const Doc::ParamsGraphData& data : graph.paramsGraphDatas())
        checkParameters(data.parameters(), place, findings);
}

void checkFilter(const Doc::CompFilter& filter, const QString& place, FindingList& findings)
{
    const auto* const known = DescriptionTables::instance().filters().find(filter.filter().get());
    if (known == nullptr)
        findings.add(
            FindingCode::UnknownFilter, place,
            QStringLiteral("The node is of a filter '%1'").arg(latinText(filter.filter().get())));
    for (const Doc::Parameter& parameter : filter.parameters())
        if (known != nullptr && known->parameter(parameter.name().get()) == nullptr)
            findings.add(
                FindingCode::UnknownParameter, place,
                QStringLiteral("The filter '%1' has no parameter '%2'")
                    .arg(latinText(filter.filter().get()), latinText(parameter.name().get())));
    checkParameters(filter.parameters(), place, findings);
    for (const Doc::ParamsArray& array : filter.paramsArrays())
        for (const Doc::ParamsArrayCell& cell : array.paramsArrayCells())
            checkParameters(cell.parameters(), place, findings);
    for (const Doc::ParamsGraph& graph : filter.paramsGraphs())
        checkParamsGraph(graph, place, findings);
}

// Checks a graph and its nodes.
class GraphCheck
{
public:
    GraphCheck(const Doc::Graph& graph, const QString& place, FindingList& findings)
        : m_graph(graph), m_place(place), m_findings(findings)
    {}

    void run()
    {
        checkUids(m_graph.paraminputs(), m_place, "inputs", m_findings);
        checkIdentifiers(m_graph.paraminputs(), m_place, "inputs", m_findings);
        checkUids(m_graph.graphOutputs(), m_place, "outputs", m_findings);
        checkIdentifiers(m_graph.graphOutputs(), m_place, "outputs", m_findings);
        checkUids(m_graph.compNodes(), m_place, "nodes", m_findings);
        checkInputs(m_graph.paraminputs(), m_place, m_findings);
        if (m_graph.primaryInput().isModified())
            expect(m_inputs, m_graph.primaryInput().value().get(), m_place,
                   QStringLiteral("The primary input"));
        for (const Doc::RootOutput& output : m_graph.root().rootOutputs())
            expect(m_outputs, output.output().get(), m_place, QStringLiteral("A rendered output"));
        checkParameters(m_graph.baseParameters(), m_place, m_findings);
        checkConnections(m_graph.compNodes(), {m_place, QStringLiteral("graph")}, m_findings);
        for (const Doc::CompNode& node : m_graph.compNodes())
            m_outputsOfNodes.emplace(node.uid().get(), &node);
        for (const Doc::CompNode& node : m_graph.compNodes())
            checkNode(node);
    }

private:
    void expect(const std::set<unsigned>& uids, unsigned uid, const QString& place,
                const QString& words)
    {
        if (uids.count(uid) == 0)
            m_findings.add(
                FindingCode::DanglingUid, place,
                QStringLiteral("%1 has the uid %2, which nothing has").arg(words).arg(uid));
    }

    void checkNode(const Doc::CompNode& node)
    {
        const QString place = placeOfNode(m_place, node.uid().get());
        const std::set<unsigned> outputs = uidsOf(node.compOutputs());
        checkUids(node.compOutputs(), place, "outputs of the node", m_findings);
        checkIdentifiers(node.connexions(), place, "connections", m_findings);
        for (const Doc::Connexion& connexion : node.connexions())
            checkFeedingOutput(connexion, place);
        const auto* const implementation = node.compImplementation().get();
        if (const auto* filter = dynamic_cast<const Doc::CompFilter*>(implementation)) {
            checkFilter(*filter, place, m_findings);
        } else if (const auto* instance = dynamic_cast<const Doc::CompInstance*>(implementation)) {
            for (const Doc::OutputBridging& bridging : instance->outputBridgings())
                expect(outputs, bridging.uid().get(), place, QStringLiteral("A bridged output"));
            checkParameters(instance->parameters(), place, m_findings);
        } else if (const auto* input = dynamic_cast<const Doc::CompInputBridge*>(implementation)) {
            expect(m_inputs, input->entry().get(), place, QStringLiteral("The input of the node"));
        } else if (const auto* output =
                       dynamic_cast<const Doc::CompOutputBridge*>(implementation)) {
            expect(m_outputs, output->output().get(), place,
                   QStringLiteral("The output of the node"));
        }
    }

    // A connection may leave the output open. The node that feeds it is checked elsewhere.
    void checkFeedingOutput(const Doc::Connexion& connexion, const QString& place)
    {
        const auto feeding = m_outputsOfNodes.find(connexion.connRef().value().get());
        if (feeding == m_outputsOfNodes.end() || !connexion.connRefOutput().isModified())
            return;
        const unsigned wanted = connexion.connRefOutput().value().get();
        for (const Doc::CompOutput& output : feeding->second->compOutputs())
            if (output.uid().get() == wanted)
                return;
        m_findings.add(FindingCode::DanglingUid, place,
                       QStringLiteral("The node is fed at '%1' by output %2, which node %3 has not")
                           .arg(latinText(connexion.identifier().get()))
                           .arg(wanted)
                           .arg(feeding->first));
    }

    const Doc::Graph& m_graph;
    const QString& m_place;
    FindingList& m_findings;
    const std::set<unsigned> m_inputs = uidsOf(m_graph.paraminputs());
    const std::set<unsigned> m_outputs = uidsOf(m_graph.graphOutputs());
    std::unordered_map<unsigned, const Doc::CompNode*>
        m_outputsOfNodes; // by uid, the first of each
};

} // namespace

void checkGraph(const Doc::Graph& graph, const QString& place, FindingList& findings)
{
    GraphCheck(graph, place, findings).run();
}

void checkFunction(const Doc::Function& function, const QString& place, FindingList& findings)
{
    checkUids(function.paraminputs(), place, "inputs", findings);
    checkIdentifiers(function.paraminputs(), place, "inputs", findings);
    checkInputs(function.paraminputs(), place, findings);
    if (const auto* body = dynamic_cast<const Doc::DynamicValue*>(function.paramValue().get()))
        checkBody(*body, {place, QStringLiteral("function")}, findings);
}

} // namespace Ksx::Kit
