#include "db/KeptObjects.h"

#include "core/Utf8.h"

ACRX_DEFINE_MEMBERS(cadhost::KeptObject, AcDbObject)
ACRX_DEFINE_MEMBERS(cadhost::KeptEntity, AcDbEntity)

namespace cadhost {

KeptObject::~KeptObject() = default;
KeptEntity::~KeptEntity() = default;

std::wstring DxfNameOf(const AcDbObject* object) {
    if (!object) return {};
    if (auto* kept = KeptObject::cast(object)) return FromUtf8(kept->type());
    if (auto* kept = KeptEntity::cast(object)) return FromUtf8(kept->type());
    for (const AcRxClass* c = object->isA(); c; c = c->myParent()) {
        if (c->dxfName()) return c->dxfName();
    }
    return {};
}

}  // namespace cadhost
