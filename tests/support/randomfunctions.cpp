#include "support/randomfunctions.h"

#include "support/functiontext.h"
#include "support/shelfcases.h"
#include <algorithm>
#include <array>
#include <map>
#include <set>

namespace TestSupport {

namespace {

using Random = std::mt19937;

// The types of values by their number of components: booleans stand at 0.
constexpr unsigned Bool = 4;
unsigned intType(unsigned size)
{
    return 8u << size;
}
unsigned floatType(unsigned size)
{
    return 256u << (size - 1);
}
bool isFloat(unsigned type)
{
    return type >= 256;
}
unsigned sizeOf(unsigned type)
{
    unsigned size = 1;
    while (type != Bool && (isFloat(type) ? floatType(size) : intType(size)) != type)
        ++size;
    return size;
}

constexpr std::array<unsigned, 9> Types = {4, 16, 32, 64, 128, 256, 512, 1024, 2048};

struct Names
{
    const char* getter;
    const char* constant;
    const char* kind; // of the constant's element
};
const std::map<unsigned, Names> NamesOfTypes = {
    {4, {"get_bool", "const_bool", "Bool"}},
    {16, {"get_integer1", "const_int1", "Int1"}},
    {32, {"get_integer2", "const_int2", "Int2"}},
    {64, {"get_integer3", "const_int3", "Int3"}},
    {128, {"get_integer4", "const_int4", "Int4"}},
    {256, {"get_float1", "const_float1", "Float1"}},
    {512, {"get_float2", "const_float2", "Float2"}},
    {1024, {"get_float3", "const_float3", "Float3"}},
    {2048, {"get_float4", "const_float4", "Float4"}},
};

bool chance(Random& random, int percent)
{
    return pick(random, 1, 100) <= percent;
}

template <class Choices>
const typename Choices::value_type& choice(Random& random, const Choices& choices)
{
    return choices[pick(random, std::size_t{0}, choices.size() - 1)];
}

template <class Vector>
boost::any randomVector(Random& random)
{
    Vector vector;
    for (auto& number : vector.elements)
        number = static_cast<std::decay_t<decltype(number)>>(pick(random, -20, 20)) /
                 static_cast<std::decay_t<decltype(number)>>(4);
    return vector;
}

boost::any randomValue(Random& random, unsigned type)
{
    using namespace Orv::Data;
    switch (type) {
    case 16:
        return randomVector<Int1>(random);
    case 32:
        return randomVector<Int2>(random);
    case 64:
        return randomVector<Int3>(random);
    case 128:
        return randomVector<Int4>(random);
    case 256:
        return randomVector<Float1>(random);
    case 512:
        return randomVector<Float2>(random);
    case 1024:
        return randomVector<Float3>(random);
    case 2048:
        return randomVector<Float4>(random);
    default:
        return chance(random, 50);
    }
}

std::string randomNumbers(Random& random, unsigned type)
{
    if (type == Bool)
        return chance(random, 50) ? "1" : "0";
    std::string text;
    for (unsigned i = 0; i < sizeOf(type); ++i)
        text += (i == 0 ? "" : " ") + std::to_string(pick(random, -5, 5)) +
                (isFloat(type) && chance(random, 50) ? ".25" : "");
    return text;
}

// One random function graph.
class GraphMaker
{
public:
    GraphMaker(Random& random, const std::map<std::string, unsigned>& inputs)
        : m_random(random), m_inputs(inputs)
    {}

    std::string make()
    {
        const unsigned root = node(anyType(), pick(m_random, 0, 5));
        while (chance(m_random, 30))
            node(anyType(), 2); // for nothing
        if (chance(m_random, 25))
            damage();
        std::shuffle(m_nodes.begin(), m_nodes.end(), m_random);
        std::string nodes;
        for (const FunctionText& made : m_nodes)
            nodes += made.text();
        return chance(m_random, 5) ? aRootlessValue(nodes) : aDynamicValue(root, nodes);
    }

private:
    // That of "x" more often than others.
    unsigned anyType() { return chance(m_random, 40) ? m_inputs.at("x") : choice(m_random, Types); }

    // The uid of a node that gives a value of that type.
    unsigned node(unsigned type, int depth)
    {
        std::vector<unsigned> fitting;
        for (const FunctionText& made : m_nodes)
            if (made.type == type && m_open.count(made.uid) == 0)
                fitting.push_back(made.uid);
        if (!fitting.empty() && chance(m_random, 30))
            return choice(m_random, fitting);
        if (depth > 0 && chance(m_random, 80))
            return function(type, depth - 1);
        std::vector<std::string> readable;
        for (const auto& [identifier, inputType] : m_inputs)
            if (inputType == type)
                readable.insert(readable.end(), identifier == "x" ? 4 : 1, identifier);
        const Names& names = NamesOfTypes.at(type);
        if (!readable.empty() && chance(m_random, 80))
            return add(names.getter, type, aConstant("String", choice(m_random, readable)));
        return add(names.constant, type, aConstant(names.kind, randomNumbers(m_random, type)));
    }

