// Computes the values of function graphs, so that tests can compare them.
#pragma once

#include <boost/any.hpp>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace Ksx::Data::Content {
class DynamicValue;
} // namespace Ksx::Data::Content

namespace TestSupport {

// The first alternative stands for "no value": that of a graph without output, of a node that is not
// known, that depends upon itself or on a node that is missing, and of what cannot be computed, such
// as a division of integers by zero.
using FunctionValue = std::variant<std::monostate, bool, std::vector<int>, std::vector<float>>;

// The inputs of the image graph, by their identifiers.
using FunctionInputs = std::map<std::string, FunctionValue>;

// The value of a graph of constants, getters, arithmetic, vectors, comparisons, conversions and
// decisions. Of nodes with one uid the first one counts, and of several connections to an input that
// takes one value too.
FunctionValue evaluate(const Ksx::Data::Content::DynamicValue& graph, const FunctionInputs& inputs);

// A bool, Int1 to Int4 or Float1 to Float4; no value for anything else.
FunctionValue functionValueOf(const boost::any& value);

// With all digits, so that two values have one text exactly if they are the same; NaN is the same as
// NaN.
std::string textOf(const FunctionValue& value);

} // namespace TestSupport
