// Image lists over the layer's bitmaps. The image strip holds each picture's colours; the
// mask strip holds 0xFFFFFFFF where the picture is transparent and 0xFF000000 where it is
// opaque, so that a masked draw is one AND and one XOR a pixel: dest = (dest & mask) ^ image,
// the platform's rule (a transparent pixel keeps the destination when the image is black
// there, as ImageList_AddMasked makes it).
#include <QImage>

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <set>

#include "foundation/platform/afxcmn.h"
#include "foundation/platform/gui/gdi_dc_p.h"

using namespace orlex::gdi;

namespace orlex::detail {

struct ImageList {
    int cx = 0, cy = 0;
    UINT flags = 0;
    int count = 0;
    int capacity = 0;  // images the strips have room for
    int grow = 1;
    HBITMAP image = nullptr;  // capacity*cx x cy, RGB32
    HBITMAP mask = nullptr;   // same size; null without ILC_MASK
};

}  // namespace orlex::detail

using orlex::detail::ImageList;

namespace {

constexpr std::uint32_t kTransparent = 0xFFFFFFFFu;
constexpr std::uint32_t kOpaque = 0xFF000000u;
constexpr std::uint32_t kRgb = 0x00FFFFFFu;
// The most pixels a strip may have (256 MB of image): more is no image list but bad input.
constexpr long long kMaxStripPixels = 1LL << 26;

struct Lists {
    std::mutex mu;
    std::set<ImageList*> live;
};
Lists& AllLists() {
    static Lists* l = new Lists;
    return *l;
}

ImageList* Find(HIMAGELIST h) {
    Lists& l = AllLists();
    std::lock_guard lock(l.mu);
    return l.live.count(h) ? h : nullptr;
}

HBITMAP NewStrip(int w, int h, int bitsPixel, std::uint32_t fill) {
    Bitmap* b = NewBitmap(w, h, bitsPixel);
    if (!b->image.isNull()) b->image.fill(fill);
    return static_cast<HBITMAP>(Register(b));
}

// Widens a strip to `w` pixels, keeping its columns; false when memory runs out.
bool Widen(HBITMAP strip, int w, std::uint32_t fill) {
    Bitmap* b = AsBitmap(strip);
    if (!b) return false;
    if (b->image.width() >= w) return true;
    QImage wider(w, b->image.height(), QImage::Format_RGB32);
    if (wider.isNull()) return false;
    wider.fill(fill);
    const int bytes = b->image.width() * 4;
    for (int y = 0; y < wider.height(); ++y) std::memcpy(wider.scanLine(y), b->image.constScanLine(y), bytes);
    b->image = std::move(wider);
    return true;
}

bool Reserve(ImageList& l, int images) {
    if (images <= l.capacity) return true;
    int cap = l.capacity;
    while (cap < images) cap += l.grow;
    const long long w = static_cast<long long>(cap) * l.cx;
    if (w * l.cy > kMaxStripPixels) return false;
    // The capacity grows only when both strips did (a wider image strip alone is harmless).
    if (!Widen(l.image, static_cast<int>(w), kOpaque)) return false;
    if (l.mask && !Widen(l.mask, static_cast<int>(w), kTransparent)) return false;
    l.capacity = cap;
    return true;
}

// Copies the pictures of `src` into the list from image l.count on; the mask comes from
// `maskSrc` (white = transparent), from the pixels of colour maskRgb (when useColour), or
// is opaque. Returns the first new index or -1.
int AddImages(ImageList& l, HBITMAP src, HBITMAP maskSrc, bool useColour, std::uint32_t maskRgb) {
    Bitmap* b = AsBitmap(src);
    if (!b) return -1;
    Bitmap* mb = maskSrc ? AsBitmap(maskSrc) : nullptr;
    if (maskSrc && !mb) return -1;
    DibPull(*b);
    if (mb) DibPull(*mb);
    const int n = std::max(1, b->image.width() / l.cx);
    if (!Reserve(l, l.count + n)) return -1;
    Bitmap* strip = AsBitmap(l.image);
    Bitmap* mstrip = l.mask ? AsBitmap(l.mask) : nullptr;
    assert(strip && (!l.mask || mstrip));
    const int x0 = l.count * l.cx, w = n * l.cx;
    const int sw = std::min(w, b->image.width());
    const int mw = mb ? std::min(w, mb->image.width()) : 0;
    for (int y = 0; y < l.cy; ++y) {
        auto* d = reinterpret_cast<std::uint32_t*>(strip->image.scanLine(y)) + x0;
        auto* m = mstrip ? reinterpret_cast<std::uint32_t*>(mstrip->image.scanLine(y)) + x0 : nullptr;
        const auto* s = y < b->image.height() ? reinterpret_cast<const std::uint32_t*>(b->image.constScanLine(y))
                                               : nullptr;
        int x = 0;
        if (s)
            for (; x < sw; ++x) d[x] = s[x] | kOpaque;
        for (; x < w; ++x) d[x] = kOpaque;
        if (!m) continue;
        if (useColour) {
            for (x = 0; x < w; ++x) {
                const bool clear = (d[x] & kRgb) == maskRgb;
                m[x] = clear ? kTransparent : kOpaque;
                d[x] = clear ? kOpaque : d[x];
            }
        } else if (mb && y < mb->image.height()) {
            const auto* ms = reinterpret_cast<const std::uint32_t*>(mb->image.constScanLine(y));
            for (x = 0; x < mw; ++x) m[x] = (ms[x] & kRgb) == kRgb ? kTransparent : kOpaque;
            for (; x < w; ++x) m[x] = kOpaque;
        } else {
            std::fill(m, m + w, kOpaque);
        }
    }
    const int first = l.count;
    l.count += n;
    return first;
}

std::uint32_t RgbOf(COLORREF c) {
    return (static_cast<std::uint32_t>(GetRValue(c)) << 16) | (static_cast<std::uint32_t>(GetGValue(c)) << 8) |
           GetBValue(c);
}

// The row loops of the drawing styles: one per style, chosen once a draw.
void RowMasked(std::uint32_t* d, const std::uint32_t* s, const std::uint32_t* m, int n) {
    for (int x = 0; x < n; ++x) d[x] = (d[x] & m[x]) ^ (s[x] & kRgb);
}
void RowImage(std::uint32_t* d, const std::uint32_t* s, const std::uint32_t*, int n) {
    std::memcpy(d, s, static_cast<std::size_t>(n) * 4);
}
void RowMask(std::uint32_t* d, const std::uint32_t*, const std::uint32_t* m, int n) {
    std::memcpy(d, m, static_cast<std::size_t>(n) * 4);
}

}  // namespace

