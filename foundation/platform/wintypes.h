// Basic types of the window platform: integer names, handles, colours, points,
// sizes and rectangles, bitmap headers. Plain C++; every part of the library uses them.
#pragma once

#include <cstddef>
#include <cstdint>

// Integer names -----------------------------------------------------------------------
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using INT = int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using BOOL = int;
using BOOLEAN = BYTE;
using LONGLONG = long long;
using ULONGLONG = unsigned long long;
using __int64 = long long;
using UINT_PTR = std::uintptr_t;
using INT_PTR = std::intptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using HRESULT = std::int32_t;
using COLORREF = DWORD;
using ATOM = WORD;
using TCHAR = char;
using LPSTR = char*;
using LPCSTR = const char*;
using LPTSTR = char*;
using LPCTSTR = const char*;
using LPVOID = void*;
using LPCVOID = const void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using LPWORD = WORD*;
using LPLONG = LONG*;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

// Handles: distinct opaque pointer types, as the platform declares them.
#define ORLEX_DECLARE_HANDLE(name) \
    struct name##__ { int unused; };  \
    using name = name##__*
ORLEX_DECLARE_HANDLE(HWND);
ORLEX_DECLARE_HANDLE(HDC);
ORLEX_DECLARE_HANDLE(HMENU);
ORLEX_DECLARE_HANDLE(HINSTANCE);
ORLEX_DECLARE_HANDLE(HICON);
ORLEX_DECLARE_HANDLE(HBITMAP);
ORLEX_DECLARE_HANDLE(HBRUSH);
ORLEX_DECLARE_HANDLE(HPEN);
ORLEX_DECLARE_HANDLE(HFONT);
ORLEX_DECLARE_HANDLE(HRGN);
ORLEX_DECLARE_HANDLE(HPALETTE);
ORLEX_DECLARE_HANDLE(HRSRC);
ORLEX_DECLARE_HANDLE(HKEY);
using HMODULE = HINSTANCE;
using HCURSOR = HICON;
using HGDIOBJ = void*;
using HGLOBAL = void*;
using HLOCAL = void*;
using HANDLE = void*;

// Packing of words and points into message parameters ---------------------------------
constexpr WORD LOWORD(DWORD_PTR v) { return static_cast<WORD>(v & 0xFFFF); }
constexpr WORD HIWORD(DWORD_PTR v) { return static_cast<WORD>((v >> 16) & 0xFFFF); }
constexpr BYTE LOBYTE(DWORD_PTR v) { return static_cast<BYTE>(v & 0xFF); }
constexpr BYTE HIBYTE(DWORD_PTR v) { return static_cast<BYTE>((v >> 8) & 0xFF); }
constexpr LONG MAKELONG(WORD lo, WORD hi) { return static_cast<LONG>(static_cast<DWORD>(lo) | (static_cast<DWORD>(hi) << 16)); }
constexpr WORD MAKEWORD(BYTE lo, BYTE hi) { return static_cast<WORD>(lo | (hi << 8)); }
constexpr WPARAM MAKEWPARAM(WORD lo, WORD hi) { return static_cast<WPARAM>(static_cast<DWORD>(MAKELONG(lo, hi))); }
// A packed point: (y << 16) | (x & 0xFFFF); the high word is sign-extended like a LONG.
constexpr LPARAM MAKELPARAM(WORD lo, WORD hi) { return static_cast<LPARAM>(MAKELONG(lo, hi)); }
constexpr int GET_X_LPARAM(LPARAM lp) { return static_cast<short>(LOWORD(static_cast<DWORD_PTR>(lp))); }
constexpr int GET_Y_LPARAM(LPARAM lp) { return static_cast<short>(HIWORD(static_cast<DWORD_PTR>(lp))); }
constexpr short GET_WHEEL_DELTA_WPARAM(WPARAM wp) { return static_cast<short>(HIWORD(wp)); }
constexpr WORD GET_KEYSTATE_WPARAM(WPARAM wp) { return LOWORD(wp); }

// Colours ------------------------------------------------------------------------------
// COLORREF: red in the low byte, then green, then blue.
constexpr COLORREF RGB(BYTE r, BYTE g, BYTE b) { return static_cast<COLORREF>(r | (g << 8) | (static_cast<DWORD>(b) << 16)); }
constexpr BYTE GetRValue(COLORREF c) { return static_cast<BYTE>(c & 0xFF); }
constexpr BYTE GetGValue(COLORREF c) { return static_cast<BYTE>((c >> 8) & 0xFF); }
constexpr BYTE GetBValue(COLORREF c) { return static_cast<BYTE>((c >> 16) & 0xFF); }
constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;

