#include <adslib.h>
#include <acutads.h>
#include <dbapserv.h>
#include <dbmain.h>

#include <cmath>
#include <limits>
#include <string>

#include "support/TestHost.h"

namespace {

class RealToStringTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    void SetDimzin(int value) {
        resbuf rb{};
        rb.restype = RTSHORT;
        rb.resval.rint = static_cast<short>(value);
        ASSERT_EQ(acedSetVar(L"DIMZIN", &rb), RTNORM);
    }

    std::wstring RToS(double value, int units, int precision) {
        ACHAR text[ACDB_RTOS_TEXT_MAX];
        EXPECT_EQ(acdbRToS(value, units, precision, text), RTNORM) << value << " " << units << " " << precision;
        return text;
    }
};

struct Case {
    double value;
    int units, precision, dimzin;
    const wchar_t* expected;
};

void PrintTo(const Case& c, std::ostream* os) {
    *os << c.value << " units " << c.units << " precision " << c.precision << " DIMZIN " << c.dimzin;
}

class RealToStringTable : public RealToStringTest, public ::testing::WithParamInterface<Case> {};

TEST_P(RealToStringTable, WritesTheNotation) {
    const Case& c = GetParam();
    SetDimzin(c.dimzin);
    EXPECT_EQ(RToS(c.value, c.units, c.precision), c.expected);
}

// The notations of the five units on the platform's own examples.
INSTANTIATE_TEST_SUITE_P(PublishedExamples, RealToStringTable,
                         ::testing::Values(Case{15.5, 1, 4, 0, L"1.5500E+01"}, Case{15.5, 2, 4, 0, L"15.5000"},
                                           Case{15.5, 3, 4, 0, L"1'-3.5000\""}, Case{15.5, 4, 4, 0, L"1'-3 1/2\""},
                                           Case{15.5, 5, 4, 0, L"15 1/2"}, Case{17.5, 1, 4, 0, L"1.7500E+01"},
                                           Case{17.5, 2, 2, 0, L"17.50"}, Case{17.5, 3, 2, 0, L"1'-5.50\""},
                                           Case{17.5, 4, 2, 0, L"1'-5 1/2\""}, Case{17.5, 5, 2, 0, L"17 1/2"}));

// Precisions 0 to 8 of every unit on a value that no precision writes exactly.
INSTANTIATE_TEST_SUITE_P(
    Precisions, RealToStringTable,
    ::testing::Values(
        Case{3141.5926535897932, 1, 0, 0, L"3E+03"}, Case{3141.5926535897932, 1, 1, 0, L"3.1E+03"},
        Case{3141.5926535897932, 1, 2, 0, L"3.14E+03"}, Case{3141.5926535897932, 1, 3, 0, L"3.142E+03"},
        Case{3141.5926535897932, 1, 4, 0, L"3.1416E+03"}, Case{3141.5926535897932, 1, 5, 0, L"3.14159E+03"},
        Case{3141.5926535897932, 1, 6, 0, L"3.141593E+03"}, Case{3141.5926535897932, 1, 7, 0, L"3.1415927E+03"},
        Case{3141.5926535897932, 1, 8, 0, L"3.14159265E+03"},
        Case{3.1415926535897932, 2, 0, 0, L"3"}, Case{3.1415926535897932, 2, 1, 0, L"3.1"},
        Case{3.1415926535897932, 2, 2, 0, L"3.14"}, Case{3.1415926535897932, 2, 3, 0, L"3.142"},
        Case{3.1415926535897932, 2, 4, 0, L"3.1416"}, Case{3.1415926535897932, 2, 5, 0, L"3.14159"},
        Case{3.1415926535897932, 2, 6, 0, L"3.141593"}, Case{3.1415926535897932, 2, 7, 0, L"3.1415927"},
        Case{3.1415926535897932, 2, 8, 0, L"3.14159265"},
        Case{100.0 / 3, 3, 0, 0, L"2'-9\""}, Case{100.0 / 3, 3, 1, 0, L"2'-9.3\""},
        Case{100.0 / 3, 3, 2, 0, L"2'-9.33\""}, Case{100.0 / 3, 3, 3, 0, L"2'-9.333\""},
        Case{100.0 / 3, 3, 4, 0, L"2'-9.3333\""}, Case{100.0 / 3, 3, 5, 0, L"2'-9.33333\""},
        Case{100.0 / 3, 3, 6, 0, L"2'-9.333333\""}, Case{100.0 / 3, 3, 7, 0, L"2'-9.3333333\""},
        Case{100.0 / 3, 3, 8, 0, L"2'-9.33333333\""},
        Case{100.0 / 3, 4, 0, 0, L"2'-9\""}, Case{100.0 / 3, 4, 1, 0, L"2'-9 1/2\""},
        Case{100.0 / 3, 4, 2, 0, L"2'-9 1/4\""}, Case{100.0 / 3, 4, 3, 0, L"2'-9 3/8\""},
        Case{100.0 / 3, 4, 4, 0, L"2'-9 5/16\""}, Case{100.0 / 3, 4, 5, 0, L"2'-9 11/32\""},
        Case{100.0 / 3, 4, 6, 0, L"2'-9 21/64\""}, Case{100.0 / 3, 4, 7, 0, L"2'-9 43/128\""},
        Case{100.0 / 3, 4, 8, 0, L"2'-9 85/256\""},
        Case{100.0 / 3, 5, 0, 0, L"33"}, Case{100.0 / 3, 5, 1, 0, L"33 1/2"}, Case{100.0 / 3, 5, 2, 0, L"33 1/4"},
        Case{100.0 / 3, 5, 3, 0, L"33 3/8"}, Case{100.0 / 3, 5, 4, 0, L"33 5/16"},
        Case{100.0 / 3, 5, 5, 0, L"33 11/32"}, Case{100.0 / 3, 5, 6, 0, L"33 21/64"},
        Case{100.0 / 3, 5, 7, 0, L"33 43/128"}, Case{100.0 / 3, 5, 8, 0, L"33 85/256"}));

