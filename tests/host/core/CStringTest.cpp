#include <afx.h>
#include <gtest/gtest.h>

#include <climits>

namespace {

CString F(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    CString text;
    text.FormatV(format, args);
    va_end(args);
    return text;
}

TEST(CStringFormat, FollowsTheFrameworksRules) {
    struct Case {
        CString got;
        const wchar_t* want;
    };
    const Case cases[] = {
        {F(L"%s|%c", L"wide", L'w'), L"wide|w"},
        {F(L"%hs|%hc|%S|%C", "narrow", 'n', "big-s", 'c'), L"narrow|n|big-s|c"},
        {F(L"%ls %ws", L"l", L"w"), L"l w"},
        {F(L"%s", static_cast<const wchar_t*>(nullptr)), L"(null)"},
        {F(L"[%5s][%-5s][%.2s]", L"ab", L"ab", L"abcdef"), L"[   ab][ab   ][ab]"},
        {F(L"%d %i %u %x %X %o", -12, 7, 3000000000u, 255, 255, 8), L"-12 7 3000000000 ff FF 10"},
        {F(L"%05d|%-5d|%+d|% d", 42, 42, 42, 42), L"00042|42   |+42| 42"},
        {F(L"%ld %lld %I64d", 123456789L, -5LL, 1LL << 40), L"123456789 -5 1099511627776"},
        {F(L"%hd %hhd", 70000, 300), L"4464 44"},
        // The platform writes at least three exponent digits.
        {F(L"%g", 1234567.25), L"1.23457e+006"},
        {F(L"%g %g %g", 0.3048, 1.0, 100000.0), L"0.3048 1 100000"},
        {F(L"%e", 0.0001), L"1.000000e-004"},
        {F(L"%E", 1e300), L"1.000000E+300"},
        {F(L"%12.3e|", 12345.678), L"  1.235e+004|"},
        {F(L"%012.3f", -3.14159), L"-0000003.142"},
        {F(L"%.2f%%", 99.5), L"99.50%"},
        {F(L"%*d|%-*d|%.*f", 4, 7, 3, 1, 2, 2.0), L"   7|1  |2.00"},
        // A directive that the format does not finish shows as it stands.
        {F(L"100%"), L"100%"},
        {F(L"%q"), L"%q"},
    };
    for (const Case& c : cases) EXPECT_STREQ(c.got, c.want);
}

TEST(CStringFormat, AppendFormatKeepsWhatWasThere) {
    CString text = L"P";
    text.AppendFormat(L"%d=+%s.pop1", 2, L"Quillmark");
    EXPECT_STREQ(text, L"P2=+Quillmark.pop1");
}

TEST(CStringPieces, CountFromZeroAndClampAtTheEnds) {
    const CString s = L"Object(<2F1;2F5>)";
    EXPECT_STREQ(s.Left(6), L"Object");
    EXPECT_STREQ(s.Left(100), s);
    EXPECT_STREQ(s.Left(-1), L"");
    EXPECT_STREQ(s.Right(2), L">)");
    EXPECT_STREQ(s.Mid(8, 3), L"2F1");
    EXPECT_STREQ(s.Mid(15), L">)");
    EXPECT_STREQ(s.Mid(40), L"");
    EXPECT_EQ(s.Find(L';'), 11);
    EXPECT_EQ(s.Find(L"2F", 9), 12);
    EXPECT_EQ(s.Find(L'x'), -1);
    EXPECT_EQ(s.Find(L'O', 40), -1);
    EXPECT_EQ(s.ReverseFind(L'2'), 12);
    EXPECT_EQ(s.FindOneOf(L"<>"), 7);
    EXPECT_EQ(CString(L"abc").Find(L"", 3), 3);
}

TEST(CStringChanges, TrimReplaceRemoveAndCase) {
    CString t = L"  \t value \n";
    EXPECT_STREQ(t.Trim(), L"value");
    CString quotes = L"\"\"DOOR\"";
    EXPECT_STREQ(quotes.TrimLeft(L'"'), L"DOOR\"");
    CString set = L"Objected(<CE;1F>)";
    EXPECT_STREQ(set.TrimLeft(L"Object"), L"d(<CE;1F>)");
    EXPECT_STREQ(set.TrimRight(L">)"), L"d(<CE;1F");

    CString path = L"C:\\data\\a\\b";
    EXPECT_EQ(path.Replace(L'\\', L'/'), 3);
    EXPECT_STREQ(path, L"C:/data/a/b");
    CString escaped = L"a\\b,c";
    EXPECT_EQ(escaped.Replace(L"\\", L"\\\\"), 1);
    EXPECT_EQ(escaped.Replace(L",", L"\\,"), 1);
    EXPECT_STREQ(escaped, L"a\\\\b\\,c");
    CString same = L"aaa";
    EXPECT_EQ(same.Replace(L"a", L"aa"), 3);  // no rescanning of what was put in
    EXPECT_STREQ(same, L"aaaaaa");
    EXPECT_EQ(same.Replace(L"", L"x"), 0);

    CString mixed = L"AbC";
    EXPECT_STREQ(mixed.MakeLower(), L"abc");
    EXPECT_EQ(CString(L"ACLength").CompareNoCase(L"aclength"), 0);
    EXPECT_LT(CString(L"a").CompareNoCase(L"B"), 0);
    EXPECT_GT(CString(L"b").Compare(L"a"), 0);
    EXPECT_EQ(CString(L"x").Remove(L'x'), 1);
}

TEST(CStringBuffer, ReleaseBufferFindsTheEnd) {
    CString s;
    wchar_t* buffer = s.GetBuffer(10);
    wcscpy(buffer, L"abc");
    s.ReleaseBuffer();
    EXPECT_EQ(s.GetLength(), 3);
    buffer = s.GetBuffer(2);  // never shrinks what is there
    EXPECT_STREQ(buffer, L"abc");
    s.ReleaseBuffer(2);
    EXPECT_STREQ(s, L"ab");
}

TEST(CStringTokenize, SkipsRunsOfDelimiters) {
    CString s = L";;a;b;;c;";
    int pos = 0;
    std::vector<CString> tokens;
    for (CString t = s.Tokenize(L";", pos); pos >= 0; t = s.Tokenize(L";", pos)) tokens.push_back(t);
    ASSERT_EQ(tokens.size(), 3u);
    EXPECT_STREQ(tokens[2], L"c");
}

TEST(CStringNarrow, ReadsUtf8) {
    EXPECT_STREQ(CString("Stra\xC3\x9F" "e"), L"Stra\u00DFe");
    EXPECT_STREQ(CString("bad\xFF"), L"bad\uFFFD");
    EXPECT_EQ(CString(L"\u00DF").ToUtf8(), "\xC3\x9F");
}

TEST(RuntimeConversions, ReadAsMuchAsBelongsToTheNumber) {
    EXPECT_EQ(_wtoi(L"  42abc"), 42);
    EXPECT_EQ(_wtoi(L"-7"), -7);
    EXPECT_EQ(_wtoi(L"abc"), 0);
    EXPECT_EQ(_wtoi(L""), 0);
    EXPECT_EQ(_wtoi(nullptr), 0);
    EXPECT_EQ(_wtoi(L"99999999999"), INT_MAX);
    EXPECT_DOUBLE_EQ(_wtof(L"25.4]%ps[a,b]"), 25.4);
    EXPECT_DOUBLE_EQ(_wtof(L" -1.5e2x"), -150.0);
    EXPECT_DOUBLE_EQ(_wtof(L"2e"), 2.0);
    EXPECT_DOUBLE_EQ(_wtof(L".5"), 0.5);
    EXPECT_DOUBLE_EQ(_wtof(L"0x10"), 0.0);  // no hexadecimal
    EXPECT_DOUBLE_EQ(_wtof(L"inf"), 0.0);
    EXPECT_DOUBLE_EQ(_wtof(L""), 0.0);
    EXPECT_EQ(_wcsicmp(L"TableCell", L"TABLECELL"), 0);
    EXPECT_NE(_wcsnicmp(L"abc", L"abd", 3), 0);
    EXPECT_EQ(_wcsnicmp(L"abc", L"abd", 2), 0);
}

TEST(StringArray, AddsRemovesAndRefusesBadIndexes) {
    CStringArray a;
    EXPECT_EQ(a.Add(L"x"), 0);
    EXPECT_EQ(a.Add(CString(L"y")), 1);
    a.InsertAt(1, L"m");
    EXPECT_STREQ(a[1], L"m");
    a.RemoveAt(0);
    EXPECT_EQ(a.GetSize(), 2);
    EXPECT_STREQ(a.GetAt(1), L"y");
    EXPECT_THROW(a.GetAt(2), std::out_of_range);
    EXPECT_THROW(a.RemoveAt(1, 2), std::out_of_range);
    CStringArray b;
    b.Copy(a);
    b.Append(b);
    EXPECT_EQ(b.GetSize(), 4);
    EXPECT_TRUE(b.IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_TRUE(b.IsKindOf(RUNTIME_CLASS(CStringArray)));
    EXPECT_STREQ(b.GetRuntimeClass()->m_lpszClassName, "CStringArray");
}

}  // namespace
