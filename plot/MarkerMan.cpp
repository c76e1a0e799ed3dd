// CMarker and CMarkerMan: the markers of a plot and the pixels they cover. A marker's
// saved pixels are what the screen showed under its line; markers at one pixel form a
// stack (over, under) that is undrawn from the top and drawn from the bottom, and the
// horizontal markers' rows are kept whole where vertical markers cross them.
#include "plot/MarkerMan.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/pixelrun.h"
#include "plot/MapClass.h"
#include "plot/PlotGeometry.h"

namespace {

constexpr COLORREF kDefaultMarkerColor[6] = {0xFFFFFF, 0xFF0000, 0x008080, 0x000000, 0x800080, 0x008000};

void readColumn(HDC dc, int x, int top, int count, COLORREF* out)
{
    orlex::ReadPixelRun(dc, x, top, true, count, out);
}

void writeColumn(HDC dc, int x, int top, int count, const COLORREF* in)
{
    orlex::WritePixelRun(dc, x, top, true, count, in);
}

void readRow(HDC dc, int y, int left, int count, COLORREF* out)
{
    orlex::ReadPixelRun(dc, left, y, false, count, out);
}

void writeRow(HDC dc, int y, int left, int count, const COLORREF* in)
{
    orlex::WritePixelRun(dc, left, y, false, count, in);
}

bool drawable(const MapClass* map)
{
    return map != nullptr && (map->MapType == 100 || map->MapType == 300);
}

// A pen for a marker's line, selected with the copy raster operation and transparent
// gaps for the time of the object.
class LinePen {
public:
    LinePen(HDC hdc, int style, COLORREF colour)
        : hdc_(hdc), pen_(CreatePen(style, 0, colour)), old_(SelectObject(hdc, pen_)),
          rop_(SetROP2(hdc, R2_COPYPEN)), bk_(SetBkMode(hdc, TRANSPARENT))
    {
    }
    ~LinePen()
    {
        SetBkMode(hdc_, bk_);
        SetROP2(hdc_, rop_);
        SelectObject(hdc_, old_);
        DeleteObject(pen_);
    }
    LinePen(const LinePen&) = delete;
    LinePen& operator=(const LinePen&) = delete;

private:
    HDC hdc_;
    HPEN pen_;
    HGDIOBJ old_;
    int rop_, bk_;
};

}  // namespace

// ---- CMarker ----------------------------------------------------------------------------------

CMarker& CMarker::operator=(const CMarker& other)
{
    if (this == &other)
        return *this;
    Active = other.Active;
    Color = other.Color;
    Value = other.Value;
    Width = other.Width;
    Pixel = other.Pixel;
    ID = other.ID;
    Link = other.Link;
    Over = other.Over;
    Under = other.Under;
    // The saved pixels go into this marker's own array: as many as fit.
    const int n = Saved != nullptr && other.Saved != nullptr ? std::min(SavedRoom, other.SavedRoom) : 0;
    if (n > 0)
        std::memcpy(Saved, other.Saved, sizeof(COLORREF) * size_t(n));
    SavedCount = std::min(other.SavedCount, n);
    SavedValid = other.SavedValid && n >= other.SavedRoom;
    return *this;
}

void CMarker::FlushBuffer()
{
    delete[] Saved;
    Saved = nullptr;
    SavedCount = 0;
    SavedRoom = 0;
    SavedValid = false;
}

void CMarker::Reset()
{
    FlushBuffer();
    Active = 0;
    Value = 0.0;
    Width = 1;
    Pixel = 0;
    Link = Over = Under = 0;
}

// ---- CMarkerMan: construction and reading ---------------------------------------------------

CMarkerMan::CMarkerMan(MapClass* map) : Map(map)
{
    for (int i = 0; i < 12; ++i) {
        Vert[i].ID = 1u << i;
        Vert[i].Color = kDefaultMarkerColor[i / 2];
    }
    for (CMarker& h : Horz)
        h.ID = 1;
}

CMarkerMan& CMarkerMan::operator=(const CMarkerMan& other)
{
    if (this == &other)
        return *this;
    Map = other.Map;
    TrackID = other.TrackID;
    MarkerMap = other.MarkerMap;
    HzState = other.HzState;
    Kind = other.Kind;
    NormalColor = other.NormalColor;
    ActiveColor = other.ActiveColor;
    for (int i = 0; i < 12; ++i)
        Vert[i] = other.Vert[i];
    for (int i = 0; i < 3; ++i)
        Horz[i] = other.Horz[i];
    return *this;
}