// One colour entry: blue, green, red, reserved. 256 of them are a colour table and the
// palette of an 8-bit image.
struct tagRGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};
using RGBQUAD = tagRGBQUAD;
static_assert(sizeof(tagRGBQUAD) == 4);

struct tagRGBTRIPLE {
    BYTE rgbtBlue;
    BYTE rgbtGreen;
    BYTE rgbtRed;
};
using RGBTRIPLE = tagRGBTRIPLE;

struct PALETTEENTRY {
    BYTE peRed;
    BYTE peGreen;
    BYTE peBlue;
    BYTE peFlags;
};
struct LOGPALETTE {
    WORD palVersion;
    WORD palNumEntries;
    PALETTEENTRY palPalEntry[1];
};

// Device-independent bitmaps --------------------------------------------------------------
struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight;  // positive: rows stored bottom-up
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);
using LPBITMAPINFOHEADER = BITMAPINFOHEADER*;

struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};
static_assert(sizeof(BITMAPINFO) == 44);
using LPBITMAPINFO = BITMAPINFO*;

#pragma pack(push, 2)
struct BITMAPFILEHEADER {
    WORD bfType;  // "BM"
    DWORD bfSize;
    WORD bfReserved1;
    WORD bfReserved2;
    DWORD bfOffBits;
};
#pragma pack(pop)
static_assert(sizeof(BITMAPFILEHEADER) == 14);

struct BITMAP {
    LONG bmType;
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    void* bmBits;
};

constexpr DWORD BI_RGB = 0;
constexpr UINT DIB_RGB_COLORS = 0;
constexpr UINT DIB_PAL_COLORS = 1;

// Points, sizes, rectangles ---------------------------------------------------------------
struct POINT {
    LONG x;
    LONG y;
};
struct POINTS {
    SHORT x;
    SHORT y;
};
struct SIZE {
    LONG cx;
    LONG cy;
};
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPPOINT = POINT*;
using LPRECT = RECT*;
using LPCRECT = const RECT*;
using LPSIZE = SIZE*;

class CSize;
class CRect;

class CPoint : public POINT {
public:
    constexpr CPoint() : POINT{0, 0} {}
    constexpr CPoint(int initX, int initY) : POINT{initX, initY} {}
    constexpr CPoint(POINT p) : POINT(p) {}
    constexpr CPoint(SIZE s) : POINT{s.cx, s.cy} {}
    // From a packed parameter: x in the low word, y in the high word, each sign-extended.
    explicit constexpr CPoint(LPARAM packed) : POINT{GET_X_LPARAM(packed), GET_Y_LPARAM(packed)} {}

    void Offset(int dx, int dy) { x += dx; y += dy; }
    void Offset(POINT p) { x += p.x; y += p.y; }
    void Offset(SIZE s) { x += s.cx; y += s.cy; }
    void SetPoint(int X, int Y) { x = X; y = Y; }

    constexpr bool operator==(const POINT& p) const { return x == p.x && y == p.y; }
    constexpr bool operator!=(const POINT& p) const { return !(*this == p); }
    CPoint& operator+=(const POINT& p) { x += p.x; y += p.y; return *this; }
    CPoint& operator-=(const POINT& p) { x -= p.x; y -= p.y; return *this; }
    CPoint& operator+=(const SIZE& s) { x += s.cx; y += s.cy; return *this; }
    CPoint& operator-=(const SIZE& s) { x -= s.cx; y -= s.cy; return *this; }
    constexpr CPoint operator-() const { return CPoint(-x, -y); }
    constexpr CPoint operator+(const POINT& p) const { return CPoint(x + p.x, y + p.y); }
    constexpr CPoint operator-(const POINT& p) const { return CPoint(x - p.x, y - p.y); }
    constexpr CPoint operator+(const SIZE& s) const { return CPoint(x + s.cx, y + s.cy); }
    constexpr CPoint operator-(const SIZE& s) const { return CPoint(x - s.cx, y - s.cy); }
    operator LPPOINT() { return this; }
};

class CSize : public SIZE {
public:
    constexpr CSize() : SIZE{0, 0} {}
    constexpr CSize(int initCX, int initCY) : SIZE{initCX, initCY} {}
    constexpr CSize(SIZE s) : SIZE(s) {}
    constexpr CSize(POINT p) : SIZE{p.x, p.y} {}

