#include "services/LiveUpdateDlg.h"

#include <afxinet.h>

#include "ArxUtils/ArxUtils.h"
#include "Product.h"
#include "services/Registry.h"
#include "services/WebLinks.h"

BEGIN_MESSAGE_MAP(CLiveUpdateDlg, CDialog)
    ON_BN_CLICKED(IDC_CHECK_UP, &CLiveUpdateDlg::OnCheckUp)
END_MESSAGE_MAP()

CLiveUpdateDlg::CLiveUpdateDlg(CWnd* parent) : CDialog(IDD_LIVE_UPDATE, parent), m_version(QM_PRODUCT_VERSION) {}

BOOL CLiveUpdateDlg::OnInitDialog() {
    CDialog::OnInitDialog();
    CString download = DownloadPage();
    m_link.SetColors(255, 0xFF0000, ::GetSysColor(COLOR_BTNFACE));
    m_link.SetCaption(download);
    m_link.SetUrl(download);
    m_link.SetLinkCursor(::LoadCursorW(nullptr, IDC_HAND));
    m_link.SetUnderline(TRUE);
    if (CWnd* placeholder = GetDlgItem(IDC_LINK_PLACEHOLDER)) m_link.CreateOver(placeholder, IDC_DOWNLOAD_LINK);
    ShowLink(FALSE);
    return TRUE;
}

void CLiveUpdateDlg::SetStatus(const CString& text) { SetDlgItemText(IDC_UPDATE_STATUS, text); }

void CLiveUpdateDlg::ShowLink(BOOL show) {
    if (m_link.GetSafeHwnd()) m_link.ShowWindow(show ? SW_SHOW : SW_HIDE);
    // The line after the link stays hidden.
    if (CWnd* note = GetDlgItem(IDC_DOWNLOAD_NOTE)) note->ShowWindow(SW_HIDE);
}

void CLiveUpdateDlg::OnCheckUp() {
    CWnd* checkUp = GetDlgItem(IDC_CHECK_UP);
    CWnd* close = GetDlgItem(IDOK);
    if (checkUp) checkUp->EnableWindow(FALSE);
    if (close) close->EnableWindow(FALSE);
    ShowLink(FALSE);
    CheckForUpdate();
    if (checkUp) checkUp->EnableWindow(TRUE);
    if (close) close->EnableWindow(TRUE);
}

CString CLiveUpdateDlg::UpdateKey() {
    CString key;
    key.Format(L"%s*%s:", (LPCTSTR)CRegistry::PlatformWord(), QM_PRODUCT_NAME);
    key.MakeLower();
    return key;
}

BOOL CLiveUpdateDlg::VersionFromLine(const CString& line, const CString& key, CString& version) {
    CString lower = line;
    lower.MakeLower();
    if (lower.Find(key) < 0) return FALSE;
    // As many characters as the key has go from the left, wherever the key
    // stood in the line.
    version = line.Mid(key.GetLength());
    version.Trim();
    return TRUE;
}

void CLiveUpdateDlg::CheckForUpdate() {
    CInternetSession session;
    SetStatus(L"Connecting...");
    CHttpConnection* connection = nullptr;
    CHttpFile* request = nullptr;
    try {
        connection = session.GetHttpConnection(QM_MAKER_HOST, static_cast<INTERNET_PORT>(0), nullptr, nullptr);
        if (!connection) {
            SetStatus(L"Network connection failed.");
            session.Close();
            return;
        }
        request = connection->OpenRequest(L"GET", QM_UPDATE_LIST_PATH);
        request->SendRequest();
        DWORD status = 0;
        request->QueryInfoStatusCode(status);
        if (status != HTTP_STATUS_OK) {
            CString text;
            text.Format(L"Network connection failed: %ld.", static_cast<long>(status));
            SetStatus(text);
            request->Close();
            delete request;
            connection->Close();
            delete connection;
            session.Close();
            return;
        }

        CString key = UpdateKey();
        CString serverVersion;
        CString line;
        while (request->ReadString(line)) VersionFromLine(line, key, serverVersion);  // the last line wins
        request->Close();
        delete request;
        request = nullptr;
        connection->Close();
        delete connection;
        connection = nullptr;

        if (serverVersion.IsEmpty()) serverVersion = m_version;
        CString text;
        if (ComparedUpToDate(serverVersion)) {
            text.Format(L"%s version is current and up-to-date.", QM_PRODUCT_NAME);
            SetStatus(text);
            ShowLink(FALSE);
        } else {
            text.Format(L"The new version %s is available.\nPlease download the new version by visiting",
                        (LPCTSTR)serverVersion);
            SetStatus(text);
            ShowLink(TRUE);
        }
        session.Close();
    } catch (CInternetException* e) {
        SetStatus(L"Network connection failed.");
        if (request) {
            request->Close();
            delete request;
        }
        if (connection) {
            connection->Close();
            delete connection;
        }
        session.Close();
        e->ReportError();
        e->Delete();
    }
}

int CLiveUpdateDlg::ComparedUpToDate(const CString& serverVersion) const {
    CStringArray mine, theirs;
    SplitText(m_version, L".", mine);
    SplitText(serverVersion, L".", theirs);
    INT_PTR common = mine.GetSize() < theirs.GetSize() ? mine.GetSize() : theirs.GetSize();
    for (INT_PTR i = 0; i < common; ++i) {
        int own = _wtoi(mine[i]);
        int server = _wtoi(theirs[i]);
        if (server > own) return 0;
        if (server < own) return 1;
    }
    return 1;
}
