// The editor's input and selection calls, and the coordinate systems of
// the current drawing.
#pragma once

#include "adslib.h"
#include "dbid.h"
#include "gemat3d.h"

extern "C" {
// Selects objects. With no mode the user picks; "W" keeps what lies wholly
// inside the window of the two corners pt1 and pt2 (in the current user
// coordinate system) in the current space; "C" what lies inside or crosses
// it; "X" takes every object of every space. filter (may be null) keeps
// objects by type (0), layer (8), block name (2), paper space (67) and the
// -4 operators <AND AND>, <OR OR>, <XOR XOR>, <NOT NOT>. RTNORM with a new
// set in ss; RTERROR when nothing is selected or the filter is malformed;
// RTCAN when the user pressed Escape.
CADHOST_API int acedSSGet(const ACHAR* mode, const void* pt1, const void* pt2, const resbuf* filter, ads_name ss);
CADHOST_API int acedSSLength(const ads_name ss, Adesk::Int32* length);
CADHOST_API int acedSSName(const ads_name ss, Adesk::Int32 index, ads_name entity);
// Adds an entity to a set, or makes a new set of it when ss is null.
CADHOST_API int acedSSAdd(const ads_name entity, const ads_name ss, ads_name result);
CADHOST_API int acedSSFree(const ads_name ss);

// Asks for a point, printing the prompt; the answer is in the current user
// coordinate system. RTNORM, or RTCAN when the user pressed Escape.
CADHOST_API int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point result);
// The same for the opposite corner of a rectangle from base.
CADHOST_API int acedGetCorner(const ads_point base, const ACHAR* prompt, ads_point result);

// From the current user coordinate system to the world and back; vec
// non-zero carries a direction, not a point.
CADHOST_API int acdbUcs2Wcs(const ads_point from, ads_point to, int vec);
CADHOST_API int acdbWcs2Ucs(const ads_point from, ads_point to, int vec);

// Whether text matches a pattern: # a digit, @ a letter, . neither, * any
// run, ? any character, ~ at the start negates, [...] one of, [~...] none
// of, ` takes the next character as it is, a comma separates patterns.
// RTNORM when it matches, RTERROR when not.
CADHOST_API int acutWcMatch(const ACHAR* text, const ACHAR* pattern);
CADHOST_API int acutWcMatchEx(const ACHAR* text, const ACHAR* pattern, bool ignoreCase);
}

// The viewport the editor works in: in model space the drawing's active
// viewport record, in paper space the viewport entity of CVPORT.
CADHOST_API AcDbObjectId acedGetCurViewportObjectId();
// The current user coordinate system as a matrix to the world, and setting it.
CADHOST_API Acad::ErrorStatus acedGetCurrentUCS(AcGeMatrix3d& matrix);
CADHOST_API Acad::ErrorStatus acedSetCurrentUCS(const AcGeMatrix3d& matrix);
