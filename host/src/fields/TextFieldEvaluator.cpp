#include "fields/TextFieldEvaluator.h"

#include <dbfield.h>

#include "fields/FieldCodeText.h"
#include "fields/FieldImpl.h"
#include "fields/SharedValueText.h"

namespace cadhost {

const ACHAR* TextFieldEvaluator::evaluatorId() const { return kTextEvaluatorId; }

Acad::ErrorStatus TextFieldEvaluator::evaluate(AcDbField* field, int, AcDbDatabase*, AcFdFieldResult* result) {
    if (!field || !result) return Acad::eNullObjectPointer;
    // The children were evaluated before their text.
    AcValue value;
    SharedValueText::Set(value, ComposedText(*field));
    result->setFieldValue(&value);
    result->setEvaluationStatus(AcDbField::kSuccess);
    return Acad::eOk;
}

}  // namespace cadhost
