#include "merge/objectmerge.h"

#include "compare/objectcomparison.h"
#include "compare/references.h"
#include "merge/mergescope.h"
#include <algorithm>
#include <optional>
#include <utility>

namespace Ksx::Kit {

namespace {

using Orv::Data::AttributeBase;
using Orv::Data::BaseObject;
using Orv::Data::ContainerListBase;
using Orv::Data::ContainerStructBase;
using Orv::Data::ContainerUnionBase;
using Orv::Data::ObjectKind;

const QString BothChange = QStringLiteral("Both sides have changed it");
const QString BothAdd = QStringLiteral("Both sides have added it");
const QString BothOrder = QStringLiteral("Both sides have brought the items into another order");

// Facts that nobody minds to be those of either side.
bool isIndifferent(const BaseObject& leaf)
{
    constexpr std::string_view Indifferent[] = {"uid",           "versionUID",     "fileUID",
                                                "formatVersion", "updaterVersion", "display",
                                                "groi",          "gzoom"};
    const bool isListed = std::find(std::begin(Indifferent), std::end(Indifferent),
                                    leaf.getMeta().name) != std::end(Indifferent);
    return (isLayout(leaf.getMeta()) && !isNote(leaf.getMeta())) ||
           (isListed && !referenceOf(leaf));
}

// The same whichever side is which. A longer number is a greater one.
Side greater(const std::array<std::string, 2>& texts)
{
    const bool isOurs = texts[Ours].size() != texts[Theirs].size()
                            ? texts[Ours].size() > texts[Theirs].size()
                            : texts[Ours] > texts[Theirs];
    return isOurs ? Ours : Theirs;
}

const BaseObject* choiceOf(const BaseObject& choices)
{
    return static_cast<const ContainerUnionBase&>(choices).get();
}

std::string_view elementOf(const BaseObject* object)
{
    return object == nullptr ? std::string_view() : object->getMeta().name;
}

bool isMerged(const BaseObject& member)
{
    const std::string_view name = member.getMeta().name;
    return name != "content" && name != "dependencies";
}

} // namespace

void ObjectMerge::mergeItem(BaseObject& out, const PlannedItem& item)
{
    if (out.getMeta().name == "connexion")
        mergeConnexion(out, item.versions);
    else
        mergeStruct(out, item.versions);
    if (item.uid)
        static_cast<AttributeBase&>(const_cast<BaseObject&>(*memberOf(out, "uid")))
            .fromString(std::to_string(*item.uid));
}

void ObjectMerge::mergeStruct(BaseObject& out, const Trio& versions)
{
    const MergeScope scope(versions, m_state);
    const MergeScope* const outer = std::exchange(m_scope, &scope);
    mergeMembers(out, versions);
    m_scope = outer;
}

void ObjectMerge::mergeMembers(BaseObject& out, const Trio& versions)
{
    auto& members = static_cast<ContainerStructBase&>(out);
    for (std::size_t i = 0; i < members.childCount(); ++i) {
        BaseObject& member = *members.Orv::Data::Container::childAt(i);
        if (!isMerged(member))
            continue;
        const Whereabouts::Member inside(m_state.walk, member.getMeta().name);
        mergeMember(member, versions.mapped([i](const BaseObject& version) {
            return static_cast<const ContainerStructBase&>(version).childAt(i);
        }));
    }
}

void ObjectMerge::mergeMember(BaseObject& out, const Trio& versions)
{
    switch (out.kind()) {
    case ObjectKind::Attribute:
        mergeLeaf(static_cast<AttributeBase&>(out), versions);
        break;
    case ObjectKind::Struct:
        mergeStruct(out, versions);
        break;
    case ObjectKind::List: {
        const ListPlan* const known =
            m_scope == nullptr ? nullptr : m_scope->planOf(out.getMeta().name);
        mergeItems(static_cast<ContainerListBase&>(out),
                   known == nullptr ? planOf(versions, m_state) : *known);
        break;
    }
    case ObjectKind::Union:
        mergeUnion(static_cast<ContainerUnionBase&>(out), versions);
        break;
    }
}

std::string ObjectMerge::textOf(const Trio& versions, Side side) const
{
    std::string text;
    m_state.translations[side].appendText(static_cast<const AttributeBase&>(*versions.sides[side]),
                                          text);
    return text;
}

void ObjectMerge::addDisagreement(const Trio& versions)
{
    m_state.addConflict(versions, versions.base == nullptr ? BothAdd : BothChange);
}

void ObjectMerge::mergeLeaf(AttributeBase& out, const Trio& versions)
{
    if (!versions.hasBoth()) {
        write(out, textOf(versions, versions.sides[Ours] != nullptr ? Ours : Theirs));
        return;
    }
    const std::array<std::string, 2> texts{textOf(versions, Ours), textOf(versions, Theirs)};
    const std::string base = versions.base == nullptr
                                 ? std::string()
                                 : static_cast<const AttributeBase&>(*versions.base).toString();
    const auto won = winner(versions.base == nullptr ? nullptr : &base, texts);
    if (!won && !isIndifferent(out))
        addDisagreement(versions);
    const Side undecided = isIndifferent(out) ? greater(texts) : m_state.preferred();
    write(out, texts[won.value_or(undecided)]);
}

void ObjectMerge::write(AttributeBase& out, const std::string& text) const
{
    out.fromString(out.isText() ? m_state.paths.text(text) : text);
}

// A connection has one value, which is two numbers.
void ObjectMerge::mergeConnexion(BaseObject& out, const Trio& versions)
{
    const auto textOfSide = [&](Side side) {
        return versions.sides[side] == nullptr ? std::string()
                                               : connexionText(*versions.sides[side], &side);
    };
    const std::array<std::string, 2> texts{textOfSide(Ours), textOfSide(Theirs)};
    Side taken = versions.sides[Ours] != nullptr ? Ours : Theirs;
    if (versions.hasBoth()) {
        const std::string base =
            versions.base == nullptr ? std::string() : connexionText(*versions.base, nullptr);
        const auto won = winner(versions.base == nullptr ? nullptr : &base, texts);
        if (!won)
            addDisagreement(versions);
        taken = won.value_or(m_state.preferred());
    }
    Trio alone;
    alone.sides[taken] = versions.sides[taken];
    mergeStruct(out, alone);
}

std::string ObjectMerge::connexionText(const BaseObject& connexion, const Side* side) const
{
    std::string text;
    for (const std::string_view element : {"connRef", "connRefOutput"}) {
        const BaseObject& member = *memberOf(connexion, element);
        const auto& value = static_cast<const AttributeBase&>(*memberOf(member, "value"));
        text += ' ';
        if (member.isModified() && side != nullptr)
            m_state.translations[*side].appendText(value, text);
        else if (member.isModified())
            value.appendText(text);
    }
    return text;
}

bool ObjectMerge::isSameUnion(const BaseObject& base, const BaseObject& other, Side side)
{
    const BaseObject* const first = choiceOf(base);
    const BaseObject* const second = choiceOf(other);
    if (first == nullptr || second == nullptr)
        return first == second;
    return elementOf(first) == elementOf(second) &&
           isSame(*first, *second, m_state.translations[side]);
}

void ObjectMerge::mergeUnion(ContainerUnionBase& out, const Trio& versions)
{
    Trio choices = versions.mapped(&choiceOf);
    if (versions.hasBoth() && elementOf(choices.sides[Ours]) != elementOf(choices.sides[Theirs])) {
        Side taken = m_state.preferred();
        if (versions.base != nullptr && isSameUnion(*versions.base, *versions.sides[Ours], Ours))
            taken = Theirs;
        else if (versions.base != nullptr &&
                 isSameUnion(*versions.base, *versions.sides[Theirs], Theirs))
            taken = Ours;
        else
            addDisagreement(versions);
        choices.sides[otherSide(taken)] = nullptr;
        choices.base = nullptr;
    }
    if (choices.sides[Ours] == nullptr && choices.sides[Theirs] == nullptr)
        return;
    if (elementOf(choices.base) != elementOf(&choices.any()))
        choices.base = nullptr;
    out.set(out.createChild(choices.any().getMeta().name));
    mergeStruct(*out.get(), choices);
}

bool ObjectMerge::isKept(PlannedItem& item)
{
    Trio& versions = item.versions;
    if (versions.base == nullptr || versions.hasBoth())
        return true;
    if (versions.sides[Ours] == nullptr && versions.sides[Theirs] == nullptr)
        return false;
    const Side remover = versions.sides[Ours] == nullptr ? Ours : Theirs;
    const Side other = otherSide(remover);
    const bool isUsed = isNewlyUsed(item, other);
    if (!isUsed && isSame(*versions.base, versions.any(), m_state.translations[other]))
        return false;
    const bool isNode = connexionsOf(versions.any()) != nullptr;
    const char* const change = !isUsed ? "changed" : isNode ? "connected" : "used";
    m_state.addConflictOf(versions.any(), versions, removalText(remover, change));
    versions.base = nullptr;
    const bool isDropped = m_state.isDropped(remover);
    if (isDropped && isNode)
        m_state.droppedNodes.insert(*item.uid);
    return !isDropped;
}

bool ObjectMerge::isNewlyUsed(const PlannedItem& item, Side side) const
{
    if (!item.uid)
        return false;
    if (item.versions.any().getMeta().name == "dependency")
        return m_state.newlyUsedDependencies[side].count(*item.uid) == 1;
    return m_scope != nullptr && m_scope->isNewlyUsed(side, *item.uid);
}

bool ObjectMerge::isFedByDroppedNode(const Trio& connexions) const
{
    for (const Side side : BothSides) {
        const BaseObject* const version = connexions.sides[side];
        const auto feeding = version == nullptr ? std::nullopt : feedingNodeOf(*version);
        if (feeding && m_state.droppedNodes.count(
                           m_state.translations[side].number(Target::Node, *feeding)) == 1)
            return true;
    }
    return false;
}

void ObjectMerge::mergeItems(ContainerListBase& out, const ListPlan& plan)
{
    if (plan.hasTwoOrders)
        m_state.addConflict({}, BothOrder);
    // Known before the first item is merged, which may refer to others.
    std::vector<PlannedItem> kept;
    for (const PlannedItem& planned : plan.items) {
        PlannedItem item = planned;
        if (isKept(item))
            kept.push_back(item);
    }
    const bool isConnexions = out.getMeta().name == "connexions" && !m_state.droppedNodes.empty();
    for (const PlannedItem& item : kept) {
        if (isConnexions && isFedByDroppedNode(item.versions))
            continue;
        std::unique_ptr<BaseObject> child = out.createChild(item.versions.any().getMeta().name);
        BaseObject& merged = *child;
        out.pushBack(std::move(child));
        const Whereabouts::Item inside(m_state.walk, item.versions.any());
        mergeItem(merged, item);
    }
}

} // namespace Ksx::Kit
