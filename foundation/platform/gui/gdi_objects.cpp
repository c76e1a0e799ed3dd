// Drawing objects behind the handles: pens, brushes, fonts, bitmaps, regions, palettes; the
// stock objects; their C++ wrappers; system colours and metrics.
#include <QPainter>
#include <QPainterPath>
#include <QPolygon>

#include <cassert>
#include <cstring>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "foundation/platform/gui/gdi_p.h"

namespace orlex::gdi {
namespace {

struct Registry {
    std::recursive_mutex mu;
    std::unordered_set<Object*> live;
    std::unordered_set<Object*> pendingDelete;  // deleted while selected: freed on deselect
    std::unordered_map<void*, CGdiObject*> permanent;
    std::unordered_map<void*, std::unique_ptr<CGdiObject>> temps;
};
Registry& Reg() {
    static Registry* r = new Registry;  // lives to the end of the process: wrappers may outlive statics
    return *r;
}

}  // namespace

Object* Lookup(HGDIOBJ h) {
    if (!h) return nullptr;
    Registry& r = Reg();
    std::lock_guard lock(r.mu);
    auto* o = static_cast<Object*>(h);
    return r.live.count(o) ? o : nullptr;
}

HGDIOBJ Register(Object* o) {
    Registry& r = Reg();
    std::lock_guard lock(r.mu);
    r.live.insert(o);
    return o;
}

void DropTempWrappers(void* handle) {
    Registry& r = Reg();
    std::unique_ptr<CGdiObject> temp;
    {
        std::lock_guard lock(r.mu);
        auto it = r.temps.find(handle);
        if (it != r.temps.end()) {
            temp = std::move(it->second);
            r.temps.erase(it);
        }
    }
    if (temp) temp->m_hObject = nullptr;  // a temporary owns nothing
}

Bitmap* NewBitmap(int w, int h, int bitsPixel) {
    auto* b = new Bitmap;
    b->image = QImage(w < 1 ? 1 : w, h < 1 ? 1 : h, QImage::Format_RGB32);
    b->image.fill(0xFF000000u);
    b->bitsPixel = bitsPixel;
    return b;
}

// Frees the object now, or when the last context lets it go.
static bool DestroyObject(Object* o) {
    Registry& r = Reg();
    {
        std::lock_guard lock(r.mu);
        if (!r.live.count(o) || o->stock) return false;
        if (o->selectedIn > 0) {
            r.pendingDelete.insert(o);
            return true;
        }
        r.live.erase(o);
        r.pendingDelete.erase(o);
    }
    DropTempWrappers(o);
    delete o;
    return true;
}

void NoteSelected(Object* o, int delta) {
    if (!o) return;
    Registry& r = Reg();
    bool free = false;
    {
        std::lock_guard lock(r.mu);
        o->selectedIn += delta;
        assert(o->selectedIn >= 0);
        if (o->selectedIn <= 0 && r.pendingDelete.count(o)) {
            r.pendingDelete.erase(o);
            r.live.erase(o);
            free = true;
        }
    }
    if (free) {
        DropTempWrappers(o);
        delete o;
    }
}

// Stock objects ---------------------------------------------------------------------------------
static Object* MakeStock(int index) {
    Object* o = nullptr;
    auto brush = [](UINT style, COLORREF c) { auto* b = new Brush; b->style = style; b->color = c; return b; };
    auto pen = [](int style, COLORREF c) { auto* p = new Pen; p->style = style; p->color = c; return p; };
    switch (index) {
    case WHITE_BRUSH: o = brush(BS_SOLID, RGB(255, 255, 255)); break;
    case LTGRAY_BRUSH: o = brush(BS_SOLID, RGB(192, 192, 192)); break;
    case GRAY_BRUSH: o = brush(BS_SOLID, RGB(128, 128, 128)); break;
    case DKGRAY_BRUSH: o = brush(BS_SOLID, RGB(64, 64, 64)); break;
    case BLACK_BRUSH: o = brush(BS_SOLID, RGB(0, 0, 0)); break;
    case NULL_BRUSH: o = brush(BS_NULL, 0); break;
    case DC_BRUSH: o = brush(BS_SOLID, RGB(255, 255, 255)); break;
    case WHITE_PEN: o = pen(PS_SOLID, RGB(255, 255, 255)); break;
    case BLACK_PEN: o = pen(PS_SOLID, 0); break;
    case NULL_PEN: o = pen(PS_NULL, 0); break;
    case DC_PEN: o = pen(PS_SOLID, 0); break;
    case OEM_FIXED_FONT: case ANSI_FIXED_FONT: case ANSI_VAR_FONT: case SYSTEM_FONT:
    case DEVICE_DEFAULT_FONT: case SYSTEM_FIXED_FONT: case DEFAULT_GUI_FONT: {
        auto* f = new Font;
        f->lf = StockFontLog(index);
        o = f;
        break;
    }
    case DEFAULT_PALETTE: {
        // The 20 static colours of a palette display.
        static const BYTE c[20][3] = {{0, 0, 0}, {128, 0, 0}, {0, 128, 0}, {128, 128, 0}, {0, 0, 128},
                                      {128, 0, 128}, {0, 128, 128}, {192, 192, 192}, {192, 220, 192},
                                      {166, 202, 240}, {255, 251, 240}, {160, 160, 164}, {128, 128, 128},
                                      {255, 0, 0}, {0, 255, 0}, {255, 255, 0}, {0, 0, 255}, {255, 0, 255},
                                      {0, 255, 255}, {255, 255, 255}};
        auto* p = new Palette;
        for (auto& e : c) p->entries.push_back(PALETTEENTRY{e[0], e[1], e[2], 0});
        o = p;
        break;
    }
    default: return nullptr;
    }
    o->stock = true;
    return o;
}

HGDIOBJ Stock(int index) {
    static std::mutex mu;
    static Object* table[20] = {};
    if (index < 0 || index >= 20) return nullptr;
    std::lock_guard lock(mu);
    if (!table[index]) {
        table[index] = MakeStock(index);
        if (table[index]) Register(table[index]);
    }
    return table[index];
}

}  // namespace orlex::gdi

