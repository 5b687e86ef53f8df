// Points from the input queue, the user coordinate system, the current
// viewport, and the system variables of the drawing.
#include <acedads.h>
#include <dbents.h>
#include <dbobjptr.h>

#include <cmath>
#include <cstdlib>

#include "db/KeptObjects.h"
#include "support/DxfGroups.h"
#include "support/TestHost.h"

namespace {

class EditorInputTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }
};

TEST_F(EditorInputTest, PointsAndCornersComeInOrder) {
    host().input().Point(1, 2, 0);
    host().input().Pick({L"2A"});  // objects where a point is asked: the prompt comes again
    host().input().Point(5, 6, 7);
    host().input().Escape();
    ads_point first, second, third;
    ASSERT_EQ(acedGetPoint(nullptr, L"\nSpecify first corner point:", first), RTNORM);
    EXPECT_EQ(TakeOutput(), "Specify first corner point:");
    EXPECT_EQ(first[0], 1);
    EXPECT_EQ(first[1], 2);
    ASSERT_EQ(acedGetCorner(first, L"\nSpecify other corner point:", second), RTNORM);
    EXPECT_EQ(TakeOutput(), "\nSpecify other corner point:\nInvalid point.\nSpecify other corner point:");
    EXPECT_EQ(second[2], 7);
    EXPECT_EQ(acedGetPoint(first, L"\nAgain:", third), RTCAN);
    EXPECT_EQ(TakeOutput(), "\nAgain:*Cancel*");
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, third), RTCAN) << "an empty queue answers like Escape";
    EXPECT_EQ(acedGetCorner(nullptr, L"no base", third), RTERROR);
    EXPECT_EQ(acedGetPoint(nullptr, L"", nullptr), RTERROR);
}

TEST_F(EditorInputTest, UserCoordinatesFollowTheCurrentSpace) {
    ads_point p = {1, 2, 3}, q;
    ASSERT_EQ(acdbUcs2Wcs(p, q, 0), RTNORM);
    EXPECT_EQ(q[0], 1);  // the world system to start with
    // Model space: moved by (10,20,0) and turned a quarter about Z.
    ASSERT_EQ(db()->setUcs(AcGePoint3d(10, 20, 0), AcGeVector3d(0, 1, 0), AcGeVector3d(-1, 0, 0)), Acad::eOk);
    ASSERT_EQ(acdbUcs2Wcs(p, q, 0), RTNORM);
    EXPECT_NEAR(q[0], 8, 1e-12);
    EXPECT_NEAR(q[1], 21, 1e-12);
    EXPECT_NEAR(q[2], 3, 1e-12);
    ASSERT_EQ(acdbUcs2Wcs(p, q, 1), RTNORM);  // a direction is only turned
    EXPECT_NEAR(q[0], -2, 1e-12);
    EXPECT_NEAR(q[1], 1, 1e-12);
    ads_point back;
    ASSERT_EQ(acdbUcs2Wcs(p, q, 0), RTNORM);
    ASSERT_EQ(acdbWcs2Ucs(q, back, 0), RTNORM);
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(back[i], p[i], 1e-12);
    AcGeMatrix3d matrix;
    ASSERT_EQ(acedGetCurrentUCS(matrix), Acad::eOk);
    EXPECT_TRUE((matrix * AcGePoint3d(1, 2, 3)).isEqualTo(AcGePoint3d(8, 21, 3)));
    // Paper space has a system of its own, the world one here.
    db()->setTilemode(false);
    ASSERT_EQ(acdbUcs2Wcs(p, q, 0), RTNORM);
    EXPECT_EQ(q[0], 1);
    ASSERT_EQ(acedSetCurrentUCS(AcGeMatrix3d::translation(AcGeVector3d(0, 0, 5))), Acad::eOk);
    EXPECT_EQ(db()->pucsorg(), AcGePoint3d(0, 0, 5));
    EXPECT_EQ(db()->ucsorg(), AcGePoint3d(10, 20, 0));
    EXPECT_EQ(db()->setUcs(AcGePoint3d::kOrigin, AcGeVector3d(1, 0, 0), AcGeVector3d(1, 1, 0)), Acad::eInvalidInput);
}

