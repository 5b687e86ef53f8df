#include <acadstrc.h>
#include <adslib.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace {

struct ChainDeleter {
    void operator()(resbuf* rb) const { acutRelRb(rb); }
};
using Chain = std::unique_ptr<resbuf, ChainDeleter>;

TEST(BuildList, TypesFollowTheCodes) {
    ads_point corner = {1.5, 2.5, 0};
    Chain list(acutBuildList(-4, L"<or", -4, L"<and", RTDXF0, L"CIRCLE", 8, L"WALL", -4, L"and>", 62, 3, 40, 2.5,
                             90, static_cast<Adesk::Int32>(70000), 10, corner, -4, L"or>", 0));
    ASSERT_TRUE(list);
    const resbuf* rb = list.get();
    auto next = [&rb] {
        const resbuf* here = rb;
        rb = rb->rbnext;
        return here;
    };
    EXPECT_EQ(next()->restype, -4);
    EXPECT_STREQ(next()->resval.rstring, L"<and");
    const resbuf* type = next();
    EXPECT_EQ(type->restype, RTDXF0);
    EXPECT_STREQ(type->resval.rstring, L"CIRCLE");
    EXPECT_STREQ(next()->resval.rstring, L"WALL");
    EXPECT_STREQ(next()->resval.rstring, L"and>");
    EXPECT_EQ(next()->resval.rint, 3);
    EXPECT_DOUBLE_EQ(next()->resval.rreal, 2.5);
    EXPECT_EQ(next()->resval.rlong, 70000);
    const resbuf* point = next();
    EXPECT_DOUBLE_EQ(point->resval.rpoint[1], 2.5);
    EXPECT_STREQ(next()->resval.rstring, L"or>");
    EXPECT_EQ(rb, nullptr);
}

TEST(BuildList, RefusesWhatNoListCanCarry) {
    EXPECT_EQ(acutBuildList(RTSTR, L"ok", 9999, 1, 0), nullptr);
    EXPECT_EQ(acutBuildList(310, "bytes", 0), nullptr);  // binary chunks are not built
    EXPECT_EQ(acutBuildList(0), nullptr);
    Chain list(acutBuildList(RTLB, RTSTR, L"a", RTLE, RTNONE));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->rbnext->rbnext->restype, RTLE);
}

TEST(ResultBuffers, UpdateStringReplacesTheText) {
    Chain rb(acutBuildList(1000, L"old", 0));
    ASSERT_EQ(acutUpdString(L"a longer new value", rb->resval.rstring), RTNORM);
    EXPECT_STREQ(rb->resval.rstring, L"a longer new value");
    resbuf* fresh = acutNewRb(1000);
    EXPECT_EQ(fresh->resval.rstring, nullptr);  // a new buffer owns no text yet
    acutRelRb(fresh);
}

TEST(ResultBuffers, DelBufferFreesAndNulls) {
    ACHAR* text = new ACHAR[4]{L'a', L'b', L'c', 0};
    acutDelBuffer(text);
    EXPECT_EQ(text, nullptr);
    acutDelBuffer(text);  // a null text is no fault
}

TEST(ErrorStatusText, NamesTheStatus) {
    EXPECT_STREQ(acadErrorStatusText(Acad::eOk), L"eOk");
    EXPECT_STREQ(acadErrorStatusText(Acad::eNullObjectPointer), L"eNullObjectPointer");
    EXPECT_EQ(Acad::eNullObjectPointer, 15);
    EXPECT_STREQ(acadErrorStatusText(static_cast<Acad::ErrorStatus>(123456)), L"eUnknownErrorStatus");
}

}  // namespace
