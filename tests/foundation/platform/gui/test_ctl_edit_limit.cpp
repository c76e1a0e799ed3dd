// Edits of several lines without ES_AUTOVSCROLL stop at the last line that fits: typed and
// pasted text that would need more lines is refused whole and the parent hears EN_MAXTEXT;
// with ES_AUTOVSCROLL the text scrolls instead.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/globalmem.h"
#include "foundation/platform/gui/ctl_edit_p.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;
using orlex::detail::EditModel;
using Fit = EditModel::Fit;

// The model alone ------------------------------------------------------------------------------

TEST(EditLineCap, ReplacementsAgainstTheLinesThatFit) {
    struct Case {
        const char* name;
        const char* text;
        int selStart, selEnd;  // before the replacement
        const char* put;
        int maxLines;
        Fit fit;
        const char* after;
        int caret;
    };
    const Case cases[] = {
        {"a line that still fits", "a\r\nb", 4, 4, "\r\nc", 3, Fit::Replaced, "a\r\nb\r\nc", 7},
        {"a break past the last line", "a\r\nb\r\nc", 7, 7, "\r\n", 3, Fit::TooManyLines, "a\r\nb\r\nc", 7},
        {"several lines refused whole", "a", 1, 1, "1\r\n2\r\n3", 2, Fit::TooManyLines, "a", 1},
        {"a selection giving back lines", "a\r\nb\r\nc", 0, 7, "x\r\ny\r\nz", 3, Fit::Replaced, "x\r\ny\r\nz", 7},
        {"longer text gains no line", "1\n2\n3\n4\n5", 0, 0, "x", 3, Fit::Replaced, "x1\n2\n3\n4\n5", 1},
        {"longer text gains a line", "1\n2\n3\n4\n5", 1, 1, "\n", 3, Fit::TooManyLines, "1\n2\n3\n4\n5", 1},
        {"longer text loses a line", "1\n2\n3\n4\n5", 0, 4, "y", 3, Fit::Replaced, "y3\n4\n5", 1},
        {"no cap", "a\r\nb", 4, 4, "\r\nc\r\nd", 0, Fit::Replaced, "a\r\nb\r\nc\r\nd", 10},
        {"nothing to put", "a", 1, 1, "", 1, Fit::Unchanged, "a", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EditModel m;
        m.SetText(c.text);
        m.SetSel(c.selStart, c.selEnd);
        EXPECT_EQ(m.ReplaceSelWithin(c.put, c.maxLines), c.fit);
        EXPECT_EQ(m.Text(), c.after);
        EXPECT_EQ(m.Caret(), c.caret);
        // A refusal leaves the selection as it was.
        if (c.fit == Fit::TooManyLines) {
            EXPECT_EQ(m.SelStart(), c.selStart);
            EXPECT_EQ(m.SelEnd(), c.selEnd);
        }
    }
}

TEST(EditLineCap, TextCutToTheLimitKeepsLineBreaksWhole) {
    EditModel m;
    m.SetLimit(6);
    m.SetText("ab");
    m.SetSel(2, 2);
    EXPECT_TRUE(m.ReplaceSel("\r\n1\r\n2"));
    EXPECT_EQ(m.Text(), "ab\r\n1");
    EXPECT_EQ(m.LineCount(), 2);
}

TEST(EditLineCap, RefusalKeepsTheLastUndoStep) {
    EditModel m;
    m.SetText("a\r\nb");
    m.SetSel(4, 4);
    ASSERT_EQ(m.ReplaceSelWithin("c", 2), Fit::Replaced);
    ASSERT_EQ(m.ReplaceSelWithin("\r\n", 2), Fit::TooManyLines);
    EXPECT_EQ(m.LineCount(), 2);
    EXPECT_EQ(m.LineStart(1), 3);
    ASSERT_TRUE(m.Undo());
    EXPECT_EQ(m.Text(), "a\r\nb");
    EXPECT_EQ(m.Caret(), 4);
}

TEST(EditLineCap, WrappedLinesCount) {
    // Ten pixels a character, thirty to a line: "abcdef" wraps after "abc".
    const orlex::detail::TextWidthFn width = [](const std::string& t) { return 10 * static_cast<int>(t.size()); };
    EditModel m;
    m.SetWrap(30, width, 1);
    m.SetText("abcdef");
    m.SetSel(6, 6);
    EXPECT_EQ(m.ReplaceSelWithin("g", 2), Fit::TooManyLines);
    EXPECT_EQ(m.Text(), "abcdef");
    m.SetSel(0, 1);
    EXPECT_EQ(m.ReplaceSelWithin("z", 2), Fit::Replaced);
    EXPECT_EQ(m.Text(), "zbcdef");
    EXPECT_EQ(m.LineCount(), 2);
}

// The control ----------------------------------------------------------------------------------

// Logs its edit's notifications.
class Host : public CWnd {
public:
    std::vector<UINT> notes;
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m == WM_COMMAND && lp) notes.push_back(HIWORD(wp));
        return CWnd::WindowProc(m, wp, lp);
    }
    size_t Count(UINT code) const {
        size_t n = 0;
        for (UINT c : notes) n += c == code;
        return n;
    }
};

