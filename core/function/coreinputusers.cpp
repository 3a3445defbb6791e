#include "ksx/core/inputusers.h"

#include "content/nodekind.h"
#include "data/content/graph.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/functiontable.h"
#include "data/desc/valuetype.h"
#include "editing/itemindex.h"
#include "function/funcdatamodifier.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Ksx::Core {

namespace {

using namespace Data::Content;

// The name of the input that a function node reads; null if it reads none.
const std::string* inputReadBy(const ParamNode& node)
{
    const Data::Desc::FunctionTable& functions =
        Data::Desc::DescriptionTables::instance().functions();
    const auto* function = functions.find(node.function().get());
    if (function == nullptr || !Data::Desc::isTypedGetter(function->kind))
        return nullptr;
    const FuncData* data = functionDataIn(node.funcDatas());
    const auto* name = data == nullptr
                           ? nullptr
                           : dynamic_cast<const ConstantValueString*>(data->constantValue().get());
    return name == nullptr ? nullptr : &name->value().get();
}

// Calls `visit` for the computed values among parameters, in order.
template <class List, class Visit>
void visitValues(const List& parameters, const Visit& visit)
{
    for (const Parameter& parameter : parameters)
        if (const DynamicValue* const value = computedValueOf(parameter.paramValue()))
            visit(*value);
}

template <class Visit>
void visitValuesOf(const CompNode& node, const Visit& visit)
{
    visitParameterPlaces(
        node, [&](const ParameterPlace& place) { visitValues(place.parameters, visit); });
}

// Which nodes of a graph have functions that read an input. A node has thousands of functions, and
// each of a row of edits may change one of them: changed nodes are read when somebody asks.
class ReaderIndex final : public ItemIndex<ReaderIndex, CompNode, std::set<std::string>>
{
public:
    explicit ReaderIndex(const List& list) { refill(list); }

    void deliver(const Orv::Data::DataMessage& message) override
    {
        for (const Orv::Data::TouchedChild& touched : message.touched)
            m_touched.insert_or_assign(touched.address, touched);
        const auto* list = static_cast<const List*>(message.object.get());
        if (list != nullptr && m_touched.size() > list->size()) // some have died
            catchUp(*list);
    }

    // Returns them in the order of the list.
    std::vector<const CompNode*> readersOf(const std::string& input, const List& list)
    {
        catchUp(list);
        const auto found = m_readers.find(input);
        if (found == m_readers.end())
            return {};
        const std::unordered_set<const CompNode*>& readers = found->second;
        std::vector<std::pair<std::size_t, const CompNode*>> places;
        places.reserve(readers.size());
        for (const CompNode* node : readers)
            places.emplace_back(readers.size() == 1 ? 0 : list.indexOf(*node), node);
        std::sort(places.begin(), places.end());
        std::vector<const CompNode*> ordered;
        ordered.reserve(places.size());
        for (const auto& [place, node] : places)
            ordered.push_back(node);
        return ordered;
    }

    static std::set<std::string> read(const CompNode& node)
    {
        std::set<std::string> inputs;
        visitValuesOf(node, [&inputs](const DynamicValue& value) {
            for (const ParamNode& function : value.paramNodes())
                if (const std::string* input = inputReadBy(function))
                    inputs.insert(*input);
        });
        return inputs;
    }
    void enter(const CompNode& node, const std::set<std::string>& inputs)
    {
        for (const std::string& input : inputs)
            m_readers[input].insert(&node);
    }
    void leave(const CompNode* node, const std::set<std::string>& inputs)
    {
        for (const std::string& input : inputs) {
            const auto found = m_readers.find(input);
            found->second.erase(node);
            if (found->second.empty())
                m_readers.erase(found);
        }
    }

private:
    // Reads the nodes that have changed.
    void catchUp(const List& list)
    {
        for (const auto& [address, touched] : std::exchange(m_touched, {}))
            follow(touched, list);
        settle(list);
    }

    std::unordered_map<std::string, std::unordered_set<const CompNode*>> m_readers;
    // The last change of each node since the index was asked.
    std::unordered_map<const Orv::Data::BaseObject*, Orv::Data::TouchedChild> m_touched;
};

class UserCollector
{
public:
    explicit UserCollector(const std::string& identifier) : m_identifier(identifier) {}

    void visit(const Graph& graph)
    {
        const auto visitValue = [this](const DynamicValue& value) { visit(value); };
        visitValues(graph.baseParameters(), visitValue);
        if (ReaderIndex* index = ReaderIndex::of(graph.compNodes())) {
            for (const CompNode* node : index->readersOf(m_identifier, graph.compNodes()))
                visitValuesOf(*node, visitValue);
            return;
        }
        for (const CompNode& node : graph.compNodes())
            visitValuesOf(node, visitValue);
    }
    std::vector<FuncNodeController*> take() { return std::move(m_users); }

private:
    void visit(const DynamicValue& value)
    {
        const FuncGraphController* graph = nullptr;
        std::size_t index = 0;
        for (const ParamNode& node : value.paramNodes()) {
            const std::string* const read = inputReadBy(node);
            if (read != nullptr && *read == m_identifier) {
                if (graph == nullptr)
                    graph = graphController(Orv::Data::DataPointerBox<DynamicValue>(&value));
                m_users.push_back(graph->nodeAt(index));
            }
            ++index;
        }
    }

    const std::string& m_identifier;
    std::vector<FuncNodeController*> m_users;
};

void replaceByConstant(FuncNodeController& getter, const boost::any& value)
{
    FuncGraphController& graph = getter.funcGraph();
    FuncNodeController* constant =
        graph.addAtomicFunction(Data::Desc::constantOfGetter(getter.functionType()));
    // Who hears of one command may take away what the next one needs.
    const Orv::Data::DataPointerBox<FuncNodeController> read(&getter), written(constant);
    const auto areThere = [&] { return read && written; };
    if (areThere())
        constant->setData(value);
    if (areThere())
        constant->setPosition(getter.position());
    if (areThere())
        graph.replaceSource(getter, *constant);
    if (areThere() && getter.isOutputNode())
        graph.setOutputNode(*constant);
    if (areThere())
        graph.removeNode(getter, true);
}

} // namespace

std::vector<FuncNodeController*> collectInputUsers(const Graph& graph,
                                                   const std::string& identifier)
{
    UserCollector collector(identifier);
    collector.visit(graph);
    return collector.take();
}

// Here and not beside the class: the room of graphs knows no function nodes.
std::vector<FuncNodeController*>
CompGraphController::collectInputUsers(const InputController& input) const
{
    const bool isOwn = m_graph && input.input() != nullptr &&
                       input.input()->getParent() == &m_graph->paraminputs();
    return isOwn ? Core::collectInputUsers(*m_graph, input.identifier())
                 : std::vector<FuncNodeController*>();
}

bool switchToConstant(InputsController& inputs, InputController& input, const boost::any& constant)
{
    if (inputs.graph() == nullptr || input.input() == nullptr ||
        Data::Desc::ValueType::isImage(input.type()))
        return false;
    const std::string identifier = input.identifier();
    // Boxes: with the input may go what an instance of the graph sets it to, even in the graph.
    std::vector<Orv::Data::DataPointerBox<FuncNodeController>> users;
    for (const FuncNodeController* user : collectInputUsers(*inputs.graph(), identifier))
        users.emplace_back(user);
    if (!inputs.removeInput(input))
        return false;
    for (const auto& user : users)
        if (user)
            replaceByConstant(*user.access(), constant);
    return true;
}

} // namespace Ksx::Core
