// The pieces under the DXF reader and writer: values of groups, texts in
// the files' encodings, reading groups, and keeping groups compactly.
#include <cmath>
#include <cstdio>
#include <limits>

#include <gtest/gtest.h>

#include "db/KeptGroups.h"
#include "dxf/GroupReader.h"
#include "dxf/TextCodec.h"
#include "dxf/Values.h"

namespace {

using namespace cadhost::dxf;

TEST(DxfValuesTest, NumbersAndHandlesReadStrictly) {
    struct Case {
        const char* text;
        bool real, integer, handle;
    };
    const Case cases[] = {
        // Handles are hexadecimal: "1e400" is one, "1.5" is not.
        {"1.5", true, false, false},  {"  -2 ", true, true, false}, {"+3", true, true, false},
        {"1e300", true, false, true}, {"1e400", false, false, true}, {"nan", false, false, false},
        {"inf", false, false, false}, {"", false, false, false},  {"12abc", false, false, true},
        {"2F1", false, false, true},  {"10000000000000000", true, true, false},
    };
    for (const Case& c : cases) {
        double d;
        long long i;
        uint64_t h;
        EXPECT_EQ(ParseReal(c.text, d), c.real) << c.text;
        EXPECT_EQ(ParseInteger(c.text, i), c.integer) << c.text;
        EXPECT_EQ(ParseHandle(c.text, h), c.handle) << c.text;
    }
    double d = 0;
    ASSERT_TRUE(ParseReal(" 0.1", d));
    EXPECT_EQ(d, 0.1);
}

TEST(DxfValuesTest, RealsWriteShortestAndReadBackExactly) {
    for (double value : {0.0, 1.0, -2.5, 0.1, 1.0 / 3, 123456789.125, 1e-300, 6.02214076e23, -0.0,
                         std::numeric_limits<double>::max(), std::nextafter(1.0, 2.0)}) {
        std::string text;
        AppendReal(text, value);
        double back = 0;
        ASSERT_TRUE(ParseReal(text, back)) << text;
        EXPECT_EQ(back, value) << text;
        EXPECT_NE(text.find_first_of(".e"), std::string::npos) << "a real shows it is one: " << text;
    }
    std::string text;
    AppendReal(text, 2.0);
    EXPECT_EQ(text, "2.0");
    EXPECT_EQ(FormatHandle(0x2F1), "2F1");
    EXPECT_EQ(FormatHandle(0), "0");
    EXPECT_EQ(ValueTypeOf(10), ValueType::kReal);
    EXPECT_EQ(ValueTypeOf(70), ValueType::kInteger);
    EXPECT_EQ(ValueTypeOf(330), ValueType::kHandle);
    EXPECT_EQ(ValueTypeOf(1), ValueType::kText);
    EXPECT_EQ(ValueTypeOf(310), ValueType::kBinary);
    EXPECT_EQ(ValueTypeOf(1070), ValueType::kInteger);
}

TEST(DxfTextTest, CodePagesAndEscapes) {
    TextCodec utf8(true, "ANSI_1252"), latin(false, "ANSI_1252"), cyrillic(false, "ANSI_1251");
    // UTF-8 files keep UTF-8; \U+XXXX is read in every release.
    EXPECT_EQ(utf8.Decode("Gr\xC3\xB6\xC3\x9F" "e"), "Gr\xC3\xB6\xC3\x9F" "e");
    EXPECT_EQ(utf8.Decode("\\U+0416"), "\xD0\x96");
    EXPECT_EQ(utf8.Decode("bad \xF6"), "bad \xC3\xB6") << "a stray code page byte reads as 1252";
    EXPECT_EQ(utf8.Encode("\xD0\x96"), "\xD0\x96");
    // 1252 files.
    EXPECT_EQ(latin.Decode("Gr\xF6\xDF" "e \x80"), "Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC");
    EXPECT_EQ(latin.Encode("Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC \xD0\x96"), "Gr\xF6\xDF" "e \x80 \\U+0416");
    EXPECT_EQ(latin.Decode("\\U+00e9t\\U+00E9"), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(latin.Decode("\\U+12"), "\\U+12") << "not an escape";
    // Another page, through the system's converter.
    EXPECT_EQ(cyrillic.Decode("\xC6"), "\xD0\x96");
    EXPECT_EQ(cyrillic.Encode("\xD0\x96 \xC3\xB6"), "\xC6 \\U+00F6");
}

TEST(DxfTextTest, TextsThatGoToTheFileAsTheyAreAreNotCopied) {
    TextCodec utf8(true, "ANSI_1252"), latin(false, "ANSI_1252");
    std::string scratch;
    std::string ascii(1000, 'a'), accented = "Gr\xC3\xB6\xC3\x9F" "e";
    EXPECT_EQ(utf8.Encode(accented, scratch).data(), accented.data());
    EXPECT_EQ(latin.Encode(ascii, scratch).data(), ascii.data());
    std::string_view encoded = latin.Encode(accented, scratch);
    EXPECT_EQ(encoded, "Gr\xF6\xDF" "e");
    EXPECT_EQ(encoded.data(), scratch.data());
    // A byte beyond ASCII anywhere, also past the first eight.
    std::string late = std::string(13, 'x') + "\xC3\xB6";
    EXPECT_EQ(latin.Encode(late, scratch), std::string(13, 'x') + "\xF6");
}

std::vector<Group> ReadAll(const std::string& text, std::vector<std::string>& values) {
    std::FILE* file = fmemopen(const_cast<char*>(text.data()), text.size(), "rb");
    GroupReader reader(file);
    std::vector<Group> groups;
    Group g;
    while (reader.Next(g)) {
        groups.push_back(g);
        values.emplace_back(g.value);
    }
    std::fclose(file);
    return groups;
}

TEST(DxfGroupReaderTest, LineEndingsMarksAndLongLines) {
    std::string longValue(3 << 20, 'x');  // longer than the reader's buffer
    std::string text = "\xEF\xBB\xBF  0\r\nSECTION\r\n  2\nHEADER\n999\n" + longValue + "\n  0\nEOF";
    std::vector<std::string> values;
    std::vector<Group> groups = ReadAll(text, values);
    ASSERT_EQ(groups.size(), 4u);
    EXPECT_EQ(groups[0].code, 0);
    EXPECT_EQ(values[0], "SECTION");
    EXPECT_EQ(groups[1].line, 3);
    EXPECT_EQ(values[1], "HEADER");
    EXPECT_EQ(values[2].size(), longValue.size());
    EXPECT_EQ(values[3], "EOF") << "the last line needs no line break";
    EXPECT_EQ(groups[3].line, 7);
}

TEST(DxfGroupReaderTest, BrokenGroupsNameTheirLine) {
    struct Case {
        std::string text;
        int line;
        const char* message;
    };
    const Case cases[] = {
        {"0\nSECTION\nabc\nx\n", 3, "a group code was expected, not \"abc\""},
        {"0\nSECTION\n99999\nx\n", 3, "a group code was expected, not \"99999\""},
        {"0\nSECTION\n2", 3, "the file ends after group code 2: it is cut short"},
        {"0\nSECTION\n\x01\x02\n", 3, "a group code was expected, not \"??\""},
    };
    for (const Case& c : cases) {
        std::vector<std::string> values;
        try {
            ReadAll(c.text, values);
            ADD_FAILURE() << "no error for " << c.message;
        } catch (const FileError& e) {
            EXPECT_EQ(e.line, c.line);
            EXPECT_STREQ(e.what(), c.message);
        }
    }
}

TEST(KeptGroupsTest, GroupsComeBackInOrderWithTheirAnchors) {
    cadhost::KeptGroups kept;
    std::string big(1000, 'z');
    kept.Add(0, 102, "{ACAD_REACTORS");
    kept.Add(3, -4, "");
    kept.Add(300, 1071, big);
    kept.Add(300, 999, "x");
    cadhost::KeptGroups::Cursor cursor(kept);
    cadhost::KeptGroup g;
    EXPECT_EQ(cursor.PeekAnchor(), 0u);
    ASSERT_TRUE(cursor.Next(g));
    EXPECT_EQ(g.code, 102);
    EXPECT_EQ(g.value, "{ACAD_REACTORS");
    ASSERT_TRUE(cursor.Next(g));
    EXPECT_EQ(g.anchor, 3u);
    EXPECT_EQ(g.code, -4);
    EXPECT_EQ(g.value, "");
    EXPECT_EQ(cursor.PeekAnchor(), 300u);
    ASSERT_TRUE(cursor.Next(g));
    EXPECT_EQ(g.code, 1071);
    EXPECT_EQ(g.value, big);
    ASSERT_TRUE(cursor.Next(g));
    EXPECT_EQ(g.value, "x");
    EXPECT_FALSE(cursor.Next(g));
    EXPECT_LT(kept.bytes(), big.size() + 40u) << "a few bytes a group beside its value";
}

}  // namespace
