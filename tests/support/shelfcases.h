// Names for the cases of parameterised tests, and the random numbers of property tests.
#pragma once

#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <string>

namespace TestSupport {

// The name of a case is its member `name`; letters and digits only.
template <class Case>
std::string caseName(const testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

// Numbers that are the same in every run; the seed is printed with the test.
inline std::mt19937 seededRandom(std::mt19937::result_type seed)
{
    std::cout << "seed " << seed << '\n';
    return std::mt19937(seed);
}

// A number from `first` to `last`, both included.
template <class Number>
Number pick(std::mt19937& random, Number first, Number last)
{
    return std::uniform_int_distribution<Number>(first, last)(random);
}

} // namespace TestSupport
