// Decoding of picture files in a process of its own.
#pragma once

#include <QSize>
#include <QString>
#include <chrono>
#include <cstddef>
#include <memory>

class QFile;

namespace Ksx::Core {

// The pixels of a picture, in memory that nobody else can write to.
class DecodedPicture
{
public:
    // Takes over `pixels`, which mmap() gave: four bytes for each pixel of the size.
    DecodedPicture(const void* pixels, QSize size, bool isDegraded);
    ~DecodedPicture();
    DecodedPicture(const DecodedPicture&) = delete;
    DecodedPicture& operator=(const DecodedPicture&) = delete;

    QSize size() const { return m_size; }
    // Did the file have more than eight bits a channel?
    bool isDegraded() const { return m_isDegraded; }
    // Numbers 0xAARRGGBB, line by line from the top without gaps.
    const unsigned char* pixels() const { return static_cast<const unsigned char*>(m_pixels); }

private:
    const void* m_pixels;
    QSize m_size;
    bool m_isDegraded;
};

// Starts the program "kestrix-decode" for each picture. The files come from anywhere, and the old
// decoders crash, hang or take all memory on some of them. So they see the one file and have bounds
// on time and memory, and the answer is believed only as far as it has been checked.
class PictureDecoder
{
public:
    // Returns the path of the program, as modulePlace() finds it.
    static QString program();

    explicit PictureDecoder(QString program = PictureDecoder::program(),
                            std::chrono::milliseconds patience = std::chrono::minutes(2));

    // Returns the picture in a file that is open for reading and has a descriptor, whose position
    // the program moves. `ending` is that of the file's name, without the dot: it decides for
    // formats that the content does not show. Returns null if the file is no whole picture of at
    // most MaximumPicturePixels, if the program is missing, or if it gives no sound answer before
    // the patience ends.
    std::shared_ptr<const DecodedPicture> decode(const QFile& file, const QString& ending) const;

private:
    QString m_program;
    std::chrono::milliseconds m_patience;
};

} // namespace Ksx::Core
