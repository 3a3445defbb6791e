// What all steps of a merge share.
#pragma once

#include "compare/translation.h"
#include "compare/whereabouts.h"
#include "ksx/kit/merge.h"
#include "merge/trio.h"
#include <array>

namespace Ksx::Kit {

struct MergeState
{
    MergeState(const Orv::Data::BaseObject& package, const QDir& aFolder, Preference aPreference)
        : folder(aFolder), preference(aPreference), walk(package, folder)
    {}

    // Returns the side whose version is taken in conflicts: ours if nothing is written.
    Side preferred() const { return preference == Preference::Theirs ? Theirs : Ours; }

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

private:
    void add(Location location, const Trio& values, const QString& reason);
};

} // namespace Ksx::Kit
