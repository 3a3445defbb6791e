// What a subscriber of a LazySignal includes.
#pragma once

#include "ksx/core/lazysignal.h"
#include <boost/signals2.hpp>

namespace Ksx::Core {

template <class... Arguments>
class LazySignal<Arguments...>::Connected final : public Signal
{
public:
    void fire(Arguments... arguments) override { signal(arguments...); }
    boost::signals2::signal<void(Arguments...)> signal;
};

template <class... Arguments>
boost::signals2::connection
LazySignal<Arguments...>::connect(const std::function<void(Arguments...)>& function)
{
    if (m_signal == nullptr)
        m_signal = std::make_unique<Connected>();
    return static_cast<Connected&>(*m_signal).signal.connect(function);
}

} // namespace Ksx::Core
