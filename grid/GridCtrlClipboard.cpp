// CGridCtrl: cell text out and in as tab-separated text, by the clipboard and by drag and drop.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/globalmem.h"
#include "grid/GridCtrl.h"

namespace {

constexpr UINT kTextBlockFlags = GMEM_MOVEABLE | GMEM_DDESHARE | GMEM_ZEROINIT;

DROPEFFECT EffectOfKeys(DWORD dwKeyState)
{
    return (dwKeyState & MK_CONTROL) ? DROPEFFECT_COPY : DROPEFFECT_MOVE;
}

}  // namespace

COleDataSource* CGridCtrl::CopyTextFromGrid()
{
    const CCellRange sel = GetSelectedCellRange();
    if (!IsValid(sel))
        return nullptr;
    if (m_bVirtualMode)
        SendCacheHintToParent(sel);
    // The text is built whole and written once: a block grown by fixed steps per line would
    // copy itself over and over.
    std::string text;
    for (int row = sel.GetMinRow(); row <= sel.GetMaxRow(); ++row) {
        if (GetRowHeight(row) <= 0)
            continue;
        for (int col = sel.GetMinCol(); col <= sel.GetMaxCol(); ++col) {
            if (GetColumnWidth(col) <= 0)
                continue;
            const CGridCellBase* pCell = GetCell(row, col);
            if (pCell && (pCell->GetState() & GVIS_SELECTED))
                text += pCell->GetText();
            if (col != sel.GetMaxCol())
                text += '\t';
        }
        if (row != sel.GetMaxRow())
            text += "\r\n";
    }
    if (m_bVirtualMode)
        SendCacheHintToParent(CCellRange(-1, -1, -1, -1));

    HGLOBAL hMem = nullptr;
    SIZE_T length = 0;
    try {
        CSharedFile sf(kTextBlockFlags, 4096);
        sf.Write(text.c_str(), static_cast<UINT>(text.size() + 1));
        length = static_cast<SIZE_T>(sf.GetLength());
        hMem = sf.Detach();
    } catch (CException* e) {
        e->Delete();
        return nullptr;
    }
    if (!hMem)
        return nullptr;
    if (HGLOBAL shrunk = ::GlobalReAlloc(hMem, length, kTextBlockFlags))
        hMem = shrunk;
    auto* pSource = new COleDataSource;
    pSource->CacheGlobalData(CF_TEXT, hMem);
    return pSource;
}

void CGridCtrl::CutSelectedText()
{
    if (!m_bEditable)
        return;
    // The cells are taken first: the owner may change the selection when it is asked.
    std::vector<CCellID> cells;
    cells.reserve(static_cast<size_t>(m_SelectedCellMap.GetCount()));
    for (POSITION pos = m_SelectedCellMap.GetStartPosition(); pos;) {
        ULONGLONG key;
        CCellID cell;
        m_SelectedCellMap.GetNextAssoc(pos, key, cell);
        cells.push_back(cell);
    }
    for (const CCellID& cell : cells)
        ValidateAndModifyCellContents(cell.row, cell.col, "");
}

BOOL CGridCtrl::PasteTextToGrid(CCellID cell, COleDataObject* pDataObject, BOOL bSelectPastedCells)
{
    if (!IsValid(cell) || !m_bEditable || !IsCellEditable(cell) || !pDataObject ||
        !pDataObject->IsDataAvailable(CF_TEXT))
        return FALSE;
    HGLOBAL hmem = pDataObject->GetGlobalData(CF_TEXT);
    if (!hmem)
        return FALSE;
    const SIZE_T size = ::GlobalSize(hmem);
    std::string text;
    {
        std::vector<char> buffer(size);
        CMemFile sf(static_cast<BYTE*>(::GlobalLock(hmem)), static_cast<UINT>(size));
        sf.Read(buffer.data(), static_cast<UINT>(size));
        ::GlobalUnlock(hmem);
        // Up to the first NUL; a block without one is read to its size.
        text.assign(buffer.data(), ::strnlen(buffer.data(), size));
    }
    ::GlobalFree(hmem);

    // The text is walked by index, line by line and field by field.
    int maxRow = cell.row, maxCol = cell.col;
    long long rowIndex = 0;
    size_t lineStart = 0;
    for (;;) {
        const size_t lineEnd = text.find('\n', lineStart);
        const size_t lineStop = lineEnd == std::string::npos ? text.size() : lineEnd;
        while (cell.row + rowIndex < m_nRows && GetRowHeight(static_cast<int>(cell.row + rowIndex)) <= 0)
            ++rowIndex;
        const long long row = cell.row + rowIndex;
        long long colIndex = 0;
        for (size_t fieldStart = lineStart; fieldStart < lineStop;) {
            // A field ends at the first TAB or comma of its line.
            size_t fieldEnd = fieldStart;
            while (fieldEnd < lineStop && text[fieldEnd] != '\t' && text[fieldEnd] != ',')
                ++fieldEnd;
            while (cell.col + colIndex < m_nCols && GetColumnWidth(static_cast<int>(cell.col + colIndex)) <= 0)
                ++colIndex;
            const long long col = cell.col + colIndex;
            if (row < m_nRows && col < m_nCols) {
                CString token(text.data() + fieldStart, static_cast<int>(fieldEnd - fieldStart));
                token.TrimLeft();
                token.TrimRight();
                const int r = static_cast<int>(row), c = static_cast<int>(col);
                ValidateAndModifyCellContents(r, c, token);
                SetItemState(r, c, GetItemState(r, c) & ~GVIS_SELECTED);
                maxRow = std::max(maxRow, r);
                maxCol = std::max(maxCol, c);
            }
            ++colIndex;
            fieldStart = fieldEnd + 1;
        }
        ++rowIndex;
        if (lineEnd == std::string::npos)
            break;
        lineStart = lineEnd + 1;
    }
    if (bSelectPastedCells) {
        SetSelectedRange(cell.row, cell.col, maxRow, maxCol, TRUE, TRUE);
    } else {
        ResetSelectedRange();
        Refresh();
    }
    return TRUE;
}

