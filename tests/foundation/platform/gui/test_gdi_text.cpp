// Text on memory contexts: face mapping, height conventions, alignment boxes, background
// modes, text at 90 degrees as an exact quarter turn of the same text at 0, clipping,
// DrawText layout and the code page. Expectations come from the layer's own metrics.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/codepage.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kRed = RGB(255, 0, 0);

struct Page {
    CDC dc;
    CBitmap bmp;
    CBitmap* old = nullptr;
    CFont font;
    int w, h;
    Page(int width, int height, int fontHeight = -20, int escapement = 0, const char* face = "Arial", int weight = 400)
        : w(width), h(height) {
        orlex::EnsureApplication();
        dc.CreateCompatibleDC(nullptr);
        bmp.CreateCompatibleBitmap(&dc, w, h);
        old = dc.SelectObject(&bmp);
        dc.FillSolidRect(0, 0, w, h, kWhite);
        font.CreateFont(fontHeight, 0, escapement, escapement, weight, 0, 0, 0, ANSI_CHARSET, 0, 0, 0, 0, face);
        dc.SelectObject(&font);
        dc.SetBkMode(TRANSPARENT);
    }
    ~Page() {
        dc.SelectStockObject(SYSTEM_FONT);
        dc.SelectObject(old);
    }
    std::vector<POINT> Ink(COLORREF c = kBlack) {
        std::vector<POINT> v;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if (dc.GetPixel(x, y) == c) v.push_back(POINT{x, y});
        return v;
    }
    static CRect Box(const std::vector<POINT>& pts) {
        CRect r(INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN);
        for (const POINT& p : pts) {
            r.left = std::min<LONG>(r.left, p.x);
            r.top = std::min<LONG>(r.top, p.y);
            r.right = std::max<LONG>(r.right, p.x + 1);
            r.bottom = std::max<LONG>(r.bottom, p.y + 1);
        }
        return r;
    }
};

bool Inside(const CRect& inner, const CRect& outer) {
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right && inner.bottom <= outer.bottom;
}

TEST(GdiFonts, FacesMapOntoMetricCompatibleFamilies) {
    const std::pair<const char*, const char*> cases[] = {
        {"Arial", "Liberation Sans"}, {"MS Sans Serif", "Liberation Sans"}, {"MS Shell Dlg", "Liberation Sans"},
        {"Tahoma", "Liberation Sans"}, {"Courier New", "Liberation Mono"}, {"Times New Roman", "Liberation Serif"},
    };
    orlex::EnsureApplication();
    for (const auto& [face, family] : cases) {
        EXPECT_EQ(orlex::ResolvedFontFamily(face), family) << face;
        LOGFONT lf{};
        lf.lfHeight = -14;
        std::strncpy(lf.lfFaceName, face, LF_FACESIZE - 1);
        EXPECT_EQ(orlex::ActualFontFamily(lf), family) << face;  // the font system has it
    }
    // A fixed face gives narrow and wide letters one width; a proportional one does not.
    Page mono(10, 10, -20, 0, "Courier New"), sans(10, 10, -20, 0, "Arial");
    EXPECT_EQ(mono.dc.GetTextExtent("iiii", 4).cx, mono.dc.GetTextExtent("WWWW", 4).cx);
    EXPECT_LT(sans.dc.GetTextExtent("iiii", 4).cx, sans.dc.GetTextExtent("WWWW", 4).cx);
    char face[LF_FACESIZE];
    EXPECT_EQ(sans.dc.GetTextFace(LF_FACESIZE, face), 5);
    EXPECT_STREQ(face, "Arial");
}

