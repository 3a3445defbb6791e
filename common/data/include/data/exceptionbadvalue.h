// A value in a document that is none of its element's type.
#pragma once

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <cstdint>
#include <string>

namespace Orv::Data {

// Thrown while a document is read, with the place in place of the C++ types.
class ExceptionBadValue final : public boost::bad_lexical_cast
{
public:
    // `line` counts from 1. Only the begin of a long value is kept.
    ExceptionBadValue(const std::string& element, std::int64_t line, const std::string& value)
        : m_element(element), m_line(line), m_value(value.substr(0, MaximumLength)),
          m_text("bad value \"" + m_value + "\" of element \"" + element + "\" in line " +
                 std::to_string(line))
    {}
    // For example: bad value "true" of element "disabled" in line 12
    const char* what() const noexcept override { return m_text.c_str(); }

    const std::string& element() const { return m_element; }
    std::int64_t line() const { return m_line; }
    const std::string& value() const { return m_value; }

private:
    static constexpr std::size_t MaximumLength = 200;

    std::string m_element;
    std::int64_t m_line;
    std::string m_value;
    std::string m_text;
};

} // namespace Orv::Data
