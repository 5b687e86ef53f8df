// The platform's global calls, each answered by the running host.
#include <aced.h>
#include <acdocman.h>
#include <adslib.h>
#include <afxwin.h>
#include <acui.h>
#include <dbapserv.h>
#include <rxdlinkr.h>

#include <cstdarg>

#include "app/Host.h"
#include "app/Modules.h"
#include "core/WideFormat.h"

using cadhost::Host;

extern "C" {

AcRxDictionary* acrxSysRegistry() { return &Host::Require().sysRegistry(); }

AcApDocManager* acDocManagerPtr() {
    Host* host = Host::Current();
    return host ? &host->documents() : nullptr;
}

CDocument* acedGetAcadDoc() {
    Host* host = Host::Current();
    cadhost::Document* document = host ? host->documents().Current() : nullptr;
    return document ? &document->frameworkDocument() : nullptr;
}

AcDbHostApplicationServices* acdbHostApplicationServices() { return &Host::Require().services(); }

int acutPrintf(const ACHAR* format, ...) {
    va_list args;
    va_start(args, format);
    std::wstring text = cadhost::FormatWide(format, args);
    va_end(args);
    Host::Require().Print(text);
    return static_cast<int>(text.size());
}

int acedGetVar(const ACHAR* name, resbuf* result) {
    return name ? Host::Require().variables().Get(name, result) : RTERROR;
}

int acedSetVar(const ACHAR* name, const resbuf* value) {
    return name ? Host::Require().variables().Set(name, value) : RTERROR;
}

int acedMenuCmd(const ACHAR* text) { return text ? Host::Require().menus().MenuCommand(text) : RTERROR; }

int acedIsMenuGroupLoaded(const ACHAR* groupName) {
    return groupName && Host::Require().menus().IsGroupLoaded(groupName) ? 1 : 0;
}

int ads_queueexpr(const ACHAR* expression) {
    if (!expression) return RTERROR;
    Host::Require().processor().Queue(expression);
    return RTNORM;
}

int acedArxLoad(const ACHAR* path) {
    return path && Host::Require().linker().loadModule(path, false) ? RTNORM : RTERROR;
}

int acedArxUnload(const ACHAR* appName) {
    return appName && Host::Require().linker().unloadModule(appName) ? RTNORM : RTERROR;
}

bool acrxLoadModule(const ACHAR* fileName, bool printIt, bool asCmd) {
    return Host::Require().linker().loadModule(fileName, printIt, asCmd);
}

bool acrxUnloadModule(const ACHAR* fileName, bool asCmd) {
    return Host::Require().linker().unloadModule(fileName, asCmd);
}

HINSTANCE AfxGetResourceHandle() {
    Host* host = Host::Current();
    return host ? host->documents().CurrentResourceHandle() : cadhost::ModuleTable::Instance().Host();
}

void AfxSetResourceHandle(HINSTANCE resource) {
    if (Host* host = Host::Current()) host->documents().SetDefaultResourceHandle(resource);
}

HINSTANCE AfxGetInstanceHandle() { return cadhost::ModuleTable::Instance().Host(); }

void InitAcUiDLL() {}
}
