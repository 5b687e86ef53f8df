// The editor: commands, the command line, menus and modules.
#pragma once

#include "adslib.h"
#include "accmd.h"
#include "acdocman.h"
#include "rxdlinkr.h"

class CDocument;
// The framework's document of the current drawing, whose GetPathName is the
// drawing's file, empty while it was never saved; null with no drawing.
extern "C" CADHOST_API CDocument* acedGetAcadDoc();
// The message by which the host asks a window of a module whether it keeps
// the focus; a page answers 1.
#ifndef WM_ACAD_KEEPFOCUS
#define WM_ACAD_KEEPFOCUS (WM_USER + 0x6D01)
#endif
