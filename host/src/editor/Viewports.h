// The viewports of a drawing's current layout.
#pragma once

#include <dbmain.h>

namespace cadhost {

// The viewport entity of the current paper space with that number; null
// when there is none or model space is current.
AcDbObjectId FindViewport(AcDbDatabase& database, short number);
// The viewport the editor works in: in model space the active viewport
// record of the drawing's tables; in paper space the viewport that CVPORT
// names, else the sheet's own (number 1).
AcDbObjectId CurrentViewportId(AcDbDatabase& database, short viewport);

}  // namespace cadhost
