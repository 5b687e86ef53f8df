// QuillmarkEval.dbx: the evaluators of the module's field codes. It joins
// the host's field engine when loaded and leaves it when unloaded.
#include "EvaluatorLoader.h"
#include "StdAfx.h"

namespace {
Adesk::UInt32 apiState = 0;
}

ACRX_MODULE_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg, void* pkt) {
    switch (msg) {
    case AcRx::kInitAppMsg:
        acrxDynamicLinker->unlockApplication(pkt);
        acrxDynamicLinker->registerAppMDIAware(pkt);
        RegisterQuillmarkEvaluators();
        break;
    case AcRx::kUnloadAppMsg:
        UnregisterQuillmarkEvaluators();
        break;
    default:
        break;
    }
    return AcRx::kRetOK;
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
