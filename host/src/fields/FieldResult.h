// One evaluation of a field: what its evaluator reports, and the walk that
// evaluates a field and its children.
#pragma once

#include <AcFdEval.h>
#include <dbfield.h>

#include <optional>
#include <string>

namespace cadhost {

class FieldResult : public AcFdFieldResult {
public:
    Acad::ErrorStatus setFieldValue(const AcValue* value) override;
    Acad::ErrorStatus setEvaluationStatus(int status, int errorCode, const ACHAR* message) override;

    std::optional<AcFdFieldValue> value;
    std::optional<int> status;
    int errorCode = 0;
    std::wstring message;
};

// Evaluates the field's children, then the field, in the context; counts
// the fields met and those handed to an evaluator. A field whose children
// cannot be followed fails with the reason, and nothing below it changes.
Acad::ErrorStatus EvaluateField(AcDbField& field, int context, AcDbDatabase* database, int& found, int& evaluated);
// The same without looking at the children's structure first.
Acad::ErrorStatus EvaluateTree(AcDbField& field, int context, AcDbDatabase* database, int& found, int& evaluated);

// Why the fields below a field cannot be followed: a child that names
// nothing, that is no field or was erased, or children that form a cycle.
// Nothing when they can. The field itself may be open; its children must
// not be open for write.
std::optional<std::wstring> FieldStructureFault(const AcDbField& field);

}  // namespace cadhost
