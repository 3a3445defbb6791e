// Qt's way to every image format that FreeImage knows.
#pragma once

#include <QImageIOPlugin>
#include <QStringList>

namespace Orv::ImageFormats {

// One instance, made by Qt at the first question for an image format and kept for the process.
class FreeImageIOPlugin final : public QImageIOPlugin
{
    Q_OBJECT
    // The keys of the file are those that keys() answers: Qt looks for them there before it asks
    // for an instance.
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "freeimageioplugin.json")

public:
    explicit FreeImageIOPlugin(QObject* parent = nullptr);

    // The file extensions of all formats, in FreeImage's order; some stand for two formats.
    QStringList keys() const;
    // With an empty format word the content of the device decides. GIF is read only.
    Capabilities capabilities(QIODevice* device, const QByteArray& format) const override;
    // The caller owns the handler, and keeps the device alive as long.
    QImageIOHandler* create(QIODevice* device, const QByteArray& format) const override;
};

} // namespace Orv::ImageFormats
