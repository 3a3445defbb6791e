// Reads and writes one image through FreeImage.
#pragma once

#include <QImageIOHandler>
#include <QMap>
#include <QVariant>

namespace Orv::ImageFormats {

// Made by FreeImageIOPlugin for a reader or writer of Qt, which owns it and gives it the device.
// The format word is a file extension or FreeImage's name of a format.
class FreeImageIOHandler final : public QImageIOHandler
{
public:
    // True when the content of the device is of a format that can be read; that format's name
    // becomes the format word. The device's position stays.
    bool canRead() const override;
    // Answers a picture of Format_ARGB32, opaque where the file has no transparency. The content
    // decides on the format, and the format word only where the content shows none. Pictures of
    // more than eight bits a channel are reduced and carry the text "degraded" with the value
    // "true". False, with `image` as it was, when FreeImage refuses the file.
    bool read(QImage* image) override;
    // Writes in the format of the format word, in the greatest depth that the format has. False
    // when there is no such format, it has no depth of ours, or the device takes no data.
    bool write(const QImage& image) override;
    // Quality (0 to 100) is for JPEG; 0, as a value outside that range below, is FreeImage's
    // default. SubType "ascii" makes PBM, PGM and PPM files of text instead of bytes.
    void setOption(ImageOption option, const QVariant& value) override;
    // Only what QImageWriter shall set: Quality, and that for JPEG alone.
    bool supportsOption(ImageOption option) const override;

private:
    QMap<ImageOption, QVariant> m_options;
};

} // namespace Orv::ImageFormats
