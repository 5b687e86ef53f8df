// The editor's input and selection calls, answered by the running host from
// the answers queued for it.
#include <acedads.h>
#include <dbents.h>
#include <dbsymtb.h>

#include <algorithm>
#include <cwctype>
#include <unordered_set>

#include "app/Host.h"
#include "db/DatabaseImpl.h"
#include "editor/Filter.h"
#include "editor/Viewports.h"
#include "editor/Wildcard.h"

using cadhost::DatabaseImpl;
using cadhost::Host;

namespace {

AcDbDatabase* Working() { return acdbHostApplicationServices()->workingDatabase(); }

// The current user coordinate system of a drawing, as a matrix to the world.
AcGeMatrix3d UcsToWorld(AcDbDatabase* db) {
    if (!db) return AcGeMatrix3d::kIdentity;
    bool model = db->tilemode();
    AcGeVector3d x = model ? db->ucsxdir() : db->pucsxdir();
    AcGeVector3d y = model ? db->ucsydir() : db->pucsydir();
    return AcGeMatrix3d().setCoordSystem(model ? db->ucsorg() : db->pucsorg(), x, y, x.crossProduct(y).normal());
}

// Whether the user sees an entity: its layer is neither frozen nor off.
bool Visible(const AcDbEntity& entity) {
    auto* layer = AcDbLayerTableRecord::cast(DatabaseImpl::Peek(entity.layerId()));
    return !layer || (!layer->isFrozen() && !layer->isOff());
}

// The entities of a space, erased ones left out.
template <class F>
void ForEachEntity(AcDbObjectId spaceId, F&& visit) {
    auto* space = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(spaceId));
    if (!space || spaceId.isErased()) return;
    for (AcDbObjectId id : space->entityIds()) {
        auto* entity = AcDbEntity::cast(DatabaseImpl::Peek(id));
        if (entity && !id.isErased()) visit(id, *entity);
    }
}

int Deliver(std::vector<AcDbObjectId> ids, ads_name ss) {
    if (ids.empty()) return RTERROR;
    if (!Host::Require().selections().Create(std::move(ids), ss)) {
        acutPrintf(L"\n*Too many selection sets open*");
        return RTERROR;
    }
    return RTNORM;
}

int Pick(const cadhost::SelectionFilter& filter, ads_name ss) {
    Host& host = Host::Require();
    AcDbDatabase* db = Working();
    acutPrintf(L"\nSelect objects: ");
    cadhost::EditorAnswer answer = host.input().Next();
    if (answer.kind == cadhost::EditorAnswer::Kind::kEscape || !db) {
        acutPrintf(L"*Cancel*");
        return RTCAN;
    }
    std::vector<AcDbObjectId> ids;
    if (answer.kind == cadhost::EditorAnswer::Kind::kPick) {
        std::unordered_set<AcDbStub*> seen;
        for (const std::wstring& text : answer.handles) {
            // The user picks what the current space shows; a handle of
            // anything else is a pick that found nothing.
            AcDbHandle handle(text.c_str());
            AcDbObjectId id;
            if (handle.isNull() || db->getAcDbObjectId(id, false, handle) != Acad::eOk) continue;
            auto* entity = AcDbEntity::cast(DatabaseImpl::Peek(id));
            if (!entity || id.isErased() || entity->ownerId() != db->currentSpaceId() || !Visible(*entity)) continue;
            if (!filter.Accepts(*entity) || !seen.insert(id.stub()).second) continue;
            ids.push_back(id);
        }
    }
    acutPrintf(L"%d found", static_cast<int>(ids.size()));
    return Deliver(std::move(ids), ss);
}

