#include "compare/objectcomparison.h"

#include "compare/pairscope.h"
#include "compare/words.h"
#include "contentplace.h"
#include "data/attributebase.h"
#include "data/containerstruct.h"
#include "data/containerunion.h"
#include <utility>

namespace Ksx::Kit {

using Orv::Data::AttributeBase;
using Orv::Data::BaseObject;
using Orv::Data::ContainerListBase;
using Orv::Data::ContainerStructBase;
using Orv::Data::ContainerUnionBase;
using Orv::Data::ObjectKind;

namespace {

// Returns whether an item is a node of a graph or of a function. The nodes of a computed parameter
// are a part of the parameter.
bool isNode(const BaseObject& item)
{
    if (item.getMeta().name != "paramNode")
        return item.getMeta().name == "compNode";
    const BaseObject& body = *item.getParent()->getParent();
    return contentObjectOf(&item) == body.getParent()->getParent();
}

} // namespace

// A pair of items whose members are compared.
class ObjectComparison::Inside
{
public:
    Inside(ObjectComparison& comparison, const BaseObject& first, const BaseObject& second)
        : m_comparison(comparison), m_item(comparison.m_walk, second),
          m_nodeBefore(comparison.m_nodeBefore), m_nodeAfter(comparison.m_nodeAfter)
    {
        if (!isNode(second))
            return;
        comparison.m_nodeBefore = uidOf(first);
        comparison.m_nodeAfter = uidOf(second);
    }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
    ~Inside()
    {
        m_comparison.m_nodeBefore = m_nodeBefore;
        m_comparison.m_nodeAfter = m_nodeAfter;
    }

private:
    ObjectComparison& m_comparison;
    const Whereabouts::Item m_item;
    const std::optional<unsigned> m_nodeBefore;
    const std::optional<unsigned> m_nodeAfter;
};

// Adds a difference of the place of the walk.
void ObjectComparison::add(ChangeKind kind, const QString& before, const QString& after)
{
    m_differences.push_back({m_walk.location(), kind, before, after, m_nodeBefore, m_nodeAfter});
}

// Adds an item of one package alone.
void ObjectComparison::addItem(ChangeKind kind, const BaseObject& item)
{
    const bool isAdded = kind == ChangeKind::Added;
    const QString summary = summaryOf(item, m_folder);
    m_differences.push_back({m_walk.locationOf(item), kind, isAdded ? QString() : summary,
                             isAdded ? summary : QString(), m_nodeBefore, m_nodeAfter});
    Difference& one = m_differences.back();
    if (isNode(item))
        (isAdded ? one.nodeAfter : one.nodeBefore) = uidOf(item);
}

// The walk is inside of the item already.
void ObjectComparison::compareItem(const BaseObject& first, const BaseObject& second)
{
    const std::string* const former = nameOf(first);
    if (former != nullptr && *former != *nameOf(second))
        add(ChangeKind::Renamed, nameFor(first, m_folder), nameFor(second, m_folder));
    if (second.getMeta().name == "connexion")
        compareConnexions(first, second);
    else
        compareStructs(first, second);
}

bool ObjectComparison::counts(const BaseObject& member) const
{
    const Orv::Data::ObjectMeta& meta = member.getMeta();
    return isFact(meta) && (m_layout == LayoutFacts::All || !isLayout(meta) ||
                            (m_layout == LayoutFacts::Notes && isNote(meta)));
}

void ObjectComparison::compareMembers(const ContainerStructBase& first,
                                      const ContainerStructBase& second)
{
    const auto firstMembers = first.members();
    const auto secondMembers = second.members();
    const std::string_view name =
        &m_walk.item() == &second ? kindOf(second).name : std::string_view();
    for (std::size_t i = 0; i < firstMembers.count; ++i) {
        const BaseObject& member = *firstMembers.object(i);
        if (!counts(member) || member.getMeta().name == name)
            continue;
        compareMember(member, *secondMembers.object(i));
    }
}

void ObjectComparison::compareMember(const BaseObject& first, const BaseObject& second)
{
    // What has its default is the same whatever it is.
    if (!first.isModified() && !second.isModified())
        return;
    const Whereabouts::Member inside(m_walk, first.getMeta().name);
    switch (first.kind()) {
    case ObjectKind::Attribute:
        compareLeaves(static_cast<const AttributeBase&>(first),
                      static_cast<const AttributeBase&>(second));
        break;
    case ObjectKind::Struct:
        compareStructs(first, second);
        break;
    case ObjectKind::List: {
        const auto& list = static_cast<const ContainerListBase&>(first);
        compareLists(list, static_cast<const ContainerListBase&>(second),
                     m_scope == nullptr ? nullptr : m_scope->alignmentOf(list));
        break;
    }
    case ObjectKind::Union:
        compareUnions(static_cast<const ContainerUnionBase&>(first),
                      static_cast<const ContainerUnionBase&>(second));
        break;
    }
}

bool ObjectComparison::isSameValue(const AttributeBase& first, const AttributeBase& second)
{
    m_firstText.clear();
    m_secondText.clear();
    first.appendText(m_firstText);
    m_translation.appendText(second, m_secondText);
    return m_firstText == m_secondText;
}

void ObjectComparison::compareLeaves(const AttributeBase& first, const AttributeBase& second)
{
    if (isSameValue(first, second))
        return;
    const bool isPosition = first.getMeta().name == "gpos";
    add(isPosition ? ChangeKind::Moved : ChangeKind::Changed, textOf(first), textOf(second));
}

void ObjectComparison::compareUnions(const ContainerUnionBase& first,
                                     const ContainerUnionBase& second)
{
    if (!first.isEmpty() && !second.isEmpty() &&
        first.get()->getMeta().name == second.get()->getMeta().name)
        compareStructs(*first.get(), *second.get());
    else
        add(ChangeKind::Changed, textOf(first), textOf(second));
}

void ObjectComparison::compareStructs(const BaseObject& first, const BaseObject& second)
{
    const PairScope scope(first, second, m_translation);
    const PairScope* const outer = std::exchange(m_scope, &scope);
    compareMembers(static_cast<const ContainerStructBase&>(first),
                   static_cast<const ContainerStructBase&>(second));
    m_scope = outer;
}

// A connection has one value, which is two numbers.
void ObjectComparison::compareConnexions(const BaseObject& first, const BaseObject& second)
{
    if (!isSameMember(first, second, "connRef") || !isSameMember(first, second, "connRefOutput"))
        add(ChangeKind::Changed, summaryOf(first, m_folder), summaryOf(second, m_folder));
}

bool ObjectComparison::isSameMember(const BaseObject& first, const BaseObject& second,
                                    std::string_view element)
{
    const BaseObject& formerMember = *memberOf(first, element);
    const BaseObject& member = *memberOf(second, element);
    if (!formerMember.isModified() && !member.isModified())
        return true;
    return isSameValue(static_cast<const AttributeBase&>(*memberOf(formerMember, "value")),
                       static_cast<const AttributeBase&>(*memberOf(member, "value")));
}

void ObjectComparison::compareLists(const ContainerListBase& first, const ContainerListBase& second,
                                    const Alignment* known)
{
    const Items formerItems = itemsOf(first);
    const Items items = itemsOf(second);
    const Alignment own = known == nullptr ? align(formerItems, items, m_translation) : Alignment();
    const Alignment& alignment = known == nullptr ? own : *known;
    for (std::size_t i = 0; i < formerItems.size(); ++i) {
        const std::size_t partner = alignment.inSecond[i];
        if (partner == Alignment::None) {
            addItem(ChangeKind::Removed, *formerItems[i]);
            continue;
        }
        const Inside inside(*this, *formerItems[i], *items[partner]);
        compareItem(*formerItems[i], *items[partner]);
    }
    const bool isOrdered = !items.empty() && kindOf(*items.front()).isOrdered;
    const std::vector<bool> isMoved = isOrdered ? movedItems(alignment) : std::vector<bool>();
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::size_t former = alignment.inFirst[i];
        if (former == Alignment::None) {
            addItem(ChangeKind::Added, *items[i]);
        } else if (isOrdered && isMoved[i]) {
            const Inside inside(*this, *formerItems[former], *items[i]);
            add(ChangeKind::Moved, QString::number(former + 1), QString::number(i + 1));
        }
    }
}

bool isSame(const BaseObject& first, const BaseObject& second, Translation& translation)
{
    std::vector<Difference> differences;
    const QDir folder;
    Whereabouts walk(second, folder);
    ObjectComparison(translation, folder, LayoutFacts::Notes, walk, differences)
        .compareItem(first, second);
    return differences.empty();
}

} // namespace Ksx::Kit
