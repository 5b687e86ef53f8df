// The Objects Area and Objects Length pages inside the Field dialog, where a
// session script cannot look: the result codes of reading a stored field,
// DIMZIN around the precision list, the filter's stored choice read at
// every test, and the Additional Format and Objects Filter dialogs as the
// pages and the Block Count page fill them.
#include <adslib.h>
#include <dbapserv.h>
#include <dbents.h>
#include <dbobjptr.h>

#include <deque>
#include <filesystem>

#include "HostResource.h"
#include "pages/AsdkAreaOptionDialog.h"
#include "pages/AsdkLengthOptionDialog.h"
#include "pages/CAdditionalFormatDialog.h"
#include "pages/CObjectFilterDialog.h"
#include "plugin/ModuleState.h"
#include "plugin/hook/AsdkCustomOptionDialogHook.h"
#include "services/Registry.h"
#include "support/DxfGroups.h"
#include "support/ModulePagesTest.h"
#include "ui/Controls.h"
#include "ui/UserInput.h"

namespace {

const std::filesystem::path kBin = QM_OUTPUT_DIR;

class MeasurePageTest : public qmtest::ModulePagesTest {
protected:
    CAcFdUiFieldDialogHook& Hook() override { return m_hook; }

    void SetUp() override {
        ModulePagesTest::SetUp();
        CRegistry::SetRegistryKey(HKEY_CURRENT_USER, L"Norvo\\NorvoTest");
        // The fixture's rooms, walls and furniture; measure_r2010.figures.tsv
        // lists them.
        std::wstring error;
        ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath("measure_r2010.dxf"), error)) << cadhost::ToUtf8(error);
        ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8((kBin / "QuillmarkEval.dbx").string()).c_str(), true));
        m_driver.onModal = [this](HWND dialog) {
            if (m_inner.empty()) return;
            auto act = std::move(m_inner.front());
            m_inner.pop_front();
            act(dialog);
        };
    }

    void TearDown() override {
        CRegistry::SetRegistryKey(HKEY_CURRENT_USER, L"");
        ModulePagesTest::TearDown();
    }

    // Runs the Field dialog on a page (of a new field, or of one to edit);
    // the test acts on it, and a dialog that the page opens meanwhile is
    // worked by what Inner queued.
    void OnPage(const wchar_t* title, std::function<void(CAcFdUiFieldDialog&, AsdkMeasureOptionDialog&)> act,
                AcDbField* edited = nullptr) {
        CAcFdUiFieldDialog dialog(acdbHostApplicationServices()->workingDatabase(), 0, edited);
        m_inner.push_front([&](HWND) {
            if (!edited) {
                auto* list = static_cast<CListBox*>(dialog.GetDlgItem(IDC_ACFD_FIELD_LIST));
                int index = list->FindStringExact(-1, title);
                ASSERT_GE(index, 0);
                ASSERT_EQ(cadhost::ui::UserChoose(list->m_hWnd, index), L"");
            }
            auto* page = dynamic_cast<AsdkMeasureOptionDialog*>(dialog.GetOptionDialog());
            ASSERT_NE(page, nullptr);
            act(dialog, *page);
            dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
        });
        dialog.DoModal();
        delete dialog.TakeField();
    }

    // What the user does in the next dialog that a page opens.
    void Inner(std::function<void(HWND)> act) { m_inner.push_back(std::move(act)); }

    static std::vector<std::wstring> Entries(CWnd& page, int id) {
        std::vector<std::wstring> entries;
        HWND control = page.GetDlgItem(id)->m_hWnd;
        for (int i = 0; i < cadhost::ui::EntryCount(control); ++i) entries.push_back(cadhost::ui::Entry(control, i)->text);
        return entries;
    }
    static std::wstring Shown(CWnd& page, int id) { return cadhost::ui::ShownText(page.GetDlgItem(id)->m_hWnd); }
    static void Choose(CWnd& page, int id, const wchar_t* caption) {
        HWND control = page.GetDlgItem(id)->m_hWnd;
        int index = cadhost::ui::FindEntry(control, -1, caption, true);
        ASSERT_GE(index, 0) << cadhost::ToUtf8(caption);
        ASSERT_EQ(cadhost::ui::UserChoose(control, index), L"");
    }
    static void Click(CWnd& window, int id) { ASSERT_EQ(cadhost::ui::UserClick(window.GetDlgItem(id)->m_hWnd), L""); }
    static void Type(HWND dialog, int id, const wchar_t* text) {
        ASSERT_EQ(cadhost::ui::UserType(::GetDlgItem(dialog, id), text), L"");
    }
    static std::wstring Text(HWND dialog, int id) { return cadhost::ui::GetText(::GetDlgItem(dialog, id)); }
    static void Press(HWND dialog, int id) {
        ::SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(::GetDlgItem(dialog, id)));
    }
    void Pick(std::vector<std::wstring> handles) { host().input().Pick(std::move(handles)); }
    static void Select(AsdkMeasureOptionDialog& page) { Click(page, IDC_SELECT_OBJECTS); }

    AsdkCustomOptionDialogHook m_hook;
    std::deque<std::function<void(HWND)>> m_inner;
};

