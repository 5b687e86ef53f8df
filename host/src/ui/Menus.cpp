#include "ui/Menus.h"

namespace cadhost::ui {

MenuTable::~MenuTable() {
    for (auto& [handle, menu] : m_menus) {
        if (menu->object) menu->object->m_hMenu = nullptr;
    }
}

HMENU MenuTable::Create(bool popup) {
    auto menu = std::make_unique<HMENU__>();
    menu->popup = popup;
    HMENU handle = menu.get();
    m_menus.emplace(handle, std::move(menu));
    return handle;
}

void MenuTable::Fill(HMENU menu, const std::vector<MenuItemTemplate>& items) {
    for (const MenuItemTemplate& source : items) {
        MenuItem item;
        item.flags = source.flags;
        item.id = source.id;
        item.text = source.text;
        if (source.flags & MF_POPUP) {
            item.popup = Create(true);
            item.popup->owner = menu;
            Fill(item.popup, source.items);
        }
        menu->items.push_back(std::move(item));
    }
}

HMENU MenuTable::FromTemplate(const MenuTemplate& menu) {
    HMENU handle = Create(false);
    Fill(handle, menu.items);
    return handle;
}

bool MenuTable::IsMenu(HMENU menu) const { return menu && m_menus.count(menu) != 0; }

bool MenuTable::Destroy(HMENU menu) {
    auto it = m_menus.find(menu);
    if (it == m_menus.end()) return false;
    std::vector<HMENU> popups;
    for (MenuItem& item : menu->items) {
        if (item.popup) popups.push_back(item.popup);
    }
    if (HMENU owner = menu->owner; owner && IsMenu(owner)) {
        for (MenuItem& item : owner->items) {
            if (item.popup == menu) item.popup = nullptr;
        }
    }
    if (it->second->object) it->second->object->m_hMenu = nullptr;
    m_menus.erase(it);
    for (HMENU popup : popups) {
        if (IsMenu(popup)) {
            popup->owner = nullptr;
            Destroy(popup);
        }
    }
    return true;
}

CMenu* MenuTable::Object(HMENU menu) {
    auto it = m_menus.find(menu);
    if (it == m_menus.end()) return nullptr;
    if (!it->second->object) {
        it->second->object = std::make_unique<CMenu>();
        it->second->object->m_hMenu = menu;
    }
    return it->second->object.get();
}

MenuItem* MenuTable::Find(HMENU menu, UINT item, UINT flags, HMENU* holder, size_t* position) {
    if (!IsMenu(menu)) return nullptr;
    if (flags & MF_BYPOSITION) {
        if (item >= menu->items.size()) return nullptr;
        if (holder) *holder = menu;
        if (position) *position = item;
        return &menu->items[item];
    }
    for (size_t i = 0; i < menu->items.size(); ++i) {
        MenuItem& entry = menu->items[i];
        if (!(entry.flags & (MF_POPUP | MF_SEPARATOR)) && entry.id == item) {
            if (holder) *holder = menu;
            if (position) *position = i;
            return &entry;
        }
        if (entry.popup) {
            if (MenuItem* found = Find(entry.popup, item, flags, holder, position)) return found;
        }
    }
    return nullptr;
}

}  // namespace cadhost::ui
