#include "app/CommandStack.h"

#include <gtest/gtest.h>

namespace {

int calls = 0;
void Count() { ++calls; }
void Other() {}

TEST(CommandStack, FindsByGlobalNameWithOrWithoutUnderscoreAndByLocalName) {
    cadhost::CommandStack stack;
    ASSERT_EQ(stack.addCommand(L"Norvo", L"_Quillmark_Test", L"Quillmark_Test", 1, Count), Acad::eOk);
    ASSERT_EQ(stack.addCommand(L"ACAD_MAIN", L"MENULOAD", L"MLOAD", 0, Other), Acad::eOk);
    struct Case {
        const wchar_t* typed;
        const wchar_t* global;  // null: not found
    };
    const Case cases[] = {
        {L"_Quillmark_Test", L"_Quillmark_Test"}, {L"Quillmark_Test", L"_Quillmark_Test"},
        {L"quillmark_test", L"_Quillmark_Test"},  {L"_.menuload", L"MENULOAD"},
        {L"menuload", L"MENULOAD"},                {L"MLOAD", L"MENULOAD"},
        {L"_MLOAD", nullptr},  // a leading underscore asks for a global name
        {L"nothing", nullptr},                      {L"_", nullptr},
    };
    for (const Case& c : cases) {
        const cadhost::CommandStack::Command* found = stack.Lookup(c.typed);
        if (c.global) {
            ASSERT_NE(found, nullptr) << testing::PrintToString(std::wstring(c.typed));
            EXPECT_EQ(found->global, c.global);
        } else {
            EXPECT_EQ(found, nullptr) << testing::PrintToString(std::wstring(c.typed));
        }
    }
}

TEST(CommandStack, RefusesDuplicatesAndRemovesByGroupAndName) {
    cadhost::CommandStack stack;
    EXPECT_EQ(stack.addCommand(L"G", L"ONE", nullptr, 0, Count), Acad::eOk);
    EXPECT_EQ(stack.Lookup(L"ONE")->local, L"ONE");  // no local name: the global one serves
    EXPECT_EQ(stack.addCommand(L"g", L"one", nullptr, 0, Other), Acad::eDuplicateKey);
    EXPECT_EQ(stack.addCommand(L"H", L"ONE", nullptr, 0, Other), Acad::eOk);
    EXPECT_EQ(stack.Lookup(L"ONE")->group, L"H");  // the latest wins
    EXPECT_EQ(stack.addCommand(L"G", L"TWO", nullptr, 0, nullptr), Acad::eInvalidInput);
    EXPECT_EQ(stack.removeCmd(L"H", L"ONE"), Acad::eOk);
    EXPECT_EQ(stack.removeCmd(L"H", L"ONE"), Acad::eKeyNotFound);
    EXPECT_EQ(stack.Lookup(L"ONE")->group, L"G");
    EXPECT_EQ(stack.removeGroup(L"G"), Acad::eOk);
    EXPECT_TRUE(stack.Commands().empty());
}

}  // namespace
