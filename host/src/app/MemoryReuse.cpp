#include "app/MemoryReuse.h"

#include <malloc.h>

namespace cadhost {

namespace {

// Buffers up to this size come from the heap, not from a mapping of their
// own that is unmapped when freed (the most the C library allows).
constexpr int kLargestHeapBuffer = 32 * 1024 * 1024;
// Free memory at the heap's top is handed back only beyond this much.
constexpr int kKeptFreeMemory = 256 * 1024 * 1024;

}  // namespace

void KeepFreedMemoryForReuse() {
#if defined(__GLIBC__)
    mallopt(M_MMAP_THRESHOLD, kLargestHeapBuffer);
    mallopt(M_TRIM_THRESHOLD, kKeptFreeMemory);
#endif
}

}  // namespace cadhost
