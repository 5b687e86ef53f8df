// The component object model: class and interface ids, the root interface
// IUnknown, and the creation of objects by class. Objects live in other
// programs, reached through the interfaces they hand out; every reference
// taken (AddRef, or an interface pointer handed out) ends with Release.
#pragma once

#include <cstring>

#include "windows.h"
#include "winerror.h"

typedef struct _GUID {
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
} GUID;
typedef GUID IID;
typedef GUID CLSID;
typedef IID* LPIID;
typedef CLSID* LPCLSID;
typedef const GUID& REFGUID;
typedef const IID& REFIID;
typedef const CLSID& REFCLSID;

inline bool IsEqualGUID(REFGUID a, REFGUID b) { return std::memcmp(&a, &b, sizeof(GUID)) == 0; }
inline bool operator==(REFGUID a, REFGUID b) { return IsEqualGUID(a, b); }
inline bool operator!=(REFGUID a, REFGUID b) { return !IsEqualGUID(a, b); }
#define IsEqualIID IsEqualGUID
#define IsEqualCLSID IsEqualGUID

typedef WCHAR OLECHAR;
typedef OLECHAR* LPOLESTR;
typedef const OLECHAR* LPCOLESTR;
#define OLESTR(s) L##s

#define STDMETHODCALLTYPE
#define STDMETHOD(method) virtual HRESULT STDMETHODCALLTYPE method
#define STDMETHOD_(type, method) virtual type STDMETHODCALLTYPE method
#define STDMETHODIMP HRESULT STDMETHODCALLTYPE
#define STDMETHODIMP_(type) type STDMETHODCALLTYPE
#define PURE = 0

// The root of every interface.
struct IUnknown {
    STDMETHOD(QueryInterface)(REFIID riid, void** object) PURE;
    STDMETHOD_(ULONG, AddRef)() PURE;
    STDMETHOD_(ULONG, Release)() PURE;

protected:
    ~IUnknown() = default;  // objects end through Release, never through delete
};
typedef IUnknown* LPUNKNOWN;

extern "C" {
CADHOST_API extern const IID IID_IUnknown;
CADHOST_API extern const IID IID_IDispatch;
CADHOST_API extern const IID IID_NULL;
CADHOST_API extern const CLSID CLSID_NULL;
}

// Where an object may run.
#define CLSCTX_INPROC_SERVER 0x1
#define CLSCTX_INPROC_HANDLER 0x2
#define CLSCTX_LOCAL_SERVER 0x4
#define CLSCTX_REMOTE_SERVER 0x10
#define CLSCTX_ALL (CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER)
#define CLSCTX_SERVER (CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER)

extern "C" {
// The class id registered for a program id such as "Excel.Application";
// CO_E_CLASSSTRING when none is registered (its program is not installed).
CADHOST_API HRESULT WINAPI CLSIDFromProgID(LPCOLESTR progId, LPCLSID clsid);
// A new object of a class (or the one a single-instance program serves),
// with one reference for the caller.
CADHOST_API HRESULT WINAPI CoCreateInstance(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID riid,
                                            LPVOID* object);
// The platform's component libraries are ready on the host's thread from
// its start; these answer as they do there.
CADHOST_API HRESULT WINAPI CoInitialize(LPVOID reserved);
CADHOST_API void WINAPI CoUninitialize();
}
