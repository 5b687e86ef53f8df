// Menus: loading them from resources, their items, the popup menu that the
// host's user interface answers, and the framework's CMenu and CCmdUI.
#include <afxwin.h>

#include <algorithm>
#include <cwchar>

#include "ui/Desktop.h"
#include "ui/resources/ResourceLookup.h"

using cadhost::ui::Desktop;
using cadhost::ui::MenuItem;

IMPLEMENT_DYNCREATE(CMenu, CObject)

namespace {

constexpr UINT kItemFlags = MF_POPUP | MF_SEPARATOR | MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_MENUBARBREAK |
                            MF_MENUBREAK | MF_HELP | MF_DEFAULT | MF_BITMAP | MF_OWNERDRAW;

cadhost::ui::MenuTable* Table() {
    Desktop* desktop = Desktop::Current();
    return desktop ? &desktop->menus() : nullptr;
}

bool Holds(HMENU menu, HMENU candidate, int depth = 0) {
    if (menu == candidate) return true;
    if (depth > 64) return true;  // a nesting this deep is refused like a cycle
    for (const MenuItem& item : menu->items) {
        if (item.popup && Holds(item.popup, candidate, depth + 1)) return true;
    }
    return false;
}

// An item for InsertMenu and ModifyMenu; false when its popup cannot go there.
bool MakeItem(HMENU menu, UINT flags, UINT_PTR newItem, LPCWSTR text, MenuItem& item) {
    cadhost::ui::MenuTable* table = Table();
    item.flags = flags & kItemFlags;
    item.text = (flags & MF_SEPARATOR) || !text ? L"" : text;
    if (flags & MF_POPUP) {
        auto popup = reinterpret_cast<HMENU>(newItem);
        if (!table->IsMenu(popup) || popup->owner || Holds(popup, menu)) return false;
        item.popup = popup;
        item.id = 0;
    } else {
        item.id = static_cast<UINT>(newItem);
    }
    return true;
}

std::wstring Describe(const cadhost::ui::PopupMenuRequest& request) {
    std::wstring text = L"[menu]";
    for (size_t i = 0; i < request.items.size(); ++i) {
        const cadhost::ui::PopupMenuLine& line = request.items[i];
        text += i == 0 ? L" " : L" | ";
        text += std::to_wstring(i);
        if (line.flags & MF_SEPARATOR) {
            text += L" ---";
            continue;
        }
        text += L" \"" + line.text + L"\"";
        if (line.flags & MF_POPUP) text += L" >";
        if (line.flags & (MF_GRAYED | MF_DISABLED)) text += L" inactive";
        if (line.flags & MF_CHECKED) text += L" checked";
    }
    if (request.items.empty()) text += L" (empty)";
    return text;
}

}  // namespace

extern "C" {

HMENU WINAPI CreateMenu() {
    cadhost::ui::MenuTable* table = Table();
    return table ? table->Create(false) : nullptr;
}

HMENU WINAPI CreatePopupMenu() {
    cadhost::ui::MenuTable* table = Table();
    return table ? table->Create(true) : nullptr;
}

HMENU WINAPI LoadMenuW(HINSTANCE instance, LPCWSTR name) {
    cadhost::ui::MenuTable* table = Table();
    if (!table) return nullptr;
    cadhost::ui::Found<cadhost::ui::MenuTemplate> found = cadhost::ui::FindMenuTemplate(instance, name);
    if (!found) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return nullptr;
    }
    return table->FromTemplate(*found.item);
}

BOOL WINAPI DestroyMenu(HMENU menu) {
    cadhost::ui::MenuTable* table = Table();
    return table && table->Destroy(menu);
}

BOOL WINAPI IsMenu(HMENU menu) {
    cadhost::ui::MenuTable* table = Table();
    return table && table->IsMenu(menu);
}

HMENU WINAPI GetSubMenu(HMENU menu, int position) {
    if (!IsMenu(menu) || position < 0 || static_cast<size_t>(position) >= menu->items.size()) return nullptr;
    return menu->items[static_cast<size_t>(position)].popup;
}

int WINAPI GetMenuItemCount(HMENU menu) { return IsMenu(menu) ? static_cast<int>(menu->items.size()) : -1; }

UINT WINAPI GetMenuItemID(HMENU menu, int position) {
    if (!IsMenu(menu) || position < 0 || static_cast<size_t>(position) >= menu->items.size()) return 0xFFFFFFFFu;
    const MenuItem& item = menu->items[static_cast<size_t>(position)];
    if (item.flags & MF_POPUP) return 0xFFFFFFFFu;
    return item.flags & MF_SEPARATOR ? 0 : item.id;
}

