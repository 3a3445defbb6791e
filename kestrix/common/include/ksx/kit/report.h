// A report of a library of packages, as pages of HTML.
#pragma once

#include "ksx/kit/packagehead.h"
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <vector>

namespace Ksx::Kit {

// A file of a report. The name is relative to the folder of the report.
struct ReportFile
{
    QString name;
    QByteArray text;
};

// An object that a search finds.
struct ReportObject
{
    // "graph", "function", "input", "output" or "resource".
    QString kind;
    // The path from the package on.
    QString name;
    QString label;
    // The place in the page.
    QString anchor;
};

// What the index has of a package.
struct ReportEntry
{
    QString file;
    // The name of the page, without its folder.
    QString page;
    QString title;
    QString description;
    bool isReadable = false;
    std::size_t graphs = 0;
    std::size_t functions = 0;
    std::size_t inputs = 0;
    std::size_t errors = 0;
    std::size_t warnings = 0;
    std::size_t dependencies = 0;
    // The pages of the packages that it depends on.
    QStringList uses;
    // A bounded number of them: a hostile package has millions.
    std::vector<ReportObject> objects;
};

// The page of a package.
struct ReportPage
{
    ReportFile file;
    ReportEntry entry;
    // The sentence for a package that cannot be read. Its page has it too.
    QString failure;
};

// Makes the pages of a report: one for each package and an index with a search. They work from a
// file path, and need nothing from outside of their folder.
class LibraryReport
{
public:
    // Gives each file a page. "obl://" names lead into the first of `presetsPaths`.
    LibraryReport(const QStringList& files, QStringList presetsPaths);

    // Reads a package and makes its page. Links lead to pages of other files of the report alone.
    // Several threads may call it at a time, as tasks of one OrderedTasks.
    ReportPage pageOf(const QString& file) const;

    // Returns all other files: the index, the data of its search, who uses which package, style and
    // script. The entries are in the order of the index.
    static std::vector<ReportFile> indexOf(const std::vector<ReportEntry>& entries);

private:
    QStringList m_presetsPaths;
    QHash<QString, QString> m_pages;          // by the file as it was named
    QHash<QString, QString> m_canonicalPages; // by the file without links
};

} // namespace Ksx::Kit