// DIMZIN 0 to 3 choose which zero feet and zero inches show.
INSTANTIATE_TEST_SUITE_P(
    FeetAndInches, RealToStringTable,
    ::testing::Values(
        Case{6.0, 4, 2, 0, L"6\""}, Case{12.0, 4, 2, 0, L"1'"}, Case{0.0, 4, 2, 0, L"0\""},
        Case{18.5, 4, 2, 0, L"1'-6 1/2\""}, Case{0.5, 4, 2, 0, L"1/2\""},
        Case{6.0, 4, 2, 1, L"0'-6\""}, Case{12.0, 4, 2, 1, L"1'-0\""}, Case{0.0, 4, 2, 1, L"0'-0\""},
        Case{18.5, 4, 2, 1, L"1'-6 1/2\""}, Case{0.5, 4, 2, 1, L"0'-0 1/2\""},
        Case{6.0, 4, 2, 2, L"0'-6\""}, Case{12.0, 4, 2, 2, L"1'"}, Case{0.0, 4, 2, 2, L"0'"},
        Case{12.5, 4, 2, 2, L"1'-0 1/2\""}, Case{0.5, 4, 2, 2, L"0'-0 1/2\""},
        Case{6.0, 4, 2, 3, L"6\""}, Case{12.0, 4, 2, 3, L"1'-0\""}, Case{0.0, 4, 2, 3, L"0\""},
        Case{18.5, 4, 2, 3, L"1'-6 1/2\""}, Case{0.5, 4, 2, 3, L"1/2\""},
        Case{6.0, 3, 2, 0, L"6.00\""}, Case{12.0, 3, 2, 0, L"1'"}, Case{0.0, 3, 2, 0, L"0.00\""},
        Case{6.0, 3, 2, 1, L"0'-6.00\""}, Case{12.0, 3, 2, 1, L"1'-0.00\""}, Case{0.0, 3, 2, 1, L"0'-0.00\""},
        Case{6.0, 3, 2, 2, L"0'-6.00\""}, Case{12.0, 3, 2, 2, L"1'"}, Case{0.0, 3, 2, 2, L"0'"},
        Case{6.0, 3, 2, 3, L"6.00\""}, Case{12.0, 3, 2, 3, L"1'-0.00\""}, Case{0.0, 3, 2, 3, L"0.00\""},
        // Decimal, scientific and fractional numbers have no feet.
        Case{15.5, 2, 4, 1, L"15.5000"}, Case{15.5, 2, 4, 3, L"15.5000"}, Case{15.5, 5, 4, 1, L"15 1/2"},
        Case{0.5, 5, 1, 0, L"1/2"}, Case{0.5, 5, 1, 1, L"1/2"}, Case{15.5, 1, 4, 1, L"1.5500E+01"}));

