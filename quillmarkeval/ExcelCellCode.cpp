#include "ExcelCellCode.h"

#include <cwctype>

int SplitExcelCellArguments(const CString& text, ExcelCellArguments& out) {
    int cellColon = text.ReverseFind(L':');
    if (cellColon <= 0) return 0;
    CString head = text.Left(cellColon);
    int sheetColon = head.ReverseFind(L':');
    if (sheetColon <= 0) return 0;
    ExcelCellArguments parts{head.Left(sheetColon), head.Mid(sheetColon + 1), text.Mid(cellColon + 1)};
    if (parts.path.IsEmpty() || parts.sheet.IsEmpty() || parts.cell.IsEmpty()) return 0;
    out = parts;
    return 1;
}

int ReadExcelCellName(const CString& cell, long long& row, long long& column, CString& why) {
    int at = 0, length = cell.GetLength();
    if (at < length && cell[at] == L'$') ++at;
    long long letters = 0, number = 0;
    int count = 0;
    while (at < length && ((cell[at] >= L'A' && cell[at] <= L'Z') || (cell[at] >= L'a' && cell[at] <= L'z'))) {
        wchar_t upper = cell[at] >= L'a' ? static_cast<wchar_t>(cell[at] - 32) : cell[at];
        if (count < 8) letters = letters * 26 + (upper - L'A' + 1);
        ++count;
        ++at;
    }
    if (count == 0) {
        why = L"it begins with no column letters";
        return 0;
    }
    if (at < length && cell[at] == L'$') ++at;
    int digits = 0;
    while (at < length && cell[at] >= L'0' && cell[at] <= L'9') {
        if (number < 1000000000000000LL) number = number * 10 + (cell[at] - L'0');
        ++digits;
        ++at;
    }
    if (digits == 0 || at != length) {
        why = L"its row is no number";
        return 0;
    }
    if (number == 0) {
        why = L"rows count from 1";
        return 0;
    }
    row = number;
    column = count > 7 ? 0x7FFFFFFFFFFFLL : letters;
    return 1;
}
