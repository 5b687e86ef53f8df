// The host's own evaluator of texts that hold fields: the value is the text
// with each child's value text in the child's place.
#pragma once

#include <AcFdEval.h>

namespace cadhost {

class TextFieldEvaluator : public AcFdFieldEvaluator {
public:
    const ACHAR* evaluatorId() const override;
    Acad::ErrorStatus evaluate(AcDbField* field, int context, AcDbDatabase* database,
                               AcFdFieldResult* result) override;
};

}  // namespace cadhost
