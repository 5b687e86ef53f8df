// The index of a database's stubs by handle: what goes in is found, what
// does not is not, across growth and with handles in runs or scattered.
#include <gtest/gtest.h>

#include <random>
#include <unordered_map>

#include "db/HandleIndex.h"
#include "db/Stub.h"

namespace {

TEST(HandleIndex, FindsWhatWentInAndNothingElse) {
    cadhost::HandleIndex index;
    EXPECT_EQ(index.Find(1), nullptr);
    std::vector<AcDbStub> stubs(30000);
    std::unordered_map<Adesk::UInt64, AcDbStub*> expected;
    std::mt19937_64 random(7);
    for (size_t i = 0; i < stubs.size(); ++i) {
        // Runs of handles as drawings have them, and scattered large ones.
        Adesk::UInt64 handle = i % 3 == 0 ? random() | 0x100000 : 0x20 + i;
        index.Insert(handle, &stubs[i]);
        expected.emplace(handle, &stubs[i]);
    }
    EXPECT_EQ(index.size(), expected.size());
    for (const auto& [handle, stub] : expected) ASSERT_EQ(index.Find(handle), stub) << handle;
    for (Adesk::UInt64 missing : {0ull, 2ull, 0x1Full, 0x20ull, 0x20ull + stubs.size(), 0xFFFFFFFFFFFFFFFEull})
        EXPECT_EQ(index.Find(missing), expected.count(missing) ? expected[missing] : nullptr) << missing;
    // A handle that is there keeps its stub; 0 is never taken.
    AcDbStub other;
    index.Insert(0x21, &other);
    EXPECT_EQ(index.Find(0x21), &stubs[1]);
    index.Insert(0, &other);
    EXPECT_EQ(index.Find(0), nullptr);
    EXPECT_EQ(index.size(), expected.size());
    index.clear();
    EXPECT_EQ(index.size(), 0u);
    EXPECT_EQ(index.Find(0x21), nullptr);
}

}  // namespace
