// The filters, inputs and usages that generated packages are made of.
#pragma once

#include <array>
#include <vector>

namespace Benchmark {

// The numbers by which the format names value and image types.
namespace Type {
constexpr unsigned Color = 1;
constexpr unsigned Gray = 2;
constexpr unsigned Bool = 4;
constexpr unsigned Int1 = 16;
constexpr unsigned Int2 = 32;
constexpr unsigned Float1 = 256;
constexpr unsigned Float4 = 2048;
} // namespace Type

// ByColor is Float4 in a node that gives a color image, Float1 in the others.
enum class ValueKind
{
    Bool,
    Choice,
    Seed,
    Size,
    Float1,
    Float2,
    Float4,
    ByColor
};

struct ParameterRow
{
    const char* name;
    ValueKind kind;
    int limit; // number of items of a choice; otherwise the largest value, floats in thousandths
};

enum class Inputs
{
    None,
    AnyOne,
    ColorOne,
    GrayOne,
    TwoAlike,
    AnyThenGray
};

struct FilterRow
{
    const char* name;
    Inputs inputs;
    unsigned output; // image type; 0: that of the first input
    std::array<const char*, 2> connectors;
    std::vector<ParameterRow> parameters;
};

struct InputRow
{
    const char* identifier;
    unsigned type;
    const char* valueElement;
    const char* value;
    const char* widget;
    std::vector<std::array<const char*, 2>> options;
};

struct UsageRow
{
    const char* components;
    const char* name;
    const char* identifier; // of the graph output
    unsigned type;
};

const std::vector<FilterRow>& filters();
const std::vector<ParameterRow>& commonParameters();
const std::vector<InputRow>& numberInputs();
const std::vector<UsageRow>& usages();

} // namespace Benchmark
