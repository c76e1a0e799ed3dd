// COrlexDropMenu: a small list of up to ten text options that a host opens with Popup. The
// row under the pointer is marked; a release on a row chooses it, closes the list and
// hands the mouse back to the owner; moving out closes it without a choice. m1 goes out on
// every release, also one off the list. The window starts hidden; its size comes from the
// bitmap given to LoadBitmap (never drawn), set by SetMenuSize.
#pragma once

#include "foundation/platform/afxgdi.h"
#include "panel/Orlex.h"

// The list's colour: frame, marked row and texts.
constexpr COLORREF kOrlexListColour = 0x8B5229;
// Options a list holds.
constexpr UINT kOrlexListOptions = 10;

class COrlexDropMenu : public COrlex {
    DECLARE_DYNAMIC(COrlexDropMenu)
public:
    COrlexDropMenu();
    ~COrlexDropMenu() override;

    // Adds an option at the end; refused (silently) past the tenth.
    void AddOption(CString strText, UINT nValue);
    // Chooses the option with this value (the last one that has it); a value in no option
    // changes nothing.
    void SetValue(UINT nValue);
    // The chosen option's value, and the one chosen before the last choice; 0 with no
    // options.
    UINT GetValue();
    UINT GetLastValue();
    // The window that gets the mouse back when a choice closes the list (not owned), and
    // the list's size from LoadBitmap's bitmap; the two numbers are not read.
    void SetMenuSize(CWnd* pOwner, UINT nWidth, UINT nHeight);
    // Opens the list where it was placed, below its overlapping siblings, with the mouse.
    void Popup();

    CWnd* m_pOwnerCtrl = nullptr;
    CFont m_Font;
    UINT m_nValues[kOrlexListOptions] = {};
    CString m_strOptions[kOrlexListOptions];
    UINT m_nOptionTotal = 0;
    UINT m_nValueIndex = 0;
    UINT m_nHoverIndex = 0;
    UINT m_nLastValueIndex = 0;

protected:
    afx_msg void OnPaint() override;
    afx_msg void OnMouseMove(UINT nFlags, CPoint point) override;
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point) override;
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) override;
    UINT ValueAt(UINT index) const { return index < m_nOptionTotal ? m_nValues[index] : 0; }
    DECLARE_MESSAGE_MAP()
};
