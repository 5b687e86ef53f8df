// The module's exported entry and version handshake. The module exports
// getXdata and setXdata too, for modules that load beside it; they are
// declared for export with the other drawing helpers in ArxUtils.h.
#include "plugin/QuillmarkApp.h"

namespace {
Adesk::UInt32 apiState = 0;
}

ACRX_MODULE_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg, void* pkt) {
    return DispatchAppMessage(theApp, msg, pkt);
}

ACRX_MODULE_EXPORT Adesk::UInt32 acrxGetApiVersion(Adesk::UInt32 token) {
    Adesk::UInt32 result;
    if (apiState == 0) {
        apiState = token ^ ACRX_API_VERSION_18_0;
        result = ACRX_API_VERSION_18_0;
    } else {
        apiState ^= token;
        result = apiState;
    }
    if (token == 0) apiState = 0;
    return result;
}
