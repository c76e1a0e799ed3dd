// Archive records of the zoom record and the view: exact bytes with and without class
// records, both schemas of the view, and the refusals of short and foreign records.
#include <gtest/gtest.h>

#include "foundation/ArchiveVersionControl.h"
#include "imageview/ImageView.h"
#include "imageview/ZoomRecord.h"
#include "tests/foundation/platform/archive_test_util.h"

using namespace archive_test;

namespace {

Bytes Le16(unsigned v) { return {BYTE(v), BYTE(v >> 8)}; }
Bytes Le32(std::uint32_t v) { return {BYTE(v), BYTE(v >> 8), BYTE(v >> 16), BYTE(v >> 24)}; }
Bytes Dbl(double d)
{
    Bytes b(8);
    std::memcpy(b.data(), &d, 8);
    return b;
}
Bytes Rect(int l, int t, int r, int b) { return Cat({Le32(l), Le32(t), Le32(r), Le32(b)}); }
// A new class record: tag, schema, name.
Bytes ClassRecord(const char* name, unsigned schema)
{
    return Cat({{0xFF, 0xFF}, Le16(schema), Le16(unsigned(std::strlen(name))), Text(name)});
}

class Persistence : public ::testing::Test {
protected:
    void TearDown() override { ArchiveVersionControl::SetNoVersioning(false); }
};

TEST_F(Persistence, ZoomRecordBytes)
{
    CZoomRecord z(CRect(1, -2, 300, 70000));
    const Bytes body = Rect(1, -2, 300, 70000);
    EXPECT_EQ(Hex(Store([&](CArchive& ar) { z.Serialize(ar); })), Hex(Cat({ClassRecord("CZoomRecord", 1), body})));
    // As an object: the object's class record, then its own version step finds the class
    // already in the archive and writes its index.
    EXPECT_EQ(Hex(Store([&](CArchive& ar) { ar << &z; })),
              Hex(Cat({ClassRecord("CZoomRecord", 1), Le16(0x8001), body})));
    ArchiveVersionControl::SetNoVersioning(true);
    EXPECT_EQ(Hex(Store([&](CArchive& ar) { z.Serialize(ar); })), Hex(body));

}

TEST_F(Persistence, ZoomRecordRefusals)
{
    const Bytes body = Rect(1, 2, 3, 4);
    struct Case { const char* what; bool noVersioning; Bytes bytes; int cause; } cases[] = {
        {"schema 1 reads", false, Cat({ClassRecord("CZoomRecord", 1), body}), -1},
        {"schema 2 is foreign", false, Cat({ClassRecord("CZoomRecord", 2), body}), CArchiveException::badSchema},
        {"cut inside the rectangle", false, Cat({ClassRecord("CZoomRecord", 1), Bytes(body.begin(), body.begin() + 9)}),
         CArchiveException::endOfFile},
        {"without versioning, cut short", true, Bytes(body.begin(), body.begin() + 15), CArchiveException::endOfFile},
        {"without versioning the record is read as schema 1", true, body, -1},
    };
    for (const Case& c : cases) {
        ArchiveVersionControl::SetNoVersioning(c.noVersioning);
        CZoomRecord z(CRect(9, 9, 9, 9));
        EXPECT_EQ(ArchiveCause([&] { Load(c.bytes, [&](CArchive& ar) { z.Serialize(ar); }); }), c.cause) << c.what;
        EXPECT_EQ(z.GetRecord(), c.cause < 0 ? CRect(1, 2, 3, 4) : CRect(9, 9, 9, 9)) << c.what;
    }
}

// A view with three zoom records, the middle one current.
void Prepare(CImageView& v)
{
    v.SetScanLen(2e-6, 1e-6);
    std::vector<int> none;
    CRect a(0, 0, 64, 32), b(8, 4, 40, 20), c(10, 5, 20, 15);
    DPOINT scan;
    scan.x = 2e-6;
    scan.y = 1e-6;
    v.DrawImage(nullptr, 32, 64, scan, nullptr, 1.0, 0, 1, {});
    v.AddZoomRecord(b, 0);
    v.AddZoomRecord(c, 0);
    v.ZoomTo(1, 0);
    v.SetTooltipDisplayLevel(2);
    v.SetMode(7);
}

Bytes ViewTail(int mode, bool withMode)
{
    Bytes t = Cat({Le32(64), Le32(32), Dbl(2e-6), Dbl(1e-6), Le32(2)});
    if (withMode) t = Cat({t, Le32(mode)});
    return t;
}

TEST_F(Persistence, ViewBytes)
{
    CImageView v(false);
    Prepare(v);
    // Objects and classes share one index: view class 1, record class 2, records 3, 4, 5.
    const Bytes zoomList = Cat({Le16(3), ClassRecord("CZoomRecord", 1), Le16(0x8002), Rect(0, 0, 64, 32),  //
                                Le16(0x8002), Le16(0x8002), Rect(8, 4, 40, 20),                          //
                                Le16(0x8002), Le16(0x8002), Rect(10, 5, 20, 15)});
    const Bytes want = Cat({ClassRecord("CImageView", 2), Le16(0), zoomList, Le16(4), ViewTail(7, true)});
    EXPECT_EQ(Hex(Store([&](CArchive& ar) { v.Serialize(ar); })), Hex(want));

    ArchiveVersionControl::SetNoVersioning(true);
    const Bytes bare = Cat({Le16(0), Le16(3), ClassRecord("CZoomRecord", 1), Rect(0, 0, 64, 32),  //
                            Le16(0x8001), Rect(8, 4, 40, 20), Le16(0x8001), Rect(10, 5, 20, 15),   //
                            Le16(3), ViewTail(7, true)});
    EXPECT_EQ(Hex(Store([&](CArchive& ar) { v.Serialize(ar); })), Hex(bare));
    // Read back without versioning: the newest schema, mode included.
    CImageView back(true);
    Load(bare, [&](CArchive& ar) { back.Serialize(ar); });
    EXPECT_EQ(back.GetZoomCount(), 3);
    EXPECT_EQ(back.GetZoomIndex(), 1u);
    EXPECT_EQ(back.GetZoomRect(), CRect(8, 4, 40, 20));
    EXPECT_EQ(back.GetMode(), 7);
    EXPECT_EQ(back.GetDataSize0(), CSize(64, 32));
    EXPECT_DOUBLE_EQ(back.GetScanLen(), 2e-6);
    EXPECT_EQ(back.GetTooltipDisplayLevel(), 2);
    EXPECT_FALSE(back.HasData());
}

TEST_F(Persistence, ViewSchemasAndRefusals)
{
    CImageView v(false);
    Prepare(v);
    const Bytes stored = Store([&](CArchive& ar) { v.Serialize(ar); });
    // Schema 1: the same list without the mode.
    Bytes schema1 = stored;
    schema1[2] = 1;
    schema1.resize(schema1.size() - 4);
    struct Case {
        const char* what;
        Bytes bytes;
        int cause;
        int mode;  // after loading into a view whose mode was 3
    } cases[] = {
        {"schema 2", stored, -1, 7},
        {"schema 1 leaves the mode alone", schema1, -1, 3},
        {"a zoom record of schema 2 is foreign", [&] { Bytes b = stored; b[22] = 2; return b; }(),
         CArchiveException::badSchema, 3},
        {"schema 3 is foreign", [&] { Bytes b = stored; b[2] = 3; return b; }(), CArchiveException::badSchema, 3},
        {"cut in the last field", Bytes(stored.begin(), stored.end() - 2), CArchiveException::endOfFile, 3},
        {"cut inside a record", Bytes(stored.begin(), stored.begin() + 60), CArchiveException::endOfFile, 3},
    };
    for (const Case& c : cases) {
        CImageView back(false);
        back.SetMode(3);
        EXPECT_EQ(ArchiveCause([&] { Load(c.bytes, [&](CArchive& ar) { back.Serialize(ar); }); }), c.cause) << c.what;
        EXPECT_EQ(back.GetMode(), c.mode) << c.what;
        if (c.cause < 0) {
            EXPECT_EQ(back.GetZoomCount(), 3) << c.what;
            EXPECT_EQ(back.GetZoomRect(), CRect(8, 4, 40, 20)) << c.what;
        }
    }
}

TEST_F(Persistence, DamagedViewRecordsLeaveEachObjectOneOwner)
{
    // The current record is a fresh object instead of a back-reference, and the list
    // holds the same record twice: nothing may be owned twice or leak.
    const Bytes b = Cat({ClassRecord("CImageView", 2), Le16(0),                               //
                         Le16(2), ClassRecord("CZoomRecord", 1), Le16(0x8002), Rect(0, 0, 8, 8), //
                         Le16(3),                                                             //
                         Le16(0x8002), Le16(0x8002), Rect(1, 1, 4, 4),                        //
                         ViewTail(0, true)});
    CImageView v(false);
    EXPECT_EQ(ArchiveCause([&] { Load(b, [&](CArchive& ar) { v.Serialize(ar); }); }), -1);
    EXPECT_EQ(v.GetZoomCount(), 1);
    EXPECT_EQ(v.GetZoomRect(), CRect(0, 0, 0, 0));
}

}  // namespace
