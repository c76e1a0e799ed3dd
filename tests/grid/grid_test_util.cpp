#include "grid_test_util.h"

#include <gtest/gtest.h>

#include <cstring>

namespace gridtest {

bool Host::Make(int w, int h)
{
    LPCSTR cls = AfxRegisterWndClass(CS_DBLCLKS, nullptr, reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_WINDOW + 1)));
    return CreateEx(0, cls, "grid host", WS_POPUP | WS_VISIBLE, CRect(40, 40, 40 + w, 40 + h), nullptr, 0) != 0;
}

std::vector<int> Host::Codes() const
{
    std::vector<int> out;
    for (const Notice& n : notices)
        out.push_back(static_cast<int>(n.code));
    return out;
}

std::vector<Notice> Host::Of(UINT code) const
{
    std::vector<Notice> out;
    for (const Notice& n : notices)
        if (n.code == code)
            out.push_back(n);
    return out;
}

LRESULT Host::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND) {
        commands.emplace_back(wParam, lParam);
        return 0;
    }
    if (message != WM_NOTIFY)
        return CWnd::WindowProc(message, wParam, lParam);
    const auto* hdr = reinterpret_cast<const NMHDR*>(lParam);
    Notice n;
    n.code = hdr->code;
    n.id = hdr->idFrom;
    n.from = hdr->hwndFrom;
    if (hdr->code == GVN_ODCACHEHINT) {
        n.range = reinterpret_cast<const GV_CACHEHINT*>(lParam)->range;
    } else if (hdr->code == GVN_GETDISPINFO || (hdr->code == GVN_ENDLABELEDIT && hdr->idFrom == 8)) {
        auto* info = reinterpret_cast<GV_DISPINFO*>(lParam);
        n.item = info->item;
        n.row = info->item.row;
        n.col = info->item.col;
        if (hdr->code == GVN_GETDISPINFO && supply)
            supply(info->item);
    } else {
        const auto* nm = reinterpret_cast<const NM_GRIDVIEW*>(lParam);
        n.row = nm->iRow;
        n.col = nm->iColumn;
    }
    notices.push_back(n);
    const auto it = answers.find(hdr->code);
    return it == answers.end() ? 0 : it->second;
}

int RecordingGrid::Count(UINT message, UINT code) const
{
    int n = 0;
    for (const auto& [m, c] : scrolls)
        n += m == message && c == code;
    return n;
}

void GridFixture::SetUp()
{
    orlex::test::Init();
    ASSERT_TRUE(host.Make(640, 480));
}

void GridFixture::TearDown()
{
    if (::IsWindow(grid.m_hWnd))
        grid.DestroyWindow();
    host.DestroyWindow();
}

void GridFixture::MakeGrid(int w, int h, DWORD style)
{
    ASSERT_TRUE(grid.Create(CRect(0, 0, w, h), &host, 1234, style));
    orlex::test::Pump();
}

CSize MessageFontExtent(const char* text)
{
    NONCLIENTMETRICS ncm{};
    ncm.cbSize = sizeof(ncm);
    SystemParametersInfo(SPI_GETNONCLIENTMETRICS, sizeof(ncm), &ncm, 0);
    CFont font;
    font.CreateFontIndirect(&ncm.lfMessageFont);
    HDC hdc = ::GetDC(nullptr);
    CDC* dc = CDC::FromHandle(hdc);
    CFont* old = dc->SelectObject(&font);
    const CSize size = dc->GetTextExtent(text, static_cast<int>(std::strlen(text)));
    dc->SelectObject(old);
    ::ReleaseDC(nullptr, hdc);
    return size;
}

CSize DefaultCellSize()
{
    CSize s = MessageFontExtent(" XXXXXXXXXXXX ");
    return CSize(s.cx, s.cy * 3 / 2);
}

}  // namespace gridtest
