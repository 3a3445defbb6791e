// The inputs that the fuzzers keep, and those from which they start, given to the same functions.
#include "fuzztargets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::Each;
using testing::IsEmpty;
using testing::Not;
using TestSupport::FuzzTarget;

namespace {

std::vector<std::string> faultsOf(const FuzzTarget& target, const std::vector<std::string>& inputs)
{
    std::vector<std::string> faults;
    faults.reserve(inputs.size());
    for (const std::string& input : inputs)
        faults.push_back(target.check(input));
    return faults;
}

class FuzzCorpus : public testing::TestWithParam<FuzzTarget>
{};

TEST_P(FuzzCorpus, HoldsNoInputThatBreaksAPromise)
{
    const std::vector<std::string> inputs = TestSupport::keptInputs(GetParam().name);
    EXPECT_THAT(inputs, Not(IsEmpty()));
    EXPECT_THAT(faultsOf(GetParam(), inputs), Each(IsEmpty()));
}

TEST_P(FuzzCorpus, BeginsWithGoodInputs)
{
    EXPECT_THAT(faultsOf(GetParam(), GetParam().seeds()), Each(IsEmpty()));
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzCorpus, testing::ValuesIn(TestSupport::fuzzTargets()),
                         [](const auto& given) { return std::string(given.param.name); });

} // namespace
