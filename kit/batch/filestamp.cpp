#include "core/regularfile.h"
#include "ksx/core/failurereason.h"
#include "ksx/kit/batchplan.h"
#include "sha256.h"
#include <sys/stat.h>

namespace Ksx::Kit {

namespace {

// Returns when an open file was last written.
qint64 modifiedAt(const QFile& file)
{
    struct stat status = {};
    if (fstat(file.handle(), &status) != 0)
        return -1;
    return qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
}

} // namespace

std::optional<FileStamp> stampOf(const QString& file, QString& reason)
{
    Orv::Core::RegularFile device(file);
    FileStamp stamp;
    if (!device.open(QIODevice::ReadOnly)) {
        reason = Core::failureReason(file, QStringLiteral("ERROR_FAIL_TO_OPEN_URL_"));
        return std::nullopt;
    }
    stamp.size = device.size();
    stamp.modified = modifiedAt(device);
    Sha256 sum;
    char bytes[65536];
    qint64 count = 0;
    while ((count = device.read(bytes, sizeof(bytes))) > 0)
        sum.add(bytes, static_cast<std::size_t>(count));
    if (count < 0 || device.hasFailed() || modifiedAt(device) != stamp.modified) {
        reason = Core::failureReason(file, QStringLiteral("ERROR_FAIL_TO_READ_URL_"));
        return std::nullopt;
    }
    stamp.sha256 = sum.result().toHex();
    return stamp;
}

bool hasStamp(const QString& file, const FileStamp& stamp)
{
    // The time is none to go by: a file may be written twice in one tick of the clock.
    QString reason;
    const std::optional<FileStamp> present = stampOf(file, reason);
    return present && present->sha256 == stamp.sha256;
}

} // namespace Ksx::Kit
