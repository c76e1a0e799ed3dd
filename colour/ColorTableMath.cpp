#include "colour/ColorTableMath.h"

#include <cassert>
#include <cmath>
#include <cstdint>
#include <initializer_list>

namespace orlex::colour {

const BandColour kTable3Bands[10] = {
    {210, 0, 20},  {210, 84, 0}, {210, 168, 0}, {152, 210, 0}, {0, 180, 0},
    {0, 131, 210}, {0, 73, 210}, {162, 0, 210}, {210, 0, 189}, {210, 0, 89},
};

namespace {

// Character classes of the resource text, ASCII only: the text is ours and a locale must
// not change how it reads.
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f'; }

// Every value the formulas give is truncated towards zero and only its low byte kept.
WORD LowByte(double v) { return static_cast<WORD>(static_cast<long long>(v) & 0xFF); }

void Mark(WORD* plane, std::initializer_list<int> entries)
{
    for (int e : entries) plane[e] |= kEditMark;
}

void MarkAll(TablePlanes& t, std::initializer_list<int> entries)
{
    Mark(t.red, entries);
    Mark(t.green, entries);
    Mark(t.blue, entries);
}

// The ramp of tables 1 and 2: 0 up to `start`, then rising by 2.04 an entry.
double Ramp(int i, int start) { return i <= start ? 0.0 : (i - start) * 2.04; }

// Green of tables 1 and 2: rising from 85, held from 170 at its value there.
double HeldRamp(int i) { return Ramp(i < 170 ? i : 170, 85); }

double Linear(int i) { return i * 0.66 + 60.0; }

// One plane of a resource table: 240 values into entries 8..247, the first and last value
// stretched over the 8 entries at each end, which become edit points at their ends.
void MapResourcePlane(const WORD* values, WORD* plane)
{
    for (int e = 0; e < kResourceEntries; ++e) plane[8 + e] = values[e * 3];
    const WORD first = values[0] & kValueMask;
    const WORD last = values[(kResourceEntries - 1) * 3] & kValueMask;
    for (int e = 0; e < 8; ++e) {
        plane[e] = first;
        plane[248 + e] = last;
    }
    Mark(plane, {0, 7, 248, 255});
}

}  // namespace

double GreyCurve(int i)
{
    const double d = (std::log(256.0) - 3.4) * 0.00390625;
    return std::exp(3.4 + i * d);
}

bool ParseColorParText(const char* text, std::size_t length, WORD* store)
{
    assert(text != nullptr || length == 0);
    const char* p = text;
    const char* const end = text + length;
    WORD* out = store;
    for (int table = 0; table < kResourceTables; ++table) {
        // The title ("Color Table 4"): its number is not used, the order is.
        while (p < end && !IsLetter(*p)) ++p;
        while (p < end && !IsDigit(*p)) ++p;
        if (p == end) return false;
        while (p < end && IsDigit(*p)) ++p;
        for (int v = 0; v < kResourceValuesPerTable; ++v) {
            while (p < end && IsSpace(*p)) ++p;
            if (p == end) return false;
            // Decimal with optional sign; only the low 16 bits are kept, so a large
            // magnitude may wrap freely (unsigned arithmetic, no overflow).
            bool negative = false;
            if (*p == '-' || *p == '+') {
                negative = (*p == '-');
                ++p;
            }
            std::uint32_t value = 0;
            while (p < end && IsDigit(*p)) {
                value = value * 10u + std::uint32_t(*p - '0');
                ++p;
            }
            if (negative) value = 0u - value;
            *out++ = static_cast<WORD>(value & 0xFFFF);
            while (p < end && !IsSpace(*p)) ++p;
        }
    }
    return true;
}

void FillBuiltInTable(int number, const WORD* store, TablePlanes& t)
{
    assert(number >= 0 && number < kBuiltInTables);
    switch (number) {
    case 0:
        for (int i = 0; i < kTableEntries; ++i) t.red[i] = t.green[i] = t.blue[i] = LowByte(GreyCurve(i));
        MarkAll(t, {0, 20, 128, 248, 255});
        break;
    case 1:
    case 2: {
        WORD* rising = number == 1 ? t.red : t.blue;
        WORD* linear = number == 1 ? t.blue : t.red;
        for (int i = 0; i < kTableEntries; ++i) {
            rising[i] = LowByte(Ramp(i, 170));
            t.green[i] = LowByte(HeldRamp(i));
            linear[i] = LowByte(Linear(i));
        }
        Mark(rising, {0, 170, 213, 255});
        Mark(t.green, {0, 85, 171, 213, 255});
        Mark(linear, {0, 255});
        break;
    }
    case 3: {
        int previous = 0;
        for (int i = 0; i < kTableEntries; ++i) {
            const int k = static_cast<int>(i * 0.00390625 * 10.0);
            const BandColour& c = kTable3Bands[k];
            t.red[i] = c.red;
            t.green[i] = c.green;
            t.blue[i] = c.blue;
            if (k != previous) MarkAll(t, {i - 1, i});  // both sides of every band edge
            previous = k;
        }
        MarkAll(t, {0, 255});
        t.stepped = true;
        break;
    }
    case 22:
    case 23:
    case 24:
    case 25:
        for (int i = 0; i < kTableEntries; ++i) {
            const WORD v = static_cast<WORD>(i);
            if (number == 22 || number == 25) t.red[i] = v;
            if (number == 23 || number == 25) t.green[i] = v;
            if (number == 24 || number == 25) t.blue[i] = v;
        }
        MarkAll(t, {0, 255});
        break;
    default: {
        // 4..21 come from the resource; without it they stay black and unmarked so
        // that the numbers of the later tables hold.
        if (store == nullptr) break;
        const WORD* values = store + std::size_t(number - kFirstResourceTable) * kResourceValuesPerTable;
        MapResourcePlane(values + 0, t.red);
        MapResourcePlane(values + 1, t.green);
        MapResourcePlane(values + 2, t.blue);
        break;
    }
    }
}

}  // namespace orlex::colour
