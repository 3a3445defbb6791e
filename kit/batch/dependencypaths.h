// The files that the dependencies of a package lead to.
#pragma once

#include "ksx/kit/packagehead.h"
#include "ksx/kit/updateplanner.h"
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <vector>

namespace Ksx::Kit {

// Returns where the dependencies of a package lead to, as an opening of it would follow them. Leaves
// out the package itself. The path of the file has no link in it.
std::vector<NamedPath> dependencyPaths(const QString& file, const PackageHead& head,
                                       const QString& presetsPath);

// The files that packages need, at any number of steps. Reads heads when they are asked for.
class NeededFiles
{
public:
    explicit NeededFiles(const QString& presetsPath) : m_presetsPath(presetsPath) {}

    // Returns the files and all that they need.
    QStringList closureOf(const QStringList& files);
    // Returns the first file of `failed` that a file needs. Returns a null text if it needs none.
    QString firstNeeded(const QString& file, const QHash<QString, QString>& failed);

private:
    const QStringList& needsOf(const QString& file);

    QString m_presetsPath;
    QHash<QString, QStringList> m_needs;
};

} // namespace Ksx::Kit
