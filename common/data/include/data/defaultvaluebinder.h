// Gives an attribute a default other than the empty value of its type.
#pragma once

namespace Orv::Data {

// `Bound` is a MetaBinder over an Attribute; `DefaultTag` has a `static constexpr` member `value`.
// New objects hold the default from the start. Adds no field.
template <class Bound, class DefaultTag>
class DefaultValueBinder : public Bound
{
public:
    using ValueType = typename Bound::ValueType;
    DefaultValueBinder() { this->assign(ValueType(DefaultTag::value)); }
    ValueType getDefaultValue() const override { return ValueType(DefaultTag::value); }
};

} // namespace Orv::Data
