#include "ArxUtils/ExcelAutomation.h"

const VARIANT g_missingArgument = {.vt = VT_ERROR, .scode = DISP_E_PARAMNOTFOUND};

// ---- Application ----------------------------------------------------------------

LPDISPATCH CApplication::get_ActiveCell() {
    LPDISPATCH result = nullptr;
    InvokeHelper(0x131, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, nullptr);
    return result;
}

LPDISPATCH CApplication::get_ActiveSheet() {
    LPDISPATCH result = nullptr;
    InvokeHelper(0x133, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, nullptr);
    return result;
}

LPDISPATCH CApplication::get_ActiveWorkbook() {
    LPDISPATCH result = nullptr;
    InvokeHelper(0x134, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, nullptr);
    return result;
}

LPDISPATCH CApplication::get_Workbooks() {
    LPDISPATCH result = nullptr;
    InvokeHelper(0x23C, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, nullptr);
    return result;
}

BOOL CApplication::get_Visible() {
    BOOL result = FALSE;
    InvokeHelper(0x22E, DISPATCH_PROPERTYGET, VT_BOOL, &result, nullptr);
    return result;
}

void CApplication::put_Visible(BOOL visible) {
    static const BYTE parameters[] = VTS_BOOL;
    InvokeHelper(0x22E, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, parameters, visible);
}

// ---- Workbooks ------------------------------------------------------------------

LONG CWorkbooks::get_Count() {
    LONG result = 0;
    InvokeHelper(0x76, DISPATCH_PROPERTYGET, VT_I4, &result, nullptr);
    return result;
}

LPDISPATCH CWorkbooks::get_Item(const VARIANT& index) {
    static const BYTE parameters[] = VTS_VARIANT;
    LPDISPATCH result = nullptr;
    InvokeHelper(0xAA, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, parameters, &index);
    return result;
}

LPDISPATCH CWorkbooks::Add(const VARIANT& templateFile) {
    static const BYTE parameters[] = VTS_VARIANT;
    LPDISPATCH result = nullptr;
    InvokeHelper(0xB5, DISPATCH_METHOD, VT_DISPATCH, &result, parameters, &templateFile);
    return result;
}

LPDISPATCH CWorkbooks::Open(LPCTSTR fileName, const VARIANT& updateLinks, const VARIANT& readOnly,
                            const VARIANT& format, const VARIANT& password, const VARIANT& writeResPassword,
                            const VARIANT& ignoreReadOnlyRecommended, const VARIANT& origin, const VARIANT& delimiter,
                            const VARIANT& editable, const VARIANT& notify, const VARIANT& converter,
                            const VARIANT& addToMru) {
    static const BYTE parameters[] = VTS_BSTR VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT
        VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT;
    LPDISPATCH result = nullptr;
    InvokeHelper(0x2AA, DISPATCH_METHOD, VT_DISPATCH, &result, parameters, fileName, &updateLinks, &readOnly, &format,
                 &password, &writeResPassword, &ignoreReadOnlyRecommended, &origin, &delimiter, &editable, &notify,
                 &converter, &addToMru);
    return result;
}

// ---- Workbook -------------------------------------------------------------------

CString CWorkbook::get_Name() {
    CString result;
    InvokeHelper(0x6E, DISPATCH_PROPERTYGET, VT_BSTR, &result, nullptr);
    return result;
}

CString CWorkbook::get_FullName() {
    CString result;
    InvokeHelper(0x121, DISPATCH_PROPERTYGET, VT_BSTR, &result, nullptr);
    return result;
}

LPDISPATCH CWorkbook::get_Worksheets() {
    LPDISPATCH result = nullptr;
    InvokeHelper(0x1EE, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, nullptr);
    return result;
}

// ---- Worksheets -----------------------------------------------------------------

LONG CWorksheets::get_Count() {
    LONG result = 0;
    InvokeHelper(0x76, DISPATCH_PROPERTYGET, VT_I4, &result, nullptr);
    return result;
}

LPDISPATCH CWorksheets::get_Item(const VARIANT& index) {
    static const BYTE parameters[] = VTS_VARIANT;
    LPDISPATCH result = nullptr;
    InvokeHelper(0xAA, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, parameters, &index);
    return result;
}

// ---- Worksheet ------------------------------------------------------------------

CString CWorksheet::get_Name() {
    CString result;
    InvokeHelper(0x6E, DISPATCH_PROPERTYGET, VT_BSTR, &result, nullptr);
    return result;
}

void CWorksheet::put_Visible(LONG visible) {
    static const BYTE parameters[] = VTS_I4;
    InvokeHelper(0x22E, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, parameters, visible);
}

void CWorksheet::Activate() { InvokeHelper(0x130, DISPATCH_METHOD, VT_EMPTY, nullptr, nullptr); }

LPDISPATCH CWorksheet::get_Range(const VARIANT& cell1, const VARIANT& cell2) {
    static const BYTE parameters[] = VTS_VARIANT VTS_VARIANT;
    LPDISPATCH result = nullptr;
    InvokeHelper(0xC5, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, parameters, &cell1, &cell2);
    return result;
}

// ---- Range ----------------------------------------------------------------------

LONG CRange::get_Column() {
    LONG result = 0;
    InvokeHelper(0xF0, DISPATCH_PROPERTYGET, VT_I4, &result, nullptr);
    return result;
}

LONG CRange::get_Row() {
    LONG result = 0;
    InvokeHelper(0x101, DISPATCH_PROPERTYGET, VT_I4, &result, nullptr);
    return result;
}

VARIANT CRange::Select() {
    VARIANT result;
    VariantInit(&result);
    InvokeHelper(0xEB, DISPATCH_METHOD, VT_VARIANT, &result, nullptr);
    return result;
}
