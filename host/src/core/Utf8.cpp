#include "core/Utf8.h"

#include <cstdint>

namespace cadhost {

namespace {

uint32_t Valid(wchar_t wc) {
    auto c = static_cast<uint32_t>(wc);
    return c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF) ? 0xFFFD : c;
}

// Written as sums without branches, so that compilers turn the loop over
// long texts (field values of whole files) into vector code.
size_t Utf8Length(std::wstring_view text) {
    size_t length = 0;
    for (wchar_t wc : text) {
        uint32_t c = Valid(wc);
        length += 1 + (c >= 0x80) + (c >= 0x800) + (c >= 0x10000);
    }
    return length;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    std::string out(Utf8Length(text), '\0');
    char* p = out.data();
    size_t i = 0;
    const size_t n = text.size();
    // Runs of ASCII sixteen at a time, the rest character by character.
    while (i < n) {
        if (i + 16 <= n) {
            uint32_t seen = 0;
            for (size_t k = 0; k < 16; ++k) seen |= static_cast<uint32_t>(text[i + k]);
            if (seen < 0x80) {
                for (size_t k = 0; k < 16; ++k) p[k] = static_cast<char>(text[i + k]);
                p += 16;
                i += 16;
                continue;
            }
        }
        uint32_t c = Valid(text[i++]);
        if (c < 0x80) {
            *p++ = static_cast<char>(c);
        } else if (c < 0x800) {
            *p++ = static_cast<char>(0xC0 | (c >> 6));
            *p++ = static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            *p++ = static_cast<char>(0xE0 | (c >> 12));
            *p++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            *p++ = static_cast<char>(0x80 | (c & 0x3F));
        } else {
            *p++ = static_cast<char>(0xF0 | (c >> 18));
            *p++ = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            *p++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            *p++ = static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

size_t FromUtf8(std::string_view text, wchar_t* out) {
    size_t written = 0;
    size_t i = 0;
    const size_t n = text.size();
    while (i < n) {
        auto b = static_cast<unsigned char>(text[i]);
        uint32_t c = 0;
        size_t extra = 0;
        uint32_t min = 0;
        if (b < 0x80) {
            out[written++] = static_cast<wchar_t>(b);
            ++i;
            continue;
        } else if ((b & 0xE0) == 0xC0) {
            c = b & 0x1F, extra = 1, min = 0x80;
        } else if ((b & 0xF0) == 0xE0) {
            c = b & 0x0F, extra = 2, min = 0x800;
        } else if ((b & 0xF8) == 0xF0) {
            c = b & 0x07, extra = 3, min = 0x10000;
        } else {
            out[written++] = L'\xFFFD';
            ++i;
            continue;
        }
        if (i + extra >= n) {  // truncated sequence
            out[written++] = L'\xFFFD';
            break;
        }
        bool ok = true;
        for (size_t k = 1; k <= extra; ++k) {
            auto cb = static_cast<unsigned char>(text[i + k]);
            if ((cb & 0xC0) != 0x80) {
                ok = false;
                break;
            }
            c = (c << 6) | (cb & 0x3F);
        }
        if (!ok || c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
            out[written++] = L'\xFFFD';
            ++i;
            continue;
        }
        out[written++] = static_cast<wchar_t>(c);
        i += extra + 1;
    }
    return written;
}

std::wstring ValidText(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& wc : out) wc = static_cast<wchar_t>(Valid(wc));
    return out;
}

std::wstring FromUtf8(std::string_view text) {
    std::wstring out(text.size(), L'\0');
    out.resize(FromUtf8(text, out.data()));
    return out;
}

}  // namespace cadhost
