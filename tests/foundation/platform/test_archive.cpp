#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "foundation/platform/afx.h"
#include "tests/foundation/platform/archive_test_util.h"

using namespace archive_test;

// Classes of the object-format tests. Objects are tracked so that each test can free
// whatever a load made, shared or not.
namespace {
std::set<CObject*>& Live()
{
    static std::set<CObject*> live;
    return live;
}
void FreeAll()
{
    while (!Live().empty())
        delete *Live().begin();
}
}  // namespace

class TLeaf : public CObject {
    DECLARE_SERIAL(TLeaf)
public:
    TLeaf() { Live().insert(this); }
    explicit TLeaf(int n) : TLeaf() { m_n = n; }
    ~TLeaf() override { Live().erase(this); }
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring())
            ar << m_n;
        else
            ar >> m_n;
    }
    int m_n = 0;
};
IMPLEMENT_SERIAL(TLeaf, CObject, 1)

// A node with a name, two object pointers and a list: the shapes of the library's records.
class TNode : public CObject {
    DECLARE_SERIAL(TNode)
public:
    TNode() { Live().insert(this); }
    ~TNode() override { Live().erase(this); }
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring()) {
            ar << m_name << m_left << m_right;
        } else {
            ar >> m_name >> m_left >> m_right;
        }
        m_kids.Serialize(ar);
    }
    CString m_name;
    CObject* m_left = nullptr;
    CObject* m_right = nullptr;
    CObList m_kids;
};
IMPLEMENT_SERIAL(TNode, CObject, 1)

// A versionable class that writes schema 3 and reads 1 to 3.
class TVersioned : public CObject {
    DECLARE_SERIAL(TVersioned)
public:
    TVersioned() { Live().insert(this); }
    ~TVersioned() override { Live().erase(this); }
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring()) {
            ar << m_a << m_b;
            return;
        }
        m_schema = ar.GetObjectSchema();
        ar >> m_a;
        if (m_schema >= 2)
            ar >> m_b;
    }
    UINT m_schema = 0;
    int m_a = 0;
    int m_b = -1;
};
IMPLEMENT_SERIAL(TVersioned, CObject, VERSIONABLE_SCHEMA | 3)

// A class that is known by name but not creatable.
class TAbstract : public CObject {
    DECLARE_DYNAMIC(TAbstract)
};
IMPLEMENT_DYNAMIC(TAbstract, CObject)

