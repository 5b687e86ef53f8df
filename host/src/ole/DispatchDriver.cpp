// COleDispatchDriver: one object of another program behind its IDispatch,
// called by dispatch id.
#include <afxdisp.h>

#include <memory>
#include <vector>

namespace {

// The exception that a failed call raises: the program's own error, or the
// call's failure.
[[noreturn]] void ThrowFailure(HRESULT hr, EXCEPINFO& info) {
    if (hr == DISP_E_EXCEPTION) {
        if (info.pfnDeferredFillIn) info.pfnDeferredFillIn(&info);
        auto* exception = new COleDispatchException(info.bstrDescription, info.dwHelpContext, info.wCode);
        exception->m_strSource = info.bstrSource;
        exception->m_strHelpFile = info.bstrHelpFile;
        exception->m_scError = info.wCode != 0 ? S_OK : (info.scode != 0 ? info.scode : E_UNEXPECTED);
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
        throw exception;
    }
    AfxThrowOleException(hr);
}

}  // namespace

COleDispatchDriver::COleDispatchDriver() : m_lpDispatch(nullptr), m_bAutoRelease(TRUE) {}

COleDispatchDriver::COleDispatchDriver(LPDISPATCH dispatch, BOOL autoRelease)
    : m_lpDispatch(dispatch), m_bAutoRelease(autoRelease) {}

COleDispatchDriver::COleDispatchDriver(const COleDispatchDriver& other)
    : m_lpDispatch(other.m_lpDispatch), m_bAutoRelease(TRUE) {
    if (m_lpDispatch) m_lpDispatch->AddRef();
}

COleDispatchDriver::~COleDispatchDriver() { ReleaseDispatch(); }

const COleDispatchDriver& COleDispatchDriver::operator=(const COleDispatchDriver& other) {
    if (this != &other) {
        if (other.m_lpDispatch) other.m_lpDispatch->AddRef();
        ReleaseDispatch();
        m_lpDispatch = other.m_lpDispatch;
        m_bAutoRelease = TRUE;
    }
    return *this;
}

BOOL COleDispatchDriver::CreateDispatch(REFCLSID clsid, COleException* error) {
    ReleaseDispatch();
    IUnknown* unknown = nullptr;
    HRESULT hr = CoCreateInstance(clsid, nullptr, CLSCTX_ALL, IID_IUnknown, reinterpret_cast<LPVOID*>(&unknown));
    if (FAILED(hr)) {
        if (error) error->m_sc = hr;
        return FALSE;
    }
    void* dispatch = nullptr;
    hr = unknown->QueryInterface(IID_IDispatch, &dispatch);
    unknown->Release();
    if (FAILED(hr)) {
        if (error) error->m_sc = hr;
        return FALSE;
    }
    m_lpDispatch = static_cast<LPDISPATCH>(dispatch);
    m_bAutoRelease = TRUE;
    return TRUE;
}

BOOL COleDispatchDriver::CreateDispatch(LPCTSTR progId, COleException* error) {
    CLSID clsid;
    HRESULT hr = CLSIDFromProgID(progId, &clsid);
    if (FAILED(hr)) {
        if (error) error->m_sc = hr;
        return FALSE;
    }
    return CreateDispatch(clsid, error);
}

void COleDispatchDriver::AttachDispatch(LPDISPATCH dispatch, BOOL autoRelease) {
    ReleaseDispatch();
    m_lpDispatch = dispatch;
    m_bAutoRelease = autoRelease;
}

LPDISPATCH COleDispatchDriver::DetachDispatch() {
    LPDISPATCH dispatch = m_lpDispatch;
    m_lpDispatch = nullptr;
    return dispatch;
}

void COleDispatchDriver::ReleaseDispatch() {
    if (!m_lpDispatch) return;
    if (m_bAutoRelease) m_lpDispatch->Release();
    m_lpDispatch = nullptr;
}

