// Random edits with the oddest values and names: what they leave in a package can be read again.
#include "content/constantvalue.h"
#include "data/content/resource.h"
#include "data/desc/filter.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/parametercontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/resourcelistener.h"
#include "ksx/core/tweakinputcontroller.h"
#include "support/workspace.h"
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using namespace Orv::Data;

class OddEditor
{
public:
    explicit OddEditor(unsigned seed) : m_random(seed), m_workspace(seed % 2 == 0)
    {
        const std::string getters =
            aGetter(5, "get_float1", 256, "f") + aGetter(6, "get_float4", 2048, "g");
        const GraphText graph{
            "g",
            2,
            anInput("f", 41, 256) + anInput("g", 42, 2307),
            {},
            aNode(62, aFilter("blur", aParameter("intensity", "0", aDynamicValue(5, getters)))),
            {},
            {}};
        m_package = &m_workspace.open(aPackage().containing(graph.text()));
        m_graph = &controllerIn(*m_package);
    }

    void edit(int count)
    {
        using Edit = void (OddEditor::*)();
        static constexpr Edit edits[] = {&OddEditor::addTweak,     &OddEditor::setDefault,
                                         &OddEditor::setDefault,   &OddEditor::setParameter,
                                         &OddEditor::setParameter, &OddEditor::freeze,
                                         &OddEditor::move,         &OddEditor::describe,
                                         &OddEditor::addNodes,     &OddEditor::addContent};
        for (int i = 0; i < count; ++i)
            (this->*edits[below(std::size(edits))])();
    }
    std::string written() const { return xmlOf(*m_package); }
    std::size_t editCount() const { return m_workspace.editCount(); }

private:
    std::size_t below(std::size_t count)
    {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random);
    }
    // Bytes of all values but 0, which no text of a document holds.
    std::string anyText()
    {
        std::string text(below(9), ' ');
        for (char& c : text)
            c = static_cast<char>(1 + below(255));
        return text;
    }
    float anyFloat()
    {
        using Limits = std::numeric_limits<float>;
        static const float odd[] = {Limits::quiet_NaN(),  -Limits::quiet_NaN(), Limits::infinity(),
                                    -Limits::infinity(),  Limits::max(),        Limits::lowest(),
                                    Limits::denorm_min(), Limits::min(),        -0.0F};
        if (below(2) == 0)
            return odd[below(std::size(odd))];
        const auto bits = static_cast<std::uint32_t>(m_random());
        float number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }
    int anyInt() { return static_cast<int>(m_random()); }

    template <class Vector>
    bool fill(boost::any& value)
    {
        auto* const vector = boost::any_cast<Vector>(&value);
        if (vector == nullptr)
            return false;
        for (auto& element : vector->elements)
            if constexpr (std::is_same_v<std::decay_t<decltype(element)>, float>)
                element = anyFloat();
            else
                element = anyInt();
        return true;
    }
    // A value of the same shape.
    boost::any oddLike(boost::any value)
    {
        if (value.type() == typeid(bool))
            return below(2) == 0;
        if (value.type() == typeid(UInt))
            return static_cast<UInt>(m_random());
        if (value.type() == typeid(float))
            return anyFloat();
        if (value.type() == typeid(std::string))
            return anyText();
        fill<Int1>(value) || fill<Int2>(value) || fill<Int3>(value) || fill<Int4>(value) ||
            fill<Float1>(value) || fill<Float2>(value) || fill<Float3>(value) ||
            fill<Float4>(value);
        return value;
    }
    InputController* anyInput()
    {
        const auto inputs = m_graph->inputsController()->inputs();
        return inputs.empty() ? nullptr : inputs[below(inputs.size())];
    }

    void addTweak()
    {
        static constexpr unsigned types[] = {4,    16,   32,   64,   128,  240,  256,   258,  512,
                                             1024, 2048, 2049, 2304, 2307, 3840, 16384, 32768};
        m_graph->inputsController()->addTweakInput(types[below(std::size(types))], anyText());
    }
    void setDefault()
    {
        if (InputController* input = anyInput())
            input->setDefaultValue(oddLike(zeroOf(input->type())));
    }
    void setParameter()
    {
        auto* const node = static_cast<CompNodeController*>(m_graph->nodes().front());
        ParametersController* parameters =
            below(5) == 0 ? &m_graph->parametersController() : node->parametersController();
        if (parameters == nullptr)
            return;
        ParameterController& parameter = parameters->at(below(parameters->count()));
        if (parameter.modifier() != nullptr)
            parameter.setValue(oddLike(parameter.value()));
    }
    void freeze()
    {
        if (InputController* input = anyInput())
            switchToConstant(*m_graph->inputsController(), *input, oddLike(zeroOf(input->type())));
    }
    void move()
    {
        NodeController& node = *m_graph->nodes().front();
        node.setPosition(QPointF(static_cast<double>(anyFloat()), std::ldexp(1.0, anyInt() % 512)));
        node.setDepth(anyFloat());
    }
    void describe()
    {
        auto* const input = dynamic_cast<TweakInputController*>(anyInput());
        if (input == nullptr)
            return;
        auto description = aDescription(anyText(), 256, Float1{{anyFloat()}});
        description.descKey = anyText();
        description.widget = anyText();
        description.extras["min"] = std::to_string(anyFloat());
        description.extras["max"] = anyText();
        input->initFromDescription(description, anyText());
    }
    void addNodes()
    {
        m_graph->addInputNode({anyText(), 1, {{anyText(), anyText()}}});
        m_graph->addOutputNode({anyText(), 1, {{anyText(), anyText()}}});
    }
    void addContent()
    {
        PackageController controller(*m_package);
        controller.addGraphObject(QString::fromLatin1(anyText().c_str()));
        ResourceListener* resource = controller.addLinkedResource(
            3, QStringLiteral("PNG"), QString::fromLatin1(anyText().c_str()),
            QStringLiteral("/no/such/file.png"));
        resource->setCookedQuality(anyFloat());
    }

    std::mt19937 m_random;
    Workspace m_workspace;
    const Ksx::Data::Content::Package* m_package;
    CompGraphController* m_graph;
};

class WrittenValues : public testing::TestWithParam<unsigned>
{};

TEST_P(WrittenValues, CanBeReadAndAreWrittenTheSameAgain)
{
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    OddEditor editor(GetParam());
    editor.edit(60);
    const std::string written = editor.written();
    ASSERT_GT(editor.editCount(), 20u);
    const auto read = packageFrom(written);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(xmlOf(*read), written);
}

INSTANTIATE_TEST_SUITE_P(Seeds, WrittenValues, testing::Range(1u, 41u));

} // namespace
