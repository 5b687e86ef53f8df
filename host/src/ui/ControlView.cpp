#include "ui/ControlView.h"

#include "ui/Controls.h"
#include "ui/Desktop.h"

namespace cadhost::ui {

std::wstring Quoted(const std::wstring& text) {
    std::wstring out = L"\"";
    for (wchar_t c : text) {
        if (c == L'\n') out += L"\\n";
        else if (c == L'"' || c == L'\\') out += std::wstring(1, L'\\') + c;
        else out += c;
    }
    return out + L"\"";
}

std::wstring KindName(HWND window) {
    switch (window->kind) {
    case WindowKind::Static: return L"static";
    case WindowKind::Edit: return L"edit";
    case WindowKind::ListBox: return IsCheckList(window) ? L"checklist" : L"listbox";
    case WindowKind::ComboBox: return L"combobox";
    case WindowKind::ScrollBar: return L"scrollbar";
    case WindowKind::Dialog: return L"dialog";
    case WindowKind::Button:
        if (IsGroupBox(window)) return L"group";
        if (IsCheckBox(window)) return L"checkbox";
        if (IsRadioButton(window)) return L"radio";
        return L"button";
    default: return L"window";
    }
}

std::wstring DescribeControl(HWND window) {
    std::wstring line = std::to_wstring(window->id) + L" " + KindName(window);
    line += window->style & WS_DISABLED ? L" disabled" : L" enabled";
    line += window->style & WS_VISIBLE ? L" visible " : L" hidden ";
    line += Quoted(ShownText(window));
    if (IsCheckBox(window) || IsRadioButton(window)) {
        int check = GetCheck(window);
        line += check == BST_CHECKED ? L" checked" : check == BST_INDETERMINATE ? L" indeterminate" : L" unchecked";
    }
    if (window->kind == WindowKind::Edit && (window->style & ES_READONLY)) line += L" read-only";
    if (window->kind == WindowKind::Window) {
        // A window of its own class shows what it painted, and the mouse over it.
        line += L" class " + Quoted(window->className) + L" " + DescribePainting(window->painting);
        if (Desktop* desktop = Desktop::Current()) {
            const Mouse& mouse = desktop->mouse();
            if (mouse.Over() == window) line += L", pointer over it with cursor " + CursorName(mouse.Cursor());
            if (mouse.Capture() == window) line += L", holds the capture";
        }
    }
    if (window->kind == WindowKind::ListBox || window->kind == WindowKind::ComboBox) {
        bool ticks = IsCheckList(window);
        int count = EntryCount(window);
        line += L" entries " + std::to_wstring(count);
        if (count > 0) line += L":";
        for (int i = 0; i < count; ++i) {
            const ListEntry* entry = Entry(window, i);
            line += i == 0 ? L" " : L" | ";
            line += std::to_wstring(i);
            if (ticks) line += entry->check == BST_CHECKED ? L" [x]" : entry->check == BST_INDETERMINATE ? L" [-]" : L" [ ]";
            line += L" " + Quoted(entry->text) + L" data " + std::to_wstring(static_cast<INT_PTR>(entry->data));
            if (IsSelected(window, i)) line += L" selected";
            if (!entry->enabled) line += L" disabled";
        }
    }
    return line;
}

std::wstring DescribeDialog(HWND dialog) {
    std::wstring line = L"dialog " + (dialog->templateName.empty() ? std::to_wstring(dialog->id) : dialog->templateName);
    if (!dialog->text.empty()) line += L" " + Quoted(dialog->text);
    return line;
}

std::wstring DescribePage(HWND dialog) {
    std::wstring text = DescribeDialog(dialog);
    for (HWND child : dialog->children) text += L"\n  " + DescribeControl(child);
    return text;
}

}  // namespace cadhost::ui
