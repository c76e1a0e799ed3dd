// Device contexts: their state (selected objects, colours, modes, coordinate transform,
// clip), SaveDC/RestoreDC, and every drawing operation except text. Lines of width 0 and 1
// go through the layer's own rasteriser; shapes are row spans; blits walk rows by pointer.
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <unordered_map>
#include <unordered_set>

#include "foundation/platform/gui/gdi_dc_p.h"
#include "foundation/platform/gui/gdi_printers_p.h"
#include "foundation/platform/gui/surface_p.h"
#include "foundation/platform/gui/wnd_p.h"

namespace orlex::gdi {
namespace {

// Context handles are numbers that are never given out twice, so a handle kept after its
// release fails instead of reaching a newer context at the same address.
struct DcRegistry {
    std::recursive_mutex mu;
    std::unordered_map<HDC, Dc*> live;
    std::uintptr_t next = 0x10000;
    std::unordered_map<HDC, std::unique_ptr<CDC>> temps;
};
DcRegistry& DReg() {
    static DcRegistry* r = new DcRegistry;
    return *r;
}

}  // namespace

Dc::~Dc() = default;

Dc* LookupDc(HDC h) {
    if (!h) return nullptr;
    DcRegistry& r = DReg();
    std::lock_guard lock(r.mu);
    auto it = r.live.find(h);
    return it == r.live.end() ? nullptr : it->second;
}

HDC RegisterDc(Dc* dc) {
    DcRegistry& r = DReg();
    std::lock_guard lock(r.mu);
    r.next += 0x10;
    HDC h = reinterpret_cast<HDC>(r.next);
    r.live.emplace(h, dc);
    return h;
}

// Lets go of every selected object and forgets the context.
void DestroyDc(HDC h) {
    Dc* dc = LookupDc(h);
    if (!dc) return;
    std::unique_ptr<CDC> temp;
    {
        DcRegistry& r = DReg();
        std::lock_guard lock(r.mu);
        r.live.erase(h);
        auto it = r.temps.find(h);
        if (it != r.temps.end()) {
            temp = std::move(it->second);
            r.temps.erase(it);
        }
    }
    if (temp) temp->m_hDC = temp->m_hAttribDC = nullptr;
    auto unselect = [](const DcAttrs& a) {
        NoteSelected(Lookup(a.pen), -1);
        NoteSelected(Lookup(a.brush), -1);
        NoteSelected(Lookup(a.font), -1);
        NoteSelected(Lookup(a.bitmap), -1);
        NoteSelected(Lookup(a.palette), -1);
    };
    for (const DcAttrs& s : dc->saved) unselect(s);
    unselect(dc->a);
    delete dc;
}

CDC* TempDcWrapper(HDC h) {
    Dc* dc = LookupDc(h);
    if (!dc) return nullptr;
    if (dc->attached) return dc->attached;
    DcRegistry& r = DReg();
    std::lock_guard lock(r.mu);
    auto& slot = r.temps[h];
    if (!slot) {
        slot = std::make_unique<CDC>();
        slot->m_hDC = slot->m_hAttribDC = h;
        slot->m_bPrinting = dc->kind == DcKind::Printer;
    }
    return slot.get();
}

// Selection bookkeeping: the context holds a count on what it has selected, its saved
// states included, so a deleted object stays valid until no state refers to it.
static void Hold(HGDIOBJ h) { NoteSelected(Lookup(h), +1); }
static void Drop(HGDIOBJ h) { NoteSelected(Lookup(h), -1); }

static Dc* NewDc(DcKind kind) {
    auto* dc = new Dc;
    dc->kind = kind;
    dc->a.pen = static_cast<HPEN>(Stock(BLACK_PEN));
    dc->a.brush = static_cast<HBRUSH>(Stock(WHITE_BRUSH));
    dc->a.font = static_cast<HFONT>(Stock(SYSTEM_FONT));
    dc->a.palette = static_cast<HPALETTE>(Stock(DEFAULT_PALETTE));
    Hold(dc->a.pen);
    Hold(dc->a.brush);
    Hold(dc->a.font);
    Hold(dc->a.palette);
    return dc;
}

HDC NewMemoryDc() {
    Dc* dc = NewDc(DcKind::Memory);
    // A new memory context holds a 1x1 monochrome bitmap.
    static HBITMAP stockBitmap = [] {
        Bitmap* b = NewBitmap(1, 1, 1);
        b->stock = true;
        return static_cast<HBITMAP>(Register(b));
    }();
    dc->a.bitmap = stockBitmap;
    Hold(dc->a.bitmap);
    return RegisterDc(dc);
}

HDC NewWindowDc(HWND hwnd, bool client, bool paint) {
    Dc* dc = NewDc(DcKind::Window);
    dc->hwnd = hwnd;
    dc->client = client;
    dc->paint = paint;
    return RegisterDc(dc);
}

HDC NewScreenDc() {
    Dc* dc = NewDc(DcKind::Screen);
    return RegisterDc(dc);
}

HDC NewPrinterDc(const char* device, const DEVMODEA* dm) {
    // Only a printer that is there gives a context.
    if (device && !IsKnownPrinter(QuerySystemPrinters(), device)) return nullptr;
    Dc* dc = NewDc(DcKind::Printer);
    dc->print = NewPrintJob(device, dm);
    return RegisterDc(dc);
}

QImage& ScreenImage() {
    static QImage* img = [] {
        auto* i = new QImage(kScreenW, kScreenH, QImage::Format_RGB32);
        i->fill(ToPixel(RGB(58, 110, 165)));
        return i;
    }();
    return *img;
}

// Coordinates -------------------------------------------------------------------------------------
static long long RoundDiv(long long n, long long d) {
    if (d < 0) { n = -n; d = -d; }
    return n >= 0 ? (n + d / 2) / d : -((-n + d / 2) / d);
}

POINT LpToDp(const Dc& dc, POINT p) {
    const DcAttrs& a = dc.a;
    if (a.mapMode == MM_TEXT) return POINT{p.x - a.wOrg.x + a.vOrg.x, p.y - a.wOrg.y + a.vOrg.y};
    return POINT{static_cast<LONG>(RoundDiv(static_cast<long long>(p.x - a.wOrg.x) * a.vExt.cx, a.wExt.cx) + a.vOrg.x),
                 static_cast<LONG>(RoundDiv(static_cast<long long>(p.y - a.wOrg.y) * a.vExt.cy, a.wExt.cy) + a.vOrg.y)};
}

POINT DpToLp(const Dc& dc, POINT p) {
    const DcAttrs& a = dc.a;
    if (a.mapMode == MM_TEXT) return POINT{p.x - a.vOrg.x + a.wOrg.x, p.y - a.vOrg.y + a.wOrg.y};
    return POINT{static_cast<LONG>(RoundDiv(static_cast<long long>(p.x - a.vOrg.x) * a.wExt.cx, a.vExt.cx) + a.wOrg.x),
                 static_cast<LONG>(RoundDiv(static_cast<long long>(p.y - a.vOrg.y) * a.wExt.cy, a.vExt.cy) + a.wOrg.y)};
}

int ScaleLenX(const Dc& dc, int len) {
    if (dc.a.mapMode == MM_TEXT) return len;
    return static_cast<int>(std::llabs(RoundDiv(static_cast<long long>(len) * dc.a.vExt.cx, dc.a.wExt.cx)));
}
int ScaleLenY(const Dc& dc, int len) {
    if (dc.a.mapMode == MM_TEXT) return len;
    return static_cast<int>(std::llabs(RoundDiv(static_cast<long long>(len) * dc.a.vExt.cy, dc.a.wExt.cy)));
}

std::uint32_t ResolveColor(const Dc& dc, COLORREF c) {
    if ((c >> 24) == 0x01) {
        Palette* p = AsPalette(dc.a.palette);
        const unsigned i = c & 0xFFFF;
        if (p && i < p->entries.size()) {
            const auto& e = p->entries[i];
            return ToPixel(RGB(e.peRed, e.peGreen, e.peBlue));
        }
        return ToPixel(0);
    }
    return ToPixel(c & 0x00FFFFFF);
}

static int DeviceDpi(const Dc& dc) {
    if (dc.dpi) return dc.dpi;
    return dc.kind == DcKind::Printer && dc.print ? dc.print->settings.dpi : kScreenDpi;
}

// Targets ---------------------------------------------------------------------------------------
bool Acquire(Dc& dc, Target& t) {
    QRegion visible;
    switch (dc.kind) {
    case DcKind::Memory: {
        Bitmap* b = AsBitmap(dc.a.bitmap);
        if (!b) return false;
        if (b->dib) {
            DibPull(*b);
            t.dib = b;
        }
        t.img = &b->image;
        t.origin = QPoint(0, 0);
        visible = QRegion(b->image.rect());
        break;
    }
    case DcKind::Window: {
        detail::DrawTarget dt;
        if (!detail::WindowDrawTarget(dc.hwnd, dc.client, dt) || !dt.image) return false;
        t.img = dt.image;
        t.origin = dt.origin;
        visible = dt.visible & QRegion(dt.image->rect());
        t.window = true;
        break;
    }
    case DcKind::Screen:
        // The screen shows every visible top-level window in stacking order; composed
        // afresh so that a capture sees what is there now.
        ScreenImage() = detail::ComposeScreen(QRect(0, 0, kScreenW, kScreenH));
        t.img = &ScreenImage();
        visible = QRegion(t.img->rect());
        break;
    case DcKind::Printer:
        if (!dc.print || dc.print->page.isNull()) return false;
        t.img = &dc.print->page;
        visible = QRegion(t.img->rect());
        break;
    }
    if (dc.paint) visible &= dc.paintClip.translated(t.origin);
    if (dc.a.hasClip) visible &= dc.a.clip.translated(t.origin);
    if (visible.isEmpty()) return false;
    t.rects.assign(visible.begin(), visible.end());
    t.bound = visible.boundingRect();
    return true;
}

void Release(Target& t) {
    if (t.window && !t.touched.isNull() && t.img) detail::SurfaceTouched(t.img, t.touched);
    if (t.dib && !t.touched.isNull()) DibPush(*t.dib, t.touched);
}

// The device-coordinate clip of the context, without the window's own visibility.
static QRegion DeviceClip(Dc& dc) {
    QRegion r;
    switch (dc.kind) {
    case DcKind::Memory: {
        Bitmap* b = AsBitmap(dc.a.bitmap);
        r = b ? QRegion(b->image.rect()) : QRegion();
        break;
    }
    case DcKind::Window: {
        detail::DrawTarget dt;
        if (detail::WindowDrawTarget(dc.hwnd, dc.client, dt)) r = dt.visible.translated(-dt.origin);
        break;
    }
    case DcKind::Screen: r = QRegion(0, 0, kScreenW, kScreenH); break;
    case DcKind::Printer:
        if (dc.print) r = QRegion(0, 0, dc.print->pageW, dc.print->pageH);
        break;
    }
    if (dc.paint) r &= dc.paintClip;
    if (dc.a.hasClip) r &= dc.a.clip;
    return r;
}

// Pixel writing ---------------------------------------------------------------------------------
namespace {

// Writes single pixels (lines, outlines) through a raster operation; device coordinates.
struct PointWriter {
    Target& t;
    Rop2 rop;
    int minX = INT32_MAX, minY = INT32_MAX, maxX = INT32_MIN, maxY = INT32_MIN;
    PointWriter(Target& target, int mode) : t(target), rop(mode) {}
    void Put(int dx, int dy, std::uint32_t color) {
        const int ix = dx + t.origin.x(), iy = dy + t.origin.y();
        if (!t.Contains(ix, iy)) return;
        std::uint32_t* p = t.Row(iy) + ix;
        *p = rop.Apply(color, *p);
        minX = std::min(minX, ix); maxX = std::max(maxX, ix);
        minY = std::min(minY, iy); maxY = std::max(maxY, iy);
    }
    ~PointWriter() {
        if (minX <= maxX) t.Touch(QRect(QPoint(minX, minY), QPoint(maxX, maxY)));
    }
};

}  // namespace

void FillSolidDevice(Target& t, QRect r, std::uint32_t color) {
    r.translate(t.origin);
    for (const QRect& c : t.rects) {
        const QRect q = r & c;
        if (q.isEmpty()) continue;
        for (int y = q.top(); y <= q.bottom(); ++y) std::fill_n(t.Row(y) + q.left(), q.width(), color);
        t.Touch(q);
    }
}

void BlendMask(Target& t, const QImage& mask, QPoint at, std::uint32_t color, const Rop2& rop) {
    const QRect area(at + t.origin, mask.size());
    for (const QRect& c : t.rects) {
        const QRect q = area & c;
        if (q.isEmpty()) continue;
        for (int y = q.top(); y <= q.bottom(); ++y) {
            const uchar* m = mask.constScanLine(y - area.top()) - area.left();
            std::uint32_t* d = t.Row(y);
            for (int x = q.left(); x <= q.right(); ++x)
                if (m[x]) d[x] = rop.Apply(color, d[x]);
        }
        t.Touch(q);
    }
}

// Fills spans with a brush. The brush's kind is settled once; each row picks its 8-pixel
// pattern row, so the inner loops only index.
void FillSpansWithBrush(Dc& dc, Target& t, const std::vector<Span>& spans, HBRUSH hbrush, int rop2) {
    Brush* br = AsBrush(hbrush);
    if (!br || br->style == BS_NULL) return;
    const Rop2 rop(rop2);
    if (rop.IsNop()) return;
    const std::uint32_t fg = ResolveColor(dc, br->color);
    const std::uint32_t bk = ResolveColor(dc, dc.a.bk);
    const bool opaque = dc.a.bkMode == OPAQUE;
    const int ox = t.origin.x(), oy = t.origin.y();
    const int bx = dc.a.brushOrg.x, by = dc.a.brushOrg.y;
    std::uint32_t pat[8];
    bool patOn[8];
    int minX = INT32_MAX, minY = INT32_MAX, maxX = INT32_MIN, maxY = INT32_MIN;
    for (const Span& s : spans) {
        const int iy = s.y + oy;
        if (iy < t.bound.top() || iy > t.bound.bottom()) continue;
        const int py = ((s.y - by) % 8 + 8) % 8;
        bool solid = br->style == BS_SOLID;
        if (br->style == BS_HATCHED) {
            for (int k = 0; k < 8; ++k) {
                const bool on = HatchBit(br->hatch, k, py);
                pat[k] = on ? fg : bk;
                patOn[k] = on || opaque;
            }
        } else if (br->style == BS_PATTERN && !br->pattern.isNull()) {
            const auto* row = reinterpret_cast<const std::uint32_t*>(br->pattern.constScanLine(py));
            for (int k = 0; k < 8; ++k) { pat[k] = row[k]; patOn[k] = true; }
        } else {
            solid = true;
        }
        for (const QRect& c : t.rects) {
            if (iy < c.top() || iy > c.bottom()) continue;
            const int x0 = std::max(s.x0 + ox, c.left()), x1 = std::min(s.x1 + ox, c.right() + 1);
            if (x0 >= x1) continue;
            std::uint32_t* d = t.Row(iy);
            if (solid) {
                if (rop.IsCopy()) std::fill(d + x0, d + x1, fg);
                else for (int x = x0; x < x1; ++x) d[x] = rop.Apply(fg, d[x]);
            } else {
                for (int x = x0; x < x1; ++x) {
                    const int k = ((x - ox - bx) % 8 + 8) % 8;
                    if (patOn[k]) d[x] = rop.Apply(pat[k], d[x]);
                }
            }
            minX = std::min(minX, x0); maxX = std::max(maxX, x1 - 1);
            minY = std::min(minY, iy); maxY = std::max(maxY, iy);
        }
    }
    if (minX <= maxX) t.Touch(QRect(QPoint(minX, minY), QPoint(maxX, maxY)));
}

// Lines -----------------------------------------------------------------------------------------
namespace {

bool PenIsNull(const Pen* p) { return !p || p->Style() == PS_NULL; }

// Device width of a pen: cosmetic pens are one pixel whatever the transform.
int PenDeviceWidth(const Dc& dc, const Pen* p) {
    if (!p || p->width <= 1) return 1;
    return std::max(1, ScaleLenX(dc, p->width));
}

// A segment longer than 65536 pixels is cut to the visible box (Liang-Barsky) so that no
// pixel list is made of what cannot be seen; skip is the number of pixels left out before
// the new start (or all of them when nothing is visible, and then false).
bool ClipLongSegment(POINT& a, POINT& b, const QRect& visible, long long& skip) {
    skip = 0;
    const long long len = std::max(std::llabs(static_cast<long long>(b.x) - a.x), std::llabs(static_cast<long long>(b.y) - a.y));
    if (len <= (1 << 16)) return true;
    const QRect vb = visible.adjusted(-2, -2, 2, 2);
    double t0 = 0, t1 = 1;
    const double dx = double(b.x) - a.x, dy = double(b.y) - a.y;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x - double(vb.left()), double(vb.right()) - a.x, a.y - double(vb.top()), double(vb.bottom()) - a.y};
    for (int k = 0; k < 4; ++k) {
        if (p[k] == 0) {
            if (q[k] < 0) { skip = len; return false; }
            continue;
        }
        const double r = q[k] / p[k];
        if (p[k] < 0) t0 = std::max(t0, r);
        else t1 = std::min(t1, r);
        if (t0 > t1) { skip = len; return false; }
    }
    skip = static_cast<long long>(std::floor(t0 * len));
    const POINT na{static_cast<LONG>(std::lround(a.x + dx * t0)), static_cast<LONG>(std::lround(a.y + dy * t0))};
    const POINT nb{static_cast<LONG>(std::lround(a.x + dx * t1)), static_cast<LONG>(std::lround(a.y + dy * t1))};
    a = na;
    b = nb;
    return true;
}

// Draws one-pixel segments through the device points, each leaving out its end pixel; the
// dash rhythm runs on across segments.
void CosmeticPolyline(Dc& dc, Target& t, const Pen* pen, const POINT* pts, int n) {
    const std::vector<int>& pattern = DashPattern(pen->Style());
    const std::uint32_t color = ResolveColor(dc, pen->color);
    const std::uint32_t bk = ResolveColor(dc, dc.a.bk);
    const bool fillGaps = dc.a.bkMode == OPAQUE;
    PointWriter w(t, dc.a.rop2);
    std::vector<POINT> px;
    for (int i = 0; i + 1 < n; ++i) {
        px.clear();
        POINT a = pts[i], b = pts[i + 1];
        long long skip = 0;
        const bool seen = ClipLongSegment(a, b, t.bound.translated(-t.origin), skip);
        dc.styleStep += skip;
        if (!seen) continue;
        LinePixels(a.x, a.y, b.x, b.y, px);
        if (pattern.empty()) {
            for (const POINT& p : px) w.Put(p.x, p.y, color);
        } else {
            for (const POINT& p : px) {
                if (DashOn(pattern, dc.styleStep)) w.Put(p.x, p.y, color);
                else if (fillGaps) w.Put(p.x, p.y, bk);
                ++dc.styleStep;
            }
        }
    }
}

// Wide pens: the stroke's pixels as a mask, written once each so that inverting raster
// operations stay reversible.
void WidePolyline(Dc& dc, Target& t, const Pen* pen, const POINT* pts, int n, bool closed) {
    const int w = PenDeviceWidth(dc, pen);
    QPainterPath path;
    path.moveTo(pts[0].x + 0.5, pts[0].y + 0.5);
    for (int i = 1; i < n; ++i) path.lineTo(pts[i].x + 0.5, pts[i].y + 0.5);
    if (closed) path.closeSubpath();
    // Only the part that can be seen gets a mask.
    const QRect box = path.boundingRect().toAlignedRect().adjusted(-w - 1, -w - 1, w + 1, w + 1) &
                      t.bound.translated(-t.origin);
    if (box.isEmpty()) return;
    QImage mask(box.size(), QImage::Format_Grayscale8);
    if (mask.isNull()) return;
    mask.fill(0);
    {
        QPainter p(&mask);
        p.setRenderHint(QPainter::Antialiasing, false);
        p.translate(-box.left(), -box.top());
        const int cap = pen->style & PS_ENDCAP_MASK, join = pen->style & PS_JOIN_MASK;
        QPen qp(Qt::white, w);
        qp.setCapStyle(cap == PS_ENDCAP_FLAT ? Qt::FlatCap : cap == PS_ENDCAP_SQUARE ? Qt::SquareCap : Qt::RoundCap);
        qp.setJoinStyle(join == PS_JOIN_MITER ? Qt::MiterJoin : join == PS_JOIN_BEVEL ? Qt::BevelJoin : Qt::RoundJoin);
        p.strokePath(path, qp);
    }
    BlendMask(t, mask, box.topLeft(), ResolveColor(dc, pen->color), Rop2(dc.a.rop2));
}

void StrokeDevice(Dc& dc, Target& t, const POINT* pts, int n, bool closed) {
    Pen* pen = AsPen(dc.a.pen);
    if (PenIsNull(pen) || n < 2) return;
    if (PenDeviceWidth(dc, pen) <= 1) {
        if (closed) {
            std::vector<POINT> loop(pts, pts + n);
            loop.push_back(pts[0]);
            CosmeticPolyline(dc, t, pen, loop.data(), static_cast<int>(loop.size()));
        } else {
            CosmeticPolyline(dc, t, pen, pts, n);
        }
    } else {
        WidePolyline(dc, t, pen, pts, n, closed);
    }
}

std::vector<POINT> ToDevice(const Dc& dc, const POINT* pts, int n) {
    std::vector<POINT> out(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) out[static_cast<std::size_t>(i)] = LpToDp(dc, pts[i]);
    return out;
}

// A device rectangle from logical corners, normalised.
QRect DeviceBox(const Dc& dc, int x1, int y1, int x2, int y2) {
    POINT a = LpToDp(dc, POINT{x1, y1}), b = LpToDp(dc, POINT{x2, y2});
    if (b.x < a.x) std::swap(a.x, b.x);
    if (b.y < a.y) std::swap(a.y, b.y);
    return QRect(a.x, a.y, b.x - a.x, b.y - a.y);
}

// Fill spans less an outline (outline pixels belong to the pen), then the outline.
void DrawFilledShape(Dc& dc, Target& t, const std::vector<Span>& fill, const std::vector<POINT>& outline,
                     bool styledOutlineOrdered) {
    if (!outline.empty()) {
        std::unordered_set<long long> on;
        on.reserve(outline.size() * 2);
        for (const POINT& p : outline) on.insert((static_cast<long long>(p.y) << 32) ^ static_cast<std::uint32_t>(p.x));
        std::vector<Span> inner;
        for (const Span& s : fill) {
            int x = s.x0;
            while (x < s.x1) {
                while (x < s.x1 && on.count((static_cast<long long>(s.y) << 32) ^ static_cast<std::uint32_t>(x))) ++x;
                const int x0 = x;
                while (x < s.x1 && !on.count((static_cast<long long>(s.y) << 32) ^ static_cast<std::uint32_t>(x))) ++x;
                if (x > x0) inner.push_back(Span{s.y, x0, x});
            }
        }
        FillSpansWithBrush(dc, t, inner, dc.a.brush, dc.a.rop2);
    } else {
        FillSpansWithBrush(dc, t, fill, dc.a.brush, dc.a.rop2);
    }
    Pen* pen = AsPen(dc.a.pen);
    if (PenIsNull(pen) || outline.empty()) return;
    const std::vector<int>& pattern = DashPattern(pen->Style());
    const std::uint32_t color = ResolveColor(dc, pen->color), bk = ResolveColor(dc, dc.a.bk);
    PointWriter w(t, dc.a.rop2);
    long long step = 0;
    for (const POINT& p : outline) {
        if (pattern.empty() || !styledOutlineOrdered || DashOn(pattern, step)) w.Put(p.x, p.y, color);
        else if (dc.a.bkMode == OPAQUE) w.Put(p.x, p.y, bk);
        ++step;
    }
}

std::vector<Span> RegionSpans(const QRegion& r) {
    std::vector<Span> spans;
    for (const QRect& q : r)
        for (int y = q.top(); y <= q.bottom(); ++y) spans.push_back(Span{y, q.left(), q.right() + 1});
    std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.y != b.y ? a.y < b.y : a.x0 < b.x0; });
    return spans;
}

