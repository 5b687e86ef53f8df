#include "db/MTextFormat.h"

#include <cwctype>

namespace cadhost {

std::wstring StripMTextCodes(std::wstring_view text) {
    std::wstring out;
    out.reserve(text.size());
    size_t i = 0;
    auto skipTo = [&](wchar_t end) {
        size_t stop = text.find(end, i);
        i = stop == std::wstring_view::npos ? text.size() : stop + 1;
    };
    while (i < text.size()) {
        wchar_t c = text[i];
        if (c == L'{' || c == L'}') {
            ++i;
            continue;
        }
        if (c == L'%' && i + 2 < text.size() && text[i + 1] == L'%') {
            wchar_t code = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(text[i + 2])));
            if (code == L'd' || code == L'p' || code == L'c' || code == L'%') {
                out += code == L'd' ? L'\u00B0' : code == L'p' ? L'\u00B1' : code == L'c' ? L'\u2300' : L'%';
                i += 3;
                continue;
            }
        }
        if (c != L'\\' || i + 1 >= text.size()) {
            out += c;
            ++i;
            continue;
        }
        wchar_t code = text[i + 1];
        i += 2;
        switch (code) {
        case L'P': out += L'\n'; break;
        case L'~': out += L' '; break;
        case L'\\': case L'{': case L'}': out += code; break;
        // Switches without arguments: underline, overline, strike-through.
        case L'L': case L'l': case L'O': case L'o': case L'K': case L'k': break;
        case L'N': case L'X': break;  // column and line breaks of the layout
        case L'S': {
            // A stack runs to ';': upper and lower part around ^, / or #.
            size_t stop = text.find(L';', i);
            std::wstring_view stack = text.substr(i, stop == std::wstring_view::npos ? std::wstring_view::npos : stop - i);
            for (wchar_t s : stack) out += (s == L'^' || s == L'#') ? L'/' : s;
            i = stop == std::wstring_view::npos ? text.size() : stop + 1;
            break;
        }
        // Codes with an argument that ends at ';'.
        case L'A': case L'C': case L'c': case L'F': case L'f': case L'H': case L'Q': case L'T': case L'W': case L'p':
            skipTo(L';');
            break;
        case L'U':
            // \U+XXXX: a character by its code.
            if (i < text.size() && text[i] == L'+' && i + 5 <= text.size()) {
                std::wstring hex(text.substr(i + 1, 4));
                wchar_t* end = nullptr;
                unsigned long value = std::wcstoul(hex.c_str(), &end, 16);
                if (end && *end == 0) {
                    out += static_cast<wchar_t>(value);
                    i += 5;
                    break;
                }
            }
            out += L'\\';
            out += code;
            break;
        default:
            // Not a code: the backslash stands for itself.
            out += L'\\';
            out += code;
            break;
        }
    }
    return out;
}

}  // namespace cadhost
