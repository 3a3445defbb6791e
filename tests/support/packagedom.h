// Looking into the document of a package by element names, apart from the classes that read it.
#pragma once

#include <QDomElement>
#include <optional>
#include <string>
#include <vector>

namespace TestSupport {

using DomElements = std::vector<QDomElement>;

std::string tagOf(const QDomElement& element);
// What a leaf holds.
std::string leafText(const QDomElement& leaf);
// What the leaf of that name in an element holds; empty if there is none.
std::string textIn(const QDomElement& owner, const char* name);
// The same of a value that can have overloads.
std::optional<std::string> valueIn(const QDomElement& owner, const char* name);
// "0", which is never written, if there is none.
std::string uidOf(const QDomElement& element);

DomElements childrenOf(const QDomElement& element);
// The items of the list of that name in an element.
DomElements itemsIn(const QDomElement& owner, const char* list);
// The first of the elements in which the leaf `key` holds that text; null if there is none.
QDomElement findByText(const DomElements& elements, const char* key, const std::string& text);

// The texts of the leaves at a path below "package", with blanks between them, such as those of
// "content/graph/identifier". "*" is for any number of steps.
std::string textsAt(const std::string& document, const std::string& path);
// The elements there, as text, one behind the other.
std::string elementsText(const std::string& document, const std::string& path);
int countAt(const std::string& document, const std::string& path);

// The document with "p1", "p2" and so on for the uids by which it knows packages, with "u1", "u2" for
// all others, each in the order in which they are met, and with "file" for its own: what is left
// when it was made at another time. Uids of the two kinds may be the same by chance.
std::string withUidsNumbered(const std::string& document);

} // namespace TestSupport
