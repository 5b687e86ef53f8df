// The .xls record reader against libfreexl, read over the same files. The
// host reads .xls records itself because libfreexl hands out neither a
// cell's number format nor the selection a sheet was saved with, and folds
// what it does give: a date comes as text cut to the second, a boolean and
// an error as a whole number, a formula's text, error or boolean result not
// at all. Wherever libfreexl does give a value, the two readers must agree.
#include <freexl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <set>

#include "core/Utf8.h"
#include "spreadsheet/Workbook.h"

using namespace cadhost;
using namespace cadhost::spreadsheet;

namespace {

const std::filesystem::path kWorkbooks = std::filesystem::path(QM_SOURCE_DIR) / "tests/fixtures/workbooks";

// A handle of libfreexl, closed when it goes.
class Freexl {
public:
    explicit Freexl(const std::filesystem::path& path) { m_result = freexl_open(path.c_str(), &m_handle); }
    ~Freexl() {
        if (m_result == FREEXL_OK) freexl_close(m_handle);
    }
    Freexl(const Freexl&) = delete;
    Freexl& operator=(const Freexl&) = delete;
    bool ok() const { return m_result == FREEXL_OK; }
    int result() const { return m_result; }
    const void* handle() const { return m_handle; }
    unsigned int Info(unsigned short what) const {
        unsigned int value = 0;
        EXPECT_EQ(freexl_get_info(m_handle, what, &value), FREEXL_OK) << what;
        return value;
    }

private:
    const void* m_handle = nullptr;
    int m_result = FREEXL_OK;
};

// Days from the calendar's day 0 to a civil date (the 1900 calendar counts
// its phantom 29 February 1900, so its day 0 is 30 December 1899 from March
// 1900 on; every fixture date lies after it).
long DaysFrom(int year, int month, int day, bool date1904) {
    // Days since 1 January 1970 (Howard Hinnant's algorithm).
    year -= month <= 2;
    const long era = (year >= 0 ? year : year - 399) / 400;
    const long yoe = year - era * 400;
    const long doy = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    const long unix = era * 146097 + doe - 719468;
    return unix + (date1904 ? 24107 : 25569);
}

// The serial that a date text of libfreexl stands for ("2024-03-05",
// "2024-03-05 14:30:00" or "18:00:00"); NAN when the text is none of them.
double SerialOf(const char* text, int type, bool date1904) {
    int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0;
    switch (type) {
    case FREEXL_CELL_DATE:
        if (std::sscanf(text, "%d-%d-%d", &y, &mo, &d) != 3) return NAN;
        return static_cast<double>(DaysFrom(y, mo, d, date1904));
    case FREEXL_CELL_DATETIME:
        if (std::sscanf(text, "%d-%d-%d %d:%d:%d", &y, &mo, &d, &h, &mi, &s) != 6) return NAN;
        return static_cast<double>(DaysFrom(y, mo, d, date1904)) + (h * 3600 + mi * 60 + s) / 86400.0;
    case FREEXL_CELL_TIME:
        if (std::sscanf(text, "%d:%d:%d", &h, &mi, &s) != 3) return NAN;
        return (h * 3600 + mi * 60 + s) / 86400.0;
    default: return NAN;
    }
}

std::string Where(const std::wstring& sheet, unsigned row, unsigned column) {
    return ToUtf8(sheet) + "!" + ToUtf8(CellName(row + 1, column + 1));
}

}  // namespace

