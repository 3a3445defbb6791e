#include "support/packagechecker.h"

#include "data/content/package.h"
#include "ksx/core/packagereader.h"
#include "support/assemblytext.h"
#include "support/packagedom.h"
#include <QDomDocument>
#include <QFile>
#include <gtest/gtest.h>
#include <array>
#include <filesystem>
#include <map>
#include <optional>
#include <set>

namespace TestSupport {

namespace {

using Texts = std::set<std::string>;

const char* const Himself = "?himself";
const std::string PathScheme = "pkg://";
const std::string PresetsScheme = "obl://";

Texts textsIn(const DomElements& elements, const char* name)
{
    Texts texts;
    for (const QDomElement& element : elements)
        texts.insert(textIn(element, name));
    return texts;
}

bool isImage(const QDomElement& input)
{
    const std::string type = valueIn(input, "type").value_or("");
    return type == "1" || type == "2" || type == "3";
}

// The type whose values an input of this type has.
std::optional<std::string> shapeOf(const std::optional<std::string>& type)
{
    if (type == "258")
        return "256";
    return type == "2049" || type == "2304" || type == "2307" ? "2048" : type;
}

bool isPath(const std::string& text)
{
    return text.compare(0, PathScheme.size(), PathScheme) == 0;
}

std::string quoted(const std::string& text)
{
    return '"' + text + '"';
}

// What may not stand twice in a list.
struct ListKey
{
    const char* list;
    const char* key;
};
constexpr ListKey ListKeys[] = {
    {"baseParameters", "name"},    {"compNodes", "uid"},
    {"compOutputs", "uid"},        {"connexions", "identifier"},
    {"content", "identifier"},     {"content", "uid"},
    {"dependencies", "filename"},  {"dependencies", "uid"},
    {"funcDatas", "name"},         {"graphOutputs", "identifier"},
    {"graphOutputs", "uid"},       {"GUIObjects", "uid"},
    {"outputBridgings", "uid"},    {"parameters", "name"},
    {"paraminputs", "identifier"}, {"paraminputs", "uid"},
    {"paramNodes", "uid"},         {"paramsArrayCells", "uid"},
    {"paramsArrays", "uid"},       {"paramsGraphDatas", "identifier"},
    {"paramsGraphDatas", "uid"},   {"paramsGraphNodes", "uid"},
    {"paramsGraphs", "uid"},       {"rootOutputs", "output"},
};

// The things in a graph to which the last part of a path can lead.
struct PathKind
{
    const char* type;
    const char* key;
    const char* list;
};
constexpr PathKind PathKinds[] = {
    {"CompNodeType", "compNodeUidParam", "compNodes"},
    {"GraphOutputType", "graphOutputUidParam", "graphOutputs"},
    {"GUIObjectType", "GuiObjectUidParam", "GUIObjects"},
};

// To what kind of object the path in a leaf has to lead; empty if to any.
std::string kindExpectedAt(const QDomElement& leaf)
{
    const QDomElement value = leaf.parentNode().toElement(); // or what else the leaf stands in
    const QDomElement owner = value.parentNode().parentNode().toElement();
    const std::string tag = tagOf(value.parentNode().toElement());
    if (tagOf(value) == "path" && (tag == "compInstance" || tag == "compExternalLink"))
        return "graph";
    const std::string name = textIn(owner, "name");
    if (tagOf(owner) == "parameter" &&
        (name == "bitmapresourcepath" || name == "vectorresourcepath" ||
         name == "maskvectorresourcepath"))
        return "resource";
    const QDomElement node = owner.parentNode().parentNode().toElement();
    return tagOf(node) == "paramNode" && textIn(node, "function") == "instance" ? "function" : "";
}

// A path to an object of a package, such as "pkg://group/graph?dependency=7".
struct ObjectPath
{
    explicit ObjectPath(const std::string& text)
    {
        const std::size_t question = text.find('?');
        split(text.substr(PathScheme.size(), question - PathScheme.size()), '/', segments);
        std::vector<std::string> pairs;
        if (question != std::string::npos)
            split(text.substr(question + 1), '&', pairs);
        for (const std::string& pair : pairs) {
            const std::size_t equals = pair.find('=');
            parameters.emplace(pair.substr(0, equals),
                               equals == std::string::npos ? "" : pair.substr(equals + 1));
        }
    }
    static void split(const std::string& text, char separator, std::vector<std::string>& parts)
    {
        std::size_t begin = 0;
        for (std::size_t end = 0; end != std::string::npos; begin = end + 1) {
            end = text.find(separator, begin);
            if (end != begin && begin < text.size())
                parts.push_back(text.substr(begin, end - begin));
        }
    }
    // The element that the path leads to in a package; null if there is none.
    QDomElement in(const QDomElement& package) const
    {
        QDomElement found = package;
        for (const std::string& segment : segments)
            found = findByText(itemsIn(found, "content"), "identifier", segment);
        const auto type = parameters.find("typeParam");
        for (const PathKind& kind : PathKinds) {
            const auto uid = parameters.find(kind.key);
            if (type != parameters.end() && type->second == kind.type)
                found = uid == parameters.end()
                            ? QDomElement()
                            : findByText(itemsIn(found, kind.list), "uid", uid->second);
        }
        return found;
    }

