// The Block Count page inside the Field dialog, for what a session script
// cannot reach: stored fields of every kind read back (names the drawing no
// longer holds, items that are no text), a pick in a user coordinate system
// other than the world's, the focus message, and an operator the filter's
// list does not hold.
#include <dbapserv.h>
#include <dbfield.h>

#include "AcadDatabase.h"
#include "HostResource.h"
#include "pages/AsdkBlockCntOptionDialog.h"
#include "pages/CBlockFilterDialog.h"
#include "plugin/hook/AsdkCustomOptionDialogHook.h"
#include "support/BlockDrawings.h"
#include "support/ModulePagesTest.h"
#include "ui/ControlView.h"
#include "ui/Controls.h"
#include "ui/UserInput.h"
#include "ui/resources/ResourceLookup.h"

namespace {

class BlockCountPageTest : public qmtest::ModulePagesTest {
protected:
    CAcFdUiFieldDialogHook& Hook() override { return m_hook; }

    void SetUp() override {
        ModulePagesTest::SetUp();
        std::filesystem::path eval = std::filesystem::path(QM_OUTPUT_DIR) / "QuillmarkEval.dbx";
        ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8(eval.string()).c_str(), true)) << TakeOutput();
        qmtest::BlockDrawing d(db());
        AcDbObjectId door = d.Block(L"DOOR", {L"SIZE"}), window = d.Block(L"WINDOW");
        d.Insert(d.modelSpace(), door, {0, 0, 0}, L"A", {{L"SIZE", L"90"}});
        d.Insert(d.modelSpace(), door, {2, 0, 0}, L"B", {{L"SIZE", L"80"}});
        d.Insert(d.modelSpace(), window, {4, 0, 0}, L"A");
    }

    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    // Runs the Field dialog on the Block Count page; inner answers a modal
    // dialog that the page opens.
    void OnPage(std::function<void(CAcFdUiFieldDialog&, AsdkBlockCntOptionDialog&)> act,
                std::function<void(HWND)> inner = nullptr) {
        CAcFdUiFieldDialog dialog(db(), 0, nullptr);
        bool running = false;
        m_driver.onModal = [&](HWND window) {
            if (running) {
                ASSERT_TRUE(inner) << "the page opened a dialog";
                inner(window);
                return;
            }
            running = true;
            auto* list = static_cast<CListBox*>(dialog.GetDlgItem(IDC_ACFD_FIELD_LIST));
            int index = list->FindStringExact(-1, L"QM Block Count");
            ASSERT_GE(index, 0);
            ASSERT_EQ(cadhost::ui::UserChoose(list->m_hWnd, index), L"");
            auto* page = dynamic_cast<AsdkBlockCntOptionDialog*>(m_hook.Page(QM_FIELD_BLOCK_COUNT));
            ASSERT_NE(page, nullptr);
            act(dialog, *page);
            dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
        };
        dialog.DoModal();
        delete dialog.TakeField();
    }
    static std::wstring Shown(CWnd& page, int id) { return cadhost::ui::DescribeControl(::GetDlgItem(page.m_hWnd, id)); }
    static std::wstring Text(CWnd& page, int id) {
        CString text;
        page.GetDlgItemText(id, text);
        return text.str();
    }
    // A field of a code, evaluated so that its evaluator stored its data item.
    static std::unique_ptr<AcDbField> Evaluated(const wchar_t* code) {
        auto field = std::make_unique<AcDbField>(code);
        field->evaluate(AcDbField::kPreview, acdbHostApplicationServices()->workingDatabase());
        return field;
    }

    AsdkCustomOptionDialogHook m_hook;
};

TEST_F(BlockCountPageTest, LoadFieldAnswersWhatItCouldRead) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkBlockCntOptionDialog& page) {
        EXPECT_EQ(page.LoadField(nullptr), 0);
        AcDbField bare(L"%<\\AcBlockCount \"DOOR\">%");  // never evaluated: no data item
        EXPECT_EQ(page.LoadField(&bare), 64);
        AcFdFieldValue number(static_cast<Adesk::Int32>(3));
        bare.setData(L"AcBlockCount Data", &number);
        EXPECT_EQ(page.LoadField(&bare), 16);
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\AcBlockCount >%");  // nothing changed
        AcFdFieldValue empty(L"  \"\" ");
        bare.setData(L"AcBlockCount Data", &empty);
        EXPECT_EQ(page.LoadField(&bare), 1);
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\AcBlockCount >%");
    });
}

