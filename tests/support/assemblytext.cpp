#include "support/assemblytext.h"

#include "data/baseobject.h"
#include "data/xmldatawriter.h"
#include "reading/domtext.h"
#include "support/packagetext.h"
#include <QBuffer>
#include <QDomDocument>
#include <gtest/gtest.h>
#include <regex>

namespace TestSupport {

std::string anAssemblyBody(unsigned uid)
{
    std::string body("OLAM\1\2\3\4\5\6\7\10", 12);
    for (int i = 0; i < 4; ++i)
        body += static_cast<char>((uid >> (8 * i)) & 0xFF);
    return body + "what follows is not read";
}

std::string aDescription(const std::string& graphs, unsigned uid)
{
    return "<obldescription asmuid=\"" + std::to_string(uid) +
           "\" fileUid=\"{00000000-0000-0000-0000-0000000000ab}\"><graphs>" + graphs +
           "</graphs></obldescription>";
}

std::string aDescribedGraph(const std::string& pkgUrl, const std::string& inputs,
                            const std::string& outputs)
{
    return "<graph pkgurl=\"" + escaped(pkgUrl) + "\"><inputs>" + inputs + "</inputs><outputs>" +
           outputs + "</outputs></graph>";
}

ArchiveFiles anAssemblyInArchive(const std::string& id, const std::string& name,
                                 const std::string& pkgUrl)
{
    const std::string path = "assemblies/content/" + id + "/" + name;
    return {{path + ".oblasm", anAssemblyBody()},
            {path + ".xml", aDescription(aDescribedGraph(pkgUrl))}};
}

ArchiveFiles operator+(ArchiveFiles left, const ArchiveFiles& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

ArchiveFiles manyAssemblies(int count)
{
    ArchiveFiles files;
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        for (ArchiveFile& file : anAssemblyInArchive(number, "a", "pkg://g" + number))
            files.push_back(std::move(file));
    }
    return files;
}

QDomDocument domOf(const std::string& text)
{
    QDomDocument document;
    Orv::Data::DocumentError error;
    EXPECT_TRUE(Ksx::Core::parseDom(QByteArray::fromStdString(text), document, error))
        << error.text().toStdString();
    return document;
}

std::string writtenAs(const Orv::Data::BaseObject& object)
{
    QBuffer buffer;
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly));
    EXPECT_TRUE(Orv::Data::XmlDataWriter(&buffer).write(object));
    const std::string text = buffer.data().toStdString();
    const std::size_t begin = text.find("?>") + 2;
    return text.substr(begin, text.rfind('>') + 1 - begin);
}

std::string writtenContent(const Orv::Data::BaseObject& package)
{
    static const std::regex groupUid(R"re(<group><uid v="\d+"/>)re");
    static const std::regex graphUid(R"re((<graph><identifier v="[^"]*"/>)<uid v="\d+"/>)re");
    const std::string text = writtenAs(package);
    const std::size_t begin = text.find("<content");
    const std::string content = text.substr(begin, text.rfind("</package>") - begin);
    return std::regex_replace(std::regex_replace(content, groupUid, R"(<group><uid v="#"/>)"),
                              graphUid, R"($1<uid v="#"/>)");
}

} // namespace TestSupport