// Orders outline pixels by their angle on the counter-clockwise sweep from `start`.
void OrderByAngle(std::vector<POINT>& px, double cx, double cy, double start) {
    std::vector<std::pair<double, POINT>> keyed;
    keyed.reserve(px.size());
    for (const POINT& p : px) {
        double d = ScreenAngle(cx, cy, p.x, p.y) - start;
        if (d < 0) d += 2 * M_PI;
        keyed.emplace_back(d, p);
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < px.size(); ++i) px[i] = keyed[i].second;
}

enum class ArcKind { Arc, Chord, Pie };

bool DrawArcShape(Dc& dc, ArcKind kind, int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    Target t;
    const QRect box = DeviceBox(dc, x1, y1, x2, y2);
    if (box.height() > (1 << 16) || box.width() > (1 << 16)) return false;
    POINT s = LpToDp(dc, POINT{x3, y3}), e = LpToDp(dc, POINT{x4, y4});
    if (!Acquire(dc, t)) return TRUE;
    std::vector<Span> spans;
    EllipseSpans(box.left(), box.top(), box.right() + 1, box.bottom() + 1, spans);
    const double cx = box.left() + (box.width() - 1) * 0.5, cy = box.top() + (box.height() - 1) * 0.5;
    double a0 = ScreenAngle(cx, cy, s.x, s.y), a1 = ScreenAngle(cx, cy, e.x, e.y);
    if (dc.a.arcDir == AD_CLOCKWISE) std::swap(a0, a1);
    // Equal rays give the whole ellipse (Arc); the point test uses the same angles.
    const bool full = s.x == e.x && s.y == e.y;
    std::vector<POINT> ring;
    SpanOutline(spans, ring);
    std::vector<POINT> arc;
    for (const POINT& p : ring)
        if (full || AngleInSweep(ScreenAngle(cx, cy, p.x, p.y), a0, a1)) arc.push_back(p);
    OrderByAngle(arc, cx, cy, a0);
    if (kind == ArcKind::Arc) {
        DrawFilledShape(dc, t, {}, arc, true);
        Release(t);
        return TRUE;
    }
    // The region: the sector (pie) or the part cut off by the chord line.
    std::vector<Span> fill;
    const POINT pa = arc.empty() ? POINT{static_cast<LONG>(cx), static_cast<LONG>(cy)} : arc.front();
    const POINT pb = arc.empty() ? pa : arc.back();
    const POINT mid = arc.empty() ? pa : arc[arc.size() / 2];
    const double arcSide = double(pb.x - pa.x) * (mid.y - pa.y) - double(pb.y - pa.y) * (mid.x - pa.x);
    for (const Span& sp : spans) {
        int x = sp.x0;
        while (x < sp.x1) {
            auto inside = [&](int px) {
                if (full) return true;
                if (kind == ArcKind::Pie) return AngleInSweep(ScreenAngle(cx, cy, px, sp.y), a0, a1);
                // Chord: the side of the line pa-pb on which the arc's middle lies.
                const double cross = double(pb.x - pa.x) * (sp.y - pa.y) - double(pb.y - pa.y) * (px - pa.x);
                return arcSide >= 0 ? cross >= 0 : cross <= 0;
            };
            while (x < sp.x1 && !inside(x)) ++x;
            const int xs = x;
            while (x < sp.x1 && inside(x)) ++x;
            if (x > xs) fill.push_back(Span{sp.y, xs, x});
        }
    }
    std::vector<POINT> outline = arc;
    if (!full) {
        const POINT c{static_cast<LONG>(std::lround(cx)), static_cast<LONG>(std::lround(cy))};
        if (kind == ArcKind::Pie) {
            LinePixels(pb.x, pb.y, c.x, c.y, outline);
            LinePixels(c.x, c.y, pa.x, pa.y, outline);
        } else {
            LinePixels(pb.x, pb.y, pa.x, pa.y, outline);
        }
    }
    // The outline pixels must be distinct so an inverting mode inverts each once.
    std::unordered_set<long long> seen;
    std::vector<POINT> uniq;
    for (const POINT& p : outline)
        if (seen.insert((static_cast<long long>(p.y) << 32) ^ static_cast<std::uint32_t>(p.x)).second) uniq.push_back(p);
    DrawFilledShape(dc, t, fill, uniq, true);
    Release(t);
    return TRUE;
}

}  // namespace

