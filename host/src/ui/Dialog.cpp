// CDialog: dialogs from templates of the current resources, modeless or
// run modally through the host's user interface driver.
#include <afxwin.h>

#include "app/Host.h"
#include "ui/Controls.h"
#include "ui/DialogBuilder.h"
#include "ui/resources/ResourceLookup.h"

using cadhost::ui::Desktop;

IMPLEMENT_DYNAMIC(CDialog, CWnd)

BEGIN_MESSAGE_MAP(CDialog, CWnd)
    ON_COMMAND(IDOK, &CDialog::OnOK)
    ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

namespace {

void Report(const std::wstring& text) {
    if (cadhost::Host* host = cadhost::Host::Current()) host->Print(L"\n" + text);
}

std::wstring NameOf(LPCTSTR name) {
    std::optional<cadhost::ui::ResourceName> key = cadhost::ui::ResourceName::FromPointer(name);
    return key ? key->Describe() : L"(none)";
}

// Makes sure that a modal dialog leaves the stack of modal runs, however
// its run ends.
class ModalRun {
public:
    ModalRun(Desktop& desktop, HWND dialog) : m_desktop(desktop), m_dialog(dialog) { desktop.PushModal(dialog); }
    ~ModalRun() { m_desktop.PopModal(m_dialog); }
    ModalRun(const ModalRun&) = delete;
    ModalRun& operator=(const ModalRun&) = delete;

private:
    Desktop& m_desktop;
    HWND m_dialog;
};

}  // namespace

CDialog::CDialog() : m_lpszTemplateName(nullptr), m_nIDHelp(0), m_pParentWnd(nullptr), m_modalResult(-1) {}

CDialog::CDialog(LPCTSTR lpszTemplateName, CWnd* pParentWnd) : CDialog() {
    SetTemplate(lpszTemplateName);
    m_pParentWnd = pParentWnd;
}

CDialog::CDialog(UINT nIDTemplate, CWnd* pParentWnd) : CDialog() {
    m_lpszTemplateName = nIDTemplate ? MAKEINTRESOURCE(nIDTemplate) : nullptr;
    m_nIDHelp = nIDTemplate;
    m_pParentWnd = pParentWnd;
}

CDialog::~CDialog() = default;

void CDialog::SetTemplate(LPCTSTR lpszTemplateName) {
    if (!lpszTemplateName || IS_INTRESOURCE(lpszTemplateName)) {
        m_lpszTemplateName = lpszTemplateName;
        if (lpszTemplateName) m_nIDHelp = LOWORD(reinterpret_cast<ULONG_PTR>(lpszTemplateName));
        return;
    }
    m_templateName = lpszTemplateName;
    m_lpszTemplateName = m_templateName.GetString();
}

BOOL CDialog::CreateFromTemplate(HWND hWndParent) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || m_hWnd) return FALSE;
    if (!m_lpszTemplateName) {
        Report(L"The dialog has no template.");
        return FALSE;
    }
    HINSTANCE resources = AfxFindResourceHandle(m_lpszTemplateName, RT_DIALOG);
    cadhost::ui::Found<cadhost::ui::DialogTemplate> found =
        cadhost::ui::FindDialogTemplate(resources, m_lpszTemplateName);
    if (!found) {
        Report(L"The dialog template " + NameOf(m_lpszTemplateName) + L" is not in the current resources.");
        return FALSE;
    }
    std::wstring why;
    HWND window = cadhost::ui::BuildDialog(*desktop, *found.item, hWndParent, why);
    if (!window) {
        Report(L"The dialog cannot be made: " + why + L".");
        return FALSE;
    }
    window->attached = this;
    m_hWnd = window;
    return TRUE;
}

BOOL CDialog::InitModeless() {
    HWND window = m_hWnd;
    if (OnInitDialog() && Desktop::Current()->IsWindow(window)) {
        HWND focus = cadhost::ui::FirstTabStop(window);
        if (focus && (window->style & WS_VISIBLE)) ::SetFocus(focus);
    }
    return TRUE;
}

