// Result buffers. Texts and binary chunks in a buffer are allocated with
// malloc, so that acutRelRb frees buffers made by the host and by modules
// alike.
#include <adslib.h>

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "ads/Resbuf.h"
#include "ads/ResbufTypes.h"

namespace cadhost {

ACHAR* DuplicateText(const ACHAR* text) {
    if (!text) text = L"";
    size_t n = std::wcslen(text) + 1;
    auto* copy = static_cast<ACHAR*>(std::malloc(n * sizeof(ACHAR)));
    if (copy) std::wmemcpy(copy, text, n);
    return copy;
}

resbuf* CopyBuffer(const resbuf* source) {
    resbuf* copy = acutNewRb(source->restype);
    if (!copy) return nullptr;
    copy->resval = source->resval;
    switch (KindOfCode(source->restype)) {
    case ValueKind::String:
    case ValueKind::Handle:
        copy->resval.rstring = source->resval.rstring ? DuplicateText(source->resval.rstring) : nullptr;
        break;
    case ValueKind::Binary:
        if (source->resval.rbinary.buf && source->resval.rbinary.clen > 0) {
            copy->resval.rbinary.buf = static_cast<char*>(std::malloc(source->resval.rbinary.clen));
            std::memcpy(copy->resval.rbinary.buf, source->resval.rbinary.buf, source->resval.rbinary.clen);
        } else {
            copy->resval.rbinary = ads_binary{0, nullptr};
        }
        break;
    default:
        break;
    }
    return copy;
}

resbuf* CopyChain(const resbuf* chain, const resbuf* stop) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (const resbuf* rb = chain; rb && rb != stop; rb = rb->rbnext) {
        *tail = CopyBuffer(rb);
        if (!*tail) break;
        tail = &(*tail)->rbnext;
    }
    return head;
}

}  // namespace cadhost

extern "C" {

resbuf* acutNewRb(int type) {
    auto* rb = static_cast<resbuf*>(std::calloc(1, sizeof(resbuf)));
    if (rb) rb->restype = static_cast<short>(type);
    return rb;
}

int acutRelRb(resbuf* chain) {
    while (chain) {
        resbuf* next = chain->rbnext;
        switch (cadhost::KindOfCode(chain->restype)) {
        case cadhost::ValueKind::String:
        case cadhost::ValueKind::Handle:
            std::free(chain->resval.rstring);
            break;
        case cadhost::ValueKind::Binary:
            std::free(chain->resval.rbinary.buf);
            break;
        default:
            break;
        }
        std::free(chain);
        chain = next;
    }
    return RTNORM;
}

resbuf* acutBuildList(int type, ...) {
    va_list args;
    va_start(args, type);
    resbuf* head = nullptr;
    resbuf** tail = &head;
    bool failed = false;
    for (int code = type; code != 0 && code != RTNONE; code = va_arg(args, int)) {
        resbuf* rb = acutNewRb(code);
        if (!rb) {
            failed = true;
            break;
        }
        *tail = rb;
        tail = &rb->rbnext;
        switch (cadhost::KindOfCode(code)) {
        case cadhost::ValueKind::None:
            if (code != RTLB && code != RTLE && code != RTDOTE && code != RTNIL && code != RTT && code != RTVOID)
                failed = true;  // not a code that a list can carry
            break;
        case cadhost::ValueKind::String:
        case cadhost::ValueKind::Handle:
            rb->resval.rstring = cadhost::DuplicateText(va_arg(args, const ACHAR*));
            break;
        case cadhost::ValueKind::Real:
            rb->resval.rreal = va_arg(args, double);
            break;
        case cadhost::ValueKind::Point: {
            const double* p = va_arg(args, const double*);
            if (p) rb->resval.rpoint[0] = p[0], rb->resval.rpoint[1] = p[1], rb->resval.rpoint[2] = p[2];
            break;
        }
        case cadhost::ValueKind::Short:
            rb->resval.rint = static_cast<short>(va_arg(args, int));
            break;
        case cadhost::ValueKind::Long:
            rb->resval.rlong = va_arg(args, Adesk::Int32);
            break;
        case cadhost::ValueKind::Int64:
            rb->resval.mnInt64 = va_arg(args, Adesk::Int64);
            break;
        case cadhost::ValueKind::EntityName: {
            const Adesk::LongPtr* name = va_arg(args, const Adesk::LongPtr*);
            if (name) rb->resval.rlname[0] = name[0], rb->resval.rlname[1] = name[1];
            break;
        }
        case cadhost::ValueKind::Binary:
            failed = true;  // binary chunks don't travel through a built list
            break;
        }
        if (failed) break;
    }
    va_end(args);
    if (failed) {
        acutRelRb(head);
        return nullptr;
    }
    return head;
}

void acutDelBuffer(ACHAR*& text) {
    delete[] text;
    text = nullptr;
}

int acutUpdString(const ACHAR* newText, ACHAR*& text) {
    ACHAR* copy = cadhost::DuplicateText(newText);
    if (!copy) return RTERROR;
    std::free(text);
    text = copy;
    return RTNORM;
}
}
