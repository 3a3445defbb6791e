// What an update of packages would do.
#pragma once

#include "ksx/kit/packagefiles.h"
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// The ways in which an element can change.
enum class ElementChangeKind
{
    // It is new. A new element with others in it is one change for itself, and one for each of these
    // that has a value or nothing in it.
    Added,
    // It is gone, and so is everything in it. Told element by element as well.
    Removed,
    // It has another name.
    Renamed,
    // It has another value.
    Changed,
    // It is in another element, and the same as before.
    Moved,
    // Its children are in another order.
    Reordered,
};

// Returns the word for a kind: "added", "removed", "renamed", "changed", "moved" or "reordered".
QString wordOf(ElementChangeKind kind);

// One change of a document.
struct ElementChange
{
    ElementChangeKind kind = ElementChangeKind::Changed;
    // The data path of the innermost object, such as "pkg://group/graph". A long one is cut. Empty
    // outside of all objects.
    QString place;
    // The elements from there on, such as "graphOutputs/graphoutput[2]/usage". Empty for the object
    // itself. As the change leaves it; as it was for an element that is gone.
    QString element;
    // Where the tag of the element ends in the file, from 1 on. 0 for a new element, and where it is
    // not known.
    qint64 line = 0;
    qint64 column = 0;
    // The values, the names of a renamed element, or the places of a moved one. A uid that is drawn
    // from the clock is a text such as "new uid 2" in both; equal ones have equal numbers in one
    // preview.
    QString oldText;
    QString newText;
};

// The part of a package that a step works on.
enum class UpdateStepKind
{
    // The elements of the file, before they are read.
    Document,
    // The objects of the package.
    Objects,
};

// Returns the word for a kind: "document" or "objects".
QString wordOf(UpdateStepKind kind);

// One step of an update.
struct UpdateStep
{
    // The version that tells the step from others, such as "1.1.0.5356".
    QString version;
    UpdateStepKind kind = UpdateStepKind::Document;
    std::vector<ElementChange> changes;
};

// One package that an update reads and writes.
struct PreviewedFile
{
    // The file that is read, from the root on.
    QString file;
    // Whether it is read because another package needs it.
    bool isDependency = false;
    // The steps that run, in their order. None for a package of the current format.
    std::vector<UpdateStep> steps;
    // Changes by the reading of the document behind the steps for documents, such as elements that
    // the format does not know. Empty without steps.
    std::vector<ElementChange> reading;
    // Paths of files and of objects that are written in another way.
    std::vector<ElementChange> references;
    // All other changes by reading and writing the package, such as the versions in its head.
    std::vector<ElementChange> writing;
    // The file that is written, from the root on. Empty if there is no name for it.
    QString target;
    bool targetExists = false;
    // Whether the update leaves other bytes behind in the target, or makes it.
    bool isChanged = false;
    // Another package is written to the target later on, and its bytes stay.
    bool isReplaced = false;
    // The size and the SHA-256 of the bytes that are written, in hexadecimal digits. Another run
    // writes other bytes if there are new uids.
    qint64 size = 0;
    QByteArray sha256;
    // Whether the clock is the source of uids in the file.
    bool hasNewUids = false;
    // The line that the update prints if it cannot write the file. Empty if it can.
    QString error;
};

// The result for all files of one update.
struct Preview
{
    // In the order in which they would be written.
    std::vector<PreviewedFile> files;
    // The files that cannot be read. With one of them the update writes nothing at all. `files` has
    // the others as if these did not exist.
    std::vector<Failure> failures;
    // The lines that the update prints to standard error, in their order.
    QStringList errors;

    // Returns whether the update would write other bytes than there are.
    bool hasChanges() const;
};

// The settings of an update.
struct UpdateSettings
{
    // The packages, as they are given to the update.
    QStringList files;
    // "obl://" names lead into the first one, and into the current folder if there is none.
    QStringList presetsPaths;
    // Patterns for the names and folders of the files that are written: see updatedFile(). Without a
    // folder they go to the current one. None stands for the name that an update chooses itself.
    std::optional<QString> outputName;
    std::optional<QString> outputFolder;
    // The number of threads that read files. 0 stands for one for each core.
    unsigned workers = 0;
};

// Called with the number of packages that are done and of all.
using PreviewProgress = std::function<void(std::size_t done, std::size_t total)>;

// Runs an update up to the point where it would write, and writes nothing. Documents are compared
// before and behind each step, in time and memory that grow with their size alone. All packages are
// held in memory, as in an update.
//
// `progress` may be empty. Main thread, while there are no LibraryServices and no Session.
Preview previewUpdate(const UpdateSettings& settings, const PreviewProgress& progress = {});

} // namespace Ksx::Kit
