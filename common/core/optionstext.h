// The help on options.
#pragma once

#include <boost/program_options/options_description.hpp>
#include <string>

namespace Orv::Core {

// Returns what the stream operator of the options writes. That one passes over lines for which it has
// no memory; here the answer is std::bad_alloc.
std::string optionsText(const boost::program_options::options_description& options);

} // namespace Orv::Core
