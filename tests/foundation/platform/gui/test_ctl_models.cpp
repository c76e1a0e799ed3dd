// The arithmetic of the controls apart from their windows: scroll bar and trackbar
// geometry, up-down steps, the edit model and the item list, on worked examples.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "foundation/platform/gui/ctl_edit_p.h"
#include "foundation/platform/gui/ctl_list_p.h"
#include "foundation/platform/gui/ctl_scroll_p.h"

using namespace orlex::detail;

TEST(ScrollGeometryMath, PartsOnWorkedExamples) {
    struct Case {
        int length, thickness, minPos, maxPos;
        UINT page;
        int pos;
        int arrow, thumbStart, thumbEnd;
    };
    const Case cases[] = {
        // 200 long, 17 thick: track 17..183 (166); a 17-pixel thumb travels 149 over 200 positions.
        {200, 17, -100, 100, 0, -100, 17, 17, 34},
        {200, 17, -100, 100, 0, 0, 17, 91, 108},
        {200, 17, -100, 100, 0, 100, 17, 166, 183},
        {200, 17, -100, 100, 0, 500, 17, 166, 183},  // held at the end
        // A page of 50 in 0..99: the thumb is half the track; the last position is 50.
        {200, 17, 0, 99, 50, 0, 17, 17, 100},
        {200, 17, 0, 99, 50, 50, 17, 100, 183},
        {200, 17, 0, 99, 50, 99, 17, 100, 183},
        // A tiny page still gets the 8-pixel thumb.
        {200, 17, 0, 9999, 1, 0, 17, 17, 25},
        // Too short for a thumb: the arrows share the length.
        {30, 17, 0, 10, 0, 5, 15, 15, 15},
    };
    for (const Case& c : cases) {
        const ScrollGeometry g = ComputeScroll(c.length, c.thickness, c.minPos, c.maxPos, c.page, c.pos);
        EXPECT_EQ(g.arrow, c.arrow) << c.pos;
        EXPECT_EQ(g.thumbStart, c.thumbStart) << c.length << "/" << c.pos;
        EXPECT_EQ(g.thumbEnd, c.thumbEnd) << c.length << "/" << c.pos;
    }
}

TEST(ScrollGeometryMath, ThumbPositionRoundTrips) {
    for (UINT page : {0u, 10u, 50u}) {
        for (int pos = 0; pos <= ScrollMaxPos(0, 99, page); ++pos) {
            const ScrollGeometry g = ComputeScroll(300, 17, 0, 99, page, pos);
            EXPECT_EQ(ScrollPosFromThumb(g, g.thumbStart, 0, 99, page), pos) << page;
        }
    }
    const ScrollGeometry g = ComputeScroll(200, 17, -100, 100, 0, 0);
    EXPECT_EQ(ScrollPosFromThumb(g, -50, -100, 100, 0), -100);
    EXPECT_EQ(ScrollPosFromThumb(g, 1000, -100, 100, 0), 100);
}

TEST(TrackbarMath, ThumbAndPointerMapBothWays) {
    struct Case { int length, minPos, maxPos, pos, centre; };
    const Case cases[] = {
        {196, 0, 180, 0, 8}, {196, 0, 180, 90, 98}, {196, 0, 180, 180, 188}, {196, 0, 180, 500, 188},
        {116, -50, 50, 0, 58}, {116, 5, 5, 5, 8},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(TrackbarThumbCenter(c.length, c.minPos, c.maxPos, c.pos), c.centre) << c.pos;
        if (c.maxPos > c.minPos && c.pos <= c.maxPos)
            EXPECT_EQ(TrackbarPosFromPoint(c.length, c.minPos, c.maxPos, c.centre), c.pos);
    }
    EXPECT_EQ(TrackbarPosFromPoint(196, 0, 180, -40), 0);
    EXPECT_EQ(TrackbarPosFromPoint(196, 0, 180, 999), 180);
    EXPECT_EQ(TrackbarPosFromPoint(28, 0, 3, 14), 2);  // 12 pixels for 3 steps: 6 is 1.5, rounded up
}

