#include "imageformats/imagedecoding.h"

#include <QImage>
#include <QImageReader>

bool ksxDecodeImage(QIODevice& device, std::shared_ptr<const QImage>& image, QSize& size)
{
    QImageReader reader(&device);
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    reader.setAllocationLimit(0); // the memory there is sets the limit
#endif
    auto decoded = std::make_shared<QImage>();
    if (!reader.read(decoded.get()) || decoded->isNull())
        return false;
    size = decoded->size();
    image = std::move(decoded);
    return true;
}
