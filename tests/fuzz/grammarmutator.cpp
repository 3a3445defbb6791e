#include "grammarmutator.h"

#include "support/paths.h"
#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

namespace TestSupport {

namespace {

struct KnownElement
{
    std::string name;
    std::string kind; // of its value, such as "uint32"; a list, or the name of a class
};

// The table of classes and members that the schema's own test compares with the code.
std::vector<KnownElement> readSchema()
{
    std::ifstream file(sourcePath("tests/golden/schema.txt"));
    std::vector<KnownElement> known;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        KnownElement element;
        words >> element.name >> element.kind;
        if (!line.empty() && line[0] == '[')
            element = {element.kind, ""};
        if (!element.name.empty())
            known.push_back(element);
    }
    return known;
}

// Elements of packages before they were renamed, and of descriptions of assemblies.
const std::vector<KnownElement> OtherElements = {
    {"images", ""},          {"image", "string"}, {"pictures", ""},  {"node", ""},
    {"input1", "string"},    {"graphs", ""},      {"inputs", ""},    {"input", ""},
    {"outputs", ""},         {"output", ""},      {"inputgui", ""},  {"outputgui", ""},
    {"guicombobox", ""},     {"guiimage", ""},    {"guislider", ""}, {"guiangle", ""},
    {"guicomboboxitem", ""}, {"channels", ""},    {"channel", ""},   {"obldescription", ""}};

// Attributes of descriptions. An element of a package has the attribute "v".
const std::vector<KnownElement> KnownAttributes = {
    {"v", "string"},        {"asmuid", "uint32"},     {"fileUid", "string"},   {"pkgurl", "string"},
    {"uid", "uint32"},      {"identifier", "string"}, {"type", "uint32"},      {"label", "string"},
    {"keywords", "string"}, {"default", "float4"},    {"min", "float4"},       {"max", "float4"},
    {"clamp", "bool"},      {"step", "float"},        {"state", "string"},     {"widget", "string"},
    {"group", "string"},    {"format", "uint32"},     {"mipmaps", "uint32"},   {"names", "string"},
    {"value", "int"},       {"text", "string"},       {"components", "string"}};

const std::vector<KnownElement>& knownElements()
{
    static const std::vector<KnownElement> all = [] {
        std::vector<KnownElement> known = readSchema();
        known.insert(known.end(), OtherElements.begin(), OtherElements.end());
        return known;
    }();
    return all;
}

const std::vector<std::string> Numbers = {"0",           "1",
                                          "2",           "3",
                                          "4",           "16",
                                          "256",         "2048",
                                          "4096",        "16384",
                                          "32768",       "65535",
                                          "65536",       "2147483647",
                                          "2147483648",  "4294967294",
                                          "4294967295",  "4294967296",
                                          "-1",          "-2147483648",
                                          "-2147483649", "1.5",
                                          "1e38",        "1e39",
                                          "-1e-46",      "nan",
                                          "inf",         "0x10",
                                          "+1",          " 1",
                                          "1 ",          "",
                                          "1,5",         "00001",
                                          "1 2",         "1 2 3",
                                          "1 2 3 4",     "1 2 3 4 5",
                                          "0.5 0.25",    "1,2,3",
                                          "0 0 0 0",     std::string("1\xC2\xA0") + "2"};
const std::vector<std::string> Texts = {"",
                                        "a",
                                        "Kestrix",
                                        "package",
                                        "?himself",
                                        "obl://a.obl",
                                        "a.obl",
                                        "../a.obl",
                                        "/a/b.obl",
                                        "file:///a.obl",
                                        "pkg:///g",
                                        "pkg://g?dependency=0",
                                        "pkg:///a/b?dependency=4294967295",
                                        "pkg:///g?dependency=?himself",
                                        "1.1.0.7049",
                                        "1.1.0.7050",
                                        "1.0.0.4510",
                                        "1.0.0.3962",
                                        "0.0.0.0",
                                        "1.1",
                                        "4294967296.0.0.0",
                                        "input1",
                                        "outputsize",
                                        "$outputsize",
                                        "bitmap",
                                        "blend",
                                        "instance",
                                        "basecolor",
                                        "RGBA",
                                        "a&#10;b",
                                        "&#x1F600;",
                                        "&lt;&amp;&quot;",
                                        "\xC3\xA9\xE2\x82\xAC",
                                        std::string(300, 'x')};
const std::vector<std::string> Wholes = {"true", "false", "0", "1", "2"};

std::string kindOf(const std::string& name)
{
    for (const std::vector<KnownElement>* known : {&knownElements(), &KnownAttributes})
        for (const KnownElement& element : *known)
            if (element.name == name)
                return element.kind;
    return {};
}

// The name in a tag that begins there.
std::string nameAt(const std::string& document, std::size_t tag)
{
    std::size_t end = tag + 1;
    while (end < document.size() &&
           (std::isalnum(static_cast<unsigned char>(document[end])) != 0 || document[end] == '_'))
        ++end;
    return document.substr(tag + 1, end - tag - 1);
}

// The place behind the element whose tag begins there; the end of the document if it is not closed.
std::size_t endOfElement(const std::string& document, std::size_t tag)
{
    int depth = 0;
    while (tag != std::string::npos && tag < document.size()) {
        const std::size_t end = document.find('>', tag);
        if (end == std::string::npos)
            break;
        const bool isEnd = document.compare(tag, 2, "</") == 0;
        const bool isEmpty = document[end - 1] == '/';
        depth += isEnd ? -1 : isEmpty ? 0 : 1;
        if (depth <= 0)
            return end + 1;
        tag = document.find('<', end);
    }
    return document.size();
}

} // namespace

