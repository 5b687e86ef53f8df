// Tables: cells, their texts with and without formatting codes, and
// finding the cell under a point.
#include <adslib.h>
#include <dbtable.h>

#include <cmath>

#include <gtest/gtest.h>

#include "db/MTextFormat.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// Three rows of heights 1, 2, 3 and 30 columns of width 2, below (10,20).
std::unique_ptr<AcDbTable> MakeTable() {
    auto table = std::make_unique<AcDbTable>();
    EXPECT_EQ(table->setSize(3, 30), Acad::eOk);
    for (int r = 0; r < 3; ++r) table->setRowHeight(r, r + 1.0);
    for (int c = 0; c < 30; ++c) table->setColumnWidth(c, 2.0);
    table->setPosition(AcGePoint3d(10, 20, 0));
    return table;
}

TEST(TableTest, CellTextsWithAndWithoutFormatting) {
    auto table = MakeTable();
    ASSERT_EQ(table->setTextString(1, 27, L"{\\fArial|b1;Total} \\P\\C1;42"), Acad::eOk);
    AcString text;
    ASSERT_EQ(table->textString(1, 27, 0, text), Acad::eOk);
    EXPECT_EQ(text.str(), L"{\\fArial|b1;Total} \\P\\C1;42");
    ASSERT_EQ(table->textString(1, 27, AcDbTable::kIgnoreMtextFormat, text), Acad::eOk);
    EXPECT_EQ(text.str(), L"Total \n42");
    ACHAR* raw = table->textString(1, 27);
    ASSERT_NE(raw, nullptr);
    EXPECT_STREQ(raw, L"{\\fArial|b1;Total} \\P\\C1;42");
    acutDelBuffer(raw);
    EXPECT_EQ(table->textString(3, 0), nullptr);
    EXPECT_EQ(table->textString(0, 30, 8, text), Acad::eInvalidIndex);
    EXPECT_EQ(table->setTextString(-1, 0, L"x"), Acad::eInvalidIndex);
}

TEST(TableTest, HitTestFindsTheCellUnderThePoint) {
    auto table = MakeTable();
    struct Case {
        double x, y;
        bool hit;
        int row, column;
    };
    const Case cases[] = {
        {10.5, 19.5, true, 0, 0},    // first cell
        {10.0, 20.0, true, 0, 0},    // its corner
        {65.5, 16.5, true, 2, 27},   // the 28th column, third row
        {69.9, 14.1, true, 2, 29},   // the last cell
        {12.0, 19.5, true, 0, 1},    // a border belongs to the next cell
        {11.0, 19.0, true, 1, 0},
        {9.9, 19.5, false, 0, 0},    // left of the table
        {70.1, 19.5, false, 0, 0},   // right of it
        {11.0, 20.1, false, 0, 0},   // above it
        {11.0, 13.9, false, 0, 0},   // below it
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.x << "," << c.y);
        int row = -1, column = -1;
        bool hit = table->hitTest(AcGePoint3d(c.x, c.y, 0), AcGeVector3d::kZAxis, 0, 0, row, column);
        EXPECT_EQ(hit, c.hit);
        if (c.hit) {
            EXPECT_EQ(row, c.row);
            EXPECT_EQ(column, c.column);
        }
    }
    // An aperture reaches a little beyond the border.
    int row, column;
    EXPECT_TRUE(table->hitTest(AcGePoint3d(9.9, 19.5, 0), AcGeVector3d::kZAxis, 0.2, 0.2, row, column));
    EXPECT_EQ(column, 0);
}

TEST(TableTest, HitTestFollowsDirectionAndView) {
    auto table = MakeTable();
    // Turned a quarter: columns run up the Y axis and rows, below the
    // direction, run along +X.
    table->setDirection(AcGeVector3d(0, 1, 0));
    int row, column;
    ASSERT_TRUE(table->hitTest(AcGePoint3d(10.5, 20.5, 0), AcGeVector3d::kZAxis, 0, 0, row, column));
    EXPECT_EQ(row, 0);
    EXPECT_EQ(column, 0);
    ASSERT_TRUE(table->hitTest(AcGePoint3d(12.5, 23.0, 0), AcGeVector3d::kZAxis, 0, 0, row, column));
    EXPECT_EQ(row, 1);
    EXPECT_EQ(column, 1);
    // A point above the plane is carried along the view onto it: from
    // (10.5, 23, 5) along (0,1,1) it lands on (10.5, 18), in the second row;
    // straight down it would miss the table.
    table->setDirection(AcGeVector3d::kXAxis);
    ASSERT_TRUE(table->hitTest(AcGePoint3d(10.5, 23, 5), AcGeVector3d(0, 1, 1), 0, 0, row, column));
    EXPECT_EQ(row, 1);
    EXPECT_EQ(column, 0);
    EXPECT_FALSE(table->hitTest(AcGePoint3d(10.5, 23, 5), AcGeVector3d::kZAxis, 0, 0, row, column));
}

TEST(TableTest, MTextCodesAreStripped) {
    struct Case {
        const wchar_t* in;
        const wchar_t* out;
    };
    const Case cases[] = {
        {L"plain", L"plain"},
        {L"\\A1;{\\H2.5x;big}", L"big"},
        {L"a\\Pb", L"a\nb"},
        {L"\\Lunder\\l \\Oover\\o \\Kstrike\\k", L"under over strike"},
        {L"\\S1/2; and \\S3^4;", L"1/2 and 3/4"},
        {L"C:\\\\dir \\{x\\}", L"C:\\dir {x}"},
        {L"\\W0.8;\\Q15;\\T1.1;\\C3;\\c255;\\pxi-3,l3;text", L"text"},
        {L"90%%d %%p0.5 %%c10", L"90\u00B0 \u00B10.5 \u230010"},
        {L"non\\~breaking", L"non breaking"},
        {L"\\U+00E9t\\U+00E9", L"\u00E9t\u00E9"},
        {L"unknown \\J code", L"unknown \\J code"},
        {L"trailing \\", L"trailing \\"},
        {L"\\Fbroken", L""},
    };
    for (const Case& c : cases) EXPECT_EQ(cadhost::StripMTextCodes(c.in), c.out) << testing::PrintToString(c.in);
}

}  // namespace