namespace {

const Bytes kLeafRecord = Cat({{0xFF, 0xFF, 0x01, 0x00, 0x05, 0x00}, Text("TLeaf")});

// Primitive items: exact bytes of each, and the value read back -----------------------------

struct PrimitiveCase {
    const char* name;
    std::function<void(CArchive&)> write;
    Bytes bytes;
    std::function<bool(CArchive&)> readBack;  // reads and compares with what was written
};

class ArchivePrimitive : public ::testing::TestWithParam<PrimitiveCase> {};

TEST_P(ArchivePrimitive, ExactBytesAndRoundTrip)
{
    const PrimitiveCase& c = GetParam();
    const Bytes got = Store(c.write);
    EXPECT_EQ(Hex(got), Hex(c.bytes));
    bool same = false;
    Load(c.bytes, [&](CArchive& ar) {
        same = c.readBack(ar);
        EXPECT_TRUE(ar.IsBufferEmpty()) << "reader left bytes unread";
    });
    EXPECT_TRUE(same);
}

template <class T> PrimitiveCase Prim(const char* name, T v, Bytes b)
{
    return PrimitiveCase{name, [v](CArchive& ar) { ar << v; }, std::move(b), [v](CArchive& ar) {
                             T r{};
                             ar >> r;
                             return std::memcmp(&r, &v, sizeof v) == 0;
                         }};
}

PrimitiveCase Str(const char* name, const CString& s, Bytes prefix)
{
    Bytes b = prefix;
    b.insert(b.end(), s.GetString(), s.GetString() + s.GetLength());
    return PrimitiveCase{name, [s](CArchive& ar) { ar << s; }, b, [s](CArchive& ar) {
                             CString r("junk");
                             ar >> r;
                             return r == s && r.GetLength() == s.GetLength();
                         }};
}

PrimitiveCase Count(const char* name, DWORD_PTR n, Bytes b)
{
    // A count is followed by at least that many bytes in a real file; the padding keeps
    // the reader's refusal of impossible counts out of this case.
    Bytes withPad = b;
    withPad.resize(b.size() + n, 0);
    return PrimitiveCase{name, [n](CArchive& ar) { ar.WriteCount(n); ar.Write(Bytes(n).data(), static_cast<UINT>(n)); },
                         withPad, [n](CArchive& ar) {
                             const DWORD_PTR r = ar.ReadCount();
                             Bytes skip(r);
                             ar.Read(skip.data(), static_cast<UINT>(r));
                             return r == n;
                         }};
}

INSTANTIATE_TEST_SUITE_P(
    Items, ArchivePrimitive,
    ::testing::Values(
        Prim<int>("IntNegative", -2, {0xFE, 0xFF, 0xFF, 0xFF}), Prim<int>("IntMin", INT32_MIN, {0, 0, 0, 0x80}),
        Prim<UINT>("Uint", 0x12345678u, {0x78, 0x56, 0x34, 0x12}),
        Prim<COLORREF>("Colorref", RGB(1, 2, 3), {1, 2, 3, 0}),
        Prim<LONG>("Long", -1, {0xFF, 0xFF, 0xFF, 0xFF}),
        Prim<long>("NativeLongIsFourBytes", 258L, {0x02, 0x01, 0, 0}),
        Prim<unsigned long>("NativeULongIsFourBytes", 0xFFFFFFFFul, {0xFF, 0xFF, 0xFF, 0xFF}),
        Prim<WORD>("Word", 0xABCD, {0xCD, 0xAB}), Prim<short>("Short", -3, {0xFD, 0xFF}),
        Prim<BYTE>("Byte", 0xFE, {0xFE}), Prim<char>("Char", 'A', {0x41}),
        Prim<bool>("BoolTrue", true, {0x01}), Prim<bool>("BoolFalse", false, {0x00}),
        Prim<double>("DoubleOne", 1.0, {0, 0, 0, 0, 0, 0, 0xF0, 0x3F}),
        Prim<double>("DoubleMinusTwoPointFive", -2.5, {0, 0, 0, 0, 0, 0, 0x04, 0xC0}),
        Prim<float>("Float", 1.5f, {0, 0, 0xC0, 0x3F}),
        Prim<long long>("Int64", -2LL, {0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}),
        Prim<CPoint>("PointRaw8", CPoint(1, -1), {1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}),
        Prim<CRect>("RectRaw16", CRect(1, 2, 3, 4), {1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0}),
        // String length rule at its boundaries: 254 in a byte, 255 to 0xFFFD in FF + word,
        // 0xFFFE and up in FF FFFF + dword.
        Str("StringEmpty", "", {0x00}), Str("StringShort", "ColorTable", {0x0A}),
        Str("String254", CString('s', 254), {0xFE}), Str("String255", CString('s', 255), {0xFF, 0xFF, 0x00}),
        Str("String0xFFFD", CString('s', 0xFFFD), {0xFF, 0xFD, 0xFF}),
        Str("String0xFFFE", CString('s', 0xFFFE), {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}),
        Str("String0xFFFF", CString('s', 0xFFFF), {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}),
        Str("StringWithNul", CString("a\0b", 3), {0x03}),
        PrimitiveCase{"TextLiteralAsString", [](CArchive& ar) { ar << "abc"; }, {0x03, 'a', 'b', 'c'},
                      [](CArchive& ar) { CString s; ar >> s; return s == "abc"; }},
        Count("Count0", 0, {0x00, 0x00}), Count("Count0xFFFE", 0xFFFE, {0xFE, 0xFF}),
        Count("Count0xFFFF", 0xFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}),
        Count("Count0x10000", 0x10000, {0xFF, 0xFF, 0x00, 0x00, 0x01, 0x00})),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ArchiveString, ReadsTheWideFormNarrowed)
{
    struct {
        Bytes bytes;
        const char* expect;
    } rows[] = {
        {{0xFF, 0xFE, 0xFF, 0x03, 'a', 0, 'b', 0, 0xAC, 0x20}, "ab?"},  // a euro sign has no byte
        {{0xFF, 0xFE, 0xFF, 0x01, 0xE9, 0x00}, "\xe9"},
        {{0xFF, 0xFE, 0xFF, 0x00}, ""},
        {Cat({{0xFF, 0xFE, 0xFF, 0xFF, 0x00, 0x01}, Bytes(512, 'z')}), nullptr},  // 256 chars, word length
    };
    for (const auto& r : rows) {
        CString s;
        Load(r.bytes, [&](CArchive& ar) { ar >> s; });
        if (r.expect)
            EXPECT_STREQ(s, r.expect);
        else
            EXPECT_EQ(s.GetLength(), 256);
    }
}