std::size_t GrammarMutator::below(std::size_t count)
{
    return count == 0 ? 0 : m_random() % count;
}

template <typename Items>
const auto& GrammarMutator::oneOf(const Items& items)
{
    return items[below(items.size())];
}

GrammarMutator::Range GrammarMutator::anyElement(const std::string& document)
{
    std::size_t tag = document.find('<', below(document.size()));
    while (tag != std::string::npos &&
           (tag + 1 >= document.size() ||
            std::isalpha(static_cast<unsigned char>(document[tag + 1])) == 0))
        tag = document.find('<', tag + 1);
    if (tag == std::string::npos)
        return {document.size(), 0};
    return {tag, endOfElement(document, tag) - tag};
}

GrammarMutator::Range GrammarMutator::anyValue(const std::string& document)
{
    const std::size_t begin = document.find("=\"", below(document.size()));
    const std::size_t end = begin == std::string::npos ? begin : document.find('"', begin + 2);
    return end == std::string::npos ? Range{document.size(), 0} : Range{begin + 2, end - begin - 2};
}

// A value of the kind that the element has, of another kind, or one that the document has already.
std::string GrammarMutator::newValue(const std::string& document, const std::string& name)
{
    if (below(3) == 0) {
        const Range value = anyValue(document);
        return document.substr(value.begin, value.size);
    }
    const std::string kind = kindOf(name);
    if (below(8) == 0)
        return oneOf(below(2) == 0 ? Texts : Numbers);
    if (kind == "bool")
        return oneOf(Wholes);
    return oneOf(kind == "string" ? Texts : Numbers);
}

std::string GrammarMutator::newElement()
{
    const KnownElement& element = oneOf(knownElements());
    switch (below(4)) {
    case 0:
        return "<" + element.name + "/>";
    case 1:
        return "<" + element.name + ">" + newElement() + "</" + element.name + ">";
    default:
        return "<" + element.name + " v=\"" + newValue({}, element.name) + "\"/>";
    }
}

void GrammarMutator::removeElement(std::string& document)
{
    const Range element = anyElement(document);
    document.erase(element.begin, element.size);
}

void GrammarMutator::repeatElement(std::string& document)
{
    const Range element = anyElement(document);
    const std::string text = document.substr(element.begin, element.size);
    const std::size_t most = text.size() < 200 ? 20 : 2;
    for (std::size_t count = 1 + below(most); count != 0; --count)
        document.insert(element.begin, text);
}

void GrammarMutator::moveElement(std::string& document)
{
    const Range element = anyElement(document);
    const std::string text = document.substr(element.begin, element.size);
    document.erase(element.begin, element.size);
    document.insert(anyElement(document).begin, text);
}

void GrammarMutator::swapElements(std::string& document)
{
    const Range first = anyElement(document);
    const Range second = anyElement(document);
    if (first.begin + first.size > second.begin)
        return; // one holds the other, or they are in the other order
    const std::string text = document.substr(first.begin, first.size);
    const std::string other = document.substr(second.begin, second.size);
    document.replace(second.begin, second.size, text);
    document.replace(first.begin, first.size, other);
}

