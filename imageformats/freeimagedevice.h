// A QIODevice as the functions of FreeImage see it, and which format it holds.
#pragma once

#include <QtGlobal>
#include <FreeImage.h>

class QByteArray;
class QIODevice;

namespace Orv::ImageFormats {

// The callbacks of FreeImage; the handle that belongs to them is the QIODevice itself.
FreeImageIO writingCallbacks();

// A device that FreeImage reads, and what it asked for in vain. What lies behind the end reads as
// zeros, although it counts as not read: there are codecs that look at their buffer alone, and of
// those some would look for the end of a list for ever.
class ReadSource
{
public:
    // The device outlives the source.
    explicit ReadSource(QIODevice& device) : m_device(device) {}

    QIODevice& device() const { return m_device; }
    // The handle that belongs to callbacks().
    fi_handle handle() { return this; }
    static FreeImageIO callbacks();

    // Was there a read that began at or behind the end, and one that only ended there?
    bool hasReadNothing() const { return m_hasReadNothing; }
    bool hasReadShort() const { return m_hasReadShort; }

    // For the callbacks: the number of bytes that were there.
    qint64 read(char* buffer, qint64 count);

private:
    QIODevice& m_device;
    bool m_hasReadNothing = false;
    bool m_hasReadShort = false;
};

// The format that the device's content shows from its position on, which stays where it is.
// FIF_UNKNOWN for a device that is null, cannot be read or cannot be wound back.
FREE_IMAGE_FORMAT formatOfContent(QIODevice* device);

// The format that a word stands for: a file extension, or FreeImage's own name of the format.
// FIF_UNKNOWN when there is none of that name.
FREE_IMAGE_FORMAT formatOfWord(const QByteArray& word);

} // namespace Orv::ImageFormats
