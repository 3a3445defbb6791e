// From a URL to an up-to-date package.
#pragma once

#include "core/extensions.h"
#include "data/xmlvalueconverter.h"
#include <QUrl>
#include <functional>
#include <list>
#include <memory>
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Chooses the importer, reads the versions, runs the updaters that the file needs, imports, stamps
// the new versions on the package and makes its file references absolute. Never changes the file.
class PackageReader
{
public:
    using Updaters = std::vector<const Orv::Core::Extensions::IUpdater*>;
    // Asked before an update, with the steps in their order, the URL and the file's version: false
    // stops the opening. May be empty.
    using ConfirmFunction =
        std::function<bool(const Updaters&, const QUrl&, const Orv::Core::Version&)>;
    using Converters = std::list<const Orv::Data::IXmlValueConverter*>;

    // Answers a detached package, or null with an error below `log`. `log`, `converters` and
    // `wasUpdated` may be null, `progress` (0 to 1) and `confirmUpdate` empty. The converters are
    // applied to every file reference, in order, behind the one that makes it absolute. Unless
    // `noBackup` is set, a file that is about to be updated is first copied into the directory
    // ".autosave" beside it.
    static std::unique_ptr<Data::Content::Package>
    open(const QUrl& url, Orv::Core::MessageNode* log,
         const Orv::Core::Extensions::ProgressFunction& progress,
         const ConfirmFunction& confirmUpdate, const Converters* converters, bool* wasUpdated,
         bool noBackup);
};

} // namespace Ksx::Core
