#include "ksx/kit/check.h"

#include "contentcheck.h"
#include "core/fileplace.h"
#include "core/regularfile.h"
#include "data/content/package.h"
#include "elementcheck.h"
#include "findinglist.h"
#include "openedpackage.h"
#include "packageparts.h"
#include "referencecheck.h"

namespace Ksx::Kit {

namespace {

bool canBeRead(const QString& file)
{
    return isPackageName(file) && Orv::Core::RegularFile(file).open(QIODevice::ReadOnly);
}

// Adds the faults of the form of a package, old or damaged.
void checkForm(const QString& file, const PackageHead& head, const QStringList& updates,
               FindingList& findings)
{
    if (!updates.isEmpty())
        findings.add(FindingCode::OldFormat, QString(),
                     QStringLiteral("The package is of the format %1, and the current one is %2")
                         .arg(head.formatVersion, updates.back()));
    else if (head.kind == PackageKind::Package)
        checkElements(file, findings);
}

void addUnreadable(const QString& reason, FindingList& findings)
{
    findings.add(FindingCode::UnreadablePackage, QString(),
                 QStringLiteral("The package cannot be opened: ") + reason);
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
    if (head) {
        OpenedPackage package = openForReading(place, *head, presetsPaths);
        return findingsOf(package, presetsPaths);
    }
    FindingList findings;
    addUnreadable(reason, findings);
    return findings.take();
}

std::vector<Finding> findingsOf(OpenedPackage& package, const QStringList& presetsPaths)
{
    FindingList findings;
    if (package.document == nullptr)
        addUnreadable(package.reason, findings);
    checkForm(package.file, package.head, package.updates, findings);
    if (package.document != nullptr) {
        checkContent(*package.document, findings);
        checkReferences(*package.document,
                        dependenciesOf(*package.document, package.head, package.file), presetsPaths,
                        findings);
    }
    return findings.take();
}

} // namespace Ksx::Kit
