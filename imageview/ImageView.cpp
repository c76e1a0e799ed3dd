// Image view core: the bitmap block, the memory bitmap, painting, colours, the live-scan
// line path and persistence. Zoom, pan and the mouse are in ImageViewZoom.cpp.
#include "imageview/ImageView.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>

#include "cursors/BaseCursor.h"
#include "foundation/ArchiveVersionControl.h"
#include "foundation/MessageCatalogue.h"
#include "foundation/platform/globalmem.h"
#include "foundation/platform/process.h"
#include "imageview/BitmapData.h"
#include "imageview/ImageViewEventNotifier.h"
#include "imageview/ImageViewFrame.h"

IMPLEMENT_SERIAL(CImageView, CWnd, VERSIONABLE_SCHEMA | 2)

COLORREF CImageView::m_ScanLineColor = 0xFFFF00;
int CImageView::m_nScanLineType = 1;
int CImageView::m_bDelCursorsOnPanZoom = 1;
int CImageView::m_bPanTracking = 0;
int CImageView::m_bTempCurMode = 0;
int CImageView::m_bZooming = 0;

namespace {

constexpr std::size_t kHeaderBytes = 40;
constexpr int kPaletteEntries = 256;
// The system colour the view wipes to when it has no image (the window background).
constexpr int kWipeColour = 17;
constexpr int kStretchMode = HALFTONE;

// Sizes of the block that a view of this kind needs for rows x cols.
std::size_t PixelOffset(bool realTime) { return realTime ? kBitmap8BitPixelOffset : kBitmap24BitPixelOffset; }

// Removes from `list` every element that isn't of class `cls`, appears twice, or is owned
// by `other` too, deleting only what nothing else owns. A damaged archive can make one
// object show up in two places; each object must have one owner.
void KeepOwnedOnce(CObList& list, const CRuntimeClass* cls, const CObList* other)
{
    CObList kept(10);
    while (!list.IsEmpty()) {
        CObject* o = list.RemoveHead();
        if (!o) continue;
        const bool shared = kept.Find(o) != nullptr || (other && other->Find(o) != nullptr);
        if (shared) continue;
        if (cls && !o->IsKindOf(cls)) {
            delete o;
            continue;
        }
        kept.AddTail(o);
    }
    while (!kept.IsEmpty()) list.AddTail(kept.RemoveHead());
}

}  // namespace

BEGIN_MESSAGE_MAP(CImageView, CWnd)
    ON_WM_CREATE()
    ON_WM_TIMER()
    ON_WM_DESTROY()
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_SIZE()
    ON_WM_MOUSEMOVE()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_LBUTTONDBLCLK()
    ON_WM_RBUTTONDOWN()
    ON_WM_RBUTTONUP()
    ON_WM_MBUTTONDOWN()
    ON_WM_MBUTTONUP()
    ON_WM_MOUSEWHEEL()
    ON_REGISTERED_MESSAGE(MESSAGE_CURSOR_NOTIFY_STR, OnCursorNotify)
    ON_REGISTERED_MESSAGE(MESSAGE_CURSOR_MOUSE_STR, OnCursorMouse)
    ON_REGISTERED_MESSAGE(MESSAGE_CREATE_CURSOR_STR, OnCreateCursor)
    ON_REGISTERED_MESSAGE(MESSAGE_REMOVE_CURSOR_STR, OnRemoveCursor)
    ON_REGISTERED_MESSAGE(MESSAGE_USER_REMOVE_CURSOR_STR, OnUserRemoveCursor)
    ON_COMMAND(ID_CURSOR_CLEAR_ALL, OnClearAll)
END_MESSAGE_MAP()

CImageView::CImageView(bool realTime) : m_bRealTime(realTime ? TRUE : FALSE)
{
    m_scanLen.x = 1e-6;
    m_scanLen.y = 1e-6;
    m_cursorScale.x = 1.0;
    m_cursorScale.y = 1.0;
    m_hRotCursor = LoadCursor(nullptr, IDC_ARROW);
}

