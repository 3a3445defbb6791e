#include "data/attribute.h"
#include "data/container.h"
#include "data/content/attributes.h"
#include "data/content/binboon.h"
#include "data/content/binembedded.h"
#include "data/content/compexternal.h"
#include "data/content/compexternallink.h"
#include "data/content/compfilter.h"
#include "data/content/compimplementation.h"
#include "data/content/compinputbridge.h"
#include "data/content/compinstance.h"
#include "data/content/compnode.h"
#include "data/content/compoutput.h"
#include "data/content/compoutputbridge.h"
#include "data/content/configurations.h"
#include "data/content/connexion.h"
#include "data/content/constantvalues.h"
#include "data/content/defaultvalue.h"
#include "data/content/defaultwidget.h"
#include "data/content/dependency.h"
#include "data/content/dynamicvalue.h"
#include "data/content/externalcopy.h"
#include "data/content/funcdata.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/graphoutput.h"
#include "data/content/group.h"
#include "data/content/guilayout.h"
#include "data/content/guilayoutcomp.h"
#include "data/content/guiobject.h"
#include "data/content/option.h"
#include "data/content/outputbridging.h"
#include "data/content/package.h"
#include "data/content/packageslist.h"
#include "data/content/parameter.h"
#include "data/content/paraminput.h"
#include "data/content/paramnode.h"
#include "data/content/paramsarray.h"
#include "data/content/paramsarraycell.h"
#include "data/content/paramsgraph.h"
#include "data/content/paramsgraphdata.h"
#include "data/content/paramsgraphnode.h"
#include "data/content/paramvalue.h"
#include "data/content/resource.h"
#include "data/content/root.h"
#include "data/content/rootoutput.h"
#include "data/content/usage.h"
#include "data/content/valueclasses.h"
#include "data/treewalk.h"
#include "support/golden.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <set>
#include <sstream>

using namespace Ksx::Data::Content;
using Orv::Data::Attribute;
using Orv::Data::ContainerListBase;
using Orv::Data::ContainerUnionBase;
using Orv::Data::MemberSpan;
using Orv::Data::MessageMask;
using Orv::Data::ObjectKind;
using Orv::Data::ObjectMeta;
using Orv::Data::ValueFlag;

