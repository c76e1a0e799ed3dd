// CGridCtrl: construction, the window, default cells and colours, notices, item access.
#include "grid/GridCtrl.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <new>

#include "foundation/platform/afxole.h"
#include "foundation/platform/kernel.h"
#include "foundation/platform/modal.h"
#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"

IMPLEMENT_DYNCREATE(CGridCtrl, CWnd)

namespace {
constexpr const char* kGridClassName = "MFCGridCtrl";
}  // namespace

BEGIN_MESSAGE_MAP(CGridCtrl, CWnd)
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_SIZE()
    ON_WM_HSCROLL()
    ON_WM_VSCROLL()
    ON_WM_GETDLGCODE()
    ON_WM_SYSCOLORCHANGE()
    ON_WM_MOUSEWHEEL()
    ON_MESSAGE(WM_SETFONT, OnSetFont)
    ON_MESSAGE(WM_GETFONT, OnGetFont)
END_MESSAGE_MAP()

CGridCtrl::CGridCtrl(int nRows, int nCols, int nFixedRows, int nFixedCols)
{
    RegisterWindowClass();
    if (!orlex::IsOleInitialized() && !AfxOleInit())
        AfxMessageBox("OLE initialization failed. Make sure that the OLE libraries are the correct version");

    ReadSystemColours();
    m_nRowsPerWheelNotch = ReadWheelSetting();
    m_pRtcDefault = RUNTIME_CLASS(CGridCell);

    m_cellDefault.SetGrid(this);
    m_cellFixedColDef.SetGrid(this);
    m_cellFixedRowDef.SetGrid(this);
    m_cellFixedRowColDef.SetGrid(this);
    m_cellDefault.SetTextClr(m_crWindowText);
    m_cellDefault.SetBackClr(m_crWindowColour);
    for (CGridDefaultCell* pCell : {&m_cellFixedColDef, &m_cellFixedRowDef, &m_cellFixedRowColDef}) {
        pCell->SetTextClr(m_crWindowText);
        pCell->SetBackClr(m_cr3DFace);
    }
    m_crGridBkColour = m_crShadow;

    SetRowCount(nRows);
    SetColumnCount(nCols);
    SetFixedRowCount(nFixedRows);
    SetFixedColumnCount(nFixedCols);
    m_SelectedCellMap.RemoveAll();
    m_PrevSelectedCellMap.RemoveAll();
}

CGridCtrl::~CGridCtrl()
{
    DeleteAllItems();
    if (::IsWindow(m_hWnd))
        DestroyWindow();
}

void CGridCtrl::RegisterWindowClass()
{
    WNDCLASS wndcls{};
    if (::GetClassInfo(AfxGetInstanceHandle(), kGridClassName, &wndcls))
        return;
    wndcls.style = CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW;
    wndcls.lpfnWndProc = ::DefWindowProcA;
    wndcls.hInstance = AfxGetInstanceHandle();
    wndcls.hCursor = ::LoadCursor(nullptr, IDC_ARROW);
    wndcls.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_3DFACE + 1));
    wndcls.lpszClassName = kGridClassName;
    AfxRegisterClass(&wndcls);
}

BOOL CGridCtrl::Create(const RECT& rect, CWnd* pParentWnd, UINT nID, DWORD dwStyle)
{
    if (!CWnd::Create(kGridClassName, nullptr, dwStyle, rect, pParentWnd, nID))
        return FALSE;
    try {
        m_arRowHeights.SetSize(0, 0);
        m_arRowHeights.SetSize(m_nRows, static_cast<UINT>(m_cellDefault.GetHeight()));
        m_arColWidths.SetSize(0, 0);
        m_arColWidths.SetSize(m_nCols, static_cast<UINT>(m_cellDefault.GetWidth()));
    } catch (CMemoryException* e) {
        e->ReportError();
        e->Delete();
        return FALSE;
    }
    m_idTopLeftCell = CCellID();
    ResetScrollBars();
    return TRUE;
}

