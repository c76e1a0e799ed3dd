// Cursor records in archives: the exact bytes, finding the places again on views of another
// size, and what damaged or strange records get.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>

#include "cursor_test_util.h"
#include "cursors/CrossCursor.h"
#include "foundation/ArchiveVersionControl.h"
#include "foundation/platform/archive_test_util.h"
#include "fuzz/view_input.h"

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

Bytes NewClass(const char* name)
{
    return Cat({Le<WORD>(0xFFFF), Le<WORD>(1), Le<WORD>(WORD(std::strlen(name))), archive_test::Text(name)});
}

// The base record of a cross of this scene: selection zone 5, the scale of a 128-pixel view
// of 1 um, magenta, dotted, deletable by the user.
Bytes BaseFields()
{
    return Cat({Le<int>(5), Le<double>(1e-6 / 128), Le<double>(1e-6 / 128), Le<UINT>(0xFF00FF), Le<UINT>(2), Le<int>(1)});
}

class RecordTest : public CursorScene {
protected:
    Bytes SaveCursors()
    {
        return archive_test::Store([&](CArchive& ar) { view->SerializeCursors(ar); });
    }
    void LoadCursors(const Bytes& b)
    {
        archive_test::Load(b, [&](CArchive& ar) { view->SerializeCursors(ar); });
    }
    CPoint Data(size_t i) { return static_cast<CCrossCursor*>(Cursors().at(i))->GetDataPos(); }
    CPoint Centre(size_t i) { return static_cast<CCrossCursor*>(Cursors().at(i))->GetCenterPos(); }
};

}  // namespace

TEST_F(RecordTest, TwoCrossesStoreTheirRecordsExactly)
{
    for (bool realTime : {false, true}) {
        ArchiveVersionControl::SetRealTime(realTime);
        Show(64, 128, false);
        view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(30, 40));
        view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(90, 20));
        // Real time: view pixels; off-line: data pixels.
        const POINT a = realTime ? POINT{30, 40} : POINT{15, 20};
        const POINT b = realTime ? POINT{90, 20} : POINT{45, 10};
        const Bytes expected = Cat({Le<WORD>(2),
                                    NewClass("CCrossCursor"), NewClass("CBaseCursor"), BaseFields(), Le(a),
                                    Le<WORD>(0x8001), Le<WORD>(0x8003), BaseFields(), Le(b),
                                    Le<int>(0), Le<int>(kCursorCross), Le<int>(64), Le<int>(64)});
        EXPECT_EQ(archive_test::Hex(SaveCursors()), archive_test::Hex(expected)) << realTime;
        delete view;
        view = nullptr;
    }
}

TEST_F(RecordTest, CrossesFindTheirPlacesOnViewsAndImagesOfAnotherSize)
{
    Show(64, 128, false);
    view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(30, 40));
    const Bytes saved = SaveCursors();
    // A view of twice the size: the same data point, twice the view pixels.
    view->MoveWindow(10, 10, 256, 256);
    EXPECT_EQ(Data(0), CPoint(15, 20));
    EXPECT_EQ(Centre(0), CPoint(60, 80));
    LoadCursors(saved);
    ASSERT_EQ(Cursors().size(), 1u);
    EXPECT_EQ(Data(0), CPoint(15, 20));
    EXPECT_EQ(Centre(0), CPoint(60, 80));
    // Saved on a 64 image, loaded onto one of 128: the same place on the sample, twice the
    // data pixels.
    std::vector<int> big(128 * 128, 0);
    DPOINT scan;
    scan.x = scan.y = 1e-6;
    view->DrawImage(big.data(), 128, 128, scan, table.data(), 1.0, 0, 1, {});
    LoadCursors(saved);
    EXPECT_EQ(Centre(0), CPoint(60, 80));
    EXPECT_EQ(Data(0), CPoint(30, 40));
    EXPECT_DOUBLE_EQ(view->GetCursorScaleRatio().x, 1.0);

    // A real-time record keeps its view pixels, and the data point follows from them.
    ArchiveVersionControl::SetRealTime(true);
    LoadCursors(Cat({Le<WORD>(1), NewClass("CCrossCursor"), NewClass("CBaseCursor"), BaseFields(), Le(POINT{100, 50}),
                     Le<int>(0), Le<int>(kCursorCross), Le<int>(128), Le<int>(128)}));
    EXPECT_EQ(Centre(0), CPoint(100, 50));
    EXPECT_EQ(Data(0), CPoint(50, 25));
}