using namespace orlex::gdi;

// The C interface of objects ----------------------------------------------------------------------
HGDIOBJ GetStockObject(int index) { return Stock(index); }

BOOL DeleteObject(HGDIOBJ h) {
    Object* o = Lookup(h);
    return o ? DestroyObject(o) : FALSE;
}

DWORD GetObjectType(HGDIOBJ h) {
    if (LookupDc(static_cast<HDC>(h))) return LookupDc(static_cast<HDC>(h))->kind == DcKind::Memory ? OBJ_MEMDC : OBJ_DC;
    Object* o = Lookup(h);
    if (!o) return 0;
    switch (o->kind) {
    case Kind::Pen: return OBJ_PEN;
    case Kind::Brush: return OBJ_BRUSH;
    case Kind::Font: return OBJ_FONT;
    case Kind::Bitmap: return OBJ_BITMAP;
    case Kind::Region: return OBJ_REGION;
    case Kind::Palette: return OBJ_PAL;
    case Kind::Icon: return 0;
    }
    return 0;
}

int GetObjectA(HANDLE h, int count, LPVOID buf) {
    Object* o = Lookup(h);
    if (!o) return 0;
    auto give = [&](const void* src, int size) {
        if (!buf) return size;
        int n = count < size ? count : size;
        if (n <= 0) return 0;
        std::memcpy(buf, src, static_cast<std::size_t>(n));
        return n;
    };
    switch (o->kind) {
    case Kind::Pen: {
        auto* p = static_cast<Pen*>(o);
        LOGPEN lp{static_cast<UINT>(p->style & PS_STYLE_MASK), POINT{p->width, 0}, p->color};
        return give(&lp, sizeof lp);
    }
    case Kind::Brush: {
        auto* b = static_cast<Brush*>(o);
        LOGBRUSH lb{b->style, b->color, static_cast<ULONG_PTR>(b->hatch)};
        return give(&lb, sizeof lb);
    }
    case Kind::Font: return give(&static_cast<Font*>(o)->lf, sizeof(LOGFONTA));
    case Kind::Bitmap: {
        auto* b = static_cast<Bitmap*>(o);
        BITMAP bm{};
        bm.bmWidth = b->image.width();
        bm.bmHeight = b->image.height();
        bm.bmPlanes = 1;
        bm.bmBitsPixel = static_cast<WORD>(b->bitsPixel);
        bm.bmWidthBytes = b->bitsPixel == 32 ? bm.bmWidth * 4 : ((bm.bmWidth * b->bitsPixel + 15) / 16) * 2;
        bm.bmBits = nullptr;
        if (b->dib) {
            // A DIB section tells where its block is and how its rows are laid out.
            bm.bmWidthBytes = b->dib->stride;
            bm.bmBits = b->dib->bits;
        }
        return give(&bm, sizeof bm);
    }
    case Kind::Palette: {
        WORD n = static_cast<WORD>(static_cast<Palette*>(o)->entries.size());
        return give(&n, sizeof n);
    }
    case Kind::Region: case Kind::Icon: return 0;
    }
    return 0;
}

HPEN CreatePen(int style, int width, COLORREF color) {
    if ((style & PS_STYLE_MASK) > PS_ALTERNATE || width < 0) width = width < 0 ? 0 : width;
    auto* p = new Pen;
    p->style = style;
    p->width = width;
    p->color = color;
    return static_cast<HPEN>(Register(p));
}

HPEN CreatePenIndirect(const LOGPEN* lp) {
    return lp ? CreatePen(static_cast<int>(lp->lopnStyle), lp->lopnWidth.x, lp->lopnColor) : nullptr;
}

HPEN ExtCreatePen(DWORD style, DWORD width, const LOGBRUSH* brush, DWORD, const DWORD*) {
    const COLORREF c = brush ? brush->lbColor : 0;
    if (brush && brush->lbStyle == BS_NULL) style = (style & ~PS_STYLE_MASK) | PS_NULL;
    return CreatePen(static_cast<int>(style), static_cast<int>(width), c);
}

HBRUSH CreateSolidBrush(COLORREF color) {
    auto* b = new Brush;
    b->style = BS_SOLID;
    b->color = color;
    return static_cast<HBRUSH>(Register(b));
}

HBRUSH CreateHatchBrush(int index, COLORREF color) {
    if (index < HS_HORIZONTAL || index > HS_DIAGCROSS) return nullptr;
    auto* b = new Brush;
    b->style = BS_HATCHED;
    b->hatch = index;
    b->color = color;
    return static_cast<HBRUSH>(Register(b));
}

HBRUSH CreatePatternBrush(HBITMAP bitmap) {
    Bitmap* src = AsBitmap(bitmap);
    if (!src) return nullptr;
    auto* b = new Brush;
    b->style = BS_PATTERN;
    b->pattern = QImage(8, 8, QImage::Format_RGB32);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            b->pattern.setPixel(x, y, src->image.pixel(x % src->image.width(), y % src->image.height()));
    return static_cast<HBRUSH>(Register(b));
}

