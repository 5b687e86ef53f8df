#include "ScriptLexer.h"

#include <cmath>
#include <cwchar>
#include <cwctype>

namespace cadhost::script {

std::optional<std::vector<Word>> SplitLine(const std::wstring& line, std::wstring& error) {
    std::vector<Word> words;
    size_t i = 0;
    const size_t n = line.size();
    while (i < n) {
        if (std::iswspace(line[i])) {
            ++i;
            continue;
        }
        Word word;
        if (line[i] == L'"') {
            word.quoted = true;
            ++i;
            bool closed = false;
            while (i < n) {
                wchar_t c = line[i++];
                if (c == L'"') {
                    closed = true;
                    break;
                }
                if (c == L'\\') {
                    if (i >= n) break;
                    wchar_t e = line[i++];
                    if (e == L'"') word.text += L'"';
                    else if (e == L'\\') word.text += L'\\';
                    else if (e == L'n') word.text += L'\n';
                    else {
                        error = L"unknown escape \\" + std::wstring(1, e) + L" in a quoted word";
                        return std::nullopt;
                    }
                } else {
                    word.text += c;
                }
            }
            if (!closed) {
                error = L"a quoted word is not closed";
                return std::nullopt;
            }
            if (i < n && !std::iswspace(line[i])) {
                error = L"a quoted word must be followed by a blank";
                return std::nullopt;
            }
        } else {
            while (i < n && !std::iswspace(line[i])) {
                if (line[i] == L'"') {
                    error = L"a double quote inside a word";
                    return std::nullopt;
                }
                word.text += line[i++];
            }
        }
        words.push_back(std::move(word));
    }
    return words;
}

std::optional<Point> ParsePoint(const std::wstring& text) {
    double values[3] = {0, 0, 0};
    size_t count = 0, start = 0;
    for (;;) {
        size_t comma = text.find(L',', start);
        std::wstring part = text.substr(start, comma == std::wstring::npos ? std::wstring::npos : comma - start);
        if (part.empty() || count == 3) return std::nullopt;
        wchar_t* end = nullptr;
        values[count++] = std::wcstod(part.c_str(), &end);
        if (*end != L'\0' || std::iswspace(part[0]) || !std::isfinite(values[count - 1])) return std::nullopt;
        if (comma == std::wstring::npos) break;
        start = comma + 1;
    }
    if (count < 2) return std::nullopt;
    return Point{values[0], values[1], values[2]};
}

}  // namespace cadhost::script
