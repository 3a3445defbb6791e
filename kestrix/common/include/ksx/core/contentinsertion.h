// How new objects come into the content lists of a package.
#pragma once

#include "ksx/core/uidsource.h"
#include <cstdint>
#include <memory>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class ContentObjectBase;
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The index that stands for the end of a list; so does any other that the list does not have.
constexpr std::uint32_t EndOfContent = ~std::uint32_t{0};

// A new uid that no object of the package's content has.
Uid newContentUid(const Data::Content::Package& package);

// Part of an edit: gives the object, a graph, function, resource or group, a uid that is new in its
// package and an identifier that is unique in its container, and inserts it into the content of a
// package, a group or a graph. Answers the object, null for another container.
const Data::Content::ContentObjectBase*
insertContent(const Orv::Data::BaseObject& container, Orv::Core::ManipulatorContext& context,
              std::unique_ptr<Data::Content::ContentObjectBase> object,
              std::uint32_t index = EndOfContent);

} // namespace Ksx::Core
