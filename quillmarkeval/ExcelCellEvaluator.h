// The evaluator of ExcelCell codes: the value is the text that one cell of
// a worksheet of a workbook file shows in the spreadsheet program, read
// from the file without the program.
#pragma once

#include "StdAfx.h"

#include "WorkbookCache.h"

class AsdkExcelCellEvaluator : public AcFdFieldEvaluator {
public:
    AsdkExcelCellEvaluator();
    ~AsdkExcelCellEvaluator() override;

    const ACHAR* evaluatorId() const override;
    // On success the value is the cell's text (empty for an empty cell).
    // Whenever the code names a path, a sheet and a cell, the data item
    // "ExcelCell Data" holds them as the code gave them, so that the field
    // can be edited also when its workbook is gone. A code it cannot read, a
    // workbook that cannot be read, a sheet that is not there or a cell
    // beyond the sheet fail with a message that names the path and what was
    // not found.
    Acad::ErrorStatus evaluate(AcDbField* field, int context, AcDbDatabase* database,
                               AcFdFieldResult* result) override;

    CWorkbookCache& cache() { return m_cache; }

private:
    CWorkbookCache m_cache;
};
