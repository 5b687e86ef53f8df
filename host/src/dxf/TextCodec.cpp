#include "dxf/TextCodec.h"

#include <iconv.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace cadhost::dxf {
namespace {

// Code page 1252 from 0x80 to 0x9F; the rest of it is Latin-1.
const char16_t kCp1252High[32] = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178,
};

void AppendUtf8(std::string& out, uint32_t c) {
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

// The next character of UTF-8 text, or 0xFFFFFFFF for a broken sequence.
uint32_t NextUtf8(std::string_view text, size_t& i) {
    auto byte = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
    unsigned char b = byte(i);
    int length = b < 0x80 ? 1 : (b >> 5) == 6 ? 2 : (b >> 4) == 14 ? 3 : (b >> 3) == 30 ? 4 : 0;
    if (length == 0 || i + length > text.size()) {
        ++i;
        return 0xFFFFFFFF;
    }
    uint32_t c = length == 1 ? b : b & (0x7F >> length);
    for (int k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) {
            ++i;
            return 0xFFFFFFFF;
        }
        c = (c << 6) | (byte(i + k) & 0x3F);
    }
    i += length;
    return c;
}

bool IsValidUtf8(std::string_view text) {
    for (size_t i = 0; i < text.size();)
        if (NextUtf8(text, i) == 0xFFFFFFFF) return false;
    return true;
}

bool IsAscii(std::string_view text) {
    // Eight bytes at a time without an early exit, which compilers turn into
    // vector code: texts are mostly ASCII, and some are long.
    uint64_t seen = 0;
    size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        uint64_t word;
        std::memcpy(&word, text.data() + i, 8);
        seen |= word;
    }
    for (; i < text.size(); ++i) seen |= static_cast<unsigned char>(text[i]);
    return (seen & 0x8080808080808080ULL) == 0;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Turns every \U+XXXX of UTF-8 text into its character.
std::string DecodeEscapes(std::string text) {
    if (text.find("\\U+") == std::string::npos && text.find("\\u+") == std::string::npos) return text;
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 6 < text.size() + 0 && (text[i + 1] == 'U' || text[i + 1] == 'u') &&
            text[i + 2] == '+') {
            int d[4] = {HexDigit(text[i + 3]), HexDigit(text[i + 4]), HexDigit(text[i + 5]), HexDigit(text[i + 6])};
            if (d[0] >= 0 && d[1] >= 0 && d[2] >= 0 && d[3] >= 0) {
                AppendUtf8(out, static_cast<uint32_t>((d[0] << 12) | (d[1] << 8) | (d[2] << 4) | d[3]));
                i += 6;
                continue;
            }
        }
        out += text[i];
    }
    return out;
}

std::string Cp1252ToUtf8(std::string_view raw) {
    std::string out;
    out.reserve(raw.size() + 8);
    for (char ch : raw) {
        auto c = static_cast<unsigned char>(ch);
        if (c < 0x80) out += static_cast<char>(c);
        else if (c < 0xA0) AppendUtf8(out, kCp1252High[c - 0x80]);
        else AppendUtf8(out, c);
    }
    return out;
}

std::string Escape(uint32_t c) {
    static const char* hex = "0123456789ABCDEF";
    std::string out = "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) out += hex[(c >> shift) & 0xF];
    return out;
}

std::string Utf8ToCp1252(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size();) {
        uint32_t c = NextUtf8(utf8, i);
        if (c < 0x80) {
            out += static_cast<char>(c);
            continue;
        }
        if (c >= 0xA0 && c <= 0xFF) {
            out += static_cast<char>(c);
            continue;
        }
        int found = -1;
        for (int k = 0; k < 32; ++k)
            if (kCp1252High[k] == c && c != 0xFFFD) found = k;
        if (found >= 0) out += static_cast<char>(0x80 + found);
        else if (c == 0xFFFFFFFF) out += '?';
        else if (c <= 0xFFFF) out += Escape(c);
        else out += '?';
    }
    return out;
}

std::string Convert(void* descriptor, std::string_view in, bool& ok) {
    ok = true;
    auto cd = static_cast<iconv_t>(descriptor);
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    std::string out(in.size() * 4 + 8, '\0');
    char* source = const_cast<char*>(in.data());
    size_t left = in.size();
    char* target = out.data();
    size_t room = out.size();
    if (iconv(cd, &source, &left, &target, &room) == static_cast<size_t>(-1)) ok = false;
    out.resize(out.size() - room);
    return out;
}

std::string IconvName(std::string_view codePage) {
    // "ANSI_1251" -> "CP1251"; "DOS850" -> "CP850".
    std::string digits;
    for (char c : codePage)
        if (c >= '0' && c <= '9') digits += c;
    return digits.empty() ? std::string() : "CP" + digits;
}

}  // namespace

TextCodec::TextCodec(bool utf8, std::string_view codePage) : m_utf8(utf8), m_cp1252(true) {
    if (utf8) return;
    std::string name = IconvName(codePage);
    if (name.empty() || name == "CP1252") return;
    iconv_t to = iconv_open("UTF-8", name.c_str());
    iconv_t from = iconv_open(name.c_str(), "UTF-8");
    if (to == reinterpret_cast<iconv_t>(-1) || from == reinterpret_cast<iconv_t>(-1)) {
        if (to != reinterpret_cast<iconv_t>(-1)) iconv_close(to);
        if (from != reinterpret_cast<iconv_t>(-1)) iconv_close(from);
        return;
    }
    m_cp1252 = false;
    m_toUtf8 = to;
    m_fromUtf8 = from;
}

TextCodec::~TextCodec() {
    if (m_toUtf8) iconv_close(static_cast<iconv_t>(m_toUtf8));
    if (m_fromUtf8) iconv_close(static_cast<iconv_t>(m_fromUtf8));
}

std::string TextCodec::Decode(std::string_view raw) const {
    if (IsAscii(raw)) return DecodeEscapes(std::string(raw));
    // A file that claims UTF-8 but has a text in its code page is read as
    // 1252 there rather than refused.
    if (m_utf8) return DecodeEscapes(IsValidUtf8(raw) ? std::string(raw) : Cp1252ToUtf8(raw));
    if (m_cp1252) return DecodeEscapes(Cp1252ToUtf8(raw));
    bool ok;
    std::string converted = Convert(m_toUtf8, raw, ok);
    return DecodeEscapes(ok ? converted : Cp1252ToUtf8(raw));
}

std::string_view TextCodec::Encode(std::string_view utf8, std::string& scratch) const {
    if (m_utf8 || IsAscii(utf8)) return utf8;
    scratch = Encode(utf8);
    return scratch;
}

std::string TextCodec::Encode(std::string_view utf8) const {
    if (m_utf8 || IsAscii(utf8)) return std::string(utf8);
    if (m_cp1252) return Utf8ToCp1252(utf8);
    // Character by character, so that what the page lacks becomes \U+XXXX.
    std::string out;
    for (size_t i = 0; i < utf8.size();) {
        size_t start = i;
        uint32_t c = NextUtf8(utf8, i);
        if (c < 0x80) {
            out += static_cast<char>(c);
            continue;
        }
        bool ok;
        std::string one = Convert(m_fromUtf8, utf8.substr(start, i - start), ok);
        if (ok && !one.empty()) out += one;
        else out += c <= 0xFFFF ? Escape(c) : std::string("?");
    }
    return out;
}

}  // namespace cadhost::dxf
