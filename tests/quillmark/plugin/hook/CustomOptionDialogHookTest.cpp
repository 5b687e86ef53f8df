// The module's hook in the host's Field dialog: its lists, its pages' life,
// the field code between page and code box, the field to edit, and the
// field built at OK, with and without evaluators.
#include <acdocman.h>
#include <dbapserv.h>
#include <dbsymtb.h>

#include <set>

#include "HostResource.h"
#include "pages/AsdkAreaOptionDialog.h"
#include "pages/AsdkBlockCntOptionDialog.h"
#include "pages/AsdkExcelRangeOptionDialog.h"
#include "pages/AsdkLengthOptionDialog.h"
#include "pages/AsdkTableCellFieldOptionDialog.h"
#include "pages/AsdkTextFileFieldOptionDialog.h"
#include "plugin/ModuleState.h"
#include "plugin/hook/AsdkCustomOptionDialogHook.h"
#include "support/ModulePagesTest.h"
#include "ui/UserInput.h"
#include "ui/resources/ModuleResources.h"

namespace {

const FieldTypeId kSix[] = {QM_FIELD_LENGTH, QM_FIELD_AREA, QM_FIELD_BLOCK_COUNT,
                            QM_FIELD_TEXT_FILE, QM_FIELD_EXCEL_CELL, QM_FIELD_TABLE_CELL};

std::vector<std::wstring> Texts(const CStringArray& array) {
    std::vector<std::wstring> out;
    for (INT_PTR i = 0; i < array.GetSize(); ++i) out.push_back(array[i].str());
    return out;
}

std::vector<UINT> Ids(const CUIntArray& array) {
    std::vector<UINT> out;
    for (INT_PTR i = 0; i < array.GetSize(); ++i) out.push_back(array[i]);
    return out;
}

// The module's code in the test program: its templates are given to the
// program's own handle, which stands for the module's instance.
class HookTest : public qmtest::ModulePagesTest {
protected:
    CAcFdUiFieldDialogHook& Hook() override { return m_hook; }
    AcDbDatabase* Db() { return acdbHostApplicationServices()->workingDatabase(); }
    bool Load(const char* module) {
        const std::filesystem::path bin = QM_OUTPUT_DIR;
        return host().linker().loadModule(cadhost::FromUtf8((bin / module).string()).c_str(), true);
    }
    // Runs the Field dialog; the test acts while it is open.
    INT_PTR Run(std::function<void(CAcFdUiFieldDialog&)> act, AcDbField* edited = nullptr) {
        CAcFdUiFieldDialog dialog(Db(), 0, edited);
        m_driver.onModal = [&](HWND) { act(dialog); };
        INT_PTR result = dialog.DoModal();
        delete dialog.TakeField();
        return result;
    }
    static void Choose(CAcFdUiFieldDialog& dialog, const wchar_t* title) {
        auto* list = static_cast<CListBox*>(dialog.GetDlgItem(IDC_ACFD_FIELD_LIST));
        int index = list->FindStringExact(-1, title);
        ASSERT_GE(index, 0) << CString(title).ToUtf8();
        ASSERT_EQ(cadhost::ui::UserChoose(list->m_hWnd, index), L"");
    }
    static void Type(CAcFdUiFieldDialog& dialog, const wchar_t* text) {
        ASSERT_EQ(cadhost::ui::UserType(dialog.GetFieldCodeEditCtrl()->m_hWnd, text), L"");
    }
    static void Press(CAcFdUiFieldDialog& dialog, int id) {
        dialog.SendMessage(WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0);
    }
    int ModelSpaceEntities() {
        AcDbBlockTableRecord* space = nullptr;
        if (acdbOpenObject(space, Db()->modelSpaceId(), AcDb::kForRead) != Acad::eOk) return -1;
        AcDbBlockTableRecordIterator* it = nullptr;
        int count = 0;
        if (space->newIterator(it) == Acad::eOk) {
            for (; !it->done(); it->step()) ++count;
            delete it;
        }
        space->close();
        return count;
    }