void COleDispatchDriver::InvokeHelper(DISPID id, WORD flags, VARTYPE resultType, void* result,
                                      const BYTE* parameterTypes, ...) {
    va_list arguments;
    va_start(arguments, parameterTypes);
    try {
        InvokeHelperV(id, flags, resultType, result, parameterTypes, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
}

void COleDispatchDriver::InvokeHelperV(DISPID id, WORD flags, VARTYPE resultType, void* result,
                                       const BYTE* parameterTypes, va_list arguments) {
    if (!m_lpDispatch) return;

    // The arguments go to the program last one first.
    size_t count = 0;
    if (parameterTypes)
        while (parameterTypes[count]) ++count;
    std::vector<VARIANT> arguments_(count);
    std::vector<BSTR> texts;  // made here, freed here
    auto freeTexts = [&] {
        for (BSTR text : texts) SysFreeString(text);
        texts.clear();
    };
    for (size_t i = 0; i < count; ++i) {
        VARIANT& argument = arguments_[count - 1 - i];
        VariantInit(&argument);
        argument.vt = parameterTypes[i];
        switch (parameterTypes[i]) {
        case VT_I2: argument.iVal = static_cast<SHORT>(va_arg(arguments, int)); break;
        case VT_I4: argument.lVal = va_arg(arguments, LONG); break;
        case VT_R8: argument.dblVal = va_arg(arguments, double); break;
        case VT_BOOL: argument.boolVal = va_arg(arguments, BOOL) ? VARIANT_TRUE : VARIANT_FALSE; break;
        case VT_ERROR: argument.scode = va_arg(arguments, SCODE); break;
        case VT_DISPATCH: argument.pdispVal = va_arg(arguments, LPDISPATCH); break;
        case VT_UNKNOWN: argument.punkVal = va_arg(arguments, LPUNKNOWN); break;
        case VT_BSTR: {
            LPCOLESTR text = va_arg(arguments, LPCOLESTR);
            argument.bstrVal = SysAllocString(text ? text : L"");
            if (!argument.bstrVal) {
                freeTexts();
                AfxThrowMemoryException();
            }
            texts.push_back(argument.bstrVal);
            break;
        }
        case VT_VARIANT: {
            // The caller's variant is passed as it is; it stays the caller's.
            const VARIANT* value = va_arg(arguments, const VARIANT*);
            if (value) argument = *value;
            else argument.vt = VT_EMPTY;
            break;
        }
        default:
            freeTexts();
            AfxThrowOleException(DISP_E_BADVARTYPE);
        }
    }

    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {count ? arguments_.data() : nullptr, nullptr, static_cast<UINT>(count), 0};
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
        parameters.cNamedArgs = 1;
        parameters.rgdispidNamedArgs = &putId;
    }
    VARIANT answer;
    VariantInit(&answer);
    EXCEPINFO info = {};
    UINT argumentError = 0;
    HRESULT hr = m_lpDispatch->Invoke(id, IID_NULL, 0, flags, &parameters, resultType == VT_EMPTY ? nullptr : &answer,
                                      &info, &argumentError);
    freeTexts();
    if (FAILED(hr)) {
        VariantClear(&answer);
        ThrowFailure(hr, info);
    }
    if (resultType == VT_EMPTY) return;
    if (resultType != VT_VARIANT) {
        hr = VariantChangeType(&answer, &answer, 0, resultType);
        if (FAILED(hr)) {
            VariantClear(&answer);
            AfxThrowOleException(hr);
        }
    }
    switch (resultType) {
    case VT_I2: *static_cast<SHORT*>(result) = answer.iVal; break;
    case VT_I4: *static_cast<LONG*>(result) = answer.lVal; break;
    case VT_R8: *static_cast<double*>(result) = answer.dblVal; break;
    case VT_BOOL: *static_cast<BOOL*>(result) = answer.boolVal != 0; break;
    case VT_ERROR: *static_cast<SCODE*>(result) = answer.scode; break;
    case VT_BSTR:
        *static_cast<CString*>(result) = answer.bstrVal;
        SysFreeString(answer.bstrVal);
        break;
    case VT_DISPATCH: *static_cast<LPDISPATCH*>(result) = answer.pdispVal; break;  // the reference goes with it
    case VT_UNKNOWN: *static_cast<LPUNKNOWN*>(result) = answer.punkVal; break;
    case VT_VARIANT: *static_cast<VARIANT*>(result) = answer; break;  // the caller clears it
    default: VariantClear(&answer); break;
    }
}

void COleDispatchDriver::GetProperty(DISPID id, VARTYPE type, void* value) const {
    const_cast<COleDispatchDriver*>(this)->InvokeHelper(id, DISPATCH_PROPERTYGET, type, value, nullptr);
}

void COleDispatchDriver::SetProperty(DISPID id, VARTYPE type, ...) {
    va_list arguments;
    va_start(arguments, type);
    BYTE types[2] = {static_cast<BYTE>(type), 0};
    try {
        InvokeHelperV(id, type == VT_DISPATCH ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr,
                      types, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
}
