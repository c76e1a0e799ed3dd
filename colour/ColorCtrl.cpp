#include "colour/ColorCtrl.h"

#include <cassert>
#include <cstdio>
#include <cstring>

#include "colour/ColorTable.h"
#include "colour/ImageAdjust.h"
#include "foundation/ArchiveVersionControl.h"
#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxmenu.h"
#include "foundation/platform/globalmem.h"
#include "foundation/platform/resources.h"

namespace orlex::colour {

namespace {

void PutLE(BYTE* p, std::uint32_t v, int bytes)
{
    for (int b = 0; b < bytes; ++b) p[b] = static_cast<BYTE>(v >> (8 * b));
}

}  // namespace

void FillDisplayDib(BYTE* block, int n, const tagRGBQUAD* table)
{
    assert(n >= 1 && n <= kWorkingEntries);
    // The header little-endian, field by field, so the block is the same on any machine.
    PutLE(block + 0, 40, 4);
    PutLE(block + 4, 4, 4);
    PutLE(block + 8, std::uint32_t(n), 4);
    PutLE(block + 12, 1, 2);
    PutLE(block + 14, 8, 2);
    PutLE(block + 16, 0, 4);
    PutLE(block + 20, std::uint32_t(n) * 4, 4);
    std::memcpy(block + 40, table, sizeof(tagRGBQUAD) * kWorkingEntries);
    BYTE* row = block + 1064;
    for (int i = 0; i < n; ++i, row += 4) std::memset(row, i, 4);
}

}  // namespace orlex::colour

using namespace orlex::colour;

IMPLEMENT_SERIAL(CColorCtrl, CWnd, VERSIONABLE_SCHEMA | 1)

bool CColorCtrl::m_bColorDrag = false;

BEGIN_MESSAGE_MAP(CColorCtrl, CWnd)
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
    ON_WM_RBUTTONUP()
    ON_WM_CREATE()
    ON_WM_SIZE()
    ON_WM_SETCURSOR()
    ON_REGISTERED_MESSAGE(MESSAGE_BORDERCON_DIALOG_DELETED_STR, OnDialogDeleted)
    ON_COMMAND(ID_COLOR_ADJUST, OnColorAdjust)
END_MESSAGE_MAP()

namespace {

// The library's resources first while the adjustment dialog is made from its template.
class LibraryResourceScope {
public:
    LibraryResourceScope() : m_saved(AfxGetResourceHandle()) { AfxSetResourceHandle(orlex::LibraryModule()); }
    ~LibraryResourceScope() { AfxSetResourceHandle(m_saved); }
    LibraryResourceScope(const LibraryResourceScope&) = delete;
    LibraryResourceScope& operator=(const LibraryResourceScope&) = delete;

private:
    HINSTANCE m_saved;
};

bool IsFrame(const CWnd* wnd)
{
    const CRuntimeClass* frame = CRuntimeClass::FromName("CBorderCon");
    return wnd != nullptr && frame != nullptr && wnd->IsKindOf(frame);
}

}  // namespace

CColorCtrl::CColorCtrl() : m_hSizeCursor(LoadCursor(nullptr, IDC_SIZEWE)) {}

CColorCtrl::~CColorCtrl()
{
    if (m_pDialog) m_pDialog->DestroyWindow();  // deletes itself as its window goes
    m_pDialog = nullptr;
    // Destroy the window while this object's handlers can still run as themselves.
    if (m_hWnd) DestroyWindow();
    if (m_hDib) GlobalFree(m_hDib);
    m_hDib = nullptr;
    ReleaseDestinationBitmap();
}

void CColorCtrl::Create(CRect& rect, CWnd* parent, int id)
{
    CWnd::Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE | WS_BORDER, rect, parent, static_cast<UINT>(id));
}

void CColorCtrl::InitColorTable(int table)
{
    m_nTable = ClampTableNumber(table);
    CreateColorTable(m_nTable, m_nColors, m_pColorTable);
}

void CColorCtrl::SetColorTable(int table, int save)
{
    if (m_hDib == nullptr) return;  // no display yet: nothing changes, not even the number
    DeriveWorkingTable(table);
    if (save) StoreProfileColorTable(m_nTable);
    if (auto* block = static_cast<BYTE*>(GlobalLock(m_hDib))) {
        std::memcpy(block + 40, m_pColorTable, sizeof(tagRGBQUAD) * kWorkingEntries);
        GlobalUnlock(m_hDib);
    }
    UpdateControl();
}

void CColorCtrl::CreateColorDisplay(int table, CRect& rect, HDC dc)
{
    InitColorTable(table);
    CreateColorDisplay(rect, dc);
}

void CColorCtrl::CreateColorDisplay(int /*index*/, tagRGBQUAD* table, CRect& rect, HDC dc)
{
    if (table) std::memcpy(m_pColorTable, table, sizeof(tagRGBQUAD) * kWorkingEntries);
    CreateColorDisplay(rect, dc);
}