// Blits -------------------------------------------------------------------------------------------
namespace {

// The brush pixel at image point (ix, iy) for ternary operations.
struct PatternSource {
    bool none = true;
    bool solid = true;
    std::uint32_t color = 0;
    std::uint32_t pat[8][8] = {};
    int ox = 0, oy = 0;
    PatternSource(Dc& dc, const Target& t) {
        Brush* br = AsBrush(dc.a.brush);
        if (!br || br->style == BS_NULL) return;
        none = false;
        color = ResolveColor(dc, br->color);
        ox = t.origin.x() + dc.a.brushOrg.x;
        oy = t.origin.y() + dc.a.brushOrg.y;
        if (br->style == BS_HATCHED) {
            solid = false;
            const std::uint32_t bk = ResolveColor(dc, dc.a.bk);
            for (int y = 0; y < 8; ++y)
                for (int x = 0; x < 8; ++x) pat[y][x] = HatchBit(br->hatch, x, y) ? color : bk;
        } else if (br->style == BS_PATTERN && !br->pattern.isNull()) {
            solid = false;
            for (int y = 0; y < 8; ++y)
                for (int x = 0; x < 8; ++x) pat[y][x] = br->pattern.pixel(x, y);
        }
    }
    std::uint32_t At(int ix, int iy) const {
        return solid ? color : pat[((iy - oy) % 8 + 8) % 8][((ix - ox) % 8 + 8) % 8];
    }
};

// Destination-only and pattern operations over a device rectangle.
void PatRect(Dc& dc, Target& t, QRect r, DWORD rop) {
    const Rop3 op(rop);
    const PatternSource pat(dc, t);
    r.translate(t.origin);
    const bool copyPat = op.table == 0xF0 && pat.solid;
    for (const QRect& c : t.rects) {
        const QRect q = r & c;
        if (q.isEmpty()) continue;
        for (int y = q.top(); y <= q.bottom(); ++y) {
            std::uint32_t* d = t.Row(y);
            if (copyPat) {
                std::fill(d + q.left(), d + q.right() + 1, pat.color);
            } else {
                for (int x = q.left(); x <= q.right(); ++x) d[x] = op.Apply(pat.At(x, y), 0, d[x]);
            }
        }
        t.Touch(q);
    }
}

}  // namespace

// Blits a source image region onto the target: dest device rect `dr` (normalised), source
// pixels through column and row maps (source image coordinates, -1 for none).
void BlitMapped(Dc& dst, Target& t, const QRect& dr, const QImage& src, const std::vector<int>& colMap,
                const std::vector<int>& rowMap, DWORD rop) {
    const Rop3 op(rop);
    const bool copy = op.table == 0xCC;
    const PatternSource pat(dst, t);
    const QRect area = dr.translated(t.origin);
    for (const QRect& c : t.rects) {
        const QRect q = area & c;
        if (q.isEmpty()) continue;
        const int i0 = q.left() - area.left(), i1 = q.right() - area.left() + 1;
        for (int y = q.top(); y <= q.bottom(); ++y) {
            const int sr = rowMap[static_cast<std::size_t>(y - area.top())];
            if (sr < 0) continue;
            const auto* s = reinterpret_cast<const std::uint32_t*>(src.constScanLine(sr));
            std::uint32_t* d = t.Row(y) + area.left();
            const int* cm = colMap.data();
            if (copy) {
                for (int i = i0; i < i1; ++i)
                    if (cm[i] >= 0) d[i] = s[cm[i]];
            } else {
                for (int i = i0; i < i1; ++i)
                    if (cm[i] >= 0) d[i] = op.Apply(pat.At(area.left() + i, y), s[cm[i]], d[i]);
            }
        }
        t.Touch(q);
    }
}

}  // namespace orlex::gdi

using namespace orlex::gdi;

namespace {

Dc* D(HDC h) { return LookupDc(h); }

// Sets a new object into a slot, keeping the counts right; returns the old one.
HGDIOBJ Swap(HGDIOBJ& slot, HGDIOBJ h) {
    HGDIOBJ old = slot;
    Hold(h);
    slot = h;
    Drop(old);
    return old;
}

}  // namespace

// The C interface: contexts ------------------------------------------------------------------------
HDC CreateCompatibleDC(HDC hdc) {
    Dc* base = LookupDc(hdc);
    if (hdc && !base) return nullptr;
    HDC m = NewMemoryDc();
    // Made for a printer, the context measures in the printer's dots (fonts, map modes).
    if (base) LookupDc(m)->dpi = DeviceDpi(*base) != kScreenDpi ? DeviceDpi(*base) : 0;
    return m;
}

HDC CreateDCA(LPCSTR driver, LPCSTR device, LPCSTR, const DEVMODEA* init) {
    const std::string d = driver ? driver : "";
    if (d == "DISPLAY" || (d.empty() && device && std::string(device) == "DISPLAY")) return NewScreenDc();
    return NewPrinterDc(device ? device : driver, init);
}

HDC CreateICA(LPCSTR driver, LPCSTR device, LPCSTR port, const DEVMODEA* init) {
    return CreateDCA(driver, device, port, init);
}

BOOL DeleteDC(HDC hdc) {
    Dc* dc = D(hdc);
    if (!dc || dc->kind == DcKind::Window) return FALSE;
    DestroyDc(hdc);
    return TRUE;
}

int SaveDC(HDC hdc) {
    Dc* dc = D(hdc);
    if (!dc) return 0;
    dc->saved.push_back(dc->a);
    const DcAttrs& s = dc->saved.back();
    Hold(s.pen); Hold(s.brush); Hold(s.font); Hold(s.bitmap); Hold(s.palette);
    return static_cast<int>(dc->saved.size());
}

BOOL RestoreDC(HDC hdc, int level) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    const int n = static_cast<int>(dc->saved.size());
    const int target = level < 0 ? n + level + 1 : level;
    if (target < 1 || target > n) return FALSE;
    while (static_cast<int>(dc->saved.size()) > target) {
        const DcAttrs& s = dc->saved.back();
        Drop(s.pen); Drop(s.brush); Drop(s.font); Drop(s.bitmap); Drop(s.palette);
        dc->saved.pop_back();
    }
    DcAttrs old = dc->a;
    dc->a = dc->saved.back();
    dc->saved.pop_back();
    // The restored state's holds pass to the current state; the replaced state's go.
    Drop(old.pen); Drop(old.brush); Drop(old.font); Drop(old.bitmap); Drop(old.palette);
    dc->styleStep = 0;
    return TRUE;
}

int GetDeviceCaps(HDC hdc, int index) {
    Dc* dc = D(hdc);
    if (!dc) return 0;
    const bool printer = dc->kind == DcKind::Printer && dc->print;
    const int dpi = DeviceDpi(*dc);
    int w = kScreenW, h = kScreenH;
    if (printer) { w = dc->print->pageW; h = dc->print->pageH; }
    const bool colour = !printer || dc->print->settings.colour;
    switch (index) {
    case DRIVERVERSION: return 0x4000;
    case TECHNOLOGY: return printer ? DT_RASPRINTER : DT_RASDISPLAY;
    case HORZSIZE: return MulDiv(w, 254, dpi * 10);
    case VERTSIZE: return MulDiv(h, 254, dpi * 10);
    case HORZRES: case PHYSICALWIDTH: return w;
    case VERTRES: case PHYSICALHEIGHT: return h;
    case PHYSICALOFFSETX: case PHYSICALOFFSETY: return 0;
    case BITSPIXEL: return colour ? 32 : 1;
    case PLANES: return 1;
    case NUMBRUSHES: case NUMPENS: case NUMCOLORS: return colour ? -1 : 2;
    case NUMFONTS: return 0;
    case ASPECTX: case ASPECTY: return 36;
    case ASPECTXY: return 51;
    case RASTERCAPS: return RC_BITBLT | RC_BITMAP64 | RC_DI_BITMAP | RC_DIBTODEV | RC_STRETCHBLT | RC_STRETCHDIB | RC_SCALING;
    case LOGPIXELSX: case LOGPIXELSY: return dpi;
    case SIZEPALETTE: case NUMRESERVED: return 0;
    case COLORRES: return 24;
    default: return 0;
    }
}

HGDIOBJ SelectObject(HDC hdc, HGDIOBJ h) {
    Dc* dc = D(hdc);
    Object* o = Lookup(h);
    if (!dc || !o) return nullptr;
    switch (o->kind) {
    case Kind::Pen: dc->styleStep = 0; return Swap(reinterpret_cast<HGDIOBJ&>(dc->a.pen), h);
    case Kind::Brush: return Swap(reinterpret_cast<HGDIOBJ&>(dc->a.brush), h);
    case Kind::Font: return Swap(reinterpret_cast<HGDIOBJ&>(dc->a.font), h);
    case Kind::Bitmap: {
        if (dc->kind != DcKind::Memory) return nullptr;
        // A bitmap is in at most one context at a time.
        if (o->selectedIn > 0 && dc->a.bitmap != h && !o->stock) return nullptr;
        return Swap(reinterpret_cast<HGDIOBJ&>(dc->a.bitmap), h);
    }
    case Kind::Region: {
        const int kind = SelectClipRgn(hdc, static_cast<HRGN>(h));
        return reinterpret_cast<HGDIOBJ>(static_cast<INT_PTR>(kind));
    }
    case Kind::Palette: case Kind::Icon: return nullptr;
    }
    return nullptr;
}

