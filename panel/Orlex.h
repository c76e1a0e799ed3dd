// COrlex: the panel control base and a bitmap push button as it stands. A small child
// window whose whole face is one of up to three host bitmaps (normal, under the pointer,
// pressed), picked by the state of the mouse; what it has to tell goes out as a text to
// one COrlexMsgCenter: "OrlexHelp" when the pointer enters, m1 on every left release.
//
// The control sees the pointer leave only through the capture it takes when the pointer
// enters: it keeps the capture until the pointer is outside or the button comes up.
#pragma once

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/afxwin.h"
#include "panel/OrlexMsgCenter.h"

// The library's pointing hand, shown over every panel control that keeps the base pointer.
constexpr UINT IDC_ORLEX_HAND = 10050;

class COrlex : public CWnd {
    DECLARE_DYNAMIC(COrlex)
public:
    // Each non-zero id is loaded from the host's resources into its slot; only the normal
    // face shows until LoadRolloverBitmap and LoadClickBitmap are called.
    COrlex(UINT nBitmap, UINT nRolloverBitmap, UINT nClickBitmap);
    // Deletes the bitmaps, then destroys the window if it still exists.
    ~COrlex() override;

    // Makes the window at (x, y) in pParent's client area (style m_dwStyle, id 0), first
    // destroying the one made before; LoadBitmap then sizes it. The result goes into
    // m_bCreated: 0 without a parent.
    virtual int Create(UINT x, UINT y, CWnd* pParent);
    // The same at (0, 0).
    virtual int Create(CWnd* pParent);
    // Moves the window to (x, y) of the parent's client area at its present size and to
    // the top of its siblings.
    virtual void SetSpriteLocation(UINT x, UINT y);
    // The result of the last Create (0 once the window is destroyed).
    virtual int Created();
    // Loads the normal face (id cut to 16 bits, from the host's resources) and sizes the
    // window to it at its present place. Needs the window.
    virtual void LoadBitmap(UINT nId);
    // Load the face under the pointer or while pressed; a failed load leaves the face of
    // the rank below showing. Size and place are not touched.
    virtual void LoadRolloverBitmap(UINT nId);
    virtual void LoadClickBitmap(UINT nId);
    // Keeps the caller's tables (they must outlive the control; nothing is copied). The
    // count is that of ppOptions' entries before its first null one; null counts 0.
    virtual void LoadCtrlOptions(char** const ppLabels, char** const ppOptions);
    // Selects the first option equal to the text (case-sensitive, whole) and repaints with
    // erase; a text in no entry changes nothing.
    virtual void SetCtrlOption(CString strOption);
    // Selects option nIndex, unchecked, and repaints with erase.
    virtual void SetCtrlOption(UINT nIndex);
    virtual UINT GetCtrlOptionIndex();
    // The selected option's text; "" when the index is past the table.
    virtual CString GetCtrlOption();
    // The receiver (not owned; null silences the control) and the three texts: m1 goes out
    // on release, m2 is the sliders' release text, m3 is kept for the host.
    virtual void LoadCtrlMessages(COrlexMsgCenter* pCenter, CString strMessage1, CString strMessage2,
                                  CString strMessage3);
    // Texts kept for the control's owner; the library sends neither.
    virtual void LoadHelpMessages(CString strHelp1, CString strHelp2);
    // 1 when a client point is within 0..width and 0..height of the window, both bounds
    // included.
    virtual int HitTest(CPoint point);

    BOOL Create(LPCSTR className, LPCSTR windowName, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                void* context = nullptr) override;
    // Clears m_bCreated and destroys the window.
    BOOL DestroyWindow() override;

    BOOL m_bMouseCaptured = 0;
    bool m_bRollover = false;
    bool m_bClicked = false;
    BOOL m_bCreated = 0;
    BOOL m_bHasRollover = 0;
    BOOL m_bHasClick = 0;
    BITMAP m_BitmapInfo{};
    CBitmap m_NormalBitmap;
    CBitmap m_RolloverBitmap;
    CBitmap m_ClickBitmap;
    UINT m_nOption = 0;
    UINT m_nOptionCount = 0;
    char* const* m_ppOptionLabels;
    char* const* m_ppOptions;
    COrlexMsgCenter* m_pMsgCenter = nullptr;
    CString m_strMessage1;
    CString m_strMessage2;
    CString m_strMessage3;
    CString m_strHelp1;
    CString m_strHelp2;
    DWORD m_dwStyle = WS_CHILD | WS_VISIBLE;

    // The all-null option table a control starts with.
    static char* const s_emptyOptions[1];

protected:
    afx_msg void OnMouseMove(UINT nFlags, CPoint point) override;
    afx_msg void OnPaint() override;
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point) override;
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point) override;
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) override;

    // Gives the text to the receiver, if there is one.
    void Send(const CString& text);
    // Invalidates 0, 0, bmWidth, bmHeight without erase: what a state change repaints.
    void InvalidateFace();
    // Deletes what the slot holds and attaches bitmap nId of the host's resources; the
    // result of the attach.
    static BOOL LoadFace(CBitmap& slot, UINT nId);
    // The same, and the loaded face's size into info (zeros when nothing loaded).
    static void LoadFace(CBitmap& slot, UINT nId, BITMAP& info);
    // Gives the window this size at the left and top of its normal placement.
    void SizeInPlace(int width, int height);
    // Copies `face` to (x, y) of dc at w x h through mem; nothing for an empty face.
    static void DrawFace(CDC& dc, CDC& mem, CBitmap& face, int x, int y, int w, int h);
    // Pointer `id` through the application that runs (AfxGetModuleState's
    // m_pCurrentWinApp), so that a host's own pointer of that id wins over the library's;
    // without an application object the same lookup.
    static HCURSOR AppCursor(UINT id);
    // A standard pointer (IDC_ARROW, ...) through the application that runs.
    static HCURSOR AppStandardCursor(LPCSTR id);

    DECLARE_MESSAGE_MAP()
};
