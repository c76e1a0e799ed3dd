// The plot control as a host and a user meet it: creation in a placeholder's place, data
// and scale, markers dragged on the window's own pixels, the rubber band zoom with its
// button and scroll bars, and what bad input and a host's reentry get.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "grid_host.h"
#include "plot/MarkerMan.h"

namespace {

using grid_test::Host;

float Wave(int i)
{
    return float(std::sin(i * 0.07) * 2.0);
}

int Mid(const RECT& b)
{
    return (b.top + b.bottom) / 2;
}

// Columns where two pictures of the control differ.
std::vector<int> ChangedColumns(const std::vector<COLORREF>& a, const std::vector<COLORREF>& b, int w)
{
    std::vector<int> cols;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && std::find(cols.begin(), cols.end(), int(i % size_t(w))) == cols.end())
            cols.push_back(int(i % size_t(w)));
    std::sort(cols.begin(), cols.end());
    return cols;
}

// A vertical marker made as a user makes one: pressed left of the plot, dragged in, dropped.
void NewMarker(Host& h, int x)
{
    const RECT b = h.bound();
    h.Drag(POINT{b.left - 20, Mid(b)}, {}, POINT{x, Mid(b)});
}

TEST(GridControl, TakesThePlaceholdersPlaceAndTellsTheParentItsColours)
{
    Host h;
    EXPECT_EQ(h.parent.GetDlgItem(grid_test::kId), &h.plot);
    CRect wr;
    h.plot.GetWindowRect(&wr);
    h.parent.ScreenToClient(&wr);
    EXPECT_EQ(wr, CRect(10, 10, 410, 310));
    CRect client;
    h.plot.GetClientRect(&client);
    EXPECT_EQ(client, CRect(0, 0, 398, 298)); // a border and no scroll bars
    EXPECT_FALSE(h.plot.GetDlgItem(ID_GRID_ZOOM_BUTTON)->IsWindowVisible());
    ASSERT_FALSE(h.parent.notes.empty());
    EXPECT_EQ(h.parent.notes[0].message, MESSAGE_COLOR_CHANGE);
    EXPECT_EQ(h.parent.notes[0].wParam, 900u);
    h.Data(101, 10, Wave);
    EXPECT_EQ(h.At(h.bound().left, h.bound().top + 1), h.map().GridColor);

    CGridControl idle; // before Create, calls do nothing
    std::vector<SET_DATA_STRUCT> none(kMapSlots);
    idle.SetData(none.data());
    idle.SetCurve(nullptr);
    idle.ClearMarkers(3);
    idle.AddHorzMarker(1.0, 0, 0);
    EXPECT_EQ(idle.GetDrawStyle(0), 8u);
    EXPECT_EQ(idle.GetCurveColor(0), COLORREF(-1));
    EXPECT_EQ(idle.OnScaleUpdate(1, nullptr), 0);
}

TEST(GridControlMarkers, AMoveChangesTwoColumnsAndRepaintsNothing)
{
    Host h;
    h.Data(101, 10, Wave);
    const auto plain = h.All();
    const RECT b = h.bound();
    const int w = 398;
    orlex::test::MouseDown(h.plot.m_hWnd, POINT{b.left - 20, Mid(b)});
    orlex::test::MouseMove(h.plot.m_hWnd, POINT{150, Mid(b)});
    const auto at150 = h.All();
    const int paints = h.plot.paints;
    orlex::test::MouseMove(h.plot.m_hWnd, POINT{151, Mid(b)});
    EXPECT_EQ(h.plot.paints, paints);
    EXPECT_EQ(ChangedColumns(at150, h.All(), w), (std::vector<int>{150, 151}));
    EXPECT_EQ(ChangedColumns(plain, at150, w), (std::vector<int>{150}));
    // Out past the right edge and dropped: the marker goes, the plot is as it was.
    orlex::test::MouseMove(h.plot.m_hWnd, POINT{b.right + 30, Mid(b)});
    orlex::test::MouseUp(h.plot.m_hWnd, POINT{b.right + 30, Mid(b)});
    EXPECT_EQ(h.plot.GetMarkerNum(), 0);
    EXPECT_EQ(h.All(), plain);
    h.plot.Invalidate(FALSE);
    h.plot.UpdateWindow();
    EXPECT_EQ(h.All(), plain);
    const auto drops = h.parent.Of(MESSAGE_GRID_NOTIFY);
    ASSERT_FALSE(drops.empty());
    EXPECT_EQ(drops.back().wParam, 514u);
    EXPECT_EQ(drops.back().grid.Deleted, 1);
}

