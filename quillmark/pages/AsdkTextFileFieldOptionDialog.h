// The Text File page: the file whose text the field shows, named by
// browsing, by typing or from the recent files, and whether its path goes
// into the code in full or relative to the drawing.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "pages/RecentFileListEx.h"
#include "resources/resource.h"

// The key under which the evaluator keeps the path of the code.
#define QM_TEXTFILE_DATA L"TextField Data"
#define QM_TEXTFILE_FILTER L"Text Files(*.prn;*.txt;*.csv)|*.prn;*.txt;*.csv||"

class AsdkTextFileFieldOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkTextFileFieldOptionDialog)
public:
    AsdkTextFileFieldOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkTextFileFieldOptionDialog() override;

    enum { IDD = IDD_TEXTFILE_PAGE };

    // The page's window, from the module's template, turned from a pop-up
    // into a child of the parent.
    BOOL Create(CWnd* parent) override;
    // The field code of the path box, made relative to the drawing first
    // when "Relative Path" is chosen; an empty box gives the code with
    // nothing behind the evaluator id.
    CString GetFieldCode();
    // Brings the page into the state of a stored field: its path, and
    // "Relative Path" for a relative one, shown in full where the drawing's
    // folder resolves it. FALSE, changing nothing, when the field is null or
    // holds no path as text.
    BOOL LoadField(AcDbField* field);

    // The list of recent files, as the page holds it.
    CRecentFileListEx& RecentFiles() { return m_recentFiles; }

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    afx_msg void OnBrowse();
    afx_msg void OnPathTypeChanged();
    afx_msg void OnPathChanged();
    afx_msg void OnRecentFileMenu();
    afx_msg void OnRecentFile(UINT id);

    // Asks the hook to compose the dialog's field code anew.
    void UpdateFieldCode();

    CComboBox m_pathType;
    CEdit m_path;
    CRecentFileListEx m_recentFiles;

    DECLARE_MESSAGE_MAP()
};
