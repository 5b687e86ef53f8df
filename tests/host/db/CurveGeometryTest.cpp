// Areas, lengths and parameters of curves, as the platform's curves report
// them.
#include <dbents.h>
#include <dbpl.h>

#include <cmath>

#include <gtest/gtest.h>

namespace {

constexpr double kPi = 3.14159265358979323846;

double Length(const AcDbCurve& curve) {
    double end = 0, length = -1;
    EXPECT_EQ(curve.getEndParam(end), Acad::eOk);
    EXPECT_EQ(curve.getDistAtParam(end, length), Acad::eOk);
    return length;
}

double Area(const AcDbCurve& curve) {
    double area = -1;
    EXPECT_EQ(curve.getArea(area), Acad::eOk);
    return area;
}

TEST(CurveGeometryTest, NormalisingTwiceKeepsTheBits) {
    // Files give directions of any length; what the host writes back it
    // must read and write again to the same digits.
    const AcGeVector3d vectors[] = {{1, 1, 0}, {1, 2, 3}, {-7, 0.1, 1e-3}, {3, 4, 0}, {1e-9, 2e-9, 0},
                                    {0.7071067811865475, 0.7071067811865475, 0}, {123456.789, -0.5, 42}};
    for (const AcGeVector3d& v : vectors) {
        AcGeVector3d once = v.normal(), twice = once.normal();
        EXPECT_EQ(once.x, twice.x) << v.x << "," << v.y << "," << v.z;
        EXPECT_EQ(once.y, twice.y);
        EXPECT_EQ(once.z, twice.z);
        EXPECT_NEAR(once.length(), 1.0, 1e-15);
        EXPECT_NEAR(once.dotProduct(v), v.length(), 1e-12 * v.length()) << v.x << "," << v.y << "," << v.z;
        AcGeVector2d flat(v.x, v.y);
        AcGeVector2d flatOnce = flat.normal(), flatTwice = flatOnce.normal();
        EXPECT_EQ(flatOnce.x, flatTwice.x);
        EXPECT_EQ(flatOnce.y, flatTwice.y);
    }
}

TEST(CurveGeometryTest, LineParameterIsTheDistanceFromItsStart) {
    AcDbLine line(AcGePoint3d(1, 2, 0), AcGePoint3d(4, 6, 0));
    EXPECT_DOUBLE_EQ(Length(line), 5.0);
    EXPECT_DOUBLE_EQ(Area(line), 0.0);
    AcGePoint3d p;
    ASSERT_EQ(line.getPointAtParam(2.5, p), Acad::eOk);
    EXPECT_NEAR(p.x, 2.5, 1e-12);
    EXPECT_NEAR(p.y, 4.0, 1e-12);
    double d;
    EXPECT_EQ(line.getDistAtParam(5.5, d), Acad::eInvalidInput);
    EXPECT_EQ(line.getDistAtParam(-0.1, d), Acad::eInvalidInput);
    double param;
    ASSERT_EQ(line.getParamAtDist(4, param), Acad::eOk);
    EXPECT_DOUBLE_EQ(param, 4.0);
}

TEST(CurveGeometryTest, CircleRunsOnceAroundItsPlane) {
    AcDbCircle circle(AcGePoint3d(10, -3, 2), AcGeVector3d::kZAxis, 2.5);
    double start, end;
    ASSERT_EQ(circle.getStartParam(start), Acad::eOk);
    ASSERT_EQ(circle.getEndParam(end), Acad::eOk);
    EXPECT_EQ(start, 0.0);
    EXPECT_DOUBLE_EQ(end, 2 * kPi);
    EXPECT_DOUBLE_EQ(Length(circle), 2 * kPi * 2.5);
    EXPECT_DOUBLE_EQ(Area(circle), kPi * 6.25);
    double half;
    ASSERT_EQ(circle.getDistAtParam(kPi, half), Acad::eOk);
    EXPECT_DOUBLE_EQ(half, kPi * 2.5);
    AcGePoint3d p;
    ASSERT_EQ(circle.getPointAtParam(kPi / 2, p), Acad::eOk);
    EXPECT_NEAR(p.x, 10, 1e-12);
    EXPECT_NEAR(p.y, -0.5, 1e-12);
    EXPECT_NEAR(p.z, 2, 1e-12);
}

TEST(CurveGeometryTest, CircleOnATiltedPlaneKeepsItsWorldCenter) {
    AcGeVector3d normal(1, 1, 1);
    AcDbCircle circle(AcGePoint3d(3, 4, 5), normal, 1.0);
    AcGePoint3d center = circle.center();
    EXPECT_NEAR(center.x, 3, 1e-12);
    EXPECT_NEAR(center.y, 4, 1e-12);
    EXPECT_NEAR(center.z, 5, 1e-12);
    // Every point of it lies in the plane through the center.
    AcGePoint3d p;
    ASSERT_EQ(circle.getPointAtParam(1.0, p), Acad::eOk);
    EXPECT_NEAR((p - center).dotProduct(normal.normal()), 0, 1e-12);
    EXPECT_NEAR(p.distanceTo(center), 1.0, 1e-12);
}

TEST(CurveGeometryTest, ArcsSpanCounterclockwiseFromStartToEnd) {
    struct Case {
        double startDeg, endDeg, expectedSpanDeg;
    };
    for (const Case& c : {Case{0, 90, 90}, Case{350, 10, 20}, Case{90, 0, 270}, Case{-45, 45, 90},
                          Case{30, 30, 360}}) {
        SCOPED_TRACE(c.startDeg);
        double r = 4;
        AcDbArc arc(AcGePoint3d(1, 1, 0), r, c.startDeg * kPi / 180, c.endDeg * kPi / 180);
        double span = c.expectedSpanDeg * kPi / 180;
        EXPECT_NEAR(arc.totalAngle(), span, 1e-12);
        EXPECT_NEAR(Length(arc), r * span, 1e-12);
        // The area between the arc and its chord.
        EXPECT_NEAR(Area(arc), 0.5 * r * r * (span - std::sin(span)), 1e-12);
        double start, end;
        arc.getStartParam(start);
        arc.getEndParam(end);
        EXPECT_DOUBLE_EQ(start, c.startDeg * kPi / 180);
        EXPECT_NEAR(end - start, span, 1e-12);
    }
}

TEST(CurveGeometryTest, ArcRefusesParametersOutsideItsAngles) {
    AcDbArc arc(AcGePoint3d(0, 0, 0), 1, 0, kPi / 2);
    double d;
    EXPECT_EQ(arc.getDistAtParam(kPi, d), Acad::eInvalidInput);
    EXPECT_EQ(arc.getDistAtParam(kPi / 4, d), Acad::eOk);
    EXPECT_NEAR(d, kPi / 4, 1e-12);
    double param;
    ASSERT_EQ(arc.getParamAtDist(kPi / 8, param), Acad::eOk);
    EXPECT_NEAR(param, kPi / 8, 1e-12);
    AcGePoint3d endPoint;
    ASSERT_EQ(arc.getEndPoint(endPoint), Acad::eOk);
    EXPECT_NEAR(endPoint.x, 0, 1e-12);
    EXPECT_NEAR(endPoint.y, 1, 1e-12);
}

AcDbPolyline* Square(double bulgeOfFirstSide, bool closed) {
    auto* pline = new AcDbPolyline;
    pline->addVertexAt(0, AcGePoint2d(0, 0), bulgeOfFirstSide);
    pline->addVertexAt(1, AcGePoint2d(10, 0));
    pline->addVertexAt(2, AcGePoint2d(10, 10));
    pline->addVertexAt(3, AcGePoint2d(0, 10));
    pline->setClosed(closed);
    return pline;
}

TEST(CurveGeometryTest, PolylineArcSegmentsCountAsArcs) {
    struct Case {
        const char* name;
        double bulge;
        bool closed;
        double area, length, endParam;
    };
    const double halfDisc = kPi * 25 / 2;  // a semicircle on a side of 10
    const Case cases[] = {
        {"closed square", 0, true, 100, 40, 4},
        {"open square closes by a chord", 0, false, 100, 30, 3},
        // The square runs counterclockwise; a positive bulge makes an arc
        // that runs counterclockwise about its center, which swings it to
        // the right of the side, out of the square.
        {"semicircle bulging out", 1, true, 100 + halfDisc, 30 + 5 * kPi, 4},
        {"semicircle bulging in", -1, true, 100 - halfDisc, 30 + 5 * kPi, 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::unique_ptr<AcDbPolyline> pline(Square(c.bulge, c.closed));
        EXPECT_NEAR(Area(*pline), c.area, 1e-9);
        EXPECT_NEAR(Length(*pline), c.length, 1e-9);
        double end;
        pline->getEndParam(end);
        EXPECT_EQ(end, c.endParam);
    }
}

TEST(CurveGeometryTest, PolylineQuarterArcBulge) {
    // A quarter circle of radius 5 from (5,0) to (0,5) about the origin:
    // bulge tan(90 deg / 4).
    AcDbPolyline pline;
    pline.addVertexAt(0, AcGePoint2d(0, 0));
    pline.addVertexAt(1, AcGePoint2d(5, 0), std::tan(kPi / 8));
    pline.addVertexAt(2, AcGePoint2d(0, 5));
    pline.setClosed(true);
    EXPECT_NEAR(Area(pline), kPi * 25 / 4, 1e-12);
    EXPECT_NEAR(Length(pline), 10 + 2 * kPi * 5 / 4, 1e-12);
    // Halfway along the arc segment is halfway round the quarter.
    double d;
    ASSERT_EQ(pline.getDistAtParam(1.5, d), Acad::eOk);
    EXPECT_NEAR(d, 5 + 2 * kPi * 5 / 8, 1e-12);
    AcGePoint3d p;
    ASSERT_EQ(pline.getPointAtParam(1.5, p), Acad::eOk);
    EXPECT_NEAR(p.x, 5 * std::cos(kPi / 4), 1e-12);
    EXPECT_NEAR(p.y, 5 * std::sin(kPi / 4), 1e-12);
    double param;
    ASSERT_EQ(pline.getParamAtDist(d, param), Acad::eOk);
    EXPECT_NEAR(param, 1.5, 1e-12);
    EXPECT_EQ(pline.segType(1), AcDbPolyline::kArc);
    EXPECT_EQ(pline.segType(0), AcDbPolyline::kLine);
    EXPECT_EQ(pline.segType(3), AcDbPolyline::kEmpty);
}

TEST(CurveGeometryTest, DegeneratePolylines) {
    AcDbPolyline empty;
    double value;
    EXPECT_EQ(empty.getEndParam(value), Acad::eDegenerateGeometry);
    EXPECT_EQ(empty.getArea(value), Acad::eDegenerateGeometry);

    AcDbPolyline single;
    single.addVertexAt(0, AcGePoint2d(3, 3), 1.0);
    EXPECT_EQ(single.getEndParam(value), Acad::eOk);
    EXPECT_EQ(value, 0.0);
    EXPECT_EQ(single.segType(0), AcDbPolyline::kPoint);
    EXPECT_EQ(single.getDistAtParam(0, value), Acad::eOk);
    EXPECT_EQ(value, 0.0);

    // A bulge between two coincident vertices adds nothing.
    AcDbPolyline coincident;
    coincident.addVertexAt(0, AcGePoint2d(1, 1), 0.5);
    coincident.addVertexAt(1, AcGePoint2d(1, 1));
    coincident.addVertexAt(2, AcGePoint2d(4, 1));
    EXPECT_EQ(coincident.segType(0), AcDbPolyline::kCoincident);
    EXPECT_NEAR(Length(coincident), 3, 1e-12);
    EXPECT_EQ(coincident.getDistAtParam(2.5, value), Acad::eInvalidInput);
    EXPECT_EQ(coincident.addVertexAt(9, AcGePoint2d(0, 0)), Acad::eInvalidIndex);
    EXPECT_EQ(coincident.addVertexAt(0, AcGePoint2d(NAN, 0)), Acad::eInvalidInput);
}

TEST(CurveGeometryTest, PolylineLiesAtItsElevationInItsPlane) {
    AcDbPolyline pline;
    pline.addVertexAt(0, AcGePoint2d(1, 0));
    pline.addVertexAt(1, AcGePoint2d(2, 0));
    pline.setElevation(7);
    AcGePoint3d p;
    ASSERT_EQ(pline.getPointAt(1u, p), Acad::eOk);
    EXPECT_EQ(p, AcGePoint3d(2, 0, 7));
    // Upside down, the plane's X axis points the other way.
    pline.setNormal(AcGeVector3d(0, 0, -1));
    ASSERT_EQ(pline.getPointAt(1u, p), Acad::eOk);
    EXPECT_NEAR(p.x, -2, 1e-12);
    EXPECT_NEAR(p.z, -7, 1e-12);
}

}  // namespace
