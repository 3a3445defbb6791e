#include "reading/oblasmimporter.h"

#include "core/fileplace.h"
#include "core/regularfile.h"
#include "data/content/package.h"
#include "data/latin1.h"
#include "reading/domtext.h"
#include "reading/importerreport.h"
#include "reading/oblasmdocumentreader.h"
#include <QFile>
#include <QFileInfo>

namespace Ksx::Core {

namespace {

const QString Ending = QStringLiteral(".oblasm");

// The body's header and the description beside it.
bool readAssembly(QFile& file, OBLASMAssembly& assembly, const ImporterReport& report)
{
    const QString path = file.fileName();
    const QString xmlPath = path.left(path.size() - Ending.size()) + QStringLiteral(".xml");
    if (!Orv::Core::exists(xmlPath))
        return report.fail("ERROR_XML_FILE_NOT_FOUND_%1", {xmlPath});
    assembly.header = file.read(OBLASMAssembly::HeaderSize);
    if (assembly.header.isEmpty())
        return report.fail("ERROR_INVALID_FILE_CONTENT_%1", {path});
    Orv::Core::RegularFile xml(xmlPath);
    if (!xml.open(QIODevice::ReadOnly))
        return report.fail("ERROR_OPEN_FILE_FAILED_%1", {xmlPath});
    const QByteArray text = xml.readAll();
    if (text.isEmpty() || xml.hasFailed())
        return report.fail("ERROR_INVALID_FILE_CONTENT_%1", {xmlPath});
    Orv::Data::DocumentError error;
    if (!parseDom(text, assembly.description, error))
        return report.fail(error);
    if (assembly.isValid())
        return true;
    return report.fail("ERROR_INVALID_OBLASM");
}

} // namespace

bool OBLASMImporter::accepts(const QUrl& url) const
{
    return url.toString().endsWith(Ending);
}

std::unique_ptr<Orv::Data::BaseObject>
OBLASMImporter::import(QIODevice& device, Orv::Core::MessageNode* log,
                       const Orv::Core::Extensions::ProgressFunction&) const
{
    const ImporterReport report(log, "Ksx::Core::OBLASMImporter", "core\\coreoblasmimporter");
    auto* file = dynamic_cast<QFile*>(&device);
    if (file == nullptr) {
        report.fail("ERROR_WRONG_DEVICE_TYPE");
        return nullptr;
    }
    OBLASMAssembly assembly;
    if (!readAssembly(*file, assembly, report))
        return nullptr;
    auto package = std::make_unique<Data::Content::Package>();
    package->identifier().assign(Orv::toLatin1(QFileInfo(file->fileName()).completeBaseName()));
    if (!OBLASMDocumentReader(assembly, log).read(*package))
        return nullptr;
    return package;
}

} // namespace Ksx::Core
