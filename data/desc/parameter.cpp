#include "data/desc/parameter.h"

#include "data/desc/valuetype.h"
#include "data/vec.h"

namespace Ksx::Data::Desc {

using Orv::Data::Vec;

const std::string& Parameter::extra(const std::string& name) const
{
    static const std::string none;
    const auto found = extras.find(name);
    return found == extras.end() ? none : found->second;
}

boost::any emptyValueOf(unsigned type)
{
    switch (type) {
    case ValueType::Bool:
        return false;
    case ValueType::Int1:
        return 0u;
    case ValueType::Int2:
        return Vec<int, 2>();
    case ValueType::Int3:
        return Vec<int, 3>();
    case ValueType::Int4:
        return Vec<int, 4>();
    case ValueType::Float1:
    case ValueType::Float1OrGrayscaleImage:
        return Vec<float, 1>();
    case ValueType::Float2:
        return Vec<float, 2>();
    case ValueType::Float3:
        return Vec<float, 3>();
    case ValueType::Float4:
    case ValueType::Float4OrColorImage:
    case ValueType::Color:
    case ValueType::ColorOrImage:
        return Vec<float, 4>();
    case ValueType::Text:
    case ValueType::String:
        return std::string();
    default:
        return {};
    }
}

} // namespace Ksx::Data::Desc
