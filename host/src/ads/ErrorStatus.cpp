#include <acadstrc.h>

const ACHAR* acadErrorStatusText(Acad::ErrorStatus status) {
    switch (status) {
    case Acad::eOk: return L"eOk";
    case Acad::eNotImplementedYet: return L"eNotImplementedYet";
    case Acad::eNotApplicable: return L"eNotApplicable";
    case Acad::eInvalidInput: return L"eInvalidInput";
    case Acad::eAmbiguousInput: return L"eAmbiguousInput";
    case Acad::eAmbiguousOutput: return L"eAmbiguousOutput";
    case Acad::eOutOfMemory: return L"eOutOfMemory";
    case Acad::eBufferTooSmall: return L"eBufferTooSmall";
    case Acad::eInvalidOpenState: return L"eInvalidOpenState";
    case Acad::eEntityInUse: return L"eEntityInUse";
    case Acad::eEntityNotInUse: return L"eEntityNotInUse";
    case Acad::eNullEntityPointer: return L"eNullEntityPointer";
    case Acad::eBrokenHandle: return L"eBrokenHandle";
    case Acad::eNullHandle: return L"eNullHandle";
    case Acad::eNullObjectId: return L"eNullObjectId";
    case Acad::eNullObjectPointer: return L"eNullObjectPointer";
    case Acad::eNullIterator: return L"eNullIterator";
    case Acad::eInvalidIndex: return L"eInvalidIndex";
    case Acad::eContainerNotEmpty: return L"eContainerNotEmpty";
    case Acad::eNotInDatabase: return L"eNotInDatabase";
    case Acad::eNotApplicableHere: return L"eNotApplicableHere";
    case Acad::eInvalidDxfCode: return L"eInvalidDxfCode";
    case Acad::eDuplicateKey: return L"eDuplicateKey";
    case Acad::eKeyNotFound: return L"eKeyNotFound";
    case Acad::eNotThatKindOfClass: return L"eNotThatKindOfClass";
    case Acad::eInvalidKey: return L"eInvalidKey";
    case Acad::eAlreadyInDb: return L"eAlreadyInDb";
    case Acad::eInvalidDwgVersion: return L"eInvalidDwgVersion";
    case Acad::eWrongObjectType: return L"eWrongObjectType";
    case Acad::eWasErased: return L"eWasErased";
    case Acad::eWasOpenForRead: return L"eWasOpenForRead";
    case Acad::eWasOpenForWrite: return L"eWasOpenForWrite";
    case Acad::eWasNotOpenForWrite: return L"eWasNotOpenForWrite";
    case Acad::eNotOpenForRead: return L"eNotOpenForRead";
    case Acad::eNotOpenForWrite: return L"eNotOpenForWrite";
    case Acad::eInvalidExtents: return L"eInvalidExtents";
    case Acad::eDegenerateGeometry: return L"eDegenerateGeometry";
    case Acad::eNullExtents: return L"eNullExtents";
    case Acad::eUnknownHandle: return L"eUnknownHandle";
    case Acad::eWrongDatabase: return L"eWrongDatabase";
    case Acad::eHadMultipleReaders: return L"eHadMultipleReaders";
    case Acad::eAtMaxReaders: return L"eAtMaxReaders";
    case Acad::eRegappIdNotFound: return L"eRegappIdNotFound";
    case Acad::eDuplicateRecordName: return L"eDuplicateRecordName";
    case Acad::eInvalidSymbolTableName: return L"eInvalidSymbolTableName";
    case Acad::eBadDxfSequence: return L"eBadDxfSequence";
    case Acad::eEndOfFile: return L"eEndOfFile";
    case Acad::eInvalidAdsName: return L"eInvalidAdsName";
    case Acad::eFileNotFound: return L"eFileNotFound";
    case Acad::eFileAccessErr: return L"eFileAccessErr";
    case Acad::eFileSharingViolation: return L"eFileSharingViolation";
    case Acad::eCantOpenFile: return L"eCantOpenFile";
    case Acad::eNoInputFiler: return L"eNoInputFiler";
    case Acad::eDwgNeedsAFullSave: return L"eDwgNeedsAFullSave";
    case Acad::eBadDxfFile: return L"eBadDxfFile";
    case Acad::eFileSystemErr: return L"eFileSystemErr";
    case Acad::eNoDatabase: return L"eNoDatabase";
    case Acad::eNotAnEntity: return L"eNotAnEntity";
    case Acad::eNotHandled: return L"eNotHandled";
    case Acad::eInetUnknownError: return L"eInetUnknownError";
    case Acad::eAlreadyActive: return L"eAlreadyActive";
    case Acad::eAlreadyInactive: return L"eAlreadyInactive";
    }
    return L"eUnknownErrorStatus";
}
