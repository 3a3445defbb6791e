#include "reading/oblimporter.h"

#include "data/content/package.h"
#include "data/diagnosticlog.h"
#include "data/filename.h"
#include "data/xmldatareader.h"
#include <QCoreApplication>
#include <exception>
#include <new>

namespace Ksx::Core {

namespace {

// Null text on success, else what went wrong, which may be empty.
QString readPackage(QIODevice& device, Data::Content::Package& package,
                    const Orv::Core::Extensions::ProgressFunction& progress)
{
    Orv::Data::XmlDataReader reader(&device);
    try {
        if (reader.read(package, progress) == 0)
            return {};
    } catch (const std::bad_alloc&) {
        throw; // no fault of the file
    } catch (const std::exception& exception) {
        return QString::fromLatin1(exception.what()); // a value that its type refuses
    }
    const QString text = reader.errorString();
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

bool OBLImporter::accepts(const QUrl& url) const
{
    const QString text = url.toString();
    return text.endsWith(QLatin1String(".obl")) || text.endsWith(QLatin1String(".obl.orvautosave"));
}

std::unique_ptr<Orv::Data::BaseObject>
OBLImporter::import(QIODevice& device, Orv::Core::MessageNode* log,
                    const Orv::Core::Extensions::ProgressFunction& progress) const
{
    auto package = std::make_unique<Data::Content::Package>();
    const QString reason = readPackage(device, *package, progress);
    if (reason.isNull())
        return package;
    QString text = QCoreApplication::translate("Ksx::Core::OBLImporter", "ERROR_XML_READ_ERROR");
    if (!reason.isEmpty())
        text += QStringLiteral(" :\n") + reason;
    Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency, "core\\coreoblimporter", __LINE__,
                              Orv::toBytes(text));
    addMessage(log, Orv::Core::MessageLevel::Error, text);
    return nullptr;
}

} // namespace Ksx::Core
