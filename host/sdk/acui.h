// The CAD platform's dialog library.
#pragma once

#include "afxwin.h"
#include "aduiDialog.h"

// Prepares the platform's dialog library for a module; call at attach.
extern "C" CADHOST_API void InitAcUiDLL();
