// ParsePrefixSuffix and the whole format reading on any text, on hosts with
// and without escapes; and composing then reading any prefix and suffix
// (the input cut at its first zero byte) gives them back.
#include "FuzzSupport.h"
#include "fieldcode/FormatText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    cadhost::Host& host = qmfuzz::RunningHost();
    bool older = data[0] & 1;
    host.services().SetReleaseMajorVersion(older ? 16 : 18);
    std::wstring first, second;
    bool split = qmfuzz::SplitAtZero(data + 1, size - 1, first, second);

    CString prefix = L"kept", suffix = L"kept";
    QM_FUZZ_CHECK(ParsePrefixSuffix(CString(first), prefix, suffix));
    MeasureFormatState state;
    ReadMeasureFormat(CString(first), state);

    if (split && !older) {
        CString format = ComposeAdditionalFormat(1.0, CString(first), CString(second), 0, 0, 0, 0, 0, 0);
        CString readPrefix = L"kept", readSuffix = L"kept";
        ParsePrefixSuffix(format, readPrefix, readSuffix);
        if (!first.empty() || !second.empty()) {
            // CString stops at a zero character, as the platform's strings do.
            QM_FUZZ_CHECK(readPrefix == CString(first.c_str()));
            QM_FUZZ_CHECK(readSuffix == CString(second.c_str()));
        }
    }
    return 0;
}