TEST_F(MeasurePageTest, ReadingAStoredFieldAnswersWhatItCouldRead) {
    OnPage(L"QM Objects Area", [&](CAcFdUiFieldDialog& dialog, AsdkMeasureOptionDialog& page) {
        Pick({L"36"});
        Select(page);
        std::wstring code = dialog.GetFieldCode().str();
        EXPECT_EQ(code, L"%<\\AcArea Object(<36>) \\f \"%lu2\">%");
        EXPECT_EQ(page.LoadField(nullptr), 0);
        AcDbField bare(L"%<\\AcArea Object(<3E>) \\f \"%lu4\">%");
        EXPECT_EQ(page.LoadField(&bare), 64);
        AcDbField number(L"%<\\AcArea Object(<3E>) \\f \"%lu4\">%");
        AcFdFieldValue whole(static_cast<Adesk::Int32>(7));
        number.setData(L"AcArea Data", &whole);
        EXPECT_EQ(page.LoadField(&number), 16);
        AcDbField other(L"%<\\AcArea Object(<3E>) \\f \"%lu4\">%");
        AcFdFieldValue item(L"Object(<3E>)");
        other.setData(L"AcLength Data", &item);  // the other page's key
        EXPECT_EQ(page.LoadField(&other), 64);
        // None of them touched the page or the code box.
        EXPECT_EQ(Entries(page, IDC_OBJECT_LIST), std::vector<std::wstring>{L"36"});
        EXPECT_EQ(Shown(page, IDC_UNITS_LIST), L"Decimal");
        EXPECT_EQ(Shown(page, IDC_PREVIEW), L"120.0000");  // LUPREC 4; DIMZIN plays no part
        EXPECT_EQ(dialog.GetFieldCode().str(), code);
    });
}