TEST_F(RecordTest, DamagedAndStrangeRecordsLoadCleanOrRaiseTheirCause)
{
    Show(64, 128, false);
    const Bytes tail = Cat({Le<int>(0), Le<int>(5), Le<int>(64), Le<int>(64)});
    auto cross = [&](const Bytes& base, const Bytes& point) {
        return Cat({Le<WORD>(1), NewClass("CCrossCursor"), base, point, tail});
    };
    auto schema = [](WORD s) {
        return Cat({Le<WORD>(0xFFFF), Le<WORD>(s), Le<WORD>(11), archive_test::Text("CBaseCursor")});
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Bytes oddBase = Cat({Le<int>(INT_MIN), Le<double>(nan), Le<double>(-1e300), Le<UINT>(0xFFFFFFFF),
                               Le<UINT>(0xFFFFFFFF), Le<int>(-7)});
    // A zoom record where a cursor belongs is read and dropped.
    const Bytes notCursor = Cat({archive_test::Store([](CArchive& ar) {
                                     CObList list;
                                     CZoomRecord z(CRect(1, 2, 3, 4));
                                     list.AddTail(&z);
                                     list.Serialize(ar);
                                 }),
                                 tail});
    struct Case {
        const char* what;
        Bytes bytes;
        bool noVersioning;
        int cause;  // -1: loads
        size_t cursors;
    };
    const Case cases[] = {
        {"schema 2", cross(Cat({schema(2), BaseFields()}), Le(POINT{1, 1})), false, CArchiveException::badSchema, 0},
        {"no version step", cross(Cat({BaseFields()}), Le(POINT{1, 1})), true, -1, 1},
        {"short point", Cat({Le<WORD>(1), NewClass("CCrossCursor"), schema(1), BaseFields(), Le<int>(3)}), false,
         CArchiveException::endOfFile, 0},
        {"strange fields", cross(Cat({schema(1), oddBase}), Le(POINT{INT_MAX, INT_MIN})), false, -1, 1},
        {"huge zone", cross(Cat({schema(1), Le<int>(INT_MAX), Le<double>(0), Le<double>(0), Le<UINT>(0), Le<UINT>(0),
                                 Le<int>(0)}),
                            Le(POINT{-5, 70000})),
         false, -1, 1},
        {"not a cursor", notCursor, false, -1, 0},
    };
    for (const Case& c : cases) {
        ArchiveVersionControl::SetNoVersioning(c.noVersioning);
        const int cause = archive_test::ArchiveCause([&] { LoadCursors(c.bytes); });
        ArchiveVersionControl::SetNoVersioning(false);
        EXPECT_EQ(cause, c.cause) << c.what;
        EXPECT_EQ(Cursors().size(), c.cursors) << c.what;
        // Whatever came in can be shown, asked and saved again.
        for (CBaseCursor* k : Cursors()) {
            CURSOR_POS pos{};
            k->GetCursorData(view, &pos);
            k->GetText();
            k->Resize(view);
        }
        orlex::test::Pump();
        SaveCursors();
    }
}

// The seeds of the view fuzzer: views with two crosses, whole and cursors alone, each
// setting. ORLEXUI_WRITE_SEEDS=<dir> writes them; otherwise the committed ones must read
// back to their two crosses.
TEST_F(RecordTest, TheViewFuzzerSeedsReadBackToTheirCrosses)
{
    const fuzzview::Header headers[] = {{false, false, false}, {false, true, true}, {true, false, true}};
    std::string dir = __FILE__;
    dir = dir.substr(0, dir.size() - std::strlen("tests/cursors/test_cursor_records.cpp")) + "fuzz/seeds-view/";
    const char* out = std::getenv("ORLEXUI_WRITE_SEEDS");
    for (const fuzzview::Header& h : headers) {
        const std::string name = "view_" + std::to_string(fuzzview::EncodeHeader(h)) + ".bin";
        fuzzview::Apply(h);
        if (out) {
            Show(64, 128, false);
            view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(30, 40));
            view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(90, 20));
            Bytes b = archive_test::Store([&](CArchive& ar) { fuzzview::Serialize(ar, *view, h); });
            b.insert(b.begin(), fuzzview::EncodeHeader(h));
            std::ofstream(std::string(out) + "/" + name, std::ios::binary).write(reinterpret_cast<const char*>(b.data()),
                                                                                std::streamsize(b.size()));
            delete view;
            view = nullptr;
            continue;
        }
        std::ifstream in(dir + name, std::ios::binary);
        ASSERT_TRUE(in.good()) << name;
        Bytes b((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        ASSERT_FALSE(b.empty());
        CImageView loaded(false);
        archive_test::Load(Bytes(b.begin() + 1, b.end()), [&](CArchive& ar) { fuzzview::Serialize(ar, loaded, h); });
        EXPECT_EQ(loaded.GetNumCursors(kCursorCross), 2) << name;
    }
    fuzzview::Apply({false, false, false});
}
