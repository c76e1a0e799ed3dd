// Curve conditioning: the reduction of a long curve to evenly spaced display points
// (Convert, EqualSpace) and the cubic spline through a curve (Spline, Interpolate, Solve).
// Convert runs once per new data on curves of tens of millions of points, so each rule is
// one forward walk by pointer over the points with its bin edge computed once per bin.
#include "plot/Curve.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

int Curve::s_interpolateInterval = 0;

namespace {

using Point = Curve::Point;

enum ReduceType : unsigned int {
    kSpline = 2,
    kMaximum = 4,
    kMinimum = 8,
    kMean = 16,
    kMedian = 32,
};

constexpr unsigned int kWholeCurve = 1;
constexpr unsigned int kTypeBits = 0xFE; // bits 1 to 7

// The frame of the bins: output i stands at i * step + xFrom and its bin ends at
// i * step + (half + xFrom), all in float and in this order, so that the edges are the
// same numbers whichever rule walks them.
struct BinFrame {
    float xFrom;
    float step;
    float halfFrom; // half + xFrom, added last
    int numPts;

    float Edge(int i) const { return static_cast<float>(i) * step + halfFrom; }
    float OutX(int i) const { return static_cast<float>(i) * step + xFrom; }
};

// A walk over the stored points from a start point to the end. Bins take the points
// whose x lies below their edge; where an edge passes the last x (only by float rounding
// on rising data, or on data that fold back) the walk is bounded by the end instead of a
// test per point in the hot loop.
struct Walk {
    const Point *p;
    const Point *end;
    float lastX;
    float lastY;

    // Advances past the points below edge, calling take(y) for each.
    template <class Take>
    void Bin(float edge, Take &&take)
    {
        if (p == end || edge > lastX) {
            while (p < end && edge > p->first) {
                take(p->second);
                ++p;
            }
        } else {
            // The last point is not below the edge and stops the walk.
            while (edge > p->first) {
                take(p->second);
                ++p;
            }
        }
    }

