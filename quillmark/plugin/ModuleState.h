// Module-level values: the instance handle, the extension-module record,
// and the scope in which the module's resources are found.
#pragma once

#include "StdAfx.h"

// The module's instance handle, stored at attach.
extern HINSTANCE _hdllInstance;

// The extension-module record of the framework.
struct ExtensionModuleRecord {
    bool attached = false;
    HINSTANCE previousResource = nullptr;  // current at attach
    HINSTANCE moduleResource = nullptr;
    AFX_EXTENSION_MODULE data{};
};
extern ExtensionModuleRecord QuillmarkDLL;

// The handle under which this module's resources are found.
HINSTANCE ModuleResourceHandle();

// Within the scope, resource ids are looked up in this module (or in the
// module whose handle is given).
class ModuleResourceScope {
public:
    explicit ModuleResourceScope(HINSTANCE resource = ModuleResourceHandle());
    ~ModuleResourceScope();
    ModuleResourceScope(const ModuleResourceScope&) = delete;
    ModuleResourceScope& operator=(const ModuleResourceScope&) = delete;
};