    std::vector<std::string> segments;
    std::map<std::string, std::string> parameters;
};

class Checker
{
public:
    Checker(const std::string& path, const std::string& presets) : m_path(path), m_presets(presets)
    {
        QFile file(QString::fromStdString(path));
        if (!file.open(QIODevice::ReadOnly) || !m_document.setContent(&file)) {
            complain("", "the file cannot be read");
            return;
        }
        const QDomElement package = m_document.documentElement();
        if (open(path).documentElement().isNull()) {
            complain("", "the tool cannot open the file");
            return;
        }
        readDependencies(package);
        visit(package, "", {});
    }
    const std::vector<std::string>& complaints() const { return m_complaints; }

private:
    struct Check
    {
        const char* tag;
        void (Checker::*run)(const QDomElement& element, const QDomElement& scope,
                             const std::string& where);
    };
    static const std::array<Check, 6> Checks;

    void complain(const std::string& where, const std::string& what)
    {
        m_complaints.push_back(where.empty() ? what : where + ": " + what);
    }
    // The document that the tool makes of a file; empty if it makes none.
    const QDomDocument& open(const std::string& path)
    {
        const auto [place, isNew] = m_documents.try_emplace(path);
        if (isNew)
            if (const auto package = Ksx::Core::PackageReader::open(
                    QUrl::fromLocalFile(QString::fromStdString(path)), nullptr, {}, {}, nullptr,
                    nullptr, true))
                place->second = domOf(writtenAs(*package));
        return place->second;
    }
    std::string fileOf(const std::string& reference) const
    {
        if (reference.compare(0, PresetsScheme.size(), PresetsScheme) != 0)
            return std::filesystem::path(m_path).parent_path() / reference;
        return m_presets.empty() ? std::string()
                                 : m_presets + '/' + reference.substr(PresetsScheme.size());
    }
    void readDependencies(const QDomElement& package)
    {
        for (const QDomElement& dependency : itemsIn(package, "dependencies")) {
            const std::string name = textIn(dependency, "filename");
            const std::string where = "dependency " + quoted(name);
            const std::string file = name == Himself ? m_path : fileOf(name);
            std::error_code error;
            if (textIn(dependency, "type") != "package")
                complain(where, "is no package");
            if (!std::filesystem::exists(file, error))
                complain(where, "there is no such file");
            else if (name != Himself && std::filesystem::equivalent(file, m_path, error))
                complain(where, "is the package itself");
            else if (open(file).documentElement().isNull())
                complain(where, "cannot be opened");
            m_dependencies.emplace(uidOf(dependency), file);
        }
    }

    // `scope` is the graph or function that the element stands in.
    void visit(const QDomElement& element, std::string where, QDomElement scope)
    {
        const std::string tag = tagOf(element);
        if (tagOf(element.parentNode().toElement()) == "content") {
            where += (where.empty() ? "" : "/") + textIn(element, "identifier");
            if (textIn(element, "identifier").empty())
                complain(where, "has no identifier");
        }
        if (tag == "graph" || (tag == "function" && !element.hasAttribute("v")))
            scope = element;
        for (const Check& check : Checks)
            if (tag == check.tag)
                (this->*check.run)(element, scope, where);
        checkList(element, where);
        if (isPath(leafText(element)))
            checkPath(element, where);
        for (const QDomElement& child : childrenOf(element))
            visit(child, where, scope);
    }

    void checkList(const QDomElement& list, const std::string& where)
    {
        for (const ListKey& row : ListKeys) {
            if (tagOf(list) != row.list)
                continue;
            Texts known;
            for (const QDomElement& item : childrenOf(list)) {
                const std::string key =
                    std::string(row.key) == "uid" ? uidOf(item) : textIn(item, row.key);
                if (!known.insert(key).second)
                    complain(where, std::string(row.key) + " " + quoted(key) + " stands twice in " +
                                        row.list);
            }
        }
    }

