// Edits of several lines driven by keys and messages: line breaks typed with Return, the
// caret moving between lines, line queries in positions that count CR LF as two, scrolling
// to the caret and the selection drawn over several lines.
#include <gtest/gtest.h>

#include <string>

#include "foundation/platform/afxdlgs.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

class EditLines : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        ASSERT_TRUE(host.CreateEx(0, nullptr, "lines", WS_OVERLAPPED | WS_VISIBLE, CRect(100, 100, 500, 400), nullptr, 0));
        ASSERT_TRUE(font.CreatePointFont(100, "Courier New"));
        Pump();
    }
    // A multi-line edit in the test's font, `lines` lines of it high (plus the margin).
    void Make(CEdit& edit, DWORD style, int lines) {
        CClientDC dc(&host);
        CFont* old = dc.SelectObject(&font);
        TEXTMETRIC tm{};
        dc.GetTextMetrics(&tm);
        lineHeight = tm.tmHeight;
        blank = dc.GetTextExtent(" ", 1).cx;
        dc.SelectObject(old);
        ASSERT_TRUE(edit.Create(WS_VISIBLE | ES_MULTILINE | style, CRect(10, 10, 210, 10 + 1 + lines * lineHeight), &host, 30));
        edit.SetFont(&font);
    }
    static std::string Text(CEdit& e) {
        CString t;
        e.GetWindowText(t);
        return std::string(t.GetString());
    }
    CWnd host;
    CFont font;
    int lineHeight = 0, blank = 0;
};

TEST_F(EditLines, ReturnBreaksTheLineAndArrowsWalkTheLines) {
    CEdit edit;
    Make(edit, ES_AUTOVSCROLL | ES_WANTRETURN, 5);
    Click(edit.m_hWnd, POINT{5, 5});
    TypeText("ab");
    Key(VK_RETURN);
    TypeText("xy");
    EXPECT_EQ(Text(edit), "ab\r\nxy");
    int a = -1, b = -1;
    edit.GetSel(a, b);
    EXPECT_EQ(a, 6);
    EXPECT_EQ(b, 6);
    struct Step { int key; int caret; };
    // Up from the end of "xy" lands at the end of "ab" (same widths); Left from a line's
    // start steps over the whole CR LF.
    const Step steps[] = {{VK_UP, 2}, {VK_UP, 2}, {VK_DOWN, 6}, {VK_HOME, 4}, {VK_LEFT, 2}, {VK_RIGHT, 4}, {VK_END, 6}};
    for (const Step& s : steps) {
        Key(s.key);
        edit.GetSel(a, b);
        EXPECT_EQ(b, s.caret) << "key " << s.key;
    }
    // The pointer picks the line by its height: a press at the second line's start, a drag
    // back to the first line's start selects backwards across the break.
    const int line1 = 1 + lineHeight + lineHeight / 2;
    Click(edit.m_hWnd, POINT{1, line1});
    edit.GetSel(a, b);
    EXPECT_EQ(b, 4);
    Drag(edit.m_hWnd, POINT{150, line1}, POINT{1, 1 + lineHeight / 2}, 3);
    EXPECT_EQ(edit.SendMessage(EM_GETSEL), MAKELONG(0, 6));
    // Backspace at a line's start joins the lines.
    Key(VK_DOWN);
    Key(VK_HOME);
    Key(VK_BACK);
    EXPECT_EQ(Text(edit), "abxy");
}

TEST_F(EditLines, LineQueriesCountCrLfAsTwo) {
    CEdit edit;
    Make(edit, ES_AUTOVSCROLL, 5);
    edit.SetWindowText("one\r\n\r\nthree");
    EXPECT_EQ(edit.GetLineCount(), 3);
    struct Case { int line, index, length; };
    const Case lines[] = {{0, 0, 3}, {1, 5, 0}, {2, 7, 5}, {3, -1, 0}};
    for (const Case& c : lines) {
        EXPECT_EQ(edit.LineIndex(c.line), c.index) << c.line;
        if (c.index >= 0) EXPECT_EQ(edit.LineLength(c.index), c.length) << c.line;
    }
    struct Pos { int pos, line; };
    const Pos chars[] = {{0, 0}, {3, 0}, {5, 1}, {7, 2}, {12, 2}};
    for (const Pos& p : chars) EXPECT_EQ(edit.LineFromChar(p.pos), p.line) << p.pos;
    // -1: the selection's start, or the caret.
    edit.SetSel(8, 2);
    EXPECT_EQ(edit.LineFromChar(-1), 0);
    EXPECT_EQ(edit.LineIndex(-1), 0);   // the caret (at 2) is on the first line
    EXPECT_EQ(edit.LineLength(-1), 2 + 4);  // "on" before, "ree" after, on the touched lines
    edit.SetSel(9, 9);
    EXPECT_EQ(edit.LineIndex(-1), 7);
    EXPECT_EQ(edit.SendMessage(EM_GETSEL), MAKELONG(9, 9));
}

