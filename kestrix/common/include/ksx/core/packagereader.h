// Reads a package from a file, and brings an old one to the current format.
#pragma once

#include "core/extensions.h"
#include "data/xmlvalueconverter.h"
#include "ksx/core/updatestage.h"
#include <QUrl>
#include <functional>
#include <list>
#include <memory>
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Opens one package without its dependencies, and attaches it to no document. Use DependencyOpener
// to open packages with all that they depend on.
//
// The reader chooses the importer by the ending of the URL: ".obl", ".oblar" or ".oblasm". It reads
// the versions of the file and runs the updaters that the file needs. It imports the tree and makes
// file references absolute. It never changes the file. It keeps no state.
//
// Several threads may read at a time as tasks of one OrderedTasks, so that uids are given in the
// order of the tasks. Any other caller uses the main thread.
class PackageReader
{
public:
    // The steps of an update, in the order in which they run.
    using Updaters = std::vector<const Orv::Core::Extensions::IUpdater*>;

    // Called before an update with the steps, the URL and the version of the file. False stops the
    // opening. May be empty, which means true.
    using ConfirmFunction =
        std::function<bool(const Updaters&, const QUrl&, const Orv::Core::Version&)>;
    // Conversions of file references, in the order in which they are applied.
    using Converters = std::list<const Orv::Data::IXmlValueConverter*>;

    // Returns the package, which the caller owns. Returns null on failure, with an error below
    // `log`. Reasons are a URL without an importer, an unreadable, damaged or too new file, and an
    // update that failed. Throws std::bad_alloc if memory runs out.
    //
    // `log` may be null. `progress` may be empty; it is called with fractions from 0 to 1, which
    // start again at each step. `converters` may be null. They are applied to every file reference,
    // behind the conversion that makes it absolute. `wasUpdated` may be null; it is set to whether
    // updaters ran, on success alone.
    //
    // Unless `noBackup` is set, a file that needs an update is first copied into the directory
    // ".autosave" beside it. A copy that fails is reported and stops nothing.
    //
    // `place` may be empty, which means the URL itself. The bytes at the URL are read as those of a
    // file at `place`: its ending chooses the importer, and file references begin there. Tools such
    // as git hand over the versions of a file under names of their own.
    //
    // `onStage` may be empty. It changes nothing about the result.
    static std::unique_ptr<Data::Content::Package>
    open(const QUrl& url, Orv::Core::MessageNode* log,
         const Orv::Core::Extensions::ProgressFunction& progress,
         const ConfirmFunction& confirmUpdate, const Converters* converters, bool* wasUpdated,
         bool noBackup, const QUrl& place = QUrl(), const StageFunction& onStage = {});
};

} // namespace Ksx::Core
