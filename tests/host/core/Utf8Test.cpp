// The host's conversion between wide text and UTF-8, over texts long and
// short, ASCII and not, and characters that have no UTF-8 form.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "core/Utf8.h"

namespace {

// One character at a time, the plain way, to hold the conversion against.
std::string Plain(const std::wstring& text) {
    std::string out;
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

TEST(Utf8Test, TextsOfEveryLengthConvertAsCharacterByCharacter) {
    const wchar_t others[] = {L'\u00E9', L'\u20AC', static_cast<wchar_t>(0x1F600), L'\x7F', L'\0', L'\u0800'};
    for (size_t length = 0; length < 70; ++length) {
        for (size_t at = 0; at <= length; at += 7) {
            for (wchar_t other : others) {
                std::wstring text(length, L'a');
                for (size_t i = 0; i < length; ++i) text[i] = static_cast<wchar_t>(L'a' + i % 26);
                if (at < length) text[at] = other;
                EXPECT_EQ(cadhost::ToUtf8(text), Plain(text)) << length << " " << at;
                EXPECT_EQ(cadhost::FromUtf8(cadhost::ToUtf8(text)), text) << length << " " << at;
            }
        }
    }
}

TEST(Utf8Test, CharactersWithoutAUtf8FormBecomeTheReplacementCharacter) {
    std::wstring text = L"ab";
    text += static_cast<wchar_t>(0xD800);
    text += static_cast<wchar_t>(0x110000);
    text += std::wstring(20, L'c');  // the rest in a run of ASCII
    EXPECT_EQ(cadhost::ToUtf8(text), "ab\xEF\xBF\xBD\xEF\xBF\xBD" + std::string(20, 'c'));
}

}  // namespace
