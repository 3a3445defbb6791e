#include "imageformats/freeimagedevice.h"

#include <QBuffer>
#include <QByteArray>
#include <QIODevice>
#include <algorithm>
#include <cstdio>

namespace Orv::ImageFormats {

namespace {

QIODevice* deviceOf(fi_handle handle)
{
    return static_cast<QIODevice*>(handle);
}

// `bytes` is negative after a failure, which FreeImage can only be told as nothing.
unsigned wholeItems(qint64 bytes, unsigned size)
{
    return size == 0 ? 0 : static_cast<unsigned>(std::max<qint64>(bytes, 0) / size);
}

unsigned DLL_CALLCONV readItems(void* buffer, unsigned size, unsigned count, fi_handle handle)
{
    return wholeItems(deviceOf(handle)->read(static_cast<char*>(buffer), qint64(size) * count),
                      size);
}

unsigned DLL_CALLCONV writeItems(void* buffer, unsigned size, unsigned count, fi_handle handle)
{
    return wholeItems(
        deviceOf(handle)->write(static_cast<const char*>(buffer), qint64(size) * count), size);
}

qint64 seekTarget(const QIODevice* device, long offset, int origin)
{
    switch (origin) {
    case SEEK_CUR:
        return device->pos() + offset;
    case SEEK_END:
        return device->size() - offset;
    default:
        return offset;
    }
}

// The answer is the device's own: 1 for success. FreeImage documents 0 for success, but most of
// its codecs do not look at the answer. Those of JPEG 2000 and of PSD files with layers do, and
// refuse.
int DLL_CALLCONV seekToWrite(fi_handle handle, long offset, int origin)
{
    const qint64 target = seekTarget(deviceOf(handle), offset, origin);
    // A device refuses a negative position too, but complains of it on the terminal.
    return target >= 0 && deviceOf(handle)->seek(target) ? 1 : 0;
}

// Codecs that only look whether a file is theirs go wherever its bytes send them. Past its end a
// buffer complains, or fills the gap when it is writable: reading shall do neither.
int DLL_CALLCONV seekToRead(fi_handle handle, long offset, int origin)
{
    const auto* const buffer = qobject_cast<const QBuffer*>(deviceOf(handle));
    if (buffer && seekTarget(buffer, offset, origin) > buffer->size())
        return 0;
    return seekToWrite(handle, offset, origin);
}

long DLL_CALLCONV position(fi_handle handle)
{
    return static_cast<long>(deviceOf(handle)->pos());
}

} // namespace

FreeImageIO readingCallbacks()
{
    return {&readItems, &writeItems, &seekToRead, &position};
}

FreeImageIO writingCallbacks()
{
    return {&readItems, &writeItems, &seekToWrite, &position};
}

FREE_IMAGE_FORMAT formatOfContent(QIODevice* device)
{
    if (!device || !device->isReadable() || device->isSequential())
        return FIF_UNKNOWN;
    FreeImageIO callbacks = readingCallbacks();
    return FreeImage_GetFileTypeFromHandle(&callbacks, device);
}

FREE_IMAGE_FORMAT formatOfWord(const QByteArray& word)
{
    return FreeImage_GetFIFFromFilename(("file." + word).constData());
}

} // namespace Orv::ImageFormats
