#include <AcString.h>
#include <gemat3d.h>
#include <gept3dar.h>

#include <cmath>
#include <cwctype>

#include "db/CaseFold.h"

AcGeTol AcGeContext::gTol;

const AcGeVector2d AcGeVector2d::kIdentity(0, 0);
const AcGeVector2d AcGeVector2d::kXAxis(1, 0);
const AcGeVector2d AcGeVector2d::kYAxis(0, 1);
const AcGePoint2d AcGePoint2d::kOrigin(0, 0);
const AcGeVector3d AcGeVector3d::kIdentity(0, 0, 0);
const AcGeVector3d AcGeVector3d::kXAxis(1, 0, 0);
const AcGeVector3d AcGeVector3d::kYAxis(0, 1, 0);
const AcGeVector3d AcGeVector3d::kZAxis(0, 0, 1);
const AcGePoint3d AcGePoint3d::kOrigin(0, 0, 0);
const AcGeScale3d AcGeScale3d::kIdentity(1, 1, 1);
const AcGeMatrix3d AcGeMatrix3d::kIdentity;

AcGeVector3d AcGeVector3d::perpVector() const {
    // The arbitrary axis rule: stable for every direction.
    AcGeVector3d n = normal();
    AcGeVector3d other = (std::fabs(n.x) < 1.0 / 64 && std::fabs(n.y) < 1.0 / 64) ? kYAxis : kZAxis;
    return other.crossProduct(n).normal();
}

AcGeVector3d& AcGeVector3d::transformBy(const AcGeMatrix3d& m) {
    AcGeVector3d v = *this;
    for (int r = 0; r < 3; ++r) (*this)[r] = m.entry[r][0] * v.x + m.entry[r][1] * v.y + m.entry[r][2] * v.z;
    return *this;
}

AcGePoint3d& AcGePoint3d::transformBy(const AcGeMatrix3d& m) { return *this = m * *this; }

AcGePoint3d operator*(const AcGeMatrix3d& m, const AcGePoint3d& p) {
    AcGePoint3d q;
    for (int r = 0; r < 3; ++r) q[r] = m.entry[r][0] * p.x + m.entry[r][1] * p.y + m.entry[r][2] * p.z + m.entry[r][3];
    double w = m.entry[3][0] * p.x + m.entry[3][1] * p.y + m.entry[3][2] * p.z + m.entry[3][3];
    if (w != 1.0 && w != 0.0) q = AcGePoint3d(q.x / w, q.y / w, q.z / w);
    return q;
}

AcGeMatrix3d::AcGeMatrix3d() { setToIdentity(); }

AcGeMatrix3d& AcGeMatrix3d::setToIdentity() {
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) entry[r][c] = r == c ? 1.0 : 0.0;
    return *this;
}

bool AcGeMatrix3d::isEqualTo(const AcGeMatrix3d& other, const AcGeTol& tol) const {
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            if (std::fabs(entry[r][c] - other.entry[r][c]) > tol.equalVector()) return false;
    return true;
}

AcGeMatrix3d AcGeMatrix3d::operator*(const AcGeMatrix3d& o) const {
    AcGeMatrix3d m;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            double s = 0;
            for (int k = 0; k < 4; ++k) s += entry[r][k] * o.entry[k][c];
            m.entry[r][c] = s;
        }
    return m;
}

double AcGeMatrix3d::det() const {
    // Affine matrices: the determinant of the linear part.
    const auto& e = entry;
    return e[0][0] * (e[1][1] * e[2][2] - e[1][2] * e[2][1]) - e[0][1] * (e[1][0] * e[2][2] - e[1][2] * e[2][0]) +
           e[0][2] * (e[1][0] * e[2][1] - e[1][1] * e[2][0]);
}

bool AcGeMatrix3d::invert() {
    // Gauss-Jordan elimination with partial pivoting on the full matrix.
    double a[4][8];
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            a[r][c] = entry[r][c];
            a[r][c + 4] = r == c ? 1.0 : 0.0;
        }
    for (int col = 0; col < 4; ++col) {
        int pivot = col;
        for (int r = col + 1; r < 4; ++r)
            if (std::fabs(a[r][col]) > std::fabs(a[pivot][col])) pivot = r;
        if (std::fabs(a[pivot][col]) < 1e-300) return false;
        if (pivot != col)
            for (int c = 0; c < 8; ++c) std::swap(a[pivot][c], a[col][c]);
        double d = a[col][col];
        for (int c = 0; c < 8; ++c) a[col][c] /= d;
        for (int r = 0; r < 4; ++r) {
            if (r == col || a[r][col] == 0.0) continue;
            double f = a[r][col];
            for (int c = 0; c < 8; ++c) a[r][c] -= f * a[col][c];
        }
    }
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) entry[r][c] = a[r][c + 4];
    return true;
}

AcGeMatrix3d AcGeMatrix3d::inverse() const {
    AcGeMatrix3d m = *this;
    m.invert();
    return m;
}

AcGeMatrix3d& AcGeMatrix3d::setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                           const AcGeVector3d& yAxis, const AcGeVector3d& zAxis) {
    setToIdentity();
    for (int r = 0; r < 3; ++r) {
        entry[r][0] = xAxis[r];
        entry[r][1] = yAxis[r];
        entry[r][2] = zAxis[r];
        entry[r][3] = origin[r];
    }
    return *this;
}

