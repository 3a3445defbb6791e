#include "core/version.h"

#include <QStringList>

namespace Orv::Core {

QString Version::toString() const
{
    return QStringLiteral("%1.%2.%3.%4").arg(major).arg(minor).arg(revision).arg(build);
}

bool Version::fromString(const QString& text)
{
    const QStringList parts = text.split('.');
    if (parts.size() != 4)
        return false;
    std::uint32_t numbers[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[i] = parts[i].toUInt(&isNumber);
        if (!isNumber)
            return false;
    }
    major = numbers[0];
    minor = numbers[1];
    revision = numbers[2];
    build = numbers[3];
    return true;
}

} // namespace Orv::Core