    AsdkCustomOptionDialogHook m_hook;
};

TEST_F(HookTest, ListsItsEvaluatorIdsCategoryAndTypesInTheirOrders) {
    CStringArray ids;
    EXPECT_EQ(m_hook.GetEvaluatorIds(ids), 6);
    EXPECT_EQ(Texts(ids), (std::vector<std::wstring>{L"AcArea", L"AcLength", L"AcBlockCount", L"TextField",
                                                     L"ExcelCell", L"TableCell"}));
    for (UINT context : {0u, 1u, 0xFFFFFFFFu}) {
        CStringArray names;
        CUIntArray categories;
        EXPECT_EQ(m_hook.GetCategoriesFor(context, names, categories), 1);
        EXPECT_EQ(Texts(names), std::vector<std::wstring>{L"Quillmark"});
        EXPECT_EQ(Ids(categories), std::vector<UINT>{72345});
    }
    for (UINT category : {72345u, 0xFFFFFFFFu}) {
        CStringArray names;
        CUIntArray types;
        BOOL sort = FALSE;
        EXPECT_EQ(m_hook.GetFieldsFor(category, 3, names, types, sort), 1);
        EXPECT_EQ(Texts(names), (std::vector<std::wstring>{L"QM Objects Length", L"QM Objects Area", L"QM Block Count",
                                                           L"QM Text File", L"QM Excel Cell", L"QM Table Cell"}));
        EXPECT_EQ(Ids(types), (std::vector<UINT>{72344, 72343, 72342, 72341, 72340, 72339}));
        EXPECT_EQ(sort, 1);
    }
    for (UINT category : {0u, 1u, 72344u, 72346u, 0xFFFFFFFEu}) {
        CStringArray names;
        CUIntArray types;
        BOOL sort = 7;
        EXPECT_EQ(m_hook.GetFields(category, names, types, sort), 1) << category;
        EXPECT_TRUE(names.IsEmpty());
        EXPECT_TRUE(types.IsEmpty());
        EXPECT_EQ(sort, 7);
    }
}

TEST_F(HookTest, PagesLiveFromBeginToEndOfTheDialog) {
    CAcFdUiFieldOptionDialog* page = reinterpret_cast<CAcFdUiFieldOptionDialog*>(&m_hook);
    EXPECT_TRUE(m_hook.GetOptionDialog(12345, page));
    EXPECT_EQ(page, reinterpret_cast<CAcFdUiFieldOptionDialog*>(&m_hook));  // an unknown id leaves it alone
    EXPECT_TRUE(m_hook.GetOptionDialog(QM_FIELD_AREA, page));
    EXPECT_EQ(page, nullptr);  // no dialog, no page

    CAcFdUiFieldDialog* seen = nullptr;
    Run([&](CAcFdUiFieldDialog& dialog) {
        seen = &dialog;
        EXPECT_EQ(m_hook.FieldDialog(), &dialog);
        std::set<CAcFdUiFieldOptionDialog*> pages;
        for (FieldTypeId id : kSix) {
            CAcFdUiFieldOptionDialog* p = nullptr;
            EXPECT_TRUE(m_hook.GetOptionDialog(id, p));
            ASSERT_NE(p, nullptr) << id;
            EXPECT_EQ(p->GetFieldDialog(), &dialog);
            EXPECT_EQ(p->GetFieldDialogHook(), &m_hook);
            EXPECT_EQ(p->m_hWnd, nullptr);  // only objects until shown
            pages.insert(p);
        }
        EXPECT_EQ(pages.size(), 6u);
        Press(dialog, IDCANCEL);
    });
    ASSERT_NE(seen, nullptr);
    for (FieldTypeId id : kSix) EXPECT_EQ(m_hook.Page(id), nullptr) << id;
    EXPECT_EQ(m_hook.FieldDialog(), seen);  // the dialog pointer is not cleared

    // Also when every page had a window.
    Run([&](CAcFdUiFieldDialog& dialog) {
        for (const wchar_t* title : {L"QM Objects Length", L"QM Objects Area", L"QM Block Count", L"QM Text File",
                                     L"QM Excel Cell", L"QM Table Cell"})
            Choose(dialog, title);
        for (FieldTypeId id : kSix) EXPECT_NE(m_hook.Page(id)->m_hWnd, nullptr) << id;
        Press(dialog, IDCANCEL);
    });
    for (FieldTypeId id : kSix) EXPECT_EQ(m_hook.Page(id), nullptr) << id;
}

TEST_F(HookTest, PopUpTemplatesBecomeChildrenOfTheDialog) {
    Run([&](CAcFdUiFieldDialog& dialog) {
        struct Case {
            const wchar_t* title;
            FieldTypeId id;
            UINT templateId;
        } cases[] = {{L"QM Objects Length", QM_FIELD_LENGTH, 102}, {L"QM Objects Area", QM_FIELD_AREA, 104},
                     {L"QM Block Count", QM_FIELD_BLOCK_COUNT, 105},  {L"QM Text File", QM_FIELD_TEXT_FILE, 216},
                     {L"QM Excel Cell", QM_FIELD_EXCEL_CELL, 213},    {L"QM Table Cell", QM_FIELD_TABLE_CELL, 215}};
        for (const Case& c : cases) {
            Choose(dialog, c.title);
            CAcFdUiFieldOptionDialog* page = dialog.GetOptionDialog();
            ASSERT_EQ(page, m_hook.Page(c.id));
            DWORD style = page->GetStyle();
            EXPECT_TRUE(style & WS_CHILD) << c.templateId;
            EXPECT_FALSE(style & (WS_POPUP | WS_THICKFRAME)) << c.templateId;
            EXPECT_EQ(page->GetParent(), &dialog) << c.templateId;
            EXPECT_TRUE(page->IsWindowVisible()) << c.templateId;
            EXPECT_EQ(page->m_nIDHelp, c.templateId);
        }
        Press(dialog, IDCANCEL);
    });
}

TEST_F(HookTest, AnEmptyPageComposesTheShortFormOfItsType) {
    Run([&](CAcFdUiFieldDialog& dialog) {
        struct Case {
            FieldTypeId id;
            const wchar_t* code;
        } cases[] = {{QM_FIELD_LENGTH, L"%<\\AcLength Object(<>)>%"}, {QM_FIELD_AREA, L"%<\\AcArea Object(<>)>%"},
                     {QM_FIELD_BLOCK_COUNT, L"%<\\AcBlockCount >%"},  {QM_FIELD_TEXT_FILE, L"%<\\TextField >%"},
                     {QM_FIELD_EXCEL_CELL, L"%<\\ExcelCell >%"},      {QM_FIELD_TABLE_CELL, L"%<\\TableCell >%"},
                     {12345, L""}};
        for (const Case& c : cases) EXPECT_EQ(m_hook.ComposeFieldCode(c.id), c.code) << c.id;
        // The table cell page composes the reference in its box.
        Choose(dialog, L"QM Table Cell");
        dialog.GetOptionDialog()->SetDlgItemText(IDC_CELL_NAME, L"Table(<3A7>).$B$3");
        EXPECT_EQ(m_hook.ComposeFieldCode(QM_FIELD_TABLE_CELL), L"%<\\TableCell Table(<3A7>).$B$3>%");
        Press(dialog, IDCANCEL);
    });
}

TEST_F(HookTest, TypedTextWinsUnlessItIsBlank) {
    Run([&](CAcFdUiFieldDialog& dialog) {
        dialog.SetFieldCode(L"%<\\Program x>%");  // the program's text is not the user's
        EXPECT_EQ(m_hook.ComposeFieldCode(QM_FIELD_TEXT_FILE), L"%<\\TextField >%");
        Type(dialog, L"  %<\\TextField C:\\typed.txt>% \t");
        EXPECT_EQ(m_hook.ComposeFieldCode(QM_FIELD_TEXT_FILE), L"%<\\TextField C:\\typed.txt>%");
        EXPECT_EQ(m_hook.ComposeFieldCode(QM_FIELD_AREA), L"%<\\TextField C:\\typed.txt>%");
        Type(dialog, L" \t ");
        EXPECT_TRUE(dialog.IsFieldCodeDirty());
        EXPECT_EQ(m_hook.ComposeFieldCode(QM_FIELD_TEXT_FILE), L"%<\\TextField >%");
        Press(dialog, IDCANCEL);
    });
}

TEST_F(HookTest, UpdateFieldCodeNeedsAChosenType) {
    Run([&](CAcFdUiFieldDialog& dialog) {
        Type(dialog, L"typed by hand");
        EXPECT_FALSE(m_hook.UpdateFieldCode());
        EXPECT_EQ(dialog.GetFieldCode(), L"typed by hand");
        EXPECT_TRUE(dialog.IsFieldCodeDirty());

        Choose(dialog, L"QM Excel Cell");
        Type(dialog, L"");
        EXPECT_TRUE(m_hook.UpdateFieldCode());
        EXPECT_EQ(dialog.GetFieldCode(), L"%<\\ExcelCell >%");
        EXPECT_FALSE(dialog.IsFieldCodeDirty());
        Press(dialog, IDCANCEL);
    });
}

TEST_F(HookTest, AFieldToEditChoosesItsTypeByItsEvaluatorInAnyCase) {
    struct Case {
        const wchar_t* code;
        UINT type;  // ACFDUI_NO_FIELD: none
    } cases[] = {{L"%<\\aclength Object(<1>)>%", QM_FIELD_LENGTH}, {L"%<\\ACAREA Object(<1>)>%", QM_FIELD_AREA},
                 {L"%<\\acBlockCount >%", QM_FIELD_BLOCK_COUNT},    {L"%<\\textfield a.txt>%", QM_FIELD_TEXT_FILE},
                 {L"%<\\TABLECELL >%", QM_FIELD_TABLE_CELL},        {L"%<\\excelcell >%", QM_FIELD_EXCEL_CELL},
                 {L"%<\\AcVar Date>%", ACFDUI_NO_FIELD}};
    for (const Case& c : cases) {
        AcDbField field(c.code);
        Run(
            [&](CAcFdUiFieldDialog& dialog) {
                UINT type = 0, category = 0;
                dialog.GetCurrentField(&type, &category);
                EXPECT_EQ(type, c.type) << CString(c.code).ToUtf8();
                if (c.type != ACFDUI_NO_FIELD) {
                    EXPECT_EQ(category, QM_FIELD_CATEGORY);
                    EXPECT_EQ(dialog.GetOptionDialog(), m_hook.Page(c.type));
                }
                // A field never evaluated has no data item: the Block Count
                // page stays as it opened, with the code it composed then.
                if (c.type == QM_FIELD_BLOCK_COUNT) EXPECT_EQ(dialog.GetFieldCode(), L"%<\\AcBlockCount >%");
                else EXPECT_EQ(dialog.GetFieldCode(), CString(field.getFieldCode(17)));
                Press(dialog, IDCANCEL);
            },
            &field);
    }
}

TEST_F(HookTest, SetFieldToEditRefusesWhatIsNotItsOwn) {
    AcDbField other(L"%<\\AcVar Date>%");
    AcDbField length(L"%<\\AcLength Object(<1>)>%");
    Run([&](CAcFdUiFieldDialog& dialog) {
        EXPECT_FALSE(m_hook.SetFieldToEdit(nullptr));
        EXPECT_FALSE(m_hook.SetFieldToEdit(&other));
        EXPECT_EQ(dialog.GetCurrentField(nullptr, nullptr), ACFDUI_NO_FIELD);
        EXPECT_TRUE(m_hook.SetFieldToEdit(&length));
        EXPECT_EQ(dialog.GetCurrentField(nullptr, nullptr), QM_FIELD_LENGTH);
        Press(dialog, IDCANCEL);
    });
}

TEST_F(HookTest, WithoutEvaluatorsNoTypeGivesAFieldAndTheDialogStaysOpen) {
    int before = ModelSpaceEntities();
    for (const wchar_t* title : {L"QM Objects Length", L"QM Objects Area", L"QM Block Count", L"QM Text File",
                                 L"QM Excel Cell", L"QM Table Cell"}) {
        m_driver.boxes.clear();
        INT_PTR result = Run([&](CAcFdUiFieldDialog& dialog) {
            Choose(dialog, title);
            HWND other = dialog.GetDlgItem(IDC_ACFD_CATEGORY)->m_hWnd;
            ::SetFocus(other);
            Press(dialog, IDOK);
            EXPECT_FALSE(host().desktop().ModalEnded(dialog.m_hWnd));
            EXPECT_EQ(::GetFocus(), dialog.GetFieldCodeEditCtrl()->m_hWnd);
            Press(dialog, IDCANCEL);
        });
        EXPECT_EQ(result, IDCANCEL);
        ASSERT_EQ(m_driver.boxes.size(), 1u) << CString(title).ToUtf8();
        EXPECT_EQ(m_driver.boxes[0].text, L"Evaluator is not found to evaluate the field");
    }
    EXPECT_EQ(ModelSpaceEntities(), before);
}

TEST_F(HookTest, AFailingEvaluatorGivesInvalidFieldCode) {
    ASSERT_TRUE(Load("QmFailingEvaluators.dbx"));
    Run([&](CAcFdUiFieldDialog& dialog) {
        Choose(dialog, L"QM Block Count");
        AcDbField* field = reinterpret_cast<AcDbField*>(&m_hook);
        EXPECT_FALSE(m_hook.CreateField(QM_FIELD_BLOCK_COUNT, field));
        EXPECT_EQ(field, nullptr);
        Press(dialog, IDOK);
        EXPECT_FALSE(host().desktop().ModalEnded(dialog.m_hWnd));
        Press(dialog, IDCANCEL);
    });
    ASSERT_EQ(m_driver.boxes.size(), 2u);
    EXPECT_EQ(m_driver.boxes[0].text, L"Invalid field code");
    EXPECT_EQ(m_driver.boxes[1].text, L"Invalid field code");
}

TEST_F(HookTest, TheNewFieldTakesThePagesCodeAndEvaluatesAutomatically) {
    ASSERT_TRUE(Load("QmEchoEvaluators.dbx"));
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND) {
        Choose(dialog, L"QM Objects Area");
        Type(dialog, L"%<\\TextField typed.txt>%");  // typed text plays no part
        Press(dialog, IDOK);
    };
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_TRUE(m_driver.boxes.empty());
    AcDbField* field = dialog.TakeField();
    ASSERT_NE(field, nullptr);
    // A new page: no objects, and the drawing's units as the format.
    EXPECT_STREQ(field->getFieldCode(17), L"%<\\AcArea Object(<>) \\f \"%lu2\">%");
    EXPECT_EQ(field->evaluationOption(), 63);
    EXPECT_EQ(field->evaluationStatus(), AcDbField::kSuccess);
    EXPECT_EQ(field->getData(L"AcArea Data", nullptr), Acad::eOk);
    delete field;
}