TEST(UpDownMath, StepsWrapOrHoldAndBuddyTextGroupsThousands) {
    struct Step { int pos, lower, upper, delta; bool wrap; int to; };
    const Step steps[] = {
        {5, 0, 10, 1, false, 6},   {10, 0, 10, 1, false, 10}, {10, 0, 10, 1, true, 0},
        {0, 0, 10, -1, true, 10},  {50, 100, 0, -1, false, 49}, {0, 100, 0, -1, false, 0},
        {2147483647, 0, 2147483647, 1, false, 2147483647},
    };
    for (const Step& s : steps) EXPECT_EQ(UpDownStep(s.pos, s.lower, s.upper, s.delta, s.wrap), s.to) << s.pos;
    struct Text { int value; bool thousands; const char* text; };
    const Text texts[] = {{0, true, "0"}, {999, true, "999"}, {1000, true, "1,000"}, {-1234567, true, "-1,234,567"},
                          {1234567, false, "1234567"}, {-2147483647 - 1, true, "-2,147,483,648"}};
    for (const Text& t : texts) EXPECT_EQ(BuddyText(t.value, t.thousands), t.text);
}

TEST(EditModelMath, EditingOperationsOnWorkedExamples) {
    EditModel m;
    m.SetText("scale");
    struct Op {
        const char* what;
        std::function<void(EditModel&)> run;
        const char* text;
        int selStart, selEnd, caret;
    };
    const Op ops[] = {
        {"select all", [](EditModel& e) { e.SetSel(0, -1); }, "scale", 0, 5, 5},
        {"replace", [](EditModel& e) { e.ReplaceSel("range"); }, "range", 5, 5, 5},
        {"left twice with shift", [](EditModel& e) { e.MoveLeft(true); e.MoveLeft(true); }, "range", 3, 5, 3},
        {"backspace takes the selection", [](EditModel& e) { e.Backspace(); }, "ran", 3, 3, 3},
        {"home, delete", [](EditModel& e) { e.Home(false); e.DeleteForward(); }, "an", 0, 0, 0},
        {"backwards selection", [](EditModel& e) { e.SetSel(2, 0); }, "an", 0, 2, 0},
        {"right collapses to the end", [](EditModel& e) { e.MoveRight(false); }, "an", 2, 2, 2},
        {"-1 takes the selection away", [](EditModel& e) { e.SetSel(0, 1); e.SetSel(-1, 0); }, "an", 1, 1, 1},
        {"past the end is the end", [](EditModel& e) { e.SetSel(7, 9); }, "an", 2, 2, 2},
        {"undo brings back the text", [](EditModel& e) { e.Undo(); }, "ran", 0, 0, 0},
    };
    for (const Op& o : ops) {
        o.run(m);
        EXPECT_EQ(m.Text(), o.text) << o.what;
        EXPECT_EQ(m.SelStart(), o.selStart) << o.what;
        EXPECT_EQ(m.SelEnd(), o.selEnd) << o.what;
        EXPECT_EQ(m.Caret(), o.caret) << o.what;
    }
}

TEST(EditModelMath, LimitCutsInsertions) {
    EditModel m;
    m.SetLimit(3);
    EXPECT_TRUE(m.ReplaceSel("12345"));
    EXPECT_EQ(m.Text(), "123");
    EXPECT_FALSE(m.ReplaceSel("4"));  // full, nothing selected: refused
    m.SetSel(0, 1);
    EXPECT_TRUE(m.ReplaceSel("xy"));  // one character room after the selection goes
    EXPECT_EQ(m.Text(), "x23");
}

TEST(EditModelMath, CaretHitsTheNearerEdge) {
    const int widths[] = {0, 10, 16, 30};  // prefixes of a three-character text
    struct Case { int x, caret; };
    const Case cases[] = {{-5, 0}, {0, 0}, {4, 0}, {5, 1}, {12, 1}, {13, 2}, {22, 2}, {23, 3}, {99, 3}};
    for (const Case& c : cases) EXPECT_EQ(HitTestOffsets(widths, 3, c.x), c.caret) << c.x;
}

// "ab" CR LF "cde" CR LF (empty) CR LF "f": positions a0 b1 CR2 LF3 c4 d5 e6 CR7 LF8 CR9 LF10 f11.
const char kLines[] = "ab\r\ncde\r\n\r\nf";

