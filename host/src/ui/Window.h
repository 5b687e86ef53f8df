// What stands behind a window handle: the window's kind, text, style and
// place, its children, and the state of the control it is.
#pragma once

#include <afxwin.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/EntryList.h"
#include "ui/Painting.h"

namespace cadhost::ui {

enum class WindowKind { Window, Dialog, Static, Button, Edit, ListBox, ComboBox, ScrollBar };

}  // namespace cadhost::ui

struct HWND__ {
    cadhost::ui::WindowKind kind = cadhost::ui::WindowKind::Window;
    std::wstring className;
    int id = 0;
    DWORD style = 0;
    DWORD exStyle = 0;
    std::wstring text;  // the caption, or an edit's or combo box edit part's text
    // When set, makes the text the first time it is read (ResolvedText):
    // a text that costs work to make is made only when someone looks.
    std::function<std::wstring()> textSource;
    HWND__* parent = nullptr;  // of a child window
    HWND__* owner = nullptr;   // of a window that is not a child
    std::vector<HWND__*> children;  // in creation order, which is the tab order
    RECT rect{};  // in the parent's client area, or on the screen for a window without parent
    RECT frame{};  // the widths of the non-client edges: left, top, right, bottom
    HFONT font = nullptr;
    bool ownsFont = false;
    // Dialog units of this window's font, for MapDialogRect.
    int baseX = 6;
    int baseY = 13;

    CWnd* attached = nullptr;              // the object bound to the window
    std::unique_ptr<CWnd> temporary;       // the object handed out when none is bound
    bool destroying = false;

    // Buttons.
    int check = BST_UNCHECKED;
    bool pushed = false;

    // List boxes and combo boxes.
    cadhost::ui::EntryList entries;
    bool entriesInOrder = true;  // the entries stand in text order, so searches may halve
    int current = -1;  // the selection of a single-selection list or combo box
    int topIndex = 0;
    int horizontalExtent = 0;
    bool checkList = false;  // a check list box is bound to it
    UINT checkStyle = BS_AUTOCHECKBOX;
    int droppedWidth = 0;
    bool dropped = false;

    // Edit boxes and edit parts.
    int limitText = 0;
    int selectionStart = 0;
    int selectionEnd = 0;

    // Dialogs.
    bool modal = false;
    bool ended = false;
    INT_PTR result = 0;
    UINT defaultId = IDOK;
    std::wstring templateName;  // for messages: 104 or "NAME"

    // The window's class: its style and cursor (a registered class's, or
    // the standard control's).
    UINT classStyle = 0;
    HCURSOR classCursor = nullptr;
    bool registeredClass = false;

    // Painting: whether the window waits for WM_PAINT, and what it painted.
    bool invalid = false;
    cadhost::ui::Painting painting;
};
