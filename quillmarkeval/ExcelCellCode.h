// The arguments of an ExcelCell code, "path:sheet:$COL$ROW".
#pragma once

#include "StdAfx.h"

struct ExcelCellArguments {
    CString path;
    CString sheet;
    CString cell;
};

// Cuts the arguments from the end: the cell behind the last colon, the
// sheet behind the one before, the path before that (so a path may hold
// colons, as a drive letter does). 1 when none of the three is empty.
int SplitExcelCellArguments(const CString& text, ExcelCellArguments& out);

// Reads a cell name, "$AB$12" or "AB12", letters in either case, into a row
// and a column counted from 1. The row is read as far as it goes, so that a
// row beyond any sheet can be named in a message. 0, with why, for a text
// that is no cell name or names row 0.
int ReadExcelCellName(const CString& cell, long long& row, long long& column, CString& why);