BOOL CDialog::Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd) {
    if (lpszTemplateName) SetTemplate(lpszTemplateName);
    m_pParentWnd = pParentWnd;
    if (!CreateFromTemplate(pParentWnd ? pParentWnd->m_hWnd : nullptr)) return FALSE;
    return InitModeless();
}

BOOL CDialog::Create(UINT nIDTemplate, CWnd* pParentWnd) {
    return Create(nIDTemplate ? MAKEINTRESOURCE(nIDTemplate) : m_lpszTemplateName, pParentWnd);
}

INT_PTR CDialog::DoModal() {
    Desktop* desktop = Desktop::Current();
    if (!desktop || m_hWnd) return -1;
    HWND owner = m_pParentWnd ? cadhost::ui::TopWindow(m_pParentWnd->m_hWnd) : desktop->InnermostModal();
    if (!CreateFromTemplate(owner)) return -1;
    HWND window = m_hWnd;
    window->modal = true;
    m_modalResult = -1;
    INT_PTR result = IDCANCEL;
    {
        ModalRun run(*desktop, window);
        BOOL focusFirst = OnInitDialog();
        if (desktop->IsWindow(window) && !window->ended) {
            window->style |= WS_VISIBLE;
            HWND focus = cadhost::ui::FirstTabStop(window);
            if (focusFirst && focus) ::SetFocus(focus);
            desktop->driver().RunModal(window);
        }
        if (desktop->IsWindow(window) && window->ended) result = window->result;
        else if (!desktop->IsWindow(window) && m_modalResult != -1) result = m_modalResult;
        else result = IDCANCEL;  // the run was given up, or the dialog went without an end
    }
    if (desktop->IsWindow(window)) desktop->Destroy(window);
    return result;
}

void CDialog::EndDialog(int nResult) {
    m_modalResult = nResult;
    ::EndDialog(m_hWnd, nResult);
}

BOOL CDialog::OnInitDialog() {
    UpdateData(FALSE);
    return TRUE;
}

void CDialog::OnOK() {
    if (!UpdateData(TRUE)) return;
    EndDialog(IDOK);
}

void CDialog::OnCancel() { EndDialog(IDCANCEL); }

void CDialog::NextDlgCtrl() const {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->IsWindow(m_hWnd)) return;
    const std::vector<HWND>& children = m_hWnd->children;
    if (children.empty()) return;
    HWND focus = desktop->Focus();
    size_t start = 0;
    for (size_t i = 0; i < children.size(); ++i) {
        if (children[i] == focus) start = i + 1;
    }
    for (size_t n = 0; n < children.size(); ++n) {
        HWND child = children[(start + n) % children.size()];
        if ((child->style & WS_TABSTOP) && (child->style & WS_VISIBLE) && !(child->style & WS_DISABLED)) {
            ::SetFocus(child);
            return;
        }
    }
}

void CDialog::PrevDlgCtrl() const {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->IsWindow(m_hWnd)) return;
    const std::vector<HWND>& children = m_hWnd->children;
    if (children.empty()) return;
    HWND focus = desktop->Focus();
    size_t start = children.size() - 1;
    for (size_t i = 0; i < children.size(); ++i) {
        if (children[i] == focus) start = (i + children.size() - 1) % children.size();
    }
    for (size_t n = 0; n < children.size(); ++n) {
        HWND child = children[(start + children.size() - n) % children.size()];
        if ((child->style & WS_TABSTOP) && (child->style & WS_VISIBLE) && !(child->style & WS_DISABLED)) {
            ::SetFocus(child);
            return;
        }
    }
}

void CDialog::GotoDlgCtrl(CWnd* pWndCtrl) {
    if (pWndCtrl) ::SetFocus(pWndCtrl->m_hWnd);
}

void CDialog::SetDefID(UINT nID) { SendMessage(DM_SETDEFID, nID, 0); }

DWORD CDialog::GetDefID() const { return static_cast<DWORD>(::SendMessageW(m_hWnd, DM_GETDEFID, 0, 0)); }

void CDialog::MapDialogRect(LPRECT lpRect) const { ::MapDialogRect(m_hWnd, lpRect); }