CImageView::~CImageView()
{
    // The window goes first, while the handlers of this class still exist.
    if (m_hWnd) DestroyWindow();
    delete m_pCoordTip;
    m_pCoordTip = nullptr;
    FreeDib();
    DeleteMemBitmap();
    ClearZoomList();
    DeleteCursors(1);
    // A notifier that outlives the view must not call into it.
    if (m_pNotifier && m_pNotifier->m_pView == this) m_pNotifier->m_pView = nullptr;
    m_pNotifier = nullptr;
}

CImageViewFrame* CImageView::Frame() const
{
    CWnd* parent = m_hWnd ? GetParent() : nullptr;
    return parent ? dynamic_cast<CImageViewFrame*>(parent) : nullptr;
}

CWnd* CImageView::FrameParent() const
{
    CImageViewFrame* f = Frame();
    CWnd* fw = f ? f->GetFrameWnd() : nullptr;
    return fw ? fw->GetParent() : nullptr;
}

void CImageView::FreeDib()
{
    if (m_hDib) GlobalFree(m_hDib);
    m_hDib = nullptr;
}

void CImageView::DeleteMemBitmap()
{
    if (!m_bHasMemDC) return;
    m_memDC.SelectObject(m_hOldBitmap);
    m_memBitmap.DeleteObject();
    m_memDC.DeleteDC();
    m_hOldBitmap = nullptr;
    m_bHasMemDC = 0;
}

void CImageView::CreateDestinationBitmap()
{
    if (m_bDirect2d || !m_hWnd) return;
    DeleteMemBitmap();
    CRect c;
    GetClientRect(&c);
    CClientDC dc(this);
    if (!m_memDC.CreateCompatibleDC(&dc)) return;
    if (c.Width() < 1 || c.Height() < 1 || !m_memBitmap.CreateCompatibleBitmap(&dc, c.Width(), c.Height())) {
        m_memDC.DeleteDC();
        return;
    }
    m_hOldBitmap = m_memDC.SelectObject(&m_memBitmap);
    m_bHasMemDC = 1;
    assert(m_hOldBitmap != nullptr);
}

double CImageView::GetAspectRatio() const
{
    CImageViewFrame* f = Frame();
    return f ? f->GetAspectRatio() : 1.0;
}

BOOL CImageView::IsValidImage(int cols, int rows) const
{
    if (cols > 0 && rows > 0) return cols == m_nCols && rows == m_nRows;
    return static_cast<long long>(m_nRows) * m_nCols > 0;
}

CSize CImageView::GetDataSize()
{
    if (!m_zoomList.IsEmpty()) {
        const CRect& h = m_zoomList.GetHead()->m_rect;
        return CSize(h.Width(), h.Height());
    }
    CRect c(0, 0, 0, 0);
    if (m_hWnd) GetClientRect(&c);
    return CSize(c.Width(), c.Height());
}

BITMAPINFO* CImageView::LockBitmap()
{
    return m_hDib ? static_cast<BITMAPINFO*>(GlobalLock(m_hDib)) : nullptr;
}

void CImageView::UnLockBitmap()
{
    if (m_hDib) GlobalUnlock(m_hDib);
}

// Images ----------------------------------------------------------------------------------

