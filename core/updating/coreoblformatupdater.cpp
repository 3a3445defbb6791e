#include "updating/oblformatupdater.h"

#include "updating/documentdevice.h"
#include "updating/ipackagetextimporter.h"
#include <QCoreApplication>
#include <QFileDevice>

namespace Ksx::Core {

namespace {

using Orv::Core::MessageLevel;
using Orv::Core::MessageNode;
using Orv::Core::Extensions::ProgressFunction;

void report(const ProgressFunction& progress, float fraction)
{
    if (progress)
        progress(fraction);
}

// Files are cut short as they are; every other device is opened again for it.
bool clear(QIODevice& device)
{
    if (auto* const file = qobject_cast<QFileDevice*>(&device))
        return file->resize(0) && file->seek(0);
    const QIODevice::OpenMode mode = device.openMode();
    device.close();
    return device.open(mode | QIODevice::Truncate);
}

bool replaceContent(QIODevice& device, const QByteArray& bytes)
{
    return device.isWritable() && clear(device) && device.write(bytes) == bytes.size() &&
           device.seek(0) && device.size() == bytes.size();
}

} // namespace

bool OBLFormatUpdater::accepts(const Orv::Core::Extensions::IDataImporter& importer) const
{
    return dynamic_cast<const IPackageTextImporter*>(&importer) != nullptr;
}

bool OBLFormatUpdater::update(QIODevice& device, MessageNode* log,
                              const ProgressFunction& progress) const
{
    report(progress, 0.0F);
    auto* const shared = dynamic_cast<DocumentDevice*>(&device);
    DocumentDevice own(shared == nullptr ? device.readAll() : QByteArray());
    own.open(QIODevice::ReadWrite);
    DocumentDevice& holder = shared == nullptr ? own : *shared;
    QString error;
    Document* const document = holder.document(error);
    if (document == nullptr) {
        addMessage(log, MessageLevel::Error, error);
        return false;
    }

    report(progress, 0.25F);
    const Elements found = find(*document, holder.index());
    report(progress, 0.5F);
    const std::optional<int> count = change(*document, found);
    report(progress, 0.75F);
    if (!count)
        return false;

    bool isStored = true;
    if (*count != 0) {
        addMessage(log, MessageLevel::Information, text("ENTRY_CHANGED_%1").arg(*count));
        isStored = holder.setDocumentChanged() &&
                   (shared != nullptr || replaceContent(device, own.bytes()));
        if (!isStored)
            addMessage(
                log, MessageLevel::Error,
                QCoreApplication::translate("Ksx::Core", "ERROR_FAIL_TO_SET_DEVICE_CONTENT"));
    }
    report(progress, 1.0F);
    return isStored;
}

} // namespace Ksx::Core
