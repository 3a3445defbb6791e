#include "data/xmlvalueconverter.h"

#include "data/filename.h"
#include <QFileInfo>
#include <QUrl>
#include <utility>

namespace Orv::Data {

bool hasPath(const QString& reference)
{
    return !QUrl(reference).path().isEmpty();
}

XmlValueConverterURLRelativeToAbsolute::XmlValueConverterURLRelativeToAbsolute(
    const QString& documentPath)
    : m_directory(QFileInfo(documentPath).absoluteDir())
{}

bool XmlValueConverterURLRelativeToAbsolute::convert(const std::string& in, std::string& out) const
{
    const QString path = fromBytes(in);
    if (!hasPath(path))
        return false;
    out = toBytes(m_directory.absoluteFilePath(path));
    return true;
}

XmlValueConverterURLPrefixReplacement::XmlValueConverterURLPrefixReplacement(
    std::string prefix, std::list<QDir> directories)
    : m_prefix(std::move(prefix)), m_directories(std::move(directories))
{}

bool XmlValueConverterURLPrefixReplacement::convert(const std::string& in, std::string& out) const
{
    if (in.compare(0, m_prefix.size(), m_prefix) != 0 || m_directories.empty())
        return false;
    const QString rest = fromBytes(in.substr(m_prefix.size()));
    out = toBytes(m_directories.front().absoluteFilePath(rest));
    return true;
}

} // namespace Orv::Data