void CImageView::DrawImage(int* data, int rows, int cols, DPOINT scan, tagRGBQUAD* table, double zScale, double low,
                           double high, std::vector<int> invalid)
{
    (void)zScale;  // the limits carry the scale; kept for the accelerated paths
    if (rows < 0 || cols < 0) {
        invalid.clear();
        return;
    }
    if (table) {
        m_colorTable.resize(kPaletteEntries);
        std::memcpy(m_colorTable.data(), table, kPaletteEntries * sizeof(tagRGBQUAD));
    }
    m_scanLen = scan;
    const bool sizeChanged = rows != m_nRows || cols != m_nCols;
    m_nRows = rows;
    m_nCols = cols;
    m_dLow = low;
    m_dHigh = high;
    const bool wasEmpty = m_zoomList.IsEmpty();
    if (sizeChanged) ClearZoomList();
    if (wasEmpty || sizeChanged) {
        m_curZoom = nullptr;
        CRect whole(0, 0, cols, rows);
        AddZoomRecord(whole, 1);
    }
    if (!data) {
        UpdateImage();
        invalid.clear();
        return;
    }
    if (m_bDirect2d) {
        invalid.clear();
        return;
    }
    FreeDib();
    void* dib = nullptr;
    const int disp = GetInvalidDataDisp();
    const int ok = m_bRealTime ? CreateBitmap8Bit(dib, 256, data, rows, cols, table, low, high, disp, invalid)
                               : CreateBitmap(dib, 256, data, rows, cols, table, low, high, disp, invalid);
    if (ok) {
        m_hDib = dib;
        CreateDestinationBitmap();
    }
    m_pData = data;
    m_invalidPoints = invalid;
    UpdateImage();
    if (m_bRealTime) m_pData = nullptr;
    invalid.clear();
}

int CImageView::DrawLine(int* line, int lineNumber, int cols, DPOINT scan, int direction, double zScale,
                         std::vector<int> invalid)
{
    struct Emptier {
        std::vector<int>& v;
        ~Emptier() { v.clear(); }
    } emptier{invalid};
    if (m_bDirect2d) return 3;
    m_scanLen = scan;
    if (!line || cols == 0 || lineNumber < 0 || !(zScale > 0.0)) return 3;
    if (!m_hDib) return 1;
    if (cols != m_nCols || lineNumber > m_nRows - 1) return 2;
    auto* block = static_cast<BYTE*>(GlobalLock(m_hDib));
    if (!block) return 1;
    // Only the 8-bit layout takes lines; an off-line block has no room at this offset.
    const auto* header = reinterpret_cast<const BITMAPINFOHEADER*>(block);
    const std::size_t needed = kBitmap8BitPixelOffset + std::size_t(m_nCols) * std::size_t(lineNumber + 1);
    if (header->biBitCount != 8 || GlobalSize(m_hDib) < needed) {
        GlobalUnlock(m_hDib);
        return 3;
    }
    assert(cols == m_nCols && lineNumber < m_nRows);
    BYTE* pixels = block + kBitmap8BitPixelOffset + std::size_t(m_nCols) * std::size_t(lineNumber);
    Scale8BitData(line, pixels, 1, cols, zScale, m_bAllowInvalidDataDisp ? 256 : 255);
    if (m_bAllowInvalidDataDisp) {
        if (m_nInvalidDataDisp != 0 && !invalid.empty()) {
            const long long base = static_cast<long long>(m_nCols) * lineNumber;
            for (int p : invalid) {
                const long long i = p - base;
                if (i >= 0 && i < cols) pixels[i] = 255;
            }
        }
        const RGBQUAD c = InvalidDataDispColour(m_nInvalidDataDisp);
        std::memcpy(block + kHeaderBytes + 255 * sizeof(RGBQUAD), &c, sizeof c);
    }
    UpdateImageLine(lineNumber, direction, line);
    GlobalUnlock(m_hDib);
    return 0;
}

void CImageView::UpdateImage()
{
    if (m_hDib)
        UpdateImageOl();
    else
        UpdateImageRt();
}

