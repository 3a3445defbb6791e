#include "command/outputfolder.h"

#include "core/filesaver.h"
#include "data/filename.h"
#include <filesystem>
#include <optional>
#include <sys/stat.h>

namespace Ksx::Kit {

namespace {

// Returns the device and the number of a file, which all of its names have in common.
std::optional<std::pair<quint64, quint64>> identityOf(const QString& path)
{
    struct stat state = {};
    if (stat(Orv::toBytes(path).c_str(), &state) != 0)
        return std::nullopt;
    return std::make_pair(quint64(state.st_dev), quint64(state.st_ino));
}

} // namespace

OutputFolder::OutputFolder(QString path, const QStringList& inputs) : m_path(std::move(path))
{
    for (const QString& input : inputs)
        if (const auto identity = identityOf(input))
            m_inputs.insert(*identity);
}

bool OutputFolder::write(const QString& name, const QByteArray& bytes, QString& reason) const
{
    const QString path = pathOf(name);
    const auto identity = identityOf(path);
    if (identity && m_inputs.count(*identity) == 1) {
        reason = QStringLiteral("%1 is a file that is read").arg(path);
        return false;
    }
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(Orv::toBytes(path)).parent_path(),
                                        error);
    Orv::Core::FileSaver saver(path);
    const bool isWritten =
        saver.open(QIODevice::WriteOnly) && saver.write(bytes) == bytes.size() && saver.commit();
    if (!isWritten)
        reason = QStringLiteral("%1 cannot be written").arg(path);
    return isWritten;
}

} // namespace Ksx::Kit