TEST(GridControlMarkers, PairsTurnNormalStackAndStopAtTheirLimits)
{
    Host h;
    h.Data(101, 10, Wave);
    const RECT b = h.bound();
    MapClass& m = h.map();
    CMarkerMan& mm = *m.GetMarkerMan();
    for (int x : {100, 140, 180, 220})
        NewMarker(h, x);
    EXPECT_EQ(h.plot.GetMarkerNum(), 4);
    EXPECT_EQ(h.plot.GetActiveMkrPair(), 1);
    EXPECT_EQ(h.At(100, b.top), mm.NormalColor); // the first pair turned normal
    EXPECT_EQ(h.At(180, b.top), mm.ActiveColor);
    const MARKERVAL v = h.plot.GetMarkers();
    EXPECT_EQ(v.Link[0], 2u);
    EXPECT_EQ(v.Link[2], 8u);
    EXPECT_NEAR(v.Value[1], m.MarkerPix2Dbl(140, 2), 1e-9);

    // A stack: marker 3 dropped on marker 2; a click takes the top one, and the one under
    // it shows again when it moves away.
    const auto before = h.Column(180);
    h.Drag(POINT{220, Mid(b)}, {POINT{200, Mid(b)}}, POINT{180, Mid(b)});
    EXPECT_EQ(mm.Vert[2].Over, mm.Vert[3].ID);
    h.Drag(POINT{181, Mid(b)}, {POINT{190, Mid(b)}}, POINT{250, Mid(b)});
    EXPECT_EQ(h.plot.GetMarkers().Pixel[3], 250);
    EXPECT_EQ(h.Column(180), before);

    for (int k = 0; k < 10; ++k)
        NewMarker(h, 60 + 10 * k);
    EXPECT_EQ(h.plot.GetMarkerNum(), 12); // the thirteenth isn't made
    h.plot.ClearMarkers(3);
    h.plot.SetAllowableMarkers(2);
    for (int x : {100, 140, 180})
        NewMarker(h, x);
    EXPECT_EQ(h.plot.GetMarkerNum(), 2);

    // A horizontal marker stays whole while a vertical one crosses it, and its range stops it.
    h.Drag(POINT{150, b.top - 10}, {}, POINT{150, Mid(b)});
    ASSERT_EQ(h.map().GetMarkerMan()->HzState & 1, 1u);
    orlex::test::AdvanceClock(1000);
    orlex::test::MouseDown(h.plot.m_hWnd, POINT{100, Mid(b) + 40}); // the horizontal one turns normal
    const std::vector<COLORREF> row = orlex::test::Pixels(h.plot.m_hWnd, RECT{b.left, Mid(b), b.right + 1, Mid(b) + 1});
    for (int x = 101; x < 230; x += 7) {
        orlex::test::MouseMove(h.plot.m_hWnd, POINT{x, Mid(b) + 40});
        ASSERT_EQ(orlex::test::Pixels(h.plot.m_hWnd, RECT{b.left, Mid(b), b.right + 1, Mid(b) + 1}), row) << x;
    }
    orlex::test::MouseUp(h.plot.m_hWnd, POINT{230, Mid(b) + 40});
    EXPECT_EQ(orlex::test::Pixels(h.plot.m_hWnd, RECT{b.left, Mid(b), b.right + 1, Mid(b) + 1}), row);
    h.plot.SetMarkerRange(-1.0, 0.5, 0, 1);
    h.Drag(POINT{150, Mid(b)}, {POINT{150, b.top + 20}}, POINT{150, b.top + 5});
    EXPECT_EQ(h.plot.GetHorzMarker(0).Pixel, m.MarkerDbl2Pix(0.5, 1));

    h.plot.SetReadOnlyMarkers(1);
    h.plot.ClearMarkers(3);
    NewMarker(h, 120);
    EXPECT_EQ(h.plot.GetMarkerNum(), 0);
}