namespace {

using Lines = std::vector<std::string>;

// One class of the schema, under the name by which the table calls it.
struct SchemaClass
{
    std::string title;
    std::string name; // of the test
    std::unique_ptr<BaseObject> (*create)();
    bool (*isClassOf)(const BaseObject&);
};

void PrintTo(const SchemaClass& one, std::ostream* stream)
{
    *stream << one.title;
}

template <class T>
SchemaClass schemaClass(const std::string& title)
{
    std::string name = title;
    name.erase(
        std::remove_if(name.begin(), name.end(), [](char c) { return c == '<' || c == '>'; }),
        name.end());
    return {title, name, []() -> std::unique_ptr<BaseObject> { return std::make_unique<T>(); },
            [](const BaseObject& object) { return dynamic_cast<const T*>(&object) != nullptr; }};
}

template <class T>
using Overload = typename StructType<T>::ValueOverload;

#define CLASS(name) schemaClass<name>(#name)
const std::vector<SchemaClass>& schemaClasses()
{
    static const std::vector<SchemaClass> classes{
        CLASS(Package),
        CLASS(Configurations),
        CLASS(Dependency),
        CLASS(Group),
        CLASS(Resource),
        CLASS(ExternalCopy),
        CLASS(BinBoon),
        CLASS(BinEmbedded),
        CLASS(Attributes),
        CLASS(Options),
        CLASS(Option),
        CLASS(GUILayout),
        CLASS(GUILayoutComp),
        CLASS(GUIObject),
        CLASS(PackagesList),
        CLASS(PackagesListContent),
        CLASS(Graph),
        CLASS(GraphInputsList),
        CLASS(GraphOutputsList),
        CLASS(GraphCompositeNodesList),
        CLASS(GraphParametersList),
        CLASS(Function),
        CLASS(ParamInput),
        CLASS(GraphOutput),
        CLASS(Usage),
        CLASS(DefaultValue),
        CLASS(DefaultWidget),
        CLASS(CompNode),
        CLASS(CompNodeOutputList),
        CLASS(CompNodeConnexionsList),
        CLASS(CompImplementation),
        CLASS(CompFilter),
        CLASS(FilterParamsList),
        CLASS(CompInstance),
        CLASS(CompInstanceParamsList),
        CLASS(OutputBridgings),
        CLASS(CompInputBridge),
        CLASS(CompOutputBridge),
        CLASS(CompExternal),
        CLASS(CompExternalLink),
        CLASS(CompOutput),
        CLASS(OutputBridging),
        CLASS(Connexion),
        CLASS(Parameter),
        CLASS(ParamValue),
        CLASS(ConstantValueString),
        CLASS(ConstantValueBool),
        CLASS(ConstantValueInt32),
        CLASS(ConstantValueFloat),
        CLASS(ConstantValueFloat1),
        CLASS(ConstantValueFloat2),
        CLASS(ConstantValueFloat3),
        CLASS(ConstantValueFloat4),
        CLASS(ConstantValueInt1),
        CLASS(ConstantValueInt2),
        CLASS(ConstantValueInt3),
        CLASS(ConstantValueInt4),
        CLASS(DynamicValue),
        CLASS(ParamNodesList),
        CLASS(ParamNode),
        CLASS(ParamNodeConnexionsList),
        CLASS(FuncData),
        CLASS(ParamsArray),
        CLASS(ParamsArrayCell),
        CLASS(ParamsGraph),
        CLASS(ParamsGraphData),
        CLASS(ParamsGraphNode),
        CLASS(Root),
        CLASS(RootOutputList),
        CLASS(RootOutput),
        CLASS(Path),
        CLASS(Type),
        CLASS(CompType),
        CLASS(Format),
        CLASS(Disabled),
        CLASS(ConnRef),
        CLASS(ConnRefOutput),
        CLASS(RootNode),
        schemaClass<Overload<Text>>("ValueOverload<string>"),
        schemaClass<Overload<bool>>("ValueOverload<bool>"),
        schemaClass<Overload<UInt>>("ValueOverload<uint32>"),
        schemaClass<Overload<float>>("ValueOverload<float>"),
        schemaClass<Overload<Float1>>("ValueOverload<float1>"),
        schemaClass<Overload<Float2>>("ValueOverload<float2>"),
        schemaClass<Overload<Float3>>("ValueOverload<float3>"),
        schemaClass<Overload<Float4>>("ValueOverload<float4>"),
        schemaClass<Overload<Int1>>("ValueOverload<int1>"),
        schemaClass<Overload<Int2>>("ValueOverload<int2>"),
        schemaClass<Overload<Int3>>("ValueOverload<int3>"),
        schemaClass<Overload<Int4>>("ValueOverload<int4>")};
    return classes;
}
#undef CLASS

// --- from an object to its lines

struct LeafForm
{
    std::string type;
    std::string defaultText; // of the declared default; empty if that is the type's empty value
};

std::string textOf(const Text& value)
{
    return value;
}
std::string textOf(UInt value)
{
    return std::to_string(value);
}
template <class T>
std::string textOf(const T&)
{
    return "a default that no table knows";
}

template <class T>
bool findForm(const BaseObject& object, const char* type, LeafForm& form)
{
    const auto* attribute = dynamic_cast<const Attribute<T>*>(&object);
    if (attribute == nullptr)
        return false;
    const T value = attribute->getDefaultValue();
    form = {type, value == T{} ? std::string() : textOf(value)};
    return true;
}

LeafForm leafForm(const BaseObject& object)
{
    LeafForm form;
    static_cast<void>(
        findForm<Text>(object, "string", form) || findForm<bool>(object, "bool", form) ||
        findForm<UInt>(object, "uint32", form) || findForm<float>(object, "float", form) ||
        findForm<Float1>(object, "float1", form) || findForm<Float2>(object, "float2", form) ||
        findForm<Float3>(object, "float3", form) || findForm<Float4>(object, "float4", form) ||
        findForm<Int1>(object, "int1", form) || findForm<Int2>(object, "int2", form) ||
        findForm<Int3>(object, "int3", form) || findForm<Int4>(object, "int4", form));
    return form;
}

// All element names that a list or union could know, each once. Those of a union stand in the order
// in which its class tries them; which class a name selects does not depend on the order, since
// the names of one list are unique.
const std::vector<std::string>& candidateNames()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all{"group", "resource", "graph", "function"};
        const auto add = [&](std::string_view name) {
            if (std::find(all.begin(), all.end(), name) == all.end())
                all.emplace_back(name);
        };
        for (const auto name : std::decay_t<decltype(Resource().source())>::childNames())
            add(name);
        for (const auto name : CompImplementation::childNames())
            add(name);
        for (const auto name : ParamValue::childNames())
            add(name);
        for (const SchemaClass& one : schemaClasses())
            add(one.create()->getMeta().name);
        return all;
    }();
    return names;
}

