#include "filesaving.h"

#include "data/filename.h"
#include <QFileInfo>
#include <QSaveFile>

namespace Orv::Core {

namespace {

// For systems on which the tool has not been at home yet.
class PlainSaving final : public FileSaving
{
public:
    explicit PlainSaving(const QString& path) : m_file(path) {}

    bool start() { return m_file.open(QIODevice::WriteOnly); }
    bool write(const char* data, qint64 size) override { return m_file.write(data, size) == size; }
    bool commit() override { return m_file.commit(); }

private:
    QSaveFile m_file;
};

} // namespace

std::unique_ptr<FileSaving> FileSaving::at(const std::string& path)
{
    auto saving = std::make_unique<PlainSaving>(fromBytes(path));
    if (!saving->start())
        return nullptr;
    return saving;
}

bool FileSaving::canBeAt(const std::string& path)
{
    const QFileInfo file(fromBytes(path));
    if (file.exists())
        return file.isFile() && file.isWritable();
    return QFileInfo(file.absolutePath()).isWritable();
}

} // namespace Orv::Core
