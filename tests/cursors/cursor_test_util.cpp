#include "cursor_test_util.h"

#include "foundation/ArchiveVersionControl.h"

IMPLEMENT_DYNAMIC(ProbeCursor, CBaseCursor)

namespace curtest {

namespace {

CBaseCursor* MakeProbe(CImageView* view, const CursorRequest& r)
{
    auto* p = new ProbeCursor;
    p->seenCallback = CBaseCursor::m_pCursorCallback;
    p->seenData = CBaseCursor::m_pCursorCallbackData;
    p->CreateAt(view, r.rect);
    return p;
}

}  // namespace

ProbeKind::ProbeKind() { RegisterCursorKind({ProbeCursor::kType, "ProbeCursor", MakeProbe, nullptr}); }

void CursorScene::SetUp()
{
    orlex::test::Init();
    ArchiveVersionControl::SetRealTime(false);
    ArchiveVersionControl::SetNoVersioning(false);
    CImageView::m_bTempCurMode = 0;
    CImageView::m_bDelCursorsOnPanZoom = 1;
    CBaseCursor::m_bCursorTracking = false;
    orlex::ModalScript::Reset();
    ASSERT_TRUE(host.CreateHost(700, 560));
    table = ivtest::TestTable();
}

void CursorScene::TearDown()
{
    CImageView::m_bPanTracking = 0;
    CImageView::m_bTempCurMode = 0;
    CBaseCursor::m_bCursorTracking = false;
    ArchiveVersionControl::SetRealTime(false);
    delete view;
    view = nullptr;
    if (frame.GetSafeHwnd()) frame.DestroyWindow();
    host.DestroyWindow();
    orlex::ModalScript::Reset();
}

void CursorScene::Show(int size, int client, bool framed, bool realTime)
{
    view = new CImageView(realTime);
    CWnd* parent = &host;
    if (framed) {
        ASSERT_TRUE(frame.CreateFrame(&host, CRect(10, 10, 20 + client, 20 + client)));
        frame.view = view;
        parent = &frame;
    }
    const CRect at = framed ? CRect(0, 0, client, client) : CRect(10, 10, 10 + client, 10 + client);
    ASSERT_TRUE(view->Create(nullptr, "view", WS_CHILD | WS_VISIBLE, at, parent, 100));
    data.assign(static_cast<size_t>(size) * size, 0);
    for (size_t i = 0; i < data.size(); ++i) data[i] = static_cast<int>((i * 7) % 251) * 1000;
    DPOINT scan;
    scan.x = 1e-6;
    scan.y = 1e-6;
    view->DrawImage(data.data(), size, size, scan, table.data(), 1.0, 0, 251000, {});
    view->SetMode(kCursorCross);
    view->SetCursorColor(RGB(255, 0, 255));
    Settle();
}

void CursorScene::Settle()
{
    orlex::test::Pump();
    host.Clear();
    frame.Clear();
}

std::vector<CBaseCursor*> CursorScene::Cursors()
{
    std::vector<CBaseCursor*> out;
    for (POSITION p = view->GetCursorHeadPosition(); p;) out.push_back(view->GetCursorNextPosition(p, -1));
    return out;
}

std::vector<CPoint> Changed(const std::vector<COLORREF>& before, const std::vector<COLORREF>& after, const CRect& r)
{
    std::vector<CPoint> out;
    for (size_t i = 0; i < before.size() && i < after.size(); ++i)
        if (before[i] != after[i])
            out.emplace_back(r.left + int(i % r.Width()), r.top + int(i / r.Width()));
    return out;
}

}  // namespace curtest
