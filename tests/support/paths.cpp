#include "support/paths.h"

namespace TestSupport {

std::string sourcePath(const std::string& name)
{
    return std::string(KESTRIX_SOURCE_DIR "/") + name;
}

std::string buildPath(const std::string& name)
{
    return std::string(KESTRIX_TEST_BUILD_DIR "/") + name;
}

std::string ksxPath()
{
    return KSX_EXECUTABLE;
}

std::string toolPath()
{
    return KESTRIX_EXECUTABLE;
}

} // namespace TestSupport
