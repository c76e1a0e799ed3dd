#include "frame_test_util.h"

#include <cstdio>

namespace frametest {

bool Host::CreateHost(int w, int h)
{
    return CreateEx(0, nullptr, "frame host", WS_POPUP | WS_VISIBLE, CRect(40, 40, 40 + w, 40 + h), nullptr, 0) !=
           FALSE;
}

LRESULT Host::WindowProc(UINT msg, WPARAM wp, LPARAM lp)
{
    Message m{msg, wp, lp, {}};
    if (msg == WM_NOTIFY && lp) m.nm = *reinterpret_cast<NMHDR*>(lp);
    log.push_back(m);
    return CWnd::WindowProc(msg, wp, lp);
}

std::vector<Message> Host::Of(UINT msg) const
{
    std::vector<Message> out;
    for (const Message& m : log)
        if (m.msg == msg) out.push_back(m);
    return out;
}

std::vector<int> Host::NotifyCodes() const
{
    std::vector<int> out;
    for (const Message& m : Of(WM_NOTIFY)) out.push_back(static_cast<int>(m.nm.code));
    return out;
}

std::vector<tagRGBQUAD> TestTable()
{
    std::vector<tagRGBQUAD> t(256);
    for (int i = 0; i < 256; ++i) t[i] = tagRGBQUAD{BYTE(i), BYTE(255 - i), BYTE(3 * i), 0};
    return t;
}

void SelectArial(CDC& dc, CFont& font, int height, int weight)
{
    font.CreateFont(height, 0, 0, 0, weight, 0, 0, 0, ANSI_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                    DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS, "Arial");
    dc.SelectObject(&font);
}

std::vector<COLORREF> LayerDrawing(CSize size, const CRect& area, COLORREF back, const std::function<void(CDC&)>& draw)
{
    CClientDC screen(nullptr);
    CDC mem;
    CBitmap bmp;
    mem.CreateCompatibleDC(&screen);
    bmp.CreateCompatibleBitmap(&screen, size.cx, size.cy);
    CBitmap* old = mem.SelectObject(&bmp);
    const int saved = mem.SaveDC();
    mem.FillSolidRect(CRect(0, 0, size.cx, size.cy), back);
    mem.SetBkColor(back);
    mem.SetTextColor(GetSysColor(COLOR_WINDOWTEXT));
    mem.SelectStockObject(DEFAULT_GUI_FONT);
    draw(mem);
    std::vector<COLORREF> out;
    for (int j = area.top; j < area.bottom; ++j)
        for (int i = area.left; i < area.right; ++i) out.push_back(mem.GetPixel(i, j) & 0xFFFFFF);
    mem.RestoreDC(saved);
    mem.SelectObject(old);
    return out;
}

std::vector<COLORREF> Shown(CWnd& wnd, const CRect& area)
{
    orlex::test::Pump();
    return orlex::test::Pixels(wnd.GetSafeHwnd(), area);
}

}  // namespace frametest

namespace frametest {

std::string Diff(const std::vector<COLORREF>& got, const std::vector<COLORREF>& want, const CRect& area)
{
    if (got.size() != want.size()) return "sizes differ";
    int n = 0;
    std::string first;
    for (std::size_t i = 0; i < got.size(); ++i) {
        if (got[i] == want[i]) continue;
        if (n++ == 0) {
            char b[96];
            std::snprintf(b, sizeof b, "(%d,%d): %06lX, want %06lX", area.left + int(i % area.Width()),
                          area.top + int(i / area.Width()), static_cast<unsigned long>(got[i]),
                          static_cast<unsigned long>(want[i]));
            first = b;
        }
    }
    return n ? std::to_string(n) + " differ, first " + first : "";
}

}  // namespace frametest
