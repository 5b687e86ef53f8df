// Message boxes: shown to the user through the host's user interface, each
// printed as its caption and text, answered by the driver.
#include <afxwin.h>

#include "ui/Desktop.h"

namespace {

// The caption of the framework's boxes: the name of the host program.
const wchar_t* const kHostName = L"cadhost";

}  // namespace

extern "C" int WINAPI MessageBoxW(HWND, LPCWSTR text, LPCWSTR caption, UINT type) {
    cadhost::ui::Desktop* desktop = cadhost::ui::Desktop::Current();
    if (!desktop) return 0;
    return desktop->ShowMessageBox(caption ? caption : L"Error", text ? text : L"", type);
}

int AFXAPI AfxMessageBox(LPCTSTR lpszText, UINT nType, UINT) { return ::MessageBoxW(nullptr, lpszText, kHostName, nType); }

int AFXAPI AfxMessageBox(UINT nIDPrompt, UINT nType, UINT) {
    CString text;
    HINSTANCE resources = AfxFindResourceHandle(MAKEINTRESOURCE(nIDPrompt / 16 + 1), RT_STRING);
    if (!text.LoadString(resources, nIDPrompt)) text.Format(L"The string %u is not in the current resources.", nIDPrompt);
    return ::MessageBoxW(nullptr, text, kHostName, nType);
}
