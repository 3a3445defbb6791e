#include "optionstext.h"

#include <new>
#include <sstream>

namespace Orv::Core {

std::string optionsText(const boost::program_options::options_description& options)
{
    std::ostringstream stream;
    stream.exceptions(std::ios::badbit); // which passes std::bad_alloc on
    stream << options;
    std::string text = stream.str();
    for (const auto& option : options.options())
        if (text.find("  " + option->format_name() + ' ' + option->format_parameter()) ==
            std::string::npos)
            throw std::bad_alloc();
    return text;
}

} // namespace Orv::Core
