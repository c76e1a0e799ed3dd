// A host's window onto an image view's events: derive, override what to watch, and
// Register on a view. The view calls the notifier before it acts; a mouse operation that
// returns non-zero has handled the event and the view skips its own action (the default
// handling of the message still runs).
#pragma once

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"

class CImageView;

class CImageViewEventNotifier {
public:
    CImageViewEventNotifier() = default;
    // Unregisters from its view if it is still the view's notifier.
    virtual ~CImageViewEventNotifier();
    CImageViewEventNotifier(const CImageViewEventNotifier&) = delete;
    CImageViewEventNotifier& operator=(const CImageViewEventNotifier&) = delete;

    // 1 after registering on `view`; 0 when replaced, removed, or the view goes.
    virtual void OnRegister(CImageView* view, int registered) {}
    // First thing in the view's OnDestroy and OnSize.
    virtual void OnDestroy() {}
    virtual void OnSize(UINT type, int cx, int cy) {}
    // Around the view's paint; rect is the part painted, in client pixels.
    virtual void OnBeginPaint(const RECT* rect, CPaintDC* dc) {}
    virtual void OnEndPaint(const RECT* rect, CPaintDC* dc) {}
    // Mouse events at view client points; non-zero: handled.
    virtual int OnMouseMove(UINT flags, CPoint point) { return 0; }
    virtual int OnLButtonDown(UINT flags, CPoint point) { return 0; }
    virtual int OnLButtonUp(UINT flags, CPoint point) { return 0; }
    virtual int OnRButtonDown(UINT flags, CPoint point) { return 0; }
    virtual int OnRButtonUp(UINT flags, CPoint point) { return 0; }

    // Registers on the view (replacing its notifier); 0 for null, else 1.
    int Register(CImageView* view);

    // The view registered on, null when none (cleared when the view goes or replaces it).
    CImageView* m_pView = nullptr;
};