    unsigned add(const std::string& function, unsigned type, const std::string& constant = {})
    {
        const unsigned uid = ++m_lastUid;
        m_nodes.push_back({uid,
                           function,
                           type,
                           {},
                           aDataItem(constant),
                           chance(m_random, 50) ? "" : randomNumbers(m_random, 1024)});
        return uid;
    }

    unsigned function(unsigned type, int depth)
    {
        if (chance(m_random, 15))
            return linked("ifelse", type,
                          {{"condition", Bool}, {"ifpath", type}, {"elsepath", type}}, depth);
        if (chance(m_random, 8))
            return linked("sequence", type,
                          {{"seqin", anyType()}, {"seqin", anyType()}, {"seqlast", type}}, depth);
        if (type == Bool)
            return boolean(depth);
        if (chance(m_random, 50))
            return assembled(type, depth);
        if (chance(m_random, 25))
            return picked(type, depth);
        return arithmetic(type, depth);
    }

    unsigned boolean(int depth)
    {
        static const std::vector<std::string> comparisons{"eq",   "noteq", "gt",
                                                          "gteq", "lr",    "lreq"};
        static const std::vector<std::string> logic{"and", "or"};
        if (chance(m_random, 20))
            return linked("not", Bool, {{"a", Bool}}, depth);
        if (chance(m_random, 30))
            return linked(choice(m_random, logic), Bool, {{"a", Bool}, {"b", Bool}}, depth);
        const unsigned compared = chance(m_random, 50) ? intType(1) : floatType(1);
        return linked(choice(m_random, comparisons), Bool, {{"a", compared}, {"b", compared}},
                      depth);
    }

    // A vector of parts.
    unsigned assembled(unsigned type, int depth)
    {
        static const std::vector<std::vector<unsigned>> parts[] = {
            {},
            {},
            {{1, 1}},
            {{1, 1, 1}, {2, 1}, {1, 2}},
            {{1, 1, 1, 1}, {2, 1, 1}, {1, 2, 1}, {3, 1}, {1, 3}, {2, 2}, {1, 1, 2}},
        };
        const unsigned size = sizeOf(type);
        if (size == 1)
            return arithmetic(type, depth);
        const auto& sizes = choice(m_random, parts[size]);
        Links links;
        for (std::size_t i = 0; i < sizes.size(); ++i)
            links.push_back({i + 1 < sizes.size() ? "componentsin" : "componentslast",
                             isFloat(type) ? floatType(sizes[i]) : intType(sizes[i])});
        return linked((isFloat(type) ? "vector" : "ivector") + std::to_string(size), type, links,
                      depth);
    }

    // Components of another vector, or a value of the other kind of numbers.
    unsigned picked(unsigned type, int depth)
    {
        const unsigned size = sizeOf(type);
        if (chance(m_random, 40)) {
            if (!isFloat(type))
                return linked("toint" + std::to_string(size), type, {{"value", floatType(size)}},
                              depth);
            return linked("tofloat" + (size == 1 ? "" : std::to_string(size)), type,
                          {{"value", intType(size)}}, depth);
        }
        const unsigned from = pick(m_random, 1u, 4u);
        std::string indexes;
        for (unsigned i = 0; i < size; ++i)
            indexes += (i == 0 ? "" : " ") + std::to_string(pick(m_random, 0u, from - 1));
        return linked((isFloat(type) ? "swizzle" : "iswizzle") + std::to_string(size), type,
                      {{"vector", isFloat(type) ? floatType(from) : intType(from)}}, depth,
                      aConstant("Int" + std::to_string(size), indexes));
    }

    unsigned arithmetic(unsigned type, int depth)
    {
        std::vector<std::string> binary{"add", "sub", "mul", "min", "max"};
        std::vector<std::string> unary;
        if (sizeOf(type) == 1) {
            binary.insert(binary.end(), {"div", "mod"});
            unary.emplace_back("abs");
        }
        if (isFloat(type) || sizeOf(type) == 1)
            unary.emplace_back("neg");
        if (type == floatType(1))
            unary.insert(unary.end(), {"floor", "ceil", "sin"});
        if (!unary.empty() && chance(m_random, 25))
            return linked(choice(m_random, unary), type, {{"a", type}}, depth);
        if (isFloat(type) && chance(m_random, 15))
            return linked("lerp", type, {{"a", type}, {"b", type}, {"x", 256}}, depth);
        if (isFloat(type) && sizeOf(type) > 1 && chance(m_random, 15))
            return linked("mulscalar", type, {{"a", type}, {"scalar", 256}}, depth);
        if (type == floatType(1) && chance(m_random, 15))
            return linked("dot", type, {{"a", 1024}, {"b", 1024}}, depth);
        return linked(choice(m_random, binary), type, {{"a", type}, {"b", type}}, depth);
    }

