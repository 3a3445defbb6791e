// Random edits of random graphs: undone to the bytes of before, redone to the bytes of after, and
// with controllers that show at each step what newly built ones would show.
#include "content/constantvalue.h"
#include "core/manipulatorattribute.h"
#include "core/manipulatorlist.h"
#include "data/content/compinstance.h"
#include "data/content/compnode.h"
#include "data/content/dynamicvalue.h"
#include "data/content/parameter.h"
#include "data/content/paramnode.h"
#include "data/desc/filter.h"
#include "data/treewalk.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/parametercontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/rootoutputcontroller.h"
#include "ksx/core/tweakinputcontroller.h"
#include "ksx/core/uidsource.h"
#include "support/controllerview.h"
#include "support/workspace.h"
#include <random>
#include <set>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;

// With more connectors and parameters than the two that have names, if that is asked for, and with
// nodes, inputs and outputs that share uids and names with others.
PackageText aFilterAndAGraph(unsigned more, bool hasNamesakes)
{
    GraphText filter{"filter",
                     1,
                     anInput("picture", 11, 3) +
                         anInput("amount", 12, 256, aConstant("Float1", "0.5")) +
                         anInput("mode", 13, 16, aConstant("Int1", "1"), "More"),
                     anOutput("color", 21) + anOutput("gray", 22),
                     aNode(31, anOutputBridge(21, 1)) + aNode(32, anOutputBridge(22, 2)),
                     {},
                     aRootOutput(21) + aRootOutput(22)};
    for (unsigned i = 0; i < more; ++i) {
        filter.inputs += anInput("picture" + std::to_string(i), 1000 + i, 1);
        filter.inputs += anInput("amount" + std::to_string(i), 2000 + i, 256);
        filter.outputs += anOutput("output" + std::to_string(i), 3000 + i);
        filter.rootOutputs += aRootOutput(3000 + i);
    }
    const std::string getter =
        aDynamicValue(5, aGetter(5, "get_float1", 256, "f") + aGetter(6, "get_integer1", 16, "i"));
    GraphText edited{"edited",
                     2,
                     anInput("a", 41, 1) + anInput("f", 42, 256, aConstant("Float1", "0.25")) +
                         anInput("i", 43, 16, aConstant("Int1", "3")),
                     anOutput("o", 51),
                     aNode(61, anInputBridge(41), {}, 71, 1) +
                         aNode(62, aFilter("blur", aParameter("intensity", "0", getter)),
                               aConnexion("input1", 61, 71), 72, 1) +
                         aNode(63, aFilter("unheard_of"), aConnexion("x", 62, 72), 73, 1) +
                         aNode(64, anOutputBridge(51, 1), aConnexion("inputNodeOutput", 62, 72)) +
                         aNode(65, aFilter("blend"), aConnexion("source", 999, 1), 75, 1),
                     aParameter("randomseed", "0", getter),
                     aRootOutput(51)};
    if (hasNamesakes) {
        edited.inputs += anInput("a", 42, 2) + anInput("f", 43, 256);
        edited.outputs += anOutput("o", 51) + anOutput("p", 51);
        edited.rootOutputs += aRootOutput(51);
        edited.nodes += aNode(62, aFilter("blur"), aConnexion("input1", 62, 72), 71, 2) +
                        aNode(61, anInputBridge(42), {}, 72, 2) +
                        aNode(66, aFilter("blend"),
                              aConnexion("source", 62, 72) + aConnexion("destination", 62, 72) +
                                  aConnexion("source", 61, 71) + aConnexion("source", 62, 71),
                              72, 1);
    }
    return aPackage().containing(filter.text() + edited.text());
}

class RandomEditor
{
public:
    // With the behaviours for every other seed, and with namesakes for every other pair of them.
    explicit RandomEditor(unsigned seed) : m_random(seed), m_workspace(seed % 2 == 0)
    {
        m_package = &m_workspace.open(aFilterAndAGraph(seed % 3 == 0 ? 30 : 0, seed % 4 < 2));
        m_graph = &controllerIn(*m_package, 1);
    }

