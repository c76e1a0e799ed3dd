// A host window for the frame tests that logs every message it receives (with a copy of a
// notice's header), and helpers to read what the frame painted.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/MessageCatalogue.h"
#include "imageframe/BorderCon.h"
#include "support/orlex_test.h"

// Rectangles in failure messages as their four edges.
inline void PrintTo(const CRect& r, std::ostream* os)
{
    *os << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

namespace frametest {

struct Message {
    UINT msg = 0;
    WPARAM wp = 0;
    LPARAM lp = 0;
    NMHDR nm{};  // WM_NOTIFY only
};

class Host : public CWnd {
public:
    std::vector<Message> log;
    bool CreateHost(int w, int h);
    std::vector<Message> Of(UINT msg) const;
    // The WM_NOTIFY codes received, in order.
    std::vector<int> NotifyCodes() const;

protected:
    LRESULT WindowProc(UINT msg, WPARAM wp, LPARAM lp) override;
};

// A distinct colour table: entry i is (blue i, green 255 - i, red 3i).
std::vector<tagRGBQUAD> TestTable();

// Selects Arial of this height and weight into dc (font must outlive the selection).
void SelectArial(CDC& dc, CFont& font, int height, int weight);
// What the layer itself draws with `draw` on a `back` background in a bitmap of `size`,
// read over `area`.
std::vector<COLORREF> LayerDrawing(CSize size, const CRect& area, COLORREF back, const std::function<void(CDC&)>& draw);
// The frame's pixels over `area` of its client rectangle, as the screen shows them.
std::vector<COLORREF> Shown(CWnd& wnd, const CRect& area);

}  // namespace frametest

namespace frametest {
// "" when equal, else where the first of how many pixels differ (area's coordinates).
std::string Diff(const std::vector<COLORREF>& got, const std::vector<COLORREF>& want, const CRect& area);
}  // namespace frametest
