// Files' groups of lightweight polylines.
#include <dbpl.h>

#include "dxf/EntityGroups.h"

namespace cadhost::dxf {
namespace {

// LWPOLYLINE -----------------------------------------------------------
// Each vertex has places for 10, 40, 41 and 42; those it lacks are counted
// when it ends.
struct PolylineRead {
    // The vertex being read: open from its 10 to the next group that is not
    // one of a vertex's, and which of its groups it has had.
    struct Vertex {
        bool open = false;
        double x = 0;
        bool hadY = false, hadStartWidth = false, hadEndWidth = false, hadBulge = false;
    } vertex;
    FileNormal normal;
};

// The places of a vertex that it did not fill: the writer writes the two
// widths together or neither, and the bulge or not.
void CloseVertex(PolylineRead& read, ObjectReader& in) {
    PolylineRead::Vertex& v = read.vertex;
    if (!v.open) return;
    in.Skip((v.hadStartWidth || v.hadEndWidth) ? 2 - v.hadStartWidth - v.hadEndWidth : 2);
    if (!v.hadBulge) in.Skip(1);
    v = PolylineRead::Vertex();
}

Use ReadPolyline(AcDbPolyline& pline, PolylineRead& read, const Group& g, ObjectReader& in) {
    PolylineRead::Vertex& vertex = read.vertex;
    unsigned int last = pline.numVerts() - 1;
    bool vertexGroup = g.code == 10 || g.code == 20 || g.code == 40 || g.code == 41 || g.code == 42 || g.code == 91;
    if (!vertexGroup) CloseVertex(read, in);
    switch (g.code) {
    case 100: return g.value == "AcDbPolyline" ? Use::kKnown : Use::kKept;
    case 90: return Use::kKnown;  // the count; the vertices themselves decide
    case 70: pline.setFlags(static_cast<Adesk::Int16>(in.Integer(g))); return Use::kKnown;
    case 43:
        Note(pline, kHad43);
        pline.setConstantWidth(in.Real(g) > 0 ? in.Real(g) : 0);
        return Use::kKnown;
    case 38:
        Note(pline, kHad38);
        pline.setElevation(in.Real(g));
        return Use::kKnown;
    case 10:
        CloseVertex(read, in);
        vertex.open = true;
        vertex.x = in.Real(g);
        pline.addVertexAt(pline.numVerts(), AcGePoint2d(vertex.x, 0));
        return Use::kKnown;
    case 20:
        if (!vertex.open || vertex.hadY) return Use::kKept;
        vertex.hadY = true;
        pline.setPointAt(last, AcGePoint2d(vertex.x, in.Real(g)));
        // The vertex's X counted the point's place, also where a width or
        // a bulge came between.
        return Use::kCounted;
    case 40:
    case 41: {
        bool& had = g.code == 40 ? vertex.hadStartWidth : vertex.hadEndWidth;
        if (!vertex.open || had) return Use::kKept;
        had = true;
        double start, end;
        pline.getWidthsAt(last, start, end);
        (g.code == 40 ? start : end) = in.Real(g);
        pline.setWidthsAt(last, start, end);
        // A file that writes widths of zero writes them for every vertex.
        if (vertex.hadStartWidth && vertex.hadEndWidth && start == 0 && end == 0) Note(pline, kAllWidths);
        return Use::kKnown;
    }
    case 42: {
        if (!vertex.open || vertex.hadBulge) return Use::kKept;
        vertex.hadBulge = true;
        double bulge = in.Real(g);
        if (bulge == 0) Note(pline, kAllBulges);
        pline.setBulgeAt(last, bulge);
        return Use::kKnown;
    }
    case 210:
    case 220:
    case 230: {
        Note(pline, kHad210);
        return read.normal.Read(210, g, in);
    }
    default: return Use::kKept;
    }
}

void FinishPolyline(AcDbPolyline& pline, PolylineRead& read, ObjectReader&) {
    if (Had(pline, kHad210)) pline.setNormal(read.normal.Value());
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
     .read = Reads<ReadPolyline>,
     .finish = Finishes<FinishPolyline>,
     .write = WritePolyline,
     .isEntity = true,
     .markers = "AcDbPolyline"},
};

}  // namespace

std::span<const ClassIo> PolylineClasses() { return kPolylineClasses; }

}  // namespace cadhost::dxf
