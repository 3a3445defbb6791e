#include "compare/references.h"

#include "data/attribute.h"
#include "ksx/core/datapath.h"

namespace Ksx::Kit {

namespace {

using Orv::Data::BaseObject;
using Orv::Data::ContainerListBase;

struct Reference
{
    std::string_view owner; // the element of the structure
    std::string_view leaf;
    Target target;
};

constexpr Reference References[] = {
    {"connRef", "value", Target::Node},
    {"connRefOutput", "value", Target::NodeOutput},
    {"outputBridging", "uid", Target::OwnOutput},
    {"rootnode", "value", Target::Node},
    {"primaryInput", "value", Target::Input},
    {"compInputBridge", "entry", Target::Input},
    {"compOutputBridge", "output", Target::Output},
    {"rootOutput", "output", Target::Output},
    {"paramsGraphNode", "data", Target::ParameterSet},
};

} // namespace

std::optional<Target> referenceOf(const BaseObject& leaf)
{
    const BaseObject* const owner = leaf.getParent();
    if (owner == nullptr)
        return std::nullopt;
    const std::string_view name = leaf.getMeta().name;
    for (const Reference& one : References)
        if (one.leaf == name && one.owner == owner->getMeta().name)
            return one.target;
    return std::nullopt;
}

const BaseObject* nodeAround(const BaseObject& object)
{
    const BaseObject* around = &object;
    while (around != nullptr && around->getMeta().name != "compNode")
        around = around->getParent();
    return around;
}

std::optional<unsigned> feedingNodeOf(const BaseObject& connexion)
{
    const BaseObject& reference = *memberOf(connexion, "connRef");
    if (!reference.isModified())
        return std::nullopt;
    return static_cast<const Orv::Data::Attribute<Orv::Data::UInt>&>(*memberOf(reference, "value"))
        .get();
}

const ContainerListBase* listOf(const BaseObject& structure, std::string_view element)
{
    const BaseObject* const member = memberOf(structure, element);
    return member != nullptr && member->kind() == Orv::Data::ObjectKind::List
               ? static_cast<const ContainerListBase*>(member)
               : nullptr;
}

const ContainerListBase* connexionsOf(const BaseObject& node)
{
    return listOf(node, "connexions");
}

const ContainerListBase* nodesOf(const BaseObject& owner)
{
    const std::string_view name = owner.getMeta().name;
    if (name == "graph")
        return listOf(owner, "compNodes");
    if (name == "dynamicValue")
        return listOf(owner, "paramNodes");
    return name == "paramsGraph" ? listOf(owner, "paramsGraphNodes") : nullptr;
}

std::string segmentsOf(const std::string& path)
{
    const Core::DataPath parts(path);
    std::string joined;
    for (const std::string& segment : parts.segments())
        joined += (joined.empty() ? "" : "/") + segment;
    return joined;
}

} // namespace Ksx::Kit