// Colours and defaults --------------------------------------------------------------------

void CGridCtrl::ReadSystemColours()
{
    m_crWindowText = ::GetSysColor(COLOR_WINDOWTEXT);
    m_crWindowColour = ::GetSysColor(COLOR_WINDOW);
    m_cr3DFace = ::GetSysColor(COLOR_3DFACE);
    m_crShadow = ::GetSysColor(COLOR_3DSHADOW);
}

int CGridCtrl::ReadWheelSetting() const
{
    UINT lines = 3;
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof(version);
    if (::GetVersionExA(&version) && version.dwPlatformId == 1 && version.dwMinorVersion == 0) {
        HKEY key = nullptr;
        if (::RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, KEY_QUERY_VALUE, &key) == 0) {
            char text[128] = {};
            DWORD size = sizeof(text) - 1;
            if (::RegQueryValueExA(key, "WheelScrollLines", nullptr, nullptr, reinterpret_cast<LPBYTE>(text), &size) ==
                0)
                lines = static_cast<UINT>(std::strtoul(text, nullptr, 10));
            ::RegCloseKey(key);
        }
    } else if (!::SystemParametersInfo(SPI_GETWHEELSCROLLLINES, 0, &lines, 0)) {
        lines = 3;
    }
    return static_cast<int>(lines);
}

CGridDefaultCell* CGridCtrl::GetDefaultCell(BOOL bFixedRow, BOOL bFixedCol) const
{
    auto* self = const_cast<CGridCtrl*>(this);
    if (bFixedRow && bFixedCol)
        return &self->m_cellFixedRowColDef;
    if (bFixedRow)
        return &self->m_cellFixedRowDef;
    if (bFixedCol)
        return &self->m_cellFixedColDef;
    return &self->m_cellDefault;
}

void CGridCtrl::SetFixedTextColor(COLORREF clr)
{
    m_cellFixedRowDef.SetTextClr(clr);
    m_cellFixedColDef.SetTextClr(clr);
    m_cellFixedRowColDef.SetTextClr(clr);
}

void CGridCtrl::SetFixedBkColor(COLORREF clr)
{
    m_cellFixedRowDef.SetBackClr(clr);
    m_cellFixedColDef.SetBackClr(clr);
    m_cellFixedRowColDef.SetBackClr(clr);
}

void CGridCtrl::SetDefCellWidth(int nWidth)
{
    for (CGridDefaultCell* c : {&m_cellDefault, &m_cellFixedColDef, &m_cellFixedRowDef, &m_cellFixedRowColDef})
        c->SetWidth(nWidth);
}

void CGridCtrl::SetDefCellHeight(int nHeight)
{
    for (CGridDefaultCell* c : {&m_cellDefault, &m_cellFixedColDef, &m_cellFixedRowDef, &m_cellFixedRowColDef})
        c->SetHeight(nHeight);
}

void CGridCtrl::SetDefCellMargin(int nMargin)
{
    for (CGridDefaultCell* c : {&m_cellDefault, &m_cellFixedColDef, &m_cellFixedRowDef, &m_cellFixedRowColDef})
        c->SetMargin(static_cast<UINT>(nMargin));
}

void CGridCtrl::SetGridLines(int nWhichLines)
{
    m_nGridLines = nWhichLines;
    Refresh();
}

int CGridCtrl::SetMouseMode(int nMode)
{
    const int old = m_MouseMode;
    m_MouseMode = nMode;
    return old;
}

