// The help on options.
#pragma once

#include <boost/program_options/options_description.hpp>
#include <string>

namespace Orv::Core {

// Returns what the stream operator of the options writes. Where that one leaves out or misplaces
// lines for lack of memory, here the answer is std::bad_alloc.
std::string optionsText(const boost::program_options::options_description& options);

} // namespace Orv::Core
