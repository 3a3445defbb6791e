// Conversions of file references in a document that has just been read.
#pragma once

#include <QDir>
#include <QString>
#include <list>
#include <string>

namespace Orv::Data {

// Returns false for a reference that has no path when it is read as a URL: the empty text,
// "?himself", "obl://name". It leads to no file of that name.
bool hasPath(const QString& reference);

// Applied to the text of each leaf that is declared a file path. Texts are file names as bytes.
class IXmlValueConverter
{
public:
    virtual ~IXmlValueConverter() = default;
    // True if it wrote a replacement to `out`.
    virtual bool convert(const std::string& in, std::string& out) const = 0;
};

// Makes paths absolute against the directory of the document's file. Leaves alone what has no path.
class XmlValueConverterURLRelativeToAbsolute final : public IXmlValueConverter
{
public:
    // `documentPath` names the document's file.
    explicit XmlValueConverterURLRelativeToAbsolute(const QString& documentPath);
    bool convert(const std::string& in, std::string& out) const override;

private:
    QDir m_directory;
};

// Turns a prefix such as "obl://" into a directory. Only the first directory of the list is ever
// used, and the result is the same whether or not a file is there.
class XmlValueConverterURLPrefixReplacement final : public IXmlValueConverter
{
public:
    XmlValueConverterURLPrefixReplacement(std::string prefix, std::list<QDir> directories);
    bool convert(const std::string& in, std::string& out) const override;

private:
    std::string m_prefix;
    std::list<QDir> m_directories;
};

} // namespace Orv::Data
