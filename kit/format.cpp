#include "ksx/kit/format.h"

#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include <map>
#include <memory>
#include <string_view>
#include <utility>

namespace Ksx::Kit {

namespace {

using namespace Data::Content;
using Orv::Data::Attribute;
using Orv::Data::ContainerListBase;
using Orv::Data::ContainerUnionBase;
using Orv::Data::MemberSpan;
using Orv::Data::ValueFlag;

std::string textOf(const Text& value)
{
    return value;
}
std::string textOf(UInt value)
{
    return std::to_string(value);
}
// No other type has a declared default.
template <class T>
std::string textOf(const T&)
{
    return {};
}

// Describes a member if it is a value of type T.
template <class T>
bool describe(const BaseObject& object, const char* type, FormatMember& member)
{
    const auto* attribute = dynamic_cast<const Attribute<T>*>(&object);
    if (attribute == nullptr)
        return false;
    const T value = attribute->getDefaultValue();
    member.type = type;
    member.defaultValue = value == T{} ? std::string() : textOf(value);
    return true;
}

void describeValue(const BaseObject& object, FormatMember& member)
{
    static_cast<void>(
        describe<Text>(object, "string", member) || describe<bool>(object, "bool", member) ||
        describe<UInt>(object, "uint32", member) || describe<float>(object, "float", member) ||
        describe<Float1>(object, "float1", member) || describe<Float2>(object, "float2", member) ||
        describe<Float3>(object, "float3", member) || describe<Float4>(object, "float4", member) ||
        describe<Int1>(object, "int1", member) || describe<Int2>(object, "int2", member) ||
        describe<Int3>(object, "int3", member) || describe<Int4>(object, "int4", member));
}

template <class... Classes>
std::vector<std::string_view> namesOf()
{
    return {Classes::MetaTag::record.name...};
}

// Returns the elements that are items of any list or choices of any union. Each list is asked which
// of them are its own, since its type is known to it alone.
std::vector<std::string_view> allItemNames()
{
    std::vector<std::string_view> names =
        namesOf<Group, Resource, Graph, Function, Configurations, Dependency, Option, Usage,
                ParamInput, GraphOutput, CompNode, CompOutput, Connexion, Parameter, OutputBridging,
                ParamNode, FuncData, ParamsArray, ParamsArrayCell, ParamsGraph, ParamsGraphData,
                ParamsGraphNode, GUIObject, RootOutput, StructType<Text>::ValueOverload>();
    const auto add = [&](const auto& more) { names.insert(names.end(), more.begin(), more.end()); };
    add(std::decay_t<decltype(std::declval<Resource&>().source())>::childNames());
    add(CompImplementation::childNames());
    add(ParamValue::childNames());
    return names;
}

// Goes through new objects of all structures, each structure once.
class FormatWalk
{
public:
    std::vector<FormatStructure> take(const ContainerStructBase& root)
    {
        nameOf(root);
        return std::move(m_structures);
    }

private:
    std::string nameOf(const ContainerStructBase& structure);
    FormatMember memberOf(const BaseObject& object);
    template <class Parent>
    std::vector<FormatItem> itemsOf(const Parent& parent);

    const std::vector<std::string_view> m_itemNames = allItemNames();
    std::vector<FormatStructure> m_structures;
    // By the table of the members, which a structure has under whatever name it is bound.
    std::map<const Orv::Data::MemberRow*, std::string> m_names;
};

// Values that may be overloaded have one structure for each type, whatever their element is.
std::string newNameOf(const ContainerStructBase& structure)
{
    const MemberSpan members = structure.members();
    std::string name(structure.getMeta().name);
    if (members.rows[0].meta->name != "value")
        return name;
    FormatMember value;
    describeValue(*members.object(0), value);
    return (members.rows[1].meta->name == "valueOverloads" ? "overloadable." : "overload.") +
           value.type;
}

std::string FormatWalk::nameOf(const ContainerStructBase& structure)
{
    const MemberSpan members = structure.members();
    const auto known = m_names.find(members.rows);
    if (known != m_names.end())
        return known->second;
    std::string name = newNameOf(structure);
    m_names.emplace(members.rows, name);
    const std::size_t place = m_structures.size();
    m_structures.push_back({name, {}});
    std::vector<FormatMember> described;
    for (std::size_t i = 0; i < members.count; ++i)
        described.push_back(memberOf(*members.object(i)));
    m_structures[place].members = std::move(described);
    return name;
}

FormatMember FormatWalk::memberOf(const BaseObject& object)
{
    const Orv::Data::ObjectMeta& meta = object.getMeta();
    FormatMember member;
    member.element = meta.name;
    member.isRequired = !meta.isOptional;
    member.isFilePath = (meta.valueFlags & ValueFlag::FilePath) != 0;
    if (const auto* structure = dynamic_cast<const ContainerStructBase*>(&object)) {
        member.kind = MemberKind::Structure;
        member.structure = nameOf(*structure);
    } else if (const auto* list = dynamic_cast<const ContainerListBase*>(&object)) {
        member.kind = MemberKind::List;
        member.items = itemsOf(*list);
    } else if (const auto* choices = dynamic_cast<const ContainerUnionBase*>(&object)) {
        member.kind = MemberKind::Union;
        member.items = itemsOf(*choices);
    } else {
        describeValue(object, member);
    }
    return member;
}

template <class Parent>
std::vector<FormatItem> FormatWalk::itemsOf(const Parent& parent)
{
    std::vector<FormatItem> items;
    for (const std::string_view name : m_itemNames) {
        const std::unique_ptr<BaseObject> item = parent.createChild(name);
        if (const auto* structure = dynamic_cast<const ContainerStructBase*>(item.get()))
            items.push_back({std::string(name), nameOf(*structure)});
    }
    return items;
}

} // namespace

std::vector<FormatStructure> packageFormat()
{
    return FormatWalk().take(Package());
}

} // namespace Ksx::Kit
