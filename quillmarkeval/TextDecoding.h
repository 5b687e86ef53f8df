// The text of a text file from its bytes: UTF-8 (with or without a byte
// order mark) or UTF-16 with a byte order mark as such, anything else as
// Windows-1252, the platform's code page for western text.
#pragma once

#include <string>
#include <string_view>

enum class TextFileEncoding { Utf8, Utf8WithMark, Utf16LittleEndian, Utf16BigEndian, Windows1252 };

struct DecodedText {
    std::wstring text;
    TextFileEncoding encoding = TextFileEncoding::Utf8;
    // Where a NUL character stands in the file, in bytes from its start;
    // npos when there is none. A file with one is not text.
    size_t nulAt = std::wstring::npos;
};

// Malformed UTF-16 (an odd last byte, a lone surrogate) reads as U+FFFD.
DecodedText DecodeTextFile(std::string_view bytes);

// Line breaks (CR LF, CR, LF) as "\n", the break that ends the last line
// left off, as a text shows the lines of a file.
std::wstring JoinLines(const std::wstring& text);
