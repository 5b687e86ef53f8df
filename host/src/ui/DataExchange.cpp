// Data exchange between a dialog's controls and its members. A value that
// does not read is told to the user in a message box and fails the
// exchange, so that UpdateData answers FALSE and OK keeps the dialog open.
#include <afxwin.h>

#include <algorithm>
#include <cerrno>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cwchar>
#include <cwctype>

#include "app/Host.h"
#include "core/WideFormat.h"
#include "ui/Controls.h"

using cadhost::ui::Desktop;

namespace {

// The framework's own texts for values that do not read.
const wchar_t* const kParseInteger = L"Please enter an integer.";
const wchar_t* const kParseUnsigned = L"Please enter a positive integer.";
const wchar_t* const kParseByte = L"Please enter an integer between 0 and 255.";
const wchar_t* const kParseReal = L"Please enter a number.";

void Report(const std::wstring& text) {
    if (cadhost::Host* host = cadhost::Host::Current()) host->Print(L"\n" + text);
}

// Sets a control's text only when it changes, as the framework does to
// spare the control a needless change.
void SetIfChanged(HWND control, const std::wstring& text) {
    if (cadhost::ui::GetText(control) != text) ::SetWindowTextW(control, text.c_str());
}

// A whole number with blanks around it, as the framework reads one.
bool ReadInteger(const std::wstring& text, long long& value, bool allowSign) {
    const wchar_t* p = text.c_str();
    while (*p == L' ' || *p == L'\t') ++p;
    if (!*p) return false;
    if (!allowSign && *p == L'-') return false;
    errno = 0;
    wchar_t* end = nullptr;
    value = std::wcstoll(p, &end, 10);
    if (end == p || errno == ERANGE) return false;
    while (*end == L' ' || *end == L'\t') ++end;
    return *end == L'\0';
}

bool ReadReal(const std::wstring& text, double& value) {
    const wchar_t* p = text.c_str();
    while (*p == L' ' || *p == L'\t') ++p;
    if (!*p) return false;
    errno = 0;
    wchar_t* end = nullptr;
    value = std::wcstod(p, &end);
    if (end == p || errno == ERANGE || !std::isfinite(value)) return false;
    while (*end == L' ' || *end == L'\t') ++end;
    return *end == L'\0';
}

[[noreturn]] void Refuse(CDataExchange* pDX, const std::wstring& text) {
    AfxMessageBox(text.c_str(), MB_ICONEXCLAMATION);
    pDX->Fail();
}

template <class T>
void ExchangeInteger(CDataExchange* pDX, int nIDC, T& value, long long low, long long high, const wchar_t* problem,
                     bool allowSign) {
    HWND control = pDX->PrepareEditCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        long long read = 0;
        if (!ReadInteger(cadhost::ui::GetText(control), read, allowSign) || read < low || read > high)
            Refuse(pDX, problem);
        value = static_cast<T>(read);
    } else {
        SetIfChanged(control, std::to_wstring(value));
    }
}

}  // namespace

CDataExchange::CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate)
    : m_bSaveAndValidate(bSaveAndValidate), m_pDlgWnd(pDlgWnd), m_idLastControl(0), m_bEditLastControl(FALSE) {}

HWND CDataExchange::PrepareCtrl(int nIDC) {
    HWND control = m_pDlgWnd ? ::GetDlgItem(m_pDlgWnd->m_hWnd, nIDC) : nullptr;
    if (!control) {
        Report(L"The dialog has no control " + std::to_wstring(nIDC) + L" to exchange data with.");
        Fail();
    }
    m_idLastControl = static_cast<UINT>(nIDC);
    m_bEditLastControl = FALSE;
    return control;
}

HWND CDataExchange::PrepareEditCtrl(int nIDC) {
    HWND control = PrepareCtrl(nIDC);
    m_bEditLastControl = TRUE;
    return control;
}

void CDataExchange::Fail() {
    if (m_pDlgWnd && m_bSaveAndValidate) {
        HWND control = ::GetDlgItem(m_pDlgWnd->m_hWnd, static_cast<int>(m_idLastControl));
        if (control) {
            ::SetFocus(control);
            if (m_bEditLastControl) ::SendMessageW(control, EM_SETSEL, 0, -1);
        }
    }
    AfxThrowUserException();
}

