// The framework's side of automation: variants that free themselves, the
// exceptions of calls into other programs, and COleDispatchDriver, the
// base of the classes that speak to one object of another program through
// its IDispatch.
#pragma once

#include "afxwin.h"
#include "oleauto.h"

// A call failed: m_sc says how (a status code).
class CADHOST_API COleException : public CException {
    DECLARE_DYNAMIC(COleException)
public:
    COleException() = default;
    // The system's text for m_sc.
    BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const override;
    // The status code that any exception stands for: a COleException's own
    // m_sc, E_OUTOFMEMORY for a memory exception, E_NOTIMPL for a
    // not-supported one, E_UNEXPECTED for any other.
    static SCODE Process(const CException* exception);

    SCODE m_sc = S_OK;
};

// The other program raised an error in a call (DISP_E_EXCEPTION): what it
// said of it.
class CADHOST_API COleDispatchException : public CException {
    DECLARE_DYNAMIC(COleDispatchException)
public:
    COleDispatchException(LPCTSTR description, UINT helpId, WORD code);
    // The description that the program gave.
    BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const override;

    WORD m_wCode = 0;
    SCODE m_scError = S_OK;
    DWORD m_dwHelpContext = 0;
    CString m_strHelpFile;
    CString m_strDescription;
    CString m_strSource;
};

[[noreturn]] CADHOST_API void AfxThrowOleException(SCODE sc);
[[noreturn]] CADHOST_API void AfxThrowOleDispatchException(WORD code, LPCTSTR description, UINT helpId = 0);

// A variant that clears itself.
class CADHOST_API COleVariant : public tagVARIANT {
public:
    COleVariant();
    COleVariant(const VARIANT& source);
    COleVariant(const COleVariant& source);
    COleVariant(LPCTSTR text);
    // A whole number as VT_I4, or as VT_ERROR or VT_BOOL when type says so.
    COleVariant(LONG value, VARTYPE type = VT_I4);
    COleVariant(short value, VARTYPE type = VT_I2);
    COleVariant(double value);
    ~COleVariant();

    COleVariant& operator=(const VARIANT& source);
    COleVariant& operator=(const COleVariant& source);
    COleVariant& operator=(LPCTSTR text);
    COleVariant& operator=(LONG value);
    void Clear();
    // Converts in place (from source when given); raises COleException.
    void ChangeType(VARTYPE type, LPVARIANT source = nullptr);
    void Attach(VARIANT& source);
    VARIANT Detach();

    operator LPVARIANT() { return this; }
    operator LPCVARIANT() const { return this; }
};

// The types of an InvokeHelper argument list, strung together as text:
// static const BYTE types[] = VTS_BSTR VTS_VARIANT;
#define VTS_NONE nullptr
#define VTS_I2 "\x02"
#define VTS_I4 "\x03"
#define VTS_R8 "\x05"
#define VTS_BSTR "\x08"
#define VTS_DISPATCH "\x09"
#define VTS_SCODE "\x0A"
#define VTS_BOOL "\x0B"
#define VTS_VARIANT "\x0C"
#define VTS_UNKNOWN "\x0D"

class CADHOST_API COleDispatchDriver {
public:
    COleDispatchDriver();
    explicit COleDispatchDriver(LPDISPATCH dispatch, BOOL autoRelease = TRUE);
    // Takes a reference of its own to the other's object.
    COleDispatchDriver(const COleDispatchDriver& other);
    ~COleDispatchDriver();
    const COleDispatchDriver& operator=(const COleDispatchDriver& other);

    // A new object of the program; FALSE, with the status in error, when
    // the class is not registered or the object cannot be made.
    BOOL CreateDispatch(REFCLSID clsid, COleException* error = nullptr);
    BOOL CreateDispatch(LPCTSTR progId, COleException* error = nullptr);
    // Takes over a pointer and its reference; a pointer held before is
    // released first.
    void AttachDispatch(LPDISPATCH dispatch, BOOL autoRelease = TRUE);
    // Hands the pointer and its reference out.
    LPDISPATCH DetachDispatch();
    // Ends the reference (when auto-release is on) and forgets the pointer.
    void ReleaseDispatch();

    // One call: dispatch id, kind (DISPATCH_METHOD, ...), the result's type
    // and place (VT_EMPTY and null for none), and a zero-ended list of the
    // arguments' types (VT_I4, VT_BOOL, VT_BSTR, VT_VARIANT, ...) followed by
    // the arguments: LONG, BOOL, LPCOLESTR, VARIANT*... A text result lands in
    // a CString, a dispatch result as an LPDISPATCH with one reference, a
    // VT_I4 in a LONG, a VT_BOOL in a BOOL, a VT_VARIANT in a VARIANT.
    // Raises COleDispatchException when the program reports an error,
    // COleException when the call itself fails. Without a pointer it does
    // nothing, and the result stays as it was.
    void InvokeHelper(DISPID id, WORD flags, VARTYPE resultType, void* result, const BYTE* parameterTypes, ...);
    void InvokeHelperV(DISPID id, WORD flags, VARTYPE resultType, void* result, const BYTE* parameterTypes,
                       va_list arguments);
    void GetProperty(DISPID id, VARTYPE type, void* value) const;
    void SetProperty(DISPID id, VARTYPE type, ...);

    operator LPDISPATCH() { return m_lpDispatch; }

    LPDISPATCH m_lpDispatch;
    BOOL m_bAutoRelease;
};
