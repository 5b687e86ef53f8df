// A customization file (.cuix): a zip package whose MenuGroup.cui holds the
// menu group, its pull-down menus and their items as XML.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace cadhost {

struct MenuItem {
    std::wstring label;  // empty for a separator
    std::wstring macro;
};

struct PopMenu {
    std::wstring alias;  // "pop1"
    std::wstring title;
    std::vector<MenuItem> items;
};

struct MenuGroup {
    std::wstring name;
    std::filesystem::path file;
    std::vector<PopMenu> menus;
};

// The group of a customization file, or nothing with the reason in error.
std::optional<MenuGroup> ReadMenuFile(const std::filesystem::path& file, std::wstring& error);

}  // namespace cadhost
