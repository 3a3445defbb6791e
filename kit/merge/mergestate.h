// What all steps of a merge share.
#pragma once

#include "compare/translation.h"
#include "compare/whereabouts.h"
#include "ksx/kit/merge.h"
#include "merge/trio.h"
#include <array>
#include <unordered_set>

namespace Ksx::Kit {

struct MergeState
{
    MergeState(const Orv::Data::BaseObject& package, const QDir& aFolder, Preference aPreference)
        : folder(aFolder), preference(aPreference), walk(package, folder)
    {}

    // Returns the side whose version is taken in conflicts: ours if nothing is written.
    Side preferred() const { return preference == Preference::Theirs ? Theirs : Ours; }

    // Returns whether an object goes that a side has removed in a conflict. Nothing goes if nothing is
    // written, so that one conflict brings no others.
    bool isDropped(Side remover) const
    {
        return preference != Preference::None && preferred() == remover;
    }

    void addConflict(const Trio& values, const QString& reason);
    void addConflictOf(const Orv::Data::BaseObject& item, const Trio& values,
                       const QString& reason);

    const QDir folder;
    const Preference preference;
    Whereabouts walk;
    // From the numbers and paths of a side to those of the base. Objects that the base lacks get
    // numbers of their own.
    std::array<Translation, 2> translations;
    // From the paths of the base to those of the merged package.
    Translation paths;
    std::vector<Conflict> conflicts;
    // The numbers, in the base, of the dependencies to which a side has added paths.
    std::array<std::unordered_set<unsigned>, 2> newlyUsedDependencies;
    // The numbers, in the base, of the nodes around that go in a conflict. Connections to them go
    // as well.
    std::unordered_set<unsigned> droppedNodes;

private:
    void add(Location location, const Trio& values, const QString& reason);
};

// Returns the reason of a conflict over an object that a side has removed. `change` is what the other
// side has done with it, such as "changed".
QString removalText(Side remover, const char* change);

} // namespace Ksx::Kit
