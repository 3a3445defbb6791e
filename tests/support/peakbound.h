// Bounds on the memory that the tool takes.
#pragma once

namespace TestSupport {

// Returns a bound on the peak memory of a run, in the unit of `size`. The address sanitizer keeps much
// of what has been freed, so the bound is three times as high under it.
constexpr long peakBound(long size)
{
#ifdef __SANITIZE_ADDRESS__
    return 3 * size;
#else
    return size;
#endif
}

} // namespace TestSupport
