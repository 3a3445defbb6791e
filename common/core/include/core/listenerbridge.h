// A listener that passes its messages on to functions.
#pragma once

#include "core/listenersimple.h"
#include "data/datamessage.h"
#include <boost/signals2/signal.hpp>
#include <cstdint>
#include <functional>

namespace Orv::Core {

// Calls each connected function, in the order of connection, with the message and a fixed value, by
// which one function can serve several listeners. `Arg` is char or int.
template <std::uint16_t Priority, std::uint32_t TypeMask, std::uint32_t MemberMask, class Arg,
          class Base = Data::ListenerBase>
class ListenerBridge : public ListenerSimple<Priority, TypeMask, MemberMask, Base>
{
public:
    using Function = std::function<void(const Data::DataMessage&, Arg)>;

    explicit ListenerBridge(Arg argument) : m_argument(argument) {}

    // The function must not outlive what it refers to: see ListenerSlot, or disconnect it by the
    // answer.
    boost::signals2::connection connect(const Function& function)
    {
        return m_delivered.connect(function);
    }

    void deliver(const Data::DataMessage& message) override { m_delivered(message, m_argument); }

private:
    boost::signals2::signal<void(const Data::DataMessage&, Arg)> m_delivered;
    Arg m_argument;
};

} // namespace Orv::Core