int Window(const double* first, const double* second, bool crossing, const cadhost::SelectionFilter& filter,
           ads_name ss) {
    AcDbDatabase* db = Working();
    if (!db || !first || !second) return RTERROR;
    double x0 = std::min(first[0], second[0]), x1 = std::max(first[0], second[0]);
    double y0 = std::min(first[1], second[1]), y1 = std::max(first[1], second[1]);
    // Extents are taken in the user coordinate system the corners are in.
    AcGeMatrix3d toUcs = UcsToWorld(db).inverse();
    std::vector<AcDbObjectId> ids;
    ForEachEntity(db->currentSpaceId(), [&](AcDbObjectId id, const AcDbEntity& entity) {
        if (!Visible(entity)) return;
        AcDbExtents extents;
        entity.addExtentsTo(extents, toUcs);
        if (extents.isEmpty()) return;
        const AcGePoint3d& lo = extents.minPoint();
        const AcGePoint3d& hi = extents.maxPoint();
        bool inside = lo.x >= x0 && hi.x <= x1 && lo.y >= y0 && hi.y <= y1;
        bool touches = lo.x <= x1 && hi.x >= x0 && lo.y <= y1 && hi.y >= y0;
        if ((crossing ? touches : inside) && filter.Accepts(entity)) ids.push_back(id);
    });
    return Deliver(std::move(ids), ss);
}

int Everything(const cadhost::SelectionFilter& filter, ads_name ss) {
    AcDbDatabase* db = Working();
    if (!db) return RTERROR;
    std::vector<AcDbObjectId> ids;
    auto* blocks = AcDbBlockTable::cast(DatabaseImpl::Peek(db->blockTableId()));
    if (!blocks) return RTERROR;
    // Model space first, then every layout's sheet in table order.
    std::vector<AcDbObjectId> spaces{db->modelSpaceId()};
    for (AcDbObjectId id : blocks->recordIds()) {
        auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(id));
        if (block && block->isLayout() && id != db->modelSpaceId()) spaces.push_back(id);
    }
    for (AcDbObjectId space : spaces) {
        ForEachEntity(space, [&](AcDbObjectId id, const AcDbEntity& entity) {
            if (filter.Accepts(entity)) ids.push_back(id);
        });
    }
    return Deliver(std::move(ids), ss);
}

int AskPoint(const ACHAR* prompt, ads_point result) {
    Host& host = Host::Require();
    if (prompt) acutPrintf(L"%s", prompt);
    for (;;) {
        cadhost::EditorAnswer answer = host.input().Next();
        if (answer.kind == cadhost::EditorAnswer::Kind::kPoint) {
            for (int i = 0; i < 3; ++i) result[i] = answer.point[i];
            return RTNORM;
        }
        if (answer.kind == cadhost::EditorAnswer::Kind::kEscape) {
            acutPrintf(L"*Cancel*");
            return RTCAN;
        }
        // Picked objects are no point: the prompt comes again.
        acutPrintf(L"\nInvalid point.");
        if (prompt) acutPrintf(L"%s", prompt);
    }
}

}  // namespace

