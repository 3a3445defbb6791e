// Names for files that are made of names of other things.
#pragma once

#include <QHash>
#include <QString>

namespace Ksx::Kit {

// Returns a text as a name that every file system and every address takes: letters and digits of
// ASCII, "_", "-" and ".". It is never empty, is not long and begins with none of the last two.
QString safeFileName(const QString& text);

// Returns a data path without its scheme: "group/graph".
QString withoutScheme(const QString& place);
// Returns "group.graph" for "pkg://group/graph", as names of pictures have it.
QString dottedName(const QString& place);

// Gives names that differ in more than upper and lower case.
class UniqueFileNames
{
public:
    // Returns the safe name of a text, with a number if it was given before.
    QString nameFor(const QString& text);

private:
    QHash<QString, int> m_counts; // by the name in lower case, how often it was asked for
};

// Returns a path of an object of a package as the end of an address, without "#": letters, digits
// and a few signs stay, and different paths have different anchors.
QString anchorOf(const QString& place);

} // namespace Ksx::Kit