int CMarkerMan::GetMarkerNum() const
{
    int n = 0;
    for (unsigned m = MarkerMap & 0xFFF; m != 0; m &= m - 1)
        ++n;
    return n;
}

int CMarkerMan::GetActiveMkrPair() const
{
    for (int p = 0; p < 6; ++p)
        if (Exists(2 * p) && Exists(2 * p + 1) && Vert[2 * p].Active && Vert[2 * p + 1].Active)
            return p;
    return -1;
}

int CMarkerMan::GetIndex(unsigned int id)
{
    for (int i = 0; i < 12; ++i)
        if (id & (1u << i))
            return i;
    return 12;
}

int CMarkerMan::GetHorzIndex(unsigned int id)
{
    for (int i = 0; i < 3; ++i)
        if (id & (1u << i))
            return i;
    return 3;
}

unsigned int* CMarkerMan::GetID(int index) const
{
    static unsigned int shared[5];
    const CMarker& m = Vert[index >= 0 && index < 12 ? index : 0];
    shared[0] = m.ID;
    shared[1] = m.Link;
    shared[2] = m.Over;
    shared[3] = m.Under;
    shared[4] = m.Active;
    return shared;
}

int CMarkerMan::GetLink(int index) const
{
    return index >= 0 && index < 12 ? GetIndex(Vert[index].Link) : 12;
}

CMARKER CMarkerMan::GetMarker(int index) const
{
    if (index < 0 || index >= 12)
        return CMARKER{};
    return CMARKER{Vert[index].Value, Vert[index].Width, Vert[index].Pixel};
}

CMARKER CMarkerMan::GetHzMarker(int index) const
{
    if (index < 0 || index >= 3)
        index = 0;
    return CMARKER{Horz[index].Value, Horz[index].Width, Horz[index].Pixel};
}

void CMarkerMan::SetMarker(int index, double value, int width)
{
    if (index < 0 || index >= 12)
        return;
    Vert[index].Value = value;
    Vert[index].set_width(width);
}

COLORREF CMarkerMan::LineColor(const CMarker& m) const
{
    if (ActNorMode)
        return m.Active ? ActiveColor : NormalColor;
    return m.Color;
}

void CMarkerMan::MarkerDbl2PixelWidth(int width, double value, int* left, int* right) const
{
    const double half = width * DataPointSize * 0.5;
    *left = Map->MarkerDbl2Pix(value - half, 2);
    *right = Map->MarkerDbl2Pix(value + half, 2);
}

int CMarkerMan::Columns(const CMarker& m, int, int cols[2]) const
{
    if (m.Width > 1) {
        MarkerDbl2PixelWidth(m.Width, m.Value, &cols[0], &cols[1]);
        return 2;
    }
    cols[0] = m.Pixel;
    return 1;
}

// ---- lines and saved pixels ---------------------------------------------------------------------

void CMarkerMan::DrawVerticalMarker(HDC hdc, const CMarker& m, int index)
{
    const RECT& b = Map->Bound;
    int cols[2];
    const int n = Columns(m, index, cols);
    LinePen pen(hdc, n == 2 ? (index % 2 == 0 ? PS_DASH : PS_DOT) : PS_DASHDOTDOT, LineColor(m));
    for (int k = 0; k < n; ++k) {
        MoveToEx(hdc, cols[k], b.top, nullptr);
        LineTo(hdc, cols[k], b.bottom + 1);
    }
}

void CMarkerMan::DrawHorizontalLine(HDC hdc, const CMarker& m)
{
    const RECT& b = Map->Bound;
    LinePen pen(hdc, PS_DASHDOTDOT, LineColor(m));
    MoveToEx(hdc, b.left, m.Pixel, nullptr);
    LineTo(hdc, b.right + 1, m.Pixel);
}