void AcGeMatrix3d::getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis,
                                  AcGeVector3d& zAxis) const {
    for (int r = 0; r < 3; ++r) {
        xAxis[r] = entry[r][0];
        yAxis[r] = entry[r][1];
        zAxis[r] = entry[r][2];
        origin[r] = entry[r][3];
    }
}

AcGeMatrix3d& AcGeMatrix3d::setToTranslation(const AcGeVector3d& v) {
    setToIdentity();
    for (int r = 0; r < 3; ++r) entry[r][3] = v[r];
    return *this;
}

AcGeMatrix3d& AcGeMatrix3d::setToRotation(double angle, const AcGeVector3d& axis, const AcGePoint3d& center) {
    AcGeVector3d u = axis.normal();
    double c = std::cos(angle), s = std::sin(angle), t = 1 - c;
    setToIdentity();
    entry[0][0] = t * u.x * u.x + c;
    entry[0][1] = t * u.x * u.y - s * u.z;
    entry[0][2] = t * u.x * u.z + s * u.y;
    entry[1][0] = t * u.x * u.y + s * u.z;
    entry[1][1] = t * u.y * u.y + c;
    entry[1][2] = t * u.y * u.z - s * u.x;
    entry[2][0] = t * u.x * u.z - s * u.y;
    entry[2][1] = t * u.y * u.z + s * u.x;
    entry[2][2] = t * u.z * u.z + c;
    // Keep the center fixed: p' = R (p - c) + c.
    for (int r = 0; r < 3; ++r)
        entry[r][3] = center[r] - (entry[r][0] * center.x + entry[r][1] * center.y + entry[r][2] * center.z);
    return *this;
}

AcGeMatrix3d& AcGeMatrix3d::setToScaling(double factor, const AcGePoint3d& center) {
    return setToScaling(AcGeScale3d(factor), center);
}

AcGeMatrix3d& AcGeMatrix3d::setToScaling(const AcGeScale3d& scale, const AcGePoint3d& center) {
    setToIdentity();
    for (int r = 0; r < 3; ++r) {
        entry[r][r] = scale[r];
        entry[r][3] = center[r] * (1 - scale[r]);
    }
    return *this;
}

AcGeMatrix3d AcGeMatrix3d::translation(const AcGeVector3d& v) { return AcGeMatrix3d().setToTranslation(v); }

AcGeMatrix3d AcGeMatrix3d::rotation(double angle, const AcGeVector3d& axis, const AcGePoint3d& center) {
    return AcGeMatrix3d().setToRotation(angle, axis, center);
}

AcGeMatrix3d AcGeMatrix3d::scaling(double factor, const AcGePoint3d& center) {
    return AcGeMatrix3d().setToScaling(factor, center);
}

AcGeMatrix3d AcGeMatrix3d::scaling(const AcGeScale3d& scale, const AcGePoint3d& center) {
    return AcGeMatrix3d().setToScaling(scale, center);
}

AcGeMatrix3d AcGeMatrix3d::planeToWorld(const AcGeVector3d& normal) {
    AcGeVector3d n = normal.isZeroLength() ? AcGeVector3d::kZAxis : normal.normal();
    // The arbitrary axis algorithm: a normal close to the world Z axis takes
    // the world Y axis as its helper, any other the world Z axis.
    const double limit = 1.0 / 64;
    AcGeVector3d ax = (std::fabs(n.x) < limit && std::fabs(n.y) < limit) ? AcGeVector3d::kYAxis.crossProduct(n)
                                                                           : AcGeVector3d::kZAxis.crossProduct(n);
    ax.normalize();
    AcGeVector3d ay = n.crossProduct(ax).normal();
    return AcGeMatrix3d().setCoordSystem(AcGePoint3d::kOrigin, ax, ay, n);
}

AcGeMatrix3d AcGeMatrix3d::worldToPlane(const AcGeVector3d& normal) { return planeToWorld(normal).inverse(); }

AcGeMatrix3d AcGeMatrix3d::alignCoordSys(const AcGePoint3d& fromOrigin, const AcGeVector3d& fromXAxis,
                                         const AcGeVector3d& fromYAxis, const AcGeVector3d& fromZAxis,
                                         const AcGePoint3d& toOrigin, const AcGeVector3d& toXAxis,
                                         const AcGeVector3d& toYAxis, const AcGeVector3d& toZAxis) {
    AcGeMatrix3d from, to;
    from.setCoordSystem(fromOrigin, fromXAxis, fromYAxis, fromZAxis);
    to.setCoordSystem(toOrigin, toXAxis, toYAxis, toZAxis);
    return to * from.inverse();
}

int AcString::compareNoCase(const ACHAR* text) const {
    if (!text) return 1;
    const ACHAR* a = m_text.c_str();
    for (;; ++a, ++text) {
        wchar_t ca = cadhost::UpperLetter(*a), cb = cadhost::UpperLetter(*text);
        if (ca != cb) return ca < cb ? -1 : 1;
        if (!*a) return 0;
    }
}