// The names for which a list or union makes a child.
template <class Parent>
std::string childNames(const Parent& parent)
{
    std::string names;
    for (const std::string& name : candidateNames()) {
        const std::unique_ptr<BaseObject> child = parent.createChild(name);
        if (child == nullptr)
            continue;
        EXPECT_EQ(child->getMeta().name, name);
        EXPECT_EQ(child->getParent(), nullptr);
        names += (names.empty() ? "" : " ") + name;
    }
    return names;
}

// What a list, a union or an overloadable value is made of, whatever class it has.
std::string formOf(const BaseObject& object)
{
    if (const auto* list = dynamic_cast<const ContainerListBase*>(&object))
        return "list(" + childNames(*list) + ")";
    if (const auto* alternatives = dynamic_cast<const ContainerUnionBase*>(&object))
        return "union(" + childNames(*alternatives) + ")";
    if (dynamic_cast<const ValueOverloadable<UInt>*>(&object) != nullptr)
        return "overloadable(uint32)";
    return "a structure that no table knows";
}

std::string typeOf(const BaseObject& object)
{
    if (object.kind() == ObjectKind::Attribute)
        return leafForm(object).type;
    for (const SchemaClass& one : schemaClasses())
        if (one.isClassOf(object))
            return one.title;
    return formOf(object);
}

std::string lineOf(const BaseObject& object)
{
    const ObjectMeta& meta = object.getMeta();
    const std::string defaultText = leafForm(object).defaultText;
    return std::string(meta.name) + " " + typeOf(object) +
           (meta.isOptional ? " optional" : " required") +
           (defaultText.empty() ? "" : " default=" + defaultText) +
           (meta.valueFlags == ValueFlag::FilePath ? " file-path" : "") +
           (meta.messageMask == MessageMask::Presentation ? " presentation" : "");
}

std::string headOf(const SchemaClass& one)
{
    return "[" + one.title + "] " + std::string(one.create()->getMeta().name);
}

// The block of a class, derived from a new object of it.
Lines linesOf(const SchemaClass& one)
{
    const std::unique_ptr<BaseObject> object = one.create();
    Lines lines{headOf(one)};
    if (object->kind() != ObjectKind::Struct)
        lines.push_back(formOf(*object));
    for (const auto place = object->createConstIterator(); !place->atEnd(); place->next())
        lines.push_back(lineOf(*place->get()));
    return lines;
}

// --- from the table to its lines

// With one blank between the columns, and without a default that is the type's empty value anyway:
// an object cannot tell whether it has been declared.
std::string normalized(const std::string& line)
{
    std::istringstream words(line);
    std::string result;
    for (std::string word; words >> word;)
        if (word != "default=0")
            result += (result.empty() ? "" : " ") + word;
    return result;
}

