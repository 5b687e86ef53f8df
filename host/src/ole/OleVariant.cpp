// COleVariant: a variant that clears itself.
#include <afxdisp.h>

COleVariant::COleVariant() { VariantInit(this); }

COleVariant::COleVariant(const VARIANT& source) {
    VariantInit(this);
    if (FAILED(VariantCopy(this, &source))) AfxThrowMemoryException();
}

COleVariant::COleVariant(const COleVariant& source) : COleVariant(static_cast<const VARIANT&>(source)) {}

COleVariant::COleVariant(LPCTSTR text) {
    VariantInit(this);
    *this = text;
}

COleVariant::COleVariant(LONG value, VARTYPE type) {
    VariantInit(this);
    vt = type;
    if (type == VT_BOOL) boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    else if (type == VT_ERROR) scode = value;
    else {
        vt = VT_I4;
        lVal = value;
    }
}

COleVariant::COleVariant(short value, VARTYPE type) {
    VariantInit(this);
    if (type == VT_BOOL) {
        vt = VT_BOOL;
        boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    } else {
        vt = VT_I2;
        iVal = value;
    }
}

COleVariant::COleVariant(double value) {
    VariantInit(this);
    vt = VT_R8;
    dblVal = value;
}

COleVariant::~COleVariant() { VariantClear(this); }

COleVariant& COleVariant::operator=(const VARIANT& source) {
    if (FAILED(VariantCopy(this, &source))) AfxThrowMemoryException();
    return *this;
}

COleVariant& COleVariant::operator=(const COleVariant& source) { return *this = static_cast<const VARIANT&>(source); }

COleVariant& COleVariant::operator=(LPCTSTR text) {
    VariantClear(this);
    vt = VT_BSTR;
    bstrVal = SysAllocString(text ? text : L"");
    if (!bstrVal) {
        vt = VT_EMPTY;
        AfxThrowMemoryException();
    }
    return *this;
}

COleVariant& COleVariant::operator=(LONG value) {
    VariantClear(this);
    vt = VT_I4;
    lVal = value;
    return *this;
}

void COleVariant::Clear() { VariantClear(this); }

void COleVariant::ChangeType(VARTYPE type, LPVARIANT source) {
    HRESULT hr = VariantChangeType(this, source ? source : this, 0, type);
    if (FAILED(hr)) AfxThrowOleException(hr);
}

void COleVariant::Attach(VARIANT& source) {
    VariantClear(this);
    *static_cast<VARIANT*>(this) = source;
    VariantInit(&source);
}

VARIANT COleVariant::Detach() {
    VARIANT out = *this;
    VariantInit(this);
    return out;
}
