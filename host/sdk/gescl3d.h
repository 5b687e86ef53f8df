// Scale factors along the three axes.
#pragma once

#include "gegbl.h"

class CADHOST_API AcGeScale3d {
public:
    AcGeScale3d() = default;
    explicit AcGeScale3d(double factor) : sx(factor), sy(factor), sz(factor) {}
    AcGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}
    static const AcGeScale3d kIdentity;

    AcGeScale3d& set(double x, double y, double z) {
        sx = x;
        sy = y;
        sz = z;
        return *this;
    }
    bool operator==(const AcGeScale3d& s) const { return sx == s.sx && sy == s.sy && sz == s.sz; }
    bool operator!=(const AcGeScale3d& s) const { return !(*this == s); }
    double operator[](unsigned int i) const { return i == 0 ? sx : (i == 1 ? sy : sz); }
    double& operator[](unsigned int i) { return i == 0 ? sx : (i == 1 ? sy : sz); }

    double sx = 1, sy = 1, sz = 1;
};
