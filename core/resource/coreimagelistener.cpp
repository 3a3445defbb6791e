#include "ksx/core/imagelistener.h"

#include "core/fileplace.h"
#include "core/moduleplace.h"
#include "data/content/resource.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/resourcelistener.h"
#include "resource/picturedecoder.h"
#include <QFile>
#include <QFileInfo>
#include <QLibrary>

namespace Ksx::Core {

namespace {

using WrapFunction = void (*)(const uchar*, const QSize&, bool, const std::shared_ptr<const void>&,
                              std::shared_ptr<const QImage>&);

// The image plug-in beside the executable, with QtGui behind it: what they link would multiply the
// time that a program takes to start, so they are loaded at need. They stay loaded until the
// process ends.
WrapFunction wrapper()
{
    static const auto wrap = reinterpret_cast<WrapFunction>(
        QLibrary(Orv::Core::modulePlace(QStringLiteral("libksx_imageformats.so")))
            .resolve("ksxWrapImage"));
    return wrap;
}

std::shared_ptr<const QImage> imageOver(const std::shared_ptr<const DecodedPicture>& picture)
{
    std::shared_ptr<const QImage> image;
    if (picture != nullptr && wrapper() != nullptr)
        wrapper()(picture->pixels(), picture->size(), picture->isDegraded(), picture, image);
    return image;
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
    if (state() == ImageState::Decoded && m_picture == nullptr)
        decode();
    if (m_image == nullptr)
        m_image = imageOver(m_picture);
    return m_image;
}

QSize ImageListener::size()
{
    state();
    return m_size;
}

void ImageListener::release()
{
    m_image.reset();
    m_picture.reset();
}

void ImageListener::decode()
{
    release();
    m_isKnown = true;
    m_state = ImageState::Unreachable;
    m_size = QSize();
    m_path.clear();
    if (!m_resource)
        return;
    const ResourceListener& resource = ResourceListener::of(*m_resource);
    m_path = resource.filePath();
    const auto file = resource.open();
    if (file == nullptr)
        return;
    m_picture = PictureDecoder().decode(*file, QFileInfo(m_path).suffix());
    if (m_picture != nullptr) {
        m_state = ImageState::Decoded;
        m_size = m_picture->size();
    } else {
        const bool hasDecoder = Orv::Core::exists(PictureDecoder::program());
        m_state = hasDecoder ? ImageState::Undecodable : ImageState::NoDecoder;
    }
}

} // namespace Ksx::Core
