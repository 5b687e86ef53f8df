// The stubs of a database by handle: an open-addressing table in one array,
// so that finding the object of a handle takes one probe in the common case
// and no division, however many objects a drawing holds.
#pragma once

#include <adesk.h>

#include <cstddef>
#include <vector>

struct AcDbStub;

namespace cadhost {

class HandleIndex {
public:
    // The stub of a handle, or null.
    AcDbStub* Find(Adesk::UInt64 handle) const;
    bool Contains(Adesk::UInt64 handle) const { return Find(handle) != nullptr; }
    // Adds a handle that is not 0; a handle that is there already keeps its
    // stub.
    void Insert(Adesk::UInt64 handle, AcDbStub* stub);
    size_t size() const { return m_size; }
    void clear();

private:
    struct Slot {
        Adesk::UInt64 handle = 0;  // 0: empty
        AcDbStub* stub = nullptr;
    };
    // Handles come in runs (1, 2, 3...); a multiplicative hash spreads them.
    size_t Home(Adesk::UInt64 handle) const {
        return static_cast<size_t>((handle * 0x9E3779B97F4A7C15ull) >> m_shift);
    }
    void Grow();

    std::vector<Slot> m_slots;
    size_t m_size = 0;
    unsigned m_shift = 64;
};

}  // namespace cadhost
