#include "ksx/core/imagelistener.h"

#include "data/content/resource.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/resourcelistener.h"
#include <QCoreApplication>
#include <QFile>
#include <QLibrary>

namespace Ksx::Core {

namespace {

using DecodeFunction = bool (*)(QIODevice&, std::shared_ptr<const QImage>&, QSize&);

// The image plug-in beside the executable, with QtGui behind it: what they link would multiply the
// time that a program takes to start, so they are loaded at need. They stay loaded until the
// process ends.
DecodeFunction decoder()
{
    static const auto decode = reinterpret_cast<DecodeFunction>(
        QLibrary(QCoreApplication::applicationDirPath() + QStringLiteral("/libksx_imageformats"))
            .resolve("ksxDecodeImage"));
    return decode;
}

} // namespace

ImageListener& ImageListener::of(const Data::Content::Resource& resource)
{
    return listenerOf<ImageListener>(resource);
}

ImageListener::ImageListener(const Data::Content::Resource& resource) : m_resource(&resource) {}

ImageListener::~ImageListener() = default;

ImageState ImageListener::state()
{
    const QString path = m_resource ? ResourceListener::of(*m_resource).filePath() : QString();
    if (!m_isKnown || path != m_path)
        decode();
    return m_state;
}

std::shared_ptr<const QImage> ImageListener::image()
{
    if (state() == ImageState::Decoded && m_image == nullptr)
        decode();
    return m_image;
}

QSize ImageListener::size()
{
    state();
    return m_size;
}

void ImageListener::decode()
{
    m_isKnown = true;
    m_state = ImageState::Unreachable;
    m_size = QSize();
    m_image.reset();
    m_path.clear();
    if (!m_resource)
        return;
    const ResourceListener& resource = ResourceListener::of(*m_resource);
    m_path = resource.filePath();
    const std::unique_ptr<QFile> file = resource.open();
    if (file == nullptr)
        return;
    const DecodeFunction decodeImage = decoder();
    const bool isDecoded = decodeImage != nullptr && decodeImage(*file, m_image, m_size);
    m_state = isDecoded ? ImageState::Decoded : ImageState::Undecodable;
}

} // namespace Ksx::Core
