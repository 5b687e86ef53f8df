// Any bytes as a drawing whose fields are brought up to date, as cadhost
// update does: what reads is updated with the Table Cell evaluator, saved,
// read back and updated again, which changes nothing, and saved again to the
// same bytes.
#include <cstdio>
#include <string>

#include "EvaluatorLoader.h"
#include "FuzzSupport.h"
#include "dxf/DxfFiles.h"
#include "fields/FieldUpdate.h"

namespace {

std::string Save(const AcDbDatabase& db) {
    char* buffer = nullptr;
    size_t size = 0;
    std::FILE* out = open_memstream(&buffer, &size);
    QM_FUZZ_CHECK(out != nullptr);
    QM_FUZZ_CHECK(cadhost::dxf::WriteStream(db, out) == Acad::eOk);
    std::fclose(out);
    std::string text(buffer, size);
    std::free(buffer);
    return text;
}

bool Read(const std::string& text, AcDbDatabase& db) {
    std::FILE* in = fmemopen(const_cast<char*>(text.data()), text.size(), "rb");
    QM_FUZZ_CHECK(in != nullptr);
    std::wstring error;
    Acad::ErrorStatus es = cadhost::dxf::ReadStream(in, L"fuzz.dxf", db, error);
    std::fclose(in);
    if (es != Acad::eOk) QM_FUZZ_CHECK(!error.empty());
    return es == Acad::eOk;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    qmfuzz::RunningHost();
    static const bool registered = RegisterQuillmarkEvaluators() == 1;
    QM_FUZZ_CHECK(registered);
    AcDbDatabase first(false);
    if (!Read(std::string(reinterpret_cast<const char*>(data), size), first)) return 0;
    cadhost::UpdateFields(first);
    std::string once = Save(first);
    AcDbDatabase second(false);
    QM_FUZZ_CHECK(Read(once, second));
    cadhost::FieldUpdateReport again = cadhost::UpdateFields(second);
    QM_FUZZ_CHECK(again.changed == 0 && again.textsChanged == 0);
    QM_FUZZ_CHECK(Save(second) == once);
    return 0;
}