TEST_F(EditorInputTest, CurrentViewportAndItsDirection) {
    std::wstring error;
    ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath("drawing_r2010.dxf"), error));
    // Model space: the drawing's active viewport record, no viewport entity.
    AcDbObjectId model = acedGetCurViewportObjectId();
    ASSERT_FALSE(model.isNull());
    AcDbObjectPointer<AcDbObject> record(model);
    EXPECT_EQ(cadhost::DxfNameOf(record.object()), L"VPORT");
    AcDbObjectPointer<AcDbViewport> notAViewport(model);
    EXPECT_EQ(notAViewport.openStatus(), Acad::eNotThatKindOfClass);
    record.close();
    // Paper space: the sheet itself has no viewport entity in this file;
    // working in its viewport 2 gives that one.
    EXPECT_EQ(host().variables().SetFromText(L"TILEMODE", L"0", error), RTNORM);
    EXPECT_TRUE(acedGetCurViewportObjectId().isNull());
    EXPECT_EQ(host().variables().SetFromText(L"CVPORT", L"5", error), RTREJ);
    EXPECT_EQ(host().variables().SetFromText(L"CVPORT", L"2", error), RTNORM);
    AcDbObjectPointer<AcDbViewport> viewport(acedGetCurViewportObjectId());
    ASSERT_EQ(viewport.openStatus(), Acad::eOk);
    EXPECT_EQ(viewport->number(), 2);
    EXPECT_EQ(viewport->viewDirection(), AcGeVector3d::kZAxis);
    EXPECT_EQ(host().variables().Describe(L"CVPORT"), L"CVPORT = 2");
    viewport.close();
    // Back to model space, back to viewport 2 of model space.
    EXPECT_EQ(host().variables().SetFromText(L"TILEMODE", L"1", error), RTNORM);
    EXPECT_EQ(host().variables().Describe(L"CVPORT"), L"CVPORT = 2");
    EXPECT_EQ(acedGetCurViewportObjectId(), model);
}

TEST_F(EditorInputTest, DrawingVariables) {
    std::wstring error;
    ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath("drawing_r2010.dxf"), error));
    struct Case {
        const wchar_t* name;
        const wchar_t* value;  // null: only read
        int status;
        const wchar_t* shown;
    };
    const Case cases[] = {
        {L"CLAYER", nullptr, RTNORM, L"CLAYER = \"0\""},
        {L"CLAYER", L"walls", RTNORM, L"CLAYER = \"WALLS\""},
        {L"CLAYER", L"nowhere", RTREJ, L"CLAYER = \"WALLS\""},
        {L"CLAYER", L"FROZEN", RTREJ, L"CLAYER = \"WALLS\""},
        {L"CLAYER", L"LOCKED", RTNORM, L"CLAYER = \"LOCKED\""},
        {L"TILEMODE", L"0", RTNORM, L"TILEMODE = 0"},
        {L"TILEMODE", L"2", RTREJ, L"TILEMODE = 0"},
        {L"UCSORG", L"1", RTERROR, L"UCSORG = 0,0,0"},
        {L"UCSXDIR", nullptr, RTNORM, L"UCSXDIR = 1,0,0"},
        {L"WORLDUCS", nullptr, RTNORM, L"WORLDUCS = 1"},
        {L"DWGPREFIX", L"/x", RTERROR, nullptr},
        {L"NOSUCHVAR", L"1", RTERROR, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(cadhost::ToUtf8(c.name));
        if (c.value) {
            EXPECT_EQ(host().variables().SetFromText(c.name, c.value, error), c.status) << cadhost::ToUtf8(error);
        }
        if (c.shown) {
            EXPECT_EQ(host().variables().Describe(c.name), c.shown);
        }
    }
    EXPECT_EQ(db()->currentSpaceId(), db()->paperSpaceId());
    resbuf value;
    ASSERT_EQ(acedGetVar(L"DWGPREFIX", &value), RTNORM);
    EXPECT_EQ(cadhost::ToUtf8(value.resval.rstring), qmtest::FixturePath("").string());
    std::free(value.resval.rstring);
    EXPECT_EQ(acedGetVar(L"NOSUCHVAR", &value), RTERROR);
    db()->setUcs(AcGePoint3d(0, 0, 1), AcGeVector3d::kXAxis, AcGeVector3d::kYAxis);
    EXPECT_EQ(host().variables().Describe(L"WORLDUCS"), L"WORLDUCS = 1") << "paper space keeps the world system";
    db()->setTilemode(true);
    EXPECT_EQ(host().variables().Describe(L"WORLDUCS"), L"WORLDUCS = 0");
    EXPECT_EQ(host().variables().Describe(L"UCSORG"), L"UCSORG = 0,0,1");
}

}  // namespace