HBRUSH CreateBrushIndirect(const LOGBRUSH* lb) {
    if (!lb) return nullptr;
    switch (lb->lbStyle) {
    case BS_SOLID: return CreateSolidBrush(lb->lbColor);
    case BS_HATCHED: return CreateHatchBrush(static_cast<int>(lb->lbHatch), lb->lbColor);
    case BS_NULL: {
        auto* b = new Brush;
        b->style = BS_NULL;
        return static_cast<HBRUSH>(Register(b));
    }
    case BS_PATTERN: return CreatePatternBrush(reinterpret_cast<HBITMAP>(lb->lbHatch));
    default: return nullptr;
    }
}

HFONT CreateFontIndirectA(const LOGFONTA* lf) {
    if (!lf) return nullptr;
    auto* f = new Font;
    f->lf = *lf;
    f->lf.lfFaceName[LF_FACESIZE - 1] = 0;
    return static_cast<HFONT>(Register(f));
}

HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic, DWORD underline,
                  DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision, DWORD quality,
                  DWORD pitchAndFamily, LPCSTR faceName) {
    LOGFONTA lf{};
    lf.lfHeight = height;
    lf.lfWidth = width;
    lf.lfEscapement = escapement;
    lf.lfOrientation = orientation;
    lf.lfWeight = weight;
    lf.lfItalic = static_cast<BYTE>(italic);
    lf.lfUnderline = static_cast<BYTE>(underline);
    lf.lfStrikeOut = static_cast<BYTE>(strikeOut);
    lf.lfCharSet = static_cast<BYTE>(charSet);
    lf.lfOutPrecision = static_cast<BYTE>(outPrecision);
    lf.lfClipPrecision = static_cast<BYTE>(clipPrecision);
    lf.lfQuality = static_cast<BYTE>(quality);
    lf.lfPitchAndFamily = static_cast<BYTE>(pitchAndFamily);
    if (faceName) std::strncpy(lf.lfFaceName, faceName, LF_FACESIZE - 1);
    return CreateFontIndirectA(&lf);
}

HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPixel, const void* bits) {
    if (width < 0 || height < 0 || planes != 1) return nullptr;
    if (bitsPixel != 1 && bitsPixel != 4 && bitsPixel != 8 && bitsPixel != 16 && bitsPixel != 24 && bitsPixel != 32)
        return nullptr;
    if (width == 0 || height == 0) { width = 1; height = 1; bitsPixel = 1; }
    Bitmap* b = NewBitmap(width, height, static_cast<int>(bitsPixel));
    HBITMAP h = static_cast<HBITMAP>(Register(b));
    if (bits) SetBitmapBits(h, 0xFFFFFFFFu, bits);
    return h;
}

HBITMAP CreateCompatibleBitmap(HDC hdc, int width, int height) {
    Dc* dc = LookupDc(hdc);
    if (!dc || width < 0 || height < 0) return nullptr;
    // Always the 32-bit colour format, also for a memory context that still holds its
    // default bitmap: the layer keeps no monochrome pixels.
    const int bpp = 32;
    if (width == 0 || height == 0) return CreateBitmap(1, 1, 1, 1, nullptr);
    if (static_cast<long long>(width) * height > (1LL << 28)) return nullptr;
    return static_cast<HBITMAP>(Register(NewBitmap(width, height, bpp)));
}

// Row pitch of device-dependent bitmap bits: 2-byte aligned rows, as the platform keeps them.
static int DdbPitch(int w, int bpp) { return bpp == 32 ? w * 4 : ((w * bpp + 15) / 16) * 2; }

