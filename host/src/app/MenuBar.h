// The menu bar: pull-down menus in order, and the menu groups loaded from
// customization files, whose menus can be put on the bar.
#pragma once

#include <string>
#include <vector>

#include "app/MenuFile.h"

namespace cadhost {

class MenuBar {
public:
    struct PullDown {
        std::wstring title;
        std::wstring group;  // empty for the host's own menus
        std::wstring alias;
        std::vector<MenuItem> items;
    };

    // The host's own menus; count of them, replacing what the bar held.
    void SetHostMenus(int count);
    const std::vector<PullDown>& PullDowns() const { return m_pullDowns; }

    bool IsGroupLoaded(const std::wstring& name) const;
    // Loads a customization file's group; false with the reason in error.
    bool LoadGroup(const std::filesystem::path& file, std::wstring& error);
    const std::vector<MenuGroup>& Groups() const { return m_groups; }

    // The menu command of the editor interface: "P3.1=?" asks after an
    // item (RTKWORD while it exists), "P3=+group.pop1" puts a group's menu in
    // front of pull-down 3, "P3=-" takes pull-down 3 off.
    int MenuCommand(const std::wstring& text);

    // The bar as text, one pull-down a line with its items below.
    std::wstring Describe() const;

private:
    std::vector<PullDown> m_pullDowns;
    std::vector<MenuGroup> m_groups;
};

}  // namespace cadhost