UINT WINAPI GetMenuState(HMENU menu, UINT item, UINT flags) {
    cadhost::ui::MenuTable* table = Table();
    MenuItem* found = table ? table->Find(menu, item, flags) : nullptr;
    if (!found) return 0xFFFFFFFFu;
    UINT state = found->flags & ~static_cast<UINT>(MF_POPUP);
    if (found->popup) state = (static_cast<UINT>(found->popup->items.size()) << 8) | (state & 0xFF) | MF_POPUP;
    return state;
}

int WINAPI GetMenuStringW(HMENU menu, UINT item, LPWSTR buffer, int bufferMax, UINT flags) {
    cadhost::ui::MenuTable* table = Table();
    MenuItem* found = table ? table->Find(menu, item, flags) : nullptr;
    if (!found) {
        if (buffer && bufferMax > 0) buffer[0] = L'\0';
        return 0;
    }
    if (!buffer || bufferMax <= 0) return static_cast<int>(found->text.size());
    int n = static_cast<int>(std::min<size_t>(found->text.size(), static_cast<size_t>(bufferMax - 1)));
    std::wmemcpy(buffer, found->text.data(), static_cast<size_t>(n));
    buffer[n] = L'\0';
    return n;
}

BOOL WINAPI InsertMenuW(HMENU menu, UINT position, UINT flags, UINT_PTR newItem, LPCWSTR text) {
    cadhost::ui::MenuTable* table = Table();
    if (!table || !table->IsMenu(menu)) return FALSE;
    HMENU holder = menu;
    size_t at = menu->items.size();
    if (flags & MF_BYPOSITION) {
        if (position != 0xFFFFFFFFu && position < menu->items.size()) at = position;
    } else if (!table->Find(menu, position, MF_BYCOMMAND, &holder, &at)) {
        holder = menu;
        at = menu->items.size();
    }
    MenuItem item;
    if (!MakeItem(holder, flags, newItem, text, item)) return FALSE;
    if (item.popup) item.popup->owner = holder;
    holder->items.insert(holder->items.begin() + static_cast<std::ptrdiff_t>(at), std::move(item));
    return TRUE;
}

BOOL WINAPI AppendMenuW(HMENU menu, UINT flags, UINT_PTR newItem, LPCWSTR text) {
    return InsertMenuW(menu, 0xFFFFFFFFu, flags | MF_BYPOSITION, newItem, text);
}

BOOL WINAPI ModifyMenuW(HMENU menu, UINT position, UINT flags, UINT_PTR newItem, LPCWSTR text) {
    cadhost::ui::MenuTable* table = Table();
    HMENU holder = nullptr;
    size_t at = 0;
    MenuItem* found = table ? table->Find(menu, position, flags, &holder, &at) : nullptr;
    if (!found) return FALSE;
    MenuItem item;
    if (!MakeItem(holder, flags, newItem, text, item)) return FALSE;
    if (found->popup && found->popup != item.popup) table->Destroy(found->popup);
    if (item.popup) item.popup->owner = holder;
    holder->items[at] = std::move(item);
    return TRUE;
}

BOOL WINAPI DeleteMenu(HMENU menu, UINT position, UINT flags) {
    cadhost::ui::MenuTable* table = Table();
    HMENU holder = nullptr;
    size_t at = 0;
    MenuItem* found = table ? table->Find(menu, position, flags, &holder, &at) : nullptr;
    if (!found) return FALSE;
    HMENU popup = found->popup;
    holder->items.erase(holder->items.begin() + static_cast<std::ptrdiff_t>(at));
    if (popup) {
        popup->owner = nullptr;
        table->Destroy(popup);
    }
    return TRUE;
}

BOOL WINAPI RemoveMenu(HMENU menu, UINT position, UINT flags) {
    cadhost::ui::MenuTable* table = Table();
    HMENU holder = nullptr;
    size_t at = 0;
    MenuItem* found = table ? table->Find(menu, position, flags, &holder, &at) : nullptr;
    if (!found) return FALSE;
    if (found->popup) found->popup->owner = nullptr;
    holder->items.erase(holder->items.begin() + static_cast<std::ptrdiff_t>(at));
    return TRUE;
}

