// The evaluator of TableCell codes: the value is the text of one cell of a
// table of the field's drawing, without its formatting codes.
#pragma once

#include "StdAfx.h"

class AsdkTableCellEvaluator : public AcFdFieldEvaluator {
public:
    AsdkTableCellEvaluator();
    ~AsdkTableCellEvaluator() override;

    const ACHAR* evaluatorId() const override;
    // On success the value is the cell's text and the data item
    // "TableCell Data" holds the cell reference as the code gave it. A code
    // it cannot read, a handle that names no table, or a cell outside the
    // table fail with an error status, and no data item is written.
    Acad::ErrorStatus evaluate(AcDbField* field, int context, AcDbDatabase* database,
                               AcFdFieldResult* result) override;
};

// The arguments of a field's code: the code without its evaluator id, the
// blank behind it and its \f option.
CString GetFieldArguments(const AcDbField* field);