TEST(GdiFonts, NegativeHeightIsCharacterHeightPositiveIsCell) {
    for (int h : {12, 16, 20, 33}) {
        Page a(4, 4, -h), b(4, 4, h);
        TEXTMETRIC ta, tb;
        ASSERT_TRUE(a.dc.GetTextMetrics(&ta));
        ASSERT_TRUE(b.dc.GetTextMetrics(&tb));
        EXPECT_EQ(ta.tmHeight - ta.tmInternalLeading, h) << h;
        EXPECT_EQ(ta.tmHeight, ta.tmAscent + ta.tmDescent) << h;
        EXPECT_LE(tb.tmHeight, h) << h;
        EXPECT_GE(tb.tmHeight, h - 1) << h;
        EXPECT_GT(ta.tmAveCharWidth, 0);
        EXPECT_EQ(a.dc.GetTextExtent("Hg", 2).cy, ta.tmHeight);
    }
    Page normal(4, 4, -20, 0, "Arial", 400), bold(4, 4, -20, 0, "Arial", 700);
    EXPECT_LT(normal.dc.GetTextExtent("Measure", 7).cx, bold.dc.GetTextExtent("Measure", 7).cx);
    TEXTMETRIC tm;
    bold.dc.GetTextMetrics(&tm);
    EXPECT_EQ(tm.tmWeight, 700);
}

TEST(GdiText, AlignmentPlacesTheTextBoxAroundTheReferencePoint) {
    const POINT ref{80, 50};
    struct Case {
        UINT align;
        int dxNum;  // box left = ref.x - cx * dxNum / 2
        int dy;     // 0 top, 1 bottom, 2 baseline
    };
    const Case cases[] = {{TA_LEFT | TA_TOP, 0, 0},  {TA_RIGHT, 2, 0},          {TA_CENTER, 1, 0},
                          {TA_BOTTOM, 0, 1},         {TA_RIGHT | TA_BOTTOM, 2, 1}, {TA_CENTER | TA_BOTTOM, 1, 1},
                          {TA_CENTER | TA_BASELINE, 1, 2}, {TA_BASELINE, 0, 2}};
    for (const Case& c : cases) {
        Page p(160, 100);
        const CSize ext = p.dc.GetTextExtent("Hgx", 3);
        TEXTMETRIC tm;
        p.dc.GetTextMetrics(&tm);
        p.dc.SetTextAlign(c.align);
        p.dc.TextOut(ref.x, ref.y, "Hgx", 3);
        const CRect ink = Page::Box(p.Ink());
        const int left = ref.x - ext.cx * c.dxNum / 2;
        const int top = c.dy == 0 ? ref.y : c.dy == 1 ? ref.y - ext.cy : ref.y - tm.tmAscent;
        const CRect box(left, top, left + ext.cx, top + ext.cy);
        EXPECT_TRUE(Inside(ink, box)) << "align " << c.align;
        EXPECT_GE(ink.Width(), ext.cx * 2 / 3) << "align " << c.align;
        // The baseline: "H" sits on it, "g" hangs below.
        EXPECT_LE(ink.top, top + tm.tmAscent) << "align " << c.align;
        EXPECT_GT(ink.bottom, top + tm.tmAscent) << "align " << c.align;
    }
}

TEST(GdiText, OpaqueModeFillsExactlyTheTextBox) {
    Page p(120, 60);
    p.dc.SetBkMode(OPAQUE);
    p.dc.SetBkColor(kRed);
    p.dc.TextOut(10, 12, "Wave", 4);
    const CSize ext = p.dc.GetTextExtent("Wave", 4);
    const auto red = p.Ink(kRed), black = p.Ink(kBlack);
    EXPECT_EQ(red.size() + black.size(), static_cast<std::size_t>(ext.cx * ext.cy));
    EXPECT_EQ(Page::Box(red), CRect(10, 12, 10 + ext.cx, 12 + ext.cy));
    EXPECT_FALSE(black.empty());
}

