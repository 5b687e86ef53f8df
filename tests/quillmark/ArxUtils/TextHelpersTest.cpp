#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ArxUtils/ArxUtils.h"

namespace {

std::vector<std::wstring> Items(const CStringArray& array) {
    std::vector<std::wstring> items;
    for (INT_PTR i = 0; i < array.GetSize(); ++i) items.push_back(array[i].str());
    return items;
}

using Texts = std::vector<std::wstring>;

struct MatchCase {
    const wchar_t* text;
    const wchar_t* pattern;
    bool matches;
    Texts captures;
};

TEST(MatchPatternTest, FindsTheFirstPlaceAndItsCaptures) {
    const MatchCase cases[] = {
        {L"%lu2%pr3", L"%pr{[0-9]+}", true, {L"3"}},
        {L"%ps[a,b]", L"%lu{[0-9]+}", false, {}},
        {L"%lu%lu4", L"%lu{[0-9]+}", true, {L"4"}},  // %lu without a digit is no match
        {L"%lu2%ct4%qf1 SQ. FT.%pr2", L"%lu{[0-9]+}", true, {L"2"}},
        {L"%ct8[]", L"%ct8\\[{.*}\\]", true, {L""}},
        {L"%ct8[25.4]%ps[a,b]", L"%ct8\\[{.*}\\]", true, {L"25.4]%ps[a,b"}},  // .* runs to the last ]
        {L"%zs12", L"%zs{[0-9]+}", true, {L"12"}},
        {L"%pr1%pr2", L"%pr{[0-9]+}", true, {L"1"}},
        {L"%LU2", L"%lu{[0-9]+}", false, {}},  // case exact
        {L"%pr123x", L"%pr{[0-9]+}", true, {L"123"}},
        {L"x=5;", L"={.}", true, {L"5"}},
        {L"125", L"{[0-9]+}5", false, {}},  // + gives nothing back
        {L"125", L"{[0-9]*}5", true, {L"12"}},  // * gives back what the rest needs
        {L"a12b34", L"{[0-9]+}b{[0-9]+}", true, {L"12", L"34"}},
        {L"ab", L"{a{b}}", true, {L"ab", L"b"}},  // groups in the order of their opening braces
        {L"x[y]", L"\\[{.}\\]", true, {L"y"}},
        {L"abc", L"", true, {}},
        {L"", L"x*", true, {}},
        {L"", L"x", false, {}},
        // Marks without a partner stand for themselves.
        {L"{12", L"{[0-9]+", true, {}},
        {L"12}", L"[0-9]+}", true, {}},
        {L"a+b", L"+b", true, {}},
        {L"[0-9", L"[0-9", true, {}},
        {L"a\\", L"a\\", true, {}},
        {L"a[]b", L"a[]b", true, {}},
    };
    for (const MatchCase& c : cases) {
        CStringArray captures;
        captures.Add(L"left over");
        EXPECT_EQ(MatchPattern(c.text, c.pattern, captures) != FALSE, c.matches) << c.text << L" " << c.pattern;
        EXPECT_EQ(Items(captures), c.captures) << c.text << L" " << c.pattern;
    }
}

TEST(MatchPatternTest, EachCallEmptiesTheCapturesFirst) {
    CStringArray captures;
    ASSERT_TRUE(MatchPattern(L"%lu2%pr3", L"%lu{[0-9]+}", captures));
    ASSERT_TRUE(MatchPattern(L"%lu2%pr3", L"%pr{[0-9]+}", captures));
    EXPECT_EQ(Items(captures), Texts{L"3"});
    EXPECT_FALSE(MatchPattern(L"%lu2%pr3", L"%zs{[0-9]+}", captures));
    EXPECT_TRUE(captures.IsEmpty());
}

TEST(MatchPatternTest, AnEmptyFactorConvertsToZero) {
    CStringArray captures;
    ASSERT_TRUE(MatchPattern(L"%ct8[]", L"%ct8\\[{.*}\\]", captures));
    EXPECT_EQ(_wtof(captures[0]), 0.0);
    ASSERT_TRUE(MatchPattern(L"%ct8[25.4]%ps[a,b]", L"%ct8\\[{.*}\\]", captures));
    EXPECT_EQ(_wtof(captures[0]), 25.4);
}

TEST(MatchPatternTest, ManyStarsOnALongTextEndWithoutAMatch) {
    CString text(L'a', 3000);
    CStringArray captures;
    EXPECT_FALSE(MatchPattern(text, L".*.*.*.*.*.*b", captures));
    EXPECT_TRUE(MatchPattern(text + L"b", L"{.*}{.*}b", captures));
    EXPECT_EQ(captures[0].GetLength(), 3000);
    EXPECT_EQ(captures[1].GetLength(), 0);
}

Texts Tokens(const wchar_t* text, const wchar_t* delimiters) {
    Tokenizer tokenizer(text, delimiters);
    Texts tokens;
    CString token = L"stale";
    while (tokenizer.Next(token)) tokens.push_back(token.str());
    EXPECT_TRUE(token.IsEmpty());
    EXPECT_FALSE(tokenizer.Next(token));  // stays at the end
    return tokens;
}

TEST(TokenizerTest, CutsAtRunsOfDelimiters) {
    EXPECT_EQ(Tokens(L"a;;b;", L";"), (Texts{L"a", L"b"}));
    EXPECT_EQ(Tokens(L";a", L";"), (Texts{L"a"}));
    EXPECT_EQ(Tokens(L";;;", L";"), Texts{});
    EXPECT_EQ(Tokens(L"", L";"), Texts{});
    EXPECT_EQ(Tokens(L"abc", L""), (Texts{L"abc"}));
    EXPECT_EQ(Tokens(L"\\layer \"A\"", L"\\"), (Texts{L"layer \"A\""}));
    EXPECT_EQ(Tokens(L"a b,c", L", "), (Texts{L"a", L"b", L"c"}));
}

TEST(TokenizerTest, ADelimiterCountsByItsLowEightBits) {
    EXPECT_EQ(Tokens(L"x\u013By", L";"), (Texts{L"x", L"y"}));
    EXPECT_EQ(Tokens(L"x;y", L"\u013B"), (Texts{L"x", L"y"}));
    EXPECT_EQ(Tokens(L"x\u0141y", L";"), (Texts{L"x\u0141y"}));
}

TEST(CStringArrayExTest, FindSearchesFromBothEnds) {
    CStringArrayEx array;
    EXPECT_EQ(array.Find(L"A", 0), -1);
    for (const wchar_t* item : {L"X", L"A", L"Y", L"Z", L"A"}) array.Add(item);
    EXPECT_EQ(array.Find(L"A", 0), 4);
    EXPECT_EQ(array.Find(L"Y", 0), 2);
    EXPECT_EQ(array.Find(L"Q", 0), -1);
    EXPECT_EQ(array.Find(L"x", 0), -1);
    EXPECT_EQ(array.Find(L"x", 1), 0);

    CStringArrayEx other;
    for (const wchar_t* item : {L"B", L"A", L"C", L"A", L"B"}) other.Add(item);
    EXPECT_EQ(other.Find(L"A", 0), 1);
    EXPECT_EQ(other.Find(L"B", 0), 0);
    EXPECT_EQ(other.Find(L"C", 0), 2);

    CStringArrayEx one;
    one.Add(L"only");
    EXPECT_EQ(one.Find(L"only", 0), 0);
    EXPECT_EQ(one.Find(L"ONLY", 1), 0);
    EXPECT_EQ(one.Find(L"other", 0), -1);
}

TEST(CStringArrayExTest, CopiesAnotherArray) {
    CStringArray source;
    source.Add(L"0");
    source.Add(L"WALL");
    CStringArrayEx copy(source);
    source.RemoveAll();
    EXPECT_EQ(Items(copy), (Texts{L"0", L"WALL"}));
    EXPECT_EQ(copy.Find(L"WALL", 0), 1);
}

TEST(ParsePointTextTest, ReadsUpToThreeNumbers) {
    struct {
        const wchar_t* text;
        bool read;
        double x, y, z;
    } cases[] = {
        {L"( 1.5, 2 )", true, 1.5, 2.0, 9.0},
        {L" (1,2)", true, 0.0, 2.0, 9.0},  // the blank outside keeps the bracket
        {L"(1,2,3)", true, 1.0, 2.0, 3.0},
        {L"1,,3", true, 1.0, 3.0, 9.0},
        {L"1,2,3,4", true, 1.0, 2.0, 3.0},
        {L"((( 7 )))", true, 7.0, 9.0, 9.0},
        {L"abc", true, 0.0, 9.0, 9.0},
        {L"-1e3,2.5e-1", true, -1000.0, 0.25, 9.0},
        {L"", false, 9.0, 9.0, 9.0},
        {L" ( ) ", true, 0.0, 9.0, 9.0},  // the blank before keeps both brackets: one token "( )"
        {L"(,,)", false, 9.0, 9.0, 9.0},
    };
    for (const auto& c : cases) {
        double x = 9, y = 9, z = 9;
        EXPECT_EQ(ParsePointText(c.text, x, y, z), c.read) << c.text;
        EXPECT_EQ(x, c.x) << c.text;
        EXPECT_EQ(y, c.y) << c.text;
        EXPECT_EQ(z, c.z) << c.text;
    }
}

TEST(SplitTextTest, CutsAtEachSeparator) {
    struct {
        const wchar_t* text;
        const wchar_t* separator;
        bool found;
        Texts parts;
    } cases[] = {
        {L"a.b", L".", true, {L"a", L"b"}},
        {L"a.", L".", true, {L"a"}},
        {L"a..b", L".", true, {L"a", L"", L"b"}},
        {L".a", L".", true, {L"", L"a"}},
        {L"ab", L".", false, {L"ab"}},
        {L"", L".", false, {L""}},
        {L"ab", L"", false, {L"ab"}},
        // A longer separator is found whole but passed by one character.
        {L"xabyabz", L"ab", true, {L"x", L"by", L"bz"}},
    };
    for (const auto& c : cases) {
        CStringArray parts;
        parts.Add(L"left over");
        EXPECT_EQ(SplitText(c.text, c.separator, parts), c.found) << c.text;
        EXPECT_EQ(Items(parts), c.parts) << c.text;
    }
}

TEST(IsNearlyEqualTest, AllowsAMillionth) {
    EXPECT_TRUE(IsNearlyEqual(1.0000005, 1.0));
    EXPECT_TRUE(IsNearlyEqual(1.0, 1.0000005));
    EXPECT_FALSE(IsNearlyEqual(1.000002, 1.0));
    EXPECT_FALSE(IsNearlyEqual(-1.0, 1.0));
    EXPECT_TRUE(IsNearlyEqual(0.0, -0.0));
}

}  // namespace