    // The object that a path names; null, and the reason, if there is none.
    QDomElement resolve(const std::string& text, std::string& problem)
    {
        if (!isPath(text)) {
            problem = "is no path";
            return {};
        }
        const ObjectPath path(text);
        const auto uid = path.parameters.find("dependency");
        if (uid == path.parameters.end()) {
            problem = "names no package";
            return {};
        }
        const auto file = m_dependencies.find(uid->second);
        if (file == m_dependencies.end()) {
            problem = "names a package that is no dependency";
            return {};
        }
        const QDomElement package = file->second == m_path ? m_document.documentElement()
                                                           : open(file->second).documentElement();
        const QDomElement found = package.isNull() ? package : path.in(package);
        problem = found.isNull() ? "reaches nothing" : "";
        return found;
    }
    void checkPath(const QDomElement& leaf, const std::string& where)
    {
        const std::string text = leafText(leaf);
        std::string problem;
        const QDomElement found = resolve(text, problem);
        const std::string expected = kindExpectedAt(leaf);
        if (problem.empty() && !expected.empty() && tagOf(found) != expected)
            problem = "reaches a " + tagOf(found) + " and no " + expected;
        if (!problem.empty())
            complain(where, quoted(text) + " " + problem);
    }

    void checkResource(const QDomElement& resource, const QDomElement&, const std::string& where)
    {
        const std::string file = textIn(resource, "filepath");
        if (resource.firstChildElement("source").isNull() &&
            !std::filesystem::is_regular_file(fileOf(file)))
            complain(where, "there is no file " + quoted(file));
    }

    void checkGraph(const QDomElement& graph, const QDomElement&, const std::string& where)
    {
        const Texts outputs = textsIn(itemsIn(graph, "graphOutputs"), "uid");
        const DomElements roots = itemsIn(graph.firstChildElement("root"), "rootOutputs");
        const Texts rooted = textsIn(roots, "output");
        for (const std::string& uid : outputs)
            if (rooted.count(uid) == 0)
                complain(where, "output " + uid + " has no root output");
        for (const std::string& uid : rooted)
            if (outputs.count(uid) == 0)
                complain(where, "root output " + uid + " has no output");
        const std::string primary = valueIn(graph, "primaryInput").value_or("0");
        const QDomElement input = findByText(itemsIn(graph, "paraminputs"), "uid", primary);
        if (primary != "0" && (input.isNull() || !isImage(input)))
            complain(where, "the primary input " + primary + " is no image input");
        checkBridges(graph, where);
    }
    void checkBridges(const QDomElement& graph, const std::string& where)
    {
        Texts known;
        for (const QDomElement& node : itemsIn(graph, "compNodes")) {
            const QDomElement bridge =
                node.firstChildElement("compImplementation").firstChildElement();
            const bool isInput = tagOf(bridge) == "compInputBridge";
            if (!isInput && tagOf(bridge) != "compOutputBridge")
                continue;
            const std::string uid = textIn(bridge, isInput ? "entry" : "output");
            const DomElements ends = itemsIn(graph, isInput ? "paraminputs" : "graphOutputs");
            const std::string end = (isInput ? "input " : "output ") + uid;
            if (findByText(ends, "uid", uid).isNull())
                complain(where,
                         "node " + uidOf(node) + " stands for " + end + ", which is not there");
            if (!known.insert(end).second)
                complain(where, "two nodes stand for " + end);
        }
    }

    void checkNode(const QDomElement& node, const QDomElement& graph, const std::string& where)
    {
        const std::string place = where + "/node " + uidOf(node);
        const DomElements nodes = itemsIn(graph, "compNodes");
        const QDomElement implementation =
            node.firstChildElement("compImplementation").firstChildElement();
        for (const QDomElement& connexion : itemsIn(node, "connexions")) {
            checkSource(connexion, node, nodes, place);
            const std::string output = valueIn(connexion, "connRefOutput").value_or("");
            const auto source = valueIn(connexion, "connRef");
            const QDomElement feeding = source ? findByText(nodes, "uid", *source) : QDomElement();
            if (!feeding.isNull() &&
                findByText(itemsIn(feeding, "compOutputs"), "uid", output).isNull())
                complainOf(connexion, place, "node " + *source + " has no output " + output);
            if (tagOf(implementation) == "compOutputBridge" &&
                textIn(connexion, "identifier") != "inputNodeOutput")
                complainOf(connexion, place, "there is no such connector");
        }
        if (tagOf(implementation) == "compInstance")
            checkInstance(node, implementation, place);
    }
    // Whether a connexion is fed by one of those nodes, and not by the node that it belongs to.
    void checkSource(const QDomElement& connexion, const QDomElement& node,
                     const DomElements& nodes, const std::string& where)
    {
        const auto source = valueIn(connexion, "connRef");
        if (source && *source == uidOf(node))
            complainOf(connexion, where, "it is fed by its own node");
        else if (source && findByText(nodes, "uid", *source).isNull())
            complainOf(connexion, where, "there is no node " + *source);
    }
    void complainOf(const QDomElement& connexion, const std::string& where, const std::string& what)
    {
        const std::string name = textIn(connexion, "identifier");
        complain(where, "connexion " + quoted(name) + ": " + what);
    }

