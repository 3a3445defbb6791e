#include "imageformats/imagepluginregistration.h"

#include "core/moduleplace.h"
#include <QPluginLoader>
#include <algorithm>
#include <string_view>

// Made by moc out of imagepluginmetadata.h.
extern const QStaticPlugin qt_static_plugin_ImagePluginMetaData();

namespace Orv::ImageFormats {

namespace {

// A full path keeps QPluginLoader from searching the library paths. The library stays loaded when
// the loader goes.
QObject* loadedInstance()
{
    const QString path = Core::modulePlace(QStringLiteral("libksx_imageformats.so"));
    return QPluginLoader(path).instance();
}

// The name counts without its namespace.
bool isImagePlugin(const QObject* instance)
{
    if (!instance) // a plug-in whose library is missing
        return false;
    const std::string_view name = instance->metaObject()->className();
    return name.substr(name.rfind(':') + 1) == "FreeImageIOPlugin";
}

} // namespace

void registerImagePlugin()
{
    // Before the instances are looked at: that would load the library of a former registration.
    const auto plugins = QPluginLoader::staticPlugins();
    if (std::any_of(plugins.begin(), plugins.end(),
                    [](const QStaticPlugin& plugin) { return plugin.instance == &loadedInstance; }))
        return;
    const QObjectList instances = QPluginLoader::staticInstances();
    if (std::any_of(instances.begin(), instances.end(), &isImagePlugin))
        return;

    QStaticPlugin plugin = qt_static_plugin_ImagePluginMetaData();
    plugin.instance = &loadedInstance;
    qRegisterStaticPluginFunction(plugin);
}

} // namespace Orv::ImageFormats
