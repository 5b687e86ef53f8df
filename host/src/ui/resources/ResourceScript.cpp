#include "ui/resources/ResourceScript.h"

#include <cwctype>
#include <functional>

namespace cadhost::ui {

ResourceName ResourceName::Number(WORD id) {
    ResourceName name;
    name.numeric = true;
    name.id = id;
    return name;
}

ResourceName ResourceName::Text(const std::wstring& text) {
    ResourceName name;
    name.numeric = false;
    name.text = text;
    for (wchar_t& c : name.text) c = static_cast<wchar_t>(std::towupper(c));
    return name;
}

std::optional<ResourceName> ResourceName::FromPointer(LPCWSTR name) {
    if (!name) return std::nullopt;
    if (IS_INTRESOURCE(name)) return Number(LOWORD(reinterpret_cast<ULONG_PTR>(name)));
    std::wstring text(name);
    if (text.size() > 1 && text[0] == L'#') {
        unsigned long value = 0;
        bool digits = true;
        for (size_t i = 1; i < text.size() && digits; ++i) {
            digits = std::iswdigit(text[i]) != 0;
            value = value * 10 + static_cast<unsigned long>(text[i] - L'0');
            if (value > 0xFFFF) digits = false;
        }
        if (digits) return Number(static_cast<WORD>(value));
    }
    return Text(text);
}

std::wstring ResourceName::Describe() const { return numeric ? std::to_wstring(id) : L"\"" + text + L"\""; }

size_t ResourceNameHash::operator()(const ResourceName& name) const {
    return name.numeric ? std::hash<unsigned>()(name.id) : std::hash<std::wstring>()(name.text) ^ 0x9e3779b9u;
}

const DialogTemplate* ResourceScript::FindDialog(const ResourceName& name) const {
    auto it = m_dialogs.find(name);
    return it == m_dialogs.end() ? nullptr : &it->second;
}

const MenuTemplate* ResourceScript::FindMenu(const ResourceName& name) const {
    auto it = m_menus.find(name);
    return it == m_menus.end() ? nullptr : &it->second;
}

const std::wstring* ResourceScript::FindString(UINT id) const {
    auto it = m_strings.find(id);
    return it == m_strings.end() ? nullptr : &it->second;
}

bool ResourceScript::Has(const ResourceName& name, const ResourceName& type) const {
    if (!type.numeric) return false;
    switch (type.id) {
    case 4:  // RT_MENU
        return FindMenu(name) != nullptr;
    case 5:  // RT_DIALOG
        return FindDialog(name) != nullptr;
    case 6: {  // RT_STRING: block n holds the ids 16(n-1) to 16n-1
        if (!name.numeric || name.id == 0) return false;
        UINT first = (static_cast<UINT>(name.id) - 1) * 16;
        for (UINT id = first; id < first + 16; ++id) {
            if (FindString(id)) return true;
        }
        return false;
    }
    default:
        return false;
    }
}

bool ResourceScript::Add(DialogTemplate dialog) {
    ResourceName name = dialog.name;
    return m_dialogs.emplace(name, std::move(dialog)).second;
}

bool ResourceScript::Add(MenuTemplate menu) {
    ResourceName name = menu.name;
    return m_menus.emplace(name, std::move(menu)).second;
}

bool ResourceScript::AddString(UINT id, std::wstring text) { return m_strings.emplace(id, std::move(text)).second; }

}  // namespace cadhost::ui
