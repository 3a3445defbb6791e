#include "data/desc/parameter.h"

#include "data/attribute.h"
#include "data/desc/valuetype.h"

namespace Ksx::Data::Desc {

namespace {

template <class T>
boost::any emptyAs()
{
    return T{};
}

struct EmptyValue
{
    unsigned type;
    boost::any (*make)();
};

constexpr EmptyValue EmptyValues[] = {
#define VALUE_TYPE(name, bit, value, ...) {ValueType::name, &emptyAs<Orv::Data::value>},
#include "data/desc/valuetypes.inc"
};

} // namespace

const std::string& Parameter::extra(const std::string& name) const
{
    static const std::string none;
    const auto found = extras.find(name);
    return found == extras.end() ? none : found->second;
}

boost::any emptyValueOf(unsigned type)
{
    if (type == ValueType::Int1)
        return Orv::Data::UInt{}; // the index of an item
    for (const EmptyValue& row : EmptyValues)
        if (row.type == ValueType::plain(type))
            return row.make();
    return {};
}

} // namespace Ksx::Data::Desc
