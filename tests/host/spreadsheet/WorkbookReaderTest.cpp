// The workbook reader against the fixture workbooks: every cell as the
// independent readers (python3-openpyxl for .xlsx, python3-xlrd for .xls)
// give it, and shown as the spreadsheet program shows it; the sheet and
// cell a workbook was saved with; and files that are not what they say.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "core/Utf8.h"
#include "spreadsheet/Workbook.h"

using namespace cadhost;
using namespace cadhost::spreadsheet;

namespace {

const std::filesystem::path kWorkbooks = std::filesystem::path(QM_SOURCE_DIR) / "tests/fixtures/workbooks";

struct Expected {
    std::string sheet, cell, kind, value, shown;
};

std::vector<Expected> ReadTable(const std::filesystem::path& file) {
    std::vector<Expected> rows;
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::vector<std::string> fields;
        std::stringstream parts(line);
        std::string field;
        while (std::getline(parts, field, '\t')) fields.push_back(field);
        if (fields.size() == 4) fields.emplace_back();
        if (fields.size() != 5) ADD_FAILURE() << "a bad line in " << file << ": " << line;
        else rows.push_back(Expected{fields[0], fields[1], fields[2], fields[3], fields[4]});
    }
    return rows;
}

const char* KindName(CellKind kind) {
    switch (kind) {
    case CellKind::Number: return "number";
    case CellKind::Text: return "text";
    case CellKind::Boolean: return "boolean";
    case CellKind::Error: return "error";
    case CellKind::Empty: break;
    }
    return "empty";
}

std::unique_ptr<Workbook> Read(const std::string& name) {
    std::wstring why;
    auto book = ReadWorkbook(kWorkbooks / name, why);
    EXPECT_TRUE(book) << name << ": " << ToUtf8(why);
    return book;
}

}  // namespace

TEST(WorkbookReaderTest, EveryCellIsWhatTheIndependentReadersGiveAndShowsAsTheProgramShowsIt) {
    for (const char* name : {"cells.xlsx", "cells.xls", "dates1904.xlsx", "dates1904.xls"}) {
        SCOPED_TRACE(name);
        auto book = Read(name);
        if (!book) continue;
        std::vector<Expected> table = ReadTable(kWorkbooks / (std::string(name) + ".cells.tsv"));
        ASSERT_FALSE(table.empty());
        std::map<int, size_t> perSheet;
        for (const Expected& e : table) {
            SCOPED_TRACE(e.sheet + "!" + e.cell);
            int sheet = book->FindWorksheet(FromUtf8(e.sheet));
            ASSERT_GE(sheet, 0);
            std::wstring why;
            ASSERT_TRUE(book->LoadCells(sheet, why)) << ToUtf8(why);
            std::uint32_t row = 0, column = 0;
            ASSERT_TRUE(ParseCellName(FromUtf8(e.cell), row, column));
            const Cell* cell = book->Find(sheet, row, column);
            ASSERT_NE(cell, nullptr);
            ++perSheet[sheet];
            EXPECT_EQ(KindName(cell->kind), e.kind);
            switch (cell->kind) {
            // openpyxl gives dates as dates, to the microsecond: their serial
            // comes back within a ten-thousandth of a second.
            case CellKind::Number: EXPECT_NEAR(cell->number, std::stod(e.value), 1e-9); break;
            case CellKind::Boolean: EXPECT_EQ(cell->number != 0 ? "TRUE" : "FALSE", e.value); break;
            default: EXPECT_EQ(book->Text(cell->text), e.value); break;
            }
            EXPECT_EQ(ToUtf8(book->Shown(*cell)), e.shown) << "format " << ToUtf8(book->FormatCode(cell->format));
        }
        // Nothing beside them: a formula saved without its result is empty.
        for (const auto& [sheet, count] : perSheet) EXPECT_EQ(book->CellCount(sheet), count) << "sheet " << sheet;
    }
}

TEST(WorkbookReaderTest, AWorkbookKnowsTheSheetAndCellItWasSavedWith) {
    for (const char* name : {"cells.xlsx", "cells.xls"}) {
        SCOPED_TRACE(name);
        auto book = Read(name);
        if (!book) continue;
        ASSERT_EQ(book->sheets().size(), 4u);
        EXPECT_EQ(book->activeSheet(), 1);
        const Sheet& second = book->sheets()[1];
        EXPECT_EQ(second.name, L"Second");
        EXPECT_EQ(CellName(second.activeRow, second.activeColumn), L"C7");
        EXPECT_EQ(CellName(book->sheets()[0].activeRow, book->sheets()[0].activeColumn), L"A1");
        EXPECT_TRUE(book->sheets()[0].visible);
        EXPECT_FALSE(book->sheets()[2].visible);
        EXPECT_EQ(book->FindWorksheet(L"BOB'S DATA"), 3);
        EXPECT_EQ(book->FindWorksheet(L"second"), 1);
        EXPECT_EQ(book->FindWorksheet(L"Sheet1"), -1);
        EXPECT_EQ(book->maxColumns(), std::string(name).ends_with(".xls") ? 256u : 16384u);
    }
}

