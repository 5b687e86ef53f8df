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
#include "pages/PathType.h"
#include "plugin/hook/AsdkCustomOptionDialogHook.h"
#include "services/Registry.h"
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
        CRegistry::SetRegistryKey(HKEY_CURRENT_USER, L"Norvo\\NorvoTest");
        program().Reset();
    }
    void TearDown() override {
        program().Reset();
        CRegistry::SetRegistryKey(nullptr, L"");
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
    // The drawing saved in a folder of the test, so that it has a path;
    // the workbooks it names are copied beside it.
    std::wstring SaveDrawing() {
        std::filesystem::path site = m_folder.path() / "site";
        std::filesystem::create_directories(site / "data");
        std::filesystem::copy_file(kWorkbooks / "cells.xlsx", site / "data" / "cells.xlsx",
                                   std::filesystem::copy_options::overwrite_existing);
        std::wstring error;
        EXPECT_TRUE(host().SaveDrawing(site / "plan.dxf", error)) << cadhost::ToUtf8(error);
        return cadhost::FromUtf8(site.string());
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
        // A colon in the path stays there: the text is cut from the end.
        StoredField colon(L"/data/a:b/gone.xls:Sheet1:B3");
        EXPECT_TRUE(page.LoadField(&colon.field));
        EXPECT_EQ(Boxes(page), L"/data/a:b/gone.xls|Sheet1|A|0");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell /data/a:b/gone.xls:Sheet1:$A$0>%");
    });
    EXPECT_FALSE(program().running());
}

TEST_F(ExcelCellPageTest, BrowsingUsesTheExcelFilterAndPutsTheFileInFrontOfTheStoredList) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        m_driver.file = Workbook("cells.xlsx");
        Click(page, IDC_BROWSE);
        ASSERT_EQ(m_driver.fileDialogs.size(), 1u);
        EXPECT_TRUE(m_driver.fileDialogs[0].open);
        EXPECT_EQ(m_driver.fileDialogs[0].filter, L"Microsoft Excel Files(*.xls)|*.xls||");
        EXPECT_EQ(page.RecentFiles()[0].str(), Workbook("cells.xlsx"));
        EXPECT_EQ(CRegistry::GetProfileString(QM_EXCEL_RECENT_SECTION, L"File1", L"-").str(), Workbook("cells.xlsx"));
        EXPECT_EQ(CRegistry::GetProfileString(QM_EXCEL_RECENT_SECTION, L"File9", L"absent").str(), L"");
        // Get Active Cell does not touch the list.
        Click(page, IDC_ACTIVE_CELL);
        EXPECT_EQ(page.RecentFiles()[1].str(), L"");
        ExpectReleased();
    });
}

TEST_F(ExcelCellPageTest, ARecentFileThatIsGoneEmptiesTheOtherBoxesAndStaysInTheList) {
    CRegistry::WriteProfileString(QM_EXCEL_RECENT_SECTION, L"File1", Workbook("gone.xlsx").c_str());
    CRegistry::WriteProfileString(QM_EXCEL_RECENT_SECTION, L"File2", Workbook("cells.xls").c_str());
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        // The second entry opens its workbook and takes its sheet and cell.
        page.SendMessage(WM_COMMAND, MAKEWPARAM(ID_RECENT_FILE_FIRST + 1, 0), 0);
        EXPECT_EQ(Boxes(page), Workbook("cells.xls") + L"|Second|C|7");
        ExpectReleased();
        page.SendMessage(WM_COMMAND, MAKEWPARAM(ID_RECENT_FILE_FIRST, 0), 0);
        ASSERT_EQ(m_driver.boxes.size(), 1u);
        EXPECT_EQ(m_driver.boxes[0].text, L"Cannot find " + Workbook("gone.xlsx") + L".");
        EXPECT_EQ(m_driver.boxes[0].caption, L"Norvo Quillmark");
        EXPECT_EQ(m_driver.boxes[0].type, static_cast<UINT>(MB_OK | MB_ICONINFORMATION));
        m_driver.boxes.clear();
        EXPECT_EQ(Boxes(page), Workbook("gone.xlsx") + L"|||");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell >%");
        EXPECT_EQ(page.RecentFiles()[0].str(), Workbook("gone.xlsx"));  // the order stays
        EXPECT_EQ(page.RecentFiles()[1].str(), Workbook("cells.xls"));
    });
    EXPECT_EQ(program().workbooks().size(), 1u);
}