LONG GetBitmapBits(HBITMAP bmp, LONG count, LPVOID bits) {
    Bitmap* b = AsBitmap(bmp);
    if (!b || count < 0) return 0;
    DibPull(*b);
    const int w = b->image.width(), h = b->image.height();
    const int pitch = DdbPitch(w, b->bitsPixel);
    const LONG total = static_cast<LONG>(pitch) * h;
    if (!bits) return total;
    LONG n = count < total ? count : total;
    auto* out = static_cast<unsigned char*>(bits);
    std::vector<unsigned char> row(static_cast<std::size_t>(pitch));
    LONG done = 0;
    for (int y = 0; y < h && done < n; ++y) {
        const auto* px = reinterpret_cast<const std::uint32_t*>(b->image.constScanLine(y));
        std::fill(row.begin(), row.end(), 0);
        for (int x = 0; x < w; ++x) {
            const std::uint32_t p = px[x];
            switch (b->bitsPixel) {
            case 32:
                row[x * 4] = p & 0xFF; row[x * 4 + 1] = (p >> 8) & 0xFF; row[x * 4 + 2] = (p >> 16) & 0xFF; row[x * 4 + 3] = 0;
                break;
            case 24:
                row[x * 3] = p & 0xFF; row[x * 3 + 1] = (p >> 8) & 0xFF; row[x * 3 + 2] = (p >> 16) & 0xFF;
                break;
            case 1:
                if ((p & 0xFFFFFF) == 0xFFFFFF) row[x / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
                break;
            default: {  // 8, 4, 16 bits: grey levels
                const unsigned g = ((p >> 16 & 0xFF) * 30 + (p >> 8 & 0xFF) * 59 + (p & 0xFF) * 11) / 100;
                if (b->bitsPixel == 8) row[x] = static_cast<unsigned char>(g);
                else if (b->bitsPixel == 16) { row[x * 2] = static_cast<unsigned char>(g); row[x * 2 + 1] = 0; }
                else row[x / 2] |= static_cast<unsigned char>((g >> 4) << (x % 2 ? 0 : 4));
            }
            }
        }
        const LONG take = n - done < pitch ? n - done : pitch;
        std::memcpy(out + done, row.data(), static_cast<std::size_t>(take));
        done += take;
    }
    return done;
}

LONG SetBitmapBits(HBITMAP bmp, DWORD count, const void* bits) {
    Bitmap* b = AsBitmap(bmp);
    if (!b || !bits) return 0;
    DibPull(*b);
    const int w = b->image.width(), h = b->image.height();
    const int pitch = DdbPitch(w, b->bitsPixel);
    const auto* in = static_cast<const unsigned char*>(bits);
    LONG done = 0;
    for (int y = 0; y < h; ++y) {
        if (static_cast<unsigned long long>(y + 1) * pitch > count) break;
        const unsigned char* row = in + static_cast<std::size_t>(y) * pitch;
        auto* px = reinterpret_cast<std::uint32_t*>(b->image.scanLine(y));
        for (int x = 0; x < w; ++x) {
            switch (b->bitsPixel) {
            case 32: px[x] = kAlpha | row[x * 4] | (row[x * 4 + 1] << 8) | (row[x * 4 + 2] << 16); break;
            case 24: px[x] = kAlpha | row[x * 3] | (row[x * 3 + 1] << 8) | (row[x * 3 + 2] << 16); break;
            case 1: px[x] = (row[x / 8] & (0x80 >> (x % 8))) ? 0xFFFFFFFFu : kAlpha; break;
            case 8: px[x] = kAlpha | (row[x] * 0x010101u); break;
            case 16: px[x] = kAlpha | (row[x * 2] * 0x010101u); break;
            default: {
                const unsigned v = (row[x / 2] >> (x % 2 ? 0 : 4)) & 0xF;
                px[x] = kAlpha | ((v * 17) * 0x010101u);
            }
            }
        }
        done += pitch;
    }
    DibPush(*b, b->image.rect());
    return done;
}

// Regions ---------------------------------------------------------------------------------------
static int RegionKind(const QRegion& r) {
    if (r.isEmpty()) return NULLREGION;
    return r.rectCount() == 1 ? SIMPLEREGION : COMPLEXREGION;
}
int orlex::gdi::RegionKindOf(const QRegion& r) { return RegionKind(r); }

static QRect NormRect(int x1, int y1, int x2, int y2) {
    if (x2 < x1) std::swap(x1, x2);
    if (y2 < y1) std::swap(y1, y2);
    return QRect(QPoint(x1, y1), QPoint(x2 - 1, y2 - 1));
}

static HRGN NewRegion(const QRegion& q) {
    auto* r = new Region;
    r->rgn = q;
    return static_cast<HRGN>(Register(r));
}

HRGN CreateRectRgn(int x1, int y1, int x2, int y2) {
    QRect r = NormRect(x1, y1, x2, y2);
    return NewRegion(r.isEmpty() ? QRegion() : QRegion(r));
}
HRGN CreateRectRgnIndirect(const RECT* r) { return r ? CreateRectRgn(r->left, r->top, r->right, r->bottom) : nullptr; }

QRegion orlex::gdi::EllipseRegion(int x1, int y1, int x2, int y2) {
    std::vector<Span> spans;
    EllipseSpans(x1, y1, x2, y2, spans);
    QRegion q;
    for (const Span& s : spans) q += QRect(s.x0, s.y, s.x1 - s.x0, 1);
    return q;
}

HRGN CreateEllipticRgn(int x1, int y1, int x2, int y2) { return NewRegion(EllipseRegion(x1, y1, x2, y2)); }

QRegion orlex::gdi::PolygonRegion(const POINT* pts, const INT* counts, int polys, int mode, const QRect& limit) {
    QPainterPath path;
    path.setFillRule(mode == WINDING ? Qt::WindingFill : Qt::OddEvenFill);
    const POINT* p = pts;
    for (int k = 0; k < polys; ++k) {
        QPolygonF poly;
        for (int i = 0; i < counts[k]; ++i) poly << QPointF(p[i].x, p[i].y);
        p += counts[k];
        if (poly.size() >= 3) {
            poly << poly.front();
            path.addPolygon(poly);
        }
    }
    QRect box = path.boundingRect().toAlignedRect().adjusted(0, 0, 1, 1);
    if (!limit.isNull()) box &= limit;
    if (box.isEmpty() || box.width() > 16384 || box.height() > 16384) return {};
    // Pixels whose centre lies inside, the right and bottom edges left out.
    QImage mask(box.size(), QImage::Format_Grayscale8);
    if (mask.isNull()) return {};
    mask.fill(0);
    {
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.translate(-box.left() - 0.5, -box.top() - 0.5);
        painter.fillPath(path, Qt::white);
    }
    QRegion q;
    for (int y = 0; y < mask.height(); ++y) {
        const uchar* row = mask.constScanLine(y);
        int x = 0;
        while (x < mask.width()) {
            while (x < mask.width() && !row[x]) ++x;
            const int x0 = x;
            while (x < mask.width() && row[x]) ++x;
            if (x > x0) q += QRect(box.left() + x0, box.top() + y, x - x0, 1);
        }
    }
    return q;
}

HRGN CreatePolygonRgn(const POINT* pts, int count, int mode) {
    if (!pts || count < 2) return nullptr;
    return NewRegion(PolygonRegion(pts, &count, 1, mode));
}

int CombineRgn(HRGN dst, HRGN a, HRGN b, int mode) {
    Region* d = AsRegion(dst);
    Region* ra = AsRegion(a);
    Region* rb = AsRegion(b);
    if (!d || !ra || (mode != RGN_COPY && !rb)) return ERROR;
    switch (mode) {
    case RGN_AND: d->rgn = ra->rgn & rb->rgn; break;
    case RGN_OR: d->rgn = ra->rgn | rb->rgn; break;
    case RGN_XOR: d->rgn = ra->rgn ^ rb->rgn; break;
    case RGN_DIFF: d->rgn = ra->rgn - rb->rgn; break;
    case RGN_COPY: d->rgn = ra->rgn; break;
    default: return ERROR;
    }
    return RegionKind(d->rgn);
}

int OffsetRgn(HRGN rgn, int dx, int dy) {
    Region* r = AsRegion(rgn);
    if (!r) return ERROR;
    r->rgn.translate(dx, dy);
    return RegionKind(r->rgn);
}

int GetRgnBox(HRGN rgn, LPRECT out) {
    Region* r = AsRegion(rgn);
    if (!r || !out) return ERROR;
    const QRect b = r->rgn.boundingRect();
    *out = r->rgn.isEmpty() ? RECT{0, 0, 0, 0} : RECT{b.left(), b.top(), b.right() + 1, b.bottom() + 1};
    return RegionKind(r->rgn);
}

BOOL PtInRegion(HRGN rgn, int x, int y) {
    Region* r = AsRegion(rgn);
    return r && r->rgn.contains(QPoint(x, y));
}

BOOL RectInRegion(HRGN rgn, const RECT* rc) {
    Region* r = AsRegion(rgn);
    if (!r || !rc) return FALSE;
    QRect q = NormRect(rc->left, rc->top, rc->right, rc->bottom);
    return !q.isEmpty() && r->rgn.intersects(q);
}

BOOL EqualRgn(HRGN a, HRGN b) {
    Region* ra = AsRegion(a);
    Region* rb = AsRegion(b);
    return ra && rb && ra->rgn == rb->rgn;
}

BOOL SetRectRgn(HRGN rgn, int x1, int y1, int x2, int y2) {
    Region* r = AsRegion(rgn);
    if (!r) return FALSE;
    QRect q = NormRect(x1, y1, x2, y2);
    r->rgn = q.isEmpty() ? QRegion() : QRegion(q);
    return TRUE;
}

// Palettes --------------------------------------------------------------------------------------
HPALETTE CreatePalette(const LOGPALETTE* lp) {
    if (!lp || lp->palNumEntries == 0 || lp->palVersion != 0x300) return nullptr;
    auto* p = new Palette;
    p->entries.assign(lp->palPalEntry, lp->palPalEntry + lp->palNumEntries);
    return static_cast<HPALETTE>(Register(p));
}

UINT GetPaletteEntries(HPALETTE pal, UINT start, UINT count, PALETTEENTRY* out) {
    Palette* p = AsPalette(pal);
    if (!p) return 0;
    const UINT n = static_cast<UINT>(p->entries.size());
    if (!out) return n;
    UINT i = 0;
    for (; i < count && start + i < n; ++i) out[i] = p->entries[start + i];
    return i;
}

UINT SetPaletteEntries(HPALETTE pal, UINT start, UINT count, const PALETTEENTRY* in) {
    Palette* p = AsPalette(pal);
    if (!p || !in || p->stock) return 0;
    UINT i = 0;
    for (; i < count && start + i < p->entries.size(); ++i) p->entries[start + i] = in[i];
    return i;
}

UINT GetSystemPaletteEntries(HDC, UINT, UINT, PALETTEENTRY*) { return 0; }

// System colours and metrics ------------------------------------------------------------------------
static const COLORREF kSysColors[31] = {
    RGB(212, 208, 200), RGB(58, 110, 165), RGB(10, 36, 106),  RGB(128, 128, 128), RGB(212, 208, 200),
    RGB(255, 255, 255), RGB(0, 0, 0),      RGB(0, 0, 0),      RGB(0, 0, 0),       RGB(255, 255, 255),
    RGB(212, 208, 200), RGB(212, 208, 200), RGB(128, 128, 128), RGB(10, 36, 106), RGB(255, 255, 255),
    RGB(212, 208, 200), RGB(128, 128, 128), RGB(128, 128, 128), RGB(0, 0, 0),     RGB(212, 208, 200),
    RGB(255, 255, 255), RGB(64, 64, 64),   RGB(212, 208, 200), RGB(0, 0, 0),      RGB(255, 255, 225),
    RGB(181, 181, 181), RGB(0, 0, 128),    RGB(166, 202, 240), RGB(192, 192, 192), RGB(49, 106, 197),
    RGB(236, 233, 216)};

DWORD GetSysColor(int index) { return index >= 0 && index < 31 ? kSysColors[index] : 0; }

HBRUSH GetSysColorBrush(int index) {
    static std::mutex mu;
    static HBRUSH brushes[31] = {};
    if (index < 0 || index >= 31) return nullptr;
    std::lock_guard lock(mu);
    if (!brushes[index]) {
        auto* b = new Brush;
        b->style = BS_SOLID;
        b->color = kSysColors[index];
        b->stock = true;
        brushes[index] = static_cast<HBRUSH>(Register(b));
    }
    return brushes[index];
}

int GetSystemMetrics(int index) {
    switch (index) {
    case SM_CXSCREEN: case SM_CXFULLSCREEN: case SM_CXVIRTUALSCREEN: return kScreenW;
    case SM_CYSCREEN: case SM_CYVIRTUALSCREEN: return kScreenH;
    case SM_CYFULLSCREEN: return kScreenH - 40;
    case SM_CXVSCROLL: case SM_CYHSCROLL: case SM_CYVSCROLL: case SM_CXHSCROLL:
    case SM_CYVTHUMB: case SM_CXHTHUMB: return 17;
    case SM_CYCAPTION: return 19;
    case SM_CXBORDER: case SM_CYBORDER: return 1;
    case SM_CXDLGFRAME: case SM_CYDLGFRAME: return 3;
    case SM_CXICON: case SM_CYICON: case SM_CXCURSOR: case SM_CYCURSOR: return 32;
    case SM_CYMENU: return 19;
    case SM_CXMIN: return 112;
    case SM_CYMIN: return 27;
    case SM_CXSIZE: case SM_CYSIZE: return 18;
    case SM_CXFRAME: case SM_CYFRAME: return 4;
    case SM_CXDOUBLECLK: case SM_CYDOUBLECLK: return 4;
    case SM_CXEDGE: case SM_CYEDGE: return 2;
    case SM_CXSMICON: case SM_CYSMICON: return 16;
    case SM_CXMENUCHECK: case SM_CYMENUCHECK: return 13;
    case SM_CXDRAG: case SM_CYDRAG: return 4;
    case SM_CMOUSEBUTTONS: return 3;
    case SM_MOUSEWHEELPRESENT: case SM_CMONITORS: return 1;
    case SM_XVIRTUALSCREEN: case SM_YVIRTUALSCREEN: return 0;
    default: return 0;
    }
}

int MulDiv(int n, int num, int den) {
    if (den == 0) return -1;
    long long p = static_cast<long long>(n) * num;
    const bool neg = (p < 0) != (den < 0);
    long long ap = p < 0 ? -p : p, ad = den < 0 ? -static_cast<long long>(den) : den;
    long long q = (ap + ad / 2) / ad;
    q = neg ? -q : q;
    if (q > 0x7FFFFFFFLL || q < -0x80000000LL) return -1;
    return static_cast<int>(q);
}

// C++ wrappers of objects -------------------------------------------------------------------------
namespace {

CGdiObject* TempWrapperFor(HGDIOBJ h) {
    Object* o = Lookup(h);
    if (!o || o->kind == Kind::Icon) return nullptr;
    Registry& r = Reg();
    std::lock_guard lock(r.mu);
    auto perm = r.permanent.find(h);
    if (perm != r.permanent.end()) return perm->second;
    auto& slot = r.temps[h];
    if (!slot) {
        switch (o->kind) {
        case Kind::Pen: slot = std::make_unique<CPen>(); break;
        case Kind::Brush: slot = std::make_unique<CBrush>(); break;
        case Kind::Font: slot = std::make_unique<CFont>(); break;
        case Kind::Bitmap: slot = std::make_unique<CBitmap>(); break;
        case Kind::Region: slot = std::make_unique<CRgn>(); break;
        case Kind::Palette: slot = std::make_unique<CPalette>(); break;
        case Kind::Icon: break;
        }
        slot->m_hObject = h;
    }
    return slot.get();
}

void SetPermanent(HGDIOBJ h, CGdiObject* w) {
    if (!h) return;
    Registry& r = Reg();
    std::lock_guard lock(r.mu);
    if (w) r.permanent[h] = w;
    else r.permanent.erase(h);
}

}  // namespace

CGdiObject::~CGdiObject() { DeleteObject(); }

CGdiObject* CGdiObject::FromHandle(HGDIOBJ h) { return TempWrapperFor(h); }

BOOL CGdiObject::Attach(HGDIOBJ h) {
    if (!h || m_hObject) return FALSE;
    m_hObject = h;
    SetPermanent(h, this);
    return TRUE;
}

HGDIOBJ CGdiObject::Detach() {
    HGDIOBJ h = m_hObject;
    if (h) SetPermanent(h, nullptr);
    m_hObject = nullptr;
    return h;
}

BOOL CGdiObject::DeleteObject() {
    if (!m_hObject) return FALSE;
    HGDIOBJ h = Detach();
    return ::DeleteObject(h);
}

int CGdiObject::GetObject(int count, void* buf) const { return ::GetObjectA(m_hObject, count, buf); }
UINT CGdiObject::GetObjectType() const { return ::GetObjectType(m_hObject); }
BOOL CGdiObject::CreateStockObject(int index) { return Attach(::GetStockObject(index)); }

CPen::CPen(int style, int width, COLORREF color) { CreatePen(style, width, color); }
CPen::CPen(int style, int width, const LOGBRUSH* brush, int n, const DWORD* s) { CreatePen(style, width, brush, n, s); }
CPen* CPen::FromHandle(HPEN h) { return static_cast<CPen*>(CGdiObject::FromHandle(h)); }
BOOL CPen::CreatePen(int style, int width, COLORREF color) { return Attach(::CreatePen(style, width, color)); }
BOOL CPen::CreatePen(int style, int width, const LOGBRUSH* brush, int n, const DWORD* s) {
    return Attach(::ExtCreatePen(static_cast<DWORD>(style), static_cast<DWORD>(width), brush, static_cast<DWORD>(n), s));
}
BOOL CPen::CreatePenIndirect(const LOGPEN* pen) { return Attach(::CreatePenIndirect(pen)); }
int CPen::GetLogPen(LOGPEN* pen) const { return ::GetObjectA(m_hObject, sizeof(LOGPEN), pen); }
int CPen::GetExtLogPen(EXTLOGPEN* pen) const {
    Pen* p = AsPen(m_hObject);
    if (!p || !pen) return 0;
    *pen = EXTLOGPEN{static_cast<DWORD>(p->style), static_cast<DWORD>(p->width), BS_SOLID, p->color, 0, 0, {0}};
    return sizeof(EXTLOGPEN);
}

CBrush::CBrush(COLORREF color) { CreateSolidBrush(color); }
CBrush::CBrush(int hatchIndex, COLORREF color) { CreateHatchBrush(hatchIndex, color); }
CBrush::CBrush(CBitmap* pattern) { CreatePatternBrush(pattern); }
CBrush* CBrush::FromHandle(HBRUSH h) { return static_cast<CBrush*>(CGdiObject::FromHandle(h)); }
BOOL CBrush::CreateSolidBrush(COLORREF color) { return Attach(::CreateSolidBrush(color)); }
BOOL CBrush::CreateHatchBrush(int index, COLORREF color) { return Attach(::CreateHatchBrush(index, color)); }
BOOL CBrush::CreateBrushIndirect(const LOGBRUSH* brush) { return Attach(::CreateBrushIndirect(brush)); }
BOOL CBrush::CreatePatternBrush(CBitmap* bitmap) {
    return bitmap ? Attach(::CreatePatternBrush(static_cast<HBITMAP>(bitmap->m_hObject))) : FALSE;
}
BOOL CBrush::CreateSysColorBrush(int index) { return Attach(::GetSysColorBrush(index)); }
int CBrush::GetLogBrush(LOGBRUSH* brush) const { return ::GetObjectA(m_hObject, sizeof(LOGBRUSH), brush); }

CFont* CFont::FromHandle(HFONT h) { return static_cast<CFont*>(CGdiObject::FromHandle(h)); }
BOOL CFont::CreateFontIndirect(const LOGFONT* lf) { return Attach(::CreateFontIndirectA(lf)); }
BOOL CFont::CreateFont(int height, int width, int escapement, int orientation, int weight, BYTE italic, BYTE underline,
                       BYTE strikeOut, BYTE charSet, BYTE outPrecision, BYTE clipPrecision, BYTE quality,
                       BYTE pitchAndFamily, LPCSTR faceName) {
    return Attach(::CreateFontA(height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet,
                                outPrecision, clipPrecision, quality, pitchAndFamily, faceName));
}
BOOL CFont::CreatePointFont(int pointSize, LPCSTR faceName, CDC* dc) {
    LOGFONT lf{};
    lf.lfCharSet = DEFAULT_CHARSET;
    lf.lfHeight = pointSize;
    if (faceName) std::strncpy(lf.lfFaceName, faceName, LF_FACESIZE - 1);
    return CreatePointFontIndirect(&lf, dc);
}
BOOL CFont::CreatePointFontIndirect(const LOGFONT* lf, CDC* dc) {
    if (!lf) return FALSE;
    LOGFONT l = *lf;
    // Tenths of a point to logical units of the context: height = pt/10 * dpi / 72.
    const int dpi = dc && dc->m_hDC ? dc->GetDeviceCaps(LOGPIXELSY) : kScreenDpi;
    POINT p{0, MulDiv(lf->lfHeight, dpi, 720)};
    POINT o{0, 0};
    if (dc && dc->m_hDC) {
        dc->DPtoLP(&p);
        dc->DPtoLP(&o);
    }
    l.lfHeight = -std::abs(p.y - o.y);
    return CreateFontIndirect(&l);
}
int CFont::GetLogFont(LOGFONT* lf) const { return ::GetObjectA(m_hObject, sizeof(LOGFONT), lf); }

CBitmap* CBitmap::FromHandle(HBITMAP h) { return static_cast<CBitmap*>(CGdiObject::FromHandle(h)); }
BOOL CBitmap::CreateBitmap(int w, int h, UINT planes, UINT bpp, const void* bits) {
    return Attach(::CreateBitmap(w, h, planes, bpp, bits));
}
BOOL CBitmap::CreateBitmapIndirect(const BITMAP* bm) {
    return bm ? CreateBitmap(bm->bmWidth, bm->bmHeight, bm->bmPlanes, bm->bmBitsPixel, bm->bmBits) : FALSE;
}
BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int w, int h) {
    return dc ? Attach(::CreateCompatibleBitmap(dc->m_hDC, w, h)) : FALSE;
}
BOOL CBitmap::LoadBitmap(UINT id) { return Attach(::LoadBitmapA(nullptr, reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(id)))); }
BOOL CBitmap::LoadBitmap(LPCSTR name) { return Attach(::LoadBitmapA(nullptr, name)); }
BOOL CBitmap::LoadOEMBitmap(UINT) { return FALSE; }
int CBitmap::GetBitmap(BITMAP* bm) const { return ::GetObjectA(m_hObject, sizeof(BITMAP), bm); }
DWORD CBitmap::GetBitmapBits(DWORD count, void* bits) const {
    return static_cast<DWORD>(::GetBitmapBits(static_cast<HBITMAP>(m_hObject), static_cast<LONG>(count), bits));
}
DWORD CBitmap::SetBitmapBits(DWORD count, const void* bits) {
    return static_cast<DWORD>(::SetBitmapBits(static_cast<HBITMAP>(m_hObject), count, bits));
}
CSize CBitmap::SetBitmapDimension(int w, int h) {
    Bitmap* b = AsBitmap(m_hObject);
    if (!b) return CSize();
    CSize old(b->dimension);
    b->dimension = SIZE{w, h};
    return old;
}
CSize CBitmap::GetBitmapDimension() const {
    Bitmap* b = AsBitmap(m_hObject);
    return b ? CSize(b->dimension) : CSize();
}

