// The Field dialog: it asks every registered hook for its categories and
// field types, shows the option page of the chosen type, keeps the field
// code box, and has the hook of the chosen type build the field at OK.
#include <AcFdUi.h>
#include <tchar.h>

#include <cwchar>
#include <vector>

#include "HostResource.h"
#include "fielddialog/FieldPreview.h"
#include "ui/Controls.h"
#include "ui/resources/ResourceLookup.h"

IMPLEMENT_DYNAMIC(CAcFdUiFieldDialog, CAdUiDialog)

BEGIN_MESSAGE_MAP(CAcFdUiFieldDialog, CAdUiDialog)
    ON_CBN_SELCHANGE(IDC_ACFD_CATEGORY, &CAcFdUiFieldDialog::OnCategoryChange)
    ON_LBN_SELCHANGE(IDC_ACFD_FIELD_LIST, &CAcFdUiFieldDialog::OnFieldTypeChange)
    ON_EN_CHANGE(IDC_ACFD_FIELD_CODE, &CAcFdUiFieldDialog::OnCodeChange)
END_MESSAGE_MAP()

namespace {
constexpr wchar_t kAllCategories[] = L"All";
constexpr wchar_t kNoTypeNoCode[] = L"Choose a field type or enter a field code.";
constexpr wchar_t kCodeDoesNotEvaluate[] = L"The field code does not evaluate.";
}  // namespace

struct CAcFdUiFieldDialog::Impl {
    struct Category {
        CString name;
        UINT id;
        int hook;  // -1: every hook's types
    };
    struct FieldType {
        UINT id;
        int hook;
    };
    std::vector<CAcFdUiFieldDialogHook*> hooks;
    std::vector<std::vector<CString>> evaluatorIds;  // per hook
    std::vector<Category> categories;
    std::vector<FieldType> types;  // of the category shown, in the list's order
    int category = -1;
    int type = -1;  // the chosen entry of the list

    CAcFdUiFieldDialogHook* HookOf(int typeIndex) const {
        if (typeIndex < 0 || typeIndex >= static_cast<int>(types.size())) return nullptr;
        int hook = types[static_cast<size_t>(typeIndex)].hook;
        return hook >= 0 && hook < static_cast<int>(hooks.size()) ? hooks[static_cast<size_t>(hook)] : nullptr;
    }
};

CAcFdUiFieldDialog::CAcFdUiFieldDialog(AcDbDatabase* database, int context, AcDbField* fieldToEdit, CWnd* parent)
    : CAdUiDialog(IDD_ACFD_FIELD_DIALOG, parent, cadhost::ui::HostResourceHandle()),
      m_impl(new Impl),
      m_pDb(database),
      m_nContext(context),
      m_pFieldToEdit(fieldToEdit),
      m_pResult(nullptr),
      m_pCurrentPage(nullptr),
      m_codeDirty(FALSE),
      m_settingCode(FALSE),
      m_editorCommand(FALSE),
      m_begun(FALSE) {}

CAcFdUiFieldDialog::~CAcFdUiFieldDialog() {
    delete m_pResult;
    delete m_impl;
}

INT_PTR CAcFdUiFieldDialog::DoModal() {
    delete m_pResult;
    m_pResult = nullptr;
    INT_PTR result = CAdUiDialog::DoModal();
    // The window and the pages' windows are gone; the hooks drop their pages.
    m_pCurrentPage = nullptr;
    if (m_begun) {
        for (CAcFdUiFieldDialogHook* hook : m_impl->hooks) hook->EndFieldDialog(static_cast<int>(result));
        m_begun = FALSE;
    }
    m_impl->hooks.clear();
    return result;
}

AcDbField* CAcFdUiFieldDialog::TakeField() {
    AcDbField* field = m_pResult;
    m_pResult = nullptr;
    return field;
}

BOOL CAcFdUiFieldDialog::OnInitDialog() {
    CAdUiDialog::OnInitDialog();
    Impl& m = *m_impl;
    if (CAcFdUiFieldManager* manager = AcFdUiGetFieldManager()) {
        for (int i = 0; i < manager->GetHookCount(); ++i) m.hooks.push_back(manager->GetHook(i));
    }
    for (CAcFdUiFieldDialogHook* hook : m.hooks) hook->BeginFieldDialog(this, m_pDb, m_nContext);
    m_begun = TRUE;

    m.categories.push_back({kAllCategories, ACFDUI_ALL_CATEGORIES, -1});
    for (size_t h = 0; h < m.hooks.size(); ++h) {
        CStringArray ids;
        m.hooks[h]->GetEvaluatorIds(ids);
        std::vector<CString> list;
        for (INT_PTR i = 0; i < ids.GetSize(); ++i) list.push_back(ids[i]);
        m.evaluatorIds.push_back(std::move(list));

        CStringArray names;
        CUIntArray categoryIds;
        m.hooks[h]->GetCategoriesFor(static_cast<UINT>(m_nContext), names, categoryIds);
        for (INT_PTR i = 0; i < names.GetSize() && i < categoryIds.GetSize(); ++i)
            m.categories.push_back({names[i], categoryIds[i], static_cast<int>(h)});
    }
    auto* categories = static_cast<CComboBox*>(GetDlgItem(IDC_ACFD_CATEGORY));
    for (size_t i = 0; categories && i < m.categories.size(); ++i) {
        int index = categories->AddString(m.categories[i].name);
        categories->SetItemData(index, static_cast<DWORD_PTR>(i));
    }
    if (categories) categories->SetCurSel(0);
    m.category = 0;
    FillFieldTypes();

    if (m_pFieldToEdit) {
        SetFieldCode(m_pFieldToEdit->getFieldCode(AcDbField::kFieldCode | AcDbField::kAddMarkers));
        // The hooks that edit fields of this evaluator, in order, until one takes it.
        const ACHAR* id = m_pFieldToEdit->evaluatorId();
        for (size_t h = 0; h < m.hooks.size(); ++h) {
            bool edits = false;
            for (const CString& own : m.evaluatorIds[h]) edits = edits || _wcsicmp(own, id) == 0;
            if (edits && m.hooks[h]->SetFieldToEdit(m_pFieldToEdit)) break;
        }
    }
    return TRUE;
}

