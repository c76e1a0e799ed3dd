// MapClass: engineering scale of the axes and the engine's number conversions.
#include "plot/MapClass.h"

#include <algorithm>
#include <cassert>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "foundation/Convert2Eng.h"
#include "foundation/platform/codepage.h"

namespace {

constexpr int kAxisX = 1000;
constexpr int kAxisY = 1100;
constexpr int kMapTextMax = 128;

// Copies at most size - 1 bytes and terminates.
void copyCut(char* dest, std::size_t size, const char* src)
{
    std::size_t n = std::strlen(src);
    if (n >= size)
        n = size - 1;
    std::memcpy(dest, src, n);
    dest[n] = '\0';
}

int significantBits(unsigned long long v)
{
    int n = 0;
    while (v != 0) {
        ++n;
        v >>= 1;
    }
    return n;
}

} // namespace

MapClass::MapClass(HWND wnd) : m_hWnd(wnd)
{
}

char* MapClass::Convert2Eng(double value, const char* unit, int decimals, int leadingBlanks)
{
    thread_local char result[kMapTextMax];
    orlex::FormatEngineering(result, sizeof result, value, unit, decimals, leadingBlanks,
                             orlex::EngFloor::NanoForAll);
    return result;
}

double MapClass::Convert2Num(char* text)
{
    if (text == nullptr)
        return 0.0;
    const std::size_t length = std::strlen(text);
    std::size_t last = 0;
    for (std::size_t i = 0; i < length; ++i)
        if (text[i] >= '0' && text[i] <= '9')
            last = i;
    // The number runs up to the last digit (so an exponent stays with it). It is read
    // whole, whatever its length.
    const std::size_t n = std::min(last + 1, length);
    const std::string number(text, n);
    const double v = std::strtod(number.c_str(), nullptr);

    unsigned char prefix = 0;
    for (std::size_t i = n; i < length; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == 'u') {
            text[i] = '\xB5';
            prefix = 0xB5;
            break;
        }
        if (c == 0xB5 || (c < 0x80 && std::isalpha(c))) {
            prefix = c;
            break;
        }
    }
    if (prefix == 0 || prefix == ' ')
        return v;
    const char* hit = std::strchr(orlex::kEngPrefix1252, char(prefix));
    if (hit == nullptr)
        return v;
    const int e = 3 * (int(hit - orlex::kEngPrefix1252) - 6);
    return v * orlex::PowerOfTen(e);
}

long MapClass::MultMultDivDiv(int a, int b, int c, int d, int e)
{
    long long N = (long long)b * c;
    long long D = (long long)d * e;
    long long A = a;
    int bits = significantBits((unsigned long long)std::llabs(N)) +
               significantBits((unsigned long long)std::llabs(A));
    if (D < 0) {
        D = -D;
        N = -N;
    }
    // Shed bits in a fixed rotation until a * N fits in 31 bits.
    int turn = 0;
    while (bits > 31) {
        if (turn < 2)
            N >>= 1;
        else
            A >>= 1;
        D >>= 1;
        --bits;
        turn = (turn + 1) % 3;
    }
    const long long P = A * N;
    if (D == 0)
        return P < 0 ? long(INT_MIN) : long(INT_MAX);
    return long(std::int32_t((P + D / 2) / D));
}

void MapClass::SetUnits(const char* domain, const char* range, double xExponent,
                        double yExponent, bool scale, char* oldDomain)
{
    if (oldDomain != nullptr)
        std::memcpy(oldDomain, DomainUnit, sizeof DomainUnit);
    if (domain != nullptr)
        copyCut(DomainUnit, sizeof DomainUnit, domain);
    if (range != nullptr)
        copyCut(RangeUnit, sizeof RangeUnit, range);
    XExponent = xExponent;
    YExponent = yExponent;
    ScaleUnits = scale ? 1 : 0;
}

void MapClass::SetUnits(const char* domain)
{
    if (domain != nullptr)
        copyCut(DomainUnit, sizeof DomainUnit, domain);
}

