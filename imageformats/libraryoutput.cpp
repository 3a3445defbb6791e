#include "imageformats/libraryoutput.h"

#include <QtGlobal>
#include <FreeImage.h>
#ifdef Q_OS_UNIX
#include <dlfcn.h>
#endif

namespace Orv::ImageFormats {

namespace {

void dropMessage(FREE_IMAGE_FORMAT /*format*/, const char* /*message*/) {}

// The TIFF library writes to the terminal itself unless it is given null for its two handlers.
// FreeImage brings that library along, with or without its functions to be seen from here.
void silenceTiff()
{
#ifdef Q_OS_UNIX
    using SetHandler = void* (*)(void*);
    for (const char* const name : {"TIFFSetErrorHandler", "TIFFSetWarningHandler"})
        if (const auto setHandler = reinterpret_cast<SetHandler>(dlsym(RTLD_DEFAULT, name)))
            setHandler(nullptr);
#endif
}

} // namespace

void silenceLibraries()
{
    static const bool isSilent = [] {
        FreeImage_SetOutputMessage(&dropMessage);
        silenceTiff();
        return true;
    }();
    Q_UNUSED(isSilent)
}

} // namespace Orv::ImageFormats