class EditLimit : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        ASSERT_TRUE(host.CreateEx(0, nullptr, "limit", WS_OVERLAPPED | WS_VISIBLE, CRect(100, 100, 500, 400), nullptr, 0));
        ASSERT_TRUE(font.CreatePointFont(100, "Courier New"));
        Pump();
    }
    // A multi-line edit 200 pixels wide in the test's font with room for `lines` lines.
    void Make(CEdit& edit, DWORD style, int lines) {
        CClientDC dc(&host);
        CFont* old = dc.SelectObject(&font);
        TEXTMETRIC tm{};
        dc.GetTextMetrics(&tm);
        lineHeight = tm.tmHeight;
        // Most x's a line takes: the room between the two-pixel margins.
        perLine = 0;
        while (dc.GetTextExtent(CString('x', perLine + 1)).cx <= 200 - 2 * 2) ++perLine;
        dc.SelectObject(old);
        ASSERT_TRUE(edit.Create(WS_VISIBLE | ES_MULTILINE | ES_WANTRETURN | style,
                                CRect(10, 10, 210, 10 + 1 + lines * lineHeight + lineHeight / 2), &host, 30));
        edit.SetFont(&font);
        Click(edit.m_hWnd, POINT{5, 5});
        host.notes.clear();
    }
    static std::string Text(CEdit& e) {
        CString t;
        e.GetWindowText(t);
        return std::string(t.GetString());
    }
    static void PutOnClipboard(HWND owner, const std::string& text) {
        HGLOBAL mem = ::GlobalAlloc(GMEM_MOVEABLE, text.size() + 1);
        ASSERT_NE(mem, nullptr);
        std::memcpy(::GlobalLock(mem), text.c_str(), text.size() + 1);
        ::GlobalUnlock(mem);
        ASSERT_TRUE(::OpenClipboard(owner));
        ::EmptyClipboard();
        ::SetClipboardData(CF_TEXT, mem);
        ::CloseClipboard();
    }
    Host host;
    CFont font;
    int lineHeight = 0, perLine = 0;
};

TEST_F(EditLimit, ReturnOnTheLastLineIsRefusedTypingOnItIsNot) {
    CEdit edit;
    Make(edit, ES_AUTOHSCROLL, 3);
    TypeText("a");
    Key(VK_RETURN);
    TypeText("b");
    Key(VK_RETURN);
    TypeText("c");
    host.notes.clear();
    Key(VK_RETURN);
    EXPECT_EQ(Text(edit), "a\r\nb\r\nc");
    EXPECT_EQ(host.notes, std::vector<UINT>{EN_MAXTEXT});
    int a = -1, b = -1;
    edit.GetSel(a, b);
    EXPECT_EQ(a, 7);
    EXPECT_EQ(b, 7);
    // The last line still takes characters, and a break on an earlier line is refused too.
    TypeText("d");
    EXPECT_EQ(Text(edit), "a\r\nb\r\ncd");
    edit.SetSel(1, 1);
    Key(VK_RETURN);
    EXPECT_EQ(Text(edit), "a\r\nb\r\ncd");
    EXPECT_EQ(host.Count(EN_MAXTEXT), 2u);
    EXPECT_EQ(host.Count(EN_CHANGE), 1u);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 0);
}

