// The module's session with Excel against the host's spreadsheet program:
// attaching or starting, the workbook opened without a second copy, what is
// bound as active, the messages of every failure, and every reference
// released when the session ends; and the column and cell name routines.
#include "ArxUtils/ExcelUtils.h"

#include <climits>

#include "core/Utf8.h"
#include "spreadsheet/SpreadsheetProgram.h"
#include "support/DialogTestSupport.h"

using cadhost::spreadsheet::SpreadsheetProgram;

namespace {

const std::filesystem::path kWorkbooks = std::filesystem::path(QM_SOURCE_DIR) / "tests/fixtures/workbooks";

CString Workbook(const char* name) { return CString(cadhost::FromUtf8((kWorkbooks / name).string()).c_str()); }

class ExcelUtilsTest : public qmtest::DialogTest {
protected:
    void SetUp() override {
        qmtest::DialogTest::SetUp();
        program().Reset();
    }
    void TearDown() override {
        program().Reset();
        qmtest::DialogTest::TearDown();
    }
    SpreadsheetProgram& program() { return SpreadsheetProgram::Instance(); }

    // Runs a session and checks that it lets go of every reference; act
    // looks at it while it is open.
    int Session(const CString* path, int readOnly, const std::function<void()>& act = {}) {
        int opened = -1;
        {
            ExcelSessionScope scope(opened, path ? static_cast<LPCTSTR>(*path) : nullptr, readOnly);
            if (act) act();
        }
        EXPECT_EQ(ExcelUtils::m_application.m_lpDispatch, nullptr);
        EXPECT_EQ(ExcelUtils::m_workbook.m_lpDispatch, nullptr);
        EXPECT_EQ(ExcelUtils::m_worksheet.m_lpDispatch, nullptr);
        EXPECT_EQ(program().ClientReferences(), 0) << "a reference to the program was kept";
        return opened;
    }
    std::vector<std::wstring> Messages() {
        std::vector<std::wstring> texts;
        for (const auto& box : m_driver.boxes) texts.push_back(box.text);
        m_driver.boxes.clear();
        return texts;
    }
};

}  // namespace

TEST(ExcelNamesTest, ColumnLettersReachFromAToZZ) {
    const std::pair<int, const wchar_t*> cases[] = {{-5, L"A"}, {0, L"A"},   {1, L"A"},   {26, L"Z"}, {27, L"AA"},
                                                    {28, L"AB"}, {52, L"AZ"}, {53, L"BA"}, {702, L"ZZ"}, {703, L""}};
    for (const auto& [column, letters] : cases) EXPECT_EQ(ExcelUtils::ColumnLetters(column), letters) << column;
}

TEST(ExcelNamesTest, CellReferencesReadAsTheFieldCodesWriteThem) {
    struct Case {
        const wchar_t* text;
        int result, row, column;  // row and column -1: left as they were
    };
    const Case cases[] = {
        {L"$Z$9", 1, 9, 26},
        {L"$AA$10", 1, 10, 27},
        {L"$AB$12", 1, 12, 28},
        {L"A1", 0, -1, -1},
        {L"", 0, -1, -1},
        {L"$1$2", 0, -1, -1},
        {L"x$A$3", 1, 3, 1},               // from the first dollar sign on
        {L"$A$0", 1, 0, 1},                 // row 0 is read; the page shows it
        {L"$A$12x", 1, 12, 1},              // digits as far as they go
        {L"$a$5", 1, 5, 33},                // lower case is not folded
        {L"$AB12", 1, 2, 28},               // the character behind the letters is passed over unread
        {L"$A$1000000000000", 1, INT_MAX, 1},
    };
    for (const Case& c : cases) {
        int row = -1, column = -1;
        EXPECT_EQ(ExcelUtils::ParseCellReference(c.text, row, column), c.result) << cadhost::ToUtf8(c.text);
        EXPECT_EQ(row, c.row) << cadhost::ToUtf8(c.text);
        EXPECT_EQ(column, c.column) << cadhost::ToUtf8(c.text);
    }
    int row = 7, column = 8;
    EXPECT_EQ(ExcelUtils::ParseCellReference(nullptr, row, column), 0);
    EXPECT_EQ(row, 7);
}

