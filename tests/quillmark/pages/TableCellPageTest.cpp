// The Table Cell page inside the Field dialog: cell references and their
// message, the code of the page, the cell name through the hook, and a
// stored field loaded into the page.
#include <dbapserv.h>

#include <filesystem>

#include "HostResource.h"
#include "host/fields/FieldTestSupport.h"
#include "pages/AsdkTableCellFieldOptionDialog.h"
#include "plugin/hook/AsdkCustomOptionDialogHook.h"
#include "support/ModulePagesTest.h"
#include "ui/UserInput.h"

namespace {

// A hook that counts how often a page asks it to bring the code up to date.
class CountingHook : public AsdkCustomOptionDialogHook {
public:
    BOOL UpdateFieldCode() override {
        ++updates;
        return AsdkCustomOptionDialogHook::UpdateFieldCode();
    }
    int updates = 0;
};

class TableCellPageTest : public qmtest::ModulePagesTest {
protected:
    CAcFdUiFieldDialogHook& Hook() override { return m_hook; }

    // Runs the Field dialog on the Table Cell page; the test acts on the page.
    void OnPage(std::function<void(CAcFdUiFieldDialog&, AsdkTableCellFieldOptionDialog&)> act,
                AcDbField* edited = nullptr) {
        CAcFdUiFieldDialog dialog(acdbHostApplicationServices()->workingDatabase(), 0, edited);
        m_driver.onModal = [&](HWND) {
            if (!edited) {
                auto* list = static_cast<CListBox*>(dialog.GetDlgItem(IDC_ACFD_FIELD_LIST));
                int index = list->FindStringExact(-1, L"QM Table Cell");
                ASSERT_GE(index, 0);
                ASSERT_EQ(cadhost::ui::UserChoose(list->m_hWnd, index), L"");
            }
            auto* page = dynamic_cast<AsdkTableCellFieldOptionDialog*>(m_hook.Page(QM_FIELD_TABLE_CELL));
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

    CountingHook m_hook;
};

TEST_F(TableCellPageTest, CellReferencesCountFromOneAndReachToZZ) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkTableCellFieldOptionDialog& page) {
        struct Case {
            int row, column;
            const wchar_t* reference;
        };
        const Case cases[] = {{1, 1, L"$A$1"},     {3, 28, L"$AB$3"},  {1, 26, L"$Z$1"},   {7, 27, L"$AA$7"},
                              {10, 52, L"$AZ$10"}, {2, 53, L"$BA$2"},  {99, 702, L"$ZZ$99"}, {1, 703, L""},
                              {123456, 2, L"$B$123456"}};
        for (const Case& c : cases)
            EXPECT_EQ(page.MakeCellReference(c.row, c.column).str(), c.reference) << c.row << "," << c.column;
        EXPECT_TRUE(m_driver.boxes.empty());  // none of these is below 1
    });
}

TEST_F(TableCellPageTest, ARowOrColumnBelowOneSaysSoAndGivesNothing) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkTableCellFieldOptionDialog& page) {
        const int cases[][2] = {{0, 1}, {1, 0}, {-3, 5}, {5, -1}, {0, 0}};
        for (const auto& c : cases) {
            m_driver.boxes.clear();
            EXPECT_EQ(page.MakeCellReference(c[0], c[1]).str(), L"") << c[0] << "," << c[1];
            ASSERT_EQ(m_driver.boxes.size(), 1u);
            EXPECT_EQ(m_driver.boxes[0].text, L"The row index and column index should be a positive number.");
            EXPECT_EQ(m_driver.boxes[0].caption, L"Norvo Quillmark");
            EXPECT_EQ(m_driver.boxes[0].type & 0xF, static_cast<UINT>(MB_OK));
        }
    });
}

TEST_F(TableCellPageTest, TheCellNameGoesThroughTheHookUnlessTheUserTypedACode) {
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTableCellFieldOptionDialog& page) {
        // A new page: nothing behind the evaluator id and its blank.
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\TableCell >%");
        int before = m_hook.updates;
        page.SetCellName(L"Table(<3C>).$AB$3");
        EXPECT_EQ(m_hook.updates, before + 1);
        EXPECT_EQ(Text(page, IDC_CELL_NAME), L"Table(<3C>).$AB$3");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\TableCell Table(<3C>).$AB$3>%");
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TableCell Table(<3C>).$AB$3>%");
        // Text typed into the code box wins over the page.
        ASSERT_EQ(cadhost::ui::UserType(dialog.GetFieldCodeEditCtrl()->m_hWnd, L"%<\\TableCell typed>%"), L"");
        page.SetCellName(L"Table(<3C>).$A$1");
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TableCell typed>%");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\TableCell Table(<3C>).$A$1>%");
        // And at every later change: the text given back stays the user's.
        EXPECT_TRUE(dialog.IsFieldCodeDirty());
        page.SetCellName(L"Table(<3C>).$B$2");
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TableCell typed>%");
        page.SetCellName(L"");
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\TableCell >%");
    });
}

