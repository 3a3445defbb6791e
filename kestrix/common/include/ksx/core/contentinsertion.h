// Inserts new objects into the content of a package.
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

// The index that means the end of a list. Any index beyond the last item means the same.
constexpr std::uint32_t EndOfContent = ~std::uint32_t{0};

// Returns a new uid that no object in the content of the package has, at any depth. Main thread.
Uid newContentUid(const Data::Content::Package& package);

// Part of an edit: inserts an object into the content of a package, a group or a graph, at `index`.
// A graph, function, resource or group gets a uid that is new in its package. It also gets an
// identifier that is unique in its container. `context` is that of the edit; see runEdit(). Objects
// inside of it keep their uids.
//
// Returns the object, which the container owns now. Returns null for another container and for one
// outside of a package; the object is deleted then.
//
//     bool applyAdd(ManipulatorStruct<Package> package, const DataPointerBoxMasterKey&,
//                   const std::string& name)
//     {
//         auto group = std::make_unique<Group>();
//         group->identifier().assign(name); // a number follows if it is taken
//         return insertContent(*package.get(), package.context(), std::move(group)) != nullptr;
//     }
const Data::Content::ContentObjectBase*
insertContent(const Orv::Data::BaseObject& container, Orv::Core::ManipulatorContext& context,
              std::unique_ptr<Data::Content::ContentObjectBase> object,
              std::uint32_t index = EndOfContent);

} // namespace Ksx::Core
