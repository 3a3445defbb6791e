// A DOM document from the text of a file.
#pragma once

#include "data/documentreader.h"
#include <QByteArray>

class QDomDocument;

namespace Ksx::Core {

// Replaces `document` by what the bytes say, as Orv::Data::readDocument() has it. On failure returns
// false, with the reason in `error`. No document is so deep that the destructor of QDomDocument,
// which calls itself for each level, has not stack enough.
bool parseDom(const QByteArray& bytes, QDomDocument& document, Orv::Data::DocumentError& error);

} // namespace Ksx::Core
