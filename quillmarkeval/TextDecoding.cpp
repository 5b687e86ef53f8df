#include "TextDecoding.h"

namespace {

// 0x80 to 0x9F of Windows-1252; the five it leaves undefined map to the
// control characters of the same value, as the platform's conversion does.
const char32_t kWindows1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

const wchar_t kReplacement = 0xFFFD;

unsigned char Byte(std::string_view bytes, size_t i) { return static_cast<unsigned char>(bytes[i]); }

// Strict UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool DecodeUtf8(std::string_view bytes, std::wstring& out) {
    out.clear();
    out.reserve(bytes.size());
    size_t i = 0;
    while (i < bytes.size()) {
        unsigned char lead = Byte(bytes, i);
        if (lead < 0x80) {
            out += static_cast<wchar_t>(lead);
            ++i;
            continue;
        }
        size_t length;
        char32_t code, minimum;
        if ((lead & 0xE0) == 0xC0) length = 2, code = lead & 0x1F, minimum = 0x80;
        else if ((lead & 0xF0) == 0xE0) length = 3, code = lead & 0x0F, minimum = 0x800;
        else if ((lead & 0xF8) == 0xF0) length = 4, code = lead & 0x07, minimum = 0x10000;
        else return false;
        if (i + length > bytes.size()) return false;
        for (size_t k = 1; k < length; ++k) {
            unsigned char next = Byte(bytes, i + k);
            if ((next & 0xC0) != 0x80) return false;
            code = (code << 6) | (next & 0x3F);
        }
        if (code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return false;
        out += static_cast<wchar_t>(code);
        i += length;
    }
    return true;
}

std::wstring DecodeUtf16(std::string_view bytes, bool bigEndian) {
    std::wstring out;
    out.reserve(bytes.size() / 2);
    auto unit = [&](size_t i) {
        unsigned first = Byte(bytes, i), second = Byte(bytes, i + 1);
        return static_cast<char32_t>(bigEndian ? (first << 8) | second : (second << 8) | first);
    };
    size_t i = 0;
    for (; i + 1 < bytes.size(); i += 2) {
        char32_t code = unit(i);
        if (code >= 0xD800 && code <= 0xDBFF && i + 3 < bytes.size()) {
            char32_t low = unit(i + 2);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                out += static_cast<wchar_t>(0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00));
                i += 2;
                continue;
            }
        }
        out += (code >= 0xD800 && code <= 0xDFFF) ? kReplacement : static_cast<wchar_t>(code);
    }
    if (i < bytes.size()) out += kReplacement;  // an odd byte at the end
    return out;
}

std::wstring DecodeWindows1252(std::string_view bytes) {
    std::wstring out;
    out.reserve(bytes.size());
    for (size_t i = 0; i < bytes.size(); ++i) {
        unsigned char c = Byte(bytes, i);
        out += static_cast<wchar_t>(c >= 0x80 && c < 0xA0 ? kWindows1252High[c - 0x80] : c);
    }
    return out;
}

}  // namespace

DecodedText DecodeTextFile(std::string_view bytes) {
    DecodedText decoded;
    if (bytes.size() >= 2 && (Byte(bytes, 0) == 0xFF && Byte(bytes, 1) == 0xFE)) {
        decoded.encoding = TextFileEncoding::Utf16LittleEndian;
        decoded.text = DecodeUtf16(bytes.substr(2), false);
    } else if (bytes.size() >= 2 && (Byte(bytes, 0) == 0xFE && Byte(bytes, 1) == 0xFF)) {
        decoded.encoding = TextFileEncoding::Utf16BigEndian;
        decoded.text = DecodeUtf16(bytes.substr(2), true);
    } else {
        bool marked = bytes.size() >= 3 && Byte(bytes, 0) == 0xEF && Byte(bytes, 1) == 0xBB && Byte(bytes, 2) == 0xBF;
        std::string_view body = marked ? bytes.substr(3) : bytes;
        if (DecodeUtf8(body, decoded.text)) {
            decoded.encoding = marked ? TextFileEncoding::Utf8WithMark : TextFileEncoding::Utf8;
        } else {
            decoded.encoding = TextFileEncoding::Windows1252;
            decoded.text = DecodeWindows1252(bytes);
        }
    }
    // A NUL is found in the bytes for the one-byte encodings, in the units
    // for UTF-16, where every ASCII character has a zero byte.
    bool wide = decoded.encoding == TextFileEncoding::Utf16LittleEndian ||
                decoded.encoding == TextFileEncoding::Utf16BigEndian;
    if (wide) {
        for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
            if (Byte(bytes, i) == 0 && Byte(bytes, i + 1) == 0) {
                decoded.nulAt = i;
                break;
            }
        }
    } else {
        size_t at = bytes.find('\0');
        if (at != std::string_view::npos) decoded.nulAt = at;
    }
    return decoded;
}

std::wstring JoinLines(const std::wstring& text) {
    std::wstring out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        wchar_t c = text[i];
        if (c == L'\r') {
            if (i + 1 < text.size() && text[i + 1] == L'\n') ++i;
            out += L'\n';
        } else {
            out += c;
        }
    }
    if (!out.empty() && out.back() == L'\n') out.pop_back();
    return out;
}
