// The memory of the objects of documents.
#pragma once

#include <cstddef>

namespace Orv::Data {

// A document has millions of objects of a few sizes. They come from blocks of objects of one size,
// without the words that the C library keeps in front of each. The memory of an object that has died
// is used for the next one of its size; blocks are not given back before the process ends. Each
// thread takes and returns memory without a lock, and an object may die in another thread than the
// one that made it. Builds with a sanitizer take each object from the C library.
class ObjectMemory
{
public:
    // Returns memory for an object. Throws std::bad_alloc where there is none.
    static void* take(std::size_t size);
    // Takes back memory that take() returned for that size.
    static void giveBack(void* memory, std::size_t size) noexcept;
};

} // namespace Orv::Data
