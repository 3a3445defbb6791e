// A signal that costs one word until somebody connects to it.
#pragma once

#include <functional>
#include <memory>

namespace boost::signals2 {
class connection;
} // namespace boost::signals2

namespace Ksx::Core {

// Controllers have many signals, of which most programs use none. To connect, include
// "ksx/core/lazysignalconnect.h"; to fire, this header is enough.
template <class... Arguments>
class LazySignal
{
public:
    // The function must be disconnected, by the answer, before what it refers to dies.
    boost::signals2::connection connect(const std::function<void(Arguments...)>& function);

    void operator()(Arguments... arguments) const
    {
        if (m_signal != nullptr)
            m_signal->fire(arguments...);
    }

private:
    class Signal
    {
    public:
        virtual ~Signal() = default;
        virtual void fire(Arguments... arguments) = 0;
    };
    class Connected;

    std::unique_ptr<Signal> m_signal;
};

} // namespace Ksx::Core
