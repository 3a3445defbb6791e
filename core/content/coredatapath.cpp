#include "ksx/core/datapath.h"

#include "content/nodekind.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "ksx/core/contentwalk.h"
#include <QtGlobal>
#include <algorithm>
#include <charconv>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Data::BaseObject;

constexpr std::string_view Scheme = "pkg://";

std::optional<Uid> uidFromText(const std::optional<std::string_view>& text)
{
    if (!text)
        return std::nullopt;
    Uid uid = 0;
    const char* end = text->data() + text->size();
    const auto result = std::from_chars(text->data(), end, uid);
    return result.ec == std::errc() && result.ptr == end ? std::optional<Uid>(uid) : std::nullopt;
}

template <class List>
const typename List::ItemType* findByUid(const List& list, std::optional<Uid> uid)
{
    if (!uid)
        return nullptr;
    for (const auto& item : list)
        if (item.uid().get() == *uid)
            return &item;
    return nullptr;
}

// The function node in the first computed parameter of that name that has it.
template <class List>
const BaseObject* findDynamicNode(const List& parameters, const std::string& name,
                                  std::optional<Uid> node)
{
    for (const Parameter& parameter : parameters) {
        const DynamicValue* value = computedValueOf(parameter.paramValue());
        if (value == nullptr || parameter.name().get() != name)
            continue;
        if (const BaseObject* found = findByUid(value->paramNodes(), node))
            return found;
    }
    return nullptr;
}

// What the typed part of a path asks for.
struct TypedQuery
{
    const DataPath& path;

    std::optional<Uid> uid(std::string_view key) const { return uidFromText(path.parameter(key)); }
    std::string text(std::string_view key) const { return path.parameter(key).value_or(""); }
    // A node's uid narrows the search to that node, where it is given.
    bool concerns(const CompNode& node) const
    {
        const auto wanted = uid(DataPathKey::CompNodeUid);
        return !wanted || node.uid().get() == *wanted;
    }
};

const BaseObject* findCompNode(const BaseObject& object, const TypedQuery& query)
{
    const auto* graph = dynamic_cast<const Graph*>(&object);
    return graph == nullptr ? nullptr
                            : findByUid(graph->compNodes(), query.uid(DataPathKey::CompNodeUid));
}

const BaseObject* findGraphOutput(const BaseObject& object, const TypedQuery& query)
{
    const auto* graph = dynamic_cast<const Graph*>(&object);
    return graph == nullptr
               ? nullptr
               : findByUid(graph->graphOutputs(), query.uid(DataPathKey::GraphOutputUid));
}

const BaseObject* findFunctionNode(const BaseObject& object, const TypedQuery& query)
{
    const auto* function = dynamic_cast<const Function*>(&object);
    const DynamicValue* body =
        function == nullptr ? nullptr : computedValueOf(function->paramValue());
    return body == nullptr ? nullptr
                           : findByUid(body->paramNodes(), query.uid(DataPathKey::FuncNodeUid));
}

// `data` narrows the search to the cells and sets of an FX-map of that uid. Without it the node's own
// parameters and all cells are searched.
const BaseObject* findInParameters(const CompNode& compNode, std::optional<Uid> data,
                                   const std::string& name, std::optional<Uid> node)
{
    using Owner = ParameterPlace::Owner;
    const BaseObject* found = nullptr;
    visitParameterPlaces(compNode, [&](const ParameterPlace& place) {
        const bool isWanted = data ? place.owner != Owner::Node && place.uid == *data
                                   : place.owner != Owner::GraphData;
        if (found == nullptr && isWanted)
            found = findDynamicNode(place.parameters, name, node);
    });
    return found;
}

const BaseObject* findDynamicParamNode(const BaseObject& object, const TypedQuery& query)
{
    const auto* graph = dynamic_cast<const Graph*>(&object);
    if (graph == nullptr)
        return nullptr;
    const std::string name = query.text(DataPathKey::ParameterName);
    const auto node = query.uid(DataPathKey::NodeUid);
    const auto data = query.uid(DataPathKey::ParamGraphDataUid);
    const bool isOfGraph = !data && !query.uid(DataPathKey::CompNodeUid);
    if (isOfGraph)
        if (const BaseObject* found = findDynamicNode(graph->baseParameters(), name, node))
            return found;
    for (const CompNode& compNode : graph->compNodes()) {
        if (!query.concerns(compNode))
            continue;
        if (const BaseObject* found = findInParameters(compNode, data, name, node))
            return found;
    }
    return nullptr;
}

const BaseObject* findParamsGraphNode(const BaseObject& object, const TypedQuery& query)
{
    const auto* graph = dynamic_cast<const Graph*>(&object);
    if (graph == nullptr)
        return nullptr;
    for (const CompNode& compNode : graph->compNodes()) {
        const auto* filter = dynamic_cast<const CompFilter*>(compNode.compImplementation().get());
        if (filter == nullptr || !query.concerns(compNode))
            continue;
        for (const ParamsGraph& paramsGraph : filter->paramsGraphs())
            if (const BaseObject* found =
                    findByUid(paramsGraph.paramsGraphNodes(), query.uid(DataPathKey::NodeUid)))
                return found;
    }
    return nullptr;
}

