// Automation's variants: clearing, copying and converting them as the
// platform does.
#include <oleauto.h>
#include <tchar.h>

#include <cmath>
#include <cwchar>
#include <cwctype>
#include <string>

namespace {

constexpr USHORT kAlphaBool = 0x2;  // VARIANT_ALPHABOOL: "True" and "False" instead of -1 and 0

const VARIANT* Deref(const VARIANT* v) {
    while (v && v->vt == (VT_VARIANT | VT_BYREF) && v->pvarVal) v = v->pvarVal;
    return v;
}

// The value as a number; false when the variant holds none.
HRESULT AsNumber(const VARIANT& v, double& out) {
    switch (v.vt) {
    case VT_EMPTY: out = 0; return S_OK;
    case VT_I2: out = v.iVal; return S_OK;
    case VT_I4: out = v.lVal; return S_OK;
    case VT_UI1: out = v.bVal; return S_OK;
    case VT_R4: out = v.fltVal; return S_OK;
    case VT_R8: case VT_DATE: out = v.dblVal; return S_OK;
    case VT_BOOL: out = v.boolVal ? -1 : 0; return S_OK;
    case VT_BSTR: {
        std::wstring text = v.bstrVal ? v.bstrVal : L"";
        size_t start = text.find_first_not_of(L" \t");
        if (start == std::wstring::npos) return DISP_E_TYPEMISMATCH;
        if (_wcsicmp(text.c_str() + start, L"true") == 0) {
            out = -1;
            return S_OK;
        }
        if (_wcsicmp(text.c_str() + start, L"false") == 0) {
            out = 0;
            return S_OK;
        }
        wchar_t* end = nullptr;
        out = std::wcstod(text.c_str() + start, &end);
        while (end && *end && std::iswspace(static_cast<wint_t>(*end))) ++end;
        return end && *end == L'\0' ? S_OK : DISP_E_TYPEMISMATCH;
    }
    default: return DISP_E_TYPEMISMATCH;
    }
}

// Whole numbers round half to even, as the platform converts them.
HRESULT ToWhole(double value, double minimum, double maximum, long long& out) {
    double rounded = std::nearbyint(value);
    if (!std::isfinite(value) || rounded < minimum || rounded > maximum) return DISP_E_OVERFLOW;
    out = static_cast<long long>(rounded);
    return S_OK;
}

}  // namespace

extern "C" {

void WINAPI VariantInit(VARIANTARG* variant) {
    if (!variant) return;
    variant->vt = VT_EMPTY;
    variant->wReserved1 = variant->wReserved2 = variant->wReserved3 = 0;
    variant->llVal = 0;
}

HRESULT WINAPI VariantClear(VARIANTARG* variant) {
    if (!variant) return E_INVALIDARG;
    switch (variant->vt) {
    case VT_BSTR: SysFreeString(variant->bstrVal); break;
    case VT_DISPATCH:
        if (variant->pdispVal) variant->pdispVal->Release();
        break;
    case VT_UNKNOWN:
        if (variant->punkVal) variant->punkVal->Release();
        break;
    default: break;
    }
    VariantInit(variant);
    return S_OK;
}

HRESULT WINAPI VariantCopy(VARIANTARG* destination, const VARIANTARG* source) {
    if (!destination || !source) return E_INVALIDARG;
    if (destination == source) return S_OK;
    VARIANT copy = *source;
    if (source->vt == VT_BSTR && source->bstrVal) {
        copy.bstrVal = SysAllocStringLen(source->bstrVal, SysStringLen(source->bstrVal));
        if (!copy.bstrVal) return E_OUTOFMEMORY;
    } else if (source->vt == VT_DISPATCH && source->pdispVal) {
        source->pdispVal->AddRef();
    } else if (source->vt == VT_UNKNOWN && source->punkVal) {
        source->punkVal->AddRef();
    }
    VariantClear(destination);
    *destination = copy;
    return S_OK;
}

HRESULT WINAPI VariantChangeType(VARIANTARG* destination, const VARIANTARG* source, USHORT flags, VARTYPE type) {
    if (!destination || !source) return E_INVALIDARG;
    const VARIANT& from = *Deref(source);
    VARIANT result;
    VariantInit(&result);
    result.vt = type;
    if (from.vt == type) return VariantCopy(destination, &from);
    if (from.vt == VT_NULL || from.vt == VT_ERROR) return DISP_E_TYPEMISMATCH;
    double number = 0;
    long long whole = 0;
    HRESULT hr = S_OK;
    switch (type) {
    case VT_EMPTY: break;
    case VT_I2:
        if (FAILED(hr = AsNumber(from, number)) || FAILED(hr = ToWhole(number, -32768, 32767, whole))) return hr;
        result.iVal = static_cast<SHORT>(whole);
        break;
    case VT_I4:
        if (FAILED(hr = AsNumber(from, number)) || FAILED(hr = ToWhole(number, -2147483648.0, 2147483647.0, whole)))
            return hr;
        result.lVal = static_cast<LONG>(whole);
        break;
    case VT_UI1:
        if (FAILED(hr = AsNumber(from, number)) || FAILED(hr = ToWhole(number, 0, 255, whole))) return hr;
        result.bVal = static_cast<BYTE>(whole);
        break;
    case VT_R4:
    case VT_R8:
    case VT_DATE:
        if (FAILED(hr = AsNumber(from, number))) return hr;
        if (type == VT_R4) result.fltVal = static_cast<FLOAT>(number);
        else result.dblVal = number;
        break;
    case VT_BOOL:
        if (FAILED(hr = AsNumber(from, number))) return hr;
        result.boolVal = number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
        break;
    case VT_BSTR: {
        std::wstring text;
        if (from.vt == VT_BOOL) {
            text = flags & kAlphaBool ? (from.boolVal ? L"True" : L"False") : (from.boolVal ? L"-1" : L"0");
        } else if (from.vt == VT_EMPTY) {
        } else if (from.vt == VT_I2 || from.vt == VT_I4 || from.vt == VT_UI1) {
            AsNumber(from, number);
            text = std::to_wstring(static_cast<long long>(number));
        } else if (SUCCEEDED(AsNumber(from, number))) {
            wchar_t buffer[64];
            std::swprintf(buffer, 64, L"%.15g", number);
            text = buffer;
        } else {
            return DISP_E_TYPEMISMATCH;
        }
        result.bstrVal = SysAllocString(text.c_str());
        if (!result.bstrVal) return E_OUTOFMEMORY;
        break;
    }
    case VT_DISPATCH:
        if (from.vt == VT_EMPTY) {
            result.pdispVal = nullptr;
        } else if (from.vt == VT_UNKNOWN && from.punkVal) {
            void* dispatch = nullptr;
            if (FAILED(hr = from.punkVal->QueryInterface(IID_IDispatch, &dispatch))) return DISP_E_TYPEMISMATCH;
            result.pdispVal = static_cast<IDispatch*>(dispatch);
        } else {
            return DISP_E_TYPEMISMATCH;
        }
        break;
    case VT_UNKNOWN:
        if (from.vt != VT_DISPATCH) return DISP_E_TYPEMISMATCH;
        result.punkVal = from.pdispVal;
        if (from.pdispVal) from.pdispVal->AddRef();
        break;
    default: return DISP_E_BADVARTYPE;
    }
    // The source may be the destination: its old value goes only now.
    VariantClear(destination);
    *destination = result;
    return S_OK;
}

}  // extern "C"
