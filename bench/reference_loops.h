// The reference loops that benchmarks of several programs measure themselves against, so
// that every ratio is taken against the same work.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "plot/Curve.h"

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

// The long curve of the reduction benchmarks, built once per size: x rising by 1 (exact in
// float up to 2^24), y a saw of period 5000 points with noise.
inline Curve& LongCurve(int n)
{
    static int builtFor = -1;
    static Curve curve;
    if (builtFor != n) {
        curve = Curve(n);
        std::uint32_t s = 12345u;
        for (int i = 0; i < n; ++i) {
            s = s * 1664525u + 1013904223u;
            const float noise = static_cast<float>(s >> 8) * (1.0f / 16777216.0f) - 0.5f;
            curve.AddPoint(static_cast<float>(i), static_cast<float>(i % 5000) * 0.001f + noise);
        }
        builtFor = n;
    }
    return curve;
}

// The least a reduction of n points to `bins` display points must do: one pass that sums
// y per bin, the bins cut by index into equal counts. `ends` holds the bins' end indexes
// (from BinEnds), `sums` receives the sums.
inline std::vector<std::size_t> BinEnds(std::size_t n, int bins)
{
    std::vector<std::size_t> ends(static_cast<std::size_t>(bins));
    for (int b = 0; b < bins; ++b)
        ends[static_cast<std::size_t>(b)] = (static_cast<std::size_t>(b) + 1) * n / static_cast<std::size_t>(bins);
    return ends;
}

inline void SumBins(const Curve::Point* pts, const std::vector<std::size_t>& ends, double* sums)
{
    const Curve::Point* p = pts;
    for (std::size_t b = 0; b < ends.size(); ++b) {
        const Curve::Point* e = pts + ends[b];
        double sum = 0.0;
        for (; p < e; ++p)
            sum += p->second;
        sums[b] = sum;
    }
}

// The reference pass over LongCurve(n) into `bins` sums, ready to be run in a timing loop.
struct CurveBinPass {
    const Curve& curve;
    std::vector<std::size_t> ends;
    std::vector<double> sums;
    CurveBinPass(int n, int bins)
        : curve(LongCurve(n)), ends(BinEnds(curve.CurveData.size(), bins)), sums(static_cast<std::size_t>(bins)) {}
    const double* Run() {
        SumBins(curve.CurveData.data(), ends, sums.data());
        return sums.data();
    }
};

}  // namespace orlex::bench
