#include "ksx/core/oblasmimporter.h"

#include "data/content/package.h"
#include "data/diagnosticlog.h"
#include "data/filename.h"
#include "data/latin1.h"
#include "ksx/core/domtext.h"
#include "ksx/core/oblasmdocumentreader.h"
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace Ksx::Core {

namespace {

const QString Ending = QStringLiteral(".oblasm");

// Reports in the log and in the debug trace. Answers null, for the caller to return.
std::unique_ptr<Orv::Data::BaseObject> failure(Orv::Core::MessageNode* log, const QString& text)
{
    Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency, "core\\coreoblasmimporter", __LINE__,
                              Orv::toBytes(text));
    addMessage(log, Orv::Core::MessageLevel::Error, text);
    return nullptr;
}

QString translated(const char* key)
{
    return QCoreApplication::translate("Ksx::Core::OBLASMImporter", key);
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
    const auto* file = dynamic_cast<const QFile*>(&device);
    if (file == nullptr)
        return failure(log, translated("ERROR_WRONG_DEVICE_TYPE"));
    const QString path = file->fileName();
    const QString xmlPath = path.left(path.size() - Ending.size()) + QStringLiteral(".xml");
    if (!QFileInfo::exists(xmlPath))
        return failure(log, translated("ERROR_XML_FILE_NOT_FOUND_%1").arg(xmlPath));
    OBLASMAssembly assembly;
    assembly.header = device.read(OBLASMAssembly::HeaderSize);
    if (assembly.header.isEmpty())
        return failure(log, translated("ERROR_INVALID_FILE_CONTENT_%1").arg(path));
    QFile xml(xmlPath);
    if (!xml.open(QIODevice::ReadOnly))
        return failure(log, translated("ERROR_OPEN_FILE_FAILED_%1").arg(xmlPath));
    const QByteArray text = xml.readAll();
    if (text.isEmpty())
        return failure(log, translated("ERROR_INVALID_FILE_CONTENT_%1").arg(xmlPath));
    DomError error;
    if (!parseDom(text, assembly.description, error))
        return failure(log, translated("ERROR_XML_DOCUMENT_ERROR_%1_%2_%3")
                                .arg(error.message)
                                .arg(error.line)
                                .arg(error.column));
    if (!assembly.isValid())
        return failure(log, translated("ERROR_INVALID_OBLASM"));
    auto package = std::make_unique<Data::Content::Package>();
    package->identifier().assign(Orv::toLatin1(QFileInfo(path).completeBaseName()));
    if (!OBLASMDocumentReader(assembly, log).read(*package))
        return nullptr;
    return package;
}

} // namespace Ksx::Core