void CColorCtrl::StretchDib(HDC dc, const CRect& rect, const BYTE* block) const
{
    ::SetStretchBltMode(dc, HALFTONE);
    ::StretchDIBits(dc, rect.left, rect.top, rect.Width(), rect.Height(), 0, 0, 4, m_nColors, block + 1064,
                    reinterpret_cast<const BITMAPINFO*>(block), DIB_RGB_COLORS, SRCCOPY);
}

void CColorCtrl::CreateColorDisplay(CRect& rect, HDC dc)
{
    if (m_hDib) GlobalFree(m_hDib);
    m_hDib = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, DisplayDibBytes(m_nColors));
    BYTE* block = m_hDib ? static_cast<BYTE*>(GlobalLock(m_hDib)) : nullptr;
    if (m_hDib && !block) {
        GlobalFree(m_hDib);
        m_hDib = nullptr;  // the bar shows m_crBack
    }
    if (block) FillDisplayDib(block, m_nColors, m_pColorTable);

    HDC target = dc;
    if (dc == nullptr) {
        CreateDestinationBitmap();
        target = m_memDC.GetSafeHdc();
    } else {
        m_bBitmapValid = 1;
    }
    if (m_bBitmapValid && block && target) StretchDib(target, rect, block);
    if (block) GlobalUnlock(m_hDib);
    if (m_hWnd) {
        Invalidate(TRUE);
        UpdateWindow();
    }
}

void CColorCtrl::ReleaseDestinationBitmap()
{
    if (!m_bBitmapValid) return;
    if (m_memDC.GetSafeHdc()) {
        if (m_hOldBitmap) m_memDC.SelectObject(m_hOldBitmap);
        m_memDC.DeleteDC();  // first, so the bitmap is free to go
    }
    m_bitmap.DeleteObject();
    m_hOldBitmap = nullptr;
    m_bBitmapValid = 0;
}

void CColorCtrl::CreateDestinationBitmap()
{
    CRect client;
    GetClientRect(&client);
    ReleaseDestinationBitmap();
    if (m_memDC.GetSafeHdc()) m_memDC.DeleteDC();
    CClientDC windowDC(this);
    if (!m_memDC.CreateCompatibleDC(&windowDC)) return;
    if (!m_bitmap.CreateCompatibleBitmap(&windowDC, client.Width(), client.Height())) {
        m_memDC.DeleteDC();
        return;
    }
    CBitmap* old = m_memDC.SelectObject(&m_bitmap);
    m_hOldBitmap = old ? old->GetSafeHandle() : nullptr;
    m_bBitmapValid = 1;
}

void CColorCtrl::UpdateControl()
{
    if (m_hDib == nullptr) return;
    if (m_bBitmapValid && m_memDC.GetSafeHdc()) {
        if (const auto* block = static_cast<const BYTE*>(GlobalLock(m_hDib))) {
            CRect client;
            GetClientRect(&client);
            StretchDib(m_memDC.GetSafeHdc(), client, block);
            GlobalUnlock(m_hDib);
        }
    }
    if (m_hWnd) {
        Invalidate(TRUE);
        UpdateWindow();
    }
}

char* CColorCtrl::GetText()
{
    std::snprintf(m_szText, sizeof m_szText, "Table: %d", m_nTable);
    return m_szText;
}

void CColorCtrl::PrintInRect(CDC* dc, CRect& dest)
{
    if (dc == nullptr || !m_bBitmapValid) return;
    if (m_hDib) {
        if (const auto* block = static_cast<const BYTE*>(GlobalLock(m_hDib))) {
            StretchDib(dc->GetSafeHdc(), dest, block);
            GlobalUnlock(m_hDib);
        }
    }
    dc->MoveTo(dest.left, dest.top);
    dc->LineTo(dest.right, dest.top);
    dc->LineTo(dest.right, dest.bottom);
    dc->LineTo(dest.left, dest.bottom);
    dc->LineTo(dest.left, dest.top);
}

void CColorCtrl::DoDataExchange(CDataExchange* dx)
{
    if (dx && dx->m_bSaveAndValidate) return;
    SetColorTable(m_nTable, 0);
    SendColorMessage(0);
}

void CColorCtrl::Serialize(CArchive& ar)
{
    orlex::SerializeVersion(ar, RUNTIME_CLASS(CColorCtrl), 1, {1});
    if (ar.IsStoring()) {
        ar << m_nTable << m_nContrast << m_nOffset;
        return;
    }
    int table = 0, contrast = 0, offset = 0;
    ar >> table >> contrast >> offset;  // a short read throws before anything changes
    if (GetNumberOfColorTables() <= 0) InitializeColorTables();
    m_nTable = table >= GetNumberOfColorTables() ? kDefaultColorTable : table;
    m_nContrast = contrast;
    m_nOffset = offset;
}