bool CImageView::StretchIntoMemory()
{
    if (m_bDirect2d || !m_bHasMemDC || !m_hDib) return false;
    auto* block = static_cast<BYTE*>(GlobalLock(m_hDib));
    if (!block) return false;
    const CRect z = GetZoomRect();
    CRect c;
    GetClientRect(&c);
    m_memDC.SetStretchBltMode(kStretchMode);
    // The zoom rectangle counts rows from the top, the block from the bottom.
    ::StretchDIBits(m_memDC.GetSafeHdc(), 0, 0, c.Width(), c.Height(), z.left, m_nRows - z.bottom, z.Width(),
                    z.Height(), block + PixelOffset(m_bRealTime), reinterpret_cast<const BITMAPINFO*>(block),
                    DIB_RGB_COLORS, SRCCOPY);
    GlobalUnlock(m_hDib);
    return true;
}

void CImageView::ShowMemoryBitmap()
{
    CImageViewFrame* f = Frame();
    if (CWnd* fp = FrameParent())
        fp->SendMessage(MESSAGE_IMAGEVIEW_MDC_UPDATE_EVENT, 0, reinterpret_cast<LPARAM>(f->GetFrameWnd()));
    // The frame's paint ends by painting the view; a view on its own paints itself.
    CWnd* target = f ? f->GetFrameWnd() : this;
    target->Invalidate(FALSE);
    target->UpdateWindow();
}

void CImageView::FitFrameToZoom()
{
    CImageViewFrame* f = Frame();
    if (!f || f->GetAspectRatio() == 1.0) return;
    // A zoomed part fills the image area; the whole image keeps the frame's shape.
    const BOOL changed = GetZoomIndex() == 0 ? f->SetWindowSize() : f->SetWindowSize(1.0);
    if (changed) CreateDestinationBitmap();
}

void CImageView::UpdateImageOl()
{
    if (m_bDirect2d || !m_bHasMemDC) return;
    FitFrameToZoom();
    if (!StretchIntoMemory()) return;
    ShowMemoryBitmap();
}

void CImageView::UpdateImageRt()
{
    CImageViewFrame* f = Frame();
    if (f) {
        FitFrameToZoom();
        int a = 0, b = 0;
        f->CreateUiImage(a, b, true);
    } else if (m_bHasMemDC && !m_bDirect2d) {
        CRect c;
        GetClientRect(&c);
        m_memDC.FillSolidRect(&c, GetSysColor(kWipeColour));
    }
    if (CWnd* fp = FrameParent())
        fp->SendMessage(MESSAGE_IMAGEVIEW_MDC_UPDATE_EVENT, 0, reinterpret_cast<LPARAM>(f->GetFrameWnd()));
    if (!m_hWnd) return;
    if (m_bPanTracking || !f) {
        Invalidate(m_bPanTracking ? TRUE : FALSE);
        UpdateWindow();
    } else {
        f->GetFrameWnd()->Invalidate(FALSE);
        f->GetFrameWnd()->UpdateWindow();
    }
}

void CImageView::SetColorTable(tagRGBQUAD* table)
{
    if (!table) return;
    if (m_bRealTime && m_hDib) {
        auto* block = static_cast<BYTE*>(GlobalLock(m_hDib));
        if (!block) return;
        // A colour change of a live image costs the palette only.
        std::memcpy(block + kHeaderBytes, table, kPaletteEntries * sizeof(tagRGBQUAD));
        m_colorTable.resize(kPaletteEntries);
        std::memcpy(m_colorTable.data(), block + kHeaderBytes, kPaletteEntries * sizeof(tagRGBQUAD));
        GlobalUnlock(m_hDib);
        UpdateImage();
        return;
    }
    if (!m_hDib) {
        if (CImageViewFrame* f = Frame()) {
            int a = 0, b = 0;
            f->CreateUiImage(a, b, false);
        }
        if (m_hWnd) {
            Invalidate();
            UpdateWindow();
        }
        return;
    }
    // Off-line: the block is rebuilt from the kept data. Without data there is nothing to
    // rebuild from, and the image on screen stays.
    if (!m_pData) return;
    FreeDib();
    void* dib = nullptr;
    if (CreateBitmap(dib, 256, m_pData, m_nRows, m_nCols, table, m_dLow, m_dHigh, GetInvalidDataDisp(),
                     m_invalidPoints)) {
        m_hDib = dib;
        CreateDestinationBitmap();
    }
    // The table on screen is the one a later rebuild must use.
    m_colorTable.resize(kPaletteEntries);
    std::memcpy(m_colorTable.data(), table, kPaletteEntries * sizeof(tagRGBQUAD));
    UpdateImage();
}

