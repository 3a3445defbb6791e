#include "imageformats/imagewrapping.h"

#include <QImage>

namespace {

using Owner = std::shared_ptr<const void>;

// Called when the last copy of the image goes.
void releaseOwner(void* owner)
{
    delete static_cast<Owner*>(owner);
}

} // namespace

void ksxWrapImage(const uchar* pixels, const QSize& size, bool isDegraded, const Owner& owner,
                  std::shared_ptr<const QImage>& image)
{
    auto wrapped = std::make_shared<QImage>(pixels, size.width(), size.height(), size.width() * 4,
                                            QImage::Format_ARGB32, &releaseOwner, new Owner(owner));
    if (isDegraded) // Qt copies pixels that it may not write to before it adds a text
        wrapped->setText(QStringLiteral("degraded"), QStringLiteral("true"));
    image = std::move(wrapped);
}