// The page keeps its handles joined between changes of the list; after
// every removal, pick and change of format the code lists exactly the
// list's entries in their order.
TEST_F(MeasurePageTest, TheCodeListsTheEntriesAfterEveryChangeOfTheList) {
    OnPage(L"QM Objects Area", [&](CAcFdUiFieldDialog& dialog, AsdkMeasureOptionDialog& page) {
        auto listed = [&] {
            std::wstring code = dialog.GetFieldCode().str();
            size_t open = code.find(L"Object(<"), close = code.find(L">)");
            if (open == std::wstring::npos || close == std::wstring::npos) return std::wstring(L"no list in ") + code;
            return code.substr(open + 8, close - open - 8);
        };
        auto joined = [&] {
            std::wstring all;
            for (const std::wstring& entry : Entries(page, IDC_OBJECT_LIST)) all += (all.empty() ? L"" : L";") + entry;
            return all;
        };
        auto removeAt = [&](int index) {
            HWND list = page.GetDlgItem(IDC_OBJECT_LIST)->m_hWnd;
            ASSERT_EQ(cadhost::ui::UserChoose(list, index), L"");
            Click(page, IDC_REMOVE_OBJECT);
        };
        Pick({L"2A", L"36", L"3E", L"37", L"39", L"3C", L"3D"});
        Select(page);
        int count = static_cast<int>(Entries(page, IDC_OBJECT_LIST).size());
        ASSERT_GE(count, 4);
        EXPECT_EQ(listed(), joined());
        const char* steps[] = {"middle", "first", "units", "last", "pick", "last again", "first again"};
        for (const char* step : steps) {
            std::string what = step;
            int entries = static_cast<int>(Entries(page, IDC_OBJECT_LIST).size());
            if (what == "middle") removeAt(entries / 2);
            else if (what.rfind("first", 0) == 0) removeAt(0);
            else if (what.rfind("last", 0) == 0) removeAt(entries - 1);
            else if (what == "units") Choose(page, IDC_UNITS_LIST, L"Scientific");
            else if (what == "pick") {
                Pick({L"2A", L"36"});
                Select(page);
            }
            EXPECT_EQ(listed(), joined()) << what;
        }
        while (!Entries(page, IDC_OBJECT_LIST).empty()) removeAt(0);
        EXPECT_EQ(listed(), L"");
    });
}

TEST_F(MeasurePageTest, AStoredFieldComesBackWithItsFormatHandlesAndValue) {
    struct Case {
        const wchar_t* title;
        const wchar_t* id;
        const wchar_t* format;
        const wchar_t* units;      // shown after reading
        const wchar_t* precision;  // shown after reading
        AdditionalFormat additional;
    };
    AdditionalFormat plain;
    AdditionalFormat full;
    full.m_factor = 0.0929;
    full.m_prefix = L"A=";
    full.m_suffix = L" [m2]";
    full.m_leadingZero = 1;
    full.m_zeroInches = 1;
    const Case cases[] = {
        {L"QM Objects Area", L"AcArea", L"%lu2%pr3%ps[A=, \\[m2\\]]%ct8[0.0929]%zs6", L"Decimal", L"0.000", full},
        {L"QM Objects Area", L"AcArea", L"%lu2%ct4%qf1 SQ. FT.%pr2", L"Decimal", L"0.00", plain},
        {L"QM Objects Area", L"AcArea", L"%lu6%qf1%pr2", L"Decimal", L"", plain},  // 6: no entry; the drawing's units stay
        {L"QM Objects Length", L"AcLength", L"%lu4%pr3", L"Architectural", L"0'-0 1/8\"", plain},
        {L"QM Objects Length", L"AcLength", L"%lu5", L"Fractional", L"Current precision", plain},
        {L"QM Objects Length", L"AcLength", L"", L"Decimal", L"", plain},
    };
    for (const Case& c : cases) {
        // The field as its evaluator leaves it.
        std::wstring code = L"%<\\" + std::wstring(c.id) + L" Object(<3E;2A;36>)";
        if (*c.format) code += L" \\f \"" + std::wstring(c.format) + L"\"";
        code += L">%";
        AcDbField field(code.c_str());
        ASSERT_EQ(field.evaluate(AcDbField::kPreview, acdbHostApplicationServices()->workingDatabase()), Acad::eOk);
        std::wstring value = field.getValue();
        OnPage(
            c.title,
            [&](CAcFdUiFieldDialog& dialog, AsdkMeasureOptionDialog& page) {
                std::string what = cadhost::ToUtf8(c.format);
                EXPECT_EQ(Shown(page, IDC_UNITS_LIST), c.units) << what;
                EXPECT_EQ(Shown(page, IDC_PRECISION), c.precision) << what;
                EXPECT_EQ(page.Additional().m_factor, c.additional.m_factor) << what;
                EXPECT_EQ(page.Additional().m_prefix.str(), c.additional.m_prefix.str()) << what;
                EXPECT_EQ(page.Additional().m_suffix.str(), c.additional.m_suffix.str()) << what;
                EXPECT_EQ(page.Additional().m_leadingZero, c.additional.m_leadingZero) << what;
                EXPECT_EQ(page.Additional().m_trailingZero, c.additional.m_trailingZero) << what;
                EXPECT_EQ(page.Additional().m_zeroFeet, c.additional.m_zeroFeet) << what;
                EXPECT_EQ(page.Additional().m_zeroInches, c.additional.m_zeroInches) << what;
                EXPECT_EQ(Entries(page, IDC_OBJECT_LIST), (std::vector<std::wstring>{L"2A", L"36", L"3E"})) << what;
                EXPECT_EQ(Shown(page, IDC_PREVIEW), value) << what;
                double expected = 0;
                AcFdFieldValue typed;
                ASSERT_EQ(field.getValue(typed), Acad::eOk);
                ASSERT_TRUE(typed.get(expected));
                EXPECT_EQ(page.Value(), expected) << what;
                // The dialog shows the field's own code, not one made anew.
                EXPECT_EQ(dialog.GetFieldCode().str(), code) << what;
            },
            &field);
    }
}

