// Menus: the objects behind HMENU. A popup item owns its submenu.
#pragma once

#include <afxwin.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "ui/resources/ResourceScript.h"

struct HMENU__;

namespace cadhost::ui {

struct MenuItem {
    UINT flags = 0;  // MF_POPUP, MF_SEPARATOR, MF_GRAYED, MF_DISABLED, MF_CHECKED...
    UINT id = 0;
    std::wstring text;
    HMENU__* popup = nullptr;
};

}  // namespace cadhost::ui

struct HMENU__ {
    bool popup = false;
    HMENU__* owner = nullptr;  // the menu whose item holds this one
    std::vector<cadhost::ui::MenuItem> items;
    std::unique_ptr<CMenu> object;  // the temporary object of FromHandle
};

namespace cadhost::ui {

class MenuTable {
public:
    MenuTable() = default;
    ~MenuTable();
    MenuTable(const MenuTable&) = delete;
    MenuTable& operator=(const MenuTable&) = delete;

    HMENU Create(bool popup);
    HMENU FromTemplate(const MenuTemplate& menu);
    bool IsMenu(HMENU menu) const;
    // Destroys a menu with its submenus.
    bool Destroy(HMENU menu);
    CMenu* Object(HMENU menu);

    // The item at a position (MF_BYPOSITION) or with a command id,
    // searched through the submenus; null when there is none.
    MenuItem* Find(HMENU menu, UINT item, UINT flags, HMENU* holder = nullptr, size_t* position = nullptr);

private:
    void Fill(HMENU menu, const std::vector<MenuItemTemplate>& items);

    std::unordered_map<HMENU, std::unique_ptr<HMENU__>> m_menus;
};

}  // namespace cadhost::ui