// The blocks of the golden table, each with its head.
std::vector<Lines> goldenBlocks()
{
    std::vector<Lines> blocks;
    std::istringstream text(TestSupport::readFile(TestSupport::goldenPath("schema.txt")));
    for (std::string line; std::getline(text, line);) {
        if (line.empty())
            continue;
        if (line.front() == '[')
            blocks.emplace_back();
        if (!blocks.empty())
            blocks.back().push_back(normalized(line));
    }
    return blocks;
}

Lines goldenBlock(const std::string& head)
{
    for (const Lines& block : goldenBlocks())
        if (block.front() == head)
            return block;
    return {};
}

template <class Array>
Lines asLines(const Array& names)
{
    return Lines(names.begin(), names.end());
}

} // namespace

TEST(Schema, HasTheClassesOfTheTable)
{
    Lines heads;
    for (const SchemaClass& one : schemaClasses())
        heads.push_back(headOf(one));
    Lines goldenHeads;
    for (const Lines& block : goldenBlocks())
        goldenHeads.push_back(block.front());
    EXPECT_EQ(heads, goldenHeads);
}

TEST(Schema, TriesTheSameConstantsEverywhere)
{
    Lines constants = asLines(ParamValue::childNames());
    constants.erase(constants.begin()); // dynamicValue
    EXPECT_EQ(asLines(DefaultValue::childNames()), constants);
    EXPECT_EQ(asLines(std::decay_t<decltype(FuncData().constantValue())>::childNames()), constants);
}

class SchemaOfClass : public testing::TestWithParam<SchemaClass>
{
protected:
    const std::unique_ptr<BaseObject> object = GetParam().create();
};

TEST_P(SchemaOfClass, IsThatOfTheTable)
{
    EXPECT_EQ(linesOf(GetParam()), goldenBlock(headOf(GetParam())));
}

TEST_P(SchemaOfClass, IsUnmodifiedWhenNew)
{
    EXPECT_FALSE(object->isModified());
    visitTree(*object, [](const BaseObject& part) {
        EXPECT_FALSE(part.isModified()) << part.getMeta().name;
    });
}

TEST_P(SchemaOfClass, OwnsItsMembers)
{
    visitTree(*object, [](const BaseObject& part) {
        for (const auto place = part.createConstIterator(); !place->atEnd(); place->next())
            EXPECT_EQ(place->get()->getParent(), &part) << place->get()->getMeta().name;
    });
}

TEST_P(SchemaOfClass, WalksTheSameMembersInEachWay)
{
    const auto* structure = dynamic_cast<const ContainerStructBase*>(object.get());
    const MemberSpan members = structure == nullptr ? MemberSpan{} : structure->members();
    const auto constPlace = object->createConstIterator();
    const auto place = object->createIterator();
    for (std::size_t i = 0; i < members.count; ++i) {
        EXPECT_EQ(constPlace->get(), members.object(i));
        EXPECT_EQ(place->get(), members.object(i));
        EXPECT_EQ(&members.object(i)->getMeta(), members.rows[i].meta);
        constPlace->next();
        place->next();
    }
    EXPECT_TRUE(constPlace->atEnd());
    EXPECT_TRUE(place->atEnd());
}

TEST_P(SchemaOfClass, HasNoOtherFlagsAndMasks)
{
    visitTree(*object, [](const BaseObject& part) {
        const ObjectMeta& meta = part.getMeta();
        EXPECT_TRUE(meta.messageMask == MessageMask::All || meta.messageMask == 1) << meta.name;
        EXPECT_TRUE(meta.valueFlags == 0 || meta.valueFlags == 1) << meta.name;
        EXPECT_EQ(meta.userData, nullptr) << meta.name;
    });
}

TEST_P(SchemaOfClass, HasMembersWithNamesOfTheirOwn)
{
    std::set<std::string_view> names;
    for (const auto place = object->createConstIterator(); !place->atEnd(); place->next())
        EXPECT_TRUE(names.insert(place->get()->getMeta().name).second);
}

INSTANTIATE_TEST_SUITE_P(All, SchemaOfClass, testing::ValuesIn(schemaClasses()),
                         TestSupport::caseName<SchemaClass>);
