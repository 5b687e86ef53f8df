#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fieldcode/FieldCodeReading.h"

namespace {

using Texts = std::vector<std::wstring>;

Texts Items(const CStringArray& array) {
    Texts items;
    for (INT_PTR i = 0; i < array.GetSize(); ++i) items.push_back(array[i].str());
    return items;
}

TEST(ReadTagValueTest, FindsTheFirstTokenThatBeginsWithTheTag) {
    struct {
        const wchar_t* text;
        const wchar_t* tag;
        const wchar_t* expected;
    } cases[] = {
        {L"\"A\" \\tag \"T\"", L"tag", L"T"},
        {L"\"A\" \\tag \"T\"", L"ta", L"g \"T"},  // only outer quotes go
        {L"\"A\" \\tag \"T\"", L"\\tag", L"T"},
        {L"\"A\" \\tag \"T\"", L"\\\\tag", L"T"},
        {L"\"A\" \\TAG \"T\"", L"tag", L"T"},  // case ignored
        {L"\\tag \"1\" \\tag \"2\"", L"tag", L"1"},  // the first match wins
        {L"\\option 1", L"\\op", L"tion 1"},  // the beginning is all that counts
        {L"\\value \"a\\b\"", L"\\value", L"a"},  // a backslash cuts the value
        {L"\\op \"\" \\tag \"T\"", L"\\op", L""},
        {L"OPENING\" \\op \"=\"", L"\\op", L"ENING"},  // the text before the first backslash is a token too
        {L"\\value   \" x \"  ", L"value", L" x "},
        {L"a\\tag", L"tag", L"unchanged"},  // a token must be longer than the tag
        {L"\\layer \"0\"", L"tag", L"unchanged"},
        {L"", L"tag", L"unchanged"},
        {L"\\tag \"T\"", L"", L"unchanged"},
    };
    for (const auto& c : cases) {
        CString out = L"unchanged";
        ReadTagValue(c.text, c.tag, out);
        EXPECT_EQ(out, c.expected) << c.text << L" / " << c.tag;
    }
}

TEST(ReadTagListTest, AppendsTheNonEmptyElements) {
    CStringArray layers;
    layers.Add(L"kept");
    ReadTagList(L"\"D\" \\layer \"0;WALL;;X;\" \\nested", L"\\layer", layers);
    EXPECT_EQ(Items(layers), (Texts{L"kept", L"0", L"WALL", L"X"}));
    ReadTagList(L"\"D\" \\nested", L"\\layer", layers);
    EXPECT_EQ(layers.GetSize(), 4);
    ReadTagList(L"\\layer \"\"", L"\\layer", layers);
    EXPECT_EQ(layers.GetSize(), 4);
}

TEST(ReadObjectHandlesTest, CutsTheHandleList) {
    struct {
        const wchar_t* item;
        Texts handles;
    } cases[] = {
        {L"Object(<2F1;2F5>)", {L"2F1", L"2F5"}},
        {L"Object(<>)", {}},
        {L"Object(<CE;1F>)", {L"CE", L"1F"}},  // the bracket stops the letters of Object
        {L"Object(<2F1;;2F5;>)", {L"2F1", L"2F5"}},
        {L"", {}},
        {L"bO(<ABC>)", {L"ABC"}},
    };
    for (const auto& c : cases) {
        CStringArray handles;
        ReadObjectHandles(c.item, handles);
        EXPECT_EQ(Items(handles), c.handles) << c.item;
    }
    CStringArray handles;
    handles.Add(L"A0");
    ReadObjectHandles(L"Object(<B1>)", handles);
    EXPECT_EQ(Items(handles), (Texts{L"A0", L"B1"}));
}

TEST(ReadBlockCountDataTest, ReadsEveryPiece) {
    BlockCountData data;
    ASSERT_TRUE(ReadBlockCountData(L"\"DOOR;WIN\" \\layer \"0;WALL\" \\op \"=\" \\tag \"TYPE\" \\value \"A\" \\nested "
                                   L"\\Space(1F) \\Window(0,0,0:100,50,0) \\f \"%ps[,pcs]\"",
                                   data));
    EXPECT_EQ(Items(data.m_blockNames), (Texts{L"DOOR", L"WIN"}));
    EXPECT_EQ(Items(data.m_layers), (Texts{L"0", L"WALL"}));
    EXPECT_EQ(data.m_op, L"=");
    EXPECT_EQ(data.m_tag, L"TYPE");
    EXPECT_EQ(data.m_value, L"A");
    EXPECT_TRUE(data.m_nested);
    EXPECT_TRUE(data.m_window);
    EXPECT_EQ(data.m_firstCorner[0], 0.0);
    EXPECT_EQ(data.m_secondCorner[0], 100.0);
    EXPECT_EQ(data.m_secondCorner[1], 50.0);
    EXPECT_EQ(data.m_secondCorner[2], 0.0);
}

TEST(ReadBlockCountDataTest, ReadsOnlyWhatTheItemHolds) {
    BlockCountData data;
    data.m_tag = L"old";
    ASSERT_TRUE(ReadBlockCountData(L"\"DOOR\"", data));
    EXPECT_EQ(Items(data.m_blockNames), (Texts{L"DOOR"}));
    EXPECT_TRUE(data.m_layers.IsEmpty());
    EXPECT_EQ(data.m_tag, L"old");
    EXPECT_FALSE(data.m_nested);
    EXPECT_FALSE(data.m_window);
}

TEST(ReadBlockCountDataTest, EdgeCasesOfNamesWindowAndNested) {
    {
        BlockCountData data;
        ASSERT_TRUE(ReadBlockCountData(L"\"A\" \\NESTED", data));
        EXPECT_FALSE(data.m_nested);  // exact in case
    }
    {
        BlockCountData data;
        ASSERT_TRUE(ReadBlockCountData(L"DOOR;;WIN  \t", data));  // no quote: the whole text
        EXPECT_EQ(Items(data.m_blockNames), (Texts{L"DOOR", L"WIN"}));
    }
    {
        BlockCountData data;
        ASSERT_TRUE(ReadBlockCountData(L"\"A;B\" \\Window(1.5,2,3:4,5,6)", data));
        EXPECT_TRUE(data.m_window);
        EXPECT_EQ(data.m_firstCorner[0], 1.5);
        EXPECT_EQ(data.m_firstCorner[2], 3.0);
        EXPECT_EQ(data.m_secondCorner[0], 4.0);
        EXPECT_EQ(data.m_secondCorner[2], 6.0);
    }
    {
        BlockCountData data;  // %g writes large coordinates with an exponent
        ASSERT_TRUE(ReadBlockCountData(L"\"A\" \\Window(1.23457e+006,0,0:1,1,0)", data));
        EXPECT_EQ(data.m_firstCorner[0], 1234570.0);
    }
    {
        BlockCountData data;  // no colon: the first corner alone
        data.m_secondCorner[0] = 7;
        ASSERT_TRUE(ReadBlockCountData(L"\"A\" \\Window(1,2,3)", data));
        EXPECT_TRUE(data.m_window);
        EXPECT_EQ(data.m_firstCorner[1], 2.0);
        EXPECT_EQ(data.m_secondCorner[0], 7.0);
    }
    {
        BlockCountData data;
        ASSERT_TRUE(ReadBlockCountData(L"\"A\" \\Window( )", data));
        EXPECT_FALSE(data.m_window);
    }
}

TEST(ReadBlockCountDataTest, AnItemOfBlanksAndQuotesReadsNothing) {
    BlockCountData data;
    data.m_tag = L"old";
    EXPECT_FALSE(ReadBlockCountData(L"  \"\" \" ", data));
    EXPECT_FALSE(ReadBlockCountData(L"", data));
    EXPECT_TRUE(data.m_blockNames.IsEmpty());
    EXPECT_EQ(data.m_tag, L"old");
}

}  // namespace
