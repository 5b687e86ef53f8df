// The Field dialog: the order in which it calls its hooks, categories and
// field types, the option page area, the code box and its dirty state, OK
// and Cancel, editor commands, and the registry of hooks.
#include <AcFdUi.h>
#include <acdocman.h>
#include <dbapserv.h>

#include <string>
#include <vector>

#include "HostResource.h"
#include "host/fields/FieldTestSupport.h"
#include "support/DialogTestSupport.h"
#include "ui/Controls.h"
#include "ui/UserInput.h"

namespace {

class TestHook;

// A page from the test resources' child template 501.
class TestPage : public CAcFdUiFieldOptionDialog {
public:
    TestPage(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, std::vector<std::string>& calls)
        : CAcFdUiFieldOptionDialog(hook, dialog, 501, qmtest::TestModule()), m_calls(calls) {}
    BOOL Create(CWnd* parent) override {
        m_calls.push_back("Create");
        CAcFdUiFieldOptionDialog::Create(parent);
        return CAdUiDialog::Create(501, parent);
    }
    BOOL OnSetActive() override {
        m_calls.push_back("OnSetActive");
        return TRUE;
    }
    BOOL OnKillActive() override {
        m_calls.push_back("OnKillActive");
        return TRUE;
    }

private:
    std::vector<std::string>& m_calls;
};

// A hook of one category "Test" (500) with the types Alpha (501) and Beta
// (502), evaluator ids "Alpha" and "Beta"; it writes down what it is asked.
class TestHook : public CAcFdUiFieldDialogHook {
public:
    std::vector<std::string> calls;
    BOOL createAnswer = TRUE;
    TestPage* alpha = nullptr;
    TestPage* beta = nullptr;
    AcDbField* edited = nullptr;

    int GetEvaluatorIds(CStringArray& ids) override {
        calls.push_back("GetEvaluatorIds");
        ids.Add(L"Alpha");
        ids.Add(L"Beta");
        return 2;
    }
    BOOL BeginFieldDialog(CAcFdUiFieldDialog* dialog, AcDbDatabase* db, int context) override {
        calls.push_back("Begin " + std::to_string(context));
        CAcFdUiFieldDialogHook::BeginFieldDialog(dialog, db, context);
        alpha = new TestPage(this, dialog, calls);
        beta = new TestPage(this, dialog, calls);
        return TRUE;
    }
    BOOL EndFieldDialog(int result) override {
        calls.push_back("End " + std::to_string(result));
        CAcFdUiFieldDialogHook::EndFieldDialog(result);
        delete alpha;
        delete beta;
        alpha = beta = nullptr;
        return TRUE;
    }
    BOOL SetFieldToEdit(AcDbField* field) override {
        calls.push_back(std::string("SetFieldToEdit ") + CString(field->evaluatorId()).ToUtf8());
        edited = field;
        return CAcFdUiFieldDialogHook::SetFieldToEdit(field);
    }
    int GetCategoriesFor(UINT context, CStringArray& names, CUIntArray& ids) override {
        calls.push_back("GetCategoriesFor");
        names.Add(L"Test");
        ids.Add(500);
        return 1;
    }
    int GetFieldsFor(UINT category, UINT context, CStringArray& names, CUIntArray& ids, BOOL& sort) override {
        calls.push_back("GetFieldsFor " + std::to_string(static_cast<int>(category)));
        if (category != 500 && category != ACFDUI_ALL_CATEGORIES) return 0;
        names.Add(L"Beta");  // not in alphabetical order: the list keeps it
        ids.Add(502);
        names.Add(L"Alpha");
        ids.Add(501);
        sort = TRUE;
        return 2;
    }
    BOOL GetOptionDialog(UINT id, CAcFdUiFieldOptionDialog*& page) override {
        calls.push_back("GetOptionDialog " + std::to_string(id));
        page = id == 501 ? alpha : id == 502 ? beta : nullptr;
        return TRUE;
    }
    BOOL OnFieldSelected(UINT id) override {
        calls.push_back("OnFieldSelected " + std::to_string(id));
        return TRUE;
    }
    BOOL CreateField(UINT id, AcDbField*& field) override {
        calls.push_back("CreateField " + std::to_string(id));
        if (!createAnswer) return FALSE;
        field = new AcDbField(id == 501 ? L"%<\\Alpha a>%" : L"%<\\Beta b>%");
        return TRUE;
    }
};

class FieldDialogTest : public qmtest::DialogTest {
protected:
    void SetUp() override {
        DialogTest::SetUp();
        ASSERT_TRUE(AcFdUiGetFieldManager()->RegisterFieldDialogHook(&m_hook));
    }
    void TearDown() override {
        AcFdUiGetFieldManager()->UnregisterFieldDialogHook(&m_hook);
        DialogTest::TearDown();
    }
    AcDbDatabase* Db() { return acdbHostApplicationServices()->workingDatabase(); }
    static HWND Control(CAcFdUiFieldDialog& dialog, int id) { return ::GetDlgItem(dialog.m_hWnd, id); }
    static void Choose(CAcFdUiFieldDialog& dialog, const wchar_t* title) {
        auto* list = static_cast<CListBox*>(dialog.GetDlgItem(IDC_ACFD_FIELD_LIST));
        int index = list->FindStringExact(-1, title);
        ASSERT_GE(index, 0);
        ASSERT_EQ(cadhost::ui::UserChoose(list->m_hWnd, index), L"");
    }
    static void Press(CAcFdUiFieldDialog& dialog, int id) {
        dialog.SendMessage(WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0);
    }
    static std::vector<std::wstring> Entries(CAcFdUiFieldDialog& dialog, int id) {
        std::vector<std::wstring> out;
        if (id == IDC_ACFD_FIELD_LIST) {
            auto* list = static_cast<CListBox*>(dialog.GetDlgItem(id));
            for (int i = 0; i < list->GetCount(); ++i) {
                CString text;
                list->GetText(i, text);
                out.push_back(text.str() + L"=" + std::to_wstring(list->GetItemData(i)));
            }
        } else {
            auto* combo = static_cast<CComboBox*>(dialog.GetDlgItem(id));
            for (int i = 0; i < combo->GetCount(); ++i) {
                CString text;
                combo->GetLBText(i, text);
                out.push_back(text.str());
            }
        }
        return out;
    }

