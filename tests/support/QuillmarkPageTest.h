// Tests of one of the module's option pages inside the Field dialog: the
// module's hook, which counts the page's requests for a new field code, and
// a run of the dialog on the page.
#pragma once

#include <dbapserv.h>

#include <functional>
#include <string>

#include "HostResource.h"
#include "plugin/hook/AsdkCustomOptionDialogHook.h"
#include "plugin/hook/FieldTypes.h"
#include "support/ModulePagesTest.h"
#include "ui/UserInput.h"

namespace qmtest {

// A hook that counts how often a page asks it to bring the code up to date.
class CountingHook : public AsdkCustomOptionDialogHook {
public:
    BOOL UpdateFieldCode() override {
        ++updates;
        return AsdkCustomOptionDialogHook::UpdateFieldCode();
    }
    int updates = 0;
};

class QuillmarkPageTest : public ModulePagesTest {
protected:
    CAcFdUiFieldDialogHook& Hook() override { return m_hook; }

    // Runs the Field dialog on the page of a field type, chosen by its title
    // or, for an edited field, by the hook; the test acts on the page, and
    // the dialog is cancelled after.
    template <class Page>
    void RunPage(const wchar_t* title, FieldTypeId fieldId, const std::function<void(CAcFdUiFieldDialog&, Page&)>& act,
                 AcDbField* edited = nullptr) {
        CAcFdUiFieldDialog dialog(acdbHostApplicationServices()->workingDatabase(), 0, edited);
        m_driver.onModal = [&](HWND) {
            if (!edited) {
                auto* list = static_cast<CListBox*>(dialog.GetDlgItem(IDC_ACFD_FIELD_LIST));
                int index = list->FindStringExact(-1, title);
                ASSERT_GE(index, 0);
                ASSERT_EQ(cadhost::ui::UserChoose(list->m_hWnd, index), L"");
            }
            auto* page = dynamic_cast<Page*>(m_hook.Page(fieldId));
            ASSERT_NE(page, nullptr);
            act(dialog, *page);
            dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
        };
        dialog.DoModal();
        delete dialog.TakeField();
    }
    // The text of a control of a page.
    static std::wstring Text(CWnd& page, int id) {
        CString text;
        page.GetDlgItemText(id, text);
        return text.str();
    }

    CountingHook m_hook;
};

}  // namespace qmtest
