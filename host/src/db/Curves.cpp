#include <dbents.h>

#include <cmath>

#include "db/Extents.h"

using cadhost::kPi;
using cadhost::kTwoPi;

ACRX_DEFINE_MEMBERS(AcDbCurve, AcDbEntity)
ACRX_DXF_DEFINE_MEMBERS(AcDbLine, AcDbCurve, L"LINE")
ACRX_DXF_DEFINE_MEMBERS(AcDbCircle, AcDbCurve, L"CIRCLE")
ACRX_DXF_DEFINE_MEMBERS(AcDbArc, AcDbCurve, L"ARC")
ACRX_DXF_DEFINE_MEMBERS(AcDbPoint, AcDbEntity, L"POINT")

namespace {
// Parameters a hair outside the curve's range still name its ends.
constexpr double kParamTolerance = 1e-10;

bool InRange(double param, double low, double high) {
    double slack = kParamTolerance * (1 + std::fabs(high - low));
    return param >= low - slack && param <= high + slack;
}

double Clamp(double value, double low, double high) { return value < low ? low : (value > high ? high : value); }
}  // namespace

// Curve -----------------------------------------------------------------

AcDbCurve::~AcDbCurve() = default;
bool AcDbCurve::isClosed() const { return false; }
bool AcDbCurve::isPeriodic() const { return false; }
Acad::ErrorStatus AcDbCurve::getStartParam(double&) const { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbCurve::getEndParam(double&) const { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbCurve::getPointAtParam(double, AcGePoint3d&) const { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbCurve::getDistAtParam(double, double&) const { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbCurve::getParamAtDist(double, double&) const { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbCurve::getArea(double&) const { return Acad::eNotApplicable; }

Acad::ErrorStatus AcDbCurve::getStartPoint(AcGePoint3d& point) const {
    double param;
    Acad::ErrorStatus es = getStartParam(param);
    return es == Acad::eOk ? getPointAtParam(param, point) : es;
}

Acad::ErrorStatus AcDbCurve::getEndPoint(AcGePoint3d& point) const {
    double param;
    Acad::ErrorStatus es = getEndParam(param);
    return es == Acad::eOk ? getPointAtParam(param, point) : es;
}

// Line: the parameter is the distance from the start point -------------

AcDbLine::~AcDbLine() = default;

Acad::ErrorStatus AcDbLine::setStartPoint(const AcGePoint3d& point) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_start = point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::setEndPoint(const AcGePoint3d& point) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_end = point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getStartParam(double& param) const {
    param = 0;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getEndParam(double& param) const {
    param = m_start.distanceTo(m_end);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getPointAtParam(double param, AcGePoint3d& point) const {
    double length = m_start.distanceTo(m_end);
    if (!InRange(param, 0, length)) return Acad::eInvalidInput;
    point = length > 0 ? m_start + (m_end - m_start) * (Clamp(param, 0, length) / length) : m_start;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getDistAtParam(double param, double& dist) const {
    double length = m_start.distanceTo(m_end);
    if (!InRange(param, 0, length)) return Acad::eInvalidInput;
    dist = Clamp(param, 0, length);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getParamAtDist(double dist, double& param) const {
    double length = m_start.distanceTo(m_end);
    if (!InRange(dist, 0, length)) return Acad::eInvalidInput;
    param = Clamp(dist, 0, length);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getArea(double& area) const {
    area = 0;
    return Acad::eOk;
}

void AcDbLine::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    extents.addPoint(transform * m_start);
    extents.addPoint(transform * m_end);
}

// Circle: the parameter is the angle in its plane ----------------------

namespace {
AcGePoint3d ToWorld(const AcGeVector3d& normal, const AcGePoint3d& point) {
    return normal == AcGeVector3d::kZAxis ? point : AcGeMatrix3d::planeToWorld(normal) * point;
}
AcGePoint3d ToPlane(const AcGeVector3d& normal, const AcGePoint3d& point) {
    return normal == AcGeVector3d::kZAxis ? point : AcGeMatrix3d::worldToPlane(normal) * point;
}
}  // namespace

AcDbCircle::AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius)
    : m_normal(normal.isZeroLength() ? AcGeVector3d::kZAxis : normal.normal()), m_radius(radius) {
    m_center = ToPlane(m_normal, center);
}

AcDbCircle::~AcDbCircle() = default;

AcGePoint3d AcDbCircle::center() const { return ToWorld(m_normal, m_center); }

Acad::ErrorStatus AcDbCircle::setCenter(const AcGePoint3d& center) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_center = ToPlane(m_normal, center);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::setRadius(double radius) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!(radius > 0)) return Acad::eInvalidInput;
    m_radius = radius;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::setNormal(const AcGeVector3d& normal) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (normal.isZeroLength()) return Acad::eInvalidInput;
    AcGePoint3d world = center();
    m_normal = normal.normal();
    m_center = ToPlane(m_normal, world);
    return Acad::eOk;
}

double AcDbCircle::circumference() const { return kTwoPi * m_radius; }

Acad::ErrorStatus AcDbCircle::getStartParam(double& param) const {
    param = 0;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getEndParam(double& param) const {
    param = kTwoPi;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getPointAtParam(double param, AcGePoint3d& point) const {
    // The center is a world point; the angle is measured in the plane.
    AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(m_normal);
    AcGeVector3d x = cadhost::Linear(plane, AcGeVector3d::kXAxis), y = cadhost::Linear(plane, AcGeVector3d::kYAxis);
    point = center() + x * (m_radius * std::cos(param)) + y * (m_radius * std::sin(param));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getDistAtParam(double param, double& dist) const {
    if (!InRange(param, 0, kTwoPi)) return Acad::eInvalidInput;
    dist = m_radius * Clamp(param, 0, kTwoPi);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getParamAtDist(double dist, double& param) const {
    if (!(m_radius > 0) || !InRange(dist, 0, circumference())) return Acad::eInvalidInput;
    param = Clamp(dist / m_radius, 0, kTwoPi);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getArea(double& area) const {
    area = kPi * m_radius * m_radius;
    return Acad::eOk;
}

void AcDbCircle::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(m_normal);
    AcGeVector3d u = cadhost::Linear(transform, cadhost::Linear(plane, AcGeVector3d::kXAxis) * m_radius);
    AcGeVector3d v = cadhost::Linear(transform, cadhost::Linear(plane, AcGeVector3d::kYAxis) * m_radius);
    cadhost::AddEllipticArc(extents, transform * center(), u, v, 0, kTwoPi);
}

// Arc ------------------------------------------------------------------

AcDbArc::AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle)
    : m_center(center),
      m_radius(radius),
      m_startAngle(cadhost::ToDegrees(startAngle)),
      m_endAngle(cadhost::ToDegrees(endAngle)) {}

AcDbArc::AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double startAngle,
                 double endAngle)
    : m_normal(normal.isZeroLength() ? AcGeVector3d::kZAxis : normal.normal()),
      m_radius(radius),
      m_startAngle(cadhost::ToDegrees(startAngle)),
      m_endAngle(cadhost::ToDegrees(endAngle)) {
    m_center = ToPlane(m_normal, center);
}

AcDbArc::~AcDbArc() = default;

AcGePoint3d AcDbArc::center() const { return ToWorld(m_normal, m_center); }

Acad::ErrorStatus AcDbArc::setCenter(const AcGePoint3d& center) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_center = ToPlane(m_normal, center);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::setRadius(double radius) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!(radius > 0)) return Acad::eInvalidInput;
    m_radius = radius;
    return Acad::eOk;
}

double AcDbArc::startAngle() const { return cadhost::ToRadians(m_startAngle); }
double AcDbArc::endAngle() const { return cadhost::ToRadians(m_endAngle); }

Acad::ErrorStatus AcDbArc::setStartAngle(double angle) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!std::isfinite(angle)) return Acad::eInvalidInput;
    m_startAngle = cadhost::ToDegrees(angle);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::setEndAngle(double angle) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!std::isfinite(angle)) return Acad::eInvalidInput;
    m_endAngle = cadhost::ToDegrees(angle);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::setNormal(const AcGeVector3d& normal) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (normal.isZeroLength()) return Acad::eInvalidInput;
    AcGePoint3d world = center();
    m_normal = normal.normal();
    m_center = ToPlane(m_normal, world);
    return Acad::eOk;
}

double AcDbArc::totalAngle() const {
    double span = std::fmod(m_endAngle - m_startAngle, 360.0);
    if (!(span > 0)) span += 360.0;
    return cadhost::ToRadians(span);
}

Acad::ErrorStatus AcDbArc::getStartParam(double& param) const {
    param = startAngle();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::getEndParam(double& param) const {
    param = startAngle() + totalAngle();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::getPointAtParam(double param, AcGePoint3d& point) const {
    if (!InRange(param, startAngle(), startAngle() + totalAngle())) return Acad::eInvalidInput;
    AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(m_normal);
    AcGeVector3d x = cadhost::Linear(plane, AcGeVector3d::kXAxis), y = cadhost::Linear(plane, AcGeVector3d::kYAxis);
    point = center() + x * (m_radius * std::cos(param)) + y * (m_radius * std::sin(param));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::getDistAtParam(double param, double& dist) const {
    double end = startAngle() + totalAngle();
    if (!InRange(param, startAngle(), end)) return Acad::eInvalidInput;
    dist = m_radius * (Clamp(param, startAngle(), end) - startAngle());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::getParamAtDist(double dist, double& param) const {
    if (!(m_radius > 0) || !InRange(dist, 0, length())) return Acad::eInvalidInput;
    param = startAngle() + Clamp(dist, 0, length()) / m_radius;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::getArea(double& area) const {
    double angle = totalAngle();
    area = 0.5 * m_radius * m_radius * (angle - std::sin(angle));
    return Acad::eOk;
}

void AcDbArc::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(m_normal);
    AcGeVector3d u = cadhost::Linear(transform, cadhost::Linear(plane, AcGeVector3d::kXAxis) * m_radius);
    AcGeVector3d v = cadhost::Linear(transform, cadhost::Linear(plane, AcGeVector3d::kYAxis) * m_radius);
    cadhost::AddEllipticArc(extents, transform * center(), u, v, startAngle(), totalAngle());
}

// Point ------------------------------------------------------------------

AcDbPoint::~AcDbPoint() = default;

Acad::ErrorStatus AcDbPoint::setPosition(const AcGePoint3d& position) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_position = position;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPoint::setThickness(double thickness) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!std::isfinite(thickness)) return Acad::eInvalidInput;
    m_thickness = thickness;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPoint::setNormal(const AcGeVector3d& normal) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (normal.isZeroLength()) return Acad::eInvalidInput;
    m_normal = normal.normal();
    return Acad::eOk;
}

double AcDbPoint::ecsRotation() const { return cadhost::ToRadians(m_ecsDegrees); }

Acad::ErrorStatus AcDbPoint::setEcsRotation(double angle) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!std::isfinite(angle)) return Acad::eInvalidInput;
    m_ecsDegrees = cadhost::ToDegrees(angle);
    return Acad::eOk;
}

void AcDbPoint::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    extents.addPoint(transform * m_position);
}
