// Any bytes as a drawing whose fields are brought up to date, as cadhost
// update does: what reads is updated with the Table Cell evaluator, saved,
// read back and updated again, which changes nothing, and saved again to the
// same bytes.
#include <cstdio>
#include <string>

#include "EvaluatorLoader.h"
#include "FuzzSupport.h"
#include "fields/FieldUpdate.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    qmfuzz::RunningHost();
    static const bool registered = RegisterQuillmarkEvaluators() == 1;
    QM_FUZZ_CHECK(registered);
    AcDbDatabase first(false);
    if (!qmfuzz::ReadDxf(std::string(reinterpret_cast<const char*>(data), size), first)) return 0;
    cadhost::UpdateFields(first);
    std::string once = qmfuzz::SaveDxf(first);
    AcDbDatabase second(false);
    QM_FUZZ_CHECK(qmfuzz::ReadDxf(once, second));
    cadhost::FieldUpdateReport again = cadhost::UpdateFields(second);
    QM_FUZZ_CHECK(again.changed == 0 && again.textsChanged == 0);
    QM_FUZZ_CHECK(qmfuzz::SaveDxf(second) == once);
    return 0;
}