const BaseObject* findGuiObject(const BaseObject& object, const TypedQuery& query)
{
    const auto uid = query.uid(DataPathKey::GuiObjectUid);
    if (const auto* graph = dynamic_cast<const Graph*>(&object))
        return findByUid(graph->GUIObjects(), uid);
    const auto* function = dynamic_cast<const Function*>(&object);
    const DynamicValue* body =
        function == nullptr ? nullptr : computedValueOf(function->paramValue());
    return body == nullptr ? nullptr : findByUid(body->GUIObjects(), uid);
}

struct PathKind
{
    std::string_view name;
    const BaseObject* (*find)(const BaseObject&, const TypedQuery&);
};

constexpr PathKind PathKinds[] = {
    {"CompNodeType", &findCompNode},
    {"GraphOutputType", &findGraphOutput},
    {"DynamicParamNodeType", &findDynamicParamNode},
    {"FuncNodeType", &findFunctionNode},
    {"ParamNodeType", &findParamsGraphNode},
    {"GUIObjectType", &findGuiObject},
};

// The place of a parameter's value in a path's text, none if the key does not stand there.
std::optional<std::pair<std::size_t, std::size_t>> findValue(std::string_view text,
                                                             std::string_view key)
{
    std::size_t place = text.find('?');
    while (place != std::string_view::npos) {
        const std::size_t begin = place + 1;
        place = text.find('&', begin);
        const std::size_t end = place == std::string_view::npos ? text.size() : place;
        const std::string_view pair = text.substr(begin, end - begin);
        if (pair.substr(0, pair.find('=')) != key)
            continue;
        const std::size_t value = begin + std::min(key.size() + 1, pair.size());
        return std::make_pair(value, end - value);
    }
    return std::nullopt;
}

} // namespace

bool DataPath::isDataPath(std::string_view text)
{
    return text.substr(0, Scheme.size()) == Scheme;
}

DataPath::DataPath(std::string_view text)
{
    Q_ASSERT(isDataPath(text));
    text.remove_prefix(Scheme.size());
    const std::size_t question = text.find('?');
    std::string_view path = text.substr(0, question);
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        if (slash != 0)
            m_segments.emplace_back(path.substr(0, slash));
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    }
    if (question == std::string_view::npos)
        return;
    std::string_view query = text.substr(question + 1);
    while (!query.empty()) {
        const std::size_t ampersand = query.find('&');
        const std::string_view pair = query.substr(0, ampersand);
        const std::size_t equals = pair.find('=');
        if (!pair.empty())
            m_parameters.emplace_back(pair.substr(0, equals), equals == std::string_view::npos
                                                                  ? std::string_view()
                                                                  : pair.substr(equals + 1));
        query.remove_prefix(ampersand == std::string_view::npos ? query.size() : ampersand + 1);
    }
}

std::optional<std::string> DataPath::parameter(std::string_view key) const
{
    for (const auto& [name, value] : m_parameters)
        if (name == key)
            return value;
    return std::nullopt;
}

std::optional<Uid> DataPath::dependency() const
{
    return uidFromText(parameter(DataPathKey::Dependency));
}

const BaseObject* DataPath::resolve(const Package& package) const
{
    const BaseObject* object = &package;
    for (const std::string& segment : m_segments) {
        object = findContent(*object, segment);
        if (object == nullptr)
            return nullptr;
    }
    bool isTyped = false;
    for (const auto& [name, value] : m_parameters)
        isTyped = isTyped || name != DataPathKey::Dependency;
    if (!isTyped)
        return object;
    const auto type = parameter(DataPathKey::Type);
    for (const PathKind& kind : PathKinds)
        if (type && kind.name == *type)
            return kind.find(*object, TypedQuery{*this});
    return nullptr;
}

std::optional<Uid> DataPath::dependencyOf(std::string_view text)
{
    const auto place = findValue(text, DataPathKey::Dependency);
    return place ? uidFromText(text.substr(place->first, place->second)) : std::nullopt;
}

std::string DataPath::withParameter(std::string_view text, std::string_view key,
                                    std::string_view value)
{
    std::string result(text);
    if (const auto place = findValue(text, key)) {
        const bool hasEquals = place->first > 0 && text[place->first - 1] == '=';
        result.replace(place->first, place->second,
                       hasEquals ? std::string(value) : "=" + std::string(value));
        return result;
    }
    result += text.find('?') == std::string_view::npos ? '?' : '&';
    result += key;
    result += '=';
    result += value;
    return result;
}

std::string DataPath::withSegment(std::string_view text, std::size_t index,
                                  std::string_view identifier)
{
    Q_ASSERT(isDataPath(text));
    std::string result(text);
    const std::size_t end = std::min(text.find('?'), text.size());
    for (std::size_t begin = Scheme.size(); begin < end; ++begin) {
        if (text[begin] == '/')
            continue;
        const std::size_t slash = std::min(text.find('/', begin), end);
        if (index-- == 0)
            return result.replace(begin, slash - begin, identifier);
        begin = slash;
    }
    return result;
}

} // namespace Ksx::Core