void CGridCtrl::OnEditCopy()
{
    if (COleDataSource* pSource = CopyTextFromGrid())
        pSource->SetClipboard();
}

void CGridCtrl::OnEditCut()
{
    if (!m_bEditable)
        return;
    COleDataSource* pSource = CopyTextFromGrid();
    if (!pSource)
        return;
    pSource->SetClipboard();
    CutSelectedText();
}

void CGridCtrl::OnEditPaste()
{
    if (!m_bEditable)
        return;
    CCellID cell;
    const CCellRange sel = GetSelectedCellRange();
    if (IsValid(sel))
        cell = sel.GetTopLeft();
    else if (IsValid(m_idCurrentCell))
        cell = m_idCurrentCell;
    else
        cell = GetTopleftNonFixedCell();
    if (!IsValid(cell))
        return;
    if (IsItemEditing(cell.row, cell.col)) {
        // An open editor takes the text, and no cell of the grid changes.
        CGridCellBase* pCell = GetCell(cell.row, cell.col);
        CWnd* pEditWnd = pCell ? pCell->GetEditWnd() : nullptr;
        if (dynamic_cast<CEdit*>(pEditWnd))
            pEditWnd->SendMessage(WM_PASTE, 0, 0);
        return;
    }
    COleDataObject obj;
    if (obj.AttachClipboard())
        PasteTextToGrid(cell, &obj, TRUE);
}

void CGridCtrl::OnUpdateEditCopy(CCmdUI* pCmdUI)
{
    pCmdUI->Enable(GetSelectedCount() > 0);
}

void CGridCtrl::OnUpdateEditCut(CCmdUI* pCmdUI)
{
    pCmdUI->Enable(m_bEditable && GetSelectedCount() > 0);
}

void CGridCtrl::OnUpdateEditPaste(CCmdUI* pCmdUI)
{
    const CCellID cell = m_idCurrentCell;
    const CGridCellBase* pCell = GetCell(cell.row, cell.col);
    pCmdUI->Enable(IsValid(cell) && m_bEditable && pCell && !pCell->IsReadOnly() &&
                   ::IsClipboardFormatAvailable(CF_TEXT));
}

void CGridCtrl::OnUpdateEditSelectAll(CCmdUI* pCmdUI)
{
    pCmdUI->Enable(m_bEnableSelection);
}

// Drag and drop ------------------------------------------------------------------------------

void CGridCtrl::OnBeginDrag()
{
    if (!m_bAllowDragAndDrop)
        return;
    COleDataSource* pSource = CopyTextFromGrid();
    if (!pSource)
        return;
    const CCellID topLeft = GetSelectedCellRange().GetTopLeft();
    SendMessageToParent(topLeft.row, topLeft.col, static_cast<int>(GVN_BEGINDRAG));
    m_MouseMode = MouseDragging;
    m_bLMouseButtonDown = FALSE;
    const HWND self = m_hWnd;
    const DROPEFFECT dropEffect = pSource->DoDragDrop(DROPEFFECT_COPY | DROPEFFECT_MOVE);
    // A move empties the source cells, after the drop (within one grid the paste has
    // already cleared the selection, so nothing is emptied).
    if ((dropEffect & DROPEFFECT_MOVE) && ::IsWindow(self))
        CutSelectedText();
    delete pSource;
}

