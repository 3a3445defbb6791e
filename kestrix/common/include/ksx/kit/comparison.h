// What differs between two packages.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// What happened to an object or a member on the way from the first package to the second one.
enum class ChangeKind
{
    Added,
    Removed,
    // Another place among its siblings, another owner, or, in a layout, another position.
    Moved,
    // Another identifier.
    Renamed,
    // Another value.
    Changed,
};

// Returns the word for a kind: "added", "removed", "moved", "renamed" or "changed".
QString wordOf(ChangeKind kind);

// An object of a package, or a member of it. Texts of more than a thousand characters are cut.
struct Location
{
    // A data path like "pkg://group/graph" to the object of the content that the object is in or is.
    // Empty for the package itself.
    QString place;
    // The objects around this one, from the one at `place` on inwards: "node 12 (blend)".
    QStringList within;
    // The word for the object: "graph", "node", "connection", "input", "parameter" and so on.
    QString object;
    // The identifier, the name or the number of the object.
    QString name;
    // The elements that lead from the object to the member: "attributes/label". Empty if the object
    // as a whole is meant.
    QString member;
};

// One difference. An object that is added or removed is one difference, with all that is in it. The
// location is in the second package, unless the object is removed.
struct Difference : Location
{
    ChangeKind kind = ChangeKind::Changed;
    // The values as a file has them, or a description of what has no single value.
    QString before;
    QString after;
    // The numbers of the node that the object is in or is: that of the graph, or that of the function
    // outside of graphs. None outside of nodes.
    std::optional<unsigned> nodeBefore = std::nullopt;
    std::optional<unsigned> nodeAfter = std::nullopt;
};

// A version of a package.
struct PackageVersion
{
    // The file with the bytes. "/dev/null" is a package without anything in it.
    QString file;
    // The place that the bytes are meant for, as far as it differs from `file`: its folder is where
    // references begin, and its ending tells the format.
    QString place = {};
};

// What is compared.
struct ComparisonOptions
{
    // Whether positions, comments and other facts of the layout count.
    bool withLayout = false;
};

// Compares two packages in terms of their objects. Dependencies are not opened. Old packages are
// compared as an update leaves them. Objects are the same object if they have the same uid. Objects
// without such a partner are found by their identifier, and at last by their structure. References
// are equal if they lead to the same object. Versions of the format, uids and the identifiers of
// files do not count.
//
// The differences are in the order of the document, first those of the package itself.
//
// Returns none if a file cannot be read, with its name and a sentence in `file` and `reason`.
std::optional<std::vector<Difference>> comparePackages(const PackageVersion& first,
                                                       const PackageVersion& second,
                                                       const ComparisonOptions& options,
                                                       QString& file, QString& reason);

// Returns all facts of a package, a line for each, in the order of the document: the lines of two
// packages differ where the packages do. Uids are left out, unless nothing else names an object.
// Returns none if the file cannot be read, with a sentence in `reason`.
std::optional<QStringList> describePackage(const PackageVersion& version,
                                           const ComparisonOptions& options, QString& reason);

} // namespace Ksx::Kit
