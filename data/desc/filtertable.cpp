#include "data/desc/filtertable.h"

#include "data/desc/keys.h"
#include "data/desc/valuetype.h"
#include "data/vec.h"

namespace Ksx::Data::Desc {

namespace {

using Orv::Data::Vec;
using ValueType::Bool;
using ValueType::Color;
using ValueType::ColorImage;
using ValueType::ColorOrImage;
using ValueType::Float1;
using ValueType::Float2;
using ValueType::Float4;
using ValueType::FxMap;
using ValueType::GrayscaleImage;
using ValueType::Image;
using ValueType::Int1;
using ValueType::Int2;
using ValueType::Int3;
using ValueType::Pattern;
using ValueType::String;
using ValueType::Text;

using K = FilterKind;

constexpr const char* Slider = "slider";
constexpr const char* Angle = "angle";
constexpr const char* Palette = "color";
constexpr const char* Toggle = "togglebutton";
constexpr const char* Choice = "dropdownlist";
constexpr const char* Line = "text";
constexpr const char* Picture = "image";
constexpr const char* NoWidget = "";

constexpr const char* OwnGroup = "Filters_parameters";
constexpr const char* CommonGroup = "Common_parameters";
constexpr const char* InputGroup = "Input_parameters";

struct FilterRow
{
    FilterKind kind;
    const char* identifier;
    const char* prefix;
    unsigned outputTypes;
    unsigned flags;
};

struct SubNodeRow
{
    const char* filter;
    const char* identifier;
    const char* prefix;
};

// As many of the components count as the type has: a bool or an integer takes the first one.
struct DefaultRow
{
    float components[4];
};

constexpr DefaultRow all(float number)
{
    return {{number, number, number, number}};
}
constexpr DefaultRow zero = all(0);
constexpr DefaultRow identityMatrix = {{1, 0, 0, 1}};
constexpr DefaultRow opaqueBlack = {{0, 0, 0, 1}};

struct RoleRow
{
    bool isConnector;
    unsigned flags;
};

constexpr RoleRow Plain = {false, 0};
constexpr RoleRow Inherited = {false, ParameterFlag::Inheritable};
constexpr RoleRow Connector = {true, 0};
constexpr RoleRow PrimaryConnector = {true, ParameterFlag::Primary};

struct ParameterRow
{
    const char* owner;
    const char* identifier;
    const char* words;
    unsigned type;
    const char* widget;
    DefaultRow defaultValue;
    RoleRow role;
    const char* list = ""; // the list of records whose field it is
};

struct EnumerationRow
{
    const char* owner;
    const char* parameter;
    const char* items[17];
};

struct ExtraRow
{
    const char* owner;
    const char* parameter;
    const char* name;
    const char* value;
};

struct ListRow
{
    const char* filter;
    const char* identifier;
    const char* fields[3];
};

constexpr FilterRow Filters[] = {
#include "data/desc/filters.inc"
};

constexpr SubNodeRow SubNodes[] = {
#include "data/desc/subnodes.inc"
};

constexpr ParameterRow Parameters[] = {
#include "data/desc/parameters.inc"
};

constexpr EnumerationRow Enumerations[] = {
#include "data/desc/enumerations.inc"
};

constexpr ExtraRow Extras[] = {
#include "data/desc/extras.inc"
};

constexpr ListRow Lists[] = {
    {"gradient", "gradientalpha", {"position", "midpoint", "value"}},
    {"gradient", "gradientrgba", {"position", "midpoint", "value"}},
};

// Who has the parameters of a group, and how the keys of the parameters and of their items begin.
struct Owner
{
    std::string_view identifier;
    std::string prefix;
    std::string itemPrefix;
};

template <class T, std::size_t N>
Vec<T, N> vecOf(const DefaultRow& row)
{
    Vec<T, N> vec;
    for (std::size_t i = 0; i < N; ++i)
        vec[i] = static_cast<T>(row.components[i]);
    return vec;
}

boost::any defaultOf(const ParameterRow& row)
{
    boost::any empty = emptyValueOf(row.type);
    const std::type_info& shape = empty.type();
    if (shape == typeid(bool))
        return row.defaultValue.components[0] != 0;
    if (shape == typeid(unsigned))
        return static_cast<unsigned>(row.defaultValue.components[0]);
    if (shape == typeid(Vec<int, 2>))
        return vecOf<int, 2>(row.defaultValue);
    if (shape == typeid(Vec<int, 3>))
        return vecOf<int, 3>(row.defaultValue);
    if (shape == typeid(Vec<float, 1>))
        return vecOf<float, 1>(row.defaultValue);
    if (shape == typeid(Vec<float, 2>))
        return vecOf<float, 2>(row.defaultValue);
    if (shape == typeid(Vec<float, 4>))
        return vecOf<float, 4>(row.defaultValue);
    return empty; // a text, or no value at all
}

std::vector<ValueEntry> entriesOf(const ParameterRow& row, const Owner& owner)
{
    std::vector<ValueEntry> entries;
    for (const EnumerationRow& enumeration : Enumerations) {
        if (owner.identifier != enumeration.owner ||
            std::string_view(row.identifier) != enumeration.parameter)
            continue;
        for (const char* const item : enumeration.items) {
            if (!item)
                break;
            const std::string key = owner.itemPrefix + '_' + row.words + '_' + capitals(item);
            const auto index = static_cast<unsigned>(entries.size());
            entries.push_back({item, key + "_NAME", key + "_DESC", 0, index});
        }
    }
    return entries;
}

std::map<std::string, std::string> extrasOf(const ParameterRow& row, const Owner& owner)
{
    std::map<std::string, std::string> extras;
    for (const ExtraRow& extra : Extras)
        if (owner.identifier == extra.owner && std::string_view(row.identifier) == extra.parameter)
            extras.emplace(extra.name, extra.value);
    return extras;
}

Parameter parameterOf(const ParameterRow& row, const Owner& owner)
{
    const std::string key = owner.prefix + '_' + row.words;
    return {row.identifier,
            row.widget,
            row.type,
            row.role.flags,
            row.role.isConnector ? boost::any() : defaultOf(row),
            key + "_NAME",
            key + "_DESC",
            extrasOf(row, owner),
            entriesOf(row, owner)};
}

using Inputs = std::vector<const Parameter*>;

// The owner's rows, in order.
std::vector<const ParameterRow*> rowsOf(std::string_view owner)
{
    std::vector<const ParameterRow*> rows;
    for (const ParameterRow& row : Parameters)
        if (owner == row.owner)
            rows.push_back(&row);
    return rows;
}

// The lists of a filter have fields of the same names, and all of them are in its own group: there
// they stand at the index of their row.
ParameterList listOf(const ListRow& list, const ParameterGroup& group)
{
    const std::vector<const ParameterRow*> rows = rowsOf(list.filter);
    ParameterList described{list.identifier, {}};
    for (const std::string_view field : list.fields)
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (rows[i]->list == std::string_view(list.identifier) && rows[i]->identifier == field)
                described.fields.push_back(group.parameters()[i]);
    return described;
}

// Those that are connectors go to `inputs` as well.
void addParameters(ParameterGroup& group, const Owner& owner, Inputs& inputs)
{
    for (const ParameterRow* const row : rowsOf(owner.identifier)) {
        const Parameter& parameter = group.add(parameterOf(*row, owner));
        if (row->role.isConnector)
            inputs.push_back(&parameter);
    }
}

// The group of the filter's or the sub-node's own parameters.
ParameterGroupPointer makeOwnGroup(const Owner& owner, Inputs& inputs)
{
    const std::string key = owner.prefix + "_FILTER_PARAMETERS";
    auto group =
        std::make_shared<ParameterGroup>(GroupRole::Main, OwnGroup, key + "_NAME", key + "_DESC");
    addParameters(*group, owner, inputs);
    return group;
}

ParameterGroupPointer makeSharedGroup(GroupRole role, const Owner& owner)
{
    auto group = std::make_shared<ParameterGroup>(role, std::string(owner.identifier),
                                                  owner.prefix + "_NAME", owner.prefix + "_DESC");
    Inputs inputs;
    addParameters(*group, owner, inputs);
    return group;
}

SubNode subNodeOf(const SubNodeRow& row)
{
    const std::string prefix = row.prefix;
    SubNode node{row.identifier, prefix + "_NAME", prefix + "_DESC", nullptr, {}};
    node.group = makeOwnGroup({row.identifier, prefix, prefix}, node.inputs);
    return node;
}

std::unique_ptr<Filter> makeFilter(const FilterRow& row)
{
    const std::string prefix = row.prefix;
    auto filter = std::make_unique<Filter>();
    filter->identifier = row.identifier;
    filter->kind = static_cast<unsigned>(row.kind);
    filter->outputTypes = row.outputTypes;
    filter->flags = row.flags;
    filter->nameKey = prefix + "_NAME";
    filter->shortNameKey = prefix + "_SHORT_NAME";
    filter->descKey = prefix + "_DESC";
    filter->groups.push_back(makeOwnGroup({row.identifier, prefix, prefix}, filter->inputs));
    for (const ListRow& list : Lists)
        if (filter->identifier == list.filter)
            filter->lists.push_back(listOf(list, *filter->groups.front()));
    for (const SubNodeRow& node : SubNodes)
        if (filter->identifier == node.filter)
            filter->subNodes.push_back(subNodeOf(node));
    return filter;
}

} // namespace

ParameterGroupPointer makeCommonParameters()
{
    return makeSharedGroup(GroupRole::Common, {CommonGroup, "COMMON_PARAMETERS", "COMMON"});
}

ParameterGroupPointer makeInputParameters()
{
    return makeSharedGroup(GroupRole::Named, {InputGroup, "INPUT_PARAMETERS", "INPUT"});
}

FilterTable::FilterTable(const ParameterGroupPointer& commonParameters,
                         const ParameterGroupPointer& inputParameters)
{
    m_byKind.resize(std::size(Filters));
    for (const FilterRow& row : Filters) {
        std::unique_ptr<Filter> filter = makeFilter(row);
        filter->groups.push_back(commonParameters);
        if (row.kind == FilterKind::Bitmap)
            filter->groups.push_back(inputParameters);
        const Filter* const added = filter.get();
        m_filters.push_back(std::move(filter));
        m_list.push_back(added);
        m_byKind[added->kind] = added;
        m_byIdentifier.emplace(added->identifier, added);
    }
}

FilterTable::~FilterTable() = default;

const Filter* FilterTable::find(unsigned kind) const
{
    return kind < m_byKind.size() ? m_byKind[kind] : nullptr;
}

const Filter* FilterTable::find(std::string_view identifier) const
{
    const auto found = m_byIdentifier.find(identifier);
    return found == m_byIdentifier.end() ? nullptr : found->second;
}

} // namespace Ksx::Data::Desc
