// The exceptions of calls into other programs.
#include <afxdisp.h>

#include <cwchar>

IMPLEMENT_DYNAMIC(COleException, CException)
IMPLEMENT_DYNAMIC(COleDispatchException, CException)

BOOL COleException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const {
    if (helpContext) *helpContext = 0;
    if (!error || maxError == 0) return FALSE;
    error[0] = L'\0';
    LPWSTR text = nullptr;
    if (!FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                        nullptr, static_cast<DWORD>(m_sc), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                        reinterpret_cast<LPWSTR>(&text), 0, nullptr))
        return FALSE;
    std::wcsncpy(error, text, maxError - 1);
    error[maxError - 1] = L'\0';
    LocalFree(text);
    return TRUE;
}

SCODE COleException::Process(const CException* exception) {
    if (exception->IsKindOf(RUNTIME_CLASS(COleException))) return static_cast<const COleException*>(exception)->m_sc;
    if (exception->IsKindOf(RUNTIME_CLASS(CMemoryException))) return E_OUTOFMEMORY;
    if (exception->IsKindOf(RUNTIME_CLASS(CNotSupportedException))) return E_NOTIMPL;
    return E_UNEXPECTED;
}

COleDispatchException::COleDispatchException(LPCTSTR description, UINT helpId, WORD code)
    : m_wCode(code), m_dwHelpContext(helpId), m_strDescription(description) {}

BOOL COleDispatchException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const {
    if (helpContext) *helpContext = m_dwHelpContext;
    if (!error || maxError == 0) return FALSE;
    std::wcsncpy(error, m_strDescription, maxError - 1);
    error[maxError - 1] = L'\0';
    return TRUE;
}

void AfxThrowOleException(SCODE sc) {
    auto* exception = new COleException;
    exception->m_sc = sc;
    throw exception;
}

void AfxThrowOleDispatchException(WORD code, LPCTSTR description, UINT helpId) {
    throw new COleDispatchException(description, helpId, code);
}
