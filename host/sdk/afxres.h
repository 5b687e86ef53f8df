// Ids that the framework gives resource scripts.
#pragma once

#include "windows.h"

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif

// Commands of the framework's menus.
#define ID_FILE_MRU_FILE1 0xE110
#define ID_FILE_MRU_FILE16 0xE11F
#define ID_HELP 0xE146
