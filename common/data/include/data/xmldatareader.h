// Reads an XML document into an object tree.
#pragma once

#include "data/baseobject.h"
#include "data/boundedxmlreader.h"
#include <functional>

namespace Orv::Data {

// Called with the fraction of the document that has been read, from 0 to 1.
using ProgressFunction = std::function<void(float)>;

// What a read answers. 1 to 4 are also the errors of QXmlStreamReader.
enum class XmlReadStatus : int
{
    Success = 0,
    EndElementExpected = 3,
    BadRoot = 5,
    MemberMissing = 6,
    AttributeNotFound = 7,
    NestingTooDeep = 8,
};

// One element per object: an attribute has its text in `v`, a structure its members as children in
// any order, a list its items, a union at most one child. Members that nobody claims are skipped,
// and a member that comes twice is read once. An unknown item of a list or union ends it early:
// what follows is read one level too high, and files depend on that.
// Elements may nest MaximumDepth deep; no depth costs stack. Serves one read, of a document into a
// tree that nobody listens to.
class XmlDataReader : public BoundedXmlReader
{
public:
    static constexpr int MaximumDepth = 5000;

    // `device` is open for reading and outlives the reader.
    explicit XmlDataReader(QIODevice* device);

    // Fills `root`, whose element name the document's root must have. Answers 0 (Success) or the
    // first failure, an XmlReadStatus or an error of the stream reader, with the text in
    // errorString(); the tree is then incomplete. A value text that its type refuses throws
    // ExceptionBadValue. Reports progress about twenty times for a document over 1 MiB.
    int read(BaseObject& root, const ProgressFunction& progress);

private:
    class Tokens;
};

} // namespace Orv::Data
