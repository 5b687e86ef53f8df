#include "ArxUtils/ArxUtils.h"

#include <AcValue.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// ---- MatchPattern --------------------------------------------------------

// One compiled element of a pattern.
struct PatternItem {
    enum Kind { kChar, kAny, kClass, kOpen, kClose } kind = kChar;
    wchar_t ch = 0;
    std::vector<std::pair<wchar_t, wchar_t>> ranges;  // of a class
    wchar_t repeat = 0;                               // 0, '+' or '*'
    int group = -1;                                   // of an open or close brace

    bool Takes(wchar_t c) const {
        switch (kind) {
        case kChar: return c == ch;
        case kAny: return true;
        case kClass:
            for (const auto& range : ranges)
                if (c >= range.first && c <= range.second) return true;
            return false;
        default: return false;
        }
    }
};

// Reads a character class behind its "[": single characters and ranges
// a-b up to the closing "]"; a backslash takes the next character as it is.
// False when the class has no closing bracket or nothing in it.
bool ReadClass(const CString& pattern, int& at, PatternItem& item) {
    int length = pattern.GetLength();
    int i = at + 1;
    std::vector<wchar_t> chars;
    while (i < length && pattern[i] != L']') {
        if (pattern[i] == L'\\' && i + 1 < length) ++i;
        chars.push_back(pattern[i]);
        ++i;
    }
    if (i >= length || chars.empty()) return false;
    item.kind = PatternItem::kClass;
    for (size_t k = 0; k < chars.size(); ++k) {
        if (k + 2 < chars.size() && chars[k + 1] == L'-') {
            item.ranges.emplace_back(chars[k], chars[k + 2]);
            k += 2;
        } else {
            item.ranges.emplace_back(chars[k], chars[k]);
        }
    }
    at = i + 1;
    return true;
}

// Compiles a pattern. Braces that have no partner, and a "+" or "*" with no
// item before it, stand for themselves.
std::vector<PatternItem> CompilePattern(const CString& pattern, int& groups) {
    std::vector<PatternItem> items;
    std::vector<size_t> open;
    int length = pattern.GetLength();
    for (int at = 0; at < length;) {
        wchar_t c = pattern[at];
        PatternItem item;
        if (c == L'\\') {
            item.ch = at + 1 < length ? pattern[at + 1] : c;
            at += at + 1 < length ? 2 : 1;
        } else if (c == L'[') {
            if (!ReadClass(pattern, at, item)) {
                item.ch = c;
                ++at;
            }
        } else if (c == L'.') {
            item.kind = PatternItem::kAny;
            ++at;
        } else if (c == L'{') {
            item.kind = PatternItem::kOpen;
            open.push_back(items.size());
            ++at;
        } else if (c == L'}' && !open.empty()) {
            item.kind = PatternItem::kClose;
            item.group = static_cast<int>(open.back());  // the open item's index, numbered below
            open.pop_back();
            ++at;
        } else if ((c == L'+' || c == L'*') && !items.empty() && items.back().repeat == 0 &&
                   items.back().kind != PatternItem::kOpen && items.back().kind != PatternItem::kClose) {
            items.back().repeat = c;
            ++at;
            continue;
        } else {
            item.ch = c;
            ++at;
        }
        items.push_back(item);
    }
    for (size_t index : open) items[index] = PatternItem{PatternItem::kChar, L'{'};
    // Number the groups by their opening braces.
    groups = 0;
    for (auto& item : items)
        if (item.kind == PatternItem::kOpen) item.group = groups++;
    for (auto& item : items)
        if (item.kind == PatternItem::kClose) item.group = items[static_cast<size_t>(item.group)].group;
    return items;
}

// Matches compiled items at positions of a text. Only "*" gives back, so a
// state (item, position) that failed once fails again: it is noted, which
// keeps any search linear in the product of the two lengths.
class PatternMatcher {
public:
    PatternMatcher(const std::vector<PatternItem>& items, const CString& text, int groups)
        : m_items(items), m_text(text), m_length(text.GetLength()), m_begin(groups), m_end(groups) {
        for (const auto& item : items)
            if (item.repeat == L'*') m_failed.assign((items.size() + 1) * (static_cast<size_t>(m_length) + 1), false);
    }

