// Numbers as they stand in files.
#pragma once

#include <cstdint>
#include <string>

namespace TestSupport {

// A number, its lowest byte first.
template <class Number>
std::string little(Number number, int bytes)
{
    auto rest = static_cast<std::uint64_t>(number);
    std::string text;
    for (int i = 0; i < bytes; ++i, rest >>= 8)
        text += static_cast<char>(rest & 0xff);
    return text;
}

// A number, its highest byte first.
template <class Number>
std::string big(Number number, int bytes)
{
    const std::string text = little(number, bytes);
    return {text.rbegin(), text.rend()};
}

} // namespace TestSupport
