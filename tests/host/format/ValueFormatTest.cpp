#include <AcValue.h>
#include <adslib.h>
#include <dbapserv.h>
#include <dbmain.h>

#include <cwchar>
#include <limits>
#include <string>

#include "support/TestHost.h"

namespace {

class ValueFormatTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    void SetUnits(int lunits, int luprec) {
        ASSERT_EQ(db()->setLunits(static_cast<Adesk::Int16>(lunits)), Acad::eOk);
        ASSERT_EQ(db()->setLuprec(static_cast<Adesk::Int16>(luprec)), Acad::eOk);
    }

    static std::wstring Shown(const AcValue& value, const wchar_t* format) {
        ACHAR* text = nullptr;
        EXPECT_TRUE(value.format(format, text));
        std::wstring shown = text ? text : L"<null>";
        acutDelBuffer(text);
        return shown;
    }
};

struct Case {
    double value;
    const wchar_t* format;
    const wchar_t* expected;
};

void PrintTo(const Case& c, std::ostream* os) {
    std::wstring f = c.format;
    *os << c.value << " under \"" << std::string(f.begin(), f.end()) << "\"";
}

class RealFormatTable : public ValueFormatTest, public ::testing::WithParamInterface<Case> {};

// The drawing has LUNITS 2 and LUPREC 4 here unless a case says otherwise.
TEST_P(RealFormatTable, ShowsTheValue) {
    const Case& c = GetParam();
    EXPECT_EQ(Shown(AcFdFieldValue(c.value), c.format), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Directives, RealFormatTable,
    ::testing::Values(
        // The Objects Area page's fixed square-foot text: 28800 square inches.
        Case{28800.0, L"%lu2%ct4%qf1 SQ. FT.%pr2%ps[A=,]", L"A=200.00 SQ. FT."},
        Case{28800.0, L"%lu2%ct4%qf1 SQ. FT.", L"200.0000 SQ. FT."},
        Case{1234.5678, L"%lu2%pr2", L"1234.57"}, Case{15.5, L"%lu1%pr2", L"1.55E+01"},
        Case{15.5, L"%lu3%pr1", L"1'-3.5\""}, Case{15.5, L"%lu4%pr4", L"1'-3 1/2\""},
        Case{15.5, L"%lu5%pr2", L"15 1/2"}, Case{100.0 / 3, L"%lu4%pr3", L"2'-9 3/8\""},
        // %qf1 marks an area: feet and inches give way to decimal.
        Case{100.0, L"%lu4%qf1%pr1", L"100.0"}, Case{100.0, L"%lu3%qf1%pr1", L"100.0"},
        Case{100.0, L"%lu5%qf1%pr1", L"100"},
        // Without %zs every zero shows; its bits leave them out.
        Case{6.0, L"%lu4%pr0", L"0'-6\""}, Case{12.0, L"%lu4%pr0", L"1'-0\""},
        Case{6.0, L"%lu4%pr0%zs1", L"6\""}, Case{12.0, L"%lu4%pr0%zs2", L"1'"},
        Case{0.0, L"%lu4%pr0%zs3", L"0\""}, Case{12.0, L"%lu3%pr2%zs2", L"1'"},
        Case{0.5, L"%lu2%pr4%zs4", L".5000"}, Case{12.5, L"%lu2%pr4%zs8", L"12.5"},
        Case{0.5, L"%lu2%pr4%zs12", L".5"}, Case{0.5, L"%zs12%pr4%lu2", L".5"},
        // Factors.
        Case{10.0, L"%lu2%pr3%ct8[0.3048]", L"3.048"}, Case{4.0, L"%lu2%pr3%ps[A,B]%ct8[2.5]", L"A10.000B"},
        Case{10.0, L"%ct8[25.4]%ps[a,b]%lu2%pr1", L"a254.0b"}, Case{10.0, L"%ct8[-1]%lu2%pr0", L"-10"},
        Case{10.0, L"%ct8[ 2e1 ]%lu2%pr0", L"200"},
        // Prefix, suffix and their escapes; literal text stands behind the number.
        Case{2.0, L"%lu2%pr1%ps[, m]", L"2.0 m"}, Case{2.0, L"%lu2%pr1%ps[a\\,b,\\[m\\]]", L"a,b2.0[m]"},
        Case{2.0, L"%lu2%pr0%ps[x\\\\,y]", L"x\\2y"}, Case{2.0, L"%lu2%pr0%ps[a,b,c]", L"a,b2c"},
        Case{2.0, L"%lu2%pr0%ps[a]b,c]", L"a]b2c"}, Case{2.0, L"Area: %lu2%pr0", L"2Area: "},
        Case{2.0, L"%lu2%pr0 m%ps[<,>]", L"<2 m>"},
        // Separators by character code.
        Case{1234.5, L"%lu2%pr2%ds44", L"1234,50"}, Case{1234567.891, L"%lu2%pr2%th44", L"1,234,567.89"},
        Case{1234567.891, L"%lu2%pr2%ds44%th46", L"1.234.567,89"}, Case{123.0, L"%lu2%pr0%th44", L"123"},
        Case{-1234.0, L"%lu2%pr0%th44", L"-1,234"}, Case{0.5, L"%lu2%pr2%ds44%zs4", L",50"},
        // Drawing's units where no %lu is given; %lu6 asks for them.
        Case{15.5, L"", L"15.5000"}, Case{15.5, L"%pr1", L"15.5"}, Case{15.5, L"%lu6%pr2", L"15.50"},
        Case{15.5, L" SQ. FT.", L"15.5000 SQ. FT."}));

// Text that is no directive, or a directive cut short, shows as it stands;
// an operand out of range is dropped. Nothing reads past the end.
INSTANTIATE_TEST_SUITE_P(
    BadInput, RealFormatTable,
    ::testing::Values(Case{1.0, L"%ps[abc", L"1.0000%ps[abc"}, Case{1.0, L"%ps[abc]", L"abc1.0000"},
                      Case{1.0, L"%ps[a\\]", L"1.0000%ps[a\\]"}, Case{1.0, L"%ps[a,b\\", L"1.0000%ps[a,b\\"},
                      Case{1.0, L"%ct8[nan]%pr1", L"1.0"}, Case{1.0, L"%ct8[1e400]%pr1", L"1.0"},
                      Case{1.0, L"%ct8[]%pr1", L"1.0"}, Case{1.0, L"%ct8[2x]%pr1", L"1.0"},
                      Case{1.0, L"%ct8[2%pr1", L"1.0%ct8[2"}, Case{1.0, L"%pr999999999999999999", L"1.00000000"},
                      Case{1.0, L"%lu9%pr1", L"1.0"}, Case{1.0, L"%lu0%pr1", L"1.0"}, Case{1.0, L"%lu%pr1", L"1.0%lu"},
                      Case{1.0, L"%%", L"1.0000%%"}, Case{1.0, L"%", L"1.0000%"}, Case{1.0, L"%zs%pr0", L"1%zs"},
                      Case{1.0, L"%xy%pr0", L"1%xy"}, Case{1.0, L"%ds0%th1%pr1", L"1.0"},
                      Case{1.0, L"%ds55296%pr1", L"1.0"}, Case{1.0, L"%ct4%pr0%lu2%qf1", L"0"},
                      Case{1e300, L"%ct8[1e300]", L"####"},
                      Case{std::numeric_limits<double>::quiet_NaN(), L"%lu2", L"####"},
                      Case{std::numeric_limits<double>::infinity(), L"%ps[a,b]", L"####"}));

TEST_F(ValueFormatTest, TheDrawingsUnitsApplyWithoutAUnitsDirective) {
    SetUnits(4, 1);
    EXPECT_EQ(Shown(AcFdFieldValue(15.5), L""), L"1'-3 1/2\"");
    EXPECT_EQ(Shown(AcFdFieldValue(15.5), nullptr), L"1'-3 1/2\"");
    EXPECT_EQ(Shown(AcFdFieldValue(15.5), L"%lu6"), L"1'-3 1/2\"");
    EXPECT_EQ(Shown(AcFdFieldValue(15.5), L"%lu6%qf1"), L"15.5");
    EXPECT_EQ(Shown(AcFdFieldValue(15.5), L"%lu2"), L"15.5");
    SetUnits(5, 2);
    EXPECT_EQ(Shown(AcFdFieldValue(15.25), L"%zs8"), L"15 1/4");
    SetUnits(1, 3);
    EXPECT_EQ(Shown(AcFdFieldValue(15.5), L"%ps[~,]"), L"~1.550E+01");
}

TEST_F(ValueFormatTest, ACountStaysAWholeNumberWithoutAUnitsDirective) {
    SetUnits(4, 3);
    struct {
        Adesk::Int32 value;
        const wchar_t* format;
        const wchar_t* expected;
    } cases[] = {
        {12, L"", L"12"},          {12, L"%ps[,pcs]", L"12pcs"},      {-7, L"", L"-7"},
        {3, L"%ct8[0.5]", L"2"},   {3, L"%ct8[0.5]%pr1", L"1.5"},     {12, L"%lu2%pr2", L"12.00"},
        {1234567, L"%th44", L"1,234,567"}, {24, L"%lu4%pr0", L"2'-0\""}, {12, L"%lu6%pr0", L"1'-0\""},
    };
    for (const auto& c : cases) EXPECT_EQ(Shown(AcFdFieldValue(c.value), c.format), c.expected) << c.value;
}

TEST_F(ValueFormatTest, OtherValueKindsHaveAPlainDisplay) {
    EXPECT_EQ(Shown(AcFdFieldValue(L"a %lu2 text"), L"%lu2%pr2"), L"a %lu2 text");
    AcFdFieldValue point;
    point.set(1.5, 2.0);
    EXPECT_EQ(Shown(point, L"%lu2%pr1"), L"(1.5,2.0)");
    point.set(1.5, -2.0, 0.25);
    EXPECT_EQ(Shown(point, L""), L"(1.5000,-2.0000,0.2500)");
    AcDbObjectId model = db()->modelSpaceId();
    wchar_t expected[32];
    std::swprintf(expected, 32, L"%llX", static_cast<unsigned long long>(model.handle().value()));
    EXPECT_EQ(Shown(AcFdFieldValue(model), L"%lu2"), expected);
    EXPECT_EQ(Shown(AcFdFieldValue(AcDbObjectId()), L""), L"");
}

TEST_F(ValueFormatTest, AValueWithoutDataHasNoText) {
    AcValue empty;
    ACHAR* text = reinterpret_cast<ACHAR*>(1);
    EXPECT_FALSE(empty.format(L"%lu2", text));
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(empty.format(L"%lu2"), nullptr);
    ACHAR* made = AcFdFieldValue(2.0).format(L"%lu2%pr0");
    ASSERT_NE(made, nullptr);
    EXPECT_STREQ(made, L"2");
    acutDelBuffer(made);
}

}  // namespace