UINT WINAPI EnableMenuItem(HMENU menu, UINT item, UINT enable) {
    cadhost::ui::MenuTable* table = Table();
    MenuItem* found = table ? table->Find(menu, item, enable) : nullptr;
    if (!found) return 0xFFFFFFFFu;
    UINT previous = found->flags & (MF_GRAYED | MF_DISABLED);
    found->flags = (found->flags & ~static_cast<UINT>(MF_GRAYED | MF_DISABLED)) | (enable & (MF_GRAYED | MF_DISABLED));
    return previous;
}

DWORD WINAPI CheckMenuItem(HMENU menu, UINT item, UINT check) {
    cadhost::ui::MenuTable* table = Table();
    MenuItem* found = table ? table->Find(menu, item, check) : nullptr;
    if (!found) return 0xFFFFFFFFu;
    DWORD previous = found->flags & MF_CHECKED;
    found->flags = (found->flags & ~static_cast<UINT>(MF_CHECKED)) | (check & MF_CHECKED);
    return previous;
}

BOOL WINAPI TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int, HWND owner, const RECT*) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->menus().IsMenu(menu)) return FALSE;
    cadhost::ui::PopupMenuRequest request;
    request.x = x;
    request.y = y;
    for (const MenuItem& item : menu->items) request.items.push_back({item.text, item.id, item.flags});
    cadhost::ui::UiDriver& driver = desktop->driver();
    if (!driver.Abandoning()) desktop->Show(Describe(request));
    int chosen = driver.AnswerPopupMenu(request);
    if (chosen < 0 || static_cast<size_t>(chosen) >= request.items.size()) return FALSE;
    const cadhost::ui::PopupMenuLine& line = request.items[static_cast<size_t>(chosen)];
    if (line.flags & (MF_SEPARATOR | MF_POPUP | MF_GRAYED | MF_DISABLED)) return FALSE;
    if (flags & TPM_RETURNCMD) return static_cast<BOOL>(line.id);
    // The command comes to the owner once the menu has closed.
    if (!(flags & TPM_NONOTIFY) && desktop->IsWindow(owner)) desktop->Post(owner, WM_COMMAND, MAKEWPARAM(line.id, 0), 0);
    return TRUE;
}
}

CMenu::CMenu() : m_hMenu(nullptr) {}

CMenu::~CMenu() { DestroyMenu(); }

CMenu* CMenu::FromHandle(HMENU hMenu) {
    cadhost::ui::MenuTable* table = Table();
    return table ? table->Object(hMenu) : nullptr;
}

BOOL CMenu::Attach(HMENU hMenu) {
    if (m_hMenu || !::IsMenu(hMenu)) return FALSE;
    m_hMenu = hMenu;
    return TRUE;
}

HMENU CMenu::Detach() {
    HMENU menu = m_hMenu;
    m_hMenu = nullptr;
    return menu;
}

BOOL CMenu::CreateMenu() { return Attach(::CreateMenu()); }

BOOL CMenu::CreatePopupMenu() { return Attach(::CreatePopupMenu()); }

BOOL CMenu::LoadMenu(LPCTSTR lpszResourceName) {
    if (m_hMenu) return FALSE;
    HINSTANCE resources = AfxFindResourceHandle(lpszResourceName, RT_MENU);
    return Attach(::LoadMenuW(resources, lpszResourceName));
}

BOOL CMenu::LoadMenu(UINT nIDResource) { return LoadMenu(MAKEINTRESOURCE(nIDResource)); }

BOOL CMenu::DestroyMenu() {
    if (!m_hMenu) return FALSE;
    return ::DestroyMenu(Detach());
}

CMenu* CMenu::GetSubMenu(int nPos) const { return FromHandle(::GetSubMenu(m_hMenu, nPos)); }

UINT CMenu::GetMenuItemCount() const { return static_cast<UINT>(::GetMenuItemCount(m_hMenu)); }

UINT CMenu::GetMenuItemID(int nPos) const { return ::GetMenuItemID(m_hMenu, nPos); }

UINT CMenu::GetMenuState(UINT nID, UINT nFlags) const { return ::GetMenuState(m_hMenu, nID, nFlags); }

int CMenu::GetMenuString(UINT nIDItem, LPTSTR lpString, int nMaxCount, UINT nFlags) const {
    return ::GetMenuStringW(m_hMenu, nIDItem, lpString, nMaxCount, nFlags);
}

int CMenu::GetMenuString(UINT nIDItem, CString& rString, UINT nFlags) const {
    int length = ::GetMenuStringW(m_hMenu, nIDItem, nullptr, 0, nFlags);
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    int n = ::GetMenuStringW(m_hMenu, nIDItem, text.data(), length + 1, nFlags);
    text.resize(static_cast<size_t>(n));
    rString = CString(text);
    return n;
}

