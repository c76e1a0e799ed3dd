#include "colour/ColorAdjust.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "colour/ColorTable.h"
#include "foundation/platform/afxapp.h"

// Entries are handled as words in places: blue in the low byte, reserved in the high one.
static_assert(std::endian::native == std::endian::little);

namespace orlex::colour {

const double kContrastFactors[21] = {0.1, 0.16, 0.21, 0.27, 0.34, 0.42, 0.52, 0.62, 0.73, 0.85, 1.0,
                                     1.14, 1.3, 1.44, 1.6, 1.79, 2.0, 2.24, 2.5, 2.74, 3.0};

double ContrastFactor(int contrast)
{
    return kContrastFactors[std::clamp(contrast, kMinContrast, kMaxContrast) - kMinContrast];
}

namespace {

// One channel step of the stretch: the 16-bit product and arithmetic shift keep the
// table's own rounding (toward minus infinity for a falling channel).
inline BYTE Blend(BYTE lo, BYTE hi, int w)
{
    const auto prod = static_cast<std::int16_t>((int(hi) - int(lo)) * w);
    return static_cast<BYTE>(int(lo) + (prod >> 7));
}

inline void CopyColour(tagRGBQUAD& dst, const tagRGBQUAD& src)
{
    dst.rgbBlue = src.rgbBlue;
    dst.rgbGreen = src.rgbGreen;
    dst.rgbRed = src.rgbRed;
}

// Output entries o+1 .. endOut-1 from source s, starting at input i, advancing `step`
// 128ths of an entry per output entry; the input index never passes kLimit. The input
// index is the first k with (k - i) * 128 >= acc, the point the stepwise search of the
// table's method stops at, so it is computed directly and the loop has no search branch.
void Interpolate(const tagRGBQUAD* s, tagRGBQUAD* out, int o, int endOut, int i, int step, int kLimit)
{
    int acc = step;
    for (int e = o + 1; e < endOut; ++e, acc += step) {
        const int k = std::min(i + ((acc + 127) >> 7), kLimit);
        const int w = std::min(acc - (k - i - 1) * 128, 128);
        assert(k >= 1 && w >= 1);
        const tagRGBQUAD& a = s[k - 1];
        const tagRGBQUAD& b = s[k];
        out[e].rgbRed = Blend(a.rgbRed, b.rgbRed, w);
        out[e].rgbGreen = Blend(a.rgbGreen, b.rgbGreen, w);
        out[e].rgbBlue = Blend(a.rgbBlue, b.rgbBlue, w);
    }
}

// An even span taken as 16 bits, as the stretch's integer arithmetic holds it.
inline int EvenSpan(int length, double f)
{
    return static_cast<int>(static_cast<std::uint16_t>(static_cast<int>(length / f) & ~1));
}

}  // namespace

void StretchTable(tagRGBQUAD* table, int n, int contrast)
{
    if (contrast == 0 || table == nullptr || n < 2 || n > kWorkingEntries) return;
    const double f = ContrastFactor(contrast);
    tagRGBQUAD s[kWorkingEntries];
    std::memcpy(s, table, sizeof(tagRGBQUAD) * n);
    int span, o, i;
    if (f > 1.0) {
        span = EvenSpan(n, f);
        o = (n - span) / 2;
        i = 0;
    } else {
        span = n;
        o = 0;
        i = static_cast<int>((n / 2) * (1.0 - f));
    }
    for (int e = 0; e <= o; ++e) CopyColour(table[e], s[i]);
    const int end = span + o;
    Interpolate(s, table, o, end, i, static_cast<int>(f * 128.0), n - 1);
    for (int e = end; e < n; ++e) CopyColour(table[e], s[n - 1]);
}

namespace {

// The whole-table stretch at one contrast step as per-entry steps: output entry j is
// s[k-1] + ((s[k] - s[k-1]) * w >> 7) per channel with k = lower[j] + 1. Before the
// stretched part the step names s[i] exactly, after it s[n-1]. The weight is kept four
// times over (one 16-bit lane per byte of an entry) for the vector blend.
struct Taps {
    std::uint8_t lower[kWorkingEntries];
    std::uint16_t w4[kWorkingEntries][4];
};

void SetTap(Taps& t, int j, int k, int w)
{
    t.lower[j] = static_cast<std::uint8_t>(k - 1);
    for (std::uint16_t& x : t.w4[j]) x = static_cast<std::uint16_t>(w);
}

// The steps of StretchTable on 256 entries, walked the same way.
void BuildTaps(int contrast, Taps& taps)
{
    constexpr int n = kWorkingEntries;
    if (contrast == 0) {
        SetTap(taps, 0, 1, 0);
        for (int e = 1; e < n; ++e) SetTap(taps, e, e, 128);
        return;
    }
    const double f = ContrastFactor(contrast);
    int span, o, i;
    if (f > 1.0) {
        span = EvenSpan(n, f);
        o = (n - span) / 2;
        i = 0;
    } else {
        span = n;
        o = 0;
        i = static_cast<int>((n / 2) * (1.0 - f));
    }
    for (int e = 0; e <= o; ++e) {
        if (i >= 1)
            SetTap(taps, e, i, 128);
        else
            SetTap(taps, e, 1, 0);
    }
    const int end = span + o;
    const int step = static_cast<int>(f * 128.0);
    int acc = step;
    for (int e = o + 1; e < end; ++e, acc += step) {
        const int k = std::min(i + ((acc + 127) >> 7), n - 1);
        SetTap(taps, e, k, std::min(acc - (k - i - 1) * 128, 128));
    }
    for (int e = end; e < n; ++e) SetTap(taps, e, n - 1, 128);
}

const Taps& TapsOf(int contrast)
{
    static const std::unique_ptr<Taps[]> all = [] {
        auto t = std::make_unique<Taps[]>(21);
        for (int c = kMinContrast; c <= kMaxContrast; ++c) BuildTaps(c, t[c - kMinContrast]);
        return t;
    }();
    return all[std::clamp(contrast, kMinContrast, kMaxContrast) - kMinContrast];
}

// One entry by the taps: colours from src, reserved byte kept from `keep`.
inline std::uint32_t BlendWord(const std::uint32_t* src, const Taps& taps, int j, std::uint32_t keep)
{
    const unsigned k0 = taps.lower[j];
    const int w = taps.w4[j][0];
    tagRGBQUAD a, b;
    std::memcpy(&a, &src[k0], 4);
    std::memcpy(&b, &src[k0 + 1], 4);
    const std::uint32_t colour = std::uint32_t(Blend(a.rgbBlue, b.rgbBlue, w)) |
                                 std::uint32_t(Blend(a.rgbGreen, b.rgbGreen, w)) << 8 |
                                 std::uint32_t(Blend(a.rgbRed, b.rgbRed, w)) << 16;
    return (keep & 0xFF000000u) | colour;
}

}  // namespace

void StretchAndShiftTable(tagRGBQUAD* table, int contrast, int offset)
{
    if (table == nullptr || (contrast == 0 && offset == 0)) return;
    constexpr int n = kWorkingEntries;
    // src holds the table as it came, with one spare word so that a pair read at the
    // last entry stays inside it.
    std::uint32_t src[n + 1];
    std::memcpy(src, table, n * sizeof(std::uint32_t));
    src[n] = 0;
    std::uint32_t out[n];
    const Taps& taps = TapsOf(contrast);
    const int shift = std::clamp(offset, -n, n);
    // The offset makes entry e the stretched entry e + shift, held at the ends; between
    // the held runs the taps are read in order.
    const int first = std::clamp(-shift, 0, n);     // entries below take stretched entry 0
    const int last = std::clamp(n - shift, 0, n);   // entries from here take entry n-1
    for (int e = 0; e < first; ++e) out[e] = BlendWord(src, taps, 0, src[e]);
    int e = first;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i keepMask = _mm_set1_epi32(static_cast<int>(0xFF000000u));
    for (; e + 4 <= last; e += 4) {
        const int j = e + shift;
        // Each step reads a neighbouring pair s[k-1], s[k] as one 64-bit load.
        std::uint64_t p0, p1, p2, p3;
        std::memcpy(&p0, &src[taps.lower[j]], 8);
        std::memcpy(&p1, &src[taps.lower[j + 1]], 8);
        std::memcpy(&p2, &src[taps.lower[j + 2]], 8);
        std::memcpy(&p3, &src[taps.lower[j + 3]], 8);
        const __m128i pair01 = _mm_set_epi64x(static_cast<long long>(p1), static_cast<long long>(p0));
        const __m128i pair23 = _mm_set_epi64x(static_cast<long long>(p3), static_cast<long long>(p2));
        // 16-bit lanes: [lo0 | hi0] and [lo1 | hi1], then regrouped as lows and highs.
        const __m128i e0 = _mm_unpacklo_epi8(pair01, zero), e1 = _mm_unpackhi_epi8(pair01, zero);
        const __m128i e2 = _mm_unpacklo_epi8(pair23, zero), e3 = _mm_unpackhi_epi8(pair23, zero);
        const __m128i lo01 = _mm_unpacklo_epi64(e0, e1), hi01 = _mm_unpackhi_epi64(e0, e1);
        const __m128i lo23 = _mm_unpacklo_epi64(e2, e3), hi23 = _mm_unpackhi_epi64(e2, e3);
        const __m128i w01 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(taps.w4[j]));
        const __m128i w23 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(taps.w4[j + 2]));
        // The 16-bit product and arithmetic shift of the table's method, lane by lane.
        const __m128i r01 = _mm_add_epi16(lo01, _mm_srai_epi16(_mm_mullo_epi16(_mm_sub_epi16(hi01, lo01), w01), 7));
        const __m128i r23 = _mm_add_epi16(lo23, _mm_srai_epi16(_mm_mullo_epi16(_mm_sub_epi16(hi23, lo23), w23), 7));
        const __m128i colours = _mm_andnot_si128(keepMask, _mm_packus_epi16(r01, r23));
        const __m128i kept = _mm_and_si128(keepMask, _mm_loadu_si128(reinterpret_cast<const __m128i*>(&src[e])));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(&out[e]), _mm_or_si128(colours, kept));
    }
