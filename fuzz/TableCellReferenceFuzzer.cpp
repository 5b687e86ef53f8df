// ReadTableCellReference on any text: what it accepts names a table and a
// cell inside the names' range, and the reference composed again from what
// it read reads the same.
#include <cwchar>

#include "FuzzSupport.h"
#include "TableCellReference.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::wstring text = qmfuzz::WideText(data, size);
    AcDbHandle handle;
    int row = 0, column = 0;
    CString why;
    if (!ReadTableCellReference(text.c_str(), handle, row, column, why)) {
        QM_FUZZ_CHECK(!why.IsEmpty());
        QM_FUZZ_CHECK(row == 0 && column == 0 && handle.isNull());
        return 0;
    }
    QM_FUZZ_CHECK(!handle.isNull());
    QM_FUZZ_CHECK(row >= 1 && row <= 999999999);
    QM_FUZZ_CHECK(column >= 1 && column <= 702);
    ACHAR handleText[32];
    handle.getIntoAsciiBuffer(handleText, 32);
    wchar_t letters[3] = {0, 0, 0};
    int c = column - 1;
    if (column <= 26) {
        letters[0] = static_cast<wchar_t>(L'A' + c);
    } else {
        letters[0] = static_cast<wchar_t>(L'A' - 1 + c / 26);
        letters[1] = static_cast<wchar_t>(L'A' + c % 26);
    }
    CString again;
    again.Format(L"Table(<%s>).$%s$%d", handleText, letters, row);
    AcDbHandle handle2;
    int row2 = 0, column2 = 0;
    QM_FUZZ_CHECK(ReadTableCellReference(again, handle2, row2, column2, why) == 1);
    QM_FUZZ_CHECK(handle2 == handle && row2 == row && column2 == column);
    return 0;
}
