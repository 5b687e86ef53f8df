#include "pages/AsdkTextFileFieldOptionDialog.h"

#include <afxdlgs.h>

#include "fieldcode/FieldCodeForms.h"
#include "pages/PageSupport.h"
#include "pages/PathType.h"
#include "plugin/ModuleState.h"

IMPLEMENT_DYNAMIC(AsdkTextFileFieldOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkTextFileFieldOptionDialog, CAcFdUiFieldOptionDialog)
    ON_BN_CLICKED(IDC_BROWSE, &AsdkTextFileFieldOptionDialog::OnBrowse)
    ON_CBN_SELCHANGE(IDC_PATH_TYPE, &AsdkTextFileFieldOptionDialog::OnPathTypeChanged)
    ON_EN_CHANGE(IDC_PATH, &AsdkTextFileFieldOptionDialog::OnPathChanged)
    ON_BN_CLICKED(IDC_RECENT_FILES, &AsdkTextFileFieldOptionDialog::OnRecentFileMenu)
    ON_COMMAND_RANGE(ID_RECENT_FILE_FIRST, ID_RECENT_FILE_LAST, &AsdkTextFileFieldOptionDialog::OnRecentFile)
END_MESSAGE_MAP()

AsdkTextFileFieldOptionDialog::AsdkTextFileFieldOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog,
                                                             HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance),
      m_recentFiles(0, QM_TEXTFILE_RECENT_SECTION, QM_RECENT_ENTRY_FORMAT, QM_RECENT_CAPACITY,
                    QM_RECENT_DISPLAY_LENGTH) {}

AsdkTextFileFieldOptionDialog::~AsdkTextFileFieldOptionDialog() = default;

void AsdkTextFileFieldOptionDialog::DoDataExchange(CDataExchange* pDX) {
    CAcFdUiFieldOptionDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_PATH_TYPE, m_pathType);
    DDX_Control(pDX, IDC_PATH, m_path);
}

BOOL AsdkTextFileFieldOptionDialog::OnInitDialog() {
    CAcFdUiFieldOptionDialog::OnInitDialog();
    FillPathTypes(m_pathType);
    m_recentFiles.ReadList();
    return TRUE;
}

BOOL AsdkTextFileFieldOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    if (!CAdUiDialog::Create(IDD, parent)) return FALSE;
    MakeChildPage(*this, parent);
    return TRUE;
}

CString AsdkTextFileFieldOptionDialog::GetFieldCode() {
    CString path;
    if (m_path.m_hWnd) m_path.GetWindowText(path);
    CRelativePathStep relative(this);
    bool makeRelative = m_pathType.m_hWnd && m_pathType.GetCurSel() == QM_PATH_TYPE_RELATIVE;
    return ComposeTextFileFieldCode(path, makeRelative ? &relative : nullptr);
}

BOOL AsdkTextFileFieldOptionDialog::LoadField(AcDbField* field) {
    if (!field) return FALSE;
    CString stored;
    if (!ReadTextDataItem(field, QM_TEXTFILE_DATA, stored)) return FALSE;
    BOOL relative = PathIsRelativeW(stored);
    // A relative path shows in full where the drawing's folder resolves it,
    // so that composing makes it relative again; else it stands as stored.
    CString shown = stored;
    if (relative) ResolveRelativePath(stored, shown);
    if (m_path.m_hWnd) m_path.SetWindowText(shown);
    if (relative && m_pathType.m_hWnd) m_pathType.SetCurSel(QM_PATH_TYPE_RELATIVE);
    UpdateFieldCode();
    return TRUE;
}

void AsdkTextFileFieldOptionDialog::UpdateFieldCode() {
    if (CAcFdUiFieldDialogHook* hook = GetFieldDialogHook()) hook->UpdateFieldCode();
}

void AsdkTextFileFieldOptionDialog::OnBrowse() {
    CFileDialog dialog(TRUE, nullptr, nullptr, 0, QM_TEXTFILE_FILTER, this);
    if (dialog.DoModal() != IDOK) return;
    CString path = dialog.GetPathName();
    m_path.SetWindowText(path);
    m_recentFiles.Add(path);
    m_recentFiles.WriteList();
}

void AsdkTextFileFieldOptionDialog::OnPathTypeChanged() { ChangePathType(this); }

void AsdkTextFileFieldOptionDialog::OnPathChanged() { UpdateFieldCode(); }

void AsdkTextFileFieldOptionDialog::OnRecentFileMenu() { ShowRecentFileMenu(this, m_recentFiles); }

void AsdkTextFileFieldOptionDialog::OnRecentFile(UINT id) {
    CString path;
    if (!GetRecentFile(m_recentFiles, id, path)) return;
    m_path.SetWindowText(path);
    UpdateFieldCode();
}
