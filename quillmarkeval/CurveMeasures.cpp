#include "CurveMeasures.h"

#include <dbents.h>
#include <dbpl.h>

namespace {

// The length of a circle is its radius times this number, as written, not
// times the double nearest to two pi.
const double kCircleLengthFactor = 6.28318530718;

// The length along a curve from its start to its end.
MeasureResult LengthAlong(const AcDbCurve* curve, double& value) {
    double endParam = 0, length = 0;
    if (curve->getEndParam(endParam) != Acad::eOk || curve->getDistAtParam(endParam, length) != Acad::eOk)
        return kNoGeometry;
    value = length;
    return kMeasured;
}

}  // namespace

MeasureResult MeasureArea(const AcDbObject* object, double& value) {
    const AcDbCurve* curve = nullptr;
    if (AcDbPolyline::cast(object)) curve = AcDbPolyline::cast(object);
    else if (AcDbCircle::cast(object)) curve = AcDbCircle::cast(object);
    if (!curve) return kNotMeasured;
    double area = 0;
    if (curve->getArea(area) != Acad::eOk) return kNoGeometry;
    value = area;
    return kMeasured;
}

MeasureResult MeasureLength(const AcDbObject* object, double& value) {
    if (const AcDbLine* line = AcDbLine::cast(object)) {
        value = line->startPoint().distanceTo(line->endPoint());
        return kMeasured;
    }
    if (const AcDbPolyline* polyline = AcDbPolyline::cast(object)) return LengthAlong(polyline, value);
    if (const AcDbCircle* circle = AcDbCircle::cast(object)) {
        value = circle->radius() * kCircleLengthFactor;
        return kMeasured;
    }
    if (const AcDbArc* arc = AcDbArc::cast(object)) return LengthAlong(arc, value);
    return kNotMeasured;
}
