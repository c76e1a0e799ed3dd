// The abstract cell of the spreadsheet grid: a state word and the operations every cell
// type answers. A cell keeps only what differs from the default cell of its position in the
// grid (normal, fixed row, fixed column, fixed corner), which its state bits pick.
#pragma once

#include "foundation/platform/afxobj.h"
#include "grid/GridTypes.h"

class CGridCellBase : public CObject {
    DECLARE_DYNAMIC(CGridCellBase)
public:
    CGridCellBase() = default;
    ~CGridCellBase() override = default;

    // Setters: the plain meaning of each name.
    virtual void SetText(LPCTSTR szText) = 0;
    virtual void SetImage(int nImage) = 0;
    virtual void SetData(LPARAM lParam) = 0;
    virtual void SetState(DWORD nState) { m_nState = nState; }
    virtual void SetFormat(DWORD nFormat) = 0;
    virtual void SetTextClr(COLORREF clr) = 0;
    virtual void SetBackClr(COLORREF clr) = 0;
    // Copies the whole font; null goes back to the default cell's.
    virtual void SetFont(const LOGFONT* plf) = 0;
    virtual void SetMargin(UINT nMargin) = 0;
    // The owning grid (not owned); null detaches the cell.
    virtual void SetGrid(CGridCtrl* pGrid) = 0;
    virtual void SetCoords(int nRow, int nCol) = 0;

    // The text, never null ("" when empty).
    virtual LPCTSTR GetText() const = 0;
    virtual LPCTSTR GetTipText() const { return GetText(); }
    virtual int GetImage() const = 0;
    virtual LPARAM GetData() const = 0;
    virtual DWORD GetState() const { return m_nState; }
    // Format and margin fall back to the default cell (0 without one); colours never do.
    virtual DWORD GetFormat() const = 0;
    virtual COLORREF GetTextClr() const = 0;
    virtual COLORREF GetBackClr() const = 0;
    // The own font, else the default cell's, else null.
    virtual LOGFONT* GetFont() const = 0;
    // A font object for drawing: for a cell with its own font one object shared by all cells
    // and made again on each call (good until the next call for any cell), else the default
    // cell's. Null without either.
    virtual CFont* GetFontObject() const = 0;
    virtual CGridCtrl* GetGrid() const = 0;
    virtual CWnd* GetEditWnd() const = 0;
    virtual UINT GetMargin() const = 0;
    // The grid's default cell for this cell's kind of position; null without a grid.
    virtual CGridCellBase* GetDefaultCell() const;

    virtual BOOL IsDefaultFont() const = 0;
    virtual BOOL IsEditing() const = 0;
    virtual BOOL IsFocused() const { return m_nState & GVIS_FOCUSED; }
    virtual BOOL IsFixed() const { return m_nState & GVIS_FIXED; }
    virtual BOOL IsFixedCol() const { return m_nState & GVIS_FIXEDCOL; }
    virtual BOOL IsFixedRow() const { return m_nState & GVIS_FIXEDROW; }
    virtual BOOL IsSelected() const { return m_nState & GVIS_SELECTED; }
    virtual BOOL IsReadOnly() const { return m_nState & GVIS_READONLY; }
    virtual BOOL IsModified() const { return m_nState & GVIS_MODIFIED; }
    virtual BOOL IsDropHighlighted() const { return m_nState & GVIS_DROPHILITED; }

    // Copies through the accessors, in the order grid, text, image, data, state, format,
    // text colour, back colour, font, margin: the state bits come along.
    virtual void operator=(const CGridCellBase& cell);
    virtual void Reset() { m_nState = 0; }

    // Paints the cell into rect (inclusive pixels): background, selection or focus, the
    // fixed cells' edges, image, sort arrow and text. bEraseBkgnd paints a background that
    // is the default cell's; an own one always paints. 0 without a grid, a context or a
    // rectangle of at least one pixel.
    virtual BOOL Draw(CDC* pDC, int nRow, int nCol, CRect rect, BOOL bEraseBkgnd = TRUE);

    // Moves pRect's left edge past the cell's image (if the grid's list knows it) and the
    // margin; always 1.
    virtual BOOL GetTextRect(LPRECT pRect);
    virtual BOOL GetTipTextRect(LPRECT pRect) { return GetTextRect(pRect); }
    // Size of the text in the cell's font and format plus twice the margin each way (turned
    // for a font at 900 or -900 tenths of a degree); the default cell's size without a text or
    // a context. pDC null: a context of the grid's window, released again.
    virtual CSize GetTextExtent(LPCTSTR szText, CDC* pDC = nullptr);
    // What the cell needs: text and image, plus one pixel (two for fixed cells).
    virtual CSize GetCellExtent(CDC* pDC);

    // Editing: the base cell has no editor.
    virtual BOOL Edit(int nRow, int nCol, CRect rect, CPoint point, UINT nID, UINT nChar) { return FALSE; }
    virtual BOOL ValidateEdit(LPCTSTR str) { return TRUE; }
    virtual void EndEdit() {}
    virtual void OnEndEdit() {}

    // Pointer notices; points are relative to the cell's top left corner.
    virtual void OnMouseEnter() {}
    virtual void OnMouseOver() {}
    virtual void OnMouseLeave() {}
    virtual void OnClick(CPoint pointCellRelative) {}
    virtual void OnClickDown(CPoint pointCellRelative) {}
    virtual void OnRClick(CPoint pointCellRelative) {}
    virtual void OnDblClick(CPoint pointCellRelative) {}
    // Sets the arrow pointer; 1.
    virtual BOOL OnSetCursor();

protected:
    DWORD m_nState = 0;
};
