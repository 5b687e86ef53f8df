// The C runtime's wide conversions as the platform defines them.
#include <tchar.h>

#include <climits>
#include <cwchar>
#include <cwctype>
#include <string>

namespace {
// Reads only plain decimal notation: digits, one point, an exponent. The
// platform's runtime knows no hexadecimal or "inf" here.
double ReadReal(const wchar_t* text) {
    if (!text) return 0.0;
    const wchar_t* p = text;
    while (std::iswspace(static_cast<wint_t>(*p))) ++p;
    const wchar_t* start = p;
    if (*p == L'+' || *p == L'-') ++p;
    bool digits = false;
    while (*p >= L'0' && *p <= L'9') ++p, digits = true;
    if (*p == L'.') {
        ++p;
        while (*p >= L'0' && *p <= L'9') ++p, digits = true;
    }
    if (!digits) return 0.0;
    if (*p == L'e' || *p == L'E') {
        const wchar_t* e = p + 1;
        if (*e == L'+' || *e == L'-') ++e;
        if (*e >= L'0' && *e <= L'9') {
            while (*e >= L'0' && *e <= L'9') ++e;
            p = e;
        }
    }
    std::wstring number(start, p);
    return std::wcstod(number.c_str(), nullptr);
}

long long ReadWhole(const wchar_t* text) {
    if (!text) return 0;
    return std::wcstoll(text, nullptr, 10);
}
}  // namespace

extern "C" {

int _wtoi(const wchar_t* text) {
    long long v = ReadWhole(text);
    if (v > INT_MAX) return INT_MAX;
    if (v < INT_MIN) return INT_MIN;
    return static_cast<int>(v);
}

long _wtol(const wchar_t* text) { return static_cast<long>(ReadWhole(text)); }

double _wtof(const wchar_t* text) { return ReadReal(text); }

int _wcsicmp(const wchar_t* a, const wchar_t* b) { return _wcsnicmp(a, b, static_cast<size_t>(-1)); }

int _wcsnicmp(const wchar_t* a, const wchar_t* b, size_t count) {
    if (!a || !b) return a == b ? 0 : (a ? 1 : -1);
    for (size_t i = 0; i < count; ++i) {
        wint_t ca = std::towlower(static_cast<wint_t>(a[i])), cb = std::towlower(static_cast<wint_t>(b[i]));
        if (ca != cb) return ca < cb ? -1 : 1;
        if (ca == 0) return 0;
    }
    return 0;
}
}
