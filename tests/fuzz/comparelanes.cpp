// Compares the two lanes of reading on mutants of sample packages, as many as one likes.
//   comparelanes COUNT [SEED]
#include "support/readinglanes.h"

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::cerr << "usage: comparelanes COUNT [SEED]\n";
        return 2;
    }
    const long count = std::atol(argv[1]);
    const auto seed = static_cast<unsigned>(argc > 2 ? std::atol(argv[2]) : 1);
    const std::string difference = TestSupport::firstDifferenceOfLanes(seed, count);
    if (!difference.empty()) {
        std::cout << "seed " << seed << ", " << difference << '\n';
        return 1;
    }
    std::cout << count << " mutants, seed " << seed << ": no difference\n";
    return 0;
}