TEST_F(HookTest, OnFieldSelectedReachesOnlyTheSixPages) {
    Run([&](CAcFdUiFieldDialog& dialog) {
        for (FieldTypeId id : kSix) EXPECT_TRUE(m_hook.OnFieldSelected(id));
        EXPECT_TRUE(m_hook.OnFieldSelected(1));
        Press(dialog, IDCANCEL);
    });
    EXPECT_TRUE(m_hook.OnFieldSelected(QM_FIELD_AREA));  // no pages: nothing to tell
}

// The module as the host loads it registers its hook at start-up and
// withdraws it at unload.
class LoadedHookTest : public qmtest::HostTest {};

TEST_F(LoadedHookTest, StartUpRegistersTheHookAndUnloadWithdrawsIt) {
    const std::filesystem::path bin = QM_OUTPUT_DIR;
    CAcFdUiFieldManager& manager = *AcFdUiGetFieldManager();
    EXPECT_EQ(manager.GetHookCount(), 0);
    ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8((bin / "Quillmark.arx").string()).c_str(), true));
    ASSERT_EQ(manager.GetHookCount(), 1);
    CStringArray names;
    CUIntArray ids;
    BOOL sort = FALSE;
    EXPECT_EQ(manager.GetHook(0)->GetFieldsFor(ACFDUI_ALL_CATEGORIES, 0, names, ids, sort), 1);
    EXPECT_EQ(names.GetSize(), 6);
    ASSERT_TRUE(host().linker().unloadModule(L"Quillmark.arx"));
    EXPECT_EQ(manager.GetHookCount(), 0);
}

}  // namespace
