// Arrays of points and vectors.
#pragma once

#include "acarray.h"
#include "gepnt2d.h"
#include "gepnt3d.h"

typedef AcArray<AcGePoint3d> AcGePoint3dArray;
typedef AcArray<AcGePoint2d> AcGePoint2dArray;
typedef AcArray<AcGeVector3d> AcGeVector3dArray;
typedef AcArray<double> AcGeDoubleArray;
