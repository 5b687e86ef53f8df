// The workbook reader on any bytes: the first byte chooses whether the rest
// is read as an .xlsx package, as an .xls compound file, or by what it
// looks like; every sheet's cells are then read and shown. A file is read
// or refused with a reason; nothing it holds may crash the reader, hang it
// or make it grow without bound.
//
// The corpus workbooks are 5 to 6 KB and a cut package loses its central
// directory, so run it past the default length:
//   tools/fuzz WorkbookRead 1000000 -max_len=16384
#include <cstdint>
#include <span>

#include "FuzzSupport.h"
#include "spreadsheet/Workbook.h"

using namespace cadhost::spreadsheet;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    std::span<const std::uint8_t> bytes(data + 1, size - 1);
    std::wstring why;
    std::unique_ptr<Workbook> book;
    switch (data[0] % 3) {
    case 0: book = ReadXlsx(bytes, why); break;
    case 1: book = ReadXls(bytes, why); break;
    default: book = ReadWorkbookBytes(bytes, why); break;
    }
    if (!book) {
        QM_FUZZ_CHECK(!why.empty());
        return 0;
    }
    const auto& sheets = book->sheets();
    QM_FUZZ_CHECK(!sheets.empty());
    QM_FUZZ_CHECK(book->activeSheet() >= 0 && static_cast<size_t>(book->activeSheet()) < sheets.size());
    for (int sheet = 0; sheet < static_cast<int>(sheets.size()); ++sheet) {
        const Sheet& s = sheets[static_cast<size_t>(sheet)];
        QM_FUZZ_CHECK(s.activeRow >= 1 && s.activeRow <= book->maxRows());
        QM_FUZZ_CHECK(s.activeColumn >= 1 && s.activeColumn <= book->maxColumns());
        if (!book->LoadCells(sheet, why)) {
            QM_FUZZ_CHECK(!why.empty());
            QM_FUZZ_CHECK(book->CellCount(sheet) == 0);
            continue;
        }
        size_t seen = 0;
        book->ForEachCell(sheet, [&](std::uint32_t row, std::uint32_t column, const Cell& cell) {
            QM_FUZZ_CHECK(row >= 1 && row <= book->maxRows() && column >= 1 && column <= book->maxColumns());
            QM_FUZZ_CHECK(book->Find(sheet, row, column) == &cell);
            std::wstring shown = book->Shown(cell);
            QM_FUZZ_CHECK(shown.size() < 200000);  // no runaway text
            ++seen;
        });
        QM_FUZZ_CHECK(seen == book->CellCount(sheet));
        QM_FUZZ_CHECK(book->Find(sheet, book->maxRows(), book->maxColumns() + 1) == nullptr);
    }
    return 0;
}
