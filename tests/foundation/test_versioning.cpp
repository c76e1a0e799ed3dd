#include <gtest/gtest.h>

#include <functional>

#include "foundation/ArchiveVersionControl.h"
#include "tests/foundation/platform/archive_test_util.h"

using namespace archive_test;

// A record like the view's zoom record: versionable, schema 1, one rectangle as a raw block.
class VZoomRecord : public CObject {
    DECLARE_SERIAL(VZoomRecord)
public:
    void Serialize(CArchive& ar) override
    {
        orlex::SerializeVersion(ar, RUNTIME_CLASS(VZoomRecord), 1, {1});
        if (ar.IsStoring())
            ar.Write(&m_rect, sizeof m_rect);
        else
            ar.Read(&m_rect, sizeof m_rect);
    }
    CRect m_rect;
};
IMPLEMENT_SERIAL(VZoomRecord, CObject, VERSIONABLE_SCHEMA | 1)

// A class like the view: newest schema 2 adds a mode field to schema 1.
class VView : public CObject {
    DECLARE_SERIAL(VView)
public:
    void Serialize(CArchive& ar) override
    {
        m_schemaRead = orlex::SerializeVersion(ar, RUNTIME_CLASS(VView), 2, {1, 2});
        if (ar.IsStoring()) {
            ar << m_size << m_mode;
            return;
        }
        ar >> m_size;
        if (m_schemaRead >= 2)
            ar >> m_mode;
    }
    UINT m_schemaRead = 0;
    int m_size = 0;
    int m_mode = -1;
};
IMPLEMENT_SERIAL(VView, CObject, VERSIONABLE_SCHEMA | 2)

