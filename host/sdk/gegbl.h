// Tolerances and shared declarations of the geometry library.
#pragma once

#include "adesk.h"

class CADHOST_API AcGeTol {
public:
    AcGeTol() = default;
    double equalPoint() const { return m_point; }
    double equalVector() const { return m_vector; }
    void setEqualPoint(double value) { m_point = value; }
    void setEqualVector(double value) { m_vector = value; }

private:
    double m_point = 1e-10;
    double m_vector = 1e-12;
};

struct AcGeContext {
    static CADHOST_API AcGeTol gTol;
};

class AcGePoint2d;
class AcGeVector2d;
class AcGePoint3d;
class AcGeVector3d;
class AcGeMatrix3d;
class AcGeScale3d;
