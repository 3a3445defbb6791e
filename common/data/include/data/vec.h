// Short vectors of numbers, the composite values of documents.
#pragma once

#include <array>
#include <cstddef>
#include <istream>
#include <ostream>

namespace Orv::Data {

// N elements of T (float or int, N from 1 to 4) with value semantics, all zero at first.
template <class T, std::size_t N>
struct Vec
{
    std::array<T, N> elements{};

    T& operator[](std::size_t index) { return elements[index]; }
    const T& operator[](std::size_t index) const { return elements[index]; }
    static constexpr std::size_t size() { return N; }

    friend bool operator==(const Vec& a, const Vec& b) { return a.elements == b.elements; }
    friend bool operator!=(const Vec& a, const Vec& b) { return !(a == b); }
};

// Elements in the stream's own number format, one blank between them.
template <class T, std::size_t N>
std::ostream& operator<<(std::ostream& stream, const Vec<T, N>& value)
{
    for (std::size_t i = 0; i < N; ++i) {
        if (i > 0)
            stream << ' ';
        stream << value[i];
    }
    return stream;
}

// N numbers, each followed by one dropped character, whatever it is, unless the text ends there.
// So "1 2" and "1,2" are the same, one separator may trail, and two in a row fail when the stream
// does not skip white space. Leaves the target as it was when it fails.
template <class T, std::size_t N>
std::istream& operator>>(std::istream& stream, Vec<T, N>& value)
{
    Vec<T, N> read;
    for (std::size_t i = 0; i < N; ++i) {
        stream >> read[i];
        if (stream.good())
            stream.get();
    }
    if (!stream.fail())
        value = read;
    return stream;
}

} // namespace Orv::Data