CRgn* CRgn::FromHandle(HRGN h) { return static_cast<CRgn*>(CGdiObject::FromHandle(h)); }
BOOL CRgn::CreateRectRgn(int x1, int y1, int x2, int y2) { return Attach(::CreateRectRgn(x1, y1, x2, y2)); }
BOOL CRgn::CreateRectRgnIndirect(LPCRECT r) { return Attach(::CreateRectRgnIndirect(r)); }
BOOL CRgn::CreateEllipticRgn(int x1, int y1, int x2, int y2) { return Attach(::CreateEllipticRgn(x1, y1, x2, y2)); }
BOOL CRgn::CreateEllipticRgnIndirect(LPCRECT r) {
    return r ? CreateEllipticRgn(r->left, r->top, r->right, r->bottom) : FALSE;
}
BOOL CRgn::CreatePolygonRgn(const POINT* pts, int count, int mode) { return Attach(::CreatePolygonRgn(pts, count, mode)); }
BOOL CRgn::CreatePolyPolygonRgn(const POINT* pts, const INT* counts, int polygons, int mode) {
    if (!pts || !counts || polygons <= 0) return FALSE;
    return Attach(NewRegion(PolygonRegion(pts, counts, polygons, mode)));
}
BOOL CRgn::CreateRoundRectRgn(int x1, int y1, int x2, int y2, int w, int h) {
    QPainterPath path;
    QRect r = NormRect(x1, y1, x2, y2);
    path.addRoundedRect(QRectF(r.left(), r.top(), r.width(), r.height()), w / 2.0, h / 2.0);
    std::vector<POINT> pts;
    for (const QPolygonF& poly : path.toFillPolygons())
        for (const QPointF& p : poly) pts.push_back(POINT{static_cast<LONG>(std::lround(p.x())), static_cast<LONG>(std::lround(p.y()))});
    int n = static_cast<int>(pts.size());
    return n >= 3 ? Attach(NewRegion(PolygonRegion(pts.data(), &n, 1, WINDING))) : CreateRectRgn(x1, y1, x2, y2);
}
void CRgn::SetRectRgn(int x1, int y1, int x2, int y2) { ::SetRectRgn(static_cast<HRGN>(m_hObject), x1, y1, x2, y2); }
void CRgn::SetRectRgn(LPCRECT r) { if (r) SetRectRgn(r->left, r->top, r->right, r->bottom); }
int CRgn::CombineRgn(const CRgn* a, const CRgn* b, int mode) {
    return ::CombineRgn(static_cast<HRGN>(m_hObject), a ? static_cast<HRGN>(a->m_hObject) : nullptr,
                        b ? static_cast<HRGN>(b->m_hObject) : nullptr, mode);
}
int CRgn::CopyRgn(const CRgn* src) { return CombineRgn(src, nullptr, RGN_COPY); }
BOOL CRgn::EqualRgn(const CRgn* other) const {
    return other && ::EqualRgn(static_cast<HRGN>(m_hObject), static_cast<HRGN>(other->m_hObject));
}
int CRgn::OffsetRgn(int dx, int dy) { return ::OffsetRgn(static_cast<HRGN>(m_hObject), dx, dy); }
int CRgn::OffsetRgn(POINT p) { return OffsetRgn(p.x, p.y); }
int CRgn::GetRgnBox(LPRECT r) const { return ::GetRgnBox(static_cast<HRGN>(m_hObject), r); }
BOOL CRgn::PtInRegion(int x, int y) const { return ::PtInRegion(static_cast<HRGN>(m_hObject), x, y); }
BOOL CRgn::PtInRegion(POINT p) const { return PtInRegion(p.x, p.y); }
BOOL CRgn::RectInRegion(LPCRECT r) const { return ::RectInRegion(static_cast<HRGN>(m_hObject), r); }

