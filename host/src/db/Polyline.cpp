#include <dbpl.h>

#include <cmath>

#include "db/Extents.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbPolyline, AcDbCurve, L"LWPOLYLINE")

namespace {

constexpr double kParamTolerance = 1e-10;

// An arc segment from p to q with bulge b: its center, radius, start angle
// and signed sweep (positive counterclockwise).
struct ArcSegment {
    AcGePoint2d center;
    double radius = 0;
    double startAngle = 0;
    double sweep = 0;
};

ArcSegment ArcOf(const AcGePoint2d& p, const AcGePoint2d& q, double bulge) {
    ArcSegment arc;
    AcGeVector2d chord = q - p;
    double c = chord.length();
    arc.sweep = 4 * std::atan(bulge);
    AcGeVector2d left(-chord.y / c, chord.x / c);
    AcGePoint2d mid((p.x + q.x) / 2, (p.y + q.y) / 2);
    arc.center = mid + left * (c * (1 - bulge * bulge) / (4 * bulge));
    arc.radius = c * (1 + bulge * bulge) / (4 * std::fabs(bulge));
    arc.startAngle = std::atan2(p.y - arc.center.y, p.x - arc.center.x);
    return arc;
}

}  // namespace

AcDbPolyline::~AcDbPolyline() = default;

unsigned int AcDbPolyline::numSegments() const {
    size_t n = m_vertices.size();
    if (n < 2) return 0;
    return static_cast<unsigned int>(closed() ? n : n - 1);
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint2d& point) const {
    if (index >= m_vertices.size()) return Acad::eInvalidIndex;
    point.set(m_vertices[index].x, m_vertices[index].y);
    return Acad::eOk;
}

