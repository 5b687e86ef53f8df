#include "TableCellReference.h"

#include <cwchar>

namespace {

bool IsBlank(ACHAR c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

bool IsHexDigit(ACHAR c) { return (c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'F') || (c >= L'a' && c <= L'f'); }

bool IsLetter(ACHAR c) { return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z'); }

int LetterNumber(ACHAR c) { return (c >= L'a' ? c - L'a' : c - L'A') + 1; }

// A handle has at most 16 hexadecimal digits; a row at most 9 decimal ones,
// which keeps it inside an int.
const int kHandleDigits = 16;
const int kRowDigits = 9;

}  // namespace

int ColumnNumberFromLetters(const ACHAR* letters, int count) {
    if (!letters || count < 1 || count > 2) return 0;
    for (int i = 0; i < count; ++i) {
        if (!IsLetter(letters[i])) return 0;
    }
    if (count == 1) return LetterNumber(letters[0]);
    return LetterNumber(letters[0]) * 26 + LetterNumber(letters[1]);
}

int ReadTableCellReference(const ACHAR* text, AcDbHandle& handle, int& row, int& column, CString& why) {
    if (!text) {
        why = L"the code names no table cell";
        return 0;
    }
    const ACHAR* p = text;
    while (IsBlank(*p)) ++p;
    const ACHAR* end = p + wcslen(p);
    while (end > p && IsBlank(end[-1])) --end;
    if (p == end) {
        why = L"the code names no table cell";
        return 0;
    }
    const ACHAR kHead[] = L"Table(<";
    const size_t headLength = wcslen(kHead);
    if (static_cast<size_t>(end - p) < headLength || wcsncmp(p, kHead, headLength) != 0) {
        why = L"a cell reference begins with Table(<";
        return 0;
    }
    p += headLength;
    const ACHAR* digits = p;
    while (p < end && IsHexDigit(*p)) ++p;
    int digitCount = static_cast<int>(p - digits);
    if (digitCount == 0 || digitCount > kHandleDigits) {
        why = L"the table's handle must be a hexadecimal number";
        return 0;
    }
    CString handleText(digits, digitCount);
    AcDbHandle found((const ACHAR*)handleText);
    if (found.isNull()) {
        why = L"the table's handle must not be 0";
        return 0;
    }
    if (end - p < 4 || p[0] != L'>' || p[1] != L')' || p[2] != L'.' || p[3] != L'$') {
        why = L"the handle is followed by >).$ and the cell";
        return 0;
    }
    p += 4;
    const ACHAR* letters = p;
    while (p < end && IsLetter(*p)) ++p;
    int columnNumber = ColumnNumberFromLetters(letters, static_cast<int>(p - letters));
    if (columnNumber == 0) {
        why = L"the column must be one or two letters";
        return 0;
    }
    if (p >= end || *p != L'$') {
        why = L"the column letters are followed by $ and the row";
        return 0;
    }
    ++p;
    const ACHAR* rowDigits = p;
    int rowNumber = 0;
    while (p < end && *p >= L'0' && *p <= L'9' && p - rowDigits < kRowDigits) {
        rowNumber = rowNumber * 10 + (*p - L'0');
        ++p;
    }
    if (p == rowDigits || p != end) {
        why = L"the row must be a whole number at the end of the reference";
        return 0;
    }
    if (rowNumber < 1) {
        why = L"rows count from 1";
        return 0;
    }
    handle = found;
    row = rowNumber;
    column = columnNumber;
    return 1;
}
