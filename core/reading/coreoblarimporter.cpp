#include "reading/oblarimporter.h"

#include "data/content/package.h"
#include "data/latin1.h"
#include "reading/archivereader.h"
#include "reading/domtext.h"
#include "reading/importerreport.h"
#include "reading/oblasmdocumentreader.h"
#include "reading/oblasmgraphplaces.h"
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <algorithm>
#include <optional>
#include <unordered_map>

namespace Ksx::Core {

namespace {

using Data::Content::Package;
using Orv::Core::MessageNode;

const QString AssembliesPrefix = QStringLiteral("assemblies/content/");
const QString AuthoringPrefix = QStringLiteral("authoring/content/");
// What one description may come to, in bytes: a document of it takes a multiple.
constexpr qint64 MaximumDescriptionSize = qint64{64} << 20;
constexpr int FastCompression = 1; // of zlib

const QString BodyEnding = QStringLiteral(".oblasm");
const QString DescriptionEnding = QStringLiteral(".xml");

bool isDecimal(const QString& text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= '0' && c <= '9'; });
}

// The id of the entry that a file belongs to; null if it belongs to none. Ids are compared as text.
QString entryOf(const QString& name)
{
    for (const QString& prefix : {AssembliesPrefix, AuthoringPrefix}) {
        if (!name.startsWith(prefix))
            continue;
        const int end = static_cast<int>(name.indexOf('/', prefix.size()));
        const QString id = name.mid(prefix.size(), end - static_cast<int>(prefix.size()));
        return end >= 0 && isDecimal(id) ? id : QString();
    }
    return {};
}

// For a body or a description.
QString withoutEnding(const QString& name)
{
    return name.left(name.lastIndexOf('.'));
}

bool leadsOut(const QString& name)
{
    return name.startsWith('/') || name.split('/').contains(QStringLiteral(".."));
}

// An assembly, as far as the archive has given it out.
struct ArchivedAssembly
{
    QString body; // its name in the archive
    std::optional<QByteArray> header;
    QByteArray description; // compressed, while it waits for the body
    bool hasDescription = false;
    OBLASMContent content;
};

// The assemblies of an archive: what one pass over it brings. Each is read when both of its files
// have come, so that one description is held at a time. A description that comes before its body
// waits compressed. Archivers put the bodies first.
class Listing
{
public:
    explicit Listing(const ImporterReport& report) : m_report(report) {}

    // `library` is what readArchive() takes.
    bool read(QIODevice& device, const QString& library);
    // Moves all assemblies into the package, in the order of their entries.
    bool moveTo(Package& package);

private:
    qint64 note(const QString& name);
    bool take(const QString& name, const QByteArray& bytes);
    bool complete(ArchivedAssembly& assembly, const QByteArray& description);

    const ImporterReport& m_report;
    QStringList m_entries;                    // ids, in the order of the archive
    QHash<QString, QStringList> m_assemblies; // names without ending, by entry
    std::unordered_map<QString, ArchivedAssembly> m_byName;
    QSet<QString> m_names;
    QString m_badName;        // the first that no archive should have
    bool m_hasFailed = false; // and been reported
};

// Answers how much of the file is wanted.
qint64 Listing::note(const QString& name)
{
    if (m_badName.isNull() && (m_names.contains(name) || leadsOut(name)))
        m_badName = name;
    m_names.insert(name);
    const QString entry = entryOf(name);
    if (entry.isNull() || !m_badName.isNull() || m_hasFailed)
        return 0;
    if (!m_assemblies.contains(entry)) {
        m_entries.append(entry);
        m_assemblies.insert(entry, {});
    }
    if (!name.startsWith(AssembliesPrefix))
        return 0;
    if (name.endsWith(BodyEnding)) {
        m_assemblies[entry].append(withoutEnding(name));
        return OBLASMAssembly::HeaderSize;
    }
    // One byte more than there may be, by which too large a file is told.
    return name.endsWith(DescriptionEnding) ? MaximumDescriptionSize + 1 : 0;
}

