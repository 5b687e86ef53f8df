// The framework's standard dialogs: the file dialog.
#pragma once

#include "afxwin.h"

class CADHOST_API CCommonDialog : public CDialog {
    DECLARE_DYNAMIC(CCommonDialog)
public:
    explicit CCommonDialog(CWnd* pParentWnd) : CDialog(static_cast<UINT>(0), pParentWnd) {}
    ~CCommonDialog() override = default;
};

// The open and save dialog. The host asks its user interface for the path:
// a session script answers with "file PATH" or "file cancel".
class CADHOST_API CFileDialog : public CCommonDialog {
    DECLARE_DYNAMIC(CFileDialog)
public:
    // lpszFilter pairs descriptions and patterns with '|', ended by "||".
    explicit CFileDialog(BOOL bOpenFileDialog, LPCTSTR lpszDefExt = nullptr, LPCTSTR lpszFileName = nullptr,
                         DWORD dwFlags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCTSTR lpszFilter = nullptr,
                         CWnd* pParentWnd = nullptr, DWORD dwSize = 0, BOOL bVistaStyle = TRUE);
    ~CFileDialog() override = default;

    // IDOK with a path chosen, IDCANCEL otherwise.
    INT_PTR DoModal() override;

    CString GetPathName() const;  // the full path
    CString GetFileName() const;  // its file part
    CString GetFileExt() const;   // the extension, without the dot
    CString GetFileTitle() const; // the file part without its extension
    CString GetFolderPath() const;
    BOOL GetReadOnlyPref() const { return (m_ofn.Flags & OFN_READONLY) != 0; }

    OPENFILENAME m_ofn;

protected:
    BOOL m_bOpenFileDialog;
    CString m_strFilter;  // as given, with '|'
    CString m_filterBuffer;
    CString m_defaultExt;
    wchar_t m_szFileName[MAX_PATH];
    wchar_t m_szFileTitle[MAX_PATH];
};
