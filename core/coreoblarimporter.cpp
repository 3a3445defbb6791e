#include "ksx/core/oblarimporter.h"

#include "data/content/package.h"
#include "data/latin1.h"
#include "ksx/core/archivereader.h"
#include "ksx/core/domtext.h"
#include "ksx/core/importerreport.h"
#include "ksx/core/oblasmdocumentreader.h"
#include "ksx/core/oblasmgraphplaces.h"
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <algorithm>

namespace Ksx::Core {

namespace {

using Data::Content::Package;
using Orv::Core::MessageNode;

const QString AssembliesPrefix = QStringLiteral("assemblies/content/");
const QString AuthoringPrefix = QStringLiteral("authoring/content/");
// What the descriptions of one archive may come to, in bytes: a document of them takes a multiple.
constexpr qint64 MaximumDescriptionsSize = qint64{64} << 20;

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

bool leadsOut(const QString& name)
{
    return name.startsWith('/') || name.split('/').contains(QStringLiteral(".."));
}

// The files of an archive as far as they matter: what one pass over it brings.
class Listing
{
public:
    // `library` is what readArchive() takes.
    bool read(QIODevice& device, const QString& library, const ImporterReport& report);

    const QStringList& entries() const { return m_entries; }
    const QStringList& bodiesOf(const QString& entry) { return m_bodies[entry]; }
    const QByteArray& header(const QString& body) { return m_files[body]; }
    bool hasFile(const QString& name) const { return m_files.contains(name); }
    // Takes the bytes off the listing: they are needed once.
    QByteArray takeFile(const QString& name) { return m_files.take(name); }

private:
    qint64 note(const QString& name);
    void take(const QString& name, const QByteArray& bytes);

    QStringList m_entries; // ids, in the order of the archive
    QHash<QString, QStringList> m_bodies;
    QHash<QString, QByteArray> m_files; // descriptions, and the headers of bodies
    QSet<QString> m_names;
    qint64 m_descriptionsLeft = MaximumDescriptionsSize;
    QString m_badName; // the first that no archive should have
};

// Answers how much of the file is wanted.
qint64 Listing::note(const QString& name)
{
    if (m_badName.isNull() && (m_names.contains(name) || leadsOut(name)))
        m_badName = name;
    m_names.insert(name);
    const QString entry = entryOf(name);
    if (entry.isNull() || !m_badName.isNull())
        return 0;
    if (!m_bodies.contains(entry)) {
        m_entries.append(entry);
        m_bodies.insert(entry, {});
    }
    if (!name.startsWith(AssembliesPrefix))
        return 0;
    if (name.endsWith(BodyEnding)) {
        m_bodies[entry].append(name);
        return OBLASMAssembly::HeaderSize;
    }
    // One byte more than there may be, by which too large a file is told.
    return name.endsWith(DescriptionEnding) ? std::max<qint64>(m_descriptionsLeft, 0) + 1 : 0;
}

void Listing::take(const QString& name, const QByteArray& bytes)
{
    if (name.endsWith(DescriptionEnding))
        m_descriptionsLeft -= bytes.size();
    if (m_descriptionsLeft >= 0)
        m_files.insert(name, bytes);
}

bool Listing::read(QIODevice& device, const QString& library, const ImporterReport& report)
{
    QString detail;
    const ArchiveVisitor visitor{
        [this](const QString& name) { return note(name); },
        [this](const QString& name, const QByteArray& bytes) { take(name, bytes); }};
    switch (readArchive(device, visitor, detail, library)) {
    case ArchiveResult::Success:
        if (m_descriptionsLeft < 0)
            break;
        return m_badName.isNull() || report.fail("ERROR_INVALID_FILE_NAME_%1", {m_badName});
    case ArchiveResult::NoReader:
        return report.fail("ERROR_UNABLE_TO_LOAD_ARCHIVE_READER_%1", {detail});
    case ArchiveResult::NotOpened:
        return report.fail("ERROR_UNABLE_TO_OPEN_FILE");
    case ArchiveResult::ListTooLarge:
        return report.fail("ERROR_ARCHIVE_FILE_LIST_TOO_LARGE_%1", {detail});
    case ArchiveResult::BadFile:
        return report.fail("ERROR_FAIL_TO_EXTRACT_FILE_%1", {detail});
    case ArchiveResult::TooLarge:
        break;
    }
    return report.fail("ERROR_ARCHIVE_TOO_LARGE_%1", {detail});
}

bool readAssembly(Listing& listing, const QString& body, Package& package,
                  OBLASMGraphPlaces& places, const ImporterReport& report)
{
    const QString xml = body.left(body.size() - BodyEnding.size()) + DescriptionEnding;
    if (!listing.hasFile(xml))
        return report.fail("ERROR_DESCRIPTION_NOT_FOUND_%1", {xml});
    OBLASMAssembly assembly;
    assembly.header = listing.header(body);
    DomError error;
    if (!parseDom(listing.takeFile(xml), assembly.description, error))
        return report.fail(error);
    if (!assembly.isValid())
        return report.fail("ERROR_INVALID_OBLASM_%1", {body});
    return OBLASMDocumentReader(assembly, report.log()).read(package, places);
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
    Listing listing;
    if (!listing.read(device, m_archiveLibrary, report))
        return nullptr;
    auto package = std::make_unique<Package>();
    if (const auto* file = dynamic_cast<const QFile*>(&device))
        package->identifier().assign(Orv::toLatin1(QFileInfo(file->fileName()).completeBaseName()));
    OBLASMGraphPlaces places(*package);
    for (const QString& entry : listing.entries())
        for (const QString& body : listing.bodiesOf(entry))
            if (!readAssembly(listing, body, *package, places, report))
                return nullptr;
    return package;
}

} // namespace Ksx::Core
