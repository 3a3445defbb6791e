#include "updating/updaterbase.h"

#include <QCoreApplication>

namespace Ksx::Core {

QString updaterText(const char* className, const char* key)
{
    return QCoreApplication::translate(className, key);
}

} // namespace Ksx::Core
