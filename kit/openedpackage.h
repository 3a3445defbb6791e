// A package that is open for several questions.
#pragma once

#include "ksx/kit/finding.h"
#include "ksx/kit/inventory.h"
#include <memory>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

struct OpenedPackage
{
    OpenedPackage();
    OpenedPackage(OpenedPackage&& other) noexcept;
    OpenedPackage& operator=(OpenedPackage&& other) noexcept;
    ~OpenedPackage();

    // Without a link in it, if the file exists.
    QString file;
    PackageHead head;
    // The versions of the steps that an update would run.
    QStringList updates;
    // Null for a package that cannot be opened.
    std::unique_ptr<Data::Content::Package> document;
    // A sentence for a package that cannot be opened.
    QString reason;
};

// Opens a package without its dependencies. `file` has no link in it.
OpenedPackage openForReading(const QString& file, const PackageHead& head,
                             const QStringList& presetsPaths);

// Returns the answers of takeInventory() and checkPackage(). There must be a document for the first.
Inventory inventoryOf(const OpenedPackage& package);
std::vector<Finding> findingsOf(OpenedPackage& package, const QStringList& presetsPaths);

} // namespace Ksx::Kit