HGDIOBJ GetCurrentObject(HDC hdc, UINT type) {
    Dc* dc = D(hdc);
    if (!dc) return nullptr;
    switch (type) {
    case OBJ_PEN: return dc->a.pen;
    case OBJ_BRUSH: return dc->a.brush;
    case OBJ_FONT: return dc->a.font;
    case OBJ_BITMAP: return dc->a.bitmap;
    case OBJ_PAL: return dc->a.palette;
    default: return nullptr;
    }
}

HPALETTE SelectPalette(HDC hdc, HPALETTE pal, BOOL) {
    Dc* dc = D(hdc);
    if (!dc || !AsPalette(pal)) return nullptr;
    return static_cast<HPALETTE>(Swap(reinterpret_cast<HGDIOBJ&>(dc->a.palette), pal));
}

UINT RealizePalette(HDC hdc) { return D(hdc) ? 0 : GDI_ERROR; }

// Attributes ------------------------------------------------------------------------------------
#define ORLEX_ATTR(Type, Get, Set, field, bad)                   \
    Type Get(HDC hdc) { Dc* dc = D(hdc); return dc ? dc->a.field : bad; } \
    Type Set(HDC hdc, Type v) {                                  \
        Dc* dc = D(hdc);                                         \
        if (!dc) return bad;                                     \
        Type old = dc->a.field;                                  \
        dc->a.field = v;                                         \
        return old;                                              \
    }
ORLEX_ATTR(COLORREF, GetBkColor, SetBkColor, bk, CLR_INVALID)
ORLEX_ATTR(COLORREF, GetTextColor, SetTextColor, text, CLR_INVALID)
ORLEX_ATTR(UINT, GetTextAlign, SetTextAlign, textAlign, GDI_ERROR)
#undef ORLEX_ATTR

int GetBkMode(HDC hdc) { Dc* dc = D(hdc); return dc ? dc->a.bkMode : 0; }
int SetBkMode(HDC hdc, int mode) {
    Dc* dc = D(hdc);
    if (!dc || (mode != TRANSPARENT && mode != OPAQUE)) return 0;
    std::swap(dc->a.bkMode, mode);
    return mode;
}
int GetROP2(HDC hdc) { Dc* dc = D(hdc); return dc ? dc->a.rop2 : 0; }
int SetROP2(HDC hdc, int mode) {
    Dc* dc = D(hdc);
    if (!dc || mode < R2_BLACK || mode > R2_WHITE) return 0;
    std::swap(dc->a.rop2, mode);
    return mode;
}
int GetStretchBltMode(HDC hdc) { Dc* dc = D(hdc); return dc ? dc->a.stretchMode : 0; }
int SetStretchBltMode(HDC hdc, int mode) {
    Dc* dc = D(hdc);
    if (!dc || mode < BLACKONWHITE || mode > HALFTONE) return 0;
    std::swap(dc->a.stretchMode, mode);
    return mode;
}
int SetPolyFillMode(HDC hdc, int mode) {
    Dc* dc = D(hdc);
    if (!dc || (mode != ALTERNATE && mode != WINDING)) return 0;
    std::swap(dc->a.polyFill, mode);
    return mode;
}

// Map modes -------------------------------------------------------------------------------------
static void FixIsotropic(Dc& dc) {
    if (dc.a.mapMode != MM_ISOTROPIC || dc.a.wExt.cx == 0 || dc.a.wExt.cy == 0) return;
    // Same scale on both axes: the larger one shrinks to the smaller.
    const double sx = std::fabs(double(dc.a.vExt.cx) / dc.a.wExt.cx);
    const double sy = std::fabs(double(dc.a.vExt.cy) / dc.a.wExt.cy);
    if (sx < sy) {
        const long v = std::lround(std::fabs(double(dc.a.wExt.cy)) * sx);
        dc.a.vExt.cy = dc.a.vExt.cy < 0 ? -v : v;
    } else if (sy < sx) {
        const long v = std::lround(std::fabs(double(dc.a.wExt.cx)) * sy);
        dc.a.vExt.cx = dc.a.vExt.cx < 0 ? -v : v;
    }
    if (dc.a.vExt.cx == 0) dc.a.vExt.cx = 1;
    if (dc.a.vExt.cy == 0) dc.a.vExt.cy = 1;
}

int SetMapMode(HDC hdc, int mode) {
    Dc* dc = D(hdc);
    if (!dc || mode < MM_TEXT || mode > MM_ANISOTROPIC) return 0;
    const int old = dc->a.mapMode;
    const int dpi = DeviceDpi(*dc);
    dc->a.mapMode = mode;
    auto metric = [&](int unitsPerInch) {
        dc->a.wExt = SIZE{unitsPerInch, unitsPerInch};
        dc->a.vExt = SIZE{dpi, -dpi};
    };
    switch (mode) {
    case MM_TEXT: dc->a.wExt = SIZE{1, 1}; dc->a.vExt = SIZE{1, 1}; break;
    case MM_LOMETRIC: metric(254); break;
    case MM_HIMETRIC: metric(2540); break;
    case MM_LOENGLISH: metric(100); break;
    case MM_HIENGLISH: metric(1000); break;
    case MM_TWIPS: metric(1440); break;
    case MM_ISOTROPIC:
        if (old != MM_ANISOTROPIC && old != MM_ISOTROPIC) metric(254);
        FixIsotropic(*dc);
        break;
    case MM_ANISOTROPIC: break;  // keeps the extents of the previous mode
    }
    return old;
}
int GetMapMode(HDC hdc) { Dc* dc = D(hdc); return dc ? dc->a.mapMode : 0; }

static bool Scalable(const Dc& dc) { return dc.a.mapMode == MM_ISOTROPIC || dc.a.mapMode == MM_ANISOTROPIC; }

// Extents take effect only in the scalable map modes, and a zero extent is refused.
static BOOL SetExtent(HDC hdc, SIZE DcAttrs::*which, int cx, int cy, LPSIZE old) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    if (old) *old = dc->a.*which;
    if (!Scalable(*dc)) return TRUE;
    if (cx == 0 || cy == 0) return FALSE;
    dc->a.*which = SIZE{cx, cy};
    FixIsotropic(*dc);
    return TRUE;
}
BOOL SetViewportExtEx(HDC hdc, int cx, int cy, LPSIZE old) { return SetExtent(hdc, &DcAttrs::vExt, cx, cy, old); }
BOOL SetWindowExtEx(HDC hdc, int cx, int cy, LPSIZE old) { return SetExtent(hdc, &DcAttrs::wExt, cx, cy, old); }
static BOOL SetOrigin(HDC hdc, POINT DcAttrs::*which, int x, int y, LPPOINT old) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    if (old) *old = dc->a.*which;
    dc->a.*which = POINT{x, y};
    return TRUE;
}
BOOL SetViewportOrgEx(HDC hdc, int x, int y, LPPOINT old) { return SetOrigin(hdc, &DcAttrs::vOrg, x, y, old); }
BOOL SetWindowOrgEx(HDC hdc, int x, int y, LPPOINT old) { return SetOrigin(hdc, &DcAttrs::wOrg, x, y, old); }
BOOL OffsetWindowOrgEx(HDC hdc, int dx, int dy, LPPOINT old) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    return SetWindowOrgEx(hdc, dc->a.wOrg.x + dx, dc->a.wOrg.y + dy, old);
}
BOOL OffsetViewportOrgEx(HDC hdc, int dx, int dy, LPPOINT old) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    return SetViewportOrgEx(hdc, dc->a.vOrg.x + dx, dc->a.vOrg.y + dy, old);
}
BOOL GetViewportExtEx(HDC hdc, LPSIZE s) { Dc* dc = D(hdc); if (!dc || !s) return FALSE; *s = dc->a.vExt; return TRUE; }
BOOL GetViewportOrgEx(HDC hdc, LPPOINT p) { Dc* dc = D(hdc); if (!dc || !p) return FALSE; *p = dc->a.vOrg; return TRUE; }
BOOL GetWindowExtEx(HDC hdc, LPSIZE s) { Dc* dc = D(hdc); if (!dc || !s) return FALSE; *s = dc->a.wExt; return TRUE; }
BOOL GetWindowOrgEx(HDC hdc, LPPOINT p) { Dc* dc = D(hdc); if (!dc || !p) return FALSE; *p = dc->a.wOrg; return TRUE; }
BOOL DPtoLP(HDC hdc, LPPOINT pts, int count) {
    Dc* dc = D(hdc);
    if (!dc || !pts) return FALSE;
    for (int i = 0; i < count; ++i) pts[i] = DpToLp(*dc, pts[i]);
    return TRUE;
}
BOOL LPtoDP(HDC hdc, LPPOINT pts, int count) {
    Dc* dc = D(hdc);
    if (!dc || !pts) return FALSE;
    for (int i = 0; i < count; ++i) pts[i] = LpToDp(*dc, pts[i]);
    return TRUE;
}

// Clipping ----------------------------------------------------------------------------------------
int SelectClipRgn(HDC hdc, HRGN rgn) { return ExtSelectClipRgn(hdc, rgn, RGN_COPY); }

int ExtSelectClipRgn(HDC hdc, HRGN rgn, int mode) {
    Dc* dc = D(hdc);
    if (!dc) return ERROR;
    Region* r = AsRegion(rgn);
    if (!r) {
        if (mode != RGN_COPY || rgn) return ERROR;
        dc->a.hasClip = false;
        dc->a.clip = QRegion();
        return RegionKindOf(DeviceClip(*dc));
    }
    const QRegion base = dc->a.hasClip ? dc->a.clip : DeviceClip(*dc);
    switch (mode) {
    case RGN_COPY: dc->a.clip = r->rgn; break;
    case RGN_AND: dc->a.clip = base & r->rgn; break;
    case RGN_OR: dc->a.clip = base | r->rgn; break;
    case RGN_XOR: dc->a.clip = base ^ r->rgn; break;
    case RGN_DIFF: dc->a.clip = base - r->rgn; break;
    default: return ERROR;
    }
    dc->a.hasClip = true;
    return RegionKindOf(DeviceClip(*dc));
}

static QRegion DeviceRectRegion(const Dc& dc, int x1, int y1, int x2, int y2) {
    const QRect r = DeviceBox(dc, x1, y1, x2, y2);
    return r.isEmpty() ? QRegion() : QRegion(r);
}

int IntersectClipRect(HDC hdc, int x1, int y1, int x2, int y2) {
    Dc* dc = D(hdc);
    if (!dc) return ERROR;
    const QRegion r = DeviceRectRegion(*dc, x1, y1, x2, y2);
    dc->a.clip = dc->a.hasClip ? (dc->a.clip & r) : r;
    dc->a.hasClip = true;
    return RegionKindOf(DeviceClip(*dc));
}

int ExcludeClipRect(HDC hdc, int x1, int y1, int x2, int y2) {
    Dc* dc = D(hdc);
    if (!dc) return ERROR;
    const QRegion r = DeviceRectRegion(*dc, x1, y1, x2, y2);
    dc->a.clip = (dc->a.hasClip ? dc->a.clip : DeviceClip(*dc)) - r;
    dc->a.hasClip = true;
    return RegionKindOf(DeviceClip(*dc));
}

int GetClipBox(HDC hdc, LPRECT out) {
    Dc* dc = D(hdc);
    if (!dc || !out) return ERROR;
    const QRegion r = DeviceClip(*dc);
    if (r.isEmpty()) {
        *out = RECT{0, 0, 0, 0};
        return NULLREGION;
    }
    const QRect b = r.boundingRect();
    POINT p1 = DpToLp(*dc, POINT{b.left(), b.top()}), p2 = DpToLp(*dc, POINT{b.right() + 1, b.bottom() + 1});
    CRect lr(p1.x, p1.y, p2.x, p2.y);
    lr.NormalizeRect();
    *out = lr;
    return RegionKindOf(r);
}

int GetClipRgn(HDC hdc, HRGN rgn) {
    Dc* dc = D(hdc);
    Region* r = AsRegion(rgn);
    if (!dc || !r) return -1;
    if (!dc->a.hasClip) return 0;
    r->rgn = dc->a.clip;
    return 1;
}

// Lines and shapes ----------------------------------------------------------------------------------
BOOL MoveToEx(HDC hdc, int x, int y, LPPOINT old) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    if (old) *old = dc->a.cur;
    dc->a.cur = POINT{x, y};
    dc->styleStep = 0;
    return TRUE;
}

BOOL LineTo(HDC hdc, int x, int y) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    const POINT pts[2] = {LpToDp(*dc, dc->a.cur), LpToDp(*dc, POINT{x, y})};
    dc->a.cur = POINT{x, y};
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    StrokeDevice(*dc, t, pts, 2, false);
    Release(t);
    return TRUE;
}

