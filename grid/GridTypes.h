// The small value types of the spreadsheet grid: a cell's address (CCellID), a block of
// cells (CCellRange), the record of one cell (GV_ITEM) and the records that go to the
// grid's owner with WM_NOTIFY, with the state bits, mask bits and codes they carry.
#pragma once

#include <algorithm>

#include "foundation/platform/afxcmn.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"

class CGridCtrl;
class CGridCellBase;

// A cell's address; (-1, -1) means no cell.
class CCellID {
public:
    int row;
    int col;

    explicit CCellID(int nRow = -1, int nCol = -1) : row(nRow), col(nCol) {}
    // Both parts non-negative (whether the grid has the cell is CGridCtrl::IsValid's).
    int IsValid() const { return row >= 0 && col >= 0; }
    int operator==(const CCellID& other) const { return row == other.row && col == other.col; }
    int operator!=(const CCellID& other) const { return !(*this == other); }
};

// A block of cells, both ends inclusive.
class CCellRange {
public:
    int m_nMinRow;
    int m_nMinCol;
    int m_nMaxRow;
    int m_nMaxCol;

    explicit CCellRange(int nMinRow = -1, int nMinCol = -1, int nMaxRow = -1, int nMaxCol = -1)
        : m_nMinRow(nMinRow), m_nMinCol(nMinCol), m_nMaxRow(nMaxRow), m_nMaxCol(nMaxCol) {}

    void Set(int nMinRow = -1, int nMinCol = -1, int nMaxRow = -1, int nMaxCol = -1)
    {
        m_nMinRow = nMinRow;
        m_nMinCol = nMinCol;
        m_nMaxRow = nMaxRow;
        m_nMaxCol = nMaxCol;
    }
    // All four non-negative and min <= max on both axes (the counts are the grid's test).
    int IsValid() const
    {
        return m_nMinRow >= 0 && m_nMinCol >= 0 && m_nMaxRow >= 0 && m_nMaxCol >= 0 && m_nMinRow <= m_nMaxRow &&
               m_nMinCol <= m_nMaxCol;
    }
    int InRange(int row, int col) const
    {
        return row >= m_nMinRow && row <= m_nMaxRow && col >= m_nMinCol && col <= m_nMaxCol;
    }
    int InRange(const CCellID& cell) const { return InRange(cell.row, cell.col); }
    int Count() const { return (m_nMaxRow - m_nMinRow + 1) * (m_nMaxCol - m_nMinCol + 1); }
    CCellID GetTopLeft() const { return CCellID(m_nMinRow, m_nMinCol); }
    // The common part of both ranges (not valid when they do not meet).
    CCellRange Intersect(const CCellRange& rhs) const
    {
        return CCellRange(std::max(m_nMinRow, rhs.m_nMinRow), std::max(m_nMinCol, rhs.m_nMinCol),
                          std::min(m_nMaxRow, rhs.m_nMaxRow), std::min(m_nMaxCol, rhs.m_nMaxCol));
    }
    int GetMinRow() const { return m_nMinRow; }
    int GetMinCol() const { return m_nMinCol; }
    int GetMaxRow() const { return m_nMaxRow; }
    int GetMaxCol() const { return m_nMaxCol; }
    int GetRowSpan() const { return m_nMaxRow - m_nMinRow + 1; }
    int GetColSpan() const { return m_nMaxCol - m_nMinCol + 1; }
    int operator==(const CCellRange& o) const
    {
        return m_nMinRow == o.m_nMinRow && m_nMinCol == o.m_nMinCol && m_nMaxRow == o.m_nMaxRow &&
               m_nMaxCol == o.m_nMaxCol;
    }
    int operator!=(const CCellRange& o) const { return !(*this == o); }
};

// State bits of a cell (CGridCellBase::m_nState).
constexpr DWORD GVIS_FOCUSED = 0x01;
constexpr DWORD GVIS_SELECTED = 0x02;
constexpr DWORD GVIS_DROPHILITED = 0x04;
constexpr DWORD GVIS_READONLY = 0x08;
constexpr DWORD GVIS_FIXED = 0x10;
constexpr DWORD GVIS_FIXEDROW = 0x20;
constexpr DWORD GVIS_FIXEDCOL = 0x40;
constexpr DWORD GVIS_MODIFIED = 0x80;

