#include <gtest/gtest.h>

#include <cstring>

#include "foundation/platform/afx.h"
#include "foundation/platform/modal.h"

// A small hierarchy as the library has them: an abstract dynamic base, a creatable class,
// a serial versionable class, a serial fixed class below it, and a class without a
// runtime class of its own (it reports its base's).
class OBase : public CObject {
    DECLARE_DYNAMIC(OBase)
};
IMPLEMENT_DYNAMIC(OBase, CObject)

class OCreatable : public OBase {
    DECLARE_DYNCREATE(OCreatable)
public:
    int m_marker = 42;
};
IMPLEMENT_DYNCREATE(OCreatable, OBase)

class OVersioned : public OCreatable {
    DECLARE_SERIAL(OVersioned)
};
IMPLEMENT_SERIAL(OVersioned, OCreatable, VERSIONABLE_SCHEMA | 2)

class OFixed : public OVersioned {
    DECLARE_SERIAL(OFixed)
};
IMPLEMENT_SERIAL(OFixed, OVersioned, 1)

class OReportsBase : public OFixed {};

class OWindowLike : public CCmdTarget {
    DECLARE_DYNCREATE(OWindowLike)
};
IMPLEMENT_DYNCREATE(OWindowLike, CCmdTarget)

namespace {

TEST(RuntimeClass, RecordsOfEachKind)
{
    struct {
        CRuntimeClass* cls;
        const char* name;
        UINT schema;
        bool creatable;
        CRuntimeClass* base;
        int size;
    } rows[] = {
        {RUNTIME_CLASS(CObject), "CObject", 0xFFFF, false, nullptr, static_cast<int>(sizeof(CObject))},
        {RUNTIME_CLASS(CCmdTarget), "CCmdTarget", 0xFFFF, false, RUNTIME_CLASS(CObject), static_cast<int>(sizeof(CCmdTarget))},
        {RUNTIME_CLASS(OBase), "OBase", 0xFFFF, false, RUNTIME_CLASS(CObject), static_cast<int>(sizeof(OBase))},
        {RUNTIME_CLASS(OCreatable), "OCreatable", 0xFFFF, true, RUNTIME_CLASS(OBase), static_cast<int>(sizeof(OCreatable))},
        {RUNTIME_CLASS(OVersioned), "OVersioned", 0x80000002u, true, RUNTIME_CLASS(OCreatable), static_cast<int>(sizeof(OVersioned))},
        {RUNTIME_CLASS(OFixed), "OFixed", 1, true, RUNTIME_CLASS(OVersioned), static_cast<int>(sizeof(OFixed))},
        {RUNTIME_CLASS(CObList), "CObList", 0, true, RUNTIME_CLASS(CObject), static_cast<int>(sizeof(CObList))},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_STREQ(r.cls->m_lpszClassName, r.name);
        EXPECT_EQ(r.cls->m_wSchema, r.schema);
        EXPECT_EQ(r.cls->m_pBaseClass, r.base);
        EXPECT_EQ(r.cls->m_nObjectSize, r.size);
        EXPECT_EQ(CRuntimeClass::FromName(r.name), r.cls);
        CObject* made = r.cls->CreateObject();
        EXPECT_EQ(made != nullptr, r.creatable);
        if (made) {
            EXPECT_EQ(made->GetRuntimeClass(), r.cls);
            EXPECT_EQ(made->IsSerializable(), r.schema != 0xFFFF);
        }
        delete made;
    }
}

TEST(RuntimeClass, DerivationAndKind)
{
    CRuntimeClass* chain[] = {RUNTIME_CLASS(CObject), RUNTIME_CLASS(OBase), RUNTIME_CLASS(OCreatable),
                              RUNTIME_CLASS(OVersioned), RUNTIME_CLASS(OFixed)};
    for (size_t i = 0; i < std::size(chain); ++i)
        for (size_t j = 0; j < std::size(chain); ++j)
            EXPECT_EQ(chain[i]->IsDerivedFrom(chain[j]), j <= i) << chain[i]->m_lpszClassName << " from "
                                                                  << chain[j]->m_lpszClassName;
    EXPECT_FALSE(RUNTIME_CLASS(OFixed)->IsDerivedFrom(nullptr));
    EXPECT_FALSE(RUNTIME_CLASS(OWindowLike)->IsDerivedFrom(RUNTIME_CLASS(OBase)));
    EXPECT_TRUE(RUNTIME_CLASS(OWindowLike)->IsDerivedFrom(RUNTIME_CLASS(CCmdTarget)));

    // A class without its own runtime class is seen, and stored, as its base.
    OReportsBase o;
    EXPECT_EQ(o.GetRuntimeClass(), RUNTIME_CLASS(OFixed));
    EXPECT_TRUE(o.IsKindOf(RUNTIME_CLASS(OVersioned)));
    EXPECT_FALSE(o.IsKindOf(RUNTIME_CLASS(CCmdTarget)));
    EXPECT_EQ(OFixed::GetThisClass(), RUNTIME_CLASS(OFixed));
}

TEST(RuntimeClass, RegistryByNameCreatesAndForgets)
{
    CObject* o = CRuntimeClass::CreateObject("OCreatable");
    ASSERT_NE(o, nullptr);
    EXPECT_EQ(static_cast<OCreatable*>(o)->m_marker, 42);
    delete o;
    EXPECT_EQ(CRuntimeClass::CreateObject("OBase"), nullptr);
    EXPECT_EQ(CRuntimeClass::CreateObject("NoSuchClass"), nullptr);
    EXPECT_EQ(CRuntimeClass::FromName(nullptr), nullptr);

    // A host module's class: registered by the static of IMPLEMENT_, removable, and
    // registering twice changes nothing.
    static CRuntimeClass hostClass = {"HostOnlyClass", 8, 1, nullptr, RUNTIME_CLASS(CObject), nullptr};
    AfxRegisterRuntimeClass(&hostClass);
    AfxRegisterRuntimeClass(&hostClass);
    EXPECT_EQ(CRuntimeClass::FromName("HostOnlyClass"), &hostClass);
    int seen = 0;
    for (CRuntimeClass* c = AfxGetFirstRuntimeClass(); c; c = c->m_pNextClass)
        seen += std::strcmp(c->m_lpszClassName, "HostOnlyClass") == 0;
    EXPECT_EQ(seen, 1);
    AfxUnregisterRuntimeClass(&hostClass);
    EXPECT_EQ(CRuntimeClass::FromName("HostOnlyClass"), nullptr);
    EXPECT_EQ(CRuntimeClass::FromName("OFixed"), RUNTIME_CLASS(OFixed));
}

TEST(Exceptions, KindsMessagesAndReports)
{
    orlex::ModalScript::Reset();
    struct {
        CException* e;
        CRuntimeClass* cls;
        const char* text;
    } rows[] = {
        {new CArchiveException(CArchiveException::endOfFile, "a.bin"), RUNTIME_CLASS(CArchiveException),
         "Unexpected end of file while reading a.bin."},
        {new CArchiveException(CArchiveException::badSchema, "b.bin"), RUNTIME_CLASS(CArchiveException),
         "Unexpected file format of b.bin."},
        {new CFileException(CFileException::fileNotFound, 2, "c.txt"), RUNTIME_CLASS(CFileException),
         "c.txt was not found."},
        {new CFileException(CFileException::accessDenied, 13, "d.txt"), RUNTIME_CLASS(CFileException),
         "Access to d.txt was denied."},
        {new CMemoryException, RUNTIME_CLASS(CMemoryException), "Out of memory."},
    };
    for (const auto& r : rows) {
        EXPECT_TRUE(r.e->IsKindOf(RUNTIME_CLASS(CException)));
        EXPECT_EQ(r.e->GetRuntimeClass(), r.cls);
        char text[128];
        EXPECT_TRUE(r.e->GetErrorMessage(text, sizeof text));
        EXPECT_STREQ(text, r.text);
        r.e->ReportError();
        EXPECT_EQ(orlex::ModalScript::Log().back().text, r.text);
        r.e->Delete();
    }
    char small[6];
    CFileException e(CFileException::fileNotFound, 2, "long-name.txt");
    e.GetErrorMessage(small, sizeof small);
    EXPECT_STREQ(small, "long-");
    orlex::ModalScript::Reset();
}

}  // namespace