DROPEFFECT CGridCtrl::OnDragEnter(COleDataObject* pDataObject, DWORD dwKeyState, CPoint point)
{
    if (!m_bAllowDragAndDrop || !pDataObject || !pDataObject->IsDataAvailable(CF_TEXT))
        return DROPEFFECT_NONE;
    m_LastDragOverCell = GetCellFromPt(point, FALSE);
    if (!IsValid(m_LastDragOverCell) || !m_bEditable || !IsCellEditable(m_LastDragOverCell))
        return DROPEFFECT_NONE;
    SetItemState(m_LastDragOverCell.row, m_LastDragOverCell.col,
                 GetItemState(m_LastDragOverCell.row, m_LastDragOverCell.col) | GVIS_DROPHILITED);
    RedrawCell(m_LastDragOverCell);
    return EffectOfKeys(dwKeyState);
}

DROPEFFECT CGridCtrl::OnDragOver(COleDataObject* pDataObject, DWORD dwKeyState, CPoint point)
{
    if (!m_bAllowDragAndDrop || !m_bEditable || !pDataObject || !pDataObject->IsDataAvailable(CF_TEXT))
        return DROPEFFECT_NONE;
    const CCellID cell = GetCellFromPt(point, FALSE);
    if (!IsValid(cell)) {
        OnDragLeave();
        m_LastDragOverCell = CCellID();
        return DROPEFFECT_NONE;
    }
    if (!IsCellEditable(cell))
        return DROPEFFECT_NONE;
    if (cell == m_LastDragOverCell)
        return EffectOfKeys(dwKeyState);
    if (IsValid(m_LastDragOverCell)) {
        SetItemState(m_LastDragOverCell.row, m_LastDragOverCell.col,
                     GetItemState(m_LastDragOverCell.row, m_LastDragOverCell.col) & ~GVIS_DROPHILITED);
        RedrawCell(m_LastDragOverCell);
    }
    m_LastDragOverCell = cell;
    SetItemState(cell.row, cell.col, GetItemState(cell.row, cell.col) | GVIS_DROPHILITED);
    RedrawCell(cell);
    return EffectOfKeys(dwKeyState);
}

void CGridCtrl::OnDragLeave()
{
    if (!IsValid(m_LastDragOverCell))
        return;
    SetItemState(m_LastDragOverCell.row, m_LastDragOverCell.col,
                 GetItemState(m_LastDragOverCell.row, m_LastDragOverCell.col) & ~GVIS_DROPHILITED);
    RedrawCell(m_LastDragOverCell);
}

BOOL CGridCtrl::OnDrop(COleDataObject* pDataObject, DROPEFFECT, CPoint)
{
    m_MouseMode = MouseIdle;
    if (!m_bAllowDragAndDrop || !m_bEditable)
        return FALSE;
    const CGridCellBase* pCell = GetCell(m_LastDragOverCell.row, m_LastDragOverCell.col);
    if (pCell && pCell->IsReadOnly())
        return FALSE;
    OnDragLeave();
    return PasteTextToGrid(m_LastDragOverCell, pDataObject, FALSE);
}

CImageList* CGridCtrl::CreateDragImage(CPoint* pHotSpot)
{
    if (!pHotSpot || !::IsWindow(m_hWnd))
        return nullptr;
    CDC* pDC = GetDC();
    if (!pDC)
        return nullptr;
    CRect rect;
    const CCellID cell = m_idCurrentCell;
    CGridCellBase* pCell = GetCell(cell.row, cell.col);
    if (!pCell || !GetCellRect(cell, &rect)) {
        ReleaseDC(pDC);
        return nullptr;
    }
    // The picture's bottom right corner is the hot spot.
    pHotSpot->x = rect.Width();
    pHotSpot->y = rect.Height();
    rect.OffsetRect(-rect.left, -rect.top);

    auto* pList = new CImageList;
    if (!pList->Create(rect.Width(), rect.Height(), ILC_MASK, 1, 1)) {
        delete pList;
        ReleaseDC(pDC);
        return nullptr;
    }
    CDC memDC;
    CBitmap bitmap;
    memDC.CreateCompatibleDC(pDC);
    bitmap.CreateCompatibleBitmap(pDC, rect.Width(), rect.Height());
    CBitmap* pOld = memDC.SelectObject(&bitmap);
    memDC.SetWindowOrg(0, 0);
    pCell->Draw(&memDC, cell.row, cell.col, rect, FALSE);
    memDC.SelectObject(pOld);
    ReleaseDC(pDC);
    pList->Add(&bitmap, m_cellDefault.GetBackClr());
    return pList;
}
