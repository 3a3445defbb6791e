#include "ksx/core/outputfile.h"

#include "core/fileplace.h"
#include <QDir>
#include <QFileInfo>

namespace Ksx::Core {

QString outputName(const QString& pattern, const QString& inputName)
{
    return QString(pattern).replace(QLatin1String(InputNamePattern), inputName);
}

QString outputFile(const std::optional<QString>& folder, const QString& inputPath,
                   const QString& name)
{
    QString directory = Orv::Core::currentFolder();
    if (folder) {
        directory = *folder;
        directory.replace(QLatin1String(InputPathPattern), inputPath);
    }
    return QDir(Orv::Core::absolutePath(directory)).absoluteFilePath(name + QStringLiteral(".obl"));
}

QString updatedFile(const QString& namePattern, const std::optional<QString>& folder,
                    const QString& input)
{
    const QFileInfo file(input);
    const QString name = outputName(namePattern, file.baseName());
    return name.isEmpty() ? QString() : outputFile(folder, file.absolutePath(), name);
}

} // namespace Ksx::Core