void CGridCtrl::OnSysColorChange()
{
    CWnd::OnSysColorChange();
    const COLORREF text = ::GetSysColor(COLOR_WINDOWTEXT);
    const COLORREF back = ::GetSysColor(COLOR_WINDOW);
    for (CGridDefaultCell* c : {&m_cellDefault, &m_cellFixedColDef, &m_cellFixedRowDef, &m_cellFixedRowColDef}) {
        if (c->GetTextClr() == m_crWindowText)
            c->SetTextClr(text);
        if (c->GetBackClr() == m_crWindowColour)
            c->SetBackClr(back);
    }
    if (m_crGridBkColour == m_crShadow)
        m_crGridBkColour = ::GetSysColor(COLOR_3DSHADOW);
    ReadSystemColours();
    Refresh();
}

void CGridCtrl::OnSettingChange(UINT uFlags, LPCTSTR lpszSection)
{
    CWnd::OnSettingChange(uFlags, lpszSection);
    OnSysColorChange();
    m_nRowsPerWheelNotch = ReadWheelSetting();
}

LRESULT CGridCtrl::OnSetFont(WPARAM hFont, LPARAM lParam)
{
    const LRESULT result = Default();
    LOGFONT lf{};
    if (hFont && ::GetObject(reinterpret_cast<HANDLE>(hFont), sizeof(LOGFONT), &lf)) {
        for (CGridDefaultCell* c : {&m_cellDefault, &m_cellFixedColDef, &m_cellFixedRowDef, &m_cellFixedRowColDef})
            c->SetFont(&lf);
        Refresh();
    }
    return result;
}

LRESULT CGridCtrl::OnGetFont(WPARAM, LPARAM)
{
    return reinterpret_cast<LRESULT>(m_cellDefault.GetFontObject()->GetSafeHandle());
}

UINT CGridCtrl::OnGetDlgCode()
{
    UINT nCode = DLGC_WANTARROWS | DLGC_WANTCHARS;
    if (m_bHandleTabKey && !(::GetKeyState(VK_CONTROL) & 0x8000))
        nCode |= DLGC_WANTTAB;
    return nCode;
}

void CGridCtrl::OnSize(UINT nType, int cx, int cy)
{
    // One guard for all grids: resetting the bars may size the window again.
    static BOOL bInside = FALSE;
    if (bInside)
        return;
    bInside = TRUE;
    EndEditing();
    CWnd::OnSize(nType, cx, cy);
    ResetScrollBars();
    bInside = FALSE;
}

// Drawing control -------------------------------------------------------------------------

void CGridCtrl::SetRedraw(BOOL bAllowDraw, BOOL bResetScrollBars)
{
    if (bAllowDraw && !m_bAllowDraw) {
        m_bAllowDraw = TRUE;
        if (bResetScrollBars)
            ResetScrollBars();
        Refresh();
    }
    m_bAllowDraw = bAllowDraw;
}

void CGridCtrl::Refresh()
{
    if (::IsWindow(GetSafeHwnd()) && m_bAllowDraw)
        Invalidate();
}

void CGridCtrl::InvalidateIfAllowed(const RECT* rect)
{
    if (::IsWindow(GetSafeHwnd()) && m_bAllowDraw)
        InvalidateRect(rect, TRUE);
}

CRect CGridCtrl::ClientRect() const
{
    CRect rect(0, 0, 0, 0);
    if (::IsWindow(m_hWnd))
        GetClientRect(&rect);
    return rect;
}

void CGridCtrl::ReportOutOfMemory()
{
    CMemoryException e;
    e.ReportError();
}

// Notices -----------------------------------------------------------------------------------

namespace {

HWND NoticeTarget(const CWnd& grid)
{
    if (grid.m_hWndOwner && ::IsWindow(grid.m_hWndOwner))
        return grid.m_hWndOwner;
    return ::GetParent(grid.m_hWnd);
}

}  // namespace

LRESULT CGridCtrl::SendMessageToParent(int nRow, int nCol, int nMessage) const
{
    if (!::IsWindow(m_hWnd))
        return 0;
    NM_GRIDVIEW nmgv{};
    nmgv.iRow = nRow;
    nmgv.iColumn = nCol;
    nmgv.hdr.hwndFrom = m_hWnd;
    nmgv.hdr.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID());
    nmgv.hdr.code = static_cast<UINT>(nMessage);
    HWND target = NoticeTarget(*this);
    return target ? ::SendMessage(target, WM_NOTIFY, nmgv.hdr.idFrom, reinterpret_cast<LPARAM>(&nmgv)) : 0;
}