BOOL Polyline(HDC hdc, const POINT* pts, int count) {
    Dc* dc = D(hdc);
    if (!dc || !pts || count < 2) return FALSE;
    const std::vector<POINT> dev = ToDevice(*dc, pts, count);
    Target t;
    dc->styleStep = 0;
    if (!Acquire(*dc, t)) return TRUE;
    StrokeDevice(*dc, t, dev.data(), count, false);
    Release(t);
    return TRUE;
}

static BOOL PolygonImpl(HDC hdc, const POINT* pts, const INT* counts, int polys) {
    Dc* dc = D(hdc);
    if (!dc || !pts || !counts || polys <= 0) return FALSE;
    int total = 0;
    for (int k = 0; k < polys; ++k) {
        if (counts[k] < 2) return FALSE;
        total += counts[k];
    }
    const std::vector<POINT> dev = ToDevice(*dc, pts, total);
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    const std::vector<Span> fill =
        RegionSpans(PolygonRegion(dev.data(), counts, polys, dc->a.polyFill, t.bound.translated(-t.origin)));
    std::vector<POINT> outline;
    Pen* pen = AsPen(dc->a.pen);
    const bool wide = !PenIsNull(pen) && PenDeviceWidth(*dc, pen) > 1;
    if (!PenIsNull(pen) && !wide) {
        const POINT* p = dev.data();
        for (int k = 0; k < polys; ++k) {
            for (int i = 0; i < counts[k]; ++i) {
                POINT a = p[i], b = p[(i + 1) % counts[k]];
                long long skip = 0;
                if (ClipLongSegment(a, b, t.bound.translated(-t.origin), skip)) LinePixels(a.x, a.y, b.x, b.y, outline);
            }
            p += counts[k];
        }
        std::unordered_set<long long> seen;
        std::vector<POINT> uniq;
        for (const POINT& q : outline)
            if (seen.insert((static_cast<long long>(q.y) << 32) ^ static_cast<std::uint32_t>(q.x)).second) uniq.push_back(q);
        outline.swap(uniq);
    }
    DrawFilledShape(*dc, t, fill, outline, true);
    if (wide) {
        const POINT* p = dev.data();
        for (int k = 0; k < polys; ++k) {
            WidePolyline(*dc, t, pen, p, counts[k], true);
            p += counts[k];
        }
    }
    Release(t);
    return TRUE;
}

BOOL Polygon(HDC hdc, const POINT* pts, int count) { return PolygonImpl(hdc, pts, &count, 1); }

BOOL Rectangle(HDC hdc, int x1, int y1, int x2, int y2) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    const QRect box = DeviceBox(*dc, x1, y1, x2, y2);
    Target t;
    if (box.width() < 1 || box.height() < 1) return TRUE;
    if (!Acquire(*dc, t)) return TRUE;
    Pen* pen = AsPen(dc->a.pen);
    const int l = box.left(), tp = box.top(), r = box.left() + box.width(), b = box.top() + box.height();
    std::vector<Span> fill;
    if (PenIsNull(pen)) {
        // Without a pen the fill is one pixel smaller on the right and at the bottom.
        for (int y = tp; y < b - 1; ++y)
            if (r - 1 > l) fill.push_back(Span{y, l, r - 1});
        FillSpansWithBrush(*dc, t, fill, dc->a.brush, dc->a.rop2);
    } else {
        const int w = PenDeviceWidth(*dc, pen);
        const int inset = w <= 1 ? 1 : w;
        for (int y = tp + inset; y < b - inset; ++y)
            if (r - inset > l + inset) fill.push_back(Span{y, l + inset, r - inset});
        FillSpansWithBrush(*dc, t, fill, dc->a.brush, dc->a.rop2);
        if (w <= 1) {
            const POINT loop[5] = {{l, tp}, {r - 1, tp}, {r - 1, b - 1}, {l, b - 1}, {l, tp}};
            if (r - l == 1 || b - tp == 1) {
                // A one-pixel-wide box: its pixels once each.
                std::vector<Span> line;
                for (int y = tp; y < b; ++y) line.push_back(Span{y, l, r});
                PointWriter pw(t, dc->a.rop2);
                const std::uint32_t c = ResolveColor(*dc, pen->color);
                for (const Span& s : line)
                    for (int x = s.x0; x < s.x1; ++x) pw.Put(x, s.y, c);
            } else {
                dc->styleStep = 0;
                CosmeticPolyline(*dc, t, pen, loop, 5);
            }
        } else {
            // A wide pen frames the box from inside.
            std::vector<Span> frame;
            for (int y = tp; y < b; ++y) {
                if (y < tp + w || y >= b - w) frame.push_back(Span{y, l, r});
                else {
                    frame.push_back(Span{y, l, std::min(r, l + w)});
                    if (r - w > l + w) frame.push_back(Span{y, r - w, r});
                }
            }
            const HBRUSH penBrush = CreateSolidBrush(pen->color);
            const int mode = dc->a.bkMode;
            FillSpansWithBrush(*dc, t, frame, penBrush, dc->a.rop2);
            dc->a.bkMode = mode;
            DeleteObject(penBrush);
        }
    }
    Release(t);
    return TRUE;
}

// The platform draws within 27-bit coordinates; shapes of rows beyond this are refused
// rather than walked row by row.
constexpr int kMaxShapeRows = 1 << 16;

BOOL Ellipse(HDC hdc, int x1, int y1, int x2, int y2) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    const QRect box = DeviceBox(*dc, x1, y1, x2, y2);
    if (box.height() > kMaxShapeRows || box.width() > kMaxShapeRows) return FALSE;
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    Pen* pen = AsPen(dc->a.pen);
    std::vector<Span> spans;
    if (PenIsNull(pen)) {
        EllipseSpans(box.left(), box.top(), box.left() + box.width() - 1, box.top() + box.height() - 1, spans);
        FillSpansWithBrush(*dc, t, spans, dc->a.brush, dc->a.rop2);
    } else if (PenDeviceWidth(*dc, pen) <= 1) {
        EllipseSpans(box.left(), box.top(), box.left() + box.width(), box.top() + box.height(), spans);
        std::vector<POINT> ring;
        SpanOutline(spans, ring);
        const double cx = box.left() + (box.width() - 1) * 0.5, cy = box.top() + (box.height() - 1) * 0.5;
        OrderByAngle(ring, cx, cy, 0.0);
        DrawFilledShape(*dc, t, spans, ring, true);
    } else {
        EllipseSpans(box.left(), box.top(), box.left() + box.width(), box.top() + box.height(), spans);
        FillSpansWithBrush(*dc, t, spans, dc->a.brush, dc->a.rop2);
        QPainterPath path;
        path.addEllipse(QRectF(box.left() + 0.5, box.top() + 0.5, box.width() - 1, box.height() - 1));
        const int w = PenDeviceWidth(*dc, pen);
        const QRect mb = box.adjusted(-w, -w, w, w) & t.bound.translated(-t.origin);
        QImage mask(mb.size(), QImage::Format_Grayscale8);
        if (mb.isEmpty() || mask.isNull()) {
            Release(t);
            return TRUE;
        }
        mask.fill(0);
        {
            QPainter p(&mask);
            p.setRenderHint(QPainter::Antialiasing, false);
            p.translate(-mb.left(), -mb.top());
            p.strokePath(path, QPen(Qt::white, w));
        }
        BlendMask(t, mask, mb.topLeft(), ResolveColor(*dc, pen->color), Rop2(dc->a.rop2));
    }
    Release(t);
    return TRUE;
}

BOOL Arc(HDC hdc, int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    Dc* dc = D(hdc);
    return dc ? DrawArcShape(*dc, ArcKind::Arc, x1, y1, x2, y2, x3, y3, x4, y4) : FALSE;
}
BOOL Chord(HDC hdc, int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    Dc* dc = D(hdc);
    return dc ? DrawArcShape(*dc, ArcKind::Chord, x1, y1, x2, y2, x3, y3, x4, y4) : FALSE;
}
BOOL Pie(HDC hdc, int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    Dc* dc = D(hdc);
    return dc ? DrawArcShape(*dc, ArcKind::Pie, x1, y1, x2, y2, x3, y3, x4, y4) : FALSE;
}

// Fills -------------------------------------------------------------------------------------------
static void FillDeviceRect(Dc& dc, const QRect& r, HBRUSH brush, int rop2) {
    if (r.isEmpty()) return;
    Target t;
    if (!Acquire(dc, t)) return;
    Brush* br = AsBrush(brush);
    if (br && br->style == BS_SOLID && rop2 == R2_COPYPEN) {
        FillSolidDevice(t, r, ResolveColor(dc, br->color));
    } else {
        std::vector<Span> spans;
        for (int y = r.top(); y <= r.bottom(); ++y) spans.push_back(Span{y, r.left(), r.right() + 1});
        FillSpansWithBrush(dc, t, spans, brush, rop2);
    }
    Release(t);
}

int FillRect(HDC hdc, const RECT* r, HBRUSH brush) {
    Dc* dc = D(hdc);
    // A small number instead of a brush handle is a system colour index plus one.
    if (!AsBrush(brush) && reinterpret_cast<ULONG_PTR>(brush) >= 1 && reinterpret_cast<ULONG_PTR>(brush) <= 31)
        brush = GetSysColorBrush(static_cast<int>(reinterpret_cast<ULONG_PTR>(brush)) - 1);
    if (!dc || !r || !AsBrush(brush)) return FALSE;
    // FillRect ignores the line raster operation: the brush is copied.
    const int mode = dc->a.bkMode;
    FillDeviceRect(*dc, DeviceBox(*dc, r->left, r->top, r->right, r->bottom), brush, R2_COPYPEN);
    dc->a.bkMode = mode;
    return TRUE;
}

int FrameRect(HDC hdc, const RECT* r, HBRUSH brush) {
    Dc* dc = D(hdc);
    if (!dc || !r || !AsBrush(brush)) return FALSE;
    const QRect b = DeviceBox(*dc, r->left, r->top, r->right, r->bottom);
    if (b.isEmpty()) return TRUE;
    std::vector<Span> spans;
    for (int y = b.top(); y <= b.bottom(); ++y) {
        if (y == b.top() || y == b.bottom()) spans.push_back(Span{y, b.left(), b.right() + 1});
        else {
            spans.push_back(Span{y, b.left(), b.left() + 1});
            if (b.width() > 1) spans.push_back(Span{y, b.right(), b.right() + 1});
        }
    }
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    FillSpansWithBrush(*dc, t, spans, brush, R2_COPYPEN);
    Release(t);
    return TRUE;
}

BOOL InvertRect(HDC hdc, const RECT* r) {
    Dc* dc = D(hdc);
    if (!dc || !r) return FALSE;
    const QRect b = DeviceBox(*dc, r->left, r->top, r->right, r->bottom);
    Target t;
    if (b.isEmpty() || !Acquire(*dc, t)) return TRUE;
    PatRect(*dc, t, b, DSTINVERT);
    Release(t);
    return TRUE;
}

BOOL DrawFocusRect(HDC hdc, const RECT* r) {
    Dc* dc = D(hdc);
    if (!dc || !r) return FALSE;
    const QRect b = DeviceBox(*dc, r->left, r->top, r->right, r->bottom);
    Target t;
    if (b.width() < 1 || b.height() < 1 || !Acquire(*dc, t)) return TRUE;
    {
        // Every other pixel of the frame, inverted (drawn twice it is gone).
        PointWriter w(t, R2_NOT);
        long long k = 0;
        const int l = b.left(), tp = b.top(), rr = b.right(), bb = b.bottom();
        for (int x = l; x <= rr; ++x, ++k) if ((k & 1) == 0) w.Put(x, tp, 0);
        for (int y = tp + 1; y <= bb; ++y, ++k) if ((k & 1) == 0 && rr > l) w.Put(rr, y, 0);
        for (int x = rr - 1; x >= l && bb > tp; --x, ++k) if ((k & 1) == 0) w.Put(x, bb, 0);
        for (int y = bb - 1; y > tp; --y, ++k) if ((k & 1) == 0) w.Put(l, y, 0);
    }
    Release(t);
    return TRUE;
}

