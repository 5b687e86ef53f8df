// How a session script sees a dialog: one line per control, with its id,
// kind, state, text, and a list's entries with their item data, ticks and
// selection. The format is stable, for transcripts to compare.
#pragma once

#include <string>

#include "ui/Desktop.h"

namespace cadhost::ui {

// static, group, button, checkbox, radio, edit, listbox, checklist,
// combobox, scrollbar, dialog, window.
std::wstring KindName(HWND window);
// 104 edit enabled visible "text" read-only
// 101 listbox enabled visible "" entries 2: 0 "2A" data 0 selected | 1 "2B" data 0
std::wstring DescribeControl(HWND window);
// dialog 104 "Caption" (the caption only when it has one)
std::wstring DescribeDialog(HWND dialog);
// The dialog's line, then a line for each of its controls, indented.
std::wstring DescribePage(HWND dialog);
// A text in double quotes, with \" \\ and \n as a script writes them.
std::wstring Quoted(const std::wstring& text);

}  // namespace cadhost::ui