TEST(ArchiveString, LengthWritersMatchTheRule)
{
    struct {
        ULONGLONG length;
        bool wide;
        Bytes bytes;
    } rows[] = {
        {0, false, {0x00}},
        {254, false, {0xFE}},
        {255, false, {0xFF, 0xFF, 0x00}},
        {0xFFFE, false, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}},
        {0xFFFFFFFFull, false, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}},
        {3, true, {0xFF, 0xFE, 0xFF, 0x03}},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(Hex(Store([&](CArchive& ar) { AfxWriteStringLength(ar, r.length, r.wide); })), Hex(r.bytes));
        bool wide = !r.wide;
        ULONGLONG got = 0;
        Load(r.bytes, [&](CArchive& ar) { got = AfxReadStringLength(ar, &wide); });
        EXPECT_EQ(got, r.length);
        EXPECT_EQ(wide, r.wide);
    }
}

// Object graphs -----------------------------------------------------------------------------

TEST(ArchiveObjects, ClassRecordsAndBackReferencesShareOneIndexSpace)
{
    TLeaf a(7), b(8);
    const Bytes got = Store([&](CArchive& ar) {
        ar << &a;                              // class 1, object 2
        ar << &a;                              // object back-reference 2
        ar << &b;                              // class back-reference 0x8001, object 3
        ar << static_cast<CObject*>(nullptr);  // null
        ar << &b;                              // back-reference 3
    });
    const Bytes want = Cat({kLeafRecord, {7, 0, 0, 0}, {0x02, 0x00}, {0x01, 0x80, 8, 0, 0, 0}, {0x00, 0x00}, {0x03, 0x00}});
    EXPECT_EQ(Hex(got), Hex(want));

    CObject *p[5] = {};
    Load(got, [&](CArchive& ar) {
        for (CObject*& o : p)
            ar >> o;
    });
    ASSERT_NE(p[0], nullptr);
    EXPECT_EQ(p[0], p[1]);
    EXPECT_NE(p[0], p[2]);
    EXPECT_EQ(p[3], nullptr);
    EXPECT_EQ(p[2], p[4]);
    EXPECT_EQ(static_cast<TLeaf*>(p[0])->m_n, 7);
    EXPECT_EQ(static_cast<TLeaf*>(p[2])->m_n, 8);
    EXPECT_TRUE(p[2]->IsKindOf(RUNTIME_CLASS(TLeaf)));
    delete p[0];
    delete p[2];
}

