#include "optionstext.h"

#include <new>
#include <sstream>

namespace Orv::Core {

namespace {

std::string textOf(const boost::program_options::options_description& options)
{
    std::ostringstream stream;
    stream.exceptions(std::ios::badbit); // which passes std::bad_alloc on
    stream << options;
    return stream.str();
}

} // namespace

std::string optionsText(const boost::program_options::options_description& options)
{
    // Streams inside of the operator keep a lack of memory to themselves.
    std::string text = textOf(options);
    if (textOf(options) != text)
        throw std::bad_alloc();
    return text;
}

} // namespace Orv::Core
