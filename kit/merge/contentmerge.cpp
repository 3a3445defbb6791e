#include "merge/contentmerge.h"

#include "compare/objectcomparison.h"
#include "contentplace.h"
#include "data/content/package.h"
#include "ksx/core/datapath.h"
#include "ksx/core/filereferences.h"
#include "merge/mergescope.h"
#include "merge/objectmerge.h"
#include "packageparts.h"
#include <unordered_set>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Orv::Data::BaseObject;
using Orv::Data::ContainerListBase;

constexpr std::size_t None = Alignment::None;

const QString BothMove = QStringLiteral("Both sides have moved it");

using UsesOfPaths = std::unordered_map<std::string, std::size_t>;

// Returns the data paths in a package, as the base has them, and how often each of them is there.
UsesOfPaths usesIn(const Doc::Package& package, const Translation& translation)
{
    UsesOfPaths uses;
    Core::visitTexts(package, [&](const Core::TextAttribute& text) {
        if (Core::DataPath::isDataPath(text.get()))
            ++uses[translation.text(text.get())];
    });
    return uses;
}

} // namespace

Trio PackageTrio::objects() const
{
    return {&base, {sides[Ours], sides[Theirs]}};
}

ContentMerge::ContentMerge(const PackageTrio& packages, MergeState& state, ObjectMerge& objects)
    : m_packages(packages), m_state(state),
      m_objects(objects), m_pairs{ContentPairs(packages.base, *packages.sides[Ours]),
                                  ContentPairs(packages.base, *packages.sides[Theirs])}
{
    for (const Side side : BothSides)
        m_pairs[side].addTo(m_state.translations[side]);
}

void ContentMerge::mergeInto(Doc::Package& out)
{
    planDependencies();
    findNewUses();
    planContent();
    chooseOwnersAndNames();
    dropRemoved();
    keepOwners();
    addPaths();
    m_objects.mergeMembers(out, m_packages.objects());
    m_objects.mergeItems(out.dependencies(), m_dependencies);
    build(out);
}

void ContentMerge::planDependencies()
{
    m_dependencies = planOf(m_packages.objects().mapped([](const BaseObject& package) {
        return memberOf(package, "dependencies");
    }),
                            m_state);
    for (const PlannedItem& item : m_dependencies.items) {
        for (const Side side : BothSides)
            if (const BaseObject* const version = item.versions.sides[side])
                m_state.translations[side].setDependency(*ownUidOf(*version), *item.uid);
        const BaseObject* const any =
            item.versions.base != nullptr ? item.versions.base : &item.versions.any();
        if (*nameOf(*any) == ItselfName)
            m_state.paths.setOwn(*item.uid);
    }
}

void ContentMerge::planContent()
{
    const ListPlan plan =
        planList(m_pairs[Ours].first(), {m_pairs[Ours].second(), m_pairs[Theirs].second()},
                 {m_pairs[Ours].alignment(), m_pairs[Theirs].alignment()}, m_state.translations,
                 m_state.preferred());
    for (const PlannedItem& item : plan.items) {
        for (const BaseObject* const version :
             {item.versions.base, item.versions.sides[Ours], item.versions.sides[Theirs]})
            if (version != nullptr)
                m_places.emplace(version, m_entries.size());
        m_entries.push_back({item});
    }
}

// Numbers of dependencies and paths are told to the translations by now.
void ContentMerge::findNewUses()
{
    const UsesOfPaths base = usesIn(m_packages.base, Translation());
    for (const Side side : BothSides)
        for (const auto& [path, count] :
             usesIn(*m_packages.sides[side], m_state.translations[side])) {
            const auto former = base.find(path);
            if (former != base.end() && former->second >= count)
                continue;
            m_newlyUsed[side].insert(segmentsOf(path));
            if (const auto dependency = Core::DataPath::dependencyOf(path))
                m_state.newlyUsedDependencies[side].insert(*dependency);
        }
}

