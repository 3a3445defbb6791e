// A plug-in for images that reads none: it leaves a file beside itself when somebody loads it.
#include <QImageIOPlugin>
#include <dlfcn.h>
#include <fstream>
#include <string>

class MarkPlugin final : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QImageIOHandlerFactoryInterface" FILE
                          "markplugin.json")

public:
    MarkPlugin()
    {
        Dl_info own;
        if (dladdr(&MarkPlugin::staticMetaObject, &own) != 0)
            std::ofstream(std::string(own.dli_fname) + ".loaded");
    }
    Capabilities capabilities(QIODevice*, const QByteArray&) const override { return {}; }
    QImageIOHandler* create(QIODevice*, const QByteArray&) const override { return nullptr; }
};

#include "markplugin.moc"
