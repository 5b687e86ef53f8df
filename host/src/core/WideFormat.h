// The formatted-print engine behind CString::Format and acutPrintf, with the
// framework's rules: in wide text %s and %c take wide arguments (%hs, %hc and
// %S, %C narrow ones), and exponents have at least three digits.
#pragma once

#include <cstdarg>
#include <string>

namespace cadhost {

std::wstring FormatWide(const wchar_t* format, va_list args);
std::wstring FormatWideArgs(const wchar_t* format, ...);

}  // namespace cadhost