void MapClass::SetInverse(int x, int y)
{
    copyCut(XInverse, sizeof XInverse, x ? "/" : "");
    copyCut(YInverse, sizeof YInverse, y ? "/" : "");
}

void MapClass::SetPower(int x, int y)
{
    auto mark = [](int p) { return p == 2 ? "\xB2" : p == 3 ? "\xB3" : ""; };
    copyCut(XPower, sizeof XPower, mark(x));
    copyCut(YPower, sizeof YPower, mark(y));
}

void MapClass::SetUserFriendly(bool x, bool y)
{
    UserFriendlyX = x ? 1 : 0;
    UserFriendlyY = y ? 1 : 0;
}

void MapClass::SetUnitsLabel(const char* label, double factor)
{
    XFactor = factor;
    UnitsLabelSet = 1;
    HasUnitsLabel = label != nullptr;
    copyCut(UnitsLabel, sizeof UnitsLabel, label ? label : "");
}

void MapClass::CalculateScale(double value, int axis)
{
    const bool x = axis == kAxisX;
    const char* unit = x ? DomainUnit : RangeUnit;
    const bool friendly = x ? UserFriendlyX != 0 : UserFriendlyY != 0;
    if (std::strcmp(unit, "%") == 0 || !friendly) {
        EngScale = 0;
        return;
    }
    const double p = x ? XExponent : YExponent;
    const double k = (p == 0.0 || value == 0.0)
                         ? NAN
                         : std::floor((std::log10(std::fabs(value)) / p + 1e-9) / 3.0);
    if (std::isnan(k))
        EngScale = std::max(0, MinScale);
    else
        EngScale = std::max(int(std::clamp(k, -6.0, 6.0)), MinScale);
    // Beyond the table (-6..6) there is no prefix to show, so the choice stays at its
    // ends and prefix and factor always agree.
    EngScale = std::clamp(EngScale, -6, 6);
}

void MapClass::ScaleNum(double value, int axis)
{
    CalculateScale(value, axis);
    assert(EngScale >= -6 && EngScale <= 6);
    const char* table = orlex::EngPrefixTable();
    if (axis == kAxisX) {
        if (UnitsLabelSet && HasUnitsLabel) {
            XPrefix = UnitsLabel[0] == '~' ? table[4] : UnitsLabel[0];
            return;
        }
        XPrefix = std::strcmp(DomainUnit, " ") == 0 ? ' ' : table[EngScale + 6];
        XFactor = ScaleUnits ? std::pow(10.0, -EngScale * 3 * XExponent) : 1.0;
    } else if (axis == kAxisY) {
        YPrefix = std::strcmp(RangeUnit, " ") == 0 ? ' ' : table[EngScale + 6];
        YFactor = std::pow(10.0, -EngScale * 3 * YExponent);
    }
}

int MapClass::FormatUnitLabel(int axis, char* dest, int destSize) const
{
    if (dest == nullptr || destSize <= 0)
        return 0;
    const bool x = axis == kAxisX;
    // "%s%c%s%s": inverse mark, prefix, unit, power mark. A prefix byte of 0 ends the
    // text where it stands, as it does in the printed form.
    const char prefix[2] = {x ? XPrefix : YPrefix, '\0'};
    const char* parts[] = {x ? XInverse : YInverse, prefix, x ? DomainUnit : RangeUnit,
                           x ? XPower : YPower};
    const std::size_t room = std::size_t(destSize) - 1;
    std::size_t n = 0;
    for (const char* part : parts) {
        if (part == prefix && prefix[0] == '\0')
            break;
        for (; *part != '\0' && n < room; ++part)
            dest[n++] = *part;
    }
    dest[n] = '\0';
    return int(n);
}

SCALE_INFO MapClass::GetScaleInfo() const
{
    SCALE_INFO info;
    FormatUnitLabel(kAxisX, info.XLabel, int(sizeof info.XLabel));
    FormatUnitLabel(kAxisY, info.YLabel, int(sizeof info.YLabel));
    info.XFactor = XFactor;
    info.YFactor = YFactor;
    return info;
}
