#include "imageformats/freeimageioplugin.h"

#include "imageformats/freeimagedevice.h"
#include "imageformats/freeimageiohandler.h"
#include "imageformats/libraryoutput.h"
#include <QIODevice>

namespace Orv::ImageFormats {

FreeImageIOPlugin::FreeImageIOPlugin(QObject* parent) : QImageIOPlugin(parent)
{
    silenceLibraries();
}

QStringList FreeImageIOPlugin::keys() const
{
    QStringList result;
    for (int format = 0; format < FreeImage_GetFIFCount(); ++format) {
        const char* const extensions =
            FreeImage_GetFIFExtensionList(static_cast<FREE_IMAGE_FORMAT>(format));
        result += QString::fromLatin1(extensions).split(QLatin1Char(','));
    }
    return result;
}

QImageIOPlugin::Capabilities FreeImageIOPlugin::capabilities(QIODevice* device,
                                                             const QByteArray& format) const
{
    const FREE_IMAGE_FORMAT found =
        format.isEmpty() ? formatOfContent(device) : formatOfWord(format);
    if (found == FIF_UNKNOWN)
        return {};
    Capabilities result;
    result.setFlag(CanRead, FreeImage_FIFSupportsReading(found));
    if (found == FIF_GIF || (format.isEmpty() && !device->isWritable()))
        return result;
    // Formats of high range alone have nothing that our pictures could be written as.
    result.setFlag(CanWrite, FreeImage_FIFSupportsExportType(found, FIT_BITMAP) &&
                                 FreeImage_FIFSupportsWriting(found));
    return result;
}

QImageIOHandler* FreeImageIOPlugin::create(QIODevice* device, const QByteArray& format) const
{
    auto* const handler = new FreeImageIOHandler;
    handler->setDevice(device);
    handler->setFormat(format);
    return handler;
}

} // namespace Orv::ImageFormats
