// The text of field codes: reading a code (or a text that holds codes) into
// its evaluator id, its stored code, its format and the codes of its
// children, and writing it back.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cadhost {

// The evaluator of a text that holds fields, and the code that stands in
// such a text for its child field number n.
inline constexpr wchar_t kTextEvaluatorId[] = L"_text";
inline constexpr wchar_t kChildPlaceEvaluatorId[] = L"_FldIdx";
std::wstring ChildPlace(size_t index);

struct ParsedCode {
    std::wstring evaluatorId;
    // What the field keeps: "\Id arguments" (a text field keeps its text),
    // with "%<\_FldIdx n>%" where child n stood.
    std::wstring code;
    std::wstring format;  // the text of the \f option, without its quotes
    bool formatOption = false;  // the code has a \f option, be it empty
    std::vector<ParsedCode> children;
    // For a "%<\_FldIdx n>%" code in the text that was read: n, the place of
    // a child that the caller supplies.
    std::optional<size_t> suppliedChild;
};

// How deep codes may stand inside codes.
inline constexpr int kMaxFieldNesting = 16;

// Whether a text can stand as an evaluator id: not empty, no blanks, no
// backslash, quote, angle bracket or percent sign.
bool IsEvaluatorId(const std::wstring& text);

// Reads one field code, with or without its %< >% markers, surrounded by
// white space at most. On failure answers nothing and says why in error.
// With placesAllowed, a "%<\_FldIdx n>%" inside names a supplied child.
std::optional<ParsedCode> ParseFieldCode(std::wstring_view text, std::wstring& error, bool placesAllowed = false);

// Reads a text in which any number of codes stand; each "%<\" begins one.
std::optional<ParsedCode> ParseTextWithFields(std::wstring_view text, std::wstring& error,
                                              bool placesAllowed = false);

// The index of the place code "%<\_FldIdx n>%" that begins at pos, and its
// length; nothing when no such code begins there.
std::optional<std::pair<size_t, size_t>> ChildPlaceAt(const std::wstring& text, size_t pos);

}  // namespace cadhost