TEST_F(ExcelCellPageTest, RelativePathOnAnIncompletePageMakesNoPathAndNoMessage) {
    std::wstring site = SaveDrawing();
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        ASSERT_EQ(cadhost::ui::UserChoose(page.GetDlgItem(IDC_PATH_TYPE)->m_hWnd, 1), L"");
        ASSERT_EQ(cadhost::ui::UserType(page.GetDlgItem(IDC_PATH)->m_hWnd, L"C:\\data\\book.xls"), L"");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell >%");
        EXPECT_TRUE(Messages().empty());
        // The path relative to the drawing once all four are filled.
        Set(page, IDC_PATH, (site + L"/data/cells.xlsx").c_str());
        Set(page, IDC_WORKSHEET, L"Data");
        Set(page, IDC_COLUMN, L"B");
        EXPECT_TRUE(Messages().empty());
        Set(page, IDC_ROW, L"3");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell ./data/cells.xlsx:Data:$B$3>%");
        EXPECT_EQ(Text(page, IDC_PATH), site + L"/data/cells.xlsx");  // the box keeps the full path
    });
}

TEST_F(ExcelCellPageTest, AStoredRelativePathShowsInFullAndComposesRelativeAgain) {
    std::wstring site = SaveDrawing();
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkExcelRangeOptionDialog& page) {
        StoredField stored(L"./data/cells.xlsx:Data:$E$2");
        EXPECT_TRUE(page.LoadField(&stored.field));
        EXPECT_EQ(Boxes(page), site + L"/data/cells.xlsx|Data|E|2");
        EXPECT_EQ(Text(page, IDC_PATH_TYPE), L"Relative Path");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell ./data/cells.xlsx:Data:$E$2>%");
        EXPECT_EQ(dialog.GetFieldCode().str(), page.GetFieldCode().str());
        ExpectReleased();
        // A workbook never saved has a path without a folder: read back, it
        // counts as relative and comes back joined to the drawing's folder.
        StoredField unsaved(L"Book1:Sheet1:$A$1");
        EXPECT_TRUE(page.LoadField(&unsaved.field));
        EXPECT_EQ(Boxes(page), site + L"/Book1|Sheet1|A|1");
        EXPECT_EQ(Text(page, IDC_PATH_TYPE), L"Relative Path");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\ExcelCell ./Book1:Sheet1:$A$1>%");
        EXPECT_TRUE(Messages().empty());
    });
    // The stored workbook was opened for reading with the cell selected.
    ASSERT_EQ(program().workbooks().size(), 1u);
    EXPECT_TRUE(program().workbooks()[0]->readOnly);
    EXPECT_NE(program().Describe().find(L"sheet \"Data\", cell E2"), std::wstring::npos);
}

TEST_F(ExcelCellPageTest, ARelativePathInADrawingNeverSavedChangesNothing) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkExcelRangeOptionDialog& page) {
        Set(page, IDC_PATH, L"kept");
        StoredField stored(L"./data/cells.xlsx:Data:$E$2");
        EXPECT_FALSE(page.LoadField(&stored.field));
        EXPECT_EQ(Boxes(page), L"kept|||");
        EXPECT_EQ(Text(page, IDC_PATH_TYPE), L"Full Path");
        // Choosing "Relative Path" there is refused with the message.
        ASSERT_EQ(cadhost::ui::UserChoose(page.GetDlgItem(IDC_PATH_TYPE)->m_hWnd, 1), L"");
        EXPECT_EQ(Messages(), std::vector<std::wstring>{QM_MESSAGE_SAVE_DRAWING_FIRST});
        EXPECT_EQ(Text(page, IDC_PATH_TYPE), L"Full Path");
    });
    EXPECT_FALSE(program().running());
}