TEST(EditModelMath, LinesOfTextWithLineBreaks) {
    EditModel m;
    m.SetText(kLines);
    EXPECT_EQ(m.LineCount(), 4);
    struct Line { int start, length; };
    const Line lines[] = {{0, 2}, {4, 3}, {9, 0}, {11, 1}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(m.LineStart(i), lines[i].start) << i;
        EXPECT_EQ(m.LineLength(i), lines[i].length) << i;
    }
    EXPECT_EQ(m.LineStart(4), -1);
    EXPECT_EQ(m.LineStart(-1), -1);
    struct Pos { int pos, line; };
    const Pos of[] = {{0, 0}, {2, 0}, {3, 0}, {4, 1}, {8, 1}, {9, 2}, {10, 2}, {11, 3}, {12, 3}, {99, 3}};
    for (const Pos& p : of) EXPECT_EQ(m.LineOf(p.pos), p.line) << p.pos;
    // A lone line feed breaks a line too, as one position.
    m.SetText("x\ny");
    EXPECT_EQ(m.LineCount(), 2);
    EXPECT_EQ(m.LineStart(1), 2);
    EXPECT_EQ(m.LineLength(0), 1);
}

TEST(EditModelMath, CaretStepsOverLineBreaksWhole) {
    const TextWidthFn tenEach = [](const std::string& t) { return 10 * static_cast<int>(t.size()); };
    EditModel m;
    m.SetText(kLines);
    struct Op {
        const char* what;
        std::function<void(EditModel&)> run;
        int selStart, selEnd, caret;
        const char* text;
    };
    const Op ops[] = {
        {"inside CR LF snaps before it", [](EditModel& e) { e.SetSel(3, 3); }, 2, 2, 2, kLines},
        {"right over the break", [](EditModel& e) { e.MoveRight(false); }, 4, 4, 4, kLines},
        {"left back over it", [](EditModel& e) { e.MoveLeft(false); }, 2, 2, 2, kLines},
        {"down keeps the x", [&](EditModel& e) { e.MoveLines(1, false, tenEach); }, 6, 6, 6, kLines},
        {"down to the empty line", [&](EditModel& e) { e.MoveLines(1, false, tenEach); }, 9, 9, 9, kLines},
        {"up two with shift", [&](EditModel& e) { e.MoveLines(-2, true, tenEach); }, 0, 9, 0, kLines},
        {"up at the top stays", [&](EditModel& e) { e.MoveLines(-1, false, tenEach); }, 0, 0, 0, kLines},
        {"many down stop at the last line", [&](EditModel& e) { e.MoveLines(9, false, tenEach); }, 11, 11, 11, kLines},
        {"line home, line end", [](EditModel& e) { e.SetSel(5, 5); e.LineHome(false); e.LineEnd(true); }, 4, 7, 7, kLines},
        {"delete at the line end takes CR LF", [](EditModel& e) { e.SetSel(7, 7); e.DeleteForward(); }, 7, 7, 7,
         "ab\r\ncde\r\nf"},
        {"backspace at a line start takes CR LF", [](EditModel& e) { e.SetSel(4, 4); e.Backspace(); }, 2, 2, 2,
         "abcde\r\nf"},
        {"return inserts a break", [](EditModel& e) { e.ReplaceSel("\r\n"); }, 4, 4, 4, "ab\r\ncde\r\nf"},
    };
    for (const Op& o : ops) {
        o.run(m);
        EXPECT_EQ(m.Text(), o.text) << o.what;
        EXPECT_EQ(m.SelStart(), o.selStart) << o.what;
        EXPECT_EQ(m.SelEnd(), o.selEnd) << o.what;
        EXPECT_EQ(m.Caret(), o.caret) << o.what;
    }
    // Hits within a line: the nearer edge of the character under x.
    m.SetText(kLines);
    struct Hit { int line, x, pos; };
    const Hit hits[] = {{1, 14, 5}, {1, 16, 6}, {1, 99, 7}, {0, -3, 0}, {2, 50, 9}, {7, 0, 12}};  // no line 7: the end
    for (const Hit& h : hits) EXPECT_EQ(m.PosAtX(h.line, h.x, tenEach), h.pos) << h.line << "," << h.x;
    EXPECT_EQ(m.XOf(6, tenEach), 20);
    EXPECT_EQ(m.XOf(11, tenEach), 0);
}

