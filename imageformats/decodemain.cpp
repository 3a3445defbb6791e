// Decodes one picture for another process, which started this one for it and trusts it with nothing:
// files of strangers reach decoders that were never meant for them.
//
// Started as "kestrix-decode <ending>", with the descriptors of DecodingDescriptor.
#include "imageformats/confinement.h"
#include "imageformats/libraryoutput.h"
#include "imageformats/picturedecoding.h"
#include "resource/pictureanswer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <exception>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using namespace Orv::ImageFormats;
using namespace Ksx::Core;

constexpr quint64 ProcessorSeconds = 10;
// A decoder holds a picture as it is in the file, and converts it; the result is in memory as well.
constexpr quint64 MaximumFilePixelSize = 16;
constexpr quint64 Margin = quint64(1) << 29; // libraries, and what decoders keep beside the pixels
constexpr quint64 MaximumFileBytes = MaximumPicturePixels * MaximumFilePixelSize;
constexpr quint64 MaximumAnswer = MaximumPicturePixels * PixelSize;
constexpr quint64 Memory = MaximumFileBytes + 2 * MaximumAnswer + Margin;

constexpr PictureLimits Limits{MaximumPicturePixels, MaximumFileBytes};

int descriptor(DecodingDescriptor name)
{
    return static_cast<int>(name);
}

// Qt finds readers of further formats in a directory beside the executable, and nowhere else. They
// have to be loaded before files cannot be opened any more.
void loadPlugins()
{
    QDir directory(QCoreApplication::applicationDirPath());
    const bool hasPlugins = directory.cd(QStringLiteral("plugins"));
    QCoreApplication::setLibraryPaths(hasPlugins ? QStringList(directory.path()) : QStringList());
    if (hasPlugins)
        QImageReader::supportedImageFormats();
}

// Returns an image whose pixels are in the memory that the other process gave; null if there is not
// enough of it.
QImage imageInAnswer(QSize size)
{
    const int pixels = descriptor(DecodingDescriptor::Pixels);
    const auto bytes = static_cast<std::size_t>(size.width()) *
                       static_cast<std::size_t>(size.height()) * PixelSize;
    if (ftruncate(pixels, static_cast<off_t>(bytes)) != 0)
        return QImage();
    void* const memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, pixels, 0);
    if (memory == MAP_FAILED)
        return QImage();
    return QImage(static_cast<uchar*>(memory), size.width(), size.height(),
                  size.width() * static_cast<int>(PixelSize), QImage::Format_ARGB32);
}

PictureAnswer answerTo(const QByteArray& ending)
{
    PictureAnswer answer;
    const int picture = descriptor(DecodingDescriptor::Picture);
    QFile file;
    if (lseek(picture, 0, SEEK_SET) != 0 || !file.open(picture, QIODevice::ReadOnly))
        return answer;
    const QImage image = decodePicture(file, ending, Limits, &imageInAnswer);
    if (image.isNull())
        return answer;
    answer.kind = image.textKeys().isEmpty() ? PictureKind::Exact : PictureKind::Degraded;
    answer.width = static_cast<std::uint32_t>(image.width());
    answer.height = static_cast<std::uint32_t>(image.height());
    return answer;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    loadPlugins();
    silenceLibraries();
    if (!confine({ProcessorSeconds, Memory, MaximumAnswer}))
        return 1;
    PictureAnswer answer;
    try {
        answer = answerTo(argc > 1 ? argv[1] : "");
    } catch (const std::exception&) { // most of them say that there is no memory
        answer = PictureAnswer();
    }
    const int place = descriptor(DecodingDescriptor::Answer);
    const bool isWritten = write(place, &answer, sizeof answer) == ssize_t(sizeof answer);
    _exit(isWritten ? 0 : 1); // nothing is torn down that the process's end gives back
}
