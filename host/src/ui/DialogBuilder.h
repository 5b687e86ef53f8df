// The windows of a dialog template: the dialog in its font and its
// controls, placed in pixels from dialog units.
#pragma once

#include <string>

#include "ui/Desktop.h"
#include "ui/resources/ResourceScript.h"

namespace cadhost::ui {

// A template with WS_CHILD becomes a child of parentOrOwner, any other a
// window owned by it. Answers null, with why, when a child has no parent.
HWND BuildDialog(Desktop& desktop, const DialogTemplate& dialog, HWND parentOrOwner, std::wstring& why);

// The first control that takes the focus: shown, enabled, WS_TABSTOP.
HWND FirstTabStop(HWND dialog);

}  // namespace cadhost::ui