void CMarkerMan::CrossingsBefore(HDC hdc, const int* cols, int n, COLORREF* kept)
{
    const RECT& b = Map->Bound;
    for (int h = 0; h < 3; ++h) {
        const CMarker& hm = Horz[h];
        for (int k = 0; k < n; ++k) {
            kept[h * 2 + k] = CLR_INVALID;
            // An edge outside the plot crosses no saved row.
            if (!hm.SavedValid || cols[k] < b.left || cols[k] > b.right || cols[k] - b.left >= hm.SavedRoom)
                continue;
            kept[h * 2 + k] = GetPixel(hdc, cols[k], hm.Pixel);
            if (hm.Saved[cols[k] - b.left] != CLR_INVALID)
                SetPixelV(hdc, cols[k], hm.Pixel, hm.Saved[cols[k] - b.left]);
        }
    }
}

void CMarkerMan::CrossingsAfter(HDC hdc, const int* cols, int n, const COLORREF* kept)
{
    const RECT& b = Map->Bound;
    for (int h = 0; h < 3; ++h) {
        CMarker& hm = Horz[h];
        for (int k = 0; k < n; ++k) {
            if (!hm.SavedValid || cols[k] < b.left || cols[k] > b.right || cols[k] - b.left >= hm.SavedRoom)
                continue;
            hm.Saved[cols[k] - b.left] = GetPixel(hdc, cols[k], hm.Pixel);
            if (kept[h * 2 + k] != CLR_INVALID)
                SetPixelV(hdc, cols[k], hm.Pixel, kept[h * 2 + k]);
        }
    }
}

void CMarkerMan::DrawMarker(HDC hdc, int pixel, int index, bool undrawFirst, bool fromPixel, int kind)
{
    if (!drawable(Map) || hdc == nullptr)
        return;
    const RECT& b = Map->Bound;
    if (kind == 1 ? (index < 0 || index >= 3) : (index < 0 || index >= 12))
        return;
    CMarker& m = kind == 1 ? Horz[index] : Vert[index];
    const int count = std::max(0, kind == 2 ? b.bottom - b.top + 1 : b.right - b.left + 1);
    if (undrawFirst && m.SavedCount)
        UndrawMarker(hdc, &m, kind);
    m.FlushBuffer();
    m.SavedCount = count;
    const int room = kind == 2 && m.Width > 1 ? 2 * count : count;
    m.Saved = new (std::nothrow) COLORREF[size_t(std::max(room, 1))]();
    m.SavedRoom = m.Saved != nullptr ? room : 0;
    m.Pixel = pixel;
    if (fromPixel)
        m.Value = Map->MarkerPix2Dbl(pixel, kind);
    // The array stands even for a marker that isn't shown; it holds nothing then.
    if (m.Saved == nullptr)
        return;
    if (kind == 1) {
        if (pixel < b.top || pixel > b.bottom)
            return;
        readRow(hdc, pixel, b.left, count, m.Saved);
        m.SavedValid = true;
        DrawHorizontalLine(hdc, m);
        return;
    }
    if (pixel < b.left || pixel > b.right)
        return;
    int cols[2];
    const int n = Columns(m, index, cols);
    COLORREF kept[6];
    CrossingsBefore(hdc, cols, n, kept);
    for (int k = 0; k < n; ++k)
        readColumn(hdc, cols[k], b.top, count, m.Saved + k * count);
    m.SavedValid = true;
    DrawVerticalMarker(hdc, m, index);
    CrossingsAfter(hdc, cols, n, kept);
}

void CMarkerMan::UndrawMarker(HDC hdc, int index, int kind)
{
    if (kind == 1 ? (index >= 0 && index < 3) : (index >= 0 && index < 12))
        UndrawMarker(hdc, kind == 1 ? &Horz[index] : &Vert[index], kind);
}

void CMarkerMan::UndrawMarker(HDC hdc, CMarker* m, int kind)
{
    if (!drawable(Map) || hdc == nullptr || m == nullptr || !m->SavedValid)
        return;
    const RECT& b = Map->Bound;
    if (kind == 1) {
        if (m->Pixel >= b.top)
            writeRow(hdc, m->Pixel, b.left, std::min(m->SavedCount, m->SavedRoom), m->Saved);
        m->SavedValid = false;
        return;
    }
    if (m->Pixel < b.left)
        return;
    int cols[2];
    const int n = Columns(*m, int(m - Vert), cols);
    if (m->SavedRoom < n * m->SavedCount)
        return;
    COLORREF kept[6];
    CrossingsBefore(hdc, cols, n, kept);
    for (int k = 0; k < n; ++k)
        writeColumn(hdc, cols[k], b.top, m->SavedCount, m->Saved + k * m->SavedCount);
    CrossingsAfter(hdc, cols, n, kept);
    m->SavedValid = false;
}

