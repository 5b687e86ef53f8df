#include "ArxUtils/ExcelUtils.h"

#include <comdef.h>

#include <cwchar>
#include <cwctype>

#include "fieldcode/FieldCodeForms.h"

CApplication ExcelUtils::m_application;
CWorkbook ExcelUtils::m_workbook;
CWorksheet ExcelUtils::m_worksheet;

namespace {

const int kNameLength = 260;

// The source file and line that a status without a system text names.
const ACHAR kSourceName[] = L"ExcelUtils";
const int kSourceLine = 424;

void Release(COleDispatchDriver& driver) {
    LPDISPATCH dispatch = driver.DetachDispatch();
    if (dispatch) dispatch->Release();
}

}  // namespace

ExcelUtils::~ExcelUtils() = default;

void ExcelUtils::ReleaseAll() {
    Release(m_worksheet);
    Release(m_workbook);
    Release(m_application);
}

int ExcelUtils::AttachRunning(LPCTSTR path, int readOnly, int& opened) {
    try {
        CLSID clsid = CLSID_NULL;
        CLSIDFromProgID(QM_EXCEL_PROGRAM_ID, &clsid);
        ReleaseAll();
        IUnknown* unknown = nullptr;
        LPDISPATCH dispatch = nullptr;
        if (SUCCEEDED(GetActiveObject(clsid, nullptr, &unknown)) && unknown) {
            unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch));
            unknown->Release();
        }
        // Excel not running is an ordinary case: no message.
        if (!dispatch) return 0;
        m_application.AttachDispatch(dispatch, TRUE);
        if (!m_application.get_Visible()) m_application.put_Visible(TRUE);
        if (path) opened = OpenWorkbook(path, readOnly);
        return 1;
    } catch (_com_error&) {
        return 0;
    } catch (CException* e) {
        ReportOleError(COleException::Process(e));
        e->Delete();
        return 0;
    }
}

int ExcelUtils::StartExcel() {
    try {
        ReleaseAll();
        COleException error;
        if (!m_application.CreateDispatch(QM_EXCEL_PROGRAM_ID, &error)) {
            ReportOleError(error.m_sc);
            return 0;
        }
        // A new Excel comes up hidden.
        if (!m_application.get_Visible()) m_application.put_Visible(TRUE);
        return 1;
    } catch (_com_error&) {
        return 0;
    } catch (CException* e) {
        ReportOleError(COleException::Process(e));
        e->Delete();
        return 0;
    }
}

int ExcelUtils::NewWorkbook() {
    try {
        CWorkbooks books(m_application.get_Workbooks());
        m_workbook.AttachDispatch(books.Add(g_missingArgument), TRUE);
        return 1;
    } catch (_com_error&) {
        return 0;
    } catch (CException* e) {
        ReportOleError(COleException::Process(e));
        e->Delete();
        return 0;
    }
}

int ExcelUtils::OpenWorkbook(LPCTSTR path, int readOnly) {
    try {
        if (!path || !*path) return 0;
        // Excel holds no two workbooks of the same file name, from any two
        // folders: the open ones are walked first.
        ACHAR name[kNameLength] = L"", extension[kNameLength] = L"";
        _wsplitpath(path, nullptr, nullptr, name, extension);
        CString fileName = CString(name) + extension;
        CWorkbooks books(m_application.get_Workbooks());
        LONG count = books.get_Count();
        for (LONG i = 1; i <= count; ++i) {
            CWorkbook book(books.get_Item(COleVariant(i)));
            if (book.get_FullName().CompareNoCase(path) == 0) {
                m_workbook.AttachDispatch(books.get_Item(COleVariant(i)), TRUE);
                return 1;
            }
            if (book.get_Name().CompareNoCase(fileName) == 0) {
                CString message;
                message.Format(QM_MESSAGE_SAME_NAME, (const ACHAR*)fileName);
                AfxMessageBox(message, MB_OK);
                return 0;
            }
        }
        const VARIANT& m = g_missingArgument;
        m_workbook.AttachDispatch(books.Open(path, COleVariant(static_cast<LONG>(1)),
                                             COleVariant(static_cast<LONG>(readOnly)), m, m, m, m, m, m, m, m, m, m),
                                  TRUE);
        return 1;
    } catch (_com_error&) {
        return 0;
    } catch (CException* e) {
        ReportOleError(COleException::Process(e));
        e->Delete();
        return 0;
    }
}

