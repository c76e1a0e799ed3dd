// Curve: storage, limits, translations and statistics. The conditioning members
// (Convert, EqualSpace, Spline, Interpolate, Solve) live in CurveConditioning.cpp.
#include "plot/Curve.h"

#include <algorithm>
#include <cassert>
#include <cmath>

Curve::Curve()
{
    CurveData.reserve(100);
}

Curve::Curve(int n)
{
    if (n > 0)
        CurveData.reserve(size_t(n));
}

Curve::Curve(const Curve& other) = default;

Curve& Curve::operator=(const Curve& other)
{
    if (this == &other)
        return *this;
    MaxDomain = other.MaxDomain;
    MinDomain = other.MinDomain;
    MaxRange = other.MaxRange;
    MinRange = other.MinRange;
    CMinRange = other.CMinRange;
    CMaxRange = other.CMaxRange;
    XTranslation = other.XTranslation;
    YTranslation = other.YTranslation;
    Converted = other.Converted;
    Splined = other.Splined;
    OverRide = other.OverRide;
    if (other.Splined) {
        B = other.B;
        C = other.C;
        D = other.D;
    }
    CurveData = other.CurveData;
    if (other.Converted)
        ConvertedData = other.ConvertedData;
    // The POI list is the target's own and stays.
    return *this;
}

namespace {

inline bool inRange(int i, size_t n)
{
    return i >= 0 && size_t(i) < n;
}

} // namespace

float Curve::Getx(int i) const
{
    return inRange(i, CurveData.size()) ? CurveData[size_t(i)].first : 0.0f;
}

float Curve::Gety(int i) const
{
    return inRange(i, CurveData.size()) ? CurveData[size_t(i)].second + YTranslation : 0.0f;
}

float Curve::CGetx(int i) const
{
    return inRange(i, ConvertedData.size()) ? ConvertedData[size_t(i)].first : 0.0f;
}

float Curve::CGety(int i) const
{
    return inRange(i, ConvertedData.size()) ? ConvertedData[size_t(i)].second + YTranslation
                                             : 0.0f;
}

float Curve::GetPoi(int i) const
{
    return inRange(i, POIList.size()) ? float(POIList[size_t(i)]) : 0.0f;
}

int Curve::AddPoint(float x, float y)
{
    if (CurveData.empty() && !OverRide) {
        MaxDomain = MinDomain = x;
        MaxRange = MinRange = y;
    } else {
        if (x > MaxDomain) MaxDomain = x;
        if (x < MinDomain) MinDomain = x;
        if (y > MaxRange) MaxRange = y;
        if (y < MinRange) MinRange = y;
    }
    CurveData.emplace_back(x, y);
    return int(CurveData.size());
}

namespace {

// Replaces one coordinate (x or y, chosen by Member) and keeps that axis's limits. Only
// when the extreme itself moves inward is the whole curve scanned for the new extreme.
template <float Curve::Point::*Member>
int setCoordinate(std::vector<Curve::Point>& data, int i, float v, float& lo, float& hi)
{
    if (i < 0 || size_t(i) >= data.size())
        return 0;
    float& slot = data[size_t(i)].*Member;
    const float old = slot;
    slot = v;
    if (old == lo) {
        if (v <= lo) {
            lo = v;
            return 1;
        }
        if (v > hi) hi = v;
        float m = data.front().*Member;
        for (const Curve::Point& p : data)
            m = std::min(m, p.*Member);
        lo = m;
    } else if (old == hi) {
        if (v >= hi) {
            hi = v;
            return 1;
        }
        if (v < lo) lo = v;
        float m = data.front().*Member;
        for (const Curve::Point& p : data)
            m = std::max(m, p.*Member);
        hi = m;
    } else {
        if (v > hi) hi = v;
        if (v < lo) lo = v;
    }
    return 1;
}

} // namespace

int Curve::Setx(int i, float x)
{
    return setCoordinate<&Point::first>(CurveData, i, x, MinDomain, MaxDomain);
}

int Curve::Sety(int i, float y)
{
    return setCoordinate<&Point::second>(CurveData, i, y, MinRange, MaxRange);
}

void Curve::Clear()
{
    POIList.clear();
    B.clear();
    C.clear();
    D.clear();
    CurveData.clear();
    ConvertedData.clear();
}

void Curve::SetXTranslation(float t)
{
    if (t == XTranslation)
        return;
    // Switching on adds t; switching off (t == 0) takes the old translation away.
    const float d = t == 0.0f ? -XTranslation : t;
    MinDomain += d;
    MaxDomain += d;
    float lo = MinDomain;
    float hi = MaxDomain;
    for (Point& p : CurveData) {
        p.first += d;
        if (p.first > hi) hi = p.first;
        if (p.first < lo) lo = p.first;
    }
    MinDomain = lo;
    MaxDomain = hi;
    XTranslation = t;
}

