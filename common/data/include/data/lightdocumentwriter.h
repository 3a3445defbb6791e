// The text of a light document.
#pragma once

#include "data/lightdocument.h"
#include <QByteArray>

namespace Orv::Data {

// Returns the document in UTF-8, behind a declaration that says so whatever was there before. Each
// element has a line of its own, indented by its depth, unless it is beside a text. Levels beyond
// MaximumIndent are indented like that one, lest a small file of deep elements become a huge one.
QByteArray serialise(const LightDocument& document);
constexpr int MaximumIndent = 128;

} // namespace Orv::Data
