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
// the fields met and those handed to an evaluator.
Acad::ErrorStatus EvaluateField(AcDbField& field, int context, AcDbDatabase* database, int& found, int& evaluated);

}  // namespace cadhost