    void checkInstance(const QDomElement& node, const QDomElement& instance,
                       const std::string& where)
    {
        const DomElements bridgings = itemsIn(instance, "outputBridgings");
        const Texts bridged = textsIn(bridgings, "uid");
        const Texts outputs = textsIn(itemsIn(node, "compOutputs"), "uid");
        for (const std::string& uid : bridged)
            if (outputs.count(uid) == 0)
                complain(where, "bridging " + uid + " is no output of the node");
        for (const std::string& uid : outputs)
            if (bridged.count(uid) == 0)
                complain(where, "output " + uid + " has no bridging");
        std::string problem;
        const std::string path = valueIn(instance, "path").value_or("");
        const QDomElement graph = resolve(path, problem);
        if (!isPath(path)) // all that are one are met elsewhere
            complain(where, quoted(path) + " " + problem);
        if (tagOf(graph) != "graph")
            return;
        const Texts names = textsIn(itemsIn(graph, "graphOutputs"), "identifier");
        for (const std::string& name : textsIn(bridgings, "identifier"))
            if (names.count(name) == 0)
                complain(where, "bridging " + quoted(name) + " is no output of the graph");
        for (const QDomElement& connexion : itemsIn(node, "connexions")) {
            const std::string name = textIn(connexion, "identifier");
            const QDomElement input = findByText(itemsIn(graph, "paraminputs"), "identifier", name);
            if (input.isNull() || !isImage(input))
                complainOf(connexion, where, "there is no such connector");
        }
    }

    void checkFunction(const QDomElement& function, const QDomElement&, const std::string& where)
    {
        checkRoot(function, itemsIn(function, "paramNodes"), where);
    }
    void checkRoot(const QDomElement& owner, const DomElements& nodes, const std::string& where)
    {
        const auto root = valueIn(owner, "rootnode");
        if (root && findByText(nodes, "uid", *root).isNull())
            complain(where, "there is no root node " + *root);
    }
    // The node of a function; `scope` has the inputs that it may read.
    void checkFunctionNode(const QDomElement& node, const QDomElement& scope,
                           const std::string& where)
    {
        const DomElements nodes = childrenOf(node.parentNode().toElement());
        for (const QDomElement& connexion : itemsIn(node, "connexions"))
            checkSource(connexion, node, nodes, where);
        const std::string function = textIn(node, "function");
        const std::string read = dataOf(node);
        if (function.compare(0, 4, "get_") != 0 || function == "get_path" || read[0] == '$')
            return;
        for (const QDomElement& other : nodes)
            if (textIn(other, "function") == "set" && dataOf(other) == read)
                return;
        const QDomElement input = findByText(itemsIn(scope, "paraminputs"), "identifier", read);
        if (input.isNull())
            complain(where, function + " reads " + quoted(read) + ", which is not there");
        else if (shapeOf(valueIn(input, "type")) != valueIn(node, "type"))
            complain(where, function + " reads " + quoted(read) + ", which is of another type");
    }
    static std::string dataOf(const QDomElement& node)
    {
        const QDomElement data = findByText(itemsIn(node, "funcDatas"), "name", "datacontent");
        return valueIn(data.firstChildElement("constantValue"), "constantValueString").value_or("");
    }

    void checkParamsGraph(const QDomElement& graph, const QDomElement&, const std::string& where)
    {
        const DomElements nodes = itemsIn(graph, "paramsGraphNodes");
        checkRoot(graph, nodes, where);
        for (const QDomElement& node : nodes) {
            for (const QDomElement& connexion : itemsIn(node, "connexions"))
                checkSource(connexion, node, nodes, where);
            const std::string data = textIn(node, "data");
            if (findByText(itemsIn(graph, "paramsGraphDatas"), "uid", data).isNull())
                complain(where, "node " + uidOf(node) + ": there is no data " + data);
        }
    }

    std::string m_path;
    std::string m_presets;
    QDomDocument m_document;
    std::map<std::string, QDomDocument> m_documents;   // by their file
    std::map<std::string, std::string> m_dependencies; // files by uid
    std::vector<std::string> m_complaints;
};

const std::array<Checker::Check, 6> Checker::Checks{{
    {"compNode", &Checker::checkNode},
    {"dynamicValue", &Checker::checkFunction},
    {"graph", &Checker::checkGraph},
    {"paramNode", &Checker::checkFunctionNode},
    {"paramsGraph", &Checker::checkParamsGraph},
    {"resource", &Checker::checkResource},
}};

} // namespace

std::vector<std::string> complaintsAbout(const std::string& path, const std::string& presets)
{
    return Checker(path, presets).complaints();
}

void expectWhole(const std::string& path, const std::string& presets)
{
    for (const std::string& complaint : complaintsAbout(path, presets))
        ADD_FAILURE() << path << ": " << complaint;
}

} // namespace TestSupport
