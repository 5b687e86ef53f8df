#include "core/WideFormat.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>

#include "core/Utf8.h"

namespace cadhost {
namespace {

struct Directive {
    bool left = false, plus = false, space = false, alt = false, zero = false;
    int width = -1;
    int precision = -1;
    enum class Size { Default, Char, Short, Long, LongLong, LongDouble, Wide, Narrow, Ptr, Max } size = Size::Default;
    wchar_t conversion = 0;
};

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// The platform's runtime writes at least three exponent digits: 1e+006.
std::string WidenExponent(std::string text) {
    size_t e = text.find_first_of("eE");
    if (e == std::string::npos || e + 1 >= text.size()) return text;
    size_t digits = e + 2;
    if (text[e + 1] != '+' && text[e + 1] != '-') return text;
    size_t count = text.size() - digits;
    if (count < 3) text.insert(digits, 3 - count, '0');
    return text;
}

// Pads a converted number to the field width: zeros go between the sign or
// radix prefix and the digits.
std::wstring Pad(const std::string& body, const Directive& directive, bool numeric) {
    std::wstring text = FromUtf8(body);
    if (directive.width < 0 || static_cast<int>(text.size()) >= directive.width) return text;
    size_t fill = static_cast<size_t>(directive.width) - text.size();
    if (directive.left) return text + std::wstring(fill, L' ');
    bool finite = text.find_first_of(L"in") == std::wstring::npos;  // no "inf"/"nan"
    if (numeric && directive.zero && finite) {
        size_t at = 0;
        if (at < text.size() && (text[at] == L'+' || text[at] == L'-' || text[at] == L' ')) ++at;
        if (at + 1 < text.size() && text[at] == L'0' && (text[at + 1] == L'x' || text[at + 1] == L'X')) at += 2;
        text.insert(at, fill, L'0');
        return text;
    }
    return std::wstring(fill, L' ') + text;
}

std::string NarrowFormat(const Directive& directive, const char* length, char conversion, bool withPrecision = true) {
    std::string f = "%";
    if (directive.plus) f += '+';
    if (directive.space) f += ' ';
    if (directive.alt) f += '#';
    if (withPrecision && directive.precision >= 0) f += "." + std::to_string(directive.precision);
    f += length;
    f += conversion;
    return f;
}

template <class T>
std::string Snprintf(const std::string& format, T value) {
    char small[128];
    int n = std::snprintf(small, sizeof small, format.c_str(), value);
    if (n < 0) return std::string();
    if (static_cast<size_t>(n) < sizeof small) return std::string(small, static_cast<size_t>(n));
    std::string big(static_cast<size_t>(n) + 1, '\0');
    std::snprintf(big.data(), big.size(), format.c_str(), value);
    big.resize(static_cast<size_t>(n));
    return big;
}

std::wstring ApplyTextWidth(std::wstring text, const Directive& directive) {
    if (directive.precision >= 0 && static_cast<int>(text.size()) > directive.precision) text.resize(directive.precision);
    if (directive.width > static_cast<int>(text.size())) {
        size_t fill = static_cast<size_t>(directive.width) - text.size();
        text = directive.left ? text + std::wstring(fill, L' ') : std::wstring(fill, L' ') + text;
    }
    return text;
}

}  // namespace

std::wstring FormatWide(const wchar_t* format, va_list args) {
    std::wstring out;
    if (!format) return out;
    va_list ap;
    va_copy(ap, args);
    const wchar_t* p = format;
    while (*p) {
        if (*p != L'%') {
            out += *p++;
            continue;
        }
        const wchar_t* start = p++;
        if (*p == L'%') {
            out += L'%';
            ++p;
            continue;
        }
        Directive directive;
        for (;; ++p) {
            if (*p == L'-') directive.left = true;
            else if (*p == L'+') directive.plus = true;
            else if (*p == L' ') directive.space = true;
            else if (*p == L'#') directive.alt = true;
            else if (*p == L'0') directive.zero = true;
            else break;
        }
        if (*p == L'*') {
            directive.width = va_arg(ap, int);
            if (directive.width < 0) directive.left = true, directive.width = -directive.width;
            ++p;
        } else if (IsDigit(*p)) {
            directive.width = 0;
            while (IsDigit(*p)) directive.width = directive.width * 10 + (*p++ - L'0');
        }
        if (*p == L'.') {
            ++p;
            directive.precision = 0;
            if (*p == L'*') {
                directive.precision = va_arg(ap, int);
                if (directive.precision < 0) directive.precision = -1;
                ++p;
            } else {
                while (IsDigit(*p)) directive.precision = directive.precision * 10 + (*p++ - L'0');
            }
        }
        using S = Directive::Size;
        if (*p == L'h') {
            ++p;
            if (*p == L'h') ++p, directive.size = S::Char;
            else directive.size = S::Short;
        } else if (*p == L'l') {
            ++p;
            if (*p == L'l') ++p, directive.size = S::LongLong;
            else directive.size = S::Long;
        } else if (*p == L'L') {
            ++p, directive.size = S::LongDouble;
        } else if (*p == L'w') {
            ++p, directive.size = S::Wide;
        } else if (*p == L'I') {
            if (p[1] == L'6' && p[2] == L'4') p += 3, directive.size = S::LongLong;
            else if (p[1] == L'3' && p[2] == L'2') p += 3, directive.size = S::Default;
            else ++p, directive.size = S::Ptr;
        } else if (*p == L'z' || *p == L't') {
            ++p, directive.size = S::Ptr;
        } else if (*p == L'j') {
            ++p, directive.size = S::Max;
        }
        directive.conversion = *p;
        if (!*p) {  // a format that ends inside a directive shows it as it stands
            out.append(start);
            break;
        }
        ++p;
        switch (directive.conversion) {
        case L'd':
        case L'i': {
            long long v;
            switch (directive.size) {
            case S::Char: v = static_cast<signed char>(va_arg(ap, int)); break;
            case S::Short: v = static_cast<short>(va_arg(ap, int)); break;
            case S::Long: v = va_arg(ap, long); break;
            case S::LongLong: v = va_arg(ap, long long); break;
            case S::Ptr: v = va_arg(ap, intptr_t); break;
            case S::Max: v = va_arg(ap, intmax_t); break;
            default: v = va_arg(ap, int); break;
            }
            out += Pad(Snprintf(NarrowFormat(directive, "ll", 'd'), v), directive, directive.precision < 0);
            break;
        }
        case L'u':
        case L'o':
        case L'x':
        case L'X': {
            unsigned long long v;
            switch (directive.size) {
            case S::Char: v = static_cast<unsigned char>(va_arg(ap, unsigned)); break;
            case S::Short: v = static_cast<unsigned short>(va_arg(ap, unsigned)); break;
            case S::Long: v = va_arg(ap, unsigned long); break;
            case S::LongLong: v = va_arg(ap, unsigned long long); break;
            case S::Ptr: v = va_arg(ap, uintptr_t); break;
            case S::Max: v = va_arg(ap, uintmax_t); break;
            default: v = va_arg(ap, unsigned); break;
            }
            out += Pad(Snprintf(NarrowFormat(directive, "ll", static_cast<char>(directive.conversion)), v), directive,
                       directive.precision < 0);
            break;
        }
        case L'e':
        case L'E':
        case L'f':
        case L'F':
        case L'g':
        case L'G':
        case L'a':
        case L'A': {
            std::string body;
            if (directive.size == S::LongDouble)
                body = Snprintf(NarrowFormat(directive, "L", static_cast<char>(directive.conversion)), va_arg(ap, long double));
            else
                body = Snprintf(NarrowFormat(directive, "", static_cast<char>(directive.conversion)), va_arg(ap, double));
            if (directive.conversion != L'a' && directive.conversion != L'A') body = WidenExponent(body);
            out += Pad(body, directive, true);
            break;
        }
        case L'p': {
            out += Pad(Snprintf(std::string("%p"), va_arg(ap, void*)), directive, false);
            break;
        }
        case L'c':
        case L'C': {
            bool narrow = directive.size == S::Short || directive.size == S::Char ||
                          (directive.conversion == L'C' && directive.size != S::Long && directive.size != S::Wide);
            wchar_t ch = narrow ? static_cast<wchar_t>(static_cast<unsigned char>(va_arg(ap, int)))
                                : static_cast<wchar_t>(va_arg(ap, wint_t));
            out += ApplyTextWidth(std::wstring(1, ch), Directive{directive.left, false, false, false, false, directive.width, -1});
            break;
        }
        case L's':
        case L'S': {
            bool narrow = directive.size == S::Short || directive.size == S::Char ||
                          (directive.conversion == L'S' && directive.size != S::Long && directive.size != S::Wide);
            std::wstring text;
            if (narrow) {
                const char* s = va_arg(ap, const char*);
                text = s ? FromUtf8(s) : L"(null)";
            } else {
                const wchar_t* s = va_arg(ap, const wchar_t*);
                text = s ? s : L"(null)";
            }
            out += ApplyTextWidth(std::move(text), directive);
            break;
        }
        case L'n':
            (void)va_arg(ap, void*);  // never written through: a format text is no place for side effects
            break;
        default:
            out.append(start, p);  // an unknown directive shows as it stands
            break;
        }
    }
    va_end(ap);
    return out;
}

std::wstring FormatWideArgs(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    std::wstring text = FormatWide(format, args);
    va_end(args);
    return text;
}

}  // namespace cadhost
