// The arguments of an ExcelCell code, "path:sheet:$COL$ROW", and the path
// of the file a field names.
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

// The absolute path of a file named by a field of a drawing. A relative
// path is read from the drawing's folder, with backslashes, as a drawing
// made on Windows writes them, separating as slashes do; a Windows path
// with a drive letter stays as it is. FALSE, with why, for a relative path
// in a drawing that was never saved.
BOOL ResolveFieldPath(const CString& path, AcDbDatabase* database, CString& resolved, CString& why);