    // The y of the next, unconsumed point; the last y once the walk is at the end.
    float NextY() const { return p < end ? p->second : lastY; }
};

// Maximum (Greater = true) or minimum of each bin: a bin without points takes the y of
// the next point without consuming it; the last output takes every remaining point.
template <bool Greater>
void ReduceExtreme(Walk w, BinFrame const &f, std::vector<Point> &out)
{
    Point *o = out.data();
    for (int i = 0; i < f.numPts - 1; ++i) {
        float m = w.NextY();
        w.Bin(f.Edge(i), [&m](float y) {
            if (Greater ? (y > m) : (y < m))
                m = y;
        });
        o[i] = Point(f.OutX(i), m);
    }
    float m = w.NextY();
    for (const Point *q = w.p; q < w.end; ++q) {
        const float y = q->second;
        if (Greater ? (y > m) : (y < m))
            m = y;
    }
    o[f.numPts - 1] = Point(f.OutX(f.numPts - 1), m);
}

// Mean of each bin, summed in double in index order; the last output is the mean of all
// remaining points. A bin without points shows the y of the next point, as the extreme
// rules do. Returns the converted y limits through lo and hi.
void ReduceMean(Walk w, BinFrame const &f, std::vector<Point> &out, float &lo, float &hi)
{
    Point *o = out.data();
    for (int i = 0; i < f.numPts - 1; ++i) {
        double sum = 0.0;
        const Point *start = w.p;
        w.Bin(f.Edge(i), [&sum](float y) { sum += y; });
        const std::ptrdiff_t count = w.p - start;
        const float v = count > 0 ? static_cast<float>(sum / static_cast<double>(count)) : w.NextY();
        if (i == 0) {
            lo = hi = v;
        } else if (v > hi) {
            hi = v;
        } else if (v < lo) {
            lo = v;
        }
        o[i] = Point(f.OutX(i), v);
    }
    double sum = 0.0;
    for (const Point *q = w.p; q < w.end; ++q)
        sum += q->second;
    const std::ptrdiff_t count = w.end - w.p;
    const float v = count > 0 ? static_cast<float>(sum / static_cast<double>(count)) : w.lastY;
    if (v > hi)
        hi = v;
    if (v < lo)
        lo = v;
    o[f.numPts - 1] = Point(f.OutX(f.numPts - 1), v);
}

// Floats as unsigned keys of the same order (negatives below positives, -0 just below
// +0, NaNs at the two ends): selection on integers is faster and stays a strict order
// whatever the data hold.
inline std::uint32_t OrderKey(float y)
{
    std::uint32_t b;
    std::memcpy(&b, &y, sizeof b);
    // Without a branch: noisy data change sign at random.
    const std::uint32_t negative = static_cast<std::uint32_t>(static_cast<std::int32_t>(b) >> 31);
    return b ^ (negative | 0x80000000u);
}

inline float KeyValue(std::uint32_t k)
{
    const std::uint32_t b = (k & 0x80000000u) ? (k & 0x7FFFFFFFu) : ~k;
    float y;
    std::memcpy(&y, &b, sizeof y);
    return y;
}

// Selects the terms of rank lo and hi (lo <= hi, consecutive or equal) of keys[0..n):
// the middle terms of a median. Small sets go straight to nth_element. Larger ones are
// narrowed first: one counting pass over buckets spread across the actual range of the
// keys finds the buckets of the two ranks, and only the keys in those buckets (a handful
// for spread data) are selected among. Exact whatever the distribution; clustered data
// only leave more candidates. Reorders the keys.
class MiddleSelector {
public:
    void Select(std::uint32_t *keys, std::size_t n, std::uint32_t minKey, std::uint32_t maxKey,
                std::size_t lo, std::size_t hi, std::uint32_t &loKey, std::uint32_t &hiKey)
    {
        assert(n > 0 && lo <= hi && hi < n);
        if (n < kSmall || minKey == maxKey) {
            SelectDirect(keys, n, lo, hi, loKey, hiKey);
            return;
        }
        // Buckets: a power of two near n / 4, so that clearing them costs little beside
        // the counting pass.
        int bucketBits = 4;
        while (bucketBits < kMaxBucketBits && (std::size_t(1) << (bucketBits + 2)) < n)
            ++bucketBits;
        const std::uint32_t range = maxKey - minKey;
        int rangeBits = 0;
        while (rangeBits < 32 && (range >> rangeBits) != 0)
            ++rangeBits;
        const int shift = rangeBits > bucketBits ? rangeBits - bucketBits : 0;
        const std::size_t buckets = std::size_t((range >> shift) + 1);

        m_count.assign(buckets, 0);
        std::uint32_t *count = m_count.data();
        for (std::size_t i = 0; i < n; ++i)
            ++count[(keys[i] - minKey) >> shift];

        // Buckets holding ranks lo and hi, and how many keys lie below the first.
        std::size_t below = 0, b = 0;
        while (below + count[b] <= lo)
            below += count[b++];
        const std::size_t bLo = b;
        std::size_t upTo = below;
        while (upTo + count[b] <= hi)
            upTo += count[b++];
        const std::size_t bHi = b;

        // The candidates are packed to the front in place (never ahead of the key being
        // read), every key written and the end advanced only for a candidate: no branch
        // on the data.
        const std::uint32_t first = std::uint32_t(bLo), span = std::uint32_t(bHi - bLo);
        std::size_t taken = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const std::uint32_t key = keys[i];
            keys[taken] = key;
            taken += (((key - minKey) >> shift) - first <= span); // first <= bucket <= first + span
        }
        SelectDirect(keys, taken, lo - below, hi - below, loKey, hiKey);
    }

private:
    static constexpr std::size_t kSmall = 64;
    static constexpr int kMaxBucketBits = 12;

    static void SelectDirect(std::uint32_t *keys, std::size_t n, std::size_t lo, std::size_t hi,
                             std::uint32_t &loKey, std::uint32_t &hiKey)
    {
        std::nth_element(keys, keys + hi, keys + n);
        hiKey = keys[hi];
        // Everything before position hi is not above it: rank lo (= hi or hi - 1) is the
        // largest of those when it differs from hi.
        loKey = lo == hi ? hiKey : *std::max_element(keys, keys + hi);
    }

    std::vector<std::uint32_t> m_count;
};

// Median of each bin, the last bin included (it ends at its edge or at the end of the
// data): the middle term of the sorted values, or the mean of the two middle terms in
// double, narrowed to float. A bin without points shows the y of the next point.
void ReduceMedian(Walk w, BinFrame const &f, std::vector<Point> &out)
{
    Point *o = out.data();
    std::vector<std::uint32_t> keys;
    MiddleSelector selector;
    for (int i = 0; i < f.numPts; ++i) {
        const Point *start = w.p;
        w.Bin(f.Edge(i), [](float) {});
        const std::size_t count = static_cast<std::size_t>(w.p - start);
        float v;
        if (count == 0) {
            v = w.NextY();
        } else {
            if (keys.size() < count)
                keys.resize(count);
            std::uint32_t *k = keys.data();
            std::uint32_t minKey = 0xFFFFFFFFu, maxKey = 0;
            for (const Point *q = start; q < w.p; ++q) {
                const std::uint32_t key = OrderKey(q->second);
                *k++ = key;
                minKey = std::min(minKey, key);
                maxKey = std::max(maxKey, key);
            }
            const std::size_t hi = count / 2;
            const std::size_t lo = (count & 1) ? hi : hi - 1;
            std::uint32_t loKey, hiKey;
            selector.Select(keys.data(), count, minKey, maxKey, lo, hi, loKey, hiKey);
            const float upper = KeyValue(hiKey);
            v = lo == hi ? upper
                         : static_cast<float>((static_cast<double>(KeyValue(loKey)) + static_cast<double>(upper)) * 0.5);
        }
        o[i] = Point(f.OutX(i), v);
    }
}

} // namespace