TEST(GdiText, QuarterTurnsAreExactRotationsOfTheUprightText) {
    Page upright(120, 120);
    upright.dc.TextOut(0, 0, "Rg7", 3);
    const auto ink0 = upright.Ink();
    const CSize ext = upright.dc.GetTextExtent("Rg7", 3);
    ASSERT_FALSE(ink0.empty());
    struct Case {
        int escapement;
        POINT ref;
        // Where upright pixel (i, j) goes.
        POINT (*map)(POINT ref, int i, int j);
    };
    const Case cases[] = {
        {900, {30, 100}, [](POINT r, int i, int j) { return POINT{r.x + j, r.y - i - 1}; }},
        {-900, {90, 10}, [](POINT r, int i, int j) { return POINT{r.x - j - 1, r.y + i}; }},
        {1800, {110, 100}, [](POINT r, int i, int j) { return POINT{r.x - i - 1, r.y - j - 1}; }},
    };
    for (const Case& c : cases) {
        Page turned(120, 120, -20, c.escapement);
        turned.dc.TextOut(c.ref.x, c.ref.y, "Rg7", 3);
        std::vector<POINT> expect;
        for (const POINT& q : ink0) expect.push_back(c.map(c.ref, q.x, q.y));
        auto got = turned.Ink();
        auto key = [](const POINT& a, const POINT& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; };
        std::sort(expect.begin(), expect.end(), key);
        std::sort(got.begin(), got.end(), key);
        ASSERT_EQ(got.size(), expect.size()) << c.escapement;
        for (std::size_t k = 0; k < got.size(); ++k) {
            EXPECT_EQ(got[k].x, expect[k].x) << c.escapement;
            EXPECT_EQ(got[k].y, expect[k].y) << c.escapement;
        }
        // The extent is the same string's, in the text's own direction.
        EXPECT_EQ(turned.dc.GetTextExtent("Rg7", 3), ext) << c.escapement;
    }
}

TEST(GdiText, ExtTextOutOpaqueClippedStaysInItsRectangle) {
    Page p(120, 50);
    p.dc.SetBkColor(kRed);
    p.dc.SetBkMode(TRANSPARENT);
    const RECT r{10, 10, 40, 30};
    p.dc.ExtTextOut(12, 12, ETO_OPAQUE | ETO_CLIPPED, &r, "Wide text here", 14, nullptr);
    const CRect all = Page::Box([&] {
        auto v = p.Ink(kRed);
        auto b = p.Ink(kBlack);
        v.insert(v.end(), b.begin(), b.end());
        return v;
    }());
    EXPECT_EQ(all, CRect(r));
    EXPECT_FALSE(p.Ink(kBlack).empty());
}

