// The 8-bit text of documents.
#pragma once

#include <QString>
#include <string>

namespace Orv {

// Latin-1, with one "?" for each character outside it.
std::string toLatin1(const QString& text);
// Replaces what `out` holds, whose memory is kept.
void assignLatin1(std::string& out, const QChar* text, qsizetype size);

} // namespace Orv