#endif
    for (; e < last; ++e) out[e] = BlendWord(src, taps, e + shift, src[e]);
    for (e = std::max(last, first); e < n; ++e) out[e] = BlendWord(src, taps, n - 1, src[e]);
    std::memcpy(table, out, sizeof out);
}

void StretchSegment(tagRGBQUAD* table, int contrast, int start, int end)
{
    if (contrast == 0 || table == nullptr) return;
    start = std::clamp(start, 0, kWorkingEntries - 1);
    end = std::clamp(end, 0, kWorkingEntries - 1);
    const int length = end - start;
    if (length < 1) return;
    const double f = ContrastFactor(contrast);
    tagRGBQUAD s[kWorkingEntries];
    std::memcpy(s, table, sizeof s);
    int span, o, i;
    if (f > 1.0) {
        span = EvenSpan(length, f);
        o = start + (length - span) / 2;
        i = start;
    } else {
        span = length;
        o = start;
        i = start + static_cast<int>((1.0 - f) * (length / 2));
    }
    for (int e = start; e <= o; ++e) CopyColour(table[e], s[i]);
    const int endOut = span + o;
    Interpolate(s, table, o, endOut, i, static_cast<int>(f * 128.0), end - 1);
    // The segment's last entry stays for the next segment, except at the table's top.
    const int last = end < 255 ? end - 1 : end;
    for (int e = endOut; e < last; ++e) CopyColour(table[e], s[last]);
}

