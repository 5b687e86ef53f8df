// DialogLab.arx: a module for the tests of the dialog framework, written as
// a module of the platform. Its commands open dialogs from its own resource
// script; every handler prints what it heard on the command line, so that a
// session script sees the order and content of the notifications.
#include <afxdlgs.h>
#include <arxHeaders.h>

#include <algorithm>
#include <cwchar>

#include "LabResource.h"

namespace {

HINSTANCE s_instance = nullptr;
Adesk::UInt32 s_apiState = 0;
UINT s_ping = 0;  // a registered message, numbered when the module loads

// The module's templates are reachable within the scope.
class LabResourceScope {
public:
    LabResourceScope() { acDocManagerPtr()->pushResourceHandle(s_instance); }
    ~LabResourceScope() { acDocManagerPtr()->popResourceHandle(); }
    LabResourceScope(const LabResourceScope&) = delete;
    LabResourceScope& operator=(const LabResourceScope&) = delete;
};

class CNestedDialog : public CDialog {
public:
    explicit CNestedDialog(CWnd* pParent) : CDialog(IDD_NESTED, pParent) {}
    CString m_text;

protected:
    void DoDataExchange(CDataExchange* pDX) override {
        CDialog::DoDataExchange(pDX);
        DDX_Text(pDX, IDC_NESTED_TEXT, m_text);
    }
};

class CLabDialog : public CDialog {
public:
    CLabDialog() : CDialog(IDD_LAB) {}

    CListBox m_sorted;
    CCheckListBox m_ticks;
    CComboBox m_choice;
    CComboBox m_typed;
    CString m_name;
    double m_number = 2.5;
    int m_count = 3;
    int m_flag = 0;
    int m_way = 1;

protected:
    void DoDataExchange(CDataExchange* pDX) override {
        CDialog::DoDataExchange(pDX);
        DDX_Control(pDX, IDC_SORTED, m_sorted);
        DDX_Control(pDX, IDC_TICKS, m_ticks);
        DDX_Control(pDX, IDC_CHOICE, m_choice);
        DDX_Control(pDX, IDC_TYPED, m_typed);
        DDX_Text(pDX, IDC_NAME, m_name);
        DDX_Text(pDX, IDC_NUMBER, m_number);
        DDX_Text(pDX, IDC_COUNT, m_count);
        DDV_MinMaxInt(pDX, m_count, 1, 10);
        DDX_Check(pDX, IDC_FLAG, m_flag);
        DDX_Radio(pDX, IDC_FIRST_WAY, m_way);
    }

    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        for (const wchar_t* name : {L"pear", L"Apple", L"fig", L"banana"}) {
            int index = m_sorted.AddString(name);
            m_sorted.SetItemData(index, std::wcslen(name));
        }
        for (const wchar_t* name : {L"WIN", L"DOOR", L"desk"}) m_ticks.AddString(name);
        m_ticks.SetCheck(m_ticks.FindStringExact(-1, L"door"), 1);
        m_choice.AddString(L"Full Path");
        m_choice.AddString(L"Relative Path");
        m_choice.SetItemData(1, static_cast<DWORD_PTR>(-1));
        m_choice.SetCurSel(0);
        PostMessage(s_ping, 5, 6);
        acutPrintf(L"\nOnInitDialog");
        return TRUE;
    }

    void OnOK() override {
        if (!UpdateData(TRUE)) {
            acutPrintf(L"\nOK refused");
            return;
        }
        acutPrintf(L"\nOK name=\"%s\" number=%g count=%d flag=%d way=%d", m_name.GetString(), m_number, m_count,
                   m_flag, m_way);
        EndDialog(IDOK);
    }

    void OnCancel() override {
        acutPrintf(L"\nCancel");
        CDialog::OnCancel();
    }

    void OnNameChange() {
        CString text;
        GetDlgItemText(IDC_NAME, text);
        SetDlgItemText(IDC_ECHO, text);
        acutPrintf(L"\nEN_CHANGE %d \"%s\"", IDC_NAME, text.GetString());
    }

