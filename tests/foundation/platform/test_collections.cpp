#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

#include "foundation/platform/afx.h"
#include "tests/foundation/platform/archive_test_util.h"

using namespace archive_test;

namespace {

using PointList = CList<CPoint, CPoint&>;

std::string Dump(const PointList& l)
{
    std::string s;
    for (POSITION p = l.GetHeadPosition(); p;) {
        const CPoint& pt = l.GetNext(p);
        s += std::to_string(pt.x) + "," + std::to_string(pt.y) + " ";
    }
    return s;
}

// Edits of a list of points (the polyline's vertices), each from the list 1,1 2,2 3,3.
struct ListCase {
    const char* name;
    std::function<void(PointList&)> edit;
    const char* expect;
};

class PointListEdit : public ::testing::TestWithParam<ListCase> {};

TEST_P(PointListEdit, LeavesTheList)
{
    PointList l(10);
    CPoint a(1, 1), b(2, 2), c(3, 3);
    l.AddTail(a);
    l.AddTail(b);
    l.AddTail(c);
    GetParam().edit(l);
    EXPECT_EQ(Dump(l), GetParam().expect);
    // Walking backwards must see the same elements in reverse.
    std::string back;
    for (POSITION p = l.GetTailPosition(); p;) {
        const CPoint& pt = l.GetPrev(p);
        back = std::to_string(pt.x) + "," + std::to_string(pt.y) + " " + back;
    }
    EXPECT_EQ(back, GetParam().expect);
}

INSTANTIATE_TEST_SUITE_P(
    Edits, PointListEdit,
    ::testing::Values(
        ListCase{"AddHead", [](PointList& l) { CPoint p(0, 0); l.AddHead(p); }, "0,0 1,1 2,2 3,3 "},
        ListCase{"InsertBeforeMiddle", [](PointList& l) { CPoint p(9, 9); l.InsertBefore(l.FindIndex(1), p); }, "1,1 9,9 2,2 3,3 "},
        ListCase{"InsertAfterTail", [](PointList& l) { CPoint p(9, 9); l.InsertAfter(l.GetTailPosition(), p); }, "1,1 2,2 3,3 9,9 "},
        ListCase{"InsertBeforeNullIsHead", [](PointList& l) { CPoint p(9, 9); l.InsertBefore(nullptr, p); }, "9,9 1,1 2,2 3,3 "},
        ListCase{"InsertAfterNullIsTail", [](PointList& l) { CPoint p(9, 9); l.InsertAfter(nullptr, p); }, "1,1 2,2 3,3 9,9 "},
        ListCase{"RemoveHeadTail", [](PointList& l) { l.RemoveHead(); l.RemoveTail(); }, "2,2 "},
        ListCase{"RemoveAtMiddle", [](PointList& l) { l.RemoveAt(l.FindIndex(1)); }, "1,1 3,3 "},
        ListCase{"RemoveAtHeadThenAddHead", [](PointList& l) { l.RemoveAt(l.GetHeadPosition()); CPoint p(7, 7); l.AddHead(p); }, "7,7 2,2 3,3 "},
        ListCase{"SetAtFound", [](PointList& l) { CPoint k(2, 2), v(5, 5); l.SetAt(l.Find(k), v); }, "1,1 5,5 3,3 "},
        ListCase{"FindAfterStart", [](PointList& l) { CPoint k(1, 1); l.AddTail(k); POSITION p = l.Find(k, l.GetHeadPosition()); l.RemoveAt(p); }, "1,1 2,2 3,3 "},
        ListCase{"RemoveAllThenAdd", [](PointList& l) { l.RemoveAll(); CPoint p(4, 4); l.AddTail(p); }, "4,4 "},
        ListCase{"EmptyListReadsAreHarmless", [](PointList& l) { l.RemoveAll(); l.RemoveHead(); l.RemoveTail(); l.RemoveAt(nullptr); l.GetHead(); }, ""}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(PointList, CountsIndicesAndCopies)
{
    PointList l;
    EXPECT_TRUE(l.IsEmpty());
    for (int i = 0; i < 5; ++i) {
        CPoint p(i, -i);
        l.AddTail(p);
    }
    EXPECT_EQ(l.GetCount(), 5);
    EXPECT_EQ(l.GetAt(l.FindIndex(4)), CPoint(4, -4));
    EXPECT_EQ(l.FindIndex(5), nullptr);
    EXPECT_EQ(l.FindIndex(-1), nullptr);
    CPoint missing(9, 9);
    EXPECT_EQ(l.Find(missing), nullptr);
    PointList copy(l);
    copy.RemoveHead();
    EXPECT_EQ(l.GetCount(), 5);
    EXPECT_EQ(copy.GetHead(), CPoint(1, -1));
    EXPECT_EQ(l.GetTail(), CPoint(4, -4));
}

// Arrays: edits from 10 20 30.
struct ArrayCase {
    const char* name;
    std::function<void(CUIntArray&)> edit;
    std::vector<UINT> expect;
};

class UIntArrayEdit : public ::testing::TestWithParam<ArrayCase> {};

TEST_P(UIntArrayEdit, LeavesTheArray)
{
    CUIntArray a;
    a.Add(10);
    a.Add(20);
    a.Add(30);
    GetParam().edit(a);
    std::vector<UINT> got(a.GetData(), a.GetData() + a.GetSize());
    EXPECT_EQ(got, GetParam().expect);
    EXPECT_EQ(a.GetUpperBound(), a.GetSize() - 1);
}

INSTANTIATE_TEST_SUITE_P(
    Edits, UIntArrayEdit,
    ::testing::Values(
        ArrayCase{"InsertAtMiddleTwice", [](CUIntArray& a) { a.InsertAt(1, 5, 2); }, {10, 5, 5, 20, 30}},
        ArrayCase{"InsertAtPastEndGrows", [](CUIntArray& a) { a.InsertAt(5, 7); }, {10, 20, 30, 0, 0, 7}},
        ArrayCase{"RemoveAtClamped", [](CUIntArray& a) { a.RemoveAt(1, 9); }, {10}},
        ArrayCase{"RemoveAtBadIndexIgnored", [](CUIntArray& a) { a.RemoveAt(3); a.RemoveAt(-1); }, {10, 20, 30}},
        ArrayCase{"SetSizeShrinkGrow", [](CUIntArray& a) { a.SetSize(1); a.SetSize(3); }, {10, 0, 0}},
        ArrayCase{"SetAtGrow", [](CUIntArray& a) { a.SetAtGrow(4, 1); }, {10, 20, 30, 0, 1}},
        ArrayCase{"SetAtOutOfRangeIgnored", [](CUIntArray& a) { a.SetAt(3, 1); a.SetAt(0, 11); }, {11, 20, 30}},
        ArrayCase{"ElementAtWrites", [](CUIntArray& a) { a[2] = 33; a.ElementAt(1) += 1; }, {10, 21, 33}},
        ArrayCase{"AppendSelf", [](CUIntArray& a) { EXPECT_EQ(a.Append(a), 3); }, {10, 20, 30, 10, 20, 30}},
        ArrayCase{"AddOwnElement", [](CUIntArray& a) { for (int i = 0; i < 40; ++i) a.Add(a[0]); a.SetSize(4); }, {10, 20, 30, 10}},
        ArrayCase{"InsertArray", [](CUIntArray& a) { CUIntArray b; b.Add(1); b.Add(2); a.InsertAt(1, &b); }, {10, 1, 2, 20, 30}},
        ArrayCase{"RemoveAll", [](CUIntArray& a) { a.RemoveAll(); }, {}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Arrays, BadReadsGiveDefaults)
{
    CStringArray s;
    s.Add("a");
    EXPECT_STREQ(s.GetAt(5), "");
    EXPECT_STREQ(s[-1], "");
    CStringArray copy;
    copy.Add("x");
    copy = s;
    EXPECT_EQ(copy.GetSize(), 1);
    EXPECT_STREQ(copy[0], "a");
}

// The archive forms of the collections: count, then the elements.
TEST(Collections, ArchiveForms)
{
    CDWordArray dw;
    dw.Add(1);
    dw.Add(0xA0B0C0D0);
    CWordArray w;
    w.Add(0x1234);
    CByteArray b;
    b.Add(7);
    CStringArray s;
    s.Add("ab");
    s.Add("");
    CList<int, int> li;
    li.AddTail(-1);
    struct {
        CObject* coll;
        std::function<CObject*()> fresh;
        Bytes bytes;
    } rows[] = {
        {&dw, [] { return new CDWordArray; }, {0x02, 0x00, 1, 0, 0, 0, 0xD0, 0xC0, 0xB0, 0xA0}},
        {&w, [] { return new CWordArray; }, {0x01, 0x00, 0x34, 0x12}},
        {&b, [] { return new CByteArray; }, {0x01, 0x00, 0x07}},
        {&s, [] { return new CStringArray; }, {0x02, 0x00, 0x02, 'a', 'b', 0x00}},
        {&li, [] { return new CList<int, int>; }, {0x01, 0x00, 0xFF, 0xFF, 0xFF, 0xFF}},
    };
    for (auto& r : rows) {
        const Bytes got = Store([&](CArchive& ar) { r.coll->Serialize(ar); });
        EXPECT_EQ(Hex(got), Hex(r.bytes));
        CObject* back = r.fresh();
        Load(r.bytes, [&](CArchive& ar) { back->Serialize(ar); });
        EXPECT_EQ(Hex(Store([&](CArchive& ar) { back->Serialize(ar); })), Hex(r.bytes));
        delete back;
    }
}

TEST(Collections, ObjectListHoldsSharedObjectsAndNulls)
{
    CObList list;
    CObList inner;  // a serial class of its own: schema 0
    // As an object: a list pointer alone would append the other list's elements.
    list.AddTail(static_cast<CObject*>(&inner));
    list.AddTail(static_cast<CObject*>(nullptr));
    list.AddTail(static_cast<CObject*>(&inner));
    const Bytes got = Store([&](CArchive& ar) { list.Serialize(ar); });
    const Bytes want = Cat({{0x03, 0x00}, {0xFF, 0xFF, 0x00, 0x00, 0x07, 0x00}, Text("CObList"), {0x00, 0x00},
                            {0x00, 0x00}, {0x02, 0x00}});
    EXPECT_EQ(Hex(got), Hex(want));
    CObList back;
    Load(got, [&](CArchive& ar) { back.Serialize(ar); });
    ASSERT_EQ(back.GetCount(), 3);
    EXPECT_EQ(back.GetHead(), back.GetTail());
    EXPECT_EQ(back.GetAt(back.FindIndex(1)), nullptr);
    EXPECT_TRUE(back.GetHead()->IsKindOf(RUNTIME_CLASS(CObList)));
    delete back.GetHead();
}

// The grid's selection map: DWORD keys (col << 16 | row) to cell ids.
struct Cell {
    int row = -1, col = -1;
    bool operator==(const Cell& o) const { return row == o.row && col == o.col; }
};

TEST(Map, LookupSetRemoveAndWalk)
{
    CMap<DWORD, DWORD, Cell, Cell&> m;
    m.InitHashTable(17);
    std::map<DWORD, Cell> model;
    for (int row = 0; row < 30; ++row)
        for (int col = 0; col < 5; ++col) {
            const DWORD key = (static_cast<DWORD>(col & 0xFFFF) << 16) | (row & 0xFFFF);
            Cell c{row, col};
            m.SetAt(key, c);
            model[key] = c;
        }
    for (int row = 0; row < 30; row += 3) {
        EXPECT_TRUE(m.RemoveKey(static_cast<DWORD>(row)));
        model.erase(static_cast<DWORD>(row));
    }
    EXPECT_FALSE(m.RemoveKey(0));
    ASSERT_EQ(m.GetCount(), static_cast<INT_PTR>(model.size()));

    std::map<DWORD, Cell> walked;
    for (POSITION p = m.GetStartPosition(); p;) {
        DWORD k;
        Cell c;
        m.GetNextAssoc(p, k, c);
        EXPECT_TRUE(walked.emplace(k, c).second) << "key seen twice";
    }
    EXPECT_EQ(walked, model);

    Cell c;
    EXPECT_TRUE(m.Lookup((2u << 16) | 4u, c));
    EXPECT_EQ(c, (Cell{4, 2}));
    Cell untouched{7, 7};
    EXPECT_FALSE(m.Lookup(0xFFFFFFFF, untouched));
    EXPECT_EQ(untouched, (Cell{7, 7}));

    // A copy is independent; rehashing keeps everything.
    CMap<DWORD, DWORD, Cell, Cell&> copy(m);
    copy.RemoveAll();
    EXPECT_TRUE(copy.IsEmpty());
    m.InitHashTable(3);
    EXPECT_EQ(m.GetCount(), static_cast<INT_PTR>(model.size()));
    EXPECT_TRUE(m.Lookup((2u << 16) | 4u, c));
    m[0x12345] = Cell{1, 2};
    EXPECT_EQ(m.GetCount(), static_cast<INT_PTR>(model.size()) + 1);
}

TEST(Map, TheTableGrowsWithTheEntries)
{
    // A million selected cells must not share 17 chains: the buckets follow the count.
    CMap<ULONGLONG, ULONGLONG, Cell, Cell&> m;
    EXPECT_EQ(m.GetHashTableSize(), 17u);
    for (int i = 0; i < 100000; ++i) {
        Cell c{i, i % 7};
        m.SetAt(static_cast<ULONGLONG>(i) * 7919u, c);
    }
    EXPECT_EQ(m.GetCount(), 100000);
    EXPECT_GE(m.GetHashTableSize(), 100000u / 2);
    Cell c;
    for (int i = 0; i < 100000; i += 997) {
        ASSERT_TRUE(m.Lookup(static_cast<ULONGLONG>(i) * 7919u, c));
        EXPECT_EQ(c, (Cell{i, i % 7}));
    }
    INT_PTR walked = 0;
    for (POSITION p = m.GetStartPosition(); p; ++walked) {
        ULONGLONG k;
        m.GetNextAssoc(p, k, c);
    }
    EXPECT_EQ(walked, 100000);
}

TEST(Map, StringKeys)
{
    CMap<CString, const CString&, int, int> m;
    m[CString("alpha")] = 1;
    m.SetAt(CString("beta"), 2);
    m[CString("alpha")] += 10;
    int v = 0;
    EXPECT_TRUE(m.Lookup(CString("alpha"), v));
    EXPECT_EQ(v, 11);
    EXPECT_FALSE(m.Lookup(CString("ALPHA"), v));
    EXPECT_EQ(m.GetCount(), 2);
}

// Typed pointer wrappers over object lists and arrays (the view's cursors and zoom list,
// the grid's rows).
class Rec : public CObject {
public:
    explicit Rec(int n) : m_n(n) {}
    int m_n;
};

TEST(TypedPointers, ListAndArrayHandOutTheirType)
{
    Rec a(1), b(2), c(3);
    CTypedPtrList<CObList, Rec*> list(10);
    list.AddTail(&a);
    list.AddTail(&b);
    list.AddHead(&c);
    int sum = 0;
    for (POSITION p = list.GetHeadPosition(); p;)
        sum = sum * 10 + list.GetNext(p)->m_n;
    EXPECT_EQ(sum, 312);
    EXPECT_EQ(list.RemoveTail(), &b);
    EXPECT_EQ(list.GetAt(list.Find(&a)), &a);

    CTypedPtrArray<CObArray, Rec*> arr;
    arr.SetSize(2);
    arr[0] = &a;
    arr.SetAt(1, &b);
    arr.InsertAt(1, &c);
    EXPECT_EQ(arr.GetSize(), 3);
    EXPECT_EQ(arr[1]->m_n, 3);
    EXPECT_EQ(arr.GetAt(2), &b);
    EXPECT_TRUE(arr.IsKindOf(RUNTIME_CLASS(CObArray)));

    CTypedPtrList<CPtrList, Rec*> plist;
    plist.AddTail(&b);
    EXPECT_EQ(plist.GetHead()->m_n, 2);
}

}  // namespace
