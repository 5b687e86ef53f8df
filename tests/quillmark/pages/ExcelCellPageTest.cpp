// The Excel Cell page inside the Field dialog, against the host's
// spreadsheet program: the code of the four boxes, Get Active Cell,
// browsing, a stored field loaded into the page and shown in Excel, and the
// messages of the failures; after every action no reference to Excel is
// held and Excel still runs.
#include <dbapserv.h>

#include "HostResource.h"
#include "ArxUtils/ExcelUtils.h"
#include "core/Utf8.h"
#include "pages/AsdkExcelRangeOptionDialog.h"
#include "plugin/hook/AsdkCustomOptionDialogHook.h"
#include "spreadsheet/SpreadsheetProgram.h"
#include "support/ModulePagesTest.h"
#include "ui/UserInput.h"

using cadhost::spreadsheet::SpreadsheetProgram;

namespace {

const std::filesystem::path kWorkbooks = std::filesystem::path(QM_SOURCE_DIR) / "tests/fixtures/workbooks";

std::wstring Workbook(const char* name) { return cadhost::FromUtf8((kWorkbooks / name).string()); }

class CountingHook : public AsdkCustomOptionDialogHook {
public:
    BOOL UpdateFieldCode() override {
        ++updates;
        return AsdkCustomOptionDialogHook::UpdateFieldCode();
    }
    int updates = 0;
};

class ExcelCellPageTest : public qmtest::ModulePagesTest {
protected:
    CAcFdUiFieldDialogHook& Hook() override { return m_hook; }
    void SetUp() override {
        qmtest::ModulePagesTest::SetUp();
        program().Reset();
    }
    void TearDown() override {
        program().Reset();
        qmtest::ModulePagesTest::TearDown();
    }
    SpreadsheetProgram& program() { return SpreadsheetProgram::Instance(); }

    // Runs the Field dialog on the Excel Cell page; the test acts on it.
    void OnPage(std::function<void(CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog&)> act) {
        CAcFdUiFieldDialog dialog(acdbHostApplicationServices()->workingDatabase(), 0, nullptr);
        m_driver.onModal = [&](HWND) {
            auto* list = static_cast<CListBox*>(dialog.GetDlgItem(IDC_ACFD_FIELD_LIST));
            int index = list->FindStringExact(-1, L"QM Excel Cell");
            ASSERT_GE(index, 0);
            ASSERT_EQ(cadhost::ui::UserChoose(list->m_hWnd, index), L"");
            auto* page = dynamic_cast<AsdkExcelRangeOptionDialog*>(m_hook.Page(QM_FIELD_EXCEL_CELL));
            ASSERT_NE(page, nullptr);
            act(dialog, *page);
            dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
        };
        dialog.DoModal();
        delete dialog.TakeField();
    }
    static std::wstring Text(CWnd& page, int id) {
        CString text;
        page.GetDlgItemText(id, text);
        return text.str();
    }
    // Path, worksheet, column and row, joined by "|".
    static std::wstring Boxes(CWnd& page) {
        return Text(page, IDC_PATH) + L"|" + Text(page, IDC_WORKSHEET) + L"|" + Text(page, IDC_COLUMN) + L"|" +
               Text(page, IDC_ROW);
    }
    static void Set(CWnd& page, int id, const wchar_t* text) { page.SetDlgItemText(id, text); }
    void Click(CWnd& page, int id) { page.SendMessage(WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0); }
    std::vector<std::wstring> Messages() {
        std::vector<std::wstring> texts;
        for (const auto& box : m_driver.boxes) texts.push_back(box.text);
        m_driver.boxes.clear();
        return texts;
    }
    // No reference to Excel is left behind by a page's action.
    void ExpectReleased() {
        EXPECT_EQ(ExcelUtils::m_application.m_lpDispatch, nullptr);
        EXPECT_EQ(program().ClientReferences(), 0);
    }

    CountingHook m_hook;
};

// A field as its evaluator left it: the data item that the page reads.
struct StoredField {
    explicit StoredField(const std::wstring& data) : field(L"%<\\ExcelCell >%") {
        AcFdFieldValue value(data.c_str());
        field.setData(L"ExcelCell Data", &value);
    }
    AcDbField field;
};

}  // namespace

