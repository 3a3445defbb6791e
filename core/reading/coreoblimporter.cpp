#include "reading/oblimporter.h"

#include "data/content/package.h"
#include "data/diagnosticlog.h"
#include "data/filename.h"
#include "data/xmldocument.h"
#include "updating/documentdevice.h"
#include <QCoreApplication>
#include <exception>
#include <new>

namespace Ksx::Core {

namespace {

// Builds the tree from the document that the updaters have left. Returns null if there is none, or
// if the text of the device has to be read.
std::unique_ptr<Orv::Data::BaseObject>
takeTree(DocumentDevice& device, const Orv::Data::MakeRoot& makeRoot,
         const Orv::Core::Extensions::ProgressFunction& progress)
{
    const Orv::Data::LightDocument* const document = device.parsedDocument();
    auto root = document == nullptr ? nullptr : Orv::Data::treeOf(*document, makeRoot, progress);
    if (root == nullptr)
        device.releaseDocument(); // the text of it is enough
    return root;
}

// Returns null after a failure. `reason` is its text then, which may be empty.
std::unique_ptr<Orv::Data::BaseObject>
readPackage(QIODevice& device, const Orv::Core::Extensions::ProgressFunction& progress,
            QString& reason)
{
    const auto makeRoot = [] { return std::make_unique<Data::Content::Package>(); };
    try {
        if (auto* const updated = dynamic_cast<DocumentDevice*>(&device)) {
            if (auto root = takeTree(*updated, makeRoot, progress))
                return root;
        }
        Orv::Data::XmlDocument document = Orv::Data::readXmlDocument(device, makeRoot, progress);
        reason = document.errorString;
        return std::move(document.root);
    } catch (const std::bad_alloc&) {
        throw; // no fault of the file
    } catch (const std::exception& exception) {
        reason = QString::fromLatin1(exception.what()); // a value that its type refuses
    }
    return nullptr;
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
    QString reason;
    if (auto package = readPackage(device, progress, reason))
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
