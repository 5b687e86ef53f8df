// What every module exports, and what the host calls it with.
#pragma once

#include "rxdlinkr.h"

// The single entry of a module: the message and its packet (the module's
// application id for the load and unload messages).
extern "C" typedef AcRx::AppRetCode (*AcRxEntryPointFunction)(AcRx::AppMsgCode msg, void* pkt);
extern "C" typedef Adesk::UInt32 (*AcRxGetApiVersionFunction)(Adesk::UInt32 token);

#define ACRX_MODULE_EXPORT extern "C" __attribute__((visibility("default")))
