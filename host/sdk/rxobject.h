// Runtime objects with class identity: desc(), isA(), isKindOf(), cast().
#pragma once

#include "acadstrc.h"
#include "rxdefs.h"

class AcRxClass;

class CADHOST_API AcRxObject {
public:
    virtual ~AcRxObject();
    static AcRxClass* desc();
    static AcRxObject* cast(const AcRxObject* object) { return const_cast<AcRxObject*>(object); }
    virtual AcRxClass* isA() const;
    bool isKindOf(const AcRxClass* rxClass) const;

protected:
    AcRxObject() = default;
};

class CADHOST_API AcRxClass : public AcRxObject {
public:
    AcRxClass(const ACHAR* name, AcRxClass* parent, const ACHAR* dxfName = nullptr);
    const ACHAR* name() const { return m_name; }
    // The type name of the class's objects in drawing files ("LINE"); null
    // for a class that files do not name.
    const ACHAR* dxfName() const { return m_dxfName; }
    AcRxClass* myParent() const { return m_parent; }
    bool isDerivedFrom(const AcRxClass* other) const;
    static AcRxClass* desc();
    AcRxClass* isA() const override;

private:
    const ACHAR* m_name;
    AcRxClass* m_parent;
    const ACHAR* m_dxfName;
};

// Class identity for a class of the platform: ACRX_DECLARE_MEMBERS in the
// class, ACRX_DEFINE_MEMBERS(class, parent) in one source file.
#define ACRX_DECLARE_MEMBERS(CLASS)                                             \
    static AcRxClass* desc();                                                   \
    AcRxClass* isA() const override;                                            \
    static CLASS* cast(const AcRxObject* object) {                              \
        return (object && object->isKindOf(CLASS::desc()))                      \
                   ? static_cast<CLASS*>(const_cast<AcRxObject*>(object))       \
                   : nullptr;                                                   \
    }

#define ACRX_DEFINE_MEMBERS(CLASS, PARENT)                                      \
    AcRxClass* CLASS::desc() {                                                  \
        static AcRxClass theClass(L## #CLASS, PARENT::desc());                  \
        return &theClass;                                                       \
    }                                                                           \
    AcRxClass* CLASS::isA() const { return CLASS::desc(); }

// The same for a class that drawing files name by DXFNAME.
#define ACRX_DXF_DEFINE_MEMBERS(CLASS, PARENT, DXFNAME)                         \
    AcRxClass* CLASS::desc() {                                                  \
        static AcRxClass theClass(L## #CLASS, PARENT::desc(), DXFNAME);         \
        return &theClass;                                                       \
    }                                                                           \
    AcRxClass* CLASS::isA() const { return CLASS::desc(); }

// Takes a class of a module out of the runtime's tree; the module calls it
// at unload for each class that it added.
extern "C" CADHOST_API void deleteAcRxClass(AcRxClass* rxClass);
