// The resources of one module as its resource script declares them: dialog
// templates, menus and strings, found by name or number.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace cadhost::ui {

// A resource's name: a number, or a text compared without regard to case
// (kept in upper case).
struct ResourceName {
    bool numeric = true;
    WORD id = 0;
    std::wstring text;

    static ResourceName Number(WORD id);
    static ResourceName Text(const std::wstring& text);
    // From a name as the platform passes it: MAKEINTRESOURCE(n), "#n", or a
    // text. Null gives nothing.
    static std::optional<ResourceName> FromPointer(LPCWSTR name);
    // 104, or "NAME" in quotes.
    std::wstring Describe() const;
    bool operator==(const ResourceName& other) const = default;
};

struct ResourceNameHash {
    size_t operator()(const ResourceName& name) const;
};

struct ControlTemplate {
    std::wstring className;  // Button, Edit, Static, ListBox, ComboBox, ScrollBar, or as written
    std::wstring text;
    int id = -1;
    int x = 0, y = 0, cx = 0, cy = 0;  // dialog units
    DWORD style = 0;
    DWORD exStyle = 0;
    DWORD helpId = 0;
    int line = 0;  // in the script, for messages
};

struct FontTemplate {
    int pointSize = 8;
    std::wstring face;
    int weight = FW_NORMAL;
    bool italic = false;
    int charset = DEFAULT_CHARSET;
};

struct DialogTemplate {
    ResourceName name;
    bool extended = false;  // DIALOGEX
    int x = 0, y = 0, cx = 0, cy = 0;  // dialog units
    DWORD style = 0;
    DWORD exStyle = 0;
    DWORD helpId = 0;
    std::wstring caption;
    std::optional<FontTemplate> font;
    std::wstring menu;
    std::wstring windowClass;
    std::vector<ControlTemplate> controls;
    int line = 0;
};

struct MenuItemTemplate {
    std::wstring text;
    UINT id = 0;
    UINT flags = 0;  // MF_POPUP, MF_SEPARATOR, MF_GRAYED, MF_DISABLED, MF_CHECKED, MF_HELP, breaks
    std::vector<MenuItemTemplate> items;  // of a popup
};

struct MenuTemplate {
    ResourceName name;
    std::vector<MenuItemTemplate> items;
    int line = 0;
};

class ResourceScript {
public:
    const DialogTemplate* FindDialog(const ResourceName& name) const;
    const MenuTemplate* FindMenu(const ResourceName& name) const;
    const std::wstring* FindString(UINT id) const;
    // Whether the script holds a resource of a type (RT_DIALOG, RT_MENU,
    // RT_STRING: the block of sixteen strings that holds id).
    bool Has(const ResourceName& name, const ResourceName& type) const;

    // Each answers false when the name or id is taken already.
    bool Add(DialogTemplate dialog);
    bool Add(MenuTemplate menu);
    bool AddString(UINT id, std::wstring text);

    size_t DialogCount() const { return m_dialogs.size(); }
    size_t MenuCount() const { return m_menus.size(); }
    size_t StringCount() const { return m_strings.size(); }

private:
    std::unordered_map<ResourceName, DialogTemplate, ResourceNameHash> m_dialogs;
    std::unordered_map<ResourceName, MenuTemplate, ResourceNameHash> m_menus;
    std::unordered_map<UINT, std::wstring> m_strings;
};

// A file of a resource script: the script itself or a header it includes.
struct SourceFile {
    std::wstring name;
    std::string text;  // UTF-8
};

struct ParseResult {
    std::shared_ptr<const ResourceScript> script;  // null on failure
    std::wstring error;  // "FILE:LINE: what is wrong"
};

// Reads a resource script; files[0] is the script, the others are what it
// may include by name. Never throws for bad text: it answers the first error.
ParseResult ParseResourceScript(const std::vector<SourceFile>& files);

}  // namespace cadhost::ui
