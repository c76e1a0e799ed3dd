// The view's tip marker: made hidden with the view, placed by the host in metres or view
// pixels (zoomed and not), drawn as the layer draws its cross and circle, its record, and
// what bad views and records get.
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>

#include "cursor_test_util.h"
#include "cursors/TipCursor.h"
#include "foundation/platform/archive_test_util.h"

using archive_test::Bytes;
using archive_test::Cat;
using curtest::CursorScene;

namespace {

template <class T> Bytes Le(T v)
{
    Bytes b(sizeof v);
    std::memcpy(b.data(), &v, sizeof v);
    return b;
}

constexpr COLORREF kGreen = RGB(7, 250, 9);  // in no table of the scene

class TipTest : public CursorScene {
protected:
    CTipCursor* Tip() { return view->GetTipCursor(); }
    // The green pixels of a 30 x 30 square of the view centred on c.
    std::vector<CPoint> GreenAround(CPoint c)
    {
        orlex::test::Pump();
        const CRect r(c.x - 15, c.y - 15, c.x + 15, c.y + 15);
        std::vector<CPoint> out;
        const std::vector<COLORREF> px = Shot(r);
        for (size_t i = 0; i < px.size(); ++i)
            if (px[i] == kGreen) out.push_back(CPoint(r.left + int(i % 30), r.top + int(i / 30)));
        return out;
    }
    // What the layer draws for the marker's calls around a centre: the window's client
    // rectangle less the zone, one more to the right and bottom, the arms and the full arc.
    std::vector<CPoint> LayerMarker(CPoint c)
    {
        CClientDC screen(nullptr);
        CDC mem;
        CBitmap bmp;
        mem.CreateCompatibleDC(&screen);
        bmp.CreateCompatibleBitmap(&screen, 20, 20);
        CBitmap* oldBmp = mem.SelectObject(&bmp);
        mem.FillSolidRect(CRect(0, 0, 20, 20), 0);
        CPen pen(PS_DOT, 0, kGreen);
        CPen* oldPen = mem.SelectObject(&pen);
        mem.SetBkMode(TRANSPARENT);
        const CRect r(5, 5, 16, 16);
        mem.MoveTo(10, 5);
        mem.LineTo(10, 17);
        mem.MoveTo(5, 10);
        mem.LineTo(17, 10);
        mem.Arc(&r, CPoint(10, 5), CPoint(10, 5));
        std::vector<CPoint> out;
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 30; ++x) {
                const int wx = x - 5, wy = y - 5;  // the 30-square starts 5 before the window
                if (wx >= 0 && wy >= 0 && wx < 20 && wy < 20 && (mem.GetPixel(wx, wy) & 0xFFFFFF) == kGreen)
                    out.push_back(CPoint(c.x - 15 + x, c.y - 15 + y));
            }
        mem.SelectObject(oldPen);
        mem.SelectObject(oldBmp);
        return out;
    }
};

}  // namespace

TEST_F(TipTest, MadeHiddenWithTheViewAndShownWhereTheHostPutsIt)
{
    Show(64, 128, false);
    ASSERT_NE(Tip()->m_hWnd, nullptr);
    EXPECT_FALSE(Tip()->IsWindowVisible());
    EXPECT_EQ(Tip()->GetCenterPos(), CPoint(64, 64));
    EXPECT_TRUE(Cursors().empty());  // not one of the user's cursors
    EXPECT_EQ(Tip()->GetDistanceToCursor(CPoint(0, 0)), -1.0);
    view->SetTipColor(kGreen);
    EXPECT_TRUE(GreenAround(CPoint(64, 64)).empty());  // nothing while hidden

    struct Case {
        const char* what;
        CRect zoom;  // empty: the whole image
        bool metres;
        double x, y;
        CPoint p;
        CPoint centre;
    } cases[] = {
        // 64 data pixels over 128: a quarter across, half down.
        {"metres", CRect(), true, 0.25e-6, 0.5e-6, CPoint(), CPoint(32, 64)},
        // Zoomed on 16..48: x 16 is the left edge, y 32 the middle.
        {"metres zoomed", CRect(16, 16, 48, 48), true, 0.25e-6, 0.5e-6, CPoint(), CPoint(0, 64)},
        // A point: times data size over view size, then through the zoom.
        {"pixels", CRect(), false, 0, 0, CPoint(64, 32), CPoint(32, 16)},
        {"pixels zoomed", CRect(16, 16, 48, 48), false, 0, 0, CPoint(64, 32), CPoint(32, 24)},
    };
    view->ShowTipCursor(1);
    for (const Case& c : cases) {
        view->ClearZoomList();
        view->AddInitialRecord();
        CRect z = c.zoom;
        if (!z.IsRectEmpty()) view->AddZoomRecord(z, 0);
        view->UpdateImage();
        if (c.metres)
            view->SetTipCursorPos(c.x, c.y);
        else
            view->SetTipCursorPos(c.p);
        EXPECT_EQ(Tip()->GetCenterPos(), c.centre) << c.what;
        CRect w;
        Tip()->GetWindowRect(&w);
        view->ScreenToClient(&w);
        EXPECT_EQ(w, CRect(c.centre.x - 10, c.centre.y - 10, c.centre.x + 10, c.centre.y + 10)) << c.what;
    }
    // The marker as the layer draws it: dotted arms to the last pixel and a whole circle.
    const std::vector<CPoint> shown = GreenAround(CPoint(32, 24)), layer = LayerMarker(CPoint(32, 24));
    EXPECT_FALSE(shown.empty());
    EXPECT_EQ(shown, layer);
    // Its read-out rounds to whole data pixels over the whole image, then through the zoom.
    CURSOR_POS pos{};
    Tip()->GetCursorData(view, &pos);
    EXPECT_EQ(pos.type, 8);
    EXPECT_EQ(pos.pCursor, Tip());
    EXPECT_EQ(CPoint(pos.x1, pos.y1), CPoint(24, 22));
    EXPECT_DOUBLE_EQ(pos.dX1, 24 * 1e-6 / 64);
    EXPECT_STREQ(Tip()->GetText(), "[375.0 nm, 343.7 nm]");
    // Hidden again, the view shows its image there.
    view->ShowTipCursor(0);
    EXPECT_TRUE(GreenAround(CPoint(32, 24)).empty());
}

