#include "services/AboutDlg.h"

#include "Product.h"

namespace {

const wchar_t* const kCopyright = L"Copyright (C) 2004-2011 Norvo. All rights reserved.";
const wchar_t* const kLegalNotice =
    L"Warning: this program is protected by copyright law and international treaties. Copying or passing on this "
    L"program, or any part of it, without the permission of Norvo is not allowed and may be prosecuted to the full "
    L"extent of the law.";

}  // namespace

BEGIN_MESSAGE_MAP(CAboutDlg, CDialog)
END_MESSAGE_MAP()

CAboutDlg::CAboutDlg(CWnd* parent) : CDialog(IDD_ABOUT, parent) {}

void CAboutDlg::DoDataExchange(CDataExchange* pDX) {
    CDialog::DoDataExchange(pDX);
    DDX_Text(pDX, IDC_ABOUT_VERSION, m_versionText);
    DDX_Text(pDX, IDC_ABOUT_NOTICE, m_legalNotice);
}

BOOL CAboutDlg::OnInitDialog() {
    CDialog::OnInitDialog();
    SetWindowText(CString(L"About ") + QM_PRODUCT_NAME);
    m_versionText.Format(L"%s version %s\n%s", QM_PRODUCT_NAME, QM_PRODUCT_VERSION, kCopyright);
    m_legalNotice = kLegalNotice;
    UpdateData(FALSE);
    return TRUE;
}
