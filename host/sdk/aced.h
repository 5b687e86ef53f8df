// The editor: commands, the command line, menus and modules.
#pragma once

#include "adslib.h"
#include "accmd.h"
#include "acdocman.h"
#include "rxdlinkr.h"

// The message by which the host asks a window of a module whether it keeps
// the focus; a page answers 1.
#ifndef WM_ACAD_KEEPFOCUS
#define WM_ACAD_KEEPFOCUS (WM_USER + 0x6D01)
#endif
