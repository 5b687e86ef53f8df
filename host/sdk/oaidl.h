// Automation: late-bound calls through IDispatch, with arguments and
// results as variants.
#pragma once

#include "objbase.h"

typedef unsigned short VARTYPE;
typedef short VARIANT_BOOL;
typedef OLECHAR* BSTR;
typedef LONG DISPID;
typedef DWORD LCID;
typedef double DATE;
typedef short SHORT;
typedef unsigned short USHORT;
typedef float FLOAT;
typedef double DOUBLE;
typedef long long LONGLONG;

#define VARIANT_TRUE (static_cast<VARIANT_BOOL>(-1))
#define VARIANT_FALSE (static_cast<VARIANT_BOOL>(0))

enum VARENUM {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_UI1 = 17,
    VT_BYREF = 0x4000,
};

struct IDispatch;
struct ITypeInfo;

// A value of one of the types above; vt says which member holds it.
typedef struct tagVARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        struct tagVARIANT* pvarVal;
        void* byref;
    };
} VARIANT;
typedef VARIANT VARIANTARG;
typedef VARIANT* LPVARIANT;
typedef const VARIANT* LPCVARIANT;
typedef VARIANT* LPVARIANTARG;

#define V_VT(v) ((v)->vt)
#define V_I4(v) ((v)->lVal)
#define V_BOOL(v) ((v)->boolVal)
#define V_BSTR(v) ((v)->bstrVal)
#define V_DISPATCH(v) ((v)->pdispVal)
#define V_ERROR(v) ((v)->scode)

// Special dispatch ids and the kinds of call.
#define DISPID_UNKNOWN (-1)
#define DISPID_VALUE 0
#define DISPID_PROPERTYPUT (-3)
#define DISPATCH_METHOD 0x1
#define DISPATCH_PROPERTYGET 0x2
#define DISPATCH_PROPERTYPUT 0x4
#define DISPATCH_PROPERTYPUTREF 0x8

// The arguments of a call, the last one first.
typedef struct tagDISPPARAMS {
    VARIANTARG* rgvarg;
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
} DISPPARAMS;

// What a server says of an error it raises in a call (DISP_E_EXCEPTION).
typedef struct tagEXCEPINFO {
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    void* pvReserved;
    HRESULT(WINAPI* pfnDeferredFillIn)(struct tagEXCEPINFO*);
    SCODE scode;
} EXCEPINFO, *LPEXCEPINFO;

struct IDispatch : public IUnknown {
    STDMETHOD(GetTypeInfoCount)(UINT* count) PURE;
    STDMETHOD(GetTypeInfo)(UINT index, LCID locale, ITypeInfo** info) PURE;
    STDMETHOD(GetIDsOfNames)(REFIID riid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) PURE;
    STDMETHOD(Invoke)(DISPID member, REFIID riid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* argumentError) PURE;

protected:
    ~IDispatch() = default;
};
typedef IDispatch* LPDISPATCH;
