// The CAD platform's dialog classes. A dialog may name the resource handle
// that holds its template; it is then looked up there, whatever the
// resource stack holds.
#pragma once

#include "afxwin.h"

class CADHOST_API CAdUiBaseDialog : public CDialog {
    DECLARE_DYNAMIC(CAdUiBaseDialog)
public:
    explicit CAdUiBaseDialog(UINT idd, CWnd* pParent = nullptr, HINSTANCE hDialogResource = nullptr);
    ~CAdUiBaseDialog() override;

    BOOL Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr) override;
    BOOL Create(UINT nIDTemplate, CWnd* pParentWnd = nullptr) override;
    INT_PTR DoModal() override;
    BOOL OnInitDialog() override;

    HINSTANCE GetDialogResource() const { return m_hDialogResource; }
    void SetDialogName(LPCTSTR name) { m_dialogName = name; }
    LPCTSTR GetDialogName() const { return m_dialogName; }

protected:
    HINSTANCE m_hDialogResource;
    CString m_dialogName;

    DECLARE_MESSAGE_MAP()
};

class CADHOST_API CAdUiDialog : public CAdUiBaseDialog {
    DECLARE_DYNAMIC(CAdUiDialog)
public:
    explicit CAdUiDialog(UINT idd, CWnd* pParent = nullptr, HINSTANCE hDialogResource = nullptr);
    ~CAdUiDialog() override;

protected:
    DECLARE_MESSAGE_MAP()
};
