#include "reading/oblversionreaders.h"

#include "reading/extensionregistry.h"
#include "reading/oblimporter.h"
#include <QByteArray>
#include <QByteArrayMatcher>
#include <algorithm>
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

// Returns the text between the two quotes behind the tag, which the window has. Returns null if they
// are not all there.
QByteArray quotedBehind(const QByteArray& window, const QByteArray& tag)
{
    const auto open = window.indexOf('"', window.indexOf(tag));
    const auto close = open < 0 ? open : window.indexOf('"', open + 1);
    return close < 0 ? QByteArray() : window.mid(open + 1, close - open - 1);
}

// The blocks of a file, which are read many at a time. A window is a block with the one before it.
class Windows
{
public:
    explicit Windows(QIODevice& device) : m_device(device) {}

    // Reads more blocks and keeps the last one. Returns false at the end of the device.
    bool readMore()
    {
        m_text = m_text.right(BlockSize);
        m_begin = static_cast<int>(m_text.size());
        m_text.append(m_device.read(qint64{BlockSize} * BlocksAtATime));
        return m_text.size() > m_begin;
    }
    const QByteArray& text() const { return m_text; }
    // Returns which of the blocks that have been read now a byte is in, -1 for the block before.
    int blockOf(int place) const { return (place - m_begin + BlockSize) / BlockSize - 1; }
    QByteArray window(int block) const
    {
        const int begin = std::max(0, m_begin + BlockSize * (block - 1));
        return m_text.mid(begin, m_begin + BlockSize * (block + 1) - begin);
    }
    int blockCount() const { return blockOf(static_cast<int>(m_text.size()) - 1) + 1; }

private:
    static constexpr int BlocksAtATime = 100;

    QIODevice& m_device;
    QByteArray m_text;
    int m_begin = 0; // of what has been read last
};

// Finds only a tag with its quotes within two neighbouring blocks. Looks at windows with the tag.
bool scan(QIODevice& device, const QByteArray& tag, Version& version)
{
    const QByteArrayMatcher matcher(tag);
    Windows windows(device);
    while (windows.readMore()) {
        int next = 0; // the first block that has not been looked at
        for (auto place = matcher.indexIn(windows.text()); place >= 0;
             place = matcher.indexIn(windows.text(), place + 1)) {
            const int begin = static_cast<int>(place);
            const int end = begin + static_cast<int>(tag.size()) - 1;
            const int last = std::min(windows.blockOf(begin) + 1, windows.blockCount() - 1);
            for (next = std::max(next, windows.blockOf(end)); next <= last; ++next) {
                const QByteArray text = quotedBehind(windows.window(next), tag);
                if (!text.isNull())
                    return version.fromString(QString::fromLatin1(text));
            }
        }
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