TEST(GdiText, DrawTextLayout) {
    Page p(200, 120);
    TEXTMETRIC tm;
    p.dc.GetTextMetrics(&tm);
    const CSize ext = p.dc.GetTextExtent("Label", 5);
    {
        CRect r(5, 5, 5, 5);
        EXPECT_EQ(p.dc.DrawText("Label", 5, &r, DT_CALCRECT | DT_SINGLELINE | DT_NOCLIP), tm.tmHeight);
        EXPECT_EQ(r, CRect(5, 5, 5 + ext.cx, 5 + tm.tmHeight));
        EXPECT_TRUE(p.Ink().empty());  // measuring draws nothing
    }
    {
        CRect r(10, 10, 190, 100);
        p.dc.DrawText("Label", 5, &r, DT_SINGLELINE | DT_RIGHT | DT_VCENTER);
        const CRect ink = Page::Box(p.Ink());
        EXPECT_TRUE(Inside(ink, CRect(190 - ext.cx, 55 - tm.tmHeight / 2 - 1, 190, 55 + tm.tmHeight / 2 + 1)));
        EXPECT_GE(ink.right, 190 - 4);
    }
    {
        // Two words that fit only one to a line.
        const CSize one = p.dc.GetTextExtent("alphabet", 8);
        CRect r(0, 0, one.cx + 4, 0);
        EXPECT_EQ(p.dc.DrawText("alphabet alphabet", -1, &r, DT_CALCRECT | DT_WORDBREAK), 2 * tm.tmHeight);
        EXPECT_LE(r.Width(), one.cx + 4);
    }
    {
        CRect a(0, 0, 0, 0), b(0, 0, 0, 0);
        p.dc.DrawText("&Copy", -1, &a, DT_CALCRECT | DT_SINGLELINE);
        p.dc.DrawText("Copy", -1, &b, DT_CALCRECT | DT_SINGLELINE);
        EXPECT_EQ(a, b);
        p.dc.DrawText("&Copy", -1, &a, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
        EXPECT_GT(a.Width(), b.Width());
    }
    {
        Page q(200, 40);
        CRect r(0, 0, 60, 40);
        q.dc.DrawText("A rather long cell text", -1, &r, DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
        const CRect ink = Page::Box(q.Ink());
        EXPECT_LE(ink.right, 60);
        EXPECT_GT(ink.right, 40);
    }
}

TEST(GdiText, PrefixUnderlinesTheNextCharacter) {
    struct Case {
        const char* text;
        UINT fmt;
        const char* shown;       // what the text part looks like (as TextOut draws it); null: none
        const char* before;      // the text before the underlined character; null: no underline
        const char* underlined;
    };
    const Case cases[] = {
        {"&Open", 0, "Open", "", "O"},
        {"Op&en", 0, "Open", "Op", "e"},
        {"&&Open", 0, "&Open", nullptr, nullptr},
        {"A&&B &C", 0, "A&B C", "A&B ", "C"},
        {"&Open", DT_NOPREFIX, "&Open", nullptr, nullptr},
        {"&Open", DT_HIDEPREFIX, "Open", nullptr, nullptr},
        {"Op&en", DT_PREFIXONLY, nullptr, "Op", "e"},
        {"Open&", 0, "Open", nullptr, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.text) + " " + std::to_string(c.fmt));
        Page drawn(200, 40), plain(200, 40);
        TEXTMETRIC tm;
        drawn.dc.GetTextMetrics(&tm);
        CRect r(10, 5, 190, 5 + tm.tmHeight);
        drawn.dc.DrawText(c.text, -1, &r, DT_SINGLELINE | c.fmt);
        if (c.shown) plain.dc.TextOut(10, 5, c.shown, static_cast<int>(std::strlen(c.shown)));
        // The difference between the two is the underline alone.
        std::vector<POINT> extra;
        int missing = 0;
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 200; ++x) {
                const bool a = drawn.dc.GetPixel(x, y) == kBlack, b = plain.dc.GetPixel(x, y) == kBlack;
                if (a && !b) extra.push_back(POINT{x, y});
                if (b && !a) ++missing;
            }
        EXPECT_EQ(missing, 0);
        if (!c.before) {
            EXPECT_TRUE(extra.empty());
            continue;
        }
        ASSERT_FALSE(extra.empty());
        const CRect bar = Page::Box(extra);
        const int from = 10 + drawn.dc.GetTextExtent(c.before, static_cast<int>(std::strlen(c.before))).cx;
        const std::string upTo = std::string(c.before) + c.underlined;
        const int to = 10 + drawn.dc.GetTextExtent(upTo.c_str(), static_cast<int>(upTo.size())).cx;
        EXPECT_EQ(bar.Height(), 1);
        EXPECT_EQ(static_cast<int>(extra.size()), bar.Width());  // one unbroken row
        EXPECT_EQ(bar.left, from);
        EXPECT_EQ(bar.right, to);
        // Below the baseline, inside the line.
        EXPECT_GE(bar.top, 5 + tm.tmAscent);
        EXPECT_LT(bar.top, 5 + tm.tmHeight);
    }
}

TEST(GdiText, TabStopsOfTabbedTextOut) {
    Page p(200, 40);
    const INT stops[] = {100};
    p.dc.TabbedTextOut(0, 0, "ab\tcd", 5, 1, stops, 0);
    int rightMost = 0, leftOfSecond = 200;
    for (const POINT& q : p.Ink()) {
        if (q.x < 60) rightMost = std::max<int>(rightMost, q.x);
        else leftOfSecond = std::min<int>(leftOfSecond, q.x);
    }
    EXPECT_LT(rightMost, p.dc.GetTextExtent("ab", 2).cx);
    EXPECT_GE(leftOfSecond, 100);
    EXPECT_LT(leftOfSecond, 104);
}

TEST(GdiText, EightBitTextFollowsTheCodePage) {
    // 0xBA is the masculine ordinal under 1252 and a Cyrillic letter under 1251.
    auto inkOf = [](UINT cp) {
        orlex::SetACP(cp);
        Page p(40, 40);
        p.dc.TextOut(5, 5, "\xBA", 1);
        auto v = p.Ink();
        orlex::SetACP(1252);
        return v;
    };
    const auto western = inkOf(1252), cyrillic = inkOf(1251);
    ASSERT_FALSE(western.empty());
    ASSERT_FALSE(cyrillic.empty());
    EXPECT_NE(Page::Box(western), Page::Box(cyrillic));
    // The micro sign is a glyph of its own, not the missing-glyph box of the font.
    Page p(40, 40);
    EXPECT_NE(p.dc.GetTextExtent("\xB5", 1).cx, 0);
}

}  // namespace
