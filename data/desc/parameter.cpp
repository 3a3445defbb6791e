#include "data/desc/parameter.h"

#include "data/attribute.h"
#include "data/desc/valuetype.h"

namespace Ksx::Data::Desc {

const std::string& Parameter::extra(const std::string& name) const
{
    static const std::string none;
    const auto found = extras.find(name);
    return found == extras.end() ? none : found->second;
}

boost::any emptyValueOf(unsigned type)
{
    using namespace Orv::Data;
    if (type == ValueType::Int1)
        return UInt{}; // the index of an item
    switch (ValueType::plain(type)) {
#define VALUE_TYPE(name, bit, value, ...)                                                          \
    case ValueType::name:                                                                          \
        return value();
#include "data/desc/valuetypes.inc"
    default:
        return {};
    }
}

} // namespace Ksx::Data::Desc
