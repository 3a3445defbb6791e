// File names and console text: bytes on the outside, Unicode inside, under every locale.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace Orv {

// Bytes are read as UTF-8. A byte that is no part of valid UTF-8 becomes a lone low surrogate
// (0xDC00 plus the byte), which toBytes() turns back into it: so every name that a file system
// holds survives the way in and out, whatever the locale says.
QString fromBytes(std::string_view bytes);
std::string toBytes(const QString& text);

// Makes Qt's own file functions use the same conversion. Called once by a program that is given
// file names, before it uses any.
void installFileNameCodec();

} // namespace Orv
