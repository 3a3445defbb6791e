#include "support/golden.h"
#include "support/paths.h"

#include <gtest/gtest.h>
#include <fstream>
#include <iterator>

namespace TestSupport {

namespace {
bool updateGolden = false;
} // namespace

void setUpdateGolden(bool isOn)
{
    updateGolden = isOn;
}

std::string readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << "cannot read " << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string goldenPath(const std::string& name)
{
    return sourcePath("tests/golden/" + name);
}

void expectGolden(const std::string& name, const std::string& actual)
{
    if (updateGolden)
        std::ofstream(goldenPath(name), std::ios::binary) << actual;
    EXPECT_EQ(readFile(goldenPath(name)), actual) << "differs from tests/golden/" << name;
}

} // namespace TestSupport