// ---- stacks -------------------------------------------------------------------------------------

int CMarkerMan::Top(int index) const
{
    for (int guard = 0; guard < 12 && Vert[index].Over != 0; ++guard)
        index = GetIndex(Vert[index].Over);
    return index;
}

int CMarkerMan::Bottom(int index) const
{
    for (int guard = 0; guard < 12 && Vert[index].Under != 0; ++guard)
        index = GetIndex(Vert[index].Under);
    return index;
}

int CMarkerMan::UndrawAbove(HDC hdc, int index)
{
    if (Vert[index].Over == 0)
        return 12;
    const int first = GetIndex(Vert[index].Over);
    for (int t = Top(index), guard = 0; t != index && guard < 12; ++guard) {
        UndrawMarker(hdc, t, 2);
        t = GetIndex(Vert[t].Under);
    }
    return first;
}

void CMarkerMan::DrawUpFrom(HDC hdc, int index)
{
    for (int guard = 0; index < 12 && guard < 12; ++guard) {
        DrawMarker(hdc, Vert[index].Pixel, index, false, false, 2);
        index = Vert[index].Over != 0 ? GetIndex(Vert[index].Over) : 12;
    }
}

void CMarkerMan::Redraw(HDC hdc, int index)
{
    if (!Exists(index))
        return;
    // What lies over it comes off first, so that each saved column stays what is under it.
    UndrawAbove(hdc, index);
    UndrawMarker(hdc, index, 2);
    DrawUpFrom(hdc, index);
}

void CMarkerMan::RedrawHorizontal(HDC hdc, int index)
{
    CMarker& h = Horz[index];
    if (!h.SavedValid)
        return;
    UndrawMarker(hdc, &h, 1);
    DrawMarker(hdc, h.Pixel, index, false, false, 1);
}

void CMarkerMan::BringTopActive(HDC hdc, CMarker* marker)
{
    const int i = int(marker - Vert);
    if (i < 0 || i >= 12)
        return;
    CMarker& m = Vert[i];
    if (m.Over != 0) {
        const int above = GetIndex(m.Over);
        const int below = m.Under != 0 ? GetIndex(m.Under) : 12;
        // The one above now lies on what this one covered.
        CMarker& a = Vert[above];
        if (a.Saved != nullptr && m.Saved != nullptr && m.SavedValid)
            std::memcpy(a.Saved, m.Saved, sizeof(COLORREF) * size_t(std::min(a.SavedRoom, m.SavedRoom)));
        a.Under = below < 12 ? Vert[below].ID : 0;
        if (below < 12)
            Vert[below].Over = a.ID;
        const int top = Top(above);
        Vert[top].Over = m.ID;
        m.Under = Vert[top].ID;
        m.Over = 0;
        if (Vert[top].Active) {
            Vert[top].Active = 0;
            DrawVerticalMarker(hdc, Vert[top], top);
        }
    }
    DrawMarker(hdc, m.Pixel, i, false, false, 2);
}

void CMarkerMan::PutMarker(HDC hdc, int pixel, int index, int kind)
{
    if (kind == 1) {
        DrawMarker(hdc, pixel, index, false, true, 1);
        return;
    }
    if (index < 0 || index >= 12)
        return;
    CMarker& m = Vert[index];
    m.Under = 0;
    for (int j = 0; j < 12; ++j) {
        if (j == index || !Exists(j) || Vert[j].Pixel != pixel)
            continue;
        const int top = Top(j);
        if (top != index) {
            Vert[top].Over = m.ID;
            m.Under = Vert[top].ID;
        }
        break;
    }
    DrawMarker(hdc, pixel, index, false, true, 2);
}

// ---- making, picking, deleting --------------------------------------------------------------------

