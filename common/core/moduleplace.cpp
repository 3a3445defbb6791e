#include "core/moduleplace.h"

#include "core/fileplace.h"
#include "data/filename.h"
#include <QCoreApplication>
#include <dlfcn.h>

namespace Orv::Core {

namespace {

// From the folder of the library, and from that of an installed executable.
constexpr char FromLibrary[] = "/kestrix/";
constexpr char FromExecutable[] = "/" KESTRIX_MODULES_FROM_BIN "/";

// Returns the folder of the shared library that holds this function. Returns an empty text in a
// program that is linked with the library: the loader knows it by the name that it was called by.
QString folderOfLibrary()
{
    Dl_info info;
    if (dladdr(reinterpret_cast<const void*>(&folderOfLibrary), &info) == 0)
        return QString();
    const QString path = fromBytes(info.dli_fname);
    const bool isLibrary = path.startsWith(QLatin1Char('/')) && path.contains(QLatin1String(".so"));
    return isLibrary ? path.left(path.lastIndexOf(QLatin1Char('/'))) : QString();
}

} // namespace

QString modulePlace(const QString& fileName)
{
    const QString folder = QCoreApplication::applicationDirPath();
    const QString library = folderOfLibrary();
    QString beside = folder + QLatin1Char('/') + fileName;
    for (const QString& place :
         {beside, library.isEmpty() ? QString() : library + QLatin1String(FromLibrary) + fileName,
          folder + QLatin1String(FromExecutable) + fileName})
        if (!place.isEmpty() && exists(place))
            return place;
    return beside;
}

} // namespace Orv::Core
