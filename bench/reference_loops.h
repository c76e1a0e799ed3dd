// The reference loops that benchmarks of several programs measure themselves against, so
// that every ratio is taken against the same work.
#pragma once

#include <cstddef>

namespace orlex::bench {

// Reads n ints and writes the low three bytes of each: the least a 24-bit conversion of
// the same data must do.
inline void ThreeBytesEach(const int* src, unsigned char* dst, std::size_t n)
{
    for (std::size_t i = 0; i < n; ++i, dst += 3) {
        const unsigned v = unsigned(src[i]);
        dst[0] = static_cast<unsigned char>(v);
        dst[1] = static_cast<unsigned char>(v >> 8);
        dst[2] = static_cast<unsigned char>(v >> 16);
    }
}

}  // namespace orlex::bench
