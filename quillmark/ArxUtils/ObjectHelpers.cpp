// The drawing helpers of ArxUtils: error reports, handle texts, and text
// values in extended data. Objects are opened for read, and upgraded to
// write only where extended data is written.
#include "ArxUtils/ArxUtils.h"

#include <cstdlib>
#include <cwchar>

namespace {

const ACHAR kSourceName[] = L"ArxUtils";
const ACHAR kOpenFailed[] = L"acdbOpenEntity failed in setXdata function";
const int kHandleBufferLength = 64;

// A buffer of the chain's own kind: made by acutNewRb, its text by malloc,
// so that acutRelRb frees both.
resbuf* NewTextBuffer(int code, const ACHAR* text) {
    resbuf* rb = acutNewRb(code);
    if (!rb) return nullptr;
    size_t length = text ? std::wcslen(text) : 0;
    auto* copy = static_cast<ACHAR*>(std::malloc((length + 1) * sizeof(ACHAR)));
    if (!copy) {
        acutRelRb(rb);
        return nullptr;
    }
    if (length) std::wmemcpy(copy, text, length);
    copy[length] = L'\0';
    rb->resval.rstring = copy;
    return rb;
}

bool SameText(const resbuf* rb, const CString& text) {
    return rb->resval.rstring && _wcsicmp(rb->resval.rstring, text) == 0;
}

// Writes a changed chain back through the object's own open.
int WriteBack(AcDbObject* object, resbuf* chain) {
    object->upgradeOpen();
    Acad::ErrorStatus es = object->setXData(chain);
    acutRelRb(chain);
    return es == Acad::eOk ? 1 : 0;
}

// Runs an operation on an object opened for read by id; a writing operation
// says on the command line that the object did not open.
template <class Operation>
int WithObject(AcDbObjectId id, bool writing, Operation&& operation) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, id, AcDb::kForRead) != Acad::eOk || !object) {
        if (writing) acutPrintf(kOpenFailed);
        return 0;
    }
    int result = operation(object);
    object->close();
    return result;
}

}  // namespace

void ReportArxError(Acad::ErrorStatus status, const ACHAR* sourceName, int line) {
    if (status == Acad::eOk) return;
    acutPrintf(L"\nARX ERROR: %s. %s: %d", acadErrorStatusText(status), sourceName ? sourceName : L"", line);
}

void GetObjectHandleText(const AcDbObject* object, CString& text) {
    if (!object) {
        text.Empty();
        return;
    }
    AcDbHandle handle;
    object->getAcDbHandle(handle);
    ACHAR buffer[kHandleBufferLength] = L"";
    handle.getIntoAsciiBuffer(buffer, kHandleBufferLength);
    text = buffer;
}

void GetHandleText(const AcDbObjectId& id, CString& text) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, id, AcDb::kForRead) != Acad::eOk || !object) {
        text.Empty();
        return;
    }
    GetObjectHandleText(object, text);
    object->close();
}

// ---- Extended data: object forms -------------------------------------------

int setXdata(AcDbObject* object, const ACHAR* appName, CString value, int append) {
    if (!object || !appName || !*appName) return 0;
    resbuf* chain = object->xData(appName);
    resbuf* last = nullptr;
    if (!chain) {
        acdbRegApp(appName);
        chain = NewTextBuffer(AcDb::kDxfRegAppName, appName);
        if (!chain) return 0;
        last = chain;
    } else if (append) {
        for (last = chain; last->rbnext; last = last->rbnext) {
        }
    } else {
        acutRelRb(chain->rbnext);
        chain->rbnext = nullptr;
        last = chain;
    }
    last->rbnext = NewTextBuffer(AcDb::kDxfXdAsciiString, value);
    object->upgradeOpen();
    object->setXData(chain);
    acutRelRb(chain);
    return 1;
}