HIMAGELIST ImageList_Create(int cx, int cy, UINT flags, int initial, int grow) {
    if (cx <= 0 || cy <= 0 || cx > 4096 || cy > 4096) return nullptr;
    auto* l = new ImageList;
    l->cx = cx;
    l->cy = cy;
    l->flags = flags;
    l->grow = std::max(1, grow);
    l->capacity = static_cast<int>(std::clamp<long long>(initial, 1, kMaxStripPixels / (static_cast<long long>(cx) * cy)));
    l->image = NewStrip(l->capacity * cx, cy, 32, kOpaque);
    if (flags & ILC_MASK) l->mask = NewStrip(l->capacity * cx, cy, 1, kTransparent);
    Bitmap* bi = AsBitmap(l->image);
    Bitmap* bm = l->mask ? AsBitmap(l->mask) : nullptr;
    if (!bi || bi->image.isNull() || (l->mask && (!bm || bm->image.isNull()))) {
        if (l->image) DeleteObject(l->image);
        if (l->mask) DeleteObject(l->mask);
        delete l;
        return nullptr;
    }
    Lists& all = AllLists();
    std::lock_guard lock(all.mu);
    all.live.insert(l);
    return l;
}

BOOL ImageList_Destroy(HIMAGELIST h) {
    {
        Lists& all = AllLists();
        std::lock_guard lock(all.mu);
        if (!all.live.erase(h)) return FALSE;
    }
    DeleteObject(h->image);
    if (h->mask) DeleteObject(h->mask);
    delete h;
    return TRUE;
}

int ImageList_Add(HIMAGELIST h, HBITMAP image, HBITMAP mask) {
    ImageList* l = Find(h);
    return l ? AddImages(*l, image, mask, false, 0) : -1;
}

int ImageList_AddMasked(HIMAGELIST h, HBITMAP image, COLORREF mask) {
    ImageList* l = Find(h);
    return l ? AddImages(*l, image, nullptr, true, RgbOf(mask)) : -1;
}

BOOL ImageList_Remove(HIMAGELIST h, int i) {
    ImageList* l = Find(h);
    if (!l || i < -1 || i >= l->count) return FALSE;
    if (i == -1) {
        l->count = 0;
        return TRUE;
    }
    // The images after i move down one place, in both strips.
    for (HBITMAP strip : {l->image, l->mask}) {
        Bitmap* b = strip ? AsBitmap(strip) : nullptr;
        if (!b) continue;
        const int from = (i + 1) * l->cx, bytes = (l->count - i - 1) * l->cx * 4;
        for (int y = 0; y < l->cy; ++y) {
            auto* row = reinterpret_cast<std::uint32_t*>(b->image.scanLine(y));
            std::memmove(row + i * l->cx, row + from, static_cast<std::size_t>(bytes));
        }
    }
    --l->count;
    return TRUE;
}

