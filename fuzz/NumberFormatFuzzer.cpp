// A workbook's number format code, as a file may hold any, shown for any
// number and any text: the first 8 bytes are the number, the next one says
// the calendar, the rest is the code.
#include <cstring>

#include "FuzzSupport.h"
#include "spreadsheet/NumberFormat.h"

using cadhost::spreadsheet::NumberFormat;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 9) return 0;
    double value = 0;
    std::memcpy(&value, data, sizeof value);
    bool date1904 = data[8] & 1;
    std::wstring code = qmfuzz::WideText(data + 9, size - 9);
    NumberFormat format(code);
    for (double number : {value, -value, 0.0, 45356.75, 1e300}) {
        std::wstring shown = format.Format(number, date1904);
        QM_FUZZ_CHECK(shown.size() < code.size() * 4 + 1024);  // no runaway text
    }
    std::wstring text = format.FormatText(code);
    QM_FUZZ_CHECK(text.size() < code.size() * (code.size() + 1) + 16);
    return 0;
}
