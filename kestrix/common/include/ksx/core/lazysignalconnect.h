// Lets a source connect to a LazySignal. Takes a second to compile, so headers should not include
// it.
#pragma once

#include "ksx/core/lazysignal.h"
#include <boost/signals2.hpp>

namespace Ksx::Core {

template <class... Arguments>
class LazySignal<Arguments...>::Connected final : public Signal
{
public:
    using Boosted = boost::signals2::signal<void(Arguments...)>;
    // A subscriber may take away whose signal this is.
    void fire(Arguments... arguments) override
    {
        const std::shared_ptr<Boosted> kept = signal;
        (*kept)(arguments...);
    }
    std::shared_ptr<Boosted> signal = std::make_shared<Boosted>();
};

template <class... Arguments>
boost::signals2::connection
LazySignal<Arguments...>::connect(const std::function<void(Arguments...)>& function)
{
    if (m_signal == nullptr)
        m_signal = std::make_unique<Connected>();
    return static_cast<Connected&>(*m_signal).signal->connect(function);
}

} // namespace Ksx::Core
