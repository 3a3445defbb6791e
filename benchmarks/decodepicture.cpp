// What decoding in a process of its own costs: decodes a picture here and there, in turn, and prints
// the medians in milliseconds. Without a file it makes a PNG file of 4096 by 4096 pixels.
//
// decodepicture <path of kestrix-decode> [<picture>]
#include "imageformats/libraryoutput.h"
#include "imageformats/picturedecoding.h"
#include "resource/picturedecoder.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <iostream>
#include <random>
#include <vector>

namespace {

constexpr int Rounds = 15;

// Slopes with a little noise, which packs like a texture.
QImage sample()
{
    std::mt19937 random(20240611);
    QImage image(4096, 4096, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x / 16, y / 16, 100 + int(random() % 8)));
    return image;
}

bool decodeHere(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) &&
           !Orv::ImageFormats::decodePicture(file, "png", {}, &Orv::ImageFormats::imageInMemory)
                .isNull();
}

bool decodeThere(const Ksx::Core::PictureDecoder& decoder, const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && decoder.decode(file, QStringLiteral("png")) != nullptr;
}

template <class Function>
double milliseconds(Function function)
{
    const auto begin = std::chrono::steady_clock::now();
    if (!function()) {
        std::cerr << "the picture cannot be decoded\n";
        std::exit(1);
    }
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - begin;
    return taken.count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (argc < 2) {
        std::cerr << "decodepicture <path of kestrix-decode> [<picture>]\n";
        return 1;
    }
    const QTemporaryDir directory;
    QString path = argc > 2 ? QFile::decodeName(argv[2]) : QString();
    if (path.isEmpty()) {
        path = directory.filePath(QStringLiteral("sample.png"));
        sample().save(path);
    }
    Orv::ImageFormats::silenceLibraries();
    const Ksx::Core::PictureDecoder decoder(QFile::decodeName(argv[1]));
    std::vector<double> here;
    std::vector<double> there;
    for (int round = 0; round < Rounds; ++round) {
        here.push_back(milliseconds([&path] { return decodeHere(path); }));
        there.push_back(milliseconds([&] { return decodeThere(decoder, path); }));
    }
    std::cout << "in this process: " << median(here) << " ms\n"
              << "in one of its own: " << median(there) << " ms\n";
    return 0;
}
