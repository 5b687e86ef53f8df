// Commands of the host's editor that ask the user: LIST shows the objects
// the user selects, ID the point the user gives.
#include <acedads.h>
#include <dbents.h>
#include <dbsymtb.h>

#include "app/CommandStack.h"
#include "db/DatabaseImpl.h"
#include "db/KeptObjects.h"
#include "editor/EditorCommands.h"

namespace cadhost {
namespace {

void ListCommand() {
    ads_name set;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, set) != RTNORM) return;
    Adesk::Int32 length = 0;
    acedSSLength(set, &length);
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name name;
        AcDbObjectId id;
        if (acedSSName(set, i, name) != RTNORM || acdbGetObjectId(id, name) != Acad::eOk) continue;
        auto* entity = AcDbEntity::cast(DatabaseImpl::Peek(id));
        if (!entity) continue;
        auto* layer = AcDbLayerTableRecord::cast(DatabaseImpl::Peek(entity->layerId()));
        AcDbDatabase* db = id.database();
        ACHAR handle[17];
        id.handle().getIntoAsciiBuffer(handle);
        acutPrintf(L"\n%s  Layer: \"%s\"  Space: %s  Handle = %s", DxfNameOf(entity).c_str(),
                   layer ? layer->name().c_str() : L"0",
                   db && entity->ownerId() == db->modelSpaceId() ? L"Model space" : L"Paper space", handle);
    }
    acedSSFree(set);
}

void IdCommand() {
    ads_point point;
    if (acedGetPoint(nullptr, L"\nSpecify point: ", point) != RTNORM) return;
    acutPrintf(L"\nX = %.4f     Y = %.4f     Z = %.4f", point[0], point[1], point[2]);
}

}  // namespace

void DefineEditorCommands(CommandStack& commands) {
    commands.addCommand(L"ACAD_MAIN", L"LIST", L"LIST", ACRX_CMD_MODAL, &ListCommand);
    commands.addCommand(L"ACAD_MAIN", L"ID", L"ID", ACRX_CMD_MODAL, &IdCommand);
}

}  // namespace cadhost