TEST_F(MeasurePageTest, ThePrecisionListIsBuiltUnderDimzinOneAndDimzinComesBack) {
    resbuf eight = {};
    eight.restype = RTSHORT;
    eight.resval.rint = 8;  // trailing zeros suppressed
    ASSERT_EQ(acedSetVar(L"DIMZIN", &eight), RTNORM);
    struct Case {
        const wchar_t* title;
        const wchar_t* units;
        std::vector<std::wstring> entries;
    };
    const std::vector<std::wstring> decimal = {L"Current precision", L"0", L"0.0", L"0.00", L"0.000", L"0.0000",
                                               L"0.00000", L"0.000000", L"0.0000000", L"0.00000000"};
    const Case cases[] = {
        {L"QM Objects Area", L"Decimal", decimal},
        {L"QM Objects Area", L"Architectural", decimal},
        {L"QM Objects Area", L"Fractional", decimal},
        {L"QM Objects Area", L"Scientific",
         {L"Current precision", L"0E+00", L"0.0E+00", L"0.00E+00", L"0.000E+00", L"0.0000E+00", L"0.00000E+00",
          L"0.000000E+00", L"0.0000000E+00", L"0.00000000E+00"}},
        {L"QM Objects Area", L"Engineering",
         {L"Current precision", L"0'-0\"", L"0'-0.0\"", L"0'-0.00\"", L"0'-0.000\"", L"0'-0.0000\"", L"0'-0.00000\"",
          L"0'-0.000000\"", L"0'-0.0000000\"", L"0'-0.00000000\""}},
        {L"QM Objects Length", L"Decimal", decimal},
        {L"QM Objects Length", L"Architectural",
         {L"Current precision", L"0'-0\"", L"0'-0 1/2\"", L"0'-0 1/4\"", L"0'-0 1/8\"", L"0'-0 1/16\"",
          L"0'-0 1/32\"", L"0'-0 1/64\"", L"0'-0 1/128\"", L"0'-0 1/256\""}},
        {L"QM Objects Length", L"Fractional",
         {L"Current precision", L"0", L"1/2", L"1/4", L"1/8", L"1/16", L"1/32", L"1/64", L"1/128", L"1/256"}},
        {L"QM Objects Area", L"(none)", {}},
        {L"QM Objects Length", L"Current units", {}},
    };
    for (const Case& c : cases) {
        OnPage(c.title, [&](CAcFdUiFieldDialog&, AsdkMeasureOptionDialog& page) {
            std::string what = cadhost::ToUtf8(c.title) + " " + cadhost::ToUtf8(c.units);
            Choose(page, IDC_UNITS_LIST, c.units);
            EXPECT_EQ(Entries(page, IDC_PRECISION), c.entries) << what;
            EXPECT_EQ(page.GetDlgItem(IDC_PRECISION)->IsWindowEnabled() != FALSE, !c.entries.empty()) << what;
            if (!c.entries.empty()) {
                EXPECT_EQ(Shown(page, IDC_PRECISION), L"Current precision") << what;
            }
            // The item data are the precisions, -1 for the first entry.
            auto* combo = static_cast<CComboBox*>(page.GetDlgItem(IDC_PRECISION));
            for (int i = 0; i < combo->GetCount(); ++i)
                EXPECT_EQ(static_cast<int>(combo->GetItemData(i)), i - 1) << what;
            int dimzin = -1;
            ASSERT_EQ(GetSysVarInt(L"DIMZIN", dimzin), 0);
            EXPECT_EQ(dimzin, 8) << what;
        });
    }
}