BOOL DrawEdge(HDC hdc, LPRECT rc, UINT edge, UINT flags) {
    Dc* dc = D(hdc);
    if (!dc || !rc) return FALSE;
    CRect r(*rc);
    // Outer then inner ring; each a top-left and a bottom-right colour.
    const COLORREF light = GetSysColor(COLOR_3DLIGHT), hi = GetSysColor(COLOR_3DHIGHLIGHT),
                   shadow = GetSysColor(COLOR_3DSHADOW), dark = GetSysColor(COLOR_3DDKSHADOW);
    struct Ring { bool on; COLORREF tl, br; };
    const bool mono = flags & BF_MONO, flat = flags & BF_FLAT;
    Ring rings[2] = {
        {(edge & BDR_OUTER) != 0, (edge & BDR_RAISEDOUTER) ? light : shadow, (edge & BDR_RAISEDOUTER) ? dark : hi},
        {(edge & BDR_INNER) != 0, (edge & BDR_RAISEDINNER) ? hi : dark, (edge & BDR_RAISEDINNER) ? shadow : light}};
    if (flags & BF_SOFT) {
        if (edge & BDR_RAISEDOUTER) rings[0].tl = hi;
        if (edge & BDR_SUNKENINNER) rings[1].tl = shadow;
    }
    for (Ring& g : rings) {
        if (!g.on) continue;
        if (mono) { g.tl = g.br = RGB(0, 0, 0); }
        if (flat) { g.tl = g.br = shadow; }
        auto line = [&](int x, int y, int w, int h, COLORREF c) {
            const HBRUSH b = CreateSolidBrush(c);
            RECT q{x, y, x + w, y + h};
            FillRect(hdc, &q, b);
            DeleteObject(b);
        };
        if (flags & BF_LEFT) line(r.left, r.top, 1, r.Height(), g.tl);
        if (flags & BF_TOP) line(r.left, r.top, r.Width(), 1, g.tl);
        if (flags & BF_RIGHT) line(r.right - 1, r.top, 1, r.Height(), g.br);
        if (flags & BF_BOTTOM) line(r.left, r.bottom - 1, r.Width(), 1, g.br);
        if (flags & BF_LEFT) r.left += 1;
        if (flags & BF_TOP) r.top += 1;
        if (flags & BF_RIGHT) r.right -= 1;
        if (flags & BF_BOTTOM) r.bottom -= 1;
    }
    if (flags & BF_MIDDLE) {
        const HBRUSH b = GetSysColorBrush(COLOR_3DFACE);
        FillRect(hdc, &r, b);
    }
    if (flags & BF_ADJUST) *rc = r;
    return TRUE;
}

BOOL DrawFrameControl(HDC hdc, LPRECT rc, UINT type, UINT state) {
    Dc* dc = D(hdc);
    if (!dc || !rc) return FALSE;
    CRect r(*rc);
    const HBRUSH face = GetSysColorBrush((state & DFCS_CHECKED) && type == DFC_BUTTON ? COLOR_WINDOW : COLOR_3DFACE);
    if (type == DFC_BUTTON && (state & 0x1F) == DFCS_BUTTONCHECK) {
        // A sunken white box; the check mark as a 7x7 tick when checked.
        const int s = std::min(r.Width(), r.Height());
        CRect box(r.left, r.top + (r.Height() - s) / 2, r.left + s, r.top + (r.Height() - s) / 2 + s);
        FillRect(hdc, &box, GetSysColorBrush(COLOR_WINDOW));
        DrawEdge(hdc, &box, EDGE_SUNKEN, BF_RECT);
        if (state & DFCS_CHECKED) {
            const COLORREF c = (state & DFCS_INACTIVE) ? GetSysColor(COLOR_GRAYTEXT) : GetSysColor(COLOR_WINDOWTEXT);
            const int x0 = box.left + (s - 7) / 2, y0 = box.top + (s - 7) / 2;
            for (int i = 0; i < 7; ++i) {
                const int y = i < 2 ? y0 + 2 + i : y0 + 4 - (i - 2);
                for (int k = 0; k < 3; ++k) SetPixelV(hdc, x0 + i, y + k, c);
            }
        }
        return TRUE;
    }
    FillRect(hdc, &r, face);
    DrawEdge(hdc, &r, (state & DFCS_PUSHED) ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT | ((state & DFCS_FLAT) ? BF_FLAT : 0));
    if (type == DFC_SCROLL) {
        // A solid triangle pointing the scroll direction.
        const int kind = state & 0x1F;
        const COLORREF c = (state & DFCS_INACTIVE) ? GetSysColor(COLOR_GRAYTEXT) : GetSysColor(COLOR_BTNTEXT);
        const int cx = r.left + r.Width() / 2, cy = r.top + r.Height() / 2;
        const int n = std::max(2, std::min(r.Width(), r.Height()) / 4);
        for (int i = 0; i < n; ++i) {
            const int half = n - 1 - i;
            for (int k = -half; k <= half; ++k) {
                // Row i is the triangle's base for i = 0; the tip points the way of the arrow.
                switch (kind) {
                case DFCS_SCROLLUP: SetPixelV(hdc, cx + k, cy + n / 2 - i, c); break;
                case DFCS_SCROLLLEFT: SetPixelV(hdc, cx + n / 2 - i, cy + k, c); break;
                case DFCS_SCROLLRIGHT: SetPixelV(hdc, cx - n / 2 + i, cy + k, c); break;
                default: SetPixelV(hdc, cx + k, cy - n / 2 + i, c); break;  // down, combo box
                }
            }
        }
    }
    return TRUE;
}

// Pixels ------------------------------------------------------------------------------------------
COLORREF GetPixel(HDC hdc, int x, int y) {
    Dc* dc = D(hdc);
    if (!dc) return CLR_INVALID;
    Target t;
    if (!Acquire(*dc, t)) return CLR_INVALID;
    const POINT p = LpToDp(*dc, POINT{x, y});
    const int ix = p.x + t.origin.x(), iy = p.y + t.origin.y();
    if (!t.Contains(ix, iy)) return CLR_INVALID;
    return ToColorref(t.Row(iy)[ix]);
}

COLORREF SetPixel(HDC hdc, int x, int y, COLORREF c) {
    Dc* dc = D(hdc);
    if (!dc) return CLR_INVALID;
    Target t;
    if (!Acquire(*dc, t)) return CLR_INVALID;
    const POINT p = LpToDp(*dc, POINT{x, y});
    const int ix = p.x + t.origin.x(), iy = p.y + t.origin.y();
    if (!t.Contains(ix, iy)) return CLR_INVALID;
    const std::uint32_t px = ResolveColor(*dc, c);
    t.Row(iy)[ix] = px;
    t.Touch(QRect(ix, iy, 1, 1));
    Release(t);
    return ToColorref(px);
}

BOOL SetPixelV(HDC hdc, int x, int y, COLORREF c) { return SetPixel(hdc, x, y, c) != CLR_INVALID; }

// Blits -------------------------------------------------------------------------------------------
BOOL PatBlt(HDC hdc, int x, int y, int w, int h, DWORD rop) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    const QRect b = DeviceBox(*dc, x, y, x + w, y + h);
    Target t;
    if (b.isEmpty() || !Acquire(*dc, t)) return TRUE;
    PatRect(*dc, t, b, rop);
    Release(t);
    return TRUE;
}

// The source pixels of a context for reading: image and the origin of its device (0,0).
static bool SourceImage(Dc& src, const QImage*& img, QPoint& origin, QRect& valid) {
    Target t;
    if (src.kind == DcKind::Window) {
        orlex::detail::DrawTarget dt;
        if (!orlex::detail::WindowDrawTarget(src.hwnd, src.client, dt) || !dt.image) return false;
        img = dt.image;
        origin = dt.origin;
        valid = dt.visible.boundingRect() & dt.image->rect();
        return true;
    }
    // The paint and clip regions of a source do not limit what is read.
    const bool paint = src.paint, clip = src.a.hasClip;
    src.paint = false;
    src.a.hasClip = false;
    const bool ok = Acquire(src, t);
    src.paint = paint;
    src.a.hasClip = clip;
    if (!ok) return false;
    img = t.img;
    origin = t.origin;
    valid = img->rect();
    return true;
}

BOOL StretchBlt(HDC hdc, int x, int y, int w, int h, HDC hsrc, int xs, int ys, int ws, int hs, DWORD rop) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    const Rop3 op(rop);
    if (!op.UsesSource()) return PatBlt(hdc, x, y, w, h, rop);
    Dc* src = D(hsrc);
    if (!src) return FALSE;
    // Device rectangles; a sign difference between the two sides mirrors.
    POINT d0 = LpToDp(*dc, POINT{x, y}), d1 = LpToDp(*dc, POINT{x + w, y + h});
    POINT s0 = LpToDp(*src, POINT{xs, ys}), s1 = LpToDp(*src, POINT{xs + ws, ys + hs});
    const bool mirrorX = (d1.x < d0.x) != (s1.x < s0.x), mirrorY = (d1.y < d0.y) != (s1.y < s0.y);
    const QRect dr(std::min(d0.x, d1.x), std::min(d0.y, d1.y), std::abs(d1.x - d0.x), std::abs(d1.y - d0.y));
    const QRect sr(std::min(s0.x, s1.x), std::min(s0.y, s1.y), std::abs(s1.x - s0.x), std::abs(s1.y - s0.y));
    if (dr.isEmpty() || sr.isEmpty()) return TRUE;
    const QImage* simg = nullptr;
    QPoint sorg;
    QRect svalid;
    if (!SourceImage(*src, simg, sorg, svalid)) return FALSE;
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    // Overlapping copies within one surface read from a snapshot.
    QImage snapshot;
    const QImage* read = simg;
    const QRect sImg = sr.translated(sorg);
    if (simg == t.img) {
        snapshot = simg->copy(sImg);
        read = &snapshot;
    }
    // Only the destination pixels inside the clip are mapped: a thumb's repaint of a wide
    // stretched track costs (and allocates for) its own width, not the track's.
    const QRect need = dr.translated(t.origin) & t.bound;
    if (need.isEmpty()) {
        Release(t);
        return TRUE;
    }
    const QPoint from = need.topLeft() - dr.translated(t.origin).topLeft();
    std::vector<int> cols, rows;
    StretchMap(dr.width(), sr.width(), mirrorX, cols, from.x(), from.x() + need.width());
    StretchMap(dr.height(), sr.height(), mirrorY, rows, from.y(), from.y() + need.height());
    const int baseX = read == &snapshot ? 0 : sImg.left(), baseY = read == &snapshot ? 0 : sImg.top();
    for (int& c : cols) {
        const int ix = sImg.left() + c;
        c = (ix >= svalid.left() && ix <= svalid.right()) ? c + baseX : -1;
    }
    for (int& r : rows) {
        const int iy = sImg.top() + r;
        r = (iy >= svalid.top() && iy <= svalid.bottom()) ? r + baseY : -1;
    }
    BlitMapped(*dc, t, need.translated(-t.origin), *read, cols, rows, rop);
    Release(t);
    return TRUE;
}

BOOL BitBlt(HDC hdc, int x, int y, int w, int h, HDC hsrc, int xs, int ys, DWORD rop) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    const Rop3 op(rop);
    if (!op.UsesSource()) return PatBlt(hdc, x, y, w, h, rop);
    Dc* src = D(hsrc);
    if (!src) return FALSE;
    if (dc->a.mapMode != MM_TEXT || src->a.mapMode != MM_TEXT)
        return StretchBlt(hdc, x, y, w, h, hsrc, xs, ys, w, h, rop);
    if (w < 0) { x += w; xs += w; w = -w; }
    if (h < 0) { y += h; ys += h; h = -h; }
    const POINT d = LpToDp(*dc, POINT{x, y});
    const POINT s = LpToDp(*src, POINT{xs, ys});
    const QImage* simg = nullptr;
    QPoint sorg;
    QRect svalid;
    if (w == 0 || h == 0 || !SourceImage(*src, simg, sorg, svalid)) return w == 0 || h == 0;
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    // Destination rectangle in image coordinates, and the shift to source image coordinates.
    const QRect dImg(d.x + t.origin.x(), d.y + t.origin.y(), w, h);
    const int shx = s.x + sorg.x() - dImg.left(), shy = s.y + sorg.y() - dImg.top();
    const QRect readable = svalid.translated(-shx, -shy);
    const bool same = simg == t.img;
    const bool copy = op.table == 0xCC;
    const PatternSource pat(*dc, t);
    for (const QRect& c : t.rects) {
        const QRect q = dImg & c & readable;
        if (q.isEmpty()) continue;
        const int n = q.width();
        // Within one surface, rows are walked away from the overlap.
        const bool up = same && shy < 0;
        for (int k = 0; k < q.height(); ++k) {
            const int yy = up ? q.bottom() - k : q.top() + k;
            const std::uint32_t* sp = reinterpret_cast<const std::uint32_t*>(simg->constScanLine(yy + shy)) + q.left() + shx;
            std::uint32_t* dp = t.Row(yy) + q.left();
            if (copy) {
                std::memmove(dp, sp, static_cast<std::size_t>(n) * 4);
            } else if (same) {
                std::vector<std::uint32_t> tmp(sp, sp + n);
                for (int i = 0; i < n; ++i) dp[i] = op.Apply(pat.At(q.left() + i, yy), tmp[static_cast<std::size_t>(i)], dp[i]);
            } else {
                for (int i = 0; i < n; ++i) dp[i] = op.Apply(pat.At(q.left() + i, yy), sp[i], dp[i]);
            }
        }
        t.Touch(q);
    }
    Release(t);
    return TRUE;
}