int getXdata(AcDbObject* object, const ACHAR* appName, CString& value) {
    if (!object) return 0;
    resbuf* chain = object->xData(appName);
    if (!chain) {
        value.Empty();
        return 0;
    }
    bool inGroup = false;
    for (const resbuf* rb = chain; rb; rb = rb->rbnext) {
        if (rb->restype == AcDb::kDxfXdControlString) {
            // A pair of control strings brackets a group, whatever they say.
            inGroup = !inGroup;
        } else if (rb->restype == AcDb::kDxfXdAsciiString && !inGroup) {
            value = rb->resval.rstring ? rb->resval.rstring : L"";
            acutRelRb(chain);
            return 1;
        }
    }
    acutRelRb(chain);
    return 0;
}

int ReplaceXdataString(AcDbObject* object, const ACHAR* appName, const CString& oldValue, const CString& newValue) {
    if (!object) return 0;
    resbuf* chain = object->xData(appName);
    if (!chain) return 0;
    bool changed = false;
    for (resbuf* rb = chain->rbnext; rb; rb = rb->rbnext) {
        if (rb->restype == AcDb::kDxfXdAsciiString && SameText(rb, oldValue)) {
            acutUpdString(newValue, rb->resval.rstring);
            changed = true;
        }
    }
    if (!changed) {
        acutRelRb(chain);
        return 0;
    }
    return WriteBack(object, chain);
}

int RemoveXdataString(AcDbObject* object, const ACHAR* appName, const CString& value) {
    if (!object) return 0;
    resbuf* chain = object->xData(appName);
    if (!chain) return 0;
    for (resbuf* previous = chain; previous->rbnext; previous = previous->rbnext) {
        resbuf* rb = previous->rbnext;
        if (rb->restype != AcDb::kDxfXdAsciiString || !SameText(rb, value)) continue;
        previous->rbnext = rb->rbnext;
        rb->rbnext = nullptr;
        acutRelRb(rb);
        return WriteBack(object, chain);
    }
    acutRelRb(chain);
    return 0;
}

// ---- Extended data: by id ----------------------------------------------------

int setXdata(AcDbObjectId id, const ACHAR* appName, CString value, int append) {
    return WithObject(id, true, [&](AcDbObject* object) { return setXdata(object, appName, value, append); });
}

int getXdata(AcDbObjectId id, const ACHAR* appName, CString& value) {
    return WithObject(id, false, [&](AcDbObject* object) { return getXdata(object, appName, value); });
}

int ReplaceXdataString(AcDbObjectId id, const ACHAR* appName, const CString& oldValue, const CString& newValue) {
    return WithObject(id, true,
                      [&](AcDbObject* object) { return ReplaceXdataString(object, appName, oldValue, newValue); });
}

int RemoveXdataString(AcDbObjectId id, const ACHAR* appName, const CString& value) {
    return WithObject(id, true, [&](AcDbObject* object) { return RemoveXdataString(object, appName, value); });
}

// ---- Extended data: by entity name ---------------------------------------------

int setXdata(const ads_name entity, const ACHAR* appName, CString value, int append) {
    AcDbObjectId id;
    if (acdbGetObjectId(id, entity) != Acad::eOk) return 0;
    return setXdata(id, appName, value, append);
}

int getXdata(const ads_name entity, const ACHAR* appName, CString& value) {
    AcDbObjectId id;
    if (acdbGetObjectId(id, entity) != Acad::eOk) {
        acutPrintf(L"\nacdbGetObjectId failed in FILE: %s;LINE: %d", kSourceName, __LINE__);
        return 0;
    }
    return getXdata(id, appName, value);
}

int ReplaceXdataString(const ads_name entity, const ACHAR* appName, const CString& oldValue,
                       const CString& newValue) {
    AcDbObjectId id;
    if (acdbGetObjectId(id, entity) != Acad::eOk) return 0;
    return ReplaceXdataString(id, appName, oldValue, newValue);
}

int RemoveXdataString(const ads_name entity, const ACHAR* appName, const CString& value) {
    AcDbObjectId id;
    if (acdbGetObjectId(id, entity) != Acad::eOk) return 0;
    return RemoveXdataString(id, appName, value);
}
