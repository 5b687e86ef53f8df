// The text a number shows under a format code, as the spreadsheet program
// shows it: General, the built-in formats, custom codes made of their
// elements, dates and times, texts.
#include <gtest/gtest.h>

#include "spreadsheet/NumberFormat.h"

using cadhost::spreadsheet::BuiltInFormatCode;
using cadhost::spreadsheet::GeneralNumber;
using cadhost::spreadsheet::NumberFormat;

namespace {

struct Case {
    const wchar_t* code;
    double value;
    const wchar_t* shown;
};

void Check(const Case* cases, size_t count, bool date1904 = false) {
    for (size_t i = 0; i < count; ++i) {
        const Case& c = cases[i];
        EXPECT_EQ(NumberFormat(c.code).Format(c.value, date1904), c.shown) << "code " << testing::PrintToString(c.code)
                                                                           << " value " << c.value;
    }
}

}  // namespace

TEST(NumberFormatTest, GeneralShowsFifteenDigitsAndSwitchesToExponentsAtTwelve) {
    const Case cases[] = {
        {L"General", 0, L"0"},
        {L"General", 1, L"1"},
        {L"General", -1.5, L"-1.5"},
        {L"General", 0.1 + 0.2, L"0.3"},
        {L"General", 1.0 / 3, L"0.333333333333333"},
        {L"General", 2.0 / 3, L"0.666666666666667"},
        {L"General", 12345678901, L"12345678901"},
        {L"General", 123456789012, L"1.23456789012E+11"},
        {L"General", 1e11, L"1E+11"},
        {L"General", 1.2345678901234568e+17, L"1.23456789012346E+17"},
        {L"General", 0.000000001, L"0.000000001"},
        {L"General", 1e-10, L"1E-10"},
        {L"General", -2.5e-12, L"-2.5E-12"},
        {L"", 42, L"42"},
        {L"general", 3.25, L"3.25"},
    };
    Check(cases, std::size(cases));
    EXPECT_EQ(GeneralNumber(1234.5), L"1234.5");
}

TEST(NumberFormatTest, DigitPlaceholdersRoundHalfUpOnFifteenDigits) {
    const Case cases[] = {
        {L"0", 2.5, L"3"},
        {L"0", -2.5, L"-3"},
        {L"0", 0.4, L"0"},
        {L"0.00", 2.675, L"2.68"},  // held as 2.67499999999999982 in binary
        {L"0.00", 1, L"1.00"},
        {L"0.00", 1e-3, L"0.00"},
        {L"#,##0", 1234567.891, L"1,234,568"},
        {L"#,##0", 0, L"0"},
        {L"#,##0", 999.5, L"1,000"},
        {L"#,##0", -1234, L"-1,234"},
        {L"#,##0.00", 1234.5, L"1,234.50"},
        {L"#,##0.00", 0.005, L"0.01"},
        {L"#,##0.00", 1234567.125, L"1,234,567.13"},
        {L"#.##", 0.5, L".5"},
        {L"#.##", 12, L"12."},
        {L"0.0#", 1.5, L"1.5"},
        {L"0.0#", 1.456, L"1.46"},
        {L"00000", 42, L"00042"},
        {L"000-00-0000", 123456789, L"123-45-6789"},
        {L"0.0?", 1.5, L"1.5 "},
        {L"#,##0,", 1234567, L"1,235"},
        {L"0.0,,\" M\"", 12345678, L"12.3 M"},
        {L"#", 0, L""},
    };
    Check(cases, std::size(cases));
}

TEST(NumberFormatTest, PercentsAndExponents) {
    const Case cases[] = {
        {L"0%", 0.256, L"26%"},
        {L"0.00%", 0.256, L"25.60%"},
        {L"0.00%", 1, L"100.00%"},
        {L"0.0%", -0.0125, L"-1.3%"},
        {L"0.00E+00", 12345, L"1.23E+04"},
        {L"0.00E+00", 0.00012, L"1.20E-04"},
        {L"0.00E+00", 0, L"0.00E+00"},
        {L"0.00E+00", 9.999, L"1.00E+01"},
        {L"0.0E-0", 12345, L"1.2E4"},
        {L"##0.0E+0", 12345, L"12.3E+3"},
        {L"##0.0E+0", 0.00012, L"120.0E-6"},
    };
    Check(cases, std::size(cases));
}

TEST(NumberFormatTest, SectionsLiteralsAndBrackets) {
    const Case cases[] = {
        {L"$#,##0.00_);($#,##0.00)", 1234.5, L"$1,234.50 "},
        {L"$#,##0.00_);($#,##0.00)", -1234.5, L"($1,234.50)"},
        {L"#,##0 ;(#,##0)", 5, L"5 "},
        {L"#,##0 ;[Red](#,##0)", -5, L"(5)"},
        {L"0.0;-0.0;\"zero\"", 0, L"zero"},
        {L"0.0;-0.0;\"zero\"", -2, L"-2.0"},
        {L"0;;", 5, L"5"},
        {L"0;;", 0, L""},
        {L"0;;", -5, L""},
        {L"[Blue]0.00\" kg\"", 3, L"3.00 kg"},
        {L"[$\u20ac-407] #,##0.00", 12.5, L"\u20ac 12.50"},
        {L"[$-409]0.0", 1.25, L"1.3"},
        {L"\\#0", 7, L"#7"},
        {L"[>=100]\"big\";[<10]\"small\";0", 150, L"big"},
        {L"[>=100]\"big\";[<10]\"small\";0", 3, L"small"},
        {L"[>=100]\"big\";[<10]\"small\";0", 70, L"70"},
        {L"\"Total: \"General", 12.5, L"Total: 12.5"},
        {L"_(* #,##0.00_);_(* \\(#,##0.00\\);_(* \"-\"??_);_(@_)", 1234.5, L" 1,234.50 "},
        {L"_(* #,##0.00_);_(* \\(#,##0.00\\);_(* \"-\"??_);_(@_)", -1234.5, L" (1,234.50)"},
        {L"_(* #,##0.00_);_(* \\(#,##0.00\\);_(* \"-\"??_);_(@_)", 0, L" -   "},
        {L"@", 12, L"12"},
        {L"# ?/?", 1.5, L"1 1/2"},
        {L"# ?\?/??", 3.14159, L"3 14/99"},
        {L"?/8", 0.375, L"3/8"},
    };
    Check(cases, std::size(cases));
}

