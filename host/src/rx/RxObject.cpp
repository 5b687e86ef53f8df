#include <accmd.h>
#include <acdocman.h>
#include <rxdlinkr.h>

AcRxObject::~AcRxObject() = default;

AcRxClass* AcRxObject::desc() {
    static AcRxClass theClass(L"AcRxObject", nullptr);
    return &theClass;
}

AcRxClass* AcRxObject::isA() const { return AcRxObject::desc(); }

bool AcRxObject::isKindOf(const AcRxClass* rxClass) const { return isA()->isDerivedFrom(rxClass); }

AcRxClass::AcRxClass(const ACHAR* name, AcRxClass* parent, const ACHAR* dxfName)
    : m_name(name), m_parent(parent), m_dxfName(dxfName) {}

bool AcRxClass::isDerivedFrom(const AcRxClass* other) const {
    for (const AcRxClass* c = this; c; c = c->m_parent) {
        if (c == other) return true;
    }
    return false;
}

AcRxClass* AcRxClass::desc() {
    static AcRxClass theClass(L"AcRxClass", AcRxObject::desc());
    return &theClass;
}

AcRxClass* AcRxClass::isA() const { return AcRxClass::desc(); }

ACRX_DEFINE_MEMBERS(AcRxDictionary, AcRxObject)
ACRX_DEFINE_MEMBERS(AcRxDynamicLinker, AcRxObject)
ACRX_DEFINE_MEMBERS(AcEdCommandStack, AcRxObject)
ACRX_DEFINE_MEMBERS(AcApDocManagerReactor, AcRxObject)
ACRX_DEFINE_MEMBERS(AcApDocument, AcRxObject)
ACRX_DEFINE_MEMBERS(AcApDocManager, AcRxObject)

// No class of the host is registered at run time, so the tree is complete
// from the start; modules that add classes call this after them.
void acrxBuildClassHierarchy() {}

// Classes of this runtime are fixed in their modules' code: the tree holds
// a class exactly as long as the module that defines it is mapped, so there
// is nothing to take out beforehand.
void deleteAcRxClass(AcRxClass*) {}
