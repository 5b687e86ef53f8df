// A vector of the plane.
#pragma once

#include <cfloat>
#include <cmath>

#include "gegbl.h"

class CADHOST_API AcGeVector2d {
public:
    AcGeVector2d() = default;
    AcGeVector2d(double xx, double yy) : x(xx), y(yy) {}
    static const AcGeVector2d kIdentity;
    static const AcGeVector2d kXAxis;
    static const AcGeVector2d kYAxis;

    double length() const { return std::hypot(x, y); }
    double dotProduct(const AcGeVector2d& v) const { return x * v.x + y * v.y; }
    double crossProduct(const AcGeVector2d& v) const { return x * v.y - y * v.x; }
    // The angle from the X axis, in [0, 2 pi).
    double angle() const {
        double a = std::atan2(y, x);
        return a < 0 ? a + 2 * 3.14159265358979323846 : a;
    }
    // As AcGeVector3d::normal: a unit vector to rounding comes back as it is.
    AcGeVector2d normal() const {
        double l = length();
        if (std::fabs(l - 1.0) <= 4 * DBL_EPSILON) return *this;
        return l > 0 ? AcGeVector2d(x / l, y / l) : *this;
    }
    bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const { return length() <= tol.equalVector(); }
    AcGeVector2d operator+(const AcGeVector2d& v) const { return AcGeVector2d(x + v.x, y + v.y); }
    AcGeVector2d operator-(const AcGeVector2d& v) const { return AcGeVector2d(x - v.x, y - v.y); }
    AcGeVector2d operator-() const { return AcGeVector2d(-x, -y); }
    AcGeVector2d operator*(double s) const { return AcGeVector2d(x * s, y * s); }
    bool operator==(const AcGeVector2d& v) const { return x == v.x && y == v.y; }
    bool operator!=(const AcGeVector2d& v) const { return !(*this == v); }
    double operator[](unsigned int i) const { return i == 0 ? x : y; }
    double& operator[](unsigned int i) { return i == 0 ? x : y; }

    double x = 0, y = 0;
};