TEST(XlsAgainstFreexlTest, EveryCellLibfreexlGivesIsTheCellTheRecordReaderGives) {
    struct Case {
        const char* file;
        size_t given;                    // cells libfreexl gives: the walk cannot pass empty
        std::set<std::string> onlyOurs;  // formula results libfreexl leaves out
    };
    // (sparse.xls is left out: libfreexl takes a place for every cell of the
    // used range, a quarter of a gigabyte for its eight cells.)
    const Case cases[] = {
        {"cells.xls", 36, {"Data!A6", "Data!B6", "Data!C6", "Data!D6"}},
        {"dates1904.xls", 2, {}},
        {"mixed.xls", 3800, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        std::wstring why;
        auto book = ReadWorkbook(kWorkbooks / c.file, why);
        ASSERT_TRUE(book) << ToUtf8(why);
        Freexl freexl(kWorkbooks / c.file);
        ASSERT_TRUE(freexl.ok()) << freexl.result();
        EXPECT_EQ(freexl.Info(FREEXL_BIFF_DATEMODE), book->date1904() ? 1904u : 1900u);
        ASSERT_EQ(freexl.Info(FREEXL_BIFF_SHEET_COUNT), book->sheets().size());

        size_t given = 0;
        std::set<std::string> seen;
        for (unsigned sheet = 0; sheet < book->sheets().size(); ++sheet) {
            const std::wstring& name = book->sheets()[sheet].name;
            const char* theirName = nullptr;
            ASSERT_EQ(freexl_get_worksheet_name(freexl.handle(), static_cast<unsigned short>(sheet), &theirName), FREEXL_OK);
            EXPECT_EQ(theirName, ToUtf8(name));
            ASSERT_TRUE(book->LoadCells(static_cast<int>(sheet), why)) << ToUtf8(why);
            ASSERT_EQ(freexl_select_active_worksheet(freexl.handle(), static_cast<unsigned short>(sheet)), FREEXL_OK);
            unsigned int rows = 0;
            unsigned short columns = 0;
            ASSERT_EQ(freexl_worksheet_dimensions(freexl.handle(), &rows, &columns), FREEXL_OK);
            for (unsigned row = 0; row < rows; ++row) {
                for (unsigned column = 0; column < columns; ++column) {
                    FreeXL_CellValue value;
                    ASSERT_EQ(freexl_get_cell_value(freexl.handle(), row, static_cast<unsigned short>(column), &value), FREEXL_OK);
                    if (value.type == FREEXL_CELL_NULL) continue;
                    const std::string where = Where(name, row, column);
                    SCOPED_TRACE(where);
                    ++given;
                    seen.insert(where);
                    const Cell* cell = book->Find(static_cast<int>(sheet), row + 1, column + 1);
                    ASSERT_NE(cell, nullptr);
                    switch (value.type) {
                    case FREEXL_CELL_INT:
                        // A boolean's or an error's record reads as a whole
                        // number in libfreexl.
                        if (cell->kind == CellKind::Error) break;
                        EXPECT_TRUE(cell->kind == CellKind::Number || cell->kind == CellKind::Boolean);
                        EXPECT_EQ(cell->number, value.value.int_value);
                        break;
                    case FREEXL_CELL_DOUBLE:
                        EXPECT_EQ(cell->kind, CellKind::Number);
                        EXPECT_EQ(cell->number, value.value.double_value);
                        break;
                    case FREEXL_CELL_TEXT:
                    case FREEXL_CELL_SST_TEXT:
                        EXPECT_EQ(cell->kind, CellKind::Text);
                        EXPECT_EQ(book->Text(cell->text), value.value.text_value);
                        break;
                    default: {
                        EXPECT_EQ(cell->kind, CellKind::Number);
                        double serial = SerialOf(value.value.text_value, value.type, book->date1904());
                        ASSERT_FALSE(std::isnan(serial)) << value.value.text_value;
                        // A date is the day, a time the part of the day (a
                        // time of more than a day loses its days), both cut
                        // to the second.
                        double ours = cell->number;
                        if (value.type == FREEXL_CELL_DATE) ours = std::floor(ours);
                        if (value.type == FREEXL_CELL_TIME) ours -= std::floor(ours);
                        EXPECT_NEAR(ours, serial, 1.0 / 86400) << value.value.text_value << " against " << cell->number;
                        break;
                    }
                    }
                }
            }
            // What the record reader has beside them.
            book->ForEachCell(static_cast<int>(sheet), [&](std::uint32_t row, std::uint32_t column, const Cell&) {
                std::string where = Where(name, row - 1, column - 1);
                if (!seen.count(where)) {
                    EXPECT_TRUE(c.onlyOurs.count(where)) << where << " is not in libfreexl's cells";
                }
            });
        }
        EXPECT_EQ(given, c.given);
        for (const std::string& where : c.onlyOurs) EXPECT_FALSE(seen.count(where)) << where;
    }
}

TEST(XlsAgainstFreexlTest, BothReadersTellAWorkbookSavedWithAPassword) {
    Freexl freexl(kWorkbooks / "password.xls");
    ASSERT_TRUE(freexl.ok()) << freexl.result();
    EXPECT_EQ(freexl.Info(FREEXL_BIFF_PASSWORD), static_cast<unsigned>(FREEXL_BIFF_OBFUSCATED));
    std::wstring why;
    EXPECT_FALSE(ReadWorkbook(kWorkbooks / "password.xls", why));
    EXPECT_NE(why.find(L"protected by a password"), std::wstring::npos) << ToUtf8(why);

    Freexl plain(kWorkbooks / "cells.xls");
    ASSERT_TRUE(plain.ok());
    EXPECT_EQ(plain.Info(FREEXL_BIFF_PASSWORD), static_cast<unsigned>(FREEXL_BIFF_PLAIN));
}