bool Listing::take(const QString& name, const QByteArray& bytes)
{
    ArchivedAssembly& assembly = m_byName[withoutEnding(name)];
    if (name.endsWith(BodyEnding)) {
        assembly.body = name;
        assembly.header = bytes;
        if (!assembly.hasDescription)
            return true;
        const QByteArray description = qUncompress(assembly.description);
        assembly.description.clear();
        return complete(assembly, description);
    }
    if (bytes.size() > MaximumDescriptionSize)
        return m_report.fail("ERROR_ARCHIVE_TOO_LARGE_%1", {name});
    assembly.hasDescription = true;
    if (assembly.header)
        return complete(assembly, bytes);
    assembly.description = qCompress(bytes, FastCompression);
    return true;
}

bool Listing::complete(ArchivedAssembly& assembly, const QByteArray& description)
{
    OBLASMAssembly pair;
    pair.header = *assembly.header;
    Orv::Data::DocumentError error;
    if (!parseDom(description, pair.description, error))
        return m_report.fail(error);
    if (!pair.isValid())
        return m_report.fail("ERROR_INVALID_OBLASM_%1", {assembly.body});
    return OBLASMDocumentReader(pair, m_report.log()).read(assembly.content);
}

bool Listing::read(QIODevice& device, const QString& library)
{
    QString detail;
    const ArchiveVisitor visitor{[this](const QString& name) { return note(name); },
                                 [this](const QString& name, const QByteArray& bytes) {
                                     m_hasFailed = !take(name, bytes); // the last to be wanted
                                 }};
    const ArchiveResult result = readArchive(device, visitor, detail, library);
    if (m_hasFailed)
        return false;
    switch (result) {
    case ArchiveResult::Success:
        if (m_badName.isNull())
            return true;
        return m_report.fail("ERROR_INVALID_FILE_NAME_%1", {m_badName});
    case ArchiveResult::NoReader:
        return m_report.fail("ERROR_UNABLE_TO_LOAD_ARCHIVE_READER_%1", {detail});
    case ArchiveResult::NotOpened:
        return m_report.fail("ERROR_UNABLE_TO_OPEN_FILE");
    case ArchiveResult::ListTooLarge:
        return m_report.fail("ERROR_ARCHIVE_FILE_LIST_TOO_LARGE_%1", {detail});
    case ArchiveResult::BadFile:
        return m_report.fail("ERROR_FAIL_TO_EXTRACT_FILE_%1", {detail});
    case ArchiveResult::TooLarge:
        break;
    }
    return m_report.fail("ERROR_ARCHIVE_TOO_LARGE_%1", {detail});
}

bool Listing::moveTo(Package& package)
{
    OBLASMGraphPlaces places(package);
    for (const QString& entry : m_entries) {
        for (const QString& name : m_assemblies[entry]) {
            ArchivedAssembly& assembly = m_byName[name];
            if (!assembly.hasDescription)
                return m_report.fail("ERROR_DESCRIPTION_NOT_FOUND_%1", {name + DescriptionEnding});
            if (!assembly.content.moveTo(package, places, m_report.log()))
                return false;
        }
    }
    return true;
}

} // namespace

bool OBLARImporter::accepts(const QUrl& url) const
{
    return url.toString().endsWith(QLatin1String(".oblar"));
}

std::unique_ptr<Orv::Data::BaseObject>
OBLARImporter::import(QIODevice& device, MessageNode* log,
                      const Orv::Core::Extensions::ProgressFunction&) const
{
    const ImporterReport report(log, "Ksx::Core::OBLARImporter", "core\\coreoblarimporter");
    Listing listing(report);
    if (!listing.read(device, m_archiveLibrary))
        return nullptr;
    auto package = std::make_unique<Package>();
    if (const auto* file = dynamic_cast<const QFile*>(&device))
        package->identifier().assign(Orv::toLatin1(QFileInfo(file->fileName()).completeBaseName()));
    if (!listing.moveTo(*package))
        return nullptr;
    return package;
}

} // namespace Ksx::Core