TEST(GridControlMarkers, WideEdgesPairDragsAndDrops)
{
    Host h;
    h.Data(101, 10, Wave); // a data point is 10 / 101 wide
    const RECT b = h.bound();
    MapClass& m = h.map();
    NewMarker(h, 150);
    const double v = h.plot.GetMarkers().Value[0];
    h.plot.SetMarker(0, v + 1.0, 1); // the same width: nothing changes
    EXPECT_EQ(h.plot.GetMarkers().Value[0], v);
    h.plot.SetMarker(0, v, 3);
    int l, r;
    m.GetMarkerMan()->MarkerDbl2PixelWidth(3, v, &l, &r);
    // The right edge out by about one point: width 4 becomes 5.
    const int step = m.MarkerDbl2Pix(v + 10.0 / 101, 2) - m.MarkerDbl2Pix(v, 2);
    h.Drag(POINT{r, Mid(b)}, {}, POINT{r + step, Mid(b)});
    EXPECT_EQ(h.plot.GetMarkers().Width[0], 5);
    // The right edge pulled past the left one: width 1.
    m.GetMarkerMan()->MarkerDbl2PixelWidth(5, h.plot.GetMarkers().Value[0], &l, &r);
    h.Drag(POINT{r, Mid(b)}, {POINT{l, Mid(b)}}, POINT{l - 10, Mid(b)});
    EXPECT_EQ(h.plot.GetMarkers().Width[0], 1);

    // A pair dragged by the space between its lines, with the library's pair pointer.
    NewMarker(h, 250);
    const MARKERVAL before = h.plot.GetMarkers();
    const int x0 = before.Pixel[0], x1 = before.Pixel[1];
    orlex::test::MouseDown(h.plot.m_hWnd, POINT{(x0 + x1) / 2, Mid(b)});
    EXPECT_EQ(GetCursor(), m.GetMarkerMan()->Cursor);
    EXPECT_NE(GetCursor(), nullptr);
    orlex::test::MouseMove(h.plot.m_hWnd, POINT{(x0 + x1) / 2 + 20, Mid(b)});
    orlex::test::MouseUp(h.plot.m_hWnd, POINT{(x0 + x1) / 2 + 20, Mid(b)});
    const MARKERVAL after = h.plot.GetMarkers();
    EXPECT_EQ(after.Pixel[0], x0 + 20);
    EXPECT_EQ(after.Pixel[1], x1 + 20);
    // Dropped with one of them outside: both go, and the parent hears it.
    h.Drag(POINT{(x0 + x1) / 2 + 20, Mid(b)}, {}, POINT{b.right + 40, Mid(b)});
    EXPECT_EQ(h.plot.GetMarkerNum(), 0);
    const auto drops = h.parent.Of(MESSAGE_GRID_NOTIFY);
    EXPECT_EQ(drops.back().grid.Deleted, 1);
    EXPECT_EQ(drops.back().grid.Pair, 1);
}

