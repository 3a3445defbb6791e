// What all updaters answer in the same way.
#pragma once

#include "core/extensions.h"

namespace Ksx::Core {

// The translation of a key in the context of an updater's class.
QString updaterText(const char* className, const char* key);

// `Interface` is IDataFormatUpdater or IPackageUpdater. A step leaves its own version in the file
// unless it says otherwise.
template <class Interface>
class UpdaterBase : public Interface
{
public:
    Orv::Core::Version formatVersion() const override { return this->updaterVersion(); }
    QString name() const override { return text("NAME"); }
    QString description() const override { return text("DESCRIPTION"); }

protected:
    // The full name, namespaces included: the context of all texts of the updater.
    virtual const char* className() const = 0;
    QString text(const char* key) const { return updaterText(className(), key); }
};

} // namespace Ksx::Core
