#include "db/HandleIndex.h"

namespace cadhost {

AcDbStub* HandleIndex::Find(Adesk::UInt64 handle) const {
    if (m_slots.empty() || handle == 0) return nullptr;
    size_t mask = m_slots.size() - 1;
    for (size_t i = Home(handle);; i = (i + 1) & mask) {
        const Slot& slot = m_slots[i];
        if (slot.handle == handle) return slot.stub;
        if (slot.handle == 0) return nullptr;
    }
}

void HandleIndex::Insert(Adesk::UInt64 handle, AcDbStub* stub) {
    if (handle == 0) return;
    // At most half full, so that runs of taken slots stay short.
    if ((m_size + 1) * 2 > m_slots.size()) Grow();
    size_t mask = m_slots.size() - 1;
    for (size_t i = Home(handle);; i = (i + 1) & mask) {
        Slot& slot = m_slots[i];
        if (slot.handle == handle) return;
        if (slot.handle == 0) {
            slot.handle = handle;
            slot.stub = stub;
            ++m_size;
            return;
        }
    }
}

void HandleIndex::Grow() {
    std::vector<Slot> old;
    old.swap(m_slots);
    size_t capacity = old.empty() ? 64 : old.size() * 2;
    m_slots.assign(capacity, Slot{});
    m_shift = 64;
    for (size_t c = capacity; c > 1; c >>= 1) --m_shift;
    m_size = 0;
    for (const Slot& slot : old)
        if (slot.handle != 0) Insert(slot.handle, slot.stub);
}

void HandleIndex::clear() {
    m_slots.clear();
    m_size = 0;
    m_shift = 64;
}

}  // namespace cadhost