TEST_F(BlockCountPageTest, AStoredNameTheDrawingNoLongerHoldsComesBackTicked) {
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkBlockCntOptionDialog& page) {
        ASSERT_EQ(cadhost::ui::UserTick(::GetDlgItem(page.m_hWnd, IDC_BLOCK_LIST), 1, true), L"");  // WINDOW
        auto field = Evaluated(L"%<\\AcBlockCount \"door;GONE\" \\layer \"A\" \\op \">\" \\tag \"SIZE\" \\value \"85\" "
                               L"\\nested \\f \"%ps[,pcs]\">%");
        ASSERT_STREQ(field->getValue(), L"1pcs");
        EXPECT_EQ(page.LoadField(field.get()), 1);
        // "door" ticks DOOR (the list does not mind case); GONE is added;
        // WINDOW stays ticked.
        EXPECT_EQ(Shown(page, IDC_BLOCK_LIST),
                  L"207 checklist enabled visible \"WINDOW\" entries 3: 0 [x] \"DOOR\" data 0 | 1 [x] \"GONE\" data 0 | "
                  L"2 [x] \"WINDOW\" data 0 selected");
        EXPECT_EQ(Text(page, IDC_PREVIEW), L"1pcs");
        // The dialog shows the field's own code, not a composed one.
        EXPECT_EQ(dialog.GetFieldCode().str(),
                  L"%<\\AcBlockCount \"door;GONE\" \\layer \"A\" \\op \">\" \\tag \"SIZE\" \\value \"85\" \\nested "
                  L"\\f \"%ps[,pcs]\">%");
        EXPECT_EQ(page.GetFieldCode().str(),
                  L"%<\\AcBlockCount \"DOOR;GONE;WINDOW\" \\layer \"A\" \\op \">\" \\tag \"SIZE\" \\value \"85\" "
                  L"\\nested \\f \"%ps[,pcs]\">%");
        // A second field adds its layers to the first's.
        auto second = Evaluated(L"%<\\AcBlockCount \"WINDOW\" \\layer \"B\">%");
        EXPECT_EQ(page.LoadField(second.get()), 1);
        EXPECT_EQ(page.GetFieldCode().str(),
                  L"%<\\AcBlockCount \"DOOR;GONE;WINDOW\" \\layer \"A;B\" \\op \">\" \\tag \"SIZE\" \\value \"85\" "
                  L"\\nested>%");
    });
}

TEST_F(BlockCountPageTest, AWindowReadBackTurnsTheSourceWithoutRefillingTheList) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkBlockCntOptionDialog& page) {
        std::wstring model = qmtest::BlockDrawing::Handle(db()->modelSpaceId());
        auto field = Evaluated((L"%<\\AcBlockCount \"DOOR\" \\Space(" + model + L") \\Window(1,-1,0:10,5,0)>%").c_str());
        ASSERT_STREQ(field->getValue(), L"1");
        EXPECT_EQ(page.LoadField(field.get()), 1);
        EXPECT_EQ(Shown(page, IDC_SOURCE_WINDOW), L"105 radio enabled visible \"Window\" checked");
        // The pick button and the nested check keep their states; the list
        // keeps what the page opened with.
        EXPECT_EQ(Shown(page, IDC_PICK_WINDOW), L"203 button disabled visible \"<\"");
        EXPECT_EQ(Shown(page, IDC_NESTED_BLOCKS), L"102 checkbox enabled visible \"Include nested blocks\" unchecked");
        EXPECT_EQ(page.GetFieldCode().str(),
                  L"%<\\AcBlockCount \"DOOR\" \\Space(" + model + L") \\Window(1,-1,0:10,5,0)>%");
        // The reader cuts the item at backslashes and takes the first piece
        // that begins with a tag: a block named WINDOW... hides the window.
        auto shadowed = Evaluated((L"%<\\AcBlockCount \"WINDOW\" \\Space(" + model + L") \\Window(3,-1,0:10,5,0)>%").c_str());
        EXPECT_EQ(page.LoadField(shadowed.get()), 1);
        EXPECT_EQ(page.GetFieldCode().str(),
                  L"%<\\AcBlockCount \"DOOR;WINDOW\" \\Space(" + model + L") \\Window(1,-1,0:10,5,0)>%");
    });
}

