// The runtime's dictionaries; the system registry is one of them.
#pragma once

#include "rxobject.h"

class CADHOST_API AcRxDictionary : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcRxDictionary)
    virtual AcRxObject* at(const ACHAR* key) const = 0;
    virtual AcRxObject* atPut(const ACHAR* key, AcRxObject* object) = 0;
    virtual AcRxObject* remove(const ACHAR* key) = 0;
    virtual Adesk::UInt32 numEntries() const = 0;
};

extern "C" CADHOST_API AcRxDictionary* acrxSysRegistry();

#define ACRX_DYNAMIC_LINKER L"DynamicLinker"
#define ACRX_COMMAND_DOCK L"ACAD_REGISTERED_COMMANDS"