    bool MatchAt(int start) {
        struct Choice {
            size_t item;
            int position, taken;
        };
        std::vector<Choice> choices;
        size_t k = 0;
        int t = start;
        for (;;) {
            bool ok = true;
            if (k == m_items.size()) return true;
            if (!m_failed.empty() && m_failed[Index(k, t)]) {
                ok = false;
            } else {
                const PatternItem& item = m_items[k];
                if (item.kind == PatternItem::kOpen) {
                    m_begin[static_cast<size_t>(item.group)] = t;
                } else if (item.kind == PatternItem::kClose) {
                    m_end[static_cast<size_t>(item.group)] = t;
                } else if (item.repeat == 0) {
                    ok = t < m_length && item.Takes(m_text[t]);
                    if (ok) ++t;
                } else {
                    int run = item.kind == PatternItem::kAny ? m_length - t : 0;
                    while (t + run < m_length && item.Takes(m_text[t + run])) ++run;
                    if (item.repeat == L'+') {
                        ok = run > 0;
                    } else {
                        choices.push_back({k, t, run});
                    }
                    t += run;
                }
                if (ok) ++k;
            }
            if (ok) continue;
            // Back to the last "*" that can give back a character.
            for (;;) {
                if (choices.empty()) return false;
                Choice& choice = choices.back();
                m_failed[Index(choice.item + 1, choice.position + choice.taken)] = true;
                if (choice.taken == 0) {
                    m_failed[Index(choice.item, choice.position)] = true;
                    choices.pop_back();
                    continue;
                }
                --choice.taken;
                k = choice.item + 1;
                t = choice.position + choice.taken;
                break;
            }
        }
    }

    CString Capture(size_t group) const {
        int begin = m_begin[group], end = m_end[group];
        return end > begin ? m_text.Mid(begin, end - begin) : CString();
    }

private:
    size_t Index(size_t item, int position) const {
        return item * (static_cast<size_t>(m_length) + 1) + static_cast<size_t>(position);
    }

    const std::vector<PatternItem>& m_items;
    const CString& m_text;
    int m_length;
    std::vector<int> m_begin, m_end;
    std::vector<bool> m_failed;
};

}  // namespace

BOOL MatchPattern(CString text, CString pattern, CStringArray& captures) {
    captures.RemoveAll();
    int groups = 0;
    std::vector<PatternItem> items = CompilePattern(pattern, groups);
    PatternMatcher matcher(items, text, groups);
    for (int start = 0; start <= text.GetLength(); ++start) {
        if (!matcher.MatchAt(start)) continue;
        for (int g = 0; g < groups; ++g) captures.Add(matcher.Capture(static_cast<size_t>(g)));
        return TRUE;
    }
    return FALSE;
}

// ---- Tokenizer -------------------------------------------------------------

Tokenizer::Tokenizer(const CString& text, const CString& delimiters) : m_text(text), m_position(0) {
    std::memset(m_delimiters, 0, sizeof m_delimiters);
    for (int i = 0; i < delimiters.GetLength(); ++i) {
        unsigned code = static_cast<unsigned>(delimiters[i]) & 0xFF;
        m_delimiters[code >> 3] |= static_cast<unsigned char>(1u << (code & 7));
    }
}

bool Tokenizer::IsDelimiter(wchar_t ch) const {
    unsigned code = static_cast<unsigned>(ch) & 0xFF;
    return (m_delimiters[code >> 3] >> (code & 7)) & 1;
}

bool Tokenizer::Next(CString& out) {
    out.Empty();
    int length = m_text.GetLength();
    while (m_position < length && IsDelimiter(m_text[m_position])) ++m_position;
    if (m_position >= length) return false;
    int start = m_position;
    while (m_position < length && !IsDelimiter(m_text[m_position])) ++m_position;
    out = m_text.Mid(start, m_position - start);
    return true;
}

// ---- CStringArrayEx ------------------------------------------------------

CStringArrayEx::CStringArrayEx(const CStringArray& other) { Copy(other); }

INT_PTR CStringArrayEx::Find(CString text, int noCase) const {
    auto equal = [&](INT_PTR index) {
        return noCase ? GetAt(index).CompareNoCase(text) == 0 : GetAt(index).Compare(text) == 0;
    };
    for (INT_PTR i = 0, j = GetSize() - 1; i <= j; ++i, --j) {
        if (equal(i)) return i;
        if (equal(j)) return j;
    }
    return -1;
}

// ---- Point and separated texts --------------------------------------------