BOOL CMenu::InsertMenu(UINT nPosition, UINT nFlags, UINT_PTR nIDNewItem, LPCTSTR lpszNewItem) {
    return ::InsertMenuW(m_hMenu, nPosition, nFlags, nIDNewItem, lpszNewItem);
}

BOOL CMenu::AppendMenu(UINT nFlags, UINT_PTR nIDNewItem, LPCTSTR lpszNewItem) {
    return ::AppendMenuW(m_hMenu, nFlags, nIDNewItem, lpszNewItem);
}

BOOL CMenu::ModifyMenu(UINT nPosition, UINT nFlags, UINT_PTR nIDNewItem, LPCTSTR lpszNewItem) {
    return ::ModifyMenuW(m_hMenu, nPosition, nFlags, nIDNewItem, lpszNewItem);
}

BOOL CMenu::DeleteMenu(UINT nPosition, UINT nFlags) { return ::DeleteMenu(m_hMenu, nPosition, nFlags); }

BOOL CMenu::RemoveMenu(UINT nPosition, UINT nFlags) { return ::RemoveMenu(m_hMenu, nPosition, nFlags); }

UINT CMenu::EnableMenuItem(UINT nIDEnableItem, UINT nEnable) { return ::EnableMenuItem(m_hMenu, nIDEnableItem, nEnable); }

UINT CMenu::CheckMenuItem(UINT nIDCheckItem, UINT nCheck) {
    return static_cast<UINT>(::CheckMenuItem(m_hMenu, nIDCheckItem, nCheck));
}

BOOL CMenu::TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, LPCRECT lpRect) {
    return ::TrackPopupMenu(m_hMenu, nFlags, x, y, 0, pWnd ? pWnd->m_hWnd : nullptr, lpRect);
}

CCmdUI::CCmdUI()
    : m_nID(0), m_nIndex(0), m_pMenu(nullptr), m_pSubMenu(nullptr), m_pParentMenu(nullptr), m_pOther(nullptr),
      m_bEnableChanged(FALSE), m_bContinueRouting(FALSE), m_nIndexMax(0) {}

void CCmdUI::Enable(BOOL bOn) {
    if (m_pMenu) {
        if (m_pSubMenu) return;  // popups are not changed through their items
        m_pMenu->EnableMenuItem(m_nIndex, MF_BYPOSITION | (bOn ? MF_ENABLED : (MF_DISABLED | MF_GRAYED)));
    } else if (m_pOther) {
        m_pOther->EnableWindow(bOn);
    }
    m_bEnableChanged = TRUE;
}

void CCmdUI::SetCheck(int nCheck) {
    if (m_pMenu) {
        if (m_pSubMenu) return;
        m_pMenu->CheckMenuItem(m_nIndex, MF_BYPOSITION | (nCheck ? MF_CHECKED : MF_UNCHECKED));
    } else if (m_pOther) {
        ::SendMessageW(m_pOther->m_hWnd, BM_SETCHECK, static_cast<WPARAM>(nCheck), 0);
    }
}

void CCmdUI::SetRadio(BOOL bOn) { SetCheck(bOn ? 1 : 0); }

void CCmdUI::SetText(LPCTSTR lpszText) {
    if (m_pMenu) {
        if (m_pSubMenu) return;
        UINT state = m_pMenu->GetMenuState(m_nIndex, MF_BYPOSITION);
        if (state == 0xFFFFFFFFu) return;
        state &= ~static_cast<UINT>(MF_BITMAP | MF_OWNERDRAW | MF_SEPARATOR | MF_POPUP);
        m_pMenu->ModifyMenu(m_nIndex, MF_BYPOSITION | MF_STRING | state, m_nID, lpszText);
    } else if (m_pOther) {
        m_pOther->SetWindowText(lpszText);
    }
}

BOOL CCmdUI::DoUpdate(CCmdTarget* pTarget, BOOL bDisableIfNoHndler) {
    if (!pTarget) return FALSE;
    m_bEnableChanged = FALSE;
    BOOL handled = pTarget->OnCmdMsg(m_nID, static_cast<int>(CN_UPDATE_COMMAND_UI), this, nullptr);
    if (bDisableIfNoHndler && !m_bEnableChanged) {
        int info = 0;
        Enable(pTarget->OnCmdMsg(m_nID, CN_COMMAND, this, &info));
    }
    return handled;
}
