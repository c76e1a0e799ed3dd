// The plot engine: one object per plot window that scales, lays out and draws the
// curves it is given (it refers to them and never owns them). This file holds the
// engineering scale of the axes and the number conversions of the engine.
#pragma once

#include "foundation/platform/wintypes.h"
#include "plot/PlotTypes.h"

class MapClass {
public:
    // The plot draws into wnd (not owned; may be null for a map used off-screen).
    explicit MapClass(HWND wnd = nullptr);

    // ---- engineering notation of the engine ---------------------------------------------
    // value with an SI prefix, never below nano (decimals <= 2 in nano), unit kept for 0.0,
    // leadingBlanks 0..10 (more are cut). Into a 128-byte buffer of the calling thread
    // that the next call overwrites.
    static char* Convert2Eng(double value, const char* unit, int decimals, int leadingBlanks);
    // Reads "2.5 k", "10uV", "1.5e3 k" back (first letter after the number taken as
    // prefix). A 'u' there is overwritten with the micro sign 0xB5 in text. Null -> 0.0.
    static double Convert2Num(char* text);
    // a * b * c / (d * e), rounded to nearest, in integers, safe from 64-bit overflow;
    // d * e == 0 gives INT_MAX, or INT_MIN for a negative product.
    static long MultMultDivDiv(int a, int b, int c, int d, int e);

    // ---- units and scale ----------------------------------------------------------------
    // Copies the old domain unit into oldDomain (30 bytes) if given, then each unit that
    // isn't null (29 bytes at most), then the exponents and the ScaleUnits flag.
    void SetUnits(const char* domain, const char* range, double xExponent, double yExponent,
                  bool scale, char* oldDomain);
    // Sets the domain unit only (null is ignored).
    void SetUnits(const char* domain);
    const char* GetDomainUnit() const { return DomainUnit; }
    const char* GetRangeUnit() const { return RangeUnit; }
    // Inverse marks: non-zero gives "/" before the prefix of that axis.
    void SetInverse(int x, int y);
    // Power marks: 2 gives 0xB2 (superscript two), 3 gives 0xB3, anything else nothing.
    void SetPower(int x, int y);
    // While an axis is not user friendly, it gets no prefix (EngScale 0).
    void SetUserFriendly(bool x, bool y);
    // false: X data aren't multiplied by a prefix factor.
    void SetScale(bool scale) { ScaleUnits = scale ? 1 : 0; }
    // Lower bound of the chosen power of one thousand (default -6).
    void SetMinScale(int minScale) { MinScale = minScale; }
    int GetEngScale() const { return EngScale; }
    // A fixed X label: its first byte becomes the X prefix ('~' the micro prefix) and
    // factor the X factor. The text is copied; null clears it.
    void SetUnitsLabel(const char* label, double factor);
    // Both unit labels as printed ("%s%c%s%s": inverse, prefix, unit, power), each cut to
    // 9 bytes, and both factors.
    SCALE_INFO GetScaleInfo() const;
    // The unit label of one axis (1000 X, else Y) into dest of destSize bytes (cut to
    // fit); returns its length.
    int FormatUnitLabel(int axis, char* dest, int destSize) const;
    double GetXFactor() const { return XFactor; }
    double GetYFactor() const { return YFactor; }
    char GetXPrefix() const { return XPrefix; }
    char GetYPrefix() const { return YPrefix; }

protected:
    // Chooses EngScale for value on the axis (1000 X, 1100 Y): the power of one
    // thousand of value^(1/exponent), at least MinScale, kept within the prefix table.
    void CalculateScale(double value, int axis);
    // CalculateScale, then the prefix and factor of that axis (other axes: nothing more).
    void ScaleNum(double value, int axis);

public:
    // ---- fields -------------------------------------------------------------------------
    HWND m_hWnd = nullptr;
    double XFactor = 1.0;
    double YFactor = 1.0;
    double XExponent = 1.0; // power of the domain unit (2 for square metres)
    double YExponent = 1.0;
    int EngScale = 0;   // power of one thousand chosen last, for either axis
    int MinScale = -6;
    char DomainUnit[30] = {};
    char RangeUnit[30] = {};
    char XPrefix = 0;
    char YPrefix = 0;
    char XInverse[2] = {};
    char YInverse[2] = {};
    char XPower[2] = {};
    char YPower[2] = {};
    char UnitsLabel[80] = {};         // copy of the label that SetUnitsLabel gave
    bool HasUnitsLabel = false;       // that label was not null
    unsigned char UnitsLabelSet = 0;
    unsigned char ScaleUnits = 1;
    unsigned char UserFriendlyX = 1;
    unsigned char UserFriendlyY = 1;
};
