#include "resource/linkedfile.h"

#include "core/fileplace.h"
#include "ksx/core/resourcelistener.h"
#include <QCryptographicHash>
#include <QDateTime>

namespace Ksx::Core {

QString linkedFileTime(const QString& filePath)
{
    return Orv::Core::modificationTime(filePath).toString(Qt::ISODate);
}

QString linkedFileChecksum(const QString& filePath)
{
    const auto file = openLinkedFile(filePath);
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (file == nullptr || file->size() == 0 || !hash.addData(file.get()) || file->hasFailed())
        return QStringLiteral("0");
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace Ksx::Core
