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
    const std::vector<std::string> documents = TestSupport::documentsForLanes();
    TestSupport::XmlMutator mutator(seed);
    for (long i = 0; i < count; ++i) {
        const std::string mutant =
            mutator.mutant(documents[static_cast<std::size_t>(i) % documents.size()]);
        const std::string difference = TestSupport::differenceOfLanes(mutant);
        if (!difference.empty()) {
            std::cout << "seed " << seed << ", mutant " << i << ": " << difference << "\nof\n"
                      << mutant << '\n';
            return 1;
        }
    }
    std::cout << count << " mutants, seed " << seed << ": no difference\n";
    return 0;
}
