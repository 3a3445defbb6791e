// Pictures and image files made by FreeImage itself, for the tests of the plug-in.
#pragma once

#include <QByteArray>
#include <QImage>
#include <FreeImage.h>
#include <memory>

namespace TestSupport {

struct UnloadBitmap
{
    void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using BitmapPointer = std::unique_ptr<FIBITMAP, UnloadBitmap>;

constexpr int SampleSize = 16;

// The colour at a place of the sample picture; no two places have the same.
inline QRgb sampleColour(int x, int y)
{
    return qRgb(x * 16, y * 16, 200);
}

// The sample picture as it is to be read: opaque.
inline QImage samplePicture()
{
    QImage picture(SampleSize, SampleSize, QImage::Format_ARGB32);
    for (int y = 0; y < SampleSize; ++y)
        for (int x = 0; x < SampleSize; ++x)
            picture.setPixel(x, y, sampleColour(x, y));
    return picture;
}

// The sample picture with an alpha that falls from left to right.
inline QImage translucentPicture()
{
    QImage picture = samplePicture();
    for (int y = 0; y < SampleSize; ++y)
        for (int x = 0; x < SampleSize; ++x)
            picture.setPixel(x, y, (picture.pixel(x, y) & RGB_MASK) | ((255U - x * 15U) << 24));
    return picture;
}

// FreeImage's bitmap of a picture, of 32 bits.
inline BitmapPointer bitmapOf(const QImage& picture)
{
    QImage source = picture.convertToFormat(QImage::Format_ARGB32);
    return BitmapPointer(FreeImage_ConvertFromRawBits(source.bits(), source.width(),
                                                      source.height(), source.width() * 4, 32,
                                                      0xff0000, 0xff00, 0xff, TRUE));
}

inline BitmapPointer opaqueBitmap()
{
    return BitmapPointer(FreeImage_ConvertTo24Bits(bitmapOf(samplePicture()).get()));
}

// A bitmap of one line, of as many pixels as there are values; `channels` values make a pixel.
template <typename Value, size_t Count>
BitmapPointer lineOf(FREE_IMAGE_TYPE type, int channels, const Value (&values)[Count])
{
    const int width = static_cast<int>(Count) / channels;
    BitmapPointer bitmap(FreeImage_AllocateT(type, width, 1, int(sizeof(Value)) * 8 * channels));
    std::copy(values, values + Count,
              reinterpret_cast<Value*>(FreeImage_GetScanLine(bitmap.get(), 0)));
    return bitmap;
}

// The bytes of the file in which FreeImage saves the bitmap; empty if it cannot.
inline QByteArray fileOf(FREE_IMAGE_FORMAT format, FIBITMAP* bitmap, int flags = 0)
{
    FIMEMORY* const memory = FreeImage_OpenMemory(nullptr, 0);
    BYTE* data = nullptr;
    DWORD size = 0;
    QByteArray bytes;
    if (FreeImage_SaveToMemory(format, bitmap, memory, flags) &&
        FreeImage_AcquireMemory(memory, &data, &size))
        bytes = QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size));
    FreeImage_CloseMemory(memory);
    return bytes;
}

inline QByteArray fileOf(FREE_IMAGE_FORMAT format, const BitmapPointer& bitmap, int flags = 0)
{
    return fileOf(format, bitmap.get(), flags);
}

// What FreeImage loads from the bytes, null if it refuses them.
inline BitmapPointer bitmapIn(FREE_IMAGE_FORMAT format, QByteArray bytes)
{
    FIMEMORY* const memory = FreeImage_OpenMemory(reinterpret_cast<BYTE*>(bytes.data()),
                                                  static_cast<DWORD>(bytes.size()));
    BitmapPointer bitmap(FreeImage_LoadFromMemory(format, memory, 0));
    FreeImage_CloseMemory(memory);
    return bitmap;
}

// Collects the texts of Qt's messages while it lives.
class CapturedMessages
{
public:
    CapturedMessages()
    {
        texts().clear();
        m_former = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { texts() += text; });
    }
    ~CapturedMessages() { qInstallMessageHandler(m_former); }
    CapturedMessages(const CapturedMessages&) = delete;
    CapturedMessages& operator=(const CapturedMessages&) = delete;

    static QStringList& texts()
    {
        static QStringList list;
        return list;
    }

private:
    QtMessageHandler m_former;
};

} // namespace TestSupport
