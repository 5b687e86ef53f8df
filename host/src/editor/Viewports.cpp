#include "editor/Viewports.h"

#include <dbents.h>
#include <dbsymtb.h>

#include "db/DatabaseImpl.h"
#include "db/KeptObjects.h"
#include "db/ObjectExtras.h"

namespace cadhost {

AcDbObjectId FindViewport(AcDbDatabase& database, short number) {
    if (database.tilemode()) return {};
    auto* space = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(database.currentSpaceId()));
    if (!space) return {};
    for (AcDbObjectId id : space->entityIds()) {
        auto* viewport = AcDbViewport::cast(DatabaseImpl::Peek(id));
        if (viewport && !id.isErased() && viewport->number() == number) return id;
    }
    return {};
}

AcDbObjectId CurrentViewportId(AcDbDatabase& database, short viewport) {
    if (!database.tilemode()) return FindViewport(database, viewport ? viewport : 1);
    // Model space: the "*Active" record of the viewport table, which the
    // host keeps as the file had it.
    DatabaseImpl& impl = database.impl();
    for (AcDbObjectId tableId : impl.file.tables) {
        auto* table = KeptObject::cast(DatabaseImpl::Peek(tableId));
        if (!table) continue;
        ObjectExtras* extras = table->extras();
        bool viewports = false;
        if (extras) {
            KeptGroups::Cursor cursor(extras->kept);
            KeptGroup group;
            while (cursor.Next(group))
                if (group.code == 2 && group.value == "VPORT") viewports = true;
        }
        if (!viewports) continue;
        for (AcDbObjectId record : table->children()) {
            ObjectExtras* recordExtras = DatabaseImpl::Peek(record) ? DatabaseImpl::Peek(record)->extras() : nullptr;
            if (!recordExtras || record.isErased()) continue;
            KeptGroups::Cursor cursor(recordExtras->kept);
            KeptGroup group;
            while (cursor.Next(group))
                if (group.code == 2 && (group.value == "*Active" || group.value == "*ACTIVE")) return record;
        }
    }
    return {};
}

}  // namespace cadhost