TEST(ArchiveObjects, GraphWithSharedObjectsAndCyclesRoundTrips)
{
    // root -> left leaf L, right = root itself; kids: [L, child node C, null, L];
    // C -> left = root, right = a second leaf M of the same class as L.
    TNode root, child;
    TLeaf l(1), m(2);
    root.m_name = "root";
    root.m_left = &l;
    root.m_right = &root;
    root.m_kids.AddTail(&l);
    root.m_kids.AddTail(&child);
    root.m_kids.AddTail(static_cast<CObject*>(nullptr));
    root.m_kids.AddTail(&l);
    child.m_name = CString('c', 300);
    child.m_left = &root;
    child.m_right = &m;

    const Bytes bytes = Store([&](CArchive& ar) { ar << &root; });
    // The head of the file: the node's class record (index 1), the root (2), its name,
    // then a new class record for the leaf (3) and the leaf (4), then the root itself
    // as back-reference 2.
    const Bytes head = Cat({{0xFF, 0xFF, 0x01, 0x00, 0x05, 0x00}, Text("TNode"), {0x04}, Text("root"),
                            {0xFF, 0xFF, 0x01, 0x00, 0x05, 0x00}, Text("TLeaf"), {1, 0, 0, 0}, {0x02, 0x00},
                            {0x04, 0x00},  // count of kids
                            {0x04, 0x00},  // L again
                            {0x01, 0x80}}); // child: class back-reference to TNode
    ASSERT_GE(bytes.size(), head.size());
    EXPECT_EQ(Hex(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(head.size()))), Hex(head));

    CObject* loaded = nullptr;
    Load(bytes, [&](CArchive& ar) { ar >> loaded; });
    auto* r = dynamic_cast<TNode*>(loaded);
    ASSERT_NE(r, nullptr);
    EXPECT_STREQ(r->m_name, "root");
    EXPECT_EQ(r->m_right, r);
    ASSERT_EQ(r->m_kids.GetCount(), 4);
    POSITION pos = r->m_kids.GetHeadPosition();
    CObject* k0 = r->m_kids.GetNext(pos);
    auto* k1 = dynamic_cast<TNode*>(r->m_kids.GetNext(pos));
    CObject* k2 = r->m_kids.GetNext(pos);
    CObject* k3 = r->m_kids.GetNext(pos);
    EXPECT_EQ(k0, r->m_left);
    EXPECT_EQ(k3, k0);
    EXPECT_EQ(k2, nullptr);
    ASSERT_NE(k1, nullptr);
    EXPECT_EQ(k1->m_name.GetLength(), 300);
    EXPECT_EQ(k1->m_left, r);
    ASSERT_NE(dynamic_cast<TLeaf*>(k1->m_right), nullptr);
    EXPECT_EQ(static_cast<TLeaf*>(k1->m_right)->m_n, 2);
    EXPECT_NE(k1->m_right, k0);

    // Storing the loaded graph again gives the same bytes.
    EXPECT_EQ(Hex(Store([&](CArchive& ar) { ar << loaded; })), Hex(bytes));
    delete k0;
    delete k1->m_right;
    delete k1;
    delete r;
}

TEST(ArchiveObjects, BigIndicesUseTheEscapeForm)
{
    // Leaves fill indices 2..0x7FFF (class TLeaf is 1); then TNode takes 0x8000 and its
    // object 0x8001.
    std::vector<std::unique_ptr<TLeaf>> leaves;
    for (int i = 0; i < 0x7FFE; ++i)
        leaves.push_back(std::make_unique<TLeaf>(i));
    TNode n1, n2;
    Bytes tail;
    const Bytes all = Store([&](CArchive& ar) {
        for (auto& l : leaves)
            ar << l.get();
        ar << &n1;
        ar.Flush();
        const ULONGLONG mark = ar.GetFile()->GetPosition();
        ar << leaves[0].get();      // index 2: a small back-reference
        ar << leaves.back().get();  // index 0x7FFF: big form
        ar << &n2;                  // class 0x8000 in big form, then the object
        ar << &n1;                  // object 0x8001 in big form
        ar.Flush();
        tail.resize(static_cast<size_t>(ar.GetFile()->GetPosition() - mark));
        ar.GetFile()->Seek(static_cast<LONGLONG>(mark), CFile::begin);
        ar.GetFile()->Read(tail.data(), static_cast<UINT>(tail.size()));
    });
    const Bytes want = Cat({{0x02, 0x00}, {0xFF, 0x7F, 0xFF, 0x7F, 0x00, 0x00}, {0xFF, 0x7F, 0x00, 0x80, 0x00, 0x80},
                            {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}, // empty name, null, null, no kids
                            {0xFF, 0x7F, 0x01, 0x80, 0x00, 0x00}});
    EXPECT_EQ(Hex(tail), Hex(want));

    std::vector<CObject*> got(leaves.size() + 5);
    Load(all, [&](CArchive& ar) {
        for (CObject*& o : got)
            ar >> o;
    });
    const size_t n = leaves.size();
    EXPECT_EQ(static_cast<TLeaf*>(got[n - 1])->m_n, 0x7FFD);
    EXPECT_EQ(got[n + 1], got[0]);
    EXPECT_EQ(got[n + 2], got[n - 1]);
    EXPECT_NE(got[n + 3], got[n]);
    EXPECT_TRUE(got[n + 3]->IsKindOf(RUNTIME_CLASS(TNode)));
    EXPECT_EQ(got[n + 4], got[n]);
    std::set<CObject*> made(got.begin(), got.end());
    for (CObject* o : made)
        delete o;
}

