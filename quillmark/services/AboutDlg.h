// The About dialog: the program's name and version, its copyright, and a
// notice on copying it.
#pragma once

#include "StdAfx.h"

#include "resources/resource.h"

class CAboutDlg : public CDialog {
public:
    explicit CAboutDlg(CWnd* parent = nullptr);

    const CString& VersionText() const { return m_versionText; }
    const CString& LegalNotice() const { return m_legalNotice; }

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;

    CString m_versionText;  // control 222
    CString m_legalNotice;  // control 224

    DECLARE_MESSAGE_MAP()
};
