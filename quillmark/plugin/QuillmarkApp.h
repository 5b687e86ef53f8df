// The application object of the module.
#pragma once

#include "plugin/AcRxArxApp.h"

class CQuillmarkApp : public AcRxArxApp {
public:
    AcRx::AppRetCode OnInitApp(void* pkt) override;
    AcRx::AppRetCode OnUnloadApp(void* pkt) override;
    void RegisterServerComponents() override {}
};

// The menu text that start-up queues, for a menu file and a place on the
// bar; false when it would not fit the command processor's buffer or
// cannot be written as an expression, with the reason printed.
bool ComposeMenuLoadExpression(const CString& menuFile, int place, CString& expression);

// Where the module's pull-down menu goes: in front of the last two menus,
// found by asking the menu bar item by item.
int FindPullDownPlace();

extern CQuillmarkApp theApp;

class AsdkCustomOptionDialogHook;
// The one hook of the module in the Field dialog, from load to unload.
extern AsdkCustomOptionDialogHook* theFieldDialogHook;