BOOL CWnd::UpdateData(BOOL bSaveAndValidate) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->IsWindow(m_hWnd)) return FALSE;
    CDataExchange exchange(this, bSaveAndValidate);
    // The controls' notifications of this exchange are not handled.
    HWND previous = desktop->NotifyLockout();
    desktop->SetNotifyLockout(m_hWnd);
    BOOL ok = FALSE;
    try {
        DoDataExchange(&exchange);
        ok = TRUE;
    } catch (CUserException* e) {
        e->Delete();
    }
    desktop->SetNotifyLockout(previous);
    return ok;
}

void CWnd::DoDataExchange(CDataExchange*) {}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, CString& value) {
    HWND control = pDX->PrepareEditCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) value = CString(cadhost::ui::GetText(control));
    else SetIfChanged(control, value.str());
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, LPTSTR value, int nMaxLen) {
    HWND control = pDX->PrepareEditCtrl(nIDC);
    if (!value || nMaxLen <= 0) return;
    if (pDX->m_bSaveAndValidate) {
        std::wstring text = cadhost::ui::GetText(control);
        size_t n = std::min<size_t>(text.size(), static_cast<size_t>(nMaxLen - 1));
        std::wmemcpy(value, text.data(), n);
        value[n] = L'\0';
    } else {
        SetIfChanged(control, std::wstring(value, wcsnlen(value, static_cast<size_t>(nMaxLen))));
    }
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, int& value) {
    ExchangeInteger(pDX, nIDC, value, INT_MIN, INT_MAX, kParseInteger, true);
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, UINT& value) {
    ExchangeInteger(pDX, nIDC, value, 0, UINT_MAX, kParseUnsigned, false);
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, long& value) {
    ExchangeInteger(pDX, nIDC, value, LONG_MIN, LONG_MAX, kParseInteger, true);
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, short& value) {
    ExchangeInteger(pDX, nIDC, value, SHRT_MIN, SHRT_MAX, kParseInteger, true);
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, BYTE& value) {
    ExchangeInteger(pDX, nIDC, value, 0, 255, kParseByte, false);
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, float& value) {
    HWND control = pDX->PrepareEditCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        double read = 0;
        if (!ReadReal(cadhost::ui::GetText(control), read) || std::fabs(read) > FLT_MAX) Refuse(pDX, kParseReal);
        value = static_cast<float>(read);
    } else {
        SetIfChanged(control, cadhost::FormatWideArgs(L"%.*g", FLT_DIG, static_cast<double>(value)));
    }
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, double& value) {
    HWND control = pDX->PrepareEditCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        double read = 0;
        if (!ReadReal(cadhost::ui::GetText(control), read)) Refuse(pDX, kParseReal);
        value = read;
    } else {
        SetIfChanged(control, cadhost::FormatWideArgs(L"%.*g", DBL_DIG, value));
    }
}

void AFXAPI DDX_Check(CDataExchange* pDX, int nIDC, int& value) {
    HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        value = static_cast<int>(::SendMessageW(control, BM_GETCHECK, 0, 0));
    } else {
        if (value < 0 || value > 2) value = 0;
        ::SendMessageW(control, BM_SETCHECK, static_cast<WPARAM>(value), 0);
    }
}

void AFXAPI DDX_Radio(CDataExchange* pDX, int nIDC, int& value) {
    HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) value = -1;
    Desktop* desktop = Desktop::Current();
    HWND parent = control->parent;
    if (!desktop->IsWindow(parent)) return;
    const std::vector<HWND>& siblings = parent->children;
    auto at = std::find(siblings.begin(), siblings.end(), control);
    int place = 0;
    for (auto it = at; it != siblings.end(); ++it) {
        if (it != at && ((*it)->style & WS_GROUP)) break;
        if (!cadhost::ui::IsRadioButton(*it)) continue;
        if (pDX->m_bSaveAndValidate) {
            if (cadhost::ui::GetCheck(*it) == BST_CHECKED) value = place;
        } else {
            cadhost::ui::SetCheck(*it, place == value ? BST_CHECKED : BST_UNCHECKED);
        }
        ++place;
    }
}

