#include "db/Extents.h"

#include <cmath>

namespace cadhost {

AcGeVector3d Linear(const AcGeMatrix3d& m, const AcGeVector3d& v) {
    AcGeVector3d w = v;
    return w.transformBy(m);
}

void AddEllipticArc(AcDbExtents& extents, const AcGePoint3d& center, const AcGeVector3d& u, const AcGeVector3d& v,
                    double start, double span) {
    auto at = [&](double t) { return center + u * std::cos(t) + v * std::sin(t); };
    extents.addPoint(at(start));
    extents.addPoint(at(start + span));
    // Each coordinate is extreme where its derivative vanishes:
    // -u sin t + v cos t = 0, at atan2(v, u) and half a turn on.
    for (unsigned k = 0; k < 3; ++k) {
        if (u[k] == 0 && v[k] == 0) continue;
        double base = std::atan2(v[k], u[k]);
        for (int half = -4; half <= 4; ++half) {
            double t = base + half * kPi;
            if (t > start && t < start + span) extents.addPoint(at(t));
        }
    }
}

}  // namespace cadhost
