// The findings of a check of a package.
#pragma once

#include <QString>
#include <vector>

namespace Ksx::Kit {

// How bad a finding is.
enum class Severity
{
    // The package opens, and something in it is lost or of no use.
    Warning,
    // The package does not open, or something in it does not work.
    Error,
};

// Returns the word for a severity: "warning" or "error".
QString wordOf(Severity severity);

// The kinds of findings, in the order of their table.
enum class FindingCode
{
    UnreadablePackage,
    OldFormat,
    MissingElement,
    UnknownElement,
    UnknownItem,
    DoubleElement,
    BadValue,
    DoubleUid,
    DoubleIdentifier,
    DanglingUid,
    NodeCycle,
    GraphCycle,
    UnknownFilter,
    UnknownFunction,
    UnknownParameter,
    OutOfRange,
    UnknownDependency,
    DanglingPath,
    MissingDependency,
    UnreadableDependency,
    UnusedDependency,
    MissingResource,
};

// A row of the table of kinds.
struct FindingKind
{
    FindingCode code;
    // The name of the code for users, which stays the same: "missing-element".
    const char* name;
    Severity severity;
    // The cure, in a sentence without a full stop.
    const char* advice;
};

// Returns all kinds, in the order of their codes.
const std::vector<FindingKind>& findingKinds();

// One finding.
struct Finding
{
    FindingCode code = FindingCode::UnreadablePackage;
    // A data path like "pkg://group/graph". A long one is cut. Empty for the package as a whole.
    QString place;
    // Where it is in the file, from 1 on. 0 where only the place is known.
    qint64 line = 0;
    qint64 column = 0;
    // The fault, in a sentence without a full stop.
    QString text;

    const FindingKind& kind() const { return findingKinds()[static_cast<std::size_t>(code)]; }
};

} // namespace Ksx::Kit
