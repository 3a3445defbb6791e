// Edits of single texts and numbers of documents.
#pragma once

#include "core/manipulatorattribute.h"
#include "errors.h"
#include "ksx/core/edit.h"

namespace Ksx::Python {

// Writes a text or number by one step, which has that name for users. Runs no command for the present
// value.
template <class T>
void write(const Orv::Data::Attribute<T>& attribute, const T& value, const char* name)
{
    using Key = Orv::Data::DataPointerBoxMasterKey;
    const auto apply =
        +[](Orv::Core::ManipulatorAttribute<T> target, const Key&, const T& written) {
            target.set(written);
            return true;
        };
    if (attribute.get() == value)
        return;
    const Orv::Data::DataPointerBox<Orv::Data::Attribute<T>> box(&attribute);
    require(Core::runEdit(box, value, apply, QString::fromLatin1(name)).has_value(),
            "the document refused the edit");
}

} // namespace Ksx::Python