TEST(GridControlMarkers, TrackingReportsEachMoveAndTheHostMayReenter)
{
    Host h;
    h.Data(101, 10, Wave);
    const RECT b = h.bound();
    h.plot.EnableTrackMouse(1);
    NewMarker(h, 150);
    h.parent.notes.clear();
    h.Drag(POINT{150, Mid(b)}, {POINT{160, Mid(b)}}, POINT{170, Mid(b)});
    const auto& n = h.parent.notes;
    // Each move: the marker notice, then the mouse notice with the same record.
    ASSERT_GE(n.size(), 5u);
    EXPECT_EQ(n[0].message, UINT(WM_NOTIFY));
    EXPECT_EQ(n[1].message, MESSAGE_GRID_NOTIFY);
    EXPECT_EQ(n[1].wParam, 512u);
    EXPECT_EQ(n[2].message, MESSAGE_CURSOR_MOUSE_STR);
    EXPECT_EQ(std::memcmp(&n[1].grid, &n[2].grid, sizeof(GRID_NOTIFY)), 0);
    EXPECT_EQ(n[1].grid.Kind, 2);
    EXPECT_EQ(n[1].grid.Wnd, h.plot.m_hWnd);
    EXPECT_EQ(n.back().wParam, 514u);
    EXPECT_NEAR(n.back().grid.Value, h.map().MarkerPix2Dbl(170, 2), 1e-9);

    // A host that takes in new data, or clears the markers, from inside a move.
    int calls = 0;
    h.parent.onGrid = [&](const grid_test::Note& note) {
        if (note.wParam != 512 || calls++ > 2)
            return;
        if (calls == 1)
            h.Data(101, 10, Wave);
        else
            h.plot.ClearMarkers(3);
    };
    h.Drag(POINT{170, Mid(b)}, {POINT{180, Mid(b)}, POINT{190, Mid(b)}, POINT{200, Mid(b)}}, POINT{210, Mid(b)});
    EXPECT_EQ(h.plot.GetMarkerNum(), 0);
    h.parent.onGrid = nullptr;
    NewMarker(h, 120); // the gesture ended: the next press makes a marker again
    EXPECT_EQ(h.plot.GetMarkerNum(), 1);
    // Destroyed with the button down.
    orlex::test::MouseDown(h.plot.m_hWnd, POINT{120, Mid(b)});
    h.plot.DestroyWindow();
    orlex::test::MouseMove(h.parent.m_hWnd, POINT{200, 100});
    orlex::test::MouseUp(h.parent.m_hWnd, POINT{200, 100});
}

