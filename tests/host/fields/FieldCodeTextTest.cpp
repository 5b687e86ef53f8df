// Reading field code text: markers, evaluator id, arguments, the \f option,
// codes inside codes, and text that is no code.
#include <gtest/gtest.h>

#include "fields/FieldCodeText.h"

namespace {

using cadhost::ParseFieldCode;
using cadhost::ParseTextWithFields;

struct GoodCode {
    const wchar_t* text;
    const wchar_t* evaluatorId;
    const wchar_t* code;
    const wchar_t* format;
};

class GoodCodes : public ::testing::TestWithParam<GoodCode> {};

TEST_P(GoodCodes, SplitIntoIdCodeAndFormat) {
    const GoodCode& c = GetParam();
    std::wstring error;
    auto parsed = ParseFieldCode(c.text, error);
    ASSERT_TRUE(parsed) << error;
    EXPECT_EQ(parsed->evaluatorId, c.evaluatorId);
    EXPECT_EQ(parsed->code, c.code);
    EXPECT_EQ(parsed->format, c.format);
    EXPECT_TRUE(parsed->children.empty());
}

INSTANTIATE_TEST_SUITE_P(
    FieldCodeText, GoodCodes,
    ::testing::Values(
        GoodCode{L"%<\\AcArea Object(<2F1;2F5>)>%", L"AcArea", L"\\AcArea Object(<2F1;2F5>)", L""},
        GoodCode{L"%<\\AcLength Object(<2F1>) \\f \"%lu2%pr2\">%", L"AcLength", L"\\AcLength Object(<2F1>)",
                 L"%lu2%pr2"},
        GoodCode{L"%<\\AcBlockCount >%", L"AcBlockCount", L"\\AcBlockCount ", L""},
        GoodCode{L"%<\\AcBlockCount \"DOOR;WIN\" \\layer \"0;WALL\" \\op \"=\" \\tag \"TYPE\" \\value \"A\" "
                 L"\\nested \\Space(1F) \\Window(0,0,0:100,50,0) \\f \"%ps[,pcs]\">%",
                 L"AcBlockCount",
                 L"\\AcBlockCount \"DOOR;WIN\" \\layer \"0;WALL\" \\op \"=\" \\tag \"TYPE\" \\value \"A\" \\nested "
                 L"\\Space(1F) \\Window(0,0,0:100,50,0)",
                 L"%ps[,pcs]"},
        GoodCode{L"%<\\TextField C:\\data\\notes.txt>%", L"TextField", L"\\TextField C:\\data\\notes.txt", L""},
        // A path with \f in it is no option: no blank stands before it.
        GoodCode{L"%<\\TextField C:\\files\\f \"x\".txt>%", L"TextField", L"\\TextField C:\\files\\f \"x\".txt", L""},
        GoodCode{L"%<\\ExcelCell C:\\data\\book.xls:Sheet1:$B$3>%", L"ExcelCell",
                 L"\\ExcelCell C:\\data\\book.xls:Sheet1:$B$3", L""},
        GoodCode{L"%<\\ExcelCell >%", L"ExcelCell", L"\\ExcelCell ", L""},
        GoodCode{L"%<\\TableCell Table(<3A7>).$B$3>%", L"TableCell", L"\\TableCell Table(<3A7>).$B$3", L""},
        // Without markers, with blanks around, with a format that holds quotes.
        GoodCode{L"\\AcVar Date", L"AcVar", L"\\AcVar Date", L""},
        // Markers put around a code that ends in half of one read the same.
        GoodCode{L"\\AcVar a>", L"AcVar", L"\\AcVar a>", L""},
        GoodCode{L"\\AcVar 50%", L"AcVar", L"\\AcVar 50%", L""},
        GoodCode{L"  %<\\AcVar Date \\f \"M/d\">%\n", L"AcVar", L"\\AcVar Date", L"M/d"},
        GoodCode{L"%<\\AcArea Object(<1>) \\f \"%ps[\"in\",]\">%", L"AcArea", L"\\AcArea Object(<1>)",
                 L"%ps[\"in\",]"},
        GoodCode{L"%<\\AcArea Object(<1>) \\f \"\">%", L"AcArea", L"\\AcArea Object(<1>)", L""},
        GoodCode{L"%<\\aclength Object(<>)>%", L"aclength", L"\\aclength Object(<>)", L""},
        // The option is the last \f: an earlier one belongs to the arguments.
        GoodCode{L"%<\\AcVar a \\f \"x\" b \\f \"y\">%", L"AcVar", L"\\AcVar a \\f \"x\" b", L"y"}));

struct BadCode {
    const wchar_t* text;
    const wchar_t* why;
};

class BadCodes : public ::testing::TestWithParam<BadCode> {};

TEST_P(BadCodes, AreRefusedWithAReason) {
    std::wstring error;
    EXPECT_FALSE(ParseFieldCode(GetParam().text, error));
    EXPECT_NE(error.find(GetParam().why), std::wstring::npos) << error;
}

INSTANTIATE_TEST_SUITE_P(
    FieldCodeText, BadCodes,
    ::testing::Values(BadCode{L"", L"empty"}, BadCode{L"   ", L"empty"},
                      BadCode{L"%<\\AcArea Object(<1>)", L"closing >%"},
                      BadCode{L"%<\\AcArea Object(<1>)>% tail", L"follows"},
                      BadCode{L"%<AcArea Object(<1>)>%", L"backslash"},
                      BadCode{L"hello", L"backslash"},
                      BadCode{L"%<\\>%", L"no evaluator"},
                      BadCode{L"%<\\ Object>%", L"no evaluator"},
                      BadCode{L"%<\\Ac\"Area x>%", L"character"},
                      BadCode{L"%<\\AcArea Object(<1>) \\f \"%lu2>%", L"\\f option"},
                      BadCode{L"%<\\AcArea Object(<1>) \\f \"%lu2\" \\nested>%", L"\\f option"},
                      BadCode{L"%<\\AcExpr %<\\AcVar x>%", L"closing >%"},
                      BadCode{L"%<\\AcArea x \\f \"a %<\\AcVar y>% b\">%", L"inside the format"},
                      BadCode{L"%<\\_FldIdx 0>%", L"child"},
                      // Without markers, text that would end the code once they are added.
                      BadCode{L"\\AcVar a>%b", L"pair up"},
                      BadCode{L"\\AcVar a %< b", L"pair up"},
                      BadCode{L"\\AcVar %<x>% >% y", L"pair up"},
                      BadCode{L"\\AcVar %<%<x>%", L"pair up"},
                      BadCode{L"\\TextField C:\\x \\f \"a>%\"", L"pair up"}));

TEST(FieldCodeText, CodesInsideACodeBecomeChildrenWithTheirOwnOptions) {
    std::wstring error;
    auto parsed = ParseFieldCode(L"%<\\AcExpr (%<\\AcVar A \\f \"x\">% + %<\\AcVar B>%) \\f \"%lu2\">%", error);
    ASSERT_TRUE(parsed) << error;
    EXPECT_EQ(parsed->code, L"\\AcExpr (%<\\_FldIdx 0>% + %<\\_FldIdx 1>%)");
    EXPECT_EQ(parsed->format, L"%lu2");
    ASSERT_EQ(parsed->children.size(), 2u);
    EXPECT_EQ(parsed->children[0].code, L"\\AcVar A");
    EXPECT_EQ(parsed->children[0].format, L"x");
    EXPECT_EQ(parsed->children[1].evaluatorId, L"AcVar");
}

TEST(FieldCodeText, ATextHoldsAnyNumberOfCodes) {
    std::wstring error;
    auto parsed = ParseTextWithFields(L"Area: %<\\AcArea Object(<1>)>% m2, 100%< sure", error);
    ASSERT_TRUE(parsed) << error;
    EXPECT_EQ(parsed->evaluatorId, L"_text");
    EXPECT_EQ(parsed->code, L"Area: %<\\_FldIdx 0>% m2, 100%< sure");
    ASSERT_EQ(parsed->children.size(), 1u);
    EXPECT_EQ(parsed->children[0].evaluatorId, L"AcArea");

    EXPECT_FALSE(ParseTextWithFields(L"a %<\\AcArea Object(<1>) b", error));
    EXPECT_FALSE(error.empty());
}

TEST(FieldCodeText, NestingHasALimit) {
    std::wstring deep;
    for (int i = 0; i < 40; ++i) deep += L"%<\\AcExpr ";
    for (int i = 0; i < 40; ++i) deep += L">%";
    std::wstring error;
    EXPECT_FALSE(ParseFieldCode(deep, error));
    EXPECT_NE(error.find(L"too deeply"), std::wstring::npos);

    std::wstring shallow;
    for (int i = 0; i < 5; ++i) shallow += L"%<\\AcExpr ";
    for (int i = 0; i < 5; ++i) shallow += L">%";
    EXPECT_TRUE(ParseFieldCode(shallow, error)) << error;
}

TEST(FieldCodeText, ChildPlacesAreReadWhereChildrenAreSupplied) {
    std::wstring error;
    auto parsed = ParseTextWithFields(L"%<\\_FldIdx 0>% and %<\\_FldIdx 12>%", error, true);
    ASSERT_TRUE(parsed) << error;
    ASSERT_EQ(parsed->children.size(), 2u);
    EXPECT_EQ(parsed->children[0].suppliedChild, 0u);
    EXPECT_EQ(parsed->children[1].suppliedChild, 12u);
    EXPECT_FALSE(ParseTextWithFields(L"%<\\_FldIdx x>%", error, true));
    EXPECT_FALSE(ParseFieldCode(L" %<\\_FldIdx 0>%", error, true));  // a place alone is no field
    EXPECT_NE(error.find(L"no field code of its own"), std::wstring::npos);
    auto inside = ParseFieldCode(L"%<\\AcExpr (%<\\_FldIdx 0>%)>%", error, true);
    ASSERT_TRUE(inside) << error;
    EXPECT_EQ(inside->children[0].suppliedChild, 0u);

    auto place = cadhost::ChildPlaceAt(L"ab%<\\_FldIdx 7>%", 2);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->first, 7u);
    EXPECT_EQ(place->second, 14u);
    EXPECT_FALSE(cadhost::ChildPlaceAt(L"%<\\_FldIdx 7", 0));
    EXPECT_FALSE(cadhost::ChildPlaceAt(L"%<\\_FldIdx >%", 0));
}

}  // namespace