    void SetSize(int CX, int CY) { cx = CX; cy = CY; }
    constexpr bool operator==(const SIZE& s) const { return cx == s.cx && cy == s.cy; }
    constexpr bool operator!=(const SIZE& s) const { return !(*this == s); }
    CSize& operator+=(const SIZE& s) { cx += s.cx; cy += s.cy; return *this; }
    CSize& operator-=(const SIZE& s) { cx -= s.cx; cy -= s.cy; return *this; }
    constexpr CSize operator+(const SIZE& s) const { return CSize(cx + s.cx, cy + s.cy); }
    constexpr CSize operator-(const SIZE& s) const { return CSize(cx - s.cx, cy - s.cy); }
    constexpr CSize operator-() const { return CSize(-cx, -cy); }
};

// Rectangle functions of the platform. Right and bottom edges lie outside the rectangle.
inline BOOL SetRect(RECT* r, int l, int t, int rr, int b) { if (!r) return FALSE; *r = RECT{l, t, rr, b}; return TRUE; }
inline BOOL SetRectEmpty(RECT* r) { return SetRect(r, 0, 0, 0, 0); }
inline BOOL CopyRect(RECT* dst, const RECT* src) { if (!dst || !src) return FALSE; *dst = *src; return TRUE; }
inline BOOL IsRectEmpty(const RECT* r) { return !r || r->right <= r->left || r->bottom <= r->top; }
inline BOOL EqualRect(const RECT* a, const RECT* b) {
    return a && b && a->left == b->left && a->top == b->top && a->right == b->right && a->bottom == b->bottom;
}
inline BOOL PtInRect(const RECT* r, POINT p) {
    return r && p.x >= r->left && p.x < r->right && p.y >= r->top && p.y < r->bottom;
}
inline BOOL OffsetRect(RECT* r, int dx, int dy) {
    if (!r) return FALSE;
    r->left += dx; r->right += dx; r->top += dy; r->bottom += dy;
    return TRUE;
}
inline BOOL InflateRect(RECT* r, int dx, int dy) {
    if (!r) return FALSE;
    r->left -= dx; r->right += dx; r->top -= dy; r->bottom += dy;
    return TRUE;
}
// Empty result (all zero) when the two do not overlap; the result is then FALSE.
inline BOOL IntersectRect(RECT* dst, const RECT* a, const RECT* b) {
    if (!dst || !a || !b) return FALSE;
    RECT r{a->left > b->left ? a->left : b->left, a->top > b->top ? a->top : b->top,
           a->right < b->right ? a->right : b->right, a->bottom < b->bottom ? a->bottom : b->bottom};
    if (IsRectEmpty(&r)) { SetRectEmpty(dst); return FALSE; }
    *dst = r;
    return TRUE;
}
// An empty rectangle takes no part in the union.
inline BOOL UnionRect(RECT* dst, const RECT* a, const RECT* b) {
    if (!dst || !a || !b) return FALSE;
    const bool ea = IsRectEmpty(a), eb = IsRectEmpty(b);
    if (ea && eb) { SetRectEmpty(dst); return FALSE; }
    if (ea) { *dst = *b; return TRUE; }
    if (eb) { *dst = *a; return TRUE; }
    *dst = RECT{a->left < b->left ? a->left : b->left, a->top < b->top ? a->top : b->top,
                a->right > b->right ? a->right : b->right, a->bottom > b->bottom ? a->bottom : b->bottom};
    return TRUE;
}

class CRect : public RECT {
public:
    constexpr CRect() : RECT{0, 0, 0, 0} {}
    constexpr CRect(int l, int t, int r, int b) : RECT{l, t, r, b} {}
    constexpr CRect(const RECT& r) : RECT(r) {}
    CRect(const RECT* r) : RECT(r ? *r : RECT{0, 0, 0, 0}) {}
    constexpr CRect(POINT p, SIZE s) : RECT{p.x, p.y, p.x + s.cx, p.y + s.cy} {}
    constexpr CRect(POINT tl, POINT br) : RECT{tl.x, tl.y, br.x, br.y} {}

