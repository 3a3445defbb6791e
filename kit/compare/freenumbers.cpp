#include "compare/freenumbers.h"

namespace Ksx::Kit {

void FreeNumbers::take(unsigned number)
{
    m_next.emplace(number, number + 1);
}

unsigned FreeNumbers::takeFree(unsigned number)
{
    const unsigned free = nextFree(number);
    take(free);
    return free;
}

// The ways of all numbers that are passed become short.
unsigned FreeNumbers::nextFree(unsigned number)
{
    unsigned free = number;
    for (auto found = m_next.find(free); found != m_next.end(); found = m_next.find(free))
        free = found->second;
    for (auto found = m_next.find(number); found != m_next.end(); found = m_next.find(number)) {
        number = found->second;
        found->second = free;
    }
    return free;
}

} // namespace Ksx::Kit
