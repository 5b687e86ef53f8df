// The evaluator of ExcelCell codes: the value is the text that one cell of
// a worksheet of a workbook file shows in the spreadsheet program, read
// from the file without the program.
#pragma once

#include "StdAfx.h"

#include <WorkbookFile.h>

#include <memory>

#include "PassFileCache.h"

// What reading one workbook gave: the workbook, or why there is none.
struct CWorkbookContent {
    std::shared_ptr<CWorkbookFile> file;
    CString why;
    size_t Weight() const;
};

// Reads a workbook by its full path.
CWorkbookContent ReadWorkbookFile(const std::wstring& fullPath);

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

    // The workbooks read, kept for the length of an evaluation pass: one
    // pass reads each workbook once, however many fields name it.
    CPassFileCache<CWorkbookContent>& Workbooks() { return m_workbooks; }

private:
    CPassFileCache<CWorkbookContent> m_workbooks;
};
