// The functions that the fuzzers call, each with bytes of whatever kind. An ordinary test calls them with
// the inputs that are kept.
#pragma once

#include <string>
#include <vector>

namespace TestSupport {

struct FuzzTarget
{
    const char* name; // of small letters
    // Returns an empty text if the program holds its promises for the input. Otherwise says what is
    // wrong. Whatever the input, it comes back.
    std::string (*check)(const std::string& input);
    // Returns good inputs, from which the fuzzer starts.
    std::vector<std::string> (*seeds)();
    // Changes an input as its grammar suggests. Null where the fuzzer's own changes of bytes do.
    std::string (*mutated)(const std::string& input, const std::string& other, unsigned seed);
};

const std::vector<FuzzTarget>& fuzzTargets();
// Returns null if there is none of that name.
const FuzzTarget* findFuzzTarget(const std::string& name);

// Returns the inputs that are kept for a target, in tests/fuzz/corpus.
std::vector<std::string> keptInputs(const std::string& target);

// The targets, by subject.
std::vector<FuzzTarget> packageTargets();
std::vector<FuzzTarget> assemblyTargets();
std::vector<FuzzTarget> pictureTargets();
std::vector<FuzzTarget> commandLineTargets();

} // namespace TestSupport
