// Files' groups of points.
#include <dbents.h>

#include "dxf/GroupTable.h"

namespace cadhost::dxf {
namespace {

using PointGroups = GroupsOf<AcDbPoint>;
constexpr GroupEntry<AcDbPoint> kPointGroups[] = {
    PointGroups::Marker("AcDbPoint"),
    PointGroups::Point<&AcDbPoint::position, &AcDbPoint::setPosition>(10),
    PointGroups::OptionalReal<&AcDbPoint::thickness, &AcDbPoint::setThickness>(39, kHad39, 0),
    PointGroups::Normal<&AcDbPoint::normal, &AcDbPoint::setPlaneNormal>(),
    PointGroups::OptionalReal<&AcDbPoint::ecsDegrees, &AcDbPoint::setEcsDegrees>(50, kHad50, 0),
};
using PointIo = ByTable<kPointGroups>;

constexpr ClassIo kPointClasses[] = {
    {.dxfName = "POINT",
     .rxClass = AcDbPoint::desc,
     .create = Make<AcDbPoint>,
     .read = Reads<PointIo::Read>,
     .finish = Finishes<PointIo::Finish>,
     .write = PointIo::Write,
     .isEntity = true,
     .markers = "AcDbPoint"},
};

}  // namespace

std::span<const ClassIo> PointClasses() { return kPointClasses; }

}  // namespace cadhost::dxf