TEST(EditModelMath, WrappedLinesBreakAfterBlanks) {
    const TextWidthFn tenEach = [](const std::string& t) { return 10 * static_cast<int>(t.size()); };
    struct Line { int start, length; };
    struct Case {
        const char* text;
        int width;  // pixels, ten a character
        std::vector<Line> lines;
    };
    const Case cases[] = {
        {"hello world", 60, {{0, 6}, {6, 5}}},               // the blank ends the first line
        {"hello world", 110, {{0, 11}}},                     // fits exactly
        {"a    b", 20, {{0, 5}, {5, 1}}},                    // blanks hang at the end
        {"abcdefgh", 30, {{0, 3}, {3, 3}, {6, 2}}},          // no blank: cut where it fills
        {"ab cdefgh", 40, {{0, 3}, {3, 4}, {7, 2}}},
        {"one\r\ntwo three", 50, {{0, 3}, {5, 4}, {9, 5}}}, // hard breaks stay
        {"x", 5, {{0, 1}}},                                  // at least a character a line
        {"", 50, {{0, 0}}},
    };
    for (const Case& c : cases) {
        EditModel m;
        m.SetText(c.text);
        m.SetWrap(c.width, tenEach, 1);
        ASSERT_EQ(m.LineCount(), static_cast<int>(c.lines.size())) << c.text << " @" << c.width;
        for (size_t i = 0; i < c.lines.size(); ++i) {
            EXPECT_EQ(m.LineStart(static_cast<int>(i)), c.lines[i].start) << c.text << " line " << i;
            EXPECT_EQ(m.LineLength(static_cast<int>(i)), c.lines[i].length) << c.text << " line " << i;
        }
    }
    // Where a wrapped line ends the next one begins; editing lays the lines out again.
    EditModel m;
    m.SetText("hello world");
    m.SetWrap(60, tenEach, 1);
    EXPECT_EQ(m.LineOf(5), 0);
    EXPECT_EQ(m.LineOf(6), 1);
    m.SetSel(0, 6);
    m.ReplaceSel("");
    EXPECT_EQ(m.LineCount(), 1);
    // A new width (or measure) is a new layout; width 0 stops wrapping.
    m.SetText("hello world");
    m.SetWrap(30, tenEach, 1);
    EXPECT_EQ(m.LineCount(), 4);  // "hel" "lo " "wor" "ld"
    m.SetWrap(0, tenEach, 1);
    EXPECT_EQ(m.LineCount(), 1);
}

TEST(ListModelMath, SortedInsertFindAndSelectionFollow) {
    ListModel m;
    m.sorted = true;
    for (const char* s : {"pear", "Apple", "fig", "apple"}) m.Add(s);
    std::vector<std::string> order;
    for (int i = 0; i < m.Count(); ++i) order.push_back(m.At(i)->text);
    EXPECT_EQ(order, (std::vector<std::string>{"Apple", "apple", "fig", "pear"}));  // equal keys keep their order
    m.SetCurrent(2);
    EXPECT_EQ(m.Insert(0, "zero"), 0);
    EXPECT_EQ(m.Current(), 3);  // the selection moved with its item
    EXPECT_EQ(m.Remove(3), 4);
    EXPECT_EQ(m.Current(), -1);
    struct Find { int after; const char* text; bool exact; int at; };
    const Find finds[] = {{-1, "AP", false, 1}, {1, "ap", false, 2}, {2, "ap", false, 1}, {-1, "apple", true, 1},
                          {-1, "appl", true, -1}, {-1, "", false, 0},   {99, "pear", false, 3}};
    for (const Find& f : finds) EXPECT_EQ(m.Find(f.after, f.text, f.exact), f.at) << f.text << " after " << f.after;
    EXPECT_EQ(m.Insert(9, "x"), -1);
    EXPECT_EQ(m.Remove(-1), -1);
}
