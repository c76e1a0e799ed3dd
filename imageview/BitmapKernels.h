// Inner loops of the bitmap builders: scaling to indices, interpolated 24-bit colour and
// the marking of invalid pixels. Each works on a flat run of values; the builders feed
// them whole images (rows have no padding, so an image is one run).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/platform/wintypes.h"

namespace orlex::bitmap {

// Steps of the 24-bit interpolation between two neighbouring table entries.
constexpr std::uint64_t kFitSteps = 4294967295ull;

// Scales n values to bytes: trunc((v - low) * factor) clamped to 0..levels-1, stored as
// its low byte. Any levels (also < 1 or > 256) gives the result of that rule, with the
// truncation taken as exact (huge values saturate, NaN counts as below 0).
void ScaleValues(const int* src, unsigned char* dst, std::size_t n, double low, double factor, int levels);

// The constants of LinearFit24Bit for one table and one pair of limits, so that an
// image pays for them once.
struct Fit24Plan {
    double low = 0.0;
    double factor = 1.0;
    double lastStep = 0.0;   // n - 1 as a double (exact: n < 2^53)
    std::uint32_t top = 0;   // highest lower entry of a span: 253 or 254
    bool black = true;       // null table
    // Per span q (entries q and q+1): the step per unit of remainder for blue, green and
    // red, and the lower entry packed as blue | green << 8 | red << 16. Separate rows per
    // channel so that a vector loop can gather them by span.
    double slope[3][256] = {};
    std::uint32_t base[256] = {};
    // The table's blue, green and red bytes by entry, 0..255, which a vector loop keeps
    // in registers and looks up by permutation.
    alignas(64) BYTE entries[3][256] = {};
    // Both ends of span q for one 64-bit gather: blue, green, red of entry q in bytes
    // 0..2 and of entry q + 1 in bytes 4..6. Spans above `top` repeat the top one, which
    // is the rule's clamp of the span, so that a loop indexing by the raw span needs none.
    alignas(64) std::uint64_t ends[256] = {};
};

// One channel of the interpolation in integers: a + trunc((b - a) / 4294967295.0 * r)
// in 8 bits, which equals a + floor(|b - a| * r / 4294967295) for a rising step and a
// minus that for a falling one, for all a, b and r < 4294967295. The vector loop rests
// on this identity; the tests hold it against the double expression.
BYTE Fit24ChannelExact(BYTE a, BYTE b, std::uint32_t r);

// The vector loop's short form of floor(d * r / 4294967295) for d 0..255 and r below
// 4294967295: (d * (r >> 8)) >> 24 in 32 bits. `certain` is false where the product's
// bits 8..23 are all set, the only case in which the short form may be one too low.
std::uint32_t Fit24StepShort(std::uint32_t d, std::uint32_t r, bool& certain);

// Fills `plan` for `table` (null: black), limits and the reserved-top choice.
void PrepareFit24(const RGBQUAD* table, double low, double high, bool reserveTop, Fit24Plan& plan);

// Writes blue, green, red of n values into dst (3n bytes), as LinearFit24Bit would.
void Fit24Values(const int* src, unsigned char* dst, std::size_t n, const Fit24Plan& plan);

// Whether the vector forms of the loops may be used where the processor has them
// (default true). Tests switch them off to check the plain forms on the same machine.
void UseVectorKernels(bool use);
// Whether the AVX-512 forms may be used (default true); off, the loops take their AVX2
// forms where the processor has them, so that tests reach those on one that has both.
void UseAvx512Kernels(bool use);

// Sets the listed positions below `count` to index 255 (8-bit pixels).
void MarkInvalid8(unsigned char* pixels, std::size_t count, const std::vector<int>& positions);
// Sets the listed positions below `count` to the colour's blue, green, red (24-bit pixels).
void MarkInvalid24(unsigned char* pixels, std::size_t count, const std::vector<int>& positions, RGBQUAD colour);

}  // namespace orlex::bitmap
