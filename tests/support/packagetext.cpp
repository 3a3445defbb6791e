#include "support/packagetext.h"

#include "data/content/package.h"
#include "reading/oblimporter.h"
#include <QBuffer>
#include <gtest/gtest.h>
#include <algorithm>
#include <map>
#include <regex>

namespace TestSupport {

namespace {

using Ksx::Data::Content::Package;

const std::string Configurations =
    R"(<configurations><name v="default"/><uid v="1"/><configuration/></configurations>)";

std::string element(const std::string& name, const std::string& value)
{
    return "<" + name + " v=\"" + escaped(value) + "\"/>";
}

std::string list(const std::string& name, const std::string& items)
{
    return items.empty() ? "<" + name + "/>" : "<" + name + ">" + items + "</" + name + ">";
}

std::string numberOf(unsigned number)
{
    return std::to_string(number);
}

// Puts texts in the place of uids: in dependency elements and in the queries of data paths.
std::string withUidsReplaced(const std::string& document,
                             const std::map<std::string, std::string>& texts)
{
    static const std::regex uses(R"re((<dependency><filename v="[^"]*"/><uid v="|)re"
                                 R"re([?&;]dependency=)(\d+))re");
    std::string result;
    auto place = document.cbegin();
    for (std::sregex_iterator use(document.begin(), document.end(), uses), end; use != end; ++use) {
        const auto text = texts.find((*use)[2]);
        result.append(place, (*use)[2].first);
        result += text == texts.end() ? (*use)[2].str() : text->second;
        place = (*use)[2].second;
    }
    return result.append(place, document.cend());
}

struct DependencyOfText
{
    std::string filename;
    std::string uid;
};

std::vector<DependencyOfText> dependenciesIn(const std::string& document)
{
    static const std::regex form(R"re(<dependency><filename v="([^"]*)"/><uid v="(\d+)"/>)re");
    std::vector<DependencyOfText> found;
    for (std::sregex_iterator one(document.begin(), document.end(), form), end; one != end; ++one)
        found.push_back({(*one)[1], (*one)[2]});
    return found;
}

} // namespace

PackageText::PackageText()
    : m_members{{"packageType", element("packageType", "Kestrix")},
                {"identifier", element("identifier", "package")},
                {"desc", ""},
                {"formatVersion", element("formatVersion", "1.1.0.7049")},
                {"updaterVersion", element("updaterVersion", "1.1.0.7049")},
                {"platform", element("platform", "1")},
                {"author", element("author", "me")},
                {"fileUID", element("fileUID", "{00000000-0000-0000-0000-000000000001}")},
                {"versionUID", element("versionUID", "1")},
                {"configurations", Configurations},
                {"dependencies", "dependencies"},
                {"content", "content"}}
{}

PackageText& PackageText::with(const std::string& member, const std::string& value)
{
    return withElement(member, element(member, value));
}

PackageText& PackageText::withElement(const std::string& member, const std::string& element)
{
    const auto place = std::find_if(m_members.begin(), m_members.end(),
                                    [&](const auto& one) { return one.first == member; });
    if (place == m_members.end())
        m_members.emplace_back(member, element);
    else
        place->second = element;
    return *this;
}

PackageText& PackageText::without(const std::string& member)
{
    return withElement(member, "");
}

PackageText& PackageText::dependingOn(const std::string& filename, unsigned uid)
{
    m_dependencies += "<dependency>" + element("filename", filename) +
                      element("uid", numberOf(uid)) + element("type", "package") +
                      element("fileUID", "0") + element("versionUID", "0") + "</dependency>";
    return *this;
}

PackageText& PackageText::dependingOnItself(unsigned uid)
{
    return dependingOn("?himself", uid);
}

PackageText& PackageText::containing(const std::string& content)
{
    m_content += content;
    return *this;
}

std::string PackageText::text() const
{
    std::string text = R"(<?xml version="1.0" encoding="UTF-8"?><package>)";
    for (const auto& [name, member] : m_members) {
        if (member == "dependencies")
            text += list(name, m_dependencies);
        else if (member == "content")
            text += list(name, m_content);
        else
            text += member;
    }
    return text + "</package>\n";
}

PackageText aPackage()
{
    return {};
}

std::string aGroup(const std::string& identifier, const std::string& content)
{
    return "<group>" + element("uid", "2") + element("identifier", identifier) +
           list("content", content) + "</group>";
}

std::string aGroupSaying(const std::string& identifier, const std::string& desc)
{
    return "<group>" + element("uid", "2") + element("identifier", identifier) +
           element("desc", desc) + "<content/></group>";
}

std::string aResource(const std::string& identifier, const std::string& filepath)
{
    return "<resource>" + element("identifier", identifier) + element("uid", "3") +
           element("type", "3") + element("format", "PNG") + element("filepath", filepath) +
           element("lastModif", "2013-04-17T09:12:44") + element("checksum", "0") + "</resource>";
}

std::string aGraphWithInstance(const std::string& identifier, const std::string& dataPath)
{
    const std::string implementation =
        "<compImplementation><compInstance><path>" + element("value", dataPath) +
        "</path><parameters/><outputBridgings/></compInstance></compImplementation>";
    return "<graph>" + element("identifier", identifier) + element("uid", "4") +
           "<graphOutputs/><compNodes><compNode>" + element("uid", "5") + implementation +
           "</compNode></compNodes><baseParameters/><content/><root/></graph>";
}

std::string nestedGroups(int count)
{
    const std::string begin =
        "<group>" + element("uid", "2") + element("identifier", "g") + "<content>";
    const std::string end = "</content></group>";
    std::string text;
    text.reserve(static_cast<std::size_t>(count) * (begin.size() + end.size()));
    for (int i = 0; i < count - 1; ++i)
        text += begin;
    text += aGroup("g");
    for (int i = 0; i < count - 1; ++i)
        text += end;
    return text;
}

std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '&':
            result += "&amp;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\t':
            result += "&#9;";
            break;
        case '\n':
            result += "&#10;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string replaced(std::string document, const std::string& from, const std::string& to)
{
    for (std::size_t place = document.find(from); place != std::string::npos;
         place = document.find(from, place + to.size()))
        document.replace(place, from.size(), to);
    return document;
}

std::string withOwnUidHidden(const std::string& document)
{
    std::map<std::string, std::string> texts;
    for (const DependencyOfText& dependency : dependenciesIn(document))
        if (dependency.filename == "?himself")
            texts.emplace(dependency.uid, "own");
    return withUidsReplaced(document, texts);
}

std::string withDependencyUidsHidden(const std::string& document)
{
    std::map<std::string, std::string> texts;
    for (const DependencyOfText& dependency : dependenciesIn(document))
        texts.emplace(dependency.uid, "uid-" + std::to_string(texts.size() + 1));
    return withUidsReplaced(document, texts);
}

unsigned dependencyUidIn(const std::string& document, const std::string& filename)
{
    for (const DependencyOfText& dependency : dependenciesIn(document))
        if (dependency.filename == filename)
            return static_cast<unsigned>(std::stoul(dependency.uid));
    return 0;
}

std::unique_ptr<Package> packageFrom(const std::string& text)
{
    QByteArray bytes(text.data(), static_cast<int>(text.size()));
    QBuffer buffer(&bytes);
    EXPECT_TRUE(buffer.open(QIODevice::ReadOnly));
    Orv::Core::MessageNode log;
    std::unique_ptr<Orv::Data::BaseObject> root = Ksx::Core::OBLImporter().import(buffer, &log, {});
    EXPECT_NE(dynamic_cast<Package*>(root.get()), nullptr) << log.toText().toStdString();
    return std::unique_ptr<Package>(static_cast<Package*>(root.release()));
}

std::unique_ptr<Package> packageFrom(const PackageText& package)
{
    return packageFrom(package.text());
}

} // namespace TestSupport
