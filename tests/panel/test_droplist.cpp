// The drop list opened by its host and chosen from with the mouse.
#include "panel/OrlexDropMenu.h"
#include "panel_test_util.h"

namespace {

using namespace panel_test;
using namespace orlex::test;
using faces::kListSize;

class DropList : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        ASSERT_TRUE(list.Create(30, 40, &host));
        list.LoadBitmap(kListSize.id);
        list.SetMenuSize(&host, 0, 0);
        for (UINT v : {10u, 20u, 30u, 40u}) list.AddOption(CString(std::to_string(v).c_str()), v);
        list.LoadCtrlMessages(&log, "l1", "", "");
        Pump();
    }
    COrlexDropMenu list;
};

TEST_F(DropList, ChoosingARowClosesTheListAndLeavesNoCapture) {
    EXPECT_FALSE(list.IsWindowVisible());
    list.Popup();
    Pump();
    EXPECT_TRUE(list.IsWindowVisible());
    EXPECT_EQ(::GetCapture(), list.m_hWnd);
    EXPECT_EQ(host.GetWindow(GW_CHILD)->GetWindow(GW_HWNDLAST), &list);  // below its siblings
    // The band follows the pointer by rows of 15 pixels, the first one short.
    for (const auto& [y, row] : {std::pair{13, 0}, {14, 1}, {29, 2}, {50, 3}}) {
        MouseMove(list.m_hWnd, POINT{40, y});
        EXPECT_EQ(list.m_nHoverIndex, UINT(row)) << y;
        EXPECT_EQ(At(list, 90, row * 15 + 8), kOrlexListColour) << y;
    }
    EXPECT_EQ(At(list, 90, 8), RGB(255, 255, 255));
    EXPECT_EQ(At(list, 0, 8), kOrlexListColour);  // the frame
    const auto text = [&](int row, COLORREF c) {  // the option's text drawn in c
        const auto px = Pixels(list.m_hWnd, RECT{2, 2 + 15 * row, 30, 14 + 15 * row});
        return std::count(px.begin(), px.end(), c);
    };
    EXPECT_GT(text(0, kOrlexListColour), 5);
    EXPECT_GT(text(3, RGB(255, 255, 255)), 5);
    list.SetValue(10);
    MouseDown(list.m_hWnd, POINT{40, 32});
    MouseUp(list.m_hWnd, POINT{40, 32});
    EXPECT_EQ(list.GetValue(), 30u);
    EXPECT_EQ(list.GetLastValue(), 10u);
    EXPECT_FALSE(list.IsWindowVisible());
    EXPECT_EQ(::GetCapture(), nullptr);
    EXPECT_EQ(log.Take(), (Texts{"OrlexHelp", "l1"}));
}

TEST_F(DropList, MovingOutClosesSilentlyAndRowsPastTheOptionsChooseNothing) {
    list.Popup();
    MouseMove(list.m_hWnd, POINT{40, 5});
    MouseMove(list.m_hWnd, POINT{200, 5});
    EXPECT_FALSE(list.IsWindowVisible());
    EXPECT_EQ(log.Take(), Texts{"OrlexHelp"});
    // Row 4 of four options, and y at the height (counted inside): nothing chosen, m1 still.
    for (int y : {kListSize.height - 2, kListSize.height}) {
        list.Popup();
        Later();
        MouseDown(list.m_hWnd, POINT{40, y});
        MouseUp(list.m_hWnd, POINT{40, y});
        EXPECT_EQ(list.m_nValueIndex, 0u);
        EXPECT_EQ(list.m_nLastValueIndex, 0u);
    }
    EXPECT_EQ(log.Take(), (Texts{"OrlexHelp", "l1", "OrlexHelp", "l1"}));
}

TEST_F(DropList, ValuesAndItsTable) {
    list.AddOption("again", 20);
    list.SetValue(20);
    EXPECT_EQ(list.m_nValueIndex, 4u);  // the last match wins
    list.SetValue(99);
    EXPECT_EQ(list.m_nValueIndex, 4u);
    for (UINT v = 0; v < 8; ++v) list.AddOption("more", 100 + v);
    EXPECT_EQ(list.m_nOptionTotal, kOrlexListOptions);
    EXPECT_EQ(list.m_nValues[9], 104u);
    COrlexDropMenu empty;
    empty.SetValue(0);
    EXPECT_EQ(empty.GetValue(), 0u);
    EXPECT_EQ(empty.GetLastValue(), 0u);
}

}  // namespace
