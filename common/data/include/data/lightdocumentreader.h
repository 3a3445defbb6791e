// A light document from the text of a file.
#pragma once

#include "data/documentreader.h"
#include "data/lightdocument.h"
#include "data/xmldocument.h"
#include <QByteArray>

namespace Orv::Data {

// Replaces `document` by what the bytes say, as readDocument() has it. On failure returns false, with
// the reason in `error`. The document keeps `bytes`, in which most of its values are. The lanes are
// those of readXmlDocument(), and give the same.
bool readLightDocument(const QByteArray& bytes, LightDocument& document, DocumentError& error,
                       XmlLane lane = XmlLane::Fast);

} // namespace Orv::Data