TEST(GridControlZoom, TheBandZoomsScrollsAndADoubleClickGoesBack)
{
    Host h;
    h.Data(101, 10, Wave);
    const RECT b = h.bound();
    MapClass& m = h.map();
    NewMarker(h, 200);
    const double markerValue = h.plot.GetMarkers().Value[0];
    const DRECT full = m.GetExtents();
    const auto plain = h.All();
    auto band = [&](POINT from, POINT to, bool release = true) {
        orlex::test::KeyDown(VK_CONTROL);
        orlex::test::MouseDown(h.plot.m_hWnd, from);
        orlex::test::MouseMove(h.plot.m_hWnd, POINT{(from.x + to.x) / 2, (from.y + to.y) / 2});
        orlex::test::MouseMove(h.plot.m_hWnd, to);
        if (release)
            orlex::test::MouseUp(h.plot.m_hWnd, to);
        orlex::test::KeyUp(VK_CONTROL);
    };
    // While dragged, the band inverts the plot along its outline, and nothing repaints.
    const int paints = h.plot.paints;
    const double x120 = m.MarkerPix2Dbl(120, 2), x220 = m.MarkerPix2Dbl(220, 2);
    band(POINT{120, 80}, POINT{220, 40}, false);
    EXPECT_EQ(GetCursor(), LoadCursor(nullptr, IDC_SIZENESW)); // up and right
    orlex::test::MouseMove(h.plot.m_hWnd, POINT{220, 160});
    EXPECT_EQ(GetCursor(), LoadCursor(nullptr, IDC_SIZENWSE));
    EXPECT_EQ(h.plot.paints, paints);
    EXPECT_EQ(h.At(170, 80), plain[80 * 398 + 170] ^ 0xFFFFFF);
    EXPECT_EQ(h.At(220, 120), plain[120 * 398 + 220] ^ 0xFFFFFF);
    orlex::test::MouseUp(h.plot.m_hWnd, POINT{220, 160});
    ASSERT_EQ(h.plot.IsZoomed(), 1);
    const DRECT first = h.plot.GetZoomParms();
    EXPECT_NEAR(first.left, x120, 1e-9);
    EXPECT_NEAR(first.right, x220, 1e-9);
    EXPECT_TRUE(h.plot.GetDlgItem(ID_GRID_ZOOM_BUTTON)->IsWindowVisible());
    CRect client;
    h.plot.GetClientRect(&client);
    EXPECT_LT(client.Width(), 398); // the scroll bars show
    // The marker follows its value into the zoomed axes.
    EXPECT_EQ(h.plot.GetMarkers().Pixel[0], m.MarkerDbl2Pix(markerValue, 2));

    // The other diagonal gives the same window; a band past the edges stops at them.
    orlex::test::Click(h.plot.GetDlgItem(ID_GRID_ZOOM_BUTTON)->m_hWnd, POINT{10, 10});
    EXPECT_EQ(h.plot.IsZoomed(), 0);
    EXPECT_FALSE(h.plot.GetDlgItem(ID_GRID_ZOOM_BUTTON)->IsWindowVisible());
    band(POINT{220, 160}, POINT{120, 80});
    const DRECT second = h.plot.GetZoomParms();
    EXPECT_EQ(std::memcmp(&first, &second, sizeof first), 0);
    h.plot.UnZoom();
    EXPECT_EQ(h.plot.IsZoomed(), 0);
    band(POINT{120, 80}, POINT{2000, 2000});
    EXPECT_NEAR(h.plot.GetZoomParms().right, full.left + (full.right - full.left) * (b.right - 1 - b.left) / (b.right - b.left),
                1e-9);

    // A scroll arrow moves the window one division; a double click returns to the whole plot.
    const DRECT z = h.plot.GetZoomParms();
    int nx = 0, ny = 0;
    m.GetNumMajorLineDivisions(nx, ny);
    h.plot.SendMessage(WM_HSCROLL, SB_LINEDOWN, 0);
    orlex::test::Pump();
    EXPECT_NEAR(h.plot.GetZoomParms().left, z.left + (z.right - z.left) / nx, 1e-9);
    band(POINT{150, 100}, POINT{200, 150}); // a zoom in the zoomed plot
    orlex::test::DoubleClick(h.plot.m_hWnd, POINT{150, 120});
    EXPECT_EQ(h.plot.IsZoomed(), 0);
    EXPECT_EQ(std::memcmp(&full, &(const DRECT&)m.GetExtents(), sizeof full), 0);
    h.plot.GetClientRect(&client);
    EXPECT_EQ(client.Width(), 398);
    EXPECT_FALSE(h.plot.GetDlgItem(ID_GRID_ZOOM_BUTTON)->IsWindowVisible());

    // A flat band is refused; one of no width zooms and is dropped by the axes: two events.
    size_t events = h.parent.Of(MESSAGE_GRID_NOTIFY).size();
    band(POINT{120, 100}, POINT{220, 100});
    EXPECT_EQ(h.plot.IsZoomed(), 0);
    EXPECT_EQ(h.parent.Of(MESSAGE_GRID_NOTIFY).size(), events + 1);
    events = h.parent.Of(MESSAGE_GRID_NOTIFY).size();
    band(POINT{120, 80}, POINT{120, 160});
    EXPECT_EQ(h.plot.IsZoomed(), 0);
    const auto zooms = h.parent.Of(MESSAGE_GRID_NOTIFY);
    EXPECT_EQ(zooms.size(), events + 2);
    EXPECT_EQ(zooms.back().wParam, WPARAM(MESSAGE_GRID_ZOOM_EVENT));
    // Zooms of a few pixels, one in the other: the scroll ranges stay what 16 bits carry.
    for (int k = 0; k < 8; ++k)
        band(POINT{150, 100}, POINT{152, 102});
    int lo = 0, hi = 0;
    h.plot.GetScrollRange(SB_HORZ, &lo, &hi);
    EXPECT_LE(hi, 32767);
    orlex::test::DoubleClick(h.plot.m_hWnd, POINT{150, 120});
    // With Control outside the plot nothing happens, neither zoom nor marker.
    band(POINT{b.left - 20, 100}, POINT{200, 150});
    EXPECT_EQ(h.plot.IsZoomed(), 0);
    EXPECT_EQ(h.plot.GetMarkerNum(), 1);
    EXPECT_EQ(h.All(), plain);
}

