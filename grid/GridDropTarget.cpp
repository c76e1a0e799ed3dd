#include "grid/GridDropTarget.h"

#include "grid/GridCtrl.h"

BOOL CGridDropTarget::Register(CGridCtrl* pGridCtrl)
{
    static BOOL bInProcedure = FALSE;
    if (m_bRegistered || bInProcedure || !pGridCtrl || !pGridCtrl->IsKindOf(RUNTIME_CLASS(CGridCtrl)))
        return FALSE;
    bInProcedure = TRUE;
    m_pGridCtrl = pGridCtrl;
    m_bRegistered = COleDropTarget::Register(pGridCtrl);
    bInProcedure = FALSE;
    return m_bRegistered;
}

void CGridDropTarget::Revoke()
{
    m_bRegistered = FALSE;
    COleDropTarget::Revoke();
}

bool CGridDropTarget::IsGrids(CWnd* pWnd) const
{
    const HWND mine = m_pGridCtrl ? m_pGridCtrl->GetSafeHwnd() : nullptr;
    return (pWnd ? pWnd->GetSafeHwnd() : nullptr) == mine;
}

DROPEFFECT CGridDropTarget::OnDragScroll(CWnd* pWnd, DWORD dwKeyState, CPoint)
{
    if (!IsGrids(pWnd))
        return DROPEFFECT_NONE;
    return (dwKeyState & MK_CONTROL) ? DROPEFFECT_COPY : DROPEFFECT_MOVE;
}

DROPEFFECT CGridDropTarget::OnDragEnter(CWnd* pWnd, COleDataObject* pDataObject, DWORD dwKeyState, CPoint point)
{
    if (!IsGrids(pWnd) || !m_pGridCtrl)
        return DROPEFFECT_NONE;
    return m_pGridCtrl->OnDragEnter(pDataObject, dwKeyState, point);
}

DROPEFFECT CGridDropTarget::OnDragOver(CWnd* pWnd, COleDataObject* pDataObject, DWORD dwKeyState, CPoint point)
{
    if (!IsGrids(pWnd) || !m_pGridCtrl)
        return DROPEFFECT_NONE;
    return m_pGridCtrl->OnDragOver(pDataObject, dwKeyState, point);
}

BOOL CGridDropTarget::OnDrop(CWnd* pWnd, COleDataObject* pDataObject, DROPEFFECT dropEffect, CPoint point)
{
    if (!IsGrids(pWnd) || !m_pGridCtrl)
        return FALSE;
    return m_pGridCtrl->OnDrop(pDataObject, dropEffect, point);
}

void CGridDropTarget::OnDragLeave(CWnd* pWnd)
{
    if (IsGrids(pWnd) && m_pGridCtrl)
        m_pGridCtrl->OnDragLeave();
}