namespace {

// Copies of a text value share its text: what one copy is set to later
// never reaches the others, and a value set to its own text keeps it.
TEST(ValueText, CopiesKeepTheirTextWhateverBecomesOfTheOthers) {
    std::wstring longText(5000, L'n');
    AcValue original(longText.c_str());
    AcValue copy = original;
    AcValue movedFrom = original;
    AcValue moved = std::move(movedFrom);
    original.set(L"changed");
    const ACHAR* text = nullptr;
    ASSERT_TRUE(copy.get(text));
    EXPECT_EQ(std::wstring(text), longText);
    ASSERT_TRUE(moved.get(text));
    EXPECT_EQ(std::wstring(text), longText);
    EXPECT_TRUE(copy == moved);
    EXPECT_FALSE(copy == original);
    EXPECT_TRUE(copy == AcValue(longText.c_str()));  // equal texts, held apart

    copy.get(text);
    ASSERT_TRUE(copy.set(text));  // its own text: kept, not lost on the way
    ASSERT_TRUE(copy.get(text));
    EXPECT_EQ(std::wstring(text), longText);
    moved.set(2);
    ASSERT_TRUE(copy.get(text));
    EXPECT_EQ(std::wstring(text), longText);
    EXPECT_FALSE(moved.get(text));
}

}  // namespace