void CAcFdUiFieldDialog::FillFieldTypes() {
    Impl& m = *m_impl;
    HidePage();
    m.types.clear();
    m.type = -1;
    auto* list = static_cast<CListBox*>(GetDlgItem(IDC_ACFD_FIELD_LIST));
    if (!list) return;
    list->ResetContent();
    if (m.category < 0 || m.category >= static_cast<int>(m.categories.size())) return;
    const Impl::Category& category = m.categories[static_cast<size_t>(m.category)];
    for (size_t h = 0; h < m.hooks.size(); ++h) {
        if (category.hook >= 0 && category.hook != static_cast<int>(h)) continue;
        CStringArray names;
        CUIntArray ids;
        BOOL sort = FALSE;  // the list keeps each hook's order
        m.hooks[h]->GetFieldsFor(category.id, static_cast<UINT>(m_nContext), names, ids, sort);
        for (INT_PTR i = 0; i < names.GetSize() && i < ids.GetSize(); ++i) {
            int index = list->AddString(names[i]);
            list->SetItemData(index, ids[i]);
            m.types.push_back({ids[i], static_cast<int>(h)});
        }
    }
}

void CAcFdUiFieldDialog::HidePage() {
    if (!m_pCurrentPage) return;
    CAcFdUiFieldOptionDialog* page = m_pCurrentPage;
    m_pCurrentPage = nullptr;
    page->OnKillActive();
    if (page->m_hWnd) page->ShowWindow(SW_HIDE);
}

void CAcFdUiFieldDialog::ShowFieldType(int index) {
    Impl& m = *m_impl;
    if (index == m.type && (m_pCurrentPage || index < 0)) return;
    HidePage();
    m.type = index;
    CAcFdUiFieldDialogHook* hook = m.HookOf(index);
    if (!hook) return;
    UINT id = m.types[static_cast<size_t>(index)].id;
    hook->OnFieldSelected(id);
    CAcFdUiFieldOptionDialog* page = nullptr;
    hook->GetOptionDialog(id, page);
    if (!page) return;
    if (!page->m_hWnd && (!page->Create(this) || !page->m_hWnd)) return;
    // The page fills the option area.
    if (CWnd* area = GetDlgItem(IDC_ACFD_OPTION_AREA)) {
        CRect rect;
        area->GetWindowRect(&rect);
        ScreenToClient(&rect);
        CRect pageRect;
        page->GetWindowRect(&pageRect);
        page->MoveWindow(rect.left, rect.top, pageRect.Width(), pageRect.Height());
    }
    page->ShowWindow(SW_SHOW);
    m_pCurrentPage = page;
    page->OnSetActive();
}

BOOL CAcFdUiFieldDialog::SetFieldCode(LPCTSTR fieldCode) {
    CEdit* box = GetFieldCodeEditCtrl();
    if (!box) return FALSE;
    CString code = fieldCode ? fieldCode : L"";
    // A hook that keeps typed text hands it back, trimmed: the text stays
    // the user's, and so survives the page's next change as well.
    if (m_codeDirty) {
        CString typed = GetFieldCode();
        typed.Trim();
        if (!typed.IsEmpty() && typed == code) {
            m_settingCode = TRUE;
            box->SetWindowText(code);
            m_settingCode = FALSE;
            UpdatePreview();
            return TRUE;
        }
    }
    m_settingCode = TRUE;
    box->SetWindowText(code);
    m_settingCode = FALSE;
    m_codeDirty = FALSE;
    UpdatePreview();
    return TRUE;
}

CString CAcFdUiFieldDialog::GetFieldCode() const {
    CString text;
    if (CWnd* box = GetDlgItem(IDC_ACFD_FIELD_CODE)) box->GetWindowText(text);
    return text;
}

CEdit* CAcFdUiFieldDialog::GetFieldCodeEditCtrl() { return static_cast<CEdit*>(GetDlgItem(IDC_ACFD_FIELD_CODE)); }

