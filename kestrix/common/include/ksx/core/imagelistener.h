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

// The result of decoding a picture.
enum class ImageState
{
    Decoded,
    // There is no file, or it cannot be read.
    Unreachable,
    // The file is no picture, a damaged one, or one that is too large.
    Undecodable,
    // The program that decodes, "kestrix-decode", is missing.
    NoDecoder
};

// Decodes the linked file of a resource when it is first asked for, and remembers the picture. A
// picture is decoded whole: if a part is missing, there is none. A process of its own does the
// work, so that no file can harm this one. The calls wait for it.
//
// The shadow of the resource owns the listener. It dies with the resource, or at the end of the
// change that takes the resource out of the document. Main thread.
//
//     ImageListener& listener = ImageListener::of(resource);
//     if (const std::shared_ptr<const QImage> picture = listener.image())
//         canvas.draw(*picture);
//     listener.release(); // the canvas has a copy
class ImageListener final : public Orv::Core::ListenerDeaf<>
{
public:
    // Returns the listener of a resource that is part of a document. Makes it at the first call,
    // and decodes nothing yet.
    static ImageListener& of(const Data::Content::Resource& resource);

    // For of() alone.
    explicit ImageListener(const Data::Content::Resource& resource);
    ~ImageListener() override;
    // Returns true: the shadow deletes the listener.
    bool isOwnedByShadow() const override { return true; }

    // Returns the result of decoding. Decodes if that was not done yet, or if the resource has got
    // another path. A file that has changed under the same path is not decoded again.
    ImageState state();

    // Returns the picture, of QImage::Format_ARGB32. Returns null unless the state is Decoded.
    // Returns null also if the library of the image plug-in is missing: see modulePlace(). Decodes
    // again after release().
    //
    // The picture may be kept and outlives the listener. To look into it, a program links QtGui,
    // which this library does not.
    std::shared_ptr<const QImage> image();
    // Returns the size in pixels. It is not valid unless the state is Decoded.
    QSize size();

    // Drops the picture of the listener. Its memory is free once other users drop it. State and
    // size stay known.
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