void GrammarMutator::insertElement(std::string& document)
{
    document.insert(anyElement(document).begin, newElement());
}

void GrammarMutator::wrapElement(std::string& document)
{
    const Range element = anyElement(document);
    const std::string name = oneOf(knownElements()).name;
    document.insert(element.begin + element.size, "</" + name + ">");
    document.insert(element.begin, "<" + name + ">");
}

void GrammarMutator::renameElement(std::string& document)
{
    const Range element = anyElement(document);
    if (element.size == 0)
        return;
    const std::string former = nameAt(document, element.begin);
    const std::string name = oneOf(knownElements()).name;
    const std::size_t end = element.begin + element.size;
    const std::string endTag = "</" + former + ">";
    if (end >= endTag.size() && document.compare(end - endTag.size(), endTag.size(), endTag) == 0)
        document.replace(end - endTag.size(), endTag.size(), "</" + name + ">");
    document.replace(element.begin + 1, former.size(), name);
}

// Puts copies of an element into each other, as groups may lie in groups.
void GrammarMutator::nestElement(std::string& document)
{
    const Range element = anyElement(document);
    std::string text = document.substr(element.begin, element.size);
    const std::size_t place = text.rfind("</");
    if (place == std::string::npos || text.size() > 2000)
        return;
    const std::string inner = text;
    for (std::size_t count = 1 + below(5); count != 0; --count)
        text.insert(text.rfind("</", text.size() - 1), inner);
    document.replace(element.begin, element.size, text);
}

void GrammarMutator::changeValue(std::string& document)
{
    const Range value = anyValue(document);
    const std::size_t blank = document.rfind(' ', value.begin);
    std::string name = blank == std::string::npos ? "" : nameAt(document, blank);
    const std::size_t tag = document.rfind('<', value.begin);
    if (name == "v" && tag != std::string::npos)
        name = nameAt(document, tag);
    document.replace(value.begin, value.size, newValue(document, name));
}

void GrammarMutator::changeAttribute(std::string& document)
{
    const Range value = anyValue(document);
    const std::size_t blank = document.rfind(' ', value.begin);
    if (value.size == 0 || blank == std::string::npos)
        return;
    const std::string name = oneOf(KnownAttributes).name;
    if (below(2) == 0) // gone, else another
        document.erase(blank, value.begin + value.size + 1 - blank);
    if (below(3) != 0)
        document.insert(blank, " " + name + "=\"" + newValue({}, name) + "\"");
}

// Makes a value of one place that of another: a reference then leads elsewhere, or a uid is there twice.
void GrammarMutator::exchangeValue(std::string& document)
{
    const Range from = anyValue(document);
    const std::string text = document.substr(from.begin, from.size);
    const Range to = anyValue(document);
    document.replace(to.begin, to.size, text);
}

void GrammarMutator::takeElement(std::string& document, const std::string& other)
{
    const Range element = anyElement(other);
    document.insert(anyElement(document).begin, other.substr(element.begin, element.size));
}

void GrammarMutator::change(std::string& document, const std::string& other)
{
    using Change = void (GrammarMutator::*)(std::string&);
    static constexpr Change Changes[] = {
        &GrammarMutator::removeElement, &GrammarMutator::repeatElement,
        &GrammarMutator::moveElement,   &GrammarMutator::swapElements,
        &GrammarMutator::insertElement, &GrammarMutator::wrapElement,
        &GrammarMutator::renameElement, &GrammarMutator::nestElement,
        &GrammarMutator::changeValue,   &GrammarMutator::changeValue,
        &GrammarMutator::changeValue,   &GrammarMutator::changeAttribute,
        &GrammarMutator::exchangeValue, &GrammarMutator::exchangeValue};
    const std::size_t number = below(std::size(Changes) + 1);
    if (number == std::size(Changes))
        takeElement(document, other);
    else
        (this->*Changes[number])(document);
}

std::string GrammarMutator::mutant(std::string document, const std::string& other)
{
    for (std::size_t count = 1 + below(4); count != 0; --count)
        change(document, other);
    return document;
}

} // namespace TestSupport
