// AcValue::format of a real and of a whole number under any format text, and
// acdbRToS of any real in any units and precision into a tight buffer. The
// first 8 bytes are the real (their first 4 the whole number), the next two
// the units and precision.
#include <AcValue.h>
#include <acutads.h>
#include <adslib.h>

#include <cstring>
#include <cwchar>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 10) return 0;
    qmfuzz::RunningHost();
    double value = 0;
    std::memcpy(&value, data, sizeof value);
    int units = static_cast<int8_t>(data[8]) % 8;
    int precision = static_cast<int8_t>(data[9]) % 12;
    std::wstring format = qmfuzz::WideText(data + 10, size - 10);

    Adesk::Int32 whole = 0;
    std::memcpy(&whole, data, sizeof whole);
    for (const AcFdFieldValue& field : {AcFdFieldValue(value), AcFdFieldValue(whole)}) {
        ACHAR* text = nullptr;
        QM_FUZZ_CHECK(field.format(format.c_str(), text));
        QM_FUZZ_CHECK(text != nullptr);
        size_t length = std::wcslen(text);
        QM_FUZZ_CHECK(length < format.size() * 2 + 2048);  // no runaway text
        acutDelBuffer(text);
    }

    ACHAR buffer[40];
    buffer[32] = L'#';
    int result = acdbRToS(value, units, precision, buffer, 32);
    QM_FUZZ_CHECK(buffer[32] == L'#');
    if (result == RTNORM) QM_FUZZ_CHECK(std::wcslen(buffer) < 32);
    else QM_FUZZ_CHECK(result == RTERROR && buffer[0] == L'\0');
    return 0;
}
