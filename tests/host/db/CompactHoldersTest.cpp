// The holders that objects keep inside themselves: short texts and the ids
// of a reference's attributes, at every length, copied, moved and assigned,
// also from themselves.
#include <dbcompact.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "db/Stub.h"

namespace {

using cadhost_detail::IdList;
using cadhost_detail::ShortText;

// Texts of every length around the holder's own room, beyond ASCII too.
std::vector<std::wstring> Texts() {
    std::vector<std::wstring> texts;
    const std::wstring letters = L"ab\u00F6\u20AC\U0001F600cdefghijklmnopqrstuvwxyz";
    for (size_t length = 0; length <= 20; ++length) texts.push_back(letters.substr(0, length));
    texts.push_back(std::wstring(1000, L'x'));
    return texts;
}

TEST(ShortTextTest, HoldsTextsOfEveryLength) {
    ShortText empty;
    EXPECT_STREQ(empty.c_str(), L"");
    EXPECT_TRUE(empty.empty());
    for (const std::wstring& text : Texts()) {
        ShortText held(text);
        EXPECT_EQ(held.size(), text.size());
        EXPECT_EQ(std::wstring(held.c_str()), text);
        EXPECT_EQ(held.c_str()[text.size()], L'\0');
        EXPECT_EQ(held.view(), text);
    }
}

TEST(ShortTextTest, CopiesAndMovesLeaveWhatTheySay) {
    for (const std::wstring& text : Texts()) {
        SCOPED_TRACE(text.size());
        ShortText original(text);
        ShortText copy(original);
        EXPECT_EQ(copy.view(), text);
        EXPECT_EQ(original.view(), text);
        EXPECT_NE(copy.c_str(), original.c_str());
        ShortText moved(std::move(copy));
        EXPECT_EQ(moved.view(), text);
        EXPECT_TRUE(copy.empty());  // what is moved from is left empty
        EXPECT_STREQ(copy.c_str(), L"");
        ShortText assigned(L"something else entirely");
        assigned = std::move(moved);
        EXPECT_EQ(assigned.view(), text);
        ShortText target(L"old");
        target = original;
        EXPECT_EQ(target.view(), text);
    }
}

TEST(ShortTextTest, EveryLengthReplacesEveryOther) {
    for (const std::wstring& before : Texts()) {
        for (const std::wstring& after : Texts()) {
            ShortText held(before);
            held = after;
            ASSERT_EQ(held.view(), after) << before.size() << " then " << after.size();
        }
    }
}

TEST(ShortTextTest, TakesAPieceOfItself) {
    for (const std::wstring& text : Texts()) {
        ShortText held(text);
        held = held.view().substr(text.size() / 2);
        EXPECT_EQ(held.view(), text.substr(text.size() / 2));
        ShortText& same = held;
        held = same;
        EXPECT_EQ(held.view(), text.substr(text.size() / 2));
        held = std::move(same);
        EXPECT_EQ(held.view(), text.substr(text.size() / 2));
    }
}

// Ids only compared here, never opened: stubs of an array serve.
std::vector<AcDbObjectId> Ids(AcDbStub* stubs, size_t count) {
    std::vector<AcDbObjectId> ids;
    for (size_t i = 0; i < count; ++i) ids.emplace_back(&stubs[i]);
    return ids;
}

TEST(IdListTest, KeepsIdsInOrderBeyondItsOwnRoom) {
    AcDbStub stubs[40];
    for (size_t count : {0u, 1u, 3u, 4u, 5u, 8u, 9u, 40u}) {
        SCOPED_TRACE(count);
        std::vector<AcDbObjectId> ids = Ids(stubs, count);
        IdList list;
        for (AcDbObjectId id : ids) list.push_back(id);
        EXPECT_EQ(list.size(), count);
        EXPECT_EQ(list.empty(), count == 0);
        EXPECT_EQ(std::vector<AcDbObjectId>(list.begin(), list.end()), ids);
        for (size_t i = 0; i < count; ++i) EXPECT_EQ(list[i], ids[i]);

        IdList copy(list);
        EXPECT_EQ(std::vector<AcDbObjectId>(copy.begin(), copy.end()), ids);
        copy.push_back(AcDbObjectId(&stubs[0]));
        EXPECT_EQ(list.size(), count);  // the copy is a list of its own
        EXPECT_EQ(copy.size(), count + 1);
    }
}

TEST(IdListTest, AssignmentTakesTheOtherListWhole) {
    AcDbStub stubs[12];
    std::vector<AcDbObjectId> ids = Ids(stubs, 12);
    for (size_t from : {0u, 2u, 4u, 5u, 12u}) {
        for (size_t to : {0u, 3u, 4u, 7u, 12u}) {
            IdList source, target;
            for (size_t i = 0; i < from; ++i) source.push_back(ids[i]);
            for (size_t i = 0; i < to; ++i) target.push_back(ids[11 - i]);
            target = source;
            ASSERT_EQ(std::vector<AcDbObjectId>(target.begin(), target.end()),
                      std::vector<AcDbObjectId>(ids.begin(), ids.begin() + static_cast<long>(from)))
                << from << " over " << to;
            IdList& same = target;
            target = same;
            EXPECT_EQ(target.size(), from);
        }
    }
}

}  // namespace
