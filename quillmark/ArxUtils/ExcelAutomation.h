// Excel's objects as the module speaks to them, late bound: one thin driver
// per object, one InvokeHelper call per member, by the dispatch ids that
// Excel publishes. No logic lives here; ExcelUtils strings the calls
// together. A dispatch result comes with one reference, for the caller to
// attach to a driver or release; a text result is a new string.
#pragma once

#include "StdAfx.h"

#include <afxdisp.h>

// The argument left out: every optional argument is passed as this.
extern const VARIANT g_missingArgument;

class CApplication : public COleDispatchDriver {
public:
    CApplication() = default;
    explicit CApplication(LPDISPATCH dispatch) : COleDispatchDriver(dispatch) {}

    LPDISPATCH get_ActiveCell();
    LPDISPATCH get_ActiveSheet();
    LPDISPATCH get_ActiveWorkbook();
    LPDISPATCH get_Workbooks();
    BOOL get_Visible();
    void put_Visible(BOOL visible);
};

class CWorkbooks : public COleDispatchDriver {
public:
    CWorkbooks() = default;
    explicit CWorkbooks(LPDISPATCH dispatch) : COleDispatchDriver(dispatch) {}

    LONG get_Count();
    LPDISPATCH get_Item(const VARIANT& index);
    LPDISPATCH Add(const VARIANT& templateFile);
    LPDISPATCH Open(LPCTSTR fileName, const VARIANT& updateLinks, const VARIANT& readOnly, const VARIANT& format,
                    const VARIANT& password, const VARIANT& writeResPassword,
                    const VARIANT& ignoreReadOnlyRecommended, const VARIANT& origin, const VARIANT& delimiter,
                    const VARIANT& editable, const VARIANT& notify, const VARIANT& converter,
                    const VARIANT& addToMru);
};

class CWorkbook : public COleDispatchDriver {
public:
    CWorkbook() = default;
    explicit CWorkbook(LPDISPATCH dispatch) : COleDispatchDriver(dispatch) {}

    CString get_Name();
    CString get_FullName();
    LPDISPATCH get_Worksheets();
};

class CWorksheets : public COleDispatchDriver {
public:
    CWorksheets() = default;
    explicit CWorksheets(LPDISPATCH dispatch) : COleDispatchDriver(dispatch) {}

    LONG get_Count();
    LPDISPATCH get_Item(const VARIANT& index);
};

class CWorksheet : public COleDispatchDriver {
public:
    CWorksheet() = default;
    explicit CWorksheet(LPDISPATCH dispatch) : COleDispatchDriver(dispatch) {}

    CString get_Name();
    void put_Visible(LONG visible);
    void Activate();
    LPDISPATCH get_Range(const VARIANT& cell1, const VARIANT& cell2);
};

class CRange : public COleDispatchDriver {
public:
    CRange() = default;
    explicit CRange(LPDISPATCH dispatch) : COleDispatchDriver(dispatch) {}

    LONG get_Column();
    LONG get_Row();
    // Excel answers a variant, which the module does not use; the caller
    // clears it.
    VARIANT Select();
};
