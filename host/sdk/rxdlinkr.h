// The dynamic linker: loads and unloads modules and keeps their flags.
#pragma once

#include "rxdict.h"

class CADHOST_API AcRxDynamicLinker : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcRxDynamicLinker)
    virtual bool loadModule(const ACHAR* fileName, bool printIt, bool asCmd = false) = 0;
    virtual bool unloadModule(const ACHAR* fileName, bool asCmd = false) = 0;
    virtual bool loadApp(const ACHAR* appName, int loadReasons, bool printIt, bool asCmd = false) = 0;
    virtual bool unloadApp(const ACHAR* appName, bool asCmd = false) = 0;
    // The application packet of the load message names the module.
    virtual bool unlockApplication(void* appId) const = 0;
    virtual bool lockApplication(void* appId) const = 0;
    virtual bool isApplicationLocked(const ACHAR* appName) const = 0;
    virtual bool registerAppMDIAware(void* appId) const = 0;
    virtual bool registerAppNotMDIAware(void* appId) const = 0;
    virtual void* getModuleHandle(const ACHAR* fileName) const = 0;
};

#define acrxDynamicLinker AcRxDynamicLinker::cast(acrxSysRegistry()->at(ACRX_DYNAMIC_LINKER))

extern "C" {
CADHOST_API bool acrxLoadModule(const ACHAR* fileName, bool printIt, bool asCmd = false);
CADHOST_API bool acrxUnloadModule(const ACHAR* fileName, bool asCmd = false);
CADHOST_API void acrxBuildClassHierarchy();
}