extern "C" {

int acedSSGet(const ACHAR* mode, const void* pt1, const void* pt2, const resbuf* filter, ads_name ss) {
    if (!ss) return RTERROR;
    cadhost::SelectionFilter test;
    std::wstring why;
    if (!test.Parse(filter, why)) {
        acutPrintf(L"\n*Invalid selection filter: %s*", why.c_str());
        return RTERROR;
    }
    std::wstring m = mode ? mode : L"";
    while (!m.empty() && (m[0] == L'_' || m[0] == L'.')) m.erase(0, 1);  // global and built-in prefixes
    for (wchar_t& c : m) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    if (m.empty()) return Pick(test, ss);
    if (m == L"W") return Window(static_cast<const double*>(pt1), static_cast<const double*>(pt2), false, test, ss);
    if (m == L"C") return Window(static_cast<const double*>(pt1), static_cast<const double*>(pt2), true, test, ss);
    if (m == L"X") return Everything(test, ss);
    return RTERROR;
}

int acedSSLength(const ads_name ss, Adesk::Int32* length) {
    std::vector<AcDbObjectId>* set = Host::Require().selections().Find(ss);
    if (!set || !length) return RTERROR;
    *length = static_cast<Adesk::Int32>(set->size());
    return RTNORM;
}

int acedSSName(const ads_name ss, Adesk::Int32 index, ads_name entity) {
    std::vector<AcDbObjectId>* set = Host::Require().selections().Find(ss);
    if (!set || !entity || index < 0 || static_cast<size_t>(index) >= set->size()) return RTERROR;
    return acdbGetAdsName(entity, (*set)[static_cast<size_t>(index)]) == Acad::eOk ? RTNORM : RTERROR;
}

int acedSSAdd(const ads_name entity, const ads_name ss, ads_name result) {
    Host& host = Host::Require();
    if (!result) return RTERROR;
    AcDbObjectId id;
    bool hasEntity = entity && !(entity[0] == 0 && entity[1] == 0);
    if (hasEntity && acdbGetObjectId(id, entity) != Acad::eOk) return RTERROR;
    if (!ss || (ss[0] == 0 && ss[1] == 0)) {
        std::vector<AcDbObjectId> ids;
        if (hasEntity) ids.push_back(id);
        return host.selections().Create(std::move(ids), result) ? RTNORM : RTERROR;
    }
    std::vector<AcDbObjectId>* set = host.selections().Find(ss);
    if (!set) return RTERROR;
    if (hasEntity && std::find(set->begin(), set->end(), id) == set->end()) set->push_back(id);
    result[0] = ss[0];
    result[1] = ss[1];
    return RTNORM;
}

int acedSSFree(const ads_name ss) { return Host::Require().selections().Free(ss) ? RTNORM : RTERROR; }

int acedGetPoint(const ads_point, const ACHAR* prompt, ads_point result) {
    if (!result) return RTERROR;
    return AskPoint(prompt, result);
}

int acedGetCorner(const ads_point base, const ACHAR* prompt, ads_point result) {
    if (!base || !result) return RTERROR;
    return AskPoint(prompt, result);
}

int acdbUcs2Wcs(const ads_point from, ads_point to, int vec) {
    if (!from || !to) return RTERROR;
    AcGeMatrix3d m = UcsToWorld(Working());
    AcGePoint3d p(from[0], from[1], from[2]);
    AcGePoint3d q = vec ? AcGePoint3d::kOrigin + AcGeVector3d(p.x, p.y, p.z).transformBy(m) : m * p;
    to[0] = q.x, to[1] = q.y, to[2] = q.z;
    return RTNORM;
}

int acdbWcs2Ucs(const ads_point from, ads_point to, int vec) {
    if (!from || !to) return RTERROR;
    AcGeMatrix3d m = UcsToWorld(Working()).inverse();
    AcGePoint3d p(from[0], from[1], from[2]);
    AcGePoint3d q = vec ? AcGePoint3d::kOrigin + AcGeVector3d(p.x, p.y, p.z).transformBy(m) : m * p;
    to[0] = q.x, to[1] = q.y, to[2] = q.z;
    return RTNORM;
}

int acutWcMatch(const ACHAR* text, const ACHAR* pattern) {
    if (!text || !pattern) return RTERROR;
    return cadhost::WildcardMatch(text, pattern, false) ? RTNORM : RTERROR;
}

int acutWcMatchEx(const ACHAR* text, const ACHAR* pattern, bool ignoreCase) {
    if (!text || !pattern) return RTERROR;
    return cadhost::WildcardMatch(text, pattern, ignoreCase) ? RTNORM : RTERROR;
}
}

AcDbObjectId acedGetCurViewportObjectId() {
    AcDbDatabase* db = Working();
    return db ? cadhost::CurrentViewportId(*db, Host::Require().currentViewport()) : AcDbObjectId();
}

Acad::ErrorStatus acedGetCurrentUCS(AcGeMatrix3d& matrix) {
    matrix = UcsToWorld(Working());
    return Acad::eOk;
}

Acad::ErrorStatus acedSetCurrentUCS(const AcGeMatrix3d& matrix) {
    AcDbDatabase* db = Working();
    if (!db) return Acad::eNoDatabase;
    AcGePoint3d origin;
    AcGeVector3d x, y, z;
    matrix.getCoordSystem(origin, x, y, z);
    return db->tilemode() ? db->setUcs(origin, x, y) : db->setPucs(origin, x, y);
}
