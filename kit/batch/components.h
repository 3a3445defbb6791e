// Groups of things that belong together, and their distribution.
#pragma once

#include <QtGlobal>
#include <cstddef>
#include <vector>

namespace Ksx::Kit {

// Things, numbered from 0, that are joined to groups.
class Components
{
public:
    explicit Components(std::size_t count);

    void join(std::size_t a, std::size_t b);
    // Returns the number of one thing of the group, which is the same for all of the group.
    std::size_t groupOf(std::size_t thing);

private:
    std::vector<std::size_t> m_parents; // the first of a group is its own parent
};

// Distributes loads to bins, the largest first and each to the bin that has the least. Returns the
// bin of each load, from 0 on. No bin is empty if there are as many loads as bins.
std::vector<std::size_t> distribute(const std::vector<qint64>& loads, std::size_t bins);

} // namespace Ksx::Kit
