// CObject and runtime classes: a class's name, size, schema, creation function and base,
// kept in one process-wide registry so that an archive can make an object from a stored
// class name, whether the class lives in the library or in the host program.
#pragma once

#include "foundation/platform/wintypes.h"

class CObject;
class CArchive;

// A schema ORed with this is versionable: the reader accepts any schema in a file and
// the class's Serialize decides (GetObjectSchema). Without it the schema must match.
constexpr UINT VERSIONABLE_SCHEMA = 0x80000000u;

// The runtime class of one class. Objects of this type are static, constant-initialised
// by the IMPLEMENT_ macros, and live for the whole process.
struct CRuntimeClass {
    const char* m_lpszClassName;
    int m_nObjectSize;
    UINT m_wSchema;  // 0xFFFF: not serialisable; VERSIONABLE_SCHEMA may be ORed in
    CObject* (*m_pfnCreateObject)();
    CRuntimeClass* m_pBaseClass;  // null for CObject
    CRuntimeClass* m_pNextClass;  // registry link, set at registration

    // A new object of the class made by its default constructor; null for a class that
    // is not creatable (DECLARE_DYNAMIC). The caller owns it.
    CObject* CreateObject() const;
    // True if this class is `base` or derives from it (null base: false).
    bool IsDerivedFrom(const CRuntimeClass* base) const;
    // Writes the class record body: word schema, word name length, the name's bytes.
    void Store(CArchive& ar) const;
    // Reads a class record body and finds the class by name. Null for an unknown class
    // or a name longer than 63 bytes; the file's schema goes to *schema.
    static CRuntimeClass* Load(CArchive& ar, UINT* schema);

    // The registered class of that exact name, or null.
    static CRuntimeClass* FromName(const char* className);
    // A new object of the named class, or null when unknown or not creatable.
    static CObject* CreateObject(const char* className);
};

// Adds a runtime class to the process-wide registry (the IMPLEMENT_ macros do it through
// a static object). Registering the same class twice has no effect.
void AfxRegisterRuntimeClass(CRuntimeClass* cls);
// Removes a class from the registry, for a host module that goes away before the process.
void AfxUnregisterRuntimeClass(CRuntimeClass* cls);

// The most recently registered class; walk on with m_pNextClass. Don't register or
// unregister during the walk.
CRuntimeClass* AfxGetFirstRuntimeClass();

struct AFX_CLASSINIT {
    explicit AFX_CLASSINIT(CRuntimeClass* cls) { AfxRegisterRuntimeClass(cls); }
};

// Root of the classes that have runtime classes and Serialize.
class CObject {
public:
    static CRuntimeClass classCObject;
    static CRuntimeClass* GetThisClass() { return &classCObject; }

    virtual ~CObject() = default;
    virtual CRuntimeClass* GetRuntimeClass() const { return &classCObject; }
    // Writes or reads the object's own list, per the archive's direction. Nothing here.
    virtual void Serialize(CArchive& ar) {}

    // True if the object's runtime class is `cls` or derives from it.
    bool IsKindOf(const CRuntimeClass* cls) const { return GetRuntimeClass()->IsDerivedFrom(cls); }
    bool IsSerializable() const { return GetRuntimeClass()->m_wSchema != 0xFFFF; }

protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};

// Base of the classes that receive commands; the window classes derive from it.
class CCmdTarget : public CObject {
public:
    static CRuntimeClass classCCmdTarget;
    static CRuntimeClass* GetThisClass() { return &classCCmdTarget; }
    CRuntimeClass* GetRuntimeClass() const override { return &classCCmdTarget; }

    CCmdTarget() = default;
    ~CCmdTarget() override = default;
};

// The runtime class of a class by name: RUNTIME_CLASS(CZoomRecord).
#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

#define DECLARE_DYNAMIC(class_name)                                      \
public:                                                                  \
    static CRuntimeClass class##class_name;                              \
    static CRuntimeClass* GetThisClass() { return &class##class_name; } \
    CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name) \
    DECLARE_DYNAMIC(class_name)       \
    static CObject* CreateObject();

#define DECLARE_SERIAL(class_name)  \
    DECLARE_DYNCREATE(class_name)   \
    friend CArchive& operator>>(CArchive& ar, class_name*& pOb);

#define ORLEX_IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, wSchema, pfnNew)               \
    CRuntimeClass class_name::class##class_name = {#class_name, static_cast<int>(sizeof(class_name)), \
                                                   (wSchema), (pfnNew),                          \
                                                   RUNTIME_CLASS(base_class_name), nullptr};     \
    static AFX_CLASSINIT orlexClassInit_##class_name(RUNTIME_CLASS(class_name));                          \
    CRuntimeClass* class_name::GetRuntimeClass() const { return RUNTIME_CLASS(class_name); }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name) \
    ORLEX_IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                      \
    CObject* class_name::CreateObject() { return new class_name; }            \
    ORLEX_IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, class_name::CreateObject)

// Serialisable class. wSchema is the class's schema, with VERSIONABLE_SCHEMA ORed in for
// a class that reads older schemas itself.
#define IMPLEMENT_SERIAL(class_name, base_class_name, wSchema)                         \
    CObject* class_name::CreateObject() { return new class_name; }                     \
    ORLEX_IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, wSchema, class_name::CreateObject) \
    CArchive& operator>>(CArchive& ar, class_name*& pOb)                               \
    {                                                                                  \
        pOb = static_cast<class_name*>(ar.ReadObject(RUNTIME_CLASS(class_name)));      \
        return ar;                                                                     \
    }

// Exceptions ---------------------------------------------------------------------------
// Thrown by pointer as the platform does: `throw new CArchiveException(...)` through the
// AfxThrow functions; the catcher calls Delete() on it when done:
//     catch (CArchiveException* e) { ...; e->Delete(); }
class CException : public CObject {
public:
    static CRuntimeClass classCException;
    static CRuntimeClass* GetThisClass() { return &classCException; }
    CRuntimeClass* GetRuntimeClass() const override { return &classCException; }

    CException() = default;
    ~CException() override = default;
    // Frees an exception that was caught.
    void Delete() { delete this; }
    // Copies the text of the error (at most maxLen - 1 bytes and a NUL) into `text`;
    // false when there is no text. helpContext, if given, is set to 0.
    virtual BOOL GetErrorMessage(char* text, UINT maxLen, UINT* helpContext = nullptr) const;
    // Shows the text in a message box with the style; returns the box's answer.
    virtual int ReportError(UINT type = MB_OK, UINT messageId = 0) const;
};

// An allocation failed.
class CMemoryException : public CException {
public:
    static CRuntimeClass classCMemoryException;
    static CRuntimeClass* GetThisClass() { return &classCMemoryException; }
    CRuntimeClass* GetRuntimeClass() const override { return &classCMemoryException; }
    BOOL GetErrorMessage(char* text, UINT maxLen, UINT* helpContext = nullptr) const override;
};

// Throws a new CMemoryException.
[[noreturn]] void AfxThrowMemoryException();

// A resource (a window class, a bitmap, a menu) could not be made or found.
class CResourceException : public CException {
public:
    static CRuntimeClass classCResourceException;
    static CRuntimeClass* GetThisClass() { return &classCResourceException; }
    CRuntimeClass* GetRuntimeClass() const override { return &classCResourceException; }
    BOOL GetErrorMessage(char* text, UINT maxLen, UINT* helpContext = nullptr) const override;
};

// Throws a new CResourceException; the catcher calls Delete() on it.
[[noreturn]] void AfxThrowResourceException();