int ExcelUtils::BindActive() {
    try {
        if (!m_application.m_lpDispatch) {
            AfxMessageBox(QM_MESSAGE_NO_EXCEL, MB_OK);
            return 0;
        }
        CWorkbooks books(m_application.get_Workbooks());
        if (books.get_Count() < 1) {
            LPDISPATCH added = books.Add(g_missingArgument);
            if (added) added->Release();
        }
        // What Excel calls active, also just after an open: Excel activates
        // a workbook that it opens, not one that was open already.
        m_workbook.AttachDispatch(m_application.get_ActiveWorkbook(), TRUE);
        m_worksheet.AttachDispatch(m_application.get_ActiveSheet(), TRUE);
        return 1;
    } catch (_com_error&) {
        return 0;
    } catch (CException* e) {
        ReportOleError(COleException::Process(e));
        e->Delete();
        return 0;
    }
}

int ExcelUtils::SelectSheet(LPCTSTR name) {
    try {
        if (!name || !*name) return 0;
        CWorkbook book(m_application.get_ActiveWorkbook());
        CWorksheets sheets(book.get_Worksheets());
        LONG count = sheets.get_Count();
        LONG found = 0;
        for (LONG i = 1; i <= count && !found; ++i) {
            CWorksheet sheet(sheets.get_Item(COleVariant(i)));
            if (sheet.get_Name().CompareNoCase(name) == 0) found = i;
        }
        if (!found) return 0;
        m_worksheet.AttachDispatch(sheets.get_Item(COleVariant(found)), TRUE);
        m_worksheet.put_Visible(1);
        m_worksheet.Activate();
        return 1;
    } catch (_com_error&) {
        return 0;
    } catch (CException* e) {
        ReportOleError(COleException::Process(e));
        e->Delete();
        return 0;
    }
}

CString ExcelUtils::ColumnLetters(int column) { return ::ColumnLetters(column); }

int ExcelUtils::ParseCellReference(LPCTSTR reference, int& row, int& column) {
    if (!reference || !*reference) return 0;
    const ACHAR* dollar = wcschr(reference, L'$');
    if (!dollar) return 0;
    const ACHAR* at = dollar + 1;
    if (!iswalpha(static_cast<wint_t>(*at))) return 0;
    column = *at - 64;
    ++at;
    if (*at != L'$') {
        if (!iswalpha(static_cast<wint_t>(*at))) return 0;
        column = column * 26 + (*at - 64);
        ++at;
    }
    // The dollar sign before the row is passed over unread.
    if (*at) ++at;
    long long number = 0;
    while (*at >= L'0' && *at <= L'9') {
        if (number < 0x7FFFFFFF) number = number * 10 + (*at - L'0');
        ++at;
    }
    row = number > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(number);
    return 1;
}

void ExcelUtils::ReportOleError(SCODE code) {
    LPWSTR text = nullptr;
    FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                   static_cast<DWORD>(code), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<LPWSTR>(&text),
                   0, nullptr);
    if (text) {
        AfxMessageBox(text, MB_ICONINFORMATION);
    } else {
        CString message;
        message.Format(L"\n%s(%d): OLE Execption caught: SCODE = %x", kSourceName, kSourceLine,
                       static_cast<unsigned>(code));
        AfxMessageBox(message, MB_ICONINFORMATION);
    }
    LocalFree(text);
}

ExcelSessionScope::ExcelSessionScope(int& opened, LPCTSTR path, int readOnly) {
    opened = 1;
    int outcome = 1;
    if (ExcelUtils::AttachRunning(path, readOnly, outcome)) {
        opened = outcome;
    } else if (ExcelUtils::StartExcel()) {
        if (path) opened = ExcelUtils::OpenWorkbook(path, readOnly);
        else ExcelUtils::NewWorkbook();
    }
    ExcelUtils::BindActive();
    if (!ExcelUtils::m_application.m_lpDispatch) opened = 0;
}

ExcelSessionScope::~ExcelSessionScope() { ExcelUtils::ReleaseAll(); }