// DIMZIN 4 and 8 leave out leading and trailing zeros of decimals.
INSTANTIATE_TEST_SUITE_P(
    DecimalZeros, RealToStringTable,
    ::testing::Values(Case{0.5, 2, 4, 4, L".5000"}, Case{12.5, 2, 4, 8, L"12.5"}, Case{0.5, 2, 4, 12, L".5"},
                      Case{0.5, 2, 4, 0, L"0.5000"}, Case{12.0, 2, 4, 8, L"12"}, Case{0.0, 2, 4, 8, L"0"},
                      Case{0.0, 2, 4, 12, L"0"}, Case{12.5, 2, 4, 4, L"12.5000"}, Case{120.0, 2, 0, 8, L"120"},
                      Case{15.5, 1, 4, 8, L"1.55E+01"}, Case{10.0, 1, 4, 8, L"1E+01"},
                      Case{17.5, 3, 4, 8, L"1'-5.5\""}, Case{12.0, 3, 4, 9, L"1'-0\""}, Case{6.0, 3, 4, 8, L"6\""},
                      Case{0.5, 3, 2, 4, L".50\""}, Case{0.5, 3, 2, 12, L".5\""}, Case{0.5, 4, 2, 12, L"1/2\""}));

// Rounding: halves away from zero, carries into the next foot, inch, whole
// or power of ten, and no sign on a value that rounds to zero.
INSTANTIATE_TEST_SUITE_P(
    Rounding, RealToStringTable,
    ::testing::Values(Case{2.5, 2, 0, 0, L"3"}, Case{-2.5, 2, 0, 0, L"-3"}, Case{0.125, 2, 2, 0, L"0.13"},
                      Case{9.9999, 2, 2, 0, L"10.00"}, Case{9.9999, 1, 2, 0, L"1.00E+01"},
                      Case{11.999, 4, 2, 1, L"1'-0\""}, Case{11.9999, 3, 2, 1, L"1'-0.00\""},
                      Case{23.999, 4, 2, 0, L"2'"}, Case{0.999, 5, 2, 0, L"1"}, Case{0.75, 5, 1, 0, L"1"},
                      Case{-0.00001, 2, 4, 0, L"0.0000"}, Case{-0.1, 4, 0, 1, L"0'-0\""},
                      Case{-15.5, 4, 4, 0, L"-1'-3 1/2\""}, Case{-15.5, 1, 4, 0, L"-1.5500E+01"},
                      Case{-15.5, 5, 4, 0, L"-15 1/2"}, Case{1e20, 2, 2, 0, L"100000000000000000000.00"},
                      Case{1.5e-10, 1, 2, 0, L"1.50E-10"}, Case{1e100, 1, 1, 0, L"1.0E+100"},
                      Case{0.0, 1, 4, 0, L"0.0000E+00"}, Case{1e-300, 2, 8, 0, L"0.00000000"}));

// Every DIMZIN value 0 to 15: the two low bits pick the feet and inches
// shown, 4 and 8 the decimal zeros, each independent of the others.
TEST_F(RealToStringTest, EveryDimzinValue) {
    const wchar_t* engineering[16] = {L"6.50\"",   L"0'-6.50\"", L"0'-6.50\"", L"6.50\"", L"6.50\"",  L"0'-6.50\"",
                                      L"0'-6.50\"", L"6.50\"",   L"6.5\"",     L"0'-6.5\"", L"0'-6.5\"", L"6.5\"",
                                      L"6.5\"",     L"0'-6.5\"", L"0'-6.5\"",  L"6.5\""};
    const wchar_t* decimal[4] = {L"0.50", L".50", L"0.5", L".5"};  // by DIMZIN / 4
    const wchar_t* architectural[4] = {L"1'", L"1'-0\"", L"1'", L"1'-0\""};  // by DIMZIN % 4
    for (int dimzin = 0; dimzin <= 15; ++dimzin) {
        SetDimzin(dimzin);
        EXPECT_EQ(RToS(6.5, 3, 2), engineering[dimzin]) << dimzin;
        EXPECT_EQ(RToS(0.5, 2, 2), decimal[dimzin / 4]) << dimzin;
        EXPECT_EQ(RToS(12.0, 4, 2), architectural[dimzin % 4]) << dimzin;
    }
}