// Which fields of a GV_ITEM count.
constexpr UINT GVIF_TEXT = 0x001;
constexpr UINT GVIF_IMAGE = 0x002;
constexpr UINT GVIF_PARAM = 0x004;
constexpr UINT GVIF_STATE = 0x008;
constexpr UINT GVIF_BKCLR = 0x010;
constexpr UINT GVIF_FGCLR = 0x020;
constexpr UINT GVIF_FORMAT = 0x040;
constexpr UINT GVIF_FONT = 0x080;
constexpr UINT GVIF_MARGIN = 0x100;
constexpr UINT GVIF_ALL = 0x1FF;

// The record of one cell for GetItem, SetItem and display requests.
struct _GV_ITEM {
    int row = 0;
    int col = 0;
    UINT mask = 0;
    UINT nState = 0;
    DWORD nFormat = 0;
    int iImage = -1;
    COLORREF crBkClr = CLR_DEFAULT;
    COLORREF crFgClr = CLR_DEFAULT;
    LPARAM lParam = 0;
    LOGFONT lfFont{};
    UINT nMargin = 0;
    CString strText;
};
using GV_ITEM = _GV_ITEM;

// A display request of a virtual grid (code GVN_GETDISPINFO) and an edit's end (GVN_ENDLABELEDIT
// from the editors).
struct tagGV_DISPINFO {
    NMHDR hdr;
    GV_ITEM item;
};
using GV_DISPINFO = tagGV_DISPINFO;

// The range of cells a virtual grid is about to ask for (GVN_ODCACHEHINT); (-1, -1, -1, -1)
// when it is done.
struct tagGV_CACHEHINT {
    NMHDR hdr;
    CCellRange range;
};
using GV_CACHEHINT = tagGV_CACHEHINT;

// The ordinary notice: which cell.
struct tagNM_GRIDVIEW {
    NMHDR hdr;
    int iRow;
    int iColumn;
};
using NM_GRIDVIEW = tagNM_GRIDVIEW;

// Notice codes (NMHDR::code) besides NM_CLICK, NM_DBLCLK and NM_RCLICK.
constexpr UINT GVN_SELCHANGING = UINT(-100);
constexpr UINT GVN_SELCHANGED = UINT(-101);
constexpr UINT GVN_BEGINLABELEDIT = UINT(-105);
constexpr UINT GVN_ENDLABELEDIT = UINT(-106);
constexpr UINT GVN_BEGINDRAG = UINT(-109);
constexpr UINT GVN_ODCACHEHINT = UINT(-113);
constexpr UINT GVN_GETDISPINFO = UINT(-150);

// Grid lines.
constexpr int GVL_NONE = 0;
constexpr int GVL_HORZ = 1;
constexpr int GVL_VERT = 2;
constexpr int GVL_BOTH = 3;

// Automatic sizing: which rows are measured.
constexpr UINT GVS_DEFAULT = 0;
constexpr UINT GVS_HEADER = 1;
constexpr UINT GVS_DATA = 2;
constexpr UINT GVS_BOTH = 3;

// GetNextItem: what is looked for, and where.
constexpr int GVNI_FOCUSED = 0x0001;
constexpr int GVNI_SELECTED = 0x0002;
constexpr int GVNI_DROPHILITED = 0x0004;
constexpr int GVNI_READONLY = 0x0008;
constexpr int GVNI_FIXED = 0x0010;
constexpr int GVNI_MODIFIED = 0x0020;
constexpr int GVNI_ABOVE = 0x0100;
constexpr int GVNI_BELOW = 0x0200;
constexpr int GVNI_TOLEFT = 0x0400;
constexpr int GVNI_TORIGHT = 0x0800;
constexpr int GVNI_ALL = GVNI_BELOW | GVNI_TORIGHT | GVNI_TOLEFT;
constexpr int GVNI_AREA = GVNI_BELOW | GVNI_TORIGHT;

// The supplier of a virtual grid's cells: fills the record, answers non-zero when it did.
using GRIDCALLBACK = int (*)(GV_DISPINFO*, LPARAM);
// A sort compare: two CGridCellBase* and the caller's data; <0, 0, >0.
using PFNLVCOMPARE = int (*)(LPARAM, LPARAM, LPARAM);
