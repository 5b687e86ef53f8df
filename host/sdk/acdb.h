// Enumerations of the drawing database.
#pragma once

#include "adesk.h"

struct AcDb {
    enum OpenMode { kForRead = 0, kForWrite = 1, kForNotify = 2 };
    enum SaveType { kDwg = 0, kDxf = 1 };
    enum TextHorzMode { kTextLeft = 0, kTextCenter = 1, kTextRight = 2, kTextAlign = 3, kTextMid = 4, kTextFit = 5 };
    enum TextVertMode { kTextBase = 0, kTextBottom = 1, kTextVertMid = 2, kTextTop = 3 };
    enum Visibility { kInvisible = 1, kVisible = 0 };
    // The type of a value that the database keeps, as dynamic block
    // properties report it.
    enum DwgDataType {
        kDwgNull = 0,
        kDwgReal = 1,
        kDwgInt32 = 2,
        kDwgInt16 = 3,
        kDwgInt8 = 4,
        kDwgText = 5,
        kDwgBChunk = 6,
        kDwgHandle = 7,
        kDwgHardOwnershipId = 8,
        kDwgSoftOwnershipId = 9,
        kDwgHardPointerId = 10,
        kDwgSoftPointerId = 11,
        kDwg3Real = 12,
        kDwgInt64 = 13,
        kDwg2Real = 14,
        kDwgNotRecognized = 19,
    };
    enum AcDbDwgVersion { kDHL_CURRENT = 0, kDHL_1009 = 16, kDHL_1015 = 23, kDHL_1018 = 25, kDHL_1024 = 29,
                          kDHL_1027 = 31, kDHL_1032 = 33 };
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
        kDxfXCoord = 10,
        kDxfReal = 40,
        kDxfInt16 = 70,
        kDxfInt32 = 90,
        kDxfRegAppName = 1001,
        kDxfXdAsciiString = 1000,
        kDxfXdControlString = 1002,
    };
};