// Window ---------------------------------------------------------------------------------------

int CColorCtrl::OnCreate(LPCREATESTRUCT cs)
{
    if (CWnd::OnCreate(cs) == -1) return -1;
    InitColorTable(m_nTable);
    CRect client;
    GetClientRect(&client);
    CreateColorDisplay(client, nullptr);
    return 0;
}

void CColorCtrl::OnPaint()
{
    CPaintDC dc(this);
    CRect client;
    GetClientRect(&client);
    if (m_hDib && m_bBitmapValid && m_memDC.GetSafeHdc()) {
        dc.BitBlt(0, 0, client.Width(), client.Height(), &m_memDC, 0, 0, SRCCOPY);
        return;
    }
    CBrush back(m_crBack);
    dc.FillRect(&client, &back);
}

BOOL CColorCtrl::OnEraseBkgnd(CDC*)
{
    return TRUE;  // the paint covers the whole client area
}

void CColorCtrl::OnSize(UINT type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    // Only a new bitmap of the new size; the owner's layout calls UpdateControl.
    if (m_hWnd) CreateDestinationBitmap();
}

BOOL CColorCtrl::OnSetCursor(CWnd* wnd, UINT hitTest, UINT message)
{
    if (hitTest == HTCLIENT) {
        ::SetCursor(m_hSizeCursor);
        return TRUE;
    }
    return CWnd::OnSetCursor(wnd, hitTest, message);
}

void CColorCtrl::NotifyParent(UINT code)
{
    CWnd* parent = GetParent();
    if (parent == nullptr) return;
    NMHDR nm{m_hWnd, static_cast<UINT_PTR>(GetDlgCtrlID()), code};
    parent->SendMessage(WM_NOTIFY, static_cast<WPARAM>(GetDlgCtrlID()), reinterpret_cast<LPARAM>(&nm));
}

void CColorCtrl::SendColorMessage(WPARAM kind)
{
    if (CWnd* parent = GetParent())
        parent->SendMessage(MESSAGE_COLOR_CTRL_STR, kind, reinterpret_cast<LPARAM>(m_pColorTable));
}

void CColorCtrl::OnLButtonDown(UINT flags, CPoint point)
{
    if (m_bMouseEdit) {
        SetCapture();
        m_bColorDrag = true;
        m_nDragStartX = point.x;
        m_nDragSteps = 0;
    }
    Default();
    NotifyParent(NM_CLICK);
    // Posted, so the press is over before the dialog appears.
    if (!m_bMouseEdit) PostMessage(WM_COMMAND, ID_COLOR_ADJUST, 0);
}

void CColorCtrl::OnMouseMove(UINT flags, CPoint point)
{
    if (m_bColorDrag) {
        const int steps = (point.x - m_nDragStartX) / kColorDragPixels;
        if (steps != m_nDragSteps) {
            SetColorTable(m_nTable - m_nDragSteps + steps, 0);
            m_nDragSteps = steps;
            SendColorMessage(WM_MOUSEMOVE);
        }
    }
    Default();
}

void CColorCtrl::OnLButtonUp(UINT flags, CPoint point)
{
    if (m_bColorDrag) {
        m_bColorDrag = false;
        ReleaseCapture();
    }
    Default();
}

void CColorCtrl::OnRButtonUp(UINT flags, CPoint point)
{
    NotifyParent(NM_RCLICK);
    CMenu menu;
    if (menu.LoadMenu(IDR_COLOR_MENU)) {
        if (CMenu* popup = menu.GetSubMenu(0)) {
            CPoint screen = point;
            ClientToScreen(&screen);
            popup->TrackPopupMenu(TPM_LEFTALIGN | TPM_RIGHTBUTTON, screen.x, screen.y, this);
        }
        menu.DestroyMenu();
    }
    Invalidate(TRUE);
    UpdateWindow();
    Default();
}

void CColorCtrl::OnColorAdjust()
{
    CWnd* target = GetParent();
    if (IsFrame(target)) target = target->GetParent();
    if (target == nullptr) return;
    if (target->SendMessage(WM_COMMAND, ID_COLOR_SCALE, 0) != 0) return;  // the host's own dialog
    if (m_pDialog != nullptr) return;
    LibraryResourceScope resources;
    m_pDialog = new CImageAdjust(this, 0);
    if (m_pDialog != nullptr && m_pDialog->m_hWnd == nullptr) {
        delete m_pDialog;  // no template: no window, nothing to show
        m_pDialog = nullptr;
    }
}

LRESULT CColorCtrl::OnDialogDeleted(WPARAM, LPARAM)
{
    m_pDialog = nullptr;
    return 0;
}