unsigned int CMarkerMan::CreateMarker(HDC hdc)
{
    TrackID = 0;
    int n = 0;
    while (n < 12 && Exists(n))
        ++n;
    if (n == 12)
        return 0;
    Kind = 2;
    CMarker& nm = Vert[n];
    nm.Reset();
    if (HzState & 1) {
        for (int h = 0; h < 3; ++h) {
            if (!Horz[h].Active)
                continue;
            Horz[h].Active = 0;
            if (Horz[h].SavedValid)
                DrawHorizontalLine(hdc, Horz[h]);
        }
    }
    for (int i = 0; i < 12; ++i) {
        if (i == n || !Exists(i))
            continue;
        CMarker& m = Vert[i];
        if (m.Link == 0 && nm.Link == 0) {
            nm.Link = m.ID;
            m.Link = nm.ID;
            if (!m.Active) {
                m.Active = 1;
                if (m.Over != 0)
                    BringTopActive(hdc, &m);
                else
                    Redraw(hdc, i);
            }
        } else if (m.Active && m.ID != nm.Link) {
            m.Active = 0;
            Redraw(hdc, i);
        }
    }
    MarkerMap |= nm.ID;
    TrackID = nm.ID;
    nm.Active = 1;
    return nm.ID;
}

unsigned int CMarkerMan::CreateHorzMarker(HDC hdc, int index)
{
    if (index < 0 || index >= 3)
        return 0;
    if (HzState & (1u << index)) {
        if (!Multiple)
            return 0;
        index = 1;
        if (HzState & 2u)
            return 0;
    }
    Kind = 1;
    Horz[index].Reset();
    Horz[index].Active = 1;
    HzState |= (1u << index) | (16u << index);
    for (int i = 0; i < 12; ++i) {
        if (Exists(i) && Vert[i].Active) {
            Vert[i].Active = 0;
            Redraw(hdc, i);
        }
    }
    return 1u << index;
}

int CMarkerMan::FindNear(HDC hdc, POINTS point, int tolerance, bool track, int* kind)
{
    int best = 32768, hit = -1, hitKind = 0, edge = 0;
    FindNearMarker = 0;
    for (int i = 0; i < 12; ++i) {
        if (!Exists(i))
            continue;
        const CMarker& m = Vert[i];
        int d, e = 0;
        if (m.Width > 1) {
            int l, r;
            MarkerDbl2PixelWidth(m.Width, m.Value, &l, &r);
            const int dl = std::abs(l - point.x), dr = std::abs(r - point.x);
            d = (point.x > l && point.x < r) ? tolerance - 1 : std::min(dl, dr);
            e = dl <= tolerance ? 2 : dr <= tolerance ? 1 : 0;
        } else {
            d = std::abs(m.Pixel - point.x);
        }
        if (d < best) {
            best = d;
            hit = i;
            hitKind = 2;
            edge = e;
        }
    }
    // Horizontal markers count even when absent, at pixel 0.
    for (int h = 0; h < 3; ++h) {
        const int d = std::abs(Horz[h].Pixel - point.y);
        if (d < best) {
            best = d;
            hit = h;
            hitKind = 1;
        }
    }
    if (best > tolerance || hit < 0)
        return 12;
    if (kind != nullptr)
        *kind = hitKind;
    if (hitKind == 1) {
        Kind = 1;
        for (int i = 0; i < 12; ++i) {
            if (Exists(i) && Vert[i].Active) {
                Vert[i].Active = 0;
                Redraw(hdc, i);
            }
        }
        HzState |= 16u << hit;
        for (int h = 0; h < 3; ++h) {
            if (!Horz[h].Active) {
                Horz[h].Active = 1;
                RedrawHorizontal(hdc, h);
            }
        }
        return 0;
    }
    Kind = 2;
    for (int h = 0; h < 3; ++h) {
        if (Horz[h].Active) {
            Horz[h].Active = 0;
            RedrawHorizontal(hdc, h);
        }
    }
    int i = hit;
    if (Vert[i].Over != 0) {
        i = Top(i);
        FindNearMarker = 0;
    } else {
        FindNearMarker = edge;
    }
    CMarker& m = Vert[i];
    if (m.Under != 0) {
        Vert[GetIndex(m.Under)].Over = 0;
        m.Under = 0;
    }
    TrackID = track ? m.ID : 0;
    if (m.Active)
        return i;
    for (int k = 0; k < 12; ++k) {
        if (k != i && Exists(k) && Vert[k].Active) {
            Vert[k].Active = 0;
            Redraw(hdc, k);
        }
    }
    m.Active = 1;
    Redraw(hdc, i);
    const int p = GetIndex(m.Link);
    if (p < 12 && Exists(p)) {
        CMarker& partner = Vert[p];
        partner.Active = 1;
        if (partner.Pixel == m.Pixel) {
            UndrawMarker(hdc, i, 2);
            UndrawMarker(hdc, p, 2);
            DrawMarker(hdc, partner.Pixel, p, false, false, 2);
            DrawMarker(hdc, m.Pixel, i, false, false, 2);
        } else if (!partner.SavedValid) {
            DrawMarker(hdc, partner.Pixel, p, false, false, 2);
        } else {
            BringTopActive(hdc, &partner);
        }
    }
    return i;
}

