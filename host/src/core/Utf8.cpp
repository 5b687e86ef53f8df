#include "core/Utf8.h"

namespace cadhost {

std::string ToUtf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (wchar_t wc : text) {
        auto c = static_cast<uint32_t>(wc);
        if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
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

std::wstring FromUtf8(std::string_view text) {
    std::wstring out(text.size(), L'\0');
    out.resize(FromUtf8(text, out.data()));
    return out;
}

}  // namespace cadhost