LRESULT CGridCtrl::SendDisplayRequestToParent(GV_DISPINFO* pDisplayInfo) const
{
    if (!::IsWindow(m_hWnd) || !pDisplayInfo)
        return 0;
    pDisplayInfo->hdr.hwndFrom = m_hWnd;
    pDisplayInfo->hdr.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID());
    pDisplayInfo->hdr.code = GVN_GETDISPINFO;
    HWND target = NoticeTarget(*this);
    return target ? ::SendMessage(target, WM_NOTIFY, pDisplayInfo->hdr.idFrom, reinterpret_cast<LPARAM>(pDisplayInfo))
                  : 0;
}

LRESULT CGridCtrl::SendCacheHintToParent(const CCellRange& range) const
{
    if (!::IsWindow(m_hWnd))
        return 0;
    GV_CACHEHINT hint{NMHDR{}, range};
    hint.hdr.hwndFrom = m_hWnd;
    hint.hdr.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID());
    hint.hdr.code = GVN_ODCACHEHINT;
    HWND target = NoticeTarget(*this);
    return target ? ::SendMessage(target, WM_NOTIFY, hint.hdr.idFrom, reinterpret_cast<LPARAM>(&hint)) : 0;
}

// Cells -------------------------------------------------------------------------------------

CGridCellBase* CGridCtrl::GetCell(int nRow, int nCol) const
{
    if (nRow < 0 || nRow >= m_nRows || nCol < 0 || nCol >= m_nCols)
        return nullptr;
    if (!m_bVirtualMode) {
        GRID_ROW* pRow = m_RowData.GetAt(nRow);
        return pRow ? pRow->GetAt(nCol) : nullptr;
    }
    // One record and one cell for every virtual grid of the process.
    static GV_DISPINFO gvdi;
    static CGridCell cell;
    const CGridDefaultCell* pDef = GetDefaultCell(nRow < m_nFixedRows, nCol < m_nFixedCols);
    GV_ITEM& item = gvdi.item;
    item.row = nRow;
    item.col = nCol;
    item.mask = 0xFFFFFFFF;
    item.nState = 0;
    item.nFormat = pDef->GetFormat();
    item.iImage = pDef->GetImage();
    item.crBkClr = pDef->GetBackClr();
    item.crFgClr = pDef->GetTextClr();
    item.lParam = pDef->GetData();
    if (const LOGFONT* plf = pDef->GetFont())
        std::memcpy(&item.lfFont, plf, sizeof(LOGFONT));
    else
        item.lfFont = LOGFONT{};
    item.nMargin = pDef->GetMargin();
    item.strText.Empty();
    CCellID found;
    if (m_SelectedCellMap.Lookup(SelectionKey(nRow, nCol), found))
        item.nState |= GVIS_SELECTED;
    if (nRow < m_nFixedRows)
        item.nState |= GVIS_FIXED | GVIS_FIXEDROW;
    if (nCol < m_nFixedCols)
        item.nState |= GVIS_FIXED | GVIS_FIXEDCOL;
    if (m_idCurrentCell == CCellID(nRow, nCol))
        item.nState |= GVIS_FOCUSED;

    if (m_pfnCallback)
        m_pfnCallback(&gvdi, m_lCallbackParam);
    else
        SendDisplayRequestToParent(&gvdi);

    cell.SetState(item.nState);
    cell.SetFormat(item.nFormat);
    cell.SetImage(item.iImage);
    cell.SetBackClr(item.crBkClr);
    cell.SetTextClr(item.crFgClr);
    cell.SetData(item.lParam);
    cell.SetFont(&item.lfFont);
    cell.SetMargin(item.nMargin);
    cell.SetText(item.strText);
    cell.SetGrid(const_cast<CGridCtrl*>(this));
    return &cell;
}

