// A node without children.
#pragma once

#include "data/baseobject.h"

namespace Orv::Data {

class Leaf : public BaseObject
{
public:
    Leaf* asLeaf() override { return this; }
    const Leaf* asLeaf() const override { return this; }
    std::unique_ptr<GenericIterator<BaseObject>> createIterator() override;
    std::unique_ptr<GenericIteratorConst<BaseObject>> createConstIterator() const override;
};

} // namespace Orv::Data
