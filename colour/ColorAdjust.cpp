#include "colour/ColorAdjust.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <utility>

#include "colour/ColorTable.h"
#include "foundation/platform/afxapp.h"

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
// 128ths of an entry per output entry; the input index never passes kLimit.
void Interpolate(const tagRGBQUAD* s, tagRGBQUAD* out, int o, int endOut, int i, int step, int kLimit)
{
    int acc = step;
    int k = i;
    for (int e = o + 1; e < endOut; ++e, acc += step) {
        while (acc > (k - i) * 128 && k < kLimit) ++k;
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
    if (end - start < 1) return;
    // Walk in the direction that reads only entries not yet written.
    if (offset < 0) {
        for (int e = end - 1; e >= start; --e) CopyColour(table[e], table[std::max(e + offset, start)]);
    } else {
        for (int e = start; e < end; ++e) CopyColour(table[e], table[std::min(e + offset, end - 1)]);
    }
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
        AdjustForContrast();
        AdjustForOffset();
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