TEST(ArchiveObjects, SchemaOfTheLastClassRecordIsReadOnce)
{
    // A versionable class in a file of schema 1 reads the old list; the schema stays for
    // a class back-reference of the same class.
    const Bytes file = Cat({{0xFF, 0xFF, 0x01, 0x00, 0x0A, 0x00}, Text("TVersioned"), {5, 0, 0, 0},
                            {0x01, 0x80}, {6, 0, 0, 0}});
    TVersioned *a = nullptr, *b = nullptr;
    UINT after = 0;
    Load(file, [&](CArchive& ar) {
        ar >> a >> b;
        after = ar.GetObjectSchema();
    });
    ASSERT_TRUE(a && b);
    EXPECT_EQ(a->m_schema, 1u);
    EXPECT_EQ(a->m_a, 5);
    EXPECT_EQ(a->m_b, -1);
    EXPECT_EQ(b->m_schema, 1u);
    EXPECT_EQ(b->m_a, 6);
    EXPECT_EQ(after, static_cast<UINT>(-1));
    delete a;
    delete b;

    // Written, it carries schema 3 (the versionable flag is not in the file).
    TVersioned v;
    v.m_a = 1;
    v.m_b = 2;
    EXPECT_EQ(Hex(Store([&](CArchive& ar) { ar << &v; })),
              Hex(Cat({{0xFF, 0xFF, 0x03, 0x00, 0x0A, 0x00}, Text("TVersioned"), {1, 0, 0, 0, 2, 0, 0, 0}})));

    // SerializeClass alone: schema kept for GetObjectSchema, then -1.
    Load(Cat({{0xFF, 0xFF, 0x02, 0x00, 0x0A, 0x00}, Text("TVersioned")}), [](CArchive& ar) {
        ar.SerializeClass(RUNTIME_CLASS(TVersioned));
        EXPECT_EQ(ar.GetObjectSchema(), 2u);
        EXPECT_EQ(ar.GetObjectSchema(), static_cast<UINT>(-1));
    });
}

// Every refusal and its cause --------------------------------------------------------------

struct RefusalCase {
    const char* name;
    Bytes bytes;
    std::function<void(CArchive&)> read;
    int cause;
};

class ArchiveRefusal : public ::testing::TestWithParam<RefusalCase> {};

TEST_P(ArchiveRefusal, RaisesItsCause)
{
    const RefusalCase& c = GetParam();
    EXPECT_EQ(ArchiveCause([&] { Load(c.bytes, c.read); }), c.cause);
    FreeAll();
}

void readObj(CArchive& ar)
{
    CObject* o = nullptr;
    ar >> o;
}

