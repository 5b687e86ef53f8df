#include "ObjectListReference.h"

#include <cwctype>

namespace {

bool IsBlank(ACHAR c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

bool IsHexDigit(ACHAR c) { return (c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'F') || (c >= L'a' && c <= L'f'); }

int HexValue(ACHAR c) {
    if (c <= L'9') return c - L'0';
    return (c >= L'a' ? c - L'a' : c - L'A') + 10;
}

const ACHAR kWord[] = L"Object";
const int kWordLength = 6;
const int kHandleDigits = 16;
// A faulty entry is quoted in the message up to this many characters.
const int kQuotedLength = 40;

CString Quoted(const ACHAR* text, int length) {
    CString quoted(text, length < kQuotedLength ? length : kQuotedLength);
    if (length > kQuotedLength) quoted += L"...";
    return quoted;
}

}  // namespace

int ReadObjectList(const CString& text, std::vector<ObjectListHandle>& handles, CString& why) {
    handles.clear();
    const ACHAR* all = text;
    int begin = 0, end = text.GetLength();
    while (begin < end && IsBlank(all[begin])) ++begin;
    while (end > begin && IsBlank(all[end - 1])) --end;

    bool head = end - begin >= kWordLength + 2;
    for (int i = 0; head && i < kWordLength; ++i)
        head = std::towlower(static_cast<wint_t>(all[begin + i])) == static_cast<wint_t>(std::towlower(kWord[i]));
    if (!head || all[begin + kWordLength] != L'(' || all[begin + kWordLength + 1] != L'<') {
        why = L"an object list begins with Object(<";
        return 0;
    }
    int first = begin + kWordLength + 2;
    if (end - first < 2 || all[end - 2] != L'>' || all[end - 1] != L')') {
        why = L"an object list ends with >)";
        return 0;
    }
    int last = end - 2;
    if (first == last) return 1;  // Object(<>): no objects

    for (int at = first; at <= last;) {
        int stop = at;
        while (stop < last && all[stop] != L';') ++stop;
        int length = stop - at;
        if (length == 0) {
            handles.clear();
            why = L"the list has an empty place between two \";\"";
            if (at == first) why = L"the list begins with \";\"";
            if (at == last) why = L"the list ends with \";\"";
            return 0;
        }
        Adesk::UInt64 value = 0;
        bool hex = length <= kHandleDigits;
        for (int i = at; hex && i < stop; ++i) {
            hex = IsHexDigit(all[i]);
            if (hex) value = (value << 4) | static_cast<Adesk::UInt64>(HexValue(all[i]));
        }
        if (!hex) {
            handles.clear();
            why.Format(L"\"%s\" is no handle: a handle is a hexadecimal number of up to 16 digits",
                       (const ACHAR*)Quoted(all + at, length));
            return 0;
        }
        if (value == 0) {
            handles.clear();
            why.Format(L"\"%s\" is no handle: no object has the handle 0", (const ACHAR*)Quoted(all + at, length));
            return 0;
        }
        handles.push_back(ObjectListHandle{at, length, AcDbHandle(value)});
        if (stop == last) break;
        at = stop + 1;  // at last: a ";" right before ">)", found empty above
    }
    return 1;
}

CString ObjectListDataText(const CString& text, const std::vector<ObjectListHandle>& handles) {
    // The handles stand in the text one after another, each ";" between
    // two of them, so the list between the brackets is kept as one piece.
    CString data(L"Object(<");
    if (!handles.empty()) {
        int first = handles.front().start;
        data += text.Mid(first, handles.back().start + handles.back().length - first);
    }
    data += L">)";
    return data;
}
