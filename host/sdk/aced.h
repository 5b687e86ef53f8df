// The editor: commands, the command line, menus and modules.
#pragma once

#include "adslib.h"
#include "accmd.h"
#include "acdocman.h"
#include "rxdlinkr.h"