BOOL FloodFill(HDC hdc, int x, int y, COLORREF border) {
    Dc* dc = D(hdc);
    if (!dc) return FALSE;
    Target t;
    if (!Acquire(*dc, t)) return FALSE;
    const POINT p = LpToDp(*dc, POINT{x, y});
    const std::uint32_t stop = ResolveColor(*dc, border) & 0xFFFFFF;
    int ix = p.x + t.origin.x(), iy = p.y + t.origin.y();
    if (!t.Contains(ix, iy) || (t.Row(iy)[ix] & 0xFFFFFF) == stop) return FALSE;
    // Span fill within the clip, bounded by the border colour.
    std::vector<Span> spans;
    QImage seen(t.img->size(), QImage::Format_Grayscale8);
    seen.fill(0);
    std::vector<POINT> stack{{ix, iy}};
    while (!stack.empty()) {
        POINT q = stack.back();
        stack.pop_back();
        if (seen.constScanLine(q.y)[q.x]) continue;
        int l = q.x, r = q.x;
        auto ok = [&](int xx, int yy) { return t.Contains(xx, yy) && (t.Row(yy)[xx] & 0xFFFFFF) != stop && !seen.constScanLine(yy)[xx]; };
        while (ok(l - 1, q.y)) --l;
        while (ok(r + 1, q.y)) ++r;
        for (int k = l; k <= r; ++k) seen.scanLine(q.y)[k] = 1;
        spans.push_back(Span{q.y - t.origin.y(), l - t.origin.x(), r + 1 - t.origin.x()});
        for (int dy : {-1, 1})
            for (int k = l; k <= r; ++k)
                if (ok(k, q.y + dy)) stack.push_back(POINT{k, q.y + dy});
    }
    FillSpansWithBrush(*dc, t, spans, dc->a.brush, R2_COPYPEN);
    Release(t);
    return TRUE;
}

// CDC -----------------------------------------------------------------------------------------------
CDC::~CDC() {
    if (!m_hDC) return;
    switch (m_release) {
    case 1: {
        Dc* dc = D(m_hDC);
        if (dc) dc->attached = nullptr;
        ::DeleteDC(m_hDC);
        break;
    }
    default: {
        Dc* dc = D(m_hDC);
        if (dc && dc->attached == this) dc->attached = nullptr;
    }
    }
    m_hDC = m_hAttribDC = nullptr;
}

CDC* CDC::FromHandle(HDC h) { return TempDcWrapper(h); }

BOOL CDC::Attach(HDC h) {
    Dc* dc = D(h);
    if (!dc || m_hDC) return FALSE;
    m_hDC = m_hAttribDC = h;
    m_bPrinting = dc->kind == DcKind::Printer;
    dc->attached = this;
    m_release = 1;
    return TRUE;
}

HDC CDC::Detach() {
    HDC h = m_hDC;
    Dc* dc = D(h);
    if (dc && dc->attached == this) dc->attached = nullptr;
    m_hDC = m_hAttribDC = nullptr;
    m_release = 0;
    return h;
}

BOOL CDC::CreateCompatibleDC(CDC* dc) {
    return Attach(::CreateCompatibleDC(dc ? dc->m_hDC : nullptr));
}
BOOL CDC::CreateDC(LPCSTR driver, LPCSTR device, LPCSTR port, const void* init) {
    return Attach(::CreateDCA(driver, device, port, static_cast<const DEVMODEA*>(init)));
}
BOOL CDC::CreateIC(LPCSTR driver, LPCSTR device, LPCSTR port, const void* init) {
    return CreateDC(driver, device, port, init);
}
BOOL CDC::DeleteDC() {
    if (!m_hDC) return FALSE;
    HDC h = Detach();
    return ::DeleteDC(h);
}
int CDC::SaveDC() { return ::SaveDC(m_hDC); }
BOOL CDC::RestoreDC(int level) { return ::RestoreDC(m_hDC, level); }
int CDC::GetDeviceCaps(int index) const { return ::GetDeviceCaps(m_hDC, index); }

CPen* CDC::SelectObject(CPen* pen) {
    return pen ? CPen::FromHandle(static_cast<HPEN>(::SelectObject(m_hDC, pen->m_hObject))) : nullptr;
}
CBrush* CDC::SelectObject(CBrush* brush) {
    return brush ? CBrush::FromHandle(static_cast<HBRUSH>(::SelectObject(m_hDC, brush->m_hObject))) : nullptr;
}
CFont* CDC::SelectObject(CFont* font) {
    return font ? CFont::FromHandle(static_cast<HFONT>(::SelectObject(m_hDC, font->m_hObject))) : nullptr;
}
CBitmap* CDC::SelectObject(CBitmap* bitmap) {
    return bitmap ? CBitmap::FromHandle(static_cast<HBITMAP>(::SelectObject(m_hDC, bitmap->m_hObject))) : nullptr;
}
int CDC::SelectObject(CRgn* rgn) { return ::SelectClipRgn(m_hDC, rgn ? static_cast<HRGN>(rgn->m_hObject) : nullptr); }
CGdiObject* CDC::SelectObject(CGdiObject* obj) {
    return obj ? CGdiObject::FromHandle(::SelectObject(m_hDC, obj->m_hObject)) : nullptr;
}
HGDIOBJ CDC::SelectObject(HGDIOBJ h) { return ::SelectObject(m_hDC, h); }
CGdiObject* CDC::SelectStockObject(int index) {
    return CGdiObject::FromHandle(::SelectObject(m_hDC, ::GetStockObject(index)));
}
CPalette* CDC::SelectPalette(CPalette* pal, BOOL bg) {
    return pal ? CPalette::FromHandle(::SelectPalette(m_hDC, static_cast<HPALETTE>(pal->m_hObject), bg)) : nullptr;
}
UINT CDC::RealizePalette() { return ::RealizePalette(m_hDC); }
CPen* CDC::GetCurrentPen() const { return CPen::FromHandle(static_cast<HPEN>(::GetCurrentObject(m_hDC, OBJ_PEN))); }
CBrush* CDC::GetCurrentBrush() const { return CBrush::FromHandle(static_cast<HBRUSH>(::GetCurrentObject(m_hDC, OBJ_BRUSH))); }
CFont* CDC::GetCurrentFont() const { return CFont::FromHandle(static_cast<HFONT>(::GetCurrentObject(m_hDC, OBJ_FONT))); }
CBitmap* CDC::GetCurrentBitmap() const { return CBitmap::FromHandle(static_cast<HBITMAP>(::GetCurrentObject(m_hDC, OBJ_BITMAP))); }
CPalette* CDC::GetCurrentPalette() const { return CPalette::FromHandle(static_cast<HPALETTE>(::GetCurrentObject(m_hDC, OBJ_PAL))); }

COLORREF CDC::GetBkColor() const { return ::GetBkColor(m_hDC); }
COLORREF CDC::SetBkColor(COLORREF c) { return ::SetBkColor(m_hDC, c); }
int CDC::GetBkMode() const { return ::GetBkMode(m_hDC); }
int CDC::SetBkMode(int mode) { return ::SetBkMode(m_hDC, mode); }
COLORREF CDC::GetTextColor() const { return ::GetTextColor(m_hDC); }
COLORREF CDC::SetTextColor(COLORREF c) { return ::SetTextColor(m_hDC, c); }
int CDC::GetROP2() const { return ::GetROP2(m_hDC); }
int CDC::SetROP2(int mode) { return ::SetROP2(m_hDC, mode); }
int CDC::GetStretchBltMode() const { return ::GetStretchBltMode(m_hDC); }
int CDC::SetStretchBltMode(int mode) { return ::SetStretchBltMode(m_hDC, mode); }
int CDC::GetPolyFillMode() const { Dc* dc = D(m_hDC); return dc ? dc->a.polyFill : 0; }
int CDC::SetPolyFillMode(int mode) { return ::SetPolyFillMode(m_hDC, mode); }
UINT CDC::GetTextAlign() const { return ::GetTextAlign(m_hDC); }
UINT CDC::SetTextAlign(UINT flags) { return ::SetTextAlign(m_hDC, flags); }
int CDC::GetTextCharacterExtra() const { Dc* dc = D(m_hDC); return dc ? dc->a.charExtra : 0; }
int CDC::SetTextCharacterExtra(int extra) {
    Dc* dc = D(m_hDC);
    if (!dc) return 0x80000000;
    std::swap(dc->a.charExtra, extra);
    return extra;
}
int CDC::GetArcDirection() const { Dc* dc = D(m_hDC); return dc ? dc->a.arcDir : 0; }
int CDC::SetArcDirection(int dir) {
    Dc* dc = D(m_hDC);
    if (!dc || (dir != AD_CLOCKWISE && dir != AD_COUNTERCLOCKWISE)) return 0;
    std::swap(dc->a.arcDir, dir);
    return dir;
}
CPoint CDC::GetBrushOrg() const { Dc* dc = D(m_hDC); return dc ? CPoint(dc->a.brushOrg) : CPoint(); }
CPoint CDC::SetBrushOrg(int x, int y) {
    Dc* dc = D(m_hDC);
    if (!dc) return CPoint();
    CPoint old(dc->a.brushOrg);
    dc->a.brushOrg = POINT{x, y};
    return old;
}

int CDC::GetMapMode() const { return ::GetMapMode(m_hDC); }
int CDC::SetMapMode(int mode) { return ::SetMapMode(m_hDC, mode); }
CPoint CDC::GetViewportOrg() const { POINT p{0, 0}; ::GetViewportOrgEx(m_hDC, &p); return CPoint(p); }
CPoint CDC::SetViewportOrg(int x, int y) { POINT p{0, 0}; ::SetViewportOrgEx(m_hDC, x, y, &p); return CPoint(p); }
CPoint CDC::OffsetViewportOrg(int dx, int dy) { POINT p{0, 0}; ::OffsetViewportOrgEx(m_hDC, dx, dy, &p); return CPoint(p); }
CSize CDC::GetViewportExt() const { SIZE s{0, 0}; ::GetViewportExtEx(m_hDC, &s); return CSize(s); }
CSize CDC::SetViewportExt(int cx, int cy) { SIZE s{0, 0}; ::SetViewportExtEx(m_hDC, cx, cy, &s); return CSize(s); }
CSize CDC::ScaleViewportExt(int xn, int xd, int yn, int yd) {
    CSize s = GetViewportExt();
    if (xd && yd) SetViewportExt(MulDiv(s.cx, xn, xd), MulDiv(s.cy, yn, yd));
    return s;
}
CPoint CDC::GetWindowOrg() const { POINT p{0, 0}; ::GetWindowOrgEx(m_hDC, &p); return CPoint(p); }
CPoint CDC::SetWindowOrg(int x, int y) { POINT p{0, 0}; ::SetWindowOrgEx(m_hDC, x, y, &p); return CPoint(p); }
CPoint CDC::OffsetWindowOrg(int dx, int dy) { POINT p{0, 0}; ::OffsetWindowOrgEx(m_hDC, dx, dy, &p); return CPoint(p); }
CSize CDC::GetWindowExt() const { SIZE s{0, 0}; ::GetWindowExtEx(m_hDC, &s); return CSize(s); }
CSize CDC::SetWindowExt(int cx, int cy) { SIZE s{0, 0}; ::SetWindowExtEx(m_hDC, cx, cy, &s); return CSize(s); }
CSize CDC::ScaleWindowExt(int xn, int xd, int yn, int yd) {
    CSize s = GetWindowExt();
    if (xd && yd) SetWindowExt(MulDiv(s.cx, xn, xd), MulDiv(s.cy, yn, yd));
    return s;
}
void CDC::DPtoLP(LPPOINT pts, int count) const { ::DPtoLP(m_hDC, pts, count); }
void CDC::DPtoLP(LPRECT r) const { ::DPtoLP(m_hDC, reinterpret_cast<LPPOINT>(r), 2); }
void CDC::DPtoLP(LPSIZE s) const {
    if (!s) return;
    POINT p[2] = {{0, 0}, {s->cx, s->cy}};
    ::DPtoLP(m_hDC, p, 2);
    s->cx = std::abs(p[1].x - p[0].x);
    s->cy = std::abs(p[1].y - p[0].y);
}
void CDC::LPtoDP(LPPOINT pts, int count) const { ::LPtoDP(m_hDC, pts, count); }
void CDC::LPtoDP(LPRECT r) const { ::LPtoDP(m_hDC, reinterpret_cast<LPPOINT>(r), 2); }
void CDC::LPtoDP(LPSIZE s) const {
    if (!s) return;
    POINT p[2] = {{0, 0}, {s->cx, s->cy}};
    ::LPtoDP(m_hDC, p, 2);
    s->cx = std::abs(p[1].x - p[0].x);
    s->cy = std::abs(p[1].y - p[0].y);
}
void CDC::DPtoHIMETRIC(LPSIZE s) const {
    if (!s) return;
    const int dx = GetDeviceCaps(LOGPIXELSX), dy = GetDeviceCaps(LOGPIXELSY);
    if (!dx || !dy) return;
    s->cx = MulDiv(s->cx, 2540, dx);
    s->cy = MulDiv(s->cy, 2540, dy);
}
void CDC::HIMETRICtoDP(LPSIZE s) const {
    if (!s) return;
    s->cx = MulDiv(s->cx, GetDeviceCaps(LOGPIXELSX), 2540);
    s->cy = MulDiv(s->cy, GetDeviceCaps(LOGPIXELSY), 2540);
}
void CDC::HIMETRICtoLP(LPSIZE s) const { HIMETRICtoDP(s); DPtoLP(s); }
void CDC::LPtoHIMETRIC(LPSIZE s) const { LPtoDP(s); DPtoHIMETRIC(s); }

