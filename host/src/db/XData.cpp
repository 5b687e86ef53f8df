#include "db/XData.h"

#include <adslib.h>
#include <dbsymtb.h>
#include <tchar.h>

#include "ads/Resbuf.h"

namespace cadhost {
namespace {

// The end of the part that starts at head: the next 1001 or the chain's end.
const resbuf* PartEnd(const resbuf* head) {
    const resbuf* rb = head->rbnext;
    while (rb && rb->restype != 1001) rb = rb->rbnext;
    return rb;
}

bool SameApp(const resbuf* head, const ACHAR* name) {
    return head->resval.rstring && name && _wcsicmp(head->resval.rstring, name) == 0;
}

bool Mentions(const resbuf* chain, const ACHAR* appName) {
    for (const resbuf* rb = chain; rb; rb = rb->rbnext) {
        if (rb->restype == 1001 && SameApp(rb, appName)) return true;
    }
    return false;
}

void AppendCopy(resbuf**& tail, const resbuf* from, const resbuf* to) {
    resbuf* copy = CopyChain(from, to);
    if (!copy) return;
    *tail = copy;
    while (*tail) tail = &(*tail)->rbnext;
}

}  // namespace

resbuf* CopyXData(const resbuf* chain, const ACHAR* appName) {
    if (!appName) return CopyChain(chain);
    for (const resbuf* rb = chain; rb; rb = PartEnd(rb)) {
        if (rb->restype == 1001 && SameApp(rb, appName)) return CopyChain(rb, PartEnd(rb));
    }
    return nullptr;
}

Acad::ErrorStatus CheckXData(const resbuf* chain, AcDbDatabase* database) {
    if (chain && chain->restype != 1001) return Acad::eBadDxfSequence;
    for (const resbuf* rb = chain; rb; rb = rb->rbnext) {
        if (rb->restype == 1001) {
            if (!rb->resval.rstring || !*rb->resval.rstring) return Acad::eInvalidInput;
            if (database) {
                AcDbRegAppTable* table = nullptr;
                if (database->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return Acad::eNoDatabase;
                bool known = table->has(rb->resval.rstring);
                table->close();
                if (!known) return Acad::eRegappIdNotFound;
            }
        } else if (rb->restype < 1000 || rb->restype > 1071) {
            return Acad::eInvalidDxfCode;
        }
    }
    return Acad::eOk;
}

resbuf* MergeXData(const resbuf* current, const resbuf* update) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (const resbuf* rb = current; rb; rb = PartEnd(rb)) {
        if (!Mentions(update, rb->resval.rstring)) AppendCopy(tail, rb, PartEnd(rb));
    }
    for (const resbuf* rb = update; rb; rb = PartEnd(rb)) {
        if (rb->rbnext && rb->rbnext->restype != 1001) AppendCopy(tail, rb, PartEnd(rb));
    }
    return head;
}

}  // namespace cadhost
