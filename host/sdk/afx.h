// The framework's root class with run-time class information, and its
// string and collection classes.
#pragma once

#include "windows.h"
#include "tchar.h"
#include "afxstr.h"

class CObject;
class CArchive;

struct CADHOST_API CRuntimeClass {
    const char* m_lpszClassName;
    int m_nObjectSize;
    UINT m_wSchema;
    CObject* (*m_pfnCreateObject)();
    CRuntimeClass* (*m_pfnGetBaseClass)();

    CObject* CreateObject() const;
    BOOL IsDerivedFrom(const CRuntimeClass* baseClass) const;
};

class CADHOST_API CObject {
public:
    virtual CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject() = default;
    virtual void Serialize(CArchive& archive);

    BOOL IsKindOf(const CRuntimeClass* rtClass) const;
    BOOL IsSerializable() const { return GetRuntimeClass()->m_wSchema != 0xffff; }

    static CRuntimeClass classCObject;
    static CRuntimeClass* _GetBaseClass_CObject() { return &classCObject; }

protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};

#define RUNTIME_CLASS(class_name) (class_name::_GetBaseClass_##class_name())

#define DECLARE_DYNAMIC(class_name)                                         \
public:                                                                     \
    static CRuntimeClass class##class_name;                                 \
    static CRuntimeClass* _GetBaseClass_##class_name() { return &class##class_name; } \
    CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name) \
    DECLARE_DYNAMIC(class_name)       \
    static CObject* CreateObject();

#define DECLARE_SERIAL(class_name) DECLARE_DYNCREATE(class_name)

#define _IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, schema, create)                     \
    static CRuntimeClass* _GetBase_##class_name() { return RUNTIME_CLASS(base_class_name); }     \
    CRuntimeClass class_name::class##class_name = {#class_name, static_cast<int>(sizeof(class_name)), \
                                                   schema, create, &_GetBase_##class_name};       \
    CRuntimeClass* class_name::GetRuntimeClass() const { return RUNTIME_CLASS(class_name); }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name) \
    _IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                      \
    CObject* class_name::CreateObject() { return new class_name; }            \
    _IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, class_name::CreateObject)

#define IMPLEMENT_SERIAL(class_name, base_class_name, schema)                 \
    CObject* class_name::CreateObject() { return new class_name; }            \
    _IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, schema, class_name::CreateObject)

// Exceptions of the framework are thrown as pointers and end with Delete().
class CADHOST_API CException : public CObject {
    DECLARE_DYNAMIC(CException)
public:
    explicit CException(BOOL autoDelete = TRUE) : m_bAutoDelete(autoDelete) {}
    ~CException() override = default;
    void Delete();
    virtual BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const;
    // Shows the text of GetErrorMessage (or of the string messageId when it
    // has none) in a message box; answers the box's result.
    virtual int ReportError(UINT type = 0, UINT messageId = 0);
    BOOL m_bAutoDelete;
};

// Ends an operation that the user has been told about already, such as a
// data exchange that refused a value.
class CADHOST_API CUserException : public CException {
    DECLARE_DYNAMIC(CUserException)
public:
    CUserException() = default;
};

[[noreturn]] CADHOST_API void AfxThrowUserException();

// Memory ran out; an operation that the object does not support.
class CADHOST_API CMemoryException : public CException {
    DECLARE_DYNAMIC(CMemoryException)
public:
    CMemoryException() = default;
    BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const override;
};
class CADHOST_API CNotSupportedException : public CException {
    DECLARE_DYNAMIC(CNotSupportedException)
public:
    CNotSupportedException() = default;
    BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const override;
};
[[noreturn]] CADHOST_API void AfxThrowMemoryException();
[[noreturn]] CADHOST_API void AfxThrowNotSupportedException();

#define ASSERT(f) ((void)0)
#define VERIFY(f) ((void)(f))
#define ASSERT_VALID(p) ((void)0)
#define TRACE(...) ((void)0)

#include "afxcoll.h"
