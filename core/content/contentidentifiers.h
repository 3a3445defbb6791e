// The identifiers in content lists.
#pragma once

#include "data/content/contentobjectbase.h"
#include "editing/identifierindex.h"

namespace Ksx::Core {

template <>
inline const std::string& identifierOf(const Data::Content::ContentObjectBase& item)
{
    static const std::string none;
    const auto* const named = dynamic_cast<const Data::Content::ContentInterface*>(&item);
    return named == nullptr ? none : named->identifierAttribute().get();
}

} // namespace Ksx::Core