void AFXAPI DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl) {
    if (rControl.m_hWnd) return;
    HWND control = pDX->PrepareCtrl(nIDC);
    if (!rControl.SubclassWindow(control)) {
        Report(L"The control " + std::to_wstring(nIDC) + L" is bound to another object already.");
        pDX->Fail();
    }
}

void AFXAPI DDX_LBString(CDataExchange* pDX, int nIDC, CString& value) {
    HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        const cadhost::ui::ListEntry* entry = cadhost::ui::Entry(control, cadhost::ui::GetSelection(control));
        value = entry ? CString(entry->text) : CString();
    } else {
        ::SendMessageW(control, LB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(value.GetString()));
    }
}

void AFXAPI DDX_LBStringExact(CDataExchange* pDX, int nIDC, CString& value) {
    HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        DDX_LBString(pDX, nIDC, value);
    } else {
        int found = cadhost::ui::FindEntry(control, -1, value.str(), true);
        if (found >= 0) cadhost::ui::SetSelection(control, found);
    }
}

void AFXAPI DDX_LBIndex(CDataExchange* pDX, int nIDC, int& index) {
    HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) index = cadhost::ui::GetSelection(control);
    else cadhost::ui::SetSelection(control, index);
}

void AFXAPI DDX_CBString(CDataExchange* pDX, int nIDC, CString& value) {
    HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        value = CString(cadhost::ui::GetText(control));
    } else if (::SendMessageW(control, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                              reinterpret_cast<LPARAM>(value.GetString())) == CB_ERR) {
        SetIfChanged(control, value.str());
    }
}

void AFXAPI DDX_CBStringExact(CDataExchange* pDX, int nIDC, CString& value) {
    HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        value = CString(cadhost::ui::GetText(control));
        return;
    }
    int found = cadhost::ui::FindEntry(control, -1, value.str(), true);
    if (found >= 0) cadhost::ui::SetSelection(control, found);
    else SetIfChanged(control, value.str());
}

void AFXAPI DDX_CBIndex(CDataExchange* pDX, int nIDC, int& index) {
    HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) index = cadhost::ui::GetSelection(control);
    else cadhost::ui::SetSelection(control, index);
}

void AFXAPI DDV_MinMaxInt(CDataExchange* pDX, int value, int minVal, int maxVal) {
    if (!pDX->m_bSaveAndValidate || (value >= minVal && value <= maxVal)) return;
    Refuse(pDX, cadhost::FormatWideArgs(L"Please enter an integer between %d and %d.", minVal, maxVal));
}

void AFXAPI DDV_MinMaxUInt(CDataExchange* pDX, UINT value, UINT minVal, UINT maxVal) {
    if (!pDX->m_bSaveAndValidate || (value >= minVal && value <= maxVal)) return;
    Refuse(pDX, cadhost::FormatWideArgs(L"Please enter an integer between %u and %u.", minVal, maxVal));
}

void AFXAPI DDV_MinMaxLong(CDataExchange* pDX, long value, long minVal, long maxVal) {
    if (!pDX->m_bSaveAndValidate || (value >= minVal && value <= maxVal)) return;
    Refuse(pDX, cadhost::FormatWideArgs(L"Please enter an integer between %ld and %ld.", minVal, maxVal));
}

void AFXAPI DDV_MinMaxDouble(CDataExchange* pDX, const double& value, double minVal, double maxVal) {
    if (!pDX->m_bSaveAndValidate || (value >= minVal && value <= maxVal)) return;
    Refuse(pDX, cadhost::FormatWideArgs(L"Please enter a number between %.*g and %.*g.", DBL_DIG, minVal, DBL_DIG,
                                        maxVal));
}

void AFXAPI DDV_MaxChars(CDataExchange* pDX, const CString& value, int nChars) {
    if (!pDX->m_bSaveAndValidate) {
        HWND control = pDX->m_pDlgWnd ? ::GetDlgItem(pDX->m_pDlgWnd->m_hWnd, static_cast<int>(pDX->m_idLastControl))
                                      : nullptr;
        if (control) control->limitText = nChars;
        return;
    }
    if (value.GetLength() <= nChars) return;
    Refuse(pDX, cadhost::FormatWideArgs(L"Please enter no more than %d characters.", nChars));
}