TEST_F(MeasurePageTest, TheStoredTypeChoiceCountsAtEveryTest) {
    OnPage(L"QM Objects Area", [&](CAcFdUiFieldDialog&, AsdkMeasureOptionDialog& page) {
        auto open = [&](const wchar_t* handle) {
            AcDbObjectId id;
            EXPECT_EQ(acdbHostApplicationServices()->workingDatabase()->getAcDbObjectId(id, false, AcDbHandle(handle)),
                      Acad::eOk);
            return id;
        };
        AcDbObjectPointer<AcDbEntity> circle(open(L"3E"), AcDb::kForRead);
        AcDbObjectPointer<AcDbEntity> room(open(L"36"), AcDb::kForRead);
        AcDbObjectPointer<AcDbEntity> line(open(L"3A"), AcDb::kForRead);
        EXPECT_TRUE(page.IsObjectTypeAllowed(circle.object()));
        EXPECT_TRUE(page.IsObjectTypeAllowed(room.object()));
        EXPECT_FALSE(page.IsObjectTypeAllowed(line.object()));  // no type of the area page
        EXPECT_FALSE(page.IsObjectTypeAllowed(nullptr));
        CRegistry::WriteProfileInt(L"Quillmark\\AreaField", L"Circle", 0);
        EXPECT_FALSE(page.IsObjectTypeAllowed(circle.object()));
        EXPECT_TRUE(page.IsObjectTypeAllowed(room.object()));
        EXPECT_FALSE(page.IsHandleAllowed(L"3E"));
        EXPECT_TRUE(page.IsHandleAllowed(L"36"));
        // Any value but 0 lets a type through; the Length page has its own key.
        CRegistry::WriteProfileInt(L"Quillmark\\AreaField", L"Circle", 7);
        EXPECT_TRUE(page.IsObjectTypeAllowed(circle.object()));
        CRegistry::WriteProfileInt(L"Quillmark\\LengthField", L"Polyline", 0);
        EXPECT_TRUE(page.IsObjectTypeAllowed(room.object()));
        // Handles of nothing, of paper space objects on layer 0, of a text.
        EXPECT_FALSE(page.IsHandleAllowed(L"FFFF"));
        EXPECT_TRUE(page.IsHandleAllowed(L"42"));
        EXPECT_FALSE(page.IsHandleAllowed(L"40"));
    });
}

