#include "ObjectListReference.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>
#include <string_view>
#include <utility>

namespace {

bool IsBlank(ACHAR c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

// The value of each character as a hexadecimal digit, or -1: a list of a
// hundred thousand handles is read a character at a time.
struct HexDigitTable {
    signed char value[128];
    constexpr HexDigitTable() : value() {
        for (int c = 0; c < 128; ++c) value[c] = -1;
        for (int c = 0; c < 10; ++c) value['0' + c] = static_cast<signed char>(c);
        for (int c = 0; c < 6; ++c) value['A' + c] = value['a' + c] = static_cast<signed char>(10 + c);
    }
};
constexpr HexDigitTable kHexDigits;

int HexValue(ACHAR c) { return c >= 0 && c < 128 ? kHexDigits.value[c] : -1; }

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
    return ReadObjectList(text, text.GetLength(), handles, why);
}

int ReadObjectList(const ACHAR* all, int length, std::vector<ObjectListHandle>& handles, CString& why) {
    handles.clear();
    if (!all) length = 0;
    int begin = 0, end = length;
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
    handles.reserve(static_cast<size_t>(std::count(all + first, all + last, L';')) + 1);

    for (int at = first; at <= last;) {
        // One pass finds the end of the entry and reads its digits.
        int stop = at;
        Adesk::UInt64 value = 0;
        bool hex = true;
        for (; stop < last && all[stop] != L';'; ++stop) {
            int digit = HexValue(all[stop]);
            hex = hex && digit >= 0;
            value = (value << 4) | static_cast<Adesk::UInt64>(digit & 15);
        }
        int length = stop - at;
        if (length == 0) {
            handles.clear();
            why = L"the list has an empty place between two \";\"";
            if (at == first) why = L"the list begins with \";\"";
            if (at == last) why = L"the list ends with \";\"";
            return 0;
        }
        hex = hex && length <= kHandleDigits;
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
    return ObjectListDataText(static_cast<const ACHAR*>(text), handles);
}

namespace {

// The words around the handles in the data item's text.
constexpr std::wstring_view kDataHead = L"Object(<";
constexpr std::wstring_view kDataTail = L">)";

// Where the handles stand in the list's text, one piece from the first to
// the last.
std::pair<int, size_t> HandlesPiece(const std::vector<ObjectListHandle>& handles) {
    if (handles.empty()) return {0, 0};
    int first = handles.front().start;
    return {first, static_cast<size_t>(handles.back().start + handles.back().length - first)};
}

}  // namespace

bool IsObjectListDataText(const ACHAR* data, const ACHAR* text, const std::vector<ObjectListHandle>& handles) {
    if (!data || !text) return false;
    auto [first, listLength] = HandlesPiece(handles);
    std::wstring_view kept(data);
    return kept.size() == kDataHead.size() + listLength + kDataTail.size() && kept.starts_with(kDataHead) &&
           kept.substr(kDataHead.size(), listLength) == std::wstring_view(text + first, listLength) &&
           kept.ends_with(kDataTail);
}

CString ObjectListDataText(const ACHAR* text, const std::vector<ObjectListHandle>& handles) {
    // The handles stand in the text one after another, each ";" between
    // two of them, so the list between the brackets is kept as one piece.
    // Sized once: a list of a hundred thousand handles is not copied again
    // for the closing brackets.
    auto [first, listLength] = HandlesPiece(handles);
    std::wstring data;
    data.reserve(kDataHead.size() + listLength + kDataTail.size());
    data = kDataHead;
    if (!handles.empty()) data.append(text + first, listLength);
    data += kDataTail;
    return CString(std::move(data));
}
