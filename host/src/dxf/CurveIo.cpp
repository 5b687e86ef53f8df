// Files' groups of the round entities: circles and arcs.
#include <dbents.h>
#include <type_traits>

#include "dxf/EntityGroups.h"

namespace cadhost::dxf {
namespace {

// CIRCLE and ARC ---------------------------------------------------------

struct RoundRead {
    bool inArcPart = false;  // after the AcDbArc marker
    FileNormal normal;
};

template <class T>
Use ReadRound(T& curve, RoundRead& read, const Group& g, ObjectReader& in) {
    if (IsMarker(g, "AcDbCircle")) return Use::kKnown;
    if (IsMarker(g, "AcDbArc")) {
        read.inArcPart = true;
        return Use::kKnown;
    }
    if (IsCoordinate(g.code, 10)) {
        AcGePoint3d p = curve.planeCenter();
        Use use = Coordinate(p, 10, g, in);
        curve.setPlaneCenter(p);
        return use;
    }
    if (g.code == 40) {
        double r = in.Real(g);
        if (!(r >= 0)) in.Fail(g, "a radius cannot be negative");
        if (r > 0) curve.setRadius(r);
        return Use::kKnown;
    }
    if (IsCoordinate(g.code, 210)) {
        Note(curve, kHad210);
        if (read.inArcPart) Note(curve, kNormalLast);
        return read.normal.Read(210, g, in);
    }
    if constexpr (std::is_same_v<T, AcDbArc>) {
        if (g.code == 50) {
            curve.setDegrees(in.Real(g), curve.endDegrees());
            return Use::kKnown;
        }
        if (g.code == 51) {
            curve.setDegrees(curve.startDegrees(), in.Real(g));
            return Use::kKnown;
        }
    }
    return Use::kKept;
}

template <class T>
void FinishRound(T& curve, RoundRead& read, ObjectReader&) {
    if (Had(curve, kHad210)) curve.setPlaneNormal(read.normal.Value());
}

void WriteCircle(const AcDbObject& object, ObjectWriter& out) {
    auto& circle = static_cast<const AcDbCircle&>(object);
    out.Marker("AcDbCircle");
    out.Point(10, circle.planeCenter());
    out.Real(40, circle.radius());
    WriteNormal(out, object, circle.normal());
}

void WriteArc(const AcDbObject& object, ObjectWriter& out) {
    auto& arc = static_cast<const AcDbArc&>(object);
    out.Marker("AcDbCircle");
    out.Point(10, arc.planeCenter());
    out.Real(40, arc.radius());
    bool last = Had(object, kNormalLast);
    if (!last) WriteNormal(out, object, arc.normal());
    out.Marker("AcDbArc");
    out.Real(50, arc.startDegrees());
    out.Real(51, arc.endDegrees());
    if (last) WriteNormal(out, object, arc.normal());
}

constexpr ClassIo kCurveClasses[] = {
    {.dxfName = "CIRCLE",
     .rxClass = AcDbCircle::desc,
     .create = Make<AcDbCircle>,
     .read = Reads<ReadRound<AcDbCircle>>,
     .finish = Finishes<FinishRound<AcDbCircle>>,
     .write = WriteCircle,
     .isEntity = true,
     .markers = "AcDbCircle"},
    {.dxfName = "ARC",
     .rxClass = AcDbArc::desc,
     .create = Make<AcDbArc>,
     .read = Reads<ReadRound<AcDbArc>>,
     .finish = Finishes<FinishRound<AcDbArc>>,
     .write = WriteArc,
     .isEntity = true,
     .markers = "AcDbCircle|AcDbArc"},
};

}  // namespace

std::span<const ClassIo> CurveClasses() { return kCurveClasses; }

}  // namespace cadhost::dxf
