// A point of space.
#pragma once

#include "gevec3d.h"

class CADHOST_API AcGePoint3d {
public:
    AcGePoint3d() = default;
    AcGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}
    static const AcGePoint3d kOrigin;

    double distanceTo(const AcGePoint3d& p) const { return (*this - p).length(); }
    bool isEqualTo(const AcGePoint3d& p, const AcGeTol& tol = AcGeContext::gTol) const {
        return distanceTo(p) <= tol.equalPoint();
    }
    AcGePoint3d& set(double xx, double yy, double zz) {
        x = xx;
        y = yy;
        z = zz;
        return *this;
    }
    AcGeVector3d asVector() const { return AcGeVector3d(x, y, z); }
    AcGePoint3d& transformBy(const AcGeMatrix3d& matrix);

    AcGePoint3d operator+(const AcGeVector3d& v) const { return AcGePoint3d(x + v.x, y + v.y, z + v.z); }
    AcGePoint3d operator-(const AcGeVector3d& v) const { return AcGePoint3d(x - v.x, y - v.y, z - v.z); }
    AcGeVector3d operator-(const AcGePoint3d& p) const { return AcGeVector3d(x - p.x, y - p.y, z - p.z); }
    AcGePoint3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGePoint3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
    bool operator==(const AcGePoint3d& p) const { return x == p.x && y == p.y && z == p.z; }
    bool operator!=(const AcGePoint3d& p) const { return !(*this == p); }
    double operator[](unsigned int i) const { return i == 0 ? x : (i == 1 ? y : z); }
    double& operator[](unsigned int i) { return i == 0 ? x : (i == 1 ? y : z); }

    double x = 0, y = 0, z = 0;
};

CADHOST_API AcGePoint3d operator*(const AcGeMatrix3d& matrix, const AcGePoint3d& point);
