// Where an object is in the content of its package.
#pragma once

#include <QString>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Kit {

// Returns the nearest object of the content that an object is in, or is. Returns null if there is
// none. The object may be null.
const Orv::Data::BaseObject* contentObjectOf(const Orv::Data::BaseObject* object);

// Returns the nearest object of the content around another one. Returns null for an object that is
// directly in the package.
const Orv::Data::BaseObject* contentOwnerOf(const Orv::Data::BaseObject& object);

// Returns the data path of the object of the content that an object is in, or is, as long as a
// place may be. Returns an empty text if there is none.
QString placeOf(const Orv::Data::BaseObject* object);

} // namespace Ksx::Kit
