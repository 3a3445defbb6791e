#include "support/packagedom.h"

#include "support/assemblytext.h"
#include <QDomDocument>
#include <QStringList>
#include <QTextStream>
#include <map>
#include <regex>

namespace TestSupport {

namespace {

DomElements descendantsOf(const QDomElement& element, const QString& name)
{
    const QDomNodeList found = element.elementsByTagName(name);
    DomElements descendants;
    for (int i = 0; i < found.count(); ++i)
        descendants.push_back(found.at(i).toElement());
    return descendants;
}

// Takes the first step of a path, or the first two where it begins with "*".
DomElements step(const QDomElement& from, QStringList& path)
{
    const QString name = path.takeFirst();
    if (name == "*")
        return path.isEmpty() ? childrenOf(from) : descendantsOf(from, path.takeFirst());
    DomElements children;
    for (const QDomElement& child : childrenOf(from))
        if (child.tagName() == name)
            children.push_back(child);
    return children;
}

DomElements elementsAt(const QDomElement& from, const QStringList& path)
{
    if (path.isEmpty())
        return {from};
    QStringList rest = path;
    DomElements elements;
    for (const QDomElement& next : step(from, rest))
        for (const QDomElement& element : elementsAt(next, rest))
            elements.push_back(element);
    return elements;
}

// The elements at a path. They live as long as this, since their document does.
struct Found
{
    Found(const std::string& text, const std::string& path)
        : document(domOf(text)),
          elements(elementsAt(document.documentElement(), QString::fromStdString(path).split('/')))
    {}

    QDomDocument document;
    DomElements elements;
};

} // namespace

std::string tagOf(const QDomElement& element)
{
    return element.tagName().toStdString();
}

std::string leafText(const QDomElement& leaf)
{
    return leaf.attribute("v").toStdString();
}

std::string textIn(const QDomElement& owner, const char* name)
{
    return leafText(owner.firstChildElement(name));
}

std::optional<std::string> valueIn(const QDomElement& owner, const char* name)
{
    const QDomElement leaf = owner.firstChildElement(name).firstChildElement("value");
    return leaf.isNull() ? std::nullopt : std::optional<std::string>(leafText(leaf));
}

std::string uidOf(const QDomElement& element)
{
    const QDomElement leaf = element.firstChildElement("uid");
    return leaf.isNull() ? "0" : leafText(leaf);
}

DomElements childrenOf(const QDomElement& element)
{
    DomElements children;
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement())
        children.push_back(child);
    return children;
}

DomElements itemsIn(const QDomElement& owner, const char* list)
{
    return childrenOf(owner.firstChildElement(list));
}

QDomElement findByText(const DomElements& elements, const char* key, const std::string& text)
{
    for (const QDomElement& element : elements)
        if (textIn(element, key) == text)
            return element;
    return {};
}

std::string textsAt(const std::string& document, const std::string& path)
{
    std::string texts;
    const Found found(document, path);
    for (const QDomElement& leaf : found.elements)
        texts += (texts.empty() ? "" : " ") + leafText(leaf);
    return texts;
}

std::string elementsText(const std::string& document, const std::string& path)
{
    QString text;
    QTextStream stream(&text);
    const Found found(document, path);
    for (const QDomElement& element : found.elements)
        element.save(stream, -1);
    return text.toStdString();
}

int countAt(const std::string& document, const std::string& path)
{
    return static_cast<int>(Found(document, path).elements.size());
}

std::string withUidsNumbered(const std::string& document)
{
    static const std::regex use(
        R"re((<fileUID v=")(\{[^"]*)|("/><uid v="(?=\d+"/><type v="package)|)re"
        R"re([?&;]dependency=)(\d+)|(<(?:uid|entry|output|data) v="|)re"
        R"re(<(?:connRef|connRefOutput|rootnode|primaryInput)><value v=")(\d+))re");
    std::map<std::string, std::string> packages;
    std::map<std::string, std::string> others;
    const auto numbered = [](std::map<std::string, std::string>& names, char letter,
                             const std::string& uid) {
        return uid == "0" ? uid
                          : names.try_emplace(uid, letter + std::to_string(names.size() + 1))
                                .first->second;
    };
    std::string result;
    auto place = document.cbegin();
    for (std::sregex_iterator one(document.begin(), document.end(), use), end; one != end; ++one) {
        const bool isPackage = (*one)[4].matched;
        const auto& found = (*one)[(*one)[2].matched ? 2 : isPackage ? 4 : 6];
        result.append(place, found.first);
        result += (*one)[2].matched
                      ? "file"
                      : numbered(isPackage ? packages : others, isPackage ? 'p' : 'u', found);
        place = found.second;
    }
    return result.append(place, document.cend());
}

} // namespace TestSupport
