#include "support/functionevaluator.h"

#include "content/constantvalue.h"
#include "data/content/dynamicvalue.h"
#include <algorithm>
#include <cmath>
#include <functional>
#include <iomanip>
#include <limits>
#include <set>
#include <sstream>

namespace TestSupport {

namespace {

using Ksx::Data::Content::Connexion;
using Ksx::Data::Content::DynamicValue;
using Ksx::Data::Content::FuncData;
using Ksx::Data::Content::ParamNode;
using Ints = std::vector<int>;
using Floats = std::vector<float>;
using Arguments = std::vector<FunctionValue>; // with the value of each input

const FunctionValue NoValue;

// Integers wrap.
int wrapped(long long number)
{
    return static_cast<int>(static_cast<unsigned>(number));
}

template <class Vector, class Operation>
FunctionValue componentwise(const Vector& a, const Vector& b, const Operation& operation)
{
    if (a.size() != b.size())
        return NoValue;
    Vector result(a.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        result[i] = operation(a[i], b[i]);
    return result;
}

template <class IntOperation, class FloatOperation>
FunctionValue onNumbers(const Arguments& arguments, const IntOperation& onInts,
                        const FloatOperation& onFloats)
{
    const auto* a = std::get_if<Ints>(&arguments[0]);
    const auto* b = std::get_if<Ints>(&arguments[1]);
    if (a != nullptr && b != nullptr)
        return componentwise(*a, *b, onInts);
    const auto* x = std::get_if<Floats>(&arguments[0]);
    const auto* y = std::get_if<Floats>(&arguments[1]);
    return x != nullptr && y != nullptr ? componentwise(*x, *y, onFloats) : NoValue;
}

template <class Operation>
FunctionValue compared(const Arguments& arguments, const Operation& operation)
{
    const auto* a = std::get_if<Ints>(&arguments[0]);
    const auto* b = std::get_if<Ints>(&arguments[1]);
    if (a != nullptr && b != nullptr)
        return operation(a->front(), b->front());
    const auto* x = std::get_if<Floats>(&arguments[0]);
    const auto* y = std::get_if<Floats>(&arguments[1]);
    return x != nullptr && y != nullptr ? FunctionValue(operation(x->front(), y->front()))
                                        : NoValue;
}

template <class Operation>
FunctionValue onBools(const Arguments& arguments, const Operation& operation)
{
    const auto* a = std::get_if<bool>(&arguments[0]);
    const auto* b = std::get_if<bool>(&arguments[1]);
    return a != nullptr && b != nullptr ? FunctionValue(operation(*a, *b)) : NoValue;
}

template <class Operation>
FunctionValue onFloat(const Arguments& arguments, const Operation& operation)
{
    const auto* a = std::get_if<Floats>(&arguments[0]);
    return a != nullptr ? FunctionValue(Floats{operation(a->front())}) : NoValue;
}

bool divides(const FunctionValue& value)
{
    const auto* ints = std::get_if<Ints>(&value);
    return ints == nullptr || std::find(ints->begin(), ints->end(), 0) == ints->end();
}

// All components of the entries, one behind the other.
template <class Vector>
FunctionValue joined(const Arguments& entries, std::size_t size)
{
    Vector result;
    for (const FunctionValue& entry : entries) {
        const auto* part = std::get_if<Vector>(&entry);
        if (part == nullptr)
            return NoValue;
        result.insert(result.end(), part->begin(), part->end());
    }
    return result.size() == size ? FunctionValue(result) : NoValue;
}

template <class Vector>
FunctionValue swizzled(const FunctionValue& value, const FunctionValue& data, std::size_t size)
{
    const auto* components = std::get_if<Vector>(&value);
    const auto* indexes = std::get_if<Ints>(&data);
    if (components == nullptr || indexes == nullptr || indexes->size() != size)
        return NoValue;
    Vector result;
    for (const int index : *indexes) {
        if (index < 0 || static_cast<std::size_t>(index) >= components->size())
            return NoValue;
        result.push_back((*components)[static_cast<std::size_t>(index)]);
    }
    return result;
}

FunctionValue toInts(const FunctionValue& value)
{
    const auto* floats = std::get_if<Floats>(&value);
    if (floats == nullptr)
        return NoValue;
    Ints result;
    for (const float number : *floats) {
        if (!(std::fabs(number) < 2147483648.0F))
            return NoValue;
        result.push_back(static_cast<int>(number));
    }
    return result;
}

FunctionValue toFloats(const FunctionValue& value)
{
    const auto* ints = std::get_if<Ints>(&value);
    return ints != nullptr ? FunctionValue(Floats(ints->begin(), ints->end())) : NoValue;
}

FunctionValue lerp(const Arguments& arguments)
{
    const auto* a = std::get_if<Floats>(&arguments[0]);
    const auto* b = std::get_if<Floats>(&arguments[1]);
    const auto* x = std::get_if<Floats>(&arguments[2]);
    if (a == nullptr || b == nullptr || x == nullptr)
        return NoValue;
    const float at = x->front();
    return componentwise(*a, *b, [at](float p, float q) { return p + (q - p) * at; });
}

FunctionValue dot(const Arguments& arguments)
{
    const auto* a = std::get_if<Floats>(&arguments[0]);
    const auto* b = std::get_if<Floats>(&arguments[1]);
    if (a == nullptr || b == nullptr || a->size() != b->size())
        return NoValue;
    float sum = 0;
    for (std::size_t i = 0; i < a->size(); ++i)
        sum += (*a)[i] * (*b)[i];
    return Floats{sum};
}

FunctionValue negated(const Arguments& arguments)
{
    const FunctionValue& value = arguments[0];
    return onNumbers(
        {value, value}, [](int a, int) { return wrapped(-1LL * a); },
        [](float a, float) { return -a; });
}

FunctionValue absolute(const Arguments& arguments)
{
    const FunctionValue& value = arguments[0];
    return onNumbers(
        {value, value}, [](int a, int) { return wrapped(std::llabs(a)); },
        [](float a, float) { return std::fabs(a); });
}

FunctionValue scaled(const Arguments& arguments)
{
    const auto* a = std::get_if<Floats>(&arguments[0]);
    const auto* scalar = std::get_if<Floats>(&arguments[1]);
    if (a == nullptr || scalar == nullptr)
        return NoValue;
    return componentwise(*a, Floats(a->size(), scalar->front()), std::multiplies<>());
}

struct Operation
{
    std::vector<const char*> inputs;
    std::function<FunctionValue(const Arguments&)> compute;
};

// What needs the values of all its inputs and nothing else.
const std::map<std::string, Operation>& operations()
{
    using A = const Arguments&;
    static const std::map<std::string, Operation> table = {
        {"add",
         {{"a", "b"},
          [](A v) {
              return onNumbers(
                  v, [](int a, int b) { return wrapped(1LL * a + b); }, std::plus<>());
          }}},
        {"sub",
         {{"a", "b"},
          [](A v) {
              return onNumbers(
                  v, [](int a, int b) { return wrapped(1LL * a - b); }, std::minus<>());
          }}},
        {"mul",
         {{"a", "b"},
          [](A v) {
              return onNumbers(
                  v, [](int a, int b) { return wrapped(1LL * a * b); }, std::multiplies<>());
          }}},
        {"div",
         {{"a", "b"},
          [](A v) {
              return divides(v[1]) ? onNumbers(
                                         v, [](int a, int b) { return wrapped(1LL * a / b); },
                                         std::divides<>())
                                   : NoValue;
          }}},
        {"mod",
         {{"a", "b"},
          [](A v) {
              return divides(v[1]) ? onNumbers(
                                         v, [](int a, int b) { return wrapped(1LL * a % b); },
                                         [](float a, float b) { return std::fmod(a, b); })
                                   : NoValue;
          }}},
        {"min",
         {{"a", "b"},
          [](A v) {
              return onNumbers(
                  v, [](int a, int b) { return std::min(a, b); },
                  [](float a, float b) { return std::min(a, b); });
          }}},
        {"max",
         {{"a", "b"},
          [](A v) {
              return onNumbers(
                  v, [](int a, int b) { return std::max(a, b); },
                  [](float a, float b) { return std::max(a, b); });
          }}},
        {"neg", {{"a"}, &negated}},
        {"abs", {{"a"}, &absolute}},
        {"mulscalar", {{"a", "scalar"}, &scaled}},
        {"dot", {{"a", "b"}, &dot}},
        {"lerp", {{"a", "b", "x"}, &lerp}},
        {"floor", {{"a"}, [](A v) { return onFloat(v, [](float a) { return std::floor(a); }); }}},
        {"ceil", {{"a"}, [](A v) { return onFloat(v, [](float a) { return std::ceil(a); }); }}},
        {"sin", {{"a"}, [](A v) { return onFloat(v, [](float a) { return std::sin(a); }); }}},
        {"and", {{"a", "b"}, [](A v) { return onBools(v, std::logical_and<>()); }}},
        {"or", {{"a", "b"}, [](A v) { return onBools(v, std::logical_or<>()); }}},
        {"not",
         {{"a"},
          [](A v) {
              return onBools({v[0], v[0]}, [](bool a, bool) { return !a; });
          }}},
        {"eq", {{"a", "b"}, [](A v) { return compared(v, std::equal_to<>()); }}},
        {"noteq", {{"a", "b"}, [](A v) { return compared(v, std::not_equal_to<>()); }}},
        {"gt", {{"a", "b"}, [](A v) { return compared(v, std::greater<>()); }}},
        {"gteq", {{"a", "b"}, [](A v) { return compared(v, std::greater_equal<>()); }}},
        {"lr", {{"a", "b"}, [](A v) { return compared(v, std::less<>()); }}},
        {"lreq", {{"a", "b"}, [](A v) { return compared(v, std::less_equal<>()); }}},
    };
    return table;
}

// The number behind a name, such as 3 for "vector3"; 1 for a name without one.
std::size_t sizeIn(const std::string& name)
{
    const char last = name.back();
    return last >= '1' && last <= '4' ? static_cast<std::size_t>(last - '0') : 1;
}

bool beginsWith(const std::string& text, const char* begin)
{
    return text.rfind(begin, 0) == 0;
}

class Evaluation
{
public:
    Evaluation(const DynamicValue& graph, const FunctionInputs& inputs) : m_inputs(inputs)
    {
        for (const ParamNode& node : graph.paramNodes())
            m_nodes.emplace(node.uid().get(), &node);
    }

    FunctionValue valueOf(unsigned uid)
    {
        const auto done = m_done.find(uid);
        if (done != m_done.end())
            return done->second;
        const auto node = m_nodes.find(uid);
        if (node == m_nodes.end() || !m_open.insert(uid).second)
            return NoValue;
        FunctionValue value = compute(*node->second);
        m_open.erase(uid);
        m_done.emplace(uid, value);
        return value;
    }

private:
    static boost::any dataOf(const ParamNode& node)
    {
        for (const FuncData& item : node.funcDatas())
            if (item.name().get() == "datacontent")
                return Ksx::Core::valueOfConstant(item.constantValue().get());
        return {};
    }

    Arguments entries(const ParamNode& node, const std::string& input)
    {
        Arguments values;
        for (const Connexion& connexion : node.connexions())
            if (connexion.identifier().get() == input)
                values.push_back(valueOf(connexion.connRef().value().get()));
        return values;
    }

    FunctionValue argument(const ParamNode& node, const std::string& input)
    {
        for (const Connexion& connexion : node.connexions())
            if (connexion.identifier().get() == input)
                return valueOf(connexion.connRef().value().get());
        return NoValue;
    }

    FunctionValue compute(const ParamNode& node)
    {
        const std::string& function = node.function().get();
        const auto found = operations().find(function);
        if (found == operations().end())
            return computeOther(node, function);
        Arguments arguments;
        for (const char* input : found->second.inputs)
            arguments.push_back(argument(node, input));
        return found->second.compute(arguments);
    }

    FunctionValue computeOther(const ParamNode& node, const std::string& function)
    {
        if (beginsWith(function, "const_"))
            return functionValueOf(dataOf(node));
        if (beginsWith(function, "get_"))
            return variable(dataOf(node));
        if (beginsWith(function, "swizzle"))
            return swizzled<Floats>(argument(node, "vector"), functionValueOf(dataOf(node)),
                                    sizeIn(function));
        if (beginsWith(function, "iswizzle"))
            return swizzled<Ints>(argument(node, "vector"), functionValueOf(dataOf(node)),
                                  sizeIn(function));
        if (beginsWith(function, "toint"))
            return toInts(argument(node, "value"));
        if (beginsWith(function, "tofloat"))
            return toFloats(argument(node, "value"));
        if (function == "sequence")
            return argument(node, "seqlast");
        if (function == "ifelse")
            return decision(node);
        if (!beginsWith(function, "vector") && !beginsWith(function, "ivector"))
            return NoValue;
        Arguments parts = entries(node, "componentsin");
        parts.push_back(argument(node, "componentslast"));
        return function.front() == 'v' ? joined<Floats>(parts, sizeIn(function))
                                       : joined<Ints>(parts, sizeIn(function));
    }

    FunctionValue variable(const boost::any& name) const
    {
        const auto* text = boost::any_cast<std::string>(&name);
        const auto found = text == nullptr ? m_inputs.end() : m_inputs.find(*text);
        return found == m_inputs.end() ? NoValue : found->second;
    }

    FunctionValue decision(const ParamNode& node)
    {
        const FunctionValue condition = argument(node, "condition");
        const auto* isTrue = std::get_if<bool>(&condition);
        return isTrue == nullptr ? NoValue : argument(node, *isTrue ? "ifpath" : "elsepath");
    }

    const FunctionInputs& m_inputs;
    std::map<unsigned, const ParamNode*> m_nodes; // the first of each uid
    std::map<unsigned, FunctionValue> m_done;
    std::set<unsigned> m_open; // whose values are being computed
};

template <class Vector>
bool takeVector(const boost::any& value, FunctionValue& result)
{
    const auto* vector = boost::any_cast<Vector>(&value);
    if (vector == nullptr)
        return false;
    using Number = std::decay_t<decltype((*vector)[0])>;
    result = std::vector<Number>(vector->elements.begin(), vector->elements.end());
    return true;
}

template <class... Vectors>
FunctionValue vectorOf(const boost::any& value)
{
    FunctionValue result;
    static_cast<void>((takeVector<Vectors>(value, result) || ...));
    return result;
}

} // namespace

FunctionValue evaluate(const DynamicValue& graph, const FunctionInputs& inputs)
{
    if (!graph.rootnode().isModified())
        return NoValue;
    return Evaluation(graph, inputs).valueOf(graph.rootnode().value().get());
}

FunctionValue functionValueOf(const boost::any& value)
{
    using namespace Orv::Data;
    if (const auto* boolean = boost::any_cast<bool>(&value))
        return *boolean;
    return vectorOf<Int1, Int2, Int3, Int4, Float1, Float2, Float3, Float4>(value);
}

std::string textOf(const FunctionValue& value)
{
    std::ostringstream text;
    text << std::setprecision(std::numeric_limits<float>::max_digits10);
    if (const auto* boolean = std::get_if<bool>(&value))
        text << (*boolean ? "true" : "false");
    if (const auto* ints = std::get_if<Ints>(&value))
        for (const int number : *ints)
            text << 'i' << number << ' ';
    if (const auto* floats = std::get_if<Floats>(&value))
        for (const float number : *floats)
            text << 'f' << (std::isnan(number) ? std::fabs(number) : number) << ' ';
    return text.str();
}

} // namespace TestSupport