TEST_F(ExcelCellPageTest, TheCodeIsEmptyUntilAllFourBoxesAreFilled) {
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkExcelRangeOptionDialog& page) {
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell >%");
        EXPECT_EQ(Text(page, IDC_PATH_TYPE), L"Full Path");
        const std::pair<int, const wchar_t*> boxes[] = {
            {IDC_PATH, L"/data/book.xlsx"}, {IDC_WORKSHEET, L"Sheet1"}, {IDC_COLUMN, L"B"}, {IDC_ROW, L"3"}};
        for (const auto& [id, text] : boxes) {
            EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell >%") << id;
            Set(page, id, text);
        }
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell /data/book.xlsx:Sheet1:$B$3>%");
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\ExcelCell /data/book.xlsx:Sheet1:$B$3>%");
        // A row of 0, as an unreadable cell gives, still counts as filled.
        Set(page, IDC_ROW, L"0");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell /data/book.xlsx:Sheet1:$B$0>%");
        Set(page, IDC_WORKSHEET, L"");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell >%");
    });
}

TEST_F(ExcelCellPageTest, TypingThePathStartsNoExcelAndChangesNoOtherBox) {
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkExcelRangeOptionDialog& page) {
        Set(page, IDC_WORKSHEET, L"Data");
        int before = m_hook.updates;
        ASSERT_EQ(cadhost::ui::UserType(page.GetDlgItem(IDC_PATH)->m_hWnd, Workbook("cells.xlsx")), L"");
        EXPECT_GT(m_hook.updates, before);
        EXPECT_FALSE(program().running());
        EXPECT_EQ(Boxes(page), Workbook("cells.xlsx") + L"|Data||");
        EXPECT_TRUE(Messages().empty());
    });
}

TEST_F(ExcelCellPageTest, GetActiveCellTakesTheCellTheUserSelected) {
    program().Start(true);
    program().OpenFile(kWorkbooks / "cells.xlsx", false);
    program().Select(L"Data", L"AB12");
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkExcelRangeOptionDialog& page) {
        Click(page, IDC_ACTIVE_CELL);
        EXPECT_EQ(Boxes(page), Workbook("cells.xlsx") + L"|Data|AB|12");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell " + Workbook("cells.xlsx") + L":Data:$AB$12>%");
        EXPECT_EQ(dialog.GetFieldCode().str(), page.GetFieldCode().str());
        ExpectReleased();
        EXPECT_TRUE(Messages().empty());
    });
    EXPECT_TRUE(program().running());
    EXPECT_EQ(program().workbooks().size(), 1u);  // nothing opened, nothing added
}

TEST_F(ExcelCellPageTest, GetActiveCellWithoutExcelBringsUpOneWithANewWorkbook) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        Click(page, IDC_ACTIVE_CELL);
        // A workbook never saved has a full name without a folder.
        EXPECT_EQ(Boxes(page), L"Book1|Sheet1|A|1");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell Book1:Sheet1:$A$1>%");
        ExpectReleased();
    });
    EXPECT_TRUE(program().running());
    EXPECT_TRUE(program().visible());
    EXPECT_EQ(program().workbooks().size(), 1u);
}

TEST_F(ExcelCellPageTest, GetActiveCellChangesNothingWhenExcelCannotBeReached) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        Set(page, IDC_PATH, L"/x/book.xls");
        program().SetInstalled(false);
        Click(page, IDC_ACTIVE_CELL);
        EXPECT_EQ(Messages(), (std::vector<std::wstring>{L"Invalid class string\r\n", L"Failed to get an instance of Excel!"}));
        EXPECT_EQ(Boxes(page), L"/x/book.xls|||");
        program().SetInstalled(true);
        program().Start(true);
        program().SetBusy(true);
        Click(page, IDC_ACTIVE_CELL);
        EXPECT_EQ(Messages(), (std::vector<std::wstring>{L"Call was rejected by callee.\r\n",
                                                         L"Call was rejected by callee.\r\n",
                                                         L"Failed to get an instance of Excel!"}));
        EXPECT_EQ(Boxes(page), L"/x/book.xls|||");
        ExpectReleased();
    });
}

TEST_F(ExcelCellPageTest, BrowsingOpensTheWorkbookAndTakesItsSheetAndCell) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        m_driver.file = std::nullopt;  // cancelled: nothing changes
        Click(page, IDC_BROWSE);
        ASSERT_EQ(m_driver.fileDialogs.size(), 1u);
        EXPECT_EQ(Boxes(page), L"|||");
        EXPECT_FALSE(program().running());

        m_driver.file = Workbook("cells.xls");
        Click(page, IDC_BROWSE);
        EXPECT_EQ(Boxes(page), Workbook("cells.xls") + L"|Second|C|7");
        ExpectReleased();
        ASSERT_EQ(program().workbooks().size(), 1u);
        EXPECT_FALSE(program().workbooks()[0]->readOnly);  // browsing opens for writing
        // The same workbook, open from that very path: nothing new is opened.
        program().Select(L"Data", L"E3");
        Click(page, IDC_BROWSE);
        EXPECT_EQ(Boxes(page), Workbook("cells.xls") + L"|Data|E|3");
        EXPECT_EQ(program().workbooks().size(), 1u);
        EXPECT_TRUE(Messages().empty());
    });
}

