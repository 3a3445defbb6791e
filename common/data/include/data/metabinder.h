// Gives a kind of object its declaration.
#pragma once

#include "data/objectmeta.h"

namespace Orv::Data {

// T is any kind, or a document class that is bound again under another name at a place of use.
// `Meta` is a tag with a `static constexpr ObjectMeta record`. Adds no field.
template <class T, class Meta>
class MetaBinder : public T
{
public:
    using MetaTag = Meta;
    const ObjectMeta& getMeta() const override { return Meta::record; }
};

} // namespace Orv::Data
