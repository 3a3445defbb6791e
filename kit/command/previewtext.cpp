#include "command/previewtext.h"

#include "command/inventorytext.h"
#include "command/texttable.h"
#include <algorithm>

namespace Ksx::Kit {

namespace {

constexpr std::size_t MostChanges = 40; // of one list

QString counted(std::size_t number)
{
    return number == 1 ? QStringLiteral("1 change") : QStringLiteral("%1 changes").arg(number);
}

// The line and the column in the file.
QString atText(const ElementChange& change)
{
    return change.line == 0 ? QString()
                            : QStringLiteral("%1:%2").arg(change.line).arg(change.column);
}

QString tableOf(const std::vector<ElementChange>& changes)
{
    TextTable table{{{QStringLiteral("AT"), TextTable::Align::Right},
                     {QStringLiteral("CHANGE")},
                     {QStringLiteral("OBJECT")},
                     {QStringLiteral("ELEMENT")},
                     {QStringLiteral("BEFORE")},
                     {QStringLiteral("AFTER")}}};
    for (std::size_t i = 0; i < std::min(changes.size(), MostChanges); ++i) {
        const ElementChange& change = changes[i];
        table.add({atText(change), wordOf(change.kind), change.place, change.element,
                   change.oldText, cellText(change.newText)});
    }
    QString text = table.text(4);
    if (changes.size() > MostChanges)
        text += QStringLiteral("    and %1 more, which --json shows\n")
                    .arg(changes.size() - MostChanges);
    return text;
}

QString listText(const QString& head, const std::vector<ElementChange>& changes)
{
    if (changes.empty())
        return {};
    return QStringLiteral("  %1: %2\n").arg(head, counted(changes.size())) + tableOf(changes);
}

QString outcomeOf(const PreviewedFile& file)
{
    if (!file.error.isEmpty())
        return QStringLiteral("  is not written: %1\n").arg(lineText(file.error));
    QString now = QStringLiteral("does not exist yet");
    if (file.isReplaced)
        now = QStringLiteral("gets the bytes of another package in the end");
    else if (file.targetExists)
        now = file.isChanged ? QStringLiteral("has other bytes now")
                             : QStringLiteral("has these bytes already");
    return QStringLiteral("  writes %1 bytes to %2, which %3\n")
        .arg(sizeText(file.size), lineText(file.target), now);
}

} // namespace

QString previewText(const PreviewedFile& file)
{
    QString text = lineText(file.file) +
                   (file.isDependency ? QStringLiteral(" (a dependency)\n") : QStringLiteral("\n"));
    text += outcomeOf(file);
    for (const UpdateStep& step : file.steps)
        text += QStringLiteral("  step %1 (%2): %3\n")
                    .arg(step.version, wordOf(step.kind), counted(step.changes.size())) +
                tableOf(step.changes);
    return text + listText(QStringLiteral("reading"), file.reading) +
           listText(QStringLiteral("references"), file.references) +
           listText(QStringLiteral("writing"), file.writing);
}

QString summaryText(const Preview& preview)
{
    if (!preview.failures.empty())
        return QStringLiteral("The update would write nothing, since a package cannot be read\n");
    const auto changed = std::count_if(preview.files.begin(), preview.files.end(),
                                       [](const PreviewedFile& file) { return file.isChanged; });
    return QStringLiteral("The update would write %1 of %2 files with other bytes\n")
        .arg(changed)
        .arg(preview.files.size());
}

} // namespace Ksx::Kit
