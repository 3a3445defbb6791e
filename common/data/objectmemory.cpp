#include "data/objectmemory.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <new>
#include <vector>
#ifdef __unix__
#include <pthread.h>
#include <sys/mman.h>
#endif

namespace Orv::Data {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool UsesBlocks = false;
#else
constexpr bool UsesBlocks = true;
#endif

constexpr std::size_t Step = sizeof(void*); // sizes and places are multiples of it
constexpr std::size_t LargestSize = 1024;   // larger objects are rare
constexpr std::size_t SizeCount = LargestSize / Step + 1;
constexpr std::size_t BlockSize = std::size_t{1} << 15;
constexpr std::size_t LargePage = std::size_t{1} << 21;
constexpr std::size_t RegionSize = 8 * LargePage;
constexpr std::size_t SmallBlocks = 128; // before there are regions

struct Free
{
    Free* next;
};

// What a thread has of one size.
struct Supply
{
    Free* first; // was given back
    char* rest;  // of a block
    std::size_t restSize;
};
using Supplies = std::array<Supply, SizeCount>;

// Has no destructor: objects may die after all else of the thread has.
thread_local Supplies supplies;

// Blocks, and what threads have left that have ended.
class Stock
{
public:
    void* block()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_blocks < SmallBlocks) {
            ++m_blocks;
            return ::operator new(BlockSize);
        }
        if (m_region == m_regionEnd)
            addRegion();
        char* const taken = m_region;
        m_region += BlockSize;
        return taken;
    }
    void leave(Supplies& left)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (std::size_t i = 0; i < SizeCount; ++i)
            if (left[i].first != nullptr || left[i].restSize != 0)
                m_left[i].push_back(left[i]);
        left = {};
    }
    // Gives a supply what another thread has left. Returns false if there is nothing.
    bool inherit(std::size_t index, Supply& supply)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_left[index].empty())
            return false;
        supply = m_left[index].back();
        m_left[index].pop_back();
        return true;
    }

private:
    void addRegion()
    {
        m_region = static_cast<char*>(::operator new (RegionSize, std::align_val_t{LargePage}));
        m_regionEnd = m_region + RegionSize;
#ifdef MADV_HUGEPAGE
        madvise(m_region, RegionSize, MADV_HUGEPAGE); // a hint: it may fail
#endif
    }

    std::mutex m_mutex;
    std::array<std::vector<Supply>, SizeCount> m_left;
    std::size_t m_blocks = 0;
    char* m_region = nullptr;
    char* m_regionEnd = nullptr;
};

Stock& stock()
{
    static Stock* const instance = new Stock; // objects may die after the statics have
    return *instance;
}

#ifdef __unix__
// Hands the memory of a thread on when it ends. The language has destructors for that, but the C
// library ends the process when it has no memory to note one.
class Leaving
{
public:
    Leaving() : m_hasKey(pthread_key_create(&m_key, &leave) == 0) {}
    // For this thread. Where it fails the memory is used by nobody else.
    void announce() const
    {
        if (m_hasKey)
            pthread_setspecific(m_key, &supplies);
    }

private:
    static void leave(void* left)
    {
        try {
            stock().leave(*static_cast<Supplies*>(left));
        } catch (const std::bad_alloc&) { // what has not been noted is lost
        }
    }

    pthread_key_t m_key = {};
    bool m_hasKey;
};

void announceLeaving()
{
    static const Leaving leaving;
    leaving.announce();
}
#else
void announceLeaving() {}
#endif

// There is something free.
void* takeFree(Supply& supply)
{
    Free* const taken = supply.first;
    supply.first = taken->next;
    return taken;
}

// For a supply in which nothing is free.
void* takeFromBlock(Supply& supply, std::size_t index)
{
    const std::size_t size = index * Step;
    if (supply.restSize < size) {
        announceLeaving();
        if (stock().inherit(index, supply) && supply.first != nullptr)
            return takeFree(supply);
        if (supply.restSize < size) {
            supply.rest = static_cast<char*>(stock().block());
            supply.restSize = BlockSize;
        }
    }
    void* const taken = supply.rest;
    supply.rest += size;
    supply.restSize -= size;
    return taken;
}

} // namespace

void* ObjectMemory::take(std::size_t size)
{
    if (!UsesBlocks || size > LargestSize)
        return ::operator new(size);
    const std::size_t index = (size + Step - 1) / Step;
    Supply& supply = supplies[index];
    return supply.first != nullptr ? takeFree(supply) : takeFromBlock(supply, index);
}

void ObjectMemory::giveBack(void* memory, std::size_t size) noexcept
{
    if (!UsesBlocks || size > LargestSize) {
        ::operator delete(memory);
        return;
    }
    Supply& supply = supplies[(size + Step - 1) / Step];
    supply.first = ::new (memory) Free{supply.first};
}

} // namespace Orv::Data
