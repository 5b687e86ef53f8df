// Start-up pieces of the module, run inside the test's own host.
#include "plugin/DocData.h"
#include "plugin/ModuleState.h"
#include "plugin/QuillmarkApp.h"

#include "support/TestHost.h"

namespace {

class StartUpTest : public qmtest::HostTest {};

TEST_F(StartUpTest, ThePlaceCountsFromTheLastTwoMenus) {
    const std::pair<int, int> cases[] = {{0, 1}, {1, 2}, {2, 1}, {3, 2}, {4, 3}, {10, 9}};
    for (auto [menus, place] : cases) {
        host().menus().SetHostMenus(menus);
        EXPECT_EQ(FindPullDownPlace(), place) << menus << " menus";
    }
}

TEST_F(StartUpTest, TheMenuExpressionMustFitItsBuffer) {
    CString expression;
    ASSERT_TRUE(ComposeMenuLoadExpression(L"C:\\acad\\Quillmark.cuix", 3, expression));
    EXPECT_STREQ(expression, L"(command \"_.menuload\" \"C:/acad/Quillmark.cuix\")(princ)\n(menucmd \"P3=+Quillmark.pop1\")");

    ASSERT_TRUE(ComposeMenuLoadExpression(L"x", 1, expression));
    const int around = expression.GetLength() - 1;  // the text around the path
    CString longest(L'a', 1023 - around), tooLong(L'a', 1024 - around);
    EXPECT_TRUE(ComposeMenuLoadExpression(longest, 1, expression));
    EXPECT_EQ(expression.GetLength(), 1023);
    TakeOutput();
    EXPECT_FALSE(ComposeMenuLoadExpression(tooLong, 1, expression));
    EXPECT_NE(TakeOutput().find("too long"), std::string::npos);
    EXPECT_FALSE(ComposeMenuLoadExpression(L"/a\"b/Quillmark.cuix", 1, expression));
    EXPECT_NE(TakeOutput().find("double quote"), std::string::npos);
}

TEST_F(StartUpTest, DocumentDataFollowsTheDocuments) {
    AcApDataManager<CDocData> data;  // made while a host runs, so it watches the documents
    AcApDocument* first = acDocManagerPtr()->curDocument();
    data.docData(first);
    EXPECT_EQ(data.size(), 1u);
    data.documentToBeDestroyed(reinterpret_cast<AcApDocument*>(&data));  // no entry for it: nothing changes
    EXPECT_EQ(data.size(), 1u);
    host().NewDrawing();
    EXPECT_FALSE(data.contains(first));
    EXPECT_EQ(data.size(), 0u);
}

TEST_F(StartUpTest, AResourceScopePushesAndPops) {
    HINSTANCE before = AfxGetResourceHandle();
    HINSTANCE module = reinterpret_cast<HINSTANCE>(&before);
    {
        ModuleResourceScope scope(module);
        EXPECT_EQ(AfxGetResourceHandle(), module);
    }
    EXPECT_EQ(AfxGetResourceHandle(), before);
}

}  // namespace
