// The folder that a command writes files to.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <set>
#include <utility>

namespace Ksx::Kit {

// Makes the folder and folders in it when the first file goes there. Several threads may write at a
// time.
class OutputFolder
{
public:
    // No file of `inputs` is written to, whatever other names it has.
    OutputFolder(QString path, const QStringList& inputs);

    QString pathOf(const QString& name) const { return m_path + QLatin1Char('/') + name; }
    // Writes a file as a whole, or leaves what is there. `name` is relative to the folder. Returns
    // false on failure, with a sentence in `reason`.
    bool write(const QString& name, const QByteArray& bytes, QString& reason) const;

private:
    QString m_path;
    std::set<std::pair<quint64, quint64>> m_inputs; // device and number of each file
};

} // namespace Ksx::Kit
