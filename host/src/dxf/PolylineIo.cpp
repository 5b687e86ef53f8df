// Files' groups of lightweight polylines.
#include <dbpl.h>

#include "dxf/EntityGroups.h"

namespace cadhost::dxf {
namespace {

// LWPOLYLINE -----------------------------------------------------------
// Each vertex has places for 10, 40, 41 and 42; those it lacks are counted
// when it ends. state: bits 1, 2, 4 for 40, 41, 42 of the vertex being
// read, 8 while a vertex is open, 16 once its Y was read; scratch[0..2]
// normal, scratch[3] x of the vertex being read.

// The places of a vertex that it did not fill: the writer writes the two
// widths together or neither, and the bulge or not.
void CloseVertex(ObjectReader& in) {
    if (!(in.state & 8)) return;
    in.Skip((in.state & 3) ? 2 - ((in.state & 1) != 0) - ((in.state & 2) != 0) : 2);
    if (!(in.state & 4)) in.Skip(1);
    in.state &= ~31;
}

Use ReadPolyline(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& pline = static_cast<AcDbPolyline&>(object);
    unsigned int last = pline.numVerts() - 1;
    bool vertexGroup = g.code == 10 || g.code == 20 || g.code == 40 || g.code == 41 || g.code == 42 || g.code == 91;
    if (!vertexGroup) CloseVertex(in);
    switch (g.code) {
    case 100: return g.value == "AcDbPolyline" ? Use::kKnown : Use::kKept;
    case 90: return Use::kKnown;  // the count; the vertices themselves decide
    case 70: pline.setFlags(static_cast<Adesk::Int16>(in.Integer(g))); return Use::kKnown;
    case 43:
        Note(object, kHad43);
        pline.setConstantWidth(in.Real(g) > 0 ? in.Real(g) : 0);
        return Use::kKnown;
    case 38:
        Note(object, kHad38);
        pline.setElevation(in.Real(g));
        return Use::kKnown;
    case 10:
        CloseVertex(in);
        in.state |= 8;
        in.scratch[3] = in.Real(g);
        pline.addVertexAt(pline.numVerts(), AcGePoint2d(in.scratch[3], 0));
        return Use::kKnown;
    case 20:
        if (!(in.state & 8) || (in.state & 16)) return Use::kKept;
        in.state |= 16;
        pline.setPointAt(last, AcGePoint2d(in.scratch[3], in.Real(g)));
        // The vertex's X counted the point's place, also where a width or
        // a bulge came between.
        return Use::kCounted;
    case 40:
    case 41: {
        int bit = g.code == 40 ? 1 : 2;
        if (!(in.state & 8) || (in.state & bit)) return Use::kKept;
        in.state |= bit;
        double start, end;
        pline.getWidthsAt(last, start, end);
        (g.code == 40 ? start : end) = in.Real(g);
        pline.setWidthsAt(last, start, end);
        // A file that writes widths of zero writes them for every vertex.
        if ((in.state & 3) == 3 && start == 0 && end == 0) Note(object, kAllWidths);
        return Use::kKnown;
    }
    case 42: {
        if (!(in.state & 8) || (in.state & 4)) return Use::kKept;
        in.state |= 4;
        double bulge = in.Real(g);
        if (bulge == 0) Note(object, kAllBulges);
        pline.setBulgeAt(last, bulge);
        return Use::kKnown;
    }
    case 210:
    case 220:
    case 230: {
        Note(object, kHad210);
        return ScratchVector(210, g, in);
    }
    default: return Use::kKept;
    }
}

void FinishPolyline(AcDbObject& object, ObjectReader& in) {
    if (Had(object, kHad210)) static_cast<AcDbPolyline&>(object).setNormal(Normal(in.scratch));
}

void WritePolyline(const AcDbObject& object, ObjectWriter& out) {
    auto& pline = static_cast<const AcDbPolyline&>(object);
    out.Marker("AcDbPolyline");
    out.Integer(90, pline.numVerts());
    out.Integer(70, pline.flags());
    double width = 0;
    pline.getConstantWidth(width);
    if (Had(object, kHad43) || width != 0) out.Real(43, width);
    if (Had(object, kHad38) || pline.elevation() != 0) out.Real(38, pline.elevation());
    for (unsigned int i = 0; i < pline.numVerts(); ++i) {
        AcGePoint2d p;
        pline.getPointAt(i, p);
        out.Point2d(10, p.x, p.y);
        double start = 0, end = 0;
        pline.getWidthsAt(i, start, end);
        if (start != 0 || end != 0 || Had(object, kAllWidths)) {
            out.Real(40, start);
            out.Real(41, end);
        } else {
            out.Skip(2);
        }
        double bulge = 0;
        pline.getBulgeAt(i, bulge);
        if (bulge != 0 || Had(object, kAllBulges)) out.Real(42, bulge);
        else out.Skip(1);
    }
    WriteNormal(out, object, pline.normal());
}

constexpr ClassIo kPolylineClasses[] = {
    {.dxfName = "LWPOLYLINE",
     .rxClass = AcDbPolyline::desc,
     .create = Make<AcDbPolyline>,
     .read = ReadPolyline,
     .finish = FinishPolyline,
     .write = WritePolyline,
     .isEntity = true,
     .markers = "AcDbPolyline"},
};

}  // namespace

std::span<const ClassIo> PolylineClasses() { return kPolylineClasses; }

}  // namespace cadhost::dxf
