#include "ksx/kit/packagehead.h"

#include "core/regularfile.h"
#include "data/boundedxmlreader.h"
#include "ksx/core/failurereason.h"
#include <array>

namespace Ksx::Kit {

namespace {

using Orv::Core::RegularFile;
using Orv::Data::BoundedXmlReader;

// An ending, and the bytes that a file of that ending begins with. Packages may begin in many ways.
struct Form
{
    const char* ending;
    PackageKind kind;
    QByteArray magic;
    const char* error; // for other bytes, as in the report of an opening
};

const std::array<Form, 4>& forms()
{
    static const std::array<Form, 4> all{{
        {".obl", PackageKind::Package, {}, ""},
        {".obl.orvautosave", PackageKind::Package, {}, ""},
        {".oblar", PackageKind::Archive, "7z\xBC\xAF\x27\x1C", "ERROR_UNABLE_TO_OPEN_FILE"},
        {".oblasm", PackageKind::Assembly, "OLAM", "ERROR_INVALID_OBLASM"},
    }};
    return all;
}

const Form* formOf(const QString& file)
{
    for (const Form& form : forms())
        if (file.endsWith(QLatin1String(form.ending)))
            return &form;
    return nullptr;
}

// Reads the members of the root element in front of the content.
class HeadReader
{
public:
    explicit HeadReader(RegularFile& file) : m_file(file), m_reader(&file) {}

    // Returns the error as in the report of an opening. Returns an empty text for a head.
    QString read(PackageHead& head)
    {
        if (!nextElement())
            return m_reader.hasError() ? documentError() : noPackage();
        if (m_reader.name() != QLatin1String("package"))
            return noPackage();
        readMembers(head);
        if (m_file.hasFailed())
            return QStringLiteral("ERROR_FAIL_TO_READ_URL_");
        if (m_reader.hasError())
            return documentError();
        return head.formatVersion.isEmpty() ? QStringLiteral("ERROR_FAIL_TO_READ_VERSION_OF_URL_")
                                            : QString();
    }

private:
    static QString noPackage() { return QStringLiteral("ERROR_WRONG_ROOT_OBJECT_TYPE"); }
    QString documentError() const
    {
        return QStringLiteral("ERROR_XML_READ_ERROR :\n%1 at line %2, column %3")
            .arg(m_reader.errorString())
            .arg(m_reader.lineNumber())
            .arg(m_reader.columnNumber());
    }

    // Goes to the next child of the element at hand. Returns false at its end, and after a failure.
    bool nextElement()
    {
        for (;;) {
            switch (m_reader.advance()) {
            case QXmlStreamReader::StartElement:
                return true;
            case QXmlStreamReader::EndElement:
            case QXmlStreamReader::EndDocument:
            case QXmlStreamReader::Invalid:
                return false;
            default:
                break;
            }
        }
    }

    // Goes behind the end of the element at hand.
    void skipElement()
    {
        for (int depth = 1; depth > 0 && !m_reader.hasError();)
            depth += nextElement() ? 1 : -1;
    }

    QString takeValue()
    {
        QString value = m_reader.attributes().value(QLatin1String("v")).toString();
        skipElement();
        return value;
    }

    void readMembers(PackageHead& head)
    {
        while (nextElement()) {
            const QString name = m_reader.name().toString();
            // In files that this library writes, nothing of the head comes behind the content.
            if (name == QLatin1String("content") && !head.formatVersion.isEmpty() &&
                m_hasDependencies)
                return;
            if (QString* const member = memberOf(head, name))
                *member = takeValue();
            else if (name == QLatin1String("dependencies"))
                readDependencies(head.dependencies);
            else
                skipElement();
        }
    }

    static QString* memberOf(PackageHead& head, const QString& name)
    {
        struct Row
        {
            const char* element;
            QString PackageHead::*member;
        };
        static constexpr Row rows[] = {
            {"identifier", &PackageHead::identifier},
            {"desc", &PackageHead::description},
            {"formatVersion", &PackageHead::formatVersion},
            {"updaterVersion", &PackageHead::updaterVersion},
            {"author", &PackageHead::author},
            {"fileUID", &PackageHead::fileUid},
            {"versionUID", &PackageHead::versionUid},
        };
        for (const Row& row : rows)
            if (name == QLatin1String(row.element))
                return &(head.*row.member);
        return nullptr;
    }

    void readDependencies(std::vector<NamedDependency>& dependencies)
    {
        m_hasDependencies = true;
        while (nextElement()) {
            NamedDependency& dependency = dependencies.emplace_back();
            while (nextElement()) {
                if (m_reader.name() == QLatin1String("filename"))
                    dependency.filename = takeValue();
                else if (m_reader.name() == QLatin1String("uid"))
                    dependency.uid = takeValue();
                else
                    skipElement();
            }
        }
    }

    RegularFile& m_file;
    BoundedXmlReader m_reader;
    bool m_hasDependencies = false;
};

QString errorOf(const Form& form, RegularFile& file, PackageHead& head)
{
    head.kind = form.kind;
    head.size = file.size();
    if (form.kind == PackageKind::Package)
        return HeadReader(file).read(head);
    return file.read(form.magic.size()) == form.magic ? QString() : QLatin1String(form.error);
}

} // namespace

QString wordOf(PackageKind kind)
{
    switch (kind) {
    case PackageKind::Archive:
        return QStringLiteral("archive");
    case PackageKind::Assembly:
        return QStringLiteral("assembly");
    default:
        return QStringLiteral("package");
    }
}

bool isPackageName(const QString& file)
{
    return formOf(file) != nullptr;
}

std::optional<PackageHead> readHead(const QString& file, QString& reason)
{
    const Form* const form = formOf(file);
    RegularFile device(file);
    PackageHead head;
    QString error;
    if (form == nullptr)
        error = QStringLiteral("ERROR_NO_IMPORTER_FOUND");
    else if (!device.open(QIODevice::ReadOnly))
        error = QStringLiteral("ERROR_FAIL_TO_OPEN_URL_");
    else
        error = errorOf(*form, device, head);
    if (error.isEmpty())
        return head;
    reason = Core::failureReason(file, error);
    return std::nullopt;
}

} // namespace Ksx::Kit
