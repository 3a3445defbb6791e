// A signal that costs one word until somebody connects to it.
#pragma once

#include <functional>
#include <memory>

namespace boost::signals2 {
class connection;
} // namespace boost::signals2

namespace Ksx::Core {

// Controllers have many signals, of which most programs use few. To connect, include
// "ksx/core/lazysignalconnect.h". To send, this header is enough.
//
// Controllers send their signals while the changes of an edit, an undo or a redo are delivered. The
// document is in its new state then. A subscriber may remove the object that has the signal. Main
// thread.
//
//     const boost::signals2::scoped_connection connection =
//         graph.nodeAdded.connect([this](NodeController* node, std::size_t) { draw(*node); });
template <class... Arguments>
class LazySignal
{
public:
    // Calls `function` each time that the signal is sent, in the order of the connections.
    // Disconnect it by the returned connection before the objects die that it refers to. A
    // boost::signals2::scoped_connection does so by itself. The connection may outlive the signal.
    boost::signals2::connection connect(const std::function<void(Arguments...)>& function);

    // Sends the signal. Costs one comparison if nobody has connected.
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

    // Null until somebody connects.
    std::unique_ptr<Signal> m_signal;
};

} // namespace Ksx::Core
