// What the standard controls do with their state: text, checks, entries
// and selection, and the notifications they send their parent. The
// framework's classes and the user's actions both work through these.
#pragma once

#include <functional>
#include <string>

#include "ui/Desktop.h"

namespace cadhost::ui {

// The window's object, bound or temporary; null for no window.
CWnd* ObjectOf(HWND window);
// Sends WM_COMMAND with the control's id and the code to its parent.
void Notify(HWND control, UINT code);

// Kinds of windows.
UINT ButtonType(HWND window);  // BS_PUSHBUTTON ... for buttons
bool IsCheckBox(HWND window);
bool IsRadioButton(HWND window);
bool IsGroupBox(HWND window);
bool HasEditPart(HWND window);  // an edit box, or a combo box that is no drop-down list
bool IsDropDownList(HWND window);
bool IsMultipleSelection(HWND window);
bool IsSortedList(HWND window);
// A list box whose entries carry ticks: a check list box is bound to it,
// or its template made it owner-drawn.
bool IsCheckList(HWND window);

// Text. Setting an edit box's text sends EN_UPDATE and EN_CHANGE, whoever
// sets it; a drop-down list selects the entry of that text.
void SetText(HWND window, const std::wstring& text);
// Gives the window a text that is made by source when it is first read, and
// kept until the text is set again; no notification is sent.
void SetTextSource(HWND window, std::function<std::wstring()> source);
// The window's text, made from its source first if it has one waiting.
std::wstring& ResolvedText(HWND window);
std::wstring GetText(HWND window);
// What a control shows: an edit's text, the selected entry of a list, a
// caption.
std::wstring ShownText(HWND window);

// Buttons.
int GetCheck(HWND window);
void SetCheck(HWND window, int check);
// The radio buttons of the group that holds a window, in order: from the
// sibling that starts the group (WS_GROUP) to the one before the next.
std::vector<HWND> RadioGroup(HWND window);

// Entries of list and combo boxes; indexes count from 0, -1 is none.
int EntryCount(HWND window);
int AddEntry(HWND window, const std::wstring& text);
int InsertEntry(HWND window, int index, const std::wstring& text);
int DeleteEntry(HWND window, int index);
void ResetEntries(HWND window);
const ListEntry* Entry(HWND window, int index);
ListEntry* MutableEntry(HWND window, int index);
// Case-blind search from the entry after startAfter, round to it.
int FindEntry(HWND window, int startAfter, const std::wstring& text, bool exact);
int GetSelection(HWND window);
// Selects an entry (-1: none); a combo box's edit part shows its text.
int SetSelection(HWND window, int index);
bool IsSelected(HWND window, int index);
int SetSelected(HWND window, int index, bool selected);

// Placement.
RECT WindowRect(HWND window);  // on the screen
POINT ClientOrigin(HWND window);  // on the screen
RECT DialogUnitsToPixels(HWND dialog, RECT rect);

// What a window does with a message that its object does not handle.
LRESULT DefaultWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// The dialog (or top window) that holds a window.
HWND TopWindow(HWND window);

}  // namespace cadhost::ui
