// The ordinary cell of the grid: text, image, data, format, colours, font and margin, each
// unset (0xFFFFFFFF, CLR_DEFAULT, null) until given, so that the default cell of its position
// speaks for it.
#pragma once

#include "foundation/platform/afxstr.h"
#include "grid/GridCellBase.h"

class CGridCell : public CGridCellBase {
    DECLARE_DYNCREATE(CGridCell)
public:
    CGridCell() = default;
    ~CGridCell() override;
    CGridCell(const CGridCell&) = delete;

    void SetText(LPCTSTR szText) override { m_strText = szText; }
    void SetImage(int nImage) override { m_nImage = nImage; }
    void SetData(LPARAM lParam) override { m_lParam = lParam; }
    void SetFormat(DWORD nFormat) override { m_nFormat = nFormat; }
    void SetTextClr(COLORREF clr) override { m_crFgClr = clr; }
    void SetBackClr(COLORREF clr) override { m_crBkClr = clr; }
    void SetFont(const LOGFONT* plf) override;
    void SetMargin(UINT nMargin) override { m_nMargin = nMargin; }
    void SetGrid(CGridCtrl* pGrid) override { m_pGrid = pGrid; }
    // A cell does not know its place in the table.
    void SetCoords(int nRow, int nCol) override {}

    LPCTSTR GetText() const override { return m_strText.GetString(); }
    int GetImage() const override { return m_nImage; }
    LPARAM GetData() const override { return m_lParam; }
    DWORD GetFormat() const override;
    COLORREF GetTextClr() const override { return m_crFgClr; }
    COLORREF GetBackClr() const override { return m_crBkClr; }
    LOGFONT* GetFont() const override;
    CFont* GetFontObject() const override;
    CGridCtrl* GetGrid() const override { return m_pGrid; }
    CWnd* GetEditWnd() const override { return m_pEditWnd; }
    UINT GetMargin() const override;

    BOOL IsDefaultFont() const override { return m_plfFont == nullptr; }
    BOOL IsEditing() const override { return m_bEditing; }

    // Copies through the accessors unless both are the same object.
    void operator=(const CGridCell& cell);
    using CGridCellBase::operator=;
    // Back to a new cell's values; the grid pointer too.
    void Reset() override;

    void OnEndEdit() override
    {
        m_bEditing = FALSE;
        m_pEditWnd = nullptr;
    }

    CString m_strText;
    LPARAM m_lParam = 0;
    int m_nImage = -1;
    DWORD m_nFormat = 0xFFFFFFFF;
    COLORREF m_crFgClr = CLR_DEFAULT;
    COLORREF m_crBkClr = CLR_DEFAULT;
    LOGFONT* m_plfFont = nullptr;  // owned
    UINT m_nMargin = 0xFFFFFFFF;
    BOOL m_bEditing = FALSE;
    CGridCtrl* m_pGrid = nullptr;  // not owned
    CWnd* m_pEditWnd = nullptr;    // not owned: the editor deletes itself
};
