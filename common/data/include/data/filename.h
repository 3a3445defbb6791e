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

// Makes the file functions of Qt 5 use the same conversion. Called once by a program that is given
// file names, before it uses any. Qt 6 takes names for UTF-8 under every locale, replaces bytes that
// are none, and has no hook for a codec. There only RegularFile, FileSaver and the functions of
// core/fileplace.h reach a file of any name.
void installFileNameCodec();

} // namespace Orv
