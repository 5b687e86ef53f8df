#include "fields/FieldCodeText.h"

#include <cwctype>
#include <string_view>

namespace cadhost {
namespace {

constexpr wchar_t kOpen[] = L"%<";
constexpr wchar_t kClose[] = L">%";

bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

bool OpensAt(std::wstring_view text, size_t pos) {
    return pos + 1 < text.size() && text[pos] == L'%' && text[pos + 1] == L'<';
}

bool ClosesAt(std::wstring_view text, size_t pos) {
    return pos + 1 < text.size() && text[pos] == L'>' && text[pos + 1] == L'%';
}

// Views, not copies: a code may list a hundred thousand handles.
std::wstring_view Trimmed(std::wstring_view text) {
    size_t first = 0, last = text.size();
    while (first < last && IsBlank(text[first])) ++first;
    while (last > first && IsBlank(text[last - 1])) --last;
    return text.substr(first, last - first);
}

// The position just behind the ">%" that closes the "%<" at open, counting
// codes inside; npos when the text ends first.
size_t MatchingClose(std::wstring_view text, size_t open) {
    int depth = 0;
    for (size_t i = open; i + 1 < text.size();) {
        if (OpensAt(text, i)) {
            ++depth;
            i += 2;
        } else if (ClosesAt(text, i)) {
            if (--depth == 0) return i + 2;
            i += 2;
        } else {
            ++i;
        }
    }
    return std::wstring::npos;
}

// Whether a code written without its markers reads the same once "%<" and
// ">%" are put around it: no ">%" of its own closes the added "%<", and
// every "%<" inside is closed. No pair of markers can straddle the added
// ones, so the text is scanned as it stands.
bool PairsUpInMarkers(std::wstring_view body) {
    int depth = 1;
    for (size_t i = 0; i + 1 < body.size();) {
        if (OpensAt(body, i)) {
            ++depth;
            i += 2;
        } else if (ClosesAt(body, i)) {
            if (--depth == 0) return false;
            i += 2;
        } else {
            ++i;
        }
    }
    return depth == 1;
}

bool IsIdCharacter(wchar_t c) {
    return !IsBlank(c) && c != L'\\' && c != L'"' && c != L'<' && c != L'>' && c != L'%';
}

class Reader {
public:
    Reader(std::wstring& error, bool placesAllowed) : m_error(error), m_placesAllowed(placesAllowed) {}

    std::optional<ParsedCode> Code(std::wstring_view text, int depth) {
        if (depth > kMaxFieldNesting) return Fail(L"fields stand inside each other too deeply");
        std::wstring_view body = Trimmed(text);
        if (body.empty()) return Fail(L"the field code is empty");
        if (OpensAt(body, 0)) {
            size_t end = MatchingClose(body, 0);
            if (end == std::wstring::npos) return Fail(L"the field code lacks its closing >%");
            if (end != body.size()) return Fail(L"text follows the closing >% of the field code");
            body = body.substr(2, body.size() - 4);
        } else if (!PairsUpInMarkers(body)) {
            // Without its markers the code must still read the same once they are added.
            return Fail(L"the field code holds a >% or %< that does not pair up");
        }
        if (body.empty() || body[0] != L'\\') return Fail(L"a field code begins with a backslash and its evaluator id");
        size_t idEnd = 1;
        while (idEnd < body.size() && !IsBlank(body[idEnd])) ++idEnd;
        ParsedCode code;
        code.evaluatorId = std::wstring(body.substr(1, idEnd - 1));
        if (code.evaluatorId.empty()) return Fail(L"the field code names no evaluator");
        if (!IsEvaluatorId(code.evaluatorId))
            return Fail(L"the evaluator id \"" + code.evaluatorId + L"\" holds a character that no id may hold");
        std::wstring_view rest = body.substr(idEnd);
        if (code.evaluatorId == kChildPlaceEvaluatorId) {
            if (!m_placesAllowed) return Fail(L"a child field's place stands where no child fields were given");
            std::wstring_view digits = Trimmed(rest);
            if (digits.empty() || digits.size() > 6) return Fail(L"a child field's place needs its number");
            size_t n = 0;
            for (wchar_t c : digits) {
                if (c < L'0' || c > L'9') return Fail(L"a child field's place needs its number");
                n = n * 10 + static_cast<size_t>(c - L'0');
            }
            code.suppliedChild = n;
            code.code = L"\\" + code.evaluatorId + std::wstring(rest);
            return code;
        }
        // The arguments go straight behind the id, read once: a code may
        // list a hundred thousand handles. Children first, so that an option
        // of a child is not taken for ours.
        code.code.reserve(1 + code.evaluatorId.size() + rest.size());
        code.code = L"\\";
        code.code += code.evaluatorId;
        size_t arguments = code.code.size();
        if (!Children(rest, code.children, depth, code.code) ||
            !SplitFormat(code.code, arguments, code.format, code.formatOption))
            return std::nullopt;
        return code;
    }

