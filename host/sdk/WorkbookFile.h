// A workbook file (.xls or .xlsx) read without a spreadsheet program: its
// worksheets, and the text each cell shows as the spreadsheet program shows
// it. The host's one workbook reader, which its spreadsheet program uses too.
#pragma once

#include "afxstr.h"

class CADHOST_API CWorkbookFile {
public:
    // Reads a workbook; null, with why in a few words ("the file is not
    // there", "it is protected by a password", ...), when it cannot be read.
    // The caller deletes it.
    static CWorkbookFile* Open(LPCWSTR path, CString& why);
    ~CWorkbookFile();
    CWorkbookFile(const CWorkbookFile&) = delete;
    CWorkbookFile& operator=(const CWorkbookFile&) = delete;

    // The worksheet of that name, compared without regard to case as the
    // spreadsheet program compares them; -1 when there is none.
    int FindWorksheet(LPCWSTR name) const;
    CString GetSheetName(int sheet) const;
    // The size of the file read, in bytes.
    size_t GetByteCount() const;
    // The grid of the file's format: 65536 rows and 256 columns for .xls,
    // 1048576 and 16384 for .xlsx.
    long GetMaxRows() const;
    int GetMaxColumns() const;
    // The text that a cell shows, row and column counted from 1; an empty
    // cell shows an empty text. FALSE, with why, when the sheet's cells
    // cannot be read or the cell lies outside the grid.
    BOOL GetCellText(int sheet, long row, int column, CString& text, CString& why);

private:
    struct Impl;
    explicit CWorkbookFile(Impl* impl) : m_impl(impl) {}
    Impl* m_impl;
};
