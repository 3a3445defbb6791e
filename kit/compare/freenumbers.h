// Numbers that no item of a list has.
#pragma once

#include <unordered_map>

namespace Ksx::Kit {

// Takes nearly constant time for a number, even if all that is asked for is one number.
class FreeNumbers
{
public:
    // A number may be taken twice.
    void take(unsigned number);
    // Returns the number itself if it is free, and the next free one otherwise. It is taken then.
    unsigned takeFree(unsigned number);

private:
    unsigned nextFree(unsigned number);

    // For each taken number one behind it, with none but taken ones in between.
    std::unordered_map<unsigned, unsigned> m_next;
};

} // namespace Ksx::Kit
