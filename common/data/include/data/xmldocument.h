// Reads an XML document into a new object tree.
#pragma once

#include "data/baseobject.h"
#include "data/xmldatareader.h"
#include <QIODevice>
#include <QString>
#include <functional>
#include <memory>

namespace Orv::Data {

// Makes the object that the root element of a document becomes.
using MakeRoot = std::function<std::unique_ptr<BaseObject>()>;

// Which reader is used. The results are the same.
enum class XmlLane
{
    Fast, // a scanner for documents as this program writes them, and XmlDataReader for all others
    General, // XmlDataReader
};

// What became of a document.
struct XmlDocument
{
    std::unique_ptr<BaseObject> root; // null on failure
    int status = 0;                   // of XmlDataReader::read()
    QString errorString;              // of a failure
};

// Reads a document. `device` is open for reading. The fast lane reads a document twice that it does
// not know, and is taken only on a device that can go back. `makeRoot` is called for each reading.
// Throws ExceptionBadValue for a value text that its type refuses.
XmlDocument readXmlDocument(QIODevice& device, const MakeRoot& makeRoot,
                            const ProgressFunction& progress, XmlLane lane = XmlLane::Fast);

class LightDocument;

// Builds a tree from a document that has been read before and perhaps been changed. Returns null if
// its text has to be read for that, by readXmlDocument(), which gives the same tree or the reason
// why there is none. Reports progress as if the text were read.
std::unique_ptr<BaseObject> treeOf(const LightDocument& document, const MakeRoot& makeRoot,
                                   const ProgressFunction& progress);

} // namespace Orv::Data
