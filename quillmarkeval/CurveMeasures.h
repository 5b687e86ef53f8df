// The area and the length of one object, as the Objects Area and Objects
// Length fields count them.
#pragma once

#include "StdAfx.h"

// How the measure of one object came out.
enum MeasureResult {
    kMeasured = 0,       // value holds the measure
    kNotMeasured = 1,    // the object is of a kind this measure does not take
    kNoGeometry = 2,     // the object is of such a kind but has nothing to measure (a polyline without vertices)
};

// The area of a circle or a lightweight polyline (or of a class derived
// from them), as the curve reports it: a polyline's arc segments count, and
// an open polyline is closed by a straight segment from its end to its start.
MeasureResult MeasureArea(const AcDbObject* object, double& value);

// The length of a line (between its end points), a lightweight polyline
// (its line and arc segments), a circle (its radius times 6.28318530718)
// or an arc (along the arc), tested in this order, each with its derived
// classes.
MeasureResult MeasureLength(const AcDbObject* object, double& value);

