// Module attach and detach, and the module-level values that they set.
#include "plugin/ModuleState.h"

HINSTANCE _hdllInstance = nullptr;
ExtensionModuleRecord QuillmarkDLL;

HINSTANCE ModuleResourceHandle() {
    return QuillmarkDLL.moduleResource ? QuillmarkDLL.moduleResource : _hdllInstance;
}

ModuleResourceScope::ModuleResourceScope(HINSTANCE resource) {
    acDocManagerPtr()->pushResourceHandle(resource);
}

ModuleResourceScope::~ModuleResourceScope() { acDocManagerPtr()->popResourceHandle(); }

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID) {
    if (dwReason == DLL_PROCESS_ATTACH) {
        _hdllInstance = hInstance;
        if (!QuillmarkDLL.attached && AfxInitExtensionModule(QuillmarkDLL.data, hInstance)) {
            QuillmarkDLL.attached = true;
            QuillmarkDLL.previousResource = AfxGetResourceHandle();
            QuillmarkDLL.moduleResource = hInstance;
            new CDynLinkLibrary(QuillmarkDLL.data);  // the framework's chain owns it until detach
        }
        InitAcUiDLL();
    } else if (dwReason == DLL_PROCESS_DETACH && QuillmarkDLL.attached) {
        AfxTermExtensionModule(QuillmarkDLL.data);
        QuillmarkDLL.attached = false;
    }
    return TRUE;
}