void CImageView::FlushImage(bool clear)
{
    if (m_hDib) {
        FreeDib();
    } else if (clear && m_bHasMemDC) {
        CRect c;
        GetClientRect(&c);
        m_memDC.FillSolidRect(&c, GetSysColor(kWipeColour));
    }
    m_nRows = 0;
    if (m_hWnd) {
        Invalidate(TRUE);
        UpdateWindow();
    }
}

// Invalid-data display ----------------------------------------------------------------------

CString CImageView::GetInvalidDataDispStr() const { return CString(GetInvalidDataDispName(m_nInvalidDataDisp)); }

void CImageView::SetInvalidDataDispByStr(CString name) { m_nInvalidDataDisp = FindInvalidDataDisp(name.GetString()); }

void CImageView::UpdateInvalidPointDisplay()
{
    if (m_bDirect2d || !m_pData || m_colorTable.size() != kPaletteEntries) return;
    tagRGBQUAD table[kPaletteEntries];
    std::memcpy(table, m_colorTable.data(), sizeof table);
    FreeDib();
    void* dib = nullptr;
    const int disp = GetInvalidDataDisp();
    const int ok =
        m_bRealTime ? CreateBitmap8Bit(dib, 256, m_pData, m_nRows, m_nCols, table, m_dLow, m_dHigh, disp, m_invalidPoints)
                    : CreateBitmap(dib, 256, m_pData, m_nRows, m_nCols, table, m_dLow, m_dHigh, disp, m_invalidPoints);
    if (ok) {
        m_hDib = dib;
        CreateDestinationBitmap();
    }
    UpdateImage();
    if (m_bRealTime) m_pData = nullptr;
}

void CImageView::setPixels(int x1, int y, int x2, COLORREF color)
{
    if (m_bDirect2d || m_nRows == 0 || m_nCols == 0 || !m_hWnd) return;
    CRect c;
    GetClientRect(&c);
    CRect block;
    if (!orlex::view::PixelRunBlock(x1, y, x2, GetZoomRect(), c, block)) return;
    if (!m_bHasMemDC || block.IsRectEmpty()) return;
    m_memDC.FillSolidRect(&block, color & 0x00FFFFFF);
}

// Live scan -------------------------------------------------------------------------------------

