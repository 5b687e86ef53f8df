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
