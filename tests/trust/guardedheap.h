// A heap that ends a process where a library writes or reads behind a block, or uses a freed one.
#pragma once

#include <cstddef>

namespace Trust {

// The allocator of this program is that of the C library until this call. From then on each block ends
// at a page that nobody may touch, a freed block is never given out again, and bytes that nobody has
// written are `fill`. As many bytes as the limit of address space allows are in use at a time; the
// limit itself is raised by the space that the guards need. For one thread.
void guardHeap(unsigned char fill);

} // namespace Trust
