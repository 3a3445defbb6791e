// The end of edits that chase each other.
#pragma once

#include "data/datamessage.h"
#include "data/datapointerbox.h"
#include "data/manipulatorcontextbase.h"
#include <cstddef>

namespace Ksx::Core::Behavior {

// Counts how often a behaviour acts in one edit. What it does may come back to it, once for each
// thing that it looks after or a few times more; if it goes on for longer, it runs in a circle.
class Rounds
{
public:
    // False if the behaviour has to leave everything as it is now.
    bool next(const Orv::Data::DataMessage& message, std::size_t things)
    {
        if (m_context != message.context) {
            m_context = message.context;
            m_count = 0;
        }
        return ++m_count <= Spare + things;
    }

private:
    static constexpr std::size_t Spare = 64;

    Orv::Data::DataPointerBox<Orv::Data::ManipulatorContextBase> m_context; // of the present edit
    std::size_t m_count = 0;
};

} // namespace Ksx::Core::Behavior
