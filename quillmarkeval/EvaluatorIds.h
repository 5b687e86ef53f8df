// The evaluator ids that the module's field codes name, and the keys of
// the data items that the evaluators keep in their fields.
#pragma once

#define QM_EVAL_AREA L"AcArea"
#define QM_EVAL_LENGTH L"AcLength"
#define QM_EVAL_BLOCK_COUNT L"AcBlockCount"
#define QM_EVAL_TEXT_FILE L"TextField"
#define QM_EVAL_EXCEL_CELL L"ExcelCell"
#define QM_EVAL_TABLE_CELL L"TableCell"

// Each evaluator keeps the argument part of its code under "<id> Data".
#define QM_TABLE_CELL_DATA L"TableCell Data"
#define QM_BLOCK_COUNT_DATA L"AcBlockCount Data"
#define QM_AREA_DATA L"AcArea Data"
#define QM_LENGTH_DATA L"AcLength Data"
#define QM_TEXT_FILE_DATA L"TextField Data"
#define QM_EXCEL_CELL_DATA L"ExcelCell Data"