void ShiftTable(tagRGBQUAD* table, int n, int offset)
{
    ShiftSegment(table, offset, 0, n);
}

void ShiftSegment(tagRGBQUAD* table, int offset, int start, int end)
{
    if (offset == 0 || table == nullptr) return;
    start = std::clamp(start, 0, kWorkingEntries);
    end = std::clamp(end, 0, kWorkingEntries);
    const int length = end - start;
    if (length < 1) return;
    // Every entry reads an entry of the segment as it was; a copy makes the order of the
    // writes free, and whole entries as words keep each entry's reserved byte.
    std::uint32_t src[kWorkingEntries];
    std::uint32_t dst[kWorkingEntries];
    std::memcpy(src, table + start, sizeof(tagRGBQUAD) * length);
    std::memcpy(dst, src, sizeof(tagRGBQUAD) * length);
    constexpr std::uint32_t kColour = 0x00FFFFFFu;  // blue, green, red of a little-endian word
    const int shift = std::clamp(offset, -length, length);
    if (shift > 0) {
        const int moved = length - shift;
        for (int e = 0; e < moved; ++e) dst[e] = (dst[e] & ~kColour) | (src[e + shift] & kColour);
        const std::uint32_t top = src[length - 1] & kColour;
        for (int e = std::max(moved, 0); e < length; ++e) dst[e] = (dst[e] & ~kColour) | top;
    } else {
        const int fixed = -shift;
        const std::uint32_t bottom = src[0] & kColour;
        for (int e = 0; e < fixed; ++e) dst[e] = (dst[e] & ~kColour) | bottom;
        for (int e = fixed; e < length; ++e) dst[e] = (dst[e] & ~kColour) | (src[e - fixed] & kColour);
    }
    std::memcpy(table + start, dst, sizeof(tagRGBQUAD) * length);
}

void SmoothAround(tagRGBQUAD* table, int position)
{
    if (table == nullptr) return;
    const int lo = std::max(position - 5, 0);
    const int hi = std::min(position + 5, kWorkingEntries - 1);
    if (hi <= lo) return;
    BYTE tagRGBQUAD::*const channels[3] = {&tagRGBQUAD::rgbRed, &tagRGBQUAD::rgbGreen, &tagRGBQUAD::rgbBlue};
    for (BYTE tagRGBQUAD::*c : channels) {
        const double slope = double(int(table[hi].*c) - int(table[lo].*c)) / double(hi - lo);
        const double intercept = double(table[hi].*c) - hi * slope;
        for (int e = lo; e <= hi; ++e) {
            const double v = std::min(e * slope + intercept, 255.0);
            table[e].*c = static_cast<BYTE>(static_cast<int>(v + 0.5));
        }
    }
}

