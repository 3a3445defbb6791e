// Reads one image through Qt, like a program that registers the image plug-in and has no plug-in
// directory. Prints a line for each thing that the tests want to know.
#include "imageformats/imagepluginregistration.h"

#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QPluginLoader>
#include <iostream>

namespace {

bool isPluginLoaded()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("ksx_imageformats");
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList paths = QCoreApplication::libraryPaths();
    for (const QString& path : paths)
        QCoreApplication::removeLibraryPath(path);

    Orv::ImageFormats::registerImagePlugin();
    Orv::ImageFormats::registerImagePlugin();
    std::cout << "static plug-ins: " << QPluginLoader::staticPlugins().size() << '\n'
              << "loaded at first: " << isPluginLoaded() << '\n';

    QImageReader reader(QFile::decodeName(argv[1]));
    const QImage image = reader.read();
    std::cout << "size: " << image.width() << 'x' << image.height() << '\n'
              << "degraded: " << image.text(QStringLiteral("degraded")).toStdString() << '\n'
              << "loaded at last: " << isPluginLoaded() << '\n'
              << "knows exr: " << QImageReader::supportedImageFormats().contains("exr") << '\n';
    return 0;
}
