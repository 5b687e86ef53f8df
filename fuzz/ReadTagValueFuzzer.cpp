// ReadTagValue and ReadTagList on any text with any tag (the input cut at
// its first zero byte: tag, then text), and with the tags the readers use.
#include "FuzzSupport.h"
#include "fieldcode/FieldCodeReading.h"

namespace {

void Read(const CString& text, const CString& tag) {
    CString out = L"\x1F";  // no reader ever produces this text
    ReadTagValue(text, tag, out);
    if (out != L"\x1F") {
        QM_FUZZ_CHECK(text.str().find(out.str()) != std::wstring::npos);
        QM_FUZZ_CHECK(out.Find(L'\\') < 0);
    }
    CStringArray list;
    ReadTagList(text, tag, list);
    for (INT_PTR i = 0; i < list.GetSize(); ++i) {
        QM_FUZZ_CHECK(!list[i].IsEmpty());
        QM_FUZZ_CHECK(text.str().find(list[i].str()) != std::wstring::npos);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::wstring first, second;
    if (qmfuzz::SplitAtZero(data, size, first, second)) {
        Read(CString(second), CString(first));
        return 0;
    }
    CString text(first);
    for (const wchar_t* tag : {L"\\Window", L"\\layer", L"\\tag", L"\\op", L"\\value", L"ta", L"\\\\"})
        Read(text, tag);
    CStringArray handles;
    ReadObjectHandles(text, handles);
    for (INT_PTR i = 0; i < handles.GetSize(); ++i) QM_FUZZ_CHECK(!handles[i].IsEmpty());
    return 0;
}