TEST_F(MeasurePageTest, TheAdditionalFormatDialogWorksOnACopy) {
    OnPage(L"QM Objects Length", [&](CAcFdUiFieldDialog& dialog, AsdkMeasureOptionDialog& page) {
        Pick({L"3A"});  // a wall of 19
        Select(page);
        Choose(page, IDC_UNITS_LIST, L"Engineering");
        Inner([&](HWND format) {
            // Current precision: the drawing's LUPREC, 4.
            EXPECT_EQ(Text(format, IDC_CURRENT_VALUE), L"1'-7.0000\"");
            EXPECT_EQ(Text(format, IDC_FORMAT_PREVIEW), L"1'-7.0000\"");
            Type(format, IDC_FORMAT_PREFIX, L"L=");
            Type(format, IDC_CONVERSION_FACTOR, L"2");
            EXPECT_EQ(Text(format, IDC_FORMAT_PREVIEW), L"L=3'-2.0000\"");
            EXPECT_EQ(Text(format, IDC_CURRENT_VALUE), L"1'-7.0000\"");  // it does not follow the edits
            Press(format, IDCANCEL);
        });
        std::wstring before = dialog.GetFieldCode().str();
        Click(page, IDC_ADDITIONAL_FORMAT);
        EXPECT_EQ(page.Additional().m_factor, 1.0);
        EXPECT_EQ(page.Additional().m_prefix.str(), L"");
        EXPECT_EQ(dialog.GetFieldCode().str(), before);
        Inner([&](HWND format) {
            Type(format, IDC_FORMAT_PREFIX, L"L=");
            Type(format, IDC_CONVERSION_FACTOR, L"2");
            Press(format, IDOK);
        });
        Click(page, IDC_ADDITIONAL_FORMAT);
        EXPECT_EQ(page.Additional().m_factor, 2.0);
        EXPECT_EQ(page.Additional().m_prefix.str(), L"L=");
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\AcLength Object(<3A>) \\f \"%lu3%ps[L=,]%ct8[2]\">%");
        EXPECT_EQ(Shown(page, IDC_PREVIEW), L"L=3'-2.0000\"");
    });
}

// The Block Count page fills the dialog with a long value, units 2 and no
// units or precision piece.
TEST_F(MeasurePageTest, TheAdditionalFormatDialogServesACountWithDecimalUnits) {
    ModuleResourceScope scope(qmtest::TestModule());
    CAdditionalFormatDialog dialog;
    dialog.m_units = 2;
    dialog.m_valueKind = CAdditionalFormatDialog::kValueLong;
    dialog.m_longValue = 12;
    AdditionalFormat given;
    given.m_suffix = L" pcs";
    given.m_zeroFeet = 1;  // set under other units: kept, and it counts
    dialog.SetAdditionalValues(given);
    Inner([&](HWND window) {
        struct Enabled {
            int id;
            bool enabled;
        };
        for (Enabled e : {Enabled{IDC_CONVERSION_FACTOR, true}, Enabled{IDC_ZERO_LEADING, true},
                          Enabled{IDC_ZERO_TRAILING, true}, Enabled{IDC_ZERO_FEET, false},
                          Enabled{IDC_ZERO_INCHES, false}})
            EXPECT_EQ(::IsWindowEnabled(::GetDlgItem(window, e.id)) != FALSE, e.enabled) << e.id;
        EXPECT_EQ(Text(window, IDC_CURRENT_VALUE), L"12");  // an empty format
        EXPECT_EQ(Text(window, IDC_FORMAT_PREVIEW), L"12 pcs");
        EXPECT_EQ(cadhost::ui::GetCheck(::GetDlgItem(window, IDC_ZERO_FEET)), BST_CHECKED);
        // The separator lists are there, hidden, their first entries chosen.
        HWND decimal = ::GetDlgItem(window, IDC_DECIMAL_SEPARATOR), thousands = ::GetDlgItem(window, IDC_THOUSANDS_SEPARATOR);
        EXPECT_FALSE(::IsWindowVisible(decimal));
        EXPECT_FALSE(::IsWindowVisible(thousands));
        EXPECT_EQ(cadhost::ui::EntryCount(decimal), 3);
        EXPECT_EQ(cadhost::ui::EntryCount(thousands), 4);
        EXPECT_EQ(cadhost::ui::ShownText(decimal), L"'.' (Period)");
        EXPECT_EQ(cadhost::ui::ShownText(thousands), L"(None)");
        // Not a number: the preview shows the value under the page's pieces
        // alone, and OK is refused with the framework's message.
        for (const wchar_t* bad : {L"abc", L"nan", L"1e400", L"inf", L""}) {
            m_driver.boxes.clear();
            Type(window, IDC_CONVERSION_FACTOR, bad);
            EXPECT_EQ(Text(window, IDC_FORMAT_PREVIEW), L"12") << cadhost::ToUtf8(bad);
            Press(window, IDOK);
            EXPECT_TRUE(::IsWindow(window)) << cadhost::ToUtf8(bad);
            ASSERT_FALSE(m_driver.boxes.empty()) << cadhost::ToUtf8(bad);
            EXPECT_EQ(m_driver.boxes.back().text, L"Please enter a number.");
        }
        Type(window, IDC_CONVERSION_FACTOR, L"0.5");
        EXPECT_EQ(Text(window, IDC_FORMAT_PREVIEW), L"6 pcs");
        Press(window, IDOK);
    });
    EXPECT_EQ(dialog.DoModal(), IDOK);
    AdditionalFormat taken = dialog.AdditionalValues();
    EXPECT_EQ(taken.m_factor, 0.5);
    EXPECT_EQ(taken.m_suffix.str(), L" pcs");
    EXPECT_EQ(taken.m_zeroFeet, 1);
    EXPECT_EQ(ComposeAdditionalFormat(taken).str(), L"%ps[, pcs]%ct8[0.5]%zs1");
}