TEST_F(TipTest, RecordAndBadInput)
{
    Show(64, 128, false);
    view->ShowTipCursor(1);
    view->SetTipCursorPos(CPoint(40, 30));
    const Bytes base = Cat({Le<WORD>(0xFFFF), Le<WORD>(1), Le<WORD>(11), archive_test::Text("CBaseCursor"), Le<int>(5),
                            Le<double>(1.0), Le<double>(1.0), Le<UINT>(0xFFFFFF), Le<UINT>(2), Le<int>(1)});
    const Bytes saved = archive_test::Store([&](CArchive& ar) { Tip()->Serialize(ar); });
    EXPECT_EQ(archive_test::Hex(saved), archive_test::Hex(Cat({base, Le(POINT{20, 15}), Le<int>(1)})));

    CTipCursor loaded;
    archive_test::Load(Cat({base, Le(POINT{7, 9}), Le<int>(0)}), [&](CArchive& ar) { loaded.Serialize(ar); });
    EXPECT_EQ(loaded.GetCenterPos(), CPoint(7, 9));
    EXPECT_EQ(loaded.IsTipShown(), 0);
    const Bytes schema2 = Cat({Le<WORD>(0xFFFF), Le<WORD>(2), Le<WORD>(11), archive_test::Text("CBaseCursor")});
    EXPECT_EQ(archive_test::ArchiveCause([&] {
                  archive_test::Load(Cat({base, Le<int>(3)}), [&](CArchive& ar) { loaded.Serialize(ar); });
              }),
              CArchiveException::endOfFile);
    EXPECT_EQ(archive_test::ArchiveCause([&] {
                  archive_test::Load(Cat({schema2, Bytes(base.begin() + 19, base.end()), Le(POINT{1, 1}), Le<int>(0)}),
                                     [&](CArchive& ar) { loaded.Serialize(ar); });
              }),
              CArchiveException::badSchema);

    // Scan length 0, NaN and infinite places, a zoom to nothing wide, a view of 0 x 0: the
    // marker goes somewhere or nowhere, and nothing breaks.
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    view->SetScanLen(0.0, 0.0);
    view->SetTipCursorPos(1e-7, 1e-7);
    view->SetScanLen(1e-6, 1e-6);
    for (double v : {nan, inf, -inf, 1e300}) view->SetTipCursorPos(v, v);
    view->SetTipCursorPos(CPoint(INT_MAX, INT_MIN));
    view->SetTipCursorScale(nan);
    view->MoveWindow(10, 10, 0, 0);
    view->SetTipCursorPos(CPoint(5, 5));
    view->SetTipCursorPos(2e-7, 2e-7);
    view->SetTipCursorScale(1e-6);
    CURSOR_POS pos{};
    Tip()->GetCursorData(view, &pos);
    EXPECT_EQ(pos.pCursor, nullptr);  // an unusable view reports nothing
    Tip()->GetText();
    orlex::test::Pump();
    CImageView empty(false);
    CRect none(0, 0, 0, 0);
    ASSERT_TRUE(empty.Create(nullptr, "empty", WS_CHILD | WS_VISIBLE, none, &host, 101));
    EXPECT_EQ(empty.GetTipCursor()->GetCenterPos(), CPoint(0, 0));
    empty.SetTipCursorPos(1e-7, 1e-7);
    empty.SetTipCursorPos(CPoint(3, 3));
    orlex::test::Pump();
}
