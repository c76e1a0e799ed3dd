// Demo scene of the spreadsheet grid: a results table as an instrument program keeps one
// (sorted by a column, a Ctrl selection with a gap, the focus cell with its headers pressed,
// an image column for the state of each run) beside a run log of ten million lines in
// virtual mode, scrolled to its middle.
#include <cstdio>
#include <string>
#include <vector>

#include "demo/demo.h"
#include "foundation/platform/afxcmn.h"
#include "grid/GridCtrl.h"

namespace {

const char* const kSamples[] = {"Si wafer", "Graphite", "Mica", "Gold film", "Calibration grid", "Polymer blend",
                                "Glass", "Copper", "Sapphire", "Carbon tubes"};

// The run log's lines come from the grid's requests: nothing is held per line.
int SupplyLogLine(GV_DISPINFO* info, LPARAM)
{
    GV_ITEM& item = info->item;
    if (item.row == 0) {
        static const char* const kHeads[] = {"", "Time", "Channel", "Event", "Value"};
        item.strText = item.col < 5 ? kHeads[item.col] : "";
    } else if (item.col == 0) {
        item.strText.Format("%d", item.row);
    } else if (item.col == 1) {
        const int s = item.row / 4;
        item.strText.Format("%02d:%02d:%02d.%d", (s / 3600) % 24, (s / 60) % 60, s % 60, (item.row % 4) * 25);
    } else if (item.col == 2) {
        item.strText.Format("Z%d", item.row % 3);
    } else if (item.col == 3) {
        item.strText = item.row % 97 == 0 ? "Tip approach" : "Line done";
    } else {
        item.strText.Format("%.3f nm", (item.row % 1000) * 0.137);
    }
    return TRUE;
}

class SpreadsheetScene : public CWnd {
public:
    CGridCtrl results;
    CGridCtrl log;
    CImageList states;

    bool Build(CWnd* parent, const CRect& area)
    {
        if (!CreateEx(0, nullptr, "spreadsheet", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, area, parent, 0))
            return false;
        MakeStates();
        const int half = area.Width() / 2 - 8;
        if (!results.Create(CRect(4, 4, 4 + half, area.Height() - 4), this, 100) ||
            !log.Create(CRect(half + 12, 4, area.Width() - 4, area.Height() - 4), this, 101))
            return false;
        FillResults();
        FillLog();
        return true;
    }

protected:
    void PostNcDestroy() override { delete this; }

private:
    void MakeStates()
    {
        // Three 12 x 12 marks: done (green), running (amber), failed (red).
        states.Create(12, 12, ILC_COLOR24 | ILC_MASK, 3, 1);
        const COLORREF colours[] = {RGB(40, 160, 60), RGB(230, 160, 20), RGB(200, 40, 40)};
        for (COLORREF c : colours) {
            std::vector<DWORD> bits(12 * 12, 0x00FFFFFF);
            for (int y = 2; y < 10; ++y)
                for (int x = 2; x < 10; ++x)
                    bits[static_cast<size_t>(y * 12 + x)] = (GetRValue(c) << 16) | (GetGValue(c) << 8) | GetBValue(c);
            CBitmap bmp;
            bmp.CreateBitmap(12, 12, 1, 32, bits.data());
            states.Add(&bmp, RGB(255, 255, 255));
        }
    }

    void FillResults()
    {
        CGridCtrl& g = results;
        g.SetImageList(&states);
        g.SetColumnCount(5);
        g.SetRowCount(11);
        g.SetFixedRowCount(1);
        g.SetFixedColumnCount(1);
        const char* heads[] = {"Run", "Sample", "State", "Roughness", "Height"};
        for (int c = 0; c < 5; ++c)
            g.SetItemText(0, c, heads[c]);
        for (int r = 1; r <= 10; ++r) {
            g.SetItemText(r, 0, std::to_string(r).c_str());
            g.SetItemText(r, 1, kSamples[r - 1]);
            const int state = r % 4 == 0 ? 2 : (r % 3 == 0 ? 1 : 0);
            g.SetItemImage(r, 2, state);
            g.SetItemText(r, 2, state == 0 ? "done" : (state == 1 ? "running" : "failed"));
            g.SetItemTextFmt(r, 3, "%.2f nm", 0.35 + ((r * 37) % 19) * 0.21);
            g.SetItemTextFmt(r, 4, "%d nm", 20 + (r * 53) % 170);
            g.SetItemFormat(r, 3, DT_RIGHT | DT_VCENTER | DT_SINGLELINE);
            g.SetItemFormat(r, 4, DT_RIGHT | DT_VCENTER | DT_SINGLELINE);
        }
        g.AutoSize();
        g.SetColumnWidth(1, g.GetColumnWidth(1) + 10);
        g.SortTextItems(1, TRUE);
        // A Ctrl selection with a gap between its two blocks, and the focus in the second.
        g.SetSelectedRange(2, 3, 4, 4);
        g.m_PrevSelectedCellMap = g.m_SelectedCellMap;
        g.SetSelectedRange(7, 3, 8, 4);
        g.m_PrevSelectedCellMap.RemoveAll();
        g.SetFocusCell(8, 4);
        g.Refresh();
    }

    void FillLog()
    {
        CGridCtrl& g = log;
        g.SetVirtualMode(TRUE);
        g.SetCallbackFunc(SupplyLogLine, 0);
        g.SetRowCount(10000001);
        g.SetColumnCount(5);
        g.SetFixedRowCount(1);
        g.SetFixedColumnCount(1);
        g.SetColumnWidth(0, 70);
        g.SetColumnWidth(1, 90);
        g.SetColumnWidth(2, 60);
        g.SetColumnWidth(3, 100);
        g.SetColumnWidth(4, 90);
        // The middle of the log: the thumb dragged there.
        SCROLLINFO si{sizeof(SCROLLINFO), SIF_RANGE | SIF_PAGE};
        g.GetScrollInfo(SB_VERT, &si);
        g.SetScrollPos32(SB_VERT, (si.nMax - static_cast<int>(si.nPage)) / 2);
        g.SetFocusCell(g.GetTopleftNonFixedCell().row + 3, 3);
        g.Refresh();
    }
};

}  // namespace

bool DemoSpreadsheetScene(CWnd* parent, const CRect& area)
{
    auto* scene = new SpreadsheetScene;
    if (!scene->Build(parent, area)) {
        if (!::IsWindow(scene->m_hWnd))
            delete scene;
        return false;
    }
    return true;
}
