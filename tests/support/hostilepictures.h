// Pictures that crash old decoders, keep them busy for ever or make them take all memory.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace TestSupport {

struct HostilePicture
{
    const char* name;
    const char* ending;
    std::string (*bytes)();
};

std::ostream& operator<<(std::ostream& stream, const HostilePicture& picture);

// Each of at most some kilobytes, and none of them a picture.
std::vector<HostilePicture> hostilePictures();

} // namespace TestSupport
