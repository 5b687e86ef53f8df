// Files' groups of the entities drawn by straight edges: lines and solids.
#include <dbents.h>

#include "dxf/EntityGroups.h"

namespace cadhost::dxf {
namespace {

// LINE -------------------------------------------------------------------

Use ReadLine(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& line = static_cast<AcDbLine&>(object);
    if (IsMarker(g, "AcDbLine")) return Use::kKnown;
    if (IsCoordinate(g.code, 10)) {
        AcGePoint3d p = line.startPoint();
        Use use = Coordinate(p, 10, g, in);
        line.setStartPoint(p);
        return use;
    }
    if (IsCoordinate(g.code, 11)) {
        AcGePoint3d p = line.endPoint();
        Use use = Coordinate(p, 11, g, in);
        line.setEndPoint(p);
        return use;
    }
    return Use::kKept;
}

void WriteLine(const AcDbObject& object, ObjectWriter& out) {
    auto& line = static_cast<const AcDbLine&>(object);
    out.Marker("AcDbLine");
    out.Point(10, line.startPoint());
    out.Point(11, line.endPoint());
}

// SOLID ------------------------------------------------------------------

Use ReadSolid(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& solid = static_cast<AcDbSolid&>(object);
    if (IsMarker(g, "AcDbTrace")) return Use::kKnown;
    for (int corner = 0; corner < 4; ++corner) {
        if (IsCoordinate(g.code, 10 + corner)) {
            AcGePoint3d p = solid.planePoint(corner);
            Use use = Coordinate(p, 10 + corner, g, in);
            solid.setPlanePoint(corner, p);
            if (corner == 3) in.state |= 1;
            return use;
        }
    }
    if (IsCoordinate(g.code, 210)) {
        Note(object, kHad210);
        return ScratchVector(210, g, in);
    }
    return Use::kKept;
}

void FinishSolid(AcDbObject& object, ObjectReader& in) {
    auto& solid = static_cast<AcDbSolid&>(object);
    // Three corners: the fourth is the third.
    if (!(in.state & 1)) solid.setPlanePoint(3, solid.planePoint(2));
    if (Had(object, kHad210)) solid.setPlaneNormal(Normal(in.scratch));
}

void WriteSolid(const AcDbObject& object, ObjectWriter& out) {
    auto& solid = static_cast<const AcDbSolid&>(object);
    out.Marker("AcDbTrace");
    for (int corner = 0; corner < 4; ++corner) out.Point(10 + corner, solid.planePoint(corner));
    WriteNormal(out, object, solid.normal());
}

constexpr ClassIo kLineClasses[] = {
    {.dxfName = "LINE",
     .rxClass = AcDbLine::desc,
     .create = Make<AcDbLine>,
     .read = ReadLine,
     .write = WriteLine,
     .isEntity = true,
     .markers = "AcDbLine"},
    {.dxfName = "SOLID",
     .rxClass = AcDbSolid::desc,
     .create = Make<AcDbSolid>,
     .read = ReadSolid,
     .finish = FinishSolid,
     .write = WriteSolid,
     .isEntity = true,
     .markers = "AcDbTrace"},
};

}  // namespace

std::span<const ClassIo> LineClasses() { return kLineClasses; }

}  // namespace cadhost::dxf