INSTANTIATE_TEST_SUITE_P(
    Causes, ArchiveRefusal,
    ::testing::Values(
        RefusalCase{"WriteOnLoading", {}, [](CArchive& ar) { ar << 1; }, CArchiveException::readOnly},
        RefusalCase{"RawWriteOnLoading", {}, [](CArchive& ar) { ar.Write("x", 1); }, CArchiveException::readOnly},
        RefusalCase{"IntPastEnd", {1, 2, 3}, [](CArchive& ar) { int v; ar >> v; }, CArchiveException::endOfFile},
        RefusalCase{"RawBlockCutShort", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
                    [](CArchive& ar) { CRect r; ar >> r; }, CArchiveException::endOfFile},
        RefusalCase{"StringLongerThanFile", {0xFF, 0x00, 0x10, 'a'}, [](CArchive& ar) { CString s; ar >> s; },
                    CArchiveException::endOfFile},
        RefusalCase{"HugeStringLength", {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F},
                    [](CArchive& ar) { CString s; ar >> s; }, CArchiveException::endOfFile},
        RefusalCase{"WideStringOddBytes", {0xFF, 0xFE, 0xFF, 0x02, 'a', 0, 'b'}, [](CArchive& ar) { CString s; ar >> s; },
                    CArchiveException::endOfFile},
        RefusalCase{"CountLargerThanFile", {0xFF, 0xFF, 0x00, 0x00, 0x01, 0x00, 1, 2},
                    [](CArchive& ar) { ar.ReadCount(); }, CArchiveException::endOfFile},
        RefusalCase{"ListCountLargerThanFile", {0x10, 0x00, 0, 0}, [](CArchive& ar) { CObList l; l.Serialize(ar); },
                    CArchiveException::endOfFile},
        RefusalCase{"ArrayCountLargerThanFile", {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F},
                    [](CArchive& ar) { CDWordArray a; a.Serialize(ar); }, CArchiveException::endOfFile},
        RefusalCase{"UnknownClassName", Cat({{0xFF, 0xFF, 0x01, 0x00, 0x05, 0x00}, Text("TNone")}), readObj,
                    CArchiveException::badClass},
        RefusalCase{"ClassNameTooLong", Cat({{0xFF, 0xFF, 0x01, 0x00, 0x40, 0x00}, Bytes(64, 'A')}), readObj,
                    CArchiveException::badClass},
        RefusalCase{"ClassNotCreatable", Cat({{0xFF, 0xFF, 0xFF, 0xFF, 0x09, 0x00}, Text("TAbstract")}), readObj,
                    CArchiveException::badClass},
        RefusalCase{"WrongRequestedClass", Cat({kLeafRecord, {1, 0, 0, 0}}),
                    [](CArchive& ar) { ar.ReadObject(RUNTIME_CLASS(TNode)); }, CArchiveException::badClass},
        RefusalCase{"BackReferenceOfWrongClass", Cat({kLeafRecord, {1, 0, 0, 0}, {0x02, 0x00}}),
                    [](CArchive& ar) { ar.ReadObject(RUNTIME_CLASS(TLeaf)); ar.ReadObject(RUNTIME_CLASS(TNode)); },
                    CArchiveException::badClass},
        RefusalCase{"FixedClassOtherSchema", Cat({{0xFF, 0xFF, 0x02, 0x00, 0x05, 0x00}, Text("TLeaf"), {1, 0, 0, 0}}),
                    readObj, CArchiveException::badSchema},
        RefusalCase{"ObjectIndexNotYetUsed", {0x05, 0x00}, readObj, CArchiveException::badIndex},
        RefusalCase{"BigObjectIndexNotYetUsed", {0xFF, 0x7F, 0x00, 0x00, 0x01, 0x00}, readObj, CArchiveException::badIndex},
        RefusalCase{"ClassIndexNotYetUsed", {0x03, 0x80}, readObj, CArchiveException::badIndex},
        RefusalCase{"ClassIndexZero", {0x00, 0x80}, readObj, CArchiveException::badIndex},
        RefusalCase{"ObjectIndexThatIsAClass", Cat({kLeafRecord, {1, 0, 0, 0}, {0x01, 0x00}}),
                    [](CArchive& ar) { readObj(ar); readObj(ar); }, CArchiveException::badIndex},
        RefusalCase{"ClassIndexThatIsAnObject", Cat({kLeafRecord, {1, 0, 0, 0}, {0x02, 0x80}}),
                    [](CArchive& ar) { readObj(ar); readObj(ar); }, CArchiveException::badIndex},
        RefusalCase{"ObjectWhereAClassRecordBelongs", {0x00, 0x00},
                    [](CArchive& ar) { ar.SerializeClass(RUNTIME_CLASS(TLeaf)); }, CArchiveException::badIndex},
        RefusalCase{"ObjectCutShortInsideItsList", Cat({kLeafRecord, {1, 0}}), readObj, CArchiveException::endOfFile}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ArchiveRefusal, ReadOnStoringArchiveAndFileNameInException)
{
    CMemFile file;
    file.SetFilePath("/tmp/some/where.bin");
    CArchive ar(&file, CArchive::store);
    struct {
        std::function<void()> f;
    } rows[] = {{[&] { int v; ar >> v; }}, {[&] { char b[2]; ar.Read(b, 2); }}, {[&] { ar.ReadObject(nullptr); }},
                {[&] { CString s; ar >> s; }}, {[&] { ar.ReadCount(); }}};
    for (auto& r : rows) {
        try {
            r.f();
            ADD_FAILURE() << "no exception";
        } catch (CArchiveException* e) {
            EXPECT_EQ(e->m_cause, CArchiveException::writeOnly);
            EXPECT_STREQ(e->m_strFileName, "/tmp/some/where.bin");
            EXPECT_TRUE(e->IsKindOf(RUNTIME_CLASS(CException)));
            e->Delete();
        }
    }
}

TEST(ArchiveObjects, AnObjectWhoseReadFailsIsFreed)
{
    const size_t before = Live().size();
    EXPECT_EQ(ArchiveCause([&] { Load(Cat({kLeafRecord, {1, 0}}), readObj); }), CArchiveException::endOfFile);
    EXPECT_EQ(Live().size(), before);
}

// Buffering ---------------------------------------------------------------------------------

TEST(ArchiveBuffer, ValuesAcrossBufferEdgesAndBigBlocksRoundTrip)
{
    // A small buffer makes every kind of item straddle a refill.
    Bytes block(1000);
    for (size_t i = 0; i < block.size(); ++i)
        block[i] = static_cast<BYTE>(i * 7);
    auto write = [&](CArchive& ar) {
        for (int i = 0; i < 300; ++i) {
            ar << i << static_cast<double>(i) / 3 << static_cast<BYTE>(i) << CString('x', i % 300);
            if (i % 50 == 0)
                ar.Write(block.data(), static_cast<UINT>(block.size()));
        }
    };
    const Bytes small = Store(write, 128);
    EXPECT_EQ(Hex(small), Hex(Store(write, 4096)));
    Load(small, [&](CArchive& ar) {
        for (int i = 0; i < 300; ++i) {
            int n;
            double d;
            BYTE b;
            CString s;
            ar >> n >> d >> b >> s;
            ASSERT_EQ(n, i);
            ASSERT_EQ(d, static_cast<double>(i) / 3);
            ASSERT_EQ(b, static_cast<BYTE>(i));
            ASSERT_EQ(s.GetLength(), i % 300);
            if (i % 50 == 0) {
                Bytes back(block.size());
                ar.Read(back.data(), static_cast<UINT>(back.size()));
                ASSERT_EQ(back, block);
            }
        }
    }, 128);
}

TEST(ArchiveBuffer, ClosingALoadingArchiveLeavesTheFileWhereReadingStopped)
{
    const Bytes bytes = {1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0};
    Bytes copy = bytes;
    CMemFile file(copy.data(), static_cast<UINT>(copy.size()));
    {
        CArchive ar(&file, CArchive::load);
        int v;
        ar >> v;
        ar.Close();
    }
    EXPECT_EQ(file.GetPosition(), 4u);
    CArchive again(&file, CArchive::load);
    int v = 0;
    again >> v;
    EXPECT_EQ(v, 2);
}

TEST(ArchiveBuffer, StoringArchiveWritesOnlyAtFlushOrClose)
{
    CMemFile file;
    CArchive ar(&file, CArchive::store);
    ar << 5;
    EXPECT_EQ(file.GetLength(), 0u);
    ar.Flush();
    EXPECT_EQ(file.GetLength(), 4u);
    ar << 6;
    ar.Close();
    EXPECT_EQ(file.GetLength(), 8u);
    EXPECT_EQ(ar.GetFile(), nullptr);
}

}  // namespace