int Curve::Convert(float xFrom, float xTo, int numPts, unsigned int flags)
{
    const int n = GetNumPts();
    if (flags & kWholeCurve) {
        xFrom = Getx(0);
        xTo = Getx(n - 1);
    }
    if (Getx(0) > xFrom || xTo > Getx(n - 1))
        return 0;
    if (numPts < 2)
        return 0; // one point has no spacing; nothing is made

    ConvertedData.clear();
    ConvertedData.reserve(static_cast<std::size_t>(numPts));

    const float span = xTo - xFrom;
    if (!(span > 0.0f)) { // also refuses a span that is not a number
        Converted = 0;
        return 0;
    }
    const unsigned int type = flags & kTypeBits;
    if (type != kSpline && type != kMaximum && type != kMinimum && type != kMean && type != kMedian)
        return 0;

    const float step = span / static_cast<float>(numPts - 1);
    const float half = step * 0.5f;
    const BinFrame frame{xFrom, step, half + xFrom, numPts};

    if (type == kSpline) {
        CRESULT r = Interpolate(xFrom, 1);
        CMinRange = CMaxRange = r.value;
        ConvertedData.emplace_back(xFrom, r.value);
        for (int i = 1; i < numPts; ++i) {
            const float x = frame.OutX(i);
            r = Interpolate(x, 0);
            if (r.value > CMaxRange)
                CMaxRange = r.value;
            if (r.value < CMinRange)
                CMinRange = r.value;
            ConvertedData.emplace_back(x, r.value);
        }
        Converted = 1;
        return numPts;
    }

    // The walk starts at the first point at or after xFrom (not a bisection: the rule
    // is the first such point, also where x folds back).
    assert(n > 0); // an empty curve has no span and never gets here
    const Point *begin = CurveData.data();
    const Point *end = begin + n;
    const Point *p = begin;
    while (p < end && !(p->first >= xFrom))
        ++p;
    const Walk walk{p, end, end[-1].first, end[-1].second};

    ConvertedData.resize(static_cast<std::size_t>(numPts));
    switch (type) {
    case kMaximum:
        ReduceExtreme<true>(walk, frame, ConvertedData);
        break;
    case kMinimum:
        ReduceExtreme<false>(walk, frame, ConvertedData);
        break;
    case kMean:
        ReduceMean(walk, frame, ConvertedData, CMinRange, CMaxRange);
        break;
    default:
        ReduceMedian(walk, frame, ConvertedData);
        break;
    }
    Converted = 1;
    return numPts;
}

void Curve::EqualSpace(int numPts, float xMax, hitStyle style)
{
    const int n = GetNumPts();
    if (xMax <= 0.0f)
        xMax = Getx(n - 1);
    ConvertedData.resize(static_cast<std::size_t>(std::max(numPts, 0)));
    float hi = n > 0 ? CurveData[0].second : 0.0f;
    float lo = hi;
    const float step = xMax / static_cast<float>(numPts);
    float x = step * 0.5f;
    if (numPts < 1)
        return;

    const Point *pts = CurveData.data();
    for (int i = 0; i < numPts; ++i) {
        bool hit = false;
        // Every interval is looked at: where x folds back, several cover the same x.
        for (int j = 0; j + 1 < n; ++j) {
            const float x0 = pts[j].first, x1 = pts[j + 1].first;
            if (!(x0 <= x && x <= x1))
                continue;
            const float y0 = pts[j].second, y1 = pts[j + 1].second;
            const float s = (y0 - y1) / (x0 - x1);
            const float v = y0 - x0 * s + x * s;
            if (!hit) {
                hi = lo = v;
                hit = true;
            } else if (v > hi) {
                hi = v;
            } else if (v < lo) {
                lo = v;
            }
        }
        ConvertedData[static_cast<std::size_t>(i)] = Point(x, style != 0 ? lo : hi);
        x += step;
    }
}

