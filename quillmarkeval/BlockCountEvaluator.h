// The evaluator of AcBlockCount codes: the value is the number of block
// references that the code asks for (see BlockCounter.h), as a long.
#pragma once

#include "StdAfx.h"

class AsdkBlockCountEvaluator : public AcFdFieldEvaluator {
public:
    AsdkBlockCountEvaluator();
    ~AsdkBlockCountEvaluator() override;

    const ACHAR* evaluatorId() const override;
    // On success the value is the count and the data item "AcBlockCount
    // Data" holds the code's arguments from the opening quote of the names
    // on, without the \f option. A code it cannot read, a space that the
    // drawing does not hold, or a count beyond a long fail with a message,
    // and no data item is written.
    Acad::ErrorStatus evaluate(AcDbField* field, int context, AcDbDatabase* database,
                               AcFdFieldResult* result) override;
};