    constexpr int Width() const { return right - left; }
    constexpr int Height() const { return bottom - top; }
    constexpr CSize Size() const { return CSize(Width(), Height()); }
    // The two corners as points that alias the rectangle, so they can be assigned.
    CPoint& TopLeft() { return *reinterpret_cast<CPoint*>(&left); }
    CPoint& BottomRight() { return *reinterpret_cast<CPoint*>(&right); }
    const CPoint& TopLeft() const { return *reinterpret_cast<const CPoint*>(&left); }
    const CPoint& BottomRight() const { return *reinterpret_cast<const CPoint*>(&right); }
    constexpr CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }

    BOOL IsRectEmpty() const { return ::IsRectEmpty(this); }
    constexpr BOOL IsRectNull() const { return left == 0 && right == 0 && top == 0 && bottom == 0; }
    BOOL PtInRect(POINT p) const { return ::PtInRect(this, p); }
    BOOL EqualRect(const RECT* r) const { return ::EqualRect(this, r); }

    void SetRect(int l, int t, int r, int b) { left = l; top = t; right = r; bottom = b; }
    void SetRect(POINT tl, POINT br) { SetRect(tl.x, tl.y, br.x, br.y); }
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void CopyRect(const RECT* r) { if (r) *static_cast<RECT*>(this) = *r; }

    void InflateRect(int x, int y) { ::InflateRect(this, x, y); }
    void InflateRect(SIZE s) { InflateRect(s.cx, s.cy); }
    void InflateRect(const RECT* r) { left -= r->left; top -= r->top; right += r->right; bottom += r->bottom; }
    void InflateRect(int l, int t, int r, int b) { left -= l; top -= t; right += r; bottom += b; }
    void DeflateRect(int x, int y) { ::InflateRect(this, -x, -y); }
    void DeflateRect(SIZE s) { DeflateRect(s.cx, s.cy); }
    void DeflateRect(const RECT* r) { left += r->left; top += r->top; right -= r->right; bottom -= r->bottom; }
    void DeflateRect(int l, int t, int r, int b) { left += l; top += t; right -= r; bottom -= b; }
    void OffsetRect(int x, int y) { ::OffsetRect(this, x, y); }
    void OffsetRect(POINT p) { OffsetRect(p.x, p.y); }
    void OffsetRect(SIZE s) { OffsetRect(s.cx, s.cy); }
    void MoveToX(int x) { right = x + Width(); left = x; }
    void MoveToY(int y) { bottom = y + Height(); top = y; }
    void MoveToXY(int x, int y) { MoveToX(x); MoveToY(y); }
    void MoveToXY(POINT p) { MoveToXY(p.x, p.y); }
    // Swaps edges so that left <= right and top <= bottom.
    void NormalizeRect() {
        if (left > right) { LONG t = left; left = right; right = t; }
        if (top > bottom) { LONG t = top; top = bottom; bottom = t; }
    }
    BOOL IntersectRect(const RECT* a, const RECT* b) { return ::IntersectRect(this, a, b); }
    BOOL UnionRect(const RECT* a, const RECT* b) { return ::UnionRect(this, a, b); }

    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }
    bool operator==(const RECT& r) const { return ::EqualRect(this, &r) != 0; }
    bool operator!=(const RECT& r) const { return !(*this == r); }
    CRect& operator+=(POINT p) { OffsetRect(p); return *this; }
    CRect& operator-=(POINT p) { OffsetRect(-p.x, -p.y); return *this; }
    CRect& operator&=(const RECT& r) { ::IntersectRect(this, this, &r); return *this; }
    CRect& operator|=(const RECT& r) { ::UnionRect(this, this, &r); return *this; }
    CRect operator+(POINT p) const { CRect r(*this); r.OffsetRect(p); return r; }
    CRect operator-(POINT p) const { CRect r(*this); r.OffsetRect(-p.x, -p.y); return r; }
    CRect operator&(const RECT& o) const { CRect r; ::IntersectRect(&r, this, &o); return r; }
    CRect operator|(const RECT& o) const { CRect r; ::UnionRect(&r, this, &o); return r; }
};

// Message box styles and answers --------------------------------------------------------
constexpr UINT MB_OK = 0x0;
constexpr UINT MB_OKCANCEL = 0x1;
constexpr UINT MB_ABORTRETRYIGNORE = 0x2;
constexpr UINT MB_YESNOCANCEL = 0x3;
constexpr UINT MB_YESNO = 0x4;
constexpr UINT MB_RETRYCANCEL = 0x5;
constexpr UINT MB_ICONHAND = 0x10;
constexpr UINT MB_ICONERROR = 0x10;
constexpr UINT MB_ICONSTOP = 0x10;
constexpr UINT MB_ICONQUESTION = 0x20;
constexpr UINT MB_ICONEXCLAMATION = 0x30;
constexpr UINT MB_ICONWARNING = 0x30;
constexpr UINT MB_ICONASTERISK = 0x40;
constexpr UINT MB_ICONINFORMATION = 0x40;
constexpr UINT MB_DEFBUTTON2 = 0x100;
constexpr UINT MB_APPLMODAL = 0x0;
constexpr UINT MB_SYSTEMMODAL = 0x1000;
constexpr UINT MB_TASKMODAL = 0x2000;
constexpr UINT MB_TOPMOST = 0x40000;
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;
constexpr int IDYES = 6;
constexpr int IDNO = 7;