    // Runs one edit of a random kind; it may turn out to be refused.
    void edit()
    {
        using Edit = void (RandomEditor::*)();
        static constexpr Edit edits[] = {
            &RandomEditor::addFilter,     &RandomEditor::addFilter,    &RandomEditor::addInstance,
            &RandomEditor::addInput,      &RandomEditor::addOutput,    &RandomEditor::removeNode,
            &RandomEditor::connect,       &RandomEditor::connect,      &RandomEditor::connect,
            &RandomEditor::disconnect,    &RandomEditor::move,         &RandomEditor::addTweak,
            &RandomEditor::removeTweak,   &RandomEditor::setDefault,   &RandomEditor::setParameter,
            &RandomEditor::setMode,       &RandomEditor::link,         &RandomEditor::freeze,
            &RandomEditor::setRootOutput, &RandomEditor::editFunction, &RandomEditor::editFunction,
            &RandomEditor::reorder,       &RandomEditor::reorder,      &RandomEditor::renumber,
            &RandomEditor::recolor};
        (this->*edits[below(std::size(edits))])();
    }

    std::string text() const { return xmlOf(*m_package); }
    bool showsWhatIsThere() const
    {
        CompGraphController fresh(*m_graph->graph());
        EXPECT_EQ(viewOf(*m_graph), viewOf(fresh));
        return viewOf(*m_graph) == viewOf(fresh) && knowsItsReaders();
    }
    Workspace& workspace() { return m_workspace; }

private:
    // Are the function nodes that read each input all that there are in the graph?
    bool knowsItsReaders() const
    {
        std::multiset<std::string> read;
        Orv::Data::visitTree(*m_graph->graph(), [&](const Orv::Data::BaseObject& object) {
            const auto* node = dynamic_cast<const Ksx::Data::Content::ParamNode*>(&object);
            const std::string function = node == nullptr ? "" : node->function().get();
            if (function.compare(0, 4, "get_") == 0 && function != "get_path")
                for (const auto& data : node->funcDatas())
                    if (const auto* name =
                            dynamic_cast<const Ksx::Data::Content::ConstantValueString*>(
                                data.constantValue().get()))
                        read.insert(name->value().get());
        });
        bool isRight = true;
        for (const InputController* input : m_graph->inputsController()->inputs())
            isRight = isRight &&
                      m_graph->collectInputUsers(*input).size() == read.count(input->identifier());
        return isRight;
    }
    std::size_t below(std::size_t count)
    {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random);
    }
    NodeController* anyNode()
    {
        const auto nodes = m_graph->nodes();
        return nodes.empty() ? nullptr : nodes[below(nodes.size())];
    }
    ConnectorController* anyConnector(const NodeController* node, bool isInput)
    {
        const std::size_t count = node == nullptr ? 0
                                  : isInput       ? node->inputConnectorCount()
                                                  : node->outputConnectorCount();
        if (count == 0)
            return nullptr;
        if (isInput)
            return node->inputConnector(below(count));
        return node->outputConnector(below(count));
    }
    InputController* anyInput()
    {
        const auto inputs = m_graph->inputsController()->inputs();
        return inputs.empty() ? nullptr : inputs[below(inputs.size())];
    }
    ParameterController* anyParameter()
    {
        auto* const node = dynamic_cast<CompNodeController*>(anyNode());
        ParametersController* parameters = below(5) == 0 || node == nullptr
                                               ? &m_graph->parametersController()
                                               : node->parametersController();
        return parameters == nullptr || parameters->count() == 0
                   ? nullptr
                   : &parameters->at(below(parameters->count()));
    }
    // A value of the shape of another one.
    boost::any changed(const boost::any& value)
    {
        if (value.type() == typeid(bool))
            return below(2) == 0;
        if (value.type() == typeid(unsigned))
            return static_cast<unsigned>(below(4));
        if (value.type() == typeid(std::string))
            return std::string(below(3), 'x');
        if (value.type() == typeid(Orv::Data::Float1))
            return Orv::Data::Float1{{static_cast<float>(below(4)) / 4}};
        return value;
    }

    void addFilter() { m_graph->addAtomicFilter(static_cast<unsigned>(below(21))); }
    void addInstance() { m_graph->addInstanceNode(graphIn(*m_package, 0)); }
    void addInput() { m_graph->addInputNode({"in", 1 + static_cast<unsigned>(below(2))}); }
    void addOutput()
    {
        m_graph->addOutputNode(
            {"out", 1 + static_cast<unsigned>(below(2)), {{"diffuse", "RGB"}}, 0, 0});
    }
    void removeNode()
    {
        if (NodeController* node = anyNode())
            m_graph->removeNode(*node, below(2) == 0);
    }
    void connect()
    {
        ConnectorController* output = anyConnector(anyNode(), false);
        ConnectorController* input = anyConnector(anyNode(), true);
        if (output != nullptr && input != nullptr)
            m_graph->connect(*output, *input, below(3) != 0);
    }
    void disconnect()
    {
        ConnectorController* input = anyConnector(anyNode(), true);
        if (input != nullptr && !input->targets().empty())
            m_graph->disconnect(*input, *input->targets().front());
    }
    void move()
    {
        if (NodeController* node = anyNode())
            node->setPosition(QPointF(static_cast<double>(below(9)), 1.0));
    }
    void addTweak()
    {
        static constexpr unsigned types[] = {4, 16, 32, 64, 128, 256, 512, 1024, 2048, 32768};
        m_graph->inputsController()->addTweakInput(types[below(std::size(types))],
                                                   below(2) == 0 ? "tweak" : "");
    }
    void removeTweak()
    {
        if (InputController* input = anyInput())
            m_graph->inputsController()->removeInput(*input);
    }
    void setDefault()
    {
        if (InputController* input = anyInput())
            input->setDefaultValue(zeroOf(input->type()));
    }
    void setParameter()
    {
        ParameterController* parameter = anyParameter();
        if (parameter != nullptr && parameter->modifier() != nullptr)
            parameter->setValue(changed(parameter->value()));
    }
    void setMode()
    {
        if (ParameterController* parameter = anyParameter())
            parameter->setRelativeTo(static_cast<InheritanceMethod>(below(3)));
    }
    void link()
    {
        ParameterController* parameter = anyParameter();
        const InputController* input = anyInput();
        if (parameter != nullptr && input != nullptr)
            parameter->linkToInput({input->identifier(), input->type()});
    }
    void freeze()
    {
        if (InputController* input = anyInput())
            switchToConstant(*m_graph->inputsController(), *input, zeroOf(input->type()));
    }
    void setRootOutput()
    {
        const auto outputs = m_graph->rootOutputs();
        if (!outputs.empty())
            outputs.front()->setFormat(static_cast<std::uint32_t>(below(5)));
    }
    void editFunction()
    {
        const ParameterController* parameter = anyParameter();
        const auto* value = parameter == nullptr || parameter->stored() == nullptr
                                ? nullptr
                                : dynamic_cast<const Ksx::Data::Content::DynamicValue*>(
                                      parameter->stored()->paramValue().get());
        if (value == nullptr)
            return;
        FuncGraphController& function =
            *graphController(Orv::Data::DataPointerBox<Ksx::Data::Content::DynamicValue>(value));
        const auto nodes = function.nodes();
        const auto any = [&] { return nodes[below(nodes.size())]; };
        switch (nodes.size() < 2 ? 0 : below(4)) {
        case 0:
            function.addAtomicFunction(static_cast<unsigned>(below(85)));
            break;
        case 1:
            if (ConnectorController* input = anyConnector(any(), true))
                function.connect(*any()->outputConnector(0), *input, below(2) == 0);
            break;
        case 2:
            function.removeNode(*any(), below(2) == 0);
            break;
        default:
            function.setOutputNode(static_cast<FuncNodeController&>(*any()));
        }
        const FuncGraphController fresh(*value);
        EXPECT_EQ(viewOf(static_cast<const GraphController&>(function)),
                  viewOf(static_cast<const GraphController&>(fresh)));
    }

    // Moves an item of a list to another place.
    template <class Item>
    void reorder(const Orv::Data::ContainerList<Item>& list)
    {
        using Move = std::pair<std::size_t, std::ptrdiff_t>;
        const auto move = +[](Orv::Core::ManipulatorList<Item> moved,
                              const Orv::Data::DataPointerBoxMasterKey&, const Move& step) {
            moved.move(step.first, step.second);
            return true;
        };
        if (list.isEmpty())
            return;
        const std::size_t from = below(list.size());
        const auto offset =
            static_cast<std::ptrdiff_t>(below(list.size())) - static_cast<std::ptrdiff_t>(from);
        runEdit(Orv::Data::DataPointerBox<Orv::Data::ContainerList<Item>>(&list),
                Move(from, offset), move, QString());
    }
    void reorder()
    {
        const auto& graph = *m_graph->graph();
        const auto* const node = static_cast<const CompNodeController*>(anyNode());
        switch (below(node == nullptr ? 4 : 6)) {
        case 0:
            return reorder(graph.compNodes());
        case 1:
            return reorder(graph.paraminputs());
        case 2:
            return reorder(graph.graphOutputs());
        case 3:
            return reorder(graph.root().rootOutputs());
        case 4:
            return reorder(node->node()->connexions());
        default:
            return reorder(node->node()->compOutputs());
        }
    }
    void write(const Orv::Data::Attribute<Uid>& attribute, Uid value)
    {
        const auto set = +[](Orv::Core::ManipulatorAttribute<Uid> written,
                             const Orv::Data::DataPointerBoxMasterKey&, const Uid& number) {
            written.set(number);
            return true;
        };
        runEdit(Orv::Data::DataPointerBox<Orv::Data::Attribute<Uid>>(&attribute), value, set,
                QString());
    }
    // Gives something the uid of something else of its kind.
    void renumber()
    {
        const auto* const node = static_cast<const CompNodeController*>(anyNode());
        const auto* const other = static_cast<const CompNodeController*>(anyNode());
        const InputController* const input = anyInput();
        const auto roots = m_graph->rootOutputs();
        if (node != nullptr && below(2) == 0)
            write(node->node()->uid(), other->uid());
        else if (node != nullptr && node->outputConnectorCount() != 0 && below(3) == 0)
            write(node->node()->compOutputs().front().uid(), 71 + static_cast<Uid>(below(3)));
        else if (input != nullptr && below(2) == 0)
            write(input->input()->uid(), anyInput()->uid());
        else if (!roots.empty())
            write(m_graph->graph()->root().rootOutputs().front().output(),
                  roots[below(roots.size())]->outputUid());
    }
    // Changes the type of an input between the two kinds of images or of numbers.
    void recolor()
    {
        const InputController* const input = anyInput();
        const auto any = static_cast<unsigned>(below(2));
        if (input != nullptr)
            write(input->input()->type().value(), input->type() < 4 ? 1 + any : 16 << (4 * any));
    }

    std::mt19937 m_random;
    Workspace m_workspace;
    const Ksx::Data::Content::Package* m_package;
    CompGraphController* m_graph;
};

class RandomEdits : public testing::TestWithParam<unsigned>
{};

TEST_P(RandomEdits, AreUndoneToTheBytesOfBeforeAndRedoneToTheBytesOfAfter)
{
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    RandomEditor editor(GetParam());
    const std::string before = editor.text();
    for (int i = 0; i < 60; ++i)
        editor.edit();
    const std::string after = editor.text();
    ASSERT_GT(editor.workspace().editCount(), 10u);
    EXPECT_TRUE(editor.workspace().undoAll());
    EXPECT_EQ(editor.text(), before);
    EXPECT_TRUE(editor.showsWhatIsThere());
    EXPECT_TRUE(editor.workspace().redoAll());
    EXPECT_EQ(editor.text(), after);
    EXPECT_TRUE(editor.showsWhatIsThere());
}

TEST_P(RandomEdits, LeaveControllersThatShowWhatNewOnesWould)
{
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    RandomEditor editor(GetParam() + 1000);
    int wrong = 0;
    for (int i = 0; i < 40; ++i) {
        editor.edit();
        wrong += editor.showsWhatIsThere() ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEdits, testing::Range(1u, 61u));

} // namespace