int CDC::GetClipBox(LPRECT r) const { return ::GetClipBox(m_hDC, r); }
BOOL CDC::PtVisible(int x, int y) const {
    Dc* dc = D(m_hDC);
    if (!dc) return FALSE;
    const POINT p = LpToDp(*dc, POINT{x, y});
    return DeviceClip(*dc).contains(QPoint(p.x, p.y));
}
BOOL CDC::RectVisible(LPCRECT r) const {
    Dc* dc = D(m_hDC);
    if (!dc || !r) return FALSE;
    const QRect b = DeviceBox(*dc, r->left, r->top, r->right, r->bottom);
    return !b.isEmpty() && DeviceClip(*dc).intersects(b);
}
int CDC::SelectClipRgn(CRgn* rgn) { return ::SelectClipRgn(m_hDC, rgn ? static_cast<HRGN>(rgn->m_hObject) : nullptr); }
int CDC::SelectClipRgn(CRgn* rgn, int mode) {
    return ::ExtSelectClipRgn(m_hDC, rgn ? static_cast<HRGN>(rgn->m_hObject) : nullptr, mode);
}
int CDC::ExcludeClipRect(int x1, int y1, int x2, int y2) { return ::ExcludeClipRect(m_hDC, x1, y1, x2, y2); }
int CDC::ExcludeClipRect(LPCRECT r) { return r ? ExcludeClipRect(r->left, r->top, r->right, r->bottom) : ERROR; }
int CDC::IntersectClipRect(int x1, int y1, int x2, int y2) { return ::IntersectClipRect(m_hDC, x1, y1, x2, y2); }
int CDC::IntersectClipRect(LPCRECT r) { return r ? IntersectClipRect(r->left, r->top, r->right, r->bottom) : ERROR; }
int CDC::OffsetClipRgn(int dx, int dy) {
    Dc* dc = D(m_hDC);
    if (!dc) return ERROR;
    const POINT o = LpToDp(*dc, POINT{0, 0}), p = LpToDp(*dc, POINT{dx, dy});
    if (dc->a.hasClip) dc->a.clip.translate(p.x - o.x, p.y - o.y);
    return RegionKindOf(DeviceClip(*dc));
}
int CDC::GetClipRgn(CRgn* rgn) const { return rgn ? ::GetClipRgn(m_hDC, static_cast<HRGN>(rgn->m_hObject)) : -1; }

CPoint CDC::GetCurrentPosition() const { Dc* dc = D(m_hDC); return dc ? CPoint(dc->a.cur) : CPoint(); }
CPoint CDC::MoveTo(int x, int y) { POINT p{0, 0}; ::MoveToEx(m_hDC, x, y, &p); return CPoint(p); }
BOOL CDC::LineTo(int x, int y) { return ::LineTo(m_hDC, x, y); }
BOOL CDC::Polyline(const POINT* pts, int count) { return ::Polyline(m_hDC, pts, count); }
BOOL CDC::PolylineTo(const POINT* pts, int count) {
    Dc* dc = D(m_hDC);
    if (!dc || !pts || count < 1) return FALSE;
    std::vector<POINT> all{dc->a.cur};
    all.insert(all.end(), pts, pts + count);
    BOOL ok = ::Polyline(m_hDC, all.data(), static_cast<int>(all.size()));
    dc->a.cur = pts[count - 1];
    return ok;
}
BOOL CDC::PolyPolyline(const POINT* pts, const DWORD* counts, int n) {
    if (!pts || !counts) return FALSE;
    for (int k = 0; k < n; ++k) {
        ::Polyline(m_hDC, pts, static_cast<int>(counts[k]));
        pts += counts[k];
    }
    return TRUE;
}
BOOL CDC::Polygon(const POINT* pts, int count) { return ::Polygon(m_hDC, pts, count); }
BOOL CDC::PolyPolygon(const POINT* pts, const INT* counts, int n) { return PolygonImpl(m_hDC, pts, counts, n); }
BOOL CDC::Rectangle(int x1, int y1, int x2, int y2) { return ::Rectangle(m_hDC, x1, y1, x2, y2); }
BOOL CDC::RoundRect(int x1, int y1, int x2, int y2, int w, int h) {
    // Rounded corners as a polygon of the corner arcs.
    CRect r(x1, y1, x2, y2);
    r.NormalizeRect();
    const double rx = std::min(w, r.Width()) / 2.0, ry = std::min(h, r.Height()) / 2.0;
    if (rx < 1 || ry < 1) return Rectangle(x1, y1, x2, y2);
    std::vector<POINT> pts;
    const double cxs[4] = {r.right - 1 - rx, r.left + rx, r.left + rx, r.right - 1 - rx};
    const double cys[4] = {r.top + ry, r.top + ry, r.bottom - 1 - ry, r.bottom - 1 - ry};
    for (int q = 0; q < 4; ++q)
        for (int i = 0; i <= 8; ++i) {
            const double a = (q * 90 + i * 11.25) * M_PI / 180.0;
            pts.push_back(POINT{static_cast<LONG>(std::lround(cxs[q] + rx * std::cos(a))),
                                static_cast<LONG>(std::lround(cys[q] - ry * std::sin(a)))});
        }
    return Polygon(pts.data(), static_cast<int>(pts.size()));
}
BOOL CDC::Ellipse(int x1, int y1, int x2, int y2) { return ::Ellipse(m_hDC, x1, y1, x2, y2); }
BOOL CDC::Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    return ::Arc(m_hDC, x1, y1, x2, y2, x3, y3, x4, y4);
}
BOOL CDC::ArcTo(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    BOOL ok = ::Arc(m_hDC, x1, y1, x2, y2, x3, y3, x4, y4);
    MoveTo(x4, y4);
    return ok;
}
BOOL CDC::Chord(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    return ::Chord(m_hDC, x1, y1, x2, y2, x3, y3, x4, y4);
}
BOOL CDC::Pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    return ::Pie(m_hDC, x1, y1, x2, y2, x3, y3, x4, y4);
}

void CDC::FillRect(LPCRECT r, CBrush* brush) { if (brush) ::FillRect(m_hDC, r, static_cast<HBRUSH>(brush->m_hObject)); }
void CDC::FillSolidRect(LPCRECT r, COLORREF c) {
    Dc* dc = D(m_hDC);
    if (!dc || !r) return;
    // The platform does this with ExtTextOut(ETO_OPAQUE): it sets the background colour.
    dc->a.bk = c;
    Target t;
    if (!Acquire(*dc, t)) return;
    FillSolidDevice(t, DeviceBox(*dc, r->left, r->top, r->right, r->bottom), ResolveColor(*dc, c));
    Release(t);
}
void CDC::FillSolidRect(int x, int y, int cx, int cy, COLORREF c) {
    RECT r{x, y, x + cx, y + cy};
    FillSolidRect(&r, c);
}
void CDC::FrameRect(LPCRECT r, CBrush* brush) { if (brush) ::FrameRect(m_hDC, r, static_cast<HBRUSH>(brush->m_hObject)); }
void CDC::InvertRect(LPCRECT r) { ::InvertRect(m_hDC, r); }
BOOL CDC::FillRgn(CRgn* rgn, CBrush* brush) {
    Dc* dc = D(m_hDC);
    Region* r = rgn ? AsRegion(rgn->m_hObject) : nullptr;
    if (!dc || !r || !brush) return FALSE;
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    FillSpansWithBrush(*dc, t, RegionSpans(r->rgn), static_cast<HBRUSH>(brush->m_hObject), R2_COPYPEN);
    Release(t);
    return TRUE;
}
BOOL CDC::FrameRgn(CRgn* rgn, CBrush* brush, int w, int h) {
    Region* r = rgn ? AsRegion(rgn->m_hObject) : nullptr;
    if (!r || !brush) return FALSE;
    // The frame: the region less itself shrunk by w and h.
    QRegion inner = r->rgn;
    for (int k = 1; k <= std::max(w, h); ++k) {
        const int dx = std::min(k, w), dy = std::min(k, h);
        inner &= r->rgn.translated(dx, 0) & r->rgn.translated(-dx, 0) & r->rgn.translated(0, dy) & r->rgn.translated(0, -dy);
    }
    CRgn frame;
    frame.CreateRectRgn(0, 0, 0, 0);
    AsRegion(frame.m_hObject)->rgn = r->rgn - inner;
    return FillRgn(&frame, brush);
}
BOOL CDC::InvertRgn(CRgn* rgn) {
    Dc* dc = D(m_hDC);
    Region* r = rgn ? AsRegion(rgn->m_hObject) : nullptr;
    if (!dc || !r) return FALSE;
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    for (const QRect& q : r->rgn) PatRect(*dc, t, q, DSTINVERT);
    Release(t);
    return TRUE;
}
BOOL CDC::PaintRgn(CRgn* rgn) {
    Dc* dc = D(m_hDC);
    return dc ? FillRgn(rgn, CBrush::FromHandle(dc->a.brush)) : FALSE;
}
void CDC::Draw3dRect(LPCRECT r, COLORREF tl, COLORREF br) {
    if (r) Draw3dRect(r->left, r->top, r->right - r->left, r->bottom - r->top, tl, br);
}
void CDC::Draw3dRect(int x, int y, int cx, int cy, COLORREF tl, COLORREF br) {
    FillSolidRect(x, y, cx - 1, 1, tl);
    FillSolidRect(x, y, 1, cy - 1, tl);
    FillSolidRect(x + cx, y, -1, cy, br);
    FillSolidRect(x, y + cy, cx, -1, br);
}
void CDC::DrawFocusRect(LPCRECT r) { ::DrawFocusRect(m_hDC, r); }
BOOL CDC::DrawEdge(LPRECT r, UINT edge, UINT flags) { return ::DrawEdge(m_hDC, r, edge, flags); }
BOOL CDC::DrawFrameControl(LPRECT r, UINT type, UINT state) { return ::DrawFrameControl(m_hDC, r, type, state); }

COLORREF CDC::GetPixel(int x, int y) const { return ::GetPixel(m_hDC, x, y); }
COLORREF CDC::SetPixel(int x, int y, COLORREF c) { return ::SetPixel(m_hDC, x, y, c); }
BOOL CDC::SetPixelV(int x, int y, COLORREF c) { return ::SetPixelV(m_hDC, x, y, c); }
BOOL CDC::PatBlt(int x, int y, int w, int h, DWORD rop) { return ::PatBlt(m_hDC, x, y, w, h, rop); }
BOOL CDC::BitBlt(int x, int y, int w, int h, CDC* src, int xs, int ys, DWORD rop) {
    return ::BitBlt(m_hDC, x, y, w, h, src ? src->m_hDC : nullptr, xs, ys, rop);
}
BOOL CDC::StretchBlt(int x, int y, int w, int h, CDC* src, int xs, int ys, int ws, int hs, DWORD rop) {
    return ::StretchBlt(m_hDC, x, y, w, h, src ? src->m_hDC : nullptr, xs, ys, ws, hs, rop);
}
BOOL CDC::FloodFill(int x, int y, COLORREF border) { return ::FloodFill(m_hDC, x, y, border); }