TEST_F(MeasurePageTest, TheZeroBoxesOpenByKindAndUnits) {
    struct Case {
        int kind, units;
        bool factor, leading, trailing, feet, inches;
    };
    const Case cases[] = {
        {1, 2, true, true, true, false, false},    {1, 4, true, false, false, true, true},
        {1, 3, true, true, true, true, true},      {1, 5, true, true, true, false, false},
        {1, 1, true, true, true, false, false},    {2, 2, true, true, true, false, false},
        {5, 3, true, true, true, true, true},      {3, 2, false, true, true, false, false},
        {4, 4, false, false, false, false, false}, {4, 2, false, false, false, false, false},
        {6, 4, false, false, false, true, true},   {0, 3, false, true, true, true, true},
    };
    ModuleResourceScope scope(qmtest::TestModule());
    for (const Case& c : cases) {
        CAdditionalFormatDialog dialog;
        dialog.m_units = c.units;
        dialog.m_valueKind = c.kind;
        Inner([&](HWND window) {
            std::string what = std::to_string(c.kind) + "/" + std::to_string(c.units);
            auto enabled = [&](int id) { return ::IsWindowEnabled(::GetDlgItem(window, id)) != FALSE; };
            EXPECT_EQ(enabled(IDC_CONVERSION_FACTOR), c.factor) << what;
            EXPECT_EQ(enabled(IDC_ZERO_LEADING), c.leading) << what;
            EXPECT_EQ(enabled(IDC_ZERO_TRAILING), c.trailing) << what;
            EXPECT_EQ(enabled(IDC_ZERO_FEET), c.feet) << what;
            EXPECT_EQ(enabled(IDC_ZERO_INCHES), c.inches) << what;
            Press(window, IDCANCEL);
        });
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    }
    // Unknown units are the drawing's LUNITS, here architectural.
    acdbHostApplicationServices()->workingDatabase()->setLunits(4);
    CAdditionalFormatDialog dialog;
    dialog.m_valueKind = CAdditionalFormatDialog::kValueDouble;
    dialog.m_doubleValue = 15.5;
    dialog.m_unitsFormat = L"%lu4";
    Inner([&](HWND window) {
        EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(window, IDC_ZERO_LEADING)));
        EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(window, IDC_ZERO_FEET)));
        EXPECT_EQ(Text(window, IDC_CURRENT_VALUE), L"1'-3 1/2\"");
        Press(window, IDCANCEL);
    });
    dialog.DoModal();
    EXPECT_EQ(dialog.m_units, 4);
}

