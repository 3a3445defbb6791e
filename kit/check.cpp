#include "ksx/kit/check.h"

#include "contentcheck.h"
#include "core/fileplace.h"
#include "core/regularfile.h"
#include "data/content/package.h"
#include "elementcheck.h"
#include "findinglist.h"
#include "packageparts.h"
#include "referencecheck.h"

namespace Ksx::Kit {

namespace {

bool canBeRead(const QString& file)
{
    return isPackageName(file) && Orv::Core::RegularFile(file).open(QIODevice::ReadOnly);
}

// Adds the faults of a package whose head can be read.
void checkReadable(const QString& file, const PackageHead& head, const QStringList& presetsPaths,
                   FindingList& findings)
{
    QStringList updates;
    QString reason;
    const auto package = openPackage(file, presetsPaths, updates, reason);
    if (package == nullptr)
        findings.add(FindingCode::UnreadablePackage, QString(),
                     QStringLiteral("The package cannot be opened: ") + reason);
    if (!updates.isEmpty())
        findings.add(FindingCode::OldFormat, QString(),
                     QStringLiteral("The package is of the format %1, and the current one is %2")
                         .arg(head.formatVersion, updates.back()));
    else if (head.kind == PackageKind::Package)
        checkElements(file, findings);
    if (package == nullptr)
        return;
    checkContent(*package, findings);
    checkReferences(*package, dependenciesOf(*package, head, file), presetsPaths, findings);
}

} // namespace

std::optional<std::vector<Finding>> checkPackage(const QString& file,
                                                 const QStringList& presetsPaths, QString& reason)
{
    // References begin in the folder in which the file really lies.
    const QString canonical = Orv::Core::canonicalPath(file);
    const QString place = canonical.isEmpty() ? file : canonical;
    const std::optional<PackageHead> head = readHead(place, reason);
    if (!head && !canBeRead(place))
        return std::nullopt;
    FindingList findings;
    if (head)
        checkReadable(place, *head, presetsPaths, findings);
    else
        findings.add(FindingCode::UnreadablePackage, QString(),
                     QStringLiteral("The package cannot be opened: ") + reason);
    return findings.take();
}

} // namespace Ksx::Kit
