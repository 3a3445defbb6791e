// Finds the package files that a user means.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace Ksx::Kit {

// A file or folder that could not be read, and why.
struct Failure
{
    QString file;
    // A sentence without a full stop for users, in English.
    QString reason;
};

// The result of a search.
struct PackageFiles
{
    // The files, each once, in the order of the names that led to them.
    QStringList files;
    // The folders that could not be searched. All others were.
    std::vector<Failure> failures;
};

// Returns the files that the names mean. A folder means all files below it that end with ".obl",
// ".oblar" or ".oblasm", sorted by their paths. Any other name means itself, whether or not there
// is a file of that name.
//
// Folders whose names begin with a dot are left out: they hold copies and files of other tools.
// Links to folders are left out as well, unless the link is one of the names.
PackageFiles findPackageFiles(const QStringList& names);

} // namespace Ksx::Kit
