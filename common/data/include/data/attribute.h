// The typed leaf values of documents.
#pragma once

#include "data/attributebase.h"
#include "data/vec.h"
#include <string>
#include <type_traits>
#include <utility>

namespace Orv::Core {
template <class T>
class ManipulatorAttribute;
} // namespace Orv::Core

namespace Orv::Data {

// The names by which member tables call their value types.
using Text = std::string;
using Bool = bool;
using UInt = unsigned int;
using Float1 = Vec<float, 1>;
using Float2 = Vec<float, 2>;
using Float3 = Vec<float, 3>;
using Float4 = Vec<float, 4>;
using Int1 = Vec<int, 1>;
using Int2 = Vec<int, 2>;
using Int3 = Vec<int, 3>;
using Int4 = Vec<int, 4>;

// Reads a value's text form. Throws boost::bad_lexical_cast on bad text.
template <class T>
T valueFromString(std::string_view text);

// T is one of the twelve: unsigned int, bool, std::string, float, and the eight Vec above.
template <class T>
class Attribute : public AttributeBase
{
public:
    using ValueType = T;

    const T& get() const { return m_value; }

    bool isText() const override { return std::is_same_v<T, Text>; }
    void appendText(std::string& out) const override;
    void fromString(std::string_view text) override;
    bool isModified() const override;

    // The default of the declaration: 0, false, the empty text or all zeros if it names none.
    virtual T getDefaultValue() const { return T{}; }

    // Stores without record or notice: only for a tree that is being built and has no listeners.
    void assign(T value) { m_value = std::move(value); }

protected:
    Attribute() = default;
    explicit Attribute(T value) : m_value(std::move(value)) {}

private:
    template <class U>
    friend class Orv::Core::ManipulatorAttribute;
    T m_value{};
};

#define ATTRIBUTE_TYPE(type) extern template class Attribute<type>;
#include "data/attributetypes.inc"

} // namespace Orv::Data
