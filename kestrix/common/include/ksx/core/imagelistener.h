// The picture that a resource is.
#pragma once

#include "core/listenerdeaf.h"
#include "data/datapointerbox.h"
#include <QSize>
#include <QString>
#include <memory>

class QImage;

namespace Ksx::Data::Content {
class Resource;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class DecodedPicture;

enum class ImageState
{
    Decoded,
    Unreachable, // there is no file, or it cannot be read
    Undecodable  // the file is no picture, or a damaged one, or one that is too large
};

// Stands on the shadow of the resource and dies with it. Decodes the linked file when it is first
// asked for the picture, once and whole: a picture of which a part is missing is none. A process of
// its own does that (see PictureDecoder).
class ImageListener final : public Orv::Core::ListenerDeaf<>
{
public:
    // The listener of a resource that stands in a document, made if there is none.
    static ImageListener& of(const Data::Content::Resource& resource);

    explicit ImageListener(const Data::Content::Resource& resource); // for of() alone
    ~ImageListener() override;
    bool isOwnedByShadow() const override { return true; }

    // What became of decoding. A resource that has been given another file is decoded anew.
    ImageState state();
    // The picture, of QImage::Format_ARGB32; null unless the state is Decoded, and without the
    // library of the image plug-in beside the executable. It is decoded anew after release(). To
    // look into it, a program links QtGui, which this library does not.
    std::shared_ptr<const QImage> image();
    // In pixels; not valid unless the state is Decoded.
    QSize size();
    // Gives the memory of the picture back, once its other users do; state and size stay known.
    void release();

private:
    void decode();

    Orv::Data::DataPointerBox<Data::Content::Resource> m_resource;
    QString m_path; // of the file that was decoded
    bool m_isKnown = false;
    ImageState m_state = ImageState::Unreachable;
    QSize m_size;
    std::shared_ptr<const DecodedPicture> m_picture;
    std::shared_ptr<const QImage> m_image; // over the pixels of the picture
};

} // namespace Ksx::Core