int CMarkerMan::BetweenActive(HDC hdc, POINTS point)
{
    const RECT& b = Map->Bound;
    auto inside = [&](int px) { return px >= b.left && px <= b.right; };
    auto between = [&](const CMarker& a, const CMarker& c) {
        const int lo = std::min(a.Pixel, c.Pixel), hi = std::max(a.Pixel, c.Pixel);
        return point.x > lo && point.x < hi && inside(a.Pixel) && inside(c.Pixel);
    };
    for (int i = 0; i < 12; ++i) {
        const int j = GetLink(i);
        if (!Exists(i) || !Vert[i].Active || j >= 12 || !Exists(j))
            continue;
        if (!between(Vert[i], Vert[j]))
            break;
        TrackID = Vert[i].Pixel <= Vert[j].Pixel ? Vert[i].ID : Vert[j].ID;
        Kind = 2;
        return 1;
    }
    for (int i = 0; i < 12; ++i) {
        const int j = GetLink(i);
        if (!Exists(i) || Vert[i].Active || j >= 12 || !Exists(j) || !between(Vert[i], Vert[j]))
            continue;
        for (CMarker& m : Vert)
            m.Active = 0;
        Vert[i].Active = Vert[j].Active = 1;
        TrackID = Vert[i].Pixel <= Vert[j].Pixel ? Vert[i].ID : Vert[j].ID;
        Kind = 2;
        Map->RepaintNow();
        return 1;
    }
    return 0;
}

int CMarkerMan::AdjustMarkerWidth(int pixel, int index)
{
    if (!(DataPointSize > 0.0) || FindNearMarker == 0 || index < 0 || index >= 12)
        return pixel;
    CMarker& m = Vert[index];
    int l, r;
    MarkerDbl2PixelWidth(m.Width, m.Value, &l, &r);
    (FindNearMarker == 1 ? r : l) = pixel;
    if (l >= r) {
        m.Width = 1;
        return pixel;
    }
    double a = Map->MarkerPix2Dbl(l, 2), c = Map->MarkerPix2Dbl(r, 2);
    const double w = std::abs(a - c) / DataPointSize + 0.5;
    int width = w < 1e9 ? int(w) : 1000000001;
    if (width % 2 == 0) {
        ++width;
        if (FindNearMarker == 1)
            c += DataPointSize;
        else
            a -= DataPointSize;
    }
    m.Width = width;
    return Map->MarkerDbl2Pix((a + c) * 0.5, 2);
}

void CMarkerMan::DrawAll(HDC hdc)
{
    if (!drawable(Map))
        return;
    const RECT& b = Map->Bound;
    for (int h = 0; h < 3; ++h) {
        if (!(HzState & (1u << h)))
            continue;
        const double span = Map->YEnd - Map->YStart;
        const int px = span != 0.0 ? b.top + orlex::plot::PixelCast((Map->YEnd - Horz[h].Value) * (b.bottom - b.top) / span + 0.5) : 0;
        DrawMarker(hdc, px, h, false, false, 1);
    }
    for (int i = 0; i < 12; ++i) {
        Vert[i].Over = Vert[i].Under = 0;
        if (Exists(i))
            Vert[i].Pixel = Map->MarkerDbl2Pix(Vert[i].Value, 2);
    }
    // Markers at one pixel stack: an active one on top, others beneath.
    for (int i = 0; i < 12; ++i) {
        if (!Exists(i))
            continue;
        for (int j = i + 1; j < 12; ++j) {
            if (!Exists(j) || Vert[j].Pixel != Vert[i].Pixel)
                continue;
            if (Vert[j].Over == 0 && Vert[j].Under == 0) {
                if (Vert[j].Active) {
                    const int top = Top(i);
                    Vert[top].Over = Vert[j].ID;
                    Vert[j].Under = Vert[top].ID;
                } else {
                    const int bottom = Bottom(i);
                    Vert[bottom].Under = Vert[j].ID;
                    Vert[j].Over = Vert[bottom].ID;
                }
            }
            break;
        }
    }
    bool done[12] = {};
    for (int i = 0; i < 12; ++i) {
        if (!Exists(i) || done[i])
            continue;
        for (int k = Bottom(i), guard = 0; k < 12 && guard < 12; ++guard) {
            done[k] = true;
            DrawMarker(hdc, Vert[k].Pixel, k, false, false, 2);
            k = Vert[k].Over != 0 ? GetIndex(Vert[k].Over) : 12;
        }
    }
}

