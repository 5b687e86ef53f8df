#include <afx.h>

CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xffff, nullptr, nullptr};

CRuntimeClass* CObject::GetRuntimeClass() const { return &classCObject; }

void CObject::Serialize(CArchive&) {}

BOOL CObject::IsKindOf(const CRuntimeClass* rtClass) const { return GetRuntimeClass()->IsDerivedFrom(rtClass); }

CObject* CRuntimeClass::CreateObject() const { return m_pfnCreateObject ? m_pfnCreateObject() : nullptr; }

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* baseClass) const {
    if (!baseClass) return FALSE;
    for (const CRuntimeClass* c = this; c; c = c->m_pfnGetBaseClass ? c->m_pfnGetBaseClass() : nullptr) {
        if (c == baseClass) return TRUE;
    }
    return FALSE;
}