void CImageView::UpdateImageLine(int line, int direction, int* data)
{
    (void)data;
    if (m_bDirect2d) return;
    const int rows = m_nRows;
    const CRect z = GetZoomRect();
    const int zLo = rows - z.bottom;
    const int zHi = rows - z.top;
    CImageViewFrame* f = Frame();
    if (line < zLo || line > zHi) {
        // Just past the shown part the frame's mark still follows the scan.
        if (line == 0 || line == rows - 1 || line == zLo - 1 || line == zHi + 1) {
            if (f) f->DrawLineMark();
        }
        return;
    }
    if (m_lastLineTick) {
        const DWORD t = GetTickCount();
        if (t - m_lastLineTick < 160) {
            if (f && f->GetCurrentLine() == line) return;
            ++m_nLineSpan;
            return;
        }
        --m_nLineSpan;
        m_lastLineTick = t ? t : 1;
    }
    const int shown = zHi - zLo;
    CRect c;
    GetClientRect(&c);
    const int clientH = c.Height();
    const int lines = clientH ? shown / clientH + m_nLineSpan : m_nLineSpan;
    m_nLineSpan = 2;
    if (shown < lines) {
        UpdateImage();
        return;
    }
    if (!m_bHasMemDC) return;
    const orlex::view::ScanStrip s = orlex::view::ComputeScanStrip(line, lines, direction, zLo, zHi, c);
    auto* block = static_cast<BYTE*>(GlobalLock(m_hDib));
    if (!block) return;
    m_memDC.SetStretchBltMode(kStretchMode);
    ::StretchDIBits(m_memDC.GetSafeHdc(), c.left, s.yTop, c.right - c.left, s.yBot - s.yTop, z.left, s.first,
                    z.right - z.left, s.last - s.first, block + kBitmap8BitPixelOffset,
                    reinterpret_cast<const BITMAPINFO*>(block), DIB_RGB_COLORS, SRCCOPY);
    if (m_nScanLineType > 0 && f && f->IsScanLineShown()) {
        const int right = m_nScanLineType == 3 ? std::min(c.right / 8, 30) : int(c.right);
        CPen pen(m_nScanLineType == 2 ? PS_DASH : PS_SOLID, 0, m_ScanLineColor);
        CPen* old = m_memDC.SelectObject(&pen);
        // The marker stands at the leading edge of the strip.
        const int y = direction ? s.yTop : s.yBot;
        m_memDC.MoveTo(c.left, y);
        m_memDC.LineTo(right, y);
        m_memDC.SelectObject(old);
    }
    GlobalUnlock(m_hDib);
    m_paintRect = CRect(c.left, s.yTop, c.right, s.yBot);
    m_paintRect.InflateRect(0, 1);
    InvalidateRect(&m_paintRect, FALSE);
    UpdateWindow();
    m_paintRect.SetRectEmpty();
    if (f) f->DrawLineMark();
}

// Window ------------------------------------------------------------------------------------------

void CImageView::OnDestroy()
{
    if (m_pNotifier) m_pNotifier->OnDestroy();
    if (m_tipTimer) KillTimer(m_tipTimer);
    if (m_coordTimer) KillTimer(m_coordTimer);
    m_tipTimer = m_coordTimer = 0;
    DeleteCursors(1);
    ClearZoomList();
    CWnd::OnDestroy();
}

void CImageView::OnPaint()
{
    CPaintDC dc(this);
    // The whole picture is in the memory bitmap: a paint is one copy of what needs it, the
    // bounds of the update region (a scan strip's m_paintRect, a cursor's old and new place).
    CRect r = dc.m_ps.rcPaint;
    if (!m_paintRect.IsRectEmpty()) r.UnionRect(&r, &m_paintRect);
    if (m_pNotifier) m_pNotifier->OnBeginPaint(&r, &dc);
    if (m_bHasMemDC && !r.IsRectEmpty())
        dc.BitBlt(r.left, r.top, r.Width(), r.Height(), &m_memDC, r.left, r.top, SRCCOPY);
    if (m_pNotifier) m_pNotifier->OnEndPaint(&r, &dc);
}

BOOL CImageView::OnEraseBkgnd(CDC*) { return TRUE; }

void CImageView::OnSize(UINT type, int cx, int cy)
{
    if (m_pNotifier) m_pNotifier->OnSize(type, cx, cy);
    CWnd::OnSize(type, cx, cy);
    if (!m_hWnd) return;
    CreateDestinationBitmap();
    // Inside a frame the frame's layout redraws; a view on its own refills its new
    // memory bitmap from the block so that the next paint shows the image.
    if (!Frame()) StretchIntoMemory();
    ResizeCursors();
}

// Persistence -------------------------------------------------------------------------------------

