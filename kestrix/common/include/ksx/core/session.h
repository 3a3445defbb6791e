// All that a program needs to open, edit and save packages.
#pragma once

#include "data/datapointerbox.h"
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

namespace Orv::Core {
class UndoStack;
} // namespace Orv::Core

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class CompGraphController;
class PackageController;
class PackagesListManager;

// The open packages of a program, their edits and the steps to undo. One session lives at a time,
// and another one may follow it. It owns all packages: controllers and boxes are of no use after it.
//
// A session makes the application object if there is none. It belongs to the thread that makes it,
// as all documents and controllers do; open() uses further threads inside. Other threads may call
// modulePlace(), failureReason() and openLinkedFile(), and nothing else of this library.
//
//     Session session({"/srv/presets"});
//     if (!session.open({"wood.obl"}))
//         throw std::runtime_error(session.failures().front().reason.toStdString());
//     CompGraphController* graph = session.graphs("wood.obl").front();
//     graph->inputsController()->inputByIdentifier("scale")->setDefaultValue(Float1{{2.0F}});
//     if (!session.save("wood.obl", "new.obl").isSaved)
//         session.undo();
class Session
{
public:
    using PackageBox = Orv::Data::DataPointerBox<Data::Content::Package>;

    // A file that could not be opened.
    struct Failure
    {
        // The path as it was given. Canonical if the file exists.
        QString filename;
        // True for a file that another package needs. False for one that was asked for.
        bool isDependency = false;
        // The cause, in a sentence for users.
        QString reason;
    };
    // The result of saving.
    struct Saving
    {
        // Whether the file was saved as a whole.
        bool isSaved = false;
        // The cause if it was not, in a sentence for users.
        QString reason = {};
        // The path of a copy of the old bytes, if these could not be put back. Else a null text.
        QString keptCopy = {};
    };

    // "obl://" references lead into the first of `presetsPaths`. They lead into the current
    // directory if there is none.
    explicit Session(const QStringList& presetsPaths = {});
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    // Opens the files and all that they depend on, and brings old ones to the current format in
    // memory. Returns true if all files were opened. Returns false if one failed; all other packages
    // are open all the same. A file that is open already stays as it is; close its package to read
    // it again. See DependencyOpener.
    bool open(const QStringList& paths);
    // Opens the files without what they depend on.
    bool openAlone(const QStringList& paths);
    // Returns the files that failed in the last call of open() or openAlone().
    const std::vector<Failure>& failures() const;

    // Returns all open packages, in the order in which they were opened.
    std::vector<PackageBox> packages() const;
    // Returns the open package whose file `path` leads to. Returns an empty box if there is none.
    PackageBox package(const QString& path) const;
    // Returns the path of the file of a package. Returns an empty text for a new package.
    QString path(const PackageBox& package) const;
    // Adds a new package without a file. An empty identifier gives the default.
    PackageBox addPackage(const QString& identifier);
    // Closes a package. Packages that depend on it keep their references. Returns false for an empty
    // box. The step can be undone.
    bool close(const PackageBox& package);

    // Returns the controller that adds graphs and resources. Returns null for an empty box. It lives
    // as long as somebody keeps the pointer.
    QSharedPointer<PackageController> controller(const PackageBox& package) const;
    // Returns the controllers of all graphs of images, in the order of the document. Each graph owns
    // its controller. Returns nothing for an empty box.
    std::vector<CompGraphController*> graphs(const PackageBox& package) const;
    // The same for the open package of a path.
    std::vector<CompGraphController*> graphs(const QString& path) const;

    // Writes a package to a file, which it replaces as a whole: see savePackage(). Refuses the file
    // of another open package, and a file that the package refers to, such as a picture. The package
    // itself goes on belonging to the file that it was opened from.
    Saving save(const PackageBox& package, const QString& path) const;
    // The same for the open package of the path `from`.
    Saving save(const QString& from, const QString& path) const;

    // Returns the steps to undo. Opening packages is no step.
    Orv::Core::UndoStack& steps() const;
    // Reverses the last step. Returns false if there is none, or if it cannot be reversed.
    bool undo();
    // Runs the step again that was undone last. Returns false in the same cases.
    bool redo();

    // Returns the manager of the open packages, for all that is not here.
    PackagesListManager& manager() const;

private:
    struct Parts;

    bool open(const QStringList& paths, bool followsDependencies);

    std::unique_ptr<Parts> m_parts;
    std::vector<Failure> m_failures;
};

} // namespace Ksx::Core