// The precision entries of the Objects Area page: zero in each notation with
// DIMZIN 1, for every precision 0 to 8 (architectural and fractional use the
// decimal ones there).
TEST_F(RealToStringTest, AreaPagePrecisionEntriesShowZeroInEachNotation) {
    SetDimzin(1);
    const wchar_t* scientific[] = {L"0E+00", L"0.0E+00", L"0.00E+00", L"0.000E+00", L"0.0000E+00",
                                   L"0.00000E+00", L"0.000000E+00", L"0.0000000E+00", L"0.00000000E+00"};
    const wchar_t* decimal[] = {L"0", L"0.0", L"0.00", L"0.000", L"0.0000",
                                L"0.00000", L"0.000000", L"0.0000000", L"0.00000000"};
    const wchar_t* engineering[] = {L"0'-0\"", L"0'-0.0\"", L"0'-0.00\"", L"0'-0.000\"", L"0'-0.0000\"",
                                    L"0'-0.00000\"", L"0'-0.000000\"", L"0'-0.0000000\"", L"0'-0.00000000\""};
    for (int i = 0; i <= 8; ++i) {
        EXPECT_EQ(RToS(0.0, 1, i), scientific[i]) << i;
        EXPECT_EQ(RToS(0.0, 2, i), decimal[i]) << i;
        EXPECT_EQ(RToS(0.0, 3, i), engineering[i]) << i;
    }
}

// The precision entries of the Objects Length page for architectural and
// fractional units: zero at precision 0, then the fraction 1/2^i that each
// precision stands for.
TEST_F(RealToStringTest, LengthPagePrecisionEntriesShowTheSmallestFraction) {
    SetDimzin(1);
    const wchar_t* architectural[] = {L"0'-0\"", L"0'-0 1/2\"", L"0'-0 1/4\"", L"0'-0 1/8\"", L"0'-0 1/16\"",
                                      L"0'-0 1/32\"", L"0'-0 1/64\"", L"0'-0 1/128\"", L"0'-0 1/256\""};
    const wchar_t* fractional[] = {L"0", L"1/2", L"1/4", L"1/8", L"1/16", L"1/32", L"1/64", L"1/128", L"1/256"};
    for (int i = 0; i <= 8; ++i) {
        double value = i == 0 ? 0.0 : 1.0 / std::ldexp(1.0, i);
        EXPECT_EQ(RToS(value, 4, i), architectural[i]) << i;
        EXPECT_EQ(RToS(value, 5, i), fractional[i]) << i;
    }
}

TEST_F(RealToStringTest, MinusOneTakesTheDrawingsUnitsAndPrecision) {
    ASSERT_EQ(db()->setLunits(4), Acad::eOk);
    ASSERT_EQ(db()->setLuprec(1), Acad::eOk);
    EXPECT_EQ(RToS(15.5, -1, -1), L"1'-3 1/2\"");
    EXPECT_EQ(RToS(15.5, 2, -1), L"15.5");
    EXPECT_EQ(RToS(15.25, -1, 2), L"1'-3 1/4\"");
}

TEST_F(RealToStringTest, PrecisionAboveEightCountsAsEight) {
    EXPECT_EQ(RToS(1.0 / 3, 2, 12), L"0.33333333");
    EXPECT_EQ(RToS(1.0 / 3, 5, 40), L"85/256");
}

TEST_F(RealToStringTest, RefusesWhatItCannotWrite) {
    ACHAR text[ACDB_RTOS_TEXT_MAX] = L"old";
    EXPECT_EQ(acdbRToS(1.0, 0, 2, text), RTERROR);
    EXPECT_STREQ(text, L"");
    wcscpy(text, L"old");
    EXPECT_EQ(acdbRToS(1.0, 6, 2, text), RTERROR);
    EXPECT_STREQ(text, L"");
    EXPECT_EQ(acdbRToS(1.0, 2, -2, text), RTERROR);
    EXPECT_EQ(acdbRToS(std::numeric_limits<double>::quiet_NaN(), 2, 2, text), RTERROR);
    EXPECT_STREQ(text, L"");
    EXPECT_EQ(acdbRToS(std::numeric_limits<double>::infinity(), 4, 2, text), RTERROR);
    EXPECT_EQ(acdbRToS(1.0, 2, 2, nullptr), RTERROR);
}

TEST_F(RealToStringTest, ATextLongerThanTheBufferIsRefusedWithoutWritingPastIt) {
    ACHAR text[13];
    text[12] = L'#';
    EXPECT_EQ(acdbRToS(123456.0, 2, 4, text, 12), RTNORM);  // eleven characters and the end zero
    EXPECT_STREQ(text, L"123456.0000");
    EXPECT_EQ(acdbRToS(1234567.0, 2, 4, text, 12), RTERROR);
    EXPECT_STREQ(text, L"");
    EXPECT_EQ(text[12], L'#');
    ACHAR big[ACDB_RTOS_TEXT_MAX];
    EXPECT_EQ(acdbRToS(1e300, 2, 8, big), RTERROR);  // 301 digits do not fit
    EXPECT_EQ(acdbRToS(1e300, 1, 8, big), RTNORM);
    EXPECT_STREQ(big, L"1.00000000E+300");
}

}  // namespace