UINT CAcFdUiFieldDialog::GetCurrentField(UINT* fieldId, UINT* categoryId) const {
    const Impl& m = *m_impl;
    UINT id = m.type >= 0 && m.type < static_cast<int>(m.types.size()) ? m.types[static_cast<size_t>(m.type)].id
                                                                         : ACFDUI_NO_FIELD;
    if (fieldId) *fieldId = id;
    if (categoryId)
        *categoryId = m.category >= 0 && m.category < static_cast<int>(m.categories.size())
                          ? m.categories[static_cast<size_t>(m.category)].id
                          : ACFDUI_ALL_CATEGORIES;
    return id;
}

BOOL CAcFdUiFieldDialog::SelectField(UINT fieldId, UINT categoryId) {
    Impl& m = *m_impl;
    auto* categories = static_cast<CComboBox*>(GetDlgItem(IDC_ACFD_CATEGORY));
    auto* list = static_cast<CListBox*>(GetDlgItem(IDC_ACFD_FIELD_LIST));
    if (!categories || !list) return FALSE;
    for (size_t i = 0; i < m.categories.size(); ++i) {
        if (m.categories[i].id != categoryId) continue;
        if (static_cast<int>(i) != m.category) {
            categories->SetCurSel(static_cast<int>(i));
            m.category = static_cast<int>(i);
            FillFieldTypes();
        }
        break;
    }
    for (size_t i = 0; i < m.types.size(); ++i) {
        if (m.types[i].id != fieldId) continue;
        list->SetCurSel(static_cast<int>(i));
        ShowFieldType(static_cast<int>(i));
        return TRUE;
    }
    return FALSE;
}

void CAcFdUiFieldDialog::BeginEditorCommand() {
    m_editorCommand = TRUE;
    ShowWindow(SW_HIDE);
}

void CAcFdUiFieldDialog::CompleteEditorCommand(BOOL restore) {
    m_editorCommand = FALSE;
    if (restore) ShowWindow(SW_SHOW);
}

CWnd* CAcFdUiFieldDialog::ScriptTarget() {
    if (m_pCurrentPage && m_pCurrentPage->m_hWnd) return m_pCurrentPage;
    return this;
}

CWnd* CAcFdUiFieldDialog::ScriptControl(LPCTSTR name) {
    return name && std::wcscmp(name, L"code") == 0 ? GetFieldCodeEditCtrl() : nullptr;
}

void CAcFdUiFieldDialog::OnCategoryChange() {
    auto* categories = static_cast<CComboBox*>(GetDlgItem(IDC_ACFD_CATEGORY));
    int index = categories ? categories->GetCurSel() : -1;
    if (index < 0 || index == m_impl->category) return;
    m_impl->category = static_cast<int>(categories->GetItemData(index));
    FillFieldTypes();
}

void CAcFdUiFieldDialog::OnFieldTypeChange() {
    auto* list = static_cast<CListBox*>(GetDlgItem(IDC_ACFD_FIELD_LIST));
    if (list) ShowFieldType(list->GetCurSel());
}

void CAcFdUiFieldDialog::OnCodeChange() {
    if (!m_settingCode) {
        m_codeDirty = TRUE;
        UpdatePreview();
    }
}

void CAcFdUiFieldDialog::UpdatePreview() {
    // The preview evaluates the whole code, which may list a hundred
    // thousand objects: it is made when the box is read or shown, of the
    // code that stands in the box then, once for any number of changes.
    CWnd* box = GetDlgItem(IDC_ACFD_PREVIEW);
    if (!box) return;
    cadhost::ui::SetTextSource(box->m_hWnd, [this] {
        CString code = GetFieldCode();
        CAcFdUiFieldDialogHook* hook = m_impl->HookOf(m_impl->type);
        CString preview = hook ? hook->GetPreview(code, L"") : CString(cadhost::PreviewFieldCode(code, L"", m_pDb));
        return std::wstring(static_cast<const wchar_t*>(preview));
    });
}

void CAcFdUiFieldDialog::OnOK() {
    UINT id = GetCurrentField(nullptr, nullptr);
    AcDbField* field = nullptr;
    if (CAcFdUiFieldDialogHook* hook = m_impl->HookOf(m_impl->type)) {
        // The hook reports its own failures; the dialog stays open for them.
        if (!hook->CreateField(id, field) || !field) return;
    } else {
        CString code = GetFieldCode();
        code.Trim();
        if (code.IsEmpty()) {
            AfxMessageBox(kNoTypeNoCode);
            return;
        }
        field = new AcDbField;
        if (field->setFieldCode(code, AcDbField::FieldCodeFlag(0)) != Acad::eOk ||
            field->evaluate(AcDbField::kPreview, m_pDb) != Acad::eOk) {
            delete field;
            AfxMessageBox(kCodeDoesNotEvaluate);
            if (CEdit* box = GetFieldCodeEditCtrl()) box->SetFocus();
            return;
        }
        field->setEvaluationOption(AcDbField::kAutomatic);
    }
    delete m_pResult;
    m_pResult = field;
    EndDialog(IDOK);
}

void CAcFdUiFieldDialog::OnCancel() { CAdUiDialog::OnCancel(); }