BOOL CGridCtrl::SetCell(int nRow, int nCol, CGridCellBase* pCell)
{
    if (m_bVirtualMode || !IsValid(nRow, nCol))
        return FALSE;
    GRID_ROW* pRow = m_RowData.GetAt(nRow);
    if (!pRow)
        return FALSE;
    if (pCell)
        pCell->SetCoords(nRow, nCol);
    pRow->SetAt(nCol, pCell);
    return TRUE;
}

CGridCellBase* CGridCtrl::CreateCell(int nRow, int nCol)
{
    if (!m_pRtcDefault || !m_pRtcDefault->IsDerivedFrom(RUNTIME_CLASS(CGridCellBase)))
        return nullptr;
    CGridCellBase* pCell = m_pRtcDefault == RUNTIME_CLASS(CGridCell)
                               ? new CGridCell
                               : dynamic_cast<CGridCellBase*>(m_pRtcDefault->CreateObject());
    if (!pCell)
        return nullptr;
    pCell->SetGrid(this);
    pCell->SetCoords(nRow, nCol);
    DWORD state = pCell->GetState();
    if (nCol < m_nFixedCols)
        state |= GVIS_FIXED | GVIS_FIXEDCOL;
    if (nRow < m_nFixedRows)
        state |= GVIS_FIXED | GVIS_FIXEDROW;
    pCell->SetState(state);
    if (CGridCellBase* pDef = pCell->GetDefaultCell())
        pCell->SetFormat(pDef->GetFormat());
    return pCell;
}

void CGridCtrl::DestroyCell(int nRow, int nCol)
{
    SetItemState(nRow, nCol, 0);
    delete GetCell(nRow, nCol);
}

BOOL CGridCtrl::SetCellType(int nRow, int nCol, CRuntimeClass* pRuntimeClass)
{
    if (m_bVirtualMode || !IsValid(nRow, nCol) || !pRuntimeClass ||
        !pRuntimeClass->IsDerivedFrom(RUNTIME_CLASS(CGridCellBase)))
        return FALSE;
    CObject* pObject = pRuntimeClass->CreateObject();
    auto* pNewCell = dynamic_cast<CGridCellBase*>(pObject);
    if (!pNewCell) {
        delete pObject;
        return FALSE;
    }
    CGridCellBase* pCurrCell = GetCell(nRow, nCol);
    if (pCurrCell)
        *pNewCell = *pCurrCell;
    SetCell(nRow, nCol, pNewCell);
    delete pCurrCell;
    return TRUE;
}

BOOL CGridCtrl::SetDefaultCellType(CRuntimeClass* pRuntimeClass)
{
    if (!pRuntimeClass || !pRuntimeClass->IsDerivedFrom(RUNTIME_CLASS(CGridCellBase)))
        return FALSE;
    m_pRtcDefault = pRuntimeClass;
    return TRUE;
}

// Item access -----------------------------------------------------------------------------

BOOL CGridCtrl::IsValid(int nRow, int nCol) const
{
    return nRow >= 0 && nRow < m_nRows && nCol >= 0 && nCol < m_nCols;
}

BOOL CGridCtrl::IsValid(const CCellRange& range) const
{
    return range.GetMinRow() >= 0 && range.GetMinCol() >= 0 && range.GetMaxRow() >= 0 && range.GetMaxCol() >= 0 &&
           range.GetMaxRow() < m_nRows && range.GetMaxCol() < m_nCols && range.GetMinRow() <= range.GetMaxRow() &&
           range.GetMinCol() <= range.GetMaxCol();
}