    TestHook m_hook;
};

TEST_F(FieldDialogTest, CallsTheHookInItsOrderFromOpeningToClosing) {
    CAcFdUiFieldDialog dialog(Db(), 7);
    m_driver.onModal = [&](HWND) {
        EXPECT_EQ(Entries(dialog, IDC_ACFD_CATEGORY), (std::vector<std::wstring>{L"All", L"Test"}));
        EXPECT_EQ(Entries(dialog, IDC_ACFD_FIELD_LIST), (std::vector<std::wstring>{L"Beta=502", L"Alpha=501"}));
        Choose(dialog, L"Alpha");
        Press(dialog, IDOK);
    };
    ASSERT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(m_hook.calls, (std::vector<std::string>{"Begin 7", "GetEvaluatorIds", "GetCategoriesFor", "GetFieldsFor -1",
                                                      "OnFieldSelected 501", "GetOptionDialog 501", "Create",
                                                      "OnSetActive", "CreateField 501", "End 1"}));
    AcDbField* field = dialog.TakeField();
    ASSERT_NE(field, nullptr);
    EXPECT_STREQ(field->evaluatorId(), L"Alpha");
    delete field;
    EXPECT_EQ(dialog.TakeField(), nullptr);
    EXPECT_EQ(m_hook.GetFieldDialog(), nullptr);  // the base forgets the dialog as it closes
}

TEST_F(FieldDialogTest, APageIsMadeOnceAndShownInTheOptionArea) {
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND) {
        UINT id = 0, category = 0;
        EXPECT_EQ(dialog.GetCurrentField(&id, &category), ACFDUI_NO_FIELD);
        EXPECT_EQ(id, ACFDUI_NO_FIELD);
        EXPECT_EQ(category, ACFDUI_ALL_CATEGORIES);
        EXPECT_EQ(dialog.GetOptionDialog(), nullptr);
        EXPECT_EQ(dialog.ScriptTarget(), &dialog);

        Choose(dialog, L"Alpha");
        ASSERT_EQ(dialog.GetOptionDialog(), m_hook.alpha);
        EXPECT_EQ(dialog.ScriptTarget(), m_hook.alpha);
        EXPECT_TRUE(m_hook.alpha->IsWindowVisible());
        EXPECT_EQ(m_hook.alpha->GetParent(), &dialog);
        CRect area, page;
        dialog.GetDlgItem(IDC_ACFD_OPTION_AREA)->GetWindowRect(&area);
        m_hook.alpha->GetWindowRect(&page);
        EXPECT_EQ(page.left, area.left);
        EXPECT_EQ(page.top, area.top);

        Choose(dialog, L"Beta");
        EXPECT_FALSE(m_hook.alpha->IsWindowVisible());
        EXPECT_EQ(dialog.GetOptionDialog(), m_hook.beta);
        Choose(dialog, L"Alpha");
        EXPECT_EQ(std::count(m_hook.calls.begin(), m_hook.calls.end(), "Create"), 2);  // one for each page
        EXPECT_EQ(dialog.GetCurrentField(&id, nullptr), 501u);
        Press(dialog, IDCANCEL);
    };
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(m_hook.calls.back(), "End 2");
    EXPECT_EQ(dialog.TakeField(), nullptr);
}

