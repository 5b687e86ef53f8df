// The words of a resource script: names, numbers, quoted texts, operators,
// and the preprocessor's directive lines.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace cadhost::ui::rc {

struct Token {
    enum class Kind { Identifier, Number, String, Punct, Directive, End };
    Kind kind = Kind::End;
    std::wstring text;   // a name, a text's value, an operator, or a directive's name
    int64_t number = 0;  // the value of a number
    std::wstring rest;   // the rest of a directive's line, comments taken out
    int file = 0;        // index of the source file
    int line = 0;

    bool Is(Kind k, const wchar_t* t) const { return kind == k && text == t; }
    bool IsPunct(const wchar_t* t) const { return Is(Kind::Punct, t); }
    // A keyword of the script, which does not regard case.
    bool IsWord(const wchar_t* word) const;
};

// Splits one file into words. On malformed text it answers false with a
// message and the line where it was found.
bool Tokenize(const std::wstring& text, int file, std::vector<Token>& tokens, std::wstring& error, int& errorLine);

}  // namespace cadhost::ui::rc