void Curve::AddOffset(double offset)
{
    const float off = float(offset);
    for (Point& p : CurveData)
        p.second += off;
    MaxRange += off;
    MinRange += off;
    if (Converted) {
        for (Point& p : ConvertedData)
            p.second += off;
        CMinRange += off;
        CMaxRange += off;
    }
}

void Curve::Sort()
{
    std::sort(CurveData.begin(), CurveData.end());
}

namespace {

void flipY(std::vector<Curve::Point>& data)
{
    const size_t n = data.size();
    for (size_t i = 0; i < n / 2; ++i)
        std::swap(data[i].second, data[n - 1 - i].second);
}

} // namespace

void Curve::Flip()
{
    flipY(CurveData);
    flipY(ConvertedData);
}

void Curve::ValidateLimits()
{
    constexpr float kOpen = 1e-14f;
    if (MaxRange == MinRange) {
        MaxRange += kOpen;
        MinRange -= kOpen;
    }
    if (MaxDomain == MinDomain) {
        MaxDomain += kOpen;
        MinDomain -= kOpen;
    }
}

double Curve::ComputeMean() const
{
    const std::vector<Point>& data = Converted ? ConvertedData : CurveData;
    const size_t n = data.size();
    if (n == 0)
        return 0.0;
    const float t = YTranslation;
    const Point* p = data.data();
    const Point* const end = p + n;
    // One accumulator in index order: the sum must not depend on how the loop is built.
    double sum = 0.0;
    for (; p != end; ++p)
        sum += double(p->second + t);
    return sum / double(n);
}

double Curve::ComputeMedian() const
{
    const std::vector<Point>& data = Converted ? ConvertedData : CurveData;
    const size_t n = data.size();
    if (n == 0)
        return 0.0;
    const float t = YTranslation;
    std::vector<double> terms(n);
    for (size_t i = 0; i < n; ++i)
        terms[i] = double(data[i].second + t);
    // Selection instead of a full sort: the same middle terms in linear time.
    const size_t mid = n / 2;
    std::nth_element(terms.begin(), terms.begin() + std::ptrdiff_t(mid), terms.end());
    const double upper = terms[mid];
    if (n % 2 == 1)
        return upper;
    const double lower = *std::max_element(terms.begin(), terms.begin() + std::ptrdiff_t(mid));
    return (lower + upper) * 0.5;
}

int Curve::GetNumPts(float xFrom, float xTo) const
{
    if (xTo - xFrom <= 0.0f)
        return 0;
    const int n = int(CurveData.size());
    const Point* d = CurveData.data();
    int i0 = -1;
    for (int i = 0; i + 1 < n; ++i) {
        if (d[i].first <= xFrom && xFrom <= d[i + 1].first) {
            i0 = i;
            break;
        }
    }
    if (i0 < 0)
        return 0;
    assert(i0 + 1 < n);
    int i1 = n - 1;
    for (int i = i0; i + 1 < n; ++i) {
        if (d[i].first <= xTo && xTo <= d[i + 1].first) {
            i1 = i;
            break;
        }
    }
    return i1 - i0;
}

FINDPOINT Curve::FindPoint(double x, int useConverted) const
{
    FINDPOINT r;
    r.found = 0;
    // The direction is judged on the stored points, also when the converted ones are searched.
    const bool rising = !CurveData.empty() && CurveData.back().first > CurveData.front().first;
    if (x > double(MaxDomain) || x < double(MinDomain))
        return r;
    const std::vector<Point>& a = useConverted ? ConvertedData : CurveData;
    if (a.empty())
        return r;
    int lo = 0;
    int hi = int(a.size()) - 1;
    while (hi - lo >= 2) {
        const int mid = (lo + hi) / 2;
        const double xm = a[size_t(mid)].first;
        if (xm == x) {
            r.found = 1;
            r.index = mid;
            r.y = double(a[size_t(mid)].second + YTranslation);
            return r;
        }
        if ((xm > x) == rising)
            hi = mid;
        else
            lo = mid;
    }
    assert(lo >= 0 && lo <= hi && size_t(hi) < a.size());
    const double dHi = std::fabs(double(a[size_t(hi)].first) - x);
    const double dLo = std::fabs(double(a[size_t(lo)].first) - x);
    const int i = dHi > dLo ? lo : hi; // a tie takes the higher index
    r.found = 1;
    r.index = i;
    r.y = double(a[size_t(i)].second) + double(YTranslation);
    return r;
}