void Curve::Spline()
{
    const int n = GetNumPts();
    if (n < 3)
        return; // no spline through fewer than three points: Splined stays as it is
    const std::size_t m = static_cast<std::size_t>(n - 1);
    // New entries are 0.0; a first spline (or one for a new number of points) thus has
    // B = D = 0 on the last interval, which the sweep below does not reach.
    if (B.size() != m || C.size() != m || D.size() != m) {
        B.assign(m, 0.0);
        C.assign(m, 0.0);
        D.assign(m, 0.0);
    }
    const Point *pt = CurveData.data();
    // Interval widths as float differences, widened; recomputed where needed rather than
    // kept, as are alpha and l of the sweep: a spline of ten million points then needs no
    // memory beyond its coefficients.
    auto h = [pt](int i) { return static_cast<double>(pt[i + 1].first - pt[i].first); };
    // mu and z of the forward sweep wait in D and B until the back substitution replaces
    // them; the last interval's B and D are not touched.
    double *z = B.data();
    double *mu = D.data();
    mu[0] = 0.0; // l[0] = 1
    z[0] = 0.0;
    // The natural end sits at index n - 2, the last interval's left end: l, z and C are
    // 1, 0 and 0 there, so the sweep stops before it and the spline is the natural one
    // through the points up to n - 2, constant over the last interval.
    for (int i = 1; i <= n - 3; ++i) {
        const double h0 = h(i - 1), h1 = h(i);
        const float yMid = pt[i].second * (pt[i + 1].first - pt[i - 1].first);
        const double alpha = 3.0 * (pt[i + 1].second * h0 - static_cast<double>(yMid) + pt[i - 1].second * h1) / (h0 * h1);
        const double l = 2.0 * static_cast<double>(pt[i + 1].first - pt[i - 1].first) - h0 * mu[i - 1];
        mu[i] = h1 / l;
        z[i] = (alpha - h0 * z[i - 1]) / l;
    }
    C[n - 2] = 0.0;
    for (int j = n - 3; j >= 0; --j) {
        const double hj = h(j);
        C[j] = z[j] - mu[j] * C[j + 1];
        B[j] = static_cast<double>(pt[j + 1].second - pt[j].second) / hj - (2.0 * C[j] + C[j + 1]) * hj / 3.0;
        D[j] = (C[j + 1] - C[j]) / (3.0 * hj);
    }
    Splined = 1;
}

namespace {

// Splined, and the coefficients still fit the number of points (points added or removed
// since the last spline leave Splined set with arrays of the wrong size).
bool SplineFits(Curve const &c)
{
    const std::size_t n = c.CurveData.size();
    return c.Splined && n >= 3 && c.B.size() == n - 1 && c.C.size() == n - 1 && c.D.size() == n - 1;
}

// Value of interval i at x.
float SplineValue(Curve const &c, int i, float x)
{
    const double d = static_cast<double>(x - c.CurveData[i].first);
    return static_cast<float>((c.C[i] * std::pow(d, 2)) + (d * c.B[i] + c.CurveData[i].second) +
                              c.D[i] * std::pow(d, 3));
}

} // namespace

CRESULT Curve::Interpolate(float x)
{
    CRESULT r;
    if (!SplineFits(*this))
        Spline();
    if (x < MinDomain || x > MaxDomain || !SplineFits(*this))
        return r;
    const Point *pt = CurveData.data();
    const int last = GetNumPts() - 1;
    for (int i = 0; i < last; ++i) {
        if (pt[i].first <= x && x <= pt[i + 1].first) {
            r.valid = 1;
            r.value = SplineValue(*this, i, x);
            return r;
        }
    }
    return r;
}

CRESULT Curve::Interpolate(float x, int reset)
{
    CRESULT r;
    if (reset)
        s_interpolateInterval = 0;
    if (!SplineFits(*this))
        Spline();
    if (x < MinDomain || x > MaxDomain || !SplineFits(*this))
        return r;
    const Point *pt = CurveData.data();
    const int last = GetNumPts() - 1;
    // The interval only moves forward; one left by another curve may lie past this one.
    int i = std::max(s_interpolateInterval, 0);
    while (i < last && !(pt[i].first <= x && x <= pt[i + 1].first))
        ++i;
    s_interpolateInterval = i;
    if (i >= last)
        return r;
    r.valid = 1;
    r.value = SplineValue(*this, i, x);
    return r;
}

CRESULT Curve::Solve(int interval, double y, double tolerance, int maxIterations)
{
    CRESULT r;
    if (!SplineFits(*this))
        Spline();
    if (!SplineFits(*this) || interval < 0 || interval > GetNumPts() - 2)
        return r;
    const double x0 = CurveData[interval].first;
    const double y0 = CurveData[interval].second;
    const double b = B[interval], c = C[interval], d = D[interval];
    const int limit = maxIterations != 0 ? maxIterations : 10;

    double xk = x0;
    for (int iteration = 1;; ++iteration) {
        const double t = xk - x0;
        const double g = 3.0 * d * t * t + (2.0 * c * t + b);
        if (iteration > limit || g == 0.0)
            break;
        const double next = xk - (d * t * t * t + (y0 - y + b * t + c * t * t)) / g;
        if (std::fabs(next - xk) <= tolerance) {
            r.valid = 1;
            r.value = static_cast<float>(next);
            return r;
        }
        xk = next;
    }
    r.value = static_cast<float>(xk); // the last x reached
    return r;
}