TEST_F(MeasurePageTest, TheFilterDialogStoresEveryTypeAndGivesTheTickedLayers) {
    ModuleResourceScope scope(qmtest::TestModule());
    {
        CObjectFilterDialog dialog(L"Quillmark\\LengthField", 51, nullptr);
        Inner([&](HWND window) {
            // Every layer ticked, the four types of the mask shown and ticked.
            HWND layers = ::GetDlgItem(window, IDC_FILTER_LAYERS);
            ASSERT_EQ(cadhost::ui::EntryCount(layers), 6);
            for (int i = 0; i < 6; ++i) EXPECT_EQ(cadhost::ui::Entry(layers, i)->check, BST_CHECKED) << i;
            int count = 0;
            const ObjectTypeRow* rows = GetObjectTypeRows(count);
            ASSERT_EQ(count, 8);
            for (int i = 0; i < count; ++i) {
                HWND box = ::GetDlgItem(window, rows[i].controlId);
                bool known = (51 & rows[i].bit) != 0;
                EXPECT_EQ(::IsWindowVisible(box) != FALSE, known) << cadhost::ToUtf8(rows[i].valueName);
                EXPECT_EQ(cadhost::ui::GetCheck(box), known ? BST_CHECKED : BST_UNCHECKED);
            }
            ASSERT_EQ(cadhost::ui::UserTick(layers, cadhost::ui::FindEntry(layers, -1, L"WALLS", true), false), L"");
            Click(*CWnd::FromHandle(window), IDC_TYPE_ARC);
            Press(window, IDOK);
        });
        ASSERT_EQ(dialog.DoModal(), IDOK);
        // Sorted, without WALLS.
        std::vector<std::wstring> layers;
        for (INT_PTR i = 0; i < dialog.m_layers.GetSize(); ++i) layers.push_back(dialog.m_layers[i].str());
        EXPECT_EQ(layers, (std::vector<std::wstring>{L"0", L"Defpoints", L"FURNITURE", L"NOTES", L"ROOMS"}));
    }
    struct Stored {
        const wchar_t* name;
        UINT value;
    };
    for (Stored s : {Stored{L"Line", 1}, Stored{L"Polyline", 1}, Stored{L"MText", 0}, Stored{L"Text", 0},
                     Stored{L"Circle", 1}, Stored{L"Arc", 0}, Stored{L"Solid", 0}, Stored{L"BlockReference", 0}})
        EXPECT_EQ(CRegistry::GetProfileInt(L"Quillmark\\LengthField", s.name, 99), s.value) << cadhost::ToUtf8(s.name);
    EXPECT_EQ(CRegistry::GetProfileInt(L"Quillmark\\AreaField", L"Circle", 99), 99u);  // the other key: untouched
    // Cancel writes nothing; Unselect All leaves no layer.
    CObjectFilterDialog again(L"Quillmark\\LengthField", 51, nullptr);
    Inner([&](HWND window) {
        EXPECT_EQ(cadhost::ui::GetCheck(::GetDlgItem(window, IDC_TYPE_ARC)), BST_UNCHECKED);
        Click(*CWnd::FromHandle(window), IDC_TYPE_LINE);
        Press(window, IDC_FILTER_UNSELECT_ALL);
        HWND layers = ::GetDlgItem(window, IDC_FILTER_LAYERS);
        for (int i = 0; i < cadhost::ui::EntryCount(layers); ++i) EXPECT_EQ(cadhost::ui::Entry(layers, i)->check, 0);
        Press(window, IDCANCEL);
    });
    EXPECT_EQ(again.DoModal(), IDCANCEL);
    EXPECT_EQ(again.m_layers.GetSize(), 0);
    EXPECT_EQ(CRegistry::GetProfileInt(L"Quillmark\\LengthField", L"Line", 99), 1u);
}

}  // namespace
