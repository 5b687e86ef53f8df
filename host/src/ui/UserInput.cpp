#include "ui/UserInput.h"

#include <cwctype>

#include "ui/Controls.h"

namespace cadhost::ui {
namespace {

bool Valid(HWND window) {
    Desktop* desktop = Desktop::Current();
    return desktop && desktop->IsWindow(window);
}

std::wstring Kind(HWND window) {
    switch (window->kind) {
    case WindowKind::Static: return L"a static text";
    case WindowKind::Edit: return L"an edit box";
    case WindowKind::ListBox: return IsCheckList(window) ? L"a check list box" : L"a list box";
    case WindowKind::ComboBox: return L"a combo box";
    case WindowKind::Dialog: return L"a dialog";
    case WindowKind::ScrollBar: return L"a scroll bar";
    case WindowKind::Button: return IsGroupBox(window) ? L"a group box" : L"a button";
    default: return L"a window";
    }
}

std::wstring IndexProblem(HWND control, int index) {
    int count = EntryCount(control);
    if (index >= 0 && index < count) return L"";
    return ControlName(control) + L" has no entry " + std::to_wstring(index) + L" (it has " + std::to_wstring(count) +
           (count == 1 ? L" entry)" : L" entries)");
}

}  // namespace

std::wstring ControlName(HWND control) {
    if (!Valid(control)) return L"the control";
    return L"control " + std::to_wstring(control->id);
}

std::wstring Reachable(HWND control) {
    if (!Valid(control)) return L"the control is gone";
    for (HWND window = control; Valid(window); window = window->parent) {
        std::wstring who = window == control ? ControlName(control) : L"the window that holds " + ControlName(control);
        if (window->style & WS_DISABLED) return who + L" is disabled";
        if (!(window->style & WS_VISIBLE)) return who + L" is hidden";
    }
    return L"";
}

std::wstring UserHover(HWND control) {
    if (!Valid(control)) return L"the control is gone";
    if (!::IsWindowVisible(control)) return ControlName(control) + L" is hidden";
    RECT rect = WindowRect(control);
    POINT middle{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    Desktop& desktop = *Desktop::Current();
    desktop.mouse().MoveTo(desktop, middle, control);
    return L"";
}

void UserHoverNowhere() {
    Desktop* desktop = Desktop::Current();
    if (desktop) desktop->mouse().MoveTo(*desktop, POINT{-30000, -30000}, nullptr);
}

std::wstring UserClick(HWND control) {
    std::wstring why = Reachable(control);
    if (!why.empty()) return why;
    UserHover(control);
    if (!Valid(control)) return L"";  // moving the pointer there ended its window
    if (control->kind == WindowKind::Window) {
        Desktop& desktop = *Desktop::Current();
        desktop.mouse().Press(desktop);
        desktop.mouse().Release(desktop);
        return L"";
    }
    if (control->kind == WindowKind::Static) {
        if (!(control->style & SS_NOTIFY)) return ControlName(control) + L" is a static text that takes no clicks";
        Notify(control, STN_CLICKED);
        return L"";
    }
    if (control->kind != WindowKind::Button) return ControlName(control) + L" is " + Kind(control) + L", not a button";
    switch (ButtonType(control)) {
    case BS_GROUPBOX: return ControlName(control) + L" is a group box, not a button";
    case BS_AUTOCHECKBOX: SetCheck(control, GetCheck(control) == BST_CHECKED ? BST_UNCHECKED : BST_CHECKED); break;
    case BS_AUTO3STATE: SetCheck(control, (GetCheck(control) + 1) % 3); break;
    case BS_AUTORADIOBUTTON:
        for (HWND other : RadioGroup(control)) {
            if (other != control) SetCheck(other, BST_UNCHECKED);
        }
        SetCheck(control, BST_CHECKED);
        break;
    default: break;
    }
    Desktop::Current()->SetFocus(control);
    Notify(control, BN_CLICKED);
    return L"";
}

std::wstring UserType(HWND control, const std::wstring& text) {
    if (!Valid(control)) return L"the control is gone";
    if (!HasEditPart(control)) return ControlName(control) + L" is " + Kind(control) + L" with no text to type into";
    std::wstring why = Reachable(control);
    if (!why.empty()) return why;
    if (control->kind == WindowKind::Edit && (control->style & ES_READONLY))
        return ControlName(control) + L" is read-only";
    if (control->kind == WindowKind::Edit && (control->style & ES_NUMBER)) {
        for (wchar_t c : text) {
            if (!std::iswdigit(c)) return ControlName(control) + L" takes digits only";
        }
    }
    std::wstring typed = text;
    if (control->limitText > 0 && typed.size() > static_cast<size_t>(control->limitText))
        typed.resize(static_cast<size_t>(control->limitText));
    Desktop::Current()->SetFocus(control);
    if (control->kind == WindowKind::Edit) {
        SetText(control, typed);
        return L"";
    }
    control->textSource = nullptr;
    control->text = typed;
    control->current = -1;
    control->selectionStart = control->selectionEnd = static_cast<int>(typed.size());
    Notify(control, CBN_EDITUPDATE);
    Notify(control, CBN_EDITCHANGE);
    return L"";
}

std::wstring UserChoose(HWND control, int index) {
    if (!Valid(control)) return L"the control is gone";
    if (control->kind != WindowKind::ListBox && control->kind != WindowKind::ComboBox)
        return ControlName(control) + L" is " + Kind(control) + L", not a list";
    std::wstring why = Reachable(control);
    if (!why.empty()) return why;
    why = IndexProblem(control, index);
    if (!why.empty()) return why;
    Desktop::Current()->SetFocus(control);
    if (control->kind == WindowKind::ComboBox) {
        bool dropped = control->dropped;
        SetSelection(control, index);
        control->dropped = false;
        Notify(control, CBN_SELCHANGE);
        if (dropped && Valid(control)) Notify(control, CBN_CLOSEUP);
        return L"";
    }
    if (IsMultipleSelection(control)) {
        bool toggle = (control->style & LBS_MULTIPLESEL) != 0;
        bool now = !IsSelected(control, index);
        if (!toggle) SetSelected(control, -1, false);
        SetSelected(control, index, toggle ? now : true);
    } else {
        SetSelection(control, index);
    }
    if (control->style & LBS_NOTIFY) Notify(control, LBN_SELCHANGE);
    return L"";
}

std::wstring UserTick(HWND control, int index, bool on) {
    if (!Valid(control)) return L"the control is gone";
    if (!IsCheckList(control)) return ControlName(control) + L" is " + Kind(control) + L", not a check list box";
    std::wstring why = Reachable(control);
    if (!why.empty()) return why;
    why = IndexProblem(control, index);
    if (!why.empty()) return why;
    ListEntry* entry = MutableEntry(control, index);
    if (!entry->enabled) return L"entry " + std::to_wstring(index) + L" of " + ControlName(control) + L" is disabled";
    if (control->checkStyle == BS_CHECKBOX || control->checkStyle == BS_3STATE)
        return L"the ticks of " + ControlName(control) + L" change only by the program";
    int wanted = on ? BST_CHECKED : BST_UNCHECKED;
    if (entry->check == wanted) return L"";
    entry->check = wanted;
    Desktop::Current()->SetFocus(control);
    // The click on the box is also a click on the entry.
    if (IsMultipleSelection(control)) {
        if (!(control->style & LBS_MULTIPLESEL)) SetSelected(control, -1, false);
        SetSelected(control, index, true);
    } else {
        SetSelection(control, index);
    }
    if (control->style & LBS_NOTIFY) Notify(control, LBN_SELCHANGE);
    if (Valid(control)) Notify(control, CLBN_CHKCHANGE);
    return L"";
}

std::wstring UserDropDown(HWND control) {
    if (!Valid(control)) return L"the control is gone";
    if (control->kind != WindowKind::ComboBox || (control->style & 0x3) == CBS_SIMPLE)
        return ControlName(control) + L" is " + Kind(control) + L" with no list to drop down";
    std::wstring why = Reachable(control);
    if (!why.empty()) return why;
    if (control->dropped) return L"";
    Desktop::Current()->SetFocus(control);
    control->dropped = true;
    Notify(control, CBN_DROPDOWN);
    return L"";
}

}  // namespace cadhost::ui