void CImageView::DoDataExchange(CDataExchange* dx)
{
    CWnd::DoDataExchange(dx);
    if (!dx) return;
    if (dx->m_bSaveAndValidate) {
        for (POSITION p = m_cursors.GetHeadPosition(); p;) m_cursors.GetNext(p)->UpdateData(TRUE);
        return;
    }
    for (POSITION p = m_cursors.GetHeadPosition(); p;) {
        CBaseCursor* c = m_cursors.GetNext(p);
        if (!c->GetSafeHwnd()) c->Create(this);
    }
    UpdateImage();
}

void CImageView::Serialize(CArchive& ar)
{
    const UINT schema = orlex::SerializeVersion(ar, RUNTIME_CLASS(CImageView), 2, {1, 2});
    if (ar.IsStoring()) {
        m_cursors.Serialize(ar);
        m_zoomList.Serialize(ar);
        ar.WriteObject(m_curZoom ? m_zoomList.GetAt(m_curZoom) : nullptr);
        ar << m_nCols << m_nRows << m_scanLen.x << m_scanLen.y << m_nTooltipDisplayLevel << m_nMode;
        return;
    }
    DeleteCursors(1);
    ClearZoomList();
    m_pData = nullptr;
    m_cursors.Serialize(ar);
    m_zoomList.Serialize(ar);
    CObject* current = nullptr;
    try {
        current = ar.ReadObject(RUNTIME_CLASS(CZoomRecord));
    } catch (...) {
        KeepOwnedOnce(m_cursors, RUNTIME_CLASS(CBaseCursor), nullptr);
        KeepOwnedOnce(m_zoomList, RUNTIME_CLASS(CZoomRecord), &m_cursors);
        throw;
    }
    KeepOwnedOnce(m_cursors, RUNTIME_CLASS(CBaseCursor), nullptr);
    KeepOwnedOnce(m_zoomList, RUNTIME_CLASS(CZoomRecord), &m_cursors);
    // The current record is a back-reference into the list; anything else has no owner.
    m_curZoom = current ? m_zoomList.Find(static_cast<CZoomRecord*>(current)) : nullptr;
    if (current && !m_curZoom && !static_cast<CObList&>(m_cursors).Find(current)) delete current;
    int cols = 0, rows = 0, level = 0;
    double sx = 0.0, sy = 0.0;
    ar >> cols >> rows >> sx >> sy >> level;
    m_nCols = cols;
    m_nRows = rows;
    m_scanLen.x = sx;
    m_scanLen.y = sy;
    m_nTooltipDisplayLevel = level;
    if (schema >= 2) {
        int mode = 0;
        ar >> mode;
        m_nMode = mode;
    }
    // Off-line cursors find their places from data pixels; a real-time view leaves its
    // cursors without windows until the host asks.
    if (!m_bRealTime && m_hWnd) CreateCursorWindows();
}

void CImageView::SerializeCursors(CArchive& ar)
{
    if (ar.IsStoring()) {
        m_cursors.Serialize(ar);
        ar << m_nTooltipDisplayLevel << m_nMode << m_nCols << m_nRows;
        return;
    }
    DeleteCursors(1);
    try {
        m_cursors.Serialize(ar);
    } catch (...) {
        KeepOwnedOnce(m_cursors, RUNTIME_CLASS(CBaseCursor), nullptr);
        throw;
    }
    KeepOwnedOnce(m_cursors, RUNTIME_CLASS(CBaseCursor), nullptr);
    int level = 0, mode = 0, cols = 0, rows = 0;
    ar >> level >> mode >> cols >> rows;
    m_nTooltipDisplayLevel = level;
    m_nMode = mode;
    // Cursors saved on an image of another size keep their place on the sample: their data
    // pixels scale by the ratio of the sizes while their windows are made.
    if (cols != m_nCols || rows != m_nRows) {
        m_cursorScale.x = cols ? double(m_nCols) / cols : 1.0;
        m_cursorScale.y = rows ? double(m_nRows) / rows : 1.0;
    }
    if (m_hWnd) CreateCursorWindows();
    m_cursorScale.x = 1.0;
    m_cursorScale.y = 1.0;
}