    void OnEchoChange() {
        CString text;
        GetDlgItemText(IDC_ECHO, text);
        acutPrintf(L"\nEN_CHANGE %d \"%s\"", IDC_ECHO, text.GetString());
    }

    void OnSortedChange() {
        int index = m_sorted.GetCurSel();
        CString text;
        m_sorted.GetText(index, text);
        acutPrintf(L"\nLBN_SELCHANGE %d %d \"%s\" data %d", IDC_SORTED, index, text.GetString(),
                   static_cast<int>(m_sorted.GetItemData(index)));
    }

    CString Ticked() {
        CString ticked;
        for (int i = 0; i < m_ticks.GetCount(); ++i) {
            if (!m_ticks.GetCheck(i)) continue;
            CString name;
            m_ticks.GetText(i, name);
            ticked += (ticked.IsEmpty() ? L"" : L";") + name;
        }
        return ticked;
    }

    void OnTicksSelect() {
        acutPrintf(L"\nLBN_SELCHANGE %d %d ticked \"%s\"", IDC_TICKS, m_ticks.GetCurSel(), Ticked().GetString());
    }

    void OnTicksCheck() { acutPrintf(L"\nCLBN_CHKCHANGE %d ticked \"%s\"", IDC_TICKS, Ticked().GetString()); }

    void OnChoiceChange() {
        int index = m_choice.GetCurSel();
        acutPrintf(L"\nCBN_SELCHANGE %d %d data %d", IDC_CHOICE, index, static_cast<int>(m_choice.GetItemData(index)));
    }

    void OnTypedEdit() {
        CString text;
        m_typed.GetWindowText(text);
        acutPrintf(L"\nCBN_EDITCHANGE %d \"%s\" sel %d", IDC_TYPED, text.GetString(), m_typed.GetCurSel());
    }

    // The list follows the name box whenever it drops down, and its width
    // fits its widest entry plus a scroll bar and a blank.
    void OnTypedDropDown() {
        m_typed.ResetContent();
        CString name;
        GetDlgItemText(IDC_NAME, name);
        for (const wchar_t* entry : {L"zeta", L"Alpha", name.GetString()}) {
            if (*entry) m_typed.AddString(entry);
        }
        CClientDC dc(&m_typed);
        CFont* old = dc.SelectObject(m_typed.GetFont());
        int widest = 0;
        for (int i = 0; i < m_typed.GetCount(); ++i) {
            CString text;
            m_typed.GetLBText(i, text);
            widest = std::max<int>(widest, dc.GetTextExtent(text).cx + GetSystemMetrics(SM_CXVSCROLL));
        }
        widest += dc.GetTextExtent(L" ", 1).cx;
        dc.SelectObject(old);
        m_typed.SetDroppedWidth(static_cast<UINT>(widest));
        acutPrintf(L"\nCBN_DROPDOWN %d entries %d width %d", IDC_TYPED, m_typed.GetCount(), m_typed.GetDroppedWidth());
    }

    void OnTypedSelect() {
        CString text;
        m_typed.GetWindowText(text);
        acutPrintf(L"\nCBN_SELCHANGE %d %d \"%s\"", IDC_TYPED, m_typed.GetCurSel(), text.GetString());
    }

    void OnFlag() { acutPrintf(L"\nBN_CLICKED %d check %d", IDC_FLAG, IsDlgButtonChecked(IDC_FLAG)); }

    void OnWay(UINT id) {
        acutPrintf(L"\nBN_CLICKED %u checked %d", id, GetCheckedRadioButton(IDC_FIRST_WAY, IDC_THIRD_WAY));
    }

    void OnNested() {
        CNestedDialog nested(this);
        GetDlgItemText(IDC_NAME, nested.m_text);
        INT_PTR result = nested.DoModal();
        acutPrintf(L"\nNested ended %d \"%s\"", static_cast<int>(result), nested.m_text.GetString());
    }