void CMarkerMan::UndrawAll(HDC hdc)
{
    for (int h = 0; h < 3; ++h)
        if (HzState & (1u << h))
            UndrawMarker(hdc, &Horz[h], 1);
    bool done[12] = {};
    for (int i = 0; i < 12; ++i) {
        if (!Exists(i) || done[i])
            continue;
        for (int k = Top(i), guard = 0; k < 12 && guard < 12; ++guard) {
            done[k] = true;
            UndrawMarker(hdc, k, 2);
            k = Vert[k].Under != 0 ? GetIndex(Vert[k].Under) : 12;
        }
    }
}

void CMarkerMan::PrintAll(HDC hdc)
{
    if (!drawable(Map))
        return;
    for (int i = 0; i < 12; ++i) {
        if (!Exists(i))
            continue;
        CMarker copy;
        copy.Active = Vert[i].Active;
        copy.Color = Vert[i].Color;
        copy.Value = Vert[i].Value;
        copy.Width = Vert[i].Width;
        copy.Pixel = Map->MarkerDbl2Pix(Vert[i].Value, 2);
        DrawVerticalMarker(hdc, copy, i);
    }
}

void CMarkerMan::RemoveVertical(HDC hdc, int index)
{
    if (!Exists(index))
        return;
    CMarker& m = Vert[index];
    // Undrawn from the top of its stack down to it; what lay above goes back on top.
    const int above = UndrawAbove(hdc, index);
    UndrawMarker(hdc, index, 2);
    const int below = m.Under != 0 ? GetIndex(m.Under) : 12;
    if (above < 12)
        Vert[above].Under = below < 12 ? Vert[below].ID : 0;
    if (below < 12)
        Vert[below].Over = above < 12 ? Vert[above].ID : 0;
    MarkerMap &= ~m.ID;
    if (TrackID & m.ID)
        TrackID = 0;
    m.Reset();
    if (above < 12)
        DrawUpFrom(hdc, above);
}

void CMarkerMan::DeleteAll(HDC hdc, int mask)
{
    if (mask & 2) {
        for (int h = 0; h < 3; ++h) {
            UndrawMarker(hdc, &Horz[h], 1);
            Horz[h].Reset();
            HzState &= ~((1u << h) | (16u << h));
        }
    }
    if (mask & 1) {
        for (int i = 0; i < 12; ++i) {
            if (!Exists(i))
                continue;
            for (int k = Top(i), guard = 0; k < 12 && guard < 12; ++guard) {
                const int next = Vert[k].Under != 0 ? GetIndex(Vert[k].Under) : 12;
                UndrawMarker(hdc, k, 2);
                MarkerMap &= ~Vert[k].ID;
                Vert[k].Reset();
                k = next;
            }
        }
        TrackID = 0;
    }
}

void CMarkerMan::DeleteMarkers(HDC hdc, int index, int kind)
{
    if (kind == 2) {
        if (!Exists(index))
            return;
        const int p = GetLink(index);
        if (p < 12 && Exists(p))
            RemoveVertical(hdc, p);
        RemoveVertical(hdc, index);
        return;
    }
    if (index < 0 || index >= 3)
        return;
    UndrawMarker(hdc, &Horz[index], 1);
    Horz[index].Reset();
    HzState &= ~((1u << index) | (16u << index));
}
