// Field code text of any kind into a field, as a code or as a text that
// holds codes (the first byte chooses), with children handed in or not.
// What a field takes it must give back so that it reads the same again,
// and evaluating it must leave a value text.
#include <dbfield.h>

#include <cwchar>
#include <string>

#include "FuzzSupport.h"
#include "fields/FieldCodeText.h"

namespace {

// The field's code under the flags, read into a second field and written
// again: the same text, evaluator, format and children.
void CheckReadsBack(const AcDbField& field, int flags, AcDbField::FieldCodeFlag setFlags) {
    std::wstring code = field.getFieldCode(flags);
    AcDbField again;
    QM_FUZZ_CHECK(again.setFieldCode(code.c_str(), setFlags) == Acad::eOk);
    QM_FUZZ_CHECK(code == again.getFieldCode(flags));
    QM_FUZZ_CHECK(std::wcscmp(field.evaluatorId(), again.evaluatorId()) == 0);
    QM_FUZZ_CHECK(std::wcscmp(field.getFormat(), again.getFormat()) == 0);
    QM_FUZZ_CHECK(field.childCount() == again.childCount());
}

// Whether the field holds the child anywhere below it.
bool Holds(AcDbField& field, const AcDbField* child) {
    for (int i = 0; i < field.childCount(); ++i) {
        AcDbField* held = nullptr;
        field.getChild(i, held, AcDb::kForRead);
        if (held == child || (held && Holds(*held, child))) return true;
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    qmfuzz::RunningHost();
    bool textField = data[0] & 1;
    bool supplyChildren = data[0] & 2;
    std::wstring text = qmfuzz::WideText(data + 1, size - 1);
    text.resize(std::wcslen(text.c_str()));  // a field takes its code as a C string

    std::wstring error;
    auto parsed = textField ? cadhost::ParseTextWithFields(text, error, supplyChildren)
                            : cadhost::ParseFieldCode(text, error, supplyChildren);
    QM_FUZZ_CHECK(parsed.has_value() == error.empty());

    AcDbFieldArray children;
    AcDbField* supplied[2] = {new AcDbField(L"%<\\A a>%"), new AcDbField(L"t %<\\B b \\f \"x\">%", true)};
    for (AcDbField* child : supplied) children.append(child);
    AcDbField field;
    AcDbField::FieldCodeFlag flags = textField ? AcDbField::kTextField : AcDbField::FieldCodeFlag(0);
    Acad::ErrorStatus es = field.setFieldCode(text.c_str(), flags, supplyChildren ? &children : nullptr);
    QM_FUZZ_CHECK((es == Acad::eOk) == parsed.has_value() || supplyChildren);
    // Children not taken stay the caller's.
    for (AcDbField* child : supplied) {
        if (!Holds(field, child)) delete child;
    }
    if (es != Acad::eOk) {
        QM_FUZZ_CHECK(field.childCount() == 0 && *field.evaluatorId() == 0);
        return 0;
    }
    if (textField) CheckReadsBack(field, AcDbField::kFieldCode, AcDbField::kTextField);
    else CheckReadsBack(field, AcDbField::kFieldCode | AcDbField::kAddMarkers, AcDbField::FieldCodeFlag(0));

    field.evaluate(AcDbField::kPreview, nullptr);
    const ACHAR* value = field.getValue();
    QM_FUZZ_CHECK(value != nullptr);
    if (field.evaluationStatus() != AcDbField::kSuccess) QM_FUZZ_CHECK(std::wcscmp(value, L"####") == 0);
    return 0;
}
