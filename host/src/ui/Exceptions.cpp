// The framework's exceptions: thrown as pointers, ended with Delete().
#include <afxwin.h>

#include <cwchar>

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CUserException, CException)

void CException::Delete() {
    if (m_bAutoDelete) delete this;
}

BOOL CException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const {
    if (helpContext) *helpContext = 0;
    if (error && maxError > 0) error[0] = L'\0';
    return FALSE;
}

int CException::ReportError(UINT type, UINT messageId) {
    wchar_t text[512];
    CString message;
    if (GetErrorMessage(text, 512, nullptr) && text[0]) {
        message = text;
    } else if (!messageId || !message.LoadString(messageId)) {
        message = L"No error message is available.";
    }
    return AfxMessageBox(message, type);
}

void AfxThrowUserException() { throw new CUserException; }

IMPLEMENT_DYNAMIC(CMemoryException, CException)
IMPLEMENT_DYNAMIC(CNotSupportedException, CException)

namespace {
BOOL CopyMessage(const wchar_t* text, LPTSTR error, UINT maxError, PUINT helpContext) {
    if (helpContext) *helpContext = 0;
    if (!error || maxError == 0) return FALSE;
    std::wcsncpy(error, text, maxError - 1);
    error[maxError - 1] = L'\0';
    return TRUE;
}
}  // namespace

BOOL CMemoryException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const {
    return CopyMessage(L"Out of memory.", error, maxError, helpContext);
}

BOOL CNotSupportedException::GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext) const {
    return CopyMessage(L"An unsupported operation was attempted.", error, maxError, helpContext);
}

void AfxThrowMemoryException() { throw new CMemoryException; }
void AfxThrowNotSupportedException() { throw new CNotSupportedException; }
