// The grid's part in drag and drop: registered on the grid's window, it hands the drop
// events of that window to the grid's own operations.
#pragma once

#include "foundation/platform/afxole.h"

class CGridCtrl;

class CGridDropTarget : public COleDropTarget {
public:
    CGridDropTarget() = default;
    ~CGridDropTarget() override = default;

    // Registers on the grid's window once; FALSE when registered already, while another
    // registration runs, or for a window that is not a CGridCtrl.
    BOOL Register(CGridCtrl* pGridCtrl);
    void Revoke() override;

    DROPEFFECT OnDragEnter(CWnd* pWnd, COleDataObject* pDataObject, DWORD dwKeyState, CPoint point) override;
    DROPEFFECT OnDragOver(CWnd* pWnd, COleDataObject* pDataObject, DWORD dwKeyState, CPoint point) override;
    BOOL OnDrop(CWnd* pWnd, COleDataObject* pDataObject, DROPEFFECT dropEffect, CPoint point) override;
    void OnDragLeave(CWnd* pWnd) override;
    // Scrolls nothing: the effect of the key state for the grid's window, 0 for another.
    DROPEFFECT OnDragScroll(CWnd* pWnd, DWORD dwKeyState, CPoint point) override;

    CGridCtrl* m_pGridCtrl = nullptr;  // not owned
    BOOL m_bRegistered = FALSE;

private:
    bool IsGrids(CWnd* pWnd) const;
};