TEST_F(TableCellPageTest, LoadingAStoredFieldShowsItsCellAndValue) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkTableCellFieldOptionDialog& page) {
        page.SetCellName(L"Table(<1F>).$C$4");
        EXPECT_FALSE(page.LoadField(nullptr));
        // No data item, or one that is not a text: the page stays as it was.
        AcDbField bare(L"%<\\TableCell Table(<3C>).$A$1>%");
        EXPECT_FALSE(page.LoadField(&bare));
        AcDbField number(L"%<\\TableCell Table(<3C>).$A$1>%");
        AcFdFieldValue whole(static_cast<Adesk::Int32>(7));
        number.setData(L"TableCell Data", &whole);
        EXPECT_FALSE(page.LoadField(&number));
        EXPECT_EQ(Text(page, IDC_CELL_NAME), L"Table(<1F>).$C$4");
        EXPECT_EQ(Text(page, IDC_PREVIEW), L"");

        // A field whose evaluator stored the reference and a value.
        AcDbField stored(L"%<\\TableCell Table(<3C>).$B$2>%");
        AcFdFieldValue reference(L"Table(<3C>).$B$2");
        stored.setData(L"TableCell Data", &reference);
        int before = m_hook.updates;
        EXPECT_TRUE(page.LoadField(&stored));
        EXPECT_EQ(m_hook.updates, before + 1);
        EXPECT_EQ(Text(page, IDC_CELL_NAME), L"Table(<3C>).$B$2");
        EXPECT_EQ(Text(page, IDC_PREVIEW), L"");  // never evaluated: no value

        // A value that carries formatting codes shows without them.
        qmtest::ScriptedEvaluator cell(L"TableCell", qmtest::Succeeds(L"{\\fArial|b1;12.5}\\Pk\\~W"));
        qmtest::ScriptedLoader loader;
        loader.Add(&cell);
        ASSERT_EQ(host().fieldEngine().registerEvaluatorLoader(&loader), Acad::eOk);
        EXPECT_EQ(stored.evaluate(AcDbField::kPreview, acdbHostApplicationServices()->workingDatabase()), Acad::eOk);
        EXPECT_TRUE(page.LoadField(&stored));
        EXPECT_EQ(Text(page, IDC_PREVIEW), L"12.5\nk W");
        host().fieldEngine().unregisterEvaluatorLoader(&loader);
    });
}

TEST_F(TableCellPageTest, TheDialogComesBackWhateverThePickGives) {
    std::wstring error;
    ASSERT_TRUE(host().OpenDrawing(std::filesystem::path(QM_SOURCE_DIR) / "examples" / "tour.dxf", error))
        << cadhost::ToUtf8(error);
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTableCellFieldOptionDialog& page) {
        auto pick = [&] {
            page.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_PICK_CELL, BN_CLICKED), 0);
            EXPECT_FALSE(dialog.InEditorCommand());
            EXPECT_TRUE(dialog.IsWindowVisible());
            EXPECT_EQ(host().input().pending(), 0u);  // the page took one answer
        };
        host().input().Point(68.75, 17.5, 0);
        pick();
        EXPECT_EQ(Text(page, IDC_CELL_NAME), L"Table(<3C>).$AB$3");
        EXPECT_EQ(Text(page, IDC_PREVIEW), L"12.5 kW");
        host().input().Escape();
        pick();
        EXPECT_EQ(Text(page, IDC_CELL_NAME), L"Table(<3C>).$AB$3");
        host().input().Point(-5, -5, 0);
        pick();
        EXPECT_EQ(Text(page, IDC_CELL_NAME), L"");
        EXPECT_EQ(Text(page, IDC_PREVIEW), L"");
        // Each pick asked with the page's prompt.
        std::string output = TakeOutput();
        size_t prompts = 0;
        for (size_t at = output.find("Select table cell:"); at != std::string::npos;
             at = output.find("Select table cell:", at + 1))
            ++prompts;
        EXPECT_EQ(prompts, 3u) << output;
    });
}

}  // namespace
