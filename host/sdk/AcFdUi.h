// The Field dialog and how modules extend it: a module registers one hook
// with the field manager; the dialog asks every hook for its categories,
// field types and option pages, hands it the field to edit, and lets it
// build the field when the user confirms.
#pragma once

#include "aduiDialog.h"
#include "afxcoll.h"
#include "afxtempl.h"
#include "dbfield.h"

class CAcFdUiFieldDialog;
class CAcFdUiFieldOptionDialog;

// The id that stands for "no field type" and for the category that lists
// every type.
#define ACFDUI_NO_FIELD 0xFFFFFFFFu
#define ACFDUI_ALL_CATEGORIES 0xFFFFFFFFu

class CADHOST_API CAcFdUiFieldDialogHook : public CObject {
    DECLARE_DYNAMIC(CAcFdUiFieldDialogHook)
public:
    CAcFdUiFieldDialogHook();
    ~CAcFdUiFieldDialogHook() override;

    virtual BOOL CreateInstance(CAcFdUiFieldDialogHook*& hook);
    // The evaluator ids whose fields this hook edits; answers their count.
    virtual int GetEvaluatorIds(CStringArray& evaluatorIds);
    // The dialog opens: the base keeps the dialog, the database and the context.
    virtual BOOL BeginFieldDialog(CAcFdUiFieldDialog* dialog, AcDbDatabase* database, int context);
    // The dialog closes with its result (IDOK, IDCANCEL).
    virtual BOOL EndFieldDialog(int result);
    // The dialog opens on an existing field; the base answers whether there is one.
    virtual BOOL SetFieldToEdit(AcDbField* field);
    // The base answers what GetCategories and GetFields give.
    virtual int GetCategoriesFor(UINT context, CStringArray& names, CUIntArray& ids);
    virtual int GetFieldsFor(UINT categoryId, UINT context, CStringArray& names, CUIntArray& ids, BOOL& sort);
    virtual BOOL GetOptionDialog(UINT fieldId, CAcFdUiFieldOptionDialog*& page);
    // The value text of a code under a format, evaluated for a preview in
    // the dialog's database; "####" when it does not evaluate.
    virtual CString GetPreview(LPCTSTR fieldCode, LPCTSTR format);
    virtual BOOL UpdateFieldCode();
    virtual BOOL OnFieldSelected(UINT fieldId);
    // Builds the field of a type; the base builds none.
    virtual BOOL CreateField(UINT fieldId, AcDbField*& field);
    virtual BOOL GetCategories(CStringArray& names, CUIntArray& ids);
    virtual BOOL GetFields(UINT categoryId, CStringArray& names, CUIntArray& ids, BOOL& sort);

    // The database and dialog of the dialog that is open, or null.
    AcDbDatabase* GetDatabase() const { return m_pDb; }
    CAcFdUiFieldDialog* GetFieldDialog() const { return m_pFieldDialog; }
    int GetContext() const { return m_nContext; }

protected:
    CAcFdUiFieldDialog* m_pFieldDialog;
    AcDbDatabase* m_pDb;
    int m_nContext;
};

// The page of a field type, shown in the option area of the Field dialog.
class CADHOST_API CAcFdUiFieldOptionDialog : public CAdUiDialog {
    DECLARE_DYNAMIC(CAcFdUiFieldOptionDialog)
public:
    CAcFdUiFieldOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* fieldDialog, UINT templateId,
                             HINSTANCE dialogResource = nullptr);
    ~CAcFdUiFieldOptionDialog() override;

    // The dialog asks a page for its window when it first shows it. The
    // base notes the parent and makes no window: a page makes its window
    // from its own template.
    virtual BOOL Create(CWnd* parent);
    using CAdUiDialog::Create;

    CAcFdUiFieldDialog* GetFieldDialog() const { return m_pFieldDialog; }
    CAcFdUiFieldDialogHook* GetFieldDialogHook() const { return m_pDialogHook; }

    // The type shown changed to this page's; the page comes into view; it
    // goes out of view.
    virtual BOOL OnFieldSelected(UINT fieldId);
    virtual BOOL OnSetActive();
    virtual BOOL OnKillActive();