TEST_F(ExcelCellPageTest, BrowsingToAWorkbookOfTheSameNameKeepsTheFormerCell) {
    program().Start(true);
    program().OpenFile(kWorkbooks / "cells.xlsx", false);
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        m_driver.file = Workbook("cells.xlsx");
        Click(page, IDC_BROWSE);
        EXPECT_EQ(Boxes(page), Workbook("cells.xlsx") + L"|Second|C|7");
        m_driver.file = Workbook("same/cells.xlsx");
        Click(page, IDC_BROWSE);
        std::vector<std::wstring> messages = Messages();
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_EQ(messages[0].substr(0, 42), L"A document with the name 'cells.xlsx' is a");
        EXPECT_EQ(Boxes(page), Workbook("same/cells.xlsx") + L"|Second|C|7");
        ExpectReleased();
    });
    EXPECT_EQ(program().workbooks().size(), 1u);
}

TEST_F(ExcelCellPageTest, AStoredFieldShowsItsCellInExcelOpenedForReading) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        StoredField stored(Workbook("cells.xlsx") + L":Data:$AB$12");
        EXPECT_TRUE(page.LoadField(&stored.field));
        EXPECT_EQ(Boxes(page), Workbook("cells.xlsx") + L"|Data|AB|12");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell " + Workbook("cells.xlsx") + L":Data:$AB$12>%");
        ExpectReleased();
        EXPECT_TRUE(Messages().empty());
    });
    ASSERT_EQ(program().workbooks().size(), 1u);
    EXPECT_TRUE(program().workbooks()[0]->readOnly);
    EXPECT_TRUE(program().visible());
    EXPECT_EQ(program().Describe().find(L"active: \"cells.xlsx\", sheet \"Data\", cell AB12") != std::wstring::npos, true)
        << cadhost::ToUtf8(program().Describe());
}

TEST_F(ExcelCellPageTest, AFieldWhoseSheetIsGoneOpensTheWorkbookAndSelectsNothing) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        StoredField stored(Workbook("cells.xlsx") + L":Gone:$B$2");
        EXPECT_TRUE(page.LoadField(&stored.field));
        EXPECT_EQ(Boxes(page), Workbook("cells.xlsx") + L"|Gone|B|2");
        ExpectReleased();
    });
    EXPECT_TRUE(Messages().empty());
    ASSERT_EQ(program().workbooks().size(), 1u);
    EXPECT_NE(program().Describe().find(L"sheet \"Second\", cell C7"), std::wstring::npos);
}

TEST_F(ExcelCellPageTest, AFieldWhoseWorkbookIsGoneLoadsWithoutExcel) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        StoredField stored(Workbook("gone.xlsx") + L":Data:$B$2");
        EXPECT_TRUE(page.LoadField(&stored.field));
        EXPECT_EQ(Boxes(page), Workbook("gone.xlsx") + L"|Data|B|2");
    });
    EXPECT_TRUE(Messages().empty());
    EXPECT_FALSE(program().running());
}

TEST_F(ExcelCellPageTest, IncompleteDataChangesNothingAndAnUnreadableCellShowsRowZero) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        Set(page, IDC_PATH, L"kept");
        for (const wchar_t* data : {L"", L"book.xlsx:$A$1", L":Sheet:$A$1", L"book.xlsx::$A$1", L"book.xlsx:Sheet:"}) {
            StoredField stored(data);
            EXPECT_FALSE(page.LoadField(&stored.field)) << cadhost::ToUtf8(data);
            EXPECT_EQ(Boxes(page), L"kept|||") << cadhost::ToUtf8(data);
        }
        AcDbField bare(L"%<\\ExcelCell >%");
        EXPECT_FALSE(page.LoadField(&bare));
        EXPECT_FALSE(page.LoadField(nullptr));
        // The drive letter's colon stays in the path: the text is cut from the end.
        StoredField drive(L"C:\\data\\gone.xls:Sheet1:B3");
        EXPECT_TRUE(page.LoadField(&drive.field));
        EXPECT_EQ(Boxes(page), L"C:\\data\\gone.xls|Sheet1|A|0");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell C:\\data\\gone.xls:Sheet1:$A$0>%");
    });
    EXPECT_FALSE(program().running());
}
