// Enumerations of the drawing database.
#pragma once

#include "adesk.h"

struct AcDb {
    enum OpenMode { kForRead = 0, kForWrite = 1, kForNotify = 2 };
    enum SaveType { kDwg = 0, kDxf = 1 };
    enum DxfCode {
        kDxfInvalid = -9999,
        kDxfXDictionary = -6,
        kDxfPReactors = -5,
        kDxfOperator = -4,
        kDxfXDataStart = -3,
        kDxfHeaderId = -2,
        kDxfEnd = -1,
        kDxfStart = 0,
        kDxfText = 1,
        kDxfXRefPath = 1,
        kDxfShapeName = 2,
        kDxfBlockName = 2,
        kDxfAttributeTag = 2,
        kDxfSymbolTableName = 2,
        kDxfAttributePrompt = 3,
        kDxfHandle = 5,
        kDxfLayerName = 8,
        kDxfRegAppName = 1001,
        kDxfXdAsciiString = 1000,
        kDxfXdControlString = 1002,
    };
};
