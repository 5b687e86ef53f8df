// The six field code forms. Each composer takes the state of a page as
// plain values and writes the whole code; the pages feed them from their
// controls.
#pragma once

#include "StdAfx.h"

// Evaluator ids of the six field types.
#define QM_EVALUATOR_AREA L"AcArea"
#define QM_EVALUATOR_LENGTH L"AcLength"
#define QM_EVALUATOR_BLOCK_COUNT L"AcBlockCount"
#define QM_EVALUATOR_TEXT_FILE L"TextField"
#define QM_EVALUATOR_EXCEL_CELL L"ExcelCell"
#define QM_EVALUATOR_TABLE_CELL L"TableCell"

// The texts of a list joined by a separator, none after the last.
CString JoinTexts(const CStringArray& texts, const ACHAR* separator);

// AcArea and AcLength: the handle texts of the chosen objects in list order
// and the format text; an empty format gives the form without \f. An empty
// list still gives a code, "Object(<>)".
CString ComposeObjectsFieldCode(const ACHAR* evaluatorId, const CStringArray& handles, const CString& format);
// The same with the handles joined already.
CString ComposeObjectsFieldCode(const ACHAR* evaluatorId, const CString& handleList, const CString& format);

// The state of a Block Count page that its code is made of.
struct BlockCountCodeState {
    CStringArray blockNames;  // the ticked names, in list order
    CStringArray layers;      // the filter's layers, in array order
    CString op;               // the filter's attribute condition
    CString tag;
    CString value;
    BOOL nested = FALSE;
    BOOL windowMode = FALSE;
    CString spaceHandle;  // handle text of the current space; empty if it could not be opened
    double firstCorner[3] = {0, 0, 0};
    double secondCorner[3] = {0, 0, 0};
    CString format;  // the additional format piece
};

// AcBlockCount: with no name ticked the short form, whatever else is set;
// else the pieces in their fixed order. Corners go in by %g, six digits.
CString ComposeBlockCountFieldCode(const BlockCountCodeState& state);

// The step that turns a page's file path into the path that goes into a
// code. The path type of the page (full or relative to the drawing) plugs
// in here; without a step the path goes in as the page holds it.
class CFieldPathStep {
public:
    virtual ~CFieldPathStep() = default;
    virtual CString Apply(const CString& path) = 0;
};

// TextField: the path, bare, without quotes.
CString ComposeTextFileFieldCode(const CString& path, CFieldPathStep* pathStep = nullptr);

// ExcelCell: path, sheet, column and row; with any of the four empty the
// short form, and then no path step either. A column box that begins with a
// positive whole number gives that column's letters; other text goes in as
// typed.
CString ComposeExcelCellFieldCode(const CString& path, const CString& sheet, const CString& column, const CString& row,
                                  CFieldPathStep* pathStep = nullptr);

// The letters of a column: 1 is A, 26 Z, 27 AA, 702 ZZ. Numbers not above
// 0 give A; two letters are the limit, so above 702 there is no name and
// the text is empty.
CString ColumnLetters(int column);

// The absolute name of a table cell from a 1-based row and column
// ("$B$3"); empty when either is below 1 or the column is beyond ZZ.
CString MakeCellName(int row, int column);
#define QM_MESSAGE_CELL_INDEX L"The row index and column index should be a positive number."

// TableCell: the reference of a cell of a table, "Table(<3A7>).$B$3", and
// the code of a reference as the page's box holds it (empty: short form).
CString ComposeTableCellReference(const CString& tableHandle, const CString& cellName);
CString ComposeTableCellFieldCode(const CString& cellReference);
