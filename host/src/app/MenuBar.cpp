#include "app/MenuBar.h"

#include <adsdef.h>
#include <tchar.h>

#include <cwctype>

namespace cadhost {
namespace {

const wchar_t* const kHostTitles[] = {L"File",   L"Edit",  L"View",      L"Insert", L"Format", L"Tools",
                                      L"Draw",   L"Dimension", L"Modify", L"Window", L"Help"};

bool Same(const std::wstring& a, const std::wstring& b) { return _wcsicmp(a.c_str(), b.c_str()) == 0; }

// Reads "P<n>" at the start of text; the rest follows at pos.
bool ReadMenuNumber(const std::wstring& text, size_t& pos, int& number) {
    pos = 0;
    if (text.empty() || std::towupper(text[0]) != L'P') return false;
    pos = 1;
    number = 0;
    size_t start = pos;
    while (pos < text.size() && std::iswdigit(text[pos]) && pos - start < 6) number = number * 10 + (text[pos++] - L'0');
    return pos > start;
}

}  // namespace

void MenuBar::SetHostMenus(int count) {
    m_pullDowns.clear();
    for (int i = 0; i < count; ++i) {
        PullDown menu;
        menu.title = i < static_cast<int>(std::size(kHostTitles)) ? kHostTitles[i] : L"Menu" + std::to_wstring(i + 1);
        menu.items.push_back(MenuItem{L"(" + menu.title + L" commands)", L""});
        m_pullDowns.push_back(std::move(menu));
    }
}

bool MenuBar::IsGroupLoaded(const std::wstring& name) const {
    for (const MenuGroup& group : m_groups) {
        if (Same(group.name, name)) return true;
    }
    return false;
}

bool MenuBar::LoadGroup(const std::filesystem::path& file, std::wstring& error) {
    std::optional<MenuGroup> group = ReadMenuFile(file, error);
    if (!group) return false;
    if (IsGroupLoaded(group->name)) {
        error = L"menu group \"" + group->name + L"\" is already loaded";
        return false;
    }
    m_groups.push_back(std::move(*group));
    return true;
}

int MenuBar::MenuCommand(const std::wstring& text) {
    size_t pos = 0;
    int number = 0;
    if (!ReadMenuNumber(text, pos, number)) return RTERROR;
    std::wstring rest = text.substr(pos);
    const int count = static_cast<int>(m_pullDowns.size());
    if (!rest.empty() && rest[0] == L'.') {
        // A query of one item: "P<n>.<i>=?".
        size_t eq = rest.find(L"=?");
        if (eq == std::wstring::npos || eq + 2 != rest.size()) return RTERROR;
        int item = _wtoi(rest.substr(1, eq - 1).c_str());
        if (number < 1 || number > count || item < 1) return RTERROR;
        return item <= static_cast<int>(m_pullDowns[number - 1].items.size()) ? RTKWORD : RTERROR;
    }
    if (rest == L"=-") {
        if (number < 1 || number > count) return RTERROR;
        m_pullDowns.erase(m_pullDowns.begin() + (number - 1));
        return RTNORM;
    }
    if (rest.size() > 2 && rest.compare(0, 2, L"=+") == 0) {
        std::wstring target = rest.substr(2);
        size_t dot = target.find(L'.');
        if (dot == std::wstring::npos || number < 1) return RTERROR;
        std::wstring groupName = target.substr(0, dot), alias = target.substr(dot + 1);
        for (const MenuGroup& group : m_groups) {
            if (!Same(group.name, groupName)) continue;
            for (const PopMenu& menu : group.menus) {
                if (!Same(menu.alias, alias)) continue;
                PullDown pullDown{menu.title, group.name, menu.alias, menu.items};
                size_t at = static_cast<size_t>(number - 1 > count ? count : number - 1);
                m_pullDowns.insert(m_pullDowns.begin() + static_cast<long>(at), std::move(pullDown));
                return RTNORM;
            }
        }
        return RTERROR;
    }
    return RTERROR;
}

std::wstring MenuBar::Describe() const {
    std::wstring text;
    for (size_t i = 0; i < m_pullDowns.size(); ++i) {
        const PullDown& menu = m_pullDowns[i];
        text += L"P" + std::to_wstring(i + 1) + L" " + menu.title;
        if (!menu.group.empty()) {
            text += L" (" + menu.group + L"." + menu.alias + L")\n";
            for (const MenuItem& item : menu.items) {
                text += item.label.empty() ? L"    --\n" : L"    " + item.label + L"  " + item.macro + L"\n";
            }
        } else {
            text += L"\n";
        }
    }
    if (m_pullDowns.empty()) text = L"(no pull-down menus)\n";
    return text;
}

}  // namespace cadhost
