// The sums of the sizes of blocks that follow each other.
#pragma once

#include <cstddef>
#include <vector>

namespace Orv::Data {

// Leads from a position among the values of all blocks to the block, and back, in logarithmic time.
class BlockSums
{
public:
    struct Place
    {
        std::size_t block;
        std::size_t offset; // in the block
    };

    void assign(std::vector<std::size_t> sizes);
    // One block has one value more, or less.
    void grow(std::size_t block);
    void shrink(std::size_t block);

    // `index` is below the sum of all.
    Place placeOf(std::size_t index) const;
    // Returns the sum of the blocks before one.
    std::size_t before(std::size_t block) const;

private:
    // A tree: sum `i` is that of the blocks from `i & (i + 1)` to `i`.
    std::vector<std::size_t> m_sums;
    std::size_t m_longest = 0; // the greatest power of two that is not above their number
};

} // namespace Orv::Data
