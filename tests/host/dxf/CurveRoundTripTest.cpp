// Lines, solids, circles, arcs and lightweight polylines: each class's
// groups as files of a release write them (with optional groups where they
// stood), read into a drawing, checked there, written back the same.
#include <adslib.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbpl.h>

#include "support/DxfRoundTrip.h"

namespace {

using namespace qmtest;
constexpr auto kR12 = DxfRelease::kR12;
constexpr auto kR2000 = DxfRelease::kR2000;
constexpr auto kR2018 = DxfRelease::kR2018;

std::string LayerOf(const AcDbEntity& entity) {
    ACHAR* name = entity.layer();
    std::string out = cadhost::ToUtf8(name ? name : L"");
    acutDelBuffer(name);
    return out;
}

class CurveRoundTripTest : public HostTest {
protected:
    void Expect(const std::vector<RoundTripCase>& cases) { ExpectRoundTrips(host(), m_folder.path(), cases); }
};

TEST_F(CurveRoundTripTest, Lines) {
    auto plain = ForReleases(
        "line", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "LINE", "A0", {{8, "0"}},
                                {{100, "AcDbLine"}, {10, "1.0"}, {20, "2.0"}, {30, "3.0"}, {11, "4.0"}, {21, "5.5"},
                                 {31, "-6.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbLine> line(ObjectByHandle(db, "A0"));
            ASSERT_EQ(line.openStatus(), Acad::eOk);
            EXPECT_EQ(line->startPoint(), AcGePoint3d(1, 2, 3));
            EXPECT_EQ(line->endPoint(), AcGePoint3d(4, 5.5, -6));
            EXPECT_EQ(line->ownerId(), db.modelSpaceId());
            EXPECT_EQ(LayerOf(*line), "0");
        });
    // Colour, line type, thickness and a normal that holds its default:
    // groups the host does not model come back where they stood.
    auto optional = ForReleases(
        "line_optional", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "LINE", "A1", {{8, "Walls"}, {6, "DASHED"}, {62, "1"}},
                                {{100, "AcDbLine"}, {39, "0.25"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"},
                                 {11, "1.0"}, {21, "1.0"}, {31, "0.0"}, {210, "0.0"}, {220, "0.0"}, {230, "1.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbLine> line(ObjectByHandle(db, "A1"));
            ASSERT_EQ(line.openStatus(), Acad::eOk);
            EXPECT_EQ(line->endPoint(), AcGePoint3d(1, 1, 0));
            EXPECT_EQ(LayerOf(*line), "Walls");
        });
    Expect(plain);
    Expect(optional);
}

TEST_F(CurveRoundTripTest, Solids) {
    auto corners = [](DxfRelease r, const char* handle, Groups tail) {
        Groups body{{100, "AcDbTrace"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "2.0"}, {21, "0.0"},
                    {31, "0.0"},        {12, "0.0"}, {22, "1.0"}, {32, "0.0"}, {13, "2.0"}, {23, "1.5"},
                    {33, "0.0"}};
        body.insert(body.end(), tail.begin(), tail.end());
        return EntityGroups(r, "SOLID", handle, {{8, "0"}}, body);
    };
    auto plain = ForReleases(
        "solid", {kR12, kR2000, kR2018}, DxfPlace::kEntities, [&](DxfRelease r) { return corners(r, "B0", {}); },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbSolid> solid(ObjectByHandle(db, "B0"));
            ASSERT_EQ(solid.openStatus(), Acad::eOk);
            EXPECT_EQ(solid->planePoint(1), AcGePoint3d(2, 0, 0));
            EXPECT_EQ(solid->planePoint(3), AcGePoint3d(2, 1.5, 0));
            EXPECT_EQ(solid->normal(), AcGeVector3d::kZAxis);
        });
    // A thickness the host keeps, and a normal it reads; the default
    // normal, written, is written again.
    auto normal = ForReleases(
        "solid_normal", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [&](DxfRelease r) {
            return corners(r, "B1", {{39, "2.0"}, {210, "0.0"}, {220, "0.0"}, {230, "-1.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbSolid> solid(ObjectByHandle(db, "B1"));
            ASSERT_EQ(solid.openStatus(), Acad::eOk);
            EXPECT_EQ(solid->normal(), AcGeVector3d(0, 0, -1));
        });
    auto defaultNormal = ForReleases(
        "solid_default_normal", {kR2018}, DxfPlace::kEntities,
        [&](DxfRelease r) { return corners(r, "B2", {{210, "0.0"}, {220, "0.0"}, {230, "1.0"}}); },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbSolid> solid(ObjectByHandle(db, "B2"));
            ASSERT_EQ(solid.openStatus(), Acad::eOk);
            EXPECT_EQ(solid->normal(), AcGeVector3d::kZAxis);
        });
    Expect(plain);
    Expect(normal);
    Expect(defaultNormal);
}

TEST_F(CurveRoundTripTest, Circles) {
    auto plain = ForReleases(
        "circle", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "CIRCLE", "C0", {{8, "0"}},
                                {{100, "AcDbCircle"}, {10, "1.0"}, {20, "2.0"}, {30, "3.0"}, {40, "2.5"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbCircle> circle(ObjectByHandle(db, "C0"));
            ASSERT_EQ(circle.openStatus(), Acad::eOk);
            EXPECT_EQ(circle->planeCenter(), AcGePoint3d(1, 2, 3));
            EXPECT_EQ(circle->radius(), 2.5);
            EXPECT_EQ(circle->normal(), AcGeVector3d::kZAxis);
        });
    auto optional = ForReleases(
        "circle_optional", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "CIRCLE", "C1", {{8, "0"}, {62, "3"}},
                                {{100, "AcDbCircle"}, {39, "1.5"}, {10, "1.0"}, {20, "2.0"}, {30, "3.0"},
                                 {40, "0.5"}, {210, "0.0"}, {220, "0.0"}, {230, "-1.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbCircle> circle(ObjectByHandle(db, "C1"));
            ASSERT_EQ(circle.openStatus(), Acad::eOk);
            EXPECT_EQ(circle->radius(), 0.5);
            EXPECT_EQ(circle->normal(), AcGeVector3d(0, 0, -1));
        });
    auto defaultNormal = ForReleases(
        "circle_default_normal", {kR2000}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "CIRCLE", "C2", {{8, "0"}},
                                {{100, "AcDbCircle"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"},
                                 {210, "0.0"}, {220, "0.0"}, {230, "1.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbCircle> circle(ObjectByHandle(db, "C2"));
            ASSERT_EQ(circle.openStatus(), Acad::eOk);
            EXPECT_EQ(circle->normal(), AcGeVector3d::kZAxis);
        });
    Expect(plain);
    Expect(optional);
    Expect(defaultNormal);
}

TEST_F(CurveRoundTripTest, Arcs) {
    auto check = [](const char* handle, AcGeVector3d normal) {
        return [=](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbArc> arc(ObjectByHandle(db, handle));
            ASSERT_EQ(arc.openStatus(), Acad::eOk);
            EXPECT_EQ(arc->planeCenter(), AcGePoint3d(1, 2, 0));
            EXPECT_EQ(arc->radius(), 3.0);
            EXPECT_EQ(arc->startDegrees(), 30.0);
            EXPECT_EQ(arc->endDegrees(), 120.5);
            EXPECT_EQ(arc->normal(), normal);
        };
    };
    auto plain = ForReleases(
        "arc", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "ARC", "D0", {{8, "0"}},
                                {{100, "AcDbCircle"}, {10, "1.0"}, {20, "2.0"}, {30, "0.0"}, {40, "3.0"},
                                 {100, "AcDbArc"}, {50, "30.0"}, {51, "120.5"}});
        },
        check("D0", AcGeVector3d::kZAxis));
    // The normal in the circle's part, as most files give it, and after the
    // angles, as some do: each comes back where it stood.
    auto normalFirst = ForReleases(
        "arc_normal_in_circle", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "ARC", "D1", {{8, "0"}},
                                {{100, "AcDbCircle"}, {39, "0.5"}, {10, "1.0"}, {20, "2.0"}, {30, "0.0"},
                                 {40, "3.0"}, {210, "0.0"}, {220, "1.0"}, {230, "0.0"}, {100, "AcDbArc"},
                                 {50, "30.0"}, {51, "120.5"}});
        },
        check("D1", AcGeVector3d(0, 1, 0)));
    auto normalLast = ForReleases(
        "arc_normal_last", {kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "ARC", "D2", {{8, "0"}},
                                {{100, "AcDbCircle"}, {10, "1.0"}, {20, "2.0"}, {30, "0.0"}, {40, "3.0"},
                                 {100, "AcDbArc"}, {50, "30.0"}, {51, "120.5"}, {210, "0.0"}, {220, "0.0"},
                                 {230, "1.0"}});
        },
        check("D2", AcGeVector3d::kZAxis));
    Expect(plain);
    Expect(normalFirst);
    Expect(normalLast);
}

TEST_F(CurveRoundTripTest, LightweightPolylines) {
    // Three vertices: the first with a bulge, the second plain, the third
    // with widths.
    auto plain = ForReleases(
        "lwpolyline", {kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "LWPOLYLINE", "E0", {{8, "0"}},
                                {{100, "AcDbPolyline"}, {90, "3"}, {70, "1"}, {10, "0.0"}, {20, "0.0"},
                                 {42, "0.5"}, {10, "4.0"}, {20, "0.0"}, {10, "4.0"}, {20, "3.0"}, {40, "0.1"},
                                 {41, "0.2"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbPolyline> pline(ObjectByHandle(db, "E0"));
            ASSERT_EQ(pline.openStatus(), Acad::eOk);
            ASSERT_EQ(pline->numVerts(), 3u);
            EXPECT_TRUE(pline->isClosed());
            AcGePoint2d p;
            pline->getPointAt(2, p);
            EXPECT_EQ(p, AcGePoint2d(4, 3));
            double bulge = 0, start = 0, end = 0;
            pline->getBulgeAt(0, bulge);
            pline->getWidthsAt(2, start, end);
            EXPECT_EQ(bulge, 0.5);
            EXPECT_EQ(start, 0.1);
            EXPECT_EQ(end, 0.2);
        });
    // Constant width, elevation, widths and bulges of zero written for
    // every vertex, thickness and normal.
    auto optional = ForReleases(
        "lwpolyline_optional", {kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "LWPOLYLINE", "E1", {{8, "0"}, {62, "5"}},
                                {{100, "AcDbPolyline"}, {90, "2"}, {70, "0"}, {43, "0.0"}, {38, "1.5"},
                                 {39, "2.0"}, {10, "1.0"}, {20, "1.0"}, {40, "0.0"}, {41, "0.0"}, {42, "0.0"},
                                 {10, "2.0"}, {20, "2.0"}, {40, "0.0"}, {41, "0.0"}, {42, "0.0"}, {210, "0.0"},
                                 {220, "0.0"}, {230, "-1.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbPolyline> pline(ObjectByHandle(db, "E1"));
            ASSERT_EQ(pline.openStatus(), Acad::eOk);
            ASSERT_EQ(pline->numVerts(), 2u);
            EXPECT_FALSE(pline->isClosed());
            EXPECT_EQ(pline->elevation(), 1.5);
            EXPECT_EQ(pline->normal(), AcGeVector3d(0, 0, -1));
        });
    Expect(plain);
    Expect(optional);
}

}  // namespace