AcGeMatrix3d AcDbPolyline::toWorld() const {
    AcGeMatrix3d lift = AcGeMatrix3d::translation(AcGeVector3d(0, 0, m_elevation));
    return m_normal == AcGeVector3d::kZAxis ? lift : AcGeMatrix3d::planeToWorld(m_normal) * lift;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint3d& point) const {
    if (index >= m_vertices.size()) return Acad::eInvalidIndex;
    point = toWorld() * AcGePoint3d(m_vertices[index].x, m_vertices[index].y, 0);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setPointAt(unsigned int index, const AcGePoint2d& point) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (index >= m_vertices.size()) return Acad::eInvalidIndex;
    m_vertices[index].x = point.x;
    m_vertices[index].y = point.y;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getBulgeAt(unsigned int index, double& bulge) const {
    if (index >= m_vertices.size()) return Acad::eInvalidIndex;
    bulge = m_vertices[index].bulge;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setBulgeAt(unsigned int index, double bulge) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (index >= m_vertices.size()) return Acad::eInvalidIndex;
    if (!std::isfinite(bulge)) return Acad::eInvalidInput;
    m_vertices[index].bulge = bulge;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const {
    if (index >= m_vertices.size()) return Acad::eInvalidIndex;
    if (m_widths.empty()) {
        startWidth = endWidth = 0;
    } else {
        startWidth = m_widths[index].first;
        endWidth = m_widths[index].second;
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setWidthsAt(unsigned int index, double startWidth, double endWidth) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (index >= m_vertices.size()) return Acad::eInvalidIndex;
    if (m_widths.empty()) m_widths.assign(m_vertices.size(), {0.0, 0.0});
    m_widths[index] = {startWidth, endWidth};
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::addVertexAt(unsigned int index, const AcGePoint2d& point, double bulge,
                                            double startWidth, double endWidth) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (index > m_vertices.size()) return Acad::eInvalidIndex;
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(bulge)) return Acad::eInvalidInput;
    m_vertices.insert(m_vertices.begin() + index, Vertex{point.x, point.y, bulge});
    bool ownWidths = startWidth >= 0 || endWidth >= 0;
    if (ownWidths && m_widths.empty()) m_widths.assign(m_vertices.size() - 1, {0.0, 0.0});
    if (!m_widths.empty())
        m_widths.insert(m_widths.begin() + index, {startWidth > 0 ? startWidth : 0.0, endWidth > 0 ? endWidth : 0.0});
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::removeVertexAt(unsigned int index) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (index >= m_vertices.size()) return Acad::eInvalidIndex;
    m_vertices.erase(m_vertices.begin() + index);
    if (!m_widths.empty()) m_widths.erase(m_widths.begin() + index);
    return Acad::eOk;
}

AcDbPolyline::SegType AcDbPolyline::segType(unsigned int index) const {
    if (m_vertices.size() == 1 && index == 0) return kPoint;
    if (index >= numSegments()) return kEmpty;
    const Vertex& a = m_vertices[index];
    const Vertex& b = m_vertices[(index + 1) % m_vertices.size()];
    if (a.x == b.x && a.y == b.y) return kCoincident;
    return a.bulge != 0 ? kArc : kLine;
}

bool AcDbPolyline::hasBulges() const {
    for (const Vertex& v : m_vertices)
        if (v.bulge != 0) return true;
    return false;
}

void AcDbPolyline::setClosed(bool value) { m_flags = value ? (m_flags | 1) : (m_flags & ~1); }

void AcDbPolyline::setElevation(double elevation) { m_elevation = elevation; }

Acad::ErrorStatus AcDbPolyline::setNormal(const AcGeVector3d& normal) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (normal.isZeroLength()) return Acad::eInvalidInput;
    m_normal = normal.normal();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getConstantWidth(double& width) const {
    width = m_constantWidth;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setConstantWidth(double width) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (width < 0) return Acad::eInvalidInput;
    m_constantWidth = width;
    return Acad::eOk;
}

double AcDbPolyline::segmentLength(unsigned int index) const {
    const Vertex& a = m_vertices[index];
    const Vertex& b = m_vertices[(index + 1) % m_vertices.size()];
    AcGePoint2d p(a.x, a.y), q(b.x, b.y);
    double chord = p.distanceTo(q);
    if (a.bulge == 0 || chord == 0) return chord;
    ArcSegment arc = ArcOf(p, q, a.bulge);
    return arc.radius * std::fabs(arc.sweep);
}

AcGePoint2d AcDbPolyline::pointOnSegment(unsigned int index, double fraction) const {
    const Vertex& a = m_vertices[index];
    const Vertex& b = m_vertices[(index + 1) % m_vertices.size()];
    AcGePoint2d p(a.x, a.y), q(b.x, b.y);
    if (fraction <= 0) return p;
    if (fraction >= 1) return q;
    if (a.bulge == 0 || p == q) return p + (q - p) * fraction;
    ArcSegment arc = ArcOf(p, q, a.bulge);
    double angle = arc.startAngle + arc.sweep * fraction;
    return AcGePoint2d(arc.center.x + arc.radius * std::cos(angle), arc.center.y + arc.radius * std::sin(angle));
}

Acad::ErrorStatus AcDbPolyline::getStartParam(double& param) const {
    if (m_vertices.empty()) return Acad::eDegenerateGeometry;
    param = 0;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getEndParam(double& param) const {
    if (m_vertices.empty()) return Acad::eDegenerateGeometry;
    param = numSegments();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getStartPoint(AcGePoint3d& point) const { return getPointAt(0u, point); }

Acad::ErrorStatus AcDbPolyline::getEndPoint(AcGePoint3d& point) const {
    if (m_vertices.empty()) return Acad::eDegenerateGeometry;
    return getPointAt(closed() ? 0u : numVerts() - 1, point);
}

Acad::ErrorStatus AcDbPolyline::getPointAtParam(double param, AcGePoint3d& point) const {
    if (m_vertices.empty()) return Acad::eDegenerateGeometry;
    unsigned int segments = numSegments();
    if (!(param >= -kParamTolerance && param <= segments + kParamTolerance)) return Acad::eInvalidInput;
    if (segments == 0) return getPointAt(0u, point);
    double clamped = param < 0 ? 0 : (param > segments ? segments : param);
    auto index = static_cast<unsigned int>(clamped);
    if (index >= segments) index = segments - 1;
    AcGePoint2d p = pointOnSegment(index, clamped - index);
    point = toWorld() * AcGePoint3d(p.x, p.y, 0);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getDistAtParam(double param, double& dist) const {
    if (m_vertices.empty()) return Acad::eDegenerateGeometry;
    unsigned int segments = numSegments();
    if (!(param >= -kParamTolerance && param <= segments + kParamTolerance)) return Acad::eInvalidInput;
    double clamped = param < 0 ? 0 : (param > segments ? segments : param);
    // Along an arc, length grows with the angle, so a fraction of the
    // parameter is the same fraction of the segment's length.
    double total = 0;
    auto whole = static_cast<unsigned int>(clamped);
    for (unsigned int i = 0; i < whole && i < segments; ++i) total += segmentLength(i);
    if (whole < segments) total += (clamped - whole) * segmentLength(whole);
    dist = total;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getParamAtDist(double dist, double& param) const {
    if (m_vertices.empty()) return Acad::eDegenerateGeometry;
    if (!(dist >= -kParamTolerance)) return Acad::eInvalidInput;
    unsigned int segments = numSegments();
    double walked = 0;
    for (unsigned int i = 0; i < segments; ++i) {
        double length = segmentLength(i);
        if (dist <= walked + length) {
            param = i + (length > 0 ? (dist - walked) / length : 0);
            if (param < 0) param = 0;
            return Acad::eOk;
        }
        walked += length;
    }
    if (dist <= walked + kParamTolerance * (1 + walked)) {
        param = segments;
        return Acad::eOk;
    }
    return Acad::eInvalidInput;
}

Acad::ErrorStatus AcDbPolyline::getArea(double& area) const {
    if (m_vertices.empty()) return Acad::eDegenerateGeometry;
    // The straight polygon through the vertices (closed by a chord when the
    // polyline is open), plus or minus the circular segment of each arc.
    size_t n = m_vertices.size();
    double twice = 0;
    for (size_t i = 0; i < n; ++i) {
        const Vertex& a = m_vertices[i];
        const Vertex& b = m_vertices[(i + 1) % n];
        twice += a.x * b.y - b.x * a.y;
    }
    double total = twice / 2;
    unsigned int segments = numSegments();
    for (unsigned int i = 0; i < segments; ++i) {
        const Vertex& a = m_vertices[i];
        const Vertex& b = m_vertices[(i + 1) % n];
        if (a.bulge == 0 || (a.x == b.x && a.y == b.y)) continue;
        ArcSegment arc = ArcOf(AcGePoint2d(a.x, a.y), AcGePoint2d(b.x, b.y), a.bulge);
        double sweep = std::fabs(arc.sweep);
        double segment = 0.5 * arc.radius * arc.radius * (sweep - std::sin(sweep));
        total += a.bulge > 0 ? segment : -segment;
    }
    area = std::fabs(total);
    return Acad::eOk;
}

void AcDbPolyline::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    AcGeMatrix3d placed = transform * toWorld();
    for (const Vertex& v : m_vertices) extents.addPoint(placed * AcGePoint3d(v.x, v.y, 0));
    unsigned int segments = numSegments();
    for (unsigned int i = 0; i < segments; ++i) {
        const Vertex& a = m_vertices[i];
        const Vertex& b = m_vertices[(i + 1) % m_vertices.size()];
        if (a.bulge == 0 || (a.x == b.x && a.y == b.y)) continue;
        ArcSegment arc = ArcOf(AcGePoint2d(a.x, a.y), AcGePoint2d(b.x, b.y), a.bulge);
        AcGeVector3d u = cadhost::Linear(placed, AcGeVector3d(arc.radius, 0, 0));
        AcGeVector3d v = cadhost::Linear(placed, AcGeVector3d(0, arc.radius, 0));
        double start = arc.sweep >= 0 ? arc.startAngle : arc.startAngle + arc.sweep;
        cadhost::AddEllipticArc(extents, placed * AcGePoint3d(arc.center.x, arc.center.y, 0), u, v, start,
                                std::fabs(arc.sweep));
    }
}
