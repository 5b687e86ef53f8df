// Extents of curved geometry carried by a transformation.
#pragma once

#include <dbmain.h>

namespace cadhost {

// The points center + u cos t + v sin t for t from start over span (an arc
// of a circle whose radius vectors u and v the transformation has carried).
void AddEllipticArc(AcDbExtents& extents, const AcGePoint3d& center, const AcGeVector3d& u, const AcGeVector3d& v,
                    double start, double span);
// The linear part of a transformation applied to a vector.
AcGeVector3d Linear(const AcGeMatrix3d& transform, const AcGeVector3d& vector);

inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kTwoPi = 2 * kPi;
inline double ToRadians(double degrees) { return degrees * (kPi / 180); }
inline double ToDegrees(double radians) { return radians * (180 / kPi); }

}  // namespace cadhost