int ImageList_GetImageCount(HIMAGELIST h) {
    ImageList* l = Find(h);
    return l ? l->count : 0;
}

BOOL ImageList_GetImageInfo(HIMAGELIST h, int i, IMAGEINFO* info) {
    ImageList* l = Find(h);
    if (!l || !info || i < 0 || i >= l->count) return FALSE;
    info->hbmImage = l->image;
    info->hbmMask = l->mask;
    info->Unused1 = info->Unused2 = 0;
    info->rcImage = RECT{i * l->cx, 0, (i + 1) * l->cx, l->cy};
    return TRUE;
}

BOOL ImageList_GetIconSize(HIMAGELIST h, int* cx, int* cy) {
    ImageList* l = Find(h);
    if (!l || !cx || !cy) return FALSE;
    *cx = l->cx;
    *cy = l->cy;
    return TRUE;
}

BOOL ImageList_Draw(HIMAGELIST h, int i, HDC hdc, int x, int y, UINT style) {
    ImageList* l = Find(h);
    Dc* dc = LookupDc(hdc);
    if (!l || !dc || i < 0 || i >= l->count) return FALSE;
    Bitmap* strip = AsBitmap(l->image);
    Bitmap* mstrip = l->mask ? AsBitmap(l->mask) : nullptr;
    if (!strip) return FALSE;
    auto row = &RowImage;
    if (style & ILD_MASK) row = mstrip ? &RowMask : nullptr;
    else if (!(style & ILD_IMAGE) && mstrip) row = &RowMasked;
    Target t;
    if (!Acquire(*dc, t)) return TRUE;  // nothing visible to draw on
    const POINT p = LpToDp(*dc, POINT{x, y});
    const QRect dest(p.x + t.origin.x(), p.y + t.origin.y(), l->cx, l->cy);
    const int sx0 = i * l->cx;
    for (const QRect& r : t.rects) {
        const QRect a = (r & dest) & t.img->rect();
        if (a.isEmpty()) continue;
        const int sx = sx0 + (a.left() - dest.left());
        assert(sx + a.width() <= strip->image.width() && a.bottom() - dest.top() < l->cy);
        for (int iy = a.top(); iy <= a.bottom(); ++iy) {
            const int sy = iy - dest.top();
            const auto* s = reinterpret_cast<const std::uint32_t*>(strip->image.constScanLine(sy)) + sx;
            const auto* m = mstrip ? reinterpret_cast<const std::uint32_t*>(mstrip->image.constScanLine(sy)) + sx
                                   : nullptr;
            if (row) {
                row(t.Row(iy) + a.left(), s, m, a.width());
            } else {
                // ILD_MASK on a list without masks: all opaque, a black block.
                std::fill(t.Row(iy) + a.left(), t.Row(iy) + a.left() + a.width(), kOpaque);
            }
        }
        t.Touch(a);
    }
    Release(t);
    return TRUE;
}

// CImageList -------------------------------------------------------------------------------------
BOOL CImageList::Create(int cx, int cy, UINT flags, int initial, int grow) {
    if (m_hImageList) return FALSE;
    m_hImageList = ImageList_Create(cx, cy, flags, initial, grow);
    return m_hImageList != nullptr;
}

int CImageList::Add(CBitmap* image, COLORREF mask) {
    return image ? ImageList_AddMasked(m_hImageList, static_cast<HBITMAP>(image->m_hObject), mask) : -1;
}

int CImageList::Add(CBitmap* image, CBitmap* mask) {
    if (!image) return -1;
    return ImageList_Add(m_hImageList, static_cast<HBITMAP>(image->m_hObject),
                         mask ? static_cast<HBITMAP>(mask->m_hObject) : nullptr);
}

BOOL CImageList::Draw(CDC* dc, int i, POINT pt, UINT style) {
    return dc ? ImageList_Draw(m_hImageList, i, dc->m_hDC, pt.x, pt.y, style) : FALSE;
}

HIMAGELIST CImageList::GetSafeHandle() const {
    // Called through null pointers by code written for the platform: keep the compiler from
    // assuming `this` is non-null.
    auto self = reinterpret_cast<std::uintptr_t>(this);
    asm volatile("" : "+r"(self));
    return self ? reinterpret_cast<const CImageList*>(self)->m_hImageList : nullptr;
}

BOOL CImageList::DeleteImageList() {
    if (!m_hImageList) return FALSE;
    ImageList_Destroy(m_hImageList);
    m_hImageList = nullptr;
    return TRUE;
}

BOOL CImageList::Attach(HIMAGELIST list) {
    if (m_hImageList || !Find(list)) return FALSE;
    m_hImageList = list;
    return TRUE;
}

HIMAGELIST CImageList::Detach() {
    HIMAGELIST h = m_hImageList;
    m_hImageList = nullptr;
    return h;
}