TEST(WorkbookReaderTest, FilesThatAreNoReadableWorkbookSaySoInAFewWords) {
    struct Case {
        const char* file;
        const char* why;   // what the reader says, in part
        bool cells;        // the trouble shows only when the cells are read
    };
    const Case cases[] = {
        {"password.xls", "it is protected by a password", false},
        {"password.xlsx", "it is protected by a password", false},
        {"entities.xlsx", "its part xl/workbook.xml declares a document type", false},
        {"notes.xlsx", "it is not a workbook: the package holds no workbook part", false},
        {"nothere.xlsx", "the file is not there", false},
        {"../drawing_r12.dxf", "it is neither an .xls nor an .xlsx workbook", false},
        {"same", "it is a folder, not a file", false},
        {"bomb.xlsx", "its part xl/worksheets/sheet1.xml inflates to more than 256 MB", true},
        {"deep.xlsx", "its part xl/worksheets/sheet1.xml nests elements deeper than 256", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        std::wstring why;
        auto book = ReadWorkbook(kWorkbooks / c.file, why);
        if (c.cells) {
            ASSERT_TRUE(book) << ToUtf8(why);
            EXPECT_FALSE(book->LoadCells(0, why));
            EXPECT_EQ(book->Find(0, 1, 1), nullptr);
        } else {
            EXPECT_FALSE(book);
        }
        EXPECT_NE(ToUtf8(why).find(c.why), std::string::npos) << ToUtf8(why);
    }
}

TEST(WorkbookReaderTest, CutAndDamagedFilesFailWithAReasonOrReadWhatIsThere) {
    for (const char* name : {"cells.xlsx", "cells.xls"}) {
        std::ifstream in(kWorkbooks / name, std::ios::binary);
        std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        ASSERT_GT(bytes.size(), 4000u);
        int failed = 0;
        for (size_t length = 0; length < bytes.size(); length += 211) {
            std::wstring why;
            auto book = ReadWorkbookBytes(std::span(bytes.data(), length), why);
            if (!book) {
                ++failed;
                EXPECT_FALSE(why.empty()) << name << " cut at " << length;
                continue;
            }
            for (int sheet = 0; sheet < static_cast<int>(book->sheets().size()); ++sheet) {
                if (book->LoadCells(sheet, why) && book->Find(sheet, 1, 1)) (void)book->Shown(*book->Find(sheet, 1, 1));
            }
        }
        EXPECT_GT(failed, 0) << name;
        // Every byte turned over in turn: never a crash, a reason when refused.
        for (size_t at = 0; at < bytes.size(); at += 37) {
            std::vector<std::uint8_t> damaged = bytes;
            damaged[at] ^= 0x5A;
            std::wstring why;
            auto book = ReadWorkbookBytes(damaged, why);
            if (!book) EXPECT_FALSE(why.empty()) << name << " damaged at " << at;
            else
                for (int sheet = 0; sheet < static_cast<int>(book->sheets().size()); ++sheet) book->LoadCells(sheet, why);
        }
    }
}

TEST(WorkbookReaderTest, ASparseUsedRangeCostsNoMoreThanItsCells) {
    // A cell in the first and in the last place of four sheets: the reader
    // keeps eight cells, not billions of places.
    for (const char* name : {"sparse.xls", "sparse.xlsx"}) {
        SCOPED_TRACE(name);
        auto book = Read(name);
        if (!book) continue;
        ASSERT_EQ(book->sheets().size(), 4u);
        std::uint32_t lastRow = book->maxRows(), lastColumn = book->maxColumns();
        for (int sheet = 0; sheet < 4; ++sheet) {
            std::wstring why;
            ASSERT_TRUE(book->LoadCells(sheet, why)) << ToUtf8(why);
            EXPECT_EQ(book->CellCount(sheet), 2u);
            ASSERT_NE(book->Find(sheet, lastRow, lastColumn), nullptr);
            EXPECT_EQ(book->Shown(*book->Find(sheet, lastRow, lastColumn)), L"last");
            EXPECT_EQ(book->Find(sheet, lastRow - 1, lastColumn), nullptr);
        }
    }
}

TEST(WorkbookReaderTest, CellNamesReadAndWriteBothWays) {
    struct Case {
        const wchar_t* text;
        bool ok;
        std::uint32_t row, column;
    };
    const Case cases[] = {
        {L"A1", true, 1, 1},          {L"$B$3", true, 3, 2},          {L"ab12", true, 12, 28},
        {L"Z9", true, 9, 26},         {L"AA10", true, 10, 27},        {L"XFD1048576", true, 1048576, 16384},
        {L"XFE1", false, 0, 0},       {L"A0", false, 0, 0},           {L"A1048577", false, 0, 0},
        {L"A1000000000000", false, 0, 0}, {L"1A", false, 0, 0},       {L"A", false, 0, 0},
        {L"", false, 0, 0},           {L"A1:B2", false, 0, 0},        {L"$A$-1", false, 0, 0},
        {L"AAAA1", false, 0, 0},
    };
    for (const Case& c : cases) {
        std::uint32_t row = 0, column = 0;
        EXPECT_EQ(ParseCellName(c.text, row, column), c.ok) << ToUtf8(c.text);
        if (!c.ok) continue;
        EXPECT_EQ(row, c.row) << ToUtf8(c.text);
        EXPECT_EQ(column, c.column) << ToUtf8(c.text);
    }
    EXPECT_EQ(CellName(12, 28), L"AB12");
    EXPECT_EQ(ColumnName(702), L"ZZ");
    EXPECT_EQ(ColumnName(703), L"AAA");
    EXPECT_EQ(ColumnName(16384), L"XFD");
}
