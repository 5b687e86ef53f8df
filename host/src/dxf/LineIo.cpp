// Files' groups of the entities drawn by straight edges: lines and solids.
#include <dbents.h>

#include "dxf/GroupTable.h"

namespace cadhost::dxf {
namespace {

// LINE -------------------------------------------------------------------

using LineGroups = GroupsOf<AcDbLine>;
constexpr GroupEntry<AcDbLine> kLineGroups[] = {
    LineGroups::Marker("AcDbLine"),
    LineGroups::Point<&AcDbLine::startPoint, &AcDbLine::setStartPoint>(10),
    LineGroups::Point<&AcDbLine::endPoint, &AcDbLine::setEndPoint>(11),
};
using LineIo = ByTable<kLineGroups>;

// SOLID ------------------------------------------------------------------

// Three corners: the fourth is the third.
struct SolidRead {
    bool hadFourthCorner = false;
    FileNormal normal;
};

Use ReadSolid(AcDbSolid& solid, SolidRead& read, const Group& g, ObjectReader& in) {
    if (IsMarker(g, "AcDbTrace")) return Use::kKnown;
    for (int corner = 0; corner < 4; ++corner) {
        if (IsCoordinate(g.code, 10 + corner)) {
            AcGePoint3d p = solid.planePoint(corner);
            Use use = Coordinate(p, 10 + corner, g, in);
            solid.setPlanePoint(corner, p);
            if (corner == 3) read.hadFourthCorner = true;
            return use;
        }
    }
    if (IsCoordinate(g.code, 210)) {
        Note(solid, kHad210);
        return read.normal.Read(210, g, in);
    }
    return Use::kKept;
}

void FinishSolid(AcDbSolid& solid, SolidRead& read, ObjectReader&) {
    if (!read.hadFourthCorner) solid.setPlanePoint(3, solid.planePoint(2));
    if (Had(solid, kHad210)) solid.setPlaneNormal(read.normal.Value());
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
     .read = Reads<LineIo::Read>,
     .finish = Finishes<LineIo::Finish>,
     .write = LineIo::Write,
     .isEntity = true,
     .markers = "AcDbLine"},
    {.dxfName = "SOLID",
     .rxClass = AcDbSolid::desc,
     .create = Make<AcDbSolid>,
     .read = Reads<ReadSolid>,
     .finish = Finishes<FinishSolid>,
     .write = WriteSolid,
     .isEntity = true,
     .markers = "AcDbTrace"},
};

}  // namespace

std::span<const ClassIo> LineClasses() { return kLineClasses; }

}  // namespace cadhost::dxf
