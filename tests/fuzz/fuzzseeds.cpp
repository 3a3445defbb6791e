// Writes the inputs from which the fuzzer starts, each target's into a folder of its own.
//   fuzzseeds FOLDER
#include "fuzztargets.h"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

void write(const std::filesystem::path& folder, const std::vector<std::string>& inputs)
{
    std::filesystem::create_directories(folder);
    for (std::size_t i = 0; i < inputs.size(); ++i)
        std::ofstream(folder / ("seed" + std::to_string(i)), std::ios::binary) << inputs[i];
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: fuzzseeds FOLDER\n";
        return 2;
    }
    for (const TestSupport::FuzzTarget& target : TestSupport::fuzzTargets())
        write(std::filesystem::path(argv[1]) / target.name, target.seeds());
    return 0;
}