TEST(GridControlData, SetDataSetCurveAndTheScaleCommands)
{
    Host h;
    std::vector<float> y = {1, 2, 3, 4, 5};
    int poi[] = {1, -3, 99};
    std::vector<SET_DATA_STRUCT> r(kMapSlots);
    r[0] = SET_DATA_STRUCT{y.data(), nullptr, 5, 8.0, 1.0, 0.5, 3, poi};
    r[1] = SET_DATA_STRUCT{y.data(), nullptr, 1, 1.0};                                          // one point: skipped
    r[2] = SET_DATA_STRUCT{y.data(), nullptr, -4, 1.0};                                         // negative count
    r[4] = SET_DATA_STRUCT{y.data(), y.data(), 5, std::numeric_limits<double>::quiet_NaN(), 0, 0, 2, nullptr};
    h.plot.SetData(r.data());
    Curve* c = h.plot.GetCurve(0);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->Getx(4), 9.0f);
    EXPECT_EQ(c->Gety(0), 1.5f);
    EXPECT_EQ(c->GetPOINumPts(), 3);
    EXPECT_EQ(c->GetPoi(0), 3.0f);
    EXPECT_EQ(h.plot.GetCurve(1), nullptr);
    EXPECT_EQ(h.plot.GetCurve(2), nullptr);
    EXPECT_EQ(h.plot.GetCurve(3), nullptr);
    EXPECT_NE(h.plot.GetCurve(4), nullptr);
    EXPECT_DOUBLE_EQ(h.map().GetMarkerMan()->DataPointSize, 8.0 / 5);
    h.plot.SetData(nullptr);

    // Active curve: an empty slot is refused, and a fall in curves brings it back to 0.
    EXPECT_EQ(h.plot.SetActiveCurve(4), 0);
    EXPECT_EQ(h.plot.GetActiveCurve(), 0); // two curves present, 4 isn't below 2
    EXPECT_EQ(h.plot.SetActiveCurve(7), 0);
    Curve one;
    one.AddPoint(2, 3);
    h.plot.SetCurve(&one);
    EXPECT_EQ(h.plot.GetCurveNumPts(0), 1); // SetCurve keeps a single point
    EXPECT_EQ(h.plot.GetCurve(4), nullptr);
    const int paints = h.plot.paints;
    h.plot.SetCurve(&one, 5, false);
    EXPECT_EQ(h.plot.paints, paints);
    h.plot.SetCurve(nullptr, 6, true);
    h.plot.SetCurve(&one, -1, true);
    h.plot.SetCurve(&one, 2000, true);
    h.plot.ClearGrid();
    EXPECT_EQ(h.plot.IsValidCurve(), 0);
    EXPECT_EQ(h.All(), std::vector<COLORREF>(398 * 298, h.map().GetBkColor()));

    // Scale texts: a bare "2.5" is 2.5 nm and shows so; the same again changes nothing.
    GRID_INFO info = h.plot.GetScaleData();
    info.Range = "2.5";
    info.Center = "1u";
    info.TransMode = 2;
    EXPECT_EQ(h.plot.OnScaleUpdate(2, &info), 1);
    EXPECT_DOUBLE_EQ(h.plot.Range, 2.5e-9);
    EXPECT_STREQ(info.Range.GetString(), "2.50 nm");
    EXPECT_DOUBLE_EQ(h.plot.Center, 1e-6);
    EXPECT_EQ(h.plot.OnScaleUpdate(3, &info), 0);
    EXPECT_EQ(h.plot.OnScaleUpdate(4, &info), 1);
    EXPECT_EQ(h.plot.OnScaleUpdate(0, nullptr), 1);
    EXPECT_EQ(h.map().GetAutoScale().MinY, -1.0);
    // Mean centring follows the data; the host's own scale is asked for, control first.
    info.TransMode = 0;
    info.YScalingMode = 0;
    h.plot.OnScaleUpdate(1, &info);
    h.Data(3, 2, [](int i) { return float(i * 3); });
    EXPECT_DOUBLE_EQ(h.plot.Center, 3.0);
    info.YScalingMode = 2;
    h.parent.notes.clear();
    h.plot.OnScaleUpdate(1, &info);
    ASSERT_EQ(h.parent.Of(MESSAGE_USER_GRID_SCALE_SYNCH).size(), 1u);
}

