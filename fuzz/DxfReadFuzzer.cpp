// Any bytes as a drawing file: the host either refuses them with a message
// or reads them; what it read it saves, reads back, and saves again to the
// same bytes, and every entity answers its extents and, for curves, its
// area and length without fault.
#include <dbents.h>
#include <dbsymtb.h>

#include <cstdio>
#include <string>

#include "FuzzSupport.h"
#include "db/DatabaseImpl.h"

namespace {

void TouchEntities(AcDbDatabase& db) {
    auto* blocks = AcDbBlockTable::cast(cadhost::DatabaseImpl::Peek(db.blockTableId()));
    QM_FUZZ_CHECK(blocks != nullptr);
    for (AcDbObjectId blockId : blocks->recordIds()) {
        auto* block = AcDbBlockTableRecord::cast(cadhost::DatabaseImpl::Peek(blockId));
        if (!block) continue;
        for (AcDbObjectId id : block->entityIds()) {
            auto* entity = AcDbEntity::cast(cadhost::DatabaseImpl::Peek(id));
            if (!entity) continue;
            AcDbExtents extents;
            entity->getGeomExtents(extents);
            if (auto* curve = AcDbCurve::cast(entity)) {
                double area, end, length;
                curve->getArea(area);
                if (curve->getEndParam(end) == Acad::eOk) curve->getDistAtParam(end, length);
            }
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    AcDbDatabase db(false);
    std::wstring error;
    if (qmfuzz::ReadDxf(text, db, error) != Acad::eOk) {
        QM_FUZZ_CHECK(error.rfind(L"fuzz.dxf: ", 0) == 0);
        QM_FUZZ_CHECK(db.approxNumObjects() == 0);
        return 0;
    }
    TouchEntities(db);
    std::string saved = qmfuzz::SaveDxf(db);
    AcDbDatabase again(false);
    Acad::ErrorStatus es = qmfuzz::ReadDxf(saved, again, error);
    if (es != Acad::eOk) std::fprintf(stderr, "%ls\n", error.c_str());
    QM_FUZZ_CHECK(es == Acad::eOk);
    QM_FUZZ_CHECK(qmfuzz::SaveDxf(again) == saved);
    return 0;
}
