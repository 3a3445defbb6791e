#include "imageformats/picturedecoding.h"

#include "imageformats/freeimagedevice.h"
#include <QIODevice>
#include <QImageReader>
#include <QtEndian>
#include <cstring>

namespace Orv::ImageFormats {

namespace {

// Another device, and whether somebody read behind its end.
class WatchedDevice final : public QIODevice
{
public:
    explicit WatchedDevice(QIODevice& device) : m_device(device)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool hasReadShort() const { return m_hasReadShort; }

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_device.size(); }
    bool seek(qint64 position) override
    {
        return QIODevice::seek(position) && m_device.seek(position);
    }

protected:
    qint64 readData(char* data, qint64 count) override
    {
        const qint64 read = m_device.read(data, count);
        m_hasReadShort = m_hasReadShort || read < count;
        return read;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QIODevice& m_device;
    bool m_hasReadShort = false;
};

// Microsoft: Bitmap Header Types. FreeImage refuses BITMAPV4HEADER and BITMAPV5HEADER, which many
// programs write.
bool isNewerBmp(QIODevice& device)
{
    constexpr int HeaderSizePlace = 14;
    const QByteArray head = device.peek(HeaderSizePlace + 4);
    if (head.size() < HeaderSizePlace + 4)
        return false;
    const auto headerSize = qFromLittleEndian<quint32>(head.constData() + HeaderSizePlace);
    return headerSize == 108 || headerSize == 124;
}

// Files whose first line is the top one have a negative height.
bool isWithin(const PictureLimits& limits, QSize size)
{
    return quint64(qAbs(qint64(size.width()))) * quint64(qAbs(qint64(size.height()))) <=
           limits.pixels;
}

// Some readers cannot tell the size before they read the picture.
QImage readByQt(QImageReader& reader, const PictureLimits& limits)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    reader.setAllocationLimit(0); // our limit is another
#endif
    const QSize size = reader.size();
    if (!isWithin(limits, size))
        return QImage();
    // A file of runs may leave out pixels, and its reader leaves these as they are.
    QImage image(qAbs(size.width()), qAbs(size.height()), reader.imageFormat());
    image.fill(0U);
    if (!reader.read(&image))
        return QImage();
    return isWithin(limits, image.size()) ? image : QImage();
}

QImage readBmp(QIODevice& device, const PictureLimits& limits)
{
    WatchedDevice watched(device);
    QImageReader reader(&watched, "bmp");
    const QImage image = readByQt(reader, limits);
    return watched.hasReadShort() ? QImage() : image;
}

QImage copied(const QImage& source, const ImageMaker& makeImage)
{
    if (source.isNull())
        return source;
    const QImage pixels = source.convertToFormat(QImage::Format_ARGB32);
    QImage image = makeImage(pixels.size());
    if (pixels.isNull() || image.isNull())
        return QImage();
    for (int y = 0; y < pixels.height(); ++y)
        std::memcpy(image.scanLine(y), pixels.constScanLine(y), std::size_t(pixels.width()) * 4);
    return image;
}

} // namespace

QImage decodePicture(QIODevice& device, const QByteArray& ending, const PictureLimits& limits,
                     const ImageMaker& makeImage)
{
    FREE_IMAGE_FORMAT format = formatOfContent(&device);
    if (format == FIF_BMP && isNewerBmp(device))
        return copied(readBmp(device, limits), makeImage);
    if (format == FIF_UNKNOWN)
        format = formatOfWord(ending);
    if (format != FIF_UNKNOWN && FreeImage_FIFSupportsReading(format))
        return loadPicture(device, format, limits, makeImage);
    QImageReader reader(&device);
    return copied(readByQt(reader, limits), makeImage);
}

} // namespace Orv::ImageFormats
