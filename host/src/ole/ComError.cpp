// _com_error: a failed status code as an exception, with the system's text.
#include <comdef.h>

#include <afxstr.h>
#include <winbase.h>

#include <cstdlib>
#include <cwchar>

_com_error::_com_error(HRESULT hr) : m_hr(hr) {}

_com_error::_com_error(const _com_error& other) : m_hr(other.m_hr) {}

_com_error& _com_error::operator=(const _com_error& other) {
    if (this != &other) {
        LocalFree(m_message);
        m_message = nullptr;
        m_hr = other.m_hr;
    }
    return *this;
}

_com_error::~_com_error() { LocalFree(m_message); }

WORD _com_error::WCode() const {
    DWORD code = static_cast<DWORD>(m_hr);
    return code >= 0x80040200u && code <= 0x8004FFFFu ? static_cast<WORD>(code - 0x80040200u) : 0;
}

const TCHAR* _com_error::ErrorMessage() const {
    if (m_message) return m_message;
    DWORD length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                  nullptr, static_cast<DWORD>(m_hr), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                                  reinterpret_cast<LPWSTR>(&m_message), 0, nullptr);
    if (length > 0 && m_message) {
        // Without the system's line end.
        if (length > 1 && m_message[length - 1] == L'\n') {
            m_message[length - 1] = L'\0';
            if (m_message[length - 2] == L'\r') m_message[length - 2] = L'\0';
        }
        return m_message;
    }
    CString text;
    if (WCode() != 0) text.Format(L"IDispatch error #%d", static_cast<int>(WCode()));
    else text.Format(L"Unknown error 0x%0lX", static_cast<unsigned long>(static_cast<DWORD>(m_hr)));
    m_message = static_cast<TCHAR*>(std::malloc((text.GetLength() + 1) * sizeof(TCHAR)));
    if (!m_message) return L"";
    std::wmemcpy(m_message, text, text.GetLength() + 1);
    return m_message;
}

void _com_issue_error(HRESULT hr) { throw _com_error(hr); }