BOOL CGridCtrl::GetItem(GV_ITEM* pItem)
{
    if (!pItem)
        return FALSE;
    CGridCellBase* pCell = GetCell(pItem->row, pItem->col);
    if (!pCell)
        return FALSE;
    if (pItem->mask & GVIF_TEXT)
        pItem->strText = GetItemText(pItem->row, pItem->col);
    if (pItem->mask & GVIF_IMAGE)
        pItem->iImage = pCell->GetImage();
    if (pItem->mask & GVIF_PARAM)
        pItem->lParam = pCell->GetData();
    if (pItem->mask & GVIF_STATE)
        pItem->nState = pCell->GetState();
    if (pItem->mask & GVIF_FORMAT)
        pItem->nFormat = pCell->GetFormat();
    if (pItem->mask & GVIF_BKCLR)
        pItem->crBkClr = pCell->GetBackClr();
    if (pItem->mask & GVIF_FGCLR)
        pItem->crFgClr = pCell->GetTextClr();
    if (pItem->mask & GVIF_FONT) {
        if (const LOGFONT* plf = pCell->GetFont())
            std::memcpy(&pItem->lfFont, plf, sizeof(LOGFONT));
    }
    if (pItem->mask & GVIF_MARGIN)
        pItem->nMargin = pCell->GetMargin();
    return TRUE;
}

BOOL CGridCtrl::SetItem(const GV_ITEM* pItem)
{
    if (!pItem || m_bVirtualMode)
        return FALSE;
    CGridCellBase* pCell = GetCell(pItem->row, pItem->col);
    if (!pCell)
        return FALSE;
    SetModified(TRUE, pItem->row, pItem->col);
    if (pItem->mask & GVIF_TEXT)
        pCell->SetText(pItem->strText);
    if (pItem->mask & GVIF_PARAM)
        pCell->SetData(pItem->lParam);
    if (pItem->mask & GVIF_IMAGE)
        pCell->SetImage(pItem->iImage);
    if (pItem->mask & GVIF_STATE)
        SetItemState(pItem->row, pItem->col, pItem->nState);
    if (pItem->mask & GVIF_FORMAT)
        pCell->SetFormat(pItem->nFormat);
    if (pItem->mask & GVIF_BKCLR)
        pCell->SetBackClr(pItem->crBkClr);
    if (pItem->mask & GVIF_FGCLR)
        pCell->SetTextClr(pItem->crFgClr);
    if (pItem->mask & GVIF_FONT)
        pCell->SetFont(&pItem->lfFont);
    if (pItem->mask & GVIF_MARGIN)
        pCell->SetMargin(pItem->nMargin);
    return TRUE;
}

CString CGridCtrl::GetItemText(int nRow, int nCol) const
{
    const CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? CString(pCell->GetText()) : CString();
}

BOOL CGridCtrl::SetItemText(int nRow, int nCol, LPCTSTR str)
{
    if (m_bVirtualMode)
        return FALSE;
    CGridCellBase* pCell = GetCell(nRow, nCol);
    if (!pCell)
        return FALSE;
    pCell->SetText(str ? str : "");
    SetModified(TRUE, nRow, nCol);
    return TRUE;
}

BOOL CGridCtrl::SetItemTextFmt(int nRow, int nCol, LPCTSTR szFmt, ...)
{
    if (m_bVirtualMode || !szFmt || !GetCell(nRow, nCol))
        return FALSE;
    CString text;
    va_list args;
    va_start(args, szFmt);
    text.FormatV(szFmt, args);
    va_end(args);
    return SetItemText(nRow, nCol, text);
}

BOOL CGridCtrl::SetItemTextFmtID(int nRow, int nCol, UINT nID, ...)
{
    if (m_bVirtualMode || !GetCell(nRow, nCol))
        return FALSE;
    CString format;
    format.LoadString(nID);
    CString text;
    va_list args;
    va_start(args, nID);
    text.FormatV(format, args);
    va_end(args);
    return SetItemText(nRow, nCol, text);
}

