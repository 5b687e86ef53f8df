// The host keeps memory it frees for its next use: a bulk of small blocks
// freed together stays with the process instead of going back to the
// system.
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "app/MemoryReuse.h"

namespace {

TEST(MemoryReuseTest, FreedMemoryStaysForTheNextUse) {
#if !defined(__GLIBC__) || defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "only the C library's own heap gives memory back";
#else
    cadhost::KeepFreedMemoryForReuse();
    // Sixty-four megabytes in blocks of 64 kilobytes, as a snapshot of a
    // drawing's blocks comes and goes, freed from the last one down so
    // that the free space gathers at the heap's end.
    constexpr size_t kBlock = 64 << 10, kBlocks = 1024;
    std::vector<char*> blocks;
    for (size_t i = 0; i < kBlocks; ++i) {
        auto* block = static_cast<char*>(std::malloc(kBlock));
        ASSERT_NE(block, nullptr);
        block[0] = block[kBlock - 1] = 1;
        blocks.push_back(block);
    }
    for (size_t i = kBlocks; i-- > 0;) std::free(blocks[i]);
    struct mallinfo2 info = mallinfo2();
    EXPECT_GE(info.fordblks, kBlock * kBlocks * 9 / 10) << "free bytes the heap kept";
#endif
}

}  // namespace
