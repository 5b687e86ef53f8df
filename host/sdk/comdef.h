// The compiler's support for the component object model: _com_error, the
// exception that carries a failed status code.
#pragma once

#include "oleauto.h"

class CADHOST_API _com_error {
public:
    explicit _com_error(HRESULT hr);
    _com_error(const _com_error& other);
    _com_error& operator=(const _com_error& other);
    virtual ~_com_error();

    HRESULT Error() const { return m_hr; }
    // The dispatch error number of a code from 0x80040200 to 0x8004FFFF, 0
    // for any other.
    WORD WCode() const;
    // The system's text for the code without its line end; without one,
    // "IDispatch error #%d" for a dispatch error number, else "Unknown
    // error 0x%0lX". The text belongs to the object.
    const TCHAR* ErrorMessage() const;

private:
    HRESULT m_hr;
    mutable TCHAR* m_message = nullptr;
};

// Raises a _com_error for a failed status code.
[[noreturn]] CADHOST_API void _com_issue_error(HRESULT hr);
