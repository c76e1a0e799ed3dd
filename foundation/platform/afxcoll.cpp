#include "foundation/platform/afxcoll.h"

IMPLEMENT_DYNAMIC(CPtrList, CObject)
IMPLEMENT_SERIAL(CObList, CObject, 0)
IMPLEMENT_DYNAMIC(CPtrArray, CObject)
IMPLEMENT_SERIAL(CObArray, CObject, 0)
IMPLEMENT_DYNAMIC(CUIntArray, CObject)
IMPLEMENT_SERIAL(CDWordArray, CObject, 0)
IMPLEMENT_SERIAL(CWordArray, CObject, 0)
IMPLEMENT_SERIAL(CByteArray, CObject, 0)
IMPLEMENT_SERIAL(CStringArray, CObject, 0)

void SerializeElements(CArchive& ar, CString* elements, INT_PTR count)
{
    for (INT_PTR i = 0; i < count; ++i) {
        if (ar.IsStoring())
            ar << elements[i];
        else
            ar >> elements[i];
    }
}

void SerializeElements(CArchive& ar, CObject** elements, INT_PTR count)
{
    for (INT_PTR i = 0; i < count; ++i) {
        if (ar.IsStoring())
            ar.WriteObject(elements[i]);
        else
            elements[i] = ar.ReadObject(nullptr);
    }
}

void CObList::Serialize(CArchive& ar)
{
    if (ar.IsStoring()) {
        ar.WriteCount(static_cast<DWORD_PTR>(GetCount()));
        for (POSITION p = GetHeadPosition(); p;)
            ar.WriteObject(GetNext(p));
    } else {
        for (DWORD_PTR count = ar.ReadCount(); count; --count)
            AddTail(ar.ReadObject(nullptr));
    }
}