    std::optional<ParsedCode> Text(std::wstring_view text) {
        ParsedCode code;
        code.evaluatorId = kTextEvaluatorId;
        code.code.reserve(text.size());
        if (!Children(text, code.children, 0, code.code)) return std::nullopt;
        return code;
    }

private:
    std::nullopt_t Fail(const std::wstring& why) {
        if (m_error.empty()) m_error = why;
        return std::nullopt;
    }

    // Takes a trailing \f "..." option off the arguments, which run from
    // the position from to the end of text. The option is the last
    // blank-framed \f followed by a quote; its text runs to the last
    // character, which must be the closing quote. So the format holds no
    // option of its own and reads the same when written back.
    bool SplitFormat(std::wstring& text, size_t from, std::wstring& format, bool& found) {
        for (size_t i = text.size(); i-- > from;) {
            if (i + 2 >= text.size() || !IsBlank(text[i]) || text[i + 1] != L'\\' || text[i + 2] != L'f') continue;
            size_t q = i + 3;
            if (q < text.size() && !IsBlank(text[q])) continue;
            while (q < text.size() && IsBlank(text[q])) ++q;
            if (q >= text.size() || text[q] != L'"') continue;
            size_t last = text.size();
            while (last > q + 1 && IsBlank(text[last - 1])) --last;
            if (last <= q + 1 || text[last - 1] != L'"') {
                Fail(L"the \\f option must be last, its format in double quotes");
                return false;
            }
            std::wstring option = text.substr(q + 1, last - q - 2);
            if (option.find(L"%<\\") != std::wstring::npos) {
                Fail(L"a field code stands inside the format of the \\f option");
                return false;
            }
            format = std::move(option);
            found = true;
            size_t keep = i;
            while (keep > from && IsBlank(text[keep - 1])) --keep;
            text.erase(keep);
            return true;
        }
        return true;
    }

    // Appends the text to out, each code inside it replaced by the place of
    // a new child.
    bool Children(std::wstring_view text, std::vector<ParsedCode>& children, int depth, std::wstring& out) {
        size_t i = 0;
        while (i < text.size()) {
            // The text up to the next code goes over as it stands.
            size_t next = text.find(L"%<\\", i);
            if (next == std::wstring::npos) {
                out.append(text, i, std::wstring::npos);
                break;
            }
            out.append(text, i, next - i);
            i = next;
            size_t end = MatchingClose(text, i);
            if (end == std::wstring::npos) {
                Fail(L"a field code inside the text lacks its closing >%");
                return false;
            }
            std::optional<ParsedCode> child = Code(text.substr(i, end - i), depth + 1);
            if (!child) return false;
            out += ChildPlace(children.size());
            children.push_back(std::move(*child));
            i = end;
        }
        return true;
    }

    std::wstring& m_error;
    bool m_placesAllowed;
};

}  // namespace

bool IsEvaluatorId(const std::wstring& text) {
    if (text.empty()) return false;
    for (wchar_t c : text) {
        if (!IsIdCharacter(c)) return false;
    }
    return true;
}

std::wstring ChildPlace(size_t index) {
    return std::wstring(kOpen) + L"\\" + kChildPlaceEvaluatorId + L" " + std::to_wstring(index) + kClose;
}

std::optional<std::pair<size_t, size_t>> ChildPlaceAt(const std::wstring& text, size_t pos) {
    static const std::wstring head = std::wstring(kOpen) + L"\\" + kChildPlaceEvaluatorId + L" ";
    if (text.compare(pos, head.size(), head) != 0) return std::nullopt;
    size_t i = pos + head.size();
    size_t n = 0, digits = 0;
    while (i < text.size() && text[i] >= L'0' && text[i] <= L'9' && digits < 9) {
        n = n * 10 + static_cast<size_t>(text[i] - L'0');
        ++i, ++digits;
    }
    if (digits == 0 || !ClosesAt(text, i)) return std::nullopt;
    return std::make_pair(n, i + 2 - pos);
}

std::optional<ParsedCode> ParseFieldCode(std::wstring_view text, std::wstring& error, bool placesAllowed) {
    error.clear();
    std::optional<ParsedCode> code = Reader(error, placesAllowed).Code(text, 0);
    if (code && code->suppliedChild) {
        error = L"a child field's place is no field code of its own";
        return std::nullopt;
    }
    return code;
}

std::optional<ParsedCode> ParseTextWithFields(std::wstring_view text, std::wstring& error, bool placesAllowed) {
    error.clear();
    return Reader(error, placesAllowed).Text(text);
}

}  // namespace cadhost
