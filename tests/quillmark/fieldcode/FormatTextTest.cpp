#include "fieldcode/FormatText.h"
#include "support/TestHost.h"

namespace {

class FormatTextTest : public qmtest::HostTest {
protected:
    void UseRelease(int release) { host().services().SetReleaseMajorVersion(release); }
};

TEST_F(FormatTextTest, TheAdditionalPieceJoinsItsDirectivesInOrder) {
    struct {
        double factor;
        const wchar_t* prefix;
        const wchar_t* suffix;
        int decimal, thousands, feet, inches, leading, trailing;
        const wchar_t* expected;
    } cases[] = {
        {1.0, L"", L"", 0, 0, 0, 0, 0, 0, L""},
        {1.0000005, L"", L"", 0, 0, 0, 0, 0, 0, L""},
        {1.000002, L"", L"", 0, 0, 0, 0, 0, 0, L"%ct8[1]"},
        {0.3048, L"", L"", 0, 0, 0, 0, 0, 0, L"%ct8[0.3048]"},
        {25.4, L"", L"", 0, 0, 0, 0, 0, 0, L"%ct8[25.4]"},
        {1e-7, L"", L"", 0, 0, 0, 0, 0, 0, L"%ct8[1e-007]"},
        {1234567.0, L"", L"", 0, 0, 0, 0, 0, 0, L"%ct8[1.23457e+006]"},
        {1.0, L"A=", L"", 0, 0, 0, 0, 0, 0, L"%ps[A=,]"},
        {1.0, L"", L" m", 0, 0, 0, 0, 0, 0, L"%ps[, m]"},
        {1.0, L"a,b", L"", 0, 0, 0, 0, 0, 0, L"%ps[a\\,b,]"},
        {1.0, L"", L"[m]", 0, 0, 0, 0, 0, 0, L"%ps[,\\[m\\]]"},
        {1.0, L"x\\", L"", 0, 0, 0, 0, 0, 0, L"%ps[x\\\\,]"},
        {1.0, L"\"q\"", L"", 0, 0, 0, 0, 0, 0, L"%ps[\"q\",]"},
        {1.0, L"", L"", 44, 0, 0, 0, 0, 0, L"%ds44"},
        {1.0, L"", L"", 0, 46, 0, 0, 0, 0, L"%th46"},
        {1.0, L"", L"", -1, -1, 0, 0, 0, 0, L""},
        {1.0, L"", L"", 0, 0, 1, 0, 0, 0, L"%zs1"},
        {1.0, L"", L"", 0, 0, 0, 1, 0, 0, L"%zs2"},
        {1.0, L"", L"", 0, 0, 0, 0, 1, 0, L"%zs4"},
        {1.0, L"", L"", 0, 0, 0, 0, 0, 1, L"%zs8"},
        {1.0, L"", L"", 0, 0, 5, 0, 0, -1, L"%zs9"},  // any value but 0 sets a flag
        {2.5, L"A", L"B", 44, 46, 1, 1, 1, 1, L"%ps[A,B]%ct8[2.5]%ds44%th46%zs15"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ComposeAdditionalFormat(c.factor, c.prefix, c.suffix, c.decimal, c.thousands, c.feet, c.inches,
                                          c.leading, c.trailing),
                  c.expected)
            << c.expected;
    }
    AdditionalFormat set;
    EXPECT_EQ(ComposeAdditionalFormat(set), L"");
    set.m_prefix = L"A=";
    set.m_factor = 2.0;
    set.m_trailingZero = 1;
    EXPECT_EQ(ComposeAdditionalFormat(set), L"%ps[A=,]%ct8[2]%zs8");
}

TEST_F(FormatTextTest, OlderHostsTakePrefixAndSuffixAsTheyAre) {
    UseRelease(16);
    EXPECT_EQ(ComposeAdditionalFormat(1.0, L"a,b", L"[m]\\", 0, 0, 0, 0, 0, 0), L"%ps[a,b,[m]\\]");
    CString text = L"a,b";
    EscapeFormatText(text);
    EXPECT_EQ(text, L"a,b");
    UseRelease(17);
    EscapeFormatText(text);
    EXPECT_EQ(text, L"a\\,b");
}

TEST_F(FormatTextTest, EscapingAndUnescapingAreWholeTextReplacements) {
    CString text = L"\\,[]";
    EscapeFormatText(text);
    EXPECT_EQ(text, L"\\\\\\,\\[\\]");
    UnescapeFormatText(text);
    EXPECT_EQ(text, L"\\,[]");
    CString odd = L"\\x\\\\,";  // \x stays, \\ becomes \, then the new "\," becomes ","
    UnescapeFormatText(odd);
    EXPECT_EQ(odd, L"\\x,");
}

TEST_F(FormatTextTest, TheUnitsPieceFollowsTheSelectedEntry) {
    struct {
        int itemData;
        const wchar_t* area;
        const wchar_t* length;
    } cases[] = {
        {0, L"", L""},
        {-1, L"%lu6%qf1", L"%lu6"},
        {2, L"%lu2", L"%lu2"},
        {4, L"%lu2%ct4%qf1 SQ. FT.", L"%lu4"},
        {3, L"%lu2%ct4%qf1 SQ. FT.", L"%lu3"},
        {5, L"%lu5", L"%lu5"},
        {1, L"%lu1", L"%lu1"},
        {6, L"", L""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(GetAreaUnitsFormat(TRUE, c.itemData), c.area) << c.itemData;
        EXPECT_EQ(GetLengthUnitsFormat(TRUE, c.itemData), c.length) << c.itemData;
        EXPECT_EQ(GetAreaUnitsFormat(FALSE, c.itemData), L"");
        EXPECT_EQ(GetLengthUnitsFormat(FALSE, c.itemData), L"");
    }
}

TEST_F(FormatTextTest, ThePrecisionPieceNeedsAnEnabledSelection) {
    EXPECT_EQ(GetPrecisionFormat(TRUE, TRUE, 0), L"%pr0");
    EXPECT_EQ(GetPrecisionFormat(TRUE, TRUE, 8), L"%pr8");
    EXPECT_EQ(GetPrecisionFormat(TRUE, TRUE, -1), L"");  // "Current precision"
    EXPECT_EQ(GetPrecisionFormat(FALSE, TRUE, 3), L"");
    EXPECT_EQ(GetPrecisionFormat(TRUE, FALSE, 3), L"");
}

TEST_F(FormatTextTest, PiecesAreJoinedUnitsPrecisionAdditional) {
    AdditionalFormat set;
    set.m_prefix = L"A=";
    EXPECT_EQ(JoinFormat(GetAreaUnitsFormat(TRUE, 4), GetPrecisionFormat(TRUE, TRUE, 2), ComposeAdditionalFormat(set)),
              L"%lu2%ct4%qf1 SQ. FT.%pr2%ps[A=,]");
    EXPECT_EQ(JoinFormat(GetAreaUnitsFormat(TRUE, 0), GetPrecisionFormat(FALSE, FALSE, 0),
                         ComposeAdditionalFormat(AdditionalFormat())),
              L"");
    EXPECT_EQ(JoinFormat(L"", L"%pr3", L"%zs8"), L"%pr3%zs8");
}

struct PrefixSuffixCase {
    const wchar_t* format;
    const wchar_t* prefix;
    const wchar_t* suffix;
};

TEST_F(FormatTextTest, ParsePrefixSuffixReadsTheEscapedForm) {
    const PrefixSuffixCase cases[] = {
        {L"%lu2%pr3%ps[A,B]%ct8[2.5]", L"A", L"B"},
        {L"%ps[a\\,b,]", L"a,b", L""},
        {L"%ps[,\\[m\\]]", L"", L"[m]"},
        {L"%ps[x\\\\,y]", L"x\\", L"y"},  // two backslashes: the comma is not escaped
        {L"%ps[x\\\\\\,y,z]", L"x\\,y", L"z"},
        {L"%ps[a,b,c]", L"a,b", L"c"},  // the last comma parts them
        {L"%ps[a]b,c]", L"a]b", L"c"},  // a bracket before any comma ends nothing
        {L"%ps[A=,]%ps[B,C]", L"A=", L""},
        {L"%lu2", L"", L""},  // no directive empties both
        {L"%ps[abc]", L"old prefix", L"old suffix"},  // no comma: both keep their values
        {L"%ps[a,b", L"a", L"old suffix"},
        {L"%ps[", L"old prefix", L"old suffix"},
    };
    for (const auto& c : cases) {
        CString prefix = L"old prefix", suffix = L"old suffix";
        EXPECT_TRUE(ParsePrefixSuffix(c.format, prefix, suffix));
        EXPECT_EQ(prefix, c.prefix) << c.format;
        EXPECT_EQ(suffix, c.suffix) << c.format;
    }
}

TEST_F(FormatTextTest, ParsePrefixSuffixOnOlderHostsHasNoEscapes) {
    UseRelease(16);
    const PrefixSuffixCase cases[] = {
        {L"%ps[a\\,b,c]", L"a\\", L"b,c"},
        {L"%ps[a\\\\,b]", L"a\\\\", L"b"},
        {L"%ps[a]b,c]d]", L"a]b", L"c"},
        {L"%ps[A,B]", L"A", L"B"},
    };
    for (const auto& c : cases) {
        CString prefix = L"old prefix", suffix = L"old suffix";
        EXPECT_TRUE(ParsePrefixSuffix(c.format, prefix, suffix));
        EXPECT_EQ(prefix, c.prefix) << c.format;
        EXPECT_EQ(suffix, c.suffix) << c.format;
    }
}

TEST_F(FormatTextTest, PrefixAndSuffixSurviveComposingAndReading) {
    const wchar_t* texts[] = {L"a,b", L"[m]", L"x\\", L"\\", L",", L"a\\,b]", L"\"q\"", L" SQ. FT."};
    for (const wchar_t* prefix : texts) {
        for (const wchar_t* suffix : texts) {
            CString format = ComposeAdditionalFormat(1.0, prefix, suffix, 0, 0, 0, 0, 0, 0);
            CString readPrefix, readSuffix;
            ParsePrefixSuffix(format, readPrefix, readSuffix);
            EXPECT_EQ(readPrefix, prefix) << format.GetString();
            EXPECT_EQ(readSuffix, suffix) << format.GetString();
        }
    }
}

TEST_F(FormatTextTest, ReadingAMeasurementFormatGivesEveryDirective) {
    MeasureFormatState state;
    ReadMeasureFormat(L"%lu2%pr3%ps[A,B]%ct8[2.5]", state);
    EXPECT_TRUE(state.m_hasUnits);
    EXPECT_EQ(state.m_units, 2);
    EXPECT_TRUE(state.m_hasPrecision);
    EXPECT_EQ(state.m_precision, 3);
    EXPECT_EQ(state.m_additional.m_prefix, L"A");
    EXPECT_EQ(state.m_additional.m_suffix, L"B");
    EXPECT_EQ(state.m_additional.m_factor, 2.5);

    MeasureFormatState area;
    ReadMeasureFormat(L"%lu2%ct4%qf1 SQ. FT.%pr2", area);
    EXPECT_EQ(area.m_units, 2);  // Architectural and Engineering both wrote code 2
    EXPECT_EQ(area.m_precision, 2);

    MeasureFormatState current;
    ReadMeasureFormat(L"%lu6%qf1", current);
    EXPECT_TRUE(current.m_hasUnits);
    EXPECT_EQ(current.m_units, 6);
    EXPECT_FALSE(current.m_hasPrecision);
}

TEST_F(FormatTextTest, ReadingLeavesWhatTheTextLacks) {
    MeasureFormatState state;
    state.m_units = 4;
    state.m_additional.m_factor = 3.0;
    state.m_additional.m_prefix = L"P";
    state.m_additional.m_suffix = L"S";
    state.m_additional.m_zeroFeet = state.m_additional.m_zeroInches = 1;
    state.m_additional.m_leadingZero = state.m_additional.m_trailingZero = 1;
    ReadMeasureFormat(L"%pr1", state);
    EXPECT_FALSE(state.m_hasUnits);
    EXPECT_EQ(state.m_units, 4);
    EXPECT_EQ(state.m_additional.m_factor, 3.0);
    EXPECT_EQ(state.m_additional.m_zeroFeet, 1);
    EXPECT_EQ(state.m_additional.m_trailingZero, 1);
    EXPECT_EQ(state.m_additional.m_prefix, L"");  // no %ps[: prefix and suffix are emptied
    EXPECT_EQ(state.m_additional.m_suffix, L"");

    ReadMeasureFormat(L"%zs12", state);
    EXPECT_EQ(state.m_additional.m_zeroFeet, 0);
    EXPECT_EQ(state.m_additional.m_zeroInches, 0);
    EXPECT_EQ(state.m_additional.m_leadingZero, 1);
    EXPECT_EQ(state.m_additional.m_trailingZero, 1);

    ReadMeasureFormat(L"%zs3%ct8[]", state);
    EXPECT_EQ(state.m_additional.m_zeroFeet, 1);
    EXPECT_EQ(state.m_additional.m_zeroInches, 1);
    EXPECT_EQ(state.m_additional.m_leadingZero, 0);
    EXPECT_EQ(state.m_additional.m_factor, 0.0);  // an empty factor converts to 0

    ReadMeasureFormat(L"%ct8[25.4]%ps[a,b]", state);
    EXPECT_EQ(state.m_additional.m_factor, 25.4);
    EXPECT_EQ(state.m_additional.m_prefix, L"a");

    // A factor beyond the doubles is not taken: it would go into every code
    // composed afterwards as "inf".
    for (const wchar_t* format : {L"%ct8[1e400]", L"%ct8[-2e308]", L"%ct8[1e99999]"}) {
        ReadMeasureFormat(format, state);
        EXPECT_EQ(state.m_additional.m_factor, 25.4) << CString(format).GetString();
        EXPECT_EQ(ComposeAdditionalFormat(state.m_additional).Find(L"%ct8[25.4]"), 0);
    }
    // The runtime reads plain decimals only: "nan" is 0, as any other text.
    ReadMeasureFormat(L"%ct8[nan]", state);
    EXPECT_EQ(state.m_additional.m_factor, 0.0);
}

TEST_F(FormatTextTest, TheBlockCountFormatHasOnlyTheAdditionalPiece) {
    AdditionalFormat set;
    ReadAdditionalFormat(L"%ps[,pcs]%ct8[0.5]%zs8", set);
    EXPECT_EQ(set.m_suffix, L"pcs");
    EXPECT_EQ(set.m_factor, 0.5);
    EXPECT_EQ(set.m_trailingZero, 1);
    EXPECT_EQ(set.m_zeroFeet, 0);
}

}  // namespace
