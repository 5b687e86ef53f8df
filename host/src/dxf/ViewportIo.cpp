// Files' groups of viewports.
#include <dbents.h>

#include "dxf/EntityGroups.h"

namespace cadhost::dxf {
namespace {

// VIEWPORT -------------------------------------------------------------

// The view direction as the file gave it (its length is the file's own).
struct ViewportRead {
    bool hadDirection = false;
    AcGeVector3d direction{0, 0, 0};
};

Use ReadViewport(AcDbViewport& viewport, ViewportRead& read, const Group& g, ObjectReader& in) {
    switch (g.code) {
    case 100: return g.value == "AcDbViewport" ? Use::kKnown : Use::kKept;
    case 10:
    case 20:
    case 30: {
        AcGePoint3d p = viewport.centerPoint();
        Use use = Coordinate(p, 10, g, in);
        viewport.setCenterPoint(p);
        return use;
    }
    case 40: viewport.setWidth(in.Real(g) > 0 ? in.Real(g) : 0); return Use::kKnown;
    case 41: viewport.setHeight(in.Real(g) > 0 ? in.Real(g) : 0); return Use::kKnown;
    case 68: viewport.setStatus(static_cast<Adesk::Int16>(in.Integer(g))); return Use::kKnown;
    case 69: viewport.setNumber(static_cast<Adesk::Int16>(in.Integer(g))); return Use::kKnown;
    case 12:
    case 22: {
        AcGePoint2d c = viewport.viewCenter();
        (g.code == 12 ? c.x : c.y) = in.Real(g);
        viewport.setViewCenter(c);
        return g.code == 12 ? Use::kKnown : Use::kContinued;
    }
    case 16:
    case 26:
    case 36: {
        read.hadDirection = true;
        return Vector(read.direction, 16, g, in);
    }
    case 17:
    case 27:
    case 37: {
        AcGePoint3d p = viewport.viewTarget();
        Use use = Coordinate(p, 17, g, in);
        viewport.setViewTarget(p);
        return use;
    }
    case 45: viewport.setViewHeightRaw(in.Real(g)); return Use::kKnown;
    case 51: viewport.setTwistDegrees(in.Real(g)); return Use::kKnown;
    default: return Use::kKept;
    }
}

void FinishViewport(AcDbViewport& viewport, ViewportRead& read, ObjectReader&) {
    // A zero vector means the default.
    if (read.hadDirection)
        viewport.setViewDirection(read.direction.isZeroLength() ? AcGeVector3d::kZAxis : read.direction);
}

void WriteViewport(const AcDbObject& object, ObjectWriter& out) {
    auto& viewport = static_cast<const AcDbViewport&>(object);
    out.Marker("AcDbViewport");
    out.Point(10, viewport.centerPoint());
    out.Real(40, viewport.width());
    out.Real(41, viewport.height());
    out.Integer(68, viewport.status());
    out.Integer(69, viewport.number());
    if (out.R12()) return;  // the view itself is extended data there
    out.Point2d(12, viewport.viewCenter().x, viewport.viewCenter().y);
    out.Vector(16, viewport.viewDirection());
    out.Point(17, viewport.viewTarget());
    out.Real(45, viewport.viewHeight());
    out.Real(51, viewport.twistDegrees());
}

constexpr ClassIo kViewportClasses[] = {
    {.dxfName = "VIEWPORT",
     .rxClass = AcDbViewport::desc,
     .create = Make<AcDbViewport>,
     .read = Reads<ReadViewport>,
     .finish = Finishes<FinishViewport>,
     .write = WriteViewport,
     .isEntity = true,
     .markers = "AcDbViewport"},
};

}  // namespace

std::span<const ClassIo> ViewportClasses() { return kViewportClasses; }

}  // namespace cadhost::dxf
