// The lightweight polyline: vertices in the plane of its normal, joined by
// straight segments or by arcs given by their bulge.
#pragma once

#include <vector>

#include "dbents.h"

class CADHOST_API AcDbPolyline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolyline)
    AcDbPolyline() = default;
    explicit AcDbPolyline(unsigned int numVerts) { m_vertices.reserve(numVerts); }
    ~AcDbPolyline() override;

    enum SegType { kLine = 0, kArc = 1, kCoincident = 2, kPoint = 3, kEmpty = 4 };

    unsigned int numVerts() const { return static_cast<unsigned int>(m_vertices.size()); }
    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint2d& point) const;
    // In world coordinates.
    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint3d& point) const;
    Acad::ErrorStatus setPointAt(unsigned int index, const AcGePoint2d& point);
    // The bulge of the segment that starts at a vertex: the tangent of a
    // quarter of its arc's angle, positive when it turns counterclockwise.
    Acad::ErrorStatus getBulgeAt(unsigned int index, double& bulge) const;
    Acad::ErrorStatus setBulgeAt(unsigned int index, double bulge);
    Acad::ErrorStatus getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const;
    Acad::ErrorStatus setWidthsAt(unsigned int index, double startWidth, double endWidth);
    // Inserts before index; index numVerts() appends.
    Acad::ErrorStatus addVertexAt(unsigned int index, const AcGePoint2d& point, double bulge = 0,
                                  double startWidth = -1, double endWidth = -1);
    Acad::ErrorStatus removeVertexAt(unsigned int index);
    SegType segType(unsigned int index) const;
    bool hasBulges() const;
    bool isOnlyLines() const { return !hasBulges(); }

    void setClosed(bool closed);
    bool closed() const { return (m_flags & 1) != 0; }
    double elevation() const { return m_elevation; }
    void setElevation(double elevation);
    AcGeVector3d normal() const { return m_normal; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    Acad::ErrorStatus getConstantWidth(double& width) const;
    Acad::ErrorStatus setConstantWidth(double width);
    // The host's own: the flags as drawing files keep them (1 closed,
    // 128 continuous linetype pattern).
    Adesk::Int16 flags() const { return m_flags; }
    void setFlags(Adesk::Int16 flags) { m_flags = flags; }
    bool hasWidths() const { return !m_widths.empty(); }

    bool isClosed() const override { return closed(); }
    Acad::ErrorStatus getStartParam(double& param) const override;
    Acad::ErrorStatus getEndParam(double& param) const override;
    Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const override;
    Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const override;
    Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
    Acad::ErrorStatus getDistAtParam(double param, double& dist) const override;
    Acad::ErrorStatus getParamAtDist(double dist, double& param) const override;
    Acad::ErrorStatus getArea(double& area) const override;
    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    struct Vertex {
        double x, y, bulge;
    };
    unsigned int numSegments() const;
    double segmentLength(unsigned int index) const;
    AcGePoint2d pointOnSegment(unsigned int index, double fraction) const;
    AcGeMatrix3d toWorld() const;

    std::vector<Vertex> m_vertices;
    std::vector<std::pair<double, double>> m_widths;  // empty while no vertex has its own widths
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
    double m_elevation = 0;
    double m_constantWidth = 0;
    Adesk::Int16 m_flags = 0;
};
