// How objects are called when people are told of them.
#pragma once

#include "data/baseobject.h"
#include <QDir>
#include <QString>

namespace Ksx::Kit {

// Returns the word for an item of a list or of the content: "node".
QString wordFor(const Orv::Data::BaseObject& item);

// Returns the identifier, name or number of an item.
QString nameFor(const Orv::Data::BaseObject& item, const QDir& folder);

// Returns word and name, and for nodes what they do: "node 12 (blend)".
QString phraseFor(const Orv::Data::BaseObject& item, const QDir& folder);

// Returns what an item is or holds, in short: the filter of a node, the value of a parameter. Returns
// an empty text for an item that its name tells enough of.
QString summaryOf(const Orv::Data::BaseObject& item, const QDir& folder);

// Returns the text of a value, or of what a union holds. File names are relative to the folder.
QString valueText(const Orv::Data::BaseObject& value, const QDir& folder);

} // namespace Ksx::Kit
