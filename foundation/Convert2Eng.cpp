// Engineering notation. The choice of the power of one thousand is a pure computation;
// the text is built with bounded writes only, so no argument can run past a buffer.
#include "foundation/Convert2Eng.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "foundation/platform/codepage.h"

namespace orlex {

namespace {

constexpr char kPrefixOther[] = "afpnum kMGTPE";
constexpr int kMaxLeadingBlanks = 10; // what fits in the 19-character format room
constexpr char kDegreeUnit[] = "\xBA";

static_assert(sizeof kEngPrefix1252 == 14 && sizeof kPrefixOther == 14);

// floor((log10|v| + 0.0001) / 3) for a finite non-zero v: |v| of 999.9999999 goes up
// into the next prefix. Non-finite values get 0 (printed unscaled).
int powerOfThousand(double value)
{
    if (!std::isfinite(value))
        return 0;
    return int(std::floor((std::log10(std::fabs(value)) + 0.0001) / 3.0));
}

// Appends with snprintf semantics at pos; keeps pos at the end of what fitted.
void appendf(char* dest, std::size_t size, std::size_t& pos, const char* fmt, int decimals,
             double v, const char* prefix, const char* unit)
{
    if (pos + 1 >= size)
        return;
    const int n = prefix ? std::snprintf(dest + pos, size - pos, fmt, decimals, v, *prefix, unit)
                         : std::snprintf(dest + pos, size - pos, fmt, decimals, v, unit);
    if (n > 0)
        pos = std::min(pos + std::size_t(n), size - 1);
}

} // namespace

const char* EngPrefixTable()
{
    return GetACP() == 1252 ? kEngPrefix1252 : kPrefixOther;
}

double PowerOfTen(int e)
{
    unsigned m = unsigned(e < 0 ? -e : e);
    double result = 1.0;
    double base = 10.0;
    while (m != 0) {
        if (m & 1u)
            result *= base;
        base *= base;
        m >>= 1;
    }
    return e < 0 ? 1.0 / result : result;
}

int FormatEngineering(char* dest, std::size_t destSize, double value, const char* unit,
                      int decimals, int leadingBlanks, EngFloor floor)
{
    if (dest == nullptr || destSize == 0)
        return 0;
    const bool cp1252 = GetACP() == 1252;
    const char* table = cp1252 ? kEngPrefix1252 : kPrefixOther;
    if (unit == nullptr)
        unit = "";
    if (!cp1252 && std::strcmp(unit, kDegreeUnit) == 0)
        unit = "deg";

    // Digits beyond the room are cut anyway; a bounded precision keeps printf from
    // building a huge text first (and keeps the last visible digit unrounded by the cut).
    decimals = int(std::min<long long>(decimals, std::min<long long>((long long)destSize, 1 << 20)));

    std::size_t pos = 0;
    const int blanks = std::clamp(leadingBlanks, 0, kMaxLeadingBlanks);
    for (int i = 0; i < blanks && pos + 1 < destSize; ++i)
        dest[pos++] = ' ';
    dest[pos] = '\0';

    if (value == 0.0) {
        // The free form drops the unit of a zero; the plot form keeps it.
        appendf(dest, destSize, pos, "%.*f %s", decimals, value, nullptr,
                floor == EngFloor::PicoForMetres ? "" : unit);
        return int(pos);
    }

    int k = powerOfThousand(value);
    if (floor == EngFloor::PicoForMetres) {
        if (std::strcmp(unit, "m") == 0) {
            k = std::max(k, -4);
            if (k == -4)
                decimals = std::min(decimals, 2);
        }
    } else {
        k = std::max(k, -3);
        if (k == -3)
            decimals = std::min(decimals, 2);
    }

    if (k == 0 || k >= 7 || k <= -7) {
        appendf(dest, destSize, pos, "%.*f %s", decimals, value, nullptr, unit);
    } else {
        assert(k >= -6 && k <= 6);
        const double p = PowerOfTen(3 * k);
        appendf(dest, destSize, pos, "%.*f %c%s", decimals, value / p, &table[k + 6], unit);
    }
    return int(pos);
}

int Convert2Eng(char* dest, std::size_t destSize, double value, const char* unit, int decimals,
                int leadingBlanks)
{
    return FormatEngineering(dest, destSize, value, unit, decimals, leadingBlanks,
                             EngFloor::PicoForMetres);
}

} // namespace orlex

int Convert2Eng(char* dest, double value, const char* unit, int decimals, int leadingBlanks)
{
    return orlex::Convert2Eng(dest, CONVERT2ENG_MAX, value, unit, decimals, leadingBlanks);
}

char* Convert2Eng(double value, const char* unit, int decimals, int leadingBlanks)
{
    thread_local char result[CONVERT2ENG_MAX];
    Convert2Eng(result, value, unit, decimals, leadingBlanks);
    return result;
}