TEST_F(ExcelUtilsTest, WithNoExcelAPathBringsUpAVisibleExcelWithThatWorkbook) {
    CString path = Workbook("cells.xlsx");
    int opened = Session(&path, 0, [&] {
        EXPECT_EQ(ExcelUtils::m_workbook.get_Name(), L"cells.xlsx");
        EXPECT_EQ(ExcelUtils::m_worksheet.get_Name(), L"Second");  // as it was saved
    });
    EXPECT_EQ(opened, 1);
    EXPECT_TRUE(program().running());
    EXPECT_TRUE(program().visible());
    ASSERT_EQ(program().workbooks().size(), 1u);
    EXPECT_FALSE(program().workbooks()[0]->readOnly);
    EXPECT_TRUE(Messages().empty());
}

TEST_F(ExcelUtilsTest, AHiddenExcelIsMadeVisibleAndKeepsItsWorkbooks) {
    program().Start(false);
    program().AddWorkbook();
    EXPECT_EQ(Session(nullptr, 0, [&] { EXPECT_EQ(ExcelUtils::m_workbook.get_Name(), L"Book1"); }), 1);
    EXPECT_TRUE(program().visible());
    EXPECT_EQ(program().workbooks().size(), 1u);
}

TEST_F(ExcelUtilsTest, WithoutPathOrExcelANewExcelComesWithOneNewWorkbook) {
    EXPECT_EQ(Session(nullptr, 0, [&] {
                  EXPECT_EQ(ExcelUtils::m_workbook.get_FullName(), L"Book1");
                  EXPECT_EQ(ExcelUtils::m_worksheet.get_Name(), L"Sheet1");
              }),
              1);
    EXPECT_EQ(program().workbooks().size(), 1u);
    EXPECT_TRUE(program().visible());
}

TEST_F(ExcelUtilsTest, AnExcelWithoutWorkbooksGetsOneBound) {
    program().Start(true);
    EXPECT_EQ(Session(nullptr, 0, [&] { EXPECT_EQ(ExcelUtils::m_workbook.get_Name(), L"Book1"); }), 1);
    EXPECT_EQ(program().workbooks().size(), 1u);
}

TEST_F(ExcelUtilsTest, TheOpenWorkbookCountsInAnyCaseAndStaysBehindTheActiveOne) {
    program().Start(true);
    program().OpenFile(kWorkbooks / "cells.xlsx", false);
    program().AddWorkbook();  // Book1 in front
    CString upper = Workbook("cells.xlsx");
    upper.Replace(L"cells.xlsx", L"CELLS.XLSX");
    EXPECT_EQ(Session(&upper, 1, [&] {
                  // The session speaks for what Excel calls active.
                  EXPECT_EQ(ExcelUtils::m_workbook.get_Name(), L"Book1");
              }),
              1);
    EXPECT_EQ(program().workbooks().size(), 2u);
    EXPECT_FALSE(program().workbooks()[0]->readOnly);  // not opened anew for reading
    EXPECT_TRUE(Messages().empty());
}

TEST_F(ExcelUtilsTest, AWorkbookOfTheSameNameFromAnotherFolderIsRefused) {
    program().Start(true);
    program().OpenFile(kWorkbooks / "cells.xlsx", false);
    CString twin = Workbook("same/cells.xlsx");
    EXPECT_EQ(Session(&twin, 0), 0);
    EXPECT_EQ(Messages(), std::vector<std::wstring>{L"A document with the name 'cells.xlsx' is already open. You cannot "
                                                    L"open two documents with the same name, even if the documents are in "
                                                    L"different folders.\nTo open the second document, either close the "
                                                    L"document that's currently open, or rename one of the documents."});
    EXPECT_EQ(program().workbooks().size(), 1u);
}