TEST_F(EditLimit, WithAutoVScrollTheTextScrolls) {
    CEdit edit;
    Make(edit, ES_AUTOHSCROLL | ES_AUTOVSCROLL, 3);
    TypeText("a");
    for (int i = 0; i < 4; ++i) {
        Key(VK_RETURN);
        TypeText("b");
    }
    EXPECT_EQ(Text(edit), "a\r\nb\r\nb\r\nb\r\nb");
    EXPECT_EQ(edit.GetLineCount(), 5);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 2);
    EXPECT_EQ(host.Count(EN_MAXTEXT), 0u);
}

TEST_F(EditLimit, PasteNeedingMoreLinesIsRefusedWhole) {
    CEdit edit;
    Make(edit, ES_AUTOHSCROLL, 3);
    TypeText("a");
    struct Case {
        const char* clip;
        bool selectAll;
        const char* after;
        bool refused;
    };
    const Case cases[] = {
        {"1\r\n2\r\n3\r\n4", false, "a", true},      // four lines
        {"1\r\n2", false, "a1\r\n2", false},           // two
        {"x\r\ny\r\nz", false, "a1\r\n2x\r\ny\r\nz", true},
        {"x\r\ny\r\nz", true, "x\r\ny\r\nz", false},   // the selection gives its lines back
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.clip);
        if (c.selectAll) edit.SetSel(0, -1);
        else edit.SetSel(-1, -1);
        const std::string before = Text(edit);
        PutOnClipboard(host.m_hWnd, c.clip);
        host.notes.clear();
        edit.Paste();
        EXPECT_EQ(Text(edit), c.refused ? before : std::string(c.after));
        const std::vector<UINT> refusedNotes{EN_MAXTEXT}, takenNotes{EN_UPDATE, EN_CHANGE};
        EXPECT_EQ(host.notes, c.refused ? refusedNotes : takenNotes);
    }
}

TEST_F(EditLimit, WrappedTextStopsAtTheLastLinesEdge) {
    CEdit edit;
    Make(edit, 0, 3);
    ASSERT_GT(perLine, 0);
    TypeText(std::string(static_cast<size_t>(3 * perLine + 4), 'x').c_str());
    EXPECT_EQ(Text(edit), std::string(static_cast<size_t>(3 * perLine), 'x'));
    EXPECT_EQ(edit.GetLineCount(), 3);
    EXPECT_EQ(host.Count(EN_MAXTEXT), 4u);
}

TEST_F(EditLimit, PasteOverTheLimitAndTheLinesNotifiesOnce) {
    CEdit edit;
    Make(edit, ES_AUTOHSCROLL, 2);
    edit.LimitText(7);
    TypeText("ab");
    // Cut to the limit it is "\r\n1\r\n", three lines: refused, one EN_MAXTEXT.
    PutOnClipboard(host.m_hWnd, "\r\n1\r\n2");
    host.notes.clear();
    edit.Paste();
    EXPECT_EQ(Text(edit), "ab");
    EXPECT_EQ(host.notes, std::vector<UINT>{EN_MAXTEXT});
}

TEST_F(EditLimit, TextSetLongerStaysEditable) {
    CEdit edit;
    Make(edit, ES_AUTOHSCROLL, 2);
    edit.SetWindowText("1\r\n2\r\n3\r\n4");
    edit.SetSel(0, 0);
    host.notes.clear();
    TypeText("x");
    Key(VK_RETURN);
    EXPECT_EQ(Text(edit), "x1\r\n2\r\n3\r\n4");
    EXPECT_EQ(host.Count(EN_MAXTEXT), 1u);
    Key(VK_BACK);
    EXPECT_EQ(Text(edit), "1\r\n2\r\n3\r\n4");
}

}  // namespace
