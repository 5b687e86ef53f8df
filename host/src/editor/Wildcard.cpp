#include "editor/Wildcard.h"

#include <vector>

#include "db/CaseFold.h"

namespace cadhost {
namespace {

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
bool IsLetter(wchar_t c) { return UpperLetter(c) != c || (c >= L'A' && c <= L'Z') || (c >= 0xC0 && c <= 0x24F); }

wchar_t Fold(wchar_t c, bool ignoreCase) { return ignoreCase ? UpperLetter(c) : c; }

// Matches one pattern (no commas at its top level) against the text.
bool MatchOne(std::wstring_view text, std::wstring_view pattern, bool ignoreCase) {
    // Positions in text that the pattern so far can reach.
    std::vector<char> reach(text.size() + 1, 0), next(text.size() + 1, 0);
    reach[0] = 1;
    size_t p = 0;
    while (p < pattern.size()) {
        std::fill(next.begin(), next.end(), 0);
        wchar_t c = pattern[p];
        if (c == L'*') {
            bool any = false;
            for (size_t i = 0; i <= text.size(); ++i) {
                any = any || reach[i];
                next[i] = any;
            }
            ++p;
        } else {
            // One character of text, tested by what the pattern says.
            auto test = [&](wchar_t t) -> bool {
                switch (c) {
                case L'#': return IsDigit(t);
                case L'@': return IsLetter(t);
                case L'.': return !IsDigit(t) && !IsLetter(t);
                case L'?': return true;
                default: return Fold(t, ignoreCase) == Fold(c, ignoreCase);
                }
            };
            size_t width = 1;
            std::wstring_view set;
            bool bracket = false, escaped = false;
            if (c == L'`' && p + 1 < pattern.size()) {
                escaped = true;
                c = pattern[p + 1];
                width = 2;
            } else if (c == L'[') {
                size_t close = pattern.find(L']', p + 2);  // "[]...]" holds "]"
                if (close == std::wstring_view::npos) return false;  // a bracket left open matches nothing
                set = pattern.substr(p + 1, close - p - 1);
                bracket = true;
                width = close - p + 1;
            }
            for (size_t i = 0; i < text.size(); ++i) {
                if (!reach[i]) continue;
                wchar_t t = text[i];
                bool ok;
                if (bracket) {
                    bool negate = !set.empty() && set[0] == L'~' && set.size() > 1;
                    std::wstring_view members = negate ? set.substr(1) : set;
                    bool in = false;
                    for (size_t k = 0; k < members.size(); ++k) {
                        if (k + 2 < members.size() && members[k + 1] == L'-') {
                            wchar_t lo = Fold(members[k], ignoreCase), hi = Fold(members[k + 2], ignoreCase);
                            if (Fold(t, ignoreCase) >= lo && Fold(t, ignoreCase) <= hi) in = true;
                            k += 2;
                        } else if (Fold(members[k], ignoreCase) == Fold(t, ignoreCase)) {
                            in = true;
                        }
                    }
                    ok = negate ? !in : in;
                } else if (escaped) {
                    ok = Fold(t, ignoreCase) == Fold(c, ignoreCase);
                } else {
                    ok = test(t);
                }
                if (ok) next[i + 1] = 1;
            }
            p += width;
        }
        reach.swap(next);
    }
    return reach[text.size()] != 0;
}

}  // namespace

bool WildcardMatch(std::wstring_view text, std::wstring_view pattern, bool ignoreCase) {
    // Commas outside brackets and not escaped separate patterns; any that
    // matches will do. A pattern starting with ~ matches what it does not.
    size_t start = 0;
    bool inBracket = false;
    for (size_t i = 0; i <= pattern.size(); ++i) {
        if (i < pattern.size()) {
            wchar_t c = pattern[i];
            if (c == L'`') {
                ++i;
                continue;
            }
            if (c == L'[') inBracket = true;
            else if (c == L']') inBracket = false;
            if (c != L',' || inBracket) continue;
        }
        std::wstring_view one = pattern.substr(start, i - start);
        bool negate = !one.empty() && one[0] == L'~';
        if (negate) one.remove_prefix(1);
        bool match = MatchOne(text, one, ignoreCase);
        if (match != negate) return true;
        start = i + 1;
    }
    return false;
}

}  // namespace cadhost
