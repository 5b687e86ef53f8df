// CWorkbookFile: the host's workbook reader behind the name that modules see.
#include <WorkbookFile.h>

#include "core/Utf8.h"
#include "spreadsheet/Workbook.h"

using cadhost::FromUtf8;
using cadhost::ToUtf8;
using namespace cadhost::spreadsheet;

struct CWorkbookFile::Impl {
    std::unique_ptr<Workbook> book;
    size_t bytes;
};

CWorkbookFile* CWorkbookFile::Open(LPCWSTR path, CString& why) {
    std::wstring reason;
    std::unique_ptr<Workbook> book = ReadWorkbook(std::filesystem::path(ToUtf8(path ? path : L"")), reason);
    if (!book) {
        why = reason.c_str();
        return nullptr;
    }
    std::error_code error;
    std::uintmax_t size = std::filesystem::file_size(std::filesystem::path(ToUtf8(path)), error);
    return new CWorkbookFile(new Impl{std::move(book), error ? 0 : static_cast<size_t>(size)});
}

CWorkbookFile::~CWorkbookFile() { delete m_impl; }

int CWorkbookFile::FindWorksheet(LPCWSTR name) const { return m_impl->book->FindWorksheet(name ? name : L""); }

CString CWorkbookFile::GetSheetName(int sheet) const {
    const auto& sheets = m_impl->book->sheets();
    if (sheet < 0 || static_cast<size_t>(sheet) >= sheets.size()) return CString();
    return CString(sheets[static_cast<size_t>(sheet)].name);
}

size_t CWorkbookFile::GetByteCount() const { return m_impl->bytes; }

long CWorkbookFile::GetMaxRows() const { return static_cast<long>(m_impl->book->maxRows()); }

int CWorkbookFile::GetMaxColumns() const { return static_cast<int>(m_impl->book->maxColumns()); }

BOOL CWorkbookFile::GetCellText(int sheet, long row, int column, CString& text, CString& why) {
    Workbook& book = *m_impl->book;
    if (row < 1 || column < 1 || static_cast<unsigned long>(row) > book.maxRows() ||
        static_cast<unsigned>(column) > book.maxColumns()) {
        why = L"the cell lies outside the sheet";
        return FALSE;
    }
    std::wstring reason;
    if (!book.LoadCells(sheet, reason)) {
        why = reason.c_str();
        return FALSE;
    }
    const Cell* cell = book.Find(sheet, static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(column));
    text = cell ? CString(book.Shown(*cell)) : CString();
    return TRUE;
}
