// What the user does to controls, with the notifications the platform's
// controls send for it. Each answers an empty text when the user could do
// it, else why not (a disabled or hidden control, a control of another
// kind, an entry that is not there).
#pragma once

#include <string>

#include "ui/Desktop.h"

namespace cadhost::ui {

// Whether the user can reach a control: it and the windows that hold it
// are enabled and shown.
std::wstring Reachable(HWND control);

// A click on a button: an automatic check box or radio button changes its
// check first; then the parent hears BN_CLICKED. A static text that asks
// for it hears STN_CLICKED. The pointer goes to the control first; a
// window of a registered class hears the left button go down and up.
std::wstring UserClick(HWND control);
// Typing a text over an edit box (EN_UPDATE, EN_CHANGE) or the edit part of
// a combo box (CBN_EDITUPDATE, CBN_EDITCHANGE); the combo box's list then
// has no selection.
std::wstring UserType(HWND control, const std::wstring& text);
// A click on an entry of a list box (LBN_SELCHANGE when the list notifies)
// or of a combo box's list (CBN_SELCHANGE, and CBN_CLOSEUP when it was
// dropped down); a combo box's edit part takes the entry's text.
std::wstring UserChoose(HWND control, int index);
// A click on the tick box of a check list entry: the tick changes, the
// entry is selected, and the parent hears LBN_SELCHANGE then CLBN_CHKCHANGE.
// Nothing happens when the tick is as asked already.
std::wstring UserTick(HWND control, int index, bool on);
// Dropping down a combo box's list: CBN_DROPDOWN.
std::wstring UserDropDown(HWND control);
// The pointer moves to the middle of a shown control, or off every window
// of the host. The window under it is asked for a cursor, and it or the
// window that holds the capture hears the move.
std::wstring UserHover(HWND control);
void UserHoverNowhere();

// How a control is named in messages: "control 104".
std::wstring ControlName(HWND control);

}  // namespace cadhost::ui
