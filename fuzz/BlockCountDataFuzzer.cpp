// The Block Count data item reader on any text.
#include "FuzzSupport.h"
#include "fieldcode/FieldCodeReading.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CString item(qmfuzz::WideText(data, size));
    BlockCountData read;
    BOOL any = ReadBlockCountData(item, read);
    if (!any) {
        QM_FUZZ_CHECK(read.m_blockNames.IsEmpty() && read.m_layers.IsEmpty() && !read.m_window && !read.m_nested);
        return 0;
    }
    for (INT_PTR i = 0; i < read.m_blockNames.GetSize(); ++i) {
        const CString& name = read.m_blockNames[i];
        QM_FUZZ_CHECK(!name.IsEmpty());
        QM_FUZZ_CHECK(name.Find(L'"') < 0);
        for (int k = 0; k < name.GetLength(); ++k) QM_FUZZ_CHECK((name[k] & 0xFF) != L';');
    }
    for (INT_PTR i = 0; i < read.m_layers.GetSize(); ++i) QM_FUZZ_CHECK(!read.m_layers[i].IsEmpty());
    if (read.m_nested) QM_FUZZ_CHECK(item.Find(L"\\nested") >= 0);
    return 0;
}
