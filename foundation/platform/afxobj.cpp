#include "foundation/platform/afxobj.h"

#include <cstring>
#include <mutex>

#include "foundation/platform/afxarchive.h"
#include "foundation/platform/modal.h"

CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xFFFF, nullptr, nullptr, nullptr};
CRuntimeClass CCmdTarget::classCCmdTarget = {"CCmdTarget", static_cast<int>(sizeof(CCmdTarget)), 0xFFFF, nullptr,
                                             RUNTIME_CLASS(CObject), nullptr};
CRuntimeClass CException::classCException = {"CException", static_cast<int>(sizeof(CException)), 0xFFFF, nullptr,
                                             RUNTIME_CLASS(CObject), nullptr};
CRuntimeClass CMemoryException::classCMemoryException = {"CMemoryException",
                                                         static_cast<int>(sizeof(CMemoryException)), 0xFFFF,
                                                         nullptr, RUNTIME_CLASS(CException), nullptr};
CRuntimeClass CResourceException::classCResourceException = {"CResourceException",
                                                             static_cast<int>(sizeof(CResourceException)), 0xFFFF,
                                                             nullptr, RUNTIME_CLASS(CException), nullptr};

namespace {

// The registry is a singly linked list through m_pNextClass. Its head is a plain pointer
// that is zero before any dynamic initialiser runs, so registration from static objects
// in any order is safe.
CRuntimeClass* g_firstClass = nullptr;

std::mutex& registryLock()
{
    static std::mutex m;
    return m;
}

const AFX_CLASSINIT g_initBase[] = {AFX_CLASSINIT(RUNTIME_CLASS(CObject)), AFX_CLASSINIT(RUNTIME_CLASS(CCmdTarget)),
                                    AFX_CLASSINIT(RUNTIME_CLASS(CException)),
                                    AFX_CLASSINIT(RUNTIME_CLASS(CMemoryException)),
                                    AFX_CLASSINIT(RUNTIME_CLASS(CResourceException))};

}  // namespace

void AfxRegisterRuntimeClass(CRuntimeClass* cls)
{
    if (!cls)
        return;
    std::lock_guard<std::mutex> lock(registryLock());
    for (CRuntimeClass* c = g_firstClass; c; c = c->m_pNextClass)
        if (c == cls)
            return;
    cls->m_pNextClass = g_firstClass;
    g_firstClass = cls;
}

CRuntimeClass* AfxGetFirstRuntimeClass()
{
    std::lock_guard<std::mutex> lock(registryLock());
    return g_firstClass;
}

void AfxUnregisterRuntimeClass(CRuntimeClass* cls)
{
    std::lock_guard<std::mutex> lock(registryLock());
    for (CRuntimeClass** link = &g_firstClass; *link; link = &(*link)->m_pNextClass)
        if (*link == cls) {
            *link = cls->m_pNextClass;
            cls->m_pNextClass = nullptr;
            return;
        }
}

CObject* CRuntimeClass::CreateObject() const
{
    return m_pfnCreateObject ? m_pfnCreateObject() : nullptr;
}

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const
{
    if (!base)
        return false;
    for (const CRuntimeClass* c = this; c; c = c->m_pBaseClass)
        if (c == base)
            return true;
    return false;
}

CRuntimeClass* CRuntimeClass::FromName(const char* className)
{
    if (!className)
        return nullptr;
    std::lock_guard<std::mutex> lock(registryLock());
    for (CRuntimeClass* c = g_firstClass; c; c = c->m_pNextClass)
        if (std::strcmp(c->m_lpszClassName, className) == 0)
            return c;
    return nullptr;
}

CObject* CRuntimeClass::CreateObject(const char* className)
{
    const CRuntimeClass* c = FromName(className);
    return c ? c->CreateObject() : nullptr;
}

void CRuntimeClass::Store(CArchive& ar) const
{
    const WORD len = static_cast<WORD>(std::strlen(m_lpszClassName));
    ar << static_cast<WORD>(m_wSchema);
    ar << len;
    ar.Write(m_lpszClassName, len);
}

CRuntimeClass* CRuntimeClass::Load(CArchive& ar, UINT* schema)
{
    // Class names of the format fit 63 bytes; a longer one is a corrupt record.
    constexpr WORD kMaxName = 63;
    WORD fileSchema = 0, len = 0;
    ar >> fileSchema;
    ar >> len;
    if (len > kMaxName)
        return nullptr;
    char name[kMaxName + 1];
    if (ar.Read(name, len) != len)
        return nullptr;
    name[len] = '\0';
    if (schema)
        *schema = fileSchema;
    return FromName(name);
}

BOOL CException::GetErrorMessage(char* text, UINT maxLen, UINT* helpContext) const
{
    if (helpContext)
        *helpContext = 0;
    if (text && maxLen)
        *text = '\0';
    return FALSE;
}

int CException::ReportError(UINT type, UINT messageId) const
{
    char text[512];
    if (!GetErrorMessage(text, sizeof text))
        std::strcpy(text, "An unsupported operation was attempted.");
    return AfxMessageBox(text, type);
}

BOOL CMemoryException::GetErrorMessage(char* text, UINT maxLen, UINT* helpContext) const
{
    if (helpContext)
        *helpContext = 0;
    if (!text || !maxLen)
        return FALSE;
    std::snprintf(text, maxLen, "%s", "Out of memory.");
    return TRUE;
}

void AfxThrowMemoryException()
{
    throw new CMemoryException();
}

BOOL CResourceException::GetErrorMessage(char* text, UINT maxLen, UINT* helpContext) const
{
    if (helpContext)
        *helpContext = 0;
    if (!text || !maxLen)
        return FALSE;
    std::snprintf(text, maxLen, "%s", "A required resource was unavailable.");
    return TRUE;
}

void AfxThrowResourceException()
{
    throw new CResourceException();
}
