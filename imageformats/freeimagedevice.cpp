#include "imageformats/freeimagedevice.h"

#include <QBuffer>
#include <QByteArray>
#include <QIODevice>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

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

ReadSource& sourceOf(fi_handle handle)
{
    return *static_cast<ReadSource*>(handle);
}

unsigned DLL_CALLCONV readItems(void* buffer, unsigned size, unsigned count, fi_handle handle)
{
    return wholeItems(sourceOf(handle).read(static_cast<char*>(buffer), qint64(size) * count),
                      size);
}

// Files are written without being read.
unsigned DLL_CALLCONV readNothing(void*, unsigned, unsigned, fi_handle)
{
    return 0;
}

unsigned DLL_CALLCONV writeNothing(void*, unsigned, unsigned, fi_handle)
{
    return 0;
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
    case SEEK_END: // codecs ask for a place before the end, with either sign
        return device->size() - std::abs(offset);
    default:
        return offset;
    }
}

// The answers that FreeImage expects, as they are those of fseek().
constexpr int SeekDone = 0;
constexpr int SeekRefused = -1;

int seekTo(QIODevice* device, qint64 target)
{
    // A device refuses a negative position too, but complains of it on the terminal.
    return target >= 0 && device->seek(target) ? SeekDone : SeekRefused;
}

int DLL_CALLCONV seekToWrite(fi_handle handle, long offset, int origin)
{
    return seekTo(deviceOf(handle), seekTarget(deviceOf(handle), offset, origin));
}

// Codecs that only look whether a file is theirs go wherever its bytes send them. Past its end a
// buffer complains, or fills the gap when it is writable: reading shall do neither.
int DLL_CALLCONV seekToRead(fi_handle handle, long offset, int origin)
{
    QIODevice& device = sourceOf(handle).device();
    const qint64 target = seekTarget(&device, offset, origin);
    if (qobject_cast<const QBuffer*>(&device) != nullptr && target > device.size())
        return SeekRefused;
    return seekTo(&device, target);
}

long DLL_CALLCONV positionToWrite(fi_handle handle)
{
    return static_cast<long>(deviceOf(handle)->pos());
}

long DLL_CALLCONV positionToRead(fi_handle handle)
{
    return static_cast<long>(sourceOf(handle).device().pos());
}

} // namespace

FreeImageIO ReadSource::callbacks()
{
    return {&readItems, &writeNothing, &seekToRead, &positionToRead};
}

qint64 ReadSource::read(char* buffer, qint64 count)
{
    const bool isBehindEnd = m_end >= 0 && m_device.pos() >= m_end;
    const qint64 read = isBehindEnd ? 0 : std::max<qint64>(m_device.read(buffer, count), 0);
    if (read == count)
        return read;
    m_hasReadShort = true;
    if (!isBehindEnd)
        m_end = m_device.pos();
    if (read == 0 && ++m_vainReads > MaximumVainReads)
        throw EndOfFilePassed();
    return read;
}

FreeImageIO writingCallbacks()
{
    return {&readNothing, &writeItems, &seekToWrite, &positionToWrite};
}

FREE_IMAGE_FORMAT formatOfContent(QIODevice* device)
{
    if (!device || !device->isReadable() || device->isSequential())
        return FIF_UNKNOWN;
    ReadSource source(*device);
    FreeImageIO callbacks = ReadSource::callbacks();
    const qint64 begin = device->pos();
    try {
        return FreeImage_GetFileTypeFromHandle(&callbacks, source.handle());
    } catch (...) { // codecs let through whatever their libraries throw
        device->seek(begin);
        return FIF_UNKNOWN;
    }
}

FREE_IMAGE_FORMAT formatOfWord(const QByteArray& word)
{
    return FreeImage_GetFIFFromFilename(("file." + word).constData());
}

} // namespace Orv::ImageFormats
