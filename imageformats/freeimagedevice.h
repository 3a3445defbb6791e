// A QIODevice as the functions of FreeImage see it, and which format it holds.
#pragma once

#include <QtGlobal>
#include <FreeImage.h>
#include <exception>

class QByteArray;
class QIODevice;

namespace Orv::ImageFormats {

// The callbacks of FreeImage; the handle that belongs to them is the QIODevice itself.
FreeImageIO writingCallbacks();

// Ends a decoder that goes on reading behind the end of its file. There are codecs that look for
// the end of a list for ever, and FreeImage itself has no other way to stop them. The exception
// passes the C libraries as FreeImage's own do: they are compiled with tables for unwinding. It
// leaves the memory of such a library behind.
class EndOfFilePassed final : public std::exception
{
public:
    const char* what() const noexcept override { return "A decoder reads behind the end"; }
};

// A device that FreeImage reads, and how often a codec asked for bytes that are not there. The
// buffer of a codec stays untouched where the file has no byte for it.
class ReadSource
{
public:
    // Decoders of whole files ask once or twice.
    static constexpr int MaximumVainReads = 32;

    // The device outlives the source.
    explicit ReadSource(QIODevice& device) : m_device(device) {}

    QIODevice& device() const { return m_device; }
    // The handle that belongs to callbacks().
    fi_handle handle() { return this; }
    static FreeImageIO callbacks();

    // Was there a read that began at or behind the end, and one that only ended there?
    bool hasReadNothing() const { return m_vainReads > 0; }
    bool hasReadShort() const { return m_hasReadShort; }

    // For the callbacks: returns the number of bytes that were there. Throws EndOfFilePassed at one
    // vain read too many.
    qint64 read(char* buffer, qint64 count);

private:
    QIODevice& m_device;
    qint64 m_end = -1; // where the device had no more bytes; -1 before it was found
    int m_vainReads = 0;
    bool m_hasReadShort = false;
};

// The format that the device's content shows from its position on, which stays where it is.
// FIF_UNKNOWN for a device that is null, cannot be read or cannot be wound back.
FREE_IMAGE_FORMAT formatOfContent(QIODevice* device);

// The format that a word stands for: a file extension, or FreeImage's own name of the format.
// FIF_UNKNOWN when there is none of that name.
FREE_IMAGE_FORMAT formatOfWord(const QByteArray& word);

} // namespace Orv::ImageFormats