CPalette* CPalette::FromHandle(HPALETTE h) { return static_cast<CPalette*>(CGdiObject::FromHandle(h)); }
BOOL CPalette::CreatePalette(const LOGPALETTE* lp) { return Attach(::CreatePalette(lp)); }
BOOL CPalette::CreateHalftonePalette(CDC*) {
    // A 6x6x6 colour cube with a grey ramp, as a halftone palette offers.
    std::vector<unsigned char> buf(sizeof(LOGPALETTE) + 256 * sizeof(PALETTEENTRY));
    auto* lp = reinterpret_cast<LOGPALETTE*>(buf.data());
    lp->palVersion = 0x300;
    lp->palNumEntries = 256;
    int i = 0;
    for (int r = 0; r < 6; ++r)
        for (int g = 0; g < 6; ++g)
            for (int b = 0; b < 6; ++b)
                lp->palPalEntry[i++] = PALETTEENTRY{static_cast<BYTE>(r * 51), static_cast<BYTE>(g * 51), static_cast<BYTE>(b * 51), 0};
    for (int k = 0; i < 256; ++i, ++k) {
        const BYTE v = static_cast<BYTE>(k * 255 / 39);
        lp->palPalEntry[i] = PALETTEENTRY{v, v, v, 0};
    }
    return CreatePalette(lp);
}
int CPalette::GetEntryCount() const {
    Palette* p = AsPalette(m_hObject);
    return p ? static_cast<int>(p->entries.size()) : 0;
}
UINT CPalette::GetPaletteEntries(UINT start, UINT count, PALETTEENTRY* out) const {
    return ::GetPaletteEntries(static_cast<HPALETTE>(m_hObject), start, count, out);
}
UINT CPalette::SetPaletteEntries(UINT start, UINT count, const PALETTEENTRY* in) {
    return ::SetPaletteEntries(static_cast<HPALETTE>(m_hObject), start, count, in);
}
UINT CPalette::GetNearestPaletteIndex(COLORREF c) const {
    Palette* p = AsPalette(m_hObject);
    if (!p || p->entries.empty()) return CLR_INVALID;
    UINT best = 0;
    long bestD = 1L << 30;
    for (UINT i = 0; i < p->entries.size(); ++i) {
        const auto& e = p->entries[i];
        const long dr = e.peRed - GetRValue(c), dg = e.peGreen - GetGValue(c), db = e.peBlue - GetBValue(c);
        const long d = dr * dr + dg * dg + db * db;
        if (d < bestD) { bestD = d; best = i; }
    }
    return best;
}
BOOL CPalette::ResizePalette(UINT entries) {
    Palette* p = AsPalette(m_hObject);
    if (!p || p->stock || entries == 0) return FALSE;
    p->entries.resize(entries, PALETTEENTRY{0, 0, 0, 0});
    return TRUE;
}
