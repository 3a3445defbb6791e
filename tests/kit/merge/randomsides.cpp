#include "kit/merge/randomsides.h"

#include "core/manipulatorlist.h"
#include "data/attribute.h"
#include "data/content/compnode.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/content/paraminput.h"
#include "data/content/paramsarraycell.h"
#include "data/content/usage.h"
#include "data/treewalk.h"
#include "ksx/core/plainroute.h"
#include <algorithm>
#include <array>
#include <memory>

namespace TestSupport {

namespace Doc = Ksx::Data::Content;
using Orv::Data::AttributeBase;
using Orv::Data::BaseObject;
using Orv::Data::ObjectKind;

namespace {

constexpr std::array<std::string_view, 8> Texts = {"label",    "desc",  "description", "tags",
                                                   "category", "group", "usertags",    "GUIName"};

bool isItem(const BaseObject& object)
{
    return object.getParent() == nullptr || object.getParent()->kind() == ObjectKind::List;
}

bool isIn(const BaseObject& leaf, std::string_view prefix)
{
    return leaf.getParent()->getMeta().name.substr(0, prefix.size()) == prefix;
}

// Returns the nearest item that an object is in, or is.
BaseObject& itemOf(BaseObject& object)
{
    BaseObject* item = &object;
    while (!isItem(*item))
        item = item->getParent();
    return *item;
}

bool isConstant(const Doc::Parameter& parameter)
{
    const BaseObject* const value = parameter.paramValue().get();
    return value != nullptr && value->getMeta().name != "dynamicValue";
}

template <class Item>
void erase(const Item& item)
{
    const auto& list = static_cast<const Orv::Data::ContainerList<Item>&>(*item.getParent());
    const std::size_t place = list.indexOf(item);
    Ksx::Core::editPlainly([&](Orv::Core::ManipulatorContext& context) {
        Orv::Core::ManipulatorList<Item>(list, context).erase(place, 1);
        return true;
    });
}

template <class Item>
void moveIfItemsAre(const Orv::Data::ContainerListBase& items, std::size_t from, std::size_t to)
{
    const auto* const list = dynamic_cast<const Orv::Data::ContainerList<Item>*>(&items);
    if (list == nullptr)
        return;
    Ksx::Core::editPlainly([&](Orv::Core::ManipulatorContext& context) {
        Orv::Core::ManipulatorList<Item>(*list, context)
            .move(from, static_cast<std::ptrdiff_t>(to) - static_cast<std::ptrdiff_t>(from));
        return true;
    });
}

} // namespace

void RandomSides::change(Doc::Package& package, std::uint32_t side)
{
    // Both sides draw the same numbers for the owners of the items, and others for the changes.
    std::mt19937 owners(m_seed);
    m_random.seed(m_seed + 1 + side);
    m_removed.clear();
    std::vector<BaseObject*> own;
    Orv::Data::visitTree(static_cast<BaseObject&>(package), [&](BaseObject& object) {
        if (isItem(object) && owners() % 2 == side)
            own.push_back(&object);
    });
    addNodes(package);
    for (BaseObject* const item : own)
        if (draw(8) == 0)
            changeItem(*item);
    removeChosen();
}

void RandomSides::changeItem(BaseObject& item)
{
    const auto* const parameter = dynamic_cast<Doc::Parameter*>(&item);
    const bool isConnexion = item.getMeta().name == "connexion";
    if ((isConnexion || (parameter != nullptr && isConstant(*parameter))) && draw(3) == 0) {
        m_removed.push_back(&item);
        return;
    }
    std::vector<Orv::Data::ContainerListBase*> lists;
    Orv::Data::visitTree(item, [&](BaseObject& object) {
        if (&itemOf(object) != &item)
            return;
        if (object.kind() == ObjectKind::Attribute)
            changeValue(static_cast<AttributeBase&>(object));
        if (object.kind() == ObjectKind::List)
            lists.push_back(&static_cast<Orv::Data::ContainerListBase&>(object));
    });
    for (Orv::Data::ContainerListBase* const list : lists)
        if (list->size() > 1 && draw(3) == 0)
            moveItem(*list);
}

void RandomSides::moveItem(const Orv::Data::ContainerListBase& list)
{
    const auto count = static_cast<std::uint32_t>(list.size());
    const std::size_t from = draw(count);
    const std::size_t to = draw(count);
    moveIfItemsAre<Doc::ParamInput>(list, from, to);
    moveIfItemsAre<Doc::Usage>(list, from, to);
    moveIfItemsAre<Doc::CompNode>(list, from, to);
    moveIfItemsAre<Doc::Connexion>(list, from, to);
    moveIfItemsAre<Doc::Parameter>(list, from, to);
    moveIfItemsAre<Doc::ParamsArrayCell>(list, from, to);
}

// Names, references and types are left alone: others depend on them.
void RandomSides::changeValue(AttributeBase& leaf)
{
    const std::string_view name = leaf.getMeta().name;
    const bool isParameter = itemOf(leaf).getMeta().name == "parameter";
    if (std::find(Texts.begin(), Texts.end(), name) != Texts.end())
        leaf.fromString("text " + std::to_string(draw(1000)));
    else if (name == "value" && isParameter && isIn(leaf, "constantValueFloat1"))
        leaf.fromString(std::to_string(draw(1000)) + ".5");
    else if (name == "gpos")
        leaf.fromString(std::to_string(draw(1000)) + " 1 0");
}

// A node of its own, fed by one that was there.
void RandomSides::addNodes(Doc::Package& package)
{
    std::vector<Doc::Graph*> graphs;
    Orv::Data::visitTree(static_cast<BaseObject&>(package), [&](BaseObject& object) {
        if (auto* const graph = dynamic_cast<Doc::Graph*>(&object))
            graphs.push_back(graph);
    });
    for (Doc::Graph* const graph : graphs) {
        auto node = std::make_unique<Doc::CompNode>();
        node->uid().assign(draw(0xFFFFFFFFu));
        auto filter = std::make_unique<Doc::CompFilter>();
        filter->filter().assign(draw(2) == 0 ? "blur" : "levels");
        node->compImplementation().set(std::move(filter));
        if (!graph->compNodes().isEmpty()) {
            const auto count = static_cast<std::uint32_t>(graph->compNodes().size());
            const Doc::CompNode& feeding = graph->compNodes().at(draw(count));
            auto connexion = std::make_unique<Doc::Connexion>();
            connexion->identifier().assign("input1");
            connexion->connRef().value().assign(feeding.uid().get());
            node->connexions().pushBack(std::move(connexion));
        }
        graph->compNodes().pushBack(std::move(node));
    }
}

void RandomSides::removeChosen()
{
    for (const BaseObject* const item : m_removed) {
        if (item->getMeta().name == "parameter")
            erase(static_cast<const Doc::Parameter&>(*item));
        else
            erase(static_cast<const Doc::Connexion&>(*item));
    }
}

} // namespace TestSupport
