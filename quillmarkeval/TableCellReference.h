// The cell reference of a TableCell code: "Table(<handle>).$<column>$<row>",
// the table's handle in hexadecimal and an absolute spreadsheet-style cell
// name, with column letters A to ZZ and rows counted from 1.
#pragma once

#include "StdAfx.h"

// The column number of one or two letters (A is 1, Z 26, AA 27, ZZ 702),
// without regard to case; 0 for anything else.
int ColumnNumberFromLetters(const ACHAR* letters, int count);

// Reads a cell reference, blanks around it allowed. Answers 1 and fills
// handle, row and column (counted from 1), or answers 0 and leaves them
// alone; why names the first fault then.
int ReadTableCellReference(const ACHAR* text, AcDbHandle& handle, int& row, int& column, CString& why);
