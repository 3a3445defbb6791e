// The names of a list, and the numbers that are free behind them.
#pragma once

#include "data/densemap.h"
#include <cstddef>
#include <map>
#include <string>

namespace Ksx::Core {

// A bag of names. All operations take logarithmic time, also where thousands of names differ in
// their numbers alone.
class TakenNames
{
public:
    void add(const std::string& name);
    // The name is there.
    void remove(const std::string& name);
    std::size_t count(const std::string& name) const;

    // Returns the first number, from `number` on, with which `base`, "_" and the number are no name
    // that is there.
    long long freeNumber(const std::string& base, long long number) const;
    // The same as if `without`, which is there once or more, were there once less.
    long long freeNumber(const std::string& base, long long number,
                         const std::string& without) const;

private:
    using Runs = std::map<long long, long long>; // of taken numbers, the first and the last of each

    Orv::Data::DenseMap<std::string, std::size_t> m_counts;
    Orv::Data::DenseMap<std::string, Runs> m_numbers; // by the text before "_"
};

} // namespace Ksx::Core
