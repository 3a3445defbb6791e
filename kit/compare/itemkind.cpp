#include "compare/itemkind.h"

#include "data/attribute.h"
#include "data/containerstruct.h"
#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace Ksx::Kit {

namespace {

using Orv::Data::BaseObject;

constexpr ItemKind Kinds[] = {
    {"package", "package", "", "identifier", false},
    {"group", "group", "uid", "identifier", false},
    {"graph", "graph", "uid", "identifier", false},
    {"function", "function", "uid", "identifier", false},
    {"resource", "resource", "uid", "identifier", false},
    {"dependency", "dependency", "", "filename", false},
    {"paraminput", "input", "uid", "identifier", true},
    {"graphoutput", "output", "uid", "identifier", true},
    {"compNode", "node", "uid", "", false},
    {"compOutput", "node output", "uid", "", false},
    {"connexion", "connection", "", "identifier", false},
    {"parameter", "parameter", "", "name", false},
    {"outputBridging", "bridged output", "", "identifier", false},
    {"rootOutput", "rendered output", "output", "", false},
    {"paramNode", "function node", "uid", "", false},
    {"funcData", "constant", "", "name", false},
    {"paramsArray", "parameter list", "uid", "name", false},
    {"paramsArrayCell", "cell", "uid", "", true},
    {"paramsGraph", "parameter graph", "uid", "name", false},
    {"paramsGraphData", "parameter set", "uid", "identifier", false},
    {"paramsGraphNode", "parameter node", "uid", "", false},
    {"GUIObject", "comment", "uid", "", false},
    {"option", "option", "", "name", false},
    {"usage", "usage", "", "name", true},
    {"configurations", "configuration", "uid", "name", false},
};

constexpr ItemKind Unlisted = {"", "item", "", "", true};

} // namespace

const ItemKind& kindOf(const BaseObject& item)
{
    static const auto all = [] {
        std::unordered_map<std::string_view, const ItemKind*> kinds;
        for (const ItemKind& kind : Kinds)
            kinds.emplace(kind.element, &kind);
        return kinds;
    }();
    const auto found = all.find(item.getMeta().name);
    return found == all.end() ? Unlisted : *found->second;
}

const BaseObject* memberOf(const BaseObject& structure, std::string_view element)
{
    if (structure.kind() != Orv::Data::ObjectKind::Struct || element.empty())
        return nullptr;
    const auto members = static_cast<const Orv::Data::ContainerStructBase&>(structure).members();
    for (std::size_t i = 0; i < members.count; ++i)
        if (members.rows[i].meta->name == element)
            return members.object(i);
    return nullptr;
}

std::optional<unsigned> uidOf(const BaseObject& item)
{
    const BaseObject* const uid = memberOf(item, kindOf(item).uid);
    if (uid == nullptr)
        return std::nullopt;
    return static_cast<const Orv::Data::Attribute<Orv::Data::UInt>*>(uid)->get();
}

const std::string* nameOf(const BaseObject& item)
{
    const BaseObject* const name = memberOf(item, kindOf(item).name);
    if (name == nullptr)
        return nullptr;
    return &static_cast<const Orv::Data::Attribute<Orv::Data::Text>*>(name)->get();
}

bool isFact(const Orv::Data::ObjectMeta& meta)
{
    constexpr std::string_view Others[] = {"uid",     "formatVersion", "updaterVersion",
                                           "fileUID", "versionUID",    "dependencies",
                                           "content"};
    return std::find(std::begin(Others), std::end(Others), meta.name) == std::end(Others);
}

bool isLayout(const Orv::Data::ObjectMeta& meta)
{
    constexpr std::string_view Prefix = "GUI";
    return meta.name.substr(0, Prefix.size()) == Prefix ||
           meta.messageMask == Orv::Data::MessageMask::Presentation;
}

bool isNote(const Orv::Data::ObjectMeta& meta)
{
    return meta.name == "GUIObjects" || meta.name == "GUIName";
}

Items itemsOf(const Orv::Data::ContainerListBase& list)
{
    Items items(list.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i] = list.childAt(i);
    return items;
}

} // namespace Ksx::Kit
