// Reading the cell reference of TableCell codes.
#include <gtest/gtest.h>

#include "TableCellReference.h"

namespace {

TEST(TableCellReferenceTest, ColumnLettersCountLikeASpreadsheet) {
    struct Case {
        const wchar_t* letters;
        int number;
    };
    const Case cases[] = {{L"A", 1},   {L"Z", 26},  {L"AA", 27}, {L"AB", 28}, {L"AZ", 52}, {L"BA", 53},
                          {L"ZZ", 702}, {L"ab", 28}, {L"aB", 28}, {L"", 0},    {L"AAA", 0}, {L"A1", 0},
                          {L"$", 0},    {L"@", 0},   {L"[", 0}};
    for (const Case& c : cases) {
        EXPECT_EQ(ColumnNumberFromLetters(c.letters, static_cast<int>(wcslen(c.letters))), c.number) << c.letters;
    }
    EXPECT_EQ(ColumnNumberFromLetters(nullptr, 1), 0);
}

TEST(TableCellReferenceTest, ReadsHandleColumnAndRow) {
    struct Case {
        const wchar_t* text;
        unsigned long long handle;
        int row, column;
    };
    const Case cases[] = {
        {L"Table(<3A7>).$B$3", 0x3A7, 3, 2},
        {L"Table(<1F>).$A$1", 0x1F, 1, 1},
        {L"Table(<1f>).$AB$3", 0x1F, 3, 28},
        {L"  Table(<2C>).$ZZ$123456789 ", 0x2C, 123456789, 702},
        {L"Table(<FFFFFFFFFFFFFFFF>).$a$10", 0xFFFFFFFFFFFFFFFFull, 10, 1},
    };
    for (const Case& c : cases) {
        AcDbHandle handle;
        int row = -1, column = -1;
        CString why;
        ASSERT_EQ(ReadTableCellReference(c.text, handle, row, column, why), 1) << c.text << ": " << why.GetString();
        EXPECT_EQ(handle.value(), c.handle) << c.text;
        EXPECT_EQ(row, c.row) << c.text;
        EXPECT_EQ(column, c.column) << c.text;
    }
}

TEST(TableCellReferenceTest, RefusesWhatIsNoCellReferenceAndLeavesTheOutputsAlone) {
    struct Case {
        const wchar_t* text;
        const wchar_t* why;
    };
    const Case cases[] = {
        {L"", L"the code names no table cell"},
        {L"   ", L"the code names no table cell"},
        {L"table(<3A7>).$B$3", L"a cell reference begins with Table(<"},
        {L"Table(3A7).$B$3", L"a cell reference begins with Table(<"},
        {L"Table(<>).$B$3", L"the table's handle must be a hexadecimal number"},
        {L"Table(<3G7>).$B$3", L"the handle is followed by >).$ and the cell"},
        {L"Table(<12345678901234567>).$B$3", L"the table's handle must be a hexadecimal number"},
        {L"Table(<0>).$B$3", L"the table's handle must not be 0"},
        {L"Table(<3A7>)$B$3", L"the handle is followed by >).$ and the cell"},
        {L"Table(<3A7>).B3", L"the handle is followed by >).$ and the cell"},
        {L"Table(<3A7>).$$3", L"the column must be one or two letters"},
        {L"Table(<3A7>).$ABC$3", L"the column must be one or two letters"},
        {L"Table(<3A7>).$B3", L"the column letters are followed by $ and the row"},
        {L"Table(<3A7>).$B$", L"the row must be a whole number at the end of the reference"},
        {L"Table(<3A7>).$B$0", L"rows count from 1"},
        {L"Table(<3A7>).$B$-3", L"the row must be a whole number at the end of the reference"},
        {L"Table(<3A7>).$B$3x", L"the row must be a whole number at the end of the reference"},
        {L"Table(<3A7>).$B$3 $C$4", L"the row must be a whole number at the end of the reference"},
        {L"Table(<3A7>).$B$1234567890", L"the row must be a whole number at the end of the reference"},
        {L"Table(<3A7>).$B$3>%", L"the row must be a whole number at the end of the reference"},
    };
    for (const Case& c : cases) {
        AcDbHandle handle(0x99);
        int row = -7, column = -8;
        CString why;
        EXPECT_EQ(ReadTableCellReference(c.text, handle, row, column, why), 0) << c.text;
        EXPECT_STREQ(why.GetString(), c.why) << c.text;
        EXPECT_EQ(handle.value(), 0x99u) << c.text;
        EXPECT_EQ(row, -7) << c.text;
        EXPECT_EQ(column, -8) << c.text;
    }
    AcDbHandle handle;
    int row = 0, column = 0;
    CString why;
    EXPECT_EQ(ReadTableCellReference(nullptr, handle, row, column, why), 0);
}

}  // namespace
