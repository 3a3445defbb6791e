#include "imageformats/imagedecoding.h"

#include "imageformats/freeimageiohandler.h"
#include "imageformats/libraryoutput.h"
#include <QImage>
#include <QImageReader>

namespace {

// What FreeImage knows is left to it, also where it refuses: it takes no picture of which a part is
// missing, and keeps its libraries quiet. Qt's own readers do neither.
bool readImage(QIODevice& device, QImage& image)
{
    Orv::ImageFormats::silenceLibraries();
    Orv::ImageFormats::FreeImageIOHandler handler;
    handler.setDevice(&device);
    if (handler.canRead())
        return handler.read(&image);
    QImageReader reader(&device);
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    reader.setAllocationLimit(0); // the memory there is sets the limit
#endif
    return reader.read(&image);
}

} // namespace

bool ksxDecodeImage(QIODevice& device, std::shared_ptr<const QImage>& image, QSize& size)
{
    auto decoded = std::make_shared<QImage>();
    if (!readImage(device, *decoded) || decoded->isNull())
        return false;
    size = decoded->size();
    image = std::move(decoded);
    return true;
}