TEST(NumberFormatTest, DatesAndTimesCountFromThe1900Calendar) {
    const Case cases[] = {
        {L"m/d/yyyy", 45356, L"3/5/2024"},
        {L"d-mmm-yy", 45356, L"5-Mar-24"},
        {L"dd/mm/yyyy", 45356, L"05/03/2024"},
        {L"mmmm d, yyyy", 45356, L"March 5, 2024"},
        {L"dddd", 45356, L"Tuesday"},
        {L"ddd d mmm", 45356, L"Tue 5 Mar"},
        {L"mmm-yy", 45356, L"Mar-24"},
        {L"mmmmm", 45356, L"M"},
        {L"yyyy-mm-dd hh:mm:ss", 45356.5, L"2024-03-05 12:00:00"},
        {L"m/d/yyyy", 1, L"1/1/1900"},
        {L"m/d/yyyy", 59, L"2/28/1900"},
        {L"m/d/yyyy", 60, L"2/29/1900"},
        {L"m/d/yyyy", 61, L"3/1/1900"},
        {L"m/d/yyyy", 0, L"1/0/1900"},
        {L"m/d/yyyy", 2958465, L"12/31/9999"},
        {L"m/d/yyyy", 2958466, L"########"},
        {L"m/d/yyyy", -1, L"########"},
        {L"h:mm AM/PM", 0.75, L"6:00 PM"},
        {L"h:mm am/pm", 0.25, L"6:00 am"},
        {L"h:mm:ss A/P", 0.0, L"12:00:00 A"},
        {L"h:mm", 0.5 + 30.0 / 86400, L"12:00"},
        {L"h:mm:ss", 0.5 + 29.6 / 86400, L"12:00:30"},
        {L"h:mm:ss.00", 0.5 + 29.626 / 86400, L"12:00:29.63"},
        {L"h:mm", 45356.9999999, L"0:00"},
        {L"[h]:mm:ss", 1.5, L"36:00:00"},
        {L"[mm]:ss", 0.05, L"72:00"},
        {L"mm:ss", 1.0 / 1440, L"01:00"},
        {L"mmss.0", 1.25 / 1440, L"0115.0"},
    };
    Check(cases, std::size(cases));
    const Case from1904[] = {
        {L"m/d/yyyy", 0, L"1/1/1904"},
        {L"dddd", 0, L"Friday"},
        {L"m/d/yyyy", 43890, L"3/1/2024"},
    };
    Check(from1904, std::size(from1904), true);
}

TEST(NumberFormatTest, TextsTakeTheTextSection) {
    EXPECT_EQ(NumberFormat(L"@").FormatText(L"abc"), L"abc");
    EXPECT_EQ(NumberFormat(L"\"Name: \"@").FormatText(L"abc"), L"Name: abc");
    EXPECT_EQ(NumberFormat(L"0.00").FormatText(L"abc"), L"abc");
    EXPECT_EQ(NumberFormat(L"0;-0;0;\"<\"@\">\"").FormatText(L"abc"), L"<abc>");
    EXPECT_EQ(NumberFormat(L"General").FormatText(L"12"), L"12");
    EXPECT_TRUE(NumberFormat(L"d-mmm-yy").IsDateTime());
    EXPECT_TRUE(NumberFormat(L"[h]:mm").IsDateTime());
    EXPECT_FALSE(NumberFormat(L"#,##0.00").IsDateTime());
    EXPECT_FALSE(NumberFormat(L"\"day\"0").IsDateTime());
}

TEST(NumberFormatTest, BuiltInIdsNameTheirCodes) {
    struct Id {
        unsigned id;
        const wchar_t* code;
    };
    const Id ids[] = {{0, L"General"}, {1, L"0"},         {2, L"0.00"},       {3, L"#,##0"},  {4, L"#,##0.00"},
                      {9, L"0%"},      {10, L"0.00%"},    {11, L"0.00E+00"},  {14, L"m/d/yyyy"}, {22, L"m/d/yyyy h:mm"},
                      {23, L""},       {36, L""},         {37, L"#,##0 ;(#,##0)"}, {45, L"mm:ss"}, {46, L"[h]:mm:ss"},
                      {49, L"@"},      {50, L""},         {164, L""}};
    for (const Id& i : ids) EXPECT_EQ(BuiltInFormatCode(i.id), i.code) << i.id;
}

TEST(NumberFormatTest, BrokenCodesNeverFail) {
    // Unclosed quotes and brackets, stray characters: some text, no crash.
    const wchar_t* codes[] = {L"\"open", L"[Red", L"0.0E+", L"\\", L"_", L"*", L"[<]0", L";;;;;", L"?/", L"/0",
                              L"0/", L"E+0", L"[hh", L"#,##0.00_)", L"0.00%%%"};
    for (const wchar_t* code : codes) {
        NumberFormat format(code);
        (void)format.Format(-1234.5678);
        (void)format.Format(0);
        (void)format.FormatText(L"x");
    }
    EXPECT_EQ(NumberFormat(L"0.00%%").Format(0.5), L"5000.00%%");
}
