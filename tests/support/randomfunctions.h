// Graphs of images whose parameters are computed by random function graphs.
#pragma once

#include "support/functionevaluator.h"
#include "support/workspace.h"
#include <boost/any.hpp>
#include <random>
#include <string>

namespace TestSupport {

// The functions read the input "x", which has each of the nine types of values in turn, and others.
// They are mostly right, and otherwise have circles, connections that lead nowhere, functions that
// nobody knows, nodes with one uid and graphs without output.
class RandomFunctions
{
public:
    explicit RandomFunctions(unsigned seed);

    const GraphText& graph() const { return m_graph; }
    // Of all inputs; "x" has frozenValue().
    const FunctionInputs& inputs() const { return m_inputs; }
    const boost::any& frozenValue() const { return m_frozen; }

private:
    GraphText m_graph;
    FunctionInputs m_inputs;
    boost::any m_frozen;
};

} // namespace TestSupport
