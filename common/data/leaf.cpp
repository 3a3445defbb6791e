#include "data/leaf.h"

namespace Orv::Data {

std::unique_ptr<GenericIterator<BaseObject>> Leaf::createIterator()
{
    return std::make_unique<EmptyIterator>();
}

std::unique_ptr<GenericIteratorConst<BaseObject>> Leaf::createConstIterator() const
{
    return std::make_unique<EmptyIteratorConst>();
}

} // namespace Orv::Data