    void OnAsk() {
        int answer = AfxMessageBox(L"Keep the changes?", MB_YESNOCANCEL | MB_ICONQUESTION);
        acutPrintf(L"\nAsk answered %d", answer);
        if (answer == IDNO) MessageBox(L"Then they go.", L"Dialog Lab", MB_OK | MB_ICONINFORMATION);
    }

    void OnBrowse() {
        CFileDialog dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, L"Text Files(*.txt)|*.txt||", this);
        if (dialog.DoModal() == IDOK)
            acutPrintf(L"\nBrowsed \"%s\" name \"%s\" ext \"%s\"", dialog.GetPathName().GetString(),
                       dialog.GetFileName().GetString(), dialog.GetFileExt().GetString());
        else
            acutPrintf(L"\nBrowse cancelled");
    }

    void OnMenu() {
        CRect rect;
        GetDlgItem(IDC_MENU)->GetWindowRect(&rect);
        CMenu menu;
        menu.LoadMenu(IDR_LAB_MENU);
        CMenu* popup = menu.GetSubMenu(0);
        if (!popup) {
            acutPrintf(L"\nMenu missing");
            return;
        }
        BOOL tracked = popup->TrackPopupMenu(0, rect.left, rect.bottom, this);
        menu.DestroyMenu();
        acutPrintf(L"\nMenu tracked %d at %d,%d", tracked, static_cast<int>(rect.left), static_cast<int>(rect.bottom));
    }

    void OnMenuCommand(UINT id) { acutPrintf(L"\nMenu command %u", id); }

    LRESULT OnPing(WPARAM wParam, LPARAM lParam) {
        acutPrintf(L"\nPing %d %d", static_cast<int>(wParam), static_cast<int>(lParam));
        return 0;
    }

    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CLabDialog, CDialog)
    ON_EN_CHANGE(IDC_NAME, &CLabDialog::OnNameChange)
    ON_EN_CHANGE(IDC_ECHO, &CLabDialog::OnEchoChange)
    ON_LBN_SELCHANGE(IDC_SORTED, &CLabDialog::OnSortedChange)
    ON_LBN_SELCHANGE(IDC_TICKS, &CLabDialog::OnTicksSelect)
    ON_CLBN_CHKCHANGE(IDC_TICKS, &CLabDialog::OnTicksCheck)
    ON_CBN_SELCHANGE(IDC_CHOICE, &CLabDialog::OnChoiceChange)
    ON_CBN_EDITCHANGE(IDC_TYPED, &CLabDialog::OnTypedEdit)
    ON_CBN_DROPDOWN(IDC_TYPED, &CLabDialog::OnTypedDropDown)
    ON_CBN_SELCHANGE(IDC_TYPED, &CLabDialog::OnTypedSelect)
    ON_BN_CLICKED(IDC_FLAG, &CLabDialog::OnFlag)
    ON_CONTROL_RANGE(BN_CLICKED, IDC_FIRST_WAY, IDC_THIRD_WAY, &CLabDialog::OnWay)
    ON_BN_CLICKED(IDC_NESTED, &CLabDialog::OnNested)
    ON_BN_CLICKED(IDC_ASK, &CLabDialog::OnAsk)
    ON_BN_CLICKED(IDC_BROWSE, &CLabDialog::OnBrowse)
    ON_BN_CLICKED(IDC_MENU, &CLabDialog::OnMenu)
    ON_COMMAND_RANGE(ID_LAB_FIRST, ID_LAB_OFF, &CLabDialog::OnMenuCommand)
    ON_REGISTERED_MESSAGE(s_ping, &CLabDialog::OnPing)
END_MESSAGE_MAP()

// A page shown inside another dialog: a pop-up template made a child.
class CLabPage : public CDialog {
public:
    CLabPage() : CDialog(IDD_LAB_PAGE) {}

