// The signals of the command manager, in a header of their own: it takes a second to compile.
#pragma once

#include <boost/signals2/signal.hpp>
#include <cstdint>
#include <memory>

namespace Orv::Core {

class ICommand;

class CommandSignal : public boost::signals2::signal<void(const std::shared_ptr<ICommand>&)>
{};

// The id of an activity (Activity), and true when it begins, false when it has ended.
class ActivitySignal : public boost::signals2::signal<void(std::uint32_t, bool)>
{};

} // namespace Orv::Core
