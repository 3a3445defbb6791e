// Takes the place of the allocator of the C library in the whole process, libraries included: an
// executable's functions come before those of its libraries.
#include "guardedheap.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" {
// The allocator that this one takes the place of.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

constexpr std::size_t Page = 4096;
constexpr std::size_t Alignment = 16;
constexpr std::size_t Space = std::size_t(1) << 36; // reserved, and used from its begin to its end
constexpr std::size_t MostBlocks = 25000; // the system allows 65530 ranges, and a block takes two
constexpr std::size_t MostFilled = std::size_t(1) << 24; // more would be slow, and show no more
constexpr unsigned char Slack = 0xc5;                    // between the end of a block and its page
constexpr std::uint64_t Mark = 0x6b736c6f636b6564;

// Lies before the bytes of a block.
struct Header
{
    std::uint64_t mark;
    std::size_t size;
    std::size_t pages; // without the one behind
    unsigned char* begin;
};
static_assert(sizeof(Header) % Alignment == 0, "the bytes behind it are aligned");

struct Heap
{
    bool isGuarded = false;
    unsigned char fill = 0;
    unsigned char* begin = nullptr;
    unsigned char* next = nullptr;
    std::size_t blocks = 0;
    std::size_t bytes = 0;
    std::size_t mostBytes = SIZE_MAX;
};
Heap heap;

bool isOurs(const void* block)
{
    const auto* const place = static_cast<const unsigned char*>(block);
    return heap.begin != nullptr && place >= heap.begin && place < heap.begin + Space;
}

std::size_t roundedUp(std::size_t value, std::size_t step)
{
    return (value + step - 1) / step * step;
}

Header& headerOf(void* block)
{
    return static_cast<Header*>(block)[-1];
}

// Says what is wrong in a line, and ends the process as an access to a guard does.
[[noreturn]] void fail(const char* text)
{
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, std::strlen(text));
    std::abort();
}

void checkBlock(const Header& header, const unsigned char* block)
{
    if (header.mark != Mark)
        fail("guarded heap: bytes before a block were overwritten\n");
    const unsigned char* const end = header.begin + header.pages * Page;
    if (std::any_of(block + header.size, end, [](unsigned char byte) { return byte != Slack; }))
        fail("guarded heap: bytes behind a block were overwritten\n");
}

// Returns null if the limit of memory is reached, as the system's allocator does.
void* guardedBlock(std::size_t size, std::size_t alignment, bool isFilled)
{
    const std::size_t mostBytes = heap.mostBytes;
    if (size > mostBytes || heap.bytes + size > mostBytes) {
        errno = ENOMEM;
        return nullptr;
    }
    const std::size_t taken = roundedUp(size, alignment) + std::max(sizeof(Header), alignment);
    const std::size_t pages = roundedUp(taken, Page) / Page;
    unsigned char* const begin = heap.next;
    const auto left = static_cast<std::size_t>(heap.begin + Space - begin);
    if (heap.blocks >= MostBlocks || left < (pages + 1) * Page ||
        mprotect(begin, pages * Page, PROT_READ | PROT_WRITE) != 0)
        return __libc_memalign(alignment, size);
    heap.next = begin + (pages + 1) * Page;
    ++heap.blocks;
    heap.bytes += size;
    unsigned char* const end = begin + pages * Page;
    unsigned char* const block = end - roundedUp(size, alignment);
    headerOf(block) = {Mark, size, pages, begin};
    std::fill(block + size, end, Slack);
    if (isFilled)
        std::memset(block, heap.fill, std::min(size, MostFilled));
    return block;
}

void release(void* block)
{
    const Header header = headerOf(block);
    checkBlock(header, static_cast<const unsigned char*>(block));
    madvise(header.begin, header.pages * Page, MADV_DONTNEED);
    mprotect(header.begin, header.pages * Page, PROT_NONE);
    --heap.blocks;
    heap.bytes -= header.size;
}

void* aligned(std::size_t alignment, std::size_t size)
{
    return heap.isGuarded ? guardedBlock(size, std::max(alignment, Alignment), true)
                          : __libc_memalign(alignment, size);
}

} // namespace

extern "C" {

void* malloc(std::size_t size)
{
    return heap.isGuarded ? guardedBlock(size, Alignment, true) : __libc_malloc(size);
}

void free(void* block)
{
    if (isOurs(block))
        release(block);
    else
        __libc_free(block);
}

void* calloc(std::size_t count, std::size_t size)
{
    if (!heap.isGuarded)
        return __libc_calloc(count, size);
    std::size_t bytes = 0;
    if (__builtin_mul_overflow(count, size, &bytes)) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const block = guardedBlock(bytes, Alignment, false); // fresh pages are zeros
    if (block != nullptr && !isOurs(block))
        std::memset(block, 0, bytes);
    return block;
}

void* realloc(void* block, std::size_t size)
{
    if (!isOurs(block))
        return heap.isGuarded && block == nullptr ? malloc(size) : __libc_realloc(block, size);
    if (size == 0) {
        free(block);
        return nullptr;
    }
    void* const other = malloc(size);
    if (other != nullptr) {
        std::memcpy(other, block, std::min(size, headerOf(block).size));
        free(block);
    }
    return other;
}

void* memalign(std::size_t alignment, std::size_t size)
{
    return aligned(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return aligned(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size)
{
    *block = aligned(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
}

// The space that is reserved counts, though nothing of it is used.
int setrlimit(__rlimit_resource_t resource, const rlimit* bounds) noexcept
{
    rlimit wider = *bounds;
    if (resource == RLIMIT_AS && heap.isGuarded) {
        heap.mostBytes = bounds->rlim_cur;
        wider.rlim_cur += Space;
        wider.rlim_max += Space;
    }
    return static_cast<int>(syscall(SYS_prlimit64, 0, resource, &wider, nullptr));
}

} // extern "C"

namespace Trust {

void guardHeap(unsigned char fill)
{
    void* const space =
        mmap(nullptr, Space, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (space == MAP_FAILED)
        fail("guarded heap: there is no room\n");
    heap.begin = heap.next = static_cast<unsigned char*>(space);
    heap.fill = fill;
    heap.isGuarded = true;
}

} // namespace Trust