TEST_F(ExcelUtilsTest, AFileExcelCannotOpenIsReportedByItsStatus) {
    // Excel's own error stands for no status the system has a text for.
    program().Start(true);
    for (const char* name : {"gone.xlsx", "password.xls", "notes.xlsx"}) {
        CString path = Workbook(name);
        EXPECT_EQ(Session(&path, 0), 0) << name;
        EXPECT_EQ(Messages(), std::vector<std::wstring>{L"Catastrophic failure\r\n"}) << name;
    }
    // Without an Excel running the new one stays, with no workbook bound
    // but the one it adds.
    program().Reset();
    CString gone = Workbook("gone.xlsx");
    EXPECT_EQ(Session(&gone, 0), 0);
    EXPECT_EQ(Messages(), std::vector<std::wstring>{L"Catastrophic failure\r\n"});
    EXPECT_TRUE(program().running());
}

TEST_F(ExcelUtilsTest, ANotInstalledExcelSaysSoTwice) {
    program().SetInstalled(false);
    EXPECT_EQ(Session(nullptr, 0), 0);
    EXPECT_EQ(Messages(), (std::vector<std::wstring>{L"Invalid class string\r\n", L"Failed to get an instance of Excel!"}));
    ASSERT_EQ(m_driver.boxes.size(), 0u);
    CString path = Workbook("cells.xlsx");
    EXPECT_EQ(Session(&path, 0), 0);
    EXPECT_EQ(Messages().size(), 2u);
}

TEST_F(ExcelUtilsTest, ABusyExcelRejectsTheAttachAndTheStart) {
    program().Start(false);
    program().SetBusy(true);
    CString path = Workbook("cells.xlsx");
    EXPECT_EQ(Session(&path, 0), 0);
    EXPECT_EQ(Messages(), (std::vector<std::wstring>{L"Call was rejected by callee.\r\n",
                                                     L"Call was rejected by callee.\r\n",
                                                     L"Failed to get an instance of Excel!"}));
    EXPECT_TRUE(program().workbooks().empty());
    program().SetBusy(false);
    EXPECT_FALSE(program().visible());  // nothing reached it
}

TEST_F(ExcelUtilsTest, SelectSheetFindsANameInAnyCaseShowsAndActivatesIt) {
    CString path = Workbook("cells.xlsx");
    Session(&path, 1, [&] {
        EXPECT_EQ(ExcelUtils::SelectSheet(L"HIDDEN"), 1);
        EXPECT_EQ(ExcelUtils::m_worksheet.get_Name(), L"Hidden");
        EXPECT_EQ(ExcelUtils::SelectSheet(L"Gone"), 0);
        EXPECT_EQ(ExcelUtils::SelectSheet(L""), 0);
        EXPECT_EQ(ExcelUtils::m_worksheet.get_Name(), L"Hidden");  // kept
    });
    auto book = program().activeWorkbook();
    ASSERT_TRUE(book);
    EXPECT_EQ(book->sheets[static_cast<size_t>(book->activeSheet)].name, L"Hidden");
    EXPECT_EQ(book->sheets[static_cast<size_t>(book->activeSheet)].visibility, -1);
    EXPECT_TRUE(Messages().empty());
}

TEST_F(ExcelUtilsTest, AStatusWithoutASystemTextIsShownByItsNumber) {
    ExcelUtils::ReportOleError(static_cast<SCODE>(0x800A03ECu));
    ExcelUtils::ReportOleError(RPC_E_CALL_REJECTED);
    EXPECT_EQ(Messages(), (std::vector<std::wstring>{L"\nExcelUtils(424): OLE Execption caught: SCODE = 800a03ec",
                                                     L"Call was rejected by callee.\r\n"}));
}