bool ParsePointText(CString text, double& x, double& y, double& z) {
    text.TrimLeft(L'(');
    text.TrimLeft(L' ');
    text.TrimRight(L')');
    text.TrimRight(L' ');
    Tokenizer tokens(text, L",");
    double* coordinates[] = {&x, &y, &z};
    int count = 0;
    CString token;
    while (tokens.Next(token)) {
        if (count < 3) *coordinates[count] = _wtof(token);
        ++count;
    }
    return count > 0;
}

bool SplitText(CString text, CString separator, CStringArray& array) {
    array.RemoveAll();
    int at = separator.IsEmpty() ? -1 : text.Find(separator);
    if (at < 0) {
        array.Add(text);
        return false;
    }
    int from = 0;
    while (at >= 0) {
        array.Add(text.Mid(from, at - from));
        from = at + 1;
        at = text.Find(separator, from);
    }
    CString rest = text.Mid(from);
    if (!rest.IsEmpty()) array.Add(rest);
    return true;
}

// ---- Value routines --------------------------------------------------------

bool IsNearlyEqual(double a, double b) { return std::fabs(a - b) <= 1e-6; }

namespace {
CString FormatValue(const AcFdFieldValue& value, const CString& format) {
    ACHAR* text = nullptr;
    value.format(format, text);
    CString shown(text);
    acutDelBuffer(text);
    return shown;
}
}  // namespace

CString FormatDoubleValue(double value, const CString& format) { return FormatValue(AcFdFieldValue(value), format); }

CString FormatLongValue(long value, const CString& format) {
    return FormatValue(AcFdFieldValue(static_cast<Adesk::Int32>(value)), format);
}

int GetLayerNames(CStringArray& names, AcDbDatabase* database) {
    names.RemoveAll();
    if (!database) database = acdbHostApplicationServices()->workingDatabase();
    if (!database) return 0;
    AcDbLayerTable* table = nullptr;
    if (database->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return 0;
    AcDbLayerTableIterator* iterator = nullptr;
    if (table->newIterator(iterator, true, true) != Acad::eOk) {
        table->close();
        return 0;
    }
    for (; !iterator->done(); iterator->step(true, true)) {
        AcDbLayerTableRecord* record = nullptr;
        if (iterator->getRecord(record, AcDb::kForRead) != Acad::eOk) continue;
        const ACHAR* name = nullptr;
        record->getName(name);
        CString copy(name);
        record->close();
        if (name) names.Add(copy);
    }
    delete iterator;
    table->close();
    return 1;
}

int GetSysVarInt(LPCTSTR name, int& value) {
    resbuf result = {};
    if (acedGetVar(name, &result) != RTNORM) return 3;
    // Whatever the variable's type, the answer is the buffer's 16-bit
    // integer, widened with its sign.
    value = result.resval.rint;
    if (result.restype == RTSTR) free(result.resval.rstring);
    return 0;
}

// ---- List routines ---------------------------------------------------------

int FindListItemByData(CListBox& list, DWORD data) {
    int count = list.GetCount();
    for (int i = 0; i < count; ++i) {
        if (static_cast<DWORD>(list.GetItemData(i)) == data) return i;
    }
    return -1;
}

int FindComboItemByData(CComboBox& combo, DWORD data) {
    int count = combo.GetCount();
    for (int i = 0; i < count; ++i) {
        if (static_cast<DWORD>(combo.GetItemData(i)) == data) return i;
    }
    return -1;
}

void FitListExtent(CListBox& list) {
    CClientDC dc(&list);
    CFont* previous = dc.SelectObject(list.GetFont());
    int widest = 0;
    CString text;
    for (int i = 0; i < list.GetCount(); ++i) {
        list.GetText(i, text);
        CSize size = dc.GetTextExtent(text);
        if (size.cx > widest) widest = size.cx;
    }
    dc.SelectObject(previous);
    list.SetHorizontalExtent(widest + 4 * ::GetSystemMetrics(SM_CXBORDER));
}

void FitComboDropWidth(CComboBox& combo) {
    CClientDC dc(&combo);
    CFont* previous = dc.SelectObject(combo.GetFont());
    int scrollBar = ::GetSystemMetrics(SM_CXVSCROLL);
    int widest = 0;
    CString text;
    for (int i = 0; i < combo.GetCount(); ++i) {
        combo.GetLBText(i, text);
        CSize size = dc.GetTextExtent(text);
        if (size.cx + scrollBar > widest) widest = size.cx + scrollBar;
    }
    widest += dc.GetTextExtent(L" ", 1).cx;
    dc.SelectObject(previous);
    combo.SetDroppedWidth(widest);
}