TEST_F(BlockCountPageTest, APickInAUserSystemStoresWorldCorners) {
    // The user system is moved by (100,50) and turned a quarter: its x runs
    // along the world's y.
    ASSERT_EQ(db()->setUcs(AcGePoint3d(100, 50, 0), AcGeVector3d(0, 1, 0), AcGeVector3d(-1, 0, 0)), Acad::eOk);
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkBlockCntOptionDialog& page) {
        ASSERT_EQ(cadhost::ui::UserClick(::GetDlgItem(page.m_hWnd, IDC_SOURCE_WINDOW)), L"");
        host().input().Point(1, 2, 0);
        host().input().Point(3, 4, 0);
        ASSERT_EQ(cadhost::ui::UserClick(::GetDlgItem(page.m_hWnd, IDC_PICK_WINDOW)), L"");
        EXPECT_FALSE(dialog.InEditorCommand());
        EXPECT_EQ(TakeOutput().find("Specify first corner point:") != std::string::npos, true);
        page.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_CHECK_ALL, BN_CLICKED), 0);  // nothing in that window
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\AcBlockCount >%");
        // The corners are world points: (1,2) is (100-2, 50+1).
        auto* list = static_cast<CCheckListBox*>(page.GetDlgItem(IDC_BLOCK_LIST));
        list->AddString(L"DOOR");
        list->SetCheck(0, 1);
        std::wstring model = qmtest::BlockDrawing::Handle(db()->modelSpaceId());
        EXPECT_EQ(page.GetFieldCode().str(),
                  L"%<\\AcBlockCount \"DOOR\" \\Space(" + model + L") \\Window(98,51,0:96,53,0)>%");
    });
}

TEST_F(BlockCountPageTest, ThePageKeepsTheFocusWhenTheHostAsks) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkBlockCntOptionDialog& page) {
        EXPECT_EQ(page.SendMessage(0x7101, 0, 0), 1);
    });
}

TEST_F(BlockCountPageTest, AnOperatorTheListDoesNotHoldShowsAsEqual) {
    struct Case {
        const wchar_t* stored;
        const wchar_t* shown;
    };
    const Case cases[] = {{L"<>", L"="}, {L">", L">"}, {L"<", L"<"}, {L">=", L">="}, {L"!", L"!="}, {L"", L"="}};
    for (const Case& c : cases) {
        std::wstring seen, written;
        OnPage(
            [&](CAcFdUiFieldDialog&, AsdkBlockCntOptionDialog& page) {
                AcDbField field((std::wstring(L"%<\\AcBlockCount \"DOOR\" \\op \"") + c.stored +
                                 L"\" \\tag \"SIZE\" \\value \"1\">%").c_str());
                AcFdFieldValue item((std::wstring(L"\"DOOR\" \\op \"") + c.stored + L"\" \\tag \"SIZE\" \\value \"1\"").c_str());
                field.setData(L"AcBlockCount Data", &item);
                ASSERT_EQ(page.LoadField(&field), 1);
                page.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_BLOCK_FILTER, BN_CLICKED), 0);
                written = page.GetFieldCode().str();
            },
            [&](HWND filter) {
                seen = cadhost::ui::ShownText(::GetDlgItem(filter, IDC_FILTER_OPERATOR));
                ::SendMessageW(filter, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
            });
        EXPECT_EQ(seen, c.shown) << cadhost::ToUtf8(c.stored);
        EXPECT_NE(written.find(std::wstring(L"\\op \"") + c.shown + L"\""), std::wstring::npos)
            << cadhost::ToUtf8(written);
    }
}

