#include "reading/oblversionreaders.h"

#include "reading/extensionregistry.h"
#include "reading/oblimporter.h"
#include <QByteArray>
#include <string_view>
#include <typeinfo>

namespace Ksx::Core {

namespace {

using Orv::Core::Version;
using Orv::Core::Extensions::IDataImporter;

constexpr int BlockSize = 150;

bool isOblImporter(const IDataImporter& importer)
{
    return typeid(importer) == typeid(OBLImporter);
}

// The text between the two quotes behind the tag; null if they are not all there.
QByteArray quotedBehind(const QByteArray& window, const QByteArray& tag)
{
    const auto tagPlace = window.indexOf(tag);
    const auto open = tagPlace < 0 ? tagPlace : window.indexOf('"', tagPlace);
    const auto close = open < 0 ? open : window.indexOf('"', open + 1);
    return close < 0 ? QByteArray() : window.mid(open + 1, close - open - 1);
}

// Only what stands within two neighbouring blocks is found.
bool scan(QIODevice& device, const QByteArray& tag, Version& version)
{
    QByteArray window; // the former block and this one
    qint64 former = 0;
    char block[BlockSize];
    for (qint64 count = device.read(block, BlockSize); count > 0;
         count = device.read(block, BlockSize)) {
        window = window.right(static_cast<int>(former));
        window.append(block, static_cast<int>(count));
        former = count;
        const QByteArray text = quotedBehind(window, tag);
        if (!text.isNull())
            return version.fromString(QString::fromLatin1(text));
    }
    return false;
}

} // namespace

bool OBLDataFormatVersionReader::accepts(const IDataImporter& importer) const
{
    return isOblImporter(importer);
}

Version OBLDataFormatVersionReader::version() const
{
    return applicationVersion();
}

bool OBLDataFormatVersionReader::read(QIODevice& device, Version& version) const
{
    return scan(device, QByteArrayLiteral("<formatVersion"), version);
}

bool OBLUpdaterVersionReader::accepts(const IDataImporter& importer) const
{
    return isOblImporter(importer);
}

Version OBLUpdaterVersionReader::version() const
{
    return applicationVersion();
}

bool OBLUpdaterVersionReader::read(QIODevice& device, Version& version) const
{
    return scan(device, QByteArrayLiteral("<updaterVersion"), version);
}

} // namespace Ksx::Core