    BOOL CreatePage(CWnd* pParent) {
        if (!Create(IDD_LAB_PAGE, pParent)) return FALSE;
        ModifyStyle(WS_POPUP | WS_CHILD | WS_THICKFRAME, WS_CHILD);
        SetParent(pParent);
        ShowWindow(SW_SHOW);
        return TRUE;
    }

protected:
    void OnText() {
        CString text;
        GetDlgItemText(IDC_PAGE_TEXT, text);
        acutPrintf(L"\nPage text \"%s\"", text.GetString());
    }
    void OnButton() { acutPrintf(L"\nPage button"); }

    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CLabPage, CDialog)
    ON_EN_CHANGE(IDC_PAGE_TEXT, &CLabPage::OnText)
    ON_BN_CLICKED(IDC_PAGE_BUTTON, &CLabPage::OnButton)
END_MESSAGE_MAP()

// A dialog that shows a page, and sends a script's controls to it.
class CPageHost : public CDialog {
public:
    CPageHost() : CDialog(IDD_PAGE_HOST) {}
    CWnd* ScriptTarget() override { return m_page.GetSafeHwnd() ? static_cast<CWnd*>(&m_page) : this; }

protected:
    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        BOOL made = m_page.CreatePage(this);
        acutPrintf(L"\nPage made %d, child %d", made, (m_page.GetStyle() & WS_CHILD) ? 1 : 0);
        return TRUE;
    }
    void OnMine() { acutPrintf(L"\nHost button"); }

    CLabPage m_page;
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CPageHost, CDialog)
    ON_BN_CLICKED(IDC_PAGE_BUTTON, &CPageHost::OnMine)
END_MESSAGE_MAP()

void RunLab() {
    CLabDialog dialog;
    INT_PTR result = dialog.DoModal();
    acutPrintf(L"\nLab ended %d", static_cast<int>(result));
}

void RunPages() {
    CPageHost dialog;
    INT_PTR result = dialog.DoModal();
    acutPrintf(L"\nPages ended %d", static_cast<int>(result));
}

// Registered without a resource handle: the templates are reachable only
// inside the module's scope.
void RunScopes() {
    CNestedDialog outside(nullptr);
    acutPrintf(L"\nOutside the scope: %d", static_cast<int>(outside.DoModal()));
    CString text;
    acutPrintf(L"\nString outside: %d", text.LoadString(IDS_GREETING));
    LabResourceScope scope;
    BOOL loaded = text.LoadString(IDS_GREETING);
    acutPrintf(L"\nString inside: %d \"%s\"", loaded, text.GetString());
    text.LoadString(IDS_FAREWELL);
    acutPrintf(L"\nSecond string: \"%s\"", text.GetString());
    CNestedDialog inside(nullptr);
    acutPrintf(L"\nInside the scope: %d", static_cast<int>(inside.DoModal()));
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) s_instance = instance;
    return TRUE;
}

ACRX_MODULE_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg, void* pkt) {
    switch (msg) {
    case AcRx::kInitAppMsg:
        acrxDynamicLinker->unlockApplication(pkt);
        acrxDynamicLinker->registerAppMDIAware(pkt);
        s_ping = RegisterWindowMessage(L"DialogLabPing");
        acedRegCmds->addCommand(L"LAB", L"LABDIALOG", L"LABDIALOG", ACRX_CMD_MODAL, &RunLab, nullptr, -1, s_instance);
        acedRegCmds->addCommand(L"LAB", L"LABPAGES", L"LABPAGES", ACRX_CMD_MODAL, &RunPages, nullptr, -1, s_instance);
        acedRegCmds->addCommand(L"LAB", L"LABSCOPES", L"LABSCOPES", ACRX_CMD_MODAL, &RunScopes, nullptr, -1, nullptr);
        break;
    case AcRx::kUnloadAppMsg:
        acedRegCmds->removeGroup(L"LAB");
        break;
    default:
        break;
    }
    return AcRx::kRetOK;
}

ACRX_MODULE_EXPORT Adesk::UInt32 acrxGetApiVersion(Adesk::UInt32 token) {
    Adesk::UInt32 result;
    if (s_apiState == 0) {
        s_apiState = token ^ ACRX_API_VERSION_18_0;
        result = ACRX_API_VERSION_18_0;
    } else {
        s_apiState ^= token;
        result = s_apiState;
    }
    if (token == 0) s_apiState = 0;
    return result;
}
