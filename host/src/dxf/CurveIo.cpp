// Files' groups of the round entities: circles and arcs.
#include <dbents.h>

#include "dxf/GroupTable.h"

namespace cadhost::dxf {
namespace {

// CIRCLE and ARC ---------------------------------------------------------

const char* RefuseNegativeRadius(double radius) { return radius >= 0 ? nullptr : "a radius cannot be negative"; }

// A radius of zero is an empty circle's: the object keeps its own.
template <class T>
void SetFileRadius(T& curve, double radius) {
    if (radius > 0) curve.setRadius(radius);
}

template <class T>
constexpr GroupEntry<T> Radius() {
    GroupEntry<T> entry = GroupsOf<T>::template Real<&T::radius, SetFileRadius<T>>(40);
    entry.refuse = RefuseNegativeRadius;
    return entry;
}

void SetStartDegrees(AcDbArc& arc, double degrees) { arc.setDegrees(degrees, arc.endDegrees()); }
void SetEndDegrees(AcDbArc& arc, double degrees) { arc.setDegrees(arc.startDegrees(), degrees); }

using CircleGroups = GroupsOf<AcDbCircle>;
constexpr GroupEntry<AcDbCircle> kCircleGroups[] = {
    CircleGroups::Marker("AcDbCircle"),
    CircleGroups::Point<&AcDbCircle::planeCenter, &AcDbCircle::setPlaneCenter>(10),
    Radius<AcDbCircle>(),
    CircleGroups::Normal<&AcDbCircle::normal, &AcDbCircle::setPlaneNormal>(),
};
using CircleIo = ByTable<kCircleGroups>;

// An arc's normal may stand after its angles, where files then keep it.
using ArcGroups = GroupsOf<AcDbArc>;
constexpr GroupEntry<AcDbArc> kArcGroups[] = {
    ArcGroups::Marker("AcDbCircle"),
    ArcGroups::Point<&AcDbArc::planeCenter, &AcDbArc::setPlaneCenter>(10),
    Radius<AcDbArc>(),
    ArcGroups::Normal<&AcDbArc::normal, &AcDbArc::setPlaneNormal>(true),
    ArcGroups::Marker("AcDbArc"),
    ArcGroups::Real<&AcDbArc::startDegrees, SetStartDegrees>(50),
    ArcGroups::Real<&AcDbArc::endDegrees, SetEndDegrees>(51),
};
using ArcIo = ByTable<kArcGroups>;

constexpr ClassIo kCurveClasses[] = {
    {.dxfName = "CIRCLE",
     .rxClass = AcDbCircle::desc,
     .create = Make<AcDbCircle>,
     .read = Reads<CircleIo::Read>,
     .finish = Finishes<CircleIo::Finish>,
     .write = CircleIo::Write,
     .isEntity = true,
     .markers = "AcDbCircle"},
    {.dxfName = "ARC",
     .rxClass = AcDbArc::desc,
     .create = Make<AcDbArc>,
     .read = Reads<ArcIo::Read>,
     .finish = Finishes<ArcIo::Finish>,
     .write = ArcIo::Write,
     .isEntity = true,
     .markers = "AcDbCircle|AcDbArc"},
};

}  // namespace

std::span<const ClassIo> CurveClasses() { return kCurveClasses; }

}  // namespace cadhost::dxf
