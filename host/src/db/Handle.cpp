#include <dbid.h>

#include <cwchar>

#include "db/DatabaseImpl.h"

AcDbHandle::AcDbHandle(const ACHAR* hexText) {
    if (!hexText) return;
    Adesk::UInt64 value = 0;
    int digits = 0;
    for (const ACHAR* p = hexText; *p; ++p) {
        int d;
        if (*p >= L'0' && *p <= L'9') d = *p - L'0';
        else if (*p >= L'A' && *p <= L'F') d = *p - L'A' + 10;
        else if (*p >= L'a' && *p <= L'f') d = *p - L'a' + 10;
        else return;  // not a handle: stays null
        if (++digits > 16) return;
        value = (value << 4) | static_cast<Adesk::UInt64>(d);
    }
    m_value = value;
}

void AcDbHandle::getIntoAsciiBuffer(ACHAR* buffer) const { getIntoAsciiBuffer(buffer, 17); }

bool AcDbHandle::getIntoAsciiBuffer(ACHAR* buffer, size_t length) const {
    if (!buffer || length == 0) return false;
    ACHAR digits[17];
    int n = 0;
    Adesk::UInt64 v = m_value;
    do {
        int d = static_cast<int>(v & 0xF);
        digits[n++] = static_cast<ACHAR>(d < 10 ? L'0' + d : L'A' + d - 10);
        v >>= 4;
    } while (v != 0);
    if (static_cast<size_t>(n) + 1 > length) {
        buffer[0] = L'\0';
        return false;
    }
    for (int i = 0; i < n; ++i) buffer[i] = digits[n - 1 - i];
    buffer[n] = L'\0';
    return true;
}

const AcDbObjectId AcDbObjectId::kNull;

bool AcDbObjectId::isErased() const { return m_stub && m_stub->erased; }

namespace {
AcDbStub* OwnerOf(AcDbStub* stub) { return stub && stub->object ? stub->object->ownerId().stub() : nullptr; }
}  // namespace

bool AcDbObjectId::isEffectivelyErased() const {
    // An object is gone with its owner: walk the owners up to the root. A
    // file may name owners in a ring; a second walker at twice the pace
    // meets the first on it, and the ring's members are looked at once.
    AcDbStub* slow = m_stub;
    AcDbStub* fast = m_stub;
    while (slow) {
        if (slow->erased) return true;
        slow = OwnerOf(slow);
        fast = OwnerOf(OwnerOf(fast));
        if (slow && slow == fast) {
            AcDbStub* member = slow;
            do {
                if (member->erased) return true;
                member = OwnerOf(member);
            } while (member && member != slow);
            return false;
        }
    }
    return false;
}

AcDbHandle AcDbObjectId::handle() const { return m_stub ? AcDbHandle(m_stub->handle) : AcDbHandle(); }

AcDbDatabase* AcDbObjectId::database() const { return m_stub ? &m_stub->database->owner() : nullptr; }

AcRxClass* AcDbObjectId::objectClass() const { return m_stub && m_stub->object ? m_stub->object->isA() : nullptr; }