BOOL CGridCtrl::SetItemData(int nRow, int nCol, LPARAM lParam)
{
    CGridCellBase* pCell = m_bVirtualMode ? nullptr : GetCell(nRow, nCol);
    if (!pCell)
        return FALSE;
    pCell->SetData(lParam);
    SetModified(TRUE, nRow, nCol);
    return TRUE;
}

LPARAM CGridCtrl::GetItemData(int nRow, int nCol) const
{
    const CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? pCell->GetData() : 0;
}

BOOL CGridCtrl::SetItemImage(int nRow, int nCol, int iImage)
{
    CGridCellBase* pCell = m_bVirtualMode ? nullptr : GetCell(nRow, nCol);
    if (!pCell)
        return FALSE;
    pCell->SetImage(iImage);
    SetModified(TRUE, nRow, nCol);
    return TRUE;
}

int CGridCtrl::GetItemImage(int nRow, int nCol) const
{
    const CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? pCell->GetImage() : -1;
}

BOOL CGridCtrl::SetItemFormat(int nRow, int nCol, UINT nFormat)
{
    CGridCellBase* pCell = m_bVirtualMode ? nullptr : GetCell(nRow, nCol);
    if (!pCell)
        return FALSE;
    pCell->SetFormat(nFormat);
    return TRUE;
}

UINT CGridCtrl::GetItemFormat(int nRow, int nCol) const
{
    const CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? pCell->GetFormat() : 0;
}

BOOL CGridCtrl::SetItemBkColour(int nRow, int nCol, COLORREF cr)
{
    CGridCellBase* pCell = m_bVirtualMode ? nullptr : GetCell(nRow, nCol);
    if (!pCell)
        return FALSE;
    pCell->SetBackClr(cr);
    return TRUE;
}

COLORREF CGridCtrl::GetItemBkColour(int nRow, int nCol) const
{
    const CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? pCell->GetBackClr() : 0;
}

BOOL CGridCtrl::SetItemFgColour(int nRow, int nCol, COLORREF cr)
{
    CGridCellBase* pCell = m_bVirtualMode ? nullptr : GetCell(nRow, nCol);
    if (!pCell)
        return FALSE;
    pCell->SetTextClr(cr);
    return TRUE;
}

COLORREF CGridCtrl::GetItemFgColour(int nRow, int nCol) const
{
    const CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? pCell->GetTextClr() : 0;
}

BOOL CGridCtrl::SetItemFont(int nRow, int nCol, const LOGFONT* plf)
{
    CGridCellBase* pCell = m_bVirtualMode ? nullptr : GetCell(nRow, nCol);
    if (!pCell)
        return FALSE;
    pCell->SetFont(plf);
    return TRUE;
}

const LOGFONT* CGridCtrl::GetItemFont(int nRow, int nCol)
{
    if (!IsValid(nRow, nCol))
        return nullptr;
    CGridCellBase* pCell = GetCell(nRow, nCol);
    if (!pCell)
        return GetDefaultCell(nRow < m_nFixedRows, nCol < m_nFixedCols)->GetFont();
    return pCell->GetFont();
}

BOOL CGridCtrl::IsItemEditing(int nRow, int nCol)
{
    CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? pCell->IsEditing() : FALSE;
}

BOOL CGridCtrl::SetItemState(int nRow, int nCol, UINT state)
{
    if (!IsValid(nRow, nCol))
        return FALSE;
    const BOOL bSelected = IsCellSelected(nRow, nCol);
    if (bSelected && !(state & GVIS_SELECTED)) {
        m_SelectedCellMap.RemoveKey(SelectionKey(nRow, nCol));
    } else if (!bSelected && (state & GVIS_SELECTED)) {
        CCellID cell(nRow, nCol);
        m_SelectedCellMap.SetAt(SelectionKey(nRow, nCol), cell);
    }
    if (m_bVirtualMode)
        return FALSE;
    CGridCellBase* pCell = GetCell(nRow, nCol);
    if (!pCell)
        return FALSE;
    pCell->SetState(state);
    return TRUE;
}

