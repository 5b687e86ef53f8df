// A point of the plane.
#pragma once

#include "gevec2d.h"

class CADHOST_API AcGePoint2d {
public:
    AcGePoint2d() = default;
    AcGePoint2d(double xx, double yy) : x(xx), y(yy) {}
    static const AcGePoint2d kOrigin;

    double distanceTo(const AcGePoint2d& p) const { return std::hypot(x - p.x, y - p.y); }
    bool isEqualTo(const AcGePoint2d& p, const AcGeTol& tol = AcGeContext::gTol) const {
        return distanceTo(p) <= tol.equalPoint();
    }
    AcGePoint2d& set(double xx, double yy) {
        x = xx;
        y = yy;
        return *this;
    }
    AcGeVector2d asVector() const { return AcGeVector2d(x, y); }
    AcGePoint2d operator+(const AcGeVector2d& v) const { return AcGePoint2d(x + v.x, y + v.y); }
    AcGePoint2d operator-(const AcGeVector2d& v) const { return AcGePoint2d(x - v.x, y - v.y); }
    AcGeVector2d operator-(const AcGePoint2d& p) const { return AcGeVector2d(x - p.x, y - p.y); }
    bool operator==(const AcGePoint2d& p) const { return x == p.x && y == p.y; }
    bool operator!=(const AcGePoint2d& p) const { return !(*this == p); }
    double operator[](unsigned int i) const { return i == 0 ? x : y; }
    double& operator[](unsigned int i) { return i == 0 ? x : y; }

    double x = 0, y = 0;
};