    struct Link
    {
        std::string input;
        unsigned type;
    };
    using Links = std::vector<Link>;

    unsigned linked(const std::string& function, unsigned type, const Links& inputs, int depth,
                    const std::string& data = {})
    {
        const unsigned uid = add(function, type, data);
        m_open.insert(uid);
        std::string links;
        for (const Link& input : inputs)
            links += aLink(input.input, node(input.type, depth));
        m_open.erase(uid);
        for (FunctionText& made : m_nodes)
            if (made.uid == uid)
                made.links = links;
        return uid;
    }

    void damage()
    {
        FunctionText& broken = m_nodes[pick(m_random, std::size_t{0}, m_nodes.size() - 1)];
        const unsigned other = choice(m_random, m_nodes).uid;
        switch (pick(m_random, 0, 4)) {
        case 0: // nowhere
            broken.links = aLink("a", 777) + aLink("componentsin", 778);
            break;
        case 1: // perhaps a circle
            broken.links = aLink("a", other) + aLink("componentslast", other);
            break;
        case 2:
            broken.function = "mystery";
            break;
        case 3: // two nodes with one uid
            broken.uid = other;
            break;
        default: // inputs that the function does not have
            broken.links += aLink("odd", other) + aLink("odd", broken.uid);
        }
    }

    Random& m_random;
    const std::map<std::string, unsigned>& m_inputs;
    std::vector<FunctionText> m_nodes;
    std::set<unsigned> m_open; // whose links are being made
    unsigned m_lastUid = 0;
};

// The elements of a few parameters.
std::string someParameters(Random& random, const std::map<std::string, unsigned>& inputs)
{
    std::string parameters;
    const int count = pick(random, 1, 4);
    for (int i = 0; i < count; ++i)
        parameters += aParameter("p" + std::to_string(i), "0",
                                 chance(random, 15) ? aConstant("Float1", "1")
                                                    : GraphMaker(random, inputs).make());
    return parameters;
}

std::string anFxMap(const std::string& parameters, const std::string& cells,
                    const std::string& data)
{
    return "<compFilter><filter v=\"fxmaps\"/>" + GraphText::list("parameters", parameters) +
           "<paramsArrays><paramsArray><name v=\"keys\"/><uid v=\"50\"/><paramsArrayCells>"
           "<paramsArrayCell><uid v=\"51\"/>" +
           GraphText::list("parameters", cells) +
           "</paramsArrayCell></paramsArrayCells></paramsArray></paramsArrays><paramsGraphs>"
           "<paramsGraph><name v=\"\"/><uid v=\"52\"/><paramsGraphDatas><paramsGraphData>"
           "<identifier v=\"set\"/><uid v=\"53\"/><type v=\"paramset\"/>" +
           (data.empty() ? "" : GraphText::list("parameters", data)) +
           "</paramsGraphData></paramsGraphDatas><paramsGraphNodes/></paramsGraph></paramsGraphs>"
           "</compFilter>";
}

} // namespace

RandomFunctions::RandomFunctions(unsigned seed)
{
    Random random = seededRandom(seed);
    const unsigned frozenType = Types[seed % Types.size()];
    const std::map<std::string, unsigned> types = {
        {"x", frozenType}, {"y", frozenType}, {"number", 256}, {"count", 16}, {"flag", 4}};
    unsigned uid = 10;
    for (const auto& [identifier, type] : types) {
        m_graph.inputs += anInput(identifier, ++uid, type);
        const boost::any value = randomValue(random, type);
        m_inputs[identifier] = functionValueOf(value);
        if (identifier == "x")
            m_frozen = value;
    }
    const auto some = [&] { return someParameters(random, types); };
    m_graph.parameters = some();
    m_graph.nodes = aNode(30, aFilter("blur", some()), {}, 31, 1);
    const std::string parameters = some();
    const std::string cells = some();
    m_graph.nodes += aNode(32, anFxMap(parameters, cells, some()), {}, 33, 1);
    m_graph.nodes +=
        aNode(34, "<compInstance><path><value v=\"pkg://none\"/></path>" +
                      GraphText::list("parameters", some()) + "<outputBridgings/></compInstance>");
}

} // namespace TestSupport