UINT CGridCtrl::GetItemState(int nRow, int nCol) const
{
    const CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? pCell->GetState() : 0;
}

BOOL CGridCtrl::GetModified(int nRow, int nCol)
{
    if (nRow < 0 || nCol < 0)
        return m_bModified;
    CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? (pCell->IsModified() ? TRUE : FALSE) : FALSE;
}

void CGridCtrl::SetModified(BOOL bModified, int nRow, int nCol)
{
    if (bModified)
        m_bModified = TRUE;
    if (nRow < 0 || nCol < 0) {
        m_bModified = bModified;
        return;
    }
    CGridCellBase* pCell = m_bVirtualMode ? nullptr : GetCell(nRow, nCol);
    if (!pCell)
        return;
    const DWORD state = pCell->GetState();
    pCell->SetState(bModified ? (state | GVIS_MODIFIED) : (state & ~GVIS_MODIFIED));
}

BOOL CGridCtrl::IsCellEditable(int nRow, int nCol) const
{
    const CGridCellBase* pCell = GetCell(nRow, nCol);
    return m_bEditable && pCell && !pCell->IsReadOnly();
}

BOOL CGridCtrl::IsCellFixed(int nRow, int nCol)
{
    return IsValid(nRow, nCol) && (nRow < m_nFixedRows || nCol < m_nFixedCols);
}

BOOL CGridCtrl::IsCellSelected(int nRow, int nCol) const
{
    if (m_bVirtualMode) {
        CCellID cell;
        return IsValid(nRow, nCol) && m_SelectedCellMap.Lookup(SelectionKey(nRow, nCol), cell);
    }
    const CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell && pCell->IsSelected();
}

ULONGLONG CGridCtrl::SelectionKey(int nRow, int nCol)
{
    // An odd multiplier keeps the key one-to-one and spreads the columns of a row over the
    // map's buckets (its hash folds the two halves together).
    return (static_cast<ULONGLONG>(static_cast<UINT>(nRow)) << 32) |
           static_cast<UINT>(static_cast<UINT>(nCol) * 0x9E3779B1u);
}

CSize CGridCtrl::GetCellTextExtent(int nRow, int nCol)
{
    CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? pCell->GetTextExtent(pCell->GetText()) : CSize(0, 0);
}

CPoint CGridCtrl::GetPointClicked(int nRow, int nCol, const CPoint& point)
{
    CPoint origin;
    if (!GetCellOrigin(nRow, nCol, &origin))
        return CPoint(0, 0);
    return CPoint(point.x - origin.x, point.y - origin.y);
}

BOOL CGridCtrl::ValidateEdit(int nRow, int nCol, LPCTSTR str)
{
    CGridCellBase* pCell = GetCell(nRow, nCol);
    return pCell ? pCell->ValidateEdit(str) : TRUE;
}

BOOL CGridCtrl::ValidateAndModifyCellContents(int nRow, int nCol, LPCTSTR strText)
{
    if (!IsCellEditable(nRow, nCol))
        return FALSE;
    if (SendMessageToParent(nRow, nCol, static_cast<int>(GVN_BEGINLABELEDIT)) < 0)
        return FALSE;
    const CString strCurrentText = GetItemText(nRow, nCol);
    const CString strNew = strText ? strText : "";
    if (strCurrentText == strNew)
        return TRUE;
    SetItemText(nRow, nCol, strNew);
    if (ValidateEdit(nRow, nCol, strNew) && SendMessageToParent(nRow, nCol, static_cast<int>(GVN_ENDLABELEDIT)) >= 0) {
        SetModified(TRUE, nRow, nCol);
        RedrawCell(nRow, nCol);
        return TRUE;
    }
    SetItemText(nRow, nCol, strCurrentText);
    return FALSE;
}