TEST_F(BlockCountPageTest, TheFilterShowsOnlyTheDrawingsLayersAsTheyAreNamed) {
    // A field's layers that the drawing names otherwise or not at all: A in
    // another case shows unticked, GONE not at all, and OK keeps what shows.
    std::wstring shown, written;
    OnPage(
        [&](CAcFdUiFieldDialog&, AsdkBlockCntOptionDialog& page) {
            auto field = Evaluated(L"%<\\AcBlockCount \"DOOR\" \\layer \"a;B;GONE\">%");
            ASSERT_STREQ(field->getValue(), L"2");  // the evaluator does not mind case
            ASSERT_EQ(page.LoadField(field.get()), 1);
            page.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_BLOCK_FILTER, BN_CLICKED), 0);
            written = page.GetFieldCode().str();
        },
        [&](HWND filter) {
            shown = cadhost::ui::DescribeControl(::GetDlgItem(filter, IDC_FILTER_LAYERS));
            ::SendMessageW(filter, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
        });
    EXPECT_EQ(shown, L"120 checklist enabled visible \"\" entries 3: 0 [ ] \"0\" data 0 | 1 [ ] \"A\" data 0 | 2 [x] \"B\" data 0");
    EXPECT_EQ(written, L"%<\\AcBlockCount \"DOOR\" \\layer \"B\">%");
}

TEST(BlockFilterTemplate, HasItsSizeCaptionAndEveryControl) {
    auto script = qmtest::ModuleResourceScript();
    ASSERT_TRUE(script);
    const cadhost::ui::DialogTemplate* filter = script->FindDialog(cadhost::ui::ResourceName::Number(211));
    ASSERT_NE(filter, nullptr);
    EXPECT_EQ(filter->cx, 186);
    EXPECT_EQ(filter->cy, 198);
    EXPECT_EQ(filter->caption, L"Block Filter");
    EXPECT_TRUE(filter->style & WS_POPUP);
    struct Row {
        int id;
        const wchar_t* className;
        const wchar_t* caption;
        DWORD required, refused;
    };
    const Row rows[] = {
        {120, L"ListBox", L"", LBS_SORT | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | WS_HSCROLL,
         LBS_MULTIPLESEL | LBS_EXTENDEDSEL},
        {124, L"Button", L"Check All", 0, 0},
        {125, L"Button", L"Uncheck All", 0, 0},
        {121, L"Button", L"Attribute", BS_AUTOCHECKBOX, 0},
        {122, L"ComboBox", L"", CBS_DROPDOWN | CBS_SORT, 0},
        {208, L"ComboBox", L"", CBS_DROPDOWNLIST, CBS_SORT},
        {123, L"ComboBox", L"", CBS_DROPDOWN | CBS_SORT, 0},
        {1, L"Button", L"OK", BS_DEFPUSHBUTTON, 0},
        {2, L"Button", L"Cancel", 0, BS_DEFPUSHBUTTON},
    };
    for (const Row& row : rows) {
        const cadhost::ui::ControlTemplate* control = nullptr;
        for (const cadhost::ui::ControlTemplate& c : filter->controls) {
            if (c.id == row.id) control = &c;
        }
        ASSERT_NE(control, nullptr) << row.id;
        EXPECT_EQ(control->className, row.className) << row.id;
        EXPECT_EQ(control->text, row.caption) << row.id;
        EXPECT_EQ(control->style & row.required, row.required) << row.id;
        EXPECT_EQ(control->style & row.refused, 0u) << row.id;
        // Every control lies within the dialog; a combo box's height is that
        // of its dropped list. The user may type in the tag and value boxes only.
        EXPECT_LE(control->x + control->cx, filter->cx) << row.id;
        if (row.className == std::wstring(L"ComboBox")) {
            EXPECT_EQ(control->style & 0x3, static_cast<DWORD>(row.id == 208 ? CBS_DROPDOWNLIST : CBS_DROPDOWN)) << row.id;
        } else {
            EXPECT_LE(control->y + control->cy, filter->cy) << row.id;
        }
    }
    std::vector<std::wstring> statics;
    for (const cadhost::ui::ControlTemplate& c : filter->controls) {
        if (c.id == -1 && !c.text.empty()) statics.push_back(c.text);
    }
    EXPECT_EQ(statics, (std::vector<std::wstring>{L"Layer:", L"Tag:", L"Value:"}));
}

}  // namespace
