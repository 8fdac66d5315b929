// Measures the heap that a piece of work uses, in the library, LibTomMath and the C
// library together.
#pragma once

#include <cstddef>
#include <functional>

namespace pavonix::bench {

// The largest number of bytes that the calling thread held at once, beyond what
// it held before. In a program that links this, malloc and its kin are ours.
std::size_t HeapPeak(const std::function<void()> &work);

} // namespace pavonix::bench
