// A vector of space.
#pragma once

#include <cfloat>
#include <cmath>

#include "gegbl.h"

class CADHOST_API AcGeVector3d {
public:
    AcGeVector3d() = default;
    AcGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}
    static const AcGeVector3d kIdentity;
    static const AcGeVector3d kXAxis;
    static const AcGeVector3d kYAxis;
    static const AcGeVector3d kZAxis;

    double length() const { return std::sqrt(x * x + y * y + z * z); }
    double lengthSqrd() const { return x * x + y * y + z * z; }
    double dotProduct(const AcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    AcGeVector3d crossProduct(const AcGeVector3d& v) const {
        return AcGeVector3d(y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x);
    }
    // A vector already of unit length to rounding comes back as it is, so
    // that a direction normalised again keeps its bits.
    AcGeVector3d normal(const AcGeTol& tol = AcGeContext::gTol) const {
        double l = length();
        if (std::fabs(l - 1.0) <= 4 * DBL_EPSILON) return *this;
        return l > tol.equalVector() ? AcGeVector3d(x / l, y / l, z / l) : *this;
    }
    AcGeVector3d& normalize(const AcGeTol& tol = AcGeContext::gTol) { return *this = normal(tol); }
    bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const { return length() <= tol.equalVector(); }
    bool isUnitLength(const AcGeTol& tol = AcGeContext::gTol) const {
        return std::fabs(length() - 1.0) <= tol.equalVector();
    }
    bool isParallelTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const {
        return normal().crossProduct(v.normal()).length() <= tol.equalVector();
    }
    bool isPerpendicularTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const {
        return std::fabs(normal().dotProduct(v.normal())) <= tol.equalVector();
    }
    bool isEqualTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const {
        return (*this - v).length() <= tol.equalVector();
    }
    // The angle to another vector, in [0, pi].
    double angleTo(const AcGeVector3d& v) const {
        double c = crossProduct(v).length();
        return std::atan2(c, dotProduct(v));
    }
    // A vector perpendicular to this one.
    AcGeVector3d perpVector() const;
    AcGeVector3d& transformBy(const AcGeMatrix3d& matrix);
    AcGeVector3d& negate() { return *this = -*this; }
    AcGeVector3d& set(double xx, double yy, double zz) {
        x = xx;
        y = yy;
        z = zz;
        return *this;
    }

    AcGeVector3d operator+(const AcGeVector3d& v) const { return AcGeVector3d(x + v.x, y + v.y, z + v.z); }
    AcGeVector3d operator-(const AcGeVector3d& v) const { return AcGeVector3d(x - v.x, y - v.y, z - v.z); }
    AcGeVector3d operator-() const { return AcGeVector3d(-x, -y, -z); }
    AcGeVector3d operator*(double s) const { return AcGeVector3d(x * s, y * s, z * s); }
    AcGeVector3d operator/(double s) const { return AcGeVector3d(x / s, y / s, z / s); }
    AcGeVector3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGeVector3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
    AcGeVector3d& operator*=(double s) { return *this = *this * s; }
    bool operator==(const AcGeVector3d& v) const { return x == v.x && y == v.y && z == v.z; }
    bool operator!=(const AcGeVector3d& v) const { return !(*this == v); }
    double operator[](unsigned int i) const { return i == 0 ? x : (i == 1 ? y : z); }
    double& operator[](unsigned int i) { return i == 0 ? x : (i == 1 ? y : z); }

    double x = 0, y = 0, z = 0;
};

inline AcGeVector3d operator*(double s, const AcGeVector3d& v) { return v * s; }