protected:
    CAcFdUiFieldDialogHook* m_pDialogHook;
    CAcFdUiFieldDialog* m_pFieldDialog;
    CWnd* m_pPageParent;
};

// The Field dialog: a list of categories, the field types of the chosen
// category, the option page of the chosen type, the field code box, a
// preview, OK and Cancel.
class CADHOST_API CAcFdUiFieldDialog : public CAdUiDialog {
    DECLARE_DYNAMIC(CAcFdUiFieldDialog)
public:
    // Opens on a new field (fieldToEdit null) or on a field of the drawing,
    // which stays the caller's.
    CAcFdUiFieldDialog(AcDbDatabase* database, int context, AcDbField* fieldToEdit = nullptr, CWnd* parent = nullptr);
    ~CAcFdUiFieldDialog() override;

    // Runs the dialog; every hook hears EndFieldDialog as it closes.
    INT_PTR DoModal() override;
    // The field built at OK; the caller owns it then. Null otherwise.
    AcDbField* TakeField();

    // The field code box. SetFieldCode shows a text as the program's, so
    // that the box is not dirty; text the user types makes it dirty, and it
    // stays so while what is set is that typed text, trimmed, given back.
    BOOL SetFieldCode(LPCTSTR fieldCode);
    CString GetFieldCode() const;
    BOOL IsFieldCodeDirty() const { return m_codeDirty; }
    CEdit* GetFieldCodeEditCtrl();

    // The field type chosen, ACFDUI_NO_FIELD when none is; the category
    // shown. Either pointer may be null; answers the field type.
    UINT GetCurrentField(UINT* fieldId, UINT* categoryId) const;
    // Shows a category's types and chooses the type, with its page.
    BOOL SelectField(UINT fieldId, UINT categoryId);
    // The page now shown, or null.
    CAcFdUiFieldOptionDialog* GetOptionDialog() const { return m_pCurrentPage; }

    // Hides the dialog while the user works in the drawing, and brings it
    // back with restore TRUE.
    void BeginEditorCommand();
    void CompleteEditorCommand(BOOL restore = TRUE);
    BOOL InEditorCommand() const { return m_editorCommand; }

    CWnd* ScriptTarget() override;
    // Scripts name the field code box "code".
    CWnd* ScriptControl(LPCTSTR name) override;

protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    afx_msg void OnCategoryChange();
    afx_msg void OnFieldTypeChange();
    afx_msg void OnCodeChange();

    DECLARE_MESSAGE_MAP()

private:
    void FillFieldTypes();
    void ShowFieldType(int index);
    void HidePage();
    void UpdatePreview();

    struct Impl;
    Impl* m_impl;
    AcDbDatabase* m_pDb;
    int m_nContext;
    AcDbField* m_pFieldToEdit;
    AcDbField* m_pResult;
    CAcFdUiFieldOptionDialog* m_pCurrentPage;
    BOOL m_codeDirty;
    BOOL m_settingCode;
    BOOL m_editorCommand;
    BOOL m_begun;
};

// The registry of hooks; one for the session.
class CADHOST_API CAcFdUiFieldManager {
public:
    CAcFdUiFieldManager() = default;
    virtual ~CAcFdUiFieldManager();
    CAcFdUiFieldManager(const CAcFdUiFieldManager&) = delete;
    CAcFdUiFieldManager& operator=(const CAcFdUiFieldManager&) = delete;

    // FALSE for a null hook or one registered already.
    BOOL RegisterFieldDialogHook(CAcFdUiFieldDialogHook* hook);
    // FALSE for a hook that is not registered.
    BOOL UnregisterFieldDialogHook(CAcFdUiFieldDialogHook* hook);
    int GetHookCount() const;
    CAcFdUiFieldDialogHook* GetHook(int index) const;

    // Used by the host: forgets the hooks whose code lies in a module that
    // is going away. Answers how many went.
    int DropHooksOfModule(HMODULE module);

private:
    struct Entry {
        CAcFdUiFieldDialogHook* hook;
        HMODULE module;
    };
    CArray<Entry, const Entry&> m_hooks;
};

// The field manager of the running host; null when no host runs.
CADHOST_API CAcFdUiFieldManager* AcFdUiGetFieldManager();