TEST_F(EditLines, ScrollCaretBringsTheCaretsLineIntoView) {
    CEdit edit;
    Make(edit, ES_AUTOVSCROLL | ES_WANTRETURN, 3);
    edit.SetFocus();
    for (const char* line : {"1", "2", "3", "4", "5"}) {
        TypeText(line);
        if (line[0] != '5') Key(VK_RETURN);
    }
    EXPECT_EQ(edit.GetFirstVisibleLine(), 2);  // the caret's line 4 is the last of three shown
    edit.SendMessage(EM_SETSEL, 0, 0);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 2);  // selecting alone doesn't scroll
    edit.SendMessage(EM_SCROLLCARET);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 0);
    Key(VK_NEXT);  // a page down is three lines
    int a = -1, b = -1;
    edit.GetSel(a, b);
    EXPECT_EQ(edit.LineFromChar(b), 3);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 1);
    edit.LineScroll(-5);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 0);
}

TEST_F(EditLines, DialogGetsReturnUnlessTheEditWantsIt) {
    struct Case { DWORD style; WPARAM key; bool wantsAll; };
    const Case cases[] = {
        {ES_MULTILINE, VK_RETURN, false},        {ES_MULTILINE | ES_WANTRETURN, VK_RETURN, true},
        {ES_MULTILINE | ES_WANTRETURN, VK_ESCAPE, false}, {ES_MULTILINE, 'A', true},
        {ES_MULTILINE, VK_TAB, true},            {0, VK_RETURN, false},
    };
    for (const Case& c : cases) {
        CEdit edit;
        ASSERT_TRUE(edit.Create(WS_VISIBLE | c.style, CRect(10, 10, 110, 60), &host, 31));
        MSG m{edit.m_hWnd, WM_KEYDOWN, c.key, 0, 0, {}};
        const LRESULT code = edit.SendMessage(WM_GETDLGCODE, c.key, reinterpret_cast<LPARAM>(&m));
        EXPECT_EQ((code & DLGC_WANTALLKEYS) != 0, c.wantsAll) << std::hex << c.style << " key " << c.key;
        // Outside a dialog Return breaks the line of any multi-line edit.
        edit.SendMessage(WM_CHAR, VK_RETURN);
        EXPECT_EQ(Text(edit), (c.style & ES_MULTILINE) ? "\r\n" : "") << std::hex << c.style;
        edit.DestroyWindow();
    }
}

TEST_F(EditLines, WithoutSidewaysScrollLinesWrapAtTheEdge) {
    CEdit wrapping, scrolling;
    Make(wrapping, ES_AUTOVSCROLL, 5);
    Make(scrolling, ES_AUTOVSCROLL | ES_AUTOHSCROLL, 5);
    // Words of a width the client area holds four of, but not five.
    CClientDC dc(&host);
    CFont* old = dc.SelectObject(&font);
    const int word = dc.GetTextExtent("word ", 5).cx;
    dc.SelectObject(old);
    const int room = 4 * word + word / 2;
    for (CEdit* e : {&wrapping, &scrolling}) {
        e->MoveWindow(10, 10, room + 4, 1 + 5 * lineHeight);
        e->SetWindowText("word word word word word word");
    }
    EXPECT_EQ(wrapping.GetLineCount(), 2);
    EXPECT_EQ(wrapping.LineIndex(1), 20);
    EXPECT_EQ(wrapping.LineFromChar(22), 1);
    EXPECT_EQ(scrolling.GetLineCount(), 1);
    // Typing at the end moves the caret onto the wrapped line; the text has no new break.
    wrapping.SetFocus();
    wrapping.SetSel(29, 29);  // after the last word
    TypeText(" word word word");
    EXPECT_EQ(wrapping.GetLineCount(), 3);
    int a = -1, b = -1;
    wrapping.GetSel(a, b);
    EXPECT_EQ(b, 44);
    EXPECT_EQ(wrapping.LineFromChar(-1), 2);
    EXPECT_EQ(Text(wrapping).find('\r'), std::string::npos);
}

TEST_F(EditLines, SelectionIsDrawnOnEachLineItTouches) {
    CEdit edit;
    Make(edit, ES_AUTOVSCROLL, 3);
    // Blanks, so that only the selection's colour shows.
    edit.SetWindowText("    \r\n    \r\n    ");
    edit.SetFocus();
    edit.SetSel(2, 8);  // from the third blank of line 0 to the second of line 1
    Pump();
    const int margin = 2;
    auto at = [&](int line, int column) {
        return Pixel(edit.m_hWnd, POINT{margin + column * blank + blank / 2, 1 + line * lineHeight + lineHeight / 2});
    };
    const COLORREF hi = GetSysColor(COLOR_HIGHLIGHT), bg = GetSysColor(COLOR_WINDOW);
    struct Case { int line, column; COLORREF colour; };
    const Case cases[] = {{0, 1, bg}, {0, 2, hi}, {0, 3, hi}, {1, 0, hi}, {1, 1, hi}, {1, 2, bg}, {2, 0, bg}};
    for (const Case& c : cases) EXPECT_EQ(at(c.line, c.column), c.colour) << c.line << "," << c.column;
    // Without the focus the selection is hidden.
    host.SetFocus();
    Pump();
    EXPECT_EQ(at(0, 2), bg);
}

}  // namespace
