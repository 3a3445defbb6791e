// Joins the changes that two sides made to a package.
#pragma once

#include "ksx/kit/comparison.h"
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// The version that a merge takes where the sides do not agree.
enum class Preference
{
    // Neither: a merge with conflicts writes nothing.
    None,
    Ours,
    Theirs,
};

// A place where the sides do not agree.
struct Conflict : Location
{
    // The three values. Empty for a version that has none.
    QString base;
    QString ours;
    QString theirs;
    // A sentence without a full stop for users, in English.
    QString reason;
};

// The three versions. The place of ours is that of the merged package. The others are taken to lie
// in its folder, so that relative references are the same in all versions.
struct MergeVersions
{
    PackageVersion base;
    PackageVersion ours;
    PackageVersion theirs;
};

// How to merge.
struct MergeOptions
{
    Preference preference = Preference::None;
    // Where "obl://" names lead to when references are checked: into the first of them, and into the
    // current folder if there is none.
    QStringList presetsPaths = {};
};

// What came out of a merge.
struct MergeResult
{
    std::vector<Conflict> conflicts;
    // Whether the merged package was written.
    bool isWritten = false;
};

// Merges two versions of a package that were made of one base, and writes the result to `target`.
// Objects are the same object as comparePackages() finds them. Changes of different objects and
// members join. Both sides may change the layout of one node; one of the positions is taken then.
// References to files are written as both sides have them. The result is sound where both sides
// are: connections and references of one side to an object that the other one removed are conflicts.
//
// With conflicts nothing is written, unless a side is preferred. Errors of the merged package that
// neither side has are conflicts, and then nothing is written at all: there is no value to choose.
//
// Returns none if a file cannot be read or written, with its name and a sentence in `file` and
// `reason`. The target has its old bytes then.
//
// Whichever side is called ours, the result is the same, apart from conflicts. Main thread.
std::optional<MergeResult> mergePackages(const MergeVersions& versions, const QString& target,
                                         const MergeOptions& options, QString& file,
                                         QString& reason);

} // namespace Ksx::Kit