TEST(GridControlBadInput, OutOfRangeIndexesTinyPlotsAndHugeValues)
{
    Host h;
    for (int i : {-1, 12, 1000}) {
        h.plot.SetMarker(i, 1.0, 3);
        h.plot.DeleteMarker(i, 2, 1);
        h.plot.DeleteMarker(i, 1, 1);
        h.plot.SetMarkerRange(0, 1, i, 2);
        h.plot.ClearMarkerRange(i, 1);
        h.plot.SetMkrColor(i, 0x123456, 1);
        EXPECT_EQ(h.plot.GetMkrColor(i, 2), 0u);
        EXPECT_EQ(h.plot.GetHorzMarker(i).Pixel, 0);
        h.plot.AddHorzMarker(1.0, i, 0);
    }
    h.plot.AddHorzMarker(1.0, 0, 0); // before a scale: refused
    EXPECT_EQ(h.map().GetMarkerMan()->HzState, 0u);
    h.Data(101, 10, Wave);
    EXPECT_EQ(h.map().GetMarkers().Pixel[0], 0);
    EXPECT_LE(h.plot.MarkerDbl2Pix(1e300, 2), 1 << 30);
    EXPECT_GE(h.plot.MarkerDbl2Pix(-1e300, 1), -(1 << 30));
    // A marker copied into one whose saved array is smaller, or absent.
    CMarkerMan& mm = *h.map().GetMarkerMan();
    NewMarker(h, 150);
    CMarker none;
    none = mm.Vert[0];
    EXPECT_EQ(none.SavedCount, 0);
    EXPECT_EQ(none.Value, mm.Vert[0].Value);
    CMarker small;
    small.Saved = new COLORREF[3]();
    small.SavedRoom = 3;
    small = mm.Vert[0];
    EXPECT_EQ(small.SavedCount, 3);
    EXPECT_FALSE(small.SavedValid);

    // A control of no size: gestures and a zoom find nothing to divide by.
    Host tiny(0, 0);
    tiny.Data(101, 10, Wave);
    tiny.Drag(POINT{0, 0}, {POINT{1, 1}}, POINT{2, 2});
    orlex::test::KeyDown(VK_CONTROL);
    tiny.Drag(POINT{0, 0}, {POINT{1, 1}}, POINT{2, 2});
    orlex::test::KeyUp(VK_CONTROL);
    EXPECT_EQ(tiny.plot.IsZoomed(), 0);
    Host slim(77, 100); // a plot rectangle of no width
    slim.Data(101, 10, Wave);
    ASSERT_EQ(slim.bound().left, slim.bound().right);
    EXPECT_EQ(slim.map().MarkerPix2Dbl(5, 2), 0.0);
    orlex::test::KeyDown(VK_CONTROL);
    slim.Drag(POINT{60, 30}, {POINT{60, 40}}, POINT{60, 50});
    orlex::test::KeyUp(VK_CONTROL);
    EXPECT_EQ(slim.plot.IsZoomed(), 0);
}

}  // namespace
