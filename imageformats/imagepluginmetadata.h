// What Qt wants to know of the image plug-in before it asks for an instance.
#pragma once

#include <QObject>

namespace Orv::ImageFormats {

// Never instantiated. moc makes the metadata of a plug-in out of this declaration, for a program
// that shall not load the plug-in itself until it is needed. The interface is spelt out, since the
// header that names it is QtGui's.
class ImagePluginMetaData final : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QImageIOHandlerFactoryInterface" FILE
                          "freeimageioplugin.json")
};

} // namespace Orv::ImageFormats