std::size_t ContentMerge::ownerIn(const BaseObject* version) const
{
    const BaseObject* const owner = version == nullptr ? nullptr : contentOwnerOf(*version);
    return owner == nullptr ? None : m_places.at(owner);
}

std::size_t ContentMerge::chosenOwner(const Entry& entry)
{
    const Trio& versions = entry.item.versions;
    if (!versions.hasBoth())
        return ownerIn(&versions.any());
    const std::array<std::size_t, 2> owners{ownerIn(versions.sides[Ours]),
                                            ownerIn(versions.sides[Theirs])};
    const std::size_t base = ownerIn(versions.base);
    const auto won = winner(versions.base == nullptr ? nullptr : &base, owners);
    if (!won)
        m_state.addConflictOf(versions.any(), versions, BothMove);
    return owners[won.value_or(m_state.preferred())];
}

// A conflict of names is found again when the object is merged.
std::string ContentMerge::chosenName(const Entry& entry) const
{
    const Trio& versions = entry.item.versions;
    if (!versions.hasBoth())
        return *nameOf(versions.any());
    const std::array<std::string, 2> names{*nameOf(*versions.sides[Ours]),
                                           *nameOf(*versions.sides[Theirs])};
    const std::string* const base = versions.base == nullptr ? nullptr : nameOf(*versions.base);
    return names[winner(base, names).value_or(m_state.preferred())];
}

void ContentMerge::chooseOwnersAndNames()
{
    for (Entry& entry : m_entries) {
        const Trio& versions = entry.item.versions;
        if (versions.sides[Ours] == nullptr && versions.sides[Theirs] == nullptr) {
            entry.isKept = false;
            continue;
        }
        entry.owner = chosenOwner(entry);
        entry.name = chosenName(entry);
    }
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].isKept && isInItself(i)) {
            const Trio& versions = m_entries[i].item.versions;
            m_state.addConflictOf(versions.any(), versions,
                                  QStringLiteral("The sides have moved objects into each other"));
            breakCircle(i);
        }
}

bool ContentMerge::isInItself(std::size_t index) const
{
    std::unordered_set<std::size_t> known;
    std::size_t owner = m_entries[index].owner;
    while (owner != None && owner != index && known.insert(owner).second)
        owner = m_entries[owner].owner;
    return owner == index;
}

// Objects that are in each other go to their places on the preferred side, which has no circles.
void ContentMerge::breakCircle(std::size_t index)
{
    while (isInItself(index)) {
        bool hasMoved = false;
        std::size_t i = index;
        do {
            const std::size_t next = m_entries[i].owner;
            hasMoved = moveToPreferredPlace(i) || hasMoved;
            i = next;
        } while (i != index);
        if (!hasMoved)
            m_entries[index].owner = None;
    }
}

// Returns false if the object is there already, or if the preferred side lacks it.
bool ContentMerge::moveToPreferredPlace(std::size_t index)
{
    Entry& entry = m_entries[index];
    const BaseObject* const version = entry.item.versions.sides[m_state.preferred()];
    if (version == nullptr || ownerIn(version) == entry.owner)
        return false;
    entry.owner = ownerIn(version);
    return true;
}

bool ContentMerge::isChanged(const Entry& entry, Side side)
{
    const Trio& versions = entry.item.versions;
    const BaseObject* const version = versions.sides[side];
    return ownerIn(versions.base) != ownerIn(version) ||
           m_newlyUsed[side].count(pathOf(*versions.base)) == 1 ||
           !isSame(*versions.base, *version, m_state.translations[side]);
}

void ContentMerge::dropRemoved()
{
    for (Entry& entry : m_entries) {
        Trio& versions = entry.item.versions;
        if (!entry.isKept || versions.base == nullptr || versions.hasBoth())
            continue;
        const Side remover = versions.sides[Ours] == nullptr ? Ours : Theirs;
        entry.isKept = isChanged(entry, otherSide(remover));
        if (!entry.isKept)
            continue;
        m_state.addConflictOf(versions.any(), versions, removalText(remover, "changed"));
        entry.isKept = !m_state.isDropped(remover);
        versions.base = nullptr;
    }
}

