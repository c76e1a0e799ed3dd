// A default cell: the values that the cells of one kind of position (normal, fixed row,
// fixed column, fixed corner) take while their own are unset, and the default row height
// and column width. Each grid holds four as members.
#pragma once

#include "foundation/platform/afxgdi.h"
#include "grid/GridCell.h"

class CGridDefaultCell : public CGridCell {
    DECLARE_DYNAMIC(CGridDefaultCell)
public:
    // Format 0x8824 (end ellipsis, no prefix, single line, centred vertically), the system's
    // message font, and the margin and size that font gives.
    CGridDefaultCell();
    ~CGridDefaultCell() override;

    // Kept and handed back; nothing gives it a meaning.
    virtual DWORD GetStyle() const { return m_dwStyle; }
    virtual void SetStyle(DWORD dwStyle) { m_dwStyle = dwStyle; }
    virtual int GetWidth() const { return m_Size.cx; }
    virtual int GetHeight() const { return m_Size.cy; }
    virtual void SetWidth(int nWidth) { m_Size.cx = nWidth; }
    virtual void SetHeight(int nHeight) { m_Size.cy = nHeight; }

    // The own font, with no further fallback.
    LOGFONT* GetFont() const override { return m_plfFont; }
    CFont* GetFontObject() const override;
    // Null is ignored. Otherwise remakes m_Font and measures on the screen: margin = width of
    // " ", size = extent of " XXXXXXXXXXXX " with the height * 3 / 2 (3 and 40 x 16 when no
    // screen context can be had).
    void SetFont(const LOGFONT* plf) override;

    CSize m_Size{30, 10};
    CFont m_Font;
    DWORD m_dwStyle = 0;
};