int ClampTableNumber(int table)
{
    int count = GetNumberOfColorTables();
    if (count <= 0) {
        InitializeColorTables();
        count = GetNumberOfColorTables();
    }
    if (table < 0) return 0;
    if (table >= count) return std::max(count - 1, 0);
    return table;
}

int ProfileColorTable()
{
    CWinApp* app = AfxGetApp();
    if (app == nullptr) return kDefaultColorTable;
    return static_cast<int>(app->GetProfileInt(kProfileSection, kProfileEntry, kDefaultColorTable));
}

void StoreProfileColorTable(int table)
{
    if (CWinApp* app = AfxGetApp()) app->WriteProfileInt(kProfileSection, kProfileEntry, table);
}

// WorkingTable --------------------------------------------------------------------------------

WorkingTable::WorkingTable() : m_nTable(ProfileColorTable()), m_pColorTable(new tagRGBQUAD[kWorkingEntries])
{
    const tagRGBQUAD blank{0, 0, 0, 255};
    std::fill_n(m_pColorTable, kWorkingEntries, blank);
    std::fill_n(m_ModifiedTable, kWorkingEntries, blank);
    std::fill_n(m_EqualizedTable, kWorkingEntries, blank);
}

WorkingTable::~WorkingTable()
{
    delete[] m_pColorTable;
}

void WorkingTable::DeriveWorkingTable(int table)
{
    if (table != m_nTable) m_bModified = m_bEqualized = false;
    m_nTable = ClampTableNumber(table);
    CreateColorTable(m_nTable, m_nColors, m_pColorTable);
    AdjustForCustomColorTable();
    AdjustForEqualizedColorTable();
    if (m_bEqualized && !m_vEqualizedCursors.empty()) {
        // Segments (0,c0), (c0,c1) ... (ck,255): all contrast first, then all offset.
        const std::vector<int>& c = m_vEqualizedCursors;
        for (int pass = 0; pass < 2; ++pass) {
            int start = 0;
            for (std::size_t j = 0; j <= c.size(); ++j) {
                const int end = j < c.size() ? c[j] : 255;
                if (pass == 0)
                    AdjustForContrastPiecewise(start, end);
                else
                    AdjustForOffsetPiecewise(start, end);
                start = end;
            }
        }
    } else {
        // The same as AdjustForContrast then AdjustForOffset, in one pass.
        if (m_nColors == kWorkingEntries) {
            StretchAndShiftTable(m_pColorTable, m_nContrast, m_nOffset);
        } else {
            AdjustForContrast();
            AdjustForOffset();
        }
    }
}

void WorkingTable::AdjustForContrast()
{
    StretchTable(m_pColorTable, m_nColors, m_nContrast);
}

void WorkingTable::AdjustForOffset()
{
    ShiftTable(m_pColorTable, m_nColors, m_nOffset);
}

void WorkingTable::AdjustForContrastPiecewise(int start, int end)
{
    StretchSegment(m_pColorTable, m_nContrast, start, end);
}

void WorkingTable::AdjustForOffsetPiecewise(int start, int end)
{
    ShiftSegment(m_pColorTable, m_nOffset, start, end);
}

void WorkingTable::SmoothPiecewiseEdges(int position)
{
    SmoothAround(m_pColorTable, position);
}

void WorkingTable::AdjustForCustomColorTable()
{
    if (!m_bModified || m_nModifiedTable != m_nTable) return;
    for (int e = 0; e < kWorkingEntries; ++e) CopyColour(m_pColorTable[e], m_ModifiedTable[e]);
}

void WorkingTable::AdjustForEqualizedColorTable()
{
    if (!m_bEqualized) return;
    for (int e = 0; e < kWorkingEntries; ++e) CopyColour(m_pColorTable[e], m_EqualizedTable[e]);
}

void WorkingTable::ModifyColorTable(tagRGBQUAD* table)
{
    if (table == nullptr) return;
    std::memcpy(m_ModifiedTable, table, sizeof m_ModifiedTable);
    m_bModified = true;
    m_nModifiedTable = m_nTable;
}

void WorkingTable::EqualizeColorTable(tagRGBQUAD* table)
{
    if (table == nullptr) return;
    std::memcpy(m_EqualizedTable, table, sizeof m_EqualizedTable);
    m_bEqualized = true;
}

void WorkingTable::SetEqualizedCursors(std::vector<int> cursors)
{
    m_vEqualizedCursors = std::move(cursors);
    // Bounds outside the table would address entries that don't exist.
    for (int& c : m_vEqualizedCursors) c = std::clamp(c, 0, 255);
}

void WorkingTable::GetEqualizedCursors(std::vector<int>* cursors) const
{
    if (cursors) *cursors = m_vEqualizedCursors;
}

}  // namespace orlex::colour