void ContentMerge::keepOwners()
{
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].isKept)
            keepOwnersOf(i);
}

// A side may have put something into an object that the other one has removed. If the object goes,
// then what the other side has elsewhere goes back there.
void ContentMerge::keepOwnersOf(std::size_t index)
{
    std::size_t inner = index;
    while (m_entries[inner].isKept && m_entries[inner].owner != None) {
        if (isKeptAsOwner(m_entries[inner].owner)) {
            inner = m_entries[inner].owner;
            continue;
        }
        if (moveToPreferredPlace(inner))
            breakCircle(inner);
        else
            m_entries[inner].isKept = false;
        inner = index;
    }
}

// Something is in the object.
bool ContentMerge::isKeptAsOwner(std::size_t index)
{
    Entry& entry = m_entries[index];
    Trio& versions = entry.item.versions;
    if (entry.isKept || versions.base == nullptr)
        return entry.isKept;
    const Side remover = versions.sides[Ours] == nullptr ? Ours : Theirs;
    m_state.addConflictOf(versions.any(), versions, removalText(remover, "changed"));
    entry.isKept = !m_state.isDropped(remover);
    versions.base = nullptr;
    return entry.isKept;
}

std::string ContentMerge::pathOfEntry(std::size_t index) const
{
    std::vector<const std::string*> names;
    for (std::size_t i = index; i != None; i = m_entries[i].owner)
        names.push_back(&m_entries[i].name);
    std::string path;
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        path += (path.empty() ? "" : "/") + **name;
    return path;
}

// An object that the base lacks may have a path that another object has there, and goes by another
// one in between.
void ContentMerge::addPaths()
{
    std::unordered_set<std::string> known;
    for (const Entry& entry : m_entries)
        if (entry.item.versions.base != nullptr)
            known.insert(pathOf(*entry.item.versions.base));
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (!m_entries[i].isKept)
            continue;
        const Trio& versions = m_entries[i].item.versions;
        const std::string to = pathOfEntry(i);
        if (versions.base != nullptr) {
            m_state.paths.setPath(pathOf(*versions.base), to);
            continue;
        }
        for (const Side side : BothSides) {
            if (versions.sides[side] == nullptr)
                continue;
            const std::string from = pathOf(*versions.sides[side]);
            const std::string between = known.count(from) == 0 ? from : '\x01' + from;
            if (between != from)
                m_state.translations[side].setPath(from, between);
            m_state.paths.setPath(between, to);
        }
    }
}

void ContentMerge::build(Doc::Package& out)
{
    std::vector<std::vector<std::size_t>> children(m_entries.size());
    std::vector<std::pair<BaseObject*, std::vector<std::size_t>>> owners{{&out, {}}};
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].isKept)
            (m_entries[i].owner == None ? owners.front().second : children[m_entries[i].owner])
                .push_back(i);
    while (!owners.empty()) {
        const auto [owner, entries] = std::move(owners.back());
        owners.pop_back();
        auto* const list =
            static_cast<ContainerListBase*>(const_cast<BaseObject*>(memberOf(*owner, "content")));
        for (const std::size_t i : entries) {
            const BaseObject& any = m_entries[i].item.versions.any();
            std::unique_ptr<BaseObject> child =
                list == nullptr ? nullptr : list->createChild(any.getMeta().name);
            if (child == nullptr)
                continue; // the owner has become an object without content
            BaseObject& merged = *child;
            list->pushBack(std::move(child));
            const Whereabouts::Item inside(m_state.walk, any);
            m_objects.mergeItem(merged, m_entries[i].item);
            owners.emplace_back(&merged, std::move(children[i]));
        }
    }
}

} // namespace Ksx::Kit
