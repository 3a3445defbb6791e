// Finds what differs between two versions of an object.
#pragma once

#include "compare/alignment.h"
#include "compare/translation.h"
#include "compare/whereabouts.h"
#include "compare/words.h"
#include "data/containerstruct.h"
#include "data/containerunion.h"

namespace Ksx::Kit {

class PairScope;

// What of a layout counts.
enum class LayoutFacts
{
    None,
    Notes,
    All,
};

// Goes through two objects of one class side by side. All that it is given must outlive it.
class ObjectComparison
{
public:
    // `translation` is that of the second version, and `walk` is in the second version as well.
    // Differences go to the end of `differences`.
    ObjectComparison(Translation& translation, const QDir& folder, LayoutFacts layout,
                     Whereabouts& walk, std::vector<Difference>& differences)
        : m_translation(translation), m_folder(folder), m_layout(layout), m_walk(walk),
          m_differences(differences)
    {}

    // Compares two items, or two packages, in which the walk is already.
    void compareItem(const Orv::Data::BaseObject& first, const Orv::Data::BaseObject& second);
    // Compares two lists of the objects in which the walk is. `known` is their alignment, or null.
    void compareLists(const Orv::Data::ContainerListBase& first,
                      const Orv::Data::ContainerListBase& second, const Alignment* known = nullptr);

    // Adds a difference of the place of the walk.
    void add(ChangeKind kind, const QString& before, const QString& after);
    // Adds an item of one version alone.
    void addItem(ChangeKind kind, const Orv::Data::BaseObject& item);

private:
    class Inside; // of a pair of items

    bool counts(const Orv::Data::BaseObject& member) const;
    void compareMembers(const Orv::Data::ContainerStructBase& first,
                        const Orv::Data::ContainerStructBase& second);
    void compareMember(const Orv::Data::BaseObject& first, const Orv::Data::BaseObject& second);
    void compareLeaves(const Orv::Data::AttributeBase& first,
                       const Orv::Data::AttributeBase& second);
    void compareUnions(const Orv::Data::ContainerUnionBase& first,
                       const Orv::Data::ContainerUnionBase& second);
    void compareStructs(const Orv::Data::BaseObject& first, const Orv::Data::BaseObject& second);
    void compareConnexions(const Orv::Data::BaseObject& first, const Orv::Data::BaseObject& second);
    bool isSameMember(const Orv::Data::BaseObject& first, const Orv::Data::BaseObject& second,
                      std::string_view element);
    bool isSameValue(const Orv::Data::AttributeBase& first, const Orv::Data::AttributeBase& second);
    QString textOf(const Orv::Data::BaseObject& value) const { return valueText(value, m_folder); }

    Translation& m_translation;
    const QDir& m_folder;
    const LayoutFacts m_layout;
    Whereabouts& m_walk;
    std::vector<Difference>& m_differences;

    const PairScope* m_scope = nullptr; // of the innermost structure
    std::optional<unsigned> m_nodeBefore;
    std::optional<unsigned> m_nodeAfter;
    std::string m_firstText; // kept for their memory
    std::string m_secondText;
};

// Returns whether two versions of an item have no difference but in their layout. Notes count.
bool isSame(const Orv::Data::BaseObject& first, const Orv::Data::BaseObject& second,
            Translation& translation);

} // namespace Ksx::Kit