TEST_F(FieldDialogTest, SelectFieldShowsTheCategoryAndTheType) {
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND) {
        EXPECT_TRUE(dialog.SelectField(502, 500));
        UINT id = 0, category = 0;
        dialog.GetCurrentField(&id, &category);
        EXPECT_EQ(id, 502u);
        EXPECT_EQ(category, 500u);
        EXPECT_EQ(dialog.GetOptionDialog(), m_hook.beta);
        EXPECT_EQ(m_hook.calls[m_hook.calls.size() - 5], "GetFieldsFor 500");
        EXPECT_FALSE(dialog.SelectField(999, 500));
        Press(dialog, IDCANCEL);
    };
    dialog.DoModal();
}

TEST_F(FieldDialogTest, TypingMakesTheCodeBoxDirtyAndTheProgramsTextDoesNot) {
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND) {
        EXPECT_FALSE(dialog.IsFieldCodeDirty());
        dialog.SetFieldCode(L"%<\\Alpha a>%");
        EXPECT_FALSE(dialog.IsFieldCodeDirty());
        EXPECT_EQ(dialog.GetFieldCode(), L"%<\\Alpha a>%");
        EXPECT_EQ(cadhost::ui::UserType(Control(dialog, IDC_ACFD_FIELD_CODE), L"typed"), L"");
        EXPECT_TRUE(dialog.IsFieldCodeDirty());
        EXPECT_EQ(dialog.GetFieldCode(), L"typed");
        dialog.SetFieldCode(L"again");
        EXPECT_FALSE(dialog.IsFieldCodeDirty());
        EXPECT_EQ(dialog.GetFieldCodeEditCtrl()->m_hWnd, Control(dialog, IDC_ACFD_FIELD_CODE));
        Press(dialog, IDCANCEL);
    };
    dialog.DoModal();
}

// The preview evaluates the code when it is read, once for however many
// changes came before, and again only after the code changes.
TEST_F(FieldDialogTest, ThePreviewEvaluatesTheCodeOnlyWhenItIsRead) {
    qmtest::ScriptedEvaluator alpha(L"Alpha", qmtest::Succeeds(L"alpha value"));
    qmtest::ScriptedLoader loader;
    loader.Add(&alpha);
    host().fieldEngine().registerEvaluatorLoader(&loader);
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND) {
        int before = alpha.calls;
        dialog.SetFieldCode(L"%<\\Alpha a>%");
        dialog.SetFieldCode(L"%<\\Alpha b>%");
        cadhost::ui::UserType(Control(dialog, IDC_ACFD_FIELD_CODE), L"%<\\Alpha c>%");
        EXPECT_EQ(alpha.calls, before);
        CString preview;
        dialog.GetDlgItemText(IDC_ACFD_PREVIEW, preview);
        EXPECT_EQ(preview, L"alpha value");
        EXPECT_EQ(alpha.calls, before + 1);
        // Read again without a change: the text is kept.
        EXPECT_EQ(cadhost::ui::ShownText(Control(dialog, IDC_ACFD_PREVIEW)), L"alpha value");
        EXPECT_EQ(alpha.calls, before + 1);
        dialog.SetFieldCode(L"%<\\Alpha d>%");
        EXPECT_EQ(cadhost::ui::ShownText(Control(dialog, IDC_ACFD_PREVIEW)), L"alpha value");
        EXPECT_EQ(alpha.calls, before + 2);
        Press(dialog, IDCANCEL);
    };
    dialog.DoModal();
}

