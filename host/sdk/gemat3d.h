// An affine transformation of space, as a 4 by 4 matrix acting on column
// vectors: the last column holds the translation.
#pragma once

#include "gepnt3d.h"
#include "gescl3d.h"

class CADHOST_API AcGeMatrix3d {
public:
    AcGeMatrix3d();
    static const AcGeMatrix3d kIdentity;

    AcGeMatrix3d& setToIdentity();
    bool isEqualTo(const AcGeMatrix3d& other, const AcGeTol& tol = AcGeContext::gTol) const;
    AcGeMatrix3d operator*(const AcGeMatrix3d& other) const;
    AcGeMatrix3d& preMultBy(const AcGeMatrix3d& left) { return *this = left * *this; }
    AcGeMatrix3d& postMultBy(const AcGeMatrix3d& right) { return *this = *this * right; }
    // The inverse; a singular matrix stays as it is and answers false.
    bool invert();
    AcGeMatrix3d inverse() const;
    double det() const;

    // Maps the world axes onto a coordinate system: origin and axes.
    AcGeMatrix3d& setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis, const AcGeVector3d& yAxis,
                                 const AcGeVector3d& zAxis);
    void getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis, AcGeVector3d& zAxis) const;
    AcGeMatrix3d& setToTranslation(const AcGeVector3d& vector);
    AcGeMatrix3d& setToRotation(double angle, const AcGeVector3d& axis,
                                const AcGePoint3d& center = AcGePoint3d::kOrigin);
    AcGeMatrix3d& setToScaling(double factor, const AcGePoint3d& center = AcGePoint3d::kOrigin);
    AcGeMatrix3d& setToScaling(const AcGeScale3d& scale, const AcGePoint3d& center = AcGePoint3d::kOrigin);

    static AcGeMatrix3d translation(const AcGeVector3d& vector);
    static AcGeMatrix3d rotation(double angle, const AcGeVector3d& axis,
                                 const AcGePoint3d& center = AcGePoint3d::kOrigin);
    static AcGeMatrix3d scaling(double factor, const AcGePoint3d& center = AcGePoint3d::kOrigin);
    static AcGeMatrix3d scaling(const AcGeScale3d& scale, const AcGePoint3d& center = AcGePoint3d::kOrigin);
    // From the object coordinate system of a normal (the arbitrary axis
    // algorithm of drawing files) to the world, and back.
    static AcGeMatrix3d planeToWorld(const AcGeVector3d& normal);
    static AcGeMatrix3d worldToPlane(const AcGeVector3d& normal);
    static AcGeMatrix3d alignCoordSys(const AcGePoint3d& fromOrigin, const AcGeVector3d& fromXAxis,
                                      const AcGeVector3d& fromYAxis, const AcGeVector3d& fromZAxis,
                                      const AcGePoint3d& toOrigin, const AcGeVector3d& toXAxis,
                                      const AcGeVector3d& toYAxis, const AcGeVector3d& toZAxis);

    double operator()(unsigned int row, unsigned int column) const { return entry[row][column]; }
    double& operator()(unsigned int row, unsigned int column) { return entry[row][column]; }

    double entry[4][4];
};
