// Edits of the content of open packages, each one command.
#pragma once

#include "core/manipulatorattribute.h"
#include "core/manipulatorlist.h"
#include "data/content/contentobjectbase.h"
#include "ksx/core/edit.h"
#include <string>

namespace TestSupport {

using Ksx::Data::Content::ContentObjectBase;
using ContentList = Orv::Data::ContainerList<ContentObjectBase>;

inline void eraseFrom(const ContentList& content, std::size_t index)
{
    const auto erase = +[](Orv::Core::ManipulatorList<ContentObjectBase> list,
                           const Orv::Data::DataPointerBoxMasterKey&, const std::size_t& place) {
        list.erase(place, 1);
        return true;
    };
    Ksx::Core::runEdit(Orv::Data::DataPointerBox<ContentList>(&content), index, erase, "erase");
}

inline void rename(const ContentObjectBase& object, const std::string& identifier)
{
    using Identifier = Orv::Data::Attribute<Orv::Data::Text>;
    const auto set = +[](Orv::Core::ManipulatorAttribute<Orv::Data::Text> attribute,
                         const Orv::Data::DataPointerBoxMasterKey&, const std::string& text) {
        attribute.set(text);
        return true;
    };
    const auto& content = dynamic_cast<const Ksx::Data::Content::ContentInterface&>(object);
    const Orv::Data::DataPointerBox<Identifier> box(&content.identifierAttribute());
    Ksx::Core::runEdit(box, identifier, set, "rename");
}

} // namespace TestSupport