TEST_F(FieldDialogTest, ThePreviewShowsTheValueOfTheCode) {
    qmtest::ScriptedEvaluator alpha(L"Alpha", qmtest::Succeeds(L"alpha value"));
    qmtest::ScriptedLoader loader;
    loader.Add(&alpha);
    host().fieldEngine().registerEvaluatorLoader(&loader);
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND) {
        CString preview;
        dialog.SetFieldCode(L"%<\\Alpha a>%");
        dialog.GetDlgItemText(IDC_ACFD_PREVIEW, preview);
        EXPECT_EQ(preview, L"alpha value");
        cadhost::ui::UserType(Control(dialog, IDC_ACFD_FIELD_CODE), L"%<\\Gamma g>%");
        dialog.GetDlgItemText(IDC_ACFD_PREVIEW, preview);
        EXPECT_EQ(preview, L"####");
        cadhost::ui::UserType(Control(dialog, IDC_ACFD_FIELD_CODE), L"   ");
        dialog.GetDlgItemText(IDC_ACFD_PREVIEW, preview);
        EXPECT_EQ(preview, L"");
        Press(dialog, IDCANCEL);
    };
    dialog.DoModal();
    host().fieldEngine().unregisterEvaluatorLoader(&loader);
}

TEST_F(FieldDialogTest, AFailedCreateFieldKeepsTheDialogOpen) {
    m_hook.createAnswer = FALSE;
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND window) {
        Choose(dialog, L"Beta");
        Press(dialog, IDOK);
        EXPECT_FALSE(desktop().ModalEnded(window));
        Press(dialog, IDOK);
        EXPECT_FALSE(desktop().ModalEnded(window));
        Press(dialog, IDCANCEL);
    };
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(std::count(m_hook.calls.begin(), m_hook.calls.end(), "CreateField 502"), 2);
    EXPECT_EQ(dialog.TakeField(), nullptr);
}

TEST_F(FieldDialogTest, WithoutATypeTheCodeBoxMakesTheField) {
    qmtest::ScriptedEvaluator alpha(L"Alpha", qmtest::Succeeds(L"v"));
    qmtest::ScriptedLoader loader;
    loader.Add(&alpha);
    host().fieldEngine().registerEvaluatorLoader(&loader);
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND window) {
        Press(dialog, IDOK);  // nothing chosen, nothing typed
        EXPECT_FALSE(desktop().ModalEnded(window));
        cadhost::ui::UserType(Control(dialog, IDC_ACFD_FIELD_CODE), L"%<\\Gamma g>%");
        Press(dialog, IDOK);  // no evaluator
        EXPECT_FALSE(desktop().ModalEnded(window));
        cadhost::ui::UserType(Control(dialog, IDC_ACFD_FIELD_CODE), L" %<\\alpha a \\f \"%lu2\">% ");
        Press(dialog, IDOK);
    };
    ASSERT_EQ(dialog.DoModal(), IDOK);
    ASSERT_EQ(m_driver.boxes.size(), 2u);
    EXPECT_EQ(m_driver.boxes[0].text, L"Choose a field type or enter a field code.");
    EXPECT_EQ(m_driver.boxes[1].text, L"The field code does not evaluate.");
    AcDbField* field = dialog.TakeField();
    ASSERT_NE(field, nullptr);
    EXPECT_STREQ(field->getFieldCode(17), L"%<\\alpha a \\f \"%lu2\">%");
    EXPECT_EQ(field->evaluationOption(), AcDbField::kAutomatic);
    EXPECT_EQ(field->evaluationStatus(), AcDbField::kSuccess);
    delete field;
    host().fieldEngine().unregisterEvaluatorLoader(&loader);
}

TEST_F(FieldDialogTest, AFieldToEditGoesToTheHooksOfItsEvaluatorInAnyCase) {
    struct Case {
        const wchar_t* code;
        bool asked;
    } cases[] = {{L"%<\\beta x>%", true}, {L"%<\\ALPHA x>%", true}, {L"%<\\Gamma x>%", false}};
    for (const Case& c : cases) {
        m_hook.calls.clear();
        m_hook.edited = nullptr;
        AcDbField field(c.code);
        CAcFdUiFieldDialog dialog(Db(), 0, &field);
        m_driver.onModal = [&](HWND) {
            EXPECT_EQ(dialog.GetFieldCode(), CString(field.getFieldCode(17)));
            EXPECT_FALSE(dialog.IsFieldCodeDirty());
            Press(dialog, IDCANCEL);
        };
        dialog.DoModal();
        EXPECT_EQ(m_hook.edited == &field, c.asked) << CString(c.code).ToUtf8();
        // The field is the caller's still.
        EXPECT_STREQ(field.getFieldCode(17), CString(c.code));
    }
}

