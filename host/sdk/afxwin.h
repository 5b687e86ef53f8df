// The framework's application side: extension modules and the handles
// through which a module's resources are found.
#pragma once

#include "afx.h"

struct AFX_EXTENSION_MODULE {
    BOOL bInitialized;
    HMODULE hModule;
    HMODULE hResource;
    CRuntimeClass* pFirstSharedClass;
    void* pFirstSharedFactory;
};

// Joins an extension module to the framework; the module's handle becomes
// its resource handle.
extern "C" CADHOST_API BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module);
extern "C" CADHOST_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL all = FALSE);

// Puts an extension module on the framework's resource chain for as long as
// it lives; AfxTermExtensionModule ends the ones of its module.
class CADHOST_API CDynLinkLibrary : public CObject {
    DECLARE_DYNAMIC(CDynLinkLibrary)
public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL system = FALSE);
    ~CDynLinkLibrary() override;
    HMODULE m_hModule;
    HMODULE m_hResource;
    BOOL m_bSystem;
};

// The current resource handle: the top of the host's resource stack.
extern "C" CADHOST_API HINSTANCE AfxGetResourceHandle();
extern "C" CADHOST_API void AfxSetResourceHandle(HINSTANCE resource);
extern "C" CADHOST_API HINSTANCE AfxGetInstanceHandle();
