// MatchPattern on any text: with the four patterns of the format reader, and
// with a pattern taken from the input (before its first zero byte).
#include "ArxUtils/ArxUtils.h"
#include "FuzzSupport.h"

namespace {

// A capture is a piece of the text.
void CheckCaptures(const CString& text, const CStringArray& captures) {
    for (INT_PTR i = 0; i < captures.GetSize(); ++i)
        QM_FUZZ_CHECK(text.str().find(captures[i].str()) != std::wstring::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::wstring first, second;
    CStringArray captures;
    if (qmfuzz::SplitAtZero(data, size, first, second)) {
        CString pattern(first), text(second);
        BOOL matched = MatchPattern(text, pattern, captures);
        if (!matched) QM_FUZZ_CHECK(captures.IsEmpty());
        CheckCaptures(text, captures);
        return 0;
    }
    CString text(first);
    for (const wchar_t* pattern : {L"%lu{[0-9]+}", L"%pr{[0-9]+}", L"%ct8\\[{.*}\\]", L"%zs{[0-9]+}"}) {
        BOOL matched = MatchPattern(text, pattern, captures);
        QM_FUZZ_CHECK(captures.GetSize() == (matched ? 1 : 0));
        CheckCaptures(text, captures);
        if (matched && pattern[1] != L'c') {
            const CString& digits = captures[0];
            QM_FUZZ_CHECK(!digits.IsEmpty());
            for (int i = 0; i < digits.GetLength(); ++i) QM_FUZZ_CHECK(digits[i] >= L'0' && digits[i] <= L'9');
        }
    }
    return 0;
}
