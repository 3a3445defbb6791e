// The update of one component, in the process that runs it.
#pragma once

#include "ksx/kit/batchplan.h"
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <cstddef>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// The state of the files of a plan, by the paths that they have in it.
using PlannedStamps = QHash<QString, FileStamp>;

PlannedStamps plannedStamps(const BatchPlan& plan);

// The outcome of an update, which processes send each other.
struct ComponentOutcome
{
    struct Saving
    {
        bool isSaved() const { return reason.isEmpty(); }

        QByteArray sha256;
        // A sentence if there is no result.
        QString reason;
    };

    // The files that could not be opened. Then no package was saved.
    std::vector<Failure> failures;
    // One for each package.
    std::vector<Saving> savings;

    QByteArray toBytes() const;
    // Returns none for bytes that are no outcome.
    static std::optional<ComponentOutcome> fromBytes(const QByteArray& bytes);
};

// Opens the packages with all that they need, and saves them. Where the results of a unit appear
// together, they are staged, and updated again to verify them.
ComponentOutcome updateComponent(const BatchPlan& plan, const PlannedStamps& stamps,
                                 const std::vector<const BatchPackage*>& packages);

// Opens one file alone, and saves nothing.
ComponentOutcome openOne(const BatchPlan& plan, const QString& file);

// Updates the result of a package again, and returns the sum of the bytes as its only saving. Writes
// no file.
ComponentOutcome updateAgain(const BatchPlan& plan, const BatchPackage& package);

// Returns a sentence unless another update of a result, whose outcome is given, has these bytes.
QString verificationFault(const ComponentOutcome& outcome, const QByteArray& sha256);

} // namespace Ksx::Kit
