// Modal loops and scripted modal answers; frame scroll bars driven by the pointer.
#include <gtest/gtest.h>

#include <QImage>

#include <cstdio>
#include <vector>

#include "foundation/platform/afxwin.h"
#include "support/orlex_test.h"

namespace {

class Popup : public CWnd {
public:
    std::vector<UINT> scrolls;
    void OnVScroll(UINT code, UINT pos, CScrollBar*) override { scrolls.push_back(code | (pos << 16)); }
    void OnTimer(UINT_PTR) override { ++ticks; }
    int ticks = 0;
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Popup, CWnd)
    ON_WM_VSCROLL()
    ON_WM_TIMER()
END_MESSAGE_MAP()

class Modal : public ::testing::Test {
protected:
    void SetUp() override {
        orlex::test::Init();
        ASSERT_TRUE(w.CreateEx(0, nullptr, "modal", WS_POPUP | WS_VISIBLE | WS_BORDER | WS_VSCROLL,
                               CRect(100, 100, 300, 300), nullptr, 0));
        orlex::test::Pump();
    }
    void TearDown() override { orlex::SetModalLoopHook({}); }
    Popup w;
};

TEST_F(Modal, HookActsInsideTheLoopAndEndsIt) {
    std::vector<int> seen;
    orlex::SetModalLoopHook([&](CWnd* loop) {
        // Messages posted from inside the loop are handled by it before it returns.
        loop->SetTimer(5, 100, nullptr);
        orlex::test::AdvanceClock(250);
        seen.push_back(static_cast<Popup*>(loop)->ticks);
        loop->EndModalLoop(IDOK);
    });
    EXPECT_EQ(w.RunModalLoop(), IDOK);
    EXPECT_EQ(seen, std::vector<int>{2});
    EXPECT_FALSE(w.ContinueModal());
}

TEST_F(Modal, HeadlessLoopWithNobodyToAnswerEndsCancelled) {
    EXPECT_EQ(w.RunModalLoop(), IDCANCEL);
}

TEST_F(Modal, ScriptedMessageBoxAnswersAndIsLogged) {
    orlex::test::ScriptAnswer("MessageBox", IDNO);
    EXPECT_EQ(AfxMessageBox("Data exceeds -100dB.", MB_YESNO | MB_ICONWARNING), IDNO);
    ASSERT_EQ(orlex::test::ModalLog().size(), 1u);
    EXPECT_EQ(orlex::test::ModalLog()[0].text, "Data exceeds -100dB.");
    EXPECT_EQ(orlex::test::ModalLog()[0].answer, IDNO);
}

TEST_F(Modal, ScrollBarArrowsTrackAndThumbDrag) {
    SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE | SIF_POS, 0, 99, 10, 0, 0};
    ::SetScrollInfo(w.m_hWnd, SB_VERT, &si, TRUE);
    CRect wr, cr;
    w.GetWindowRect(&wr);
    w.GetClientRect(&cr);
    // The bar is right of the client area: arrows 17 pixels at each end.
    const int x = 1 + cr.right + 8;
    auto pressAt = [&](int y) {
        POINT client{x - 1, y - 1};  // window coordinates to client (1-pixel border)
        orlex::test::Click(w.m_hWnd, client);
    };
    pressAt(1 + 5);                 // up arrow
    pressAt(wr.Height() - 1 - 5);   // down arrow
    pressAt(wr.Height() - 40);      // track below the thumb
    const std::vector<UINT> want = {SB_LINEUP, SB_ENDSCROLL, SB_LINEDOWN, SB_ENDSCROLL, SB_PAGEDOWN, SB_ENDSCROLL};
    EXPECT_EQ(w.scrolls, want);
    w.scrolls.clear();
    // Dragging the thumb (at the top, position 0) to the bottom end gives the last position.
    orlex::test::Drag(w.m_hWnd, POINT{x - 1, 17 + 2}, POINT{x - 1, wr.Height()}, 3);
    ASSERT_GE(w.scrolls.size(), 3u);
    EXPECT_EQ(w.scrolls[w.scrolls.size() - 2], SB_THUMBPOSITION | (90u << 16));
    EXPECT_EQ(w.scrolls.back(), SB_ENDSCROLL);
    EXPECT_EQ(LOWORD(w.scrolls[0]), SB_THUMBTRACK);
}

TEST_F(Modal, ScreenshotOfAWindowIsItsPixels) {
    const std::string path = ::testing::TempDir() + "wnd_shot.png";
    ASSERT_TRUE(orlex::test::SaveScreenshot(w.m_hWnd, path));
    QImage img(QString::fromStdString(path));
    ASSERT_FALSE(img.isNull());
    EXPECT_EQ(img.size(), QSize(200, 200));
    COLORREF c = orlex::test::Pixel(w.m_hWnd, POINT{3, 3});
    QRgb p = img.pixel(1 + 3, 1 + 3);  // behind the one-pixel border
    EXPECT_EQ(RGB(qRed(p), qGreen(p), qBlue(p)), c);
    std::remove(path.c_str());
}

}  // namespace
