#include "data/blocksums.h"

#include <QtGlobal>
#include <utility>

namespace Orv::Data {

void BlockSums::assign(std::vector<std::size_t> sizes)
{
    m_sums = std::move(sizes);
    m_longest = 0;
    for (std::size_t power = 1; power <= m_sums.size(); power *= 2)
        m_longest = power;
    for (std::size_t i = 0; i < m_sums.size(); ++i)
        if (const std::size_t next = i | (i + 1); next < m_sums.size())
            m_sums[next] += m_sums[i];
}

void BlockSums::grow(std::size_t block)
{
    for (std::size_t i = block; i < m_sums.size(); i |= i + 1)
        ++m_sums[i];
}

void BlockSums::shrink(std::size_t block)
{
    for (std::size_t i = block; i < m_sums.size(); i |= i + 1)
        --m_sums[i];
}

// Goes from the longest sums, which are at the powers of two, to the single blocks.
BlockSums::Place BlockSums::placeOf(std::size_t index) const
{
    Q_ASSERT(index < before(m_sums.size()));
    std::size_t block = 0;
    for (std::size_t step = m_longest; step > 0; step /= 2) {
        if (block + step > m_sums.size() || m_sums[block + step - 1] > index)
            continue;
        block += step;
        index -= m_sums[block - 1];
    }
    return {block, index};
}

std::size_t BlockSums::before(std::size_t block) const
{
    std::size_t sum = 0;
    for (; block > 0; block &= block - 1)
        sum += m_sums[block - 1];
    return sum;
}

} // namespace Orv::Data
