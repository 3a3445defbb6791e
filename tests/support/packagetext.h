// Small packages as text, and as the trees that are read from it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace TestSupport {

// Members in the order in which they are written, so that a package that is current and canonical
// comes out of the tool byte by byte as it went in, but for uids that come from the clock.
class PackageText
{
public:
    PackageText();

    PackageText& named(const std::string& identifier) { return with("identifier", identifier); }
    // The element of a text or number.
    PackageText& with(const std::string& member, const std::string& value);
    // The element as it stands in the document.
    PackageText& withElement(const std::string& member, const std::string& element);
    PackageText& without(const std::string& member);
    PackageText& dependingOn(const std::string& filename, unsigned uid);
    PackageText& dependingOnItself(unsigned uid);
    PackageText& containing(const std::string& content);

    std::string text() const;

private:
    std::vector<std::pair<std::string, std::string>> m_members; // name and element, maybe empty
    std::string m_dependencies;
    std::string m_content;
};

// Current, canonical, without dependencies and content.
PackageText aPackage();

// What may stand in the content of a package, a group or a graph.
std::string aGroup(const std::string& identifier, const std::string& content = {});
// A group whose description is that text, such as a data path.
std::string aGroupSaying(const std::string& identifier, const std::string& desc);
std::string aResource(const std::string& identifier, const std::string& filepath);
// A graph of one node, the instance of the graph at a data path.
std::string aGraphWithInstance(const std::string& identifier, const std::string& dataPath);
// As many groups, each the content of the one before.
std::string nestedGroups(int count);

// The text as an attribute holds it.
std::string escaped(const std::string& text);
// The document with `from` replaced everywhere.
std::string replaced(std::string document, const std::string& from, const std::string& to);

// The document with "own" for the uid of "?himself" and in the paths that name it: a package that
// was asked for has got it from the clock.
std::string withOwnUidHidden(const std::string& document);
// The document with "uid-1", "uid-2" and so on for the uids of its dependency elements, in their
// order, and in the paths that name them.
std::string withDependencyUidsHidden(const std::string& document);
// The uid of the dependency element with that file name; 0 if there is none.
unsigned dependencyUidIn(const std::string& document, const std::string& filename);

// The tree of a document. Fails the test, and answers null, if it cannot be read.
std::unique_ptr<Ksx::Data::Content::Package> packageFrom(const std::string& text);
std::unique_ptr<Ksx::Data::Content::Package> packageFrom(const PackageText& package);

} // namespace TestSupport