namespace {

const Bytes kRect = {1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0};
const Bytes kZoomName = Text("VZoomRecord");

Bytes ZoomRecordHeader(WORD schema)
{
    return Cat({{0xFF, 0xFF, static_cast<BYTE>(schema), static_cast<BYTE>(schema >> 8), 0x0B, 0x00}, kZoomName});
}

class Versioning : public ::testing::Test {
protected:
    void TearDown() override
    {
        ArchiveVersionControl::SetNoVersioning(false);
        ArchiveVersionControl::SetRealTime(false);
    }
};

TEST_F(Versioning, FlagsDefaultOffAndAreIndependent)
{
    EXPECT_FALSE(ArchiveVersionControl::GetNoVersioning());
    EXPECT_FALSE(ArchiveVersionControl::GetRealTime());
    ArchiveVersionControl::SetRealTime(true);
    EXPECT_TRUE(ArchiveVersionControl::m_realTime);
    EXPECT_FALSE(ArchiveVersionControl::m_noVersioning);
}

TEST_F(Versioning, StoredBytesWithAndWithoutVersioning)
{
    VZoomRecord z;
    z.m_rect = CRect(1, 2, 3, 4);
    struct {
        bool noVersioning;
        std::function<void(CArchive&)> write;
        Bytes bytes;
    } rows[] = {
        // In place: the class record and the rectangle.
        {false, [&](CArchive& ar) { z.Serialize(ar); }, Cat({ZoomRecordHeader(1), kRect})},
        {true, [&](CArchive& ar) { z.Serialize(ar); }, kRect},
        // As an object: the object's class record, then the rule's own record as a
        // back-reference to the same class.
        {false, [&](CArchive& ar) { ar << &z; }, Cat({ZoomRecordHeader(1), {0x01, 0x80}, kRect})},
        // Versioning off leaves object items alone: they always carry their record.
        {true, [&](CArchive& ar) { ar << &z; }, Cat({ZoomRecordHeader(1), kRect})},
    };
    for (const auto& r : rows) {
        ArchiveVersionControl::SetNoVersioning(r.noVersioning);
        EXPECT_EQ(Hex(Store(r.write)), Hex(r.bytes));
    }
}

struct ZoomLoadCase {
    const char* name;
    bool noVersioning;
    Bytes bytes;
    int cause;  // -1: reads the rectangle
};

class ZoomRecordLoad : public ::testing::TestWithParam<ZoomLoadCase> {
protected:
    void TearDown() override { ArchiveVersionControl::SetNoVersioning(false); }
};

TEST_P(ZoomRecordLoad, ReadsOrRefuses)
{
    const ZoomLoadCase& c = GetParam();
    ArchiveVersionControl::SetNoVersioning(c.noVersioning);
    VZoomRecord z;
    const int cause = ArchiveCause([&] { Load(c.bytes, [&](CArchive& ar) { z.Serialize(ar); }); });
    EXPECT_EQ(cause, c.cause);
    if (c.cause == -1)
        EXPECT_EQ(z.m_rect, CRect(1, 2, 3, 4));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ZoomRecordLoad,
    ::testing::Values(ZoomLoadCase{"Schema1", false, Cat({ZoomRecordHeader(1), kRect}), -1},
                      ZoomLoadCase{"Schema2IsBadSchema", false, Cat({ZoomRecordHeader(2), kRect}), CArchiveException::badSchema},
                      ZoomLoadCase{"Schema0IsBadSchema", false, Cat({ZoomRecordHeader(0), kRect}), CArchiveException::badSchema},
                      ZoomLoadCase{"NoVersioningReadsNoRecord", true, kRect, -1},
                      ZoomLoadCase{"RawBlockCutShort", false, Cat({ZoomRecordHeader(1), {1, 0, 0, 0, 2, 0, 0, 0, 3, 0}}),
                                   CArchiveException::endOfFile},
                      ZoomLoadCase{"RawBlockCutShortWithoutRecord", true, {1, 0, 0, 0, 2}, CArchiveException::endOfFile},
                      ZoomLoadCase{"RecordOfAnotherClass", false, Cat({{0xFF, 0xFF, 0x02, 0x00, 0x05, 0x00}, Text("VView"), kRect}),
                                   CArchiveException::badClass}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(Versioning, ViewReadsEachSchemaItKnows)
{
    struct {
        bool noVersioning;
        Bytes bytes;
        UINT schema;
        int mode;
    } rows[] = {
        {false, Cat({{0xFF, 0xFF, 0x01, 0x00, 0x05, 0x00}, Text("VView"), {7, 0, 0, 0}}), 1, -1},
        {false, Cat({{0xFF, 0xFF, 0x02, 0x00, 0x05, 0x00}, Text("VView"), {7, 0, 0, 0, 3, 0, 0, 0}}), 2, 3},
        // Without versioning the newest schema is taken, so the mode field is read.
        {true, {7, 0, 0, 0, 3, 0, 0, 0}, 2, 3},
    };
    for (const auto& r : rows) {
        ArchiveVersionControl::SetNoVersioning(r.noVersioning);
        VView v;
        Load(r.bytes, [&](CArchive& ar) { v.Serialize(ar); });
        EXPECT_EQ(v.m_schemaRead, r.schema);
        EXPECT_EQ(v.m_size, 7);
        EXPECT_EQ(v.m_mode, r.mode);
    }
    ArchiveVersionControl::SetNoVersioning(false);
    EXPECT_EQ(ArchiveCause([] {
                  VView v;
                  Load(Cat({{0xFF, 0xFF, 0x03, 0x00, 0x05, 0x00}, Text("VView"), {7, 0, 0, 0, 3, 0, 0, 0}}),
                       [&](CArchive& ar) { v.Serialize(ar); });
              }),
              CArchiveException::badSchema);
}

TEST_F(Versioning, ObjectsInAListReadBackThroughTheirRecords)
{
    CObList list;
    VZoomRecord a, b;
    a.m_rect = CRect(1, 2, 3, 4);
    b.m_rect = CRect(5, 6, 7, 8);
    list.AddTail(&a);
    list.AddTail(&b);
    const Bytes bytes = Store([&](CArchive& ar) { list.Serialize(ar); });
    // count 2; a: new class record (1), object (2), rule's back-reference; b: class
    // back-reference, object (3), rule's back-reference.
    EXPECT_EQ(Hex(Bytes(bytes.begin(), bytes.begin() + 2 + 17 + 2 + 16 + 2 + 2)),
              Hex(Cat({{0x02, 0x00}, ZoomRecordHeader(1), {0x01, 0x80}, kRect, {0x01, 0x80}, {0x01, 0x80}})));
    CObList back;
    Load(bytes, [&](CArchive& ar) { back.Serialize(ar); });
    ASSERT_EQ(back.GetCount(), 2);
    EXPECT_EQ(static_cast<VZoomRecord*>(back.GetTail())->m_rect, CRect(5, 6, 7, 8));
    while (!back.IsEmpty())
        delete back.RemoveHead();
}

}  // namespace