TEST_F(FieldDialogTest, AnEditorCommandHidesTheDialogAndBringsItBack) {
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND) {
        EXPECT_TRUE(dialog.IsWindowVisible());
        dialog.BeginEditorCommand();
        EXPECT_TRUE(dialog.InEditorCommand());
        EXPECT_FALSE(dialog.IsWindowVisible());
        // Hidden, it cannot be worked.
        EXPECT_NE(cadhost::ui::UserType(Control(dialog, IDC_ACFD_FIELD_CODE), L"x"), L"");
        dialog.CompleteEditorCommand(1);
        EXPECT_FALSE(dialog.InEditorCommand());
        EXPECT_TRUE(dialog.IsWindowVisible());
        dialog.BeginEditorCommand();
        dialog.CompleteEditorCommand(FALSE);
        EXPECT_FALSE(dialog.IsWindowVisible());
        dialog.CompleteEditorCommand(TRUE);
        Press(dialog, IDCANCEL);
    };
    dialog.DoModal();
}

TEST_F(FieldDialogTest, WithNoHookTheDialogListsNothing) {
    AcFdUiGetFieldManager()->UnregisterFieldDialogHook(&m_hook);
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND) {
        EXPECT_EQ(Entries(dialog, IDC_ACFD_CATEGORY), std::vector<std::wstring>{L"All"});
        EXPECT_TRUE(Entries(dialog, IDC_ACFD_FIELD_LIST).empty());
        Press(dialog, IDCANCEL);
    };
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_TRUE(m_hook.calls.empty());
}

TEST_F(FieldDialogTest, TheManagerKeepsHooksOnceAndInOrder) {
    CAcFdUiFieldManager& manager = *AcFdUiGetFieldManager();
    TestHook second;
    EXPECT_FALSE(manager.RegisterFieldDialogHook(&m_hook));
    EXPECT_FALSE(manager.RegisterFieldDialogHook(nullptr));
    EXPECT_TRUE(manager.RegisterFieldDialogHook(&second));
    ASSERT_EQ(manager.GetHookCount(), 2);
    EXPECT_EQ(manager.GetHook(0), &m_hook);
    EXPECT_EQ(manager.GetHook(1), &second);
    EXPECT_EQ(manager.GetHook(2), nullptr);
    EXPECT_EQ(manager.GetHook(-1), nullptr);
    EXPECT_TRUE(manager.UnregisterFieldDialogHook(&second));
    EXPECT_FALSE(manager.UnregisterFieldDialogHook(&second));
    EXPECT_EQ(manager.GetHookCount(), 1);
}

TEST_F(FieldDialogTest, AModulesHooksGoWithItWithdrawnOrNot) {
    const std::filesystem::path bin = QM_OUTPUT_DIR;
    CAcFdUiFieldManager& manager = *AcFdUiGetFieldManager();
    ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8((bin / "QmFailingEvaluators.dbx").string()).c_str(), true));
    ASSERT_EQ(manager.GetHookCount(), 2);
    ASSERT_TRUE(host().linker().unloadModule(L"QmFailingEvaluators.dbx"));
    ASSERT_EQ(manager.GetHookCount(), 1);
    EXPECT_EQ(manager.GetHook(0), &m_hook);
    // A dialog opened now meets only the hooks whose code is there.
    CAcFdUiFieldDialog dialog(Db(), 0);
    m_driver.onModal = [&](HWND) { Press(dialog, IDCANCEL); };
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
}

TEST(FieldDialogHookBase, AnswersWhatAHookWithoutTypesWould) {
    CAcFdUiFieldDialogHook hook;
    CAcFdUiFieldDialogHook* instance = &hook;
    EXPECT_FALSE(hook.CreateInstance(instance));
    EXPECT_EQ(instance, nullptr);
    CStringArray names;
    CUIntArray ids;
    BOOL sort = FALSE;
    EXPECT_EQ(hook.GetEvaluatorIds(names), 0);
    EXPECT_EQ(hook.GetCategoriesFor(0, names, ids), 0);
    EXPECT_EQ(hook.GetFieldsFor(ACFDUI_ALL_CATEGORIES, 0, names, ids, sort), 0);
    EXPECT_TRUE(names.IsEmpty());
    EXPECT_TRUE(ids.IsEmpty());
    AcDbField* field = reinterpret_cast<AcDbField*>(&hook);
    EXPECT_FALSE(hook.CreateField(1, field));
    EXPECT_EQ(field, nullptr);
    EXPECT_FALSE(hook.SetFieldToEdit(nullptr));
    EXPECT_FALSE(hook.UpdateFieldCode());
    CAcFdUiFieldOptionDialog* page = nullptr;
    EXPECT_FALSE(hook.GetOptionDialog(1, page));
    EXPECT_EQ(hook.GetPreview(L"  ", L""), L"");
    EXPECT_EQ(hook.GetPreview(L"not a code", L""), L"####");
}

}  // namespace
