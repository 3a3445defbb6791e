#include "ksx/core/inputusers.h"

#include "data/content/compfilter.h"
#include "data/content/compinputbridge.h"
#include "data/content/compinstance.h"
#include "data/content/compnode.h"
#include "data/content/dynamicvalue.h"
#include "data/content/graph.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/functiontable.h"
#include "data/desc/valuetype.h"
#include "ksx/core/funcdatamodifier.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"

namespace Ksx::Core {

namespace {

using namespace Data::Content;

class UserCollector
{
public:
    explicit UserCollector(const std::string& identifier) : m_identifier(identifier) {}

    void visit(const Graph& graph)
    {
        visitAll(graph.baseParameters());
        for (const CompNode& node : graph.compNodes())
            visit(node);
    }
    std::vector<FuncNodeController*> take() { return std::move(m_users); }

private:
    void visit(const CompNode& node)
    {
        const Orv::Data::BaseObject* implementation = node.compImplementation().get();
        if (const auto* filter = dynamic_cast<const CompFilter*>(implementation))
            visit(*filter);
        else if (const auto* instance = dynamic_cast<const CompInstance*>(implementation))
            visitAll(instance->parameters());
        else if (const auto* bridge = dynamic_cast<const CompInputBridge*>(implementation))
            visitAll(bridge->parameters());
    }

    void visit(const CompFilter& filter)
    {
        visitAll(filter.parameters());
        for (const ParamsArray& array : filter.paramsArrays())
            for (const ParamsArrayCell& cell : array.paramsArrayCells())
                visitAll(cell.parameters());
        for (const ParamsGraph& graph : filter.paramsGraphs())
            for (const ParamsGraphData& data : graph.paramsGraphDatas())
                visitAll(data.parameters());
    }

    template <class List>
    void visitAll(const List& parameters)
    {
        for (const Parameter& parameter : parameters)
            if (const auto* value = dynamic_cast<const DynamicValue*>(parameter.paramValue().get()))
                visit(*value);
    }

    void visit(const DynamicValue& value)
    {
        const FuncGraphController* graph = nullptr;
        std::size_t index = 0;
        for (const ParamNode& node : value.paramNodes()) {
            if (isUser(node)) {
                if (graph == nullptr)
                    graph = graphController(Orv::Data::DataPointerBox<DynamicValue>(&value));
                m_users.push_back(graph->nodeAt(index));
            }
            ++index;
        }
    }

    bool isUser(const ParamNode& node) const
    {
        const auto* function = m_functions.find(node.function().get());
        if (function == nullptr || !Data::Desc::isTypedGetter(function->kind))
            return false;
        const FuncData* data = functionDataIn(node.funcDatas());
        const auto* name =
            data == nullptr ? nullptr
                            : dynamic_cast<const ConstantValueString*>(data->constantValue().get());
        return name != nullptr && name->value().get() == m_identifier;
    }

    const std::string& m_identifier;
    const Data::Desc::FunctionTable& m_functions =
        Data::Desc::DescriptionTables::instance().functions();
    std::vector<FuncNodeController*> m_users;
};

void replaceByConstant(FuncNodeController& getter, const boost::any& value)
{
    FuncGraphController& graph = getter.funcGraph();
    FuncNodeController* constant =
        graph.addAtomicFunction(Data::Desc::constantOfGetter(getter.functionType()));
    if (constant == nullptr)
        return;
    constant->setData(value);
    constant->setPosition(getter.position());
    graph.replaceSource(getter, *constant);
    if (getter.isOutputNode())
        graph.setOutputNode(*constant);
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
